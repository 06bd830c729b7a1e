#include "lock.hpp"

#include "place.hpp"

#include <pk/project/error.hpp>

#include <QString>
#include <QSysInfo>
#include <QVector>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace pk::project {

namespace {

constexpr std::chrono::milliseconds a_pause{10};

// Bytes of a lock file that are looked at.
constexpr std::size_t a_longestOwner = 400;

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

void writeOwner(const Fd& file, const std::string& owner)
{
    // Only people read it; a disk without room for it must not keep anybody from saving. A file
    // that has another name as well may be anybody's.
    const struct stat info = statOf(file);
    if (info.st_nlink != 1 || (info.st_size > 0 && ::ftruncate(file.get(), 0) != 0) ||
        (!owner.empty() && ::pwrite(file.get(), owner.data(), owner.size(), 0) < 0)) {
        errno = 0;
    }
}

bool isNoText(uint character)
{
    return character != ' ' && (!QChar::isPrint(character) || QChar::isSpace(character));
}

// Who has the lock, as the lock file says, in one line; empty when it does not say. The file may be
// anybody's, and anything: what is no text becomes "?", and no more is read than a name takes.
std::string ownerIn(const Fd& file)
{
    std::array<char, a_longestOwner> bytes{};
    const ssize_t size = ::pread(file.get(), bytes.data(), bytes.size(), 0);
    const QString text =
        QString::fromUtf8(bytes.data(), static_cast<int>(std::max(size, ssize_t{0})));
    QVector<uint> line = text.trimmed().section(QLatin1Char('\n'), 0, 0).toUcs4();
    std::replace_if(line.begin(), line.end(), isNoText, '?');
    return QString::fromUcs4(line.constData(), line.size()).toStdString();
}

bool tryLock(const Place& place, const Fd& file)
{
    try {
        return Disk::instance().lock(file);
    } catch (const IoError& error) {
        const std::string owner = ownerIn(file);
        throw LockError(place.path + ": it can't be found out whether another program saves it: " +
                        error.what() + (owner.empty() ? "" : "; the lock file names " + owner));
    }
}

// Never waits, whatever has the lock file's name.
Fd openLockFile(const std::string& path)
{
    constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    Fd file(::open(path.c_str(), O_RDWR | O_CREAT | flags, 0644), path);
    if (!file && errno == EACCES) {
        // Another user's, perhaps of a program that died: reading is enough to lock it.
        file = Fd(::open(path.c_str(), O_RDONLY | flags), path);
        if (!file && errno == ENOENT) {
            errno = EACCES; // nobody's: that it can't be made is the reason
        }
    }
    if (!file) {
        throwErrno(path);
    }
    return file;
}

} // namespace

Lock Lock::take(const Place& place, std::chrono::milliseconds patience)
{
    return take(place, patience, myself() + "\n");
}

Lock Lock::takeBriefly(const Place& place)
{
    return take(place, a_patience, std::string());
}

Lock Lock::take(const Place& place, std::chrono::milliseconds patience, const std::string& myName)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Fd file = openLockFile(place.lockFile());
        if (tryLock(place, file)) {
            if (isCurrent(file)) {
                writeOwner(file, myName);
                return Lock(std::move(file));
            }
            continue;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            const std::string owner = ownerIn(file);
            throw LockError(place.path + ": it is in use by " +
                            (owner.empty() ? "another program" : owner));
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
