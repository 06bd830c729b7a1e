#pragma once

#include <pk/log.hpp>

#include <string>

namespace pk::project {

/// Logs what an operation could not do and went on without.
inline void warn(const std::string& message, const char* file, const char* function, int line)
{
    pk::log::log(pk::log::Warning, "pkproject", message, file, function, line);
}

} // namespace pk::project
