#include "support.hpp"

#include <QSignalSpy>

namespace KX::test {
namespace {

using KR::Localization::Message;

/// The folder motion with the boxes walk and walker, and the box Wave, in two languages.
Library motionLibrary()
{
    Library library = open(project({{"motion/walk/box.bhx", boxFile()},
                                    {"motion/walker/box.bhx", boxFile()},
                                    {"motionless/box.bhx", boxFile()},
                                    {"Wave/box.bhx", boxFile()}}));
    const Names contexts{"Library:/Wave", "Library:/motion", "Library:/motion/walk",
                         "Library:/motion/walker", "Library:/motionless"};
    library->setTranslations(translators({translator("de", contexts), translator("fr", contexts)}));
    library->setDirty(false);
    return library;
}

BoxLibraryNode* nodeAt(const Library& library, const Names& names)
{
    BoxLibraryNode* node = library->boxRoot();
    for (const std::string& name : names) {
        node = node->child(name);
    }
    return node;
}

Names translationFilesOf(const Library& library)
{
    return filesOf(library->projectModel(), "translations");
}

/// The contexts in a language's file, read without the library.
Names contextsInFile(const Library& library, const std::string& language)
{
    Names contexts;
    const QByteArray file =
        library->projectModel().readFile(q("translations/translation_" + language + ".ts"));
    const auto root = element(file.toStdString());
    for (const auto& context : root->children("context", "")) {
        contexts.push_back(*context->firstChild("name")->text());
    }
    return contexts;
}

Message message(const std::string& context, const std::string& source,
                const std::string& translation)
{
    Message result(q(context), q(source));
    result.setTranslation(q(translation));
    result.setState(Message::State::Finished);
    return result;
}

// Contexts

TEST(TranslationContext, OfTheLibrary)
{
    const Library library = newLibrary();
    EXPECT_EQ(library->translationContext(), q("Library:"));
}

TEST(TranslationContext, OfANodeIsItsPathBelowTheLibrarys)
{
    const Library library = motionLibrary();
    EXPECT_EQ(nodeAt(library, {"motion", "walk"})->translationContext(), q("Library:/motion/walk"));
    EXPECT_EQ(nodeAt(library, {"Wave"})->translationContext(), q("Library:/Wave"));
}

TEST(TranslationContext, OfTheRootEndsInASlash)
{
    const Library library = newLibrary();
    EXPECT_EQ(library->boxRoot()->translationContext(), q("Library:/"));
}

TEST(TranslationContext, HasFileNamesAndNotNames)
{
    const Library library = newLibrary();
    const BoxLibraryNode* const box = library->boxRoot()->appendChild(description("Stop?"));
    EXPECT_EQ(box->translationContext(), q("Library:/Stop%3f"));
}

TEST(TranslationContext, WithoutALibraryIsThePathAlone)
{
    const Library library = motionLibrary();
    const DetachedNode folder(nodeAt(library, {"motion"})->clone());
    EXPECT_EQ(folder->translationContext(), q("/"));
    EXPECT_EQ(folder->child(0)->translationContext(), q("/walk"));
}

// Renaming

TEST(MessageTransfer, RenamingABoxRewritesItsContextInEveryLanguage)
{
    const Library library = motionLibrary();
    nodeAt(library, {"motion", "walk"})->setName("run");
    const Names contexts{"Library:/Wave", "Library:/motion", "Library:/motion/run",
                         "Library:/motion/walker", "Library:/motionless"};
    EXPECT_EQ(contextsOf(*library, "de"), contexts);
    EXPECT_EQ(contextsOf(*library, "fr"), contexts);
    EXPECT_EQ(contextsInFile(library, "de"), contexts);
    EXPECT_EQ(contextsInFile(library, "fr"), contexts);
}

TEST(MessageTransfer, RenamingAFolderRewritesTheContextsOfAllBelow)
{
    const Library library = motionLibrary();
    nodeAt(library, {"motion"})->setName("moves");
    const Names contexts{"Library:/Wave", "Library:/moves", "Library:/moves/walk",
                         "Library:/moves/walker", "Library:/motionless"};
    EXPECT_EQ(contextsOf(*library, "de"), contexts);
    EXPECT_EQ(contextsOf(*library, "fr"), contexts);
}

TEST(MessageTransfer, RenamingToATakenNameUsesTheNumberedOne)
{
    const Library library = motionLibrary();
    nodeAt(library, {"motion", "walk"})->setName("walker");
    EXPECT_EQ(contextsOf(*library, "fr"),
              (Names{"Library:/Wave", "Library:/motion", "Library:/motion/walker (2)",
                     "Library:/motion/walker", "Library:/motionless"}));
}

TEST(MessageTransfer, RenamingBackGivesTheFormerContextBack)
{
    const Library library = motionLibrary();
    const Names before = contextsOf(*library, "fr");
    nodeAt(library, {"motion"})->setName("a+b (c|d).*?");
    EXPECT_EQ(contextsOf(*library, "fr")[2], "Library:/a+b (c%7cd).%2a%3f/walk");
    nodeAt(library, {"a+b (c|d).*?"})->setName("motion");
    EXPECT_EQ(contextsOf(*library, "fr"), before);
}

TEST(MessageTransfer, RenamingKeepsEverythingElseOfAMessage)
{
    const Library library = motionLibrary();
    nodeAt(library, {"Wave"})->setName("Greet");
    const Message renamed = library->translations().value(q("fr")).messages().first();
    Message expected = message("Library:/Greet", "text", "translated");
    EXPECT_EQ(renamed, expected);
}

TEST(MessageTransfer, ARenamedNodeOfADetachedTreeLeavesTheLibrarysMessages)
{
    const Library library = motionLibrary();
    const DetachedNode folder(nodeAt(library, {"motion"})->take());
    const Names before = contextsOf(*library, "fr");
    folder->child("walk")->setName("run");
    EXPECT_EQ(contextsOf(*library, "fr"), before);
}

TEST(MessageTransfer, ChangeContextRewritesAContextAndAllBelow)
{
    const Library library = motionLibrary();
    nodeAt(library, {"Wave"})->changeContext(q("Library:/motion"), q("Library:/x"));
    EXPECT_EQ(contextsOf(*library, "de"), (Names{"Library:/Wave", "Library:/x", "Library:/x/walk",
                                                 "Library:/x/walker", "Library:/motionless"}));
}

TEST(MessageTransfer, ChangeContextWithoutALibraryDoesNothing)
{
    const Library library = motionLibrary();
    const DetachedNode box(nodeAt(library, {"Wave"})->take());
    const auto contents = contentsOf(library->projectModel());
    const auto own = contentsOf(*box->project());
    box->changeContext(q("Library:/Wave"), q("Library:/x"));
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(contentsOf(*box->project()), own);
}

TEST(MessageTransfer, OfSeveralOldContextsTheLongestCounts)
{
    const Library library = motionLibrary();
    library->changeContextes(
        {{q("Library:/motion"), q("Library:/m")}, {q("Library:/motion/walk"), q("Library:/w")}});
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/Wave", "Library:/m", "Library:/w",
                                                 "Library:/m/walker", "Library:/motionless"}));
}

