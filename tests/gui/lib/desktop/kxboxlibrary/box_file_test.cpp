#include "box_file.hpp"
#include "support.hpp"

#include <kxboxlibrary/box_constants.hpp>

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;

// A document with one "Box", whose tooltip says that it is the wanted one.
QByteArray document(const std::string& root, const std::string& attributes,
                    const std::string& content = "<Box tooltip=\"wanted\"/>")
{
    return QByteArray::fromStdString("<" + root + " " + attributes + ">" + content + "</" + root +
                                     ">");
}

std::string xmlns(const char* uri)
{
    return std::string("xmlns=\"") + uri + "\" ";
}

std::string tooltipOf(const boost::shared_ptr<XmlElement>& box)
{
    return box ? box->attribute("tooltip", std::string("<none>")) : "<null>";
}

QByteArray boxWithTooltip(const std::string& tooltip)
{
    return boxFile("tooltip=\"" + tooltip + "\"");
}

Library walkLibrary()
{
    return open(project({{"Walk/box.bhx", boxWithTooltip("old")}}));
}

BoxLibraryNode& firstChild(const Library& library)
{
    return *library->boxRoot()->child(0);
}

// A box of which every element but the last holds another one.
boost::shared_ptr<XmlElement> nestedBox(int levels)
{
    auto box = boost::make_shared<XmlElement>("Box");
    for (int level = 1; level < levels; ++level) {
        const auto outer = boost::make_shared<XmlElement>("Box");
        outer->addChild(box);
        box = outer;
    }
    return box;
}

std::string metadataMessage(const ProjectModel& model, const std::string& file)
{
    ProjectModel copy;
    copy.importFile(model, QString(), QString(), true);
    try {
        copy.remove(q(file));
    } catch (const std::exception& error) {
        return "Could not remove '" + file + "' file, reason: " + error.what();
    }
    return "<it was there>";
}

struct Document
{
    const char* name;
    QByteArray bytes;
};

std::string nameOf(const testing::TestParamInfo<Document>& info)
{
    return info.param.name;
}

class AcceptedBoxFile : public testing::TestWithParam<Document>
{
};

TEST_P(AcceptedBoxFile, GivesItsBox)
{
    ProjectModel model = project({{"Walk/box.bhx", GetParam().bytes}});
    EXPECT_EQ(tooltipOf(box_file::load(model, q("Walk/")).element), "wanted");
}

INSTANTIATE_TEST_SUITE_P(
    All, AcceptedBoxFile,
    testing::Values(
        Document{"BoxForm", document("KinestraBox", "bhx_version='3'")},
        Document{"VersionWithLeadingZero", document("KinestraBox", "bhx_version='03'")},
        Document{"BoxFormWithNamespace",
                 document("KinestraBox", "xmlns='urn:other' bhx_version='3'")},
        Document{"ProjectForm", document("KinestraProject",
                                         xmlns(BoxConstants::a_projectXsd) + "bhx_version='3'")},
        Document{"LegacyProjectForm",
                 document("KinestraProject",
                          xmlns(BoxConstants::a_legacyProjectXsd) + "bhx_version='3'")},
        Document{"OtherElementsFirst", document("KinestraBox", "bhx_version='3'",
                                                "<!-- x --><Box2/><box/><Box tooltip='wanted'/>")},
        Document{"FirstOfSeveralBoxes", document("KinestraBox", "bhx_version='3'",
                                                 "<Box tooltip='wanted'/><Box tooltip='b'/>")}),
    nameOf);

class RefusedBoxFile : public testing::TestWithParam<Document>
{
};

TEST_P(RefusedBoxFile, GivesNoBox)
{
    ProjectModel model = project({{"Walk/box.bhx", GetParam().bytes}});
    const LogRecords records;
    EXPECT_FALSE(box_file::load(model, q("Walk/")).element);
    EXPECT_TRUE(records.all().empty());
}

