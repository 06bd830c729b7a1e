#include "support.hpp"

#include <QSignalSpy>

namespace KX::test {
namespace {

/// Name and kind of every node below one, in order, as "Folder{Box!}".
std::string treeText(const BoxLibraryNode& node)
{
    std::string text;
    for (const BoxLibraryNode* const child : node.children()) {
        text += text.empty() ? "" : " ";
        text += child->name() + (child->boxData() ? "!" : "{" + treeText(*child) + "}");
    }
    return text;
}

std::string treeText(const Library& library)
{
    return treeText(*library->boxRoot());
}

// Where the project is read from can matter to what is in it.

class LoadingFromDisk : public testing::TestWithParam<pk::project::ArchiveFormat>
{
protected:
    Library openFromDisk(ProjectModel model) const
    {
        model.save(path(), GetParam(), false);
        return open(ProjectModel(path()));
    }
    QString path() const { return m_directory.path("library.bxl"); }

private:
    TemporaryDirectory m_directory;
};

INSTANTIATE_TEST_SUITE_P(Forms, LoadingFromDisk,
                         testing::Values(pk::project::ArchiveFormat::Directory,
                                         pk::project::ArchiveFormat::Zip));

TEST_P(LoadingFromDisk, FollowsTheOrderFileAndPassesTranslationsOver)
{
    const Library library = openFromDisk(project({{"B/box.bhx", boxFile()},
                                                  {"A/C/", {}},
                                                  {"translations/fr.ts", R"(<TS language="fr"/>)"},
                                                  {"bxlinfo", orderFile({"A", "B"})}}));
    EXPECT_EQ(treeText(library), "A{C{}} B!");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "B"}));
}

TEST_P(LoadingFromDisk, TakesTheOrderOfTheProjectWhereThereIsNoOrderFile)
{
    const Library library = openFromDisk(
        project({{"B/", {}}, {"A/box.bhx", boxFile()}, {"translations/fr.ts", {}}, {"a/", {}}}));
    EXPECT_EQ(treeText(library), "A! B{} a{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "B", "a"}));
}

TEST_P(LoadingFromDisk, LeavesTheDiskAlone)
{
    const Library library = openFromDisk(project({{"A/B/", {}}}));
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"A/B/bxlinfo", "A/bxlinfo", "bxlinfo"}));
    EXPECT_EQ(filesOf(ProjectModel(path())), Names{});
}

// The order of children

TEST(Loading, MakesANodeOfTranslationsThatAreListed)
{
    const Library library = open(project(
        {{"A/", {}}, {"translations/", {}}, {"bxlinfo", orderFile({"translations", "A"})}}));
    EXPECT_EQ(treeText(library), "translations{} A{}");
}

TEST(Loading, PassesUnlistedTranslationsOverInEveryFolder)
{
    const Library library = open(project({{"A/translations/", {}}, {"A/B/", {}}}));
    EXPECT_EQ(treeText(library), "A{B{}}");
}

