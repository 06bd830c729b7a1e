#include "ts_writer.hpp"

#include "duplicates.hpp"
#include "plural_forms.hpp"
#include "position_table.hpp"
#include "text_hash.hpp"
#include "xml_text.hpp"

#include <QDir>
#include <QMap>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace KR::Localization {

namespace {

constexpr int a_bytesPerMessage = 256;
constexpr QChar a_variantSeparator(0x9C);

bool isGone(const Message& message)
{
    return message.state() == Message::State::Vanished ||
           message.state() == Message::State::Obsolete;
}

bool isLanguage(const QString& languageCode)
{
    return !languageCode.isEmpty() && languageCode != QLatin1String("C");
}

/// A file name as Linguist's tools write it. They also make an absolute one relative to the
/// directory that they write to, which is not known here.
QString cleanFileName(const QString& fileName)
{
    QString name = fileName;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return QDir::cleanPath(name);
}

/// A context's name as content. Linguist can't read the <byte> elements that it writes here, so a
/// carriage return, the one control character that has another form, gets that form.
QByteArray contextName(const QString& context)
{
    QByteArray name;
    appendContent(name, context);
    return name.replace("<byte value=\"xd\"/>", "&#xd;");
}

/// A form without empty variants at its front, which Linguist loses when it reads them.
QString cleanForm(const QString& form)
{
    int start = 0;
    while (start < form.size() && form.at(start) == a_variantSeparator) {
        ++start;
    }
    return form.mid(start);
}

/// Messages by context, contexts and the messages of each in the order of the list.
class Groups
{
public:
    explicit Groups(const QList<Message>& messages) : m_messages(messages)
    {
        m_next.resize(static_cast<std::size_t>(messages.size()), -1);
    }

    void add(int position)
    {
        if (m_chains.empty() || context(m_chains[m_current]) != m_messages.at(position).context()) {
            select(position);
        }
        Chain& chain = m_chains[m_current];
        if (chain.last >= 0) {
            m_next[static_cast<std::size_t>(chain.last)] = position;
        }
        chain.last = position;
    }

    /// Calls `begin(context)`, `write(message)` for each of its messages, and `end()`.
    template <class Begin, class Write, class End>
    void forEach(const Begin& begin, const Write& write, const End& end) const
    {
        for (const Chain& chain : m_chains) {
            begin(context(chain));
            for (int i = chain.first; i >= 0; i = m_next[static_cast<std::size_t>(i)]) {
                write(m_messages.at(i));
            }
            end();
        }
    }

private:
    struct Chain
    {
        int first;
        int last;
    };

    const QString& context(const Chain& chain) const
    {
        return m_messages.at(chain.first).context();
    }

    void select(int position)
    {
        const QString& wanted = m_messages.at(position).context();
        int& known = m_table.at(hashText(wanted), [&](int i) {
            return context(m_chains[static_cast<std::size_t>(i)]) == wanted;
        });
        if (known < 0) {
            known = static_cast<int>(m_chains.size());
            m_chains.push_back({position, -1});
        }
        m_current = static_cast<std::size_t>(known);
    }

    const QList<Message>& m_messages;
    PositionTable m_table; // gives positions in m_chains
    std::vector<Chain> m_chains;
    std::vector<int> m_next; // per message the next one of its context; -1 at the end
    std::size_t m_current = 0;
};

class Writer
{
public:
    Writer(const Translator& translator, bool withoutObsolete)
        : m_translator(translator),
          m_messages(withoutDuplicates(translator.messages())),
          m_withoutObsolete(withoutObsolete),
          m_pluralForms(pluralForms(translator.languageCode()))
    {
    }

    QByteArray write();

private:
    bool isWritten(const Message& message) const;
    template <std::size_t N>
    void put(const char (&text)[N])
    {
        m_bytes.append(text, static_cast<int>(N) - 1);
    }
    void writeHead();
    void writeMessage(const Message& message);
    void writeLocations(const Message& message);
    QString relativeLine(const QString& fileName, int line);
    void writeTranslation(const Message& message);
    void writeForm(const QString& form, const char* indent);
    void writeExtras(const Message::Extras& extras, const char* indent);
    void writeText(const QByteArray& name, const QString& text);
    void writeTextIfAny(const QByteArray& name, const QString& text);
    void writeAttribute(const char* name, const QString& value);

