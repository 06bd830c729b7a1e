#include "recovery.hpp"

#include "conflict.hpp"
#include "edit_log.hpp"
#include "journal_directory.hpp"
#include "lock.hpp"
#include "staging.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <unistd.h>

namespace pk::project {

namespace {

// The directory that a dead process left below the place for temporary files. Its lock is held, so
// that nobody takes anything away from it.
struct DeadRoot
{
    Fd directory;
    Fd lock;
};

enum class Owner
{
    Dead,
    Living,
    Unknown, ///< it died before it had a lock, or is about to make one
    Stranger ///< no directory of this user's programs, or gone
};

// With a shared lock, as any number of those who only look at what is there have it.
Owner claimRoot(const std::string& path, DeadRoot& root)
{
    constexpr int readable = O_RDONLY | O_NOFOLLOW | O_CLOEXEC;
    root.directory = Fd(::open(path.c_str(), readable | O_DIRECTORY), path);
    if (!root.directory) {
        return Owner::Stranger;
    }
    const struct stat info = statOf(root.directory);
    if (info.st_uid != ::geteuid() || (info.st_mode & 077) != 0) {
        return Owner::Stranger;
    }
    const int lock = ::openat(root.directory.get(), StagingRoot::a_lockFile, readable | O_NONBLOCK);
    root.lock = Fd(lock, path + "/" + StagingRoot::a_lockFile);
    if (!root.lock) {
        return errno == ENOENT ? Owner::Unknown : Owner::Stranger;
    }
    if (::flock(root.lock.get(), LOCK_SH | LOCK_NB) != 0) {
        return Owner::Living;
    }
    return statOf(root.lock).st_nlink > 0 ? Owner::Dead : Owner::Stranger;
}

// Makes the lock one that nobody else has; false when somebody else does, or took all away.
// Without `waits` only what is there already is asked.
bool lockAlone(const DeadRoot& root, bool waits)
{
    return ::flock(root.lock.get(), LOCK_EX | (waits ? 0 : LOCK_NB)) == 0 &&
           statOf(root.lock).st_nlink > 0;
}

// One model's directory in it; nothing when there is no log of edits.
std::optional<EditHistory> historyIn(const Fd& root, const std::string& name)
{
    const std::string path = name + "/" + EditLog::a_fileName;
    const Fd log = openBeneath(root, path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!log && errno != ENOENT && errno != ENOTDIR) {
        throwErrno(joinPath(root.path(), path));
    }
    if (!log || !S_ISREG(statOf(log).st_mode)) {
        return std::nullopt;
    }
    return EditLog::read(log);
}

std::vector<std::string> changesOf(const Base& base)
{
    if (base.path.empty()) {
        return {};
    }
    const auto info = statOf(base.path);
    if (!info) {
        return {"'" + base.path + "' was removed"};
    }
    if (!S_ISDIR(info->st_mode)) {
        const bool isSame = Stamp::of(*info) == base.stamp;
        return isSame ? std::vector<std::string>{}
                      : std::vector<std::string>{"'" + base.path + "' was changed"};
    }
    return DirectorySource(Place::of(base.path), openPath(base.path, O_RDONLY | O_DIRECTORY))
        .changesSince(base);
}

UnsavedWork describe(const std::string& directory, const EditHistory& history)
{
    UnsavedWork work;
    work.directory = QString::fromStdString(directory);
    work.project = QString::fromStdString(history.base.path);
    if (const auto info = statOf(directory + "/" + EditLog::a_fileName)) {
        work.time = QDateTime::fromMSecsSinceEpoch(modificationTime(*info) / 1'000'000, Qt::UTC);
    }
    for (const auto& operation : history.operations) {
        for (const LoggedEdit& edit : operation) {
            work.edits.append(edit.toText());
        }
    }
    for (const std::string& change : changesOf(history.base)) {
        work.changes.append(QString::fromStdString(change));
    }
    return work;
}

// A staged file of a dead model; nothing when it is not there, or not whole any more.
std::optional<std::string> stagedPath(const std::string& directory, const LoggedEdit& edit)
{
    const std::string path = directory + "/" + edit.other;
    const auto info = edit.other.find('/') == std::string::npos ? statOf(path) : std::nullopt;
    const bool isWhole =
        info && S_ISREG(info->st_mode) && edit.bytes.value_or(info->st_size) == info->st_size;
    return isWhole ? std::optional<std::string>(path) : std::nullopt;
}

// Whether a file was written as the project has it.
bool isAsSaved(Store& store, const std::string& directory, const LoggedEdit& edit)
{
    const auto staged = stagedPath(directory, edit);
    const ProjectPath path = parsePath(textOf(edit.path));
    Entry* const old = store.index().find(path);
    return staged && old != nullptr && !old->isDirectory() &&
           edit.mode.value_or(old->mode) == old->mode &&
           sameBytes(store.open(*old), openPath(*staged, O_RDONLY | O_NOFOLLOW));
}

// Whether nothing was edited but files, to the bytes that they have in the project. Programs that
// only look at a project may write some files as they find them.
bool changesNothing(const std::string& directory, const EditHistory& history)
{
    if (history.base.path.empty() || !statOf(history.base.path)) {
        return false;
    }
    for (const auto& operation : history.operations) {
        for (const LoggedEdit& edit : operation) {
            if (edit.kind != EditKind::PutFile) {
                return false;
            }
        }
    }
    try {
        Store store(textOf(history.base.path));
        for (const auto& operation : history.operations) {
            for (const LoggedEdit& edit : operation) {
                if (!isAsSaved(store, directory, edit)) {
                    return false;
                }
            }
        }
    } catch (const Error&) {
        return false; // a project that can't be opened
    }
    return true;
}

// Looks at what one model of a dead process left; gives whether it is to be kept.
bool searchDirectory(const DeadRoot& root, const std::string& name, const std::string& project,
                     QList<UnsavedWork>& found)
{
    const auto history = historyIn(root.directory, name);
    if (!history || history->operations.empty()) {
        return false;
    }
    if (history->base.path != project) {
        return true;
    }
    const std::string directory = joinPath(root.directory.path(), name);
    if (history->isSaved() || changesNothing(directory, *history)) {
        return false;
    }
    found.append(describe(directory, *history));
    return true;
}

// Looks at what one dead process left; removes what is not unsaved.
void searchRoot(const std::string& path, const std::string& project, QList<UnsavedWork>& found)
{
    DeadRoot root;
    const Owner owner = claimRoot(path, root);
    if (owner == Owner::Unknown) {
        ::rmdir(path.c_str());
    }
    if (owner != Owner::Dead) {
        return;
    }
    bool isNeeded = false;
    std::vector<std::string> needless;
    for (const std::string& name : namesIn(root.directory)) {
        try {
            if (searchDirectory(root, name, project, found)) {
                isNeeded = true;
            } else if (name != StagingRoot::a_lockFile) {
                needless.push_back(joinPath(path, name));
            }
        } catch (const Error& error) {
            // What can't be judged may be needed.
            warn(error.what(), __FILE__, "searchRoot", __LINE__);
            isNeeded = true;
        }
    }
    if (!isNeeded) {
        needless = {path};
    }
    if (!needless.empty() && lockAlone(root, false)) {
        std::for_each(needless.begin(), needless.end(), removeTree);
    }
}

// Completes or forgets a save that was interrupted there, as opening would.
void settle(const Place& place)
{
    if (const auto lock = Lock::takeIfWritable(place)) {
        JournalDirectory::recover(place);
    }
}

// A piece of work whose process is dead; nobody takes it away for as long as this is kept.
struct Claimed
{
    DeadRoot root;
    std::string directory;
    std::string name; ///< in the root

