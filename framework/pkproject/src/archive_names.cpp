#include "archive_names.hpp"

#include <pk/project/error.hpp>

namespace pk::project {

namespace {

constexpr std::uint64_t a_mostComparisons = 20'000'000;

std::uint32_t hashOf(const std::string& name)
{
    std::uint32_t hash = 5381;
    for (const char byte : name) {
        hash = hash * 33 + static_cast<unsigned char>(byte);
    }
    return hash;
}

} // namespace

void ArchiveNames::add(const std::string& name)
{
    m_hashes.push_back(hashOf(name));
    m_comparisons += m_counts[m_hashes.back() % m_counts.size()]++;
    if (m_comparisons > a_mostComparisons) {
        throw LimitError("'" + name +
                         "' and other names take too long to tell apart in an archive, which a "
                         "directory does not");
    }
    if (m_hashes.size() > m_counts.size() / 4 * 3) {
        grow();
    }
}

void ArchiveNames::grow()
{
    m_counts.assign(2 * m_counts.size(), 0);
    for (const std::uint32_t hash : m_hashes) {
        ++m_counts[hash % m_counts.size()];
    }
}

} // namespace pk::project
