#include "directory_source.hpp"

#include "conflict.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <QString>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace pk::project {

namespace {

bool isUtf8(const std::string& name)
{
    const bool ascii = std::all_of(name.begin(), name.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return ascii || QString::fromStdString(name).toStdString() == name;
}

// A name that may not be UTF-8, for a text that is.
std::string printable(const std::string& name)
{
    if (isUtf8(name)) {
        return name;
    }
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
        }
    }
    return text;
}

// The entries of the source that it has in a directory, by the names that it has them under.
std::map<std::string, const Entry*> childrenInSource(const Entry& directory)
{
    std::map<std::string, const Entry*> children;
    for (const auto& child : directory.folder->children) {
        if (child->inSource && !child->wasMoved()) {
            children.emplace(child->name, child.get());
        }
    }
    for (const auto& ghost : directory.folder->ghosts) {
        const Entry* const entry =
            ghost.second.removed ? ghost.second.removed.get() : ghost.second.moved;
        children.emplace(ghost.first, entry);
    }
    return children;
}

} // namespace

// What a directory has under a name.
struct DirectorySource::Found
{
    struct stat info = {};
    Fd directory;         ///< open, when it is one
    std::string obstacle; ///< why it is no part of the project; empty when it is one
};

DirectorySource::DirectorySource(Place place, Fd root)
    : m_place(std::move(place)), m_root(std::move(root))
{
    remember(metadataStamp());
}

void DirectorySource::load(Index& index)
{
    index.root().mode = static_cast<std::uint16_t>(statOf(m_root).st_mode & 0777);
    loadDirectory({openTop(), {}, 0}, index.root());
}

// The directory, to be read from its beginning.
Fd DirectorySource::openTop() const
{
    Fd top = openBeneath(m_root, {}, O_RDONLY | O_DIRECTORY);
    if (!top) {
        throwErrno(m_place.path);
    }
    return {top.release(), m_place.path};
}

Metadata DirectorySource::loadMetadata() const
{
    const std::string path = m_place.path + "/" + a_metadataFile;
    const auto info = stat(a_metadataFile);
    if (!info) {
        return {};
    }
    if (!S_ISREG(info->st_mode)) {
        throw FormatError(path + ": it is no file");
    }
    const Fd file = openBeneath(m_root, a_metadataFile, O_RDONLY);
    if (!file) {
        throwErrno(path);
    }
    return readMetadata(file);
}

Fd DirectorySource::open(const Entry& entry) const
{
    const std::string path = Index::sourcePath(entry);
    Fd file = openAnything(entry, path);
    requireFile(file, path);
    return file;
}

QByteArray DirectorySource::read(const Entry& entry, std::int64_t most) const
{
    const std::string path = Index::sourcePath(entry);
    const Fd file = openAnything(entry, path);
    // What has as many bytes as when it was looked at is a file, and needs no other look. From
    // somebody's pipe or terminal nothing is taken at a position.
    const std::int64_t size = entry.stamp.bytes;
    if (size > 0 && size <= most) {
        QByteArray bytes(static_cast<int>(size) + 1, Qt::Uninitialized);
        if (::pread(file.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), 0) == size) {
            bytes.chop(1);
            return bytes;
        }
    }
    return readAll(file, requireFile(file, path), most);
}

// Whatever is there now.
Fd DirectorySource::openAnything(const Entry& entry, const std::string& path) const
{
    // Without O_NONBLOCK a pipe that somebody put in the file's place would block.
    Fd file = openNow(entry, path, O_RDONLY | O_NONBLOCK);
    if (!file && errno != ENOENT && errno != ENOTDIR) {
        throwErrno(m_place.path + "/" + path);
    }
    if (!file) {
        failRemoved(path);
    }
    return file;
}

// Gives the size.
std::int64_t DirectorySource::requireFile(const Fd& file, const std::string& path) const
{
    const struct stat info = statOf(file);
    if (S_ISDIR(info.st_mode)) {
        failRemoved(path);
    }
    if (!S_ISREG(info.st_mode)) {
        throw IoError(m_place.path + "/" + path +
                      ": replaced by someone else since the project was opened");
    }
    return info.st_size;
}

void DirectorySource::failRemoved(const std::string& path) const
{
    throw PathNotFound(m_place.path + "/" + path +
                       ": removed by someone else since the project was opened");
}

std::string DirectorySource::localPath(const Entry& entry) const
{
    const std::string path = Index::sourcePath(entry);
    const auto elsewhere = m_unfinished ? JournalDirectory::whereIs(m_place, *m_unfinished, path)
                                        : std::optional<std::string>();
    return elsewhere.value_or(m_place.path + "/" + path);
}