    [[noreturn]] void failGone() const
    {
        throw PathNotFound(directory + ": no unsaved work is there");
    }
};

Claimed claim(const UnsavedWork& work)
{
    Claimed claimed;
    claimed.directory = QDir::cleanPath(work.directory).toStdString();
    const std::size_t slash = claimed.directory.rfind('/');
    if (slash == std::string::npos) {
        claimed.failGone();
    }
    claimed.name = claimed.directory.substr(slash + 1);
    const Owner owner = claimRoot(claimed.directory.substr(0, slash), claimed.root);
    if (owner == Owner::Living) {
        throw LockError(claimed.directory + ": a living program works with it");
    }
    if (owner != Owner::Dead) {
        claimed.failGone();
    }
    return claimed;
}

// Makes the edits of a dead model again, in another.
class Replay
{
public:
    Replay(Store& store, std::string directory) : m_store(store), m_directory(std::move(directory))
    {
    }

    void run(const EditHistory& history)
    {
        for (const auto& operation : history.operations) {
            std::vector<Edit> edits;
            edits.reserve(operation.size());
            for (const LoggedEdit& logged : operation) {
                edits.push_back(editOf(logged));
            }
            m_store.apply(std::move(edits));
        }
    }

    /// The files whose bytes are lost.
    std::vector<ProjectPath> lost() const
    {
        std::vector<ProjectPath> lost;
        if (m_gone) {
            collectLost(m_store.index().root(), lost);
        }
        return lost;
    }

