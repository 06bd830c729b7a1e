#include "framework/pkproject/another_user.hpp"
#include "framework/pkproject/log_records.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <QDirIterator>
#include <boost/make_shared.hpp>

#include <sys/stat.h>
#include <unistd.h>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;
using pk::project::ConflictError;
using pk::project::IoError;

// Everything below a directory with its bytes.
std::map<std::string, std::string> bytesBelow(const QString& directory)
{
    std::map<std::string, std::string> files;
    QDirIterator it(directory, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files[QDir(directory).relativeFilePath(path).toStdString()] = getLocal(path).toStdString();
    }
    return files;
}

bool holdsSecret(const QString& directory)
{
    const auto files = bytesBelow(directory);
    return std::any_of(files.begin(), files.end(), [](const auto& file) {
        return file.second.find("Secret") != std::string::npos;
    });
}

/// A library on disk beside a directory that must be neither read nor touched.
class HostileLibrary : public testing::Test
{
protected:
    HostileLibrary()
    {
        project({{"A/box.bhx", boxFile()},
                 {"F/B/box.bhx", behaviorBox("Walk")},
                 {"F/B/sound.wav", "sound"}})
            .save(path("L.bxl"), ArchiveFormat::Directory, false);
        putLocal(path("outside/box.bhx"), behaviorBox("Secret"));
        putLocal(path("outside/sound.wav"), "Secret");
        putLocal(path("outside/S/box.bhx"), behaviorBox("Secret"));
        QDir().mkpath(path("exported"));
        m_outside = bytesBelow(path("outside"));
    }
    void TearDown() override { EXPECT_EQ(bytesBelow(path("outside")), m_outside); }

    QString path(const std::string& name) const { return m_directory.path(name); }
    void link(const char* target, const std::string& name) const
    {
        ASSERT_EQ(::symlink(target, path(name).toStdString().c_str()), 0);
    }
    void takeAway(const std::string& name) const
    {
        ASSERT_TRUE(QFile::rename(path(name), path("aside")));
    }
    Library opened() const { return open(ProjectModel(path("L.bxl"))); }

private:
    const TemporaryDirectory m_directory;
    std::map<std::string, std::string> m_outside;
};

TEST_F(HostileLibrary, OpensWithoutWhatIsNoPartOfItAndSaysEachOnce)
{
    link("../outside", "L.bxl/Link");
    link("../../outside/S", "L.bxl/F/S");
    link("../../../outside/sound.wav", "L.bxl/F/B/more.wav");
    link("loop", "L.bxl/F/loop");
    ASSERT_EQ(::mkfifo(path("L.bxl/A/pipe").toStdString().c_str(), 0666), 0);
    const LogRecords log;
    const Library library = opened();
    std::vector<std::string> left;
    for (const auto& record : log.of("pkproject")) {
        left.push_back(q(record.message).mid(path("L.bxl/").size()).toStdString());
    }
    std::sort(left.begin(), left.end());
    const std::string isLink = ": left out of the project, because it is a symbolic link";
    const std::string isSpecial =
        ": left out of the project, because it is neither a file nor a directory";
    EXPECT_EQ(left, (Names{"A/pipe" + isSpecial, "F/B/more.wav" + isLink, "F/S" + isLink,
                           "F/loop" + isLink, "Link" + isLink}));
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "F"}));
    EXPECT_EQ(childNames(*library->node({1})), Names{"B"});
    library->exportBehaviors(path("exported"));
    EXPECT_EQ(bytesBelow(path("exported")).count("F/B/sound.wav"), 1U);
    library->save();
    library->saveTo(path("Other.bxl"), BoxLibrary::Directory);
    library->saveTo(path("Other.kbl"), BoxLibrary::Archive);
    for (const char* const result : {"exported", "L.bxl", "Other.bxl"}) {
        EXPECT_FALSE(holdsSecret(path(result))) << result;
    }
    EXPECT_EQ(filesOf(ProjectModel(path("Other.kbl"))), filesOf(ProjectModel(path("Other.bxl"))));
    EXPECT_TRUE(QFileInfo(path("L.bxl/F/S")).isSymLink());
}

