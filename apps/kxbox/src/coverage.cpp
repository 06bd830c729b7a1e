#include "coverage.hpp"

#include "box_texts.hpp"
#include "messages.hpp"
#include "table.hpp"

#include <QMap>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace kxbox {

using KR::Localization::Message;
using KR::Localization::Translator;
using KX::BoxLibraryNode;

Coverage& Coverage::operator+=(const Coverage& other)
{
    finished += other.finished;
    unfinished += other.unfinished;
    missing += other.missing;
    return *this;
}

std::string Coverage::text() const
{
    if (texts() == 0) {
        return "-";
    }
    const auto percent = std::int64_t{finished} * 100 / texts();
    return QStringLiteral("%1/%2 %3 %").arg(finished).arg(texts()).arg(percent, 3).toStdString();
}

namespace {

/// From the worst to the best; the first is that of a text without a message.
enum class TextState
{
    Missing,
    Unfinished,
    Finished
};

TextState stateOf(const Message& message)
{
    if (!message.isTranslated()) {
        return TextState::Missing;
    }
    return message.state() == Message::State::Finished ? TextState::Finished
                                                       : TextState::Unfinished;
}

using TextStates = QMap<TextKey, TextState>;

TextStates textStates(const Translator& translator)
{
    TextStates states;
    for (const Message& message : translator.messages()) {
        TextState& state = states[keyOf(message)];
        state = std::max(state, stateOf(message));
    }
    return states;
}

int countGone(const Translator& translator, const QString& prefix)
{
    const QList<Message>& messages = translator.messages();
    return static_cast<int>(
        std::count_if(messages.begin(), messages.end(), [&prefix](const Message& message) {
            return isGone(message) && message.context().startsWith(prefix);
        }));
}

void count(Coverage& coverage, TextState state)
{
    switch (state) {
    case TextState::Missing:
        ++coverage.missing;
        break;
    case TextState::Unfinished:
        ++coverage.unfinished;
        break;
    case TextState::Finished:
        ++coverage.finished;
        break;
    }
}

/// Walks through the tree and fills a report's rows.
class CoverageCounter
{
public:
    CoverageCounter(const OpenLibrary& library, std::vector<TextStates> languages,
                    std::vector<FolderCoverage>& rows)
        : m_library(library), m_languages(std::move(languages)), m_folders(rows)
    {
    }

    /// Adds the rows of a folder and of those below it, and gives the place of its own.
    std::size_t addFolder(const BoxLibraryNode& folder)
    {
        const std::size_t place = m_folders.size();
        m_folders.push_back(
            {m_library.address(folder), 0, std::vector<Coverage>(m_languages.size())});
        for (const BoxLibraryNode* const child : folder.children()) {
            if (!OpenLibrary::isFolder(*child)) {
                addBox(*child, m_folders[place]);
                continue;
            }
            const FolderCoverage& below = m_folders[addFolder(*child)];
            FolderCoverage& row = m_folders[place];
            row.texts += below.texts;
            for (std::size_t i = 0; i < m_languages.size(); ++i) {
                row.languages[i] += below.languages[i];
            }
        }
        return place;
    }

private:
    void addBox(const BoxLibraryNode& box, FolderCoverage& row) const
    {
        const QString context = box.translationContext();
        const QStringList texts = translatableTexts(*box.boxData());
        row.texts += texts.size();
        for (std::size_t i = 0; i < m_languages.size(); ++i) {
            for (const QString& text : texts) {
                count(row.languages[i], m_languages[i].value({context, text}));
            }
        }
    }

    const OpenLibrary& m_library;
    std::vector<TextStates> m_languages;
    std::vector<FolderCoverage>& m_folders;
};

Json toJson(const Coverage& coverage)
{
    return {{"finished", coverage.finished},
            {"unfinished", coverage.unfinished},
            {"missing", coverage.missing}};
}

/// By language.
Json toJson(const QStringList& languages, const std::vector<Coverage>& coverages)
{
    Json json = Json::object();
    auto coverage = coverages.begin();
    for (const QString& language : languages) {
        json[language.toStdString()] = toJson(*coverage++);
    }
    return json;
}

} // namespace

CoverageReport::CoverageReport(OpenLibrary& library)
{
    const KX::BoxLibrary::Translators translators = library->translations();
    m_languages = translators.keys();
    m_languages.sort();
    std::vector<TextStates> states;
    for (const QString& language : m_languages) {
        const Translator translator = translators.value(language);
        m_vanished.push_back(countGone(translator, library->translationContext()));
        states.push_back(textStates(translator));
    }
    CoverageCounter(library, std::move(states), m_folders).addFolder(*library->boxRoot());
}

Json CoverageReport::json() const
{
    const FolderCoverage& whole = m_folders.front();
    Json languages = toJson(m_languages, whole.languages);
    auto vanished = m_vanished.begin();
    for (Json& language : languages) {
        language["vanished"] = *vanished++;
    }
    Json folders = Json::array();
    for (auto folder = std::next(m_folders.begin()); folder != m_folders.end(); ++folder) {
        folders.push_back({{"node", folder->address},
                           {"texts", folder->texts},
                           {"languages", toJson(m_languages, folder->languages)}});
    }
    return {{"texts", whole.texts},
            {"languages", std::move(languages)},
            {"folders", std::move(folders)}};
}

std::string CoverageReport::text() const
{
    if (m_languages.isEmpty()) {
        return "No languages; " + counted(m_folders.front().texts, "text", "texts") +
               " to translate.\n";
    }
    return table(cells());
}

std::vector<std::vector<std::string>> CoverageReport::cells() const
{
    std::vector<std::string> head{"folder"};
    for (const QString& language : m_languages) {
        head.push_back(printable(language));
    }
    std::vector<std::vector<std::string>> rows{head};
    const auto add = [&rows](const std::string& title, const FolderCoverage& folder) {
        rows.push_back({title});
        for (const Coverage& coverage : folder.languages) {
            rows.back().push_back(coverage.text());
        }
    };
    for (auto folder = std::next(m_folders.begin()); folder != m_folders.end(); ++folder) {
        add(printable(folder->address), *folder);
    }
    add("total", m_folders.front());
    rows.push_back(numbers("unfinished", &Coverage::unfinished));
    rows.push_back(numbers("missing", &Coverage::missing));
    rows.push_back({"vanished"});
    for (const int vanished : m_vanished) {
        rows.back().push_back(std::to_string(vanished));
    }
    return rows;
}

std::vector<std::string> CoverageReport::numbers(const char* title, int Coverage::*number) const
{
    std::vector<std::string> row{title};
    for (const Coverage& coverage : m_folders.front().languages) {
        row.push_back(std::to_string(coverage.*number));
    }
    return row;
}

} // namespace kxbox
