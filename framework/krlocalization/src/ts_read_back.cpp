#include "position_table.hpp"
#include "text_hash.hpp"
#include "ts_memory.hpp"

#include <kr/localization/ts.hpp>

#include <algorithm>

namespace KR::Localization::TS {

namespace {

bool saysTheSame(const Translator& a, const Translator& b)
{
    return a.languageCode() == b.languageCode() &&
           a.sourceLanguageCode() == b.sourceLanguageCode() &&
           a.dependencies() == b.dependencies() && a.extras() == b.extras() &&
           a.locationStyle() == b.locationStyle();
}

/// Whether more than a quarter of the messages were changed. New messages lie scattered in memory:
/// it pays to read so many, together, for whoever works on them next.
bool hasManyChanges(const QList<Message>& messages, const QList<Message>& known)
{
    int changed = 0;
    for (int i = 0; i < messages.size(); ++i) {
        changed += messages.at(i).isSharedWith(known.at(i)) ? 0 : 1;
    }
    return changed > messages.size() / 4 + 8;
}

/// Whether a context's name is read as it is written. There are others.
bool isPlain(const QString& name)
{
    return !name.isEmpty() && !name.at(0).isSpace() &&
           std::all_of(name.begin(), name.end(), [](QChar c) {
               const ushort code = c.unicode();
               return code < 0x7F
                          ? code >= 0x20
                          : code >= 0xA0 && code < 0xFFFE && !c.isSpace() && !c.isSurrogate();
           });
}

} // namespace

// Messages of a known file stand together by context, each context once. As long as those of a
// translator do, and each run of them is one of the known file's, none is put elsewhere and none
// has another's key.
bool isReadBack(const QByteArray& bytes, const Translator& translator, const Translator& known)
{
    const QList<Message>& messages = translator.messages();
    const QList<Message>& knownMessages = known.messages();
    if (messages.size() != knownMessages.size() || !saysTheSame(translator, known) ||
        hasManyChanges(messages, knownMessages)) {
        return false;
    }
    PositionTable contexts;
    for (int i = 0; i < messages.size(); ++i) {
        const QString& context = messages.at(i).context();
        const QString& knownContext = knownMessages.at(i).context();
        const bool begins = i == 0 || context != messages.at(i - 1).context();
        const bool knownBegins = i == 0 || knownContext != knownMessages.at(i - 1).context();
        if (begins != knownBegins || !messages.at(i).hasSameText(knownMessages.at(i))) {
            return false;
        }
        if (begins) {
            int& first = contexts.at(hashText(context), [&](int position) {
                return messages.at(position).context() == context;
            });
            if (first != PositionTable::a_none || (context != knownContext && !isPlain(context))) {
                return false;
            }
            first = i;
        }
    }
    return !takesTooMuchMemory(bytes);
}

} // namespace KR::Localization::TS
