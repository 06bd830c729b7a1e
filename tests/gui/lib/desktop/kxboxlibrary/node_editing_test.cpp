#include "support.hpp"

#include <QPointer>
#include <QSignalSpy>
#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

BoxLibraryNode* detachedBox(const std::string& name)
{
    return BoxLibraryNode::fromDescription(description(name));
}

Library libraryWith(const Names& boxes)
{
    Library library = newLibrary();
    for (const std::string& name : boxes) {
        library->boxRoot()->appendChild(description(name));
    }
    library->setDirty(false);
    return library;
}

std::size_t countOf(const QSignalSpy& spy)
{
    return static_cast<std::size_t>(spy.count());
}

// Inserting detached nodes

TEST(NodeEditing, InsertingNullGivesNullAndChangesNothing)
{
    const Library library = libraryWith({"A"});
    const auto contents = contentsOf(library->projectModel());
    EXPECT_EQ(library->boxRoot()->insertChild(0, static_cast<BoxLibraryNode*>(nullptr)), nullptr);
    EXPECT_EQ(library->boxRoot()->appendChild(static_cast<BoxLibraryNode*>(nullptr)), nullptr);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"A"});
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeEditing, InsertingGivesTheNode)
{
    const Library library = newLibrary();
    BoxLibraryNode* const node = detachedBox("Box");
    EXPECT_EQ(library->boxRoot()->insertChild(0, node), node);
    EXPECT_EQ(library->boxRoot()->child(0), node);
}

TEST(NodeEditing, ANegativeIndexIsTheFront)
{
    const Library library = libraryWith({"A", "B", "C"});
    library->boxRoot()->insertChild(-5, detachedBox("New"));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"New", "A", "B", "C"}));
}

TEST(NodeEditing, TooLargeAnIndexIsTheEnd)
{
    const Library library = libraryWith({"A", "B", "C"});
    library->boxRoot()->insertChild(1000, detachedBox("New"));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B", "C", "New"}));
}

TEST(NodeEditing, AnInsertedNodeIsAtItsIndex)
{
    const Library library = libraryWith({"A", "B", "C"});
    library->boxRoot()->insertChild(1, detachedBox("New"));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "New", "B", "C"}));
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "New", "B", "C"}));
}

TEST(NodeEditing, AnAppendedNodeIsTheLast)
{
    const Library library = libraryWith({"A", "B"});
    BoxLibraryNode* const node = detachedBox("New");
    EXPECT_EQ(library->boxRoot()->appendChild(node), node);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B", "New"}));
}

TEST(NodeEditing, AnInsertedNodeWhoseNameIsTakenIsNumberedAnew)
{
    const Library library = open(project({{"From/Box/box.bhx", boxFile()},
                                          {"From/Box/picture.png", "taken"},
                                          {"To/Box/box.bhx", boxFile()},
                                          {"To/Box (2)/box.bhx", boxFile()}}));
    BoxLibraryNode* const to = library->boxRoot()->child("To");
    BoxLibraryNode* const box = library->boxRoot()->child("From")->child(0)->take();
    to->insertChildren(2, {box}, translators({translator("fr", {"Library:/From/Box"})}));
    EXPECT_EQ(box->name(), "Box (3)");
    EXPECT_EQ(box->path(), q("To/Box (3)"));
    EXPECT_EQ(library->projectModel().readFile(q("To/Box (3)/picture.png")), "taken");
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/To/Box (3)"});
}

TEST(NodeEditing, AnInsertedNodeLosesANumberThatItDoesNotNeed)
{
    const Library library = libraryWith({"Box", "Box", "Box"});
    const Library other = newLibrary();
    BoxLibraryNode* const box = library->boxRoot()->child(2)->take();
    ASSERT_EQ(box->name(), "Box (3)");
    other->boxRoot()->appendChild(box);
    EXPECT_EQ(box->name(), "Box");
    EXPECT_EQ(filesOf(other->projectModel()), (Names{"Box/box.bhx", "bxlinfo"}));
}

