#include "file_names.hpp"

#include <QLatin1Char>
#include <QLatin1String>
#include <QString>

#include <algorithm>

namespace KX::file_names {

namespace {

/// Up to the first NUL and without byte order marks at the front. QString::fromUtf8() takes one
/// off, so that a name with two would be another name each time it is decoded.
QString decode(const std::string& text)
{
    QString decoded = QString::fromUtf8(text.c_str());
    while (decoded.startsWith(QChar::ByteOrderMark)) {
        decoded.remove(0, 1);
    }
    return decoded;
}

std::string encode(const QString& text)
{
    return text.toUtf8().constData();
}

QString escaped(QChar character)
{
    return QStringLiteral("%%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
}

/// Whether all characters stand for themselves wherever they are, but for spaces at the ends. That
/// is seen without decoding, and most names are so.
bool isPlain(const std::string& name)
{
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-' || c == '(' || c == ')' || c == ' ';
    });
}

bool isHexadecimal(QChar character)
{
    const ushort c = character.unicode();
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

} // namespace

std::string escape(const std::string& name)
{
    if (isPlain(name) && (name.empty() || (name.front() != ' ' && name.back() != ' '))) {
        return name;
    }
    // No backslash: libraries exist whose directories have one in their names.
    const QLatin1String special("%<>:\"/|?*");
    QString fileName;
    for (const QChar character : decode(name)) {
        fileName += special.contains(character) ? escaped(character) : QString(character);
    }
    if (fileName.endsWith(QLatin1Char('.'))) {
        fileName.replace(fileName.size() - 1, 1, escaped(QLatin1Char('.')));
    }
    if (fileName.startsWith(QLatin1Char(' '))) {
        fileName.replace(0, 1, escaped(QLatin1Char(' ')));
    }
    if (fileName.endsWith(QLatin1Char(' '))) {
        fileName.replace(fileName.size() - 1, 1, escaped(QLatin1Char(' ')));
    }
    return encode(fileName);
}

std::string unEscape(const std::string& fileName)
{
    if (isPlain(fileName)) {
        return fileName;
    }
    const QString text = decode(fileName);
    QString name;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('%') && i + 2 < text.size() &&
            isHexadecimal(text.at(i + 1)) && isHexadecimal(text.at(i + 2))) {
            name += QChar(text.midRef(i + 1, 2).toUShort(nullptr, 16));
            i += 2;
        } else {
            name += text.at(i);
        }
    }
    return encode(name);
}

std::string number(const std::string& name, int number)
{
    return encode(decode(name)) + " (" + std::to_string(number) + ")";
}

std::string unNumber(const std::string& name)
{
    std::string text = encode(decode(name));
    if (text.empty() || text.back() != ')') {
        return text;
    }
    const auto digit = text.find_last_not_of("0123456789", text.size() - 2);
    const bool numbered =
        digit != std::string::npos && digit > 0 && text[digit] == '(' && text[digit - 1] == ' ';
    return numbered ? text.substr(0, digit - 1) : text;
}

} // namespace KX::file_names
