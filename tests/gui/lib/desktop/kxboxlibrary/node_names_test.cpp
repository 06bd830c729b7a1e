#include "support.hpp"

#include <QSignalSpy>

#include <ostream>
#include <random>

namespace KX::test {
namespace {

// initName()

struct NameRequest
{
    Names siblings; // as directories
    std::string requested;
    std::string name;
    std::string fileName;
};

std::ostream& operator<<(std::ostream& stream, const NameRequest& request)
{
    return stream << testing::PrintToString(request.siblings) << " and '" << request.requested
                  << "'";
}

/// A library with folders in directories of these names.
Library libraryWith(const Names& directories)
{
    std::vector<std::pair<std::string, QByteArray>> files;
    for (const std::string& directory : directories) {
        files.emplace_back(directory + "/", QByteArray());
    }
    return open(project(files));
}

class InitName : public testing::TestWithParam<NameRequest>
{
};

TEST_P(InitName, GivesTheFirstFreeName)
{
    const Library library = libraryWith(GetParam().siblings);
    BoxLibraryNode* const node = library->boxRoot()->appendChild("Another");
    node->initName(GetParam().requested);
    EXPECT_EQ(node->name(), GetParam().name);
    EXPECT_EQ(node->fileName(), GetParam().fileName);
}

INSTANTIATE_TEST_SUITE_P(
    Names, InitName,
    testing::Values(NameRequest{{}, "Box", "Box", "Box"},
                    NameRequest{{"Box"}, "Box", "Box (2)", "Box (2)"},
                    NameRequest{{"Box", "Box (2)"}, "Box", "Box (3)", "Box (3)"},
                    NameRequest{{"Box", "Box (3)"}, "Box (3)", "Box (2)", "Box (2)"},
                    NameRequest{{}, "Box (7)", "Box", "Box"},
                    NameRequest{{"Box"}, "Box (7)", "Box (2)", "Box (2)"},
                    NameRequest{{"a%2fb"}, "a/b", "a/b (2)", "a%2fb (2)"}));

INSTANTIATE_TEST_SUITE_P(
    Others, InitName,
    testing::Values(NameRequest{{"box", "BOX"}, "Box", "Box", "Box"},
                    NameRequest{{"Box (2)"}, "Box (2) (3)", "Box (2) (2)", "Box (2) (2)"},
                    NameRequest{{"Box (2)"}, "Box", "Box", "Box"},
                    // Names count, file names do not.
                    NameRequest{{"%41"}, "%41", "%41", "%2541"},
                    NameRequest{{"%41"}, "A", "A (2)", "A (2)"},
                    NameRequest{{"A%2fB", "A%2FB"}, "A/B", "A/B (2)", "A%2fB (2)"},
                    NameRequest{{"Wait%2e"}, "Wait.", "Wait. (2)", "Wait. (2)"}));

// The empty file name would be the parent's own directory.
INSTANTIATE_TEST_SUITE_P(EmptyName, InitName,
                         testing::Values(NameRequest{{}, "", " (2)", "%20(2)"},
                                         NameRequest{{}, " (5)", " (2)", "%20(2)"},
                                         NameRequest{{}, std::string("\0a", 2), " (2)", "%20(2)"},
                                         NameRequest{{"%20(2)"}, "", " (3)", "%20(3)"}));

TEST(NodeInitName, LeavesOutTheNodeItself)
{
    const Library library = libraryWith({"Box", "Box (2)"});
    library->boxRoot()->child(1)->initName("Box");
    EXPECT_EQ(library->boxRoot()->child(1)->name(), "Box (2)");
    library->boxRoot()->child(0)->initName("Box (2)");
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "Box");
}

TEST(NodeInitName, OfANodeWithoutParentOnlyTakesTheNumberOff)
{
    BoxLibraryNode node;
    node.initName("A/B (7)");
    EXPECT_EQ(node.name(), "A/B");
    EXPECT_EQ(node.fileName(), "A%2fB");
    node.initName(" (7)");
    EXPECT_EQ(node.name(), "");
    EXPECT_EQ(node.fileName(), "");
}

TEST(NodeInitName, LooksAtTheSiblingsAlone)
{
    const Library library = libraryWith({"Folder/Box", "Box"});
    library->boxRoot()->child("Folder")->initName("Box");
    EXPECT_EQ(library->boxRoot()->child(1)->name(), "Box (2)");
    BoxLibraryNode* const inner = library->boxRoot()->child(1)->child(0);
    inner->initName("Folder");
    EXPECT_EQ(inner->name(), "Folder");
}

TEST(NodeInitName, ChangesNothingElse)
{
    ProjectModel model = project({{"Box/box.bhx", boxFile()}, {"Other/", {}}});
    model.mkdir(q("translations"), false);
    model.writeFile(q("translations/fr.ts"),
                    R"(<TS language="fr"><context><name>Library:/Box</name><message>)"
                    "<source>s</source><translation>t</translation></message></context></TS>");
    const Library library = open(std::move(model));
    const Names files = filesOf(library->projectModel());
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    const QSignalSpy translations(library.get(), &BoxLibrary::translationFilesListChanged);
    library->boxRoot()->child(0)->initName("Other");
    EXPECT_EQ(library->boxRoot()->child(0)->fileName(), "Other (2)");
    EXPECT_EQ(filesOf(library->projectModel()), files);
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Box"});
    EXPECT_FALSE(library->isDirty());
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_TRUE(translations.isEmpty());
}

// setName()

/// A library with messages for some of its nodes, which is not dirty.
Library translatedLibrary(ProjectModel model, const Names& contexts)
{
    Library library = open(std::move(model));
    library->setTranslations(translators({translator("fr", contexts)}));
    library->setDirty(false);
    return library;
}

TEST(NodeSetName, ToTheCurrentNameDoesNothing)
{
    const Library library =
        translatedLibrary(project({{"Box (2)/box.bhx", boxFile()}}), {"Library:/Box (2)"});
    BoxLibraryNode* const box = library->boxRoot()->child(0);
    const QSignalSpy nodeChanges(box, &BoxLibraryNode::dataChanged);
    const QSignalSpy translations(library.get(), &BoxLibrary::translationFilesListChanged);
    box->setName("Box (2)");
    EXPECT_EQ(box->name(), "Box (2)");
    EXPECT_TRUE(library->projectModel().hasFile(q("Box (2)/box.bhx")));
    EXPECT_TRUE(translations.isEmpty());
    EXPECT_FALSE(library->isDirty());
    EXPECT_TRUE(nodeChanges.isEmpty());
}

TEST(NodeSetName, ThatEndsAtTheSameNameMovesNothingButChangesTheMessages)
{
    const Library library = translatedLibrary(
        project({{"Box/box.bhx", boxFile()}, {"Box (2)/box.bhx", boxFile(R"(tooltip="second")")}}),
        {"Library:/Box (2)"});
    BoxLibraryNode* const box = library->boxRoot()->child("Box (2)");
    const QSignalSpy nodeChanges(box, &BoxLibraryNode::dataChanged);
    const QSignalSpy translations(library.get(), &BoxLibrary::translationFilesListChanged);
    const LogRecords log;
    box->setName("Box (5)");
    EXPECT_EQ(box->name(), "Box (2)");
    EXPECT_EQ(box->fileName(), "Box (2)");
    EXPECT_EQ(library->projectModel().readFile(q("Box (2)/box.bhx")),
              boxFile(R"(tooltip="second")"));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Box (2)"});
    EXPECT_FALSE(translations.isEmpty());
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(nodeChanges.size(), 1);
    EXPECT_TRUE(log.all().empty());
}

TEST(NodeSetName, MovesTheDirectoryOfAChildOfTheRoot)
{
    const Library library =
        open(project({{"Box (2)/box.bhx", boxFile()}, {"Box (2)/images/a.png", "picture"}}));
    BoxLibraryNode* const box = library->boxRoot()->child(0);
    box->setName("Box (5)");
    EXPECT_EQ(box->name(), "Box");
    EXPECT_EQ(box->path(), q("Box"));
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"Box/box.bhx", "Box/images/a.png", "bxlinfo"}));
}

