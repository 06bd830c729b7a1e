#include "support.hpp"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>

namespace KX::test {
namespace {

const QByteArray a_stale = "stale";

/// Puts something else into every order file and box file, which the tree does not look at until
/// it is saved. Boxes keep one that can be read.
void spoilFiles(ProjectModel& model)
{
    for (const std::string& file : filesOf(model)) {
        const bool isBox = q(file).endsWith(q(".bhx"));
        model.writeFile(q(file), isBox ? boxFile(R"(tooltip="spoilt")") : a_stale);
    }
}

bool isWritten(const ProjectModel& model, const std::string& file)
{
    const QByteArray bytes = model.readFile(q(file));
    return bytes != a_stale && bytes != boxFile(R"(tooltip="spoilt")") && !bytes.isEmpty();
}

Library treeWithBoxes()
{
    return open(project({{"A/box.bhx", boxFile()},
                         {"B/C/D/", {}},
                         {"B/E/box.bhx", boxFile()},
                         {"F/behavior.bhx", boxFile()}}));
}

// saveFolder()

TEST(SaveFolder, OfAFolderWithoutChildrenWritesAnEmptyElement)
{
    const Library library = open(project({{"A/", {}}}));
    library->projectModel().remove(q("A/bxlinfo"));
    library->boxRoot()->child(0)->saveFolder();
    const auto root = element(library->projectModel().readFile(q("A/bxlinfo")).toStdString());
    EXPECT_EQ(root->beacon(), "Folder");
    EXPECT_TRUE(root->mixedChildren().empty());
    EXPECT_FALSE(root->text());
}

TEST(SaveFolder, ListsTheNamesOfTheChildrenInTheirOrder)
{
    const Library library = open(project({{"F/A%3a/", {}}, {"F/B/box.bhx", boxFile()}}));
    BoxLibraryNode* const folder = library->boxRoot()->child(0);
    folder->moveChildren(0, 0, 2);
    EXPECT_EQ(orderIn(library->projectModel(), "F"), (Names{"A:", "B"}));
    folder->saveFolder();
    EXPECT_EQ(orderIn(library->projectModel(), "F"), (Names{"B", "A:"}));
}

TEST(SaveFolder, ListsANameOfTwoChildrenTwice)
{
    const Library library = open(project({{"A%2FB/", {}}, {"A%2fB/", {}}, {"A/", {}}}));
    library->boxRoot()->saveFolder();
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "A/B", "A/B"}));
}

TEST(SaveFolder, LeavesOutANameThatXmlCannotHold)
{
    const Library library = open(project({{"a\x01/", {}}, {"b/", {}}}));
    const LogRecords log;
    library->boxRoot()->saveFolder();
    EXPECT_EQ(orderIn(library->projectModel()), Names{"b"});
    ASSERT_EQ(log.of("kxboxlibrary").size(), 1U);
    EXPECT_EQ(log.of("kxboxlibrary")[0].level, pk::log::Warning);
}

TEST(SaveFolder, DoesNothingWithoutAProject)
{
    const LogRecords log;
    BoxLibraryNode node;
    node.saveFolder();
    EXPECT_TRUE(log.all().empty());
    EXPECT_EQ(node.project(), nullptr);
}

TEST(SaveFolder, LeavesWhatIsInTheWay)
{
    const LogRecords log;
    const Library library = open(project({{"A/bxlinfo/file", "in the way"}}));
    library->boxRoot()->child(0)->saveFolder();
    EXPECT_TRUE(library->boxRoot()->child(0)->save());
    EXPECT_EQ(library->projectModel().readFile(q("A/bxlinfo/file")), QByteArray("in the way"));
    EXPECT_TRUE(log.all().empty());
}

TEST(SaveFolder, ThrowsWhenTheFileCannotBeWrittenWhole)
{
    const Library library = open(ProjectModel());
    const FileSizeLimit limit(4);
    EXPECT_THROW(library->boxRoot()->saveFolder(), std::runtime_error);
}

// save()

TEST(NodeSave, OfAFolderWritesItsOwnOrderFileAlone)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    EXPECT_TRUE(library->boxRoot()->child("B")->save());
    EXPECT_EQ(orderIn(library->projectModel(), "B"), (Names{"C", "E"}));
    EXPECT_FALSE(isWritten(library->projectModel(), "bxlinfo"));
    EXPECT_FALSE(isWritten(library->projectModel(), "B/C/bxlinfo"));
    EXPECT_FALSE(isWritten(library->projectModel(), "B/E/box.bhx"));
}

TEST(NodeSave, OfABoxWritesItsBoxFileFromWhatIsInIt)
{
    const Library library = treeWithBoxes();
    BoxLibraryNode* const box = library->boxRoot()->child("F");
    EXPECT_TRUE(box->save());
    EXPECT_EQ(filesOf(library->projectModel(), "F"), Names{"box.bhx"});
    library->projectModel().writeFile(q("F/box.bhx"), boxFile(R"(tooltip="t")", "<Diagram/>"));
    EXPECT_TRUE(box->save());
    EXPECT_NE(box->loadBoxData(), boxFile(R"(tooltip="t")", "<Diagram/>"));
    EXPECT_EQ(box->loadBox()->attribute("tooltip", std::string()), "t");
    EXPECT_TRUE(box->loadBox()->firstChild("Diagram"));
}

