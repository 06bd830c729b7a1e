#include "another_user.hpp"
#include "faulty_disk.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace pk::project::test {

class ADirectorySave : public testing::Test
{
protected:
    QString path() const { return m_directory.path("p"); }
    QString local(const char* name) const { return path() + q("/") + q(name); }
    ProjectModel make(int boxes) const
    {
        ProjectModel model;
        for (int i = 0; i < boxes; ++i) {
            model.writeFile(q("boxes/box") + QString::number(i), "text");
        }
        model.save(path(), ArchiveFormat::Directory, true);
        return model;
    }
    static void saveInPlace(ProjectModel& model)
    {
        model.save(QString(), ArchiveFormat::Source, true);
    }
    // The operations of saving an edit.
    template <class Edit>
    std::vector<std::string> operationsOf(int boxes, Edit edit) const
    {
        ProjectModel model = make(boxes);
        edit(model);
        const FaultyDisk disk;
        saveInPlace(model);
        return disk.log();
    }
    static std::ptrdiff_t syncsIn(const std::vector<std::string>& log)
    {
        return std::count_if(log.begin(), log.end(),
                             [](const std::string& step) { return step.find("sync ") == 0; });
    }

    TemporaryDirectory m_directory;
};

TEST_F(ADirectorySave, InPlaceCostsTheChangesWhateverTheProjectsSize)
{
    const auto edit = [](ProjectModel& model) {
        model.writeFile(q("boxes/box3"), "other");
        model.move(q("boxes/box4"), q("box4"), false);
    };
    const auto small = operationsOf(10, edit);
    EXPECT_LT(small.size(), 40U);
    EXPECT_EQ(small, operationsOf(2000, edit));
}

TEST_F(ADirectorySave, InPlaceSyncsAsOftenAsItMust)
{
    // The new file, and what it is in.
    EXPECT_EQ(syncsIn(operationsOf(
                  10, [](ProjectModel& model) { model.writeFile(q("boxes/box3"), "other"); })),
              2);
    // Two new files, the journal, its directory without and with its name, that directory's name,
    // and what the files are in.
    EXPECT_EQ(syncsIn(operationsOf(10,
                                   [](ProjectModel& model) {
                                       model.writeFile(q("boxes/box3"), "other");
                                       model.writeFile(q("boxes/box4"), "other");
                                   })),
              7);
    // One new file; and a file is collected: both directories that this changes, and the second
    // name of the journal; it is put in another directory; and the journal must be gone for good.
    EXPECT_EQ(syncsIn(operationsOf(10,
                                   [](ProjectModel& model) {
                                       model.writeFile(q("boxes/box3"), "other");
                                       model.move(q("boxes/box4"), q("box4"), false);
                                   })),
              11);
    // A journal that makes a directory must be gone for good.
    EXPECT_EQ(syncsIn(operationsOf(
                  10, [](ProjectModel& model) { model.writeFile(q("new/box"), "other"); })),
              8);
}

TEST_F(ADirectorySave, InPlaceTouchesOnlyWhatChanged)
{
    ProjectModel model = make(10);
    const auto other = stampOf(local("boxes/box5"));
    const auto same = stampOf(local("boxes/box1"));
    const auto changed = stampOf(local("boxes/box2"));
    model.writeFile(q("boxes/box1"), "text");
    model.writeFile(q("boxes/box2"), "other");
    saveInPlace(model);
    EXPECT_EQ(stampOf(local("boxes/box5")), other);
    EXPECT_EQ(stampOf(local("boxes/box1")), same);
    EXPECT_NE(stampOf(local("boxes/box2")), changed);
}