TEST(NodeSetName, MovesTheDirectoryInsideItsFolder)
{
    const Library library =
        open(project({{"Tools/Old/box.bhx", boxFile()}, {"Old/box.bhx", boxFile()}}));
    BoxLibraryNode* const box = library->boxRoot()->child("Tools")->child(0);
    box->setName("A:B");
    EXPECT_EQ(box->name(), "A:B");
    EXPECT_EQ(box->fileName(), "A%3aB");
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"Old/box.bhx", "Tools/A%3aB/box.bhx", "Tools/bxlinfo", "bxlinfo"}));
}

TEST(NodeSetName, MovesAFolderWithAllItHolds)
{
    const Library library = open(project({{"Tools/Deep/Box/box.bhx", boxFile()}}));
    library->boxRoot()->child(0)->setName("Kit");
    const BoxLibraryNode* const box = library->boxRoot()->child(0)->child(0)->child(0);
    EXPECT_EQ(box->path(), q("Kit/Deep/Box"));
    EXPECT_TRUE(box->loadBox());
    EXPECT_EQ(filesOf(library->projectModel(), "Tools"), Names{});
}

TEST(NodeSetName, WorksInADetachedTree)
{
    const Library library = open(project({{"Tools/Old/box.bhx", boxFile()}}));
    const DetachedNode tools(library->boxRoot()->child(0)->clone());
    const QSignalSpy changes(tools.get(), &BoxLibraryNode::dataChanged);
    tools->child(0)->setName("New");
    EXPECT_EQ(filesOf(*tools->project()), (Names{"New/box.bhx", "bxlinfo"}));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeSetName, WorksWithoutAProject)
{
    const DetachedNode folder(new BoxLibraryNode);
    BoxLibraryNode* const child = folder->appendChild("Old");
    const QSignalSpy changes(folder.get(), &BoxLibraryNode::dataChanged);
    child->setName("New (3)");
    EXPECT_EQ(child->name(), "New");
    EXPECT_EQ(child->fileName(), "New");
    EXPECT_EQ(changes.size(), 1);
}