TEST(NodeEditing, AnInsertedFolderComesWithAllItsFiles)
{
    const Library source = open(project({{"Folder/Sub/Box/box.bhx", boxFile()},
                                         {"Folder/Sub/Box/images/a.png", "a"},
                                         {"Folder/Empty/", {}}}));
    const Library library = newLibrary();
    BoxLibraryNode* const to = library->boxRoot()->appendChild("To");
    to->appendChild(source->boxRoot()->child(0)->clone());
    EXPECT_EQ(filesOf(library->projectModel(), "To/Folder"),
              (Names{"Empty/bxlinfo", "Sub/Box/box.bhx", "Sub/Box/images/a.png", "Sub/bxlinfo",
                     "bxlinfo"}));
    EXPECT_EQ(pathsBelow(*to),
              (Names{"To/Folder", "To/Folder/Empty", "To/Folder/Sub", "To/Folder/Sub/Box"}));
}

TEST(NodeEditing, AnInsertedNodeUsesTheFilesOfItsLibrary)
{
    const Library library = newLibrary();
    BoxLibraryNode* const box = detachedBox("Box");
    ASSERT_NE(box->project(), &library->projectModel());
    library->boxRoot()->appendChild(box);
    EXPECT_EQ(box->library(), library.get());
    EXPECT_EQ(box->parent(), library->boxRoot());
    EXPECT_EQ(box->project(), &library->projectModel());
    box->boxData()->setTooltip(q("new"));
    EXPECT_TRUE(library->projectModel().readFile(q("Box/box.bhx")).contains("new"));
}

TEST(NodeEditing, AnInsertedNodeDiesWithItsFolder)
{
    Library library = newLibrary();
    const QPointer<BoxLibraryNode> box(library->boxRoot()->appendChild(detachedBox("Box")));
    EXPECT_EQ(static_cast<QObject*>(box.data())->parent(), library->boxRoot());
    delete library.release(); // by itself, without TreeDeleter
    EXPECT_TRUE(box.isNull());
}

TEST(NodeEditing, TheFolderForwardsTheChangesOfAnInsertedNode)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    BoxLibraryNode* const box = folder->appendChild(detachedBox("Box"));
    QSignalSpy folderSpy(folder, &BoxLibraryNode::dataChanged);
    QSignalSpy librarySpy(library.get(), &BoxLibrary::dataChanged);
    box->setName("New");
    ASSERT_EQ(folderSpy.count(), 1);
    ASSERT_EQ(librarySpy.count(), 1);
    EXPECT_EQ(librarySpy[0][0].value<BoxLibraryNode*>(), box);
}

TEST(NodeEditing, InsertingSignalsNothingButThatTheLibraryIsDirty)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {"Library:/Box"})}));
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    const QSignalSpy dirty(library.get(), &BoxLibrary::dirtyChanged);
    const QSignalSpy files(library.get(), &BoxLibrary::translationFilesListChanged);
    library->boxRoot()->appendChild(detachedBox("Box"));
    library->boxRoot()->appendChild(detachedBox("Box"));
    EXPECT_EQ(countOf(data) + countOf(files), 0U);
    EXPECT_EQ(countOf(dirty), 1U);
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Box"});
}

TEST(NodeEditing, TheLibraryBecomesDirtyWhenAnInsertedNodeIsInPlace)
{
    const Library library = newLibrary();
    BoxLibraryNode* const root = library->boxRoot();
    QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    int count = 0;
    QObject::connect(library.get(), &BoxLibrary::dirtyChanged, root, [&] {
        ++count;
        EXPECT_EQ(orderIn(library->projectModel()), Names{"Box"});
        EXPECT_TRUE(library->projectModel().hasFile(q("Box/box.bhx")));
        ASSERT_EQ(childNames(*root), Names{"Box"});
        EXPECT_EQ(root->child(0)->project(), &library->projectModel());
        root->child(0)->boxData()->setTooltip(q("new"));
        EXPECT_EQ(data.count(), 1);
    });
    root->appendChild(detachedBox("Box"));
    EXPECT_EQ(count, 1);
}

