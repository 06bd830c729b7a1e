#pragma once

#include "disk.hpp"
#include "index.hpp"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pk::project {

struct Place;

/// What a save does to a project directory, as renames alone: first everything that does not stay
/// where it is is *collected* into the journal directory, then everything new or moved is *put* in
/// its place. What a save takes away is collected and never put.
struct Journal
{
    /// A path below the project, or below an item that was collected before.
    struct Location
    {
        int item = -1; ///< -1: the project
        std::string path;
    };
    struct Collect
    {
        Location from;
        int item = 0;
    };
    /// An item's way to its place below the project, or a directory to be made there.
    struct Put
    {
        std::string path;
        int item = -1;          ///< -1: a new directory
        std::uint16_t mode = 0; ///< of the new directory
        bool replace = false;   ///< a file is there, which the item takes the place of
    };

    std::vector<Collect> collects; ///< directories before what is in them
    std::vector<Put> puts;         ///< directories before what is in them

    bool isEmpty() const { return collects.empty() && puts.empty(); }

    QByteArray toBytes() const;
    /// Throws FormatError for bytes that toBytes() didn't make, and for a path that leaves the
    /// project.
    static Journal fromBytes(const QByteArray& bytes, const std::string& path);
};

/// The journal directory beside a project directory, and the protocol by which a save in place is
/// all or nothing. The caller holds the project's lock.
///
/// The directory holds numbered items: the new files, written and synced before anything else, and
/// what is collected. A save counts from the moment at which its finished journal is synced there
/// under one of two names: "collect" while items are being collected, "put" after that. Each step
/// of either phase shows by the item alone whether it was taken, so a phase can be run again from
/// any point; the phases are kept apart by syncing what the first one changed before the journal
/// gets its second name. In the end the journal is deleted before the rest of the directory.
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
        Stamp file; ///< of the journal on disk
    };

    /// Does what the journal says; its new files are complete and synced, or `syncItems` asks for
    /// that. When this throws, an IoError or AlreadyExists, the project is as before, unless the
    /// disk refused to undo as well: then unfinished() tells what is to be undone.
    void run(const Journal& journal, bool syncItems);
    std::optional<Unfinished> unfinished() const { return m_unfinished; }

    /// Undoes what an earlier run() left; false when somebody else completed it meanwhile. Throws
    /// IoError.
    static bool undoUnfinished(const Place& place, const Unfinished& unfinished);

    /// The path of the file that was at `path` below the project when an earlier run() began, which
    /// left things as they are: it may be in the journal directory.
    static std::string whereIs(const Place& place, const Unfinished& unfinished,
                               const std::string& path);

    /// Completes or forgets the save that a program began at the place and did not end. Whatever
    /// somebody did to the project since, it succeeds and takes nothing from anybody: what is gone
    /// is not put, a directory that is missing is made, and what is in the way gets another name;
    /// the last, and what can't be removed of the journal directory, with a warning in the log.
    /// Throws IoError, also when the whole project is gone, and FormatError for a damaged journal.
    static void recover(const Place& place);

    /// Whether recover() would find a save to complete.
    static bool isPending(const Place& place);

private:
    struct Existing
    {
    };
    JournalDirectory(const Place& place, Existing existing);

    std::string locate(const Journal::Location& location) const;
    std::string locateNow(const Journal& journal, Journal::Location location) const;
    static void refuseStranger(const Place& place);
    void refuseLinks(const Journal& journal) const;
    void write(const Journal& journal, bool syncItems);
    void rename(const char* from, const char* to);
    enum class Run
    {
        Save,   ///< which is undone when it fails
        Recover ///< when anything can have happened to the project meanwhile
    };
    void collect(const Journal& journal, Run run);
    void put(const Journal& journal, Run run);
    void putItem(const Journal::Put& step, Run run);
    void makeWay(const Journal::Put& step) const;
    static void setAside(const std::string& path);
    static void preserve(const std::string& file, const std::string& item);
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
    Stamp m_file;
    std::optional<Unfinished> m_unfinished;
};

} // namespace pk::project
