#include "support.hpp"

#include <QPointer>
#include <QSignalSpy>

namespace KX::test {
namespace {

Library boxLibrary()
{
    Library library = open(project({{"A/box.bhx", boxFile()},
                                    {"A/a.png", "of A"},
                                    {"B/box.bhx", boxFile()},
                                    {"Folder/Inner/box.bhx", boxFile()},
                                    {"Folder/Other/box.bhx", boxFile()}}));
    library->setTranslations(translators({translator("fr", {"Library:/A", "Library:/B"})}));
    return library;
}

// Removing a child

TEST(NodeRemoving, ARemovedChildIsGoneWithItsFilesAndMessages)
{
    const Library library = boxLibrary();
    library->boxRoot()->removeChild(0);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "Folder"}));
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "Folder"}));
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, false, true),
              (QStringList{q("B"), q("Folder"), q("translations")}));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/B"});
    EXPECT_TRUE(library->isDirty());
}

TEST(NodeRemoving, ARemovedChildIsDeleted)
{
    const Library library = boxLibrary();
    const QPointer<BoxLibraryNode> child(library->boxRoot()->child(0));
    library->boxRoot()->removeChild(0);
    EXPECT_TRUE(child.isNull());
}

TEST(NodeRemoving, OfTheNodesBelowOnlyThoseThatWereInsertedAreDeleted)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    const QPointer<BoxLibraryNode> inserted(
        folder->appendChild(BoxLibraryNode::fromDescription(description("Inserted"))));
    const QPointer<BoxLibraryNode> made(folder->appendChild(description("Made")));
    library->boxRoot()->removeChild(0);
    EXPECT_TRUE(inserted.isNull());
    ASSERT_FALSE(made.isNull());
    delete made.data();
}

class NodeRemovingOutOfRange : public testing::TestWithParam<int>
{
};

TEST_P(NodeRemovingOutOfRange, ChangesNothing)
{
    const Library library = boxLibrary();
    const auto contents = contentsOf(library->projectModel());
    const Names tree = pathsBelow(*library->boxRoot());
    library->boxRoot()->removeChild(GetParam());
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(pathsBelow(*library->boxRoot()), tree);
    EXPECT_FALSE(library->isDirty());
}

INSTANTIATE_TEST_SUITE_P(Index, NodeRemovingOutOfRange, testing::Values(-1, 3, 1000));

TEST(NodeRemoving, MessagesGoBeforeTheFilesAndTheFilesBeforeTheNode)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const root = library->boxRoot();
    const QPointer<BoxLibraryNode> child(root->child(0));
    std::vector<std::string> steps;
    QObject::connect(library.get(), &BoxLibrary::translationFilesListChanged, root, [&] {
        steps.emplace_back("messages");
        EXPECT_TRUE(library->projectModel().hasFile(q("A/box.bhx")));
        EXPECT_EQ(root->child(0), child.data());
        EXPECT_EQ(child->path(), q("A"));
    });
    QObject::connect(child.data(), &QObject::destroyed, root, [&] {
        steps.emplace_back("deleted");
        EXPECT_FALSE(library->projectModel().hasFile(q("A/box.bhx")));
        EXPECT_EQ(childNames(*root), (Names{"B", "Folder"}));
        EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "Folder"}));
        EXPECT_FALSE(library->isDirty());
    });
    QObject::connect(library.get(), &BoxLibrary::dirtyChanged, root,
                     [&] { steps.emplace_back("dirty"); });
    root->removeChild(0);
    EXPECT_EQ(steps, (std::vector<std::string>{"messages", "messages", "deleted", "dirty"}));
}

TEST(NodeRemoving, RemovingSignalsNoChangedData)
{
    const Library library = boxLibrary();
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    library->boxRoot()->removeChild(0);
    EXPECT_EQ(data.count(), 0);
}

