#include "disk.hpp"

#include "project_path.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace pk::project {

namespace {

constexpr std::size_t a_bufferSize = std::size_t{1} << 16;
constexpr mode_t a_search = S_IXUSR | S_IXGRP | S_IXOTH;

Disk*& current()
{
    static Disk usual;
    static Disk* disk = &usual;
    if (disk == nullptr) {
        disk = &usual;
    }
    return disk;
}

void check(int result, const std::string& path)
{
    if (result != 0) {
        throwErrno(path);
    }
}

// Older kernels and some sandboxes have no openat2(): then each component is opened in turn.
Fd openStepwise(const Fd& directory, const std::string& path, int flags)
{
    Fd at(::fcntl(directory.get(), F_DUPFD_CLOEXEC, 0), directory.path());
    for (std::size_t begin = 0; at;) {
        const std::size_t end = path.find('/', begin);
        const bool last = end == std::string::npos;
        const std::string part = path.substr(begin, last ? end : end - begin);
        const int partFlags = last ? flags : O_PATH | O_DIRECTORY;
        at = Fd(::openat(at.get(), part.c_str(), partFlags | O_NOFOLLOW | O_CLOEXEC),
                directory.path() + "/" + path);
        if (last) {
            break;
        }
        begin = end + 1;
    }
    return at;
}

// Reads until `size` bytes are there or the file ends.
std::size_t readSome(const Fd& file, char* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = ::read(file.get(), bytes + done, size - done);
        if (got == 0) {
            break;
        }
        if (got < 0 && errno != EINTR) {
            throwErrno(file.path());
        }
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return done;
}

// Either can be what the reason is about.
[[noreturn]] void throwRename(const std::string& from, const std::string& to)
{
    const int number = errno;
    throw IoError(from + ", to become " + to + ": " + std::generic_category().message(number));
}

void refuseLook(const std::string& path)
{
    if (const int error = Disk::instance().refusal(path)) {
        errno = error;
        throwErrno(path);
    }
}

} // namespace

Fd::Fd(Fd&& other) noexcept : m_fd(other.release()), m_path(std::move(other.m_path)) {}

Fd& Fd::operator=(Fd&& other) noexcept
{
    if (this != &other) {
        reset();
        m_fd = other.release();
        m_path = std::move(other.m_path);
    }
    return *this;
}

int Fd::release()
{
    return std::exchange(m_fd, -1);
}

void Fd::reset()
{
    if (m_fd >= 0) {
        ::close(release());
    }
}

Disk& Disk::instance()
{
    return *current();
}

void Disk::replace(Disk* disk)
{
    current() = disk;
}

Fd Disk::create(const std::string& path, mode_t mode)
{
    Fd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600), path);
    if (!file) {
        throwErrno(path);
    }
    check(::fchmod(file.get(), mode), path);
    return file;
}

void Disk::write(const Fd& file, const char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(file.get(), bytes, size);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            throwErrno(file.path());
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void Disk::copy(const Fd& from, const Fd& to)
{
    bool inKernel = true;
    std::string buffer;
    for (;;) {
        if (inKernel) {
            const ssize_t copied =
                ::copy_file_range(from.get(), nullptr, to.get(), nullptr, std::size_t{1} << 30, 0);
            if (copied > 0) {
                continue;
            }
            // Some file systems say "end of file" for what they can't copy, so a read has the last
            // word; any refusal falls back to reading as well.
            inKernel = false;
            buffer.resize(a_bufferSize);
        }
        const ssize_t got = ::read(from.get(), buffer.data(), buffer.size());
        if (got == 0) {
            return;
        }
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            throwErrno(from.path());
        }
        write(to, buffer.data(), static_cast<std::size_t>(got));
    }
}

void Disk::sync(const Fd& file)
{
    check(::fsync(file.get()), file.path());
}

void Disk::syncFileSystem(const std::string& path)
{
    const Fd file = openPath(path, O_RDONLY);
    check(::syncfs(file.get()), path);
}

void Disk::mkdir(const std::string& path, mode_t mode)
{
    check(::mkdir(path.c_str(), 0700), path);
    check(::chmod(path.c_str(), mode), path);
}

void Disk::chmod(const std::string& path, mode_t mode)
{
    check(::chmod(path.c_str(), mode), path);
}

void Disk::setTime(const std::string& path, std::int64_t time)
{
    constexpr std::int64_t second = 1'000'000'000;
    const struct timespec times[2] = {{0, UTIME_OMIT}, {time / second, time % second}};
    int result = ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    if (result != 0 && errno == EPERM) {
        // Who may write a directory but does not own it can only set the current time.
        result = ::utimensat(AT_FDCWD, path.c_str(), nullptr, AT_SYMLINK_NOFOLLOW);
    }
    check(result, path);
}

