#pragma once

#include <krlocalization/export.hpp>

#include <QMap>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

namespace KR::Localization {

/// A place in a source file where a message is used.
struct Location
{
    QString fileName; ///< as the file has it: relative to the translation file, "/" as separator
    int line = -1;    ///< counted from 1; -1 when the file names no line
};

inline bool operator==(const Location& a, const Location& b)
{
    return a.line == b.line && a.fileName == b.fileName;
}

/// One text of a program with its translation: everything that a `<message>` of a Qt Linguist file
/// holds, and the name of the `<context>` around it.
///
/// A value type whose copies share their data until one of them is changed, so lists of messages
/// are cheap to copy. A message that was moved from may only be assigned to or destroyed.
class KRLOCALIZATION_EXPORT Message
{
public:
    enum class State
    {
        Finished,   ///< the translator has confirmed it
        Unfinished, ///< to be translated, or to be looked at
        Vanished,   ///< no longer in the sources
        Obsolete    ///< no longer in the sources, as files before TS 2.1 called it
    };
    using Extras = QMap<QString, QString>;

    /// An empty, unfinished message without a translation.
    Message();
    Message(const QString& context, const QString& source, const QString& comment = QString());
    Message(const Message& other);
    Message(Message&& other) noexcept;
    Message& operator=(const Message& other);
    Message& operator=(Message&& other) noexcept;
    ~Message();

    /// What the message is for: context, source and comment together are its key.
    const QString& context() const;
    void setContext(const QString& context);
    const QString& source() const;
    void setSource(QString source);
    const QString& comment() const;
    void setComment(QString comment);

    /// The identifier of a text that is looked up by it; empty for most messages.
    const QString& id() const;
    void setId(QString id);

    State state() const;
    void setState(State state);

    /// Whether the translation has one form per grammatical number of the language.
    bool isPlural() const;
    void setPlural(bool plural);

    /// The translation, of a plural message its forms in the language's order. Variants of a form
    /// of different length, the longest first, are separated by U+009C, as QTranslator gives them.
    QStringList translations() const;
    void setTranslations(const QStringList& translations);
    /// The first form; empty when there is none.
    const QString& translation() const;
    /// Makes `translation` the only form.
    void setTranslation(QString translation);
    /// Whether a form is not empty.
    bool isTranslated() const;

    /// Source and comment before the developer changed them, for the translator to compare.
    const QString& oldSource() const;
    void setOldSource(QString oldSource);
    const QString& oldComment() const;
    void setOldComment(QString oldComment);
    /// What the developer tells the translator beside the comment, which is part of the key.
    const QString& extraComment() const;
    void setExtraComment(QString extraComment);
    /// The translator's own note.
    const QString& translatorComment() const;
    void setTranslatorComment(QString translatorComment);
    /// Text that some other program keeps with the message.
    const QString& userData() const;
    void setUserData(QString userData);

    const QVector<Location>& locations() const;
    void setLocations(const QVector<Location>& locations);

    /// The "extra-" elements: their text by what follows "extra-" in the element's name.
    const Extras& extras() const;
    /// Throws std::invalid_argument when `key` is not one that isExtraKey() accepts.
    void setExtra(const QString& key, const QString& value);
    void removeExtra(const QString& key);
    /// Whether `key` can end an element's name: not empty, of letters, digits, marks, "-", "_" and
    /// ".".
    static bool isExtraKey(const QString& key);

    /// Whether all fields are the same; at once when the messages share their data.
    bool operator==(const Message& other) const;
    bool operator!=(const Message& other) const { return !(*this == other); }
    /// Whether all fields but the context are the same; at once when the messages share their data.
    bool hasSameText(const Message& other) const;
    /// Whether the messages are copies of one message, unchanged since.
    bool isSharedWith(const Message& other) const { return m_data == other.m_data; }

private:
    struct Data;
    QSharedDataPointer<Data> m_data;
};

} // namespace KR::Localization

Q_DECLARE_TYPEINFO(KR::Localization::Message, Q_MOVABLE_TYPE);
