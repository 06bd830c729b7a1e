#include "staging.hpp"

#include <QDir>
#include <QString>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <new>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pk::project {

namespace {

// A name may be as long as the file system takes; with a number in front it might be too long.
constexpr std::size_t a_longestName = 200;

Fd create(const StagedFile& file)
{
    Fd fd(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600), file.path());
    if (!fd) {
        throwErrno(file.path());
    }
    return fd;
}

// How often this process was forked. What was made since no other process knows.
unsigned forks()
{
    static std::atomic<unsigned> count{0};
    static const int registered = ::pthread_atfork(
        nullptr, [] { ++count; }, nullptr);
    static_cast<void>(registered);
    return count;
}

// Empties a file, unless somebody has it open, as whoever reads it by a stream, or under another
// name, as another model's. Where the kernel can't tell, they may.
bool empty(const std::string& path) noexcept
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW);
    struct stat info = {};
    // A write lease is granted only while nobody else has the file open. Who opens it in that
    // moment must not cause the signal that ends a program.
    const bool isMine = fd >= 0 && ::fstat(fd, &info) == 0 && info.st_nlink == 1 &&
                        ::fcntl(fd, F_SETSIG, SIGURG) == 0 &&
                        ::fcntl(fd, F_SETLEASE, F_WRLCK) == 0 &&
                        ::fcntl(fd, F_SETLEASE, F_UNLCK) == 0 && ::ftruncate(fd, 0) == 0;
    if (fd >= 0) {
        ::close(fd);
    }
    return isMine;
}

} // namespace

StagedFile::StagedFile(std::shared_ptr<Staging> staging, std::string path)
    : m_staging(std::move(staging)), m_path(std::move(path)), m_forks(forks())
{
}

StagedFile::~StagedFile()
{
    if (m_maker.isHere()) {
        m_staging->takeBack(*this);
    }
}

bool StagedFile::isUnknown() const
{
    return m_sealed && !m_pathIsKept && m_forks == forks();
}

Fd StagedFile::open() const
{
    return openPath(m_path, O_RDONLY);
}

std::optional<std::int64_t> StagedFile::size() const
{
    const auto info = m_sealed ? statOf(m_path) : std::nullopt;
    return info ? std::optional<std::int64_t>(info->st_size) : std::nullopt;
}

bool StagedFile::isSealed()
{
    if (!m_sealed) {
        // A read lease is granted only while nobody has the file open for writing.
        const Fd file(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC), m_path);
        m_sealed = file && ::fcntl(file.get(), F_SETLEASE, F_RDLCK) == 0;
    }
    return m_sealed;
}

StagingRoot::StagingRoot(std::string place) : m_place(std::move(place))
{
    while (!make()) {
    }
}

// False when somebody who looks for what dead programs left took the new directory for such.
bool StagingRoot::make()
{
    m_path = m_place + "/" + a_prefix + "XXXXXX";
    if (::mkdtemp(m_path.data()) == nullptr) {
        throwErrno(m_path);
    }
    const std::string lock = m_path + "/" + a_lockFile;
    m_lock = Fd(::open(lock.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600), lock);
    if (!m_lock && errno == ENOENT) {
        return false;
    }
    if (!m_lock) {
        const int number = errno;
        ::rmdir(m_path.c_str());
        errno = number;
        throwErrno(lock);
    }
    // Where nothing can be locked others can't either, and leave alone what they find.
    const bool isTaken = ::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return !isTaken && statOf(m_lock).st_nlink > 0;
}

StagingRoot::~StagingRoot()
{
    if (m_maker.isHere()) {
        ::unlink(m_lock.path().c_str());
        ::rmdir(m_path.c_str());
    }
}

std::shared_ptr<StagingRoot> StagingRoot::get()
{
    static std::mutex mutex;
    static std::weak_ptr<StagingRoot> current;
    const std::lock_guard<std::mutex> guard(mutex);
    auto root = current.lock();
    const std::string place = QDir::tempPath().toStdString();
    if (!root || root->m_place != place || !root->m_maker.isHere()) {
        root = std::shared_ptr<StagingRoot>(new StagingRoot(place));
        current = root;
    }
    return root;
}

std::string StagingRoot::makeDirectory()
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> guard(mutex);
    std::string path = m_path + "/" + std::to_string(++m_lastNumber);
    if (::mkdir(path.c_str(), 0700) != 0) {
        throwErrno(path);
    }
    return path;
}

Staging::~Staging()
{
    if (!m_directory.empty() && m_maker.isHere()) {
        release();
        if (!m_spare.empty()) {
            ::unlink(m_spare.c_str());
        }
        ::rmdir(m_directory.c_str());
    }
}

const std::string& Staging::directory()
{
    if (m_directory.empty() || !m_maker.isHere()) {
        auto root = StagingRoot::get();
        m_directory = root->makeDirectory();
        m_root = std::move(root);
        m_maker = {};
        m_spare.clear(); // it is not here, nor are these
        m_held.clear();
    }
    return m_directory;
}

std::shared_ptr<StagedFile> Staging::newFile(const std::string& name)
{
    std::string file = directory() + "/" + std::to_string(++m_lastNumber);
    if (name.size() <= a_longestName) {
        file += "-" + name;
    }
    return std::make_shared<StagedFile>(shared_from_this(), std::move(file));
}

std::shared_ptr<StagedFile> Staging::write(const std::string& name, const char* bytes,
                                           std::size_t size)
{
    auto staged = newFile(name);
    Fd file = takeSpare(staged->path());
    if (!file) {
        file = create(*staged);
    }
    Disk::instance().write(file, bytes, size);
    staged->seal();
    return staged;
}

void Staging::takeBack(const StagedFile& file) noexcept
{
    if (m_isHolding && file.isNoted()) {
        try {
            m_held.push_back({file.path(), file.isUnknown()});
            return;
        } catch (const std::bad_alloc&) {
            // What a recovery would look for is worth less than a program that goes on.
        }
    }
    dispose(file.path(), file.isUnknown());
}

void Staging::release() noexcept
{
    m_isHolding = false;
    for (const Held& held : std::exchange(m_held, {})) {
        if (m_maker.isHere()) {
            dispose(held.path, held.isUnknown);
        }
    }
}

void Staging::dispose(const std::string& path, bool isUnknown) noexcept
{
    if (isUnknown && m_spare.empty() && empty(path)) {
        m_spare = path;
    } else {
        ::unlink(path.c_str());
    }
}

// The spare file at a new path; none when there is none. It is not open while it is one: a program
// may have more models than it can have open files.
Fd Staging::takeSpare(const std::string& path)
{
    const std::string spare = std::exchange(m_spare, {});
    if (spare.empty()) {
        return {};
    }
    Fd file(::open(spare.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW), path);
    if (!file || ::rename(spare.c_str(), path.c_str()) != 0) {
        ::unlink(spare.c_str());
        return {};
    }
    return file;
}

std::shared_ptr<StagedFile> Staging::copy(const std::string& name, const Fd& from)
{
    auto staged = newFile(name);
    const Fd file = create(*staged);
    Disk::instance().copy(from, file);
    staged->seal();
    return staged;
}

std::shared_ptr<StagedFile> Staging::link(const std::string& name, const std::string& path)
{
    auto staged = newFile(name);
    if (::link(path.c_str(), staged->path().c_str()) != 0) {
        return copy(name, openPath(path, O_RDONLY | O_NOFOLLOW));
    }
    staged->seal();
    return staged;
}

} // namespace pk::project