TEST_F(ADirectorySave, InPlaceKeepsAFileThatWasRemovedAndWrittenAgain)
{
    ProjectModel model = make(10);
    const auto before = stampOf(local("boxes/box1"));
    model.remove(q("boxes/box1"));
    model.writeFile(q("boxes/box1"), "text");
    saveInPlace(model);
    EXPECT_EQ(stampOf(local("boxes/box1")), before);
    model.remove(q("boxes"));
    for (int i = 0; i < 10; ++i) {
        model.writeFile(q("boxes/box") + QString::number(i), i == 7 ? "other" : "text");
    }
    const auto directory = statOf(local("boxes").toStdString())->st_ino;
    const auto rewritten = stampOf(local("boxes/box7"));
    saveInPlace(model);
    EXPECT_EQ(stampOf(local("boxes/box1")), before);
    EXPECT_EQ(statOf(local("boxes").toStdString())->st_ino, directory);
    EXPECT_NE(stampOf(local("boxes/box7")), rewritten);
    model.remove(QString());
    for (int i = 0; i < 10; ++i) {
        model.writeFile(q("boxes/box") + QString::number(i), i == 7 ? "other" : "text");
    }
    saveInPlace(model);
    EXPECT_EQ(stampOf(local("boxes/box1")), before);
}

TEST_F(ADirectorySave, InPlaceMovesInsteadOfRewriting)
{
    ProjectModel model = make(10);
    const auto before = stampOf(local("boxes/box1"));
    model.move(q("boxes"), q("there/boxes"), false);
    const FaultyDisk disk;
    saveInPlace(model);
    EXPECT_EQ(stampOf(local("there/boxes/box1")), before);
    const auto created = std::count_if(disk.log().begin(), disk.log().end(),
                                       [](const auto& step) { return step.find("create ") == 0; });
    EXPECT_EQ(created, 1) << "the journal alone";
}

TEST_F(ADirectorySave, WithoutChangesDoesNothing)
{
    ProjectModel model = make(3);
    const FaultyDisk disk;
    saveInPlace(model);
    EXPECT_EQ(disk.count(), 0);
}

TEST_F(ADirectorySave, KeepsModes)
{
    ProjectModel model = make(3);
    ASSERT_EQ(::chmod(local("boxes/box1").toStdString().c_str(), 0750), 0);
    ASSERT_EQ(::chmod(local("boxes").toStdString().c_str(), 0710), 0);
    model = ProjectModel(path());
    model.writeFile(q("boxes/box1"), "other");
    model.importFile(model, q("boxes"), q("copy"), true);
    saveInPlace(model);
    Tree tree = treeOf(path());
    EXPECT_EQ(tree["boxes/box1"], std::to_string(0750) + ":other");
    EXPECT_EQ(tree["copy/box1"], std::to_string(0750) + ":other");
    EXPECT_EQ(tree["copy/"], std::to_string(0710));
    model.save(m_directory.path("new"), ArchiveFormat::Directory, true);
    EXPECT_EQ(treeOf(m_directory.path("new")), tree);
}

TEST_F(ADirectorySave, AnewIsSyncedThenRenamedThenSyncedAgain)
{
    ProjectModel model = make(2);
    model.setMetadata(q("k"), q("v"));
    const FaultyDisk disk;
    model.save(m_directory.path("new"), ArchiveFormat::Directory, true);
    const std::string fresh = m_directory.path(".new.kxnew").toStdString();
    const std::string target = m_directory.path("new").toStdString();
    const auto& log = disk.log();
    ASSERT_GE(log.size(), 4U);
    EXPECT_EQ(log.front(), "mkdir " + fresh);
    EXPECT_EQ((std::vector<std::string>(log.end() - 3, log.end())),
              (std::vector<std::string>{"syncfs " + fresh, "renameNew " + fresh + " " + target,
                                        "sync " + m_directory.path().toStdString()}));
    for (const std::string& step : log) {
        EXPECT_EQ(step.find(path().toStdString() + "/"), std::string::npos) << step;
    }
}