TEST(NodeRemoving, ARemovedChildIsNoLongerForwarded)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const root = library->boxRoot();
    BoxLibraryNode* const child = root->child(0);
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    QObject::connect(library.get(), &BoxLibrary::translationFilesListChanged, child,
                     [child] { child->boxData()->setTooltip(q("too late")); });
    root->removeChild(0);
    EXPECT_EQ(data.count(), 0);
}

TEST(NodeRemoving, TheNameOfARemovedChildIsFree)
{
    const Library library = boxLibrary();
    EXPECT_EQ(library->boxRoot()->appendChild("A")->name(), "A (2)");
    library->boxRoot()->removeChild(0);
    EXPECT_EQ(library->boxRoot()->appendChild("A")->name(), "A");
}

TEST(NodeRemoving, AChildOfADetachedFolderIsRemovedFromItsFiles)
{
    const Library library = boxLibrary();
    const DetachedNode folder(library->boxRoot()->child("Folder")->take());
    const auto contents = contentsOf(library->projectModel());
    folder->removeChild(0);
    EXPECT_EQ(filesOf(*folder->project()), (Names{"Other/box.bhx", "bxlinfo"}));
    EXPECT_EQ(orderIn(*folder->project()), Names{"Other"});
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeRemoving, AChildWithoutAProjectIsDeletedAllTheSame)
{
    BoxLibraryNode folder;
    const QPointer<BoxLibraryNode> child(folder.appendChild("Child"));
    folder.removeChild(0);
    EXPECT_TRUE(child.isNull());
    EXPECT_TRUE(folder.children().isEmpty());
}

TEST(NodeRemoving, AChildWhoseFilesAreGoneIsRemovedWithoutAMessage)
{
    const Library library = boxLibrary();
    library->projectModel().remove(q("A"));
    const LogRecords records;
    library->boxRoot()->removeChild(0);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "Folder"}));
    EXPECT_TRUE(records.of("kxboxlibrary").empty());
}

TEST(NodeRemoving, FilesThatCannotBeRemovedAreReported)
{
    const std::string deep = "x/" + QByteArray(250, 'd').append('/').repeated(15).toStdString();
    const Library library = open(project({{deep + "Box/box.bhx", boxFile()}}));
    library->boxRoot()->child(0)->setName(std::string(400, 'x')); // no project has Box's path then
    BoxLibraryNode* folder = library->boxRoot();
    while (!folder->child(0)->boxData()) {
        folder = folder->child(0);
    }
    const LogRecords records;
    folder->removeChild(0);
    EXPECT_EQ(childNames(*folder), Names{});
    const auto reports = records.of("kxboxlibrary");
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].level, pk::log::Warning);
    EXPECT_EQ(reports[0].message.rfind("Could not remove 'xxx", 0), 0U);
}

TEST(NodeRemoving, TranslationsThatCannotBeWrittenKeepTheChild)
{
    const std::string language(5000, 'x'); // longer than the name of a file can be
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"translations/x.ts", translationFile(language)}}));
    BoxLibraryNode* const child = library->boxRoot()->child(0);
    EXPECT_THROW(library->boxRoot()->removeChild(0), pk::project::InvalidPath);
    EXPECT_EQ(library->boxRoot()->child(0), child);
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"box.bhx"});
    EXPECT_EQ(orderIn(library->projectModel()), Names{"A"});
    EXPECT_FALSE(library->isDirty());
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    child->boxData()->setTooltip(q("new"));
    EXPECT_EQ(data.count(), 1);
}

TEST(NodeRemoving, AnOrderFileThatCannotBeWrittenLeavesTheChildRemoved)
{
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile()}, {"Folder/", {}}}));
    const QPointer<BoxLibraryNode> child(library->boxRoot()->child(0));
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(library->boxRoot()->removeChild(0), std::runtime_error);
    }
    EXPECT_TRUE(child.isNull());
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "Folder"}));
    EXPECT_TRUE(library->isDirty());
    library->boxRoot()->saveAll();
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"B", "Folder"}));
}