TEST_P(RefusedBoxFile, GivesItsBytes)
{
    const ProjectModel model = project({{"Walk/box.bhx", GetParam().bytes}});
    EXPECT_EQ(box_file::loadBytes(model, q("Walk/")), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedBoxFile,
    testing::Values(
        Document{"NoVersion", document("KinestraBox", "")},
        Document{"OlderVersion", document("KinestraBox", "bhx_version='2'")},
        Document{"NewerVersion", document("KinestraBox", "bhx_version='4'")},
        Document{"VersionIsNoNumber", document("KinestraBox", "bhx_version='abc'")},
        Document{"VersionIsEmpty", document("KinestraBox", "bhx_version=''")},
        Document{"VersionWithSpace", document("KinestraBox", "bhx_version=' 3'")},
        Document{"BoxOfOlderVersionWithTheProjectsNamespace",
                 document("KinestraBox", xmlns(BoxConstants::a_projectXsd) + "bhx_version='2'")},
        Document{
            "ProjectOfTheVersionThatIsExported",
            document("KinestraProject", xmlns(BoxConstants::a_projectXsd) + "bhx_version='2'")},
        Document{"LegacyProjectOfOlderVersion",
                 document("KinestraProject",
                          xmlns(BoxConstants::a_legacyProjectXsd) + "bhx_version='2'")},
        Document{"ProjectWithoutVersion",
                 document("KinestraProject", xmlns(BoxConstants::a_projectXsd))},
        Document{"ProjectOfAnotherNamespace",
                 document("KinestraProject", "xmlns='urn:other' bhx_version='3'")},
        Document{"ProjectWithoutNamespace", document("KinestraProject", "bhx_version='3'")},
        Document{"AnotherRoot", document("Box", "bhx_version='3'")},
        Document{"RootInOtherLetters", document("kinestrabox", "bhx_version='3'")},
        Document{"NoBox", document("KinestraBox", "bhx_version='3'", "<box/>")},
        Document{"BoxFurtherDown",
                 document("KinestraBox", "bhx_version='3'", "<Boxes><Box/></Boxes>")},
        Document{
            "ProjectWithoutBox",
            document("KinestraProject", xmlns(BoxConstants::a_projectXsd) + "bhx_version='3'", "")},
        Document{"NoXml", QByteArray("\x00\xff no XML", 9)},
        Document{"CutOff", QByteArray("<KinestraBox bhx_version='3'><Box/>")},
        Document{"Empty", QByteArray()}),
    nameOf);

TEST(LoadBox, PrefersTheBehaviorFile)
{
    const Library library = open(project({{"Walk/box.bhx", boxWithTooltip("box")},
                                          {"Walk/behavior.bhx", boxWithTooltip("behavior")}}));
    EXPECT_EQ(tooltipOf(firstChild(library).loadBox()), "behavior");
    EXPECT_EQ(firstChild(library).loadBoxData(), boxWithTooltip("behavior"));
    EXPECT_EQ(firstChild(library).boxData()->tooltip(), q("behavior"));
}

TEST(LoadBox, DoesNotFallBackFromARefusedBehaviorFile)
{
    const Library library =
        open(project({{"Walk/box.bhx", boxFile()}, {"Walk/behavior.bhx", "no XML"}}));
    EXPECT_FALSE(firstChild(library).loadBox());
    EXPECT_FALSE(firstChild(library).boxData());
    EXPECT_EQ(firstChild(library).loadBoxData(), QByteArray("no XML"));
}

class BoxFileOfTheRoot : public testing::TestWithParam<const char*>
{
};

TEST_P(BoxFileOfTheRoot, IsReadAtTheTop)
{
    const Library library = open(project({{GetParam(), boxWithTooltip("top")}}));
    EXPECT_EQ(tooltipOf(library->boxRoot()->loadBox()), "top");
    EXPECT_EQ(library->boxRoot()->loadBoxData(), boxWithTooltip("top"));
}

INSTANTIATE_TEST_SUITE_P(Names, BoxFileOfTheRoot, testing::Values("box.bhx", "behavior.bhx"));

TEST(LoadBox, ReadsTheFileAnewEachTime)
{
    const Library library = walkLibrary();
    library->projectModel().writeFile(q("Walk/box.bhx"), boxWithTooltip("new"));
    EXPECT_EQ(tooltipOf(firstChild(library).loadBox()), "new");
    EXPECT_EQ(firstChild(library).loadBoxData(), boxWithTooltip("new"));
    EXPECT_EQ(firstChild(library).boxData()->tooltip(), q("old"));
}

TEST(LoadBox, GivesEveryCallerACopy)
{
    const Library library = walkLibrary();
    const auto mine = firstChild(library).loadBox();
    mine->setAttribute("tooltip", "changed", false);
    EXPECT_EQ(tooltipOf(firstChild(library).loadBox()), "old");
    EXPECT_EQ(firstChild(library).loadBoxData(), boxWithTooltip("old"));
}

TEST(LoadBox, GivesNothingWhereThereIsNoFile)
{
    const Library library = newLibrary();
    const LogRecords records;
    EXPECT_FALSE(library->boxRoot()->loadBox());
    EXPECT_TRUE(library->boxRoot()->loadBoxData().isEmpty());
    EXPECT_TRUE(records.all().empty());
}

TEST(LoadBox, GivesNothingWithoutAProject)
{
    const BoxLibraryNode node;
    EXPECT_FALSE(node.loadBox());
    EXPECT_TRUE(node.loadBoxData().isEmpty());
}

TEST(LoadBox, ReadsTheFileOfADetachedBoxAtTheTopOfItsProject)
{
    const Library library = walkLibrary();
    const DetachedNode copy(firstChild(library).clone());
    EXPECT_EQ(tooltipOf(copy->loadBox()), "old");
    EXPECT_EQ(copy->project()->readFile(q("box.bhx")), boxWithTooltip("old"));
}

class StoredBoxFile : public testing::TestWithParam<ArchiveFormat>
{
};

TEST_P(StoredBoxFile, IsRead)
{
    const TemporaryDirectory directory;
    const Library library = open(stored(project({{"A/B/Walk/box.bhx", boxWithTooltip("deep")}}),
                                        directory.path("library.bxl"), GetParam()));
    const BoxLibraryNode& walk = *library->node({0, 0, 0});
    EXPECT_EQ(tooltipOf(walk.loadBox()), "deep");
    EXPECT_EQ(walk.loadBoxData(), boxWithTooltip("deep"));
}

TEST_P(StoredBoxFile, IsWrittenWithTheLibrary)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("library.bxl");
    const Library library =
        open(stored(project({{"Walk/behavior.bhx", boxFile()}}), path, GetParam()));
    firstChild(library).saveBox(element("<Box tooltip='saved'/>"), false);
    library->save();
    const Library reopened = open(ProjectModel(path));
    EXPECT_EQ(tooltipOf(firstChild(reopened).loadBox()), "saved");
    EXPECT_EQ(filesOf(reopened->projectModel(), "Walk"), Names{"box.bhx"});
}