// Of which nobody knows what is in them, as of one that can't be read.
TEST_F(HostileLibrary, LeavesBoxAndOrderFilesThatAreLinksAsTheyAre)
{
    putLocal(path("L.bxl/Box/icon.png"), "icon");
    putLocal(path("L.bxl/Old/icon.png"), "icon");
    link("../../outside/box.bhx", "L.bxl/Box/box.bhx");
    link("../../outside/box.bhx", "L.bxl/Old/behavior.bhx");
    putLocal(path("L.bxl/Own/behavior.bhx"), boxFile());
    link("../../outside/box.bhx", "L.bxl/Own/box.bhx");
    link("../../outside/box.bhx", "L.bxl/F/bxlinfo");
    const Library library = opened();
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"A", "Box", "F", "Old", "Own"}));
    for (const int child : {1, 3, 4}) {
        EXPECT_FALSE(library->node({child})->boxData());
        EXPECT_TRUE(library->node({child})->children().isEmpty());
    }
    EXPECT_EQ(childNames(*library->node({2})), Names{"B"});
    library->node({0})->boxData()->setTooltip(q("edited"));
    EXPECT_THROW(library->node({2})->appendChild("New"), IoError);
    library->node({1})->setName("Named");
    library->save();
    EXPECT_TRUE(QFileInfo(path("L.bxl/F/bxlinfo")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("L.bxl/Named/box.bhx")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("L.bxl/Old/behavior.bhx")).isSymLink());
    EXPECT_FALSE(QFileInfo::exists(path("L.bxl/Named/bxlinfo")));
    EXPECT_FALSE(QFileInfo::exists(path("L.bxl/Old/bxlinfo")));
    EXPECT_EQ(opened()->node({0})->boxData()->tooltip(), q("edited"));
}

// The new box has its own file at the place where the link was or is.
TEST_F(HostileLibrary, KeepsEditsOfNewBoxesWhereLinksWere)
{
    const RootBoxDescription description{"Box", boost::make_shared<XmlElement>("Box")};
    const auto edit = [&](const Library& library) {
        BoxLibraryNode* const box = library->boxRoot()->appendChild(description);
        EXPECT_EQ(box->path(), q("Box"));
        box->boxData()->setTooltip(q("first"));
        box->boxData()->setTooltip(q("second"));
        return box;
    };
    const auto expectEdited = [](const Library& library, const char* name) {
        const BoxLibraryNode* const box = library->boxRoot()->child(name);
        ASSERT_NE(box, nullptr);
        ASSERT_NE(box->boxData(), nullptr);
        EXPECT_EQ(box->boxData()->tooltip(), q("second"));
    };
    putLocal(path("L.bxl/Box/icon.png"), "icon");
    link("../../outside/box.bhx", "L.bxl/Box/box.bhx");
    {
        const Library library = opened();
        library->node({1})->setName("Moved");
        edit(library);
        library->save();
        expectEdited(opened(), "Box");
        library->boxRoot()->child("Box")->setName("Third");
        library->boxRoot()->child("Moved")->setName("Box");
        library->save();
    }
    {
        const Library library = opened();
        library->boxRoot()->removeChild(library->boxRoot()->child("Box")->index());
        edit(library);
        library->save();
        expectEdited(opened(), "Box");
        expectEdited(opened(), "Third");
        library->boxRoot()->removeChild(library->boxRoot()->child("Box")->index());
        library->save();
    }
    link("../outside", "L.bxl/Box");
    const Library library = opened();
    edit(library);
    EXPECT_THROW(library->save(), pk::project::Error);
    library->saveTo(path("Other.bxl"), BoxLibrary::Directory);
    expectEdited(Library(new BoxLibrary(ProjectModel(path("Other.bxl")))), "Box");
    EXPECT_FALSE(holdsSecret(path("L.bxl")) || holdsSecret(path("Other.bxl")));
}

// It has nothing of the kind itself, at whatever depth.
TEST_F(HostileLibrary, ClonesFoldersAndBoxesWhoseFilesAreLinksAsFolders)
{
    putLocal(path("L.bxl/F/Box/icon.png"), "icon");
    link("../../../outside/box.bhx", "L.bxl/F/Box/box.bhx");
    link("../../outside/box.bhx", "L.bxl/F/bxlinfo");
    const Library library = opened();
    const auto boxOf = [](BoxLibraryNode& folder) { return folder.child(1); };
    BoxLibraryNode* const folder =
        library->boxRoot()->insertChild(0, library->node({1})->clone()); // behind A
    ASSERT_EQ(childNames(*folder), (Names{"B", "Box"}));
    ASSERT_EQ(library->node({2})->name(), "F");
    BoxLibraryNode* const box =
        library->boxRoot()->insertChild(0, boxOf(*library->node({2}))->clone());
    for (BoxLibraryNode* const node : {folder, boxOf(*folder), box}) {
        EXPECT_TRUE(library->projectModel().hasFile(node->path() + q("/bxlinfo"))) << node->name();
        EXPECT_NE(node->appendChild("New"), nullptr);
    }
    library->save();
    EXPECT_TRUE(QFileInfo(path("L.bxl/F/Box/box.bhx")).isSymLink());
}