TEST(NodeSetName, OfTheRootSetsTheNameAsItIs)
{
    const Library library = translatedLibrary(project({{"Box/", {}}}), {"Library:/Box"});
    const QSignalSpy changes(library->boxRoot(), &BoxLibraryNode::dataChanged);
    const QSignalSpy translations(library.get(), &BoxLibrary::translationFilesListChanged);
    const QString title = library->title();
    library->boxRoot()->setName("Box (3)");
    EXPECT_EQ(library->boxRoot()->name(), "Box (3)");
    EXPECT_EQ(library->boxRoot()->fileName(), "");
    EXPECT_EQ(library->boxRoot()->path(), QString());
    EXPECT_EQ(library->title(), title);
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_TRUE(translations.isEmpty());
    EXPECT_FALSE(library->isDirty());
}

TEST(NodeSetName, OfADetachedNodeLeavesItsFileName)
{
    const DetachedNode node(BoxLibraryNode::fromDescription(description("Box")));
    node->setName("A/B (3)");
    EXPECT_EQ(node->name(), "A/B (3)");
    EXPECT_EQ(node->fileName(), "Box");
    EXPECT_EQ(filesOf(*node->project()), Names{"box.bhx"});
}

TEST(NodeSetName, KeepsABackslashInTheFileName)
{
    const Library library = open(project({{"Box/box.bhx", boxFile()}}));
    library->boxRoot()->child(0)->setName("a\\b");
    EXPECT_EQ(library->boxRoot()->child(0)->fileName(), "a\\b");
    EXPECT_TRUE(library->projectModel().hasFile(q("a\\b/box.bhx")));
}

