#pragma once

#include <kr/localization/message.hpp>

#include <QList>

namespace KR::Localization {

/// `messages` without those that a tool of Linguist drops when it reads them from a file: of
/// messages with the same id only the first stays, likewise of those with the same context, source
/// and comment (the comment does not count when the source is empty) unless both have an id. The
/// one that stays gets the other's translation if it has none, and its id if it has none.
QList<Message> withoutDuplicates(const QList<Message>& messages);

} // namespace KR::Localization
