#include "library_signals.hpp"
#include "support.hpp"

#include <QLoggingCategory>
#include <QPointer>

namespace KX::test {
namespace {

/// A library of two folders, with a box in the first.
ProjectModel twoFolders()
{
    return project({{"Boxes/Walk/box.bhx", boxFile()}, {"Motions/", {}}});
}

// Meta-object

TEST(BoxLibraryMetaObject, HasExactlyTheFiveSignalsInTheirOrder)
{
    EXPECT_EQ(methodsOf(BoxLibrary::staticMetaObject),
              (Names{"public signal titleChanged(QString title)",
                     "public signal dataChanged(KX::BoxLibraryNode* node)",
                     "public signal dirtyChanged(bool value)",
                     "public signal readOnlyChanged(bool value)",
                     "public signal translationFilesListChanged()"}));
}

TEST(BoxLibraryMetaObject, HasNoSlotsForTheUpdatesOfTranslations)
{
    const QMetaObject& meta = BoxLibrary::staticMetaObject;
    EXPECT_EQ(meta.indexOfMethod("updateTranslationFilesList()"), -1);
    EXPECT_EQ(meta.indexOfMethod("updateTranslators()"), -1);
}

TEST(BoxLibraryMetaObject, HasNoPropertiesAndNoEnums)
{
    const QMetaObject& meta = BoxLibrary::staticMetaObject;
    EXPECT_EQ(meta.propertyCount(), meta.propertyOffset());
    EXPECT_EQ(meta.enumeratorCount(), meta.enumeratorOffset());
}

TEST(BoxLibraryMetaObject, DerivesFromQObjectAlone)
{
    EXPECT_EQ(BoxLibrary::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

// Log

TEST(BoxLibraryLog, CategoryIsRegisteredBeforeAnythingIsLogged)
{
    static Names names;
    names.clear();
    const auto before = QLoggingCategory::installFilter(
        [](QLoggingCategory* category) { names.emplace_back(category->categoryName()); });
    QLoggingCategory::installFilter(before);
    EXPECT_EQ(std::count(names.begin(), names.end(), "BoxLibrary"), 1);
}

TEST(BoxLibraryLog, WarningsAboutTranslationsHaveTheCategoryAndTheSource)
{
    const LogRecords log;
    const Library library = open(project({{"translations/bad.ts", "no translations"}}));
    const auto records = log.of("BoxLibrary");
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, pk::log::Warning);
    EXPECT_EQ(records[0].file, "gui/lib/desktop/kxboxlibrary/src/box_library");
    EXPECT_EQ(records[0].function, "updateTranslators");
    EXPECT_GT(records[0].line, 0);
}

// A new library

TEST(NewBoxLibrary, HasItsTitleAndNoPath)
{
    const Library library = newLibrary();
    EXPECT_EQ(library->title(), q("Demo"));
    EXPECT_EQ(library->path(), QString());
}

TEST(NewBoxLibrary, HasTheMetadataOfABoxLibrary)
{
    const Library library = newLibrary();
    const ProjectModel& model = library->projectModel();
    EXPECT_EQ(model.getMetadata(q("Type")), q("KinestraBoxLibrary"));
    EXPECT_EQ(model.getMetadata(q("Version")), q("3.0"));
    EXPECT_EQ(model.getMetadata(q("title")), q("Demo"));
}

TEST(NewBoxLibrary, HasAnEmptyRootFolderWithItsOrderFile)
{
    const Library library = newLibrary();
    EXPECT_TRUE(library->boxRoot()->children().isEmpty());
    EXPECT_FALSE(library->boxRoot()->boxData());
    EXPECT_EQ(filesOf(library->projectModel()), Names{"bxlinfo"});
    EXPECT_EQ(orderIn(library->projectModel()), Names{});
}

TEST(NewBoxLibrary, IsNotDirtyAndHasNoTranslations)
{
    const Library library = newLibrary();
    EXPECT_FALSE(library->isDirty());
    EXPECT_TRUE(library->translationsFiles().isEmpty());
    EXPECT_TRUE(library->translations().isEmpty());
}

TEST(NewBoxLibrary, IsReadOnlyWhenAskedFor)
{
    const Library writable(new BoxLibrary(q("Demo"), false, nullptr));
    const Library readOnly(new BoxLibrary(q("Demo"), true, nullptr));
    EXPECT_FALSE(writable->isReadOnly());
    EXPECT_TRUE(readOnly->isReadOnly());
}

TEST(NewBoxLibrary, HasTheGivenQObjectParent)
{
    QObject parent;
    const Library library(new BoxLibrary(q("Demo"), false, &parent));
    EXPECT_EQ(library->parent(), &parent);
}

// Opening a project

TEST(OpenedBoxLibrary, HasTheTreeOfItsProject)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"Boxes", "Motions"}));
    EXPECT_EQ(childNames(*library->boxRoot()->child(0)), Names{"Walk"});
}

