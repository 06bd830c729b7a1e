#pragma once

#include <string>

/// Names of nodes and the names of their directories.
namespace KX::file_names {

// What these do is said at the functions of the same names of BoxLibraryNode.

std::string escape(const std::string& name);
std::string unEscape(const std::string& fileName);
std::string number(const std::string& name, int number);
std::string unNumber(const std::string& name);

} // namespace KX::file_names
