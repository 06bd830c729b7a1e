#include "journal_directory.hpp"
#include "journalled_save.hpp"
#include "unsaved_work.hpp"

#include <cerrno>
#include <unistd.h>

namespace pk::project::test {

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

TEST_F(AnUndoneSave, TakesNothingForItsOwnThatWouldBeInTheWay)
{
    afterEach(
        [](const QString& project) {
            if (!QFileInfo::exists(project + q("/gone"))) {
                putLocal(project + q("/gone"), "somebody's");
            }
        },
        [this](const std::string& conflict, bool isSaved) {
            if (!isSaved && getLocal(path() + q("/gone")) == "somebody's") {
                EXPECT_NE(conflict.find("'" + (path() + q("/gone")).toStdString() + "' was added"),
                          std::string::npos)
                    << conflict;
            }
        });
}

TEST(AnUndoneSaveOfFiles, KeepsTheMetadataThatSomebodyWroteSince)
{
    const TemporaryDirectory directory;
    int undone = 0;
    for (int number = 0;; ++number) {
        SCOPED_TRACE(number);
        const QString path = directory.path("p" + std::to_string(number));
        ProjectModel model;
        model.writeFile(q("a"), "1");
        model.writeFile(q("b"), "1");
        model.setMetadata(q("k"), q("old"));
        model.save(path, ArchiveFormat::Directory, true);
        model.writeFile(q("a"), "2");
        model.writeFile(q("b"), "2");
        {
            FaultyDisk disk;
            disk.failAt(number, EIO, true);
            if (trySave(model)) {
                break;
            }
        }
        waitForTheClock();
        putLocal(path + q("/.kxproject"), R"({"k": "somebody's"})");
        model.setMetadata(q("k"), q("mine"));
        EXPECT_THROW(saveInPlace(model), ConflictError);
        EXPECT_EQ(getLocal(path + q("/.kxproject")), R"({"k": "somebody's"})");
        EXPECT_EQ(getLocal(path + q("/a")), "1");
        ++undone;
    }
    EXPECT_GT(undone, 10);
}

// A new directory can have the inode of one that is gone.
TEST(AnUndoneRename, DoesNotTakeAnotherJournalDirectoryForItsOwn)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("project");
    putLocal(path + q("/f"), "f new");
    putLocal(path + q("/g"), "g old");
    putLocal(directory.path(".project.kxjournal/0.old"), "g old");
    const Place place = Place::of(path.toStdString());
    JournalDirectory::Unfinished unfinished;
    unfinished.journal.puts = {{"f", 0, 0, true, {1, 2, 3}}};
    unfinished.isWritten = false;
    unfinished.file = Stamp::of(statOf(place.path + "/f").value());
    unfinished.directory = statOf(place.journal()).value().st_ino;
    unfinished.put = {unfinished.file};
    EXPECT_FALSE(JournalDirectory::undoUnfinished(place, unfinished));
    EXPECT_EQ(getLocal(path + q("/f")), "f new");
    unfinished.journal.puts.front().before = Stamp::of(statOf(place.journal() + "/0.old").value());
    EXPECT_TRUE(JournalDirectory::undoUnfinished(place, unfinished));
    EXPECT_EQ(getLocal(path + q("/f")), "g old");
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
                saveInPlace(model);
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
            EXPECT_THROW(saveInPlace(model), AlreadyExists);
            EXPECT_EQ(getLocal(path + q("/a")), "1");
            ASSERT_EQ(::unlink(made.c_str()), 0);
            ++left;
        }
        saveInPlace(model);
        EXPECT_EQ(treeOf(ProjectModel(path)), treeOf(model));
        removeTree(path.toStdString());
    }
    EXPECT_GT(left, 1);
}

} // namespace pk::project::test
