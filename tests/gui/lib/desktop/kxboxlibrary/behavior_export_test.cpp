#include "behavior_export.hpp"
#include "support.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <pk/project/behavior_project.hpp>

#include <QDirIterator>

#include <sys/stat.h>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;
using pk::project::BehaviorProject;
using pk::project::Project;

// Everything below a local directory, hidden files too; directories end in "/".
Names localTree(const QString& directory)
{
    Names names;
    QDirIterator it(directory,
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const bool isDirectory = it.fileInfo().isDir() && !it.fileInfo().isSymLink();
        names.push_back(QDir(directory).relativeFilePath(path).toStdString() +
                        (isDirectory ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    return names;
}

boost::shared_ptr<XmlElement> localXml(const QString& path)
{
    return element(getLocal(path).toStdString());
}

std::string nameOfBehavior(const QString& directory)
{
    return BehaviorProject(Project(directory.toStdString())).name();
}

// A directory to export to, "D", beside what must not be touched, "outside".
class BehaviorExport : public testing::Test
{
protected:
    BehaviorExport() { QDir(m_directory.path()).mkpath(q("D")); }

    QString destination(const std::string& path = {}) const
    {
        return m_directory.path(path.empty() ? "D" : "D/" + path);
    }
    QString outside(const std::string& path) const { return m_directory.path("outside/" + path); }
    Names exported() const { return localTree(destination()); }
    void link(const QString& target, const std::string& path) const
    {
        QDir().mkpath(QFileInfo(destination(path)).path());
        ASSERT_TRUE(QFile::link(target, destination(path)));
    }
    bool isThere(const std::string& path) const { return QFileInfo::exists(destination(path)); }
    bool isLink(const std::string& path) const { return QFileInfo(destination(path)).isSymLink(); }

private:
    const TemporaryDirectory m_directory;
};

class BehaviorExportOfForm : public BehaviorExport,
                             public testing::WithParamInterface<ArchiveFormat>
{
};

TEST_P(BehaviorExportOfForm, WritesABehaviorProjectAtTheBoxsPath)
{
    const TemporaryDirectory directory;
    const Library library = open(stored(project({{"motion/walk/box.bhx", behaviorBox("Walk")},
                                                 {"motion/walk/a.png", "a"},
                                                 {"motion/walk/sounds/b.wav", "b"}}),
                                        directory.path("library.bxl"), GetParam()));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"motion/", "motion/walk/", "motion/walk/.kxproject",
                                 "motion/walk/a.png", "motion/walk/behavior.bhx",
                                 "motion/walk/sounds/", "motion/walk/sounds/b.wav"}));
    const Project walk(destination("motion/walk").toStdString());
    EXPECT_EQ(walk.getMetadata("Type"), "KinestraProject");
    EXPECT_EQ(walk.getMetadata("Version"), "2.0");
    EXPECT_EQ(BehaviorProject(walk).name(), "Walk");
    EXPECT_EQ(getLocal(destination("motion/walk/sounds/b.wav")), QByteArray("b"));
}

INSTANTIATE_TEST_SUITE_P(Forms, BehaviorExportOfForm,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip));

TEST_F(BehaviorExport, WritesTheBoxIntoTheProjectForm)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    const auto root = localXml(destination("Walk/behavior.bhx"));
    EXPECT_EQ(root->beacon(), "KinestraProject");
    EXPECT_EQ(root->attribute("xmlns", std::string()), BoxConstants::a_projectXsd);
    EXPECT_EQ(root->attribute("bhx_version", std::string()), "2");
    ASSERT_EQ(root->mixedChildren().size(), 1U);
    const auto box = root->mixedChildren().front();
    EXPECT_EQ(box->beacon(), "Box");
    EXPECT_EQ(box->attribute("name", std::string()), "root");
    EXPECT_EQ(box->attribute("tooltip", std::string()), "of Walk");
    EXPECT_TRUE(BoxData::isBehavior(box));
}

