#pragma once

#include <array>
#include <string_view>

namespace KX::xml {

/// What a byte can be in a document, as bits; several may hold at once. A byte is plain in a place
/// when it neither ends that place nor asks for a look at the bytes after it, so that a reader or a
/// writer runs over plain bytes without a thought. Bytes from 0x80 on have no bits.
enum ByteClass : unsigned
{
    NameStart = 1,
    NameByte = 2,
    Space = 4,         ///< space, tab, line feed, carriage return
    PlainText = 8,     ///< in character data
    PlainValue = 16,   ///< in an attribute value, whichever quote it has
    PlainSection = 32, ///< in a CDATA section, a comment or a processing instruction
    EscapedText = 64,  ///< written as a reference in character data
    EscapedValue = 128 ///< written as a reference in an attribute value
};

/// What ends plain text, or asks for a look, beside control characters and bytes from 0x80 on.
constexpr std::string_view marksIn(ByteClass plain)
{
    return plain == PlainText ? "<&]" : plain == PlainValue ? "<&\"'" : "]-?";
}

namespace detail {

constexpr bool isOneOf(unsigned byte, std::string_view set)
{
    return set.find(static_cast<char>(byte)) != std::string_view::npos;
}

constexpr unsigned bitIf(bool condition, ByteClass bit)
{
    return condition ? static_cast<unsigned>(bit) : 0U;
}

constexpr unsigned char classify(unsigned byte)
{
    const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    const bool digit = byte >= '0' && byte <= '9';
    const bool plain = (byte >= 0x20 && byte < 0x80) || byte == '\t' || byte == '\n';
    unsigned bits = 0;
    bits |= bitIf(letter || isOneOf(byte, "_:"), NameStart);
    bits |= bitIf(letter || digit || isOneOf(byte, "_:-."), NameByte);
    bits |= bitIf(isOneOf(byte, " \t\n\r"), Space);
    bits |= bitIf(plain && !isOneOf(byte, marksIn(PlainText)), PlainText);
    bits |= bitIf(plain && !isOneOf(byte, marksIn(PlainValue)), PlainValue);
    bits |= bitIf(plain && !isOneOf(byte, marksIn(PlainSection)), PlainSection);
    bits |= bitIf(isOneOf(byte, "<>&\r"), EscapedText);
    bits |= bitIf(isOneOf(byte, "<&\"\t\n\r"), EscapedValue);
    return static_cast<unsigned char>(bits);
}

constexpr std::array<unsigned char, 256> classifyAll()
{
    std::array<unsigned char, 256> classes{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        classes[byte] = classify(byte);
    }
    return classes;
}

} // namespace detail

inline constexpr std::array<unsigned char, 256> a_byteClasses = detail::classifyAll();

/// Those of the bits that hold.
constexpr unsigned classOf(char byte, unsigned bits)
{
    return a_byteClasses[static_cast<unsigned char>(byte)] & bits;
}

constexpr bool is(char byte, ByteClass bits)
{
    return classOf(byte, bits) != 0;
}

} // namespace KX::xml
