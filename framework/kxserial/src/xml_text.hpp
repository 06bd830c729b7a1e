#pragma once

#include <cstddef>
#include <string_view>

namespace KX::xml {

/// Most levels of elements in a document; the root is level 1. Reader and writer share the bound,
/// so that whatever was written can be read.
constexpr std::size_t a_maxDepth = 256;

/// Most elements, attributes, texts, comments and processing instructions of a document together.
/// In memory one costs up to some 280 bytes when all elements are looked into, many times what it
/// is in the file (`<a/>`); this bound and that of the bytes keep any document below 256 MB. Also
/// shared by reader and writer.
constexpr std::size_t a_maxNodes = 600'000;

/// A decoded character: its code point and how many bytes it has; 0 when they are not UTF-8.
struct CodePoint
{
    char32_t value;
    std::size_t length;
};

/// The character at the start of `bytes`. Overlong forms, surrogates, values above U+10FFFF and
/// truncated characters are not UTF-8 (Unicode 14, table 3-7).
CodePoint decode(std::string_view bytes);

/// The production Char of XML 1.0: what a document can hold at all, be it as a reference.
bool isXmlChar(char32_t value);

/// How many bytes at the start of `bytes` make a Name of XML 1.0, fifth edition; 0 for none.
std::size_t nameLength(std::string_view bytes);

bool isName(std::string_view bytes);

/// Whether `bytes` are UTF-8 and every character is one that a document can hold.
bool isHoldable(std::string_view bytes);

/// Whether `text` can be the indentation between two elements: spaces, tabs and line feeds only.
/// A carriage return that survived reading was written as a reference, so somebody meant it.
bool isBlank(std::string_view text);

} // namespace KX::xml
