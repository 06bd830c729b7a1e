// find: nodes by their texts.
#include "box_texts.hpp"
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"

#include <kxboxlibrary/box_data.hpp>

#include <QMultiHash>

#include <algorithm>

namespace kxbox {

namespace {

using KX::BoxLibraryNode;

struct Arguments
{
    std::string text;
    std::vector<std::string> fields = {"name", "tooltip", "io"};
    std::string language;
};

/// A text of a node that matches.
struct Match
{
    const char* field;
    QString language; // empty for the text itself
    QString text;
};

/// A translation of a text of a node.
struct Translation
{
    QString language;
    QString source;
    QString text;
};

class Search
{
public:
    Search(const OpenLibrary& library, const Arguments& arguments);
    std::vector<Match> matches(const BoxLibraryNode& node) const;

private:
    bool fits(const QString& text) const { return text.contains(m_text, Qt::CaseInsensitive); }
    void look(const char* field, const QStringList& texts, const QString& context,
              std::vector<Match>& found) const;

    QString m_text;
    QStringList m_fields;
    QMultiHash<QString, Translation> m_translations; // by context
};

Search::Search(const OpenLibrary& library, const Arguments& arguments)
    : m_text(QString::fromStdString(arguments.text))
{
    for (const std::string& field : arguments.fields) {
        m_fields.append(QString::fromStdString(field));
    }
    const KX::BoxLibrary::Translators translators = library->translations();
    QStringList languages = translators.keys();
    if (!arguments.language.empty()) {
        const QString language = QString::fromStdString(arguments.language);
        if (!languages.contains(language)) {
            throw Failure(library.path() + ": no language '" + arguments.language + "'");
        }
        languages = QStringList{language};
    }
    // A QMultiHash gives the values of a key backwards.
    std::sort(languages.begin(), languages.end(), std::greater<>());
    for (const QString& language : languages) {
        const auto translator = translators.value(language);
        for (const auto& message : translator.messages()) {
            for (const QString& form : message.translations()) {
                if (fits(form)) {
                    m_translations.insert(message.context(), {language, message.source(), form});
                }
            }
        }
    }
}

void Search::look(const char* field, const QStringList& texts, const QString& context,
                  std::vector<Match>& found) const
{
    if (!m_fields.contains(QLatin1String(field))) {
        return;
    }
    for (const QString& text : texts) {
        if (fits(text)) {
            found.push_back({field, QString(), text});
        }
        for (auto it = m_translations.find(context);
             it != m_translations.end() && it.key() == context; ++it) {
            if (it->source == text) {
                found.push_back({field, it->language, it->text});
            }
        }
    }
}

std::vector<Match> Search::matches(const BoxLibraryNode& node) const
{
    std::vector<Match> found;
    const QString context = node.translationContext();
    look("name", {QString::fromStdString(node.name())}, context, found);
    if (const auto data = node.boxData()) {
        look("tooltip", {data->tooltip()}, context, found);
        QStringList texts = ioTexts(*data);
        texts.removeDuplicates();
        look("io", texts, context, found);
    }
    return found;
}

Outcome find(Session& session, const Arguments& arguments)
{
    OpenLibrary& library = session.library();
    const Search search(library, arguments);
    std::vector<BoxLibraryNode*> nodes = OpenLibrary::subtree(*library->boxRoot());
    nodes.erase(nodes.begin()); // the root
    session.progress().begin("searching", nodes.size());
    Outcome outcome;
    Json list = Json::array();
    for (const BoxLibraryNode* const node : nodes) {
        session.progress().step();
        const std::vector<Match> matches = search.matches(*node);
        if (matches.empty()) {
            continue;
        }
        const std::string address = library.address(*node);
        outcome.text += printable(address) + "\n";
        Json texts = Json::array();
        for (const Match& match : matches) {
            const std::string language = match.language.toStdString();
            outcome.text += std::string("  ") + match.field +
                            (language.empty() ? "" : " (" + printable(language) + ")") + ": " +
                            printable(match.text) + "\n";
            Json entry = {{"in", match.field}};
            if (!language.empty()) {
                entry["language"] = language;
            }
            entry["text"] = match.text.toStdString();
            texts.push_back(std::move(entry));
        }
        list.push_back({{"node", address}, {"matches", std::move(texts)}});
    }
    outcome.json = {{"library", library.path()}, {"nodes", std::move(list)}};
    return outcome;
}

} // namespace

void addFindCommand(CommandLine& commands)
{
    const auto arguments = std::make_shared<Arguments>();
    commands
        .addReading("find", "Finds nodes by their texts, in any case of letters",
                    [arguments](Session& session) { return find(session, *arguments); })
        .argument("TEXT", arguments->text, "What to look for")
        .list("--in", "FIELD,...", {"name", "tooltip", "io"}, arguments->fields,
              "Where to look: name, tooltip, io (names and tooltips of inputs, outputs and "
              "parameters)")
        .option("--lang", "L", arguments->language, "Look at translations into this language only");
}

} // namespace kxbox
