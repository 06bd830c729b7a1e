#include "faulty_disk.hpp"
#include "lock.hpp"
#include "place.hpp"
#include "support.hpp"

#include <pk/project/project.hpp>

#include <unistd.h>

namespace pk::project::test {

class AProject : public testing::Test
{
protected:
    AProject() { QDir(m_directory.path()).mkdir(q("project")); }
    QString path() const { return m_directory.path("project"); }
    Project project() const { return Project(path().toStdString()); }

    TemporaryDirectory m_directory;
};

TEST_F(AProject, HasTheMetadataThatAModelHas)
{
    project().setMetadata("key", "value");
    EXPECT_EQ(project().getMetadata("key"), "value");
    EXPECT_EQ(project().getMetadata("other"), "");
    ProjectModel model(path());
    EXPECT_EQ(model.getMetadata(q("key")), q("value"));
    EXPECT_EQ(model.getFileList(QString(), true, true, false), QStringList());
    model.setMetadata(q("other"), q("more"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(project().getMetadata("other"), "more");
    EXPECT_EQ(project().getMetadata("key"), "value");
}

TEST_F(AProject, WithoutValuesHasNoFile)
{
    Project project = this->project();
    project.setMetadata("a", "1");
    EXPECT_TRUE(QFileInfo::exists(path() + q("/.kxproject")));
    project.setMetadata("a", "");
    EXPECT_TRUE(treeOf(path()).empty());
}

TEST_F(AProject, WritesNothingWhenNothingChanges)
{
    Project project = this->project();
    project.setMetadata("a", "1");
    const auto stamp = stampOf(path() + q("/.kxproject"));
    project.setMetadata("a", "1");
    EXPECT_EQ(stampOf(path() + q("/.kxproject")), stamp);
}

TEST_F(AProject, KeepsTheModeOfTheFile)
{
    Project project = this->project();
    project.setMetadata("a", "1");
    ASSERT_EQ(::chmod((path() + q("/.kxproject")).toStdString().c_str(), 0640), 0);
    project.setMetadata("a", "2");
    EXPECT_EQ(treeOf(path())[".kxproject"].substr(0, 4), std::to_string(0640) + ":");
}

TEST_F(AProject, ThatIsNoDirectoryIsNotFound)
{
    putLocal(m_directory.path("file"), "1");
    const std::string missing = m_directory.path("missing").toStdString();
    EXPECT_NE(messageOf<PathNotFound>([&] { const Project opened(missing); }).find(missing),
              std::string::npos);
    EXPECT_THROW(Project(m_directory.path("file").toStdString()), PathNotFound);
    EXPECT_THROW(Project(""), PathNotFound);
}

TEST_F(AProject, SetsMetadataAllOrNothing)
{
    for (const int error : {EIO, ENOSPC, EACCES}) {
        for (int number = 0;; ++number) {
            Project project = this->project();
            project.setMetadata("a", "1");
            FaultyDisk disk;
            disk.failAt(number, error, false);
            try {
                project.setMetadata("a", "2");
                EXPECT_EQ(project.getMetadata("a"), "2");
            } catch (const IoError& failure) {
                EXPECT_NE(std::string(failure.what()).find(m_directory.path().toStdString()),
                          std::string::npos);
                const std::string value = project.getMetadata("a");
                EXPECT_TRUE(value == "1" || value == "2");
            }
            EXPECT_EQ(leftBeside(path()), QStringList());
            if (disk.count() <= number) {
                break;
            }
        }
    }
}

TEST_F(AProject, SyncsTheMetadataBeforeAndAfterTheRename)
{
    Project project = this->project();
    FaultyDisk disk;
    project.setMetadata("a", "1");
    const std::string place = path().toStdString();
    const std::string fresh = m_directory.path(".project.kxnew").toStdString();
    EXPECT_EQ(disk.log(), (std::vector<std::string>{
                              "create " + fresh, "write " + fresh, "sync " + fresh,
                              "rename " + fresh + " " + place + "/.kxproject", "sync " + place}));
}

TEST_F(AProject, GetsSeveralValuesWithOneWrite)
{
    Project project = this->project();
    project.setMetadata("c", "1");
    FaultyDisk disk;
    project.setMetadata({{"a", "1"}, {"b", "2"}, {"c", ""}}, Durability::Disk);
    EXPECT_EQ(disk.count(), 5);
    EXPECT_EQ(getLocal(path() + q("/.kxproject")), "{\n    \"a\": \"1\",\n    \"b\": \"2\"\n}\n");
}

TEST_F(AProject, WaitsForNoDiskWhereItNeedNot)
{
    Project project = this->project();
    const std::string place = path().toStdString();
    const std::string fresh = m_directory.path(".project.kxnew").toStdString();
    FaultyDisk disk;
    project.setMetadata({{"a", "1"}}, Durability::System);
    EXPECT_EQ(disk.log(),
              (std::vector<std::string>{"create " + fresh, "write " + fresh,
                                        "rename " + fresh + " " + place + "/.kxproject"}));
    EXPECT_EQ(project.getMetadata("a"), "1");
    EXPECT_EQ(leftBeside(path()), QStringList());
}

TEST_F(AProject, IsOpenedBesideWhoeverSavesItUnlessThereIsASaveToComplete)
{
    const Lock lock = Lock::take(Place::of(path().toStdString()));
    EXPECT_EQ(project().getMetadata("a"), "");
    EXPECT_TRUE(QFileInfo::exists(m_directory.path(".project.kxlock")));
}

TEST_F(AProject, CompletesAnInterruptedSave)
{
    ProjectModel model;
    model.setMetadata(q("name"), q("old"));
    model.save(path(), ArchiveFormat::Directory, true);
    model.setMetadata(q("name"), q("new"));
    model.writeFile(q("file"), "new"); // so that the save needs a journal
    {
        FaultyDisk disk;
        int number = 0;
        do {
            disk.heal();
            disk.failAt(disk.count() + ++number, EIO, true);
            EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), IoError);
        } while (!QFileInfo::exists(m_directory.path(".project.kxjournal/put")) && number < 100);
    }
    EXPECT_EQ(project().getMetadata("name"), "new");
    EXPECT_EQ(leftBeside(path()), QStringList());
}

TEST_F(AProject, DoesNotFollowALinkInTheMetadatasPlace)
{
    putLocal(m_directory.path("victim"), R"({"a": "secret"})");
    ASSERT_EQ(::symlink("../victim", (path() + q("/.kxproject")).toStdString().c_str()), 0);
    EXPECT_THROW(project().getMetadata("a"), IoError);
}

TEST(Remove, DeletesAFileOrADirectoryWithItsContents)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("file"), "1");
    putLocal(directory.path("tree/a/b"), "1");
    putLocal(directory.path("kept/a"), "1");
    ASSERT_EQ(::symlink("kept", directory.path("link").toStdString().c_str()), 0);
    remove(directory.path("file"));
    remove(directory.path("tree/"));
    remove(directory.path("link"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList(q("kept")));
    EXPECT_EQ(getLocal(directory.path("kept/a")), QByteArray("1"));
}

TEST(Remove, OfNothingIsAnErrorWithThePath)
{
    const TemporaryDirectory directory;
    const QString missing = directory.path("missing");
    EXPECT_NE(messageOf<PathNotFound>([&] { remove(missing); }).find(missing.toStdString()),
              std::string::npos);
    EXPECT_THROW(remove(QString()), PathNotFound);
}

TEST(Remove, ReportsWhatTheSystemRefuses)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("file"), "1");
    FaultyDisk disk;
    disk.failAt(0, EACCES, false);
    EXPECT_EQ(messageOf<IoError>([&] { remove(directory.path("file")); }),
              directory.path("file").toStdString() + ": Permission denied");
}

} // namespace pk::project::test
