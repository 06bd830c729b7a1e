#include "xml_text.hpp"

#include <kx/serial.hpp>

#include <charconv>
#include <system_error>

namespace KX {

namespace {

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const xml::CodePoint c = xml::decode(text);
        if (c.length == 0) {
            return false;
        }
        text.remove_prefix(c.length);
    }
    return true;
}

// QString::toUtf8 turns a lone surrogate into "?", which a reader can't tell from a question mark.
QString withoutLoneSurrogates(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool pair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (pair) {
            ++i;
        } else if (text.at(i).isSurrogate()) {
            text[i] = QChar(QChar::ReplacementCharacter);
        }
    }
    return text;
}

} // namespace

bool Serial::load(const std::string& text, std::string& value)
{
    value = text;
    return true;
}

bool Serial::load(const std::string& text, int& value)
{
    const char* const end = text.data() + text.size();
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        return false;
    }
    value = number;
    return true;
}

bool Serial::load(const std::string& text, bool& value)
{
    const bool isTrue = text == "true" || text == "1";
    if (!isTrue && text != "false" && text != "0") {
        return false;
    }
    value = isTrue;
    return true;
}

bool Serial::load(const std::string& text, QString& value)
{
    constexpr const char* a_byteOrderMark = "\xEF\xBB\xBF";
    if (!isUtf8(text)) {
        return false;
    }
    value = QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    // QString::fromUtf8 takes a leading byte order mark for a signature; here it is text.
    if (text.compare(0, 3, a_byteOrderMark) == 0) {
        value.prepend(QChar(QChar::ByteOrderMark));
    }
    return true;
}

std::string Serial::save(const int& value)
{
    return std::to_string(value);
}

std::string Serial::save(const bool& value)
{
    return value ? "true" : "false";
}

std::string Serial::save(const QString& value)
{
    return withoutLoneSurrogates(value).toUtf8().toStdString();
}

} // namespace KX
