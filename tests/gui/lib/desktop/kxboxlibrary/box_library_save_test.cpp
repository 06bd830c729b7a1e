#include "library_signals.hpp"
#include "support.hpp"

namespace KX::test {
namespace {

/// A library called "Walks" with the children A and B, and a message, saved in a form.
class SavedBoxLibrary : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
protected:
    SavedBoxLibrary()
    {
        const Library library = open(project({{"A/box.bhx", boxFile()}, {"B/", {}}}));
        library->setTranslations(translators({translator("fr", {"Library:/A"})}));
        library->saveTo(path(), GetParam());
    }

    QString path() const { return m_directory.path("Walks.bxl"); }
    QString path(const std::string& name) const { return m_directory.path(name); }
    /// A path at which nothing can be saved.
    QString badPath() const
    {
        putLocal(path("file"), "bytes");
        return path("file/Runs.bxl");
    }
    Library reopened(bool readOnly = false) const { return open(ProjectModel(path()), readOnly); }

private:
    TemporaryDirectory m_directory;
};

INSTANTIATE_TEST_SUITE_P(Forms, SavedBoxLibrary,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive),
                         [](const auto& form) {
                             return form.param == BoxLibrary::Directory ? "Directory" : "Archive";
                         });

bool isArchive(const QString& path)
{
    return QFileInfo(path).isFile() && getLocal(path).startsWith("PK");
}

// save()

TEST_P(SavedBoxLibrary, SaveKeepsEdits)
{
    const Library library = reopened();
    library->boxRoot()->appendChild("New");
    library->setTitle(q("Other"));
    library->save();
    const Library again = reopened();
    EXPECT_EQ(childNames(*again->boxRoot()), (Names{"A", "B", "New"}));
    EXPECT_EQ(again->title(), q("Other"));
}

TEST_P(SavedBoxLibrary, SaveKeepsThePlaceAndTheForm)
{
    const Library library = reopened();
    library->setTitle(q("Other"));
    library->save();
    EXPECT_EQ(library->path(), path());
    EXPECT_EQ(isArchive(path()), GetParam() == BoxLibrary::Archive);
}

TEST_P(SavedBoxLibrary, SaveMakesClean)
{
    const Library library = reopened();
    library->setDirty(true);
    const LibrarySignals heard(*library);
    library->save();
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(heard.all(), Names{"dirtyChanged false"});
}

TEST_P(SavedBoxLibrary, SaveOfACleanLibraryIsNotSignalled)
{
    const Library library = reopened();
    const LibrarySignals heard(*library);
    library->save();
    EXPECT_EQ(heard.all(), Names{});
}

TEST_P(SavedBoxLibrary, SaveLeavesAReadOnlyLibraryReadOnly)
{
    const Library library = reopened(true);
    library->setTitle(q("Other"));
    library->save();
    EXPECT_TRUE(library->isReadOnly());
    EXPECT_EQ(reopened()->title(), q("Other"));
}

TEST_P(SavedBoxLibrary, SaveWritesNoFilesOfNodes)
{
    const Library library = reopened();
    library->boxRoot()->moveChildren(0, 0, 2);
    library->save();
    EXPECT_EQ(orderIn(ProjectModel(path())), (Names{"A", "B"}));
}

TEST_P(SavedBoxLibrary, SaveAfterSaveAllHasTheFilesOfNodes)
{
    const Library library = reopened();
    library->boxRoot()->moveChildren(0, 0, 2);
    EXPECT_TRUE(library->boxRoot()->saveAll());
    library->save();
    EXPECT_EQ(orderIn(ProjectModel(path())), (Names{"B", "A"}));
}

TEST_P(SavedBoxLibrary, SaveThatFailsLeavesTheLibraryDirty)
{
    const Library library = reopened();
    const Library other = reopened();
    other->setTitle(q("Theirs"));
    other->save();
    library->setTitle(q("Mine"));
    const LibrarySignals heard(*library);
    EXPECT_THROW(library->save(), pk::project::ConflictError);
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_EQ(reopened()->title(), q("Theirs"));
}

TEST(UnsavedBoxLibrary, CannotBeSavedWithoutAPlace)
{
    const Library library = newLibrary();
    library->setDirty(true);
    const LibrarySignals heard(*library);
    EXPECT_THROW(library->save(), pk::project::Error);
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(heard.all(), Names{});
}