INSTANTIATE_TEST_SUITE_P(Forms, StoredBoxFile,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip));

TEST(SaveBox, WritesTheBoxForm)
{
    const Library library = walkLibrary();
    firstChild(library).saveBox(element("<Box name='Walk' tooltip='saved'/>"), false);
    const auto root = element(firstChild(library).loadBoxData().toStdString());
    EXPECT_EQ(root->beacon(), "KinestraBox");
    EXPECT_EQ(root->attribute("bhx_version", std::string()), "3");
    ASSERT_EQ(root->mixedChildren().size(), 1U);
    const auto box = root->mixedChildren().front();
    EXPECT_EQ(box->beacon(), "Box");
    EXPECT_EQ(box->attribute("name", std::string()), "root");
    EXPECT_EQ(box->attribute("tooltip", std::string()), "saved");
}

TEST(SaveBox, NamesABoxWithoutNameToo)
{
    const Library library = walkLibrary();
    firstChild(library).saveBox(element("<Box/>"), false);
    EXPECT_EQ(firstChild(library).loadBox()->attribute("name", std::string()), "root");
}

TEST(SaveBox, CarriesEverythingElseThrough)
{
    const std::string content =
        R"(id="7" localization="8" tooltip="old &amp; &lt;new>">)"
        R"(<script language="4"><![CDATA[if a < b: pass]]></script>)"
        R"(<!-- kept --><Timeline fps="25" /><x:y xmlns:x="urn:z" /></Box>)";
    const Library library = open(
        project({{"Walk/box.bhx",
                  QByteArray::fromStdString(R"(<KinestraBox bhx_version="3"><Box name="Walk" )" +
                                            content + "</KinestraBox>")}}));
    firstChild(library).saveBox(firstChild(library).loadBox(), false);
    std::string written = firstChild(library).loadBoxData().simplified().toStdString();
    for (std::size_t at = 0; (at = written.find("> <", at)) != std::string::npos;) {
        written.erase(at + 1, 1);
    }
    EXPECT_NE(written.find("<Box name=\"root\" " + content), std::string::npos) << written;
}

TEST(SaveBox, LeavesOnlyTheBoxFile)
{
    const Library library = open(project({{"Walk/behavior.bhx", boxFile()}}));
    firstChild(library).saveBox(element("<Box tooltip='saved'/>"), false);
    EXPECT_EQ(filesOf(library->projectModel(), "Walk"), Names{"box.bhx"});
    EXPECT_EQ(tooltipOf(firstChild(library).loadBox()), "saved");
}

TEST(SaveBox, KeepsTheResources)
{
    const Library library = open(project({{"Walk/box.bhx", boxFile()}, {"Walk/a.png", "a"}}));
    firstChild(library).saveBox(element("<Box/>"), false);
    EXPECT_EQ(filesOf(library->projectModel(), "Walk"), (Names{"a.png", "box.bhx"}));
}