TEST_F(ADirectorySave, AnewOverADirectoryReplacesItWhole)
{
    putLocal(m_directory.path("new/old"), "old");
    ProjectModel model = make(1);
    model.save(m_directory.path("new"), ArchiveFormat::Directory, true);
    EXPECT_EQ(treeOf(m_directory.path("new")), treeOf(path()));
    EXPECT_EQ(leftBeside(path()), QStringList());
}

TEST_F(ADirectorySave, OverALinkSavesWhereItPoints)
{
    ASSERT_EQ(::symlink("p", m_directory.path("link").toStdString().c_str()), 0);
    make(1);
    ProjectModel model(m_directory.path("link"));
    model.writeFile(q("a"), "1");
    saveInPlace(model);
    EXPECT_TRUE(QFileInfo(m_directory.path("link")).isSymLink());
    EXPECT_EQ(getLocal(local("a")), QByteArray("1"));
}

TEST_F(ADirectorySave, MeetsALinkInTheWayOfANewDirectory)
{
    ProjectModel model = make(1);
    putLocal(m_directory.path("outside/keep"), "1");
    ASSERT_EQ(::symlink("../outside", local("new").toStdString().c_str()), 0);
    model.writeFile(q("new/a"), "1");
    EXPECT_NE(messageOf<AlreadyExists>([&] { saveInPlace(model); }).find("'new'"),
              std::string::npos);
    EXPECT_EQ(treeOf(m_directory.path("outside")).size(), 1U);
    EXPECT_TRUE(QFileInfo(local("new")).isSymLink());
    EXPECT_EQ(leftBeside(path()), QStringList());
    model.move(q("new"), q("other"), false);
    saveInPlace(model);
    EXPECT_EQ(getLocal(local("other/a")), QByteArray("1"));
    EXPECT_TRUE(QFileInfo(local("new")).isSymLink());
}

TEST_F(ADirectorySave, LeavesAFileThatWasRemovedByOthersOutOfACopyElsewhere)
{
    ProjectModel model = make(2);
    ASSERT_TRUE(QFile::remove(local("boxes/box0")));
    model.writeFile(q("a"), "1");
    EXPECT_THROW(saveInPlace(model), ConflictError);
    model.save(m_directory.path("new"), ArchiveFormat::Directory, true);
    EXPECT_EQ(treeOf(model), (Tree{{"a", "1"}, {"boxes/", ""}, {"boxes/box1", "text"}}));
    EXPECT_EQ(treeOf(model), treeOf(ProjectModel(m_directory.path("new"))));
}

TEST_F(ADirectorySave, NamesAFolderThatItMayNotMove)
{
    const AnotherUser user; // whom modes concern
    const TemporaryDirectory directory;
    const QString place = directory.path("p");
    const std::string folder = (place + q("/d")).toStdString();
    ProjectModel first;
    first.writeFile(q("d/f"), "f");
    first.save(place, ArchiveFormat::Directory, true);
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
    ProjectModel model(place);
    model.move(q("d"), q("e"), false);
    EXPECT_NE(messageOf<IoError>([&] { saveInPlace(model); }).find(folder + ", to become "),
              std::string::npos);
    EXPECT_EQ(treeOf(ProjectModel(place)), treeOf(first));
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    saveInPlace(model);
    EXPECT_EQ(treeOf(ProjectModel(place)), (Tree{{"e/", ""}, {"e/f", "f"}}));
}

TEST_F(ADirectorySave, SyncsTheFileSystemOnceForManyFiles)
{
    ProjectModel model = make(1);
    for (int i = 0; i < 100; ++i) {
        model.writeFile(q("boxes/new") + QString::number(i), "1");
    }
    const FaultyDisk disk;
    saveInPlace(model);
    const auto syncs = std::count_if(disk.log().begin(), disk.log().end(),
                                     [](const auto& step) { return step.find("sync") == 0; });
    EXPECT_LT(syncs, 10);
    EXPECT_EQ(treeOf(ProjectModel(path())), treeOf(model));
}

} // namespace pk::project::test