TEST(OpenedBoxLibrary, IsNotDirtyAfterLoadingSeveralFolders)
{
    const Library library = open(twoFolders());
    EXPECT_FALSE(library->isDirty());
}

TEST(OpenedBoxLibrary, IsReadOnlyWhenAskedFor)
{
    EXPECT_FALSE(open(twoFolders())->isReadOnly());
    EXPECT_TRUE(open(twoFolders(), true)->isReadOnly());
}

TEST(OpenedBoxLibrary, HasTheGivenQObjectParent)
{
    QObject parent;
    const Library library(new BoxLibrary(twoFolders(), false, &parent));
    EXPECT_EQ(library->parent(), &parent);
}

TEST(OpenedBoxLibrary, HasTheProjectThatItWasGiven)
{
    ProjectModel model = twoFolders();
    model.setMetadata(q("Other"), q("value"));
    const Library library = open(std::move(model));
    EXPECT_EQ(library->projectModel().getMetadata(q("Other")), q("value"));
    EXPECT_TRUE(library->projectModel().hasFile(q("Boxes/Walk/box.bhx")));
    const BoxLibrary& constant = *library;
    EXPECT_EQ(&constant.projectModel(), &library->projectModel());
}

TEST(OpenedBoxLibrary, LeavesTheMetadataAlone)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(library->projectModel().getMetadata(q("Type")), QString());
    EXPECT_EQ(library->projectModel().getMetadata(q("Version")), QString());
    EXPECT_EQ(library->projectModel().getMetadata(q("title")), QString());
}

TEST(OpenedBoxLibrary, HasItsTranslationsAtOnce)
{
    const Library source = open(twoFolders());
    source->setTranslations(translators({translator("fr", {"Library:/Boxes"})}));
    const QByteArray french = source->projectModel().readFile(q("translations/translation_fr.ts"));
    const Library library = open(project({{"translations/translation_fr.ts", french}}));
    EXPECT_EQ(library->translationsFiles().size(), 1);
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Boxes"});
}

TEST(OpenedBoxLibrary, ThatCannotBeLoadedLeavesNothingBehind)
{
    // The box comes before the folder whose order file can't be written. The sanitizer's search for
    // leaks is what looks for the box.
    ProjectModel model = project({{"A/box.bhx", boxFile()}, {"B/", {}}});
    QObject parent;
    std::unique_ptr<BoxLibrary> library;
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(library = std::make_unique<BoxLibrary>(std::move(model), false, &parent),
                     std::runtime_error);
    }
    EXPECT_TRUE(parent.children().isEmpty());
}

// Its end

TEST(BoxLibraryDestructor, DeletesTheRoot)
{
    auto library = std::make_unique<BoxLibrary>(q("Demo"), false, nullptr);
    const QPointer<BoxLibraryNode> root(library->boxRoot());
    library.reset();
    EXPECT_TRUE(root.isNull());
}

TEST(BoxLibraryDestructor, RunsWithTheQObjectParent)
{
    auto parent = std::make_unique<QObject>();
    auto* const library = new BoxLibrary(q("Demo"), false, parent.get());
    bool destroyed = false;
    QObject::connect(library, &QObject::destroyed, [&destroyed] { destroyed = true; });
    EXPECT_EQ(library->parent(), parent.get());
    parent.reset();
    EXPECT_TRUE(destroyed);
}

// Title

struct PathTitle
{
    const char* path;
    const char* title;
};

class TitleFromPath : public testing::TestWithParam<PathTitle>
{
};

TEST_P(TitleFromPath, IsTheFileNameWithoutTheSuffixOfALibrary)
{
    EXPECT_EQ(BoxLibrary::makeTitleFromPath(q(GetParam().path)), q(GetParam().title));
}