TEST_F(HostileLibrary, OfManyLevelsOpensAndIsSaved)
{
    const QString deep = q("n/").repeated(200);
    putLocal(path("L.bxl") + q("/") + deep + q("box.bhx"), boxFile());
    const Library library = opened();
    BoxLibraryNode* node = library->node({2});
    int levels = 0;
    for (; node != nullptr; node = node->children().value(0)) {
        ++levels;
    }
    EXPECT_EQ(levels, 200);
    library->save();
    EXPECT_TRUE(ProjectModel(path("L.bxl")).hasFile(deep + q("box.bhx")));
}

// Between opening the project and reading its translations.
TEST_F(HostileLibrary, ReadsNoTranslationsFromWhatTookTheFilesPlace)
{
    const std::string file = "L.bxl/translations/translation_fr.ts";
    const auto languagesWith = [&](const std::function<void(const std::string&)>& put) {
        putLocal(path(file), translationFile("fr"));
        ProjectModel model(path("L.bxl"));
        QFile::remove(path(file));
        put(path(file).toStdString());
        const LogRecords log;
        const Library library = open(std::move(model));
        EXPECT_EQ(log.of("BoxLibrary").size(), library->translations().isEmpty() ? 1U : 0U);
        QFile::remove(path(file));
        return QStringList(library->translations().keys());
    };
    putLocal(path("outside/fr.ts"), translationFile("fr"));
    EXPECT_EQ(languagesWith([&](const std::string& at) {
                  ASSERT_EQ(::link(path("outside/fr.ts").toStdString().c_str(), at.c_str()), 0);
              }),
              QStringList{q("fr")});
    EXPECT_EQ(languagesWith([&](const std::string& at) {
                  ASSERT_EQ(::symlink("../../outside/fr.ts", at.c_str()), 0);
              }),
              QStringList());
    EXPECT_EQ(
        languagesWith([&](const std::string& at) { ASSERT_EQ(::mkfifo(at.c_str(), 0666), 0); }),
        QStringList());
    QFile::remove(path("outside/fr.ts"));
}

TEST_F(HostileLibrary, ReadsNoTranslationsFromWhatTookTheirDirectorysPlace)
{
    putLocal(path("L.bxl/translations/translation_fr.ts"), translationFile("fr"));
    putLocal(path("outside/translation_fr.ts"), translationFile("fr"));
    ProjectModel model(path("L.bxl"));
    ASSERT_TRUE(QDir(path("L.bxl/translations")).removeRecursively());
    ASSERT_EQ(::symlink("../outside", path("L.bxl/translations").toStdString().c_str()), 0);
    const LogRecords log;
    EXPECT_TRUE(open(std::move(model))->translations().isEmpty());
    EXPECT_EQ(log.of("BoxLibrary").size(), 1U);
    ASSERT_TRUE(QFile::remove(path("outside/translation_fr.ts")));
}

struct Replaced
{
    const char* name;
    const char* what; ///< in the library
    const char* target;
};

class ReplacedInALibrary : public HostileLibrary, public testing::WithParamInterface<Replaced>
{
protected:
    void replace() const
    {
        takeAway(std::string("L.bxl/") + GetParam().what);
        link(GetParam().target, std::string("L.bxl/") + GetParam().what);
    }
};

TEST_P(ReplacedInALibrary, IsNotFollowedWhenTheLibraryIsSaved)
{
    const Library library = opened();
    replace();
    const auto before = bytesBelow(path("L.bxl"));
    library->node({1, 0})->boxData()->setTooltip(q("edited"));
    library->boxRoot()->appendChild("New");
    EXPECT_THROW(library->save(), ConflictError);
    EXPECT_EQ(bytesBelow(path("L.bxl")), before);
    EXPECT_TRUE(library->isDirty());
}

TEST_P(ReplacedInALibrary, IsNotFollowedWhenBehavioursAreExported)
{
    const Library library = opened();
    replace();
    library->exportBehaviors(path("exported"));
    EXPECT_FALSE(holdsSecret(path("exported")));
    EXPECT_EQ(bytesBelow(path("exported")).count("F/B/sound.wav"), 0U);
}