TEST(NodeSetName, AcceptsANameThatDiffersInCase)
{
    const Library library =
        open(project({{"Box/box.bhx", boxFile()}, {"Other/box.bhx", boxFile()}}));
    library->boxRoot()->child("Other")->setName("box");
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"Box", "box"}));
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"Box/box.bhx", "box/box.bhx", "bxlinfo"}));
}

TEST(NodeSetName, NumbersAnEmptyName)
{
    const Library library = open(project({{"Folder/Box/box.bhx", boxFile()}}));
    library->boxRoot()->child(0)->child(0)->setName("");
    EXPECT_EQ(library->boxRoot()->child(0)->child(0)->name(), " (2)");
    EXPECT_EQ(filesOf(library->projectModel()),
              (Names{"Folder/%20(2)/box.bhx", "Folder/bxlinfo", "bxlinfo"}));
}

TEST(NodeSetName, EndsAtTheFirstNul)
{
    const Library library = open(project({{"Old/box.bhx", boxFile()}}));
    library->boxRoot()->child(0)->setName(std::string("New\0/..", 7));
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "New");
    EXPECT_TRUE(library->projectModel().hasFile(q("New/box.bhx")));
}

TEST(NodeSetName, MovesTheMessagesOfTheNodeAndAllBelow)
{
    const Library library = translatedLibrary(
        project({{"Tools/Box/box.bhx", boxFile()}, {"Tools 2/box.bhx", boxFile()}}),
        {"Library:/Tools", "Library:/Tools/Box", "Library:/Tools 2", "Library:"});
    library->boxRoot()->child(0)->setName("A:B");
    EXPECT_EQ(contextsOf(*library, "fr"),
              (Names{"Library:/A%3aB", "Library:/A%3aB/Box", "Library:/Tools 2", "Library:"}));
}

TEST(NodeSetName, SignalsTheNodeWhenEverythingIsDone)
{
    const Library library =
        translatedLibrary(project({{"Tools/Old/box.bhx", boxFile()}}), {"Library:/Tools/Old"});
    BoxLibraryNode* const box = library->boxRoot()->child(0)->child(0);
    Names events;
    QObject::connect(library.get(), &BoxLibrary::dirtyChanged, [&](bool dirty) {
        events.push_back(dirty ? "dirty" : "clean");
        EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/Tools/New"});
    });
    QObject::connect(library.get(), &BoxLibrary::dataChanged, [&](BoxLibraryNode* node) {
        events.push_back("changed");
        EXPECT_EQ(node, box);
        EXPECT_EQ(node->name(), "New");
        EXPECT_TRUE(library->projectModel().hasFile(q("Tools/New/box.bhx")));
    });
    box->setName("New");
    EXPECT_EQ(events, (Names{"dirty", "changed"}));
}

TEST(NodeSetName, WarnsOfADirectoryThatCannotBeMoved)
{
    const Library library = translatedLibrary(
        project({{"Old/box.bhx", boxFile()}, {"New", "in the way"}}), {"Library:/Old"});
    BoxLibraryNode* const box = library->boxRoot()->child(0);
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    const LogRecords log;
    box->setName("New");
    EXPECT_EQ(box->name(), "New");
    EXPECT_EQ(box->path(), q("New"));
    EXPECT_TRUE(library->projectModel().hasFile(q("Old/box.bhx")));
    EXPECT_EQ(library->projectModel().readFile(q("New")), QByteArray("in the way"));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/New"});
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(changes.size(), 1);
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, pk::log::Warning);
    EXPECT_EQ(records[0].function, "setName");
    EXPECT_EQ(records[0].message.rfind("Could not move './Old' to 'New', reason: ", 0), 0U)
        << records[0].message;
}

