#include "support.hpp"

#include <QSignalSpy>

namespace KX::test {
namespace {

struct Move
{
    int first;
    int last;
    int destination;
    const char* result; // the names, one letter each
};

std::ostream& operator<<(std::ostream& stream, const Move& move)
{
    return stream << "moveChildren(" << move.first << ", " << move.last << ", " << move.destination
                  << ") gives " << move.result;
}

Library fiveChildren()
{
    Library library = newLibrary();
    for (const char* const name : {"p", "q", "r", "s", "t"}) {
        library->boxRoot()->appendChild(std::string(name));
    }
    library->setDirty(false);
    return library;
}

std::string order(const BoxLibraryNode& node)
{
    std::string letters;
    for (const std::string& name : childNames(node)) {
        letters += name;
    }
    return letters;
}

/// The order after a move, made from what the operation is to mean and not from how it works.
std::string movedOrder(const std::string& before, int first, int last, int destination)
{
    const int count = static_cast<int>(before.size());
    if (first < 0 || last < first || last >= count || destination < 0 || destination > count ||
        (destination > first && destination <= last)) {
        return before;
    }
    std::string run;
    std::string front;
    std::string back;
    for (int i = 0; i < count; ++i) {
        std::string& part = i >= first && i <= last ? run : (i < destination ? front : back);
        part += before[static_cast<std::size_t>(i)];
    }
    return front + run + back;
}

class MovingChildrenExample : public testing::TestWithParam<Move>
{
};

TEST_P(MovingChildrenExample, GivesTheOrder)
{
    const Library library = fiveChildren();
    const Move& move = GetParam();
    library->boxRoot()->moveChildren(move.first, move.last, move.destination);
    EXPECT_EQ(order(*library->boxRoot()), move.result);
}

INSTANTIATE_TEST_SUITE_P(Worked, MovingChildrenExample,
                         testing::Values(Move{3, 4, 1, "pstqr"}, Move{0, 1, 4, "rspqt"},
                                         Move{0, 0, 5, "qrstp"}, Move{4, 4, 0, "tpqrs"},
                                         Move{1, 3, 0, "qrspt"}, Move{2, 4, 0, "rstpq"},
                                         Move{0, 2, 5, "stpqr"}, Move{1, 1, 3, "prqst"},
                                         Move{1, 2, 3, "pqrst"}, Move{2, 2, 2, "pqrst"}));

INSTANTIATE_TEST_SUITE_P(WholeList, MovingChildrenExample,
                         testing::Values(Move{0, 4, 0, "pqrst"}, Move{0, 4, 5, "pqrst"}));

INSTANTIATE_TEST_SUITE_P(OutOfRange, MovingChildrenExample,
                         testing::Values(Move{-1, 1, 4, "pqrst"}, Move{5, 5, 0, "pqrst"},
                                         Move{3, 5, 0, "pqrst"}, Move{-2, -1, 3, "pqrst"},
                                         Move{0, 1, 6, "pqrst"}, Move{3, 4, -1, "pqrst"}));

INSTANTIATE_TEST_SUITE_P(EmptyRun, MovingChildrenExample,
                         testing::Values(Move{2, 1, 0, "pqrst"}, Move{2, 1, 5, "pqrst"},
                                         Move{4, 1, 0, "pqrst"}));

INSTANTIATE_TEST_SUITE_P(IntoItself, MovingChildrenExample,
                         testing::Values(Move{1, 3, 2, "pqrst"}, Move{1, 3, 3, "pqrst"}));

TEST(MovingChildren, TheLastChildMovesToTheFront)
{
    const Library library = fiveChildren();
    library->boxRoot()->moveChildren(4, 4, 0);
    EXPECT_EQ(order(*library->boxRoot()), "tpqrs");
}

TEST(MovingChildren, TheFirstChildMovesToTheEnd)
{
    const Library library = fiveChildren();
    library->boxRoot()->moveChildren(0, 0, 5);
    EXPECT_EQ(order(*library->boxRoot()), "qrstp");
}

TEST(MovingChildren, ARunStaysWhenItsDestinationIsJustAfterIt)
{
    const Library library = fiveChildren();
    library->boxRoot()->moveChildren(1, 3, 4);
    EXPECT_EQ(order(*library->boxRoot()), "pqrst");
}

TEST(MovingChildren, EveryMoveOfFiveChildrenIsTheOneThatTakesTheRunOutAndPutsItIn)
{
    const Library library = fiveChildren();
    BoxLibraryNode* const root = library->boxRoot();
    for (int first = -1; first <= 6; ++first) {
        for (int last = -1; last <= 6; ++last) {
            for (int destination = -1; destination <= 6; ++destination) {
                const std::string before = order(*root);
                root->moveChildren(first, last, destination);
                ASSERT_EQ(order(*root), movedOrder(before, first, last, destination))
                    << "moveChildren(" << first << ", " << last << ", " << destination << ") on "
                    << before;
            }
        }
    }
}

TEST(MovingChildren, AFolderWithoutChildrenStaysWithout)
{
    const Library library = newLibrary();
    library->boxRoot()->moveChildren(0, 0, 0);
    EXPECT_TRUE(library->boxRoot()->children().isEmpty());
}

TEST(MovingChildren, TheChildrenOfADetachedFolderMoveToo)
{
    const Library library = fiveChildren();
    const DetachedNode copy(library->boxRoot()->clone());
    copy->moveChildren(3, 4, 1);
    EXPECT_EQ(order(*copy), "pstqr");
    EXPECT_EQ(order(*library->boxRoot()), "pqrst");
}

TEST(MovingChildren, NamesFilesAndDirtinessStayAndNothingIsSignalled)
{
    const Library library = fiveChildren();
    BoxLibraryNode* const root = library->boxRoot();
    library->setTranslations(translators({translator("fr", {"Library:/p", "Library:/t"})}));
    const auto contents = contentsOf(library->projectModel());
    const QList<BoxLibraryNode*> before = root->children();
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    const QSignalSpy dirty(library.get(), &BoxLibrary::dirtyChanged);
    const QSignalSpy translations(library.get(), &BoxLibrary::translationFilesListChanged);

    root->moveChildren(0, 0, 5);

    EXPECT_EQ(root->children(),
              (QList<BoxLibraryNode*>{before[1], before[2], before[3], before[4], before[0]}));
    EXPECT_EQ(before[0]->name(), "p");
    EXPECT_EQ(before[0]->fileName(), "p");
    EXPECT_EQ(before[0]->path(), q("p"));
    EXPECT_EQ(before[0]->index(), 4);
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/p", "Library:/t"}));
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(data.count() + dirty.count() + translations.count(), 0);
}

TEST(MovingChildren, ADirtyLibraryStaysDirty)
{
    const Library library = fiveChildren();
    library->setDirty(true);
    library->boxRoot()->moveChildren(0, 0, 5);
    EXPECT_TRUE(library->isDirty());
}

class MovingChildrenIsWritten : public testing::TestWithParam<void (*)(BoxLibraryNode&)>
{
};

TEST_P(MovingChildrenIsWritten, ByTheNextSaveOfTheFolder)
{
    const Library library = fiveChildren();
    library->boxRoot()->moveChildren(4, 4, 0);
    ASSERT_EQ(orderIn(library->projectModel()), (Names{"p", "q", "r", "s", "t"}));
    GetParam()(*library->boxRoot());
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"t", "p", "q", "r", "s"}));
}

