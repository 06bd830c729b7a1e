#include "support.hpp"

#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;

Names resourcesOf(const BoxLibraryNode& node)
{
    const auto list = node.resources();
    if (!list) {
        return {"<null>"};
    }
    Names names;
    for (const QString& file : list->files) {
        names.push_back(file.toStdString());
    }
    return names;
}

Library libraryWith(const std::vector<std::pair<std::string, QByteArray>>& resources)
{
    ProjectModel model = project(resources);
    model.writeFile(q("Walk/box.bhx"), boxFile());
    return open(std::move(model));
}

const BoxLibraryNode& walkOf(const Library& library)
{
    return *library->boxRoot()->child("Walk");
}

// What a box "Copy" with these resources can be made from.
RootBoxDescription copyWith(ProjectModel* model, const std::string& directory,
                            const QStringList& files)
{
    RootBoxDescription copy = description("Copy");
    copy.resources = boost::make_shared<BoxResourceList>(model, q(directory), files);
    return copy;
}

TEST(BoxResourceList, KeepsWhatItIsGiven)
{
    ProjectModel model;
    const BoxResourceList list(&model, q("A/B"), {q("b"), q("a"), q("b")});
    EXPECT_EQ(list.projectModel, &model);
    EXPECT_EQ(list.path, q("A/B"));
    EXPECT_EQ(list.files, (QStringList{q("b"), q("a"), q("b")}));
}

TEST(BoxResources, AreNoneBesideTheBoxFile)
{
    const Library library = libraryWith({});
    ASSERT_TRUE(walkOf(library).resources());
    EXPECT_TRUE(walkOf(library).resources()->files.isEmpty());
}

TEST(BoxResources, LeaveOutTheBoxsOwnFiles)
{
    const Library library = libraryWith(
        {{"Walk/behavior.bhx", boxFile()}, {"Walk/.metadata", "x"}, {"Walk/a.png", "a"}});
    EXPECT_EQ(resourcesOf(walkOf(library)), Names{"a.png"});
}

TEST(BoxResources, AreToldFromTheBoxsOwnFilesByTheirLetters)
{
    const Library library = libraryWith({{"Walk/BOX.bhx", "1"},
                                         {"Walk/Behavior.bhx", "2"},
                                         {"Walk/.Metadata", "3"},
                                         {"Walk/box.bhx2", "4"}});
    EXPECT_EQ(resourcesOf(walkOf(library)),
              (Names{".Metadata", "BOX.bhx", "Behavior.bhx", "box.bhx2"}));
}

TEST(BoxResources, AreTheFilesInDirectoriesBelowToo)
{
    const Library library = libraryWith(
        {{"Walk/z.txt", "z"}, {"Walk/images/a.png", "a"}, {"Walk/images/empty/", QByteArray()}});
    EXPECT_EQ(resourcesOf(walkOf(library)), (Names{"images/a.png", "z.txt"}));
}

TEST(BoxResources, BelowMayHaveTheNamesOfTheBoxsOwnFiles)
{
    const Library library = libraryWith(
        {{"Walk/old/box.bhx", "1"}, {"Walk/old/behavior.bhx", "2"}, {"Walk/old/.metadata", "3"}});
    EXPECT_EQ(resourcesOf(walkOf(library)),
              (Names{"old/.metadata", "old/behavior.bhx", "old/box.bhx"}));
}

TEST(BoxResources, SayWhereTheyAre)
{
    const Library library =
        open(project({{"A/B/Walk/box.bhx", boxFile()}, {"A/B/Walk/a.png", "a"}}));
    const auto list = library->node({0, 0, 0})->resources();
    EXPECT_EQ(list->projectModel, &library->projectModel());
    EXPECT_EQ(list->path, q("A/B/Walk"));
    EXPECT_EQ(list->files, QStringList{q("a.png")});
}

TEST(BoxResources, OfTheRootAreAtTheTop)
{
    const Library library = open(project({{"box.bhx", boxFile()}, {"a.png", "a"}}));
    const auto list = library->boxRoot()->resources();
    EXPECT_EQ(list->path, QString());
    EXPECT_EQ(list->files, QStringList{q("a.png")});
}

TEST(BoxResources, OfADetachedBoxAreInItsOwnProject)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    const DetachedNode copy(walkOf(library).clone());
    const auto list = copy->resources();
    EXPECT_EQ(list->projectModel, copy->project());
    EXPECT_NE(list->projectModel, &library->projectModel());
    EXPECT_EQ(list->path, QString());
    EXPECT_EQ(list->files, QStringList{q("a.png")});
}

TEST(BoxResources, OfABoxWhoseDirectoryIsGoneAreNone)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    library->projectModel().remove(q("Walk"));
    EXPECT_EQ(resourcesOf(walkOf(library)), Names{});
}

TEST(BoxResources, AreNullWithoutAProject)
{
    const BoxLibraryNode node;
    EXPECT_FALSE(node.resources());
}

TEST(BoxResources, AreASnapshot)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    const auto list = walkOf(library).resources();
    library->projectModel().writeFile(q("Walk/b.png"), "b");
    EXPECT_EQ(list->files, QStringList{q("a.png")});
    EXPECT_EQ(resourcesOf(walkOf(library)), (Names{"a.png", "b.png"}));
}

class StoredResources : public testing::TestWithParam<ArchiveFormat>
{
protected:
    const TemporaryDirectory m_directory;
    const Library m_library = open(stored(
        project({{"Walk/box.bhx", boxFile()}, {"Walk/a.png", "a"}, {"Walk/sounds/b.wav", "b"}}),
        m_directory.path("library.bxl"), GetParam()));
};