    const Translator& m_translator;
    const QList<Message> m_messages;
    const bool m_withoutObsolete;
    const int m_pluralForms;
    QString m_currentFile;            // of the first location of a message that names one
    QMap<QString, int> m_currentLine; // per file, of the location before
    QByteArray m_bytes;
};

QByteArray Writer::write()
{
    m_bytes.reserve(std::min(m_messages.size(), 1 << 22) * a_bytesPerMessage);
    writeHead();
    Groups groups(m_messages);
    for (int i = 0; i < m_messages.size(); ++i) {
        if (isWritten(m_messages.at(i))) {
            groups.add(i);
        }
    }
    groups.forEach(
        [this](const QString& context) {
            m_bytes += "<context>\n    <name>" + contextName(context) + "</name>\n";
        },
        [this](const Message& message) { writeMessage(message); }, [this] { put("</context>\n"); });
    put("</TS>\n");
    return m_bytes;
}

bool Writer::isWritten(const Message& message) const
{
    return !isGone(message) || (!m_withoutObsolete && !cleanForm(message.translation()).isEmpty());
}

void Writer::writeHead()
{
    put("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\"");
    if (isLanguage(m_translator.languageCode())) {
        writeAttribute("language", m_translator.languageCode());
    }
    if (isLanguage(m_translator.sourceLanguageCode())) {
        writeAttribute("sourcelanguage", m_translator.sourceLanguageCode());
    }
    put(">\n");
    if (!m_translator.dependencies().isEmpty()) {
        put("<dependencies>\n");
        for (const QString& catalog : m_translator.dependencies()) {
            put("<dependency");
            writeAttribute("catalog", catalog);
            put("/>\n");
        }
        put("</dependencies>\n");
    }
    writeExtras(m_translator.extras(), "    ");
}

void Writer::writeMessage(const Message& message)
{
    put("    <message");
    if (!message.id().isEmpty()) {
        writeAttribute("id", message.id());
    }
    if (message.isPlural()) {
        put(" numerus=\"yes\"");
    }
    put(">\n");
    writeLocations(message);
    writeText(QByteArrayLiteral("source"), message.source());
    writeTextIfAny(QByteArrayLiteral("oldsource"), message.oldSource());
    writeTextIfAny(QByteArrayLiteral("comment"), message.comment());
    writeTextIfAny(QByteArrayLiteral("oldcomment"), message.oldComment());
    writeTextIfAny(QByteArrayLiteral("extracomment"), message.extraComment());
    writeTextIfAny(QByteArrayLiteral("translatorcomment"), message.translatorComment());
    writeTranslation(message);
    writeExtras(message.extras(), "        ");
    if (!message.userData().isEmpty()) {
        put("        <userdata>");
        appendPlainContent(m_bytes, message.userData());
        put("</userdata>\n");
    }
    put("    </message>\n");
}

/// When the first location names no file, Linguist knows none of the message's locations.
void Writer::writeLocations(const Message& message)
{
    const QVector<Location>& locations = message.locations();
    if (locations.isEmpty() || locations.first().fileName.isEmpty() ||
        m_translator.locationStyle() == LocationStyle::None) {
        return;
    }
    const bool relative = m_translator.locationStyle() == LocationStyle::Relative;
    QString fileBefore = m_currentFile;
    for (const Location& location : locations) {
        const QString fileName = cleanFileName(location.fileName);
        put("        <location");
        if (!relative || fileName != fileBefore) {
            if (!fileName.isEmpty()) {
                writeAttribute("filename", fileName);
            }
            if (&location == &locations.first()) {
                m_currentFile = fileName;
            }
            fileBefore = fileName;
        }
        if (location.line != -1) {
            writeAttribute("line", relative ? relativeLine(fileName, location.line)
                                            : QString::number(location.line));
        }
        put("/>\n");
    }
}

QString Writer::relativeLine(const QString& fileName, int line)
{
    int& current = m_currentLine[fileName];
    // Unsigned, for lines so far apart that the distance does not fit.
    const int distance =
        static_cast<int>(static_cast<unsigned>(line) - static_cast<unsigned>(current));
    current = line;
    const QString number = QString::number(distance);
    return distance >= 0 ? QLatin1Char('+') + number : number;
}

void Writer::writeTranslation(const Message& message)
{
    put("        <translation");
    switch (message.state()) {
    case Message::State::Finished:
        break;
    case Message::State::Unfinished:
        put(" type=\"unfinished\"");
        break;
    case Message::State::Vanished:
        put(" type=\"vanished\"");
        break;
    case Message::State::Obsolete:
        put(" type=\"obsolete\"");
        break;
    }
    if (message.isPlural()) {
        m_bytes += '>';
        const QStringList forms = message.translations();
        for (int i = 0; i < m_pluralForms; ++i) {
            put("\n            <numerusform");
            writeForm(cleanForm(forms.value(i)), "            ");
            put("</numerusform>");
        }
        put("\n        ");
    } else {
        writeForm(cleanForm(message.translation()), "        ");
    }
    put("</translation>\n");
}

/// Writes the end of a start tag and the text behind it.
void Writer::writeForm(const QString& form, const char* indent)
{
    if (!form.contains(a_variantSeparator)) {
        m_bytes += '>';
        appendContent(m_bytes, form);
        return;
    }
    put(" variants=\"yes\">");
    for (const QString& variant : form.split(a_variantSeparator)) {
        put("\n    ");
        m_bytes += indent;
        put("<lengthvariant>");
        appendContent(m_bytes, variant);
        put("</lengthvariant>");
    }
    m_bytes += '\n';
    m_bytes += indent;
}

void Writer::writeExtras(const Message::Extras& extras, const char* indent)
{
    if (extras.isEmpty()) {
        return;
    }
    // The order is that of the elements as strings, in which "-" and "." come before a name's end.
    QStringList names;
    for (auto it = extras.cbegin(); it != extras.cend(); ++it) {
        names.append(it.key() + QLatin1Char('>'));
    }
    names.sort();
    for (const QString& name : names) {
        const QByteArray tag = "extra-" + name.toUtf8();
        m_bytes += indent;
        m_bytes += '<' + tag;
        appendContent(m_bytes, extras.value(name.chopped(1)));
        m_bytes += "</" + tag + '\n';
    }
}

void Writer::writeText(const QByteArray& name, const QString& text)
{
    put("        <");
    m_bytes += name;
    m_bytes += '>';
    appendContent(m_bytes, text);
    put("</");
    m_bytes += name;
    put(">\n");
}

void Writer::writeTextIfAny(const QByteArray& name, const QString& text)
{
    if (!text.isEmpty()) {
        writeText(name, text);
    }
}

void Writer::writeAttribute(const char* name, const QString& value)
{
    m_bytes += ' ';
    m_bytes += name;
    put("=\"");
    appendAttributeValue(m_bytes, value);
    m_bytes += '"';
}

} // namespace

QByteArray writeTs(const Translator& translator, bool withoutObsolete)
{
    return Writer(translator, withoutObsolete).write();
}

} // namespace KR::Localization