TEST(NodeEditing, InsertingIntoADetachedFolderUsesItsFiles)
{
    const Library library = libraryWith({});
    library->boxRoot()->appendChild("Folder");
    const DetachedNode folder(library->boxRoot()->child(0)->take());
    library->setDirty(false);
    const auto contents = contentsOf(library->projectModel());
    folder->appendChild(detachedBox("Box"));
    EXPECT_EQ(filesOf(*folder->project()), (Names{"Box/box.bhx", "bxlinfo"}));
    EXPECT_EQ(orderIn(*folder->project()), Names{"Box"});
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeEditing, AnInsertedNodeWithoutFilesBecomesAnEmptyFolder)
{
    const TemporaryDirectory directory;
    Library library = newLibrary();
    auto node = std::make_unique<BoxLibraryNode>();
    node->setName("Folder");
    library->boxRoot()->appendChild(node.release());
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, false, true),
              QStringList{q("Folder")});
    library = reopened(std::move(library), directory, BoxLibrary::Archive);
    EXPECT_EQ(pathsBelow(*library->boxRoot()), Names{"Folder"});
    EXPECT_EQ(library->boxRoot()->child(0)->boxData(), nullptr);
}

// Refusals

struct Refusal
{
    const char* name;
    /// Inserts what is to be refused, below Folder or Folder/Sub of the library.
    BoxLibraryNode* (*insert)(BoxLibrary& library, BoxLibrary& other);
};

class NodeEditingRefuses : public testing::TestWithParam<Refusal>
{
};

TEST_P(NodeEditingRefuses, ToInsertTheNode)
{
    const Library library = newLibrary();
    const Library other = libraryWith({"Box"});
    library->boxRoot()->appendChild("Folder")->appendChild("Sub");
    library->setDirty(false);
    const auto contents = contentsOf(library->projectModel());
    const Names tree = pathsBelow(*library->boxRoot());
    EXPECT_EQ(GetParam().insert(*library, *other), nullptr);
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(pathsBelow(*library->boxRoot()), tree);
    EXPECT_EQ(pathsBelow(*other->boxRoot()), Names{"Box"});
    EXPECT_EQ(static_cast<QObject*>(other->boxRoot())->parent(), other.get());
    EXPECT_FALSE(library->isDirty());
}

INSTANTIATE_TEST_SUITE_P(
    Because, NodeEditingRefuses,
    testing::Values(Refusal{"ItHasAParent",
                            [](BoxLibrary& library, BoxLibrary& other) {
                                return library.boxRoot()->insertChild(0, other.boxRoot()->child(0));
                            }},
                    Refusal{"ItIsAChildAlready",
                            [](BoxLibrary& library, BoxLibrary& /*other*/) {
                                return library.boxRoot()->insertChild(0,
                                                                      library.boxRoot()->child(0));
                            }},
                    Refusal{"ItIsAnotherLibrarysRoot",
                            [](BoxLibrary& library, BoxLibrary& other) {
                                return library.boxRoot()->insertChild(0, other.boxRoot());
                            }},
                    Refusal{"ItIsTheLibrarysRoot",
                            [](BoxLibrary& library, BoxLibrary& /*other*/) {
                                return library.boxRoot()->child(0)->appendChild(library.boxRoot());
                            }}),
    [](const auto& refusal) { return std::string(refusal.param.name); });

TEST(NodeEditing, ADetachedNodeIsNotInsertedIntoItself)
{
    const Library library = newLibrary();
    library->boxRoot()->appendChild("Folder")->appendChild("Sub");
    const DetachedNode folder(library->boxRoot()->child(0)->take());
    const auto contents = contentsOf(*folder->project());
    EXPECT_EQ(folder->insertChild(0, folder.get()), nullptr);
    EXPECT_EQ(folder->child(0)->insertChild(0, folder.get()), nullptr);
    EXPECT_EQ(folder->parent(), nullptr);
    EXPECT_EQ(pathsBelow(*folder), Names{"Sub"});
    EXPECT_EQ(contentsOf(*folder->project()), contents);
}

// Inserting several

