#include "export.hpp"

#include "place.hpp"

#include <pk/project/error.hpp>

namespace pk::project {

namespace {

std::string unusedName(const std::string& base)
{
    std::string name = base;
    for (int number = 1; statOf(name); ++number) {
        name = base + std::to_string(number);
    }
    return name;
}

} // namespace

Exporter::Exporter(std::string localPath) : m_root(std::move(localPath)) {}

void Exporter::makeDirectory(const std::string& path, mode_t mode)
{
    std::string local = localPath(path);
    auto info = statOf(local);
    if (path.empty() && info && S_ISLNK(info->st_mode)) {
        // The place itself may be reached through a link; nothing below it may.
        local = m_root = Place::of(m_root).path;
        info = statOf(local);
    }
    if (!info) {
        Disk::instance().mkdir(local, mode | 0700);
        m_directories.emplace_back(std::move(local), mode);
    } else if (!S_ISDIR(info->st_mode)) {
        throw IoError(local + ": a file or a symbolic link is in the way of a directory");
    }
}

void Exporter::writeFile(const std::string& path, const Fd& from, mode_t mode)
{
    const std::string local = localPath(path);
    const bool isThere = exists(local);
    const std::string fresh =
        isThere ? unusedName(local.substr(0, local.rfind('/') + 1) + ".kxexport") : local;
    const Fd file = Disk::instance().create(fresh, mode); // nobody else's: it is removed below
    try {
        Disk::instance().copy(from, file);
        if (isThere) {
            Disk::instance().rename(fresh, local);
        }
    } catch (const IoError&) {
        removeTree(fresh);
        throw;
    }
}

void Exporter::finish()
{
    for (auto it = m_directories.rbegin(); it != m_directories.rend(); ++it) {
        if ((it->second & 0700) != 0700) {
            Disk::instance().chmod(it->first, it->second);
        }
    }
}

std::string Exporter::localPath(const std::string& path) const
{
    return path.empty() ? m_root : m_root + "/" + path;
}

} // namespace pk::project
