#pragma once

#include "disk.hpp"

#include <pk/project/archive_limits.hpp>

#include <cstdint>
#include <string>

namespace pk::project {

/// Where an archive has its central directory, and how many entries that has.
struct CentralDirectory
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t count = 0;
};

/// Looks at an archive's headers before the archive library does, which believes what they say: it
/// spends time and memory on as many entries and extra fields as there are, shows a name up to its
/// first NUL, and lets entries share bytes. After this, opening the archive with the archive
/// library costs in proportion to its central directory, the bytes of no two entries overlap, and
/// the two headers of each say the same.
///
/// All that holds of the central directory that it gives. The archive library must be shown that
/// one alone: it might find another one, by its own reading of the records at the end.
///
/// Throws FormatError for what is no zip archive or a damaged one, LimitError for one with too many
/// entries or too large a central directory.
CentralDirectory checkArchive(const Fd& file, const std::string& path, const ArchiveLimits& limits);

/// Whether a normalised path can stand in an archive. On a system that takes "\" for "/" and "C:"
/// for a drive, it must not lead out of the place that the archive is unpacked to.
bool isArchivePath(const std::string& path);

} // namespace pk::project
