#pragma once

#include <kr/localization/message.hpp>

#include <QPair>
#include <QString>

namespace kxbox {

/// "finished", "unfinished", "vanished" or "obsolete".
const char* nameOf(KR::Localization::Message::State state);

/// Whether the text of a message is said to be gone: it is vanished or obsolete.
bool isGone(const KR::Localization::Message& message);

/// A text to translate: the context it is in, and itself. Messages with different comments or ids
/// are for the same text.
using TextKey = QPair<QString, QString>;
TextKey keyOf(const KR::Localization::Message& message);

} // namespace kxbox
