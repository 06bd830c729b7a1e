#include "faulty_disk.hpp"
#include "journal.hpp"
#include "lock.hpp"
#include "log_records.hpp"
#include "place.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <QProcess>

#include <algorithm>
#include <optional>
#include <ostream>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace pk::project::test {

namespace {

Journal sample()
{
    Journal journal;
    journal.collects = {{{-1, "motions"}, 0}, {{0, "old/x"}, 1}};
    journal.puts = {{"a", -1, 0750, false}, {"a/moved", 0, 0, false}, {"file", 2, 0, true}};
    return journal;
}

// Of all files but the metadata; without what a Tree of the disk has before them.
std::set<std::string> contentsOf(const Tree& tree)
{
    std::set<std::string> contents;
    for (const auto& file : tree) {
        if (file.first.back() != '/' && file.first != ".kxproject") {
            contents.insert(file.second.substr(file.second.find(':') + 1));
        }
    }
    return contents;
}

void copyTree(const QString& from, const QString& to)
{
    ASSERT_EQ(QProcess::execute(q("cp"), {q("-a"), from + q("/."), to}), 0);
}

Tree without(Tree tree, const std::string& prefix)
{
    for (auto it = tree.begin(); it != tree.end();) {
        it = it->first.compare(0, prefix.size(), prefix) == 0 ? tree.erase(it) : std::next(it);
    }
    return tree;
}

} // namespace

TEST(Journal, RoundTrips)
{
    const QByteArray bytes = sample().toBytes();
    const Journal read = Journal::fromBytes(bytes, "x");
    EXPECT_EQ(read.toBytes(), bytes);
    ASSERT_EQ(read.collects.size(), 2U);
    EXPECT_EQ(read.collects[1].from.item, 0);
    EXPECT_EQ(read.collects[1].from.path, "old/x");
    ASSERT_EQ(read.puts.size(), 3U);
    EXPECT_EQ(read.puts[0].mode, 0750);
    EXPECT_TRUE(read.puts[2].replace);
    EXPECT_FALSE(read.isEmpty());
    EXPECT_TRUE(Journal::fromBytes(Journal().toBytes(), "x").isEmpty());
}

Journal collecting(Journal::Collect step)
{
    return {{std::move(step)}, {}};
}

Journal putting(Journal::Put step)
{
    return {{}, {std::move(step)}};
}

TEST(Journal, IsRefusedWhenItLeavesTheProjectOrMakesNoSense)
{
    for (const Journal& journal :
         {collecting({{-2, "a"}, 0}), collecting({{-1, "a"}, -1}), collecting({{-1, "../a"}, 0}),
          collecting({{-1, "/a"}, 0}), collecting({{-1, ""}, 0}), collecting({{-1, ".git/a"}, 0}),
          collecting({{-1, "\xff"}, 0}), putting({"a/../../b", 0, 0, false}),
          putting({"a", -2, 0, false}), putting({"a//b", 0, 0, false}),
          putting({".hg", 0, 0, true}), putting({std::string("a\0b", 3), 0, 0, false})}) {
        EXPECT_EQ(
            messageOf<FormatError>([&] { Journal::fromBytes(journal.toBytes(), "/j/collect"); }),
            "/j/collect: damaged journal");
    }
    EXPECT_FALSE(Journal::fromBytes(collecting({{0, ".git/a"}, 1}).toBytes(), "x").isEmpty());
    EXPECT_FALSE(Journal::fromBytes(putting({".kxproject", 0, 0, true}).toBytes(), "x").isEmpty());
}

