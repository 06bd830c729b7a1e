#pragma once

#include <filesystem>

namespace edited {

/// Edits a library in every way that is measured and saves it in both forms below a directory `to`,
/// so that the files can be compared with those that another version of the library makes.
void edit(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace edited