TEST(Loading, TakesANameThatIsListedTwiceOnce)
{
    const Library library =
        open(project({{"A/", {}}, {"B/", {}}, {"bxlinfo", orderFile({"B", "A", "B"})}}));
    EXPECT_EQ(treeText(library), "B{} A{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "A"}));
}

TEST(Loading, IgnoresAnOrderFileWithAnotherRoot)
{
    const Library library =
        open(project({{"A/", {}},
                      {"B/", {}},
                      {"bxlinfo", R"(<Order><Node name="B"/><Node name="A"/></Order>)"}}));
    EXPECT_EQ(treeText(library), "A{} B{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "B"}));
}

TEST(Loading, IgnoresADamagedOrderFileInSilence)
{
    const LogRecords log;
    const Library library =
        open(project({{"A/", {}}, {"B/", {}}, {"bxlinfo", R"(<Folder><Node name="B"/>)"}}));
    EXPECT_EQ(treeText(library), "A{} B{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "B"}));
    EXPECT_TRUE(log.all().empty());
}

TEST(Loading, DropsNamesWithoutADirectoryFromTheOrderFile)
{
    const Library library = open(project({{"A/", {}},
                                          {"file", "no directory"},
                                          {"B/", {}},
                                          {"bxlinfo", orderFile({"gone", "B", "file", "", "A"})}}));
    EXPECT_EQ(treeText(library), "B{} A{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "A"}));
}

TEST(Loading, DropsEntriesWithoutANameFromTheOrderFile)
{
    const Library library = open(project(
        {{"A/", {}}, {"B/", {}}, {"bxlinfo", R"(<Folder><Node/><Node name="B"/></Folder>)"}}));
    EXPECT_EQ(treeText(library), "B{} A{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "A"}));
}

TEST(Loading, AppendsUnlistedDirectories)
{
    const Library library = open(
        project({{"A/", {}}, {"B/", {}}, {"C/", {}}, {"D/", {}}, {"bxlinfo", orderFile({"C"})}}));
    EXPECT_EQ(treeText(library), "C{} A{} B{} D{}");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"C", "A", "B", "D"}));
}

TEST(Loading, FollowsTheOrderFileOfEveryFolder)
{
    const Library library = open(project({{"F/A/", {}},
                                          {"F/B/box.bhx", boxFile()},
                                          {"F/bxlinfo", orderFile({"B", "A"})},
                                          {"G/A/", {}},
                                          {"G/B/", {}}}));
    EXPECT_EQ(treeText(library), "F{B! A{}} G{A{} B{}}");
    EXPECT_EQ(orderIn(library->projectModel(), "F"), (Names{"B", "A"}));
    EXPECT_EQ(orderIn(library->projectModel(), "G"), (Names{"A", "B"}));
}

// The names in the order file are those of nodes, and find the directories that escaping gives.
TEST(Loading, FindsListedNamesByTheirFileNames)
{
    const Library library = open(project({{"A%2FB/", {}},
                                          {"A%2fB/box.bhx", boxFile()},
                                          {"C/", {}},
                                          {"bxlinfo", orderFile({"C", "A/B", "A%2FB"})}}));
    EXPECT_EQ(treeText(library), "C{} A/B! A/B{}");
    EXPECT_EQ(library->boxRoot()->child(2)->fileName(), "A%2FB");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"C", "A/B", "A/B"}));
}

// Names

TEST(Loading, TakesNamesFromTheDirectories)
{
    const Library library = open(project({{"%41%3a/box.bhx", boxFile(R"(tooltip="t")")},
                                          {"a\\b/", {}},
                                          {"50%/", {}},
                                          {"Box (2)/", {}}}));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A:", "50%", "Box (2)", "a\\b"}));
    EXPECT_EQ(library->boxRoot()->child(0)->fileName(), "%41%3a");
    EXPECT_EQ(library->boxRoot()->child(0)->path(), q("%41%3a"));
    EXPECT_EQ(library->boxRoot()->name(), "");
}

TEST(Loading, TakesAnEmptyNameFromADirectory)
{
    const Library library = open(project({{"%00x/box.bhx", boxFile()}}));
    BoxLibraryNode* const box = library->boxRoot()->child(0);
    EXPECT_EQ(box->name(), "");
    EXPECT_EQ(box->path(), q("%00x"));
    box->setName("Box");
    EXPECT_TRUE(library->projectModel().hasFile(q("Box/box.bhx")));
}

TEST(Loading, LeavesNamesThatXmlCannotHoldOutOfTheOrderFile)
{
    const LogRecords log;
    Library library =
        open(project({{"a\x01/", {}}, {"b%02/", {}}, {"c/", {}}, {"bxlinfo", orderFile({"c"})}}));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"c", "a\x01", "b\x02"}));
    EXPECT_EQ(orderIn(library->projectModel()), Names{"c"});
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 2U);
    for (const auto& record : records) {
        EXPECT_EQ(record.level, pk::log::Warning);
    }
    ProjectModel again;
    again.importFile(library->projectModel(), QString(), QString(), true);
    EXPECT_EQ(childNames(*open(std::move(again))->boxRoot()), (Names{"c", "a\x01", "b\x02"}));
}

// Boxes and folders

TEST(Loading, TakesADirectoryWithABoxFileForABoxWithoutChildren)
{
    const Library library = open(project({{"Box/box.bhx", boxFile(R"(tooltip="t")")},
                                          {"Box/images/a.png", "picture"},
                                          {"Box/Inner/box.bhx", boxFile()},
                                          {"Box/bxlinfo", orderFile({"Inner"})}}));
    const BoxLibraryNode* const box = library->boxRoot()->child(0);
    ASSERT_TRUE(box->boxData());
    EXPECT_EQ(box->boxData()->tooltip(), q("t"));
    EXPECT_TRUE(box->children().isEmpty());
    EXPECT_EQ(box->boxData()->parent(), box);
}