TEST(Journal, IsRefusedWhenItIsNotWhole)
{
    const QByteArray bytes = sample().toBytes();
    for (int size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(Journal::fromBytes(bytes.left(size), "x"), FormatError) << size;
    }
    EXPECT_THROW(Journal::fromBytes(bytes + '\0', "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes('\x1' + bytes.mid(1), "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes("{}", "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes("\2\xff\xff\xff\xff", "x"), FormatError);
}

// A project that is saved in place so that everything happens: a file is replaced, one removed, one
// new; a directory moved, one removed, one new, one swapped with its child.
class AJournalledSave : public testing::Test
{
protected:
    AJournalledSave() { start(); }
    // The old project, and a model with the edits.
    void start()
    {
        m_model.reset();
        removeTree(path().toStdString());
        removeTree(place().journal());
        ProjectModel model;
        for (const char* const path : {"changed", "gone", "moved/a", "dropped/b", "x/y/z"}) {
            model.writeFile(q(path), path);
        }
        model.setMetadata(q("k"), q("old"));
        model.save(path(), ArchiveFormat::Directory, true);
        m_old = treeOf(path());
        m_model.emplace(path());
        m_model->writeFile(q("changed"), "again");
        m_model->remove(q("gone"));
        m_model->writeFile(q("new/file"), "new");
        m_model->move(q("moved"), q("new/moved"), false);
        m_model->remove(q("dropped"));
        m_model->move(q("x/y"), q("y"), false);
        m_model->move(q("x"), q("y/x"), false);
        m_model->setMetadata(q("k"), q("new"));
        m_new = treeOf(*m_model);
    }
    QString path() const { return m_directory.path("project"); }
    Place place() const { return Place::of(path().toStdString()); }
    void save() { m_model->save(QString(), ArchiveFormat::Source, true); }

    // Runs a save in a program that dies when it comes to an operation; true when it died.
    bool dieAt(int number)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            class DyingDisk : public FaultyDisk
            {
            protected:
                void fail(const std::string& /*path*/) override { ::_exit(7); }
            } disk;
            disk.failAt(number, EIO, true);
            save();
            ::_exit(0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status) == 7;
    }

    TemporaryDirectory m_directory;
    Tree m_old;
    Tree m_new;
    std::optional<ProjectModel> m_model;
};

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

TEST_F(AJournalledSave, IsCompletedOrForgottenByTheNextOneWhoOpens)
{
    int pending = 0;
    for (int number = 0; dieAt(number); ++number) {
        SCOPED_TRACE("the program dies at operation " + std::to_string(number));
        const bool isPending = JournalDirectory::isPending(place());
        pending += isPending ? 1 : 0;
        {
            const ProjectModel opened(path());
            EXPECT_EQ(leftBeside(path()), QStringList());
            if (isPending || pending > 0) {
                EXPECT_EQ(treeOf(opened), m_new);
                EXPECT_EQ(opened.getMetadata(q("k")), q("new"));
            } else {
                EXPECT_EQ(treeOf(path()), m_old);
            }
        }
        if (HasFailure()) {
            break;
        }
        start();
    }
    EXPECT_GT(pending, 15);
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

// Somebody adds or removes something after a save died, before anybody opens the project.
TEST_F(AJournalledSave, IsCompletedWhateverSomebodyDidMeanwhile)
{
    int added = 0;
    int removed = 0;
    bool hasBegun = false;
    for (int number = 0; dieAt(number); ++number) {
        hasBegun |= JournalDirectory::isPending(place());
        for (const char* const touched : {"changed", "gone", "moved", "dropped", "x", "x/y", "y",
                                          "y/x", "new", "new/moved", "new/file"}) {
            SCOPED_TRACE("dead at operation " + std::to_string(number) + ": " + touched);
            const TemporaryDirectory copy;
            copyTree(m_directory.path(), copy.path());
            const QString project = copy.path("project");
            const std::string at = project.toStdString() + "/" + touched;
            std::set<std::string> expected =
                hasBegun ? contentsOf(m_new) : contentsOf(treeOf(project));
            if (statOf(at)) {
                const Tree before = treeOf(project);
                removeTree(at);
                const std::set<std::string> left = contentsOf(treeOf(project));
                for (const std::string& content : contentsOf(before)) {
                    if (left.count(content) == 0) {
                        expected.erase(content);
                    }
                }
                ++removed;
            } else if (statOf(at.substr(0, at.rfind('/')))) {
                putLocal(QString::fromStdString(at), "somebody's");
                expected.insert("somebody's");
                ++added;
            } else {
                continue;
            }
            const std::set<std::string> found = contentsOf(treeOf(ProjectModel(project)));
            EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end()))
                << testing::PrintToString(found);
            EXPECT_EQ(leftBeside(project), QStringList());
        }
        if (HasFailure()) {
            break;
        }
        start();
    }
    EXPECT_GT(added, 50);
    EXPECT_GT(removed, 50);
}

TEST_F(AJournalledSave, PutsWhatIsInItsWayAside)
{
    ASSERT_TRUE(dieAt(20));
    ASSERT_TRUE(JournalDirectory::isPending(place()));
    QDir(path()).mkdir(q("new"));
    putLocal(path() + q("/new/moved"), "somebody's");
    putLocal(path() + q("/new/moved.~1~"), "somebody else's");
    Tree expected = m_new;
    expected["new/moved.~2~"] = "somebody's";
    expected["new/moved.~1~"] = "somebody else's";
    const LogRecords log;
    EXPECT_EQ(treeOf(ProjectModel(path())), expected);
    const std::string moved = place().path + "/new/moved";
    EXPECT_EQ(log.messages(),
              std::vector<std::string>{moved +
                                       ": it came there while a save was unfinished, and is "
                                       "now '" +
                                       moved + ".~2~'"});
}

TEST_F(AJournalledSave, IsKeptForAProjectThatIsGone)
{
    ASSERT_TRUE(dieAt(20));
    ASSERT_TRUE(QFile::rename(path(), m_directory.path("moved away")));
    EXPECT_THROW(const ProjectModel model(path()), PathNotFound);
    const std::string message =
        messageOf<IoError>([&] { ProjectModel().save(path(), ArchiveFormat::Directory, true); });
    EXPECT_EQ(message, place().path + ": it can't be saved: " + place().journal() +
                           "/collect: it is part of a save to '" + place().path +
                           "', which is gone: bring that back, or remove the journal's directory");
    ASSERT_TRUE(QFile::rename(m_directory.path("moved away"), path()));
    EXPECT_EQ(treeOf(ProjectModel(path())), m_new);
}

TEST_F(AJournalledSave, WithADamagedJournalIsReportedAndLeftAlone)
{
    QDir(m_directory.path()).mkdir(q(".project.kxjournal"));
    putLocal(m_directory.path(".project.kxjournal/put"), "{}");
    const std::string message = messageOf<FormatError>([&] { const ProjectModel model(path()); });
    EXPECT_EQ(message, place().journal() + "/put: damaged journal");
    EXPECT_EQ(treeOf(path()), m_old);
    EXPECT_TRUE(QFileInfo::exists(m_directory.path(".project.kxjournal/put")));
}

TEST_F(AJournalledSave, LeavesARubbishJournalDirectoryBehindIt)
{
    QDir(m_directory.path()).mkpath(q(".project.kxjournal/7/below"));
    putLocal(m_directory.path(".project.kxjournal/draft"), "half a jour");
    const ProjectModel model(path());
    EXPECT_EQ(leftBeside(path()), QStringList());
    EXPECT_EQ(treeOf(path()), m_old);
}

} // namespace pk::project::test
