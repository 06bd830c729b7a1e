// rename, remove, move and reorder: what reorganises the tree.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "log_watch.hpp"
#include "reserved_names.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QMap>

#include <algorithm>

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

/// Takes a node out of its folder, with its files, and puts it at the end of another.
void transfer(OpenLibrary& library, BoxLibraryNode& node, BoxLibraryNode& folder)
{
    BoxLibraryNode& oldFolder = *node.parent();
    const QString oldPath = node.path();
    const LogWatch aboutTheCopy({"pkproject"}); // which does not stay
    std::unique_ptr<BoxLibraryNode, KX::TreeDeleter> taken(node.take());
    folder.appendChild(taken.get());
    static_cast<void>(taken.release()); // it is the folder's now
    // In place of the copy that take() made: with all that a library does not copy, such as what
    // version control keeps in a directory, and to be saved as a rename.
    library->projectModel().move(oldPath, node.path(), true);
    oldFolder.saveFolder();
}

/// Brings `nodes`, which are children of `folder`, together in front of `next`, or to the end when
/// that is null. `next` is none of them.
void bringTogether(BoxLibraryNode& folder, const std::vector<BoxLibraryNode*>& nodes,
                   const BoxLibraryNode* next)
{
    for (BoxLibraryNode* const node : nodes) {
        const int from = node->index();
        const int to = next == nullptr ? folder.children().size() : next->index();
        folder.moveChildren(from, from, to);
    }
    folder.saveFolder();
}

void moveNodes(OpenLibrary& library, Changes& changes, const MoveArguments& arguments)
{
    const std::vector<BoxLibraryNode*> nodes = library.nodesBelowRoot(arguments.nodes);
    BoxLibraryNode& folder = library.folder(arguments.folder);
    requireNotBelow(library, folder, nodes);
    const auto isMoved = [&nodes](const BoxLibraryNode* node) {
        return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
    };
    const BoxLibraryNode* next = nullptr;
    if (arguments.at) {
        const int count = folder.children().size();
        requireIndex(library, folder, "--at", *arguments.at, count);
        const auto begin = folder.children().begin() + *arguments.at;
        const auto found = std::find_if_not(begin, folder.children().end(), isMoved);
        next = found == folder.children().end() ? nullptr : *found;
    }
    library.requireReadableTranslations();
    for (const BoxLibraryNode* const node : nodes) {
        if (node->parent() != &folder) {
            checkName(node->name(), folder.parent() == nullptr);
        }
    }

    const QList<BoxLibraryNode*> orderBefore = folder.children();
    QMap<QString, QString> contexts;
    library.progress().begin("moving", nodes.size());
    for (BoxLibraryNode* const node : nodes) {
        if (node->parent() != &folder) {
            const Place before(library, *node);
            const auto messages = countMessages(*library, before.context);
            transfer(library, *node, folder);
            const Place after(library, *node);
            // Of a node that was there once, or they would take the place of this one's.
            const auto leftOver = countMessages(*library, after.context);
            if (!leftOver.isEmpty()) {
                library->removeTranslations(after.context);
                changes.addMessages(after.context, QString(), leftOver);
            }
            contexts.insert(before.context, after.context);
            notePlace(changes, "move", before, after, before.name, messages);
        }
        library.progress().step();
    }
    if (!contexts.isEmpty()) {
        library->changeContextes(contexts);
    }
    bringTogether(folder, nodes, next);
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
