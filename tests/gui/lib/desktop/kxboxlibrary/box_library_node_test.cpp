#include "library_signals.hpp"
#include "support.hpp"

#include <QPointer>
#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

/// The folder Boxes with the box Walk, and the empty folder Motions.
ProjectModel walks()
{
    return project({{"Boxes/Walk/box.bhx", boxFile()}, {"Motions/", {}}});
}

boost::shared_ptr<BoxData> dataFor(BoxLibraryNode* node)
{
    return boost::make_shared<BoxData>(node, element("<Box/>"));
}

/// The nodes that a node or library signals as changed, in order.
template <class Sender>
std::vector<BoxLibraryNode*> changedBy(Sender& sender, const std::function<void()>& change)
{
    std::vector<BoxLibraryNode*> nodes;
    const auto connection = QObject::connect(
        &sender, &Sender::dataChanged, [&nodes](BoxLibraryNode* node) { nodes.push_back(node); });
    change();
    QObject::disconnect(connection);
    return nodes;
}

using Nodes = std::vector<BoxLibraryNode*>;

// Meta-object

TEST(BoxLibraryNodeMetaObject, HasExactlyTheSignalAndTheSlot)
{
    EXPECT_EQ(methodsOf(BoxLibraryNode::staticMetaObject),
              (Names{"public signal dataChanged(KX::BoxLibraryNode* node)",
                     "private slot onBoxDataChanged()"}));
}

TEST(BoxLibraryNodeMetaObject, HasNoPropertiesAndNoEnums)
{
    const QMetaObject& meta = BoxLibraryNode::staticMetaObject;
    EXPECT_EQ(meta.propertyCount(), meta.propertyOffset());
    EXPECT_EQ(meta.enumeratorCount(), meta.enumeratorOffset());
}

TEST(BoxLibraryNodeMetaObject, DerivesFromQObjectAlone)
{
    EXPECT_EQ(BoxLibraryNode::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

TEST(BoxLibraryNodeMetaType, IsKnownByName)
{
    const int type = QMetaType::type("KX::BoxLibraryNode *");
    EXPECT_NE(type, static_cast<int>(QMetaType::UnknownType));
    EXPECT_EQ(type, qMetaTypeId<BoxLibraryNode*>());
}

TEST(BoxLibraryNodeMetaType, TravelsInQueuedSignals)
{
    const Library library = open(walks());
    BoxLibraryNode* const walk = library->node({0, 0});
    QObject receiver;
    Nodes nodes;
    QObject::connect(
        library.get(), &BoxLibrary::dataChanged, &receiver,
        [&nodes](BoxLibraryNode* node) { nodes.push_back(node); }, Qt::QueuedConnection);
    walk->boxData()->setTooltip(q("new"));
    EXPECT_EQ(nodes, Nodes{});
    deliverQueued(receiver);
    EXPECT_EQ(nodes, Nodes{walk});
}

// A node alone

TEST(LoneBoxLibraryNode, HasNothing)
{
    const BoxLibraryNode node;
    EXPECT_EQ(node.QObject::parent(), nullptr);
    EXPECT_EQ(node.library(), nullptr);
    EXPECT_EQ(node.project(), nullptr);
    EXPECT_EQ(node.parent(), nullptr);
    EXPECT_EQ(node.name(), "");
    EXPECT_EQ(node.fileName(), "");
    EXPECT_EQ(node.path(), QString());
    EXPECT_EQ(node.index(), 0);
    EXPECT_TRUE(node.children().isEmpty());
    EXPECT_FALSE(node.boxData());
}

TEST(LoneBoxLibraryNode, DoesNothingWithFiles)
{
    BoxLibraryNode node;
    const LogRecords log;
    node.initFromProject();
    node.saveFolder();
    node.saveBox(element("<Box/>"), false);
    node.unInit();
    EXPECT_TRUE(node.save());
    EXPECT_TRUE(node.saveAll());
    EXPECT_EQ(node.loadBox(), nullptr);
    EXPECT_EQ(node.loadBoxData(), QByteArray());
    EXPECT_EQ(node.resources(), nullptr);
    EXPECT_EQ(node.project(), nullptr);
    EXPECT_TRUE(log.all().empty());
}

TEST(LoneBoxLibraryNode, HasChildrenWithoutAProject)
{
    const DetachedNode node(new BoxLibraryNode);
    BoxLibraryNode* const child = node->appendChild("Folder");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->project(), nullptr);
    EXPECT_EQ(child->library(), nullptr);
    EXPECT_EQ(child->path(), q("Folder"));
    EXPECT_EQ(node->child(0), child);
}

// The root

TEST(RootNode, BelongsToItsLibrary)
{
    const Library library = open(walks());
    const BoxLibraryNode* const root = library->boxRoot();
    EXPECT_EQ(root->QObject::parent(), library.get());
    EXPECT_EQ(root->library(), library.get());
    EXPECT_EQ(root->project(), &library->projectModel());
    EXPECT_EQ(root->parent(), nullptr);
    EXPECT_EQ(root->name(), "");
    EXPECT_EQ(root->fileName(), "");
}

TEST(RootNode, LoadsTheWholeTreeWhenItIsMade)
{
    const Library library = open(walks());
    const DetachedNode second(new BoxLibraryNode(library.get()));
    EXPECT_EQ(second->QObject::parent(), library.get());
    EXPECT_EQ(second->library(), library.get());
    EXPECT_EQ(childNames(*second), (Names{"Boxes", "Motions"}));
    EXPECT_TRUE(second->child(0)->child("Walk")->boxData());
}

TEST(RootNode, ThatCannotBeLoadedIsGone)
{
    const Library library = open(walks());
    library->projectModel().remove(q("Motions/bxlinfo")); // which has to be written then
    const int objects = library->children().size();
    std::unique_ptr<BoxLibraryNode> second;
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(second = std::make_unique<BoxLibraryNode>(library.get()), std::runtime_error);
    }
    EXPECT_EQ(library->children().size(), objects);
}

