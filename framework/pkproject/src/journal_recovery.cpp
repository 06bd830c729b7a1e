// How a save that was interrupted is finished by the next one who comes.
#include "changed_directories.hpp"
#include "journal_directory.hpp"
#include "place.hpp"
#include "project_path.hpp"
#include "set_aside.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <set>
#include <unistd.h>

namespace pk::project {

namespace {

// The inode may be another one: who restored a copy of the disk changed nothing.
bool isAsBefore(const struct stat& info, const Stamp& before)
{
    return modificationTime(info) == before.time && info.st_size == before.bytes;
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
        const Journal journal = Journal::fromBytes(QByteArray::fromStdString(readAll(file)), path);
        directory.refuseLinks(journal);
        if (!isDirectory(place.path)) {
            throw IoError(path + ": it is part of a save to '" + place.path +
                          "', which is gone: bring that back, or remove the journal's directory");
        }
        if (phase == a_collect) {
            directory.collect(journal, Run::Recover);
            directory.rename(a_collect, a_put);
        }
        directory.put(journal, Run::Recover);
        directory.giveBack(journal, modificationTime(info));
        Disk::instance().unlink(directory.m_path + "/" + a_put);
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

// Only what somebody did since the save can be in the way of a step, or keep it from its directory.
void JournalDirectory::makeWay(const Journal::Put& step, ChangedDirectories& changed) const
{
    makeDirectoriesAbove(step.path, changed);
    const std::string to = m_project + "/" + step.path;
    const auto info = statOf(to);
    const bool isExpected =
        !info || (step.makesDirectory()
                      ? S_ISDIR(info->st_mode)
                      : step.replace && S_ISREG(info->st_mode) && isAsBefore(*info, step.before));
    if (!isExpected) {
        setAside(to, to);
    }
}

void JournalDirectory::makeDirectoriesAbove(const std::string& path,
                                            ChangedDirectories& changed) const
{
    for (std::size_t at = path.find('/'); at != std::string::npos; at = path.find('/', at + 1)) {
        const std::string above = m_project + "/" + path.substr(0, at);
        const auto info = statOf(above);
        if (info && S_ISDIR(info->st_mode)) {
            continue;
        }
        if (info) {
            setAside(above, above);
        }
        Disk::instance().mkdir(above, umaskLeaves(0777) | 0700);
        changed.addParentOf(above);
    }
}

// What the save took away comes back, under another name, when somebody changed it after the save
// had begun, and before it was taken.
void JournalDirectory::giveBack(const Journal& journal, std::int64_t since)
{
    ChangedDirectories changed;
    std::set<std::string> touched;
    for (const Journal::Collect& step : journal.collects) {
        const std::string from = locate(step.from);
        touched.insert(from.substr(0, from.rfind('/')));
    }
    for (const Journal::Collect& step : journal.collects) {
        const std::string item = itemPath(step.item);
        const auto info = statOf(item);
        const bool isChanged =
            info && (S_ISDIR(info->st_mode) ? isChangedSince(item, since, touched)
                                            : !isAsBefore(*info, step.before));
        if (!isChanged) {
            continue;
        }
        const std::string path = pathBefore(journal, step.from);
        makeDirectoriesAbove(path, changed);
        setAside(item, m_project + "/" + path);
        changed.addParentOf(m_project + "/" + path);
    }
    changed.sync(m_path);
}

// Below the project, before anything was collected. What is in a directory is collected after it.
std::string JournalDirectory::pathBefore(const Journal& journal, Journal::Location location)
{
    for (auto step = journal.collects.rbegin(); step != journal.collects.rend(); ++step) {
        if (step->item == location.item) {
            location = {step->from.item, joinPath(step->from.path, location.path)};
        }
    }
    return location.path;
}

} // namespace pk::project
