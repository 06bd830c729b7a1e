#include "xml_text.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace KR::Localization {

namespace {

using Byte = unsigned char;
using Classes = std::array<bool, 256>;

/// The bytes that stand for themselves in every kind of text.
constexpr Classes plainBytes()
{
    Classes plain{};
    for (std::size_t c = 0x20; c < 0x80; ++c) {
        plain[c] = c != '&' && c != '<' && c != '>';
    }
    return plain;
}

constexpr Classes a_plain = plainBytes();

/// The characters of ASCII that no kind of text escapes.
constexpr Classes neverEscaped()
{
    Classes never = plainBytes();
    never['"'] = false;
    never['\''] = false;
    return never;
}

constexpr Classes a_neverEscaped = neverEscaped();

constexpr std::size_t a_wordSize = sizeof(std::uint64_t);
constexpr std::ptrdiff_t a_atOnce = a_wordSize; // characters that a word of bytes holds

constexpr std::uint64_t eightTimes(std::uint64_t byte)
{
    return byte * 0x0101010101010101U;
}

/// Whether all eight bytes stand for themselves. May be wrong in saying no.
bool arePlain(std::uint64_t word)
{
    // A byte's high bit is set in `x - eightTimes(n) & ~x` when the byte is less than n.
    const auto lessThan = [](std::uint64_t x, std::uint64_t n) { return (x - eightTimes(n)) & ~x; };
    const std::uint64_t ampersand = lessThan(word ^ eightTimes('&'), 1);
    const std::uint64_t angle = lessThan((word & ~eightTimes(2)) ^ eightTimes('<'), 1);
    return ((word | lessThan(word, 0x20) | ampersand | angle) & eightTimes(0x80)) == 0;
}

/// Whether none of eight characters of ASCII is ever escaped. May be wrong in saying no.
bool areNeverEscaped(std::uint64_t word)
{
    const std::uint64_t quotes = (word & ~eightTimes(5)) ^ eightTimes('"');
    return arePlain(word) && ((quotes - eightTimes(1)) & ~quotes & eightTimes(0x80)) == 0;
}

/// Copies eight ASCII bytes.
void widen(const char* in, QChar* out)
{
    std::array<unsigned char, a_wordSize> bytes{};
    std::array<std::uint16_t, a_wordSize> units{};
    std::memcpy(bytes.data(), in, a_wordSize);
    for (std::size_t i = 0; i < a_wordSize; ++i) {
        units[i] = bytes[i];
    }
    std::memcpy(static_cast<void*>(out), units.data(), sizeof units);
}

/// Gives eight characters as bytes; false, with `word` as it was, when they are not all ASCII.
bool narrow(const QChar* in, std::uint64_t& word)
{
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), in, sizeof halves);
    if (((halves[0] | halves[1]) & 0xFF80FF80FF80FF80U) != 0) {
        return false;
    }
    std::array<std::uint16_t, a_wordSize> units{};
    std::array<unsigned char, a_wordSize> bytes{};
    std::memcpy(units.data(), in, sizeof units);
    for (std::size_t i = 0; i < a_wordSize; ++i) {
        bytes[i] = static_cast<unsigned char>(units[i]);
    }
    std::memcpy(&word, bytes.data(), a_wordSize);
    return true;
}

constexpr bool isXmlCharacter(char32_t c)
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// Turns one piece of text from bytes into UTF-16. The bytes end with a null, so that looking one
/// byte ahead is always allowed.
class Decoder
{
public:
    Decoder(const char* begin, const char* end, XmlTextKind kind, QChar* out)
        : m_begin(begin), m_in(begin), m_end(end), m_out(out), m_kind(kind)
    {
    }

    /// Null, or the reason of failure.
    const char* run()
    {
        while (true) {
            copyPlainWords();
            while (m_in != m_end && a_plain[static_cast<Byte>(*m_in)]) {
                *m_out++ = QLatin1Char(*m_in++);
            }
            if (m_in == m_end) {
                return nullptr;
            }
            if (const char* reason = special()) {
                return reason;
            }
        }
    }

    QChar* out() const { return m_out; }

private:
    void copyPlainWords()
    {
        std::uint64_t word = 0;
        while (static_cast<std::size_t>(m_end - m_in) >= a_wordSize) {
            std::memcpy(&word, m_in, a_wordSize);
            if (!arePlain(word)) {
                return;
            }
            widen(m_in, m_out);
            m_in += a_wordSize;
            m_out += a_wordSize;
        }
    }