TEST(SaveBox, WritesTheSameFileForBehaviors)
{
    const Library library = open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile()}}));
    const BoxLibraryNode& root = *library->boxRoot();
    root.child(0)->saveBox(element("<Box tooltip='saved'/>"), true);
    root.child(1)->saveBox(element("<Box tooltip='saved'/>"), false);
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"box.bhx"});
    EXPECT_EQ(root.child(0)->loadBoxData(), root.child(1)->loadBoxData());
}

TEST(SaveBox, ChangesTheCallersElement)
{
    const Library library = walkLibrary();
    const auto box = element("<Box name='Walk'/>");
    firstChild(library).saveBox(box, false);
    EXPECT_EQ(box->attribute("name", std::string()), "root");
}

TEST(SaveBox, MakesTheCallersElementAChildOfTheNewRoot)
{
    const Library library = walkLibrary();
    const auto box = element("<Box/>");
    EXPECT_EQ(box.use_count(), 1);
    long owners = 0;
    ProjectModel& model = library->projectModel();
    // The logger is called while the document lives.
    const auto handler = pk::log::addHandler([&](const auto&) { owners = box.use_count(); });
    box_file::save(model, q("Walk/"), box);
    pk::log::removeHandler(handler);
    EXPECT_EQ(owners, 2);
}

TEST(SaveBox, MakesTheMissingDirectories)
{
    const Library library = open(project({{"A/B/Walk/box.bhx", boxFile()}}));
    BoxLibraryNode* const walk = library->node({0, 0, 0});
    library->projectModel().remove(q("A"));
    walk->saveBox(element("<Box tooltip='saved'/>"), false);
    EXPECT_EQ(tooltipOf(walk->loadBox()), "saved");
    EXPECT_EQ(filesOf(library->projectModel(), "A"), Names{"B/Walk/box.bhx"});
}

TEST(SaveBox, WritesTheRootsFileAtTheTop)
{
    const Library library = open(project({{"behavior.bhx", boxFile()}}));
    library->boxRoot()->saveBox(element("<Box/>"), false);
    EXPECT_EQ(filesOf(library->projectModel()), Names{"box.bhx"});
}

TEST(SaveBox, RemovesLeftOverMetadata)
{
    const Library library = open(project({{"Walk/box.bhx", boxFile()}, {"Walk/.metadata", "x"}}));
    const LogRecords records;
    firstChild(library).saveBox(element("<Box/>"), false);
    EXPECT_EQ(filesOf(library->projectModel(), "Walk"), Names{"box.bhx"});
    EXPECT_TRUE(records.all().empty());
}

struct MetadataPlace
{
    const char* boxFile;
    const char* metadata;
};

class MissingMetadata : public testing::TestWithParam<MetadataPlace>
{
};

TEST_P(MissingMetadata, IsLoggedAsAnError)
{
    const Library library = open(project({{GetParam().boxFile, boxFile()}}));
    BoxLibraryNode* const box =
        library->boxRoot()->boxData() ? library->boxRoot() : library->boxRoot()->child(0);
    const LogRecords records;
    box->saveBox(element("<Box tooltip='saved'/>"), false);
    ASSERT_EQ(records.all().size(), 1U);
    const pk::log::Record& record = records.all().front();
    EXPECT_EQ(record.level, pk::log::Error);
    EXPECT_EQ(record.category, "kxboxlibrary");
    EXPECT_EQ(record.function, "saveBox");
    EXPECT_GT(record.line, 0);
    EXPECT_EQ(record.message, metadataMessage(library->projectModel(), GetParam().metadata));
    EXPECT_EQ(tooltipOf(box->loadBox()), "saved");
}

INSTANTIATE_TEST_SUITE_P(Places, MissingMetadata,
                         testing::Values(MetadataPlace{"Walk/box.bhx", "Walk/.metadata"},
                                         MetadataPlace{"box.bhx", ".metadata"}));

TEST(SaveBox, DoesNothingWithoutAProject)
{
    BoxLibraryNode node;
    const auto box = element("<Box name='Walk'/>");
    const LogRecords records;
    node.saveBox(box, false);
    node.saveBox(nullptr, false);
    EXPECT_EQ(box->attribute("name", std::string()), "Walk");
    EXPECT_TRUE(records.all().empty());
}

TEST(SaveBox, IsSilentWhenTheFileCannotBeCreated)
{
    const Library library = open(project({{"Walk/behavior.bhx", boxFile()},
                                          {"Walk/.metadata", "x"},
                                          {"Walk/box.bhx/", QByteArray()},
                                          {"Walk/a.png", "a"}}));
    const LogRecords records;
    firstChild(library).saveBox(element("<Box/>"), false);
    EXPECT_EQ(filesOf(library->projectModel(), "Walk"), Names{"a.png"});
    EXPECT_TRUE(records.all().empty());
}

