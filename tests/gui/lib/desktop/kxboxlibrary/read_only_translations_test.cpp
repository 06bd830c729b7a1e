#include "support.hpp"

#include <QSignalSpy>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;

// A stored library "demo.bxl" with German in itself, and data directories of the user and of the
// system.
class InstalledLibrary : public testing::TestWithParam<ArchiveFormat>
{
protected:
    QString install(const std::string& where, const std::string& file, const QByteArray& bytes,
                    const std::string& library = "demo.bxl") const
    {
        const std::string directory = "/kinestra/libraries/box/" + library + "/translations/";
        QString path = m_directory.path(where + directory + file);
        putLocal(path, bytes);
        return path;
    }
    QString path() const { return m_directory.path("demo.bxl"); }
    ProjectModel model(ArchiveFormat format = ArchiveFormat::Directory) const
    {
        return stored(project({{"translations/translation_de.ts", tsFile("de")}}), path(), format);
    }

private:
    const TemporaryDirectory m_directory;
    const EnvironmentVariable m_home{"XDG_DATA_HOME", m_directory.path("user")};
    const EnvironmentVariable m_others{"XDG_DATA_DIRS", m_directory.path("system")};
};

TEST_P(InstalledLibrary, ReadsTheDataDirectoriesWhenReadOnly)
{
    const QString second = install("system", "a.ts", tsFile("it"));
    const QString first = install("user", "b.ts", tsFile("fr"));
    const Library library = open(model(GetParam()), true);
    EXPECT_EQ(library->translationsFiles(), (QStringList{first, second}));
    EXPECT_EQ(languagesOf(*library), (Names{"fr 1", "it 1"}));
}

INSTANTIATE_TEST_SUITE_P(Forms, InstalledLibrary,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip));

using ReadOnlyLibrary = InstalledLibrary;

TEST_F(ReadOnlyLibrary, TakesTheUsersFileBeforeTheSystems)
{
    install("system", "fr.ts", tsFile("fr"));
    const QString mine = install("user", "fr.ts", tsFile("fr", {"x", "y"}));
    const Library library = open(model(), true);
    EXPECT_EQ(library->translationsFiles(), QStringList{mine});
    EXPECT_EQ(languagesOf(*library), Names{"fr 2"});
}

TEST_F(ReadOnlyLibrary, TakesTheFirstFileOfALanguage)
{
    install("system", "a.ts", tsFile("fr"));
    install("user", "b.ts", tsFile("fr", {"x", "y"}));
    const Library library = open(model(), true);
    EXPECT_EQ(listOf(*library), (Names{"b.ts", "a.ts"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 2"});
}

TEST_F(ReadOnlyLibrary, ListsTranslationFilesOfItsOwnNameOnly)
{
    install("user", "fr.txt", tsFile("fr"));
    install("user", "sub/it.ts", tsFile("it"));
    install("user", "es.ts", tsFile("es"), "other.bxl");
    const Library library = open(model(), true);
    EXPECT_TRUE(library->translationsFiles().isEmpty());
    EXPECT_TRUE(library->translations().isEmpty());
}

TEST_F(ReadOnlyLibrary, ThatIsOnNoDiskHasNoTranslations)
{
    install("user", "fr.ts", tsFile("fr"));
    const Library library = open(project({{"translations/de.ts", tsFile("de")}}), true);
    EXPECT_TRUE(library->translationsFiles().isEmpty());
}

TEST_F(ReadOnlyLibrary, WarnsOfAFileThatIsGone)
{
    const QString file = install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model(), true);
    ASSERT_TRUE(QFile::remove(file));
    const LogRecords records;
    library->updateTranslators();
    EXPECT_TRUE(library->translations().isEmpty());
    ASSERT_EQ(records.all().size(), 1U);
    EXPECT_EQ(records.all().front().message,
              "demo- could not open translation file: " + file.toStdString());
}

TEST_F(ReadOnlyLibrary, ReadsTheDataDirectoriesWhenItBecomesReadOnly)
{
    install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model());
    EXPECT_EQ(languagesOf(*library), Names{"de 1"});
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->setReadOnly(true);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(listOf(*library), Names{"fr.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST_F(ReadOnlyLibrary, ReadsItsOwnFilesWhenItBecomesWritable)
{
    install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model(), true);
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->setReadOnly(false);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(listOf(*library), Names{"translation_de.ts"});
    EXPECT_EQ(languagesOf(*library), Names{"de 1"});
}

TEST_F(ReadOnlyLibrary, HasReadTheTranslatorsBeforeOthersHearThatItIsReadOnly)
{
    install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model());
    Names seen;
    QObject::connect(library.get(), &BoxLibrary::readOnlyChanged,
                     [&] { seen = languagesOf(*library); });
    library->setReadOnly(true);
    EXPECT_EQ(seen, Names{"fr 1"});
}

TEST_F(ReadOnlyLibrary, KeepsItsTranslatorsWhenTranslationsAreSet)
{
    const QString file = install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model(), true);
    const QSignalSpy changed(library.get(), &BoxLibrary::translationFilesListChanged);
    library->setTranslations(translators({translator("it", {"x"})}));
    EXPECT_EQ(filesOf(library->projectModel(), "translations"), Names{"translation_it.ts"});
    EXPECT_EQ(library->translationsFiles(), QStringList{file});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(getLocal(file), tsFile("fr"));
}

TEST_F(ReadOnlyLibrary, TakesItsTranslationsFromWhereItWasSaved)
{
    install("user", "fr.ts", tsFile("fr"));
    const Library library = open(model(), true);
    const QString target = path() + q(".copy");
    library->saveTo(target, BoxLibrary::Directory);
    EXPECT_FALSE(library->isReadOnly());
    EXPECT_EQ(library->translationsFiles(),
              QStringList{target + q("/translations/translation_de.ts")});
    EXPECT_EQ(languagesOf(*library), Names{"de 1"});
}

} // namespace
} // namespace KX::test
