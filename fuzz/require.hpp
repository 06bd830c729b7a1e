#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

/// What the fuzz targets have in common.
namespace fuzz {

/// Says which property does not hold, with details, and ends the program, so that libFuzzer keeps
/// the input.
[[noreturn]] inline void fail(const std::string& property, const std::string& details = {})
{
    std::cerr << "does not hold: " << property << '\n' << details << std::endl;
    std::abort();
}

inline void require(bool holds, const char* property)
{
    if (!holds) {
        fail(property);
    }
}

/// The same, with the two values where they differ.
inline void requireSame(const std::string& found, const std::string& expected, const char* property)
{
    if (found != expected) {
        fail(property, "found:\n" + found + "\nexpected:\n" + expected);
    }
}

} // namespace fuzz
