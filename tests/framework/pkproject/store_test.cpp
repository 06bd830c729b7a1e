#include "store.hpp"
#include "store_in_both_forms.hpp"
#include "zip_support.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <sys/stat.h>

namespace pk::project::test {
namespace {

// What the store promises beyond single operations: of two models on one place, of streams, and of
// what is left behind.
class BothForms : public StoreInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(Both, BothForms, testing::Values(Form::Directory, Form::Archive), nameOf);

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

// What the log of edits says, so that it can be done again under another umask.
TEST(AStore, NotesEachDirectoryThatItMakesWithItsMode)
{
    Store store;
    store.write({"made", "too", "file"}, "1");
    store.makeDirectory({"made"}, true);
    const std::string log = store.staging().directory() + "/" + EditLog::a_fileName;
    const EditHistory history = EditLog::read(openPath(log, O_RDONLY));
    ASSERT_EQ(history.operations.size(), 1U);
    std::vector<std::string> paths;
    for (const LoggedEdit& edit : history.operations[0]) {
        paths.push_back(edit.path);
        EXPECT_EQ(edit.mode, umaskLeaves(edit.kind == EditKind::MakeDirectory ? 0777 : 0666));
    }
    EXPECT_EQ(paths, std::vector<std::string>({"made", "made/too", "made/too/file"}));
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

} // namespace
} // namespace pk::project::test
