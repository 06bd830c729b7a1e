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
    int inTheWay = 0;
    afterEach(
        [](const QString& project) {
            if (!QFileInfo::exists(project + q("/gone"))) {
                putLocal(project + q("/gone"), "somebody's");
            }
        },
        [&](const std::string& conflict, bool isSaved) {
            if (!isSaved && getLocal(path() + q("/gone")) == "somebody's") {
                EXPECT_NE(conflict.find("'" + (path() + q("/gone")).toStdString() + "' was added"),
                          std::string::npos)
                    << conflict;
                ++inTheWay;
            }
        });
    EXPECT_GT(inTheWay, 10);
}

/// A save fails, and its undoing as well, from each operation in turn on; then the disk works
/// again.
class AnUndoneSaveOfFiles : public testing::Test
{
protected:
    // `edit` changes a project of these files; `then` gets it, and its path, after each failure.
    // Gives the number of these.
    template <class Edit, class Then>
    int forEach(const Files& files, const Edit& edit, const Then& then)
    {
        for (int number = 0;; ++number) {
            const QString path = m_directory.path("p" + std::to_string(++m_paths));
            SCOPED_TRACE(path.toStdString());
            ProjectModel model;
            model.setMetadata(q("k"), q("old"));
            saveFiles(model, files, path);
            edit(model);
            {
                FaultyDisk disk;
                disk.failAt(number, EIO, true);
                if (trySave(model)) {
                    return number;
                }
            }
            then(model, path);
        }
    }

    TemporaryDirectory m_directory;
    int m_paths = 0;
};

TEST_F(AnUndoneSaveOfFiles, KeepsTheMetadataThatSomebodyWroteSince)
{
    const int undone = forEach(
        {{"a", "1"}, {"b", "1"}},
        [](ProjectModel& model) {
            model.writeFile(q("a"), "2");
            model.writeFile(q("b"), "2");
        },
        [](ProjectModel& model, const QString& path) {
            waitForTheClock();
            putLocal(path + q("/.kxproject"), R"({"k": "somebody's"})");
            model.setMetadata(q("k"), q("mine"));
            EXPECT_THROW(saveInPlace(model), ConflictError);
            EXPECT_EQ(getLocal(path + q("/.kxproject")), R"({"k": "somebody's"})");
            EXPECT_EQ(getLocal(path + q("/a")), "1");
        });
    EXPECT_GT(undone, 10);
}

TEST_F(AnUndoneSaveOfFiles, KeepsAFolderThatSomebodyMadeInTheirPlace)
{
    for (const char* const file : {"a", "c"}) {
        const int undone = forEach(
            {{"a", "1"}, {"b", "1"}},
            [](ProjectModel& model) {
                for (const char* const each : {"a", "b", "c"}) {
                    model.writeFile(q(each), "2");
                }
            },
            [file](ProjectModel& model, const QString& path) {
                const QString place = path + q("/") + q(file);
                QFile::remove(place);
                putLocal(place + q("/precious"), "somebody's");
                EXPECT_THROW(saveInPlace(model), ConflictError);
                EXPECT_EQ(getLocal(place + q("/precious")), "somebody's");
            });
        EXPECT_GT(undone, 20);
    }
}

TEST_F(AnUndoneSaveOfFiles, SaysWhatItHasNoPlaceFor)
{
    int refused = 0;
    forEach(
        {{"a", "1"}, {"d/f", "f"}},
        [](ProjectModel& model) {
            model.writeFile(q("a"), "2");
            model.remove(q("d/f"));
        },
        [&refused](ProjectModel& model, const QString& path) {
            if (QDir(path).rmdir(q("d"))) {
                EXPECT_NE(
                    messageOf<ConflictError>([&] { saveInPlace(model); }).find("d' was removed"),
                    std::string::npos);
                ++refused;
            }
        });
    EXPECT_GT(refused, 2);
}

// The disk refuses the next attempt too, from any operation on.
TEST(AnUndoneSwap, IsUndoneHoweverOftenThatIsTried)
{
    const TemporaryDirectory directory;
    int tried = 0;
    bool failed = true;
    for (int first = 0; failed; ++first) {
        bool failedAgain = true;
        for (int second = 0; failedAgain; ++second) {
            SCOPED_TRACE(std::to_string(first) + ", then " + std::to_string(second));
            const QString path = directory.path("p");
            removeTree(path.toStdString());
            removeTree(Place::of(path.toStdString()).journal());
            ProjectModel model;
            saveFiles(model, {{"a", "A"}, {"b", "B"}}, path);
            model.move(q("a"), q("t"), false);
            model.move(q("b"), q("a"), false);
            model.move(q("t"), q("b"), false);
            FaultyDisk disk;
            disk.failAt(first, EIO, true);
            failed = !trySave(model);
            disk.failAt(disk.count() + second, EIO, true);
            failedAgain = failed && !trySave(model);
            disk.heal();
            EXPECT_NO_THROW(saveInPlace(model));
            EXPECT_EQ(getLocal(path + q("/a")), "B");
            tried += failedAgain ? 1 : 0;
        }
    }
    EXPECT_GT(tried, 200);
}

// The place of the project is away for a while, as that of a disk that was unplugged.
TEST(AnUndoneSaveElsewhere, IsKnownWhenThePlaceComesBack)
{
    class Unplugged : public FaultyDisk
    {
    public:
        explicit Unplugged(const QString& place) : m_place(place.toStdString()) {}
        void comeBack() const
        {
            ASSERT_TRUE(!m_isAway || ::rename((m_place + " away").c_str(), m_place.c_str()) == 0);
        }

    protected:
        void fail(const std::string& path) override
        {
            m_isAway = m_isAway || ::rename(m_place.c_str(), (m_place + " away").c_str()) == 0;
            errno = EIO;
            FaultyDisk::fail(path);
        }

    private:
        std::string m_place;
        bool m_isAway = false;
    };
    const TemporaryDirectory directory;
    bool failed = true;
    for (int number = 0; failed; ++number) {
        SCOPED_TRACE(number);
        const QString place = directory.path(std::to_string(number));
        const QString path = place + q("/p");
        QDir().mkdir(place);
        ProjectModel model;
        saveFiles(model, {{"a", "a"}, {"d/k", "k"}, {"m", "m"}}, path);
        model.writeFile(q("a"), "2");
        model.move(q("m"), q("d/m"), false);
        const Tree edited = treeOf(model);
        {
            Unplugged disk(place);
            disk.failAt(number, EIO, true);
            failed = !trySave(model);
            disk.comeBack();
        }
        const QString elsewhere = place + q("/elsewhere");
        model.save(elsewhere, ArchiveFormat::Directory, true);
        EXPECT_EQ(treeOf(ProjectModel(elsewhere)), edited);
    }
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
            const QByteArray before = getLocal(path + q("/a"));
            EXPECT_THROW(saveInPlace(model), ConflictError);
            EXPECT_EQ(getLocal(path + q("/a")), before);
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