// saveTo()

TEST_P(SavedBoxLibrary, IsInTheFormThatWasAskedFor)
{
    EXPECT_EQ(isArchive(path()), GetParam() == BoxLibrary::Archive);
    EXPECT_EQ(QFileInfo(path()).isDir(), GetParam() == BoxLibrary::Directory);
}

TEST_P(SavedBoxLibrary, HasTreeTitleAndTranslationsWhenOpenedAgain)
{
    const Library library = reopened();
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "B"}));
    EXPECT_TRUE(library->boxRoot()->child(0)->boxData());
    EXPECT_EQ(library->title(), q("Walks"));
    EXPECT_EQ(library->projectModel().getMetadata(q("title")), q("Walks"));
    EXPECT_EQ(library->path(), path());
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/A"});
    EXPECT_FALSE(library->isDirty());
}

TEST_P(SavedBoxLibrary, SaveToGoesToTheNewPlaceAndStaysThere)
{
    const Library library = reopened();
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_EQ(library->path(), path("Runs.bxl"));
    library->boxRoot()->appendChild("New");
    library->save();
    EXPECT_EQ(childNames(*reopened()->boxRoot()), (Names{"A", "B"}));
    EXPECT_EQ(childNames(*open(ProjectModel(path("Runs.bxl")))->boxRoot()),
              (Names{"A", "B", "New"}));
}

TEST_P(SavedBoxLibrary, SaveToChangesTheForm)
{
    for (const auto form : {BoxLibrary::Archive, BoxLibrary::Directory}) {
        const Library library = reopened();
        const QString target = path("Runs.bxl");
        library->saveTo(target, form);
        EXPECT_EQ(isArchive(target), form == BoxLibrary::Archive);
        EXPECT_EQ(childNames(*open(ProjectModel(target))->boxRoot()), (Names{"A", "B"}));
    }
}

TEST_P(SavedBoxLibrary, SaveToInNoFormKeepsTheForm)
{
    const Library library = reopened();
    library->saveTo(path("Runs.bxl"), static_cast<BoxLibrary::LibraryFormat>(2));
    EXPECT_EQ(isArchive(path("Runs.bxl")), GetParam() == BoxLibrary::Archive);
}

TEST_P(SavedBoxLibrary, SaveToReplacesWhatIsThere)
{
    putLocal(path("Runs.bxl/old/file"), "bytes");
    const Library library = reopened();
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_FALSE(ProjectModel(path("Runs.bxl")).hasFile(q("old/file")));
}

TEST_P(SavedBoxLibrary, SaveToItsOwnPlaceKeepsEdits)
{
    const Library library = reopened();
    library->boxRoot()->appendChild("New");
    library->saveTo(path(), GetParam());
    EXPECT_EQ(childNames(*reopened()->boxRoot()), (Names{"A", "B", "New"}));
}

TEST_P(SavedBoxLibrary, SaveToTakesTheTitleFromThePath)
{
    const Library library = reopened();
    library->saveTo(path("Runs.KBL"), GetParam());
    EXPECT_EQ(library->title(), q("Runs"));
    EXPECT_EQ(ProjectModel(path("Runs.KBL")).getMetadata(q("title")), q("Runs"));
}

TEST_P(SavedBoxLibrary, SaveToOfAReadOnlyLibrarySignalsInOrder)
{
    const Library library = reopened();
    library->setTranslations({});
    library->save();
    library->setReadOnly(true);
    const LibrarySignals heard(*library);
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_EQ(heard.all(), (Names{"titleChanged Runs", "dirtyChanged true", "readOnlyChanged false",
                                  "dirtyChanged false"}));
    EXPECT_FALSE(library->isReadOnly());
    EXPECT_FALSE(library->isDirty());
}

TEST_P(SavedBoxLibrary, SaveToUnderTheSameTitleSignalsNoTitle)
{
    const Library library = reopened(true);
    library->setTranslations({});
    const LibrarySignals heard(*library);
    library->saveTo(path("Walks.kbl"), GetParam());
    EXPECT_EQ(heard.all(), Names{"readOnlyChanged false"});
}

