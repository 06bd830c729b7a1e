#include "sibling_names.hpp"

#include "file_names.hpp"

#include <algorithm>
#include <cstdlib>

namespace KX {

void SiblingNames::add(const std::string& name)
{
    ++m_counts[name];
}

void SiblingNames::remove(const std::string& name)
{
    const auto found = m_counts.find(name);
    if (--found->second > 0) {
        return;
    }
    m_counts.erase(found);
    m_firstUnknown.erase(name);
    const auto unknown = m_firstUnknown.find(file_names::unNumber(name));
    if (unknown != m_firstUnknown.end()) {
        // A number that firstFree() would not write ("01", "0", none) only makes it look again, and
        // so does a name that is no UTF-8, in which the number stands elsewhere.
        const auto place = std::min(unknown->first.size() + 2, name.size());
        const long number = std::strtol(name.c_str() + place, nullptr, 10);
        unknown->second = static_cast<int>(std::clamp(number, 1L, long{unknown->second}));
    }
}

std::string SiblingNames::firstFree(const std::string& base)
{
    const auto unknown = m_firstUnknown.find(base);
    int number = unknown != m_firstUnknown.end() ? unknown->second : 1;
    std::string name = number == 1 ? base : file_names::number(base, number);
    while (m_counts.count(name) > 0) {
        name = file_names::number(base, ++number);
    }
    if (number > 1) {
        m_firstUnknown[base] = number;
    }
    return name;
}

} // namespace KX