TEST_P(StoredResources, AreListed)
{
    EXPECT_EQ(resourcesOf(walkOf(m_library)), (Names{"a.png", "sounds/b.wav"}));
}

TEST_P(StoredResources, AreCopiedIntoABoxOfAnotherLibrary)
{
    const Library other = newLibrary();
    RootBoxDescription copy = description("Copy");
    copy.resources = walkOf(m_library).resources();
    const BoxLibraryNode* const box = other->boxRoot()->appendChild(copy);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(resourcesOf(*box), (Names{"a.png", "sounds/b.wav"}));
    EXPECT_EQ(other->projectModel().readFile(q("Copy/a.png")), QByteArray("a"));
    EXPECT_EQ(other->projectModel().readFile(q("Copy/sounds/b.wav")), QByteArray("b"));
    EXPECT_EQ(resourcesOf(walkOf(m_library)), (Names{"a.png", "sounds/b.wav"}));
}

INSTANTIATE_TEST_SUITE_P(Forms, StoredResources,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip));

TEST(BoxFromResources, GetsCopiesFromTheSameLibrary)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    RootBoxDescription copy = description("Walk");
    copy.resources = walkOf(library).resources();
    library->boxRoot()->appendChild(copy);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"Walk", "Walk (2)"}));
    library->projectModel().writeFile(q("Walk/a.png"), "changed");
    EXPECT_EQ(library->projectModel().readFile(q("Walk (2)/a.png")), QByteArray("a"));
}

TEST(BoxFromResources, GetsCopiesFromTheTopOfAProject)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    const DetachedNode walk(walkOf(library).clone());
    const Library other = newLibrary();
    RootBoxDescription copy = description("Copy");
    copy.resources = walk->resources();
    other->boxRoot()->appendChild(copy);
    EXPECT_EQ(filesOf(other->projectModel(), "Copy"), (Names{"a.png", "box.bhx"}));
}

TEST(BoxFromResources, KeepsItsOwnBoxFile)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    RootBoxDescription copy{"Copy", element("<Box tooltip='mine'/>"), walkOf(library).resources()};
    const BoxLibraryNode* const box = library->boxRoot()->appendChild(copy);
    EXPECT_EQ(box->loadBox()->attribute("tooltip", std::string()), "mine");
}

TEST(BoxFromResources, GetsOnlyTheListedFiles)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}, {"Walk/b.png", "b"}});
    library->boxRoot()->appendChild(copyWith(&library->projectModel(), "Walk", {q("b.png")}));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), (Names{"b.png", "box.bhx"}));
}

TEST(BoxFromResources, TakesPathsThatBeginWithASlash)
{
    const Library library = libraryWith({{"Walk/sounds/a.wav", "a"}});
    library->boxRoot()->appendChild(
        copyWith(&library->projectModel(), "Walk", {q("/sounds/a.wav")}));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), (Names{"box.bhx", "sounds/a.wav"}));
}

TEST(BoxFromResources, TakesPathsThatBeginWithASlashFromTheTopOfAProject)
{
    ProjectModel source = project({{"a.wav", "a"}});
    const Library library = newLibrary();
    library->boxRoot()->appendChild(copyWith(&source, "", {q("/a.wav")}));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), (Names{"a.wav", "box.bhx"}));
}

TEST(BoxFromResources, PassesOverEmptyPaths)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    library->boxRoot()->appendChild(
        copyWith(&library->projectModel(), "Walk", {QString(), q("a.png"), QString()}));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), (Names{"a.png", "box.bhx"}));
}

TEST(BoxFromResources, HasNoneFromAListWithoutAProject)
{
    const Library library = newLibrary();
    library->boxRoot()->appendChild(copyWith(nullptr, "Walk", {q("a.png")}));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), Names{"box.bhx"});
}

TEST(BoxFromResources, KeepsThemAtTheTopOfItsProjectWhenDetached)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    RootBoxDescription copy = description("Copy");
    copy.resources = walkOf(library).resources();
    const DetachedNode box(BoxLibraryNode::fromDescription(copy));
    EXPECT_EQ(filesOf(*box->project()), (Names{"a.png", "box.bhx"}));
}

TEST(BoxFromResources, IsADetachedBoxAndThenInALibrary)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    RootBoxDescription copy = description("Copy");
    copy.resources = walkOf(library).resources();
    library->boxRoot()->appendChild(BoxLibraryNode::fromDescription(copy));
    EXPECT_EQ(filesOf(library->projectModel(), "Copy"), (Names{"a.png", "box.bhx"}));
}

TEST(BoxFromResources, IsNotMadeWhenAFileIsMissing)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}});
    const Names before = filesOf(library->projectModel());
    EXPECT_THROW(library->boxRoot()->appendChild(
                     copyWith(&library->projectModel(), "Walk", {q("a.png"), q("missing.png")})),
                 pk::project::PathNotFound);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"Walk"});
    EXPECT_EQ(filesOf(library->projectModel()), before);
    EXPECT_FALSE(library->isDirty());
}

class OutsidePath : public testing::TestWithParam<const char*>
{
};

TEST_P(OutsidePath, IsRefusedAsAResource)
{
    const Library library = libraryWith({{"Walk/a.png", "a"}, {"secret.txt", "s"}});
    const Names before = filesOf(library->projectModel());
    EXPECT_THROW(library->boxRoot()->appendChild(
                     copyWith(&library->projectModel(), "Walk", {q(GetParam())})),
                 pk::project::InvalidPath);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"Walk"});
    EXPECT_EQ(filesOf(library->projectModel()), before);
}

INSTANTIATE_TEST_SUITE_P(Paths, OutsidePath,
                         testing::Values("../secret.txt", "images/../../secret.txt",
                                         "/../secret.txt"));

} // namespace
} // namespace KX::test