// Navigation

TEST(NodePath, OfTheRootIsEmpty)
{
    EXPECT_EQ(open(walks())->boxRoot()->path(), QString());
}

TEST(NodePath, IsTheChainOfFileNames)
{
    const Library library = open(walks());
    EXPECT_EQ(library->node({0})->path(), q("Boxes"));
    EXPECT_EQ(library->node({0, 0})->path(), q("Boxes/Walk"));
}

TEST(NodePath, IsMadeOfFileNamesAndNotOfNames)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("A/B");
    BoxLibraryNode* const below = folder->appendChild("\u00dcber?");
    EXPECT_EQ(folder->name(), "A/B");
    EXPECT_EQ(folder->fileName(), "A%2fB");
    EXPECT_EQ(below->path(), q("A%2fB/\u00dcber%3f"));
}

TEST(NodePath, OfADetachedNodeIsEmptyAndBelowItStartsThere)
{
    const Library library = open(walks());
    const DetachedNode copy(library->node({0})->clone());
    EXPECT_EQ(copy->name(), "Boxes");
    EXPECT_EQ(copy->path(), QString());
    EXPECT_EQ(copy->child(0)->path(), q("Walk"));
}

TEST(NodeIndex, OfARootIsZero)
{
    EXPECT_EQ(open(walks())->boxRoot()->index(), 0);
}

TEST(NodeIndex, OfADetachedNodeIsZero)
{
    const Library library = open(walks());
    const DetachedNode taken(library->node({1})->take());
    EXPECT_EQ(taken->index(), 0);
}

TEST(NodeIndex, IsThePlaceAmongTheSiblings)
{
    const Library library = newLibrary();
    BoxLibraryNode* const root = library->boxRoot();
    const BoxLibraryNode* const first = root->appendChild("A");
    const BoxLibraryNode* const second = root->appendChild("B");
    EXPECT_EQ(first->index(), 0);
    EXPECT_EQ(second->index(), 1);
    root->insertChild(0, "C");
    EXPECT_EQ(first->index(), 1);
    EXPECT_EQ(second->index(), 2);
}

TEST(NodeChild, IsFoundByItsPlace)
{
    const Library library = open(walks());
    const BoxLibraryNode* const root = library->boxRoot();
    EXPECT_EQ(root->child(0)->name(), "Boxes");
    EXPECT_EQ(root->child(1)->name(), "Motions");
}

TEST(NodeChild, IsNullOutOfRange)
{
    const Library library = open(walks());
    EXPECT_EQ(library->boxRoot()->child(-1), nullptr);
    EXPECT_EQ(library->boxRoot()->child(2), nullptr);
    EXPECT_EQ(library->node({1})->child(0), nullptr);
}

TEST(NodeChild, IsFoundByItsNameAndNotByItsFileName)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("A/B");
    EXPECT_EQ(library->boxRoot()->child("A/B"), folder);
    EXPECT_EQ(library->boxRoot()->child("A%2fB"), nullptr);
}

