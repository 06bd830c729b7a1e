#pragma once

#include <kxserial/export.hpp>

#include <string>
#include <string_view>

namespace KX {

/// Appends the value of an attribute to the text of a document, as XmlDocument writes it between
/// double quotes: with references where it needs them. For documents of one simple form that are
/// written often, of which a tree of elements would cost twenty times as much.
///
/// Gives false, and appends nothing, when the value has characters that XML can't hold.
[[nodiscard]] KXSERIAL_EXPORT bool appendXmlValue(std::string& text, std::string_view value);

} // namespace KX
