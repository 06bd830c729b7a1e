#pragma once

#include <kxserial/export.hpp>

#include <QString>

#include <string>

namespace KX {

/// The text forms of simple values in XML attributes.
///
/// Every `save` of a value that is well-formed gives a text that the `load` of the same type reads
/// back as the same value. `load`
/// takes the whole text or nothing: on a text that is not exactly a value of the type it returns
/// false and leaves the value as it was. White space around a value is part of the text, so it
/// makes a number or a boolean bad.
class KXSERIAL_EXPORT Serial
{
public:
    /// Any bytes: always true.
    static bool load(const std::string& text, std::string& value);
    /// A decimal number in the range of `int`: digits with an optional "-" before them. Leading
    /// zeros are accepted, a "+" is not.
    static bool load(const std::string& text, int& value);
    /// "true" or "1", "false" or "0".
    static bool load(const std::string& text, bool& value);
    /// Well-formed UTF-8, a byte order mark and zero bytes included as characters.
    static bool load(const std::string& text, QString& value);

    /// The shortest decimal form.
    static std::string save(const int& value);
    /// "true" or "false".
    static std::string save(const bool& value);
    /// UTF-8. A surrogate without its partner is no character and becomes U+FFFD.
    static std::string save(const QString& value);
    /// A text literal would be taken for a boolean.
    static std::string save(const char* value) = delete;
};

} // namespace KX
