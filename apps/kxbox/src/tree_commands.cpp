// rename, remove, move and reorder: what reorganises the tree.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "reserved_names.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QMap>

#include <algorithm>
#include <utility>
#include <vector>

namespace kxbox {

namespace {

using KX::BoxLibraryNode;

/// Where a node is, to be compared with where it was.
struct Place
{
    Place(const OpenLibrary& library, const BoxLibraryNode& node)
        : name(node.name()),
          address(library.address(node)),
          path(node.path()),
          context(node.translationContext())
    {
    }

    std::string name;
    std::string address;
    QString path;
    QString context;
};

/// Notes that a node, to be called `asked`, went from one place to another, which is not the same.
void notePlace(Changes& changes, const char* what, const Place& before, const Place& after,
               const std::string& asked, const QMap<QString, int>& messages)
{
    if (after.name != asked) {
        changes.add("renumber", asked, after.name);
    }
    changes.add(what, before.address, after.address);
    if (after.path != before.path) {
        changes.add("directory", before.path.toStdString(), after.path.toStdString());
        changes.addMessages(before.context, after.context, messages);
    }
}

// rename

/// Where a node came to a place at which messages were left over from one that was there once,
/// drops these, which would take the place of its own. `translations`: as before the rename.
void dropLeftOver(OpenLibrary& library, Changes& changes, KX::BoxLibrary::Translators translations,
                  const QString& from, const QString& to)
{
    const auto leftOver = countMessages(translations, to);
    if (!leftOver.isEmpty()) {
        KR::Localization::ContextMatchPatcher patcher({{from, to}});
        KR::Localization::removeMessages(translations,
                                         KR::Localization::ContextRecursiveFinder(to));
        KR::Localization::rewriteContexts(translations, patcher);
        library->setTranslations(translations);
        changes.addMessages(to, QString(), leftOver);
    }
}

void renameNode(OpenLibrary& library, Changes& changes, const std::string& address,
                const std::string& name)
{
    BoxLibraryNode& node = library.nodeBelowRoot(address);
    checkName(name, node.parent()->parent() == nullptr);
    library.requireReadableTranslations();
    const Place before(library, node);
    const auto messages = countMessages(*library, before.context);
    const KX::BoxLibrary::Translators translations = library->translations();
    node.setName(name);
    const Place after(library, node);
    if (after.path != before.path) {
        dropLeftOver(library, changes, translations, before.context, after.context);
    }
    if (after.name != before.name || after.path != before.path) {
        notePlace(changes, "rename", before, after, name, messages);
    }
}

// remove

void removeNodes(OpenLibrary& library, Changes& changes, const std::vector<std::string>& addresses)
{
    const std::vector<BoxLibraryNode*> nodes = library.nodesBelowRoot(addresses);
    library.requireReadableTranslations();
    library.progress().begin("removing", nodes.size());
    KX::BoxLibrary::Translators translations = library->translations();
    for (const BoxLibraryNode* const node : nodes) {
        const Place place(library, *node);
        changes.add("remove", place.address);
        changes.add("directory", place.path.toStdString());
        changes.addMessages(place.context, QString(), countMessages(translations, place.context));
        KR::Localization::removeMessages(translations,
                                         KR::Localization::ContextRecursiveFinder(place.context));
    }
    // At once, since each change of messages writes all translation files.
    library->setTranslations(translations);
    for (BoxLibraryNode* const node : nodes) {
        KX::removeChildTree(*node->parent(), node->index());
        library.progress().step();
    }
}

// move

struct MoveArguments
{
    std::vector<std::string> nodes;
    std::string folder;
    std::optional<int> at;
};

void requireIndex(const OpenLibrary& library, const BoxLibraryNode& folder, const char* what,
                  int index, int last)
{
    if (index < 0 || index > last) {
        throw Failure(library.path() + ": " + what + " " + std::to_string(index) +
                      " is out of range: '" + library.address(folder) + "' has " +
                      counted(folder.children().size(), "node", "nodes") + ", counted from 0");
    }
}

void requireNotBelow(const OpenLibrary& library, const BoxLibraryNode& folder,
                     const std::vector<BoxLibraryNode*>& nodes)
{
    for (const BoxLibraryNode* at = &folder; at != nullptr; at = at->parent()) {
        if (std::find(nodes.begin(), nodes.end(), at) != nodes.end()) {
            throw Failure(library.path() + ": '" + library.address(*at) +
                          "' can't be moved into itself");
        }
    }
}

void moveNodes(OpenLibrary& library, Changes& changes, const MoveArguments& arguments)
{
    const std::vector<BoxLibraryNode*> nodes = library.nodesBelowRoot(arguments.nodes);
    BoxLibraryNode& folder = library.folder(arguments.folder);
    requireNotBelow(library, folder, nodes);
    const int count = folder.children().size();
    if (arguments.at) {
        requireIndex(library, folder, "--at", *arguments.at, count);
    }
    library.requireReadableTranslations();
    std::vector<std::pair<BoxLibraryNode*, Place>> comers;
    for (BoxLibraryNode* const node : nodes) {
        if (node->parent() != &folder) {
            checkName(node->name(), folder.parent() == nullptr);
            comers.emplace_back(node, Place(library, *node));
        }
    }
    const QList<BoxLibraryNode*> orderBefore = folder.children();
    const KX::BoxLibrary::Translators translations = library->translations();
    library.progress().begin("moving", nodes.size());
    folder.moveIn(arguments.at.value_or(count), {nodes.begin(), nodes.end()});
    for (const auto& [node, before] : comers) {
        const Place after(library, *node);
        // Of a node that was there once, which would have taken the place of this one's.
        const auto leftOver = countMessages(translations, after.context);
        if (!leftOver.isEmpty()) {
            changes.addMessages(after.context, QString(), leftOver);
        }
        notePlace(changes, "move", before, after, before.name,
                  countMessages(translations, before.context));
        library.progress().step();
    }
    if (folder.children() != orderBefore) {
        for (const BoxLibraryNode* const node : nodes) {
            changes.add("position", library.address(*node), std::to_string(node->index()));
        }
    }
}

// reorder

struct ReorderArguments
{
    std::string folder;
    int first = 0;
    int last = 0;
    int destination = 0;
};

void reorder(OpenLibrary& library, Changes& changes, const ReorderArguments& arguments)
{
    BoxLibraryNode& folder = library.folder(arguments.folder);
    const int count = folder.children().size();
    requireIndex(library, folder, "FIRST", arguments.first, count - 1);
    requireIndex(library, folder, "LAST", arguments.last, count - 1);
    requireIndex(library, folder, "DEST", arguments.destination, count);
    if (arguments.last < arguments.first) {
        throw Failure(library.path() + ": LAST " + std::to_string(arguments.last) +
                      " is less than FIRST " + std::to_string(arguments.first));
    }
    const QList<BoxLibraryNode*> before = folder.children();
    folder.moveChildren(arguments.first, arguments.last, arguments.destination);
    folder.saveFolder();
    for (int i = 0; i < count; ++i) {
        if (before.at(i) != folder.children().at(i)) {
            changes.add("position", library.address(*folder.child(i)), std::to_string(i));
        }
    }
}

} // namespace

void addTreeCommands(CommandLine& commands)
{
    struct RenameArguments
    {
        std::string node;
        std::string name;
    };
    const auto rename = std::make_shared<RenameArguments>();
    commands
        .addEditing("rename", "Gives a node another name; its files and messages follow",
                    [rename](OpenLibrary& library, Changes& changes) {
                        renameNode(library, changes, rename->node, rename->name);
                    })
        .argument("NODE", rename->node, "A folder or box")
        .argument("NAME", rename->name, "Its new name");

    const auto removed = std::make_shared<std::vector<std::string>>();
    commands
        .addEditing("remove", "Removes nodes, with their files and messages",
                    [removed](OpenLibrary& library, Changes& changes) {
                        removeNodes(library, changes, *removed);
                    })
        .arguments("NODE", *removed, "Folders and boxes");

    const auto move = std::make_shared<MoveArguments>();
    commands
        .addEditing(
            "move", "Moves nodes into a folder, with their files and messages",
            [move](OpenLibrary& library, Changes& changes) { moveNodes(library, changes, *move); })
        .arguments("NODE", move->nodes, "Folders and boxes")
        .option("--to", "FOLDER", move->folder, "The folder to move them into")
        .required()
        .option("--at", "N", move->at,
                "In front of which of its nodes, counted from 0; if not given, at the end");

    const auto reordered = std::make_shared<ReorderArguments>();
    commands
        .addEditing("reorder", "Moves a run of nodes within their folder; nodes are counted from 0",
                    [reordered](OpenLibrary& library, Changes& changes) {
                        reorder(library, changes, *reordered);
                    })
        .argument("FOLDER", reordered->folder, "The folder")
        .argument("FIRST", reordered->first, "The first to move")
        .argument("LAST", reordered->last, "The last to move")
        .argument("DEST", reordered->destination,
                  "The one that they come to stand in front of; the number of nodes is the end");
}

} // namespace kxbox
