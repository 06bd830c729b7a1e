#pragma once

#include <cstdint>
#include <set>
#include <string>

/// What becomes of things that somebody put, or changed, where a save that was interrupted is to be
/// finished.
namespace pk::project {

/// A path like `path` at which nothing is: "NAME.~1~", "NAME.~2~" and so on; of a name that would
/// become too long for that, its beginning.
std::string freePathLike(const std::string& path);

/// Renames what is at `from` now to a free path like `path`, with a warning in the log. Throws
/// IoError.
void setAside(const std::string& from, const std::string& path);

/// Whether something came into a directory, or was changed in it, after a time in nanoseconds since
/// the epoch, going by modification times; of the directories in `touched`, in which the save
/// itself changed entries, only files are looked at. What can't be looked at counts as changed.
bool isChangedSince(const std::string& directory, std::int64_t since,
                    const std::set<std::string>& touched);

} // namespace pk::project
