#pragma once

#include <string>
#include <vector>

/// How people name a node of a library: by the names from the first level down, joined with "/".
/// A "/" inside a name is written "\/", a backslash "\\"; before any other character a backslash is
/// one. A "/" in front and at the end is allowed, and "" and "/" are the library's root.
namespace kxbox::node_address {

/// The names of an address. Throws Failure when one is empty.
std::vector<std::string> parse(const std::string& address);

/// The address of names; "/" for none. What parse() takes apart again.
std::string format(const std::vector<std::string>& names);

} // namespace kxbox::node_address
