#include "faulty_disk.hpp"
#include "publish.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <algorithm>

namespace pk::project::test {

// What is at the target, and what takes its place.
struct Change
{
    const char* name;
    const char* old; ///< path below the target's directory to the bytes, or null
    const char* fresh;
};

class AFreshPlace : public testing::TestWithParam<Change>
{
protected:
    AFreshPlace()
    {
        if (GetParam().old != nullptr) {
            putLocal(m_directory.path(GetParam().old), "old");
        }
        m_place = Place::of(m_directory.path("p").toStdString());
        m_existing = statOf(m_place.path);
        m_before = tree();
    }
    Tree tree() const
    {
        Tree tree = treeOf(m_directory.path());
        for (auto it = tree.begin(); it != tree.end();) {
            it = it->first[0] == '.' ? tree.erase(it) : std::next(it);
        }
        return tree;
    }
    // The built project, with what is published last still missing.
    void build() const
    {
        const std::string name = std::string(".p.kxnew") + (GetParam().fresh + 1);
        putLocal(m_directory.path(name), "new");
    }
    bool isNew() const { return getLocal(m_directory.path(GetParam().fresh)) == "new"; }

    TemporaryDirectory m_directory;
    Place m_place;
    std::optional<struct stat> m_existing;
    Tree m_before;
};

TEST_P(AFreshPlace, TakesTheTargetsPlaceInOneStepAndIsSyncedThere)
{
    FaultyDisk disk;
    {
        FreshPlace fresh(m_place);
        EXPECT_EQ(fresh.path(), m_place.fresh());
        build();
        EXPECT_EQ(tree(), m_before);
        fresh.publish(m_existing);
        ASSERT_EQ(disk.log().size(), 2U);
        EXPECT_EQ(disk.log()[0],
                  (m_existing ? "exchange " : "renameNew ") + m_place.fresh() + " " + m_place.path);
        EXPECT_EQ(disk.log()[1], "sync " + m_place.parent);
    }
    EXPECT_TRUE(isNew());
    EXPECT_EQ(leftBeside(m_directory.path("p")), QStringList());
}

TEST_P(AFreshPlace, IsGoneWhenItIsNotPublished)
{
    {
        const FreshPlace fresh(m_place);
        build();
    }
    EXPECT_EQ(treeOf(m_directory.path()), m_before);
}

TEST_P(AFreshPlace, ThatCanNotBeSyncedGivesThePlaceBack)
{
    {
        FaultyDisk disk;
        disk.failAt(1, EIO, false);
        FreshPlace fresh(m_place);
        build();
        EXPECT_EQ(messageOf<IoError>([&] { fresh.publish(m_existing); }),
                  m_place.parent + ": Input/output error");
    }
    EXPECT_EQ(treeOf(m_directory.path()), m_before);
}

TEST_P(AFreshPlace, ThatCanBeNeitherSyncedNorGivenBackStays)
{
    {
        FaultyDisk disk;
        FreshPlace fresh(m_place);
        build();
        disk.failAt(1, EIO, true);
        EXPECT_NO_THROW(fresh.publish(m_existing));
        disk.heal();
    }
    EXPECT_TRUE(isNew());
    // Whatever the disk holds under the one name, it is whole under the other.
    EXPECT_EQ(leftBeside(m_directory.path("p")).isEmpty(), !m_existing);
}

TEST_P(AFreshPlace, LeavesTheOldWhereTheRenameFails)
{
    {
        FaultyDisk disk;
        disk.failAt(0, EACCES, false);
        FreshPlace fresh(m_place);
        build();
        const bool bothFiles = m_existing && std::string(GetParam().old) == GetParam().fresh &&
                               std::string(GetParam().old) == "p";
        if (bothFiles) {
            // A file can replace a file in another way.
            EXPECT_NO_THROW(fresh.publish(m_existing));
            EXPECT_EQ(disk.log()[1], "rename " + m_place.fresh() + " " + m_place.path);
            EXPECT_EQ(disk.log()[2], "sync " + m_place.parent);
            EXPECT_TRUE(isNew());
            return;
        }
        EXPECT_EQ(messageOf<IoError>([&] { fresh.publish(m_existing); }),
                  m_place.path + ": Permission denied");
    }
    EXPECT_EQ(treeOf(m_directory.path()), m_before);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, AFreshPlace,
    testing::Values(Change{"NewFile", nullptr, "p"}, Change{"NewDirectory", nullptr, "p/a"},
                    Change{"FileByFile", "p", "p"}, Change{"DirectoryByDirectory", "p/a", "p/a"},
                    Change{"FileByDirectory", "p", "p/a"}, Change{"DirectoryByFile", "p/a", "p"}),
    [](const auto& change) { return std::string(change.param.name); });

TEST(FreshPlace, ReplacesNothingThatCameMeanwhile)
{
    const TemporaryDirectory directory;
    const Place place = Place::of(directory.path("p").toStdString());
    FreshPlace fresh(place);
    putLocal(directory.path(".p.kxnew"), "new");
    putLocal(directory.path("p"), "somebody else's");
    EXPECT_THROW(fresh.publish({}), AlreadyExists);
    EXPECT_EQ(getLocal(directory.path("p")), QByteArray("somebody else's"));
}

} // namespace pk::project::test