TEST(Loading, WritesNothingForABox)
{
    const Library library = open(project({{"Box/behavior.bhx", boxFile()}, {"Box/.metadata", {}}}));
    EXPECT_TRUE(library->boxRoot()->child(0)->boxData());
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"Box/.metadata", "Box/behavior.bhx", "bxlinfo"}));
    EXPECT_EQ(library->projectModel().readFile(q("Box/behavior.bhx")), boxFile());
}

TEST(Loading, TakesADirectoryWithoutAReadableBoxFileForAFolder)
{
    const Library library =
        open(project({{"A/box.bhx", "damaged"},
                      {"B/box.bhx", R"(<KinestraBox bhx_version="99"><Box/></KinestraBox>)"},
                      {"B/Inner/", {}},
                      {"C/box.bhx/", {}}}));
    EXPECT_EQ(treeText(library), "A{} B{Inner{}} C{box.bhx{}}");
    EXPECT_EQ(library->projectModel().readFile(q("A/box.bhx")), QByteArray("damaged"));
    EXPECT_EQ(orderIn(library->projectModel(), "A"), Names{});
}

TEST(Loading, IgnoresOtherFilesInAFolder)
{
    const Library library = open(project({{"readme", "text"}, {"A/picture.png", "picture"}}));
    EXPECT_EQ(treeText(library), "A{}");
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"A/bxlinfo", "A/picture.png", "bxlinfo", "readme"}));
}

TEST(Loading, TakesTheTopForABoxWhenItHoldsABoxFile)
{
    const Library library = open(project({{"box.bhx", boxFile(R"(tooltip="t")")}, {"A/", {}}}));
    ASSERT_TRUE(library->boxRoot()->boxData());
    EXPECT_EQ(library->boxRoot()->boxData()->tooltip(), q("t"));
    EXPECT_TRUE(library->boxRoot()->children().isEmpty());
    EXPECT_EQ(filesOf(library->projectModel()), Names{"box.bhx"});
}

TEST(Loading, MakesAnOrderFileForAnEmptyProject)
{
    const Library library = open(ProjectModel());
    EXPECT_EQ(orderIn(library->projectModel()), Names{});
    EXPECT_EQ(filesOf(library->projectModel()), Names{"bxlinfo"});
}

TEST(Loading, GoesOnInSilenceWhereAnOrderFileCannotBeWritten)
{
    const LogRecords log;
    const Library library = open(project({{"A/bxlinfo/", {}}, {"A/B/", {}}}));
    EXPECT_EQ(treeText(library), "A{B{} bxlinfo{}}");
    EXPECT_TRUE(log.all().empty());
}

TEST(Loading, LoadsADeepTree)
{
    std::string path = "d";
    for (int i = 0; i < 240; ++i) {
        path += "/d";
    }
    const Library library = open(project({{path + "/box.bhx", boxFile()}}));
    BoxLibraryNode* node = library->boxRoot();
    while (!node->children().isEmpty()) {
        node = node->child(0);
    }
    EXPECT_EQ(node->path(), q(path));
    EXPECT_TRUE(node->boxData());
}

TEST(Loading, WritesOrderFilesOnlyWhereTheyChange)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("library.bxl");
    open(project({{"A/B/box.bhx", boxFile()}, {"C/", {}}}))->saveTo(path, BoxLibrary::Directory);
    const auto local = [&path](const char* file) {
        return open(ProjectModel(path))->projectModel().getFileLocalPath(q(file));
    };
    EXPECT_EQ(local("bxlinfo"), path + q("/bxlinfo"));
    EXPECT_EQ(local("A/bxlinfo"), path + q("/A/bxlinfo"));
    QFile file(path + q("/A/bxlinfo"));
    ASSERT_TRUE(file.open(QIODevice::Append));
    ASSERT_EQ(file.write(" "), 1);
    file.close();
    EXPECT_EQ(local("bxlinfo"), path + q("/bxlinfo"));
    EXPECT_NE(local("A/bxlinfo"), path + q("/A/bxlinfo"));
}

