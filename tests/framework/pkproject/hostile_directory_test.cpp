#include "another_user.hpp"
#include "everything_project.hpp"
#include "log_records.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>
#include <pk/project/project.hpp>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <ostream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

// Directories that hold what no project should: it is left out, said once, and never followed.
namespace pk::project::test {

namespace {

using Scratch = EverythingProject::Scratch;
using Messages = std::vector<std::string>;

// Makes a socket, by a path that is short enough for one.
void makeSocket(const std::string& path)
{
    const Fd directory = openPath(path.substr(0, path.rfind('/')), O_PATH | O_DIRECTORY);
    const std::string name =
        "/proc/self/fd/" + std::to_string(directory.get()) + path.substr(path.rfind('/'));
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    name.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    const Fd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), path);
    ASSERT_EQ(
        ::bind(socket.get(), reinterpret_cast<const struct sockaddr*>(&address), sizeof address),
        0);
}

// A directory with files that its owner can't read any more.
void makeClosed(const std::string& path, mode_t mode)
{
    putLocal(q(path) + q("/inner/f"), "f");
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
}

// Makes directories in each other, however long their path gets. Gives the innermost.
Fd makeDeep(const std::string& path, const std::string& name, int levels)
{
    EXPECT_EQ(::mkdir(path.c_str(), 0755), 0);
    Fd at = openPath(path, O_RDONLY | O_DIRECTORY);
    for (int level = 1; level < levels; ++level) {
        EXPECT_EQ(::mkdirat(at.get(), name.c_str(), 0755), 0);
        at = Fd(::openat(at.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), name);
    }
    return at;
}

// A project "p" beside what must not be touched, "outside".
class HostileDirectory : public testing::Test
{
protected:
    explicit HostileDirectory(bool asAnotherUser = true)
    {
        if (asAnotherUser) {
            m_user.emplace();
        }
        m_directory.emplace();
        putLocal(local("p/a"), "a");
        putLocal(local("p/d/b"), "b");
        putLocal(local("p/d/e/c"), "c");
        putLocal(local("outside/secret"), "secret");
        putLocal(local("outside/tree/b"), "secret b");
        putLocal(local("outside/tree/e/c"), "secret c");
        m_outside = treeOf(local("outside"));
    }
    void TearDown() override { EXPECT_EQ(treeOf(local("outside")), m_outside); }

    QString local(const std::string& name) const { return m_directory->path(name); }
    std::string path(const std::string& name) const { return local(name).toStdString(); }
    void link(const std::string& target, const std::string& at) const
    {
        ASSERT_EQ(::symlink(target.c_str(), path(at).c_str()), 0);
    }
    static void saveInPlace(ProjectModel& model)
    {
        model.save(QString(), ArchiveFormat::Source, true);
    }

private:
    std::optional<AnotherUser> m_user;
    std::optional<Scratch> m_directory;
    Tree m_outside;
};

class AnyDirectory : public HostileDirectory
{
};

const Tree a_rest = {{"a", "a"}, {"d/", ""}, {"d/b", "b"}, {"d/e/", ""}, {"d/e/c", "c"}};

struct Oddity
{
    const char* name;
    std::function<void(const std::string& path)> make;
    const char* reason;
    const char* called = "odd";
    bool needsRoot = false;
};

std::ostream& operator<<(std::ostream& stream, const Oddity& oddity)
{
    return stream << oddity.name;
}

std::function<void(const std::string&)> linkTo(const char* target)
{
    return [target](const std::string& path) { ASSERT_EQ(::symlink(target, path.c_str()), 0); };
}

} // namespace

class OddThing : public HostileDirectory, public testing::WithParamInterface<Oddity>
{
protected:
    OddThing() : HostileDirectory(!GetParam().needsRoot) {}
    void SetUp() override
    {
        if (GetParam().needsRoot && ::geteuid() != 0) {
            GTEST_SKIP() << "only root can make one";
        }
        GetParam().make(path("p/d/odd"));
    }
    // The thing's inode, at a path.
    ino_t thing(const std::string& at) const
    {
        // By the directory's names, which need not be UTF-8.
        for (const std::string& name : namesIn(openPath(path(at), O_RDONLY | O_DIRECTORY))) {
            if (name != "b" && name != "e") {
                return statOf(path(at) + "/" + name)->st_ino;
            }
        }
        return 0;
    }
};

