#include "another_user.hpp"
#include "faulty_disk.hpp"
#include "small_disk.hpp"

#include <pk/project/error.hpp>

#include <functional>
#include <ostream>
#include <sys/stat.h>
#include <vector>

// Disks that are full or read-only when a project is edited and saved.
namespace pk::project::test {

namespace {

constexpr const char* a_notHere = "nobody may mount a file system here";

struct Kind
{
    const char* name;
    Form source;
    Form target;
    bool inPlace;
};

std::ostream& operator<<(std::ostream& stream, const Kind& kind)
{
    return stream << kind.name;
}

ProjectModel makeProject()
{
    ProjectModel model;
    for (unsigned i = 0; i < 6; ++i) {
        model.writeFile(q("old/") + QString::number(i), noise(i, 5000));
    }
    model.setMetadata(q("title"), q("old"));
    return model;
}

void edit(ProjectModel& model)
{
    for (unsigned i = 0; i < 6; ++i) {
        model.writeFile(q("new/") + QString::number(i), noise(10 + i, 5000));
    }
    model.writeFile(q("old/1"), "changed");
    model.remove(q("old/2"));
    model.move(q("old/3"), q("moved"), false);
    model.setMetadata(q("title"), q("new"));
}

void expectRefused(ProjectModel& model, const QString& target, Form form, const char* reason)
{
    const std::string message =
        messageOf<IoError>([&] { model.save(target, formatOf(form), true); });
    EXPECT_EQ(message.find(target.toStdString() + ": it can't be saved: "), 0U) << message;
    EXPECT_NE(message.find(reason), std::string::npos) << message;
}

} // namespace

class SaveToASmallDisk : public testing::TestWithParam<Kind>
{
protected:
    QString source(const SmallDisk& disk) const
    {
        return GetParam().inPlace ? disk.path("project/p") : m_elsewhere.path("p");
    }
    static QString target(const SmallDisk& disk) { return disk.path("project/p"); }
    ProjectModel makeEdited(const SmallDisk& disk) const
    {
        QDir().mkpath(disk.path("project"));
        makeProject().save(source(disk), formatOf(GetParam().source), false);
        ProjectModel model(source(disk));
        edit(model);
        return model;
    }