TEST(NodeChild, IsFoundByEveryByteOfItsName)
{
    const Library library = open(walks());
    const BoxLibraryNode* const root = library->boxRoot();
    EXPECT_EQ(root->child("Boxes"), root->child(0));
    EXPECT_EQ(root->child("boxes"), nullptr);
    EXPECT_EQ(root->child("Boxes "), nullptr);
    EXPECT_EQ(root->child(std::string("Boxes\0", 6)), nullptr);
    EXPECT_EQ(root->child(""), nullptr);
    EXPECT_EQ(root->child("Walk"), nullptr); // no child of the root
}

TEST(NodeChild, IsTheFirstOfTwoWithOneName)
{
    const Library library = open(project({{"A%2FB/", {}}, {"A%2fB/", {}}}));
    const BoxLibraryNode* const root = library->boxRoot();
    ASSERT_EQ(childNames(*root), (Names{"A/B", "A/B"}));
    EXPECT_EQ(root->child("A/B"), root->child(0));
}

TEST(NodeParent, IsTheFolderAround)
{
    const Library library = open(walks());
    EXPECT_EQ(library->node({0, 0})->parent(), library->node({0}));
    EXPECT_EQ(library->node({0})->parent(), library->boxRoot());
}

TEST(NodeBoxData, AreThereExactlyForBoxes)
{
    const Library library = open(walks());
    EXPECT_TRUE(library->node({0, 0})->boxData());
    EXPECT_FALSE(library->node({0})->boxData());
}

// Library and project

TEST(NodeLibrary, IsThatOfTheRootForEveryNode)
{
    const Library library = open(walks());
    EXPECT_EQ(library->node({0})->library(), library.get());
    EXPECT_EQ(library->node({0, 0})->library(), library.get());
}

TEST(NodeLibrary, IsNoneInADetachedTree)
{
    const Library library = open(walks());
    const DetachedNode taken(library->node({0})->take());
    EXPECT_EQ(taken->library(), nullptr);
    EXPECT_EQ(taken->child(0)->library(), nullptr);
}

TEST(NodeProject, IsThatOfTheLibraryForEveryNode)
{
    const Library library = open(walks());
    EXPECT_EQ(library->node({0})->project(), &library->projectModel());
    EXPECT_EQ(library->node({0, 0})->project(), &library->projectModel());
}

TEST(NodeProject, IsTheDetachedNodesOwnForAllBelow)
{
    const Library library = open(walks());
    const DetachedNode copy(library->node({0})->clone());
    ASSERT_NE(copy->project(), nullptr);
    EXPECT_NE(copy->project(), &library->projectModel());
    EXPECT_EQ(copy->child(0)->project(), copy->project());
    EXPECT_EQ(filesOf(*copy->project()), (Names{"Walk/box.bhx", "bxlinfo"}));
}

TEST(NodeProject, IsTheLibrarysAgainAfterInsertion)
{
    const Library library = open(walks());
    BoxLibraryNode* const copy = library->node({0})->clone();
    library->boxRoot()->appendChild(copy);
    EXPECT_EQ(copy->project(), &library->projectModel());
    EXPECT_EQ(copy->child(0)->project(), &library->projectModel());
}

// Dirt

TEST(NodeDirt, IsThatOfTheLibrary)
{
    const Library library = open(walks());
    const LibrarySignals heard(*library);
    library->node({0, 0})->setDirty(true);
    EXPECT_TRUE(library->isDirty());
    library->node({1})->setDirty(false);
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(heard.all(), (Names{"dirtyChanged true", "dirtyChanged false"}));
}

TEST(NodeDirt, OfADetachedTreeGoesNowhere)
{
    const Library library = open(walks());
    const DetachedNode taken(library->node({0})->take());
    library->setDirty(false);
    const LibrarySignals heard(*library);
    EXPECT_EQ(changedBy(*taken, [&] { taken->child(0)->setDirty(true); }), Nodes{});
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(heard.all(), Names{});
}

// Changes climb

TEST(NodeChange, OfBoxDataInAGrandchildReachesTheLibrary)
{
    const Library library = open(walks());
    BoxLibraryNode* const walk = library->node({0, 0});
    EXPECT_EQ(changedBy(*library, [&] { walk->boxData()->setTooltip(q("new")); }), Nodes{walk});
}

TEST(NodeChange, PassesEveryFolderOnItsWay)
{
    const Library library = open(walks());
    BoxLibraryNode* const walk = library->node({0, 0});
    int value = 0;
    const auto change = [&] { walk->boxData()->setTooltip(QString::number(++value)); };
    EXPECT_EQ(changedBy(*walk, change), Nodes{walk});
    EXPECT_EQ(changedBy(*library->node({0}), change), Nodes{walk});
    EXPECT_EQ(changedBy(*library->boxRoot(), change), Nodes{walk});
    EXPECT_EQ(changedBy(*library->node({1}), change), Nodes{});
}