// Removing files alone

TEST(NodeRemoving, UnInitRemovesTheFilesAndKeepsTheNode)
{
    const Library library = boxLibrary();
    library->boxRoot()->child("Folder")->unInit();
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B", "Folder"}));
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, false, true),
              (QStringList{q("A"), q("B"), q("translations")}));
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"A", "B", "Folder"}));
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeRemoving, UnInitOfANodeWithoutAParentEmptiesItsProject)
{
    const DetachedNode box(BoxLibraryNode::fromDescription(description("Box")));
    ASSERT_EQ(filesOf(*box->project()), Names{"box.bhx"});
    box->unInit();
    EXPECT_EQ(filesOf(*box->project()), Names{});
}

TEST(NodeRemoving, UnInitOfMissingFilesThrows)
{
    const Library library = boxLibrary();
    library->boxRoot()->child(0)->unInit();
    EXPECT_THROW(library->boxRoot()->child(0)->unInit(), pk::project::PathNotFound);
}

TEST(NodeRemoving, UnInitWithoutAProjectDoesNothing)
{
    BoxLibraryNode node;
    EXPECT_NO_THROW(node.unInit());
}

// Taking

TEST(NodeTaking, ATakenNodeIsDetachedWithACopyOfItsFiles)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const child = library->boxRoot()->child("Folder");
    const DetachedNode folder(child->take());
    EXPECT_EQ(folder.get(), child);
    EXPECT_EQ(folder->parent(), nullptr);
    EXPECT_EQ(folder->library(), nullptr);
    EXPECT_EQ(folder->path(), QString());
    EXPECT_EQ(folder->name(), "Folder");
    EXPECT_EQ(filesOf(*folder->project()), (Names{"Inner/box.bhx", "Other/box.bhx", "bxlinfo"}));
    EXPECT_EQ(pathsBelow(*folder), (Names{"Inner", "Other"}));
}

TEST(NodeTaking, TheOldLibraryKeepsItsFilesAndStaysClean)
{
    const Library library = boxLibrary();
    const auto contents = contentsOf(library->projectModel());
    const QSignalSpy dirty(library.get(), &BoxLibrary::dirtyChanged);
    const DetachedNode box(library->boxRoot()->child(0)->take());
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"B", "Folder"}));
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/A", "Library:/B"}));
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(dirty.count(), 0);
}

TEST(NodeTaking, ADirtyLibraryStaysDirty)
{
    const Library library = boxLibrary();
    library->setDirty(true);
    const DetachedNode box(library->boxRoot()->child(0)->take());
    EXPECT_TRUE(library->isDirty());
}

// The old parent forwards the changes of a taken node, which must not go round in circles.
TEST(NodeTaking, AFolderCanBeMovedIntoItsFormerChild)
{
    const Library library = open(project({{"A/B/", {}}, {"A/Box/box.bhx", boxFile()}}));
    BoxLibraryNode* const a = library->boxRoot()->child(0);
    BoxLibraryNode* const b = a->child("B");
    library->boxRoot()->appendChild(b->take());
    b->appendChild(a->take());
    const QSignalSpy changes(b, &BoxLibraryNode::dataChanged);
    a->child("Box")->setName("Renamed");
    EXPECT_EQ(changes.count(), 1);
}

TEST(NodeTaking, AFolderCanBePutIntoItsFormerChildThatIsDetached)
{
    const Library library = open(project({{"A/B/C/", {}}, {"A/Box/box.bhx", boxFile()}}));
    BoxLibraryNode* const a = library->boxRoot()->child(0);
    const DetachedNode b(a->child("B")->take());
    b->child("C")->appendChild(a->take());
    const QSignalSpy changes(b.get(), &BoxLibraryNode::dataChanged);
    a->child("Box")->setName("Renamed");
    EXPECT_EQ(changes.count(), 1);
}

