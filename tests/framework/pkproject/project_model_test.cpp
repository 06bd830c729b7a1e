#include "support.hpp"

#include <pk/project/project.hpp>

#include <sys/stat.h>

namespace pk::project::test {

namespace {

/// A model with a little of everything, saved in the form of the parameter and opened again.
class ModelInBothForms : public testing::TestWithParam<Form>
{
protected:
    void SetUp() override
    {
        ProjectModel fresh;
        fresh.setMetadata(q("title"), q("Démo"));
        fresh.writeFile(q("bxlinfo"), "<Folder/>");
        fresh.writeFile(q("Motions/Walk/box.bhx"), "walk");
        fresh.writeFile(q("Motions/Walk/images/a.png"), "png");
        fresh.writeFile(q("Motions/Walk/images-b"), "b");
        fresh.mkdir(q("Motions/Empty"), false);
        fresh.save(path(), formatOf(GetParam()), false);
    }

    QString path() const { return m_directory.path("Library"); }
    QString other() const { return m_directory.path("Other"); }
    static void saveAndCheck(ProjectModel& model)
    {
        const Tree expected = treeOf(model);
        model.save(QString(), ArchiveFormat::Source, true);
        EXPECT_EQ(treeOf(model), expected);
        EXPECT_EQ(treeOf(ProjectModel(model.getSourcePath())), expected);
    }

private:
    const TemporaryDirectory m_directory;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Both, ModelInBothForms, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST(EmptyModel, HasNoSourceAndNothingInIt)
{
    const ProjectModel model;
    EXPECT_EQ(model.getSourcePath(), QString());
    EXPECT_EQ(model.getMetadata(q("title")), QString());
    EXPECT_EQ(model.getFileList(QString(), true, true, false), QStringList());
}

TEST(EmptyModel, CanBeSavedAndOpenedInBothForms)
{
    const TemporaryDirectory directory;
    for (const ArchiveFormat format : {ArchiveFormat::Directory, ArchiveFormat::Zip}) {
        ProjectModel model;
        const QString path = directory.path(format == ArchiveFormat::Zip ? "a.bxl" : "a");
        model.save(path, format, false);
        EXPECT_EQ(treeOf(ProjectModel(path)), Tree());
    }
}

TEST(OpeningAModel, RefusesAMissingPath)
{
    const TemporaryDirectory directory;
    EXPECT_THROW(ProjectModel(directory.path("missing")), PathNotFound);
    EXPECT_THROW(ProjectModel(directory.path("missing/deeper")), PathNotFound);
    EXPECT_THROW(ProjectModel{QString()}, PathNotFound);
}

TEST(OpeningAModel, GivesTheAbsolutePathAsItsSource)
{
    const TemporaryDirectory directory;
    QDir().mkpath(directory.path("Lib"));
    EXPECT_EQ(ProjectModel(directory.path() + q("/./Lib/")).getSourcePath(), directory.path("Lib"));
}

TEST_P(ModelInBothForms, IsMovedWithoutLosingEdits)
{
    ProjectModel model(path());
    model.writeFile(q("new"), "1");
    ProjectModel moved(std::move(model));
    EXPECT_TRUE(moved.hasFile(q("new")));
    ProjectModel assigned;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.readFile(q("new")), QByteArray("1"));
    EXPECT_EQ(assigned.getSourcePath(), path());
}

TEST_P(ModelInBothForms, KeepsMetadataOutOfTheFiles)
{
    ProjectModel model(path());
    EXPECT_EQ(model.getMetadata(q("title")), q("Démo"));
    EXPECT_FALSE(model.hasFile(q(".kxproject")));
    EXPECT_FALSE(model.getFileList(QString(), false, false, false).contains(q(".kxproject")));
    EXPECT_EQ(model.readFile(q(".kxproject")), QByteArray());
    EXPECT_EQ(model.fopen(q(".kxproject"), q("rb")), nullptr);
    EXPECT_EQ(model.fopen(q(".kxproject"), q("wb")), nullptr);
    EXPECT_THROW(model.writeFile(q(".kxproject"), "x"), InvalidPath);
    EXPECT_THROW(model.remove(q(".kxproject")), PathNotFound);
    EXPECT_THROW(model.move(q("bxlinfo"), q(".kxproject"), true), InvalidPath);
    EXPECT_THROW(model.importFile(model, q("bxlinfo"), q(".kxproject"), true), InvalidPath);
    model.writeFile(q("Motions/.kxproject"), "an ordinary file");
    EXPECT_TRUE(model.hasFile(q("Motions/.kxproject")));
}

TEST_P(ModelInBothForms, SavesMetadata)
{
    ProjectModel model(path());
    model.setMetadata(q("title"), QString());
    model.setMetadata(q("Type"), q("\"quoted\"\n"));
    model.save(QString(), ArchiveFormat::Source, true);
    const ProjectModel again(path());
    EXPECT_EQ(again.getMetadata(q("title")), QString());
    EXPECT_EQ(again.getMetadata(q("Type")), q("\"quoted\"\n"));
}

TEST_P(ModelInBothForms, SharesMetadataWithProject)
{
    ProjectModel model(path());
    model.save(other(), ArchiveFormat::Directory, false);
    Project project(other().toStdString());
    EXPECT_EQ(project.getMetadata("title"), "Démo");
    project.setMetadata("title", "Other");
    EXPECT_EQ(ProjectModel(other()).getMetadata(q("title")), q("Other"));
}

TEST_P(ModelInBothForms, FindsFilesOnly)
{
    const ProjectModel model(path());
    EXPECT_TRUE(model.hasFile(q("Motions/Walk/box.bhx")));
    EXPECT_FALSE(model.hasFile(q("Motions/Walk")));
    EXPECT_FALSE(model.hasFile(q("Motions/Run")));
    EXPECT_FALSE(model.hasFile(QString()));
}

TEST_P(ModelInBothForms, ReadsThroughStreamsBytesAndLocalFiles)
{
    ProjectModel model(path());
    const QString file = q("Motions/Walk/box.bhx");
    EXPECT_EQ(model.readFile(file), QByteArray("walk"));
    EXPECT_EQ(getLocal(model.getFileLocalPath(file)), QByteArray("walk"));
    EXPECT_TRUE(QFileInfo(model.getFileLocalPath(file)).isAbsolute());
    FILE* const stream = model.fopen(file, q("rb"));
    ASSERT_NE(stream, nullptr);
    char bytes[8] = {};
    EXPECT_EQ(std::fread(bytes, 1, sizeof bytes, stream), 4U);
    EXPECT_STREQ(bytes, "walk");
    EXPECT_EQ(std::fclose(stream), 0);
    EXPECT_EQ(model.getFileBytes(file, 4), QByteArray("walk"));
    EXPECT_NE(messageOf<LimitError>([&] { model.getFileBytes(file, 3); }).find("more than the 3"),
              std::string::npos);
    EXPECT_EQ(model.readFile(q("missing")), QByteArray());
    EXPECT_EQ(model.readFile(q("Motions")), QByteArray());
    EXPECT_THROW(model.getFileBytes(q("missing"), 4), PathNotFound);
    EXPECT_THROW(model.getFileBytes(q("Motions"), 4), PathNotFound);
    EXPECT_THROW(model.getFileLocalPath(q("missing")), PathNotFound);
    EXPECT_THROW(model.getFileLocalPath(q("Motions")), PathNotFound);
}

struct StreamCase
{
    const char* name;
    const char* path;
    const char* mode;
    bool opens;
    const char* bytesAfterWritingX; ///< what the file holds when "X" was written; null: not written
};

class StreamMode : public testing::TestWithParam<StreamCase>
{
};

TEST_P(StreamMode, IsThatOfTheCLibrary)
{
    const StreamCase& c = GetParam();
    const TemporaryDirectory directory;
    for (const Form form : {Form::Directory, Form::Archive}) {
        ProjectModel model;
        model.writeFile(q("old"), "abc");
        model.mkdir(q("dir"), false);
        const QString place = directory.path(form == Form::Directory ? "d" : "a");
        model.save(place, formatOf(form), false);
        FILE* const stream = model.fopen(q(c.path), q(c.mode));
        ASSERT_EQ(stream != nullptr, c.opens);
        if (stream == nullptr) {
            EXPECT_EQ(treeOf(model), Tree({{"dir/", ""}, {"old", "abc"}}));
            continue;
        }
        if (c.bytesAfterWritingX != nullptr) {
            EXPECT_EQ(std::fputc('X', stream), 'X');
        }
        EXPECT_EQ(std::fclose(stream), 0);
        if (c.bytesAfterWritingX != nullptr) {
            EXPECT_EQ(model.readFile(q(c.path)), QByteArray(c.bytesAfterWritingX));
            EXPECT_EQ(ProjectModel(place).readFile(q("old")), QByteArray("abc"));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, StreamMode,
    testing::Values(StreamCase{"Read", "old", "r", true, nullptr},
                    StreamCase{"ReadMissing", "new", "rb", false, nullptr},
                    StreamCase{"ReadDirectory", "dir", "rb", false, nullptr},
                    StreamCase{"Write", "old", "wb", true, "X"},
                    StreamCase{"WriteNew", "new", "w", true, "X"},
                    StreamCase{"WriteDirectory", "dir", "wb", false, nullptr},
                    StreamCase{"WriteBelowNothing", "none/new", "wb", false, nullptr},
                    StreamCase{"WriteBelowFile", "old/new", "wb", false, nullptr},
                    StreamCase{"WriteNewOnly", "old", "wx", false, nullptr},
                    StreamCase{"WriteNewOnlyNew", "new", "wbx", true, "X"},
                    StreamCase{"Append", "old", "ab", true, "abcX"},
                    StreamCase{"AppendNew", "new", "a", true, "X"},
                    StreamCase{"Update", "old", "r+b", true, "Xbc"},
                    StreamCase{"UpdateMissing", "new", "r+", false, nullptr},
                    StreamCase{"WriteUpdate", "old", "w+", true, "X"},
                    StreamCase{"NoMode", "old", "", false, nullptr},
                    StreamCase{"UnknownMode", "old", "q", false, nullptr},
                    StreamCase{"Top", "", "wb", false, nullptr}),
    [](const auto& c) { return std::string(c.param.name); });

TEST_P(ModelInBothForms, TakesStreamsWrittenAfterASaveForTheNextOne)
{
    ProjectModel model(path());
    FILE* const writer = model.fopen(q("bxlinfo"), q("wb"));
    FILE* const reader = model.fopen(q("Motions/Walk/box.bhx"), q("rb"));
    ASSERT_NE(writer, nullptr);
    ASSERT_NE(reader, nullptr);
    EXPECT_GE(std::fputs("one", writer), 0);
    EXPECT_EQ(std::fflush(writer), 0);
    model.remove(q("Motions"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(ProjectModel(path()).readFile(q("bxlinfo")), QByteArray("one"));
    char bytes[8] = {};
    EXPECT_EQ(std::fread(bytes, 1, sizeof bytes, reader), 4U);
    EXPECT_STREQ(bytes, "walk");
    EXPECT_GE(std::fputs(" two", writer), 0);
    EXPECT_EQ(std::fclose(writer), 0);
    EXPECT_EQ(std::fclose(reader), 0);
    EXPECT_EQ(model.readFile(q("bxlinfo")), QByteArray("one two"));
    EXPECT_EQ(ProjectModel(path()).readFile(q("bxlinfo")), QByteArray("one"));
    saveAndCheck(model);
    EXPECT_EQ(ProjectModel(path()).readFile(q("bxlinfo")), QByteArray("one two"));
}

TEST_P(ModelInBothForms, WritesOnlyWithTheNextSave)
{
    ProjectModel model(path());
    const Tree before = treeOf(model);
    model.writeFile(q("a/b/c"), "new");
    model.remove(q("Motions/Walk"));
    model.move(q("bxlinfo"), q("info"), false);
    EXPECT_EQ(treeOf(ProjectModel(path())), before);
    saveAndCheck(model);
    EXPECT_NE(treeOf(ProjectModel(path())), before);
}

TEST_P(ModelInBothForms, MakesDirectories)
{
    ProjectModel model(path());
    model.mkdir(q("Motions/Empty"), false);
    model.mkdir(q("x"), false);
    model.mkdir(q("y/z/"), true);
    model.mkdir(QString(), false);
    EXPECT_THROW(model.mkdir(q("none/z"), false), PathNotFound);
    EXPECT_THROW(model.mkdir(q("bxlinfo"), true), AlreadyExists);
    EXPECT_THROW(model.mkdir(q("bxlinfo/z"), true), AlreadyExists);
    EXPECT_EQ(model.getFileList(QString(), true, false, true),
              QStringList({q("Motions"), q("x"), q("y")}));
    saveAndCheck(model);
}

TEST_P(ModelInBothForms, MovesFilesAndDirectories)
{
    ProjectModel model(path());
    model.move(q("./Motions"), q("Moves"), false);
    EXPECT_EQ(model.readFile(q("Moves/Walk/box.bhx")), QByteArray("walk"));
    EXPECT_FALSE(model.hasFile(q("Motions/Walk/box.bhx")));
    model.move(q("Moves/Walk/box.bhx"), q("deep/er/box.bhx"), false);
    model.move(q("bxlinfo"), q("bxlinfo"), false);
    EXPECT_THROW(model.move(q("missing"), q("x"), true), PathNotFound);
    EXPECT_THROW(model.move(q("Moves"), q("Moves/Walk/in"), true), InvalidPath);
    EXPECT_THROW(model.move(q("Moves/Walk"), q("Moves"), true), InvalidPath);
    EXPECT_THROW(model.move(QString(), q("x"), true), InvalidPath);
    EXPECT_THROW(model.move(q("Moves"), QString(), true), InvalidPath);
    EXPECT_THROW(model.move(q("Moves"), q("bxlinfo/x"), true), AlreadyExists);
    saveAndCheck(model);
}

TEST_P(ModelInBothForms, MovesOverWhatIsThereOnlyWhenToldTo)
{
    ProjectModel model(path());
    model.writeFile(q("other"), "other");
    EXPECT_THROW(model.move(q("other"), q("bxlinfo"), false), AlreadyExists);
    model.move(q("other"), q("bxlinfo"), true);
    EXPECT_EQ(model.readFile(q("bxlinfo")), QByteArray("other"));
    model.move(q("bxlinfo"), q("Motions"), true);
    EXPECT_EQ(treeOf(model), Tree({{"Motions", "other"}}));
    saveAndCheck(model);
}

TEST_P(ModelInBothForms, SwapsTwoDirectories)
{
    ProjectModel model(path());
    model.writeFile(q("Other/box.bhx"), "other");
    model.save(QString(), ArchiveFormat::Source, true);
    model.move(q("Other"), q("tmp"), false);
    model.move(q("Motions"), q("Other"), false);
    model.move(q("tmp"), q("Motions"), false);
    EXPECT_EQ(model.readFile(q("Motions/box.bhx")), QByteArray("other"));
    EXPECT_EQ(model.readFile(q("Other/Walk/box.bhx")), QByteArray("walk"));
    saveAndCheck(model);
}

TEST_P(ModelInBothForms, RemovesFilesDirectoriesAndEverything)
{
    ProjectModel model(path());
    model.remove(q("Motions/Walk/images"));
    model.remove(q("bxlinfo"));
    EXPECT_THROW(model.remove(q("bxlinfo")), PathNotFound);
    EXPECT_THROW(model.remove(q("Motions/none")), PathNotFound);
    saveAndCheck(model);
    model.remove(QString());
    EXPECT_EQ(treeOf(model), Tree());
    saveAndCheck(model);
    EXPECT_EQ(ProjectModel(path()).getMetadata(q("title")), q("Démo"));
}

TEST_P(ModelInBothForms, ImportsTrueCopiesFromAnotherModel)
{
    ProjectModel source(path());
    source.writeFile(q("Motions/Walk/staged"), "staged");
    ProjectModel copy;
    copy.importFile(source, q("Motions/Walk"), QString(), true);
    const Tree expected{{"box.bhx", "walk"},
                        {"images-b", "b"},
                        {"images/", ""},
                        {"images/a.png", "png"},
                        {"staged", "staged"}};
    EXPECT_EQ(treeOf(copy), expected);
    source.writeFile(q("Motions/Walk/staged"), "changed");
    source.writeFile(q("Motions/Walk/box.bhx"), "changed");
    source.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(treeOf(copy), expected);
    copy.writeFile(q("staged"), "mine");
    EXPECT_EQ(source.readFile(q("Motions/Walk/staged")), QByteArray("changed"));
    source = ProjectModel();
    copy.save(other(), formatOf(GetParam()), false);
    EXPECT_EQ(ProjectModel(other()).readFile(q("box.bhx")), QByteArray("walk"));
}

TEST_P(ModelInBothForms, ImportsFromItselfAlsoIntoItsOwnDirectory)
{
    ProjectModel model(path());
    model.importFile(model, q("Motions"), q("Motions/Walk/Copy"), true);
    EXPECT_EQ(model.readFile(q("Motions/Walk/Copy/Walk/box.bhx")), QByteArray("walk"));
    EXPECT_FALSE(model.hasFile(q("Motions/Walk/Copy/Walk/Copy/Walk/box.bhx")));
    model.writeFile(q("Motions/Walk/box.bhx"), "changed");
    EXPECT_EQ(model.readFile(q("Motions/Walk/Copy/Walk/box.bhx")), QByteArray("walk"));
    model.importFile(model, q("Motions/Walk/Copy/Walk/box.bhx"), q("file"), false);
    model.importFile(model, QString(), q("All"), true);
    model.importFile(model, q("file"), q("file"), false);
    model.remove(q("Motions"));
    EXPECT_EQ(model.readFile(q("file")), QByteArray("walk"));
    EXPECT_EQ(model.readFile(q("All/Motions/Walk/box.bhx")), QByteArray("changed"));
    saveAndCheck(model);
}

TEST_P(ModelInBothForms, ImportsWithoutSubdirectoriesWhenNotRecursive)
{
    const ProjectModel source(path());
    ProjectModel copy;
    copy.importFile(source, q("Motions/Walk"), q("Walk"), false);
    EXPECT_EQ(treeOf(copy),
              Tree({{"Walk/", ""}, {"Walk/box.bhx", "walk"}, {"Walk/images-b", "b"}}));
}

TEST_P(ModelInBothForms, RefusesImportsThatCantBeAndKeepsAsItWas)
{
    const ProjectModel source(path());
    ProjectModel model(path());
    model.writeFile(q("x/Walk"), "a file");
    model.mkdir(q("y/bxlinfo"), true);
    const Tree before = treeOf(model);
    EXPECT_THROW(model.importFile(source, q("none"), q("z"), true), PathNotFound);
    EXPECT_THROW(model.importFile(source, q("Motions"), q("x"), true), AlreadyExists);
    EXPECT_THROW(model.importFile(source, QString(), q("y"), true), AlreadyExists);
    EXPECT_THROW(model.importFile(source, q("bxlinfo"), QString(), true), InvalidPath);
    EXPECT_THROW(model.importFile(source, q("Motions"), q(".git"), true), InvalidPath);
    EXPECT_EQ(treeOf(model), before);
}

TEST_P(ModelInBothForms, LeavesReservedNamesOutOfAnImportToTheTop)
{
    ProjectModel source(path());
    source.writeFile(q("Motions/.kxproject"), "nested");
    source.writeFile(q("Motions/.git/config"), "nested");
    ProjectModel copy;
    copy.importFile(source, q("Motions"), QString(), true);
    EXPECT_EQ(copy.getFileList(QString(), true, false, false),
              QStringList({q("Empty"), q("Walk")}));
    copy.importFile(source, q("Motions"), q("in"), true);
    EXPECT_TRUE(copy.hasFile(q("in/.git/config")));
}

TEST_P(ModelInBothForms, ExportsFilesAndDirectories)
{
    const ProjectModel model(path());
    model.exportFile(q("Motions/Walk"), other(), true);
    EXPECT_EQ(getLocal(other() + q("/box.bhx")), QByteArray("walk"));
    EXPECT_EQ(getLocal(other() + q("/images/a.png")), QByteArray("png"));
    model.exportFile(q("Motions/Walk"), other(), true);
    model.exportFile(q("bxlinfo"), other() + q("/info"), true);
    EXPECT_EQ(getLocal(other() + q("/info")), QByteArray("<Folder/>"));
    EXPECT_THROW(model.exportFile(q("none"), other(), true), PathNotFound);
    EXPECT_THROW(model.exportFile(q("bxlinfo"), other() + q("/no/where"), true), IoError);
    EXPECT_THROW(model.exportFile(q("bxlinfo"), QString(), true), InvalidPath);
    model.exportFile(QString(), other() + q("/flat"), false);
    EXPECT_EQ(QDir(other() + q("/flat"))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList(q("bxlinfo")));
}

TEST_P(ModelInBothForms, NeverExportsOutsideItsTarget)
{
    const TemporaryDirectory outside;
    putLocal(outside.path("box.bhx"), "precious");
    ProjectModel model(path());
    QDir().mkpath(other());
    ASSERT_TRUE(QFile::link(outside.path(), other() + q("/images")));
    EXPECT_THROW(model.exportFile(q("Motions/Walk"), other(), true), IoError);
    ASSERT_TRUE(QFile::remove(other() + q("/images")));
    QFile::remove(other() + q("/box.bhx"));
    ASSERT_TRUE(QFile::link(outside.path("box.bhx"), other() + q("/box.bhx")));
    model.exportFile(q("Motions/Walk"), other(), true);
    EXPECT_EQ(getLocal(other() + q("/box.bhx")), QByteArray("walk"));
    EXPECT_EQ(treeOf(outside.path()).size(), 1U);
    EXPECT_EQ(getLocal(outside.path("box.bhx")), QByteArray("precious"));
}

TEST_P(ModelInBothForms, KeepsOrChangesTheForm)
{
    ProjectModel model(path());
    model.save(other(), ArchiveFormat::Unspecified, false);
    EXPECT_EQ(QFileInfo(other()).isDir(), GetParam() == Form::Directory);
    EXPECT_EQ(model.getSourcePath(), other());
    const bool toArchive = GetParam() == Form::Directory;
    model.save(other(), toArchive ? ArchiveFormat::Zip : ArchiveFormat::Directory, true);
    EXPECT_EQ(QFileInfo(other()).isDir(), !toArchive);
    EXPECT_EQ(treeOf(ProjectModel(other())), treeOf(ProjectModel(path())));
    EXPECT_EQ(leftBeside(other()), QStringList());
    EXPECT_THROW(model.save(other(), static_cast<ArchiveFormat>(5), true), Error);
}

TEST(SavingAModel, WithoutAFormMakesADirectory)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.save(directory.path("x.bxl"), ArchiveFormat::Source, true);
    EXPECT_TRUE(QFileInfo(directory.path("x.bxl")).isDir());
}

TEST(SavingAModel, ThatWasNeverSavedNeedsAPath)
{
    ProjectModel model;
    model.writeFile(q("a"), "1");
    EXPECT_NE(messageOf<Error>([&] {
                  model.save(QString(), ArchiveFormat::Source, true);
              }).find("never saved"),
              std::string::npos);
    EXPECT_EQ(model.readFile(q("a")), QByteArray("1"));
}

TEST_P(ModelInBothForms, RefusesATargetThatExists)
{
    ProjectModel model(path());
    model.writeFile(q("new"), "1");
    putLocal(other(), "precious");
    EXPECT_THROW(model.save(other(), formatOf(GetParam()), false), AlreadyExists);
    EXPECT_THROW(model.save(path(), formatOf(GetParam()), false), AlreadyExists);
    EXPECT_EQ(getLocal(other()), QByteArray("precious"));
    model.save(other(), formatOf(GetParam()), true);
    EXPECT_EQ(treeOf(ProjectModel(other())), treeOf(model));
}

TEST(SavingAModel, InsideItselfOrAroundItselfIsRefused)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("outer/Library");
    putLocal(path + q("/a"), "1");
    ProjectModel model(path);
    model.writeFile(q("b"), "2");
    for (const char* const inside : {"outer/Library/copy", "outer/Library/a.bxl", "outer"}) {
        EXPECT_THROW(model.save(directory.path(inside), ArchiveFormat::Directory, true),
                     InvalidPath);
        EXPECT_THROW(model.save(directory.path(inside), ArchiveFormat::Zip, true), InvalidPath);
    }
    EXPECT_EQ(treeOf(directory.path("outer")).size(), 2U);
    model.save(directory.path("copy"), ArchiveFormat::Directory, false);
}

TEST_P(ModelInBothForms, NamesThePathAndTheReasonOfAFailedSaveAndCanBeSavedElsewhere)
{
    ProjectModel model(path());
    const std::string longName(300, 'n');
    model.writeFile(QString::fromStdString(longName), "1");
    const Tree edited = treeOf(model);
    const Tree saved = treeOf(ProjectModel(path()));
    if (GetParam() == Form::Directory) {
        const std::string message =
            messageOf<IoError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
        EXPECT_NE(message.find(longName), std::string::npos) << message;
        EXPECT_NE(message.find("File name too long"), std::string::npos) << message;
    }
    const QString nowhere = path() + q("-none/deeper");
    const std::string message =
        messageOf<IoError>([&] { model.save(nowhere, formatOf(GetParam()), true); });
    EXPECT_NE(message.find(nowhere.toStdString()), std::string::npos) << message;
    EXPECT_EQ(treeOf(model), edited);
    EXPECT_EQ(treeOf(ProjectModel(path())), saved);
    EXPECT_EQ(model.getSourcePath(), path());
    model.save(other(), ArchiveFormat::Zip, false);
    EXPECT_EQ(treeOf(model), edited);
    EXPECT_EQ(leftBeside(path()), QStringList());
}

TEST_P(ModelInBothForms, LetsTheFirstOfTwoModelsWinAndTheOtherSaveElsewhere)
{
    ProjectModel first(path());
    ProjectModel second(path());
    first.writeFile(q("first"), "1");
    second.writeFile(q("second"), "2");
    first.save(QString(), ArchiveFormat::Source, true);
    const std::string message =
        messageOf<ConflictError>([&] { second.save(QString(), ArchiveFormat::Source, true); });
    EXPECT_NE(message.find(path().toStdString()), std::string::npos);
    if (GetParam() == Form::Directory) {
        EXPECT_NE(message.find("'first' was added"), std::string::npos) << message;
    }
    EXPECT_TRUE(ProjectModel(path()).hasFile(q("first")));
    second.save(other(), ArchiveFormat::Unspecified, false);
    EXPECT_EQ(ProjectModel(other()).readFile(q("second")), QByteArray("2"));
    first.writeFile(q("first"), "11");
    saveAndCheck(first);
}

TEST_P(ModelInBothForms, SavesNothingWhenNothingChanged)
{
    struct stat before = {};
    ASSERT_EQ(::stat(path().toStdString().c_str(), &before), 0);
    ProjectModel model(path());
    model.writeFile(q("x"), "1");
    model.remove(q("x"));
    model.move(q("Motions"), q("m"), false);
    model.move(q("m"), q("Motions"), false);
    model.setMetadata(q("title"), q("x"));
    model.setMetadata(q("title"), q("Démo"));
    model.save(QString(), ArchiveFormat::Source, true);
    struct stat after = {};
    ASSERT_EQ(::stat(path().toStdString().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
}

TEST_P(ModelInBothForms, KnowsTheSizesOfFiles)
{
    ProjectModel model(path());
    EXPECT_EQ(model.getFileSize(q("Motions/Walk/box.bhx")), 4);
    model.writeFile(q("Motions/Walk/box.bhx"), "longer");
    EXPECT_EQ(model.getFileSize(q("Motions/Walk/box.bhx")), 6);
    model.move(q("Motions/Walk"), q("Run"), false);
    EXPECT_EQ(model.getFileSize(q("Run/images/a.png")), 3);
    EXPECT_THROW(model.getFileSize(q("Run")), PathNotFound);
    EXPECT_THROW(model.getFileSize(q("none")), PathNotFound);
}

} // namespace pk::project::test
