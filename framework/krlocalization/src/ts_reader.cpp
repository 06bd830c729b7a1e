#include "ts_reader.hpp"

#include "ts_memory.hpp"
#include "xml_source.hpp"

#include <QMap>
#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace KR::Localization {

namespace {

using pugi::xml_node;

constexpr QChar a_variantSeparator(0x9C);

/// A text element of a message and the field that it fills.
struct TextField
{
    const char* element;
    void (Message::*set)(QString);
};

constexpr std::array a_textFields{
    TextField{"source", &Message::setSource},
    TextField{"comment", &Message::setComment},
    TextField{"oldsource", &Message::setOldSource},
    TextField{"oldcomment", &Message::setOldComment},
    TextField{"extracomment", &Message::setExtraComment},
    TextField{"translatorcomment", &Message::setTranslatorComment},
    TextField{"userdata", &Message::setUserData},
};

/// What follows "extra-" in the name of an element; null for another element.
const char* extraKey(xml_node element)
{
    constexpr std::string_view prefix = "extra-";
    const std::string_view name = element.name();
    return name.substr(0, prefix.size()) == prefix ? element.name() + prefix.size() : nullptr;
}

/// The sum of line numbers, which wraps as the hostile ones that need it deserve.
int plus(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

class Reader
{
public:
    explicit Reader(const QByteArray& bytes) : m_xml(bytes) {}

    Translator read();

private:
    void readRoot(xml_node root);
    void readDependencies(xml_node element);
    void readContext(xml_node element);
    void readMessage(xml_node element, const QString& context);
    bool readExtra(xml_node element, Message* message);
    void readTranslation(xml_node element, Message& message);
    QString readForm(xml_node element, bool variants);

    struct MessageLocations
    {
        QVector<Location> list;
        QString file; // of the location before
    };
    void readLocation(xml_node element, MessageLocations& locations);
    void addLocation(MessageLocations& locations, const QString& fileName, const QString& line);

    const XmlSource m_xml;
    Translator m_translator;
    QString m_currentFile;            // of the first location of a message that names one
    QMap<QString, int> m_currentLine; // per file, of the location before
};

Translator Reader::read()
{
    if (!isElement(m_xml.root(), "TS")) {
        m_xml.fail("the root element is not <TS>", m_xml.root());
    }
    readRoot(m_xml.root());
    return m_translator;
}

void Reader::readRoot(xml_node root)
{
    m_xml.readAttributes(root, [this](const char* name, const QString& value) {
        if (std::strcmp(name, "language") == 0) {
            m_translator.setLanguageCode(value);
        } else if (std::strcmp(name, "sourcelanguage") == 0) {
            m_translator.setSourceLanguageCode(value);
        }
    });
    m_xml.readChildren(root, true, [this](xml_node child) {
        if (isElement(child, "context")) {
            readContext(child);
        } else if (isElement(child, "dependencies")) {
            readDependencies(child);
        } else if (isElement(child, "defaultcodec")) {
            m_xml.readNoAttributes(child);
            m_xml.readText(child, true);
        } else if (!readExtra(child, nullptr)) {
            m_xml.failUnexpected(child);
        }
    });
}

void Reader::readDependencies(xml_node element)
{
    QStringList dependencies;
    m_xml.readNoAttributes(element);
    m_xml.readChildren(element, true, [&](xml_node child) {
        if (!isElement(child, "dependency")) {
            m_xml.failUnexpected(child);
        }
        QString catalog;
        m_xml.readAttributes(child, [&catalog](const char* name, const QString& value) {
            if (std::strcmp(name, "catalog") == 0) {
                catalog = value;
            }
        });
        m_xml.readText(child);
        dependencies.append(catalog);
    });
    m_translator.setDependencies(dependencies);
}

void Reader::readContext(xml_node element)
{
    QString context;
    m_xml.readNoAttributes(element);
    m_xml.readChildren(element, true, [&](xml_node child) {
        if (isElement(child, "message")) {
            readMessage(child, context);
        } else if (isElement(child, "name")) {
            m_xml.readNoAttributes(child);
            context = m_xml.readText(child, true);
        } else {
            m_xml.failUnexpected(child);
        }
    });
}

void Reader::readMessage(xml_node element, const QString& context)
{
    m_translator.messages().append(Message());
    Message& message = m_translator.messages().last();
    message.setContext(context);
    message.setState(Message::State::Finished);
    m_xml.readAttributes(element, [&message](const char* name, const QString& value) {
        if (std::strcmp(name, "id") == 0) {
            message.setId(value);
        } else if (std::strcmp(name, "numerus") == 0) {
            message.setPlural(value == QLatin1String("yes"));
        }
    });
    MessageLocations locations;
    locations.file = m_currentFile;
    m_xml.readChildren(element, true, [&](xml_node child) {
        const std::string_view name = child.name();
        const auto* const field =
            std::find_if(a_textFields.begin(), a_textFields.end(),
                         [name](const TextField& candidate) { return name == candidate.element; });
        if (field != a_textFields.end()) {
            m_xml.readNoAttributes(child);
            (message.*field->set)(m_xml.readText(child));
        } else if (name == "translation") {
            readTranslation(child, message);
        } else if (name == "location") {
            readLocation(child, locations);
        } else if (!readExtra(child, &message)) {
            m_xml.failUnexpected(child);
        }
    });
    if (!locations.list.isEmpty()) {
        message.setLocations(locations.list);
    }
}

/// Reads an <extra-...> of the message, or of the file when there is none; false when the element
/// is another one.
bool Reader::readExtra(xml_node element, Message* message)
{
    const char* const rawKey = extraKey(element);
    if (rawKey == nullptr) {
        return false;
    }
    QString key;
    m_xml.append(key, rawKey, XmlTextKind::Cdata, element);
    if (!key.isEmpty() && !Message::isExtraKey(key)) {
        m_xml.failUnexpected(element);
    }
    m_xml.readNoAttributes(element);
    const QString value = m_xml.readText(element);
    if (key.isEmpty()) {
        return true; // read and forgotten by Linguist too
    }
    if (message != nullptr) {
        message->setExtra(key, value);
    } else {
        m_translator.setExtra(key, value);
    }
    return true;
}

void Reader::readTranslation(xml_node element, Message& message)
{
    bool variants = false;
    m_xml.readAttributes(element, [&](const char* name, const QString& value) {
        if (std::strcmp(name, "variants") == 0) {
            variants = value == QLatin1String("yes");
        } else if (std::strcmp(name, "type") == 0) {
            if (value == QLatin1String("unfinished")) {
                message.setState(Message::State::Unfinished);
            } else if (value == QLatin1String("vanished")) {
                message.setState(Message::State::Vanished);
            } else if (value == QLatin1String("obsolete")) {
                message.setState(Message::State::Obsolete);
            }
        }
    });
    if (!message.isPlural()) {
        message.setTranslation(readForm(element, variants));
        return;
    }
    QStringList forms;
    m_xml.readChildren(element, false, [&](xml_node child) {
        if (!isElement(child, "numerusform")) {
            m_xml.failUnexpected(child);
        }
        bool formVariants = false;
        m_xml.readAttributes(child, [&formVariants](const char* name, const QString& value) {
            if (std::strcmp(name, "variants") == 0) {
                formVariants = value == QLatin1String("yes");
            }
        });
        forms.append(readForm(child, formVariants));
    });
    message.setTranslations(forms);
}

QString Reader::readForm(xml_node element, bool variants)
{
    if (!variants) {
        return m_xml.readText(element);
    }
    QString form;
    m_xml.readChildren(element, false, [&](xml_node child) {
        if (!isElement(child, "lengthvariant")) {
            m_xml.failUnexpected(child);
        }
        m_xml.readNoAttributes(child);
        if (!form.isEmpty()) {
            form += a_variantSeparator;
        }
        form += m_xml.readText(child);
    });
    return form;
}

void Reader::readLocation(xml_node element, MessageLocations& locations)
{
    QString fileName;
    QString line;
    m_xml.readAttributes(element, [&](const char* name, const QString& value) {
        if (std::strcmp(name, "filename") == 0) {
            fileName = value;
        } else if (std::strcmp(name, "line") == 0) {
            line = value;
        }
    });
    m_xml.readText(element);
    addLocation(locations, fileName, line);
}

/// A location without a file name is in the file of the one before, or, as a message's first, in
/// the file that the last message's first location with a name was in. A line with a sign counts
/// from the line before in the same file. Either makes the file one with relative locations.
void Reader::addLocation(MessageLocations& locations, const QString& fileName, const QString& line)
{
    if (fileName.isEmpty()) {
        m_translator.setLocationStyle(LocationStyle::Relative);
    } else if (fileName != locations.file) {
        locations.file = fileName;
    }
    if (!fileName.isEmpty() && locations.list.isEmpty()) {
        m_currentFile = locations.file;
    }
    if (line.isEmpty()) {
        locations.list.append({locations.file, -1});
        return;
    }
    bool isNumber = false;
    int number = line.toInt(&isNumber);
    if (!isNumber) {
        return;
    }
    if (line.startsWith(QLatin1Char('+')) || line.startsWith(QLatin1Char('-'))) {
        int& current = m_currentLine[locations.file];
        current = plus(current, number);
        number = current;
        m_translator.setLocationStyle(LocationStyle::Relative);
    }
    locations.list.append({locations.file, number});
}

} // namespace

Translator readTs(const QByteArray& bytes)
{
    if (takesTooMuchMemory(bytes)) {
        throw DamagedFile("it would take more than " + std::to_string(a_mostMegabytesToRead) +
                          " MiB of memory");
    }
    return Reader(bytes).read();
}

} // namespace KR::Localization
