#pragma once

#include <string>
#include <vector>

namespace kxbox {

/// Rows of cells in columns as wide as their widest cell, in characters, two spaces apart: the
/// first column to the left, the others to the right. The rows have the same number of cells, two
/// or more, which are printable().
std::string table(const std::vector<std::vector<std::string>>& rows);

} // namespace kxbox