    const char* special()
    {
        const auto byte = static_cast<Byte>(*m_in);
        if (byte >= 0x80) {
            return multiByte();
        }
        switch (byte) {
        case '\t':
        case '\n':
            return space(*m_in);
        case '\r':
            // A line end may be written as CR LF or CR alone: both count as one line feed.
            if (m_in[1] == '\n') {
                ++m_in;
            }
            return space('\n');
        case '&':
            return m_kind == XmlTextKind::Cdata ? plain() : reference();
        case '<':
            return m_kind == XmlTextKind::Attribute ? "\"<\" in the value of an attribute"
                                                    : plain();
        case '>':
            return m_kind == XmlTextKind::Content && followsBrackets() ? "\"]]>\" in a text"
                                                                       : plain();
        default:
            return "a control character";
        }
    }

    const char* plain()
    {
        *m_out++ = QLatin1Char(*m_in++);
        return nullptr;
    }

    const char* space(char c)
    {
        *m_out++ = QLatin1Char(m_kind == XmlTextKind::Attribute ? ' ' : c);
        ++m_in;
        return nullptr;
    }

    bool followsBrackets() const
    {
        return m_in - m_begin >= 2 && m_in[-1] == ']' && m_in[-2] == ']';
    }

    const char* multiByte()
    {
        const auto lead = static_cast<Byte>(*m_in);
        const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead < 0xC2 || lead > 0xF4 || m_end - m_in < length) {
            return "not UTF-8";
        }
        char32_t c = lead & (0x7FU >> static_cast<unsigned>(length));
        for (int i = 1; i < length; ++i) {
            const auto next = static_cast<Byte>(m_in[i]);
            if ((next & 0xC0U) != 0x80U) {
                return "not UTF-8";
            }
            c = (c << 6U) | (next & 0x3FU);
        }
        constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
        if (c < least[static_cast<std::size_t>(length)] || !isXmlCharacter(c)) {
            return "not UTF-8, or a character that XML does not allow";
        }
        m_in += length;
        put(c);
        return nullptr;
    }

    void put(char32_t c)
    {
        if (QChar::requiresSurrogates(c)) {
            *m_out++ = QChar(QChar::highSurrogate(c));
            *m_out++ = QChar(QChar::lowSurrogate(c));
        } else {
            *m_out++ = QChar(static_cast<ushort>(c));
        }
    }

    const char* reference()
    {
        const auto* const semicolon = static_cast<const char*>(
            std::memchr(m_in, ';', static_cast<std::size_t>(m_end - m_in)));
        if (semicolon == nullptr) {
            return "\"&\" that begins no reference";
        }
        const std::string_view name(m_in + 1, static_cast<std::size_t>(semicolon - m_in - 1));
        const char32_t c = name.substr(0, 1) == "#" ? numeric(name.substr(1)) : predefined(name);
        if (!isXmlCharacter(c)) {
            return "a reference to an entity that is not defined";
        }
        m_in = semicolon + 1;
        put(c);
        return nullptr;
    }

    static char32_t predefined(std::string_view name)
    {
        constexpr std::array<std::pair<std::string_view, char32_t>, 5> entities{
            {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
        for (const auto& entity : entities) {
            if (entity.first == name) {
                return entity.second;
            }
        }
        return 0;
    }

    static char32_t numeric(std::string_view digits)
    {
        const bool hex = digits.substr(0, 1) == "x";
        digits.remove_prefix(hex ? 1 : 0);
        char32_t c = 0;
        for (const char digit : digits) {
            const int value = digitValue(digit);
            if (value < 0 || (!hex && value > 9) || c > 0x10FFFF) {
                return 0;
            }
            c = c * (hex ? 16 : 10) + static_cast<char32_t>(value);
        }
        return c;
    }

    static int digitValue(char c)
    {
        if (c >= '0' && c <= '9') {
            return c - '0';
        }
        const char lower = static_cast<char>(c | 0x20);
        return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
    }

    const char* m_begin;
    const char* m_in;
    const char* m_end;
    QChar* m_out;
    XmlTextKind m_kind;
};

/// Appends `text` as UTF-8; lone surrogates become "?".
void appendUtf8(QByteArray& bytes, const QChar* at, const QChar* end)
{
    const int before = bytes.size();
    bytes.resize(before + 3 * static_cast<int>(end - at)); // the most that UTF-16 can become
    char* out = bytes.data() + before;
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    std::uint64_t word = 0;
    for (; at != end; ++at) {
        while (end - at >= a_atOnce && narrow(at, word)) {
            std::memcpy(out, &word, a_wordSize);
            out += a_wordSize;
            at += a_atOnce;
        }
        if (at == end) {
            break;
        }
        char32_t c = at->unicode();
        if (c < 0x80) {
            put(c);
        } else if (c < 0x800) {
            put(0xC0U | (c >> 6U));
            put(0x80U | (c & 0x3FU));
        } else if (!at->isSurrogate()) {
            put(0xE0U | (c >> 12U));
            put(0x80U | ((c >> 6U) & 0x3FU));
            put(0x80U | (c & 0x3FU));
        } else if (at->isHighSurrogate() && at + 1 != end && at[1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(*at, at[1]);
            ++at;
            put(0xF0U | (c >> 18U));
            put(0x80U | ((c >> 12U) & 0x3FU));
            put(0x80U | ((c >> 6U) & 0x3FU));
            put(0x80U | (c & 0x3FU));
        } else {
            put('?');
        }
    }
    bytes.resize(static_cast<int>(out - bytes.constData()));
}

/// Appends `text`, with those characters for which `escape` gives something else than null written
/// as what it gives. It is a `const char*(const QChar* at, const QChar* begin)`.
template <class Escape>
void appendEscaped(QByteArray& bytes, const QString& text, const Escape& escape)
{
    if (text.isEmpty()) {
        return;
    }
    const QChar* const begin = text.constData();
    const QChar* const end = begin + text.size();
    const QChar* run = begin;
    std::uint64_t word = 0;
    for (const QChar* at = begin; at != end; ++at) {
        while (end - at > a_atOnce && narrow(at, word) && areNeverEscaped(word)) {
            at += a_atOnce;
        }
        if (at->unicode() < 0x80 && a_neverEscaped[at->unicode()]) {
            continue;
        }
        if (const char* escaped = escape(at, begin)) {
            appendUtf8(bytes, run, at);
            bytes += escaped;
            run = at + 1;
        }
    }
    appendUtf8(bytes, run, end);
}

/// What stands for a character in a file, in memory of its own.
class Escaped
{
public:
    const char* byteElement(ushort c)
    {
        (void)std::snprintf(m_text.data(), m_text.size(), "<byte value=\"x%x\"/>", unsigned{c});
        return m_text.data();
    }

    const char* reference(ushort c)
    {
        (void)std::snprintf(m_text.data(), m_text.size(), "&#x%x;", unsigned{c});
        return m_text.data();
    }

private:
    std::array<char, 32> m_text{};
};

bool isNoCharacter(ushort c)
{
    return c >= 0xFFFE;
}

} // namespace

const char* appendXmlText(QString& text, const char* raw, XmlTextKind kind)
{
    const std::size_t length = std::strlen(raw);
    if (length == 0) {
        return nullptr;
    }
    const int before = text.size();
    const int most = before + static_cast<int>(length); // each byte gives one unit at most
    if (before == 0) {
        text = QString(most, Qt::Uninitialized); // no room to grow: few texts have a second piece
    } else {
        text.resize(most);
    }
    Decoder decoder(raw, raw + length, kind, text.data() + before);
    const char* const reason = decoder.run();
    text.truncate(reason != nullptr ? before : static_cast<int>(decoder.out() - text.constData()));
    return reason;
}

void appendContent(QByteArray& bytes, const QString& text)
{
    Escaped escaped;
    appendEscaped(bytes, text, [&escaped](const QChar* at, const QChar*) -> const char* {
        const ushort c = at->unicode();
        switch (c) {
        case '"':
            return "&quot;";
        case '&':
            return "&amp;";
        case '>':
            return "&gt;";
        case '<':
            return "&lt;";
        case '\'':
            return "&apos;";
        default:
            if (c >= 0x20 && c < 0x80) {
                return nullptr;
            }
            if (c < 0x20) {
                return c == '\n' || c == '\t' ? nullptr : escaped.byteElement(c);
            }
            return at->isSpace()      ? escaped.reference(c)
                   : isNoCharacter(c) ? escaped.byteElement(c)
                                      : nullptr;
        }
    });
}

void appendPlainContent(QByteArray& bytes, const QString& text)
{
    Escaped escaped;
    appendEscaped(bytes, text, [&escaped](const QChar* at, const QChar* begin) -> const char* {
        const ushort c = at->unicode();
        switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return at - begin >= 2 && at[-1] == QLatin1Char(']') && at[-2] == QLatin1Char(']')
                       ? "&gt;"
                       : nullptr;
        case '\n':
        case '\t':
            return nullptr;
        default:
            return c < 0x20 || isNoCharacter(c) ? escaped.byteElement(c) : nullptr;
        }
    });
}

void appendAttributeValue(QByteArray& bytes, const QString& text)
{
    Escaped escaped;
    appendEscaped(bytes, text, [&escaped](const QChar* at, const QChar*) -> const char* {
        const ushort c = at->unicode();
        switch (c) {
        case '"':
            return "&quot;";
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '\n':
        case '\t':
        case '\r':
            return escaped.reference(c);
        default:
            return c < 0x20 || isNoCharacter(c) ? "?" : nullptr;
        }
    });
}

} // namespace KR::Localization
