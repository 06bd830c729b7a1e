#pragma once

#include <cstdint>

/// The bounds within which archives are read, so that a hostile one costs its reader little. An
/// archive that declares more is refused with LimitError when it is opened; an entry that unpacks
/// to more than it declares is damaged.
namespace pk::project::archive_limits {

/// Entries in one archive; and again, directories that have none but are there for what they hold.
constexpr std::uint64_t a_maxEntries = 250'000;

/// Unpacked bytes of one file.
constexpr std::uint64_t a_maxFileBytes = std::uint64_t{1} << 30;

/// Unpacked bytes of all files.
constexpr std::uint64_t a_maxBytes = std::uint64_t{4} << 30;

/// Unpacked bytes of all files for each byte of the archive, looked at only when the archive
/// unpacks to more than a_ratioFreeBytes.
constexpr std::uint64_t a_maxRatio = 200;
constexpr std::uint64_t a_ratioFreeBytes = std::uint64_t{64} << 20;

} // namespace pk::project::archive_limits