TEST(MessageTransfer, ContextsCanBeSwapped)
{
    const Library library = motionLibrary();
    library->changeContextes({{q("Library:/motion/walk"), q("Library:/motion/walker")},
                              {q("Library:/motion/walker"), q("Library:/motion/walk")}});
    EXPECT_EQ(contextsOf(*library, "fr"),
              (Names{"Library:/Wave", "Library:/motion", "Library:/motion/walker",
                     "Library:/motion/walk", "Library:/motionless"}));
}

// Removing

TEST(MessageTransfer, RemovingAFolderRemovesItsMessagesAndAllBelowInEveryLanguage)
{
    const Library library = motionLibrary();
    removeChildTree(*library->boxRoot(), nodeAt(library, {"motion"})->index());
    const Names contexts{"Library:/Wave", "Library:/motionless"};
    EXPECT_EQ(contextsOf(*library, "de"), contexts);
    EXPECT_EQ(contextsOf(*library, "fr"), contexts);
    EXPECT_EQ(contextsInFile(library, "fr"), contexts);
}

TEST(MessageTransfer, ALanguageWithoutMessagesStaysWithItsFile)
{
    const Library library = open(project({{"Wave/box.bhx", boxFile()}}));
    library->setTranslations(translators({translator("fr", {"Library:/Wave"})}));
    library->boxRoot()->removeChild(0);
    EXPECT_TRUE(library->translations().contains(q("fr")));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{});
    EXPECT_EQ(translationFilesOf(library), Names{"translation_fr.ts"});
}

