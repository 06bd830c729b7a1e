// tr status, add, update, get and set: the translations of the boxes' texts.
#include "box_texts.hpp"
#include "catalogue.hpp"
#include "command_line.hpp"
#include "commands.hpp"
#include "coverage.hpp"
#include "failure.hpp"
#include "messages.hpp"

#include <kr/localization/ts.hpp>

#include <QRegularExpression>

#include <algorithm>
#include <set>
#include <utility>

namespace kxbox {

namespace {

using KR::Localization::Message;
using KR::Localization::Translator;
using KX::BoxLibraryNode;
using Translators = KX::BoxLibrary::Translators;

// status

Outcome status(Session& session)
{
    OpenLibrary& library = session.library();
    const CoverageReport report(library);
    Outcome outcome;
    outcome.text = report.text();
    outcome.json = {{"library", library.path()}};
    outcome.json.update(report.json());
    return outcome;
}

// add and update

/// Whether two codes stand for one language, in one file where letters' case does not matter.
bool isSameLanguage(const QString& a, const QString& b)
{
    const auto plain = [](const QString& code) {
        return code.toLower().replace(QLatin1Char('-'), QLatin1Char('_'));
    };
    return plain(a) == plain(b);
}

void requireNewLanguage(const OpenLibrary& library, const QString& language)
{
    static const QRegularExpression a_code(QRegularExpression::anchoredPattern(
        QStringLiteral("[A-Za-z]{2,3}([_-][A-Za-z0-9]{2,8})*")));
    if (!a_code.match(language).hasMatch()) {
        throw Failure(library.path() + ": '" + language.toStdString() +
                      "' is no language code such as fr or pt_BR");
    }
    const QStringList languages = library->translations().keys();
    const auto known =
        std::find_if(languages.begin(), languages.end(),
                     [&language](const QString& other) { return isSameLanguage(language, other); });
    if (known != languages.end()) {
        throw Failure(library.path() + ": the language '" + known->toStdString() +
                      "' is there already");
    }
}

/// That of all translators when they agree on one, else English.
QString sourceLanguage(const Translators& translators)
{
    std::set<QString> codes;
    for (const Translator& translator : translators) {
        codes.insert(translator.sourceLanguageCode());
    }
    const bool isOne = codes.size() == 1 && codes.count(QString()) == 0;
    return isOne ? *codes.begin() : QStringLiteral("en");
}

void noteCounts(Changes& changes, const QString& language, const UpdateCounts& counts)
{
    if (!counts.isEmpty()) {
        changes.add("messages", language.toStdString(), counts.text());
    }
}

void addLanguage(const OpenLibrary& library, Changes& changes, const std::string& code)
{
    library.requireReadableTranslations();
    const QString language = QString::fromStdString(code);
    requireNewLanguage(library, language);
    Translators translators = library->translations();
    Translator translator(language);
    translator.setSourceLanguageCode(sourceLanguage(translators));
    const UpdateCounts counts = Catalogue(*library).update(translator);
    translators.insert(language, translator);
    library->setTranslations(translators);
    changes.add("language", code);
    noteCounts(changes, language, counts);
}

void update(const OpenLibrary& library, Changes& changes)
{
    library.requireReadableTranslations();
    const Catalogue catalogue(*library);
    Translators translators = library->translations();
    QStringList languages = translators.keys();
    languages.sort();
    for (const QString& language : std::as_const(languages)) {
        noteCounts(changes, language, catalogue.update(translators[language]));
    }
    if (!changes.isEmpty()) {
        library->setTranslations(translators);
    }
}

// get and set

/// A text of a node, in a language.
struct TextArguments
{
    std::string node;
    std::string language;
    std::string source;
};

void requireLanguage(const OpenLibrary& library, const Translators& translators,
                     const std::string& language)
{
    if (!translators.contains(QString::fromStdString(language))) {
        throw Failure(library.path() + ": no language '" + language + "'");
    }
}

std::string quoted(const OpenLibrary& library, const BoxLibraryNode& node)
{
    return "'" + library.address(node) + "'";
}

/// The places of the messages for a text that have one key: no comment, or, when all messages for
/// the text have one, the same. Files of other programs may have a key more than once. Throws
/// Failure when their comments differ.
std::vector<int> placesOf(const OpenLibrary& library, const BoxLibraryNode& node,
                          const Translator& translator, const std::string& source)
{
    const TextKey key(node.translationContext(), QString::fromStdString(source));
    const QList<Message>& messages = translator.messages();
    std::vector<int> plain;
    std::vector<int> commented;
    for (int i = 0; i < messages.size(); ++i) {
        if (keyOf(messages.at(i)) == key) {
            (messages.at(i).comment().isEmpty() ? plain : commented).push_back(i);
        }
    }
    if (!plain.empty()) {
        return plain;
    }
    const auto isOther = [&](int i) {
        return messages.at(i).comment() != messages.at(commented.front()).comment();
    };
    if (std::any_of(commented.begin(), commented.end(), isOther)) {
        throw Failure(library.path() + ": '" + source + "' is ambiguous: " + quoted(library, node) +
                      " has messages with different comments for it");
    }
    return commented;
}

Outcome get(Session& session, const TextArguments& arguments)
{
    const OpenLibrary& library = session.library();
    const BoxLibraryNode& node = library.node(arguments.node);
    const Translators translators = library->translations();
    requireLanguage(library, translators, arguments.language);
    const Translator translator = translators.value(QString::fromStdString(arguments.language));
    const auto places = placesOf(library, node, translator, arguments.source);
    if (places.empty()) {
        throw Failure(library.path() + ": " + quoted(library, node) + " has no message '" +
                      arguments.source + "' in '" + arguments.language + "'");
    }
    const Message& message = translator.messages().at(places.front());
    Outcome outcome;
    outcome.json = {{"library", library.path()},
                    {"node", library.address(node)},
                    {"language", arguments.language},
                    {"source", arguments.source}};
    addTranslation(outcome.json, message);
    for (const QString& form :
         message.isPlural() ? message.translations() : QStringList(message.translation())) {
        outcome.text += printable(form) + "\n";
    }
    outcome.json["state"] = nameOf(message.state());
    return outcome;
}

struct SetArguments : TextArguments
{
    std::string translation;
    bool unfinished = false;
};

/// Throws Failure for what a translation file can't hold or would read otherwise: U+009C, for
/// instance, separates variants of different length there.
void requireTranslation(const OpenLibrary& library, const std::string& translation)
{
    const QString text = QString::fromStdString(translation);
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const bool isControl = character.category() == QChar::Other_Control && code != '\t' &&
                               code != '\n' && code != '\r';
        if (isControl || code >= 0xfffe) {
            const QString number = QStringLiteral("%1").arg(code, 4, 16, QLatin1Char('0'));
            throw Failure(library.path() + ": a translation can't have the character U+" +
                          number.toUpper().toStdString());
        }
    }
}

bool isTextOf(const BoxLibraryNode& node, const QString& text)
{
    const auto data = node.boxData();
    return data && translatableTexts(*data).contains(text);
}

/// Throws Failure when a text is not, or no more, one of a node's that are translated.
void requireTextOf(const OpenLibrary& library, const BoxLibraryNode& node,
                   const std::string& source, const char* end)
{
    if (OpenLibrary::isFolder(node)) {
        throw Failure(library.path() + ": " + quoted(library, node) +
                      " is a folder, which has no texts to translate");
    }
    if (!isTextOf(node, QString::fromStdString(source))) {
        throw Failure(library.path() + ": " + quoted(library, node) + " has no text '" + source +
                      "'" + end);
    }
}

/// How many plural forms a file has in a language.
int countForms(const QString& language)
{
    Translator translator(language);
    translator.messages().append(Message(QString(), QStringLiteral("n")));
    translator.messages().last().setPlural(true);
    const auto read =
        KR::Localization::TS::translatorFrom(KR::Localization::TS::translatorTo(translator, false));
    return read.messages().at(0).translations().size();
}

/// The forms that `text` has for a message: a plural one has one a line, as get() prints them.
QStringList formsOf(const OpenLibrary& library, const Message& message, const QString& language,
                    const QString& text)
{
    if (!message.isPlural()) {
        return {text};
    }
    const int count = countForms(language);
    QStringList forms = text.split(QLatin1Char('\n'));
    if (text.isEmpty()) {
        forms = QVector<QString>(count, QLatin1String("")).toList();
    }
    if (forms.size() != count) {
        throw Failure(library.path() + ": the message needs its " + std::to_string(count) +
                      " plural forms, each on a line, not " + std::to_string(forms.size()));
    }
    return forms;
}

void setMessage(const OpenLibrary& library, Message& message, const SetArguments& arguments)
{
    const QString text = QString::fromStdString(arguments.translation);
    message.setTranslations(
        formsOf(library, message, QString::fromStdString(arguments.language), text));
    message.setState(arguments.unfinished || !message.isTranslated() ? Message::State::Unfinished
                                                                     : Message::State::Finished);
}

void set(const OpenLibrary& library, Changes& changes, const SetArguments& arguments)
{
    library.requireReadableTranslations();
    const BoxLibraryNode& node = library.node(arguments.node);
    Translators translators = library->translations();
    requireLanguage(library, translators, arguments.language);
    requireTranslation(library, arguments.translation);
    Translator& translator = translators[QString::fromStdString(arguments.language)];
    const Translator before = translator;
    auto places = placesOf(library, node, translator, arguments.source);
    if (places.empty()) {
        requireTextOf(library, node, arguments.source, "");
        places.push_back(translator.messages().size());
        translator.messages().append(
            Message(node.translationContext(), QString::fromStdString(arguments.source)));
    } else if (isGone(before.messages().at(places.front()))) {
        requireTextOf(library, node, arguments.source, " any more");
    }
    for (const int place : places) {
        setMessage(library, translator.messages()[place], arguments);
    }
    if (translator != before) {
        library->setTranslations(translators);
        const Message& message = translator.messages().at(places.front());
        const bool isFinished = message.state() == Message::State::Finished;
        changes.add(isFinished ? "translation" : "unfinished",
                    library.address(node) + " (" + arguments.language + "): " + arguments.source,
                    arguments.translation);
    }
}

void addTextCommands(CommandLine& commands)
{
    const auto addArguments = [](CommandOptions options, TextArguments& arguments) {
        return options.argument("NODE", arguments.node, "The node whose text it is")
            .argument("LANG", arguments.language, "The language")
            .argument("SOURCE", arguments.source, "The text");
    };
    const auto got = std::make_shared<TextArguments>();
    addArguments(commands.addReading("get", "Prints the translation of a text of a node",
                                     [got](Session& session) { return get(session, *got); }),
                 *got);

    const auto setting = std::make_shared<SetArguments>();
    addArguments(commands.addEditing("set", "Sets the translation of a text of a node",
                                     [setting](OpenLibrary& library, Changes& changes) {
                                         set(library, changes, *setting);
                                     }),
                 *setting)
        .argument("TEXT", setting->translation,
                  "The translation, its plural forms each on a line; '' for none")
        .flag("--unfinished", setting->unfinished, "It is still to be looked over");
}

} // namespace

void addTranslationCommands(CommandLine& commands)
{
    commands.setGroup("tr", "Translates the texts of boxes");
    commands.addReading("status", "Says how far the translations are, by language and folder",
                        status);

    const auto language = std::make_shared<std::string>();
    commands
        .addEditing("add", "Adds a language, with all texts to be translated",
                    [language](OpenLibrary& library, Changes& changes) {
                        addLanguage(library, changes, *language);
                    })
        .argument("LANG", *language, "Its code, such as fr or pt_BR");

    commands.addEditing("update", "Brings the messages up to date with the texts of the boxes",
                        update);
    addTextCommands(commands);
    commands.setGroup("", "");
}

} // namespace kxbox
