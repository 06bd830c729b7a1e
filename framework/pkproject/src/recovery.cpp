#include "recovery.hpp"

#include "edit_log.hpp"
#include "journal.hpp"
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
// that nobody else takes anything from it or away.
struct DeadRoot
{
    Fd directory;
    Fd lock;
};

enum class Owner
{
    Dead,
    Living,
    Stranger ///< no directory of this user's programs, or gone
};

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
        return Owner::Stranger;
    }
    if (::flock(root.lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return Owner::Living;
    }
    return statOf(root.lock).st_nlink > 0 ? Owner::Dead : Owner::Stranger;
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

// Whether nothing was edited but files, to the bytes that they have in the project. Programs that
// only look at a project may write some files as they find them.
bool changesNothing(const std::string& directory, const EditHistory& history)
{
    if (history.base.path.empty() || !statOf(history.base.path)) {
        return false;
    }
    std::unique_ptr<Store> store;
    for (const auto& operation : history.operations) {
        for (const LoggedEdit& edit : operation) {
            const auto staged = statOf(directory + "/" + edit.other);
            if (edit.kind != EditKind::PutFile || !staged || !S_ISREG(staged->st_mode)) {
                return false;
            }
            if (!store) {
                store = std::make_unique<Store>(textOf(history.base.path));
            }
            const ProjectPath path = parsePath(textOf(edit.path));
            const Entry* const old = store->index().find(path);
            if (old == nullptr || old->isDirectory() ||
                edit.mode.value_or(old->mode) != old->mode ||
                store->read(path).toStdString() !=
                    readAll(openPath(directory + "/" + edit.other, O_RDONLY | O_NOFOLLOW))) {
                return false;
            }
        }
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
        removeTree(directory);
        return false;
    }
    found.append(describe(directory, *history));
    return true;
}

// Looks at what one dead process left; removes it when nothing in it is unsaved.
void searchRoot(const std::string& path, const std::string& project, QList<UnsavedWork>& found)
{
    DeadRoot root;
    if (claimRoot(path, root) != Owner::Dead) {
        return;
    }
    bool isNeeded = false;
    for (const std::string& name : namesIn(root.directory)) {
        try {
            isNeeded = searchDirectory(root, name, project, found) || isNeeded;
        } catch (const Error& error) {
            // What can't be judged may be needed.
            warn(error.what(), __FILE__, "searchRoot", __LINE__);
            isNeeded = true;
        }
    }
    if (!isNeeded) {
        removeTree(path);
    }
}

// Completes or forgets a save that was interrupted there, as opening would.
void settle(const Place& place)
{
    if (const auto lock = Lock::takeIfWritable(place)) {
        JournalDirectory::recover(place);
    }
}

// A piece of work whose process is dead, for as long as this is kept.
struct Claimed
{
    DeadRoot root;
    std::string directory;
    EditHistory history;
};

Claimed claim(const UnsavedWork& work)
{
    Claimed claimed;
    claimed.directory = QDir::cleanPath(work.directory).toStdString();
    const std::size_t slash = claimed.directory.rfind('/');
    const std::string root = claimed.directory.substr(0, slash);
    const Owner owner =
        slash == std::string::npos ? Owner::Stranger : claimRoot(root, claimed.root);
    if (owner == Owner::Living) {
        throw LockError(claimed.directory + ": a living program works with it");
    }
    auto history = owner == Owner::Dead
                       ? historyIn(claimed.root.directory, claimed.directory.substr(slash + 1))
                       : std::nullopt;
    if (!history) {
        throw PathNotFound(claimed.directory + ": no unsaved work is there");
    }
    claimed.history = std::move(*history);
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
        checkBytes(m_store.index().root());
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
            edit.staged = stagedFile(logged.other);
        } else if (logged.kind == EditKind::PutCopy) {
            edit.original = m_store.index().findInSource(parsePath(textOf(logged.other)));
            if (edit.original == nullptr || edit.original->isDirectory()) {
                throw PathNotFound("'" + logged.other + "': no such file in the project");
            }
        }
        return edit;
    }

    // Bytes that were replaced later are gone.
    std::shared_ptr<StagedFile> stagedFile(const std::string& name)
    {
        const std::string path = m_directory + "/" + name;
        const auto info = name.find('/') == std::string::npos ? statOf(path) : std::nullopt;
        if (info && S_ISREG(info->st_mode)) {
            return m_store.staging().link(name.substr(name.find('-') + 1), path);
        }
        if (!m_gone) {
            m_gone = m_store.staging().write("gone", "", 0);
        }
        return m_gone;
    }

    void checkBytes(const Entry& directory) const
    {
        for (const auto& child : directory.folder->children) {
            if (child->isDirectory()) {
                checkBytes(*child);
            } else if (m_gone && child->staged() == m_gone) {
                throw IoError(m_directory + ": the bytes of '" + Index::path(*child) +
                              "' are lost");
            }
        }
    }

    Store& m_store;
    std::string m_directory;
    std::shared_ptr<StagedFile> m_gone;
};

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
        if (name.rfind(StagingRoot::a_prefix, 0) == 0) {
            searchRoot(joinPath(temporary, name), project, found);
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
    const Base& base = claimed.history.base;
    auto store = base.path.empty()
                     ? std::make_unique<Store>()
                     : std::make_unique<Store>(QString::fromStdString(base.path), limits);
    const auto changes = changesOf(base);
    if (!changes.empty() && !evenIfChanged) {
        throw ConflictError(base.path + ": changed by someone else since: " + listing(changes));
    }
    try {
        Replay(*store, claimed.directory).run(claimed.history);
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
    removeTree(claimed.directory);
    const std::vector<std::string> left = namesIn(claimed.root.directory);
    if (left.size() == 1) {
        removeTree(claimed.root.directory.path());
    }
}

} // namespace pk::project
