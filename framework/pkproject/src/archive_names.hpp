#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pk::project {

/// Foresees how long the archive library (libzip, lib/zip_hash.c) takes to tell the names of a new
/// archive apart. It compares a name with those in the same place of its table, and anybody can
/// make names that all have the same one: a million of them would take hours.
class ArchiveNames
{
public:
    /// Adds a name that is no other. Throws LimitError when it and those before take more
    /// comparisons than a quarter of a second has.
    void add(const std::string& name);

private:
    void grow();

    std::vector<std::uint32_t> m_hashes;
    std::vector<std::uint32_t> m_counts = std::vector<std::uint32_t>(256); ///< by place
    std::uint64_t m_comparisons = 0;
};

} // namespace pk::project