TEST_P(OddThing, IsLeftOutAndSaidOnceAndStaysWhereItIs)
{
    if (thing("p/d") == 0) {
        GTEST_SKIP() << "it can't be made here";
    }
    const ino_t odd = thing("p/d");
    const LogRecords log;
    ProjectModel model(local("p"));
    const Messages expected{path("p/d/") + GetParam().called +
                            ": left out of the project, because " + GetParam().reason};
    EXPECT_EQ(log.messages(), expected);
    EXPECT_EQ(treeOf(model), a_rest);
    EXPECT_EQ(model.isLeftOut(q("d/odd")), GetParam().called == std::string("odd"));
    EXPECT_TRUE(model.hasLeftOut(q("d")));
    model.writeFile(q("d/b"), "changed");
    model.writeFile(q("d/new"), "new");
    saveInPlace(model);
    model.remove(q("d/new"));
    saveInPlace(model);
    EXPECT_EQ(thing("p/d"), odd);
    model.move(q("d"), q("moved"), false);
    saveInPlace(model);
    EXPECT_EQ(thing("p/moved"), odd);
    EXPECT_EQ(log.messages(), expected);
}

TEST_P(OddThing, DoesNotComeAlong)
{
    ProjectModel model(local("p"));
    const LogRecords log;
    model.exportFile(QString(), local("exported"), true);
    EXPECT_EQ(treeOf(ProjectModel(local("exported"))), a_rest);
    ProjectModel other;
    other.importFile(model, QString(), QString(), true);
    EXPECT_EQ(treeOf(other), a_rest);
    model.save(local("directory"), ArchiveFormat::Directory, false);
    EXPECT_EQ(treeOf(ProjectModel(local("directory"))), a_rest);
    ProjectModel again(local("directory"));
    model.save(local("archive"), ArchiveFormat::Zip, false);
    EXPECT_EQ(treeOf(ProjectModel(local("archive"))), a_rest);
    EXPECT_EQ(log.messages(), Messages());
}

// Only what somebody knows is gone may count as that.
TEST_F(AnyDirectory, TellsWhatItLeftOutFromWhatIsGone)
{
    link("b", "p/d/link");
    link("nowhere", "p/dangling");
    ProjectModel model(local("p"));
    for (const char* const name : {"d/link", "d/link/c", "d/link/none/x", "dangling"}) {
        EXPECT_TRUE(model.isLeftOut(q(name))) << name;
        EXPECT_TRUE(model.hasLeftOut(q(name))) << name;
    }
    for (const char* const name :
         {"", "d", "d/b", "d/e", "d/lin", "d/link2", "none", "none/d/link"}) {
        EXPECT_FALSE(model.isLeftOut(q(name))) << name;
    }
    for (const char* const name : {"", "d"}) {
        EXPECT_TRUE(model.hasLeftOut(q(name))) << name;
    }
    for (const char* const name : {"d/e", "d/l", "dang", "none"}) {
        EXPECT_FALSE(model.hasLeftOut(q(name))) << name;
    }
    model.writeFile(q("d/b"), "changed");
    saveInPlace(model);
    EXPECT_TRUE(model.isLeftOut(q("d/link")));
    model.save(local("archive"), ArchiveFormat::Zip, false);
    EXPECT_FALSE(model.isLeftOut(q("d/link")));
    EXPECT_FALSE(model.hasLeftOut(QString()));
    EXPECT_FALSE(ProjectModel().hasLeftOut(QString()));
}

TEST_F(AnyDirectory, KnowsWhatItLeftOutWhereItsFolderIs)
{
    link("nowhere", "p/d/link");
    ProjectModel model(local("p"));
    model.move(q("d"), q("moved"), false);
    EXPECT_TRUE(model.isLeftOut(q("moved/link")));
    EXPECT_FALSE(model.isLeftOut(q("d/link")));
    model.mkdir(q("d"), false);
    model.writeFile(q("d/link"), "a file of its own");
    EXPECT_FALSE(model.isLeftOut(q("d/link")));
    saveInPlace(model);
    EXPECT_TRUE(model.isLeftOut(q("moved/link")));
    EXPECT_EQ(ProjectModel(local("p")).readFile(q("d/link")), QByteArray("a file of its own"));
    EXPECT_TRUE(ProjectModel(local("p")).isLeftOut(q("moved/link")));
    EXPECT_FALSE(model.isLeftOut(q("moved/../link")));
    model.remove(q("moved"));
    EXPECT_FALSE(model.hasLeftOut(QString()));
}

