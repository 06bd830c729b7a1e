#include "another_user.hpp"
#include "lock.hpp"
#include "place.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace pk::project::test {

namespace {

constexpr std::chrono::milliseconds a_noPatience{0};

// Another program that has the lock of a place until it is ended.
class OtherProgram
{
public:
    explicit OtherProgram(const Place& place)
    {
        int ready[2] = {};
        EXPECT_EQ(::pipe(ready), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            static const Lock lock = Lock::take(place);
            const ssize_t written = ::write(ready[1], "r", 1);
            ::pause();
            ::_exit(written == 1 ? 0 : 1);
        }
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~OtherProgram() { kill(); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    OtherProgram(OtherProgram&&) = delete;
    OtherProgram& operator=(OtherProgram&&) = delete;

    pid_t process() const { return m_process; }
    void kill()
    {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
            m_process = 0;
        }
    }

private:
    pid_t m_process = 0;
};

// Ends the test program with a signal when what follows hangs.
class Alarm
{
public:
    Alarm() { ::alarm(60); }
    ~Alarm() { ::alarm(0); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    Alarm(Alarm&&) = delete;
    Alarm& operator=(Alarm&&) = delete;
};

// A file system that can't say whether a file is locked.
class DiskWithoutLocks : public Disk
{
public:
    explicit DiskWithoutLocks(int error) : m_error(error) { Disk::replace(this); }
    ~DiskWithoutLocks() override { Disk::replace(nullptr); }
    DiskWithoutLocks(const DiskWithoutLocks&) = delete;
    DiskWithoutLocks& operator=(const DiskWithoutLocks&) = delete;
    DiskWithoutLocks(DiskWithoutLocks&&) = delete;
    DiskWithoutLocks& operator=(DiskWithoutLocks&&) = delete;