// Gives nothing, with errno set, when there is no such file or a link is on the way.
Fd DirectorySource::openNow(const Entry& entry, const std::string& path, int flags) const
{
    if (!m_unfinished) {
        return openBeneath(m_root, path, flags);
    }
    if (const auto now = JournalDirectory::whereIs(m_place, *m_unfinished, path)) {
        const std::string above = now->substr(0, now->find('/', m_place.parent.size() + 1));
        return openBeneath(openPath(above, O_RDONLY | O_DIRECTORY | O_NOFOLLOW),
                           now->substr(above.size() + 1), flags);
    }
    // Somebody completed the save, so that another file may be at the path.
    Fd file = openBeneath(m_root, path, flags);
    if (file && Stamp::of(statOf(file)) != entry.stamp) {
        file.reset();
        errno = ENOENT;
    }
    return file;
}

std::optional<struct stat> DirectorySource::stat(const std::string& path) const
{
    const Fd file = openBeneath(m_root, path, O_PATH);
    if (file) {
        return statOf(file);
    }
    if (errno == ELOOP) {
        // A link there or on the way: something is in the way, though no part of the project.
        struct stat link = {};
        link.st_mode = S_IFLNK;
        return link;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        throwErrno(m_place.path + "/" + path);
    }
    return std::nullopt;
}

void DirectorySource::remember(const std::optional<Stamp>& metadataFile)
{
    m_metadataStamp = metadataFile;
    try {
        m_time = modificationTime(statOf(m_root));
    } catch (const IoError& error) {
        m_time = 0;
        warn(error.what(), __FILE__, "remember", __LINE__);
    }
}

void DirectorySource::checkUnchanged(const Index& index) const
{
    checkPlace();
    std::vector<std::string> changes = changesBelow(index.root());
    if (metadataStamp() != m_metadataStamp) {
        changes.emplace_back("the project's metadata");
    }
    if (!changes.empty()) {
        throwConflict(m_place.path, "since it was opened", changes);
    }
}

std::vector<std::string> DirectorySource::changesBelow(const Entry& directory) const
{
    std::vector<std::string> changes;
    const std::string path = Index::sourcePath(directory);
    const Fd fd = openBeneath(m_root, path, O_RDONLY | O_DIRECTORY);
    if (fd) {
        const auto depth = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
        compare({fd, path, path.empty() ? 0 : depth + 1}, directory, changes);
    } else if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP ||
               (errno == EACCES && (directory.mode & 0500) == 0500)) {
        changes.push_back("'" + path + "'");
    } else if (errno != EACCES) {
        throwErrno(m_place.path + "/" + path);
    }
    return changes;
}

bool DirectorySource::mayHaveChanged() const
{
    checkPlace();
    return modificationTime(statOf(m_root)) != m_time || metadataStamp() != m_metadataStamp;
}

void DirectorySource::checkPlace() const
{
    const auto now = statOf(m_place.path);
    const struct stat mine = statOf(m_root);
    if (!now || now->st_ino != mine.st_ino || now->st_dev != mine.st_dev) {
        throw ConflictError(m_place.path +
                            ": moved or replaced by someone else since it was opened");
    }
}

// Nothing for what is gone meanwhile.
std::optional<DirectorySource::Found> DirectorySource::look(const Level& level,
                                                            const DirectoryEntry& entry)
{
    const std::string& name = entry.name;
    Found found;
    found.obstacle = obstacleOf(level, name);
    // Opening a directory tells all that a look before would.
    if (entry.isDirectory && found.obstacle.empty()) {
        found.directory = openDirectoryIn(level.fd, name, found.info);
        if (found.directory) {
            return found;
        }
    }
    const auto info = statIn(level.fd, name);
    if (!info) {
        return std::nullopt;
    }
    found.info = *info;
    if (S_ISLNK(info->st_mode)) {
        found.obstacle = "it is a symbolic link";
    } else if (!S_ISREG(info->st_mode) && !S_ISDIR(info->st_mode)) {
        found.obstacle = "it is neither a file nor a directory";
    } else if (S_ISDIR(info->st_mode) && found.obstacle.empty()) {
        found.directory = openDirectoryIn(level.fd, name, found.info);
        if (!found.directory && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP)) {
            return std::nullopt; // gone or replaced just now
        }
        if (!found.directory && errno != EACCES) {
            throwErrno(level.fd.path() + "/" + name);
        }
        found.obstacle = found.directory ? "" : "it can't be read";
    }
    return found;
}

