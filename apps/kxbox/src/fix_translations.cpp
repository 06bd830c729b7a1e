// Translation files that the library would lose.
#include "box_reader.hpp"
#include "check_fixes.hpp"
#include "translation_files.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kxboxlibrary/box_constants.hpp>

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <set>
#include <utility>

namespace kxbox {

using KR::Localization::Message;
using KR::Localization::Translator;

namespace {

const char* const a_lossy = "writing the file anew could lose translations";

class TranslationFixes
{
public:
    TranslationFixes(OpenLibrary& library, std::vector<TranslationFile>& files, Fixes& fixes)
        : m_library(library), m_files(files), m_fixes(fixes)
    {
    }

    void giveLanguages();
    void mergeLanguages();
    void removeUntranslated();

private:
    /// False, and nothing changes, when the file would not hold all of it.
    bool write(TranslationFile& file, const Translator& translator) const;
    static std::string languageObstacle(const QString& language, const std::set<QString>& taken);
    /// Puts `others` into `first`. What became of them is noted, and those that go are marked.
    void mergeInto(TranslationFile& first, const std::vector<TranslationFile*>& others,
                   std::set<QString>& gone) const;

    OpenLibrary& m_library;
    std::vector<TranslationFile>& m_files;
    Fixes& m_fixes;
};

bool TranslationFixes::write(TranslationFile& file, const Translator& translator) const
{
    const auto bytes = writeWhole(translator);
    if (bytes) {
        m_library->projectModel().writeFile(file.path, *bytes);
        file = readTranslationFile(file.path, *bytes);
    }
    return bytes.has_value();
}

std::string TranslationFixes::languageObstacle(const QString& language,
                                               const std::set<QString>& taken)
{
    static const QRegularExpression form(QStringLiteral("^[A-Za-z]{2,3}([_-][A-Za-z0-9]{2,8})*$"));
    if (!form.match(language).hasMatch()) {
        return "its name says no language either";
    }
    return taken.count(language) != 0
               ? "the language in its name, '" + language.toStdString() + "', has another file"
               : "";
}

void TranslationFixes::giveLanguages()
{
    std::set<QString> taken;
    for (const TranslationFile& file : m_files) {
        taken.insert(file.language());
    }
    for (TranslationFile& file : m_files) {
        if (file.damage || !file.language().isEmpty()) {
            continue;
        }
        const QString language = languageOf(file.path);
        std::string obstacle = languageObstacle(language, taken);
        if (obstacle.empty()) {
            Translator translator = file.translator;
            translator.setLanguageCode(language);
            obstacle = write(file, translator) ? "" : a_lossy;
        }
        if (obstacle.empty()) {
            taken.insert(language);
            note(m_fixes.done, file.path, "got the language '" + language.toStdString() + "'");
        } else {
            note(m_fixes.refused, file.path, obstacle);
        }
    }
}

void TranslationFixes::mergeInto(TranslationFile& first,
                                 const std::vector<TranslationFile*>& others,
                                 std::set<QString>& gone) const
{
    Merger merger(first.translator);
    std::vector<const TranslationFile*> merged;
    for (const TranslationFile* const file : others) {
        const std::string obstacle = merger.add(file->translator);
        if (obstacle.empty()) {
            merged.push_back(file);
        } else {
            note(m_fixes.refused, file->path,
                 "can't be put into " + first.path.toStdString() + ": " + obstacle);
        }
    }
    const bool isWhole = merger.result() == first.translator || write(first, merger.result());
    for (const TranslationFile* const file : merged) {
        if (isWhole) {
            m_library->projectModel().remove(file->path);
            gone.insert(file->path);
            note(m_fixes.done, file->path, "put into " + first.path.toStdString());
        } else {
            note(m_fixes.refused, file->path, a_lossy);
        }
    }
}

void TranslationFixes::mergeLanguages()
{
    QMap<QString, std::vector<TranslationFile*>> files;
    for (TranslationFile& file : m_files) {
        if (!file.language().isEmpty()) {
            files[file.language()].push_back(&file);
        }
    }
    std::set<QString> gone;
    for (const auto& ofLanguage : std::as_const(files)) {
        if (ofLanguage.size() > 1) {
            mergeInto(*ofLanguage.front(), {ofLanguage.begin() + 1, ofLanguage.end()}, gone);
        }
    }
    m_files.erase(
        std::remove_if(m_files.begin(), m_files.end(),
                       [&gone](const TranslationFile& file) { return gone.count(file.path) != 0; }),
        m_files.end());
}

void TranslationFixes::removeUntranslated()
{
    std::set<QString> contexts;
    for (const KX::BoxLibraryNode* const node : OpenLibrary::subtree(*m_library->boxRoot())) {
        contexts.insert(node->translationContext());
    }
    const QString prefix = contextOf(QString());
    const auto isLeftOut = [&](const QString& context) {
        return context.startsWith(prefix) &&
               isBoxLeftOut(m_library->projectModel(), context.mid(prefix.size()));
    };
    // Of what somebody has worked on nothing goes.
    const auto isUseless = [&](const Message& message) {
        return isInUse(message) && !message.isTranslated() &&
               message.translatorComment().isEmpty() && contexts.count(message.context()) == 0 &&
               !isLeftOut(message.context());
    };
    for (TranslationFile& file : m_files) {
        Translator remaining = file.translator;
        auto& messages = remaining.messages();
        const int before = messages.size();
        messages.erase(std::remove_if(messages.begin(), messages.end(), isUseless), messages.end());
        const int removed = before - messages.size();
        if (removed == 0) {
            continue;
        }
        const std::string what =
            counted(removed, "untranslated message", "untranslated messages") + " of no node";
        if (write(file, remaining)) {
            note(m_fixes.done, file.path, "removed " + what);
        } else {
            note(m_fixes.refused, file.path, what + ": " + a_lossy);
        }
    }
}

} // namespace

void fixTranslations(OpenLibrary& library, std::vector<TranslationFile>& files, Fixes& fixes)
{
    TranslationFixes translations(library, files, fixes);
    translations.giveLanguages();
    translations.mergeLanguages();
    translations.removeUntranslated();
}

bool moveMessages(OpenLibrary& library, std::vector<TranslationFile>& files,
                  const QMap<QString, QString>& contexts)
{
    if (library.areTranslationsLeftOut()) {
        return false;
    }
    const KR::Localization::ContextMatchPatcher patcher(contexts);
    std::vector<std::pair<TranslationFile*, QByteArray>> written;
    for (TranslationFile& file : files) {
        if (file.damage) {
            return false;
        }
        Translator moved = file.translator;
        moved.rewriteContexts(patcher);
        if (moved == file.translator) {
            continue;
        }
        const auto bytes = writeWhole(moved);
        if (!bytes) {
            return false;
        }
        written.emplace_back(&file, *bytes);
    }
    for (const auto& [file, bytes] : written) {
        library->projectModel().writeFile(file->path, bytes);
        *file = readTranslationFile(file->path, bytes);
    }
    return true;
}

void fixMetadata(OpenLibrary& library, Fixes& fixes)
{
    const auto set = [&](const char* key, const char* value) {
        const QString name = QString::fromLatin1(key);
        if (library->projectModel().getMetadata(name).isEmpty()) {
            library->projectModel().setMetadata(name, QString::fromLatin1(value));
            fixes.done.push_back("metadata: \"" + std::string(key) + "\" set to '" + value + "'");
        }
    };
    set("Type", KX::BoxConstants::a_boxLibraryProjectType);
    set("Version", KX::BoxConstants::a_boxLibraryProjectVersion);
}

} // namespace kxbox
