#pragma once

#include <cstdint>

namespace pk::project {

/// The usual bounds within which archives are read, so that a hostile one costs its reader little
/// time and memory.
namespace archive_limits {

/// Entries in one archive, and directories that have none but are there for what they hold.
constexpr std::uint64_t a_maxEntries = 250'000;

/// Unpacked bytes of one file.
constexpr std::uint64_t a_maxFileBytes = std::uint64_t{1} << 30;

/// Unpacked bytes of all files.
constexpr std::uint64_t a_maxBytes = std::uint64_t{4} << 30;

/// Unpacked bytes of all files for each byte of the archive, looked at only when the archive
/// unpacks to more than a_ratioFreeBytes.
constexpr std::uint64_t a_maxRatio = 200;
constexpr std::uint64_t a_ratioFreeBytes = std::uint64_t{64} << 20;

/// Bytes of the central directory, which holds the names, bytes of the names in UTF-8, and bytes of
/// the headers that the entries have of their own. The former two are kept in memory.
constexpr std::uint64_t a_maxDirectoryBytes = std::uint64_t{32} << 20;

/// Unpacked bytes of the metadata file, in a directory as well. It is read into memory.
constexpr std::uint64_t a_maxMetadataBytes = std::uint64_t{4} << 20;

} // namespace archive_limits

/// The bounds within which a ProjectModel reads archives; a caller who trusts what it opens, or has
/// large projects, raises them. What is exactly at a bound is read. An archive that declares more
/// is refused with LimitError when it is opened, and a save that would make one is refused as well;
/// an entry that unpacks to more than it declares is damaged.
struct ArchiveLimits
{
    std::uint64_t entries = archive_limits::a_maxEntries;
    std::uint64_t fileBytes = archive_limits::a_maxFileBytes;
    std::uint64_t bytes = archive_limits::a_maxBytes;
    std::uint64_t ratio = archive_limits::a_maxRatio; ///< 0 stands for 1
    std::uint64_t ratioFreeBytes = archive_limits::a_ratioFreeBytes;
    std::uint64_t directoryBytes = archive_limits::a_maxDirectoryBytes;
    std::uint64_t metadataBytes = archive_limits::a_maxMetadataBytes;
};

} // namespace pk::project
