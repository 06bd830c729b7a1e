#include "support.hpp"

#include <kr/localization/ts.hpp>

#include <QSignalSpy>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;

Names translationsIn(const BoxLibrary& library)
{
    return filesOf(library.projectModel(), "translations");
}

// What can be seen of a library's translations each time that their list is said to have changed.
class Changes
{
public:
    explicit Changes(BoxLibrary& library)
    {
        m_connection =
            QObject::connect(&library, &BoxLibrary::translationFilesListChanged, [this, &library] {
                m_states.emplace_back(listOf(library), languagesOf(library));
            });
    }
    ~Changes() { QObject::disconnect(m_connection); }
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;
    Changes(Changes&&) = delete;
    Changes& operator=(Changes&&) = delete;

    using States = std::vector<std::pair<Names, Names>>;
    const States& states() const { return m_states; }

private:
    States m_states;
    QMetaObject::Connection m_connection;
};

void expectWarning(const LogRecords& records, const std::string& message)
{
    ASSERT_EQ(records.all().size(), 1U);
    const pk::log::Record& record = records.all().front();
    EXPECT_EQ(record.message, message);
    EXPECT_EQ(record.level, pk::log::Warning);
    EXPECT_EQ(record.level, 3);
    EXPECT_EQ(record.category, "BoxLibrary");
    EXPECT_EQ(record.function, "updateTranslators");
    EXPECT_EQ(record.file, "gui/lib/desktop/kxboxlibrary/src/box_library");
    EXPECT_GT(record.line, 0);
}

TEST(TranslationFiles, AreNoneInALibraryWithoutTheirDirectory)
{
    const Library library = open(project({{"A/box.bhx", boxFile()}}));
    EXPECT_TRUE(library->translationsFiles().isEmpty());
    EXPECT_TRUE(library->translations().isEmpty());
}

