#include "journal_directory.hpp"
#include "journalled_save.hpp"
#include "lock.hpp"
#include "power_loss.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <ostream>
#include <random>
#include <set>

namespace pk::project::test {

namespace {

Tree without(Tree tree, const std::string& prefix)
{
    for (auto it = tree.begin(); it != tree.end();) {
        it = it->first.compare(0, prefix.size(), prefix) == 0 ? tree.erase(it) : std::next(it);
    }
    return tree;
}

} // namespace

TEST_F(AJournalledSave, IsWrittenSyncedAppliedAndRemovedInThisOrder)
{
    FaultyDisk disk;
    save();
    const auto& log = disk.log();
    const std::string journal = place().journal();
    const auto position = [&](const std::string& step) {
        const auto it = std::find(log.begin(), log.end(), step);
        EXPECT_NE(it, log.end()) << step;
        return it - log.begin();
    };
    const auto draftSync = position("sync " + journal + "/draft");
    const auto begun = position("rename " + journal + "/draft " + journal + "/collect");
    const auto put = position("rename " + journal + "/collect " + journal + "/put");
    const auto removed = position("unlink " + journal + "/put");
    EXPECT_LT(draftSync, begun);
    EXPECT_EQ(log[static_cast<std::size_t>(begun) - 1], "sync " + journal);
    EXPECT_EQ(log[static_cast<std::size_t>(begun) + 1], "sync " + journal);
    EXPECT_EQ(log[static_cast<std::size_t>(begun) + 2], "sync " + place().parent);
    for (std::size_t i = 0; i < log.size(); ++i) {
        const bool touchesProject =
            log[i].find("sync ") != 0 && log[i].find(place().path + "/") != std::string::npos;
        const auto at = static_cast<std::ptrdiff_t>(i);
        EXPECT_TRUE(!touchesProject || (at > begun && at < removed)) << log[i];
    }
    EXPECT_LT(put, removed);
    EXPECT_EQ(log[static_cast<std::size_t>(removed) + 1], "sync " + journal);
    EXPECT_EQ(log.back(), "rmdir " + journal);
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(journal)));
}

TEST_F(AJournalledSave, IsLookedAtOnlyUnderTheLock)
{
    ASSERT_TRUE(dieAt(30));
    ASSERT_TRUE(JournalDirectory::isPending(place()));
    const Tree before = treeOf(m_directory.path());
    const Lock lock = Lock::take(place());
    const Tree locked = treeOf(m_directory.path());
    EXPECT_THROW(Lock::take(place(), std::chrono::milliseconds(0)), LockError);
    EXPECT_EQ(treeOf(m_directory.path()), locked);
    EXPECT_EQ(without(before, ".project.kxlock"), without(locked, ".project.kxlock"));
}

// Saves that are one rename, which need no journal.
struct OneRename
{
    const char* name;
    void (*edit)(ProjectModel& model);
};

std::ostream& operator<<(std::ostream& stream, const OneRename& save)
{
    return stream << save.name;
}

class AOneRenameSave : public testing::TestWithParam<OneRename>
{
protected:
    QString path() const { return m_directory.path("project"); }
    Place place() const { return Place::of(path().toStdString()); }
    std::unique_ptr<ProjectModel> edited()
    {
        removeTree(path().toStdString());
        removeTree(place().journal());
        ProjectModel model;
        for (const char* const file : {"a", "d/b", "d/c"}) {
            model.writeFile(q(file), file);
        }
        model.save(path(), ArchiveFormat::Directory, true);
        m_old = treeOf(model);
        auto opened = std::make_unique<ProjectModel>(path());
        GetParam().edit(*opened);
        m_new = treeOf(*opened);
        return opened;
    }

    TemporaryDirectory m_directory;
    Tree m_old;
    Tree m_new;
};

TEST_P(AOneRenameSave, WritesNoJournalAndSyncsTwice)
{
    const auto model = edited();
    const FaultyDisk disk;
    saveInPlace(*model);
    const auto count = [&](const std::string& begin) {
        return std::count_if(disk.log().begin(), disk.log().end(), [&](const std::string& step) {
            return step.compare(0, begin.size(), begin) == 0;
        });
    };
    EXPECT_EQ(count("sync"), 2);
    EXPECT_EQ(count("rename"), 1);
    EXPECT_EQ(count("create"), m_new.size() < m_old.size() ? 0 : 1); // beside the lock file
    EXPECT_EQ(treeOf(ProjectModel(path())), m_new);
}

TEST_P(AOneRenameSave, IsWholeOrNotWhereverItDies)
{
    std::set<Tree> found;
    bool died = true;
    for (int number = 0; died; ++number) {
        const auto model = edited();
        died = killIn([&] { saveInPlace(*model); }, number);
        const Tree now = treeOf(ProjectModel(path()));
        EXPECT_TRUE(now == m_old || now == m_new) << number;
        EXPECT_EQ(leftBeside(path()), QStringList()) << number;
        found.insert(now);
    }
    EXPECT_EQ(found, (std::set<Tree>{m_old, m_new}));
}