TEST(NodeTaking, ANodeWithoutAParentIsNotTaken)
{
    const Library library = boxLibrary();
    const auto contents = contentsOf(library->projectModel());
    const DetachedNode box(BoxLibraryNode::fromDescription(description("Box")));
    const ProjectModel* const files = box->project();
    EXPECT_EQ(library->boxRoot()->take(), nullptr);
    EXPECT_EQ(box->take(), nullptr);
    EXPECT_EQ(library->boxRoot()->library(), library.get());
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(box->project(), files);
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
}

TEST(NodeTaking, AnInsertedNodeThatWasTakenNoLongerDiesWithItsFolder)
{
    Library library = newLibrary();
    library->boxRoot()->appendChild(BoxLibraryNode::fromDescription(description("Box")));
    const DetachedNode box(library->boxRoot()->child(0)->take());
    EXPECT_EQ(static_cast<QObject*>(box.get())->parent(), nullptr);
    library.reset();
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
}

TEST(NodeTaking, ANodeIsTakenOutOfADetachedTree)
{
    const Library library = boxLibrary();
    const DetachedNode folder(library->boxRoot()->child("Folder")->take());
    const DetachedNode inner(folder->child("Inner")->take());
    EXPECT_NE(inner->project(), folder->project());
    EXPECT_EQ(filesOf(*inner->project()), Names{"box.bhx"});
    EXPECT_EQ(childNames(*folder), Names{"Other"});
}

TEST(NodeTaking, ANodeWhoseFilesAreGoneIsTakenWithoutFiles)
{
    const Library library = boxLibrary();
    library->projectModel().remove(q("A"));
    const DetachedNode box(library->boxRoot()->child(0)->take());
    EXPECT_EQ(filesOf(*box->project()), Names{});
}

TEST(NodeTaking, ANodeWithoutAProjectIsTakenWithoutFiles)
{
    BoxLibraryNode folder;
    const DetachedNode child(folder.appendChild("Child")->take());
    ASSERT_NE(child->project(), nullptr);
    EXPECT_EQ(filesOf(*child->project()), Names{});
}

TEST(NodeTaking, EditsOfATakenNodeStayInItsOwnFiles)
{
    const Library library = boxLibrary();
    const auto contents = contentsOf(library->projectModel());
    const DetachedNode box(library->boxRoot()->child(0)->take());
    box->boxData()->setTooltip(q("new"));
    EXPECT_TRUE(box->loadBoxData().contains("new"));
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeTaking, TheOldAndTheNewParentForwardTheChangesOfAMovedNode)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->child("Folder");
    BoxLibraryNode* const other = library->boxRoot()->appendChild("New");
    BoxLibraryNode* const box = folder->child("Inner")->take();
    other->appendChild(box);
    const QSignalSpy former(folder, &BoxLibraryNode::dataChanged);
    const QSignalSpy present(other, &BoxLibraryNode::dataChanged);
    box->boxData()->setTooltip(q("new"));
    EXPECT_EQ(former.count(), 1);
    EXPECT_EQ(present.count(), 1);
}

TEST(NodeTaking, ANodeThatComesBackIsForwardedOnce)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->child("Folder");
    BoxLibraryNode* const box = folder->child("Inner")->take();
    folder->appendChild(box);
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    box->boxData()->setTooltip(q("new"));
    EXPECT_EQ(changes.count(), 1);
}

TEST(NodeTaking, TheNameOfATakenNodeIsFree)
{
    const Library library = boxLibrary();
    EXPECT_EQ(library->boxRoot()->appendChild("A")->name(), "A (2)");
    const DetachedNode box(library->boxRoot()->child(0)->take());
    EXPECT_EQ(library->boxRoot()->appendChild("A")->name(), "A");
}

// What takes the place of the files that taking left