INSTANTIATE_TEST_SUITE_P(ThreeWays, MovingChildrenIsWritten,
                         testing::Values([](BoxLibraryNode& folder) { folder.saveFolder(); },
                                         [](BoxLibraryNode& folder) { folder.save(); },
                                         [](BoxLibraryNode& folder) { folder.saveAll(); }));

class MovingChildrenInBothForms : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
};

TEST_P(MovingChildrenInBothForms, ASavedOrderIsTheOneThatIsLoaded)
{
    const TemporaryDirectory directory;
    Library library = fiveChildren();
    library->boxRoot()->moveChildren(0, 1, 4);
    library->boxRoot()->save();
    library = reopened(std::move(library), directory, GetParam());
    EXPECT_EQ(order(*library->boxRoot()), "rspqt");
}

TEST_P(MovingChildrenInBothForms, AnOrderThatWasNotSavedIsLost)
{
    const TemporaryDirectory directory;
    Library library = fiveChildren();
    library->boxRoot()->moveChildren(0, 1, 4);
    library = reopened(std::move(library), directory, GetParam());
    EXPECT_EQ(order(*library->boxRoot()), "pqrst");
}

INSTANTIATE_TEST_SUITE_P(Form, MovingChildrenInBothForms,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive), formName);

} // namespace
} // namespace KX::test