TEST_F(BehaviorExport, WritesTheNamespaceBeforeTheVersion)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    const QByteArray root = QByteArray(R"(<KinestraProject xmlns=")") + BoxConstants::a_projectXsd +
                            R"(" bhx_version="2">)";
    const QByteArray written = getLocal(destination("Walk/behavior.bhx"));
    EXPECT_TRUE(written.contains(root)) << written.toStdString();
}

TEST_F(BehaviorExport, NamesABehaviorWhoseBoxHasNoNameByNothing)
{
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("x").replace("name=\"x\"", "")}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "");
    EXPECT_EQ(localXml(destination("Walk/behavior.bhx"))
                  ->firstChild("Box")
                  ->attribute("name", std::string()),
              "root");
}

TEST_F(BehaviorExport, TakesABoxOfAnyFormAndVersion)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->projectModel().writeFile(q("Walk/box.bhx"), "<Any><Box name='Old'/></Any>");
    library->exportBehaviors(destination());
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Old");
}

TEST_F(BehaviorExport, ReadsTheBehaviorFileWhereThereIsNoBoxFile)
{
    const Library library = open(project({{"Walk/behavior.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"Walk/", "Walk/.kxproject", "Walk/behavior.bhx"}));
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Walk");
    EXPECT_EQ(localXml(destination("Walk/behavior.bhx"))->beacon(), "KinestraProject");
}

TEST_F(BehaviorExport, PrefersTheBoxFile)
{
    const Library library = open(project(
        {{"Walk/box.bhx", behaviorBox("Box")}, {"Walk/behavior.bhx", behaviorBox("Behavior")}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Box");
    EXPECT_EQ(exported(), (Names{"Walk/", "Walk/.kxproject", "Walk/behavior.bhx"}));
}

TEST_F(BehaviorExport, CanBeRepeated)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    const QByteArray first = getLocal(destination("Walk/behavior.bhx"));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"Walk/", "Walk/.kxproject", "Walk/behavior.bhx"}));
    EXPECT_EQ(getLocal(destination("Walk/behavior.bhx")), first);
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Walk");
}

TEST_F(BehaviorExport, ReadsWhatAnEarlierExportLeftWhenTheLibraryHasNoFile)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    const QByteArray first = getLocal(destination("Walk/behavior.bhx"));
    library->projectModel().remove(q("Walk/box.bhx"));
    library->exportBehaviors(destination());
    EXPECT_EQ(getLocal(destination("Walk/behavior.bhx")), first);
    // The earlier export called the box so.
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "root");
}

TEST_F(BehaviorExport, LeavesTheLibraryAsItIs)
{
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/a.png", "a"}}));
    const Names before = filesOf(library->projectModel());
    library->exportBehaviors(destination());
    EXPECT_EQ(filesOf(library->projectModel()), before);
    EXPECT_EQ(library->projectModel().readFile(q("Walk/box.bhx")), behaviorBox("Walk"));
    EXPECT_FALSE(library->isDirty());
}

TEST_F(BehaviorExport, WritesNothingForALibraryWithoutBehaviors)
{
    const Library library =
        open(project({{"Folder/Box/box.bhx", boxFile()}, {"translations/fr.ts", "x"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), Names{});
}

TEST_F(BehaviorExport, MakesNoDirectoryForAFolderWithoutBehaviors)
{
    const Library library = open(project({{"A/Empty/", QByteArray()},
                                          {"A/Walk/box.bhx", behaviorBox("Walk")},
                                          {"B/Box/box.bhx", boxFile()}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"A/", "A/Walk/", "A/Walk/.kxproject", "A/Walk/behavior.bhx"}));
}

TEST_F(BehaviorExport, ExportsABehaviorThatIsTheWholeLibrary)
{
    const Library library = open(project({{"box.bhx", behaviorBox("Walk")}, {"a.png", "a"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{".kxproject", "a.png", "behavior.bhx"}));
    EXPECT_EQ(nameOfBehavior(destination()), "Walk");
}

TEST_F(BehaviorExport, MergesWithWhatIsThere)
{
    putLocal(destination("other.txt"), "1");
    putLocal(destination("A/Walk/mine.txt"), "2");
    putLocal(destination("A/Walk/a.png"), "3");
    const Library library =
        open(project({{"A/Walk/box.bhx", behaviorBox("Walk")}, {"A/Walk/a.png", "a"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"A/", "A/Walk/", "A/Walk/.kxproject", "A/Walk/a.png",
                                 "A/Walk/behavior.bhx", "A/Walk/mine.txt", "other.txt"}));
    EXPECT_EQ(getLocal(destination("A/Walk/a.png")), QByteArray("a"));
}

TEST_F(BehaviorExport, RefusesAMissingDestination)
{
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    try {
        library->exportBehaviors(destination("missing"));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const pk::project::PathNotFound& error) {
        EXPECT_STREQ(error.what(), "");
    }
    EXPECT_EQ(exported(), Names{});
}

TEST_F(BehaviorExport, RefusesAMissingDestinationOfALibraryWithoutBehaviorsToo)
{
    const Library library = newLibrary();
    EXPECT_THROW(library->exportBehaviors(destination("missing")), pk::project::PathNotFound);
}

TEST_F(BehaviorExport, RefusesAFileAsDestination)
{
    putLocal(destination("file"), "x");
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    EXPECT_THROW(library->exportBehaviors(destination("file")), pk::project::PathNotFound);
    EXPECT_EQ(getLocal(destination("file")), QByteArray("x"));
}

// Failures of single behaviours

TEST_F(BehaviorExport, LeavesNothingOfABehaviorThatFailsAndExportsTheOthers)
{
    const Library library = open(project({{"A/box.bhx", behaviorBox("A")},
                                          {"B/Bad/box.bhx", behaviorBox("Bad")},
                                          {"B/Bad/a.png", "a"},
                                          {"C/box.bhx", behaviorBox("C")}}));
    library->projectModel().writeFile(q("B/Bad/box.bhx"), "no XML");
    const LogRecords records;
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"A/", "A/.kxproject", "A/behavior.bhx", "C/", "C/.kxproject",
                                 "C/behavior.bhx"}));
    EXPECT_TRUE(records.all().empty());
}

TEST_F(BehaviorExport, KeepsTheDirectoryOfABehaviorThatFailsWhenItWasThere)
{
    putLocal(destination("Walk/mine.txt"), "m");
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/a.png", "a"}}));
    library->projectModel().writeFile(q("Walk/box.bhx"), "no XML");
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(),
              (Names{"Walk/", "Walk/.kxproject", "Walk/a.png", "Walk/box.bhx", "Walk/mine.txt"}));
}

TEST_F(BehaviorExport, GivesANewDirectoryTheMetadataThatOneHasThatWasThere)
{
    const ProjectModel model = project({{"Walk/box.bhx", behaviorBox("Walk")}});
    writeBehavior(model, q("Walk"), QDir(destination()));
    const QByteArray metadata = getLocal(destination("Walk/.kxproject"));
    writeBehavior(model, q("Walk"), QDir(destination()));
    EXPECT_EQ(getLocal(destination("Walk/.kxproject")), metadata);
    const Project written(destination("Walk").toStdString());
    EXPECT_EQ(written.getMetadata("Type"), "KinestraProject");
    EXPECT_EQ(written.getMetadata("Version"), "2.0");
}

TEST_F(BehaviorExport, KeepsTheParentsOfABehaviorThatFailsWhenTheyWereThere)
{
    QDir().mkpath(destination("A/B"));
    const Library library = open(project({{"A/B/C/Walk/box.bhx", behaviorBox("Walk")}}));
    library->projectModel().writeFile(q("A/B/C/Walk/box.bhx"), "no XML");
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"A/", "A/B/"}));
}

