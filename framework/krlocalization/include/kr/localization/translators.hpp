#pragma once

#include <kr/localization/translator.hpp>
#include <kr/localization/ts.hpp>

#include <QHash>
#include <QString>

/// Operations on a set of translators, keyed by language code.
namespace KR::Localization {

/// Adds the messages of `source` to `target`, with contexts rewritten by `patcher` where it returns
/// true: at the end of the translator of the same language, without a look at messages with the
/// same key, or as a new translator when `target` has none.
template <class Patcher>
void insertMessages(QHash<QString, Translator>& target, const QHash<QString, Translator>& source,
                    Patcher& patcher)
{
    for (auto it = source.cbegin(); it != source.cend(); ++it) {
        Translator translator = it.value();
        translator.rewriteContexts(patcher);
        const auto known = target.find(it.key());
        if (known == target.end()) {
            target.insert(it.key(), translator);
        } else {
            known->append(translator.messages());
        }
    }
}

/// Removes from every translator the messages whose context `finder` accepts. Translators that
/// become empty stay in the set.
template <class Finder>
void removeMessages(QHash<QString, Translator>& translators, const Finder& finder)
{
    for (Translator& translator : translators) {
        translator.remove(finder);
    }
}

/// Rewrites the contexts of every translator with `patcher`.
template <class Patcher>
void rewriteContexts(QHash<QString, Translator>& translators, Patcher& patcher)
{
    for (Translator& translator : translators) {
        translator.rewriteContexts(patcher);
    }
}

/// Inserts into `files`, a map from QString to QByteArray, every translator's file with all its
/// messages, under the translator's key.
template <class Map>
void translatorsTo(const QHash<QString, Translator>& translators, Map& files)
{
    for (auto it = translators.cbegin(); it != translators.cend(); ++it) {
        files.insert(it.key(), TS::translatorTo(it.value(), false));
    }
}

} // namespace KR::Localization