    bool lock(const Fd& file) override
    {
        errno = m_error;
        throwErrno(file.path());
    }

private:
    int m_error;
};

// What stands in a lock file, and what an error says of it.
struct Content
{
    std::string name;
    std::string bytes;
    std::string owner; // empty: nobody can be named
};

std::ostream& operator<<(std::ostream& stream, const Content& content)
{
    return stream << content.name;
}

const std::vector<Content>& contents()
{
    static const std::vector<Content> all{
        {"Owner", "process 12 (editor) on robot\n", "process 12 (editor) on robot"},
        {"Nothing", "", ""},
        {"EmptyLines", "\n\n", ""},
        {"Blanks", " \t\r\n", ""},
        {"TwoLines", "process 12\nand more\n", "process 12"},
        {"ControlCharacters", std::string("\x1b[31mred\a\0\r.\x7f\n", 14), "?[31mred???.?"},
        {"TextThatRunsBackwards", "\u202eabc\u2028\u0085d\n", "?abc??d"},
        {"NoText", "\xff\xc3(\n", "\ufffd\ufffd("},
        {"Letters", "process 1 (\u00e9diteur \U0001f916) on \u65e5\u672c\n",
         "process 1 (\u00e9diteur \U0001f916) on \u65e5\u672c"},
        {"VeryMuch", std::string(std::size_t{1} << 20, 'x'), std::string(400, 'x')}};
    return all;
}

std::string nameOfContent(const testing::TestParamInfo<Content>& info)
{
    return info.param.name;
}

} // namespace

class ALock : public testing::Test
{
protected:
    TemporaryDirectory m_directory;
    Place m_place = Place::of(m_directory.path("project").toStdString());
};

TEST_F(ALock, IsAFileBesideThePlaceAndGoneWithIt)
{
    {
        const Lock lock = Lock::take(m_place);
        EXPECT_EQ(leftBeside(m_directory.path("project")), QStringList(q(".project.kxlock")));
        const QByteArray owner = getLocal(QString::fromStdString(m_place.lockFile()));
        EXPECT_TRUE(owner.contains("process " + QByteArray::number(::getpid()))) << owner.data();
    }
    EXPECT_EQ(leftBeside(m_directory.path("project")), QStringList());
}

TEST_F(ALock, KeepsOtherModelsOfThisProgramOut)
{
    const Lock lock = Lock::take(m_place);
    EXPECT_THROW(Lock::take(m_place, a_noPatience), LockError);
}

TEST_F(ALock, TakenBrieflyKeepsOthersOutAndNamesNobody)
{
    const QString file = QString::fromStdString(m_place.lockFile());
    putLocal(file, "somebody who died");
    const Lock lock = Lock::takeBriefly(m_place);
    EXPECT_EQ(getLocal(file), QByteArray());
    EXPECT_NE(messageOf<LockError>([&] {
                  Lock::take(m_place, a_noPatience);
              }).find("it is in use by another program"),
              std::string::npos);
}

TEST_F(ALock, OfOnePlaceLeavesOthersAlone)
{
    const Lock lock = Lock::take(m_place);
    const Place other = Place::of(m_directory.path("other").toStdString());
    EXPECT_NO_THROW(Lock::take(other, a_noPatience));
}

TEST_F(ALock, OfAnotherProgramIsAnErrorThatNamesIt)
{
    const OtherProgram program(m_place);
    const std::string message = messageOf<LockError>([&] { Lock::take(m_place, a_noPatience); });
    EXPECT_NE(message.find(m_place.path), std::string::npos) << message;
    EXPECT_NE(message.find("process " + std::to_string(program.process())), std::string::npos)
        << message;
}

TEST_F(ALock, OfAKilledProgramIsNotInTheWay)
{
    OtherProgram program(m_place);
    program.kill();
    EXPECT_TRUE(statOf(m_place.lockFile()));
    EXPECT_NO_THROW(Lock::take(m_place, a_noPatience));
    EXPECT_FALSE(statOf(m_place.lockFile()));
}

TEST_F(ALock, ThatIsMovedIsHeldOnce)
{
    std::optional<Lock> lock(Lock::take(m_place));
    std::optional<Lock> moved(std::move(*lock));
    lock.reset();
    EXPECT_TRUE(statOf(m_place.lockFile()));
    EXPECT_THROW(Lock::take(m_place, a_noPatience), LockError);
    moved.reset();
    EXPECT_NO_THROW(Lock::take(m_place, a_noPatience));
}

TEST_F(ALock, OnAFileThatWasReplacedMeanwhileIsTakenAnew)
{
    std::optional<Lock> lock(Lock::take(m_place));
    ASSERT_TRUE(QFile::remove(QString::fromStdString(m_place.lockFile())));
    EXPECT_NO_THROW(Lock::take(m_place, a_noPatience));
}

TEST_F(ALock, WhereNoFileCanBeMadeIsAnErrorWithPathAndReason)
{
    QDir(m_directory.path()).mkdir(q(".project.kxlock"));
    const std::string message = messageOf<IoError>([&] { Lock::take(m_place); });
    EXPECT_EQ(message, m_place.lockFile() + ": Is a directory");
}

TEST_F(ALock, DoesNotFollowALinkInItsPlace)
{
    putLocal(m_directory.path("victim"), "text");
    ASSERT_EQ(::symlink("victim", m_place.lockFile().c_str()), 0);
    EXPECT_THROW(Lock::take(m_place), IoError);
    EXPECT_EQ(getLocal(m_directory.path("victim")), QByteArray("text"));
}

TEST_F(ALock, MakesNothingWhereALinkInItsPlaceLeads)
{
    ASSERT_EQ(::symlink("nothing", m_place.lockFile().c_str()), 0);
    EXPECT_THROW(Lock::take(m_place), IoError);
    EXPECT_FALSE(statOf(m_directory.path("nothing").toStdString()));
}

TEST_F(ALock, LeavesTheBytesOfAFileThatHasItsNameToo)
{
    putLocal(m_directory.path("victim"), "text");
    ASSERT_EQ(::link(m_directory.path("victim").toStdString().c_str(), m_place.lockFile().c_str()),
              0);
    EXPECT_NO_THROW(Lock::take(m_place));
    EXPECT_EQ(getLocal(m_directory.path("victim")), QByteArray("text"));
    EXPECT_FALSE(statOf(m_place.lockFile()));
}

TEST_F(ALock, IsNotKeptOutByAFifoInItsPlace)
{
    const Alarm alarm;
    ASSERT_EQ(::mkfifo(m_place.lockFile().c_str(), 0600), 0);
    EXPECT_NO_THROW(Lock::take(m_place));
    EXPECT_FALSE(statOf(m_place.lockFile()));
}

TEST_F(ALock, OnAFifoThatAnotherProgramLockedIsAnError)
{
    const Alarm alarm;
    ASSERT_EQ(::mkfifo(m_place.lockFile().c_str(), 0600), 0);
    const OtherProgram program(m_place);
    EXPECT_EQ(messageOf<LockError>([&] { Lock::take(m_place, a_noPatience); }),
              m_place.path + ": it is in use by another program");
}

TEST_F(ALock, IsNotKeptOutByAFifoThatCanOnlyBeRead)
{
    const Alarm alarm;
    ASSERT_EQ(::mkfifo(m_place.lockFile().c_str(), 0444), 0);
    ASSERT_EQ(::chmod(m_directory.path().toStdString().c_str(), 0777), 0);
    {
        const AnotherUser user;
        EXPECT_NO_THROW(Lock::take(m_place));
    }
    EXPECT_FALSE(statOf(m_place.lockFile()));
}

TEST_F(ALock, WhereASocketIsIsAnErrorWithPathAndReason)
{
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(m_place.lockFile().size(), sizeof address.sun_path);
    m_place.lockFile().copy(address.sun_path, sizeof address.sun_path - 1);
    const Fd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
    ASSERT_EQ(
        ::bind(socket.get(), reinterpret_cast<const struct sockaddr*>(&address), sizeof address),
        0);
    EXPECT_EQ(messageOf<IoError>([&] { Lock::take(m_place); }),
              m_place.lockFile() + ": No such device or address");
}

TEST_F(ALock, IsTakenWhereTheDirectoryCanBeWritten)
{
    EXPECT_TRUE(Lock::takeIfWritable(m_place));
    // Nobody, not even root, can make a file there.
    EXPECT_FALSE(Lock::takeIfWritable(Place::of("/proc/self/new")));
}

class ALockFile : public ALock, public testing::WithParamInterface<Content>
{
protected:
    void fill() const
    {
        putLocal(QString::fromStdString(m_place.lockFile()),
                 QByteArray::fromStdString(GetParam().bytes));
    }
};

INSTANTIATE_TEST_SUITE_P(Holding, ALockFile, testing::ValuesIn(contents()), nameOfContent);

TEST_P(ALockFile, OfNobodyIsTakenOverWhateverItHolds)
{
    fill();
    {
        const Lock lock = Lock::take(m_place, a_noPatience);
        EXPECT_TRUE(getLocal(QString::fromStdString(m_place.lockFile()))
                        .startsWith("process " + QByteArray::number(::getpid())));
    }
    EXPECT_FALSE(statOf(m_place.lockFile()));
}

TEST_P(ALockFile, OfAnotherProgramIsToldInOneLine)
{
    const OtherProgram program(m_place);
    fill();
    const std::string& owner = GetParam().owner;
    EXPECT_EQ(messageOf<LockError>([&] { Lock::take(m_place, a_noPatience); }),
              m_place.path + ": it is in use by " + (owner.empty() ? "another program" : owner));
}

TEST_P(ALockFile, ThatCannotBeJudgedIsAnErrorThatNamesItsOwner)
{
    fill();
    const std::string& owner = GetParam().owner;
    for (const auto& [error, reason] : {std::make_pair(ENOLCK, "No locks available"),
                                        std::make_pair(EOPNOTSUPP, "Operation not supported"),
                                        std::make_pair(EIO, "Input/output error")}) {
        const DiskWithoutLocks disk(error);
        EXPECT_EQ(messageOf<LockError>([&] { Lock::take(m_place); }),
                  m_place.path + ": it can't be found out whether another program saves it: " +
                      m_place.lockFile() + ": " + reason +
                      (owner.empty() ? "" : "; the lock file names " + owner));
        EXPECT_THROW(Lock::takeIfWritable(m_place), LockError);
    }
    EXPECT_EQ(getLocal(QString::fromStdString(m_place.lockFile())).toStdString(), GetParam().bytes);
}

TEST_F(ALock, FileThatIsVeryLargeTakesNoMemory)
{
    const OtherProgram program(m_place);
    ASSERT_EQ(::truncate(m_place.lockFile().c_str(), off_t{1} << 40), 0);
    const std::string message = messageOf<LockError>([&] { Lock::take(m_place, a_noPatience); });
    EXPECT_EQ(message.find("process " + std::to_string(program.process())),
              m_place.path.size() + std::string(": it is in use by ").size());
}

TEST_F(ALock, ThatCannotBeJudgedKeepsOpeningAndSavingOut)
{
    const QString path = m_directory.path("project");
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.save(path, ArchiveFormat::Directory, false);
    model.writeFile(q("a"), "2");
    {
        const DiskWithoutLocks disk(ENOLCK);
        EXPECT_THROW(ProjectModel{path}, LockError);
        EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), LockError);
    }
    EXPECT_EQ(ProjectModel(path).readFile(q("a")), QByteArray("1"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(ProjectModel(path).readFile(q("a")), QByteArray("2"));
    EXPECT_EQ(leftBeside(path), QStringList());
}

} // namespace pk::project::test
