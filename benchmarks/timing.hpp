#pragma once

#include <pugixml.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

/// What benchmarks that time two sides in turn have in common.
namespace timing {

template <class Work>
double milliseconds(const Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const auto end = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::milli>(end - start).count();
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Where pugixml saves to, as a string.
struct StringWriter : pugi::xml_writer
{
    void write(const void* data, std::size_t size) override
    {
        bytes.append(static_cast<const char*>(data), size);
    }
    std::string bytes;
};

} // namespace timing
