#pragma once

#include "contents.hpp"
#include "edit_log.hpp"
#include "index.hpp"
#include "metadata.hpp"
#include "place.hpp"

#include <string>
#include <utility>
#include <vector>

namespace pk::project {

/// Saves a model to the directory that is its source, through a journal. The caller holds the lock
/// and has recovered the place. `metadata` is null when it is as it was when last saved. Throws
/// ConflictError, IoError, LimitError for too much metadata, and what reading the files throws; the
/// directory and the index are then as before. After it the index is settled. `log` is told how one
/// sees whether the save took effect, and when it was undone.
void saveInPlace(Index& index, Contents& contents, const Metadata* metadata, EditLog& log);

/// Writes a project as a new directory.
class DirectorySave
{
public:
    DirectorySave(Index& index, Contents& contents, const Metadata& metadata);

    /// Writes everything to a directory that does not exist yet and waits until it is on the disk.
    /// A file of the source that someone removed since it was opened, and that was not rewritten
    /// here, is left out with a warning in the log. `mode` may be that of an archive whose place
    /// the directory takes: who may read the one may also enter the other. Throws IoError and what
    /// reading the files throws.
    void write(const std::string& path, mode_t mode);

    /// Tells the index's entries how their files are in the new directory, and removes those that
    /// were left out. Called when the new directory has taken its place.
    void adopt() const;

    /// Files and directories written.
    std::size_t size() const { return m_size; }

private:
    void writeDirectory(Entry& directory, const std::string& path);
    void writeFile(Entry& entry, const std::string& path);

    Index& m_index;
    Contents& m_contents;
    const Metadata& m_metadata;
    std::vector<std::pair<Entry*, Stamp>> m_stamps;
    std::vector<Entry*> m_leftOut;
    std::size_t m_size = 0;
};

} // namespace pk::project