TEST(NodeSave, LeavesTheLibraryAsDirtyAsItWas)
{
    const Library library = treeWithBoxes();
    EXPECT_TRUE(library->boxRoot()->saveAll());
    EXPECT_TRUE(library->boxRoot()->child(0)->save());
    EXPECT_FALSE(library->isDirty());
    library->setDirty(true);
    EXPECT_TRUE(library->boxRoot()->saveAll());
    EXPECT_TRUE(library->boxRoot()->child(0)->save());
    EXPECT_TRUE(library->isDirty());
}

TEST(NodeSave, WithoutAProjectDoesNothingAndSucceeds)
{
    BoxLibraryNode folder;
    EXPECT_TRUE(folder.save());
    EXPECT_TRUE(folder.saveAll());
    BoxLibraryNode box;
    box.init(description("Box"));
    EXPECT_TRUE(box.save());
    EXPECT_TRUE(box.saveAll());
}

void expectSaveError(const pk::log::Record& record, const char* function, int line,
                     const std::string& message)
{
    EXPECT_EQ(record.level, pk::log::Error);
    EXPECT_EQ(record.category, "kxboxlibrary");
    EXPECT_EQ(record.file, "gui/lib/desktop/kxboxlibrary/src/box_library_node");
    EXPECT_EQ(record.function, function);
    EXPECT_EQ(record.line, line);
    EXPECT_EQ(record.message.rfind(message, 0), 0U) << record.message;
}

TEST(NodeSave, LogsWhyABoxWasNotSaved)
{
    const Library library = treeWithBoxes();
    library->projectModel().remove(q("B/E/box.bhx"));
    const LogRecords log;
    EXPECT_FALSE(library->boxRoot()->child("B")->child("E")->save());
    EXPECT_FALSE(library->isDirty());
    EXPECT_FALSE(library->projectModel().hasFile(q("B/E/box.bhx")));
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 1U);
    expectSaveError(records[0], "save", 616, "Could not save node B/E, reason: no box to write");
}

TEST(NodeSave, LogsWhyTheRootWasNotSaved)
{
    const Library library = treeWithBoxes();
    const LogRecords log;
    {
        const FileSizeLimit limit(4);
        EXPECT_FALSE(library->boxRoot()->save());
    }
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B", "F"}));
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 1U);
    expectSaveError(records[0], "save", 616,
                    "Could not save node , reason: could not write 'bxlinfo': ");
    EXPECT_NE(records[0].message.find(": File too large"), std::string::npos);
}

TEST(NodeSave, PassesOnWhatIsNoStandardException)
{
    const Library library = treeWithBoxes();
    const LogHook hook([](const pk::log::Record& /*record*/) { throw 42; });
    EXPECT_THROW(library->boxRoot()->child("A")->save(), int);
    EXPECT_THROW(library->boxRoot()->saveAll(), int);
}

// Saving a box logs, so a handler can do what it likes in the middle of it.
TEST(NodeSave, HoldsTheBoxDataMeanwhile)
{
    const Library library = treeWithBoxes();
    BoxLibraryNode* const box = library->boxRoot()->child("A");
    const boost::weak_ptr<BoxData> data = box->boxData();
    bool alive = false;
    {
        const LogHook hook([&](const pk::log::Record& /*record*/) {
            box->setBoxDataInternal(nullptr);
            alive = !data.expired();
        });
        EXPECT_TRUE(box->save());
    }
    EXPECT_TRUE(alive);
    EXPECT_TRUE(data.expired());
}

// saveAll()

TEST(NodeSaveAll, WritesEveryOrderFileAndBoxFile)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    EXPECT_TRUE(library->boxRoot()->saveAll());
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"A/box.bhx", "B/C/D/bxlinfo", "B/C/bxlinfo", "B/E/box.bhx", "B/bxlinfo",
                     "F/box.bhx", "bxlinfo"}));
    for (const std::string& file : filesOf(library->projectModel())) {
        EXPECT_TRUE(isWritten(library->projectModel(), file)) << file;
    }
}

TEST(NodeSaveAll, OfANodeWritesNothingAboveOrBeside)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    EXPECT_TRUE(library->boxRoot()->child("B")->saveAll());
    EXPECT_TRUE(isWritten(library->projectModel(), "B/bxlinfo"));
    EXPECT_TRUE(isWritten(library->projectModel(), "B/C/D/bxlinfo"));
    EXPECT_TRUE(isWritten(library->projectModel(), "B/E/box.bhx"));
    EXPECT_FALSE(isWritten(library->projectModel(), "A/box.bhx"));
    EXPECT_FALSE(isWritten(library->projectModel(), "bxlinfo"));
}

