#include "support.hpp"

#include <pk/project/error.hpp>

#include <QSignalSpy>

namespace KX::test {
namespace {

/// The folders A, with B and the boxes x and y, and F, with the boxes p and x; a message for each
/// box and for one that F/y was once.
Library twoFolders()
{
    Library library = open(project({{"A/B/z/box.bhx", boxFile()},
                                    {"A/x/box.bhx", boxFile()},
                                    {"A/x/icon.png", "icon"},
                                    {"A/y/box.bhx", boxFile()},
                                    {"F/p/box.bhx", boxFile()},
                                    {"F/x/box.bhx", boxFile()}}));
    library->setTranslations(translators(
        {translator("fr", {"Library:/A/B/z", "Library:/A/x", "Library:/A/y", "Library:/F/p",
                           "Library:/F/x", "Library:/F/y/part", "Library:/F/yes"})}));
    library->setDirty(false);
    return library;
}

BoxLibraryNode* at(const Library& library, const Names& names)
{
    BoxLibraryNode* node = library->boxRoot();
    for (const std::string& name : names) {
        node = node->child(name);
    }
    return node;
}

Names contexts(const Library& library)
{
    Names result;
    const KR::Localization::Translator french = library->translations().value(q("fr"));
    for (const auto& message : french.messages()) {
        result.push_back(message.context().toStdString());
    }
    std::sort(result.begin(), result.end());
    return result;
}

/// That opening the project again gives the same tree.
void expectSaved(const Library& library)
{
    const TemporaryDirectory directory;
    library->projectModel().save(directory.path("L.bxl"), pk::project::ArchiveFormat::Directory,
                                 false);
    const Library again(new BoxLibrary(ProjectModel(directory.path("L.bxl"))));
    EXPECT_EQ(pathsBelow(*again->boxRoot()), pathsBelow(*library->boxRoot()));
}

TEST(MovingBetweenFolders, TakesFilesAndMessagesAlong)
{
    const Library library = twoFolders();
    BoxLibraryNode* const folder = at(library, {"F"});
    BoxLibraryNode* const x = at(library, {"A", "x"});
    EXPECT_TRUE(folder->moveIn(1, {x, at(library, {"A", "B"})}));
    EXPECT_EQ(childNames(*folder), (Names{"p", "x (2)", "B", "x"}));
    EXPECT_EQ(childNames(*at(library, {"A"})), Names{"y"});
    EXPECT_EQ(x->parent(), folder);
    EXPECT_EQ(x->QObject::parent(), folder);
    EXPECT_TRUE(library->isDirty());
    const ProjectModel& model = library->projectModel();
    EXPECT_EQ(model.readFile(q("F/x (2)/icon.png")), QByteArray("icon"));
    EXPECT_EQ(x->loadBoxData(), boxFile());
    EXPECT_TRUE(model.getFileList(q("A/x"), true, true, false).isEmpty());
    EXPECT_EQ(contexts(library),
              (Names{"Library:/A/y", "Library:/F/B/z", "Library:/F/p", "Library:/F/x",
                     "Library:/F/x (2)", "Library:/F/y/part", "Library:/F/yes"}));
    expectSaved(library);
}

// Or they would count as those of the node that came.
TEST(MovingBetweenFolders, DropsMessagesThatWereLeftThere)
{
    const Library library = twoFolders();
    EXPECT_TRUE(at(library, {"F"})->moveIn(9, {at(library, {"A", "y"})}));
    EXPECT_EQ(contexts(library), (Names{"Library:/A/B/z", "Library:/A/x", "Library:/F/p",
                                        "Library:/F/x", "Library:/F/y", "Library:/F/yes"}));
}

TEST(MovingBetweenFolders, CountsThePlaceWithoutThoseThatMove)
{
    for (const auto& [index, order] :
         std::vector<std::pair<int, Names>>{{-5, {"q", "s", "B", "p", "r"}},
                                            {0, {"q", "s", "B", "p", "r"}},
                                            {1, {"p", "q", "s", "B", "r"}},
                                            {2, {"p", "q", "s", "B", "r"}},
                                            {3, {"p", "r", "q", "s", "B"}},
                                            {99, {"p", "r", "q", "s", "B"}}}) {
        const Library library = newLibrary();
        BoxLibraryNode* const folder = library->boxRoot()->appendChild("F");
        for (const char* const name : {"p", "q", "r", "s"}) {
            folder->appendChild(std::string(name));
        }
        BoxLibraryNode* const other = library->boxRoot()->appendChild("B");
        EXPECT_TRUE(folder->moveIn(index, {folder->child(1), folder->child(3), other}));
        EXPECT_EQ(childNames(*folder), order) << index;
        expectSaved(library);
    }
}

TEST(MovingBetweenFolders, OfAFolderAndWhatIsInItMovesBoth)
{
    for (const bool isFolderFirst : {true, false}) {
        const Library library = twoFolders();
        QList<BoxLibraryNode*> nodes{at(library, {"A"}), at(library, {"A", "B"})};
        if (!isFolderFirst) {
            std::swap(nodes[0], nodes[1]);
        }
        EXPECT_TRUE(at(library, {"F"})->moveIn(0, nodes));
        EXPECT_EQ(contexts(library),
                  (Names{"Library:/F/A/x", "Library:/F/A/y", "Library:/F/B/z", "Library:/F/p",
                         "Library:/F/x", "Library:/F/y/part", "Library:/F/yes"}));
        EXPECT_TRUE(library->projectModel().hasFile(q("F/B/z/box.bhx")));
        expectSaved(library);
    }
}

TEST(MovingBetweenFolders, ForwardsChangesToTheNewFolderAlone)
{
    const Library library = twoFolders();
    BoxLibraryNode* const x = at(library, {"A", "x"});
    BoxLibraryNode* const folder = at(library, {"F"});
    BoxLibraryNode* const before = at(library, {"A"});
    const QSignalSpy atOld(before, &BoxLibraryNode::dataChanged);
    const QSignalSpy atNew(folder, &BoxLibraryNode::dataChanged);
    const QSignalSpy atLibrary(library.get(), &BoxLibrary::dataChanged);
    EXPECT_TRUE(folder->moveIn(0, {x}));
    EXPECT_EQ(atLibrary.count(), 0);
    x->boxData()->setTooltip(q("tip"));
    EXPECT_EQ(atOld.count(), 0);
    EXPECT_EQ(atNew.count(), 1);
    EXPECT_EQ(atLibrary.count(), 1);
}

TEST(MovingBetweenFolders, TakesThePlaceOfWhatATakenNodeLeft)
{
    const Library library = twoFolders();
    const DetachedNode taken(at(library, {"F", "x"})->take());
    EXPECT_TRUE(at(library, {"F"})->moveIn(0, {at(library, {"A", "x"})}));
    EXPECT_EQ(childNames(*at(library, {"F"})), (Names{"x", "p"}));
    EXPECT_TRUE(library->projectModel().hasFile(q("F/x/icon.png")));
    expectSaved(library);
}

TEST(MovingBetweenFolders, WorksInADetachedTree)
{
    const Library library = twoFolders();
    const DetachedNode tree(at(library, {"A"})->clone());
    EXPECT_TRUE(tree->child("B")->moveIn(0, {tree->child("x")}));
    EXPECT_EQ(childNames(*tree->child("B")), (Names{"x", "z"}));
    EXPECT_TRUE(tree->project()->hasFile(q("B/x/icon.png")));
    EXPECT_FALSE(library->isDirty());
}

TEST(MovingBetweenFolders, IsRefusedWhereItMakesNoTree)
{
    const Library library = twoFolders();
    const Library other = twoFolders();
    BoxLibraryNode* const root = library->boxRoot();
    BoxLibraryNode* const a = at(library, {"A"});
    BoxLibraryNode* const b = at(library, {"A", "B"});
    BoxLibraryNode* const x = at(library, {"A", "x"});
    BoxLibraryNode* const y = at(library, {"A", "y"});
    const DetachedNode detached(y->clone());
    EXPECT_FALSE(x->moveIn(0, {y}));
    EXPECT_FALSE(a->moveIn(0, {}));
    EXPECT_FALSE(b->moveIn(0, {y, a}));
    EXPECT_FALSE(b->moveIn(0, {b}));
    EXPECT_FALSE(b->moveIn(0, {y, nullptr}));
    EXPECT_FALSE(b->moveIn(0, {y, x, y}));
    EXPECT_FALSE(b->moveIn(0, {root}));
    EXPECT_FALSE(b->moveIn(0, {y, detached.get()}));
    EXPECT_FALSE(b->moveIn(0, {y, at(other, {"A", "x"})}));
    EXPECT_EQ(childNames(*a), (Names{"B", "x", "y"}));
    EXPECT_FALSE(library->isDirty());
}

// One of the nodes has lost its directory: those before it are moved, it is where it was.
TEST(MovingBetweenFolders, EndsAtANodeThatCanNotBeMoved)
{
    const Library library = twoFolders();
    BoxLibraryNode* const folder = at(library, {"F"});
    BoxLibraryNode* const a = at(library, {"A"});
    const QList<BoxLibraryNode*> nodes = a->children();
    library->projectModel().remove(q("A/x"));
    EXPECT_THROW(folder->moveIn(0, nodes), pk::project::PathNotFound);
    EXPECT_EQ(childNames(*folder), (Names{"B", "p", "x"}));
    EXPECT_EQ(childNames(*a), (Names{"x", "y"}));
    EXPECT_EQ(a->child(0)->path(), q("A/x"));
    EXPECT_EQ(contexts(library).at(2), "Library:/F/B/z");
    a->appendChild("x (2)"); // its name is known to be taken
    EXPECT_EQ(childNames(*a), (Names{"x", "y", "x (2)"}));
    EXPECT_TRUE(library->isDirty());
}

TEST(MovingBetweenFolders, IsDoneAlsoWhenTheMessagesCanNotBeWritten)
{
    const Library library = twoFolders();
    BoxLibraryNode* const folder = at(library, {"F"});
    const Names before = contexts(library);
    {
        const FileSizeLimit full(300); // which order files are smaller than
        EXPECT_THROW(folder->moveIn(0, {at(library, {"A", "y"})}), pk::project::IoError);
    }
    EXPECT_EQ(childNames(*folder), (Names{"y", "p", "x"}));
    EXPECT_EQ(contexts(library), before);
    EXPECT_TRUE(library->projectModel().hasFile(q("F/y/box.bhx")));
    EXPECT_TRUE(library->isDirty());
    expectSaved(library);
}

} // namespace
} // namespace KX::test