TEST_F(AnyDirectory, OfARemovedFolderIsNotInTheWayOfANewOne)
{
    link("nowhere", "p/d/link");
    ProjectModel model(local("p"));
    model.remove(q("d"));
    model.mkdir(q("d"), false);
    EXPECT_FALSE(model.hasLeftOut(QString()));
    model.writeFile(q("d/link"), "a file of its own");
    saveInPlace(model);
    EXPECT_EQ(ProjectModel(local("p")).readFile(q("d/link")), QByteArray("a file of its own"));
}

TEST_P(OddThing, GoesWithTheFolderThatASaveRemoves)
{
    ProjectModel model(local("p"));
    model.remove(q("d"));
    const LogRecords log;
    saveInPlace(model);
    EXPECT_EQ(treeOf(local("p")).size(), 1U);
    EXPECT_EQ(leftBeside(local("p")), QStringList());
    EXPECT_EQ(log.messages(), Messages());
}

TEST_P(OddThing, IsNotWhatTheTopsMetadataIsReadFrom)
{
    GetParam().make(path("p/.kxproject"));
    if (statOf(path("p/.kxproject"))) {
        EXPECT_THROW(ProjectModel{local("p")}, FormatError);
    } else {
        EXPECT_EQ(treeOf(ProjectModel(local("p"))), a_rest);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, OddThing,
    testing::Values(
        Oddity{"LinkToADirectoryOutside", linkTo("../../outside/tree"), "it is a symbolic link"},
        Oddity{"LinkToAFileOutside", linkTo("../../outside/secret"), "it is a symbolic link"},
        Oddity{"LinkToItself", linkTo("odd"), "it is a symbolic link"},
        Oddity{"LinkUpwards", linkTo(".."), "it is a symbolic link"},
        Oddity{"DanglingLink", linkTo("nowhere"), "it is a symbolic link"},
        Oddity{"LinkInside", linkTo("b"), "it is a symbolic link"},
        Oddity{"Pipe", [](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0); },
               "it is neither a file nor a directory"},
        Oddity{"Socket", makeSocket, "it is neither a file nor a directory"},
        Oddity{"Device",
               [](const std::string& path) {
                   // Not everywhere may root make one.
                   static_cast<void>(::mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 5)));
               },
               "it is neither a file nor a directory", "odd", true},
        Oddity{"UnreadableFolder", [](const std::string& path) { makeClosed(path, 0); },
               "it can't be read"},
        Oddity{"FolderThatCanNotBeEntered", [](const std::string& path) { makeClosed(path, 0644); },
               "it can't be read"},
        Oddity{"FolderThatCanNotBeListed", [](const std::string& path) { makeClosed(path, 0311); },
               "it can't be read"},
        Oddity{"FileNameInLatin1",
               [](const std::string& path) { Disk::instance().create(path + "\xe9", 0644); },
               "its name is not UTF-8", "odd\\xe9"},
        Oddity{"FolderNameInLatin1",
               [](const std::string& path) {
                   makeClosed(path, 0755);
                   ASSERT_EQ(::rename(path.c_str(), (path + "\xe9").c_str()), 0);
               },
               "its name is not UTF-8", "odd\\xe9"}),
    [](const auto& oddity) { return std::string(oddity.param.name); });

class UnreadableFile : public HostileDirectory
{
};

TEST_F(UnreadableFile, CanBeReplaced)
{
    ASSERT_EQ(::chmod(path("p/d/b").c_str(), 0), 0);
    ProjectModel model(local("p"));
    model.writeFile(q("d/b"), "x"); // as long as what is there
    saveInPlace(model);
    ASSERT_EQ(::chmod(path("p/d/b").c_str(), 0644), 0);
    EXPECT_EQ(getLocal(local("p/d/b")), QByteArray("x"));
}