TEST_P(SavedBoxLibrary, SaveToOfADirtyLibrarySignalsThatItIsClean)
{
    const Library library = reopened();
    library->setTranslations({});
    library->setDirty(true);
    const LibrarySignals heard(*library);
    library->saveTo(path("Walks.kbl"), GetParam());
    EXPECT_EQ(heard.all(), Names{"dirtyChanged false"});
}

TEST_P(SavedBoxLibrary, SaveToOfACleanWritableLibraryUnderTheSameTitleSignalsNothing)
{
    const Library library = reopened();
    library->setTranslations({});
    const LibrarySignals heard(*library);
    library->saveTo(path("Walks.kbl"), GetParam());
    EXPECT_EQ(heard.all(), Names{});
}

TEST_P(SavedBoxLibrary, SaveToSignalsOnlyWhenTheFilesAreInPlace)
{
    const Library library = reopened(true);
    Names sources;
    const auto source = [&] { sources.push_back(library->path().toStdString()); };
    QObject::connect(library.get(), &BoxLibrary::titleChanged, library.get(), source);
    QObject::connect(library.get(), &BoxLibrary::readOnlyChanged, library.get(), source);
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_EQ(sources, (Names{path().toStdString(), path("Runs.bxl").toStdString()}));
}

TEST_P(SavedBoxLibrary, SaveToOfAReadOnlyLibraryFindsTheTranslationsWhenItBecomesWritable)
{
    const Library library = reopened(true);
    ASSERT_TRUE(library->translations().isEmpty());
    Names contexts;
    QObject::connect(library.get(), &BoxLibrary::readOnlyChanged, library.get(),
                     [&] { contexts = contextsOf(*library, "fr"); });
    const LibrarySignals heard(*library);
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_EQ(contexts, Names{"Library:/A"});
    ASSERT_GE(heard.all().size(), 3U);
    EXPECT_EQ(heard.all()[2], "translationFilesListChanged");
}

TEST(WritableBoxLibrary, LooksForTranslationsLastInSaveTo)
{
    // In a directory the translation files are read where they are, so their paths change.
    const TemporaryDirectory directory;
    const Library first = newLibrary();
    first->setTranslations(translators({translator("fr", {"Library:/A"})}));
    first->saveTo(directory.path("Walks.bxl"), BoxLibrary::Directory);
    const Library library = open(ProjectModel(directory.path("Walks.bxl")));
    const LibrarySignals heard(*library);
    library->saveTo(directory.path("Runs.bxl"), BoxLibrary::Directory);
    EXPECT_EQ(heard.all(), (Names{"titleChanged Runs", "dirtyChanged true", "dirtyChanged false",
                                  "translationFilesListChanged"}));
    EXPECT_EQ(library->translationsFiles(),
              QStringList{directory.path("Runs.bxl/translations/translation_fr.ts")});
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/A"});
}

TEST_P(SavedBoxLibrary, SaveToThatFailsChangesTheTitleAlone)
{
    const QString target = badPath();
    const Library library = reopened(true);
    const LibrarySignals heard(*library);
    EXPECT_THROW(library->saveTo(target, GetParam()), pk::project::Error);
    EXPECT_EQ(library->title(), q("Runs"));
    EXPECT_TRUE(library->isReadOnly());
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(library->path(), path());
    EXPECT_EQ(heard.all(), (Names{"titleChanged Runs", "dirtyChanged true"}));
}

TEST_P(SavedBoxLibrary, SaveToThatFailsUnderTheSameTitleChangesNothing)
{
    putLocal(path("file"), "bytes");
    const Library library = reopened(true);
    const LibrarySignals heard(*library);
    EXPECT_THROW(library->saveTo(path("file/Walks.bxl"), GetParam()), pk::project::Error);
    EXPECT_TRUE(library->isReadOnly());
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(library->path(), path());
    EXPECT_EQ(heard.all(), Names{});
}

TEST_P(SavedBoxLibrary, SaveToWorksAfterAFailure)
{
    const QString target = badPath();
    const Library library = reopened();
    EXPECT_THROW(library->saveTo(target, GetParam()), pk::project::Error);
    library->saveTo(path("Runs.bxl"), GetParam());
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(childNames(*open(ProjectModel(path("Runs.bxl")))->boxRoot()), (Names{"A", "B"}));
}

} // namespace
} // namespace KX::test