// Why no project can have what has this name; empty when one can.
std::string DirectorySource::obstacleOf(const Level& level, const std::string& name)
{
    if (beginsWithMark(name)) {
        return "its name begins with a byte order mark";
    }
    if (!isUtf8(name)) {
        return "its name is not UTF-8";
    }
    const std::size_t bytes = level.path.size() + (level.path.empty() ? 0 : 1) + name.size();
    return isTooLong(bytes, level.depth + 1) ? "its path is too long" : "";
}

void DirectorySource::loadDirectory(const Level& level, Entry& directory)
{
    for (DirectoryEntry& listed : entriesIn(level.fd)) {
        std::string& name = listed.name;
        if (directory.parent == nullptr && isReservedName(name)) {
            continue;
        }
        const auto found = look(level, listed);
        if (!found) {
            continue;
        }
        if (!found->obstacle.empty()) {
            warn(level.fd.path() + "/" + printable(name) + ": left out of the project, because " +
                     found->obstacle,
                 __FILE__, "load", __LINE__);
            Index::leaveOut(directory, std::move(name));
            continue;
        }
        const std::string path = joinPath(level.path, name);
        Entry& entry = Index::appendLoaded(directory, std::move(name), S_ISDIR(found->info.st_mode),
                                           static_cast<std::uint16_t>(found->info.st_mode & 0777));
        entry.stamp = Stamp::of(found->info);
        ++m_size;
        if (entry.isDirectory()) {
            loadDirectory({found->directory, path, level.depth + 1}, entry);
        }
    }
    Index::sortLoaded(directory);
}

void DirectorySource::compare(const Level& level, const Entry& directory,
                              std::vector<std::string>& changes)
{
    auto known = childrenInSource(directory);
    for (const DirectoryEntry& listed : entriesIn(level.fd)) {
        const std::string& name = listed.name;
        if (level.path.empty() && isReservedName(name)) {
            continue;
        }
        const auto found = look(level, listed);
        const auto it = known.find(name);
        const bool isDirectory = found && S_ISDIR(found->info.st_mode);
        if (!found || (!found->obstacle.empty() && (it == known.end() || !isDirectory))) {
            continue;
        }
        const std::string path = joinPath(level.path, name);
        if (it == known.end()) {
            changes.push_back("'" + path + "' was added");
            continue;
        }
        const Entry& entry = *it->second;
        known.erase(it);
        if (isDirectory != entry.isDirectory()) {
            changes.push_back("'" + path + "' was replaced");
        } else if (!found->obstacle.empty()) {
            if ((entry.mode & 0500) == 0500) { // else nobody changed that
                changes.push_back("'" + path + "' can't be read any more");
            }
        } else if (isDirectory) {
            compare({found->directory, path, level.depth + 1}, entry, changes);
        } else if (Stamp::of(found->info) != entry.stamp) {
            changes.push_back("'" + path + "' was changed");
        }
    }
    for (const auto& missing : known) {
        changes.push_back("'" + joinPath(level.path, missing.first) + "' was removed");
    }
}

std::vector<std::string> DirectorySource::changesSince(const Base& base) const
{
    const Stamp now = stamp();
    if (now.id != base.stamp.id) {
        return {"'" + m_place.path + "' was replaced"};
    }
    std::vector<std::string> changes;
    if (now.time != base.stamp.time) {
        changes.push_back("'" + m_place.path + "' had entries added or removed");
    }
    collectChanges({openTop(), {}, 0}, base.time, changes);
    return changes;
}

void DirectorySource::collectChanges(const Level& level, std::int64_t time,
                                     std::vector<std::string>& changes)
{
    constexpr std::int64_t second = 1'000'000'000;
    for (const DirectoryEntry& listed : entriesIn(level.fd)) {
        const std::string& name = listed.name;
        if (level.path.empty() && isReservedName(name) && name != a_metadataFile) {
            continue;
        }
        const auto found = look(level, listed);
        if (!found) {
            continue;
        }
        const std::string path = joinPath(level.path, name);
        // Whoever writes, renames, links or replaces a file can't set this time as he likes.
        if (found->info.st_ctim.tv_sec * second + found->info.st_ctim.tv_nsec > time) {
            changes.push_back("'" + printable(path) + "' was changed");
        }
        if (found->directory) {
            collectChanges({found->directory, path, level.depth + 1}, time, changes);
        }
    }
}

mode_t DirectorySource::metadataMode() const
{
    const auto info = stat(a_metadataFile);
    return info ? info->st_mode & 0777 : umaskLeaves(0666);
}

std::optional<Stamp> DirectorySource::metadataStamp() const
{
    const auto info = stat(a_metadataFile);
    return info ? std::optional<Stamp>(Stamp::of(*info)) : std::nullopt;
}

} // namespace pk::project
