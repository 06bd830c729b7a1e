#include "save_plan.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace pk::project {

namespace {

void refuseLongPaths(const Entry& entry, std::size_t bytes, std::size_t names)
{
    if (isTooLong(bytes, names)) {
        throw InvalidPath("'" + Index::path(entry) + "': the path is too long");
    }
    if (entry.isDirectory()) {
        for (const auto& child : entry.folder->children) {
            refuseLongPaths(*child, bytes + (names > 0 ? 1 : 0) + child->name.size(), names + 1);
        }
    }
}

} // namespace

void refuseLongPaths(const Entry& entry)
{
    const std::string path = Index::path(entry);
    const auto slashes = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
    refuseLongPaths(entry, path.size(), path.empty() ? 0 : slashes + 1);
}

SavePlan::SavePlan(Index& index, Contents& contents) : m_index(index), m_contents(contents)
{
    m_index.sweep();
    for (Entry* const entry : m_index.touched()) {
        if (m_index.isAlive(*entry)) {
            refuseLongPaths(*entry);
            visit(*entry);
        }
    }
    for (Entry* const directory : m_index.haunted()) {
        if (m_index.isAlive(*directory)) {
            visitGhosts(*directory);
        }
    }
    for (const auto& taken : m_taken) {
        const Entry& entry = *taken.second.entry;
        m_journal.collects.push_back(
            {locate(taken.first), taken.second.item, entry.isDirectory() ? Stamp() : entry.stamp});
    }
    for (const auto& put : m_placed) {
        m_journal.puts.push_back(put.second);
    }
}

std::vector<std::string> SavePlan::findConflicts() const
{
    const DirectorySource& source = *m_contents.directory;
    std::vector<std::string> changes;
    const auto checkFile = [&](const Entry& entry, const std::string& path) {
        const auto info = source.stat(path);
        if (!info || !S_ISREG(info->st_mode) || Stamp::of(*info) != entry.stamp) {
            changes.push_back("'" + path + "'");
        }
    };
    for (const auto& taken : m_taken) {
        const Entry& entry = *taken.second.entry;
        if (!entry.isDirectory()) {
            checkFile(entry, taken.first);
        } else if (taken.second.isDropped) {
            const auto below = source.changesBelow(entry);
            changes.insert(changes.end(), below.begin(), below.end());
        } else if (const auto info = source.stat(taken.first); !info || !S_ISDIR(info->st_mode)) {
            changes.push_back("'" + taken.first + "' was removed");
        }
    }
    for (const Entry* const entry : m_replaced) {
        checkFile(*entry, Index::sourcePath(*entry));
    }
    std::string lastDirectory;
    for (const std::string& path : m_expectFree) {
        const std::string directory = path.substr(0, std::min(path.rfind('/'), path.size()));
        if (directory.size() < path.size() && directory != lastDirectory) {
            const auto info = source.stat(directory);
            if (!info || S_ISREG(info->st_mode)) {
                changes.push_back("'" + directory + "' was " + (info ? "replaced" : "removed"));
            }
            lastDirectory = directory;
        }
        if (m_taken.count(path) == 0 && source.stat(path)) {
            changes.push_back("'" + path + "' was added");
        }
    }
    return changes;
}

void SavePlan::visit(Entry& entry)
{
    if (entry.isDirectory() && entry.inSource) {
        const int item = nextItem();
        m_taken[Index::sourcePath(entry)] = {&entry, item, false};
        m_placed[Index::path(entry)] = {Index::path(entry), item, 0, false, {}};
        expectFree(entry);
        return;
    }
    if (!entry.isDirectory()) {
        visitFile(entry);
        return;
    }
    m_placed[Index::path(entry)] = {Index::path(entry), -1, entry.mode, false, {}};
    expectFree(entry);
    for (const auto& child : entry.folder->children) {
        visit(*child);
    }
}

void SavePlan::visitFile(Entry& entry)
{
    const std::string path = Index::path(entry);
    const bool inPlace = entry.inSource && !entry.wasMoved();
    if (inPlace && isUnchanged(entry)) {
        return;
    }
    const int item = nextItem();
    if (entry.wasMoved()) {
        // The bytes of a moved file that was rewritten too are taken away, not along.
        const int taken = entry.rewritten ? nextItem() : item;
        m_taken[Index::sourcePath(entry)] = {&entry, taken, entry.rewritten};
    }
    const Entry* replaced = nullptr;
    if (inPlace) {
        replaced = &entry;
        m_replaced.push_back(&entry);
    } else {
        const auto& ghosts = entry.parent->folder->ghosts;
        const auto ghost = ghosts.find(entry.name);
        if (ghost != ghosts.end() && isReplaced(*entry.parent, entry.name, ghost->second)) {
            replaced = ghost->second.removed.get();
        } else {
            expectFree(entry);
        }
    }
    if (!entry.inSource || entry.rewritten) {
        m_newFiles.push_back({&entry, item});
    }
    m_placed[path] = {path, item, 0, replaced != nullptr,
                      replaced != nullptr ? replaced->stamp : Stamp()};
}

void SavePlan::visitGhosts(Entry& directory)
{
    for (const auto& slot : directory.folder->ghosts) {
        const Ghost& ghost = slot.second;
        if (!ghost.removed && m_index.isAlive(*ghost.moved)) {
            continue;
        }
        const Entry* const gone = ghost.removed ? ghost.removed.get() : ghost.moved;
        if (isReplaced(directory, slot.first, ghost)) {
            m_replaced.push_back(gone);
        } else {
            m_taken[joinPath(Index::sourcePath(directory), slot.first)] = {gone, nextItem(), true};
        }
    }
}

// Whether a removed file's place is taken by another file, so that one rename does for both.
bool SavePlan::isReplaced(const Entry& directory, const std::string& name, const Ghost& ghost)
{
    const Entry* const now = Index::child(directory, name);
    return ghost.removed && !ghost.removed->isDirectory() && now != nullptr && !now->isDirectory();
}

bool SavePlan::isUnchanged(Entry& entry) const
{
    const DirectorySource& source = *m_contents.directory;
    const auto info = source.stat(Index::sourcePath(entry));
    try {
        return info && Stamp::of(*info) == entry.stamp && (info->st_mode & 0777) == entry.mode &&
               sameBytes(source.open(entry), m_contents.open(entry));
    } catch (const IoError&) {
        return false; // what can't be read is replaced
    }
}

// Nothing may be in the place of something new, except what the plan takes away.
void SavePlan::expectFree(const Entry& entry)
{
    if (entry.parent->inSource) {
        m_expectFree.push_back(joinPath(Index::sourcePath(*entry.parent), entry.name));
    }
}

Journal::Location SavePlan::locate(const std::string& sourcePath) const
{
    for (std::size_t slash = sourcePath.rfind('/'); slash != std::string::npos && slash > 0;
         slash = sourcePath.rfind('/', slash - 1)) {
        const auto directory = m_taken.find(sourcePath.substr(0, slash));
        if (directory != m_taken.end()) {
            return {directory->second.item, sourcePath.substr(slash + 1)};
        }
    }
    return {-1, sourcePath};
}

} // namespace pk::project
