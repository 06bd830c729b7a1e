#include "directory_source.hpp"

#include <pk/project/error.hpp>

#include <QString>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace pk::project {

namespace {

// More than these make a message unreadable.
constexpr std::size_t a_listedChanges = 20;

bool isPartOfProject(const struct stat& info)
{
    return S_ISREG(info.st_mode) || S_ISDIR(info.st_mode);
}

void checkName(const std::string& directory, const std::string& name)
{
    const bool ascii = std::all_of(name.begin(), name.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (beginsWithMark(name)) {
        throw FormatError(directory + "/" + name +
                          ": a name in a project has no byte order mark in front");
    }
    if (!ascii && QString::fromStdString(name).toStdString() != name) {
        throw FormatError(directory + ": it holds a file name that is not UTF-8");
    }
}

std::optional<struct stat> statIn(const Fd& directory, const std::string& name)
{
    struct stat info = {};
    if (::fstatat(directory.get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
        return info;
    }
    if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
        throwErrno(directory.path() + "/" + name);
    }
    return std::nullopt;
}

Fd openDirectoryIn(const Fd& directory, const std::string& name)
{
    const std::string path = directory.path() + "/" + name;
    Fd fd(::openat(directory.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC),
          path);
    if (!fd) {
        throwErrno(path);
    }
    return fd;
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

std::string listing(const std::vector<std::string>& changes)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(changes.size(), a_listedChanges); ++i) {
        text += (i == 0 ? "" : ", ") + changes[i];
    }
    if (changes.size() > a_listedChanges) {
        text += ", and " + std::to_string(changes.size() - a_listedChanges) + " more";
    }
    return text;
}

DirectorySource::DirectorySource(Place place, Fd root)
    : m_place(std::move(place)), m_root(std::move(root))
{
    remember();
}

void DirectorySource::load(Index& index)
{
    index.root().mode = static_cast<std::uint16_t>(statOf(m_root).st_mode & 0777);
    loadDirectory(m_root, index.root());
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
    return parseMetadata(QByteArray::fromStdString(readAll(file)), path);
}

Fd DirectorySource::open(const Entry& entry) const
{
    const std::string path = Index::sourcePath(entry);
    // Without O_NONBLOCK a pipe that somebody put in the file's place would block.
    Fd file = openBeneath(m_root, path, O_RDONLY | O_NONBLOCK);
    if (!file) {
        if (errno == ENOENT || errno == ENOTDIR) {
            throw PathNotFound(m_place.path + "/" + path +
                               ": removed by someone else since the project was opened");
        }
        throwErrno(m_place.path + "/" + path);
    }
    return file;
}

std::string DirectorySource::localPath(const Entry& entry) const
{
    return m_place.path + "/" + Index::sourcePath(entry);
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

void DirectorySource::remember()
{
    m_time = modificationTime(statOf(m_root));
    m_metadataStamp = metadataStamp();
}

void DirectorySource::checkUnchanged(const Index& index) const
{
    std::vector<std::string> changes = changesBelow(index.root());
    if (metadataStamp() != m_metadataStamp) {
        changes.emplace_back("the project's metadata");
    }
    if (!changes.empty()) {
        throw ConflictError(m_place.path +
                            ": changed by someone else since it was opened: " + listing(changes));
    }
}

std::vector<std::string> DirectorySource::changesBelow(const Entry& directory) const
{
    std::vector<std::string> changes;
    const std::string path = Index::sourcePath(directory);
    const Fd fd = openBeneath(m_root, path, O_RDONLY | O_DIRECTORY);
    if (fd) {
        compare(fd, directory, path, changes);
    } else {
        changes.push_back("'" + path + "'");
    }
    return changes;
}

bool DirectorySource::mayHaveChanged() const
{
    const auto now = statOf(m_place.path);
    const struct stat mine = statOf(m_root);
    const bool replaced = !now || now->st_ino != mine.st_ino || now->st_dev != mine.st_dev;
    if (replaced) {
        throw ConflictError(m_place.path +
                            ": moved or replaced by someone else since it was opened");
    }
    return modificationTime(mine) != m_time || metadataStamp() != m_metadataStamp;
}

void DirectorySource::loadDirectory(const Fd& fd, Entry& directory)
{
    for (std::string& name : namesIn(fd)) {
        if (directory.parent == nullptr && isReservedName(name)) {
            continue;
        }
        checkName(fd.path(), name);
        const auto info = statIn(fd, name);
        if (!info || !isPartOfProject(*info)) {
            continue;
        }
        const bool isDirectory = S_ISDIR(info->st_mode);
        Entry& entry = Index::appendLoaded(directory, std::move(name), isDirectory,
                                           static_cast<std::uint16_t>(info->st_mode & 0777));
        entry.stamp = Stamp::of(*info);
        ++m_size;
        if (isDirectory) {
            loadDirectory(openDirectoryIn(fd, entry.name), entry);
        }
    }
    Index::sortLoaded(directory);
}

void DirectorySource::compare(const Fd& fd, const Entry& directory, const std::string& path,
                              std::vector<std::string>& changes) const
{
    auto known = childrenInSource(directory);
    for (const std::string& name : namesIn(fd)) {
        if (path.empty() && isReservedName(name)) {
            continue;
        }
        const auto info = statIn(fd, name);
        if (!info || !isPartOfProject(*info)) {
            continue;
        }
        const std::string childPath = joinPath(path, name);
        const auto it = known.find(name);
        if (it == known.end()) {
            changes.push_back("'" + childPath + "' was added");
            continue;
        }
        const Entry& entry = *it->second;
        known.erase(it);
        if (S_ISDIR(info->st_mode) != entry.isDirectory()) {
            changes.push_back("'" + childPath + "' was replaced");
        } else if (entry.isDirectory()) {
            compare(openDirectoryIn(fd, name), entry, childPath, changes);
        } else if (Stamp::of(*info) != entry.stamp) {
            changes.push_back("'" + childPath + "' was changed");
        }
    }
    for (const auto& missing : known) {
        changes.push_back("'" + joinPath(path, missing.first) + "' was removed");
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
    collectChanges(openBeneath(m_root, "", O_RDONLY | O_DIRECTORY), "", base.time, changes);
    return changes;
}

void DirectorySource::collectChanges(const Fd& fd, const std::string& path, std::int64_t time,
                                     std::vector<std::string>& changes) const
{
    constexpr std::int64_t second = 1'000'000'000;
    for (const std::string& name : namesIn(fd)) {
        const auto info = statIn(fd, name);
        if (!info || (path.empty() && isReservedName(name) && name != a_metadataFile)) {
            continue;
        }
        // Whoever writes, renames, links or replaces a file can't set this time as he likes.
        if (info->st_ctim.tv_sec * second + info->st_ctim.tv_nsec > time) {
            changes.push_back("'" + joinPath(path, name) + "' was changed");
        }
        if (S_ISDIR(info->st_mode)) {
            collectChanges(openDirectoryIn(fd, name), joinPath(path, name), time, changes);
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
