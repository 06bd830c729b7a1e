#pragma once

#include "disk.hpp"
#include "edit_log.hpp"
#include "index.hpp"
#include "journal_directory.hpp"
#include "metadata.hpp"
#include "place.hpp"

#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pk::project {

/// A project directory that a model was opened from or saved to. It is only read here; no symbolic
/// link below it is ever followed.
class DirectorySource
{
public:
    /// The source in an open directory, which is, or is about to be, at `place`. Throws IoError.
    DirectorySource(Place place, Fd root);

    const Place& place() const { return m_place; }

    /// The directory itself, as it is now.
    Stamp stamp() const { return Stamp::of(statOf(m_root)); }

    /// What is not as it was at `base`, going by the times of all files and directories.
    std::vector<std::string> changesSince(const Base& base) const;

    /// Fills an empty index with what the directory holds. Left out, with one warning each in the
    /// log, are symbolic links and special files, names that are not UTF-8 or begin with a byte
    /// order mark, directories that can't be read, and what has a path that no project can have.
    /// Throws IoError.
    void load(Index& index);

    /// Reads the metadata file. Throws FormatError, IoError, and LimitError for one with more than
    /// archive_limits::a_maxMetadataBytes.
    Metadata loadMetadata() const;

    /// Opens a file of the source for reading. Throws PathNotFound when someone removed it,
    /// IoError.
    Fd open(const Entry& entry) const;
    /// All bytes of a file of the source; throws as open(), and LimitError for more than `most`.
    QByteArray read(const Entry& entry, std::int64_t most) const;

    /// The path of a file of the source on the disk.
    std::string localPath(const Entry& entry) const;

    /// What is at a path below the directory now, no link followed; nothing when there is nothing.
    /// Of a link, there or on the way, only that it is one.
    std::optional<struct stat> stat(const std::string& path) const;

    /// Takes note of how the directory itself is now, and of its metadata file. Called after a
    /// save, which it can't make fail: what can't be seen counts as changed.
    void remember(const std::optional<Stamp>& metadataFile);

    /// Throws ConflictError, which lists what is different, unless all of the directory is as the
    /// index knows it.
    void checkUnchanged(const Index& index) const;
    /// The same for one directory of the source and all below it; gives the differences.
    std::vector<std::string> changesBelow(const Entry& directory) const;

    /// Whether a cheap look says that something may have changed: another save took place, or an
    /// entry of the top directory came or went.
    bool mayHaveChanged() const;

    /// The metadata file, if it is there, as it was when last looked at.
    const std::optional<Stamp>& metadataFile() const { return m_metadataStamp; }

    /// A save in place that failed and could not be undone yet. Files of the source are found all
    /// the same.
    const std::optional<JournalDirectory::Unfinished>& unfinished() const { return m_unfinished; }
    void setUnfinished(std::optional<JournalDirectory::Unfinished> u)
    {
        m_unfinished = std::move(u);
    }

    /// The mode of the metadata file, or the one for a new one.
    mode_t metadataMode() const;

    /// Files and directories, when last loaded or saved whole.
    std::size_t size() const { return m_size; }
    void setSize(std::size_t size) { m_size = size; }

private:
    struct Found;
    struct Level
    {
        const Fd& fd;
        std::string path; ///< below the project
        std::size_t depth;
    };
    static std::optional<Found> look(const Level& level, const DirectoryEntry& entry);
    static std::string obstacleOf(const Level& level, const std::string& name);
    Fd openTop() const;
    void checkPlace() const;
    Fd openAnything(const Entry& entry, const std::string& path) const;
    std::int64_t requireFile(const Fd& file, const std::string& path) const;
    [[noreturn]] void failRemoved(const std::string& path) const;
    Fd openNow(const Entry& entry, const std::string& path, int flags) const;
    void loadDirectory(const Level& level, Entry& directory);
    static void compare(const Level& level, const Entry& directory,
                        std::vector<std::string>& changes);
    std::optional<Stamp> metadataStamp() const;
    static void collectChanges(const Level& level, std::int64_t time,
                               std::vector<std::string>& changes);

    Place m_place;
    Fd m_root;
    std::int64_t m_time = 0;
    std::optional<Stamp> m_metadataStamp;
    std::size_t m_size = 0;
    std::optional<JournalDirectory::Unfinished> m_unfinished;
};

} // namespace pk::project
