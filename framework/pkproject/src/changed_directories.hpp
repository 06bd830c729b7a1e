#pragma once

#include "disk.hpp"

#include <cstddef>
#include <set>
#include <string>

namespace pk::project {

/// Syncs each directory that was added, once.
class ChangedDirectories
{
public:
    void addParentOf(const std::string& path) { m_paths.insert(path.substr(0, path.rfind('/'))); }
    /// `anyPath` is one of the same file system.
    void sync(const std::string& anyPath) const
    {
        if (m_paths.size() > a_manyDirectories) {
            Disk::instance().syncFileSystem(anyPath);
            return;
        }
        for (const std::string& path : m_paths) {
            // A directory can have been moved away since.
            if (isDirectory(path)) {
                syncDirectory(path);
            }
        }
    }

private:
    // From this many on, one sync of the file system is cheaper than one for each directory.
    static constexpr std::size_t a_manyDirectories = 32;

    std::set<std::string> m_paths;
};

} // namespace pk::project
