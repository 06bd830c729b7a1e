#include "faulty_disk.hpp"
#include "store_in_both_forms.hpp"

#include <pk/project/error.hpp>

#include <cerrno>
#include <ostream>

namespace pk::project::test {
namespace {

// Saves that fail or are refused, and what they leave alone.
class SavingInBothForms : public StoreInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(Both, SavingInBothForms, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST_P(SavingInBothForms, NeedAPathForAProjectThatWasNeverSaved)
{
    ProjectModel model;
    EXPECT_NE(messageOf<Error>([&] { model.save(QString(), form(), true); }).find("never saved"),
              std::string::npos);
}

TEST_P(SavingInBothForms, NamePathAndReasonOfATargetThatCanNotBeWritten)
{
    ProjectModel model = make();
    model.writeFile(q("a"), "edited");
    const Tree before = treeOf(model);
    for (const QString& target :
         {m_directory.path("missing/p"), q("/proc/p"), m_directory.path(std::string(300, 'n')),
          m_directory.path(std::string(5000, 'n'))}) {
        const std::string message = messageOf<IoError>([&] { model.save(target, form(), true); });
        EXPECT_NE(message.find(target.toStdString()), std::string::npos) << message;
        EXPECT_EQ(treeOf(model), before);
        EXPECT_EQ(model.getSourcePath(), path());
    }
    EXPECT_NE(messageOf<IoError>([&] {
                  model.save(m_directory.path(std::string(300, 'n')), form(), true);
              }).find("File name too long"),
              std::string::npos);
    model.save(m_directory.path("elsewhere"), form(), true);
    EXPECT_EQ(treeOf(ProjectModel(m_directory.path("elsewhere"))), before);
}

TEST_P(SavingInBothForms, TakeTheLongestNameThatTheFileSystemTakes)
{
    ProjectModel model = make();
    model.writeFile(q(std::string(255, 'f')), "1");
    model.save(m_directory.path(std::string(255, 'p')), form(), true);
    saveInPlace(model);
    EXPECT_EQ(treeOf(ProjectModel(m_directory.path(std::string(255, 'p')))), treeOf(model));
}

TEST_P(SavingInBothForms, RefuseMetadataThatCouldNotBeReadAgain)
{
    ProjectModel model = make();
    const Tree before = treeOf(m_directory.path());
    const QString large(5'000'000, QLatin1Char('x'));
    model.setMetadata(q("large"), large);
    model.writeFile(q("a"), "edited");
    for (const QString& target : {path(), m_directory.path("new")}) {
        EXPECT_NE(messageOf<LimitError>([&] {
                      model.save(target, form(), true);
                  }).find("it can't be saved: "),
                  std::string::npos);
        EXPECT_EQ(treeOf(m_directory.path()), before);
        EXPECT_EQ(model.getMetadata(q("large")), large);
    }
    model.setMetadata(q("large"), large.left(4'000'000));
    saveInPlace(model);
    EXPECT_EQ(ProjectModel(path()).getMetadata(q("large")).size(), 4'000'000);
}

TEST_P(SavingInBothForms, ThatFailedLeaveAloneWhatSomebodyElseSavedMeanwhile)
{
    for (int number = 0;; ++number) {
        SCOPED_TRACE(number);
        make();
        ProjectModel model(path());
        model.setMetadata(q("title"), q("Mine"));
        {
            FaultyDisk disk;
            disk.failAt(number, EIO, true); // so that it can't be undone either
            try {
                saveInPlace(model);
            } catch (const IoError&) {
            }
            if (disk.count() <= number) {
                break;
            }
        }
        ProjectModel other(path());
        other.setMetadata(q("title"), q("Theirs"));
        other.writeFile(q("a"), "theirs");
        saveInPlace(other);
        EXPECT_THROW(saveInPlace(model), ConflictError);
        EXPECT_EQ(ProjectModel(path()).getMetadata(q("title")), q("Theirs"));
        ASSERT_FALSE(HasFailure());
    }
}

// A disk that refuses everything in and beside one project from some operation on.
class DyingDisk : public FaultyDisk
{
public:
    explicit DyingDisk(const QString& project) : m_project(project.toStdString())
    {
        m_beside = m_project;
        m_beside.insert(m_beside.rfind('/') + 1, ".");
    }

protected:
    void fail(const std::string& path) override
    {
        if (path.compare(0, m_project.size(), m_project) == 0 ||
            path.compare(0, m_beside.size(), m_beside) == 0) {
            errno = EROFS;
            FaultyDisk::fail(path);
        }
    }

private:
    std::string m_project;
    std::string m_beside;
};

class UndoingInBothForms : public SavingInBothForms
{
protected:
    // A saved project with edits of many kinds.
    ProjectModel edited() const
    {
        make();
        ProjectModel model(path());
        for (const char* const file : {"e/f/1", "e/f/2", "e/3", "kept", "moved", "removed"}) {
            model.writeFile(q(file), file);
        }
        model.writeFile(q("large"), noise(1, 300'000));
        saveInPlace(model);
        model.importFile(model, q("a"), q("copy of a"), false);
        model.importFile(model, q("removed"), q("copy of removed"), false);
        model.remove(q("removed"));
        model.move(q("moved"), q("moved away"), false);
        model.writeFile(q("a"), "edited");
        model.writeFile(q("e/f/2"), "edited");
        model.move(q("e/f"), q("f"), false);
        model.move(q("e"), q("f/e"), false);
        model.move(q("d"), q("g"), false);
        model.writeFile(q("d/b"), "another");
        return model;
    }
    // Saves with a disk that fails once, and for good some operations later, and then elsewhere;
    // false when the save has not so many operations.
    bool saveBadly(int number, int later)
    {
        SCOPED_TRACE("it fails at operation " + std::to_string(number));
        ProjectModel model = edited();
        const Tree tree = treeOf(model);
        DyingDisk disk(path());
        disk.failAt(number, EROFS, false);
        disk.failFrom(number + later);
        m_failed += trySave(model) ? 0 : 1;
        if (disk.count() <= number) {
            return false;
        }
        EXPECT_EQ(treeOf(model), tree);
        EXPECT_EQ(getLocal(model.getFileLocalPath(q("f/e/3"))), "e/3");
        const QString other = m_directory.path("new");
        model.save(other, form(), true);
        disk.heal();
        EXPECT_EQ(treeOf(ProjectModel(other)), tree);
        model.writeFile(q("later"), "1");
        saveInPlace(model);
        EXPECT_EQ(treeOf(ProjectModel(other)), treeOf(model));
        removeTree(other.toStdString());
        return !HasFailure();
    }

    static bool trySave(ProjectModel& model)
    {
        try {
            saveInPlace(model);
        } catch (const IoError&) {
            return false;
        }
        return true;
    }

    int m_failed = 0;
};

INSTANTIATE_TEST_SUITE_P(Both, UndoingInBothForms, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

// The disk refuses to undo it twice, and then works again.
TEST_P(UndoingInBothForms, CanBeTriedAgainAndAgain)
{
    int failed = 0;
    for (int number = 0;; ++number) {
        for (int later = 0; later < 12; ++later) {
            SCOPED_TRACE(std::to_string(number) + ", then " + std::to_string(later));
            make();
            ProjectModel model(path());
            model.writeFile(q("a"), "edited");
            model.writeFile(q("d/b"), "edited");
            model.writeFile(q("d/c"), "new");
            const Tree edited = treeOf(model);
            FaultyDisk disk;
            disk.failAt(number, EIO, true);
            const bool isSaved = trySave(model);
            if (disk.count() <= number) {
                EXPECT_TRUE(isSaved);
                EXPECT_GT(failed, GetParam() == Form::Directory ? 100 : 10);
                return;
            }
            disk.failAt(disk.count() + later, EIO, true);
            failed += trySave(model) ? 0 : 1;
            ASSERT_EQ(treeOf(model), edited);
            disk.heal();
            saveInPlace(model);
            ASSERT_EQ(treeOf(ProjectModel(path())), edited);
        }
    }
}

TEST_P(UndoingInBothForms, ThatFailsLeavesAModelThatCanBeSavedElsewhere)
{
    for (const int later : {0, 1, 2, 4}) {
        SCOPED_TRACE("for good " + std::to_string(later) + " later");
        int number = 0;
        while (saveBadly(number, later)) {
            ++number;
        }
    }
    EXPECT_GT(m_failed, GetParam() == Form::Directory ? 100 : 20);
}

TEST_P(SavingInBothForms, SurviveAFullDiskAtEveryPoint)
{
    for (const bool inPlace : {true, false}) {
        for (int number = 0;; ++number) {
            SCOPED_TRACE("operation " + std::to_string(number));
            removeTree(m_directory.path("p").toStdString());
            removeTree(m_directory.path("new").toStdString());
            ProjectModel model = make();
            model.writeFile(q("a"), "edited");
            model.remove(q("d"));
            const Tree edited = treeOf(model);
            const Tree before = treeOf(m_directory.path());
            const QString target = inPlace ? path() : m_directory.path("new");
            bool failed = false;
            FaultyDisk disk;
            disk.failAt(number, ENOSPC, false);
            try {
                model.save(target, form(), true);
            } catch (const IoError& error) {
                failed = true;
                const std::string message = error.what();
                EXPECT_EQ(message.find(target.toStdString() + ": it can't be saved: "), 0U);
                EXPECT_NE(message.find("No space left on device"), std::string::npos) << message;
            }
            const bool reached = disk.count() > number;
            disk.heal();
            EXPECT_EQ(treeOf(model), edited);
            if (failed) {
                EXPECT_EQ(treeOf(m_directory.path()), before);
                EXPECT_EQ(model.getSourcePath(), path());
                model.save(m_directory.path("new"), form(), true);
            }
            EXPECT_EQ(treeOf(ProjectModel(model.getSourcePath())), edited);
            if (!reached || HasFailure()) {
                break;
            }
        }
    }
}

TEST_P(SavingInBothForms, LetTheFirstOfTwoModelsWin)
{
    make();
    ProjectModel first(path());
    ProjectModel second(path());
    first.writeFile(q("a"), "first");
    second.writeFile(q("d/b"), "second");
    saveInPlace(first);
    const std::string message = messageOf<ConflictError>([&] { saveInPlace(second); });
    EXPECT_EQ(message.find(path().toStdString() + ": changed by someone else"), 0U) << message;
    if (GetParam() == Form::Directory) {
        EXPECT_NE(message.find("'a' was changed"), std::string::npos) << message;
    }
    EXPECT_EQ(treeOf(ProjectModel(path())), treeOf(first));
    second.save(m_directory.path("elsewhere"), form(), true);
    EXPECT_EQ(ProjectModel(m_directory.path("elsewhere")).readFile(q("d/b")), QByteArray("second"));
}

// A version-controlled directory that a project is saved to.
class ARepository : public testing::TestWithParam<const char*>
{
};

TEST_P(ARepository, IsStillThereAfterEverySave)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p");
    putLocal(path + q("/") + q(GetParam()), "repository");
    putLocal(path + q("/old"), "old");
    const auto stamp = stampOf(path + q("/") + q(GetParam()));
    ProjectModel model;
    model.writeFile(q("a/b"), "1");
    model.save(path, ArchiveFormat::Directory, true);
    model.writeFile(q("a/b"), "2");
    model.save(QString(), ArchiveFormat::Source, true);
    model.remove(QString());
    model.writeFile(q("c"), "3");
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(treeOf(model), (Tree{{"c", "3"}}));
    EXPECT_EQ(treeOf(ProjectModel(path)), (Tree{{"c", "3"}}));
    EXPECT_EQ(stampOf(path + q("/") + q(GetParam())), stamp);
    const QString name = q(GetParam()).section(QLatin1Char('/'), 0, 0);
    EXPECT_FALSE(model.hasFile(q(GetParam())));
    EXPECT_THROW(model.move(name, q("x"), true), PathNotFound);
    EXPECT_THROW(model.writeFile(name, "x"), InvalidPath);
    model.exportFile(QString(), directory.path("out"), true);
    EXPECT_EQ(treeOf(directory.path("out")).size(), 1U);
    EXPECT_THROW(model.save(path, ArchiveFormat::Zip, true), AlreadyExists);
    EXPECT_EQ(stampOf(path + q("/") + q(GetParam())), stamp);
}

INSTANTIATE_TEST_SUITE_P(Names, ARepository,
                         testing::Values(".git/HEAD", ".hg/store", ".svn/wc.db", ".git"));

TEST(SavingAStore, RefusesToSaveAProjectInsideOrAroundItself)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.save(directory.path("p"), ArchiveFormat::Directory, true);
    EXPECT_THROW(model.save(directory.path("p/below"), ArchiveFormat::Zip, true), InvalidPath);
    EXPECT_THROW(model.save(directory.path(), ArchiveFormat::Directory, true), InvalidPath);
    EXPECT_EQ(treeOf(ProjectModel(directory.path("p"))), treeOf(model));
}

TEST(SavingAStore, RefusesAnUnknownFormat)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    EXPECT_THROW(model.save(directory.path("p"), static_cast<ArchiveFormat>(3), true), Error);
    EXPECT_FALSE(QFileInfo::exists(directory.path("p")));
}

} // namespace
} // namespace pk::project::test
