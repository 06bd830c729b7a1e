#pragma once

#include "disk.hpp"
#include "index.hpp"
#include "journal.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pk::project {

class ChangedDirectories;
struct Place;

/// The journal directory beside a project directory, and the protocol by which a save in place is
/// all or nothing. The caller holds the project's lock.
///
/// The directory holds numbered items: the new files, written and synced before anything else, and
/// what is collected. A save counts from the moment at which its finished journal is synced there
/// under one of two names: "collect" while items are being collected, "put" after that. Each step
/// of either phase shows by the item alone whether it was taken, so a phase can be run again from
/// any point; the phases are kept apart by syncing what the first one changed before the journal
/// gets its second name. In the end the journal is deleted before the rest of the directory. A save
/// that is one rename is whole or not without a journal, and none is written.
///
/// This relies on the file system to rename in one step, and not to lose what was renamed into a
/// new directory together with that directory; otherwise on nothing about the order in which
/// unsynced changes reach the disk.
class JournalDirectory
{
public:
    /// Makes an empty journal directory; what is left of an earlier one is removed. Throws IoError.
    explicit JournalDirectory(const Place& place);
    /// Removes the directory, unless a save that failed could not be undone either.
    ~JournalDirectory();
    JournalDirectory(const JournalDirectory&) = delete;
    JournalDirectory& operator=(const JournalDirectory&) = delete;
    JournalDirectory(JournalDirectory&&) = delete;
    JournalDirectory& operator=(JournalDirectory&&) = delete;

    /// Where an item is to be written.
    std::string itemPath(int item) const;

    /// A save that failed and could not be undone.
    struct Unfinished
    {
        Journal journal;
        bool isWritten = true;       ///< to the disk
        Stamp file;                  ///< of the journal on disk, or of what its one rename moves
        std::uint64_t directory = 0; ///< inode of the journal directory
        /// What each put of the journal leads to: the stamp of a file, or none.
        std::vector<std::optional<Stamp>> put;
    };

    /// Does what the journal says; its new files are complete and synced, or `syncItems` asks for
    /// that. When this throws, an IoError or AlreadyExists, the project is as before, unless the
    /// disk refused to undo as well: then unfinished() tells what is to be undone.
    void run(const Journal& journal, bool syncItems);
    std::optional<Unfinished> unfinished() const { return m_unfinished; }

    /// Undoes what an earlier run() left; false when somebody else completed it meanwhile. Throws
    /// ConflictError, and does nothing, when somebody changed what it had put, put something where
    /// something is to come back, or removed its place; FormatError when a link took the place of
    /// a directory on the way; and IoError.
    static bool undoUnfinished(const Place& place, const Unfinished& unfinished);

    /// The path of the file that was at `path` below the project when an earlier run() began, which
    /// left things as they are: it may be in the journal directory. Nothing when somebody else
    /// completed that save, which did with the file what it was to do.
    static std::optional<std::string> whereIs(const Place& place, const Unfinished& unfinished,
                                              const std::string& path);

    /// Completes or forgets the save that a program began at the place and did not end. Whatever
    /// somebody did to the project since, it succeeds and takes nothing from anybody: what is gone,
    /// or is behind a link now, is neither collected nor put, a directory that is missing is made,
    /// and what came to be in the way, or was changed and would be replaced or removed, gets
    /// another name (set_aside.hpp); that, and what can't be removed of the journal directory, is a
    /// warning in the log.
    /// Throws IoError, which names the journal, also when the whole project is gone, and
    /// FormatError for a damaged journal.
    static void recover(const Place& place);

    /// Whether recover() would find a save to complete.
    static bool isPending(const Place& place);

private:
    static constexpr const char* a_draft = "draft";
    static constexpr const char* a_collect = "collect";
    static constexpr const char* a_put = "put";
    /// Of a journal: some millions of steps.
    static constexpr std::int64_t a_maxBytes = std::int64_t{256} << 20U;

    struct Existing
    {
    };
    JournalDirectory(const Place& place, Existing existing);

    /// What undo() puts back for a file that an item replaced.
    static std::string preservedName(const std::string& item) { return item + ".old"; }
    std::string locate(const Journal::Location& location) const;
    std::string locateNow(const Journal& journal, Journal::Location location) const;
    std::vector<std::string> placesBefore(const Journal& journal) const;
    std::optional<std::string> linkAbove(const std::string& path) const;
    static void refuseStranger(const Place& place);
    void refuseLinks(const Journal& journal) const;
    void write(const Journal& journal, bool syncItems);
    struct Rename
    {
        std::string from;
        std::string to;
    };
    Rename onlyRename(const Journal& journal) const;
    void refuseChanges(const Unfinished& unfinished) const;
    std::vector<std::optional<Stamp>> filesExpected(const Journal& journal) const;
    bool isOurs(const Unfinished& unfinished) const;
    void rename(const char* from, const char* to);
    enum class Run
    {
        Save,   ///< which is undone when it fails
        Recover ///< when anything can have happened to the project meanwhile
    };
    void collect(const Journal& journal, Run run);
    void put(const Journal& journal, Run run);
    void putItem(const Journal::Put& step, Run run, ChangedDirectories& changed);
    void openDirectories(const Journal& journal) const;
    void closeDirectories(const Journal& journal) const;
    bool changeModeIfClosed(const Journal::Put& step, mode_t mode) const;
    void complete(const Journal& journal, bool isCollected, std::int64_t since);
    bool isToDo(const Journal::Put& step) const;
    void clearWays(const Journal& journal) const;
    void clearWay(const Journal::Put& step, ChangedDirectories& changed) const;
    void makeDirectoriesAbove(const std::string& path, ChangedDirectories& changed) const;
    void giveBack(const Journal& journal, std::int64_t since) const;
    std::string placeToGiveBack(const std::string& path,
                                std::map<std::string, std::string>& others) const;
    bool tryPreserve(const Journal::Put& step) const;
    bool isUntouched(const Journal::Put& step) const;
    void tryUndo(const Journal& journal);
    void undo(const Journal& journal);
    void undoPuts(const Journal& journal);
    void takeBack(const Journal& journal);
    void undoCollects(const Journal& journal);
    void finish();

    std::string m_project;
    std::string m_path;
    std::string m_parent;
    bool m_begun = false;
    bool m_isWritten = true; // the journal
    Stamp m_file;
    std::uint64_t m_inode = 0; // of the directory
    std::vector<std::optional<Stamp>> m_expected;
    std::optional<Unfinished> m_unfinished;
};

} // namespace pk::project
