#pragma once

#include <QString>
#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kxbox {

/// Objects keep the order in which their members were set, so that output reads as documented.
using Json = nlohmann::ordered_json;

/// `text` on one line that cannot control a terminal: control characters, which names from disk may
/// have, become "\n", "\t" and the like, or "\x1b" and the like.
std::string printable(const std::string& text);
std::string printable(const QString& text);

/// Whether a character can control a terminal, or turn the direction of writing around.
bool isControl(QChar character);

/// JSON without such characters: within its strings they are "\u009b" and the like.
std::string jsonText(const Json& json);

/// "1 box", "2 boxes".
std::string counted(int number, const std::string& one, const std::string& many);

} // namespace kxbox