    /// Leaves a file as the project on disk has it, or out when that has none there.
    void giveUp(const ProjectPath& path)
    {
        const Entry* const original = m_store.index().findInSource(path);
        const bool isFile = original != nullptr && !original->isDirectory();
        Edit edit(isFile ? EditKind::PutCopy : EditKind::Remove, path);
        edit.original = original;
        m_store.apply({std::move(edit)});
    }

private:
    Edit editOf(const LoggedEdit& logged)
    {
        if (logged.kind == EditKind::SetMetadata) {
            Edit edit(logged.kind, {});
            edit.key = textOf(logged.path);
            edit.value = textOf(logged.other);
            return edit;
        }
        Edit edit(logged.kind, parsePath(textOf(logged.path)));
        edit.mode = logged.mode;
        if (logged.kind == EditKind::Move) {
            edit.to = parsePath(textOf(logged.other));
        } else if (logged.kind == EditKind::PutFile) {
            edit.staged = stagedFile(logged);
        } else if (logged.kind == EditKind::PutCopy) {
            edit.original = m_store.index().findInSource(parsePath(textOf(logged.other)));
            if (edit.original == nullptr || edit.original->isDirectory()) {
                throw PathNotFound("'" + logged.other + "': no such file in the project");
            }
        }
        return edit;
    }

    // Bytes that were replaced later are gone.
    std::shared_ptr<StagedFile> stagedFile(const LoggedEdit& logged)
    {
        if (const auto path = stagedPath(m_directory, logged)) {
            return m_store.staging().link(logged.other.substr(logged.other.find('-') + 1), *path);
        }
        if (!m_gone) {
            m_gone = m_store.staging().write("gone", "", 0);
        }
        return m_gone;
    }

    void collectLost(const Entry& directory, std::vector<ProjectPath>& lost) const
    {
        for (const auto& child : directory.folder->children) {
            if (child->isDirectory()) {
                collectLost(*child, lost);
            } else if (child->staged() == m_gone) {
                lost.push_back(parsePath(textOf(Index::path(*child))));
            }
        }
    }

    Store& m_store;
    std::string m_directory;
    std::shared_ptr<StagedFile> m_gone;
};

void replay(Store& store, const std::string& directory, const EditHistory& history, bool evenIfLost)
{
    Replay replay(store, directory);
    replay.run(history);
    for (const ProjectPath& path : replay.lost()) {
        const std::string message = directory + ": the bytes of '" + joinPath(path) + "' are lost";
        if (!evenIfLost) {
            throw IoError(message);
        }
        warn(message, __FILE__, "replay", __LINE__);
        replay.giveUp(path);
    }
}

} // namespace

QList<UnsavedWork> findUnsavedWork(const QString& path)
{
    std::string project;
    if (!path.isEmpty()) {
        const Place place = Place::of(absolutePath(path).toStdString());
        settle(place);
        project = place.path;
    }
    QList<UnsavedWork> found;
    const std::string temporary = QDir::tempPath().toStdString();
    for (const std::string& name : namesIn(openPath(temporary, O_RDONLY | O_DIRECTORY))) {
        if (name.rfind(StagingRoot::a_prefix, 0) != 0) {
            continue;
        }
        try {
            searchRoot(joinPath(temporary, name), project, found);
        } catch (const IoError& error) {
            // What can't be read or removed is no reason not to find the rest.
            warn(error.what(), __FILE__, "findUnsavedWork", __LINE__);
        }
    }
    std::sort(found.begin(), found.end(), [](const UnsavedWork& a, const UnsavedWork& b) {
        return std::make_pair(a.time, a.directory) < std::make_pair(b.time, b.directory);
    });
    return found;
}

std::unique_ptr<Store> recoverWork(const UnsavedWork& work, bool evenIfChanged,
                                   const ArchiveLimits& limits)
{
    const Claimed claimed = claim(work);
    const auto history = historyIn(claimed.root.directory, claimed.name);
    if (!history) {
        claimed.failGone();
    }
    const Base& base = history->base;
    auto store = base.path.empty()
                     ? std::make_unique<Store>()
                     : std::make_unique<Store>(QString::fromStdString(base.path), limits);
    const auto changes = changesOf(base);
    if (!changes.empty() && !evenIfChanged) {
        throwConflict(base.path, "since", changes);
    }
    try {
        replay(*store, claimed.directory, *history, evenIfChanged);
    } catch (const IoError&) {
        throw;
    } catch (const Error& error) {
        throw ConflictError(claimed.directory +
                            ": it does not fit the project any more: " + error.what());
    }
    return store;
}

void discardWork(const UnsavedWork& work)
{
    const Claimed claimed = claim(work);
    if (!lockAlone(claimed.root, true) || !statOf(claimed.directory + "/" + EditLog::a_fileName)) {
        claimed.failGone();
    }
    removeTree(claimed.directory);
    if (namesIn(claimed.root.directory).size() == 1) {
        removeTree(claimed.root.directory.path());
    }
}

} // namespace pk::project