TEST(NodeChange, MakesTheLibraryDirtyBeforeItIsSignalled)
{
    const Library library = open(walks());
    const LibrarySignals heard(*library);
    library->node({0, 0})->boxData()->setTooltip(q("new"));
    EXPECT_EQ(heard.all(), (Names{"dirtyChanged true", "dataChanged Boxes/Walk"}));
}

TEST(NodeChange, ComesForEachOfTheThreeProperties)
{
    const Library library = open(walks());
    BoxLibraryNode* const walk = library->node({0, 0});
    const auto data = walk->boxData();
    EXPECT_EQ(changedBy(*walk, [&] { data->setTooltip(q("new")); }), Nodes{walk});
    EXPECT_EQ(changedBy(*walk, [&] { data->setBitmaps({q("a.png")}); }), Nodes{walk});
    EXPECT_EQ(changedBy(*walk, [&] { data->setBitmapExpanded(false); }), Nodes{walk});
}

TEST(NodeChange, OfADetachedNodeIsSignalledByItAlone)
{
    const DetachedNode box(BoxLibraryNode::fromDescription(description("Box")));
    EXPECT_EQ(changedBy(*box, [&] { box->boxData()->setTooltip(q("new")); }), Nodes{box.get()});
}

/// Ways in which a node gets a parent.
struct Attaching
{
    const char* name;
    std::function<BoxLibraryNode*(BoxLibraryNode&)> attach;
    bool isOwned; // by the parent, as a QObject
};

std::ostream& operator<<(std::ostream& stream, const Attaching& way)
{
    return stream << way.name;
}

class AttachedNode : public testing::TestWithParam<Attaching>
{
};

TEST_P(AttachedNode, SignalsItsChangesThroughItsParent)
{
    const Library library = open(project({{"Folder/", {}}, {"Loaded/", {}}}));
    BoxLibraryNode* const folder = library->boxRoot()->child(0);
    BoxLibraryNode* const child = GetParam().attach(*folder);
    EXPECT_EQ(changedBy(*library, [&] { child->setName("Other"); }), Nodes{child});
}

TEST_P(AttachedNode, IsAQObjectChildOnlyWhenItWasInserted)
{
    const Library library = open(project({{"Folder/", {}}, {"Loaded/", {}}}));
    BoxLibraryNode* const folder = library->boxRoot()->child(0);
    const BoxLibraryNode* const child = GetParam().attach(*folder);
    EXPECT_EQ(child->parent(), folder);
    EXPECT_EQ(child->QObject::parent(), GetParam().isOwned ? folder : nullptr);
}

TEST_P(AttachedNode, DiesWithItsParentOnlyWhenItWasInserted)
{
    // Not in a holder: what outlives the tree is what this is about.
    auto folder = std::make_unique<BoxLibraryNode>();
    const QPointer<BoxLibraryNode> child(GetParam().attach(*folder));
    ASSERT_FALSE(child.isNull());
    folder.reset();
    EXPECT_EQ(child.isNull(), GetParam().isOwned);
    delete child.data();
}

INSTANTIATE_TEST_SUITE_P(
    Ways, AttachedNode,
    testing::Values(
        Attaching{"Loaded", [](auto& parent) { return parent.appendChildFromProject("Loaded"); },
                  false},
        Attaching{"MadeAsAFolder", [](auto& parent) { return parent.appendChild("New"); }, false},
        Attaching{"MadeAsABox", [](auto& parent) { return parent.appendChild(description("New")); },
                  false},
        Attaching{"Inserted",
                  [](auto& parent) {
                      return parent.appendChild(
                          BoxLibraryNode::fromDescription(description("New")));
                  },
                  true}),
    [](const auto& way) { return way.param.name; });

// Ownership

