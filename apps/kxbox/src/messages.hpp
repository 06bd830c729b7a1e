#pragma once

#include "text.hpp"

#include <kr/localization/message.hpp>

#include <QPair>
#include <QString>

namespace kxbox {

/// "finished", "unfinished", "vanished" or "obsolete".
const char* nameOf(KR::Localization::Message::State state);

/// Adds what a message is translated to to an object: "translation", or, of a message with plural
/// forms, "translations".
void addTranslation(Json& object, const KR::Localization::Message& message);

/// Whether the text of a message is said to be gone: it is vanished or obsolete.
bool isGone(const KR::Localization::Message& message);

/// A text to translate: the context it is in, and itself. Messages with different comments or ids
/// are for the same text.
using TextKey = QPair<QString, QString>;
TextKey keyOf(const KR::Localization::Message& message);

} // namespace kxbox
