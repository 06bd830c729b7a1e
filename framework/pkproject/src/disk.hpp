#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

/// What the store does on the local disk. Paths are absolute and UTF-8; every failure is an IoError
/// that names the path and the reason.
namespace pk::project {

/// An open file or directory, closed on destruction; never inherited by a started program.
class Fd
{
public:
    Fd() = default;
    Fd(int fd, std::string path) : m_fd(fd), m_path(std::move(path)) {}
    ~Fd() { reset(); }
    Fd(Fd&& other) noexcept;
    Fd& operator=(Fd&& other) noexcept;
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;

    explicit operator bool() const { return m_fd >= 0; }
    int get() const { return m_fd; }
    /// Gives up the descriptor without closing it.
    int release();
    void reset();
    /// The path it was opened by, for messages.
    const std::string& path() const { return m_path; }

private:
    int m_fd = -1;
    std::string m_path;
};

/// The one seam through which the store changes anything outside its staging directories, writes
/// the bytes of files in them, and looks at projects and their journals. Tests put another object
/// in its place to see each single operation, and to make it fail.
class Disk
{
public:
    Disk() = default;
    virtual ~Disk() = default;
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    Disk(Disk&&) = delete;
    Disk& operator=(Disk&&) = delete;

    /// The object in use. All of the store's threads use the same.
    static Disk& instance();
    /// Puts `disk`, which the caller owns, in the place of the usual object; null brings that back.
    static void replace(Disk* disk);

    /// Creates a file that does not exist yet, to be written.
    virtual Fd create(const std::string& path, mode_t mode);
    virtual void write(const Fd& file, const char* bytes, std::size_t size);
    /// Appends the bytes of `from` that follow its position; the kernel copies, or shares, them.
    virtual void copy(const Fd& from, const Fd& to);
    /// Waits until a file or directory is on the disk.
    virtual void sync(const Fd& file);
    /// Waits until everything on the file system that holds `path` is on the disk.
    virtual void syncFileSystem(const std::string& path);
    virtual void mkdir(const std::string& path, mode_t mode);
    virtual void chmod(const std::string& path, mode_t mode);
    /// Sets the modification time of a directory, in nanoseconds since the epoch; to the current
    /// time where only that is permitted.
    virtual void setTime(const std::string& path, std::int64_t time);
    /// Renames, replacing a file that is in the way.
    virtual void rename(const std::string& from, const std::string& to);
    /// Renames to a place where nothing is; AlreadyExists when something is.
    virtual void renameNew(const std::string& from, const std::string& to);
    /// Lets two existing things change places, in one step.
    virtual void exchange(const std::string& a, const std::string& b);
    /// Gives an existing file a second name.
    virtual void link(const std::string& from, const std::string& to);
    virtual void unlink(const std::string& path);
    virtual void rmdir(const std::string& path);
    /// Takes the kernel's lock on an open file, held until the file is closed. False when somebody
    /// else has it.
    virtual bool lock(const Fd& file);

    /// Asked before anything is opened or looked at by the functions below: the errno with which
    /// that fails, 0 for none.
    virtual int refusal(const std::string& path);
};

/// The permission bits of `mode` that the process's umask leaves, as it was when first asked for.
std::uint16_t umaskLeaves(mode_t mode);

/// Throws the IoError for the current errno.
[[noreturn]] void throwErrno(const std::string& path);

/// lstat(); nothing when there is nothing at `path`.
std::optional<struct stat> statOf(const std::string& path);

/// Whether anything is at `path`, no link followed.
inline bool exists(const std::string& path)
{
    return statOf(path).has_value();
}

/// Whether a directory is at `path`; a link to one is none.
inline bool isDirectory(const std::string& path)
{
    const auto info = statOf(path);
    return info && S_ISDIR(info->st_mode);
}

/// fstat().
struct stat statOf(const Fd& file);

/// The modification time in nanoseconds since the epoch.
std::int64_t modificationTime(const struct stat& info);

/// Opens what exists with open(2)'s `flags`.
Fd openPath(const std::string& path, int flags);

/// Opens `path` relative to an open directory without following any symbolic link on the way or
/// leaving the directory. An empty path is the directory itself. Gives nothing, with errno set,
/// when that can't be done.
Fd openBeneath(const Fd& directory, const std::string& path, int flags);

/// lstat() of what an open directory has under a name; nothing when there is nothing.
std::optional<struct stat> statIn(const Fd& directory, const std::string& name);

/// Opens a directory in an open one to be read, and looks at it; a link is not followed. Gives
/// nothing, with errno set, when it can't be read or entered.
Fd openDirectoryIn(const Fd& directory, const std::string& name, struct stat& info);

struct DirectoryEntry
{
    std::string name;
    bool isDirectory; ///< false also where the file system does not say
};

/// What is in an open directory that nobody has read from, "." and ".." left out, in no order.
std::vector<DirectoryEntry> entriesIn(const Fd& directory);

/// The names alone, also of a directory that was read before.
std::vector<std::string> namesIn(const Fd& directory);

/// Most bytes that a QByteArray holds.
constexpr std::int64_t a_largestArray = std::numeric_limits<int>::max() - 32;

/// All bytes that follow the file's position. Throws IoError, and LimitError for more than `most`.
QByteArray readAll(const Fd& file, std::int64_t most = a_largestArray);
/// The same of a file that is known to have `size` bytes.
QByteArray readAll(const Fd& file, std::int64_t size, std::int64_t most);

/// Whether two open files, which are at their beginnings, hold the same bytes.
bool sameBytes(const Fd& a, const Fd& b);

/// Copies the bytes of `from` into a new file with the given mode; gives the new file.
Fd copyToNewFile(const Fd& from, const std::string& to, mode_t mode);

/// Opens a directory and syncs it.
void syncDirectory(const std::string& path);

/// Removes a file, or a directory with all it holds; links are removed, not followed. Nothing at
/// `path` is no error.
void removeTree(const std::string& path);

} // namespace pk::project