TEST(NodeEditing, SeveralNodesAreInsertedInOrderFromTheIndexOn)
{
    const Library library = libraryWith({"A", "B"});
    library->insertChildren(library->boxRoot(), 1,
                            {detachedBox("X"), detachedBox("Y"), detachedBox("Z")}, {});
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "X", "Y", "Z", "B"}));
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "X", "Y", "Z", "B"}));
    EXPECT_TRUE(library->isDirty());
}

TEST(NodeEditing, SeveralNodesKeepTheirOrderAtANegativeIndex)
{
    const Library library = libraryWith({"A", "B"});
    library->boxRoot()->insertChildren(-7, {detachedBox("X"), detachedBox("Y"), detachedBox("Z")},
                                       {});
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"X", "Y", "Z", "A", "B"}));
}

TEST(NodeEditing, SeveralNodesComeLastAtTooLargeAnIndex)
{
    const Library library = libraryWith({"A", "B"});
    library->boxRoot()->insertChildren(99, {detachedBox("X"), detachedBox("Y")}, {});
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B", "X", "Y"}));
}

TEST(NodeEditing, OfTwoNodesOfOneNameTheLaterGetsTheMessages)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    folder->insertChildren(0, {detachedBox("Box"), detachedBox("Box")},
                           translators({translator("fr", {"Library:/Box"})}));
    EXPECT_EQ(childNames(*folder), (Names{"Box", "Box (2)"}));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Folder/Box (2)"});
}

TEST(NodeEditing, MessagesComeOnceAfterAllNodes)
{
    const Library library = libraryWith({});
    library->setTranslations(translators({translator("fr", {})}));
    std::vector<int> counts;
    QObject::connect(library.get(), &BoxLibrary::translationFilesListChanged, library.get(),
                     [&] { counts.push_back(library->boxRoot()->children().size()); });
    library->boxRoot()->insertChildren(0, {detachedBox("X"), detachedBox("Y")}, {});
    EXPECT_EQ(counts, (std::vector<int>{2, 2})); // the old files go, and the new ones come
}

TEST(NodeEditing, NoNodesOrNoParentChangeNothing)
{
    const Library library = open(project({{"translations/mine.ts", translationFile("fr")}}));
    const auto contents = contentsOf(library->projectModel());
    const auto messages = translators({translator("de", {"Library:/Box"})});
    const DetachedNode box(detachedBox("Box"));
    library->insertChildren(library->boxRoot(), 0, {}, messages);
    library->insertChildren(nullptr, 0, {box.get()}, messages);
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(box->parent(), nullptr);
}

TEST(NodeEditing, ANodeWithoutALibraryInsertsNoNodes)
{
    const DetachedNode folder(detachedBox("Folder"));
    const DetachedNode box(detachedBox("Box"));
    folder->insertChildren(0, {box.get()}, translators({translator("fr", {"Library:/Box"})}));
    EXPECT_TRUE(folder->children().isEmpty());
    EXPECT_EQ(box->parent(), nullptr);
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
}

TEST(NodeEditing, RefusedNodesAreLeftOutOfSeveral)
{
    const Library library = libraryWith({"A"});
    library->boxRoot()->insertChildren(
        0, {nullptr, detachedBox("X"), library->boxRoot()->child(0), detachedBox("Y")},
        translators({translator("fr", {"Library:/Y", "Library:/X"})}));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"X", "Y", "A"}));
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/Y", "Library:/X"}));
}

// Making folders and boxes