TEST(NodeTaking, AReinsertedNodeReplacesTheFilesThatItLeft)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->child("Folder")->take();
    folder->removeChild(0);
    library->boxRoot()->appendChild(folder);
    EXPECT_EQ(folder->path(), q("Folder"));
    EXPECT_EQ(filesOf(library->projectModel(), "Folder"), (Names{"Other/box.bhx", "bxlinfo"}));
}

TEST(NodeTaking, AnotherInsertedNodeReplacesTheFilesThatWereLeft)
{
    const Library library = boxLibrary();
    const DetachedNode folder(library->boxRoot()->child("Folder")->take());
    library->boxRoot()->appendChild(BoxLibraryNode::fromDescription(description("Folder")));
    EXPECT_EQ(filesOf(library->projectModel(), "Folder"), Names{"box.bhx"});
}

TEST(NodeTaking, ANewFolderReplacesTheFilesThatWereLeft)
{
    const Library library = boxLibrary();
    const DetachedNode box(library->boxRoot()->child("A")->take());
    library->boxRoot()->appendChild("A");
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"bxlinfo"});
}

TEST(NodeTaking, ANewBoxReplacesTheFilesThatWereLeft)
{
    const Library library = boxLibrary();
    const DetachedNode box(library->boxRoot()->child("A")->take());
    library->boxRoot()->appendChild(description("A"));
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"box.bhx"});
}

TEST(NodeTaking, ARenamedNodeReplacesTheFilesThatWereLeft)
{
    const Library library = boxLibrary();
    const DetachedNode box(library->boxRoot()->child("A")->take());
    const LogRecords records;
    library->boxRoot()->child("B")->setName("A");
    EXPECT_EQ(library->boxRoot()->child("A")->path(), q("A"));
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"box.bhx"});
    EXPECT_EQ(filesOf(library->projectModel(), "B"), Names{});
    EXPECT_TRUE(records.of("kxboxlibrary").empty());
}

TEST(NodeTaking, FilesThatSomethingTookThePlaceOfAreNotReplacedAgain)
{
    const Library library = boxLibrary();
    BoxLibraryNode* const box = library->boxRoot()->child("A")->take();
    library->boxRoot()->appendChild("A");
    library->boxRoot()->appendChild(box);
    EXPECT_EQ(box->name(), "A (2)");
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"bxlinfo"});
    EXPECT_EQ(filesOf(library->projectModel(), "A (2)"), (Names{"a.png", "box.bhx"}));
}

TEST(NodeTaking, FilesThatWereLoadedAgainAreNotReplaced)
{
    const Library library = boxLibrary();
    const DetachedNode box(library->boxRoot()->child("A")->take());
    const BoxLibraryNode* const again = library->boxRoot()->appendChildFromProject("A");
    ASSERT_NE(again->boxData(), nullptr);
    library->boxRoot()->appendChild("A");
    EXPECT_EQ(filesOf(library->projectModel(), "A"), (Names{"a.png", "box.bhx"}));
}

TEST(NodeTaking, FilesLeftInATakenFolderAreReplacedThereToo)
{
    const Library library = boxLibrary();
    const DetachedNode folder(library->boxRoot()->child("Folder")->take());
    const DetachedNode inner(folder->child("Inner")->take());
    folder->appendChild("Inner");
    EXPECT_EQ(filesOf(*folder->project(), "Inner"), Names{"bxlinfo"});
}

TEST(NodeTaking, FilesLeftInAFolderAreReplacedInItsCopyToo)
{
    const Library library = boxLibrary();
    const DetachedNode inner(library->boxRoot()->child("Folder")->child("Inner")->take());
    const DetachedNode copy(library->boxRoot()->child("Folder")->clone());
    ASSERT_EQ(childNames(*copy), Names{"Other"});
    copy->appendChild("Inner");
    EXPECT_EQ(filesOf(*copy->project(), "Inner"), Names{"bxlinfo"});
}

} // namespace
} // namespace KX::test