void Disk::rename(const std::string& from, const std::string& to)
{
    if (::rename(from.c_str(), to.c_str()) != 0) {
        throwRename(from, to);
    }
}

void Disk::renameNew(const std::string& from, const std::string& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return;
    }
    if (errno == EINVAL || errno == ENOSYS) {
        // The file system can't do it in one step; under the save's lock this is as good.
        if (statOf(to)) {
            throw AlreadyExists(to + ": it exists already");
        }
        rename(from, to);
        return;
    }
    if (errno == EEXIST) {
        throw AlreadyExists(to + ": it exists already");
    }
    throwRename(from, to);
}

void Disk::exchange(const std::string& a, const std::string& b)
{
    check(::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE), b);
}

void Disk::link(const std::string& from, const std::string& to)
{
    check(::link(from.c_str(), to.c_str()), to);
}

void Disk::unlink(const std::string& path)
{
    check(::unlink(path.c_str()), path);
}

void Disk::rmdir(const std::string& path)
{
    check(::rmdir(path.c_str()), path);
}

bool Disk::lock(const Fd& file)
{
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) {
        throwErrno(file.path());
    }
    return false;
}

int Disk::refusal(const std::string& /*path*/)
{
    return 0;
}

std::uint16_t umaskLeaves(mode_t mode)
{
    static const mode_t mask = [] {
        const mode_t current = ::umask(0);
        ::umask(current);
        return current;
    }();
    return static_cast<std::uint16_t>(mode & ~mask);
}

void throwErrno(const std::string& path)
{
    const int number = errno;
    throw IoError(path + ": " + std::generic_category().message(number));
}

std::optional<struct stat> statOf(const std::string& path)
{
    refuseLook(path);
    struct stat info = {};
    if (::lstat(path.c_str(), &info) == 0) {
        return info;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        throwErrno(path);
    }
    return std::nullopt;
}

struct stat statOf(const Fd& file)
{
    refuseLook(file.path());
    struct stat info = {};
    check(::fstat(file.get(), &info), file.path());
    return info;
}

std::int64_t modificationTime(const struct stat& info)
{
    return std::int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec;
}

Fd openPath(const std::string& path, int flags)
{
    refuseLook(path);
    Fd file(::open(path.c_str(), flags | O_CLOEXEC), path);
    if (!file) {
        throwErrno(path);
    }
    return file;
}

Fd openBeneath(const Fd& directory, const std::string& path, int flags)
{
    if (path.empty()) {
        return openBeneath(directory, ".", flags);
    }
    if (const int error = Disk::instance().refusal(directory.path() + "/" + path)) {
        errno = error;
        return {};
    }
    struct open_how how = {};
    how.flags = static_cast<std::uint64_t>(static_cast<unsigned>(flags | O_CLOEXEC | O_NOFOLLOW));
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    const long fd = ::syscall(SYS_openat2, directory.get(), path.c_str(), &how, sizeof how);
    if (fd < 0 && (errno == ENOSYS || errno == EPERM)) {
        return openStepwise(directory, path, flags);
    }
    return {static_cast<int>(fd), directory.path() + "/" + path};
}

std::optional<struct stat> statIn(const Fd& directory, const std::string& name)
{
    refuseLook(directory.path());
    struct stat info = {};
    if (::fstatat(directory.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
        return info;
    }
    if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
        throwErrno(directory.path() + "/" + name);
    }
    return std::nullopt;
}

Fd openDirectoryIn(const Fd& directory, const std::string& name, struct stat& info)
{
    if (const int error = Disk::instance().refusal(directory.path())) {
        errno = error;
        return {};
    }
    Fd fd(::openat(directory.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC),
          directory.path() + "/" + name);
    const auto look = [&] {
        // What all may search, so may this process. Else one look that needs it says so; it costs
        // twice as much as one at the descriptor.
        return ::fstat(fd.get(), &info) == 0 &&
               ((info.st_mode & a_search) == a_search ||
                ::fstatat(fd.get(), ".", &info, AT_SYMLINK_NOFOLLOW) == 0);
    };
    if (fd && !look()) {
        const int error = errno;
        fd.reset();
        errno = error;
    }
    return fd;
}

