#pragma once

#include "survey.hpp"

#include <QMap>
#include <QPair>

#include <optional>
#include <string>

/// Single translation files: how they are named, and how they are changed without losing anything.
namespace kxbox {

/// The language that a translation file's name stands for, as the library names files; empty when
/// the name is of another form.
QString languageOf(const QString& path);

/// Whether a message is not vanished or obsolete.
bool isInUse(const KR::Localization::Message& message);

/// How many messages have the context, source and comment of an earlier one, which has another
/// translation. A file that is written holds the first alone.
int countContradictions(const KR::Localization::Translator& translator);

/// The file of these messages, unless reading it again would give less than all of the
/// translations and of the translators' notes.
std::optional<QByteArray> writeWhole(const KR::Localization::Translator& translator);

/// Puts files of one language together.
class Merger
{
public:
    explicit Merger(KR::Localization::Translator translator);

    /// Takes what `translator` has and the others before it lack. Nothing, and a reason, when it
    /// contradicts them; empty when done.
    std::string add(const KR::Localization::Translator& translator);
    const KR::Localization::Translator& result() const { return m_merged; }

private:
    using Key = QPair<QString, QPair<QString, QString>>; // context, source and comment

    KR::Localization::Translator m_merged;
    QMap<Key, int> m_positions; // the first message of each key
};

} // namespace kxbox