TEST(MessageTransfer, SpecialCharactersOfARemovedContextAreLiteral)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator(
        "fr", {"Library:/a.b", "Library:/a.b/c", "Library:/aXb", "Library:/(", "Library:/a.bc"})}));
    library->removeTranslations(q("Library:/a.b"));
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/aXb", "Library:/(", "Library:/a.bc"}));
    library->removeTranslations(q("Library:/("));
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/aXb", "Library:/a.bc"}));
}

TEST(MessageTransfer, RemovingTheTranslationsOfTheRootRemovesAllThatAreTheLibrarys)
{
    const Library library = newLibrary();
    library->setTranslations(translators(
        {translator("fr", {"Library:", "Library:/", "Library:/a/b", "Library:x", "Other:/a"})}));
    library->boxRoot()->removeTranslations();
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:x", "Other:/a"}));
}

TEST(MessageTransfer, RemovingTheTranslationsOfANodeLeavesTheNode)
{
    const Library library = motionLibrary();
    nodeAt(library, {"motion", "walk"})->removeTranslations();
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/Wave", "Library:/motion",
                                                 "Library:/motion/walker", "Library:/motionless"}));
    EXPECT_NE(nodeAt(library, {"motion", "walk"}), nullptr);
}

TEST(MessageTransfer, RemovingTranslationsWithoutALibraryDoesNothing)
{
    const Library library = motionLibrary();
    const DetachedNode folder(nodeAt(library, {"motion"})->take());
    const Names before = contextsOf(*library, "fr");
    folder->removeTranslations();
    folder->child("walk")->removeTranslations();
    EXPECT_EQ(contextsOf(*library, "fr"), before);
    EXPECT_EQ(filesOf(*folder->project(), "walk"), Names{"box.bhx"});
}

// Inserting

TEST(MessageTransfer, InsertedMessagesComeUnderTheirBoxesNewPlace)
{
    const Library library = motionLibrary();
    library->boxRoot()->child("motion")->insertChildren(
        0, {BoxLibraryNode::fromDescription(description("jump"))},
        translators({translator("fr", {"Library:/sports/jump", "Library:/sports/jump/high"})}));
    Names contexts = contextsOf(*library, "fr");
    contexts.erase(contexts.begin(), contexts.begin() + 5);
    EXPECT_EQ(contexts, (Names{"Library:/motion/jump", "Library:/motion/jump/high"}));
}

TEST(MessageTransfer, AnInsertedFoldersMessagesFollowTheFolder)
{
    const Library source = motionLibrary();
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("all");
    library->insertChildren(folder, 0, {nodeAt(source, {"motion"})->clone()},
                            source->translations());
    const Names contexts = contextsOf(*library, "fr");
    EXPECT_EQ(contexts[1], "Library:/all/motion");
    EXPECT_EQ(contexts[2], "Library:/all/motion/walk");
    EXPECT_EQ(contexts[3], "Library:/all/motion/walker");
}

TEST(MessageTransfer, MessagesInsertedAtTheRootHaveOneSlash)
{
    const Library library = newLibrary();
    library->boxRoot()->insertChildren(0, {BoxLibraryNode::fromDescription(description("jump"))},
                                       translators({translator("fr", {"Library:/sports/jump"})}));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/jump"});
}

TEST(MessageTransfer, MessagesOfABoxThatIsRenamedOnInsertionComeUnderTheNewName)
{
    const Library library = motionLibrary();
    library->boxRoot()->insertChildren(-1, {BoxLibraryNode::fromDescription(description("Wave"))},
                                       translators({translator("fr", {"Library:/Wave"})}));
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "Wave (2)");
    const Names contexts = contextsOf(*library, "fr");
    EXPECT_EQ(contexts.front(), "Library:/Wave");
    EXPECT_EQ(contexts.back(), "Library:/Wave (2)");
}

TEST(MessageTransfer, NamesAreComparedAsFileNames)
{
    const Library library = newLibrary();
    library->boxRoot()->appendChild(description("What?"));
    library->insertMessages(QString(), translators({translator("fr", {"Library:/old/What%3f/x"})}),
                            {{q("What?"), q("a/b")}});
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/a%2fb/x"});
}

