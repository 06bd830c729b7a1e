#include "support.hpp"

#include <QSignalSpy>
#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

// Folders from a name

TEST(NewFolder, HasADirectoryAndAnEmptyOrderFile)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("A/B");
    EXPECT_EQ(folder->name(), "A/B");
    EXPECT_EQ(folder->path(), q("A%2fB"));
    EXPECT_FALSE(folder->boxData());
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"A%2fB/bxlinfo", "bxlinfo"}));
    EXPECT_EQ(orderIn(library->projectModel(), "A%2fB"), Names{});
}

TEST(NewFolder, IsTheLastChildAndTheLastInTheOrderFile)
{
    const Library library = open(project({{"B/", {}}, {"A/", {}}, {"bxlinfo", orderFile({"B"})}}));
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("0");
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "A", "0"}));
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "A", "0"}));
    EXPECT_EQ(folder->parent(), library->boxRoot());
    EXPECT_EQ(static_cast<QObject*>(folder)->parent(), nullptr);
    EXPECT_TRUE(library->isDirty());
}

TEST(NewFolder, GetsAFreeName)
{
    const Library library = open(project({{"A/", {}}}));
    library->boxRoot()->appendChild("A");
    library->boxRoot()->appendChild("A (7)");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "A (2)", "A (3)"}));
}

TEST(NewFolder, ForwardsItsChanges)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("A")->appendChild("B");
    std::vector<BoxLibraryNode*> changed;
    QObject::connect(library.get(), &BoxLibrary::dataChanged,
                     [&](BoxLibraryNode* node) { changed.push_back(node); });
    folder->setName("C");
    EXPECT_EQ(changed, std::vector<BoxLibraryNode*>{folder});
}

TEST(NewFolder, IsNotMadeWithoutAName)
{
    const Library library = newLibrary();
    EXPECT_EQ(library->boxRoot()->appendChild(""), nullptr);
    EXPECT_TRUE(library->boxRoot()->children().isEmpty());
    EXPECT_EQ(filesOf(library->projectModel()), Names{"bxlinfo"});
    EXPECT_FALSE(library->isDirty());
}

TEST(NewFolder, InADetachedTreeIsInItsProject)
{
    const Library library = open(project({{"A/", {}}}));
    const DetachedNode copy(library->boxRoot()->child(0)->clone());
    copy->appendChild("B");
    EXPECT_EQ(filesOf(*copy->project()), (Names{"B/bxlinfo", "bxlinfo"}));
    EXPECT_EQ(orderIn(*copy->project()), Names{"B"});
    EXPECT_FALSE(library->isDirty());
}

TEST(NewFolder, WithoutAProjectIsANodeAlone)
{
    const DetachedNode node(new BoxLibraryNode);
    node->init("A (2)");
    EXPECT_EQ(node->name(), "A");
    EXPECT_EQ(node->appendChild("B")->path(), q("B"));
    EXPECT_EQ(node->project(), nullptr);
}

TEST(NewFolder, IsNotThereWhenItsFilesCannotBeWritten)
{
    const Library library = open(project({{"A/", {}}}));
    {
        const FileSizeLimit limit(4);
        EXPECT_THROW(library->boxRoot()->appendChild("B"), std::runtime_error);
    }
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"A"});
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, false, true),
              QStringList{q("A")});
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(library->boxRoot()->appendChild("B")->name(), "B");
}

// Boxes from a description

/// A description with resource files of `source`.
RootBoxDescription withResources(ProjectModel* source, const std::string& directory,
                                 const Names& files)
{
    QStringList list;
    for (const std::string& file : files) {
        list.append(q(file));
    }
    RootBoxDescription result = description("Box");
    result.resources = boost::make_shared<BoxResourceList>(source, q(directory), list);
    return result;
}

