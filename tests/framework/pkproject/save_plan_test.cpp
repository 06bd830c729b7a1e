#include "save_plan.hpp"
#include "support.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace pk::project::test {

class ASavePlan : public testing::Test
{
protected:
    ASavePlan()
    {
        for (const char* const name : {"d/a", "d/b", "e/c"}) {
            putLocal(m_directory.path("p/") + q(name), name);
        }
        const Place place = Place::of(m_directory.path("p").toStdString());
        m_contents.directory =
            std::make_unique<DirectorySource>(place, openPath(place.path, O_RDONLY | O_DIRECTORY));
        m_contents.directory->load(m_index);
    }
    Entry& at(const ProjectPath& path) const { return m_index.get(path); }
    void write(const ProjectPath& path, const std::string& bytes)
    {
        m_index.putFile(m_index.makeDirectories({path.begin(), path.end() - 1}), path.back(),
                        m_contents.staging()->write("x", bytes.data(), bytes.size()));
    }
    // One line for each step, new files marked with their bytes.
    std::vector<std::string> plan()
    {
        const SavePlan plan(m_index, m_contents);
        std::vector<std::string> lines;
        for (const auto& step : plan.journal().collects) {
            lines.push_back("collect " + (step.from.item < 0 ? "" : number(step.from.item) + "/") +
                            step.from.path + " " + number(step.item));
        }
        for (const auto& step : plan.journal().puts) {
            lines.push_back(step.item < 0 ? "mkdir " + step.path
                                          : (step.replace ? "replace " : "put ") + step.path + " " +
                                                number(step.item));
        }
        for (const auto& file : plan.newFiles()) {
            lines.push_back("new " + Index::path(*file.entry) + " " + number(file.item));
        }
        return lines;
    }
    static std::string number(int item) { return "#" + std::to_string(item); }
    std::vector<std::string> conflicts() { return SavePlan(m_index, m_contents).findConflicts(); }
    using Lines = std::vector<std::string>;

    TemporaryDirectory m_directory;
    Index m_index;
    Contents m_contents;
};

TEST_F(ASavePlan, ForNoChangesIsEmpty)
{
    EXPECT_EQ(plan(), Lines());
}

TEST_F(ASavePlan, ReplacesARewrittenFile)
{
    write({"d", "a"}, "other");
    EXPECT_EQ(plan(), (Lines{"replace d/a #0", "new d/a #0"}));
}

TEST_F(ASavePlan, LeavesAFileWithTheSameBytesAlone)
{
    write({"d", "a"}, "d/a");
    EXPECT_EQ(plan(), Lines());
    at({"d", "a"}).mode = 0600;
    EXPECT_EQ(plan().size(), 2U);
}

TEST_F(ASavePlan, TakesARemovedDirectoryAwayInOneStep)
{
    m_index.remove(at({"d"}));
    EXPECT_EQ(plan(), (Lines{"collect d #0"}));
}

TEST_F(ASavePlan, MovesADirectoryInTwoSteps)
{
    m_index.move(at({"d"}), m_index.root(), "f");
    EXPECT_EQ(plan(), (Lines{"collect d #0", "put f #0"}));
}

TEST_F(ASavePlan, CollectsADirectoryBeforeWhatIsInIt)
{
    m_index.move(at({"d", "a"}), m_index.root(), "a");
    m_index.move(at({"d"}), at({"e"}), "d");
    const Lines lines = plan();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].find("collect d #"), 0U);
    EXPECT_EQ(lines[1].find("collect " + lines[0].substr(10) + "/a #"), 0U) << lines[1];
    EXPECT_EQ(lines[2].find("put a #"), 0U);
    EXPECT_EQ(lines[3].find("put e/d #"), 0U);
}

TEST_F(ASavePlan, MakesANewDirectoryBeforeWhatIsInIt)
{
    write({"n", "m", "x"}, "1");
    EXPECT_EQ(plan(), (Lines{"mkdir n", "mkdir n/m", "put n/m/x #0", "new n/m/x #0"}));
}

TEST_F(ASavePlan, ReplacesAFileByAMovedOneInOneStep)
{
    m_index.remove(at({"d", "b"}));
    m_index.move(at({"d", "a"}), at({"d"}), "b");
    EXPECT_EQ(plan(), (Lines{"collect d/a #0", "replace d/b #0"}));
}

TEST_F(ASavePlan, PutsAFileInADirectorysPlace)
{
    m_index.remove(at({"d"}));
    write({"d"}, "1");
    const Lines lines = plan();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].find("collect d #"), 0U);
    EXPECT_EQ(lines[1].find("put d #"), 0U);
}

TEST_F(ASavePlan, FindsConflictsInWhatItTouchesAlone)
{
    write({"d", "a"}, "other");
    write({"new"}, "1");
    m_index.remove(at({"e"}));
    putLocal(m_directory.path("p/d/b"), "not touched by the plan");
    EXPECT_EQ(conflicts(), Lines());
    putLocal(m_directory.path("p/d/a"), "changed");
    putLocal(m_directory.path("p/new"), "added");
    putLocal(m_directory.path("p/e/also"), "added");
    EXPECT_EQ(conflicts(), (Lines{"'e/also' was added", "'d/a'", "'new' was added"}));
}

TEST_F(ASavePlan, FindsALinkOnTheWayToANewFile)
{
    write({"d", "new"}, "1");
    Disk::instance().rename(m_directory.path("p/d").toStdString(),
                            m_directory.path("outside").toStdString());
    ASSERT_EQ(::symlink("../outside", m_directory.path("p/d").toStdString().c_str()), 0);
    EXPECT_EQ(conflicts(), (Lines{"'d/new' was added"}));
}

TEST_F(ASavePlan, FindsAMovedDirectoryGone)
{
    m_index.move(at({"d"}), m_index.root(), "f");
    EXPECT_EQ(conflicts(), Lines());
    removeTree(m_directory.path("p/d").toStdString());
    EXPECT_EQ(conflicts(), (Lines{"'d' was removed"}));
}

} // namespace pk::project::test
