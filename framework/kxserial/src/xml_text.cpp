#include "xml_text.hpp"

#include "byte_class.hpp"

#include <algorithm>
#include <array>

namespace KX::xml {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

// Productions [4] and [4a] of XML 1.0, fifth edition, without their ASCII part.
constexpr std::array<Range, 12> a_nameStartRanges{{{0xC0, 0xD6},
                                                   {0xD8, 0xF6},
                                                   {0xF8, 0x2FF},
                                                   {0x370, 0x37D},
                                                   {0x37F, 0x1FFF},
                                                   {0x200C, 0x200D},
                                                   {0x2070, 0x218F},
                                                   {0x2C00, 0x2FEF},
                                                   {0x3001, 0xD7FF},
                                                   {0xF900, 0xFDCF},
                                                   {0xFDF0, 0xFFFD},
                                                   {0x10000, 0xEFFFF}}};
constexpr std::array<Range, 3> a_nameOnlyRanges{{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};

template <std::size_t size>
bool isIn(const std::array<Range, size>& ranges, char32_t value)
{
    return std::any_of(ranges.begin(), ranges.end(), [value](const Range& range) {
        return value >= range.first && value <= range.last;
    });
}

bool isNameChar(char32_t value, bool first)
{
    if (value < 0x80) {
        return is(static_cast<char>(value), first ? NameStart : NameByte);
    }
    return isIn(a_nameStartRanges, value) || (!first && isIn(a_nameOnlyRanges, value));
}

// The length that a lead byte announces and the bits of the code point that it carries.
CodePoint lead(unsigned char byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {byte & 0x1FU, 2};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {byte & 0x0FU, 3};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {byte & 0x07U, 4};
    }
    return {0, 0};
}

bool isShortest(const CodePoint& c)
{
    constexpr std::array<char32_t, 5> a_first{0, 0, 0x80, 0x800, 0x10000};
    return c.value >= a_first[c.length];
}

} // namespace

CodePoint decode(std::string_view bytes)
{
    constexpr CodePoint a_bad{0, 0};
    if (bytes.empty()) {
        return a_bad;
    }
    const auto first = static_cast<unsigned char>(bytes.front());
    if (first < 0x80) {
        return {first, 1};
    }
    CodePoint c = lead(first);
    if (c.length == 0 || c.length > bytes.size()) {
        return a_bad;
    }
    for (const char next : bytes.substr(1, c.length - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0U) != 0x80U) {
            return a_bad;
        }
        c.value = (c.value << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = c.value >= 0xD800 && c.value <= 0xDFFF;
    return isShortest(c) && !surrogate && c.value <= 0x10FFFF ? c : a_bad;
}

bool isXmlChar(char32_t value)
{
    if (value < 0x20) {
        return value == '\t' || value == '\n' || value == '\r';
    }
    return value <= 0xD7FF || (value >= 0xE000 && value <= 0xFFFD) ||
           (value >= 0x10000 && value <= 0x10FFFF);
}

std::size_t nameLength(std::string_view bytes)
{
    std::size_t length = 0;
    while (length < bytes.size()) {
        const CodePoint c = decode(bytes.substr(length));
        if (c.length == 0 || !isNameChar(c.value, length == 0)) {
            break;
        }
        length += c.length;
    }
    return length;
}

bool isName(std::string_view bytes)
{
    return !bytes.empty() && nameLength(bytes) == bytes.size();
}

bool isHoldable(std::string_view bytes)
{
    for (std::size_t at = 0; at < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (byte >= 0x20 && byte < 0x80) { // as most are
            ++at;
            continue;
        }
        const CodePoint c = decode(bytes.substr(at));
        if (c.length == 0 || !isXmlChar(c.value)) {
            return false;
        }
        at += c.length;
    }
    return true;
}

bool isBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
}

} // namespace KX::xml