    const TemporaryDirectory m_elsewhere;
};

TEST_P(SaveToASmallDisk, ThatGetsFullLeavesOldProjectAndEditsUntilThereIsRoom)
{
    const bool mounted = SmallDisk::with([&](SmallDisk& disk) {
        ProjectModel model = makeEdited(disk);
        const Tree edited = treeOf(model);
        const Tree before = treeOf(disk.path("project"));
        constexpr std::size_t page = 4096;
        int failures = 0;
        for (std::size_t free = 0; free <= 8 * page; free += page, ++failures) {
            SCOPED_TRACE(std::to_string(free) + " bytes are free");
            disk.fillTo(free);
            expectRefused(model, target(disk), GetParam().target, "No space left on device");
            EXPECT_EQ(treeOf(disk.path("project")), before);
            EXPECT_EQ(treeOf(model), edited);
            EXPECT_EQ(model.getMetadata(q("title")), q("new"));
        }
        disk.makeRoom();
        model.save(target(disk), formatOf(GetParam().target), true);
        const ProjectModel saved(target(disk));
        EXPECT_EQ(treeOf(saved), edited);
        EXPECT_EQ(saved.getMetadata(q("title")), q("new"));
        EXPECT_EQ(leftBeside(target(disk)), QStringList());
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

TEST_P(SaveToASmallDisk, ThatIsReadOnlyLeavesOldProjectAndEdits)
{
    const bool mounted = SmallDisk::with([&](SmallDisk& disk) {
        ProjectModel model = makeEdited(disk);
        const Tree edited = treeOf(model);
        const Tree before = treeOf(disk.path("project"));
        disk.setReadOnly(true);
        expectRefused(model, target(disk), GetParam().target, "Read-only file system");
        EXPECT_EQ(treeOf(disk.path("project")), before);
        EXPECT_EQ(treeOf(model), edited);
        if (GetParam().inPlace) {
            EXPECT_EQ(ProjectModel(source(disk)).readFile(q("old/2")), noise(2, 5000));
        }
        EXPECT_THROW(model.exportFile(q("old"), disk.path("exported"), true), IoError);
        disk.setReadOnly(false);
        model.save(target(disk), formatOf(GetParam().target), true);
        EXPECT_EQ(treeOf(ProjectModel(target(disk))), edited);
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, SaveToASmallDisk,
    testing::Values(Kind{"DirectoryInPlace", Form::Directory, Form::Directory, true},
                    Kind{"NewDirectory", Form::Directory, Form::Directory, false},
                    Kind{"ArchiveInPlace", Form::Archive, Form::Archive, true},
                    Kind{"NewArchive", Form::Archive, Form::Archive, false},
                    Kind{"DirectoryToArchive", Form::Directory, Form::Archive, false},
                    Kind{"DirectoryBecomesArchive", Form::Directory, Form::Archive, true},
                    Kind{"ArchiveBecomesDirectory", Form::Archive, Form::Directory, true}),
    [](const auto& kind) { return std::string(kind.param.name); });

TEST(EditsWithoutRoom, AreRefusedAndThoseBeforeAreSavedElsewhere)
{
    const TemporaryDirectory elsewhere;
    const bool mounted = SmallDisk::with([&](SmallDisk& disk) {
        qputenv("TMPDIR", disk.path("").toUtf8());
        makeProject().save(elsewhere.path("p"), ArchiveFormat::Directory, false);
        ProjectModel model(elsewhere.path("p"));
        edit(model);
        const Tree edited = treeOf(model);
        disk.fillTo(0);
        for (const auto& attempt :
             {std::function<void()>([&] { model.writeFile(q("old/4"), noise(1, 50'000)); }),
              std::function<void()>([&] { model.writeFile(q("much"), noise(1, 50'000)); }),
              std::function<void()>([&] {
                  ProjectModel other(elsewhere.path("p"));
                  model.importFile(other, q("old"), q("copy"), true);
              })}) {
            const std::string message = messageOf<IoError>(attempt);
            EXPECT_NE(message.find("/kxproject-"), std::string::npos) << message;
            EXPECT_NE(message.find("No space left on device"), std::string::npos) << message;
            EXPECT_EQ(treeOf(model), edited);
        }
        EXPECT_EQ(model.fopen(q("old/4"), q("ab")), nullptr) << "its bytes can't be copied";
        EXPECT_EQ(treeOf(model), edited);
        model.save(elsewhere.path("saved"), ArchiveFormat::Directory, false);
        EXPECT_EQ(treeOf(ProjectModel(elsewhere.path("saved"))), edited);
        disk.makeRoom();
        model.writeFile(q("much"), noise(1, 50'000));
        EXPECT_EQ(model.readFile(q("much")), noise(1, 50'000));
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

TEST(EditsWithoutRoom, ThroughStreamsAreReportedWhenTheyAreFlushedOrClosed)
{
    const TemporaryDirectory elsewhere;
    const bool mounted = SmallDisk::with([&](SmallDisk& disk) {
        qputenv("TMPDIR", disk.path("").toUtf8());
        ProjectModel model;
        model.writeFile(q("a"), "kept");
        FILE* const flushed = model.fopen(q("flushed"), q("wb"));
        FILE* const closed = model.fopen(q("closed"), q("wb"));
        ASSERT_NE(flushed, nullptr);
        ASSERT_NE(closed, nullptr);
        disk.fillTo(0);
        EXPECT_GE(std::fputs("bytes", flushed), 0);
        EXPECT_GE(std::fputs("bytes", closed), 0);
        EXPECT_EQ(std::fflush(flushed), EOF);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(std::fclose(closed), EOF);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(model.readFile(q("a")), QByteArray("kept"));
        disk.makeRoom();
        static_cast<void>(std::fclose(flushed));
        putThroughStream(model, "closed", "bytes");
        model.save(elsewhere.path("p"), ArchiveFormat::Directory, false);
        EXPECT_EQ(treeOf(ProjectModel(elsewhere.path("p"))),
                  (Tree{{"a", "kept"}, {"closed", "bytes"}, {"flushed", ""}}));
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

TEST(EditsWithoutRoom, OfAnArchiveWhoseFilesCanNotBeUnpackedLeaveItWhole)
{
    const TemporaryDirectory elsewhere;
    const bool mounted = SmallDisk::with([&](SmallDisk& disk) {
        qputenv("TMPDIR", disk.path("").toUtf8());
        makeProject().save(elsewhere.path("p"), ArchiveFormat::Zip, false);
        ProjectModel model(elsewhere.path("p"));
        model.writeFile(q("mine"), "mine");
        disk.fillTo(0);
        EXPECT_EQ(model.readFile(q("old/1")), noise(1, 5000)); // needs no room
        EXPECT_EQ(model.fopen(q("old/1"), q("rb")), nullptr);
        EXPECT_NE(messageOf<IoError>([&] {
                      model.getFileLocalPath(q("old/1"));
                  }).find("No space left on device"),
                  std::string::npos);
        model.save(QString(), ArchiveFormat::Source, true);
        disk.makeRoom();
        const ProjectModel saved(elsewhere.path("p"));
        EXPECT_EQ(saved.readFile(q("old/1")), noise(1, 5000));
        EXPECT_EQ(saved.readFile(q("mine")), QByteArray("mine"));
        EXPECT_EQ(model.readFile(q("old/1")), noise(1, 5000));
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

TEST(EditsWithoutRoom, AreRefusedWhereTheirPlaceIsReadOnly)
{
    const bool mounted = SmallDisk::with([](SmallDisk& disk) {
        qputenv("TMPDIR", disk.path("").toUtf8());
        ProjectModel model;
        disk.setReadOnly(true);
        const std::string message = messageOf<IoError>([&] { model.writeFile(q("a"), "1"); });
        EXPECT_NE(message.find("/kxproject-"), std::string::npos) << message;
        EXPECT_NE(message.find("Read-only file system"), std::string::npos) << message;
        EXPECT_EQ(model.fopen(q("a"), q("wb")), nullptr);
        EXPECT_EQ(treeOf(model), Tree());
        disk.setReadOnly(false);
        model.writeFile(q("a"), "1");
        EXPECT_EQ(model.readFile(q("a")), QByteArray("1"));
    });
    if (!mounted) {
        GTEST_SKIP() << a_notHere;
    }
}

// Where no disk can be mounted for it, the same through the seam.
TEST(EditsWithoutRoom, AreRefusedWhicheverOperationFails)
{
    const TemporaryDirectory directory;
    makeProject().save(directory.path("p.zip"), ArchiveFormat::Zip, false);
    const ProjectModel other(directory.path("p.zip"));
    ProjectModel model = makeProject();
    edit(model);
    const Tree edited = treeOf(model);
    const std::vector<std::function<void()>> attempts = {
        [&] { model.writeFile(q("old/4"), "more"); },
        [&] { model.writeFile(q("new/one"), "more"); },
        [&] { model.importFile(other, q("old"), q("copy"), true); },
        [&] { static_cast<void>(other.getFileLocalPath(q("old/1"))); },
    };
    for (const auto& attempt : attempts) {
        FaultyDisk disk;
        disk.failAt(0, ENOSPC, true);
        const std::string message = messageOf<IoError>(attempt);
        EXPECT_NE(message.find("/kxproject-"), std::string::npos) << message;
        EXPECT_NE(message.find("No space left on device"), std::string::npos) << message;
        EXPECT_EQ(treeOf(model), edited);
    }
    model.save(directory.path("saved"), ArchiveFormat::Directory, false);
    EXPECT_EQ(treeOf(ProjectModel(directory.path("saved"))), edited);
    EXPECT_EQ(other.readFile(q("old/1")), noise(1, 5000));
}

class ADirectoryWithoutPermission : public testing::TestWithParam<const char*>
{
};

TEST_P(ADirectoryWithoutPermission, IsLeftAsItIsAndSavedWhenPermitted)
{
    const AnotherUser user;
    const TemporaryDirectory directory;
    const QString path = directory.path("p");
    makeProject().save(path, ArchiveFormat::Directory, false);
    const std::string closed = (path + q(GetParam())).toStdString();
    ASSERT_EQ(::chmod(closed.c_str(), 0555), 0);
    const Tree before = treeOf(directory.path());
    ProjectModel model(path);
    edit(model);
    const Tree edited = treeOf(model);
    expectRefused(model, path, Form::Directory, "Permission denied");
    EXPECT_EQ(treeOf(directory.path()), before);
    EXPECT_EQ(treeOf(model), edited);
    ASSERT_EQ(::chmod(closed.c_str(), 0755), 0);
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(treeOf(ProjectModel(path)), edited);
}

INSTANTIATE_TEST_SUITE_P(Places, ADirectoryWithoutPermission, testing::Values("", "/old"));

} // namespace pk::project::test