TEST(NewBox, HasTheDataAndTheBoxFileOfTheDescription)
{
    const Library library = newLibrary();
    const RootBoxDescription made{"Say: Hello (3)",
                                  element(R"(<Box name="x" tooltip="t"><Diagram/></Box>)")};
    const BoxLibraryNode* const box = library->boxRoot()->appendChild(made);
    EXPECT_EQ(box->name(), "Say: Hello");
    EXPECT_EQ(box->path(), q("Say%3a Hello"));
    ASSERT_TRUE(box->boxData());
    EXPECT_EQ(box->boxData()->tooltip(), q("t"));
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"Say%3a Hello/box.bhx", "bxlinfo"}));
    const auto written = box->loadBox();
    ASSERT_TRUE(written);
    EXPECT_EQ(written->attribute("tooltip", std::string()), "t");
    EXPECT_TRUE(written->firstChild("Diagram"));
}

TEST(NewBox, LeavesTheDescriptionAlone)
{
    const Library library = newLibrary();
    const RootBoxDescription made = description("Box");
    library->boxRoot()->appendChild(made);
    library->boxRoot()->appendChild(made);
    EXPECT_EQ(made.box->attribute("name", std::string()), "x");
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"Box", "Box (2)"}));
}

TEST(NewBox, GetsCopiesOfItsResources)
{
    ProjectModel source = project({{"Other/a.png", "a"},
                                   {"Other/images/b.png", "b"},
                                   {"Other/c.png", "not listed"},
                                   {"a.png", "elsewhere"}});
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    folder->appendChild(withResources(&source, "Other", {"", "/images/b.png", "a.png"}));
    EXPECT_EQ(filesOf(library->projectModel(), "Folder/Box"),
              (Names{"a.png", "box.bhx", "images/b.png"}));
    EXPECT_EQ(library->projectModel().readFile(q("Folder/Box/a.png")), QByteArray("a"));
    EXPECT_EQ(library->projectModel().readFile(q("Folder/Box/images/b.png")), QByteArray("b"));
}

TEST(NewBox, GetsResourcesFromTheTopOfAProject)
{
    ProjectModel source = project({{"a.png", "a"}});
    const DetachedNode box(BoxLibraryNode::fromDescription(withResources(&source, "", {"/a.png"})));
    EXPECT_EQ(filesOf(*box->project()), (Names{"a.png", "box.bhx"}));
}

TEST(NewBox, GetsNoResourcesFromNoProject)
{
    const DetachedNode box(
        BoxLibraryNode::fromDescription(withResources(nullptr, "Other", {"a.png"})));
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
}

TEST(NewBox, IsNotThereWhenAResourceIsMissing)
{
    ProjectModel source = project({{"Other/a.png", "a"}});
    const Library library = newLibrary();
    EXPECT_THROW(
        library->boxRoot()->appendChild(withResources(&source, "Other", {"a.png", "gone.png"})),
        pk::project::PathNotFound);
    EXPECT_TRUE(library->boxRoot()->children().isEmpty());
    EXPECT_EQ(filesOf(library->projectModel()), Names{"bxlinfo"});
    EXPECT_FALSE(library->isDirty());
}

TEST(NewBox, WithoutAProjectIsANodeAlone)
{
    ProjectModel source = project({{"Other/a.png", "a"}});
    BoxLibraryNode node;
    node.init(withResources(&source, "Other", {"a.png"}));
    EXPECT_EQ(node.name(), "Box");
    ASSERT_TRUE(node.boxData());
    EXPECT_FALSE(node.loadBox());
}

TEST(NewBox, ForwardsChangesOfItsData)
{
    const DetachedNode box(BoxLibraryNode::fromDescription(description("Box")));
    const QSignalSpy changes(box.get(), &BoxLibraryNode::dataChanged);
    box->boxData()->setTooltip(q("t"));
    EXPECT_EQ(changes.size(), 1);
}

// fromDescription()

