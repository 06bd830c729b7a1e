#pragma once

#include <string>

namespace kxbox {

/// Why a node cannot be called `name` without meeting files of the library, the store or a
/// version-control system; empty when it can. Letters' case does not matter, since there are file
/// systems that take "Translations" for "translations". `topLevel`: directly below the root.
std::string reservedReason(const std::string& name, bool topLevel);

/// Throws Failure when a node should not be called `name`, with any number: for the reason above,
/// or because the name is empty, has control characters, which order files can't hold, is not
/// UTF-8, or is too long for a directory.
void checkName(const std::string& name, bool topLevel);

} // namespace kxbox