INSTANTIATE_TEST_SUITE_P(
    All, TitleFromPath,
    testing::Values(PathTitle{"/a/b/My.BXL", "My"}, PathTitle{"/a/b/My.bxl", "My"},
                    PathTitle{"Lib.KBL", "Lib"}, PathTitle{"Lib.kbl", "Lib"},
                    PathTitle{"Lib.bXl", "Lib"}, PathTitle{"/a/b/My.kbl.bak", "My.kbl.bak"},
                    PathTitle{"lib.zip", "lib.zip"}, PathTitle{"Both.bxl.kbl", "Both.bxl"},
                    PathTitle{"Both.kbl.bxl", "Both.kbl"}, PathTitle{".bxl", ""},
                    PathTitle{"bxl", "bxl"}, PathTitle{"/a.bxl/My", "My"},
                    PathTitle{"/a/b.bxl/", ""}, PathTitle{"", ""},
                    PathTitle{"/a/M\u00e4rchen.bxl", "M\u00e4rchen"}));

TEST(BoxLibraryTitle, IsMadeFromThePathWhenTheProjectHasNone)
{
    const TemporaryDirectory directory;
    twoFolders().save(directory.path("Walks.kbl"), pk::project::ArchiveFormat::Directory, true);
    const Library library = open(ProjectModel(directory.path("Walks.kbl")));
    EXPECT_EQ(library->title(), q("Walks"));
}

TEST(BoxLibraryTitle, OfTheProjectGoesBeforeThePath)
{
    const TemporaryDirectory directory;
    ProjectModel model = twoFolders();
    model.setMetadata(q("title"), q("Own"));
    model.save(directory.path("Walks.kbl"), pk::project::ArchiveFormat::Directory, true);
    const Library library = open(ProjectModel(directory.path("Walks.kbl")));
    EXPECT_EQ(library->title(), q("Own"));
}

TEST(BoxLibraryTitle, IsEmptyWithoutAPathAndWithoutMetadata)
{
    EXPECT_EQ(open(twoFolders())->title(), QString());
}

TEST(BoxLibraryTitle, ChangesInTheMetadataAndIsSignalledBeforeTheDirt)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setTitle(q("Other"));
    EXPECT_EQ(library->title(), q("Other"));
    EXPECT_EQ(library->projectModel().getMetadata(q("title")), q("Other"));
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(heard.all(), (Names{"titleChanged Other", "dirtyChanged true"}));
}

TEST(BoxLibraryTitle, IsInPlaceWhenItIsSignalled)
{
    const Library library = newLibrary();
    QString title;
    bool dirty = true;
    QObject::connect(library.get(), &BoxLibrary::titleChanged, library.get(), [&] {
        title = library->title();
        dirty = library->isDirty();
    });
    library->setTitle(q("Other"));
    EXPECT_EQ(title, q("Other"));
    EXPECT_FALSE(dirty);
}

TEST(BoxLibraryTitle, OfADirtyLibraryChangesWithoutASignalOfDirt)
{
    const Library library = newLibrary();
    library->setDirty(true);
    const LibrarySignals heard(*library);
    library->setTitle(q("Other"));
    EXPECT_EQ(heard.all(), Names{"titleChanged Other"});
    EXPECT_TRUE(library->isDirty());
}

TEST(BoxLibraryTitle, SetToTheCurrentOneChangesNothing)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setTitle(q("Demo"));
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_FALSE(library->isDirty());
}

TEST(BoxLibraryTitle, SetToTheOneFromThePathChangesNothing)
{
    const TemporaryDirectory directory;
    twoFolders().save(directory.path("Walks.kbl"), pk::project::ArchiveFormat::Directory, true);
    const Library library = open(ProjectModel(directory.path("Walks.kbl")));
    const LibrarySignals heard(*library);
    library->setTitle(q("Walks"));
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(library->projectModel().getMetadata(q("title")), QString());
}

TEST(BoxLibraryTitle, SetToNothingIsTheOneFromThePath)
{
    const TemporaryDirectory directory;
    const Library library = newLibrary();
    library->saveTo(directory.path("Walks.bxl"), BoxLibrary::Directory);
    library->setTitle(q("Other"));
    const LibrarySignals heard(*library);
    library->setTitle(QString());
    EXPECT_EQ(library->title(), q("Walks"));
    EXPECT_EQ(heard.all(), Names{"titleChanged "});
}