TEST(NodeOwnership, LoadedNodesOutliveTheirLibrary)
{
    auto library = std::make_unique<BoxLibrary>(walks(), false, nullptr);
    const QPointer<BoxLibraryNode> root(library->boxRoot());
    const QPointer<BoxLibraryNode> boxes(library->node({0}));
    const QPointer<BoxLibraryNode> walk(library->node({0, 0}));
    const QPointer<BoxLibraryNode> motions(library->node({1}));
    library.reset();
    EXPECT_TRUE(root.isNull());
    EXPECT_EQ(boxes->name(), "Boxes");
    EXPECT_EQ(walk->name(), "Walk");
    EXPECT_EQ(motions->name(), "Motions");
    EXPECT_EQ(boxes->parent(), nullptr);
    EXPECT_EQ(walk->parent(), boxes.data());
    EXPECT_EQ(walk->library(), nullptr);
    EXPECT_EQ(walk->project(), nullptr);
    walk->boxData()->setTooltip(q("still a box"));
    EXPECT_EQ(walk->boxData()->tooltip(), q("still a box"));
    delete motions.data();
    delete boxes.data();
    EXPECT_FALSE(walk.isNull());
    delete walk.data();
}

TEST(NodeOwnership, InsertedNodesDieWithTheirLibrary)
{
    auto library = std::make_unique<BoxLibrary>(q("Demo"), false, nullptr);
    const QPointer<BoxLibraryNode> box(
        library->boxRoot()->appendChild(BoxLibraryNode::fromDescription(description("Box"))));
    ASSERT_FALSE(box.isNull());
    library.reset();
    EXPECT_TRUE(box.isNull());
}

TEST(NodeOwnership, ATakenNodeHasNoQObjectParent)
{
    const Library library = newLibrary();
    BoxLibraryNode* const box =
        library->boxRoot()->appendChild(BoxLibraryNode::fromDescription(description("Box")));
    const DetachedNode taken(box->take());
    EXPECT_EQ(taken.get(), box);
    EXPECT_EQ(taken->QObject::parent(), nullptr);
    EXPECT_EQ(taken->parent(), nullptr);
}

TEST(NodeOwnership, LeavesBoxDataToWhoeverElseHoldsThem)
{
    Library library = open(walks());
    const auto data = library->node({0, 0})->boxData();
    library.reset();
    EXPECT_EQ(data.use_count(), 1);
    EXPECT_EQ(data->parent(), nullptr);
    EXPECT_EQ(data->load(), nullptr);
}

TEST(NodeOwnership, LeavesReplacedBoxDataToWhoeverElseHoldsThem)
{
    auto node = std::make_unique<BoxLibraryNode>();
    const auto old = dataFor(node.get());
    node->setBoxDataInternal(old);
    node->setBoxDataInternal(dataFor(node.get()));
    node.reset();
    EXPECT_EQ(old.use_count(), 1);
    EXPECT_EQ(old->parent(), nullptr);
}

// Box data

TEST(SetBoxData, MakesANodeABox)
{
    BoxLibraryNode node;
    const auto data = dataFor(&node);
    node.setBoxDataInternal(data);
    EXPECT_EQ(node.boxData(), data);
}

TEST(SetBoxData, ReleasesFormerData)
{
    BoxLibraryNode node;
    node.setBoxDataInternal(dataFor(&node));
    const QPointer<BoxData> old(node.boxData().get());
    ASSERT_FALSE(old.isNull());
    node.setBoxDataInternal(dataFor(&node));
    EXPECT_TRUE(old.isNull());
}

TEST(SetBoxData, ToNoneReleasesThem)
{
    BoxLibraryNode node;
    node.setBoxDataInternal(dataFor(&node));
    const QPointer<BoxData> old(node.boxData().get());
    node.setBoxDataInternal(nullptr);
    EXPECT_TRUE(old.isNull());
    EXPECT_FALSE(node.boxData());
}

TEST(SetBoxData, ForwardsTheirChangesFromThenOn)
{
    BoxLibraryNode node;
    const auto data = dataFor(&node);
    EXPECT_EQ(changedBy(node, [&] { data->setTooltip(q("before")); }), Nodes{});
    node.setBoxDataInternal(data);
    EXPECT_EQ(changedBy(node, [&] { data->setTooltip(q("after")); }), Nodes{&node});
}

TEST(SetBoxData, StillForwardsChangesOfFormerData)
{
    BoxLibraryNode node;
    const auto old = dataFor(&node);
    node.setBoxDataInternal(old);
    node.setBoxDataInternal(dataFor(&node));
    EXPECT_EQ(changedBy(node, [&] { old->setTooltip(q("new")); }), Nodes{&node});
}

TEST(SetBoxData, WritesAndSignalsNothing)
{
    const Library library = open(walks());
    BoxLibraryNode* const walk = library->node({0, 0});
    const QByteArray before = walk->loadBoxData();
    const LibrarySignals heard(*library);
    walk->setBoxDataInternal(dataFor(walk));
    EXPECT_EQ(walk->loadBoxData(), before);
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(heard.all(), Names{});
}

} // namespace
} // namespace KX::test