TEST(MessageTransfer, SpecialCharactersInNamesAreLiteral)
{
    const Library library = newLibrary();
    library->insertMessages(
        q("f"), translators({translator("fr", {"Library:/a.b", "Library:/aXb", "Library:/[x]+"})}),
        {{q("a.b"), q("\\1$&")}, {q("[x]+"), q("y")}});
    EXPECT_EQ(contextsOf(*library, "fr"),
              (Names{"Library:/f/\\1$&", "Library:/aXb", "Library:/f/y"}));
}

TEST(MessageTransfer, MessagesOfNoInsertedBoxComeInAsTheyAre)
{
    const Library library = newLibrary();
    library->boxRoot()->insertChildren(
        0, {BoxLibraryNode::fromDescription(description("jump"))},
        translators({translator("fr", {"Library:/other", "jump", "Library:/jumper"})}));
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/other", "jump", "Library:/jumper"}));
}

TEST(MessageTransfer, ANewLanguageComesWithItsFile)
{
    const Library library = motionLibrary();
    library->boxRoot()->insertChildren(0, {BoxLibraryNode::fromDescription(description("jump"))},
                                       translators({translator("ja", {"Library:/jump"})}));
    EXPECT_EQ(translationFilesOf(library),
              (Names{"translation_de.ts", "translation_fr.ts", "translation_ja.ts"}));
    EXPECT_EQ(contextsOf(*library, "ja"), Names{"Library:/jump"});
    EXPECT_EQ(contextsOf(*library, "fr").size(), 5U);
}

TEST(MessageTransfer, MessagesAreAddedBehindThoseThatAreThere)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {"Library:/z"})}));
    library->insertMessages(QString(),
                            translators({translator("fr", {"Library:/b", "Library:/a"})}),
                            {{q("a"), q("a")}});
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/z", "Library:/b", "Library:/a"}));
}

TEST(MessageTransfer, OfAMessageThatIsThereAlreadyTheFirstStays)
{
    const Library library = newLibrary();
    auto french = translator("fr", {});
    french.messages() = {message("Library:/a", "Hello", "Bonjour")};
    library->setTranslations(translators({french}));
    french.messages() = {message("Library:/a", "Hello", "Salut"),
                         message("Library:/a", "Bye", "!")};
    library->insertMessages(QString(), translators({french}), {{q("a"), q("a")}});
    EXPECT_EQ(library->translations().value(q("fr")).messages(),
              (QList<Message>{message("Library:/a", "Hello", "Bonjour"),
                              message("Library:/a", "Bye", "!")}));
}

TEST(MessageTransfer, TheGivenTranslatorsStayAsTheyAre)
{
    const Library library = newLibrary();
    const auto given = translators({translator("fr", {"Library:/old/jump"})});
    library->insertMessages(q("new"), given, {{q("jump"), q("jump")}});
    EXPECT_EQ(given, translators({translator("fr", {"Library:/old/jump"})}));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/new/jump"});
}

TEST(MessageTransfer, AnEmptyListOfNodesDoesNotEvenRewriteTheFiles)
{
    const Library library = open(project({{"translations/mine.ts", translationFile("fr")}}));
    const QSignalSpy signal(library.get(), &BoxLibrary::translationFilesListChanged);
    library->boxRoot()->insertChildren(0, {}, translators({translator("de", {"Library:/a"})}));
    EXPECT_EQ(translationFilesOf(library), Names{"mine.ts"});
    EXPECT_EQ(signal.count(), 0);
}

// Every operation writes once

struct Change
{
    const char* name;
    void (*apply)(BoxLibrary&);
};

class MessageTransferWrites : public testing::TestWithParam<Change>
{
};

TEST_P(MessageTransferWrites, AllFilesOnceAlsoWhenNoMessageIsConcerned)
{
    const Library library = open(project(
        {{"Box/box.bhx", boxFile()},
         {"translations/mine.ts",
          translationFile("fr", "<context><name>Library:/z</name><message><source>a</source>"
                                "<translation>b</translation></message></context>")}}));
    QStringList lists;
    QObject::connect(library.get(), &BoxLibrary::translationFilesListChanged, library.get(),
                     [&] { lists.append(q(std::to_string(library->translationsFiles().size()))); });
    GetParam().apply(*library);
    // The old files go, and the new ones come.
    EXPECT_EQ(lists, (QStringList{q("0"), q("1")}));
    EXPECT_EQ(translationFilesOf(library), Names{"translation_fr.ts"});
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/z"});
}