TEST(NodeFromDescription, IsDetachedWithItsFilesAtTheTopOfItsOwnProject)
{
    const DetachedNode box(BoxLibraryNode::fromDescription(description("Box (2)")));
    EXPECT_EQ(box->name(), "Box");
    EXPECT_EQ(box->fileName(), "Box");
    EXPECT_EQ(box->path(), QString());
    EXPECT_EQ(box->parent(), nullptr);
    EXPECT_EQ(box->library(), nullptr);
    EXPECT_TRUE(box->boxData());
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
    EXPECT_EQ(box->project()->getSourcePath(), QString());
}

TEST(NodeFromDescription, GivesNullWithoutAnElement)
{
    EXPECT_EQ(BoxLibraryNode::fromDescription({"Box", nullptr}), nullptr);
}

TEST(NodeFromDescription, LeavesNothingWhenAResourceIsMissing)
{
    ProjectModel source;
    EXPECT_THROW(BoxLibraryNode::fromDescription(withResources(&source, "", {"gone.png"})),
                 pk::project::PathNotFound);
}

// clone()

TEST(NodeClone, OfARootIsADetachedCopyWithTheTitleAsItsName)
{
    const Library library = open(project({{"B/box.bhx", boxFile()}, {"A/C/", {}}}));
    library->setTitle(q("My: Demo (3)"));
    const DetachedNode copy(library->boxRoot()->clone());
    EXPECT_EQ(copy->name(), "My: Demo");
    EXPECT_EQ(copy->fileName(), "My%3a Demo");
    EXPECT_EQ(copy->parent(), nullptr);
    EXPECT_EQ(copy->library(), nullptr);
    EXPECT_EQ(copy->path(), QString());
    EXPECT_NE(copy->project(), &library->projectModel());
    EXPECT_EQ(filesOf(*copy->project()), filesOf(library->projectModel()));
    EXPECT_EQ(childNames(*copy), (Names{"A", "B"}));
    EXPECT_EQ(childNames(*copy->child(0)), Names{"C"});
    EXPECT_TRUE(copy->child(1)->boxData());
}

TEST(NodeClone, NeverMarksTheLibraryDirty)
{
    const Library library = open(project({{"A/Box/box.bhx", boxFile()}}));
    const DetachedNode copy(library->boxRoot()->clone());
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    copy->child(0)->setName("B");
    copy->child(0)->child(0)->boxData()->setTooltip(q("t"));
    copy->appendChild("C");
    removeChildTree(*copy, 0);
    EXPECT_FALSE(library->isDirty());
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"A/Box/box.bhx", "A/bxlinfo", "bxlinfo"}));
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"A"});
}

TEST(NodeClone, OfAFolderHasTheFolderAtItsTop)
{
    const Library library = open(project({{"F/A (2)/B/box.bhx", boxFile()}, {"F/Other/", {}}}));
    const DetachedNode copy(library->boxRoot()->child(0)->child(0)->clone());
    EXPECT_EQ(copy->name(), "A");
    EXPECT_EQ(copy->child(0)->path(), q("B"));
    EXPECT_EQ(filesOf(*copy->project()), (Names{"B/box.bhx", "bxlinfo"}));
}

TEST(NodeClone, OfABoxHasItsFilesAndDataThatForwardNothing)
{
    const Library library = open(project(
        {{"Box (2)/box.bhx", boxFile(R"(tooltip="t")")}, {"Box (2)/images/a.png", "picture"}}));
    const DetachedNode copy(library->boxRoot()->child(0)->clone());
    EXPECT_EQ(copy->name(), "Box");
    EXPECT_EQ(filesOf(*copy->project()), (Names{"box.bhx", "images/a.png"}));
    ASSERT_TRUE(copy->boxData());
    EXPECT_NE(copy->boxData(), library->boxRoot()->child(0)->boxData());
    EXPECT_EQ(copy->boxData()->tooltip(), q("t"));
    const QSignalSpy changes(copy.get(), &BoxLibraryNode::dataChanged);
    copy->boxData()->setTooltip(q("new"));
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(copy->loadBox()->attribute("tooltip", std::string()), "new");
    EXPECT_EQ(library->boxRoot()->child(0)->boxData()->tooltip(), q("t"));
}