// Dirty and read-only

TEST(BoxLibraryDirty, ChangesWithASignal)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setDirty(true);
    EXPECT_TRUE(library->isDirty());
    library->setDirty(false);
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(heard.all(), (Names{"dirtyChanged true", "dirtyChanged false"}));
}

TEST(BoxLibraryDirty, SetTwiceIsSignalledOnce)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setDirty(true);
    library->setDirty(true);
    EXPECT_EQ(heard.all(), Names{"dirtyChanged true"});
}

TEST(BoxLibraryReadOnly, ChangesWithASignal)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setReadOnly(true);
    EXPECT_TRUE(library->isReadOnly());
    library->setReadOnly(false);
    EXPECT_FALSE(library->isReadOnly());
    EXPECT_EQ(heard.all(), (Names{"readOnlyChanged true", "readOnlyChanged false"}));
}

TEST(BoxLibraryReadOnly, SetToTheCurrentValueIsNotSignalled)
{
    const Library library = newLibrary();
    const LibrarySignals heard(*library);
    library->setReadOnly(false);
    EXPECT_EQ(heard.all(), Names{});
}

TEST(BoxLibraryReadOnly, DoesNotMakeDirty)
{
    const Library library = newLibrary();
    library->setReadOnly(true);
    EXPECT_FALSE(library->isDirty());
}

TEST(BoxLibraryReadOnly, LocksNothing)
{
    const Library library = open(twoFolders(), true);
    EXPECT_NE(library->boxRoot()->appendChild("New"), nullptr);
    EXPECT_TRUE(library->isDirty());
}

TEST(BoxLibraryReadOnly, LooksForTranslationsAtOnce)
{
    const Library library = newLibrary();
    library->setTranslations(translators({translator("fr", {"Library:/A"})}));
    const LibrarySignals heard(*library);
    library->setReadOnly(true);
    EXPECT_TRUE(library->translations().isEmpty());
    library->setReadOnly(false);
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/A"});
    EXPECT_EQ(heard.all(), (Names{"translationFilesListChanged", "readOnlyChanged true",
                                  "translationFilesListChanged", "readOnlyChanged false"}));
}

// Paths of indices

TEST(BoxLibraryNodeAt, AnEmptyPathIsTheRoot)
{
    const Library library = open(twoFolders());
    EXPECT_NE(library->boxRoot(), nullptr);
    EXPECT_EQ(library->node({}), library->boxRoot());
}

TEST(BoxLibraryNodeAt, FollowsTheIndices)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(library->node({1})->name(), "Motions");
    EXPECT_EQ(library->node({0, 0})->name(), "Walk");
}

TEST(BoxLibraryNodeAt, AnIndexPastTheEndIsNoNode)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(library->node({0, 5}), nullptr);
    EXPECT_EQ(library->node({2}), nullptr);
}

TEST(BoxLibraryNodeAt, ANegativeIndexIsNoNode)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(library->node({-1}), nullptr);
    EXPECT_EQ(library->node({0, -1}), nullptr);
}

TEST(BoxLibraryNodeAt, NothingIsBelowAMissingNode)
{
    const Library library = open(twoFolders());
    EXPECT_EQ(library->node({5, 0, 0}), nullptr);
}

// Formats

TEST(LibraryFormats, HaveTheValuesZeroAndOne)
{
    EXPECT_EQ(static_cast<int>(BoxLibrary::Directory), 0);
    EXPECT_EQ(static_cast<int>(BoxLibrary::Archive), 1);
}

class ProjectFormatOfLibraryFormat : public testing::TestWithParam<std::pair<int, int>>
{
};

TEST_P(ProjectFormatOfLibraryFormat, HasItsCode)
{
    const auto format = static_cast<BoxLibrary::LibraryFormat>(GetParam().first);
    EXPECT_EQ(static_cast<int>(libraryFormatToProjectFormat(format)), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(All, ProjectFormatOfLibraryFormat,
                         testing::Values(std::pair(0, 2), std::pair(1, 7), std::pair(2, 0),
                                         std::pair(7, 0), std::pair(-1, 0)));

} // namespace
} // namespace KX::test