TEST(SaveBox, RefusesNull)
{
    const Library library = open(project({{"Walk/box.bhx", boxFile()}, {"Walk/.metadata", "x"}}));
    library->projectModel().writeFile(q("Walk/behavior.bhx"), "no XML");
    const Names before = filesOf(library->projectModel());
    try {
        firstChild(library).saveBox(nullptr, false);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "no box to write into 'Walk/box.bhx': the box file is missing "
                                   "or cannot be read");
    }
    EXPECT_EQ(filesOf(library->projectModel()), before);
    EXPECT_EQ(firstChild(library).loadBoxData(), QByteArray("no XML"));
}

TEST(SaveBox, WritesTheDeepestElementThatCanBeRead)
{
    const Library library = walkLibrary();
    firstChild(library).saveBox(nestedBox(255), false);
    EXPECT_TRUE(firstChild(library).loadBox());
}

TEST(SaveBox, RefusesWhatIsNestedTooDeep)
{
    const Library library =
        open(project({{"Walk/behavior.bhx", boxWithTooltip("old")}, {"Walk/.metadata", "x"}}));
    const Names before = filesOf(library->projectModel());
    EXPECT_THROW(firstChild(library).saveBox(nestedBox(256), false), std::runtime_error);
    EXPECT_EQ(filesOf(library->projectModel()), before);
    EXPECT_EQ(firstChild(library).loadBoxData(), boxWithTooltip("old"));
}

TEST(SaveBox, PassesOnWhatTheProjectModelThrows)
{
    const Library library = walkLibrary();
    library->projectModel().remove(q("Walk"));
    library->projectModel().writeFile(q("Walk"), "in the way");
    EXPECT_THROW(firstChild(library).saveBox(element("<Box/>"), false), pk::project::AlreadyExists);
    EXPECT_EQ(library->projectModel().readFile(q("Walk")), QByteArray("in the way"));
}

TEST(SaveBox, KeepsTheFileWhenNotAllCanBeWritten)
{
    const Library library = open(project({{"Walk/behavior.bhx", boxFile("tooltip=\"old\"")}}));
    const auto box = element("<Box/>");
    box->setAttribute("tooltip", std::string(256UL * 1024, 'x'), false);
    const QByteArray before = firstChild(library).loadBoxData();
    {
        const FileSizeLimit full(1024);
        EXPECT_THROW(firstChild(library).saveBox(box, false), pk::project::IoError);
        EXPECT_THROW(firstChild(library).boxData()->setTooltip(q(std::string(4096, 'x'))),
                     pk::project::IoError);
    }
    EXPECT_EQ(filesOf(library->projectModel(), "Walk"), Names{"behavior.bhx"});
    EXPECT_EQ(firstChild(library).loadBoxData(), before);
    EXPECT_TRUE(firstChild(library).save());
}

struct UnreadableBox
{
    const char* name;
    const char* bytes; // null: the file is gone
};

class SavingAnUnreadableBox : public testing::TestWithParam<UnreadableBox>
{
};

TEST_P(SavingAnUnreadableBox, FailsAndLeavesTheFileAlone)
{
    const Library library = walkLibrary();
    ProjectModel& model = library->projectModel();
    model.remove(q("Walk/box.bhx"));
    if (GetParam().bytes != nullptr) {
        model.writeFile(q("Walk/box.bhx"), GetParam().bytes);
    }
    const LogRecords records;
    EXPECT_FALSE(firstChild(library).save());
    ASSERT_EQ(records.all().size(), 1U);
    EXPECT_EQ(records.all().front().level, pk::log::Error);
    EXPECT_EQ(records.all().front().category, "kxboxlibrary");
    EXPECT_EQ(records.all().front().function, "save");
    EXPECT_EQ(records.all().front().message,
              "Could not save node Walk, reason: no box to write into 'Walk/box.bhx': the box file "
              "is missing or cannot be read");
    EXPECT_EQ(model.hasFile(q("Walk/box.bhx")), GetParam().bytes != nullptr);
    EXPECT_EQ(model.readFile(q("Walk/box.bhx")), QByteArray(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(All, SavingAnUnreadableBox,
                         testing::Values(UnreadableBox{"Gone", nullptr},
                                         UnreadableBox{"NoXml", "no XML"},
                                         UnreadableBox{"OtherVersion",
                                                       "<KinestraBox bhx_version='4'><Box/>"
                                                       "</KinestraBox>"}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace KX::test