TEST_F(BehaviorExport, KeepsTheParentsThatAnotherBehaviorHas)
{
    const Library library =
        open(project({{"A/Bad/box.bhx", behaviorBox("Bad")}, {"A/Walk/box.bhx", behaviorBox("")}}));
    library->projectModel().writeFile(q("A/Bad/box.bhx"), "no XML");
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"A/", "A/Walk/", "A/Walk/.kxproject", "A/Walk/behavior.bhx"}));
}

TEST_F(BehaviorExport, LeavesOutABehaviorWhoseFilesAreGone)
{
    const Library library =
        open(project({{"A/box.bhx", behaviorBox("A")}, {"B/box.bhx", behaviorBox("B")}}));
    library->projectModel().remove(q("A"));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(), (Names{"B/", "B/.kxproject", "B/behavior.bhx"}));
}

TEST_F(BehaviorExport, LeavesOutABehaviorWhosePlaceHasDamagedMetadata)
{
    putLocal(destination("A/.kxproject"), "damaged");
    const Library library =
        open(project({{"A/box.bhx", behaviorBox("A")}, {"B/box.bhx", behaviorBox("B")}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(exported(),
              (Names{"A/", "A/.kxproject", "A/box.bhx", "B/", "B/.kxproject", "B/behavior.bhx"}));
    EXPECT_EQ(getLocal(destination("A/.kxproject")), QByteArray("damaged"));
}

TEST_F(BehaviorExport, SaysWhetherABehaviorCouldBeExported)
{
    const ProjectModel model =
        project({{"Good/box.bhx", behaviorBox("Good")}, {"Bad/box.bhx", "no XML"}});
    EXPECT_TRUE(exportBehavior(model, q("Good"), QDir(destination())));
    EXPECT_FALSE(exportBehavior(model, q("Bad"), QDir(destination())));
    EXPECT_EQ(exported(), (Names{"Good/", "Good/.kxproject", "Good/behavior.bhx"}));
}

struct ExportFailure
{
    const char* name;
    std::vector<std::pair<std::string, QByteArray>> library; // the behaviour is at "A/Walk"
    std::vector<std::pair<std::string, QByteArray>> before;  // in the destination
    const char* message;
    Names after;
};

class FailedBehaviorExport : public BehaviorExport,
                             public testing::WithParamInterface<ExportFailure>
{
protected:
    FailedBehaviorExport()
    {
        for (const auto& [path, bytes] : GetParam().before) {
            if (path.back() == '/') {
                QDir().mkpath(destination(path));
            } else {
                putLocal(destination(path), bytes);
            }
        }
    }
};

TEST_P(FailedBehaviorExport, SaysWhyAndLeavesWhatWasMade)
{
    const ProjectModel model = project(GetParam().library);
    try {
        writeBehavior(model, q("A/Walk"), QDir(destination()));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), GetParam().message);
    }
    EXPECT_EQ(exported(), GetParam().after);
}

const Names a_exportMade{"A/", "A/Walk/"};

Names withMade(Names names)
{
    names.insert(names.begin(), a_exportMade.begin(), a_exportMade.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    Messages, FailedBehaviorExport,
    testing::Values(ExportFailure{"FileInPlaceOfAParent",
                                  {{"A/Walk/box.bhx", behaviorBox("Walk")}},
                                  {{"A", "file"}},
                                  "Could not create behavior directory at destination.",
                                  {"A"}},
                    ExportFailure{"FileInPlaceOfTheDirectory",
                                  {{"A/Walk/box.bhx", behaviorBox("Walk")}},
                                  {{"A/Walk", "file"}},
                                  "Could not create behavior directory at destination.",
                                  {"A/", "A/Walk"}},
                    ExportFailure{"NoFileToRead",
                                  {{"A/Walk/a.png", "a"}},
                                  {},
                                  "Could not open box behavior.bhx for writing.",
                                  withMade({"A/Walk/a.png"})},
                    ExportFailure{"NoXml",
                                  {{"A/Walk/box.bhx", "no XML"}},
                                  {},
                                  "Could not parse box BHX file.",
                                  withMade({"A/Walk/box.bhx"})},
                    ExportFailure{"DirectoryInPlaceOfTheFilesToRead",
                                  {{"A/Walk/box.bhx/", ""}, {"A/Walk/behavior.bhx/", ""}},
                                  {},
                                  "Could not open box behavior.bhx for writing.",
                                  withMade({"A/Walk/behavior.bhx/", "A/Walk/box.bhx/"})},
                    ExportFailure{"NoXmlInTheBehaviorFile",
                                  {{"A/Walk/behavior.bhx", ""}},
                                  {},
                                  "Could not parse box BHX file.",
                                  withMade({"A/Walk/behavior.bhx"})},
                    ExportFailure{
                        "NoBox",
                        {{"A/Walk/box.bhx", "<KinestraBox><Boxes><Box/></Boxes></KinestraBox>"}},
                        {},
                        "BHX file does not contain a root box.",
                        withMade({"A/Walk/box.bhx"})},
                    ExportFailure{"DirectoryInPlaceOfTheFileToWrite",
                                  {{"A/Walk/box.bhx", behaviorBox("Walk")}},
                                  {{"A/Walk/behavior.bhx/", ""}},
                                  "Could not open box behavior.bhx for writing.",
                                  withMade({"A/Walk/.kxproject", "A/Walk/behavior.bhx/"})}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(BehaviorExport, DoesNotWaitForThePipeThatIsInPlaceOfTheFileToWrite)
{
    QDir().mkpath(destination("Walk"));
    const std::string pipe = destination("Walk/behavior.bhx").toStdString();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ProjectModel model = project({{"Walk/box.bhx", behaviorBox("Walk")}});
    EXPECT_FALSE(exportBehavior(model, q("Walk"), QDir(destination())));
    EXPECT_TRUE(isThere("Walk/behavior.bhx"));
}

TEST_F(BehaviorExport, DoesNotWaitForThePipeThatIsInPlaceOfTheFileToRead)
{
    QDir().mkpath(destination("Walk"));
    const std::string pipe = destination("Walk/behavior.bhx").toStdString();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ProjectModel model = project({{"Walk/a.png", "a"}});
    EXPECT_FALSE(exportBehavior(model, q("Walk"), QDir(destination())));
    EXPECT_TRUE(isThere("Walk/behavior.bhx"));
}

TEST_F(BehaviorExport, TakesNoFileOfTheBoxForTheMetadata)
{
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/.kxproject", "damaged"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Walk");
}

TEST_F(BehaviorExport, LetsThroughWhatIsNoStandardException)
{
    struct Interruption
    {
    };
    // Leaving out a file of this name is logged, which lets a handler throw from within.
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/.kxproject", "x"}}));
    const auto handler = pk::log::addHandler([](const auto&) { throw Interruption(); });
    EXPECT_THROW(library->exportBehaviors(destination()), Interruption);
    pk::log::removeHandler(handler);
}

// Symbolic links in the destination

TEST_F(BehaviorExport, MayGoThroughALinkToTheDestination)
{
    QDir().mkpath(outside("real"));
    link(outside("real"), "link");
    const Library library = open(project({{"A/Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination("link"));
    EXPECT_EQ(localTree(outside("real")),
              (Names{"A/", "A/Walk/", "A/Walk/.kxproject", "A/Walk/behavior.bhx"}));
}

struct LinkedDirectory
{
    const char* name;
    const char* link;
    bool dangling;
};

class LinkInPlaceOfADirectory : public BehaviorExport,
                                public testing::WithParamInterface<LinkedDirectory>
{
protected:
    LinkInPlaceOfADirectory()
    {
        putLocal(outside("keep.txt"), "k");
        link(outside(GetParam().dangling ? "missing" : ""), GetParam().link);
    }
};

TEST_P(LinkInPlaceOfADirectory, IsNotFollowed)
{
    const Library library =
        open(project({{"A/B/Walk/box.bhx", behaviorBox("Walk")}, {"A/B/Walk/Walk/b.png", "b"}}));
    const Names before = exported();
    library->exportBehaviors(destination());
    EXPECT_EQ(localTree(outside("")), Names{"keep.txt"});
    EXPECT_EQ(exported(), before);
    EXPECT_TRUE(isLink(GetParam().link));
}

TEST_P(LinkInPlaceOfADirectory, IsADirectoryThatCannotBeCreated)
{
    const ProjectModel model = project({{"A/B/Walk/box.bhx", behaviorBox("Walk")}});
    try {
        writeBehavior(model, q("A/B/Walk"), QDir(destination()));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Could not create behavior directory at destination.");
    }
}

INSTANTIATE_TEST_SUITE_P(Links, LinkInPlaceOfADirectory,
                         testing::Values(LinkedDirectory{"First", "A", false},
                                         LinkedDirectory{"Parent", "A/B", false},
                                         LinkedDirectory{"Box", "A/B/Walk", false},
                                         LinkedDirectory{"FirstDangling", "A", true},
                                         LinkedDirectory{"BoxDangling", "A/B/Walk", true}),
                         [](const auto& test) { return std::string(test.param.name); });

class LinkInPlaceOfAFile : public BehaviorExport, public testing::WithParamInterface<const char*>
{
};

TEST_P(LinkInPlaceOfAFile, IsReplaced)
{
    putLocal(outside("keep.txt"), "k");
    link(outside("keep.txt"), std::string("Walk/") + GetParam());
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/a.png", "a"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(getLocal(outside("keep.txt")), QByteArray("k"));
    EXPECT_EQ(exported(), (Names{"Walk/", "Walk/.kxproject", "Walk/a.png", "Walk/behavior.bhx"}));
    EXPECT_FALSE(isLink(std::string("Walk/") + GetParam()));
    EXPECT_EQ(nameOfBehavior(destination("Walk")), "Walk");
}

INSTANTIATE_TEST_SUITE_P(Files, LinkInPlaceOfAFile,
                         testing::Values("behavior.bhx", "box.bhx", "a.png"));

TEST_F(BehaviorExport, DoesNotWriteThroughADanglingLink)
{
    link(outside("missing"), "Walk/behavior.bhx");
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    EXPECT_FALSE(QFileInfo::exists(outside("missing")));
    EXPECT_FALSE(isLink("Walk/behavior.bhx"));
}

TEST_F(BehaviorExport, DoesNotReadThroughLinks)
{
    putLocal(outside("box.bhx"), behaviorBox("Secret"));
    for (const char* const file : {"Walk/box.bhx", "Walk/behavior.bhx"}) {
        link(outside("box.bhx"), file);
    }
    const ProjectModel model = project({{"Walk/a.png", "a"}});
    try {
        writeBehavior(model, q("Walk"), QDir(destination()));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Could not open box behavior.bhx for writing.");
    }
    EXPECT_EQ(getLocal(outside("box.bhx")), behaviorBox("Secret"));
}

TEST_F(BehaviorExport, DoesNotFollowALinkInPlaceOfTheMetadata)
{
    putLocal(outside("metadata"), R"({"name": "Secret"})");
    link(outside("metadata"), "Walk/.kxproject");
    const Library library = open(project({{"Walk/box.bhx", behaviorBox("Walk")}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(getLocal(outside("metadata")), QByteArray(R"({"name": "Secret"})"));
    EXPECT_FALSE(QFileInfo::exists(destination("Walk/behavior.bhx")));
}

TEST_F(BehaviorExport, DoesNotFollowALinkInPlaceOfAResourceDirectory)
{
    putLocal(outside("keep.txt"), "k");
    link(outside(""), "Walk/images");
    const Library library =
        open(project({{"Walk/box.bhx", behaviorBox("Walk")}, {"Walk/images/a.png", "a"}}));
    library->exportBehaviors(destination());
    EXPECT_EQ(localTree(outside("")), Names{"keep.txt"});
    EXPECT_TRUE(isLink("Walk/images"));
}

} // namespace
} // namespace KX::test
