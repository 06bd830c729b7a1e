#include "lock.hpp"

#include "place.hpp"

#include <pk/project/error.hpp>

#include <QString>
#include <QSysInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace pk::project {

namespace {

constexpr std::chrono::milliseconds a_pause{10};

std::string myself()
{
    return "process " + std::to_string(::getpid()) + " (" + program_invocation_short_name +
           ") on " + QSysInfo::machineHostName().toStdString();
}

// Whether the file that was locked is still the one that others will try to lock.
bool isCurrent(const Fd& file)
{
    const auto info = statOf(file.path());
    const struct stat mine = statOf(file);
    return info && info->st_ino == mine.st_ino && info->st_dev == mine.st_dev;
}

void writeOwner(const Fd& file)
{
    const std::string owner = myself() + "\n";
    // Only people read it; a disk without room for it must not keep anybody from saving.
    if (::ftruncate(file.get(), 0) != 0 ||
        ::pwrite(file.get(), owner.data(), owner.size(), 0) < 0) {
        errno = 0;
    }
}

std::string ownerOf(const Fd& file)
{
    std::string owner = readAll(file);
    owner.erase(owner.find_last_not_of('\n') + 1);
    return owner.empty() ? "another program" : owner;
}

} // namespace

Lock Lock::take(const Place& place, std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const std::string path = place.lockFile();
        Fd file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644), path);
        if (!file && errno == EACCES) {
            // Another user's, perhaps of a program that died: reading is enough to lock it.
            file = Fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW), path);
            if (!file && errno == ENOENT) {
                errno = EACCES; // nobody's: that it can't be made is the reason
            }
        }
        if (!file) {
            throwErrno(path);
        }
        if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            if (isCurrent(file)) {
                writeOwner(file);
                return Lock(std::move(file));
            }
            continue;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            throw LockError(place.path +
                            ": it can't be found out whether another program saves it: " +
                            std::generic_category().message(errno));
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            throw LockError(place.path + ": it is in use by " + ownerOf(file));
        }
        std::this_thread::sleep_for(a_pause);
    }
}

std::optional<Lock> Lock::takeIfWritable(const Place& place)
{
    if (::faccessat(AT_FDCWD, place.parent.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        return std::nullopt;
    }
    try {
        return take(place);
    } catch (const IoError&) {
        // A full disk, or a lock file that is somebody else's alone: no reason not to read.
        return std::nullopt;
    }
}

Lock::~Lock()
{
    if (m_file) {
        ::unlink(m_file.path().c_str());
    }
}

} // namespace pk::project
