#include "journal_directory.hpp"

#include "changed_directories.hpp"
#include "place.hpp"
#include "project_path.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <map>

namespace pk::project {

namespace {

// Gives the project directory another modification time than any it had, which is how a model that
// was opened before learns that there was a save.
void markChanged(const std::string& project)
{
    const struct stat info = statOf(openPath(project, O_PATH));
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t nanoseconds =
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    Disk::instance().setTime(project, std::max(nanoseconds, modificationTime(info) + 1));
}

} // namespace

JournalDirectory::JournalDirectory(const Place& place)
    : m_project(place.path), m_path(place.journal()), m_parent(place.parent)
{
    removeTree(m_path);
    Disk::instance().mkdir(m_path, 0700);
    const auto made = statOf(m_path);
    m_inode = made ? made->st_ino : 0;
}

JournalDirectory::JournalDirectory(const Place& place, Existing /*existing*/)
    : m_project(place.path), m_path(place.journal()), m_parent(place.parent), m_begun(true)
{
}

JournalDirectory::~JournalDirectory()
{
    if (m_begun) {
        return;
    }
    try {
        removeTree(m_path);
    } catch (const Error& error) {
        // The next one to open or save the project removes it.
        warn(error.what(), __FILE__, "~JournalDirectory", __LINE__);
    }
}

std::string JournalDirectory::itemPath(int item) const
{
    return m_path + "/" + std::to_string(item);
}

void JournalDirectory::run(const Journal& journal, bool syncItems)
{
    m_expected = filesExpected(journal);
    m_isWritten =
        !journal.isOneRename() || (!journal.puts.empty() && !tryPreserve(journal.puts.front()));
    if (m_isWritten) {
        write(journal, syncItems);
    } else {
        const auto info = statOf(onlyRename(journal).from);
        m_file = info ? Stamp::of(*info) : Stamp();
        m_begun = true;
    }
    try {
        if (!journal.collects.empty()) {
            collect(journal, Run::Save);
            if (m_isWritten) {
                rename(a_collect, a_put);
            }
        }
        put(journal, Run::Save);
        closeDirectories(journal);
        if (m_isWritten) {
            Disk::instance().unlink(m_path + "/" + a_put);
        }
    } catch (const Error&) {
        tryUndo(journal);
        throw;
    }
    try {
        // A journal that a power failure brings back finds its items in their places and does
        // nothing. But directories that it made somebody may have removed by then, and of what it
        // collected a part may be back.
        const bool isHarmless =
            !m_isWritten ||
            (journal.collects.empty() &&
             std::none_of(journal.puts.begin(), journal.puts.end(),
                          [](const Journal::Put& step) { return step.makesDirectory(); }));
        if (isHarmless) {
            m_begun = false;
        } else {
            finish();
        }
    } catch (const Error& error) {
        // All of the save is on the disk; what is left of the journal asks for nothing more.
        warn(error.what(), __FILE__, "run", __LINE__);
    }
}

bool JournalDirectory::isPending(const Place& place)
{
    return exists(place.journal() + "/" + a_collect) || exists(place.journal() + "/" + a_put);
}

std::string JournalDirectory::locate(const Journal::Location& location) const
{
    const std::string top = location.item < 0 ? m_project : itemPath(location.item);
    return location.path.empty() ? top : top + "/" + location.path;
}

JournalDirectory::Rename JournalDirectory::onlyRename(const Journal& journal) const
{
    if (journal.puts.empty()) {
        return {locate(journal.collects.front().from), itemPath(journal.collects.front().item)};
    }
    return {itemPath(journal.puts.front().item), m_project + "/" + journal.puts.front().path};
}

// Steps are taken, and undone, one after the other, so that what lies in the journal directory
// shows which of them hold.
std::string JournalDirectory::locateNow(const Journal& journal, Journal::Location location) const
{
    const auto isAtOrBelow = [](const std::string& path, const std::string& top) {
        return path.compare(0, top.size(), top) == 0 &&
               (path.size() == top.size() || path[top.size()] == '/');
    };
    const auto isItem = [this](int item) { return exists(itemPath(item)); };
    const bool areCollected = exists(m_path + "/" + a_put);
    for (const Journal::Collect& step : journal.collects) {
        if (step.from.item == location.item && isAtOrBelow(location.path, step.from.path) &&
            (areCollected || isItem(step.item))) {
            location = {step.item, location.path.substr(step.from.path.size())};
            location.path.erase(0, location.path.find_first_not_of('/'));
        }
    }
    if (location.item >= 0 && !isItem(location.item)) {
        const auto put =
            std::find_if(journal.puts.begin(), journal.puts.end(),
                         [&](const Journal::Put& step) { return step.item == location.item; });
        if (put != journal.puts.end()) {
            location = {-1, location.path.empty() ? put->path : joinPath(put->path, location.path)};
        }
    }
    const auto replacing =
        std::find_if(journal.puts.begin(), journal.puts.end(), [&](const Journal::Put& step) {
            return location.item < 0 && step.replace && step.path == location.path;
        });
    if (replacing != journal.puts.end()) {
        const std::string item = itemPath(replacing->item);
        if (!isUntouched(*replacing) && exists(preservedName(item))) {
            return preservedName(item);
        }
    }
    return locate(location);
}

// Where each file or directory is to come back that was collected: what it was in may be an item
// now, or be put.
std::vector<std::string> JournalDirectory::placesBefore(const Journal& journal) const
{
    std::map<int, std::string> put;
    for (const Journal::Put& step : journal.puts) {
        if (!step.makesDirectory() && !exists(itemPath(step.item))) {
            put.emplace(step.item, m_project + "/" + step.path);
        }
    }
    std::vector<std::string> places;
    for (const Journal::Collect& step : journal.collects) {
        const auto above = put.find(step.from.item);
        places.push_back(above == put.end() ? locate(step.from)
                                            : above->second + "/" + step.from.path);
    }
    return places;
}

// The first link in the way to a path of the project or of the journal's directory, if there is
// one; what is at the path itself is not looked at.
std::optional<std::string> JournalDirectory::linkAbove(const std::string& path) const
{
    // A path behind m_parent begins with the project's name, or with the journal's.
    for (std::size_t at = path.find('/', m_parent.size() + 1); at != std::string::npos;
         at = path.find('/', at + 1)) {
        std::string above = path.substr(0, at);
        const auto info = statOf(above);
        if (info && S_ISLNK(info->st_mode)) {
            return above;
        }
    }
    return std::nullopt;
}

void JournalDirectory::write(const Journal& journal, bool syncItems)
{
    const QByteArray bytes = journal.toBytes();
    if (bytes.size() > a_maxBytes) {
        throw LimitError(m_project + ": too many changes for one save");
    }
    const std::string draft = m_path + "/" + a_draft;
    {
        const Fd file = Disk::instance().create(draft, 0600);
        Disk::instance().write(file, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        m_file = Stamp::of(statOf(file));
        if (syncItems) {
            Disk::instance().syncFileSystem(m_path);
        } else {
            Disk::instance().sync(file);
            // The names of the items must be there when the journal is.
            syncDirectory(m_path);
        }
    }
    // From the next line on the journal may be found by whoever comes after a crash.
    m_begun = true;
    try {
        rename(a_draft, journal.collects.empty() ? a_put : a_collect);
        syncDirectory(m_parent);
    } catch (const Error&) {
        tryUndo(journal);
        throw;
    }
}

void JournalDirectory::rename(const char* from, const char* to)
{
    Disk::instance().rename(m_path + "/" + from, m_path + "/" + to);
    syncDirectory(m_path);
}

void JournalDirectory::collect(const Journal& journal, Run run)
{
    ChangedDirectories changed;
    for (const Journal::Collect& step : journal.collects) {
        const std::string from = locate(step.from);
        const std::string item = itemPath(step.item);
        changed.addParentOf(item);
        if (run == Run::Recover && linkAbove(from)) {
            continue; // what somebody moved away, leaving a link to it, is theirs
        }
        if (!exists(item) && (run == Run::Save || exists(from))) {
            Disk::instance().renameNew(from, item);
        }
        changed.addParentOf(from);
    }
    changed.sync(m_path);
}

void JournalDirectory::put(const Journal& journal, Run run)
{
    ChangedDirectories changed;
    markChanged(m_project);
    if (run == Run::Recover) {
        clearWays(journal);
    }
    for (const Journal::Put& step : journal.puts) {
        putItem(step, run, changed);
    }
    changed.sync(m_path);
}

// Lets a phase that is run again, or undone, work in new directories that are closed already.
void JournalDirectory::openDirectories(const Journal& journal) const
{
    for (const Journal::Put& step : journal.puts) {
        changeModeIfClosed(step, step.mode | 0700);
    }
}

// A directory that its owner may not read can't be synced any more, nor be worked in.
void JournalDirectory::closeDirectories(const Journal& journal) const
{
    bool isToSync = false;
    for (auto step = journal.puts.rbegin(); step != journal.puts.rend(); ++step) {
        isToSync |= changeModeIfClosed(*step, step->mode);
    }
    if (isToSync) {
        Disk::instance().syncFileSystem(m_path);
    }
}

// False when that is no new directory that gets a mode that forbids its owner to work in it, or
// when it is not there.
bool JournalDirectory::changeModeIfClosed(const Journal::Put& step, mode_t mode) const
{
    const std::string path = m_project + "/" + step.path;
    const bool isThere = step.makesDirectory() && (step.mode & 0700) != 0700 && !linkAbove(path) &&
                         isDirectory(path);
    if (isThere) {
        Disk::instance().chmod(path, mode);
    }
    return isThere;
}

bool JournalDirectory::isToDo(const Journal::Put& step) const
{
    return step.makesDirectory() || exists(itemPath(step.item));
}

void JournalDirectory::putItem(const Journal::Put& step, Run run, ChangedDirectories& changed)
{
    const std::string to = m_project + "/" + step.path;
    const bool isToDo = this->isToDo(step);
    if (isToDo && run == Run::Recover) {
        ChangedDirectories cleared; // in a directory that an earlier step put
        clearWay(step, cleared);
        cleared.sync(m_path);
        makeDirectoriesAbove(step.path, changed);
    }
    if (step.makesDirectory()) {
        if (!exists(to)) {
            Disk::instance().mkdir(to, step.mode | 0700);
        }
    } else if (isToDo && step.replace) {
        // Without a journal run() did it, to see whether it can be done.
        if (run == Run::Save && m_isWritten && !tryPreserve(step)) {
            Disk::instance().rename(to, preservedName(itemPath(step.item)));
        }
        Disk::instance().rename(itemPath(step.item), to);
    } else if (isToDo) {
        Disk::instance().renameNew(itemPath(step.item), to);
    }
    if (run == Run::Save || isToDo || !linkAbove(to)) {
        changed.addParentOf(to);
    }
}

// Keeps a file that an item is to replace, for undo(); false where that takes more than a second
// name, because not every file system has these.
bool JournalDirectory::tryPreserve(const Journal::Put& step) const
{
    if (step.replace) {
        try {
            Disk::instance().link(m_project + "/" + step.path, preservedName(itemPath(step.item)));
        } catch (const IoError&) {
            return false;
        }
    }
    return true;
}

// Whether a file that is to be replaced still is where it was, and the item as well.
bool JournalDirectory::isUntouched(const Journal::Put& step) const
{
    const auto info = statOf(m_project + "/" + step.path);
    return info && Stamp::of(*info) == step.before && exists(itemPath(step.item));
}

// What each put of the journal will lead to: the stamp of a file, which it keeps on the way, or
// none. Called before anything is collected.
std::vector<std::optional<Stamp>> JournalDirectory::filesExpected(const Journal& journal) const
{
    std::map<int, Stamp> collected;
    for (const Journal::Collect& step : journal.collects) {
        collected.emplace(step.item, step.before);
    }
    std::vector<std::optional<Stamp>> files;
    for (const Journal::Put& step : journal.puts) {
        const auto moved = collected.find(step.item);
        std::optional<Stamp> file;
        if (moved != collected.end()) {
            file = moved->second;
        } else if (const auto info = statOf(itemPath(step.item))) {
            file = Stamp::of(*info);
        }
        files.push_back(file);
    }
    return files;
}

std::optional<std::string>
JournalDirectory::whereIs(const Place& place, const Unfinished& unfinished, const std::string& path)
{
    const JournalDirectory directory(place, Existing());
    if (!directory.isOurs(unfinished)) {
        return std::nullopt;
    }
    return directory.locateNow(unfinished.journal, {-1, path});
}

// The save is done, or undone: what is left of the directory is rubbish.
void JournalDirectory::finish()
{
    syncDirectory(m_path);
    m_begun = false;
}

} // namespace pk::project