TEST(Loading, ForwardsChangesToTheLibrary)
{
    const Library library = open(project({{"A/B/box.bhx", boxFile()}}));
    BoxLibraryNode* const box = library->boxRoot()->child(0)->child(0);
    std::vector<BoxLibraryNode*> changed;
    QObject::connect(library.get(), &BoxLibrary::dataChanged,
                     [&](BoxLibraryNode* node) { changed.push_back(node); });
    box->boxData()->setTooltip(q("new"));
    EXPECT_EQ(changed, std::vector<BoxLibraryNode*>{box});
    EXPECT_TRUE(library->isDirty());
}

TEST(Loading, LeavesTheNewLibraryClean)
{
    EXPECT_FALSE(open(project({{"A/B/", {}}}))->isDirty());
}

TEST(Loading, DoesNothingWithoutAProject)
{
    BoxLibraryNode node;
    node.initFromProject();
    EXPECT_EQ(node.name(), "");
    EXPECT_FALSE(node.boxData());
    EXPECT_TRUE(node.children().isEmpty());
}

// Exceptions. That nothing stays behind is what the leak check of the suite sees.

TEST(Loading, EndsWithWhatTheProjectThrows)
{
    ProjectModel model =
        project({{"A/box.bhx", boxFile()}, {"B/C/D/", {}}, {"B/C/E/box.bhx", boxFile()}});
    const FileSizeLimit limit(90); // enough for the order file of D, not of C
    EXPECT_THROW(open(std::move(model)), std::runtime_error);
}

TEST(Loading, EndsWithAnythingThatIsThrown)
{
    ProjectModel model = project({{"A/B/box.bhx", boxFile()}, {"A/a\x01/", {}}});
    const LogHook hook([](const pk::log::Record& /*record*/) { throw 42; });
    EXPECT_THROW(open(std::move(model)), int);
}

// appendChildFromProject()

TEST(AppendChildFromProject, LoadsTheSubtreeAndAppendsIt)
{
    const Library library = open(project({{"A/", {}}}));
    library->projectModel().writeFile(q("0%3a/Box/box.bhx"), boxFile());
    BoxLibraryNode* const child = library->boxRoot()->appendChildFromProject("0%3a");
    EXPECT_EQ(treeText(library), "A{} 0:{Box!}");
    EXPECT_EQ(library->boxRoot()->child(1), child);
    EXPECT_EQ(child->parent(), library->boxRoot());
    EXPECT_EQ(static_cast<QObject*>(child)->parent(), nullptr);
    EXPECT_EQ(child->fileName(), "0%3a");
    EXPECT_TRUE(library->isDirty());
}

TEST(AppendChildFromProject, WritesTheOrderFileOfTheChildAlone)
{
    const Library library = open(project({{"A/", {}}}));
    library->projectModel().mkdir(q("B/C"), true);
    library->boxRoot()->appendChildFromProject("B");
    EXPECT_EQ(orderIn(library->projectModel()), Names{"A"});
    EXPECT_EQ(orderIn(library->projectModel(), "B"), Names{"C"});
}

TEST(AppendChildFromProject, ForwardsTheChangesOfTheChild)
{
    const Library library = open(ProjectModel());
    library->projectModel().writeFile(q("Box/box.bhx"), boxFile());
    BoxLibraryNode* const box = library->boxRoot()->appendChildFromProject("Box");
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    box->boxData()->setTooltip(q("new"));
    EXPECT_EQ(changes.size(), 1);
}

TEST(AppendChildFromProject, GivesNullForAnEmptyFileName)
{
    const Library library = open(project({{"A/", {}}}));
    EXPECT_EQ(library->boxRoot()->appendChildFromProject(""), nullptr);
    EXPECT_EQ(treeText(library), "A{}");
    EXPECT_FALSE(library->isDirty());
}

TEST(AppendChildFromProject, LeavesNoChildWhenLoadingThrows)
{
    const Library library = open(project({{"A/", {}}}));
    library->projectModel().mkdir(q("B/C"), true);
    {
        const FileSizeLimit limit(4);
        EXPECT_THROW(library->boxRoot()->appendChildFromProject("B"), std::runtime_error);
    }
    EXPECT_EQ(treeText(library), "A{}");
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(library->boxRoot()->appendChildFromProject("B")->name(), "B");
}

} // namespace
} // namespace KX::test
