#pragma once

#include "disk.hpp"

#include <pk/project/archive_limits.hpp>

#include <cstdint>
#include <string>

namespace pk::project {

/// What is behind the entries and the central directory of an archive and says where these are.
struct ArchiveEnd
{
    std::uint64_t at = 0; ///< where it begins
    std::string bytes;    ///< of its records, without the comment
};

/// Looks at an archive's headers before the archive library does, which believes what they say: it
/// spends time and memory on as many entries and extra fields as there are, shows a name up to its
/// first NUL, and lets entries share bytes. After this, opening the archive with the archive
/// library costs in proportion to its central directory, the bytes of no two entries overlap, and
/// the two headers of each say the same.
///
/// All that holds only of what is behind the end that it found, so the archive library must be
/// shown that end alone: it might take another one, that stands somewhere else or has bytes behind
/// it.
///
/// Throws FormatError for what is no zip archive or a damaged one, LimitError for one with too many
/// entries or too large a central directory.
ArchiveEnd checkArchive(const Fd& file, const std::string& path, const ArchiveLimits& limits);

/// Whether a normalised path can stand in an archive. On a system that takes "\" for "/" and "C:"
/// for a drive, it must not lead out of the place that the archive is unpacked to.
bool isArchivePath(const std::string& path);

} // namespace pk::project
