#pragma once

#include <string>
#include <vector>

namespace kxbox {

/// The words of a line as a POSIX shell splits it, without expansions: words are separated by
/// blanks; within '' everything is literal, within "" everything but \" and \\; outside, a
/// backslash takes the next character as it is; # at the beginning of a word begins a comment.
/// Throws UsageError when a quotation has no end or nothing follows a backslash.
std::vector<std::string> shellWords(const std::string& line);

} // namespace kxbox
