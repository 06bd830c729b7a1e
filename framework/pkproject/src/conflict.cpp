#include "conflict.hpp"

#include <pk/project/error.hpp>

#include <algorithm>

namespace pk::project {

namespace {

// More than these make a message unreadable.
constexpr std::size_t a_listedChanges = 20;

} // namespace

void throwConflict(const std::string& path, const std::string& since,
                   const std::vector<std::string>& changes)
{
    std::string message = path + ": changed by someone else " + since;
    for (std::size_t i = 0; i < std::min(changes.size(), a_listedChanges); ++i) {
        message.append(i == 0 ? ": " : ", ").append(changes[i]);
    }
    if (changes.size() > a_listedChanges) {
        message += ", and " + std::to_string(changes.size() - a_listedChanges) + " more";
    }
    throw ConflictError(message);
}

} // namespace pk::project
