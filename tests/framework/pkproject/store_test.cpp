#include "faulty_disk.hpp"
#include "store.hpp"
#include "support.hpp"
#include "zip_support.hpp"

#include <pk/project/error.hpp>

#include <cerrno>
#include <ostream>
#include <unistd.h>

namespace pk::project::test {

// What the store promises beyond single operations: of saves that fail, of two models on one place,
// of streams, and of what is left behind.
class BothForms : public testing::TestWithParam<Form>
{
protected:
    QString path() const { return m_directory.path("p"); }
    ArchiveFormat form() const { return formatOf(GetParam()); }
    ProjectModel make() const
    {
        ProjectModel model;
        model.writeFile(q("a"), "1");
        model.writeFile(q("d/b"), "2");
        model.save(path(), form(), true);
        return model;
    }
    static void saveInPlace(ProjectModel& model)
    {
        model.save(QString(), ArchiveFormat::Source, true);
    }

    TemporaryDirectory m_directory;
};

INSTANTIATE_TEST_SUITE_P(Both, BothForms, testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(BothForms, NeedAPathForAProjectThatWasNeverSaved)
{
    ProjectModel model;
    EXPECT_NE(messageOf<Error>([&] { model.save(QString(), form(), true); }).find("never saved"),
              std::string::npos);
}

TEST_P(BothForms, NamePathAndReasonOfATargetThatCanNotBeWritten)
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

TEST_P(BothForms, TakeTheLongestNameThatTheFileSystemTakes)
{
    ProjectModel model = make();
    model.writeFile(q(std::string(255, 'f')), "1");
    model.save(m_directory.path(std::string(255, 'p')), form(), true);
    saveInPlace(model);
    EXPECT_EQ(treeOf(ProjectModel(m_directory.path(std::string(255, 'p')))), treeOf(model));
}

TEST_P(BothForms, SurviveAFullDiskAtEveryPoint)
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

TEST_P(BothForms, LetTheFirstOfTwoModelsWin)
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

TEST_P(BothForms, KeepStreamsValidAcrossASave)
{
    ProjectModel model = make();
    FILE* const reader = model.fopen(q("d/b"), q("rb"));
    FILE* const writer = model.fopen(q("a"), q("wb"));
    ASSERT_NE(reader, nullptr);
    ASSERT_NE(writer, nullptr);
    put(writer, "before");
    model.writeFile(q("d/b"), "other");
    saveInPlace(model);
    EXPECT_EQ(ProjectModel(path()).readFile(q("a")), QByteArray("before"));
    put(writer, " after");
    EXPECT_EQ(std::fgetc(reader), '2');
    close(reader);
    close(writer);
    EXPECT_EQ(model.readFile(q("a")), QByteArray("before after"));
    saveInPlace(model);
    EXPECT_EQ(ProjectModel(path()).readFile(q("a")), QByteArray("before after"));
}

TEST_P(BothForms, KeepStreamsValidWhenTheModelIsGone)
{
    FILE* stream = nullptr;
    {
        ProjectModel model = make();
        stream = model.fopen(q("a"), q("w+b"));
        ASSERT_NE(stream, nullptr);
    }
    put(stream, "text");
    std::rewind(stream);
    EXPECT_EQ(std::fgetc(stream), 't');
    close(stream);
}

TEST_P(BothForms, LeaveNothingInTheTemporaryDirectory)
{
    const TemporaryFiles files;
    {
        ProjectModel model = make();
        ProjectModel other;
        model.writeFile(q("x"), "1");
        other.importFile(model, QString(), q("all"), true);
        other.save(m_directory.path("other"), form(), true);
        model = ProjectModel(path());
        model.getFileLocalPath(q("a"));
        close(model.fopen(q("y"), q("wb")));
        model.remove(q("y"));
        saveInPlace(model);
    }
    EXPECT_TRUE(files.tree().empty()) << testing::PrintToString(files.tree());
}

TEST_P(BothForms, ImportADirectoryIntoItself)
{
    ProjectModel model = make();
    model.importFile(model, QString(), q("d/copy"), true);
    EXPECT_EQ(treeOf(model), (Tree{{"a", "1"},
                                   {"d/", ""},
                                   {"d/b", "2"},
                                   {"d/copy/", ""},
                                   {"d/copy/a", "1"},
                                   {"d/copy/d/", ""},
                                   {"d/copy/d/b", "2"}}));
    const Tree before = treeOf(model);
    model.importFile(model, q("d"), q("d"), true);
    EXPECT_EQ(treeOf(model), before);
    saveInPlace(model);
    EXPECT_EQ(treeOf(ProjectModel(path())), before);
}

TEST_P(BothForms, ShareImportedFilesUntilOneSideChanges)
{
    ProjectModel model = make();
    model.writeFile(q("staged"), "shared");
    ProjectModel other;
    other.importFile(model, QString(), q("in"), true);
    EXPECT_EQ(stampOf(other.getFileLocalPath(q("in/staged"))),
              stampOf(model.getFileLocalPath(q("staged"))));
    model.writeFile(q("staged"), "mine");
    model.writeFile(q("a"), "mine");
    EXPECT_EQ(other.readFile(q("in/staged")), QByteArray("shared"));
    EXPECT_EQ(other.readFile(q("in/a")), QByteArray("1"));
    putThroughStream(other, "in/d/b", "theirs");
    EXPECT_EQ(model.readFile(q("d/b")), QByteArray("2"));
    saveInPlace(model);
    EXPECT_EQ(other.readFile(q("in/staged")), QByteArray("shared"));
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

TEST(Store, KnowsAMissingPath)
{
    const TemporaryDirectory directory;
    const QString missing = directory.path("missing");
    EXPECT_EQ(messageOf<PathNotFound>([&] { const ProjectModel model(missing); }),
              "'" + missing.toStdString() + "': no such file or directory");
    EXPECT_THROW(ProjectModel{QString()}, PathNotFound);
}

TEST(Store, RefusesWhatIsNeitherAFileNorADirectory)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo(directory.path("pipe").toStdString().c_str(), 0644), 0);
    EXPECT_THROW(ProjectModel{directory.path("pipe")}, FormatError);
    EXPECT_THROW(ProjectModel{q("/dev/null")}, Error);
}

TEST(Store, RefusesToSaveAProjectInsideOrAroundItself)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.save(directory.path("p"), ArchiveFormat::Directory, true);
    EXPECT_THROW(model.save(directory.path("p/below"), ArchiveFormat::Zip, true), InvalidPath);
    EXPECT_THROW(model.save(directory.path(), ArchiveFormat::Directory, true), InvalidPath);
    EXPECT_EQ(treeOf(ProjectModel(directory.path("p"))), treeOf(model));
}

TEST(Store, RefusesAnUnknownFormat)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    EXPECT_THROW(model.save(directory.path("p"), static_cast<ArchiveFormat>(3), true), Error);
    EXPECT_FALSE(QFileInfo::exists(directory.path("p")));
}

} // namespace pk::project::test