TEST(TranslationFiles, AreListedWhenALibraryIsOpened)
{
    const Library library = open(project({{"translations/translation_fr.ts", tsFile("fr")}}));
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->updateTranslationFilesList();
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(listOf(*library), Names{"translation_fr.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST(TranslationFiles, MayHaveAnyName)
{
    const Library library = open(project(
        {{"translations/b.txt", tsFile("fr")}, {"translations/A", tsFile("de", {"x", "y"})}}));
    EXPECT_EQ(listOf(*library), (Names{"A", "b.txt"}));
    EXPECT_EQ(languagesOf(*library), (Names{"de 2", "fr 1"}));
}

TEST(TranslationFiles, AreThoseDirectlyInTheirDirectory)
{
    const Library library = open(project({{"translations/fr.ts", tsFile("fr")},
                                          {"translations/old/de.ts", tsFile("de")},
                                          {"other/translations/it.ts", tsFile("it")},
                                          {"es.ts", tsFile("es")}}));
    EXPECT_EQ(listOf(*library), Names{"fr.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

class StoredTranslations : public testing::TestWithParam<ArchiveFormat>
{
};

TEST_P(StoredTranslations, AreLocalFiles)
{
    const TemporaryDirectory directory;
    const Library library = open(stored(project({{"translations/translation_fr.ts", tsFile("fr")}}),
                                        directory.path("library.bxl"), GetParam()));
    ASSERT_EQ(library->translationsFiles().size(), 1);
    const QString path = library->translationsFiles().front();
    EXPECT_TRUE(QDir::isAbsolutePath(path));
    EXPECT_EQ(path, library->projectModel().getFileLocalPath(q("translations/translation_fr.ts")));
    EXPECT_EQ(getLocal(path), tsFile("fr"));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST_P(StoredTranslations, AreSavedWithTheLibrary)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("library.bxl");
    const Library library =
        open(stored(project({{"translations/old.ts", tsFile("fr")}}), path, GetParam()));
    library->setTranslations(translators({translator("it", {"x", "y"})}));
    EXPECT_EQ(languagesOf(*open(ProjectModel(path))), Names{"fr 1"});
    library->save();
    EXPECT_EQ(languagesOf(*open(ProjectModel(path))), Names{"it 2"});
}

TEST_P(StoredTranslations, CanBeReadAgainAfterTheLibraryWasSaved)
{
    const TemporaryDirectory directory;
    const Library library = open(stored(project({{"translations/old.ts", tsFile("fr")}}),
                                        directory.path("library.bxl"), GetParam()));
    library->setTranslations(translators({translator("it", {"x", "y"})}));
    library->save();
    const LogRecords records;
    library->updateTranslators();
    EXPECT_EQ(languagesOf(*library), Names{"it 2"});
    EXPECT_TRUE(records.all().empty());
}

TEST_P(StoredTranslations, AreListedAtTheNewPlaceAfterSavingThere)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("new.bxl");
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {"x"})}));
    library->saveTo(path,
                    GetParam() == ArchiveFormat::Zip ? BoxLibrary::Archive : BoxLibrary::Directory);
    EXPECT_EQ(library->translationsFiles(), QStringList{library->projectModel().getFileLocalPath(
                                                q("translations/translation_fr.ts"))});
    EXPECT_EQ(getLocal(library->translationsFiles().front()), tsFile("fr", {"x"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    EXPECT_EQ(languagesOf(*open(ProjectModel(path))), Names{"fr 1"});
}

INSTANTIATE_TEST_SUITE_P(Forms, StoredTranslations,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip));

TEST(TranslationFiles, SignalTheirListOnlyWhenItChanges)
{
    const Library library = open(project({{"translations/de.ts", tsFile("de")}}));
    const Changes changes(*library);
    library->updateTranslationFilesList();
    EXPECT_TRUE(changes.states().empty());
    library->projectModel().writeFile(q("translations/fr.ts"), tsFile("fr"));
    library->updateTranslationFilesList();
    library->updateTranslationFilesList();
    // By the time of the signal the translators have been read.
    EXPECT_EQ(changes.states(), (Changes::States{{{"de.ts", "fr.ts"}, {"de 1", "fr 1"}}}));
}

TEST(TranslationFiles, AreNotReadAgainWhileTheListStays)
{
    const TemporaryDirectory directory;
    const Library library = open(stored(project({{"translations/fr.ts", tsFile("fr")}}),
                                        directory.path("library"), ArchiveFormat::Directory));
    putLocal(directory.path("library/translations/fr.ts"), tsFile("fr", {"x", "y"}));
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->updateTranslationFilesList();
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST(Translators, AreReadAnewOnDemandWithoutASignal)
{
    const TemporaryDirectory directory;
    const Library library = open(
        stored(project({{"translations/a.ts", tsFile("fr")}, {"translations/b.ts", tsFile("de")}}),
               directory.path("library"), ArchiveFormat::Directory));
    putLocal(directory.path("library/translations/a.ts"), tsFile("it", {"x", "y"}));
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->updateTranslators();
    EXPECT_EQ(languagesOf(*library), (Names{"de 1", "it 2"}));
    EXPECT_EQ(changed.count(), 0);
}

TEST(Translators, ComeFromTheFirstFileOfALanguage)
{
    const LogRecords records;
    const Library library =
        open(project({{"translations/translation_fr.ts", tsFile("fr", {"x", "y"})},
                      {"translations/other.ts", tsFile("fr", {"x"})}}));
    EXPECT_EQ(listOf(*library), (Names{"other.ts", "translation_fr.ts"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    EXPECT_TRUE(records.all().empty());
}

TEST(Translators, PassOverAFileThatNamesNoLanguage)
{
    const Library library = newLibrary();
    library->projectModel().writeFile(q("translations/a.ts"), tsFile(""));
    library->projectModel().writeFile(q("translations/fr.ts"), tsFile("fr"));
    const LogRecords records;
    library->updateTranslationFilesList();
    EXPECT_EQ(listOf(*library), (Names{"a.ts", "fr.ts"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    expectWarning(records, "Demo- No language code found in " +
                               library->translationsFiles().front().toStdString() +
                               " translation file");
}

TEST(Translators, PassOverAFileThatIsNoTranslationFile)
{
    const Library library = newLibrary();
    library->projectModel().writeFile(q("translations/a.ts"), "no XML");
    const LogRecords records;
    library->updateTranslationFilesList();
    EXPECT_TRUE(library->translations().isEmpty());
    ASSERT_EQ(records.of("BoxLibrary").size(), 1U);
    EXPECT_EQ(records.of("BoxLibrary").front().message,
              "Demo- No language code found in " +
                  library->translationsFiles().front().toStdString() + " translation file");
}

TEST(Translators, PassOverAFileThatCannotBeOpened)
{
    const TemporaryDirectory directory;
    ProjectModel model =
        project({{"translations/a.ts", tsFile("fr")}, {"translations/b.ts", tsFile("de")}});
    model.setMetadata(q("title"), q("My boxes"));
    const Library library =
        open(stored(std::move(model), directory.path("library"), ArchiveFormat::Directory));
    const QString path = directory.path("library/translations/a.ts");
    ASSERT_TRUE(QFile::remove(path));
    const LogRecords records;
    library->updateTranslators();
    EXPECT_EQ(languagesOf(*library), Names{"de 1"});
    expectWarning(records, "My boxes- could not open translation file: " + path.toStdString());
}

TEST(SetTranslations, WritesOneFilePerLanguageAndNoOther)
{
    const Library library = open(project({{"translations/translation_it.ts", tsFile("it")},
                                          {"translations/other.txt", "other"},
                                          {"translations/old/x.ts", tsFile("es")}}));
    const auto fr = translator("fr", {"Library:/A", "Library:/B"});
    library->setTranslations(translators({fr, translator("de", {"Library:/C"})}));
    EXPECT_EQ(translationsIn(*library), (Names{"translation_de.ts", "translation_fr.ts"}));
    EXPECT_EQ(library->projectModel().readFile(q("translations/translation_fr.ts")),
              KR::Localization::TS::translatorTo(fr, false));
    EXPECT_EQ(contextsOf(*library, "fr"), (Names{"Library:/A", "Library:/B"}));
    EXPECT_EQ(contextsOf(*library, "de"), Names{"Library:/C"});
}

TEST(SetTranslations, WritesTheFilesInTheOrderOfTheirLanguages)
{
    const Library library = newLibrary();
    // Names end at their first NUL, so that all are one file: the last one written stays.
    BoxLibrary::Translators set;
    for (const char* const last : {"5", "1", "9", "3", "7"}) {
        const QString key = q("x") + QChar(0) + QLatin1String(last);
        set.insert(key, translator(std::string("x") + last, {"Library:/A"}));
    }
    library->setTranslations(set);
    EXPECT_EQ(translationsIn(*library), Names{"translation_x.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"x9 1"});
}

TEST(SetTranslations, SignalsTheEmptyListAndThenTheNewOne)
{
    const Library library = open(project({{"translations/it.ts", tsFile("it")}}));
    const Changes changes(*library);
    library->setTranslations(translators({translator("fr", {"x", "y"}), translator("de", {"x"})}));
    EXPECT_EQ(changes.states(),
              (Changes::States{{{}, {}},
                               {{"translation_de.ts", "translation_fr.ts"}, {"de 1", "fr 2"}}}));
}

TEST(SetTranslations, RemovesTheOldFilesBeforeItSignals)
{
    const Library library = open(project({{"translations/it.ts", tsFile("it")}}));
    std::vector<Names> files;
    QObject::connect(library.get(), &BoxLibrary::translationFilesListChanged,
                     [&] { files.push_back(translationsIn(*library)); });
    library->setTranslations(translators({translator("fr", {"x"})}));
    EXPECT_EQ(files, (std::vector<Names>{{"translation_fr.ts"}, {"translation_fr.ts"}}));
}

TEST(SetTranslations, TakesThePlacesOfWhatIsNoFile)
{
    const Library library = open(project({{"translations/translation_fr.ts/x", "x"}}));
    library->setTranslations(translators({translator("fr", {"x"})}));
    EXPECT_EQ(translationsIn(*library), Names{"translation_fr.ts"});
}

TEST(SetTranslations, TakesThePlaceOfAFileWithTheNameOfTheirDirectory)
{
    const Library library = open(project({{"translations", "x"}}));
    library->setTranslations(translators({translator("fr", {"x"})}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    EXPECT_EQ(translationsIn(*library), Names{"translation_fr.ts"});
}

TEST(SetTranslations, SignalsOnceWhereThereWereNone)
{
    const Library library = newLibrary();
    const Changes changes(*library);
    library->setTranslations(translators({translator("fr", {"x"})}));
    EXPECT_EQ(changes.states(), (Changes::States{{{"translation_fr.ts"}, {"fr 1"}}}));
}

TEST(SetTranslations, RemovesTheDirectoryWithTheLastLanguage)
{
    const Library library = open(project({{"translations/it.ts", tsFile("it")}}));
    const Changes changes(*library);
    library->setTranslations({});
    EXPECT_TRUE(library->translationsFiles().isEmpty());
    EXPECT_TRUE(library->translations().isEmpty());
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, true, true), QStringList());
    EXPECT_EQ(changes.states(), (Changes::States{{{}, {}}}));
}

TEST(SetTranslations, DoesNothingToNoneWithNone)
{
    const Library library = newLibrary();
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->setTranslations({});
    EXPECT_EQ(changed.count(), 0);
    EXPECT_TRUE(library->translations().isEmpty());
}

TEST(SetTranslations, ReadsBackWhatWasWritten)
{
    const Library library = newLibrary();
    KR::Localization::Translator fr = translator("fr", {"Library:/A", "Library:/A"});
    fr.messages()[0].setExtraComment(q("what it means"));
    library->setTranslations(translators({fr}));
    // A file holds a message but once.
    fr.messages().removeLast();
    EXPECT_EQ(library->translations().value(q("fr")), fr);
}

TEST(SetTranslations, KeepsALanguageWithoutMessages)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {})}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 0"});
}

TEST(SetTranslations, NamesTheFileByTheKeyAndTheTranslatorByItsLanguage)
{
    const Library library = newLibrary();
    library->setTranslations({{q("key"), translator("fr", {"x"})}});
    EXPECT_EQ(translationsIn(*library), Names{"translation_key.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST(SetTranslations, LosesATranslatorWithoutLanguage)
{
    const Library library = newLibrary();
    const LogRecords records;
    library->setTranslations({{q("fr"), translator("", {"x"})}});
    EXPECT_EQ(translationsIn(*library), Names{"translation_fr.ts"});
    EXPECT_TRUE(library->translations().isEmpty());
    EXPECT_EQ(records.of("BoxLibrary").size(), 1U);
}

TEST(SetTranslations, DoesNotMakeTheLibraryDirty)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {"x"})}));
    EXPECT_FALSE(library->isDirty());
}

struct OddLanguage
{
    const char* code;
    const char* file;
};

class OddLanguageCode : public testing::TestWithParam<OddLanguage>
{
};

TEST_P(OddLanguageCode, IsEscapedInTheFileName)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator(GetParam().code, {"x"})}));
    EXPECT_EQ(translationsIn(*library), Names{GetParam().file});
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"bxlinfo", std::string("translations/") + GetParam().file}));
    EXPECT_EQ(languagesOf(*library), Names{std::string(GetParam().code) + " 1"});
}

