#include "faulty_disk.hpp"
#include "journal_directory.hpp"
#include "lock.hpp"
#include "log_records.hpp"
#include "place.hpp"
#include "power_loss.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <QProcess>

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace pk::project::test {

namespace {

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
    std::unique_ptr<ProjectModel> edited()
    {
        removeTree(path().toStdString());
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
    model->save(QString(), ArchiveFormat::Source, true);
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
        const pid_t child = ::fork();
        if (child == 0) {
            FaultyDisk disk;
            disk.dieAt(number);
            model->save(QString(), ArchiveFormat::Source, true);
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        died = WEXITSTATUS(status) == FaultyDisk::a_died;
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
            bool failed = false;
            try {
                model->save(QString(), ArchiveFormat::Source, true);
            } catch (const IoError&) {
                failed = true;
            }
            if (disk.count() <= number) {
                break;
            }
            disk.heal();
            ASSERT_EQ(treeOf(*model), m_new);
            if (failed && !onwards) {
                ASSERT_EQ(treeOf(ProjectModel(path())), m_old);
            }
            model->writeFile(q("more"), "1");
            model->save(QString(), ArchiveFormat::Source, true);
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
        const Tree before = treeOf(m_directory.path());
        PowerLossDisk disk(m_directory.path());
        disk.failAt(failing);
        bool failed = false;
        try {
            model->save(QString(), ArchiveFormat::Source, true);
        } catch (const IoError&) {
            failed = true;
        }
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

INSTANTIATE_TEST_SUITE_P(
    Of, AOneRenameSave,
    testing::Values(
        OneRename{"AReplacedFile", [](ProjectModel& model) { model.writeFile(q("d/b"), "2"); }},
        OneRename{"ANewFile", [](ProjectModel& model) { model.writeFile(q("d/new"), "2"); }},
        OneRename{"ARemovedFile", [](ProjectModel& model) { model.remove(q("d/c")); }},
        OneRename{"ARemovedDirectory", [](ProjectModel& model) { model.remove(q("d")); }}),
    [](const auto& save) { return std::string(save.param.name); });

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
