#include "journal_directory.hpp"
#include "journalled_save.hpp"
#include "log_records.hpp"
#include "power_loss.hpp"
#include "unsaved_work.hpp"

#include <pk/project/error.hpp>

#include <QProcess>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>
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

} // namespace

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

// Somebody adds, changes or removes something after a save died, before anybody opens the project.
TEST_F(AJournalledSave, IsCompletedWhateverSomebodyDidMeanwhile)
{
    std::map<std::string, int> done;
    bool hasBegun = false;
    for (int number = 0; dieAt(number); ++number) {
        hasBegun |= JournalDirectory::isPending(place());
        waitForTheClock();
        for (const char* const touched : {"changed", "gone", "moved", "dropped", "dropped/b", "x",
                                          "x/y", "x/y/z", "y", "y/x", "new", "new/moved/a"}) {
            for (const bool removes : {false, true}) {
                SCOPED_TRACE("dead at operation " + std::to_string(number) + ": somebody " +
                             (removes ? "removes " : "puts ") + touched);
                const TemporaryDirectory copy;
                copyTree(m_directory.path(), copy.path());
                const QString project = copy.path("project");
                const std::string at = project.toStdString() + "/" + touched;
                const auto info = statOf(at);
                if (!info && (removes || !statOf(at.substr(0, at.rfind('/'))))) {
                    continue;
                }
                const std::set<std::string> before = contentsOf(treeOf(project));
                std::set<std::string> expected = hasBegun ? contentsOf(m_new) : before;
                if (removes) {
                    removeTree(at);
                } else {
                    const bool isDirectory = info && S_ISDIR(info->st_mode);
                    putLocal(QString::fromStdString(at) + (isDirectory ? q("/added") : q("")),
                             "somebody's");
                    expected.insert("somebody's");
                }
                const std::set<std::string> left = contentsOf(treeOf(project));
                for (const std::string& content : before) {
                    if (left.count(content) == 0) {
                        expected.erase(content); // somebody's doing
                    }
                }
                const std::set<std::string> found = contentsOf(treeOf(ProjectModel(project)));
                EXPECT_TRUE(
                    std::includes(found.begin(), found.end(), expected.begin(), expected.end()))
                    << testing::PrintToString(found);
                EXPECT_EQ(leftBeside(project), QStringList());
                ++done[removes ? "removed" : info ? "changed" : "added"];
            }
        }
        if (HasFailure()) {
            break;
        }
        start();
    }
    EXPECT_GT(done["added"], 50);
    EXPECT_GT(done["changed"], 50);
    EXPECT_GT(done["removed"], 50);
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
                                       ": somebody else put or changed it while a save was "
                                       "unfinished; it is now '" +
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

// The power goes once more, when the project was opened.
TEST_F(AJournalledSave, IsOnTheDiskWhenItWasCompletedWhateverSomebodyDid)
{
    std::seed_seq sequence{1};
    std::mt19937 random(sequence);
    int states = 0;
    for (int number = 0; dieAt(number); ++number) {
        if (JournalDirectory::isPending(place()) && statOf(place().path + "/new") &&
            statOf(place().path + "/new/moved")) {
            removeTree(place().path + "/new");
            putLocal(path() + q("/y/somebody's"), "1");
            Tree expected;
            PowerLossDisk disk(m_directory.path());
            expected = treeOf(ProjectModel(path()));
            PowerLossDisk::unplug();
            for (int i = 0; i < 30; ++i, ++states) {
                const TemporaryDirectory lost;
                SCOPED_TRACE(disk.materialise(lost.path(), disk.count(), 50, random));
                ASSERT_EQ(treeOf(ProjectModel(lost.path("project"))), expected);
            }
        }
        start();
    }
    EXPECT_GT(states, 50);
}

TEST_F(AJournalledSave, WithAJournalThatIsNoFileOrTooLargeIsRefused)
{
    const QString journal = m_directory.path(".project.kxjournal");
    const std::string put = (journal + q("/put")).toStdString();
    const auto message = [&] {
        return messageOf<FormatError>([&] { const ProjectModel model(path()); });
    };
    QDir(m_directory.path()).mkdir(journal);
    ASSERT_EQ(::mkfifo(put.c_str(), 0600), 0);
    EXPECT_EQ(message(), put + ": damaged journal");
    ASSERT_EQ(::unlink(put.c_str()), 0);
    putLocal(QString::fromStdString(put), "2");
    ASSERT_EQ(::truncate(put.c_str(), off_t{1} << 34U), 0);
    EXPECT_EQ(message(), put + ": damaged journal");
    EXPECT_EQ(treeOf(path()), m_old);
}

TEST_F(AJournalledSave, WithAJournalThatGoesInCirclesEnds)
{
    const QString journal = m_directory.path(".project.kxjournal");
    const Journal circle{{{{1, "a"}, 0, {}}, {{0, "b"}, 1, {}}}, {}};
    putLocal(journal + q("/put"), circle.toBytes());
    waitForTheClock();
    putLocal(journal + q("/0/file"), "1");
    putLocal(journal + q("/1/file"), "2");
    const Tree found = treeOf(ProjectModel(path()));
    EXPECT_EQ(contentsOf(found).count("1"), 1U);
    EXPECT_EQ(contentsOf(found).count("2"), 1U);
    EXPECT_EQ(leftBeside(path()), QStringList());
}

// A save fails, the disk refuses to undo it, and somebody else comes before the next save.
class AnUndoneSave : public AJournalledSave
{
protected:
    // For each way to fail so; `meddle` gets the project's path.
    template <class Meddle, class Check>
    void afterEach(const Meddle& meddle, const Check& check)
    {
        int failed = 0;
        for (const int later : {0, 2, 4, 5}) {
            SCOPED_TRACE("for good " + std::to_string(later) + " later");
            failed += afterEach(later, meddle, check);
        }
        EXPECT_GT(failed, 80);
    }

private:
    template <class Meddle, class Check>
    int afterEach(int later, const Meddle& meddle, const Check& check)
    {
        int failed = 0;
        for (int number = 0;; ++number) {
            SCOPED_TRACE(number);
            FaultyDisk disk;
            disk.failAt(number, EIO, false);
            disk.failFrom(number + later);
            bool isSaved = true;
            try {
                save();
            } catch (const IoError&) {
                isSaved = false;
                ++failed;
            }
            if (disk.count() <= number) {
                break;
            }
            disk.heal();
            waitForTheClock();
            meddle(path());
            std::string conflict;
            try {
                save();
            } catch (const Error& error) {
                conflict = error.what();
            }
            check(conflict, isSaved);
            if (HasFailure()) {
                break;
            }
            start();
        }
        start();
        return failed;
    }
};

TEST_F(AnUndoneSave, DoesNotFollowALinkThatTookTheProjectsPlaceInPart)
{
    afterEach(
        [this](const QString& project) {
            putLocal(m_directory.path("outside/moved/a"), "precious");
            putLocal(m_directory.path("outside/file"), "precious");
            for (const char* const directory : {"new", "y", "x"}) {
                const QString at = project + q("/") + q(directory);
                if (QFile::rename(at, m_directory.path("aside") + q(directory))) {
                    QFile::link(m_directory.path("outside"), at);
                }
            }
        },
        [this](const std::string& /*conflict*/, bool /*isSaved*/) {
            EXPECT_EQ(getLocal(m_directory.path("outside/moved/a")), "precious");
            EXPECT_EQ(getLocal(m_directory.path("outside/file")), "precious");
            for (const char* const name : {"asidenew", "asidey", "asidex"}) {
                removeTree(m_directory.path(name).toStdString());
            }
        });
}

TEST_F(AnUndoneSave, DestroysNothingThatSomebodyWroteSince)
{
    afterEach(
        [](const QString& project) {
            for (const char* const file : {"changed", "new/file", "new/added"}) {
                const QString at = project + q("/") + q(file);
                if (QFileInfo(QFileInfo(at).path()).isDir()) {
                    putLocal(at, "somebody's");
                }
            }
        },
        [this](const std::string& conflict, bool isSaved) {
            EXPECT_EQ(getLocal(path() + q("/changed")), "somebody's") << conflict;
            if (!isSaved) {
                EXPECT_FALSE(conflict.empty());
                m_model->save(m_directory.path("elsewhere"), ArchiveFormat::Directory, true);
                EXPECT_EQ(treeOf(ProjectModel(m_directory.path("elsewhere"))), m_new);
            }
        });
}

TEST(AnUndoneDirectory, IsLeftToWhomeverPutSomethingInItsPlace)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("project");
    int left = 0;
    for (int number = 0;; ++number) {
        SCOPED_TRACE(number);
        ProjectModel model;
        model.writeFile(q("a"), "1");
        model.save(path, ArchiveFormat::Directory, true);
        model.mkdir(q("new"), false);
        model.writeFile(q("a"), "2");
        {
            FaultyDisk disk;
            disk.failAt(number, EIO, true);
            try {
                model.save(QString(), ArchiveFormat::Source, true);
            } catch (const IoError&) {
            }
            if (disk.count() <= number) {
                break;
            }
        }
        const std::string made = (path + q("/new")).toStdString();
        if (isDirectory(made) && JournalDirectory::isPending(Place::of(path.toStdString()))) {
            ASSERT_EQ(::rmdir(made.c_str()), 0);
            ASSERT_EQ(::symlink("../elsewhere", made.c_str()), 0);
            EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), AlreadyExists);
            EXPECT_EQ(getLocal(path + q("/a")), "1");
            ASSERT_EQ(::unlink(made.c_str()), 0);
            ++left;
        }
        model.save(QString(), ArchiveFormat::Source, true);
        EXPECT_EQ(treeOf(ProjectModel(path)), treeOf(model));
        removeTree(path.toStdString());
    }
    EXPECT_GT(left, 1);
}

} // namespace pk::project::test
