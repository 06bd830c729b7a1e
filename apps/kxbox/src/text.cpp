#include "text.hpp"

#include <nlohmann/json.hpp>

namespace kxbox {

namespace {

std::string escaped(QChar character)
{
    switch (character.unicode()) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return QStringLiteral("\\x%1")
            .arg(character.unicode(), 2, 16, QLatin1Char('0'))
            .toStdString();
    }
}

} // namespace

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control ||
           (character.unicode() >= 0x202a && character.unicode() <= 0x202e) ||
           (character.unicode() >= 0x2066 && character.unicode() <= 0x2069) ||
           character.unicode() == 0x2028 || character.unicode() == 0x2029;
}

std::string jsonText(const Json& json)
{
    const auto dumped = json.dump(2, ' ', false, Json::error_handler_t::replace);
    QString text;
    for (const QChar character : QString::fromStdString(dumped)) {
        if (isControl(character) && character != QLatin1Char('\n')) {
            text += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            text += character;
        }
    }
    return text.toStdString() + "\n";
}

std::string printable(const QString& text)
{
    QString result;
    for (const QChar character : text) {
        if (isControl(character)) {
            result += QString::fromStdString(escaped(character));
        } else {
            result += character;
        }
    }
    return result.toStdString();
}

std::string printable(const std::string& text)
{
    return printable(QString::fromStdString(text));
}

std::string counted(int number, const std::string& one, const std::string& many)
{
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

} // namespace kxbox
