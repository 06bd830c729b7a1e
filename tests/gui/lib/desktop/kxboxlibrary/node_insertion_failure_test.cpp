#include "support.hpp"

#include <QSignalSpy>
#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

struct State
{
    std::map<std::string, QByteArray> contents;
    Names tree;
    bool dirty;
};

bool operator==(const State& a, const State& b)
{
    return a.contents == b.contents && a.tree == b.tree && a.dirty == b.dirty;
}

State stateOf(BoxLibrary& library)
{
    return {contentsOf(library.projectModel()), pathsBelow(*library.boxRoot()), library.isDirty()};
}

Library someLibrary()
{
    Library library = open(project({{"Folder/Box/box.bhx", boxFile()}, {"a file", "in the way"}}));
    library->setTranslations(translators({translator("fr", {"Library:/Folder/Box"})}));
    return library;
}

/// A library whose folder Many has a long order file.
Library libraryWithALongOrderFile()
{
    ProjectModel model;
    for (int i = 0; i < 200; ++i) {
        model.mkdir(q("Many/Folder number " + std::to_string(i)), true);
    }
    return open(std::move(model));
}

/// A box with two resources, of which the second does not exist.
RootBoxDescription boxWithoutAResource(ProjectModel& source)
{
    source.writeFile(q("a.png"), "a");
    RootBoxDescription box = description("New");
    box.resources = boost::make_shared<BoxResourceList>(&source, QString(),
                                                        QStringList{q("a.png"), q("missing.png")});
    return box;
}

class NameThatCannotStandAtTheTop : public testing::TestWithParam<std::string>
{
};

TEST_P(NameThatCannotStandAtTheTop, MakesNoFolder)
{
    const Library library = someLibrary();
    const State before = stateOf(*library);
    const LogRecords records;
    EXPECT_THROW(library->boxRoot()->appendChild(GetParam()), pk::project::Error);
    EXPECT_THROW(library->boxRoot()->insertChild(0, GetParam()), pk::project::Error);
    EXPECT_TRUE(stateOf(*library) == before);
    EXPECT_TRUE(records.of("kxboxlibrary").empty());
}

TEST_P(NameThatCannotStandAtTheTop, MakesNoBox)
{
    const Library library = someLibrary();
    const State before = stateOf(*library);
    EXPECT_THROW(library->boxRoot()->appendChild(description(GetParam())), pk::project::Error);
    EXPECT_THROW(library->boxRoot()->insertChild(0, description(GetParam())), pk::project::Error);
    EXPECT_TRUE(stateOf(*library) == before);
}

TEST_P(NameThatCannotStandAtTheTop, LeavesAnInsertedNodeDetached)
{
    const Library library = someLibrary();
    const DetachedNode box(BoxLibraryNode::fromDescription(description(GetParam())));
    const auto files = contentsOf(*box->project());
    const std::string fileName = box->fileName();
    const State before = stateOf(*library);
    EXPECT_THROW(library->boxRoot()->insertChild(0, box.get()), pk::project::Error);
    EXPECT_TRUE(stateOf(*library) == before);
    EXPECT_EQ(box->parent(), nullptr);
    EXPECT_EQ(static_cast<QObject*>(box.get())->parent(), nullptr);
    EXPECT_EQ(box->name(), GetParam());
    EXPECT_EQ(box->fileName(), fileName);
    EXPECT_EQ(contentsOf(*box->project()), files);
}

INSTANTIATE_TEST_SUITE_P(Name, NameThatCannotStandAtTheTop,
                         testing::Values("a file", std::string(5000, 'x')),
                         [](const auto& name) { return "Number" + std::to_string(name.index); });

TEST(NodeInsertionFailure, ANodeThatFailedCanStandElsewhere)
{
    const Library library = someLibrary();
    BoxLibraryNode* const box = BoxLibraryNode::fromDescription(description("a file"));
    EXPECT_THROW(library->boxRoot()->appendChild(box), pk::project::Error);
    library->boxRoot()->child(0)->appendChild(box);
    EXPECT_EQ(box->path(), q("Folder/a file"));
    EXPECT_EQ(filesOf(library->projectModel(), "Folder/a file"), Names{"box.bhx"});
}

TEST(NodeInsertionFailure, ANodeThatFailedKeepsItsNumber)
{
    const Library library = libraryWithALongOrderFile();
    BoxLibraryNode* const folder = library->boxRoot()->child("Many");
    BoxLibraryNode* const other = library->boxRoot()->appendChild("Other");
    other->appendChild(description("Box"));
    const DetachedNode box(other->appendChild(description("Box"))->take());
    {
        const FileSizeLimit full(1000);
        EXPECT_THROW(folder->appendChild(box.get()), std::runtime_error);
    }
    EXPECT_EQ(box->name(), "Box (2)");
    EXPECT_EQ(box->fileName(), "Box (2)");
}

TEST(NodeInsertionFailure, AMissingResourceMakesNoBox)
{
    const Library library = someLibrary();
    ProjectModel source;
    const RootBoxDescription box = boxWithoutAResource(source);
    const State before = stateOf(*library);
    EXPECT_THROW(library->boxRoot()->appendChild(box), pk::project::PathNotFound);
    EXPECT_THROW(library->boxRoot()->child(0)->insertChild(0, box), pk::project::PathNotFound);
    EXPECT_TRUE(stateOf(*library) == before);
}