TEST_P(ReplacedInALibrary, IsNotFollowedWhenTheLibraryIsSavedElsewhere)
{
    const Library library = opened();
    replace();
    for (const auto format : {BoxLibrary::Directory, BoxLibrary::Archive}) {
        EXPECT_THROW(library->saveTo(path("Other.bxl"), format), pk::project::IoError);
        EXPECT_FALSE(QFileInfo::exists(path("Other.bxl")));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, ReplacedInALibrary,
    testing::Values(Replaced{"File", "F/B/sound.wav", "../../../outside/sound.wav"},
                    Replaced{"Box", "F/B", "../../outside"}, Replaced{"Folder", "F", "../outside"}),
    [](const auto& replaced) { return std::string(replaced.param.name); });

TEST(UnreadableFiles, StayAsTheyAreWhenTheLibraryIsSaved)
{
    const pk::project::test::AnotherUser user;
    const TemporaryDirectory directory;
    const QString path = directory.path("L.bxl");
    open(project({{"F/bxlinfo", orderFile({"B", "A"})},
                  {"F/A/box.bhx", boxFile()},
                  {"F/B/box.bhx", boxFile()},
                  {"X/box.bhx", boxFile()},
                  {"X/sounds/s.wav", "sound"},
                  {"Y/box.bhx", boxFile()}}))
        ->saveTo(path, BoxLibrary::Directory);
    const auto before = bytesBelow(path);
    const std::string unreadable[] = {(path + q("/F/bxlinfo")).toStdString(),
                                      (path + q("/X/box.bhx")).toStdString()};
    for (const std::string& file : unreadable) {
        ASSERT_EQ(::chmod(file.c_str(), 0), 0);
    }
    {
        const LogRecords log;
        const Library library = open(ProjectModel(path));
        std::vector<std::string> messages;
        for (const auto& record : log.of("kxboxlibrary")) {
            messages.push_back(record.message);
        }
        EXPECT_EQ(messages, (std::vector<std::string>{unreadable[0] + ": Permission denied",
                                                      unreadable[1] + ": Permission denied"}));
        const BoxLibraryNode& root = *library->boxRoot();
        EXPECT_EQ(childNames(*root.child("F")), (Names{"A", "B"}));
        EXPECT_EQ(childNames(*root.child("X")), Names{});
        EXPECT_FALSE(root.child("X")->boxData());
        // Nothing takes the place of what is not known.
        for (BoxLibraryNode* const node : {root.child("F"), root.child("X")}) {
            const auto children = childNames(*node);
            EXPECT_THROW(node->appendChild("sounds"), pk::project::IoError);
            EXPECT_THROW(node->saveFolder(), pk::project::IoError);
            EXPECT_FALSE(node->save());
            EXPECT_EQ(childNames(*node), children);
        }
        EXPECT_THROW(root.child("F")->removeChild(0), pk::project::IoError);
        EXPECT_THROW(root.child("F")->child(0)->setName("C"), pk::project::IoError);
        EXPECT_EQ(childNames(*root.child("F")), (Names{"A", "B"}));
        EXPECT_TRUE(library->projectModel().hasFile(q("F/A/box.bhx")));
        EXPECT_TRUE(library->boxRoot()->saveAll());
        root.child("Y")->boxData()->setTooltip(q("edited"));
        library->save();
    }
    for (const std::string& file : unreadable) {
        ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    }
    auto after = bytesBelow(path);
    EXPECT_NE(after.at("Y/box.bhx"), before.at("Y/box.bhx"));
    after["Y/box.bhx"] = before.at("Y/box.bhx");
    EXPECT_EQ(after, before);
}

// A copy knows no more than what it is a copy of.
TEST(UnreadableFiles, AreUnknownInACloneToo)
{
    const pk::project::test::AnotherUser user;
    const TemporaryDirectory directory;
    const QString path = directory.path("L.bxl");
    open(project({{"X/box.bhx", boxFile()}}))->saveTo(path, BoxLibrary::Directory);
    const std::string file = (path + q("/X/box.bhx")).toStdString();
    ASSERT_EQ(::chmod(file.c_str(), 0), 0);
    const Library library = open(ProjectModel(path));
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    const std::unique_ptr<BoxLibraryNode, TreeDeleter> copy(library->boxRoot()->child(0)->clone());
    EXPECT_THROW(copy->appendChild("Child"), pk::project::IoError);
    EXPECT_EQ(copy->project()->getFileList({}, true, true, false), QStringList(q("box.bhx")));
}

} // namespace
} // namespace KX::test