INSTANTIATE_TEST_SUITE_P(
    Operation, MessageTransferWrites,
    testing::Values(
        Change{"Rename", [](BoxLibrary& library) { library.boxRoot()->child(0)->setName("New"); }},
        Change{"ChangeContextes",
               [](BoxLibrary& library) {
                   library.changeContextes({{q("a"), q("b")}});
               }},
        Change{"RemoveChild", [](BoxLibrary& library) { library.boxRoot()->removeChild(0); }},
        Change{"RemoveTranslations",
               [](BoxLibrary& library) { library.removeTranslations(q("Library:/Box")); }},
        Change{"InsertMessages", [](BoxLibrary& library) { library.insertMessages({}, {}, {}); }},
        Change{"InsertChildren",
               [](BoxLibrary& library) {
                   BoxLibraryNode* const root = library.boxRoot();
                   const BoxLibraryNode* const box = root->child(0);
                   library.insertChildren(root, 0, {box->clone(), box->clone()}, {});
               }}),
    [](const auto& change) { return std::string(change.param.name); });

// Failures

const std::string& unwritable()
{
    static const std::string language(5000, 'n'); // longer than a path can be
    return language;
}

TEST(MessageTransfer, TranslationsThatCannotBeWrittenLeaveTheFormerOnes)
{
    const Library library = motionLibrary();
    const auto contents = contentsOf(library->projectModel());
    const auto before = library->translations();
    auto refused = before;
    refused.insert(q(unwritable()), translator(unwritable(), {"Library:/a"}));
    EXPECT_THROW(library->setTranslations(refused), pk::project::InvalidPath);
    EXPECT_EQ(contentsOf(library->projectModel()), contents);
    EXPECT_EQ(library->translations(), before);
    EXPECT_EQ(library->translationsFiles().size(), 2);
}

TEST(MessageTransfer, MessagesThatCannotBeWrittenLeaveTheFormerOnesAndTheInsertedNodes)
{
    const Library library = motionLibrary();
    const auto before = library->translations();
    EXPECT_THROW(library->boxRoot()->insertChildren(
                     0, {BoxLibraryNode::fromDescription(description("jump"))},
                     translators({translator("de", {"Library:/jump"}),
                                  translator(unwritable(), {"Library:/jump"})})),
                 pk::project::InvalidPath);
    EXPECT_EQ(library->translations(), before);
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "jump");
}

TEST(MessageTransfer, ALanguageThatCannotBePutBackDoesNotTakeTheOthersWithIt)
{
    const Library library = open(project({{"translations/1.ts", translationFile("de")},
                                          {"translations/2.ts", translationFile(unwritable())},
                                          {"translations/3.ts", translationFile("zu")}}));
    ASSERT_EQ(library->translations().size(), 3);
    EXPECT_THROW(library->removeTranslations(q("Library:/a")), pk::project::InvalidPath);
    EXPECT_EQ(translationFilesOf(library), (Names{"translation_de.ts", "translation_zu.ts"}));
    EXPECT_EQ(library->translationsFiles().size(), 2);
    EXPECT_TRUE(library->translations().contains(q("de")));
    EXPECT_TRUE(library->translations().contains(q("zu")));
}

// On disk

class MessageTransferInBothForms : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
};

TEST_P(MessageTransferInBothForms, MessagesFollowTheirBoxesThroughSaving)
{
    const TemporaryDirectory directory;
    Library library = reopened(motionLibrary(), directory, GetParam());
    BoxLibraryNode* const root = library->boxRoot();
    nodeAt(library, {"motion"})->setName("moves");
    removeChildTree(*root, nodeAt(library, {"motionless"})->index());
    root->insertChildren(0, {nodeAt(library, {"Wave"})->clone()},
                         translators({translator("ja", {"Library:/Wave"})}));
    library = reopened(std::move(library), directory, GetParam());
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/Wave", "Library:/moves",
                                                 "Library:/moves/walk", "Library:/moves/walker"}));
    EXPECT_EQ(contextsOf(*library, "ja"), Names{"Library:/Wave (2)"});
}

INSTANTIATE_TEST_SUITE_P(Form, MessageTransferInBothForms,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive), formName);

} // namespace
} // namespace KX::test