TEST(NodeSetName, DoesNothingWhenNoProjectCanHaveThePath)
{
    const std::string deep = std::string(250, 'd');
    const std::string top = "Folder/" + QByteArray((deep + "/").c_str()).repeated(15).toStdString();
    const Library library =
        translatedLibrary(project({{top + "Box/box.bhx", boxFile()}}), {"Library:/" + top + "Box"});
    const auto before = contentsOf(library->projectModel());
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    BoxLibraryNode* const folder = library->boxRoot()->child(0);
    BoxLibraryNode* box = folder;
    while (!box->boxData()) {
        box = box->child(0);
    }
    const auto renamed = [&](BoxLibraryNode* node, const std::string& name) {
        const std::string old = node->name();
        EXPECT_THROW(node->setName(name), pk::project::InvalidPath);
        EXPECT_EQ(node->name(), old);
        EXPECT_EQ(node->fileName(), old);
    };
    renamed(box, std::string(5000, 'n'));
    renamed(box, std::string(400, 'n')); // with what is above it
    EXPECT_EQ(contentsOf(library->projectModel()), before);
    EXPECT_FALSE(library->isDirty());
    EXPECT_EQ(changes.size(), 0);
    folder->setName("New");
    EXPECT_TRUE(box->loadBox());
}

TEST(NodeSetName, WarnsOfADirectoryThatIsGone)
{
    const Library library = open(project({{"Folder/Old/box.bhx", boxFile()}}));
    library->projectModel().remove(q("Folder/Old"));
    const LogRecords log;
    library->boxRoot()->child(0)->child(0)->setName("New");
    EXPECT_EQ(library->boxRoot()->child(0)->child(0)->path(), q("Folder/New"));
    ASSERT_EQ(log.of("kxboxlibrary").size(), 1U);
    EXPECT_EQ(log.of("kxboxlibrary")[0].message.rfind(
                  "Could not move 'Folder/Old' to 'Folder/New', reason: ", 0),
              0U);
}

TEST(NodeSetName, TakesThePlaceOfFilesThatATakenNodeLeft)
{
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile()}, {"B/left.png", "left"}}));
    const DetachedNode taken(library->boxRoot()->child("B")->take());
    const LogRecords log;
    library->boxRoot()->child("A")->setName("B");
    EXPECT_EQ(filesOf(library->projectModel()), (Names{"B/box.bhx", "bxlinfo"}));
    EXPECT_TRUE(log.all().empty());
}

// A language whose name makes a path that no project can have.
TEST(NodeSetName, ThrowsLastWhenTheTranslationsAreRefused)
{
    const QByteArray language(5000, 'x');
    const Library library = open(project(
        {{"Old/box.bhx", boxFile()},
         {"translations/long.ts", R"(<TS version="2.1" language=")" + language + "\"></TS>"}}));
    ASSERT_EQ(library->translations().size(), 1);
    const QSignalSpy changes(library.get(), &BoxLibrary::dataChanged);
    EXPECT_THROW(library->boxRoot()->child(0)->setName("New"), pk::project::InvalidPath);
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "New");
    EXPECT_TRUE(library->projectModel().hasFile(q("New/box.bhx")));
    EXPECT_EQ(orderIn(library->projectModel()), Names{"New"});
    EXPECT_TRUE(library->isDirty());
    EXPECT_EQ(changes.size(), 1);
}

TEST(NodeSetName, KeepsThePlaceOfTheNodeWhenTheLibraryIsOpenedAgain)
{
    const TemporaryDirectory directory;
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile()}, {"C/", {}}}));
    library->boxRoot()->child("A")->setName("Z");
    EXPECT_EQ(orderIn(library->projectModel()), (Names{"Z", "B", "C"}));
    library->saveTo(directory.path("Library"), BoxLibrary::Directory);
    const Library again = open(ProjectModel(directory.path("Library")));
    EXPECT_EQ(childNames(*again->boxRoot()), (Names{"Z", "B", "C"}));
}

// Everything that changes the children of a folder, in any order, against the definition of a free
// name.

std::string nameByDefinition(const Names& siblings, const std::string& requested)
{
    const std::string base = BoxLibraryNode::unNumberName(requested);
    std::string name = base;
    for (int i = 2;
         name.empty() || std::find(siblings.begin(), siblings.end(), name) != siblings.end(); ++i) {
        name = BoxLibraryNode::numberName(base, i);
    }
    return name;
}

