#include "translation_files.hpp"

#include "text.hpp"

#include <kr/localization/ts.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <QRegularExpression>

#include <algorithm>
#include <utility>
#include <vector>

namespace kxbox {

using KR::Localization::Message;
using KR::Localization::Translator;

namespace {

using Key = QPair<QString, QPair<QString, QString>>;

Key keyOf(const Message& message)
{
    return {message.context(), {message.source(), message.comment()}};
}

/// Forms without empty ones at the end, which a file may have or not.
QStringList formsOf(const Message& message)
{
    QStringList forms = message.translations();
    while (!forms.isEmpty() && forms.last().isEmpty()) {
        forms.removeLast();
    }
    return forms;
}

/// What people would miss.
bool hasWork(const Message& message)
{
    return message.isTranslated() || !message.translatorComment().isEmpty();
}

/// The first of each key.
QMap<Key, int> positionsOf(const Translator& translator)
{
    QMap<Key, int> positions;
    for (int i = 0; i < translator.messages().size(); ++i) {
        const Key key = keyOf(translator.messages().at(i));
        if (!positions.contains(key)) {
            positions.insert(key, i);
        }
    }
    return positions;
}

/// Puts a value where there is none. Whether it is there then.
template <class Value>
bool fill(Value& into, const Value& from)
{
    if (into.isEmpty()) {
        into = from;
    }
    return from.isEmpty() || into == from;
}

template <class Value, class Set>
bool fillField(Message& into, const Message& from, const Value& (Message::*get)() const, Set set)
{
    Value value = (into.*get)();
    const bool done = fill(value, (from.*get)());
    if (done) {
        (into.*set)(value);
    }
    return done;
}

/// The state of a message that has two, in files where it has the same translation or one has none.
Message::State stateOf(const Message& into, const Message& from, bool isSame)
{
    if (!isInUse(from)) {
        return into.state();
    }
    if (isSame) { // what is confirmed in one of the files is
        const bool isMore = from.state() == Message::State::Finished || !isInUse(into);
        return isMore ? from.state() : into.state();
    }
    if (from.isTranslated()) {
        return from.state();
    }
    return isInUse(into) ? into.state() : Message::State::Unfinished;
}

bool fillTranslation(Message& into, const Message& from)
{
    const bool isSame = formsOf(into) == formsOf(from);
    if (into.isTranslated() && from.isTranslated() && !isSame) {
        return false;
    }
    into.setState(stateOf(into, from, isSame));
    if (!into.isTranslated()) {
        into.setTranslations(from.translations());
    }
    return true;
}

bool fillExtras(Message& into, const Message& from)
{
    const Message::Extras& extras = from.extras();
    for (auto it = extras.cbegin(); it != extras.cend(); ++it) {
        if (into.extras().value(it.key(), it.value()) != it.value()) {
            return false;
        }
        into.setExtra(it.key(), it.value());
    }
    return true;
}

/// False when the two contradict each other.
bool fillMessage(Message& into, const Message& from)
{
    return into.isPlural() == from.isPlural() && fillTranslation(into, from) &&
           fillField(into, from, &Message::translatorComment, &Message::setTranslatorComment) &&
           fillField(into, from, &Message::id, &Message::setId) &&
           fillField(into, from, &Message::oldSource, &Message::setOldSource) &&
           fillField(into, from, &Message::oldComment, &Message::setOldComment) &&
           fillField(into, from, &Message::extraComment, &Message::setExtraComment) &&
           fillField(into, from, &Message::userData, &Message::setUserData) &&
           fillField(into, from, &Message::locations, &Message::setLocations) &&
           fillExtras(into, from);
}

/// What the files say of themselves. False, and nothing changes, when they contradict each other.
bool fillHead(Translator& into, const Translator& from)
{
    QString source = into.sourceLanguageCode();
    QStringList dependencies = into.dependencies();
    const Message::Extras& extras = from.extras();
    const auto fits = [&](const QString& key) {
        return into.extras().value(key, extras.value(key)) == extras.value(key);
    };
    const QStringList keys = extras.keys();
    if (!fill(source, from.sourceLanguageCode()) || !fill(dependencies, from.dependencies()) ||
        !std::all_of(keys.begin(), keys.end(), fits)) {
        return false;
    }
    into.setSourceLanguageCode(source);
    into.setDependencies(dependencies);
    for (const QString& key : keys) {
        into.setExtra(key, extras.value(key));
    }
    return true;
}

} // namespace

QString languageOf(const QString& path)
{
    static const QRegularExpression form(QStringLiteral("^translation_(.+)\\.ts$"));
    const auto match = form.match(nameOf(path));
    return match.hasMatch() ? displayNameOf(match.captured(1)) : QString();
}

bool isInUse(const Message& message)
{
    return message.state() == Message::State::Finished ||
           message.state() == Message::State::Unfinished;
}

int countContradictions(const Translator& translator)
{
    QMap<Key, QStringList> first;
    int count = 0;
    for (const Message& message : translator.messages()) {
        if (!message.isTranslated()) {
            continue;
        }
        const Key key = keyOf(message);
        const auto known = first.constFind(key);
        if (known == first.constEnd()) {
            first.insert(key, formsOf(message));
        } else if (*known != formsOf(message)) {
            ++count;
        }
    }
    return count;
}

std::optional<QByteArray> writeWhole(const Translator& translator)
{
    QByteArray bytes = KR::Localization::TS::translatorTo(translator, false);
    const TranslationFile written = readTranslationFile(QString(), bytes);
    const QMap<Key, int> positions = positionsOf(written.translator);
    const auto& messages = translator.messages();
    const bool isWhole = std::all_of(messages.begin(), messages.end(), [&](const Message& message) {
        const int position = positions.value(keyOf(message), -1);
        if (!hasWork(message)) {
            return true;
        }
        if (position < 0) {
            return false;
        }
        const Message& found = written.translator.messages().at(position);
        return (!message.isTranslated() || formsOf(found) == formsOf(message)) &&
               (message.translatorComment().isEmpty() ||
                found.translatorComment() == message.translatorComment());
    });
    if (!isWhole || written.damage || written.language() != translator.languageCode()) {
        return std::nullopt;
    }
    return bytes;
}

Merger::Merger(Translator translator)
    : m_merged(std::move(translator)), m_positions(positionsOf(m_merged))
{
}

std::string Merger::add(const Translator& translator)
{
    // What becomes of each key, in order; put into the messages when nothing contradicts.
    std::vector<Message> changed;
    QMap<Key, int> positions;
    const Message* contradiction = nullptr;
    int contradictions = 0;
    for (const Message& message : translator.messages()) {
        const Key key = keyOf(message);
        const auto known = positions.constFind(key);
        if (known == positions.constEnd()) {
            positions.insert(key, static_cast<int>(changed.size()));
            const int position = m_positions.value(key, -1);
            changed.push_back(position < 0 ? message : m_merged.messages().at(position));
        }
        if (!fillMessage(changed[static_cast<std::size_t>(positions.value(key))], message)) {
            contradiction = contradiction != nullptr ? contradiction : &message;
            ++contradictions;
        }
    }
    if (contradictions > 0) {
        return counted(contradictions, "message says", "messages say") +
               " something else there, as '" + contradiction->source().toStdString() + "' of '" +
               contradiction->context().toStdString() + "'";
    }
    if (!fillHead(m_merged, translator)) {
        return "the files contradict each other in what they say of themselves";
    }
    for (const Message& message : changed) {
        const auto known = m_positions.constFind(keyOf(message));
        if (known != m_positions.constEnd()) {
            m_merged.messages()[*known] = message;
        } else {
            m_positions.insert(keyOf(message), m_merged.messages().size());
            m_merged.messages().append(message);
        }
    }
    return {};
}

} // namespace kxbox
