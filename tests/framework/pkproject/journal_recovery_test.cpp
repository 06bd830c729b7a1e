#include "another_user.hpp"
#include "journal_directory.hpp"
#include "journalled_save.hpp"
#include "log_records.hpp"
#include "power_loss.hpp"
#include "unsaved_work.hpp"

#include <pk/project/error.hpp>

#include <QProcess>

#include <algorithm>
#include <ctime>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace pk::project::test {

namespace {

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

TEST_F(AJournalledSave, SaysWhyItCantBeCompleted)
{
    ASSERT_TRUE(dieAt(20));
    ASSERT_EQ(::chmod(m_directory.path().toStdString().c_str(), 0777), 0);
    for (const QString& each : {m_directory.path(".project.kxjournal"), path()}) {
        if (::geteuid() == 0) {
            ASSERT_EQ(QProcess::execute(q("chown"), {q("-R"), q("65534"), each}), 0);
        }
    }
    const auto message = [&] {
        const AnotherUser user;
        return messageOf<IoError>([&] { const ProjectModel model(path()); });
    };
    const std::string why = place().journal() + "/collect: the save that it is part of can't be "
                                                "completed: ";
    ASSERT_EQ(::chmod(path().toStdString().c_str(), 0555), 0);
    EXPECT_EQ(message().substr(0, why.size()), why);
    ASSERT_EQ(::chmod(m_directory.path().toStdString().c_str(), 0555), 0);
    EXPECT_EQ(message(), place().journal() +
                             ": the save that it is part of can't be completed, "
                             "because '" +
                             place().parent + "' can't be written");
    ASSERT_EQ(::chmod(m_directory.path().toStdString().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(path().toStdString().c_str(), 0755), 0);
    const AnotherUser user;
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

TEST_F(AJournalledSave, WithALongMadeUpJournalIsCompletedSoon)
{
    constexpr int a_items = 50'000;
    Journal chain;
    for (int item = 0; item < a_items; ++item) {
        chain.collects.push_back({{item - 1, "a/b/c/d/e/f/g/h"}, item, {}});
    }
    const QString journal = m_directory.path(".project.kxjournal");
    putLocal(journal + q("/put"), chain.toBytes());
    for (int item = a_items - 300; item < a_items; ++item) {
        putLocal(journal + q("/") + QString::number(item), QByteArray::number(item));
    }
    const std::clock_t before = std::clock();
    EXPECT_EQ(contentsOf(treeOf(ProjectModel(path()))).count("49999"), 1U);
    EXPECT_LT(std::clock() - before, 20 * CLOCKS_PER_SEC);
}

} // namespace pk::project::test