class RandomSiblings
{
public:
    explicit RandomSiblings(std::uint32_t seed)
        : m_random(seed),
          m_library(newLibrary()),
          m_folder(m_library->boxRoot()->appendChild("Folder"))
    {
    }

    void step()
    {
        const auto kind = below(6);
        if (kind == 0 || m_names.empty()) {
            create();
        } else if (kind == 1) {
            rename();
        } else if (kind == 2) {
            insert();
        } else if (kind == 3) {
            take();
        } else if (kind == 4 || m_names.size() > 30) {
            remove();
        } else {
            load();
        }
        ASSERT_EQ(childNames(*m_folder), m_names);
    }

private:
    std::size_t below(std::size_t bound) { return m_random() % bound; }
    std::ptrdiff_t place(std::size_t bound) { return static_cast<std::ptrdiff_t>(below(bound)); }

    std::string anyName()
    {
        static const Names names{"Box",         "Box",      "Box (2)", "Box (3)",
                                 "Box (4)",     "Box (02)", "Box (0)", "Box ()",
                                 "Box (2) (3)", "a/b",      "box",     " (2)"};
        return names[below(names.size())];
    }

    void create()
    {
        const std::string name = anyName();
        const auto index = place(m_names.size() + 1);
        m_names.insert(m_names.begin() + index, nameByDefinition(m_names, name));
        if (below(2) == 0) {
            m_folder->insertChild(static_cast<int>(index), name);
        } else {
            m_folder->insertChild(static_cast<int>(index), description(name));
        }
    }

    void rename()
    {
        const auto index = below(m_names.size());
        const std::string name = below(8) == 0 ? std::string() : anyName();
        if (name != m_names[index]) {
            Names others = m_names;
            others.erase(others.begin() + static_cast<std::ptrdiff_t>(index));
            m_names[index] = nameByDefinition(others, name);
        }
        m_folder->child(static_cast<int>(index))->setName(name);
    }

    void insert()
    {
        if (m_taken.empty()) {
            m_taken.emplace_back(BoxLibraryNode::fromDescription(description(anyName())));
        }
        BoxLibraryNode* const node = m_taken.back().release();
        m_taken.pop_back();
        const auto index = place(m_names.size() + 1);
        m_names.insert(m_names.begin() + index, nameByDefinition(m_names, node->name()));
        EXPECT_EQ(m_folder->insertChild(static_cast<int>(index), node), node);
    }

    void take()
    {
        const auto index = place(m_names.size());
        m_taken.emplace_back(m_folder->child(static_cast<int>(index))->take());
        m_names.erase(m_names.begin() + index);
    }

    void remove()
    {
        const auto index = place(m_names.size());
        removeChildTree(*m_folder, static_cast<int>(index));
        m_names.erase(m_names.begin() + index);
    }

    // Directories whose names are no file names of their nodes, so that names come twice.
    void load()
    {
        static const Names directories{"%42ox", "%42ox (2)", "Box %283)", "Box (%34)", "a%2Fb"};
        const std::string& directory = directories[below(directories.size())];
        const auto& children = m_folder->children();
        if (std::any_of(children.begin(), children.end(), [&](const BoxLibraryNode* child) {
                return child->fileName() == directory;
            })) {
            return;
        }
        m_library->projectModel().mkdir(q("Folder/" + directory), false);
        m_folder->appendChildFromProject(directory);
        m_names.push_back(BoxLibraryNode::unEscapeFileName(directory));
    }

    std::mt19937 m_random;
    Library m_library;
    BoxLibraryNode* m_folder;
    Names m_names;
    std::vector<DetachedNode> m_taken;
};

class RandomEditsOfSiblings : public testing::TestWithParam<std::uint32_t>
{
};

TEST_P(RandomEditsOfSiblings, GiveTheNamesOfTheDefinition)
{
    RandomSiblings siblings(GetParam());
    for (int i = 0; i < 400; ++i) {
        siblings.step();
        ASSERT_FALSE(HasFatalFailure()) << "in step " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEditsOfSiblings, testing::Range(1U, 9U));

} // namespace
} // namespace KX::test
