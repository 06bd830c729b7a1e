// How a save that failed is undone, at once or before the next one.
#include "conflict.hpp"
#include "journal_directory.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <set>

namespace pk::project {

void JournalDirectory::refuseLinks(const Journal& journal) const
{
    std::vector<std::string> paths = placesBefore(journal);
    for (const Journal::Put& step : journal.puts) {
        paths.push_back(m_project + "/" + step.path);
    }
    for (const std::string& path : paths) {
        if (const auto link = linkAbove(path)) {
            throw FormatError(m_project + ": a save that failed can't be undone, because '" +
                              *link + "' is a symbolic link now");
        }
    }
}

bool JournalDirectory::undoUnfinished(const Place& place, const Unfinished& unfinished)
{
    JournalDirectory directory(place, Existing());
    directory.m_isWritten = unfinished.isWritten;
    const bool isOurs = directory.isOurs(unfinished);
    if (isOurs) {
        // While items are collected, no new directory is there.
        const bool isPut = !exists(directory.m_path + "/" + a_collect);
        try {
            if (isPut) {
                directory.openDirectories(unfinished.journal);
            }
            directory.refuseLinks(unfinished.journal);
            directory.refuseChanges(unfinished);
        } catch (const Error&) {
            if (isPut) {
                directory.closeDirectories(unfinished.journal);
            }
            throw;
        }
        directory.undo(unfinished.journal);
    }
    return isOurs;
}

// What the save put is taken away by its undoing, so it must not be what somebody made of it since;
// and where something comes back nothing may be, but a place for it.
void JournalDirectory::refuseChanges(const Unfinished& unfinished) const
{
    std::vector<std::string> changes;
    const Journal& journal = unfinished.journal;
    std::set<std::string> put;
    // While items are collected, nothing that was put is there.
    const bool isPut = !exists(m_path + "/" + a_collect);
    for (std::size_t i = 0; isPut && i < journal.puts.size(); ++i) {
        const Journal::Put& step = journal.puts[i];
        const std::string path = m_project + "/" + step.path;
        put.insert(path);
        const auto info = statOf(path);
        const bool leadsToDirectory = step.makesDirectory() || unfinished.put[i] == Stamp();
        if (!info || (S_ISDIR(info->st_mode) && leadsToDirectory)) {
            continue;
        }
        const Stamp now = Stamp::of(*info);
        // The old one is there when it was not replaced yet, or is back.
        if (now != unfinished.put[i] && !(step.replace && now == step.before)) {
            changes.push_back("'" + step.path + "' was changed");
        }
    }
    const std::vector<std::string> places = placesBefore(journal);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::string above = places[i].substr(0, places[i].rfind('/'));
        if (!exists(itemPath(journal.collects[i].item))) {
            continue;
        }
        if (put.count(places[i]) == 0 && exists(places[i])) {
            changes.push_back("'" + places[i] + "' was added");
        } else if (!isDirectory(above)) {
            changes.push_back("'" + above + "' was removed");
        }
    }
    if (!changes.empty()) {
        throwConflict(m_project, "since a save failed that could not be undone", changes);
    }
}

// Whether what the save left is still there, and not what somebody else's left since.
bool JournalDirectory::isOurs(const Unfinished& unfinished) const
{
    const auto isIt = [&](const std::string& path) {
        const auto info = statOf(path);
        return info && Stamp::of(*info) == unfinished.file;
    };
    const auto directory = statOf(m_path);
    const std::string phases[] = {m_path + "/" + a_collect, m_path + "/" + a_put};
    if (!directory || directory->st_ino != unfinished.directory) {
        return false;
    }
    if (unfinished.isWritten) {
        return isIt(phases[0]) || isIt(phases[1]);
    }
    if (!unfinished.journal.puts.empty()) {
        const Journal::Put& step = unfinished.journal.puts.front();
        const auto old = statOf(preservedName(itemPath(step.item)));
        if (old && Stamp::of(*old) != step.before) {
            return false; // a new directory can have the inode of one that is gone
        }
    }
    const auto [from, to] = onlyRename(unfinished.journal);
    return !exists(phases[0]) && !exists(phases[1]) && (isIt(from) || isIt(to));
}

void JournalDirectory::tryUndo(const Journal& journal)
{
    try {
        undo(journal);
    } catch (const Error& error) {
        m_unfinished = Unfinished{journal, m_isWritten, m_file, m_inode, m_expected};
        warn(m_project +
                 ": a save that failed could not be undone, which is tried again with the "
                 "next save; whoever opens the project first completes it: " +
                 error.what(),
             __FILE__, "tryUndo", __LINE__);
    }
}

void JournalDirectory::undo(const Journal& journal)
{
    if (!m_isWritten || exists(m_path + "/" + a_put)) {
        undoPuts(journal);
        if (m_isWritten && !journal.collects.empty()) {
            Disk::instance().syncFileSystem(m_path);
            rename(a_put, a_collect);
        }
    }
    undoCollects(journal);
    Disk::instance().syncFileSystem(m_path);
    removeTree(m_path + "/" + a_collect);
    removeTree(m_path + "/" + a_put);
    finish();
}

void JournalDirectory::undoPuts(const Journal& journal)
{
    openDirectories(journal);
    takeBack(journal);
    bool isToSync = false;
    for (auto step = journal.puts.rbegin(); step != journal.puts.rend(); ++step) {
        const std::string to = m_project + "/" + step->path;
        const std::string item = itemPath(step->item);
        const std::string old = preservedName(item);
        if (step->makesDirectory() && isDirectory(to)) {
            if (isToSync) { // what was in the directory must have left it when it goes
                Disk::instance().syncFileSystem(m_path);
                isToSync = false;
            }
            if (namesIn(openPath(to, O_RDONLY | O_DIRECTORY | O_NOFOLLOW)).empty()) {
                Disk::instance().rmdir(to);
            } // else somebody put something there since, for the next comparison to find
        } else if (step->replace && exists(old)) {
            if (isUntouched(*step)) {
                // Which changes the file, so it belongs to the undoing.
                Disk::instance().unlink(old);
            } else {
                Disk::instance().rename(old, to);
            }
        } else if (!step->makesDirectory() && !step->replace && !exists(item) && exists(to)) {
            Disk::instance().renameNew(to, item);
            isToSync = true;
        }
    }
}

// As long as the journal asks for a new file, it must be found in its place or as an item: an old
// one comes back only when the new one is an item for certain.
void JournalDirectory::takeBack(const Journal& journal)
{
    if (!m_isWritten) {
        return; // no journal asks for it
    }
    bool isToSync = false;
    for (const Journal::Put& step : journal.puts) {
        const std::string to = m_project + "/" + step.path;
        const std::string item = itemPath(step.item);
        if (step.replace && exists(preservedName(item)) && !exists(item) && exists(to)) {
            Disk::instance().rename(to, item);
            isToSync = true;
        }
    }
    if (isToSync) {
        Disk::instance().syncFileSystem(m_path);
    }
}

void JournalDirectory::undoCollects(const Journal& journal)
{
    for (auto step = journal.collects.rbegin(); step != journal.collects.rend(); ++step) {
        if (exists(itemPath(step->item))) {
            Disk::instance().renameNew(itemPath(step->item), locate(step->from));
        }
    }
}

} // namespace pk::project