TEST(NodeInsertionFailure, AMissingResourceMakesNoDetachedBox)
{
    ProjectModel source;
    const RootBoxDescription box = boxWithoutAResource(source);
    EXPECT_THROW(BoxLibraryNode::fromDescription(box), pk::project::PathNotFound);
}

TEST(NodeInsertionFailure, TheNameOfANodeThatFailedIsFree)
{
    const Library library = someLibrary();
    ProjectModel source;
    const RootBoxDescription box = boxWithoutAResource(source);
    EXPECT_THROW(library->boxRoot()->appendChild(box), pk::project::PathNotFound);
    EXPECT_EQ(library->boxRoot()->appendChild(description("New"))->name(), "New");
    EXPECT_THROW(library->boxRoot()->appendChild(box), pk::project::PathNotFound);
    EXPECT_EQ(library->boxRoot()->appendChild(description("New"))->name(), "New (2)");
}

TEST(NodeInsertionFailure, ChangesOfANodeThatFailedAreNotForwarded)
{
    const Library library = someLibrary();
    const DetachedNode box(BoxLibraryNode::fromDescription(description("a file")));
    EXPECT_THROW(library->boxRoot()->appendChild(box.get()), pk::project::Error);
    const QSignalSpy data(library.get(), &BoxLibrary::dataChanged);
    box->boxData()->setTooltip(q("new"));
    EXPECT_EQ(data.count(), 0);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeInsertionFailure, OfSeveralNodesThoseBeforeTheFailureAreInWithTheirMessages)
{
    const Library library = someLibrary();
    BoxLibraryNode* const first = BoxLibraryNode::fromDescription(description("First"));
    const DetachedNode second(BoxLibraryNode::fromDescription(description("a file")));
    const DetachedNode third(BoxLibraryNode::fromDescription(description("Third")));
    EXPECT_THROW(library->boxRoot()->insertChildren(
                     0, {first, second.get(), third.get()},
                     translators({translator("fr", {"Library:/a/First", "Library:/a/Third"})})),
                 pk::project::Error);
    EXPECT_EQ(pathsBelow(*library->boxRoot()), (Names{"First", "Folder", "Folder/Box"}));
    EXPECT_EQ(contextsOf(*library, "fr"),
              (Names{"Library:/Folder/Box", "Library:/First", "Library:/a/Third"}));
    for (const auto* const node : {&second, &third}) {
        EXPECT_EQ((*node)->parent(), nullptr);
        EXPECT_EQ(filesOf(*(*node)->project()), Names{"box.bhx"});
    }
}

TEST(NodeInsertionFailure, TheFirstFailureOfSeveralNodesBringsNoMessages)
{
    const Library library = someLibrary();
    const State before = stateOf(*library);
    const DetachedNode box(BoxLibraryNode::fromDescription(description("a file")));
    EXPECT_THROW(library->boxRoot()->insertChildren(
                     0, {box.get()}, translators({translator("fr", {"Library:/a file"})})),
                 pk::project::Error);
    EXPECT_TRUE(stateOf(*library) == before);
}

TEST(NodeInsertionFailure, WhatWasAtThePlaceBeforeStays)
{
    const Library library = libraryWithALongOrderFile();
    library->projectModel().writeFile(q("Many/Box/note"), "not known to the tree");
    {
        const FileSizeLimit full(1000);
        EXPECT_THROW(library->boxRoot()->child("Many")->appendChild(description("Box")),
                     std::runtime_error);
    }
    EXPECT_TRUE(library->projectModel().hasFile(q("Many/Box/note")));
}

TEST(NodeInsertionFailure, AnOrderFileThatCannotBeWrittenKeepsNewNodesOut)
{
    const Library library = libraryWithALongOrderFile();
    BoxLibraryNode* const folder = library->boxRoot()->child("Many");
    const Names tree = pathsBelow(*library->boxRoot());
    {
        const FileSizeLimit full(1000);
        EXPECT_THROW(folder->appendChild("New"), std::runtime_error);
        EXPECT_THROW(folder->appendChild(description("New")), std::runtime_error);
    }
    EXPECT_EQ(pathsBelow(*library->boxRoot()), tree);
    EXPECT_EQ(filesOf(library->projectModel(), "Many/New"), Names{});
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(folder->appendChild("New")->name(), "New");
}

TEST(NodeInsertionFailure, AnOrderFileThatCannotBeWrittenLeavesAnInsertedNodeItsFiles)
{
    const Library library = libraryWithALongOrderFile();
    BoxLibraryNode* const folder = library->boxRoot()->child("Many");
    const Names tree = pathsBelow(*library->boxRoot());
    BoxLibraryNode* const box = BoxLibraryNode::fromDescription(description("Box"));
    {
        const FileSizeLimit full(1000);
        EXPECT_THROW(folder->appendChild(box), std::runtime_error);
    }
    EXPECT_EQ(pathsBelow(*library->boxRoot()), tree);
    EXPECT_EQ(filesOf(library->projectModel(), "Many/Box"), Names{});
    ASSERT_NE(box->project(), nullptr);
    EXPECT_EQ(filesOf(*box->project()), Names{"box.bhx"});
    folder->appendChild(box);
    EXPECT_EQ(filesOf(library->projectModel(), "Many/Box"), Names{"box.bhx"});
}

} // namespace
} // namespace KX::test