TEST_F(UnreadableFile, KeepsTheProjectFromBeingCopiedWithoutIt)
{
    ASSERT_EQ(::chmod(path("p/d/b").c_str(), 0), 0);
    ProjectModel model(local("p"));
    EXPECT_TRUE(model.hasFile(q("d/b")));
    EXPECT_EQ(model.readFile(q("d/b")), QByteArray());
    model.writeFile(q("a"), "changed");
    saveInPlace(model);
    const std::string reason = path("p/d/b") + ": Permission denied";
    for (const ArchiveFormat format : {ArchiveFormat::Directory, ArchiveFormat::Zip}) {
        EXPECT_EQ(messageOf<IoError>([&] { model.save(local("elsewhere"), format, false); }),
                  path("elsewhere") + ": it can't be saved: " + reason);
        EXPECT_FALSE(QFileInfo::exists(local("elsewhere")));
    }
    EXPECT_EQ(messageOf<IoError>([&] { model.exportFile(QString(), local("out"), true); }), reason);
    ProjectModel other;
    EXPECT_EQ(messageOf<IoError>([&] { other.importFile(model, q("d"), q("d"), true); }), reason);
    EXPECT_EQ(treeOf(other), Tree());
}

namespace {

struct Depth
{
    const char* name;
    std::size_t nameLength;
    int levels;
    int kept; ///< levels that a path in a project can have
};

std::ostream& operator<<(std::ostream& stream, const Depth& depth)
{
    return stream << depth.name;
}

} // namespace

class DeepDirectory : public HostileDirectory, public testing::WithParamInterface<Depth>
{
protected:
    DeepDirectory()
    {
        const Fd innermost = makeDeep(path("p/" + m_name), m_name, GetParam().levels);
        const Fd file(::openat(innermost.get(), "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644), {});
        EXPECT_TRUE(file);
        m_last = statOf(file).st_ino;
    }
    // The inode of the file in the innermost directory.
    ino_t last() const
    {
        Fd at = openPath(path("p"), O_RDONLY | O_DIRECTORY);
        for (int level = 0; at && level < GetParam().levels; ++level) {
            at = openBeneath(at, m_name, O_RDONLY | O_DIRECTORY);
        }
        const Fd file = at ? openBeneath(at, "file", O_RDONLY) : Fd();
        return file ? statOf(file).st_ino : 0;
    }
    const std::string m_name = std::string(GetParam().nameLength, 'n');
    ino_t m_last = 0;
};

TEST_P(DeepDirectory, IsLeftOutFromWhereItsPathsAreTooLong)
{
    const LogRecords log;
    ProjectModel model(local("p"));
    std::string leftOut = path("p");
    for (int level = 0; level <= GetParam().kept; ++level) {
        leftOut += '/';
        leftOut += m_name;
    }
    const Messages expected{leftOut + ": left out of the project, because its path is too long"};
    EXPECT_EQ(log.messages(), expected);
    EXPECT_EQ(treeOf(model).size(), a_rest.size() + static_cast<std::size_t>(GetParam().kept));
    model.writeFile(q("a"), "changed");
    saveInPlace(model);
    model.move(q(m_name), q("d/n"), false);
    model.move(q("d/n"), q(m_name), false);
    model.writeFile(q(m_name + "/new"), "new");
    saveInPlace(model);
    EXPECT_EQ(last(), m_last);
    EXPECT_EQ(log.messages(), expected);
    model.save(local("elsewhere"), ArchiveFormat::Zip, false);
    EXPECT_EQ(treeOf(ProjectModel(local("elsewhere"))), treeOf(model));
}

TEST_P(DeepDirectory, GoesWholeWhenItIsRemoved)
{
    ProjectModel model(local("p"));
    const LogRecords log;
    model.remove(q(m_name));
    saveInPlace(model);
    EXPECT_EQ(QDir(local("p")).entryList({q("n*")}), QStringList());
    EXPECT_EQ(leftBeside(local("p")), QStringList());
    EXPECT_EQ(log.messages(), Messages());
}

TEST_P(DeepDirectory, GoesWholeWhenAnArchiveTakesItsPlace)
{
    ProjectModel model(local("p"));
    const LogRecords log;
    model.save(QString(), ArchiveFormat::Zip, true);
    EXPECT_TRUE(QFileInfo(local("p")).isFile());
    EXPECT_EQ(leftBeside(local("p")), QStringList());
    EXPECT_EQ(log.messages(), Messages());
    pk::project::remove(local("p"));
}

INSTANTIATE_TEST_SUITE_P(All, DeepDirectory,
                         testing::Values(Depth{"OfManyNames", 1, 300, 256},
                                         Depth{"OfVeryManyNames", 1, 5000, 256},
                                         Depth{"OfLongNames", 100, 200, 40},
                                         Depth{"OfTheLongestNames", 255, 30, 16}),
                         [](const auto& depth) { return std::string(depth.param.name); });

class WideDirectory : public HostileDirectory
{
};

TEST_F(WideDirectory, OpensAndIsSaved)
{
    constexpr int files = 50'000;
    ASSERT_EQ(::mkdir(path("p/wide").c_str(), 0755), 0);
    const Fd wide = openPath(path("p/wide"), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < files; ++i) {
        const std::string name = std::to_string(i);
        const Fd file(::openat(wide.get(), name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644), {});
        ASSERT_TRUE(file);
    }
    ProjectModel model(local("p"));
    EXPECT_EQ(model.getFileList(q("wide"), false, false, false).size(), files);
    model.writeFile(q("wide/7"), "seven");
    model.remove(q("wide/8"));
    saveInPlace(model);
    const ProjectModel again(local("p"));
    EXPECT_EQ(again.getFileList(q("wide"), false, false, false).size(), files - 1);
    EXPECT_EQ(again.readFile(q("wide/7")), QByteArray("seven"));
}

class DeepMove : public testing::TestWithParam<Form>
{
};

TEST_P(DeepMove, IsNotSavedWhereItCouldNotBeReadAgain)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    const QString deep = q("n/").repeated(200);
    model.writeFile(deep + q("f"), "1");
    model.mkdir(q("m/").repeated(200), true);
    model.save(directory.path("p"), formatOf(GetParam()), false);
    const Tree before = treeOf(ProjectModel(directory.path("p")));
    model.move(q("n"), q("m/").repeated(200) + q("n"), false);
    for (const QString& target : {QString(), directory.path("other")}) {
        const std::string message =
            messageOf<InvalidPath>([&] { model.save(target, formatOf(GetParam()), true); });
        EXPECT_NE(message.find("/n/n': the path is too long"), std::string::npos) << message;
        EXPECT_FALSE(QFileInfo::exists(directory.path("other")));
        EXPECT_EQ(treeOf(ProjectModel(directory.path("p"))), before);
    }
    model.move(q("m/").repeated(200) + q("n"), q("k"), false);
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(ProjectModel(directory.path("p")).readFile(q("k/") + q("n/").repeated(199) + q("f")),
              QByteArray("1"));
}

INSTANTIATE_TEST_SUITE_P(Both, DeepMove, testing::Values(Form::Directory, Form::Archive), nameOf);

namespace {

// Refuses to remove one file.
class StubbornDisk : public Disk
{
public:
    explicit StubbornDisk(std::string path) : m_path(std::move(path)) { Disk::replace(this); }
    ~StubbornDisk() override { Disk::replace(nullptr); }
    StubbornDisk(const StubbornDisk&) = delete;
    StubbornDisk& operator=(const StubbornDisk&) = delete;
    StubbornDisk(StubbornDisk&&) = delete;
    StubbornDisk& operator=(StubbornDisk&&) = delete;