std::vector<DirectoryEntry> entriesIn(const Fd& directory)
{
    refuseLook(directory.path());
    alignas(struct dirent64) char buffer[a_bufferSize / 2];
    std::vector<DirectoryEntry> entries;
    for (;;) {
        const ssize_t got = ::getdents64(directory.get(), buffer, sizeof buffer);
        if (got == 0 || (got < 0 && errno == ENOENT)) { // or it was removed just now
            return entries;
        }
        if (got < 0) {
            throwErrno(directory.path());
        }
        for (ssize_t at = 0; at < got;) {
            const auto* const entry = reinterpret_cast<const struct dirent64*>(buffer + at);
            const char* const name = static_cast<const char*>(entry->d_name);
            if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
                entries.push_back({name, entry->d_type == DT_DIR});
            }
            at += entry->d_reclen;
        }
    }
}

std::vector<std::string> namesIn(const Fd& directory)
{
    if (::lseek(directory.get(), 0, SEEK_SET) < 0) {
        throwErrno(directory.path());
    }
    std::vector<std::string> names;
    for (DirectoryEntry& entry : entriesIn(directory)) {
        names.push_back(std::move(entry.name));
    }
    return names;
}

bool sameBytes(const Fd& a, const Fd& b)
{
    if (statOf(a).st_size != statOf(b).st_size) {
        return false;
    }
    std::string left(a_bufferSize, '\0');
    std::string right(a_bufferSize, '\0');
    for (;;) {
        const std::size_t size = readSome(a, left.data(), left.size());
        if (readSome(b, right.data(), right.size()) != size ||
            std::memcmp(left.data(), right.data(), size) != 0) {
            return false;
        }
        if (size == 0) {
            return true;
        }
    }
}

QByteArray readAll(const Fd& file, std::int64_t most)
{
    return readAll(file, statOf(file).st_size, most);
}

QByteArray readAll(const Fd& file, std::int64_t size, std::int64_t most)
{
    constexpr std::int64_t chunk = 4096; // of what says that it is empty, as much in /proc does
    QByteArray bytes;
    for (std::int64_t read = 0;;) {
        if (std::max(size, read) > most) {
            throw LimitError(file.path() + ": it has more than the " + std::to_string(most) +
                             " bytes that are read");
        }
        const std::int64_t left = size > 0 ? size - read : std::min(chunk, most + 1 - read);
        bytes.resize(static_cast<int>(read + left));
        const ssize_t got = ::read(file.get(), bytes.data() + read, static_cast<std::size_t>(left));
        if (got < 0 && errno != EINTR) {
            throwErrno(file.path());
        }
        read += std::max<ssize_t>(got, 0);
        if (got == 0 || (size > 0 && read == size)) {
            bytes.resize(static_cast<int>(read));
            return bytes;
        }
    }
}

Fd copyToNewFile(const Fd& from, const std::string& to, mode_t mode)
{
    Fd file = Disk::instance().create(to, mode);
    Disk::instance().copy(from, file);
    return file;
}

void syncDirectory(const std::string& path)
{
    Disk::instance().sync(openPath(path, O_RDONLY | O_DIRECTORY));
}

namespace {

// How long a path may get below what is removed. The system takes some more, but each level costs
// some stack.
constexpr std::size_t a_longPath = 1000;

void removeBelow(const std::string& path, const std::string& top, std::uint64_t& lifted);

// Removes one entry of a directory that is being removed. A directory whose path gets too long is
// lifted to the top of what is removed first.
void removeEntry(const std::string& path, const std::string& top, std::uint64_t& lifted)
{
    const auto info = statOf(path);
    if (!info) {
        return;
    }
    if (!S_ISDIR(info->st_mode)) {
        Disk::instance().unlink(path);
        return;
    }
    if ((info->st_mode & S_IRWXU) != S_IRWXU) {
        Disk::instance().chmod(path, S_IRWXU);
    }
    if (path.size() > top.size() + a_longPath) {
        std::string free;
        do {
            free = joinPath(top, ".lifted" + std::to_string(++lifted));
        } while (statOf(free));
        Disk::instance().rename(path, free);
        return; // its turn comes with the top's next round
    }
    removeBelow(path, top, lifted);
    Disk::instance().rmdir(path);
}

void removeBelow(const std::string& path, const std::string& top, std::uint64_t& lifted)
{
    std::uint64_t before = 0;
    do {
        before = lifted;
        for (const std::string& name :
             namesIn(openPath(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW))) {
            removeEntry(joinPath(path, name), top, lifted);
        }
    } while (path == top && lifted != before);
}

} // namespace

void removeTree(const std::string& path)
{
    std::uint64_t lifted = 0;
    removeEntry(path, path, lifted);
}

} // namespace pk::project
