#pragma once

#include <QByteArray>
#include <QString>

namespace KR::Localization {

/// Where a piece of an XML file's text stands, which decides what it may hold.
enum class XmlTextKind
{
    Content,   ///< between tags
    Cdata,     ///< in a CDATA section, a comment or a document type: nothing stands for another
    Attribute, ///< between quotes: white space becomes spaces
};

/// Appends to `text` what the UTF-8 bytes `raw`, ended by a null, of an XML 1.0 file say: entities
/// and line ends are resolved. Strict: gives the reason as a constant text when the bytes are not
/// UTF-8, or not allowed there in a well-formed file, or refer to an entity that is not predefined;
/// else null.
const char* appendXmlText(QString& text, const char* raw, XmlTextKind kind);

/// Appends `text` to a file as the content of an element, as Linguist's tools write it: markup is
/// escaped, control characters become <byte> elements, other white space than " ", tabs and line
/// feeds a numeric reference. What UTF-8 can't hold becomes "?".
void appendContent(QByteArray& bytes, const QString& text);

/// Appends `text` as content with as little escaping as the meaning allows, which is how Linguist's
/// tools write user data.
void appendPlainContent(QByteArray& bytes, const QString& text);

/// Appends `text` as the value of an attribute in double quotes, with as little escaping as the
/// meaning allows. A character that no XML file can hold becomes "?".
void appendAttributeValue(QByteArray& bytes, const QString& text);

} // namespace KR::Localization
