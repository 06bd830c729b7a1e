#include "checks.hpp"
#include "translation_files.hpp"

#include <QMap>

#include <set>

namespace kxbox {

using KR::Localization::Message;

namespace {

using FilesByLanguage = QMap<QString, QString>; // the path of the first

void addError(const char* kind, const TranslationFile& file, const std::string& text,
              Problems& problems)
{
    problems.add({Severity::Error, kind, file.path.toStdString(), text});
}

/// Whether the file is one whose messages can be looked at.
bool checkFile(const TranslationFile& file, FilesByLanguage& files, Problems& problems)
{
    if (const auto& damage = file.damage) {
        problems.add({Severity::Error,
                      "translation-file",
                      file.path.toStdString(),
                      damage->reason,
                      {},
                      damage->line,
                      damage->column});
        return false;
    }
    const QString language = file.language();
    const QString named = languageOf(file.path);
    if (language.isEmpty()) {
        addError("translation-language", file,
                 "it names no language, and is lost with the next change of messages", problems);
    } else if (files.contains(language)) {
        addError("translation-twice", file,
                 "its language, '" + language.toStdString() + "', has " +
                     files.value(language).toStdString() +
                     " already, and this file is lost with the next change of messages",
                 problems);
    } else {
        files.insert(language, file.path);
        if (!named.isEmpty() && named != language) {
            problems.add({Severity::Warning, "translation-name", file.path.toStdString(),
                          "its language is '" + language.toStdString() + "', not '" +
                              named.toStdString() + "'"});
        }
    }
    return true;
}

void checkMessages(const TranslationFile& file, const std::set<QString>& contexts,
                   Problems& problems)
{
    QMap<QString, int> unknown;
    const auto& messages = file.translator.messages();
    for (const Message& message : messages) {
        if (isInUse(message) && contexts.count(message.context()) == 0) {
            ++unknown[message.context()];
        }
    }
    for (auto it = unknown.cbegin(); it != unknown.cend(); ++it) {
        problems.add({Severity::Warning, "context", file.path.toStdString(),
                      counted(*it, "message is", "messages are") + " of '" +
                          it.key().toStdString() + "', which is no node",
                      it.key().toStdString()});
    }
    const int contradictions = countContradictions(file.translator);
    if (contradictions > 0) {
        problems.add({Severity::Warning, "message-twice", file.path.toStdString(),
                      counted(contradictions, "message is", "messages are") +
                          " there again with another translation, which is lost with the next "
                          "change of messages"});
    }
}

} // namespace

void checkTranslations(const Survey& survey, Problems& problems)
{
    std::set<QString> contexts;
    for (const SurveyedNode& node : survey.nodes) {
        contexts.insert(contextOf(node.path));
    }
    FilesByLanguage files;
    for (const TranslationFile& file : survey.translations) {
        if (checkFile(file, files, problems)) {
            checkMessages(file, contexts, problems);
        }
    }
    for (const QString& directory : survey.translationDirectories) {
        problems.add({Severity::Warning, "translation-directory", directory.toStdString(),
                      "it is lost with the next change of messages"});
    }
}

} // namespace kxbox