TEST(NodeClone, FollowsTheOrderInMemory)
{
    const Library library = open(project({{"A/", {}}, {"B/", {}}, {"C/", {}}}));
    library->boxRoot()->moveChildren(2, 2, 0);
    const DetachedNode copy(library->boxRoot()->clone());
    EXPECT_EQ(childNames(*copy), (Names{"C", "A", "B"}));
}

TEST(NodeClone, IsBuiltFromTheFiles)
{
    const Library library = open(project({{"F/A/", {}}}));
    library->projectModel().writeFile(q("F/A/box.bhx"), boxFile());
    const DetachedNode copy(library->boxRoot()->child(0)->clone());
    EXPECT_TRUE(copy->child(0)->boxData());
}

TEST(NodeClone, OfANodeWithoutFilesHasNone)
{
    const DetachedNode original(new BoxLibraryNode);
    original->init("A");
    const DetachedNode copy(original->clone());
    EXPECT_EQ(copy->name(), "A");
    ASSERT_NE(copy->project(), nullptr);
    EXPECT_EQ(filesOf(*copy->project()), Names{});
    const Library library = open(project({{"Gone/", {}}}));
    library->projectModel().remove(q("Gone"));
    const DetachedNode copyOfGone(library->boxRoot()->child(0)->clone());
    EXPECT_EQ(filesOf(*copyOfGone->project()), Names{});
}

// Half of a box is no copy of it: what is left would take its place.
TEST(NodeClone, WithoutAllItsFilesIsNone)
{
    const TemporaryDirectory directory;
    project({{"A/box.bhx", boxFile()}, {"A/icon.png", "icon"}})
        .save(directory.path("library"), pk::project::ArchiveFormat::Directory, false);
    const Library library = open(ProjectModel(directory.path("library")));
    ASSERT_TRUE(QFile::remove(directory.path("library/A/icon.png")));
    BoxLibraryNode* const box = library->boxRoot()->child(0);
    EXPECT_THROW(box->clone(), pk::project::PathNotFound);
    EXPECT_THROW(box->take(), pk::project::PathNotFound);
    EXPECT_EQ(library->boxRoot()->child(0), box);
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"A/box.bhx", "A/icon.png", "bxlinfo"}));
}

// The files of a node that was cut stay until it is pasted, but are no nodes.
TEST(NodeClone, HasNoNodesThatWereTaken)
{
    const Library library = open(
        project({{"A/Kept/box.bhx", boxFile()}, {"A/B/Cut/box.bhx", boxFile()}, {"A/Cut/", {}}}));
    BoxLibraryNode* const a = library->boxRoot()->child(0);
    const DetachedNode cutBox(a->child("B")->child(0)->take());
    const DetachedNode cutFolder(a->child("Cut")->take());
    const DetachedNode copy(a->clone());
    EXPECT_EQ(pathsBelow(*copy), (Names{"B", "Kept"}));
    EXPECT_EQ(filesOf(*copy->project()), (Names{"B/bxlinfo", "Kept/box.bhx", "bxlinfo"}));
    EXPECT_TRUE(library->projectModel().hasFile(q("A/B/Cut/box.bhx")));
}

TEST(NodeClone, OfADetachedNodeIsAnother)
{
    const DetachedNode original(BoxLibraryNode::fromDescription(description("Box")));
    original->setName("Renamed (4)");
    const DetachedNode copy(original->clone());
    EXPECT_EQ(copy->name(), "Renamed");
    EXPECT_NE(copy->project(), original->project());
    EXPECT_EQ(filesOf(*copy->project()), Names{"box.bhx"});
}

TEST(NodeClone, LeavesNothingWhenLoadingThrows)
{
    const Library library = open(project({{"A/", {}}, {"B/C\x01/", {}}}));
    {
        const LogHook hook([](const pk::log::Record& /*record*/) { throw 42; });
        EXPECT_THROW(library->boxRoot()->clone(), int);
    }
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B"}));
}

} // namespace
} // namespace KX::test
