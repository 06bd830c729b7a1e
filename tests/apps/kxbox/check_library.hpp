#pragma once

#include "tool.hpp"

#include <optional>

namespace kxbox::test {

/// What a test makes of a good library: files by path with their new bytes, or nothing for one that
/// goes. A path that ends with "/" is a directory, which goes with all it holds.
using Edits = std::map<std::string, std::optional<std::string>>;

/// An order file with these entries, in XML.
std::string orderFile(const std::vector<std::string>& names);

/// A box file with this in its box element.
std::string boxFile(const std::string& content = {});

/// A message as a translation file has it; an empty translation is unfinished.
std::string message(const std::string& context, const std::string& source,
                    const std::string& translation = {});
/// A translation file; an empty language is none.
std::string translationFile(const std::string& language, const std::string& messages);

/// A small library, "lib.bxl", with something wrong: a folder "Motion" with the boxes "Walk" and
/// "Run", and a box "Say" with the picture "icon.png"; French messages of "Walk".
class CheckTest : public ToolTest
{
protected:
    /// Makes the library in a form, and gives the tool's words for checking it.
    Words makeLibrary(Form form, const Edits& edits, const Words& options = {}) const;
    /// The files of the library, read through the project store, so that forms can be compared.
    Files libraryFiles() const;
};

} // namespace kxbox::test
