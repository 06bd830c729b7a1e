#pragma once

#include <string>
#include <vector>

namespace pk::project {

/// Throws the ConflictError for the project at `path`, which someone else changed `since` some
/// time. It lists the changes, or the first of many.
[[noreturn]] void throwConflict(const std::string& path, const std::string& since,
                                const std::vector<std::string>& changes);

} // namespace pk::project
