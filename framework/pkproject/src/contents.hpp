#pragma once

#include "archive.hpp"
#include "directory_source.hpp"
#include "index.hpp"
#include "staging.hpp"

#include <memory>
#include <string>

namespace pk::project {

/// Where the bytes of a model's files are: in its staging directory, or in its source, which is a
/// directory, an archive, or none.
class Contents
{
public:
    /// Opens an entry's bytes for reading. Throws IoError, or FormatError for a damaged archive.
    Fd open(Entry& entry);

    /// All bytes of an entry; throws as open(), and LimitError for more than `most`. Nothing is
    /// unpacked on the disk.
    QByteArray read(const Entry& entry, std::int64_t most) const;

    /// How many bytes an entry has, or had in the source when that was opened. Throws IoError.
    std::int64_t size(const Entry& entry) const;

    /// Where the source is; null when there is none.
    const Place* place() const;

    /// As open(), but gives nothing, with a warning in the log, for a file of the source that
    /// someone removed since it was opened: whoever did decided so, and what was edited here is
    /// worth more than a refusal to save it elsewhere.
    Fd openUnlessGone(Entry& entry);

    /// A local path at which the entry's bytes can be read; throws as open().
    std::string localPath(Entry& entry);

    /// A staged file with the entry's bytes that nobody will change, for another model to share:
    /// in `staging`: the entry's own where that is possible. Throws as open().
    std::shared_ptr<StagedFile> share(Entry& entry, Staging& staging);

    /// The bytes of a copy of the entry's file in this model's staging directory, to be changed;
    /// throws as open().
    std::shared_ptr<StagedFile> copy(Entry& entry);

    const std::shared_ptr<Staging>& staging() const { return m_staging; }
    /// Shares the staging directory of another model that takes this one's place.
    void setStaging(std::shared_ptr<Staging> staging) { m_staging = std::move(staging); }

    std::unique_ptr<DirectorySource> directory; ///< null when the source is no directory
    std::unique_ptr<ArchiveSource> archive;     ///< null when the source is no archive

private:
    void unpack(Entry& entry);

    std::shared_ptr<Staging> m_staging = Staging::make();
};

} // namespace pk::project