TEST(NodeSaveAll, OfABoxIsToSaveIt)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    EXPECT_TRUE(library->boxRoot()->child("A")->saveAll());
    EXPECT_TRUE(isWritten(library->projectModel(), "A/box.bhx"));
    library->projectModel().remove(q("A/box.bhx"));
    const LogRecords log;
    EXPECT_FALSE(library->boxRoot()->child("A")->saveAll());
    ASSERT_EQ(log.of("kxboxlibrary").size(), 1U);
    expectSaveError(log.of("kxboxlibrary")[0], "saveAll", 643, "Could not save node A, reason: ");
}

TEST(NodeSaveAll, WritesTheOrderOfMovedChildren)
{
    const Library library = treeWithBoxes();
    library->boxRoot()->moveChildren(0, 0, 3);
    library->boxRoot()->child("B")->moveChildren(1, 1, 0);
    EXPECT_TRUE(library->boxRoot()->saveAll());
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "F", "A"}));
    EXPECT_EQ(orderIn(library->projectModel(), "B"), (Names{"E", "C"}));
}

TEST(NodeSaveAll, SavesTheOthersWhenABoxFails)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    library->projectModel().writeFile(q("A/box.bhx"), "damaged");
    library->projectModel().remove(q("B/E/box.bhx"));
    const LogRecords log;
    EXPECT_TRUE(library->boxRoot()->saveAll());
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 2U);
    expectSaveError(records[0], "saveAll", 643, "Could not save node A, reason: ");
    expectSaveError(records[1], "saveAll", 643, "Could not save node B/E, reason: ");
    EXPECT_EQ(library->projectModel().readFile(q("A/box.bhx")), QByteArray("damaged"));
    EXPECT_TRUE(isWritten(library->projectModel(), "F/box.bhx"));
    EXPECT_TRUE(isWritten(library->projectModel(), "B/C/D/bxlinfo"));
}

// The order file of the root is too long for the limit, those below are not.
TEST(NodeSaveAll, LeavesTheChildrenWhenItsOwnFileFails)
{
    const Library library =
        open(project({{std::string(100, 'a') + "/", {}}, {"B/", {}}, {"C/box.bhx", boxFile()}}));
    spoilFiles(library->projectModel());
    const LogRecords log;
    {
        const FileSizeLimit limit(100);
        EXPECT_FALSE(library->boxRoot()->saveAll());
    }
    EXPECT_FALSE(isWritten(library->projectModel(), "B/bxlinfo"));
    EXPECT_FALSE(isWritten(library->projectModel(), "C/box.bhx"));
    ASSERT_EQ(log.of("kxboxlibrary").size(), 1U);
    expectSaveError(log.of("kxboxlibrary")[0], "saveAll", 643, "Could not save node , reason: ");
}

TEST(NodeSaveAll, SavesTheChildrenThatWereThereWhenItBegan)
{
    const Library library = treeWithBoxes();
    spoilFiles(library->projectModel());
    bool moved = false;
    {
        const LogHook hook([&](const pk::log::Record& /*record*/) {
            if (!std::exchange(moved, true)) {
                library->boxRoot()->moveChildren(1, 1, 0);
                library->boxRoot()->appendChild("New");
                library->projectModel().writeFile(q("New/bxlinfo"), a_stale);
            }
        });
        EXPECT_TRUE(library->boxRoot()->saveAll());
    }
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "A", "F", "New"}));
    EXPECT_TRUE(isWritten(library->projectModel(), "B/bxlinfo"));
    EXPECT_TRUE(isWritten(library->projectModel(), "F/box.bhx"));
    EXPECT_FALSE(isWritten(library->projectModel(), "New/bxlinfo"));
}

// Loading writes every order file into the project model, with the same bytes most of the time.

/// By what a file is recognised that nobody wrote to.
std::array<long, 3> fileState(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(path.toLocal8Bit().constData(), &status), 0);
    return {static_cast<long>(status.st_ino), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void makeOld(const QString& path)
{
    const std::array<struct timespec, 2> times = {{{1000, 7}, {1000, 7}}};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.toLocal8Bit().constData(), times.data(), 0), 0);
}

TEST(SavingAfterLoading, LeavesUnchangedOrderFilesOnTheDiskAlone)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("library");
    treeWithBoxes()->saveTo(path, BoxLibrary::Directory);
    const std::array<QString, 4> untouched = {path + q("/bxlinfo"), path + q("/B/bxlinfo"),
                                              path + q("/B/C/D/bxlinfo"), path + q("/A/box.bhx")};
    std::vector<std::array<long, 3>> before;
    for (const QString& file : untouched) {
        makeOld(file);
        before.push_back(fileState(file));
    }
    putLocal(path + q("/B/C/bxlinfo"), "foreign");
    const Library library = open(ProjectModel(path));
    library->save();
    for (std::size_t i = 0; i < untouched.size(); ++i) {
        EXPECT_EQ(fileState(untouched.at(i)), before[i]) << untouched.at(i).toStdString();
    }
    EXPECT_EQ(getLocal(path + q("/B/C/bxlinfo")),
              library->projectModel().readFile(q("B/C/bxlinfo")));
    EXPECT_NE(getLocal(path + q("/B/C/bxlinfo")), QByteArray("foreign"));
}

} // namespace
} // namespace KX::test
