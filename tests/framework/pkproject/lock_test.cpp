#include "lock.hpp"
#include "place.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <chrono>
#include <csignal>
#include <optional>
#include <sys/wait.h>
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

TEST_F(ALock, IsTakenWhereTheDirectoryCanBeWritten)
{
    EXPECT_TRUE(Lock::takeIfWritable(m_place));
    // Nobody, not even root, can make a file there.
    EXPECT_FALSE(Lock::takeIfWritable(Place::of("/proc/self/new")));
}

} // namespace pk::project::test