TEST_P(AOneRenameSave, IsUndoneWhereverItFailsAtOnceOrLater)
{
    for (const bool onwards : {false, true}) {
        for (int number = 0;; ++number) {
            SCOPED_TRACE(number);
            const auto model = edited();
            FaultyDisk disk;
            disk.failAt(number, EIO, onwards);
            const bool failed = !trySave(*model);
            if (disk.count() <= number) {
                break;
            }
            disk.heal();
            ASSERT_EQ(treeOf(*model), m_new);
            if (failed && !onwards) {
                ASSERT_EQ(treeOf(ProjectModel(path())), m_old);
            }
            model->writeFile(q("more"), "1");
            saveInPlace(*model);
            m_new["more"] = "1";
            ASSERT_EQ(treeOf(ProjectModel(path())), m_new);
            ASSERT_EQ(leftBeside(path()), QStringList());
        }
    }
}

TEST_P(AOneRenameSave, IsWholeOrNotAfterAPowerFailureAlsoWhileItIsUndone)
{
    int undone = 0;
    for (int failing = -1;; ++failing) {
        const auto model = edited();
        PowerLossDisk disk(m_directory.path());
        disk.failAt(failing);
        const bool failed = !trySave(*model);
        PowerLossDisk::unplug();
        if (!failed && failing >= disk.count()) {
            break;
        }
        undone += failed ? 1 : 0;
        std::mt19937 random(
            static_cast<unsigned>(failing + 1)); // NOLINT(cert-msc32-c,cert-msc51-cpp)
        for (int count = 0; count <= disk.count(); ++count) {
            for (const unsigned chance : {0U, 100U, 50U, 50U, 50U}) {
                SCOPED_TRACE("change " + std::to_string(failing) + " fails, power after " +
                             std::to_string(count));
                const TemporaryDirectory lost;
                SCOPED_TRACE(disk.materialise(lost.path(), count, chance, random));
                const Tree found = treeOf(ProjectModel(lost.path("project")));
                const bool isDone = count == disk.count();
                ASSERT_TRUE((found == m_old && (failed || !isDone)) ||
                            (found == m_new && (!failed || !isDone)))
                    << testing::PrintToString(found);
            }
        }
    }
    EXPECT_GT(undone, 3);
}

// As not every file system has it.
class NoLinks : public FaultyDisk
{
public:
    void link(const std::string& from, const std::string& to) override
    {
        static_cast<void>(from);
        errno = EPERM;
        throwErrno(to);
    }
};

TEST_P(AOneRenameSave, IsUndoneWithoutHardLinksToo)
{
    for (int number = 0;; ++number) {
        SCOPED_TRACE(number);
        const auto model = edited();
        const Tree before = treeOf(path());
        NoLinks disk;
        disk.failAt(number, EIO, false);
        const bool failed = !trySave(*model);
        if (disk.count() <= number) {
            break;
        }
        disk.heal();
        if (failed) {
            ASSERT_EQ(treeOf(path()), before);
        }
        saveInPlace(*model);
        ASSERT_EQ(treeOf(ProjectModel(path())), m_new);
    }
}

// Somebody else's save is interrupted where one that failed could not be undone.
TEST_P(AOneRenameSave, IsNotUndoneOnSomebodyElsesJournal)
{
    int pending = 0;
    for (int dying = 0;; ++dying) {
        SCOPED_TRACE(dying);
        const auto model = edited();
        {
            FaultyDisk disk;
            disk.failAt(m_new.size() < m_old.size() ? 2 : 7, EIO, true);
            EXPECT_THROW(saveInPlace(*model), IoError);
        }
        ProjectModel other(path());
        other.move(q("a"), q("moved"), false);
        other.writeFile(q("added"), "added");
        const Tree expected = treeOf(other);
        if (!killIn([&] { saveInPlace(other); }, dying)) {
            break;
        }
        if (!JournalDirectory::isPending(place())) {
            continue;
        }
        ++pending;
        EXPECT_THROW(saveInPlace(*model), ConflictError);
        EXPECT_EQ(treeOf(ProjectModel(path())), expected);
    }
    EXPECT_GT(pending, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AOneRenameSave,
    testing::Values(
        OneRename{"AReplacedFile", [](ProjectModel& model) { model.writeFile(q("d/b"), "2"); }},
        OneRename{"ANewFile", [](ProjectModel& model) { model.writeFile(q("d/new"), "2"); }},
        OneRename{"ARemovedFile", [](ProjectModel& model) { model.remove(q("d/c")); }},
        OneRename{"ARemovedDirectory", [](ProjectModel& model) { model.remove(q("d")); }}),
    [](const auto& save) { return std::string(save.param.name); });

} // namespace pk::project::test
