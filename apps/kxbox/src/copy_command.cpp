// copy: nodes from one library into another.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "log_watch.hpp"
#include "reserved_names.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>

#include <algorithm>

namespace kxbox {

namespace {

using KR::Localization::ContextMatchPatcher;
using KR::Localization::ContextRecursiveFinder;
using KR::Localization::Translator;
using KX::BoxLibraryNode;
using Translators = KX::BoxLibrary::Translators;

struct Arguments
{
    std::vector<std::string> nodes;
    std::string library;
    std::string folder;
};

/// The messages of the nodes whose contexts are the keys of `contexts`, and of all below them, with
/// the values as contexts, by language. Languages that have none of them are left out.
Translators messagesOf(const Translators& translators, const QMap<QString, QString>& contexts)
{
    Translators found;
    for (auto it = translators.begin(); it != translators.end(); ++it) {
        ContextMatchPatcher patcher(contexts);
        QList<KR::Localization::Message> messages;
        const auto& all = it.value().messages();
        for (const auto& message : all) {
            QString context = message.context();
            if (patcher(context)) {
                messages.append(message);
                messages.back().setContext(context);
            }
        }
        if (!messages.isEmpty()) {
            Translator translator(it.key());
            translator.setSourceLanguageCode(it.value().sourceLanguageCode());
            translator.append(messages);
            found.insert(it.key(), translator);
        }
    }
    return found;
}

/// Copies nodes to the end of a folder. Their messages come in with contexts of their new places;
/// not by insertChildren(), which knows nodes by names that several of them may share.
void copyNodes(const OpenLibrary& from, const std::vector<BoxLibraryNode*>& nodes,
               OpenLibrary& into, BoxLibraryNode& folder, Changes& changes)
{
    from.progress().begin("copying", nodes.size());
    QMap<QString, QString> contexts;
    Translators translations = into->translations();
    for (const BoxLibraryNode* const node : nodes) {
        std::unique_ptr<BoxLibraryNode, KX::TreeDeleter> clone(node->clone());
        const BoxLibraryNode* const copy = folder.appendChild(clone.get());
        static_cast<void>(clone.release()); // it is the folder's now
        contexts.insert(node->translationContext(), copy->translationContext());
        // Left over from a node that was there once.
        changes.addMessages(copy->translationContext(), QString(),
                            countMessages(*into, copy->translationContext()));
        KR::Localization::removeMessages(translations,
                                         ContextRecursiveFinder(copy->translationContext()));
        if (copy->name() != node->name()) {
            changes.add("renumber", node->name(), copy->name());
        }
        changes.add("copy", from.address(*node), into.address(*copy));
        changes.add("directory", node->path().toStdString(), copy->path().toStdString());
        changes.addMessages(node->translationContext(), copy->translationContext(),
                            countMessages(*from, node->translationContext()));
        from.progress().step();
    }
    const Translators messages = messagesOf(from->translations(), contexts);
    QStringList languages = messages.keys();
    languages.sort(); // or the plan could differ from the report
    for (const QString& language : languages) {
        const Translator translator = messages.value(language);
        if (!translations.contains(language)) {
            changes.add("language", language.toStdString());
            translations.insert(language, translator);
        } else {
            translations[language].append(translator.messages());
        }
    }
    into->setTranslations(translations);
}

Outcome copy(Session& session, const Arguments& arguments)
{
    const OpenLibrary& from = session.library();
    const std::vector<BoxLibraryNode*> nodes = from.nodesBelowRoot(arguments.nodes);
    OpenLibrary into(arguments.library, session.progress());
    into.setAddressing(from.addressing());
    BoxLibraryNode& folder = into.folder(arguments.folder);
    for (BoxLibraryNode* const top : nodes) {
        for (const BoxLibraryNode* const node : OpenLibrary::subtree(*top)) {
            checkName(node->name(), node == top && folder.parent() == nullptr);
        }
    }
    from.requireReadableTranslations();
    into.requireReadableTranslations();
    Changes changes;
    const LogWatch watch;
    copyNodes(from, nodes, into, folder, changes);
    requireNoNodeErrors(watch, into.path());
    if (!session.dryRun) {
        into.save();
    }
    return outcomeOf(changes, into.path(), session.dryRun);
}

} // namespace

void addCopyCommand(CommandLine& commands)
{
    const auto arguments = std::make_shared<Arguments>();
    CommandOptions options = commands.addAlone(
        "copy", "Copies nodes into another library, with their files and messages",
        [arguments](Session& session) { return copy(session, *arguments); });
    commands.addLibrary(options);
    options.arguments("NODE", arguments->nodes, "Folders and boxes")
        .option("--into", "LIB2", arguments->library, "The library to copy them into")
        .required()
        .option("--to", "FOLDER", arguments->folder, "The folder there; if not given, its top");
    commands.addDryRun(options);
}

} // namespace kxbox
