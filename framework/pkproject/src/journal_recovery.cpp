// How a save that was interrupted is finished by the next one who comes.
#include "changed_directories.hpp"
#include "journal_directory.hpp"
#include "place.hpp"
#include "project_path.hpp"
#include "set_aside.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <map>
#include <set>
#include <unistd.h>

namespace pk::project {

namespace {

// The inode may be another one: who restored a copy of the disk changed nothing.
bool isAsBefore(const struct stat& info, const Stamp& before)
{
    return modificationTime(info) == before.time && info.st_size == before.bytes;
}

// Where something was below the project before anything was collected; `homes` are those of the
// items. Each makes the path longer, and only in a journal that is made up without an end.
std::string pathBefore(const std::map<int, Journal::Location>& homes,
                       const Journal::Location& collected)
{
    Journal::Location location = collected;
    for (auto home = homes.find(location.item); home != homes.end();
         home = homes.find(location.item)) {
        location = {home->second.item, joinPath(home->second.path, location.path)};
        if (isTooLong(location.path.size(), 1)) {
            return collected.path;
        }
    }
    return location.path;
}

} // namespace

void JournalDirectory::recover(const Place& place)
{
    if (!exists(place.journal())) {
        return;
    }
    refuseStranger(place);
    JournalDirectory directory(place, Existing());
    for (const char* const phase : {a_collect, a_put}) {
        const std::string path = directory.m_path + "/" + phase;
        if (!exists(path)) {
            continue;
        }
        const Fd file = openPath(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        const struct stat info = statOf(file);
        if (!S_ISREG(info.st_mode) || info.st_size > a_maxBytes) {
            throw FormatError(path + ": damaged journal");
        }
        const Journal journal = Journal::fromBytes(readAll(file), path);
        if (!isDirectory(place.path)) {
            throw IoError(path + ": it is part of a save to '" + place.path +
                          "', which is gone: bring that back, or remove the journal's directory");
        }
        try {
            directory.complete(journal, phase == a_put, modificationTime(info));
        } catch (const IoError& error) {
            throw IoError(path +
                          ": the save that it is part of can't be completed: " + error.what());
        }
        break;
    }
    directory.finish();
    // The destructor removes the rest. Where it can't, the project is whole all the same and can be
    // read; only a save in place needs the directory's place.
}

// A journal that no save left, but somebody made up, must not reach out of the project.
void JournalDirectory::refuseStranger(const Place& place)
{
    const auto info = statOf(place.journal());
    const auto project = statOf(place.path);
    const bool isOurs = info->st_uid == ::geteuid() ||
                        (::geteuid() == 0 && project && project->st_uid == info->st_uid);
    if (!S_ISDIR(info->st_mode) || !isOurs) {
        throw FormatError(place.journal() + ": it is in the way of the store's own journal");
    }
}

void JournalDirectory::complete(const Journal& journal, bool isCollected, std::int64_t since)
{
    if (isCollected) {
        openDirectories(journal);
    } else {
        collect(journal, Run::Recover);
        rename(a_collect, a_put);
    }
    put(journal, Run::Recover);
    giveBack(journal, since);
    closeDirectories(journal);
    Disk::instance().unlink(m_path + "/" + a_put);
}

// What is in the way has its other name on the disk before anything takes its place. Many things
// are so for one sync.
void JournalDirectory::clearWays(const Journal& journal) const
{
    ChangedDirectories changed;
    for (const Journal::Put& step : journal.puts) {
        if (isToDo(step)) {
            clearWay(step, changed);
        }
    }
    changed.sync(m_path);
}

// Only what somebody did since the save can be in the way of a step, or keep it from its directory.
void JournalDirectory::clearWay(const Journal::Put& step, ChangedDirectories& changed) const
{
    const std::string to = m_project + "/" + step.path;
    for (std::size_t at = m_project.size(); at != std::string::npos;) {
        at = to.find('/', at + 1);
        const std::string path = to.substr(0, at);
        const auto info = statOf(path);
        if (!info) {
            return;
        }
        const bool isExpected = at != std::string::npos || step.makesDirectory()
                                    ? S_ISDIR(info->st_mode)
                                    : step.replace && S_ISREG(info->st_mode) &&
                                          isAsBefore(*info, step.before) &&
                                          !isDirectory(itemPath(step.item));
        if (!isExpected) {
            setAside(path, path);
            changed.addParentOf(path);
            return;
        }
    }
}

void JournalDirectory::makeDirectoriesAbove(const std::string& path,
                                            ChangedDirectories& changed) const
{
    for (std::size_t at = path.find('/'); at != std::string::npos; at = path.find('/', at + 1)) {
        const std::string above = m_project + "/" + path.substr(0, at);
        if (!exists(above)) {
            Disk::instance().mkdir(above, umaskLeaves(0777) | 0700);
            changed.addParentOf(above);
        }
    }
}

// What the save took away comes back, under another name, when somebody changed it after the save
// had begun, and before it was taken.
void JournalDirectory::giveBack(const Journal& journal, std::int64_t since) const
{
    ChangedDirectories changed;
    std::set<std::string> touched;
    std::map<int, Journal::Location> homes;
    std::map<std::string, std::string> others;
    for (const Journal::Collect& step : journal.collects) {
        const std::string from = locate(step.from);
        touched.insert(from.substr(0, from.rfind('/')));
        homes.emplace(step.item, step.from);
    }
    for (const Journal::Collect& step : journal.collects) {
        const std::string item = itemPath(step.item);
        const auto info = statOf(item);
        const bool isChanged =
            info &&
            (S_ISDIR(info->st_mode) ? step.before != Stamp() || isChangedSince(item, since, touched)
                                    : !isAsBefore(*info, step.before));
        if (!isChanged) {
            continue;
        }
        const std::string path = placeToGiveBack(pathBefore(homes, step.from), others);
        makeDirectoriesAbove(path, changed);
        setAside(item, m_project + "/" + path);
        changed.addParentOf(m_project + "/" + path);
    }
    changed.sync(m_path);
}

// A path like that below the project at which something was: other things may be above it now,
// beside which everything goes to the same one of the `others`.
std::string JournalDirectory::placeToGiveBack(const std::string& path,
                                              std::map<std::string, std::string>& others) const
{
    std::string place = m_project + "/" + path;
    for (std::size_t at = place.find('/', m_project.size() + 1); at != std::string::npos;
         at = place.find('/', at + 1)) {
        const std::string above = place.substr(0, at);
        if (exists(above) && !isDirectory(above)) {
            const auto other = others.find(above);
            place.replace(0, at,
                          other != others.end()
                              ? other->second
                              : others.emplace(above, freePathLike(above)).first->second);
            break; // what is below that was made for this
        }
    }
    return place.substr(m_project.size() + 1);
}

} // namespace pk::project
