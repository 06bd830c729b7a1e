#pragma once

#include <kr/localization/message.hpp>
#include <krlocalization/export.hpp>

#include <QList>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace KR::Localization {

class MessageIndex;

/// How the locations of messages are written to a file.
enum class LocationStyle
{
    Absolute, ///< file name and line number each time
    Relative, ///< the distance to the line before, the file name only when it changes
    None      ///< not at all
};

/// The messages of one language in the order of their file, and what the file says of itself.
///
/// Copies share their data until one of them is changed: a copy costs nothing, the first change of
/// its list one pass over the pointers to the messages.
///
/// find() works on an index that is built when it is needed and not current. It is noticed when the
/// list has changed since, whether through this class or through a list that messages() gave at any
/// time before. Only a reference or an iterator to a single message of the list must not be used
/// for changes any more once find(), delIndex() or ensuredIndexed() was called, as with any
/// iterator of a container that has been copied.
///
/// Not for concurrent use, const functions included; after ensuredIndexed(), several threads may
/// call const functions as long as none changes the translator.
class KRLOCALIZATION_EXPORT Translator
{
public:
    /// No messages, no language.
    Translator();
    explicit Translator(QString languageCode);
    Translator(const Translator& other);
    Translator(Translator&& other) noexcept;
    Translator& operator=(const Translator& other);
    Translator& operator=(Translator&& other) noexcept;
    ~Translator();

    /// The language of the translations as the file names it, such as "fr" or "pt_BR"; empty when
    /// it names none.
    const QString& languageCode() const { return m_languageCode; }
    void setLanguageCode(const QString& languageCode) { m_languageCode = languageCode; }
    /// The language of the sources; empty when the file does not say.
    const QString& sourceLanguageCode() const { return m_sourceLanguageCode; }
    void setSourceLanguageCode(const QString& code) { m_sourceLanguageCode = code; }

    /// The names of the catalogues that are loaded together with this one.
    const QStringList& dependencies() const { return m_dependencies; }
    void setDependencies(const QStringList& dependencies) { m_dependencies = dependencies; }

    /// The file's own "extra-" elements, like Message::extras().
    const Message::Extras& extras() const { return m_extras; }
    /// Throws std::invalid_argument when Message::isExtraKey() refuses `key`.
    void setExtra(const QString& key, const QString& value);

    /// Absolute for a new translator.
    LocationStyle locationStyle() const { return m_locationStyle; }
    void setLocationStyle(LocationStyle style) { m_locationStyle = style; }

    /// The messages, to be changed at will.
    QList<Message>& messages() { return m_messages; }
    const QList<Message>& messages() const { return m_messages; }

    /// Adds messages at the end, also those whose key another message has. Keeps a current index
    /// current.
    void append(const QList<Message>& messages);

    /// The first message of the list with this key, in constant time; null when there is none. The
    /// pointer is good until the list changes.
    const Message* find(const QString& context, const QString& source,
                        const QString& comment = QString()) const;

    /// Builds the index unless it is current.
    void ensuredIndexed() const;

    /// Drops `message` from the index, so that find() no longer gives it, until the index is built
    /// anew: the message itself when it is of the list, else the first one with its key. Nothing
    /// happens when there is none. In constant time but for messages with the same key before it.
    void delIndex(const Message& message);

    /// Calls `patcher`, a `bool(QString&)`, with the context of every message in list order, and
    /// makes the changed string the context when it returns true. In linear time; only those
    /// messages are copied.
    template <class Patcher>
    void rewriteContexts(Patcher& patcher);

    /// Removes every message whose context `finder`, a `bool(const QString&)`, accepts. In linear
    /// time.
    template <class Finder>
    void remove(const Finder& finder);

    /// Whether everything that is written to a file is the same.
    bool operator==(const Translator& other) const;
    bool operator!=(const Translator& other) const { return !(*this == other); }

private:
    void dropIndex();

    QString m_languageCode;
    QString m_sourceLanguageCode;
    QStringList m_dependencies;
    Message::Extras m_extras;
    LocationStyle m_locationStyle = LocationStyle::Absolute;
    QList<Message> m_messages;
    mutable QSharedDataPointer<MessageIndex> m_index; // null: not built
};

template <class Patcher>
void Translator::rewriteContexts(Patcher& patcher)
{
    QString last; // which the messages of a context share, as when they were read
    // A range over the list would copy it even when no message changes.
    for (int i = 0; i < m_messages.size(); ++i) { // NOLINT(modernize-loop-convert): see above
        QString context = m_messages.at(i).context();
        if (patcher(context)) {
            if (context != last) {
                last = context;
            }
            dropIndex();
            m_messages[i].setContext(last);
        }
    }
}

template <class Finder>
void Translator::remove(const Finder& finder)
{
    dropIndex();
    const auto found = [&finder](const Message& message) { return finder(message.context()); };
    // Looked for in the const list first, so that nothing is copied when nothing is removed.
    const auto first = std::find_if(m_messages.cbegin(), m_messages.cend(), found);
    if (first == m_messages.cend()) {
        return;
    }
    const auto kept = std::distance(m_messages.cbegin(), first);
    m_messages.erase(std::remove_if(m_messages.begin() + kept, m_messages.end(), found),
                     m_messages.end());
}

} // namespace KR::Localization