TEST(NodeEditing, AnEmptyNameMakesNoFolder)
{
    const Library library = libraryWith({"A"});
    const auto contents = contentsOf(library->projectModel());
    EXPECT_EQ(library->boxRoot()->insertChild(0, std::string()), nullptr);
    EXPECT_EQ(library->boxRoot()->appendChild(std::string()), nullptr);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"A"});
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeEditing, ADescriptionWithoutABoxMakesNothing)
{
    const Library library = libraryWith({"A"});
    const auto contents = contentsOf(library->projectModel());
    EXPECT_EQ(library->boxRoot()->appendChild(RootBoxDescription("Box", nullptr)), nullptr);
    EXPECT_EQ(library->boxRoot()->insertChild(0, RootBoxDescription("Box", nullptr)), nullptr);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"A"});
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeEditing, ANewFolderHasADirectoryWithAnEmptyOrderFile)
{
    const Library library = libraryWith({"A", "B"});
    const BoxLibraryNode* const folder = library->boxRoot()->insertChild(1, std::string("a/b"));
    EXPECT_EQ(folder->name(), "a/b");
    EXPECT_EQ(folder->boxData(), nullptr);
    EXPECT_EQ(filesOf(library->projectModel(), "a%2fb"), Names{"bxlinfo"});
    EXPECT_EQ(orderIn(library->projectModel(), "a%2fb"), Names{});
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "a/b", "B"}));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "a/b", "B"}));
}

TEST(NodeEditing, ANewBoxHasABoxFileAndData)
{
    const Library library = libraryWith({"A", "B"});
    const BoxLibraryNode* const box = library->boxRoot()->insertChild(
        1, RootBoxDescription("New", element(R"(<Box name="x" tooltip="tip"/>)")));
    EXPECT_EQ(box->boxData()->tooltip(), q("tip"));
    EXPECT_EQ(box->loadBox()->attribute("tooltip", std::string()), "tip");
    EXPECT_EQ(filesOf(library->projectModel(), "New"), Names{"box.bhx"});
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "New", "B"}));
}

TEST(NodeEditing, ANewBoxHasCopiesOfItsResources)
{
    ProjectModel source = project({{"at/a.png", "a"}, {"at/sub/b.png", "b"}, {"at/c.png", "c"}});
    RootBoxDescription box = description("Box");
    box.resources = boost::make_shared<BoxResourceList>(
        &source, q("at"), QStringList{q("a.png"), QString(), q("/sub/b.png")});
    const Library library = newLibrary();
    library->boxRoot()->appendChild("Folder")->appendChild(box);
    EXPECT_EQ(filesOf(library->projectModel(), "Folder/Box"),
              (Names{"a.png", "box.bhx", "sub/b.png"}));
}

TEST(NodeEditing, NewNodesAtAnyIndexStayInRange)
{
    const Library library = libraryWith({"A"});
    library->boxRoot()->insertChild(-3, std::string("Front"));
    library->boxRoot()->insertChild(50, std::string("Folder"));
    library->boxRoot()->insertChild(-1, description("Very front"));
    library->boxRoot()->insertChild(50, description("End"));
    EXPECT_EQ(childNames(*library->boxRoot()),
              (Names{"Very front", "Front", "A", "Folder", "End"}));
}

TEST(NodeEditing, NewNodesGetNamesThatAreFree)
{
    const Library library = newLibrary();
    BoxLibraryNode* const root = library->boxRoot();
    root->appendChild("Box");
    root->appendChild(description("Box"));
    root->insertChild(0, description("Box (7)"));
    root->insertChild(0, std::string("Box"));
    EXPECT_EQ(childNames(*root), (Names{"Box (4)", "Box (3)", "Box", "Box (2)"}));
}

struct Making
{
    const char* name;
    BoxLibraryNode* (*make)(BoxLibraryNode& folder);
};

class NodeEditingMakes : public testing::TestWithParam<Making>
{
};

TEST_P(NodeEditingMakes, ANodeThatIsPartOfTheTree)
{
    const Library library = libraryWith({});
    BoxLibraryNode* const node = GetParam().make(*library->boxRoot());
    EXPECT_EQ(library->boxRoot()->children(), QList<BoxLibraryNode*>{node});
    EXPECT_EQ(node->parent(), library->boxRoot());
    EXPECT_EQ(node->library(), library.get());
    EXPECT_EQ(node->path(), q("New"));
    EXPECT_EQ(static_cast<QObject*>(node)->parent(), nullptr);
}

