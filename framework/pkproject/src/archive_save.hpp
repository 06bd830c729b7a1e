#pragma once

#include "archive_names.hpp"
#include "contents.hpp"
#include "index.hpp"
#include "metadata.hpp"
#include "read_ahead.hpp"

#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pk::project {

/// Writes a project as a zip archive: every file and directory, in the order of the tree, with its
/// mode and the earliest time that the format knows, so that the same project always gives the same
/// bytes. What an archive that is the source holds unchanged is copied as it is, without unpacking.
class ArchiveSave
{
public:
    ArchiveSave(Index& index, Contents& contents, const Metadata& metadata);
    ~ArchiveSave();
    ArchiveSave(const ArchiveSave&) = delete;
    ArchiveSave& operator=(const ArchiveSave&) = delete;
    ArchiveSave(ArchiveSave&&) = delete;
    ArchiveSave& operator=(ArchiveSave&&) = delete;

    /// Keeps the source archive's version-control files; for a save in place.
    void keepForeign();

    /// Unpacks what is copied from the source archive once, so that damage is found; for a save to
    /// another place.
    void verifyOriginals();

    /// Writes the archive to a new file and waits until it is on the disk. The file stays open for
    /// reading. A file that openUnlessGone() does not find is left out. Throws IoError, InvalidPath
    /// for a name that no archive can hold, LimitError for names that ArchiveNames refuses, and
    /// what Contents::open() throws.
    Fd write(const std::string& path, mode_t mode);

    /// Tells the index's entries, and the source that the new archive becomes, where things are in
    /// it, and removes those that were left out. Called when the new archive has taken its place.
    void adopt(ArchiveSource& source) const;

private:
    class Input;
    class Original;
    class Output;
    void addDirectory(zip_t* zip, Entry& directory);
    void addFolder(zip_t* zip, const std::string& name, mode_t mode);
    void addFile(zip_t* zip, Entry& entry);
    void addMetadata(zip_t* zip);
    void addOriginal(zip_t* zip, const std::string& name, std::uint64_t position, mode_t mode);
    void addForeign(zip_t* zip);
    void addSource(zip_t* zip, const std::string& name, zip_source_t* source, mode_t mode);
    void finishEntry(zip_t* zip, zip_int64_t position, const std::string& name, mode_t mode) const;
    [[noreturn]] void fail(const std::string& name, const std::string& reason) const;
    template <class Action>
    zip_int64_t guard(const Action& action);

    struct Added
    {
        Entry* entry;
        std::uint64_t position;
        std::uint64_t bytes;
    };
    Index& m_index;
    Contents& m_contents;
    QByteArray m_metadata;
    time_t m_noTime; ///< of every entry, so that the same project gives the same bytes
    bool m_keepForeign = false;
    bool m_verifyOriginals = false;
    std::vector<std::unique_ptr<Input>> m_inputs;
    std::vector<std::unique_ptr<Original>> m_originals;
    std::unique_ptr<ReadAhead> m_ahead; ///< of the archive that is the source
    ArchiveNames m_names;
    std::vector<Added> m_added;
    std::vector<ArchiveSource::Foreign> m_foreign; ///< in the new archive
    std::vector<Entry*> m_leftOut;
    std::string m_path;
    std::exception_ptr m_failure; ///< what a callback threw below the archive library
};

} // namespace pk::project