INSTANTIATE_TEST_SUITE_P(
    Codes, OddLanguageCode,
    testing::Values(OddLanguage{"pt/BR", "translation_pt%2fBR.ts"},
                    OddLanguage{"../../up", "translation_..%2f..%2fup.ts"},
                    OddLanguage{"%1", "translation_%251.ts"},
                    OddLanguage{"a<b>c:d\"e|f?g*h", "translation_a%3cb%3ec%3ad%22e%7cf%3fg%2ah.ts"},
                    OddLanguage{"fr.", "translation_fr%2e.ts"},
                    OddLanguage{"fr ", "translation_fr%20.ts"},
                    OddLanguage{"fran\xc3\xa7"
                                "ais",
                                "translation_fran\xc3\xa7"
                                "ais.ts"}));

// A key that no project has room for.
QString refusedKey()
{
    return QString(5000, QLatin1Char('x'));
}

TEST(SetTranslations, PutsTheOldFilesBackWhenTheModelThrows)
{
    const Library library = open(project({{"translations/translation_fr.ts", tsFile("fr")},
                                          {"translations/other.ts", tsFile("it", {"x", "y"})}}));
    const BoxLibrary::Translators before = library->translations();
    EXPECT_THROW(library->setTranslations(
                     {{q("de"), translator("de", {"x"})}, {refusedKey(), translator("x", {"x"})}}),
                 pk::project::InvalidPath);
    EXPECT_EQ(translationsIn(*library), (Names{"translation_fr.ts", "translation_it.ts"}));
    EXPECT_EQ(listOf(*library), (Names{"translation_fr.ts", "translation_it.ts"}));
    EXPECT_EQ(library->translations(), before);
    EXPECT_EQ(library->projectModel().readFile(q("translations/translation_fr.ts")), tsFile("fr"));
}

