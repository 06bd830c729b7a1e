#pragma once

#include "disk.hpp"
#include "unpacker.hpp"

#include <pk/project/archive_limits.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace pk::project {

/// What an archive's headers say of an entry.
struct ArchiveEntry
{
    std::string name; ///< in UTF-8, without a NUL
    PackedEntry content;
    bool isUnix = false; ///< whether it was made on such a system
    mode_t mode = 0;     ///< of that system; 0 when it does not say
};

/// The list of what an archive holds.
struct ArchiveDirectory
{
    std::vector<ArchiveEntry> entries; ///< by their positions

    /// The bytes of all entries lie in front of this place of the file.
    std::uint64_t end = 0;

    /// A central directory with the same entries for the archive library, without names and all
    /// else that it does not need to unpack them.
    std::string headers;
};

/// Reads the central directory of a zip archive (PKWARE's APPNOTE 6.3). The archive library would
/// believe what the headers say: spend time and memory on as many names and extra fields as there
/// are, show a name up to its first NUL, and let entries share bytes. Here all costs in proportion
/// to the size of the central directory, which is bounded, the bytes of no two entries overlap, and
/// the two headers of each say the same.
///
/// A name is in UTF-8 when it can be; else it is in the code page of the first PCs, 437, as the
/// format says, unless there is another in UTF-8 beside it (Info-ZIP's "Unicode Path").
///
/// Throws FormatError for what is no zip archive, a damaged one, or one with entries that are
/// encrypted or packed by a method that is not read; LimitError for too many entries, too large a
/// central directory or too large headers of entries; IoError.
ArchiveDirectory readArchiveDirectory(const Fd& file, const std::string& path,
                                      const ArchiveLimits& limits);

/// Whether a normalised path can stand in an archive. On a system that takes "\" for "/" and "C:"
/// for a drive, it must not lead out of the place that the archive is unpacked to.
bool isArchivePath(const std::string& path);

} // namespace pk::project
