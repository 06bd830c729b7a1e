#pragma once

#include <pk/log.hpp>

#include <string>

namespace KX {

/// Logs under the category of everything that concerns nodes and their files. Records name this
/// file whichever source they come from: it is where people look for them.
inline void logNode(pk::log::LogLevel level, const std::string& message, const char* function,
                    int line)
{
    pk::log::log(level, "kxboxlibrary", message,
                 "gui/lib/desktop/kxboxlibrary/src/box_library_node", function, line);
}

} // namespace KX