    void unlink(const std::string& path) override
    {
        if (path == m_path) {
            errno = EACCES;
            throwErrno(path);
        }
        Disk::unlink(path);
    }
    void giveIn() { m_path.clear(); }

private:
    std::string m_path;
};

} // namespace

// What a save that was killed left beside the project, in place and elsewhere.
class UnremovableRemains : public HostileDirectory, public testing::WithParamInterface<const char*>
{
};

INSTANTIATE_TEST_SUITE_P(Of, UnremovableRemains, testing::Values(".p.kxjournal/0", ".p.kxnew/a"));

TEST_P(UnremovableRemains, KeepFromSavingInPlaceButNotFromOpening)
{
    putLocal(local(GetParam()), "left");
    StubbornDisk disk(path(GetParam()));
    const std::string reason = path(GetParam()) + ": Permission denied";
    const LogRecords log;
    ProjectModel model(local("p"));
    EXPECT_EQ(log.messages(), Messages{reason});
    EXPECT_EQ(treeOf(model), a_rest);
    model.writeFile(q("a"), "changed");
    EXPECT_EQ(messageOf<IoError>([&] { saveInPlace(model); }),
              path("p") + ": it can't be saved: " + reason);
    disk.giveIn();
    saveInPlace(model);
    EXPECT_EQ(ProjectModel(local("p")).readFile(q("a")), QByteArray("changed"));
    EXPECT_EQ(leftBeside(local("p")), QStringList());
}

} // namespace pk::project::test