TEST(SetTranslations, SignalsTheEmptyListAndThenTheOldOneWhenTheModelThrows)
{
    const Library library = open(project({{"translations/translation_fr.ts", tsFile("fr")}}));
    const Changes changes(*library);
    EXPECT_THROW(library->setTranslations({{refusedKey(), translator("x", {"x"})}}),
                 pk::project::InvalidPath);
    EXPECT_EQ(changes.states(), (Changes::States{{{}, {}}, {{"translation_fr.ts"}, {"fr 1"}}}));
}

// The limit lets the new German pass, but neither the new French nor the old Italian.
TEST(SetTranslations, LeavesTheOldFilesOnADiskThatIsFull)
{
    const Library library =
        open(project({{"translations/translation_fr.ts", tsFile("fr")},
                      {"translations/other.ts", tsFile("it", {"a", "b", "c", "d", "e", "f"})}}));
    const BoxLibrary::Translators before = library->translations();
    {
        const FileSizeLimit limit(static_cast<rlim_t>(tsFile("de").size()));
        EXPECT_THROW(library->setTranslations(
                         translators({translator("de", {"Library:/A"}),
                                      translator("fr", {"a", "b", "c", "d", "e", "f", "g", "h"})})),
                     pk::project::IoError);
    }
    EXPECT_EQ(library->translations(), before);
    EXPECT_EQ(translationsIn(*library), (Names{"other.ts", "translation_fr.ts"}));
}

TEST(SetTranslations, ReportsTheFirstFailureWhenTheOldFilesAreRefusedToo)
{
    const std::string code(5000, 'y');
    const Library library = open(project({{"translations/long.ts", tsFile(code)}}));
    try {
        library->setTranslations({{refusedKey(), translator("x", {"x"})}});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const pk::project::InvalidPath& error) {
        EXPECT_NE(std::string(error.what()).find("translation_xxx"), std::string::npos)
            << error.what();
    }
    EXPECT_TRUE(library->translations().isEmpty());
    EXPECT_TRUE(library->translationsFiles().isEmpty());
}

} // namespace
} // namespace KX::test
