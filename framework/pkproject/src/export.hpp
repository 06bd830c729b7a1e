#pragma once

#include "disk.hpp"

#include <string>
#include <utility>
#include <vector>

namespace pk::project {

/// Writes files and directories of a project to a local place, as ProjectModel::exportFile()
/// describes it. Paths are relative to the place; the empty one is the place itself.
class Exporter
{
public:
    /// Exports to an absolute path; the directory above it must exist.
    explicit Exporter(std::string localPath);

    /// Makes a directory, or merges with the one that is there. Throws IoError.
    void makeDirectory(const std::string& path, mode_t mode);

    /// Creates or replaces a file with the bytes of `from`. Throws IoError.
    void writeFile(const std::string& path, const Fd& from, mode_t mode);

    /// Gives the new directories their modes, which may forbid to write in them.
    void finish();

private:
    std::string localPath(const std::string& path) const;

    std::string m_root;
    std::vector<std::pair<std::string, mode_t>> m_directories;
};

} // namespace pk::project