TEST_P(NodeEditingMakes, ANodeWhoseChangesAreForwarded)
{
    const Library library = libraryWith({});
    BoxLibraryNode* const node = GetParam().make(*library->boxRoot());
    QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    node->setName("Other");
    ASSERT_EQ(data.count(), 1);
    EXPECT_EQ(data[0][0].value<BoxLibraryNode*>(), node);
}

TEST_P(NodeEditingMakes, TheLibraryDirtyWhenTheNodeIsInPlace)
{
    const Library library = libraryWith({});
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    std::vector<Names> orders;
    QObject::connect(library.get(), &BoxLibrary::dirtyChanged, library.get(),
                     [&] { orders.push_back(orderIn(library->projectModel())); });
    GetParam().make(*library->boxRoot());
    EXPECT_EQ(orders, std::vector<Names>{{"New"}});
    EXPECT_EQ(data.count(), 0);
    EXPECT_TRUE(library->isDirty());
}

TEST_P(NodeEditingMakes, ANodeOfADetachedTreeInItsFiles)
{
    const Library library = libraryWith({});
    library->boxRoot()->appendChild("Folder");
    library->setDirty(false);
    const DetachedNode folder(library->boxRoot()->child(0)->clone());
    const BoxLibraryNode* const node = GetParam().make(*folder);
    EXPECT_EQ(node->path(), q("New"));
    EXPECT_EQ(folder->project()->getFileList(QString(), true, false, true), QStringList{q("New")});
    EXPECT_EQ(orderIn(*folder->project()), Names{"New"});
    EXPECT_FALSE(library->isDirty());
}

TEST_P(NodeEditingMakes, ANodeWithoutFilesWhereThereIsNoProject)
{
    const DetachedNode folder(new BoxLibraryNode);
    const BoxLibraryNode* const node = GetParam().make(*folder);
    EXPECT_EQ(folder->children().value(0), node);
    EXPECT_EQ(node->name(), "New");
    EXPECT_EQ(node->project(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    By, NodeEditingMakes,
    testing::Values(
        Making{"AppendingAFolder", [](BoxLibraryNode& at) { return at.appendChild("New"); }},
        Making{"InsertingAFolder",
               [](BoxLibraryNode& at) { return at.insertChild(0, std::string("New")); }},
        Making{"AppendingABox",
               [](BoxLibraryNode& at) { return at.appendChild(description("New")); }},
        Making{"InsertingABox",
               [](BoxLibraryNode& at) { return at.insertChild(0, description("New")); }}),
    [](const auto& making) { return std::string(making.param.name); });

// On disk

class NodeEditingInBothForms : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
};

TEST_P(NodeEditingInBothForms, EditsAreThereAfterSaving)
{
    const TemporaryDirectory directory;
    Library library = reopened(libraryWith({"A", "B", "C"}), directory, GetParam());
    BoxLibraryNode* const root = library->boxRoot();
    BoxLibraryNode* const folder = root->insertChild(1, std::string("Folder"));
    folder->appendChild(root->child("C")->take());
    root->removeChild(root->child("B")->index());
    root->insertChild(0, description("D"));
    library = reopened(std::move(library), directory, GetParam());
    // What was taken left its files, which are found again.
    EXPECT_EQ(pathsBelow(*library->boxRoot()), (Names{"D", "A", "Folder", "Folder/C", "C"}));
}

TEST_P(NodeEditingInBothForms, ATakenNodeOutlivesItsLibrary)
{
    const TemporaryDirectory directory;
    Library library = newLibrary();
    library->boxRoot()->appendChild("Folder")->appendChild(
        RootBoxDescription("Box", element(R"(<Box tooltip="tip"/>)")));
    library = reopened(std::move(library), directory, GetParam());
    const DetachedNode folder(library->boxRoot()->child(0)->take());
    library.reset();
    QDir(directory.path("saved.bxl")).removeRecursively();
    QFile::remove(directory.path("saved.bxl"));
    EXPECT_EQ(folder->child(0)->loadBox()->attribute("tooltip", std::string()), "tip");
}

INSTANTIATE_TEST_SUITE_P(Form, NodeEditingInBothForms,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive), formName);

} // namespace
} // namespace KX::test
