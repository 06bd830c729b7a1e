#include "archive_save.hpp"
#include "directory_save.hpp"
#include "journal_directory.hpp"
#include "lock.hpp"
#include "publish.hpp"
#include "store.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <utility>

// What of a Store has to do with saving.

namespace pk::project {

namespace {

bool holdsRepository(const std::string& directory)
{
    return statOf(directory + "/.git") || statOf(directory + "/.hg") || statOf(directory + "/.svn");
}

} // namespace

struct Store::Target
{
    QString path;
    Place place;
    ArchiveFormat form;
    bool isSource;
    std::optional<struct stat> existing;

    mode_t modeOr(mode_t mode) const { return existing ? existing->st_mode & 0777 : mode; }
};

void Store::save(const QString& path, ArchiveFormat format, bool overwrite)
{
    Target target = resolveTarget(path, format);
    checkTarget(target.place);
    if (!overwrite && statOf(target.place.path)) {
        throw AlreadyExists(target.place.path + ": it exists already");
    }
    try {
        undoUnfinished(target.isSource);
        const Lock lock = Lock::take(target.place);
        JournalDirectory::recover(target.place);
        removeTree(target.place.fresh());
        target.existing = statOf(target.place.path);
        if (!overwrite && target.existing) {
            throw AlreadyExists(target.place.path + ": it exists already");
        }
        if (target.form == ArchiveFormat::Zip) {
            saveArchive(target);
        } else {
            saveDirectory(target);
        }
        m_sourcePath = target.path;
        m_savedMetadata = m_metadata;
        restartLog(); // while nobody else can save
    } catch (const IoError& error) {
        throw IoError(target.place.path + ": it can't be saved: " + error.what());
    } catch (const LimitError& error) {
        throw LimitError(target.place.path + ": it can't be saved: " + error.what());
    }
}

// Nothing is unsaved, except what is written to streams that are still open.
void Store::restartLog()
{
    try {
        m_log.restart(base(Base::now()));
    } catch (const IoError& error) {
        // The save is done. A recovery would find that somebody saved since.
        warn(error.what(), __FILE__, "restartLog", __LINE__);
        return;
    }
    std::vector<Edit> edits;
    for (Entry* const entry : m_index->touched()) {
        edits.push_back(putEdit(parsePath(textOf(Index::path(*entry))), entry->staged()));
    }
    if (!edits.empty()) {
        m_log.append(edits);
    }
}

// Brings the source back to what the index knows when an earlier save could neither be done nor
// undone. Where a project is saved elsewhere that is worth trying, but no more: perhaps the disk
// that refused is the reason for it.
void Store::undoUnfinished(bool mustSucceed)
{
    if (!m_contents.directory || !m_contents.directory->unfinished()) {
        return;
    }
    try {
        const Place& place = m_contents.directory->place();
        const Lock lock = Lock::take(place);
        if (JournalDirectory::undoUnfinished(place, *m_contents.directory->unfinished())) {
            m_contents.directory->setUnfinished({});
            rememberUndone();
        } // else it is for the comparison to say what is different
    } catch (const Error& error) {
        if (mustSucceed) {
            throw;
        }
        warn(std::string("a save that failed can still not be undone: ") + error.what(), __FILE__,
             "undoUnfinished", __LINE__);
    }
}

// An undone save leaves the source as it was, but with other times of directories. What somebody
// else changed meanwhile must stay to be found.
void Store::rememberUndone()
{
    try {
        m_contents.directory->checkUnchanged(*m_index);
        m_contents.directory->remember(m_contents.directory->metadataFile());
        m_log.confirm(base(Base::now()));
    } catch (const ConflictError&) {
        // Who saves to the source is told.
    }
}

Store::Target Store::resolveTarget(const QString& path, ArchiveFormat format) const
{
    Target target{};
    target.path = path.isEmpty() ? m_sourcePath : absolutePath(path);
    if (target.path.isEmpty()) {
        throw Error("'': the project was never saved, so it needs a path to be saved to");
    }
    if (target.path.contains(QChar(0))) {
        throw InvalidPath("'" + target.path.toStdString() + "': a path has no NUL character");
    }
    target.place = Place::of(target.path.toStdString());
    target.form = format;
    if (format == ArchiveFormat::Unspecified || format == ArchiveFormat::Source) {
        target.form = m_contents.archive ? ArchiveFormat::Zip : ArchiveFormat::Directory;
    } else if (format != ArchiveFormat::Directory && format != ArchiveFormat::Zip) {
        throw Error(target.place.path + ": there is no archive format " +
                    std::to_string(static_cast<int>(format)));
    }
    const Place* const source = m_contents.place();
    target.isSource = source != nullptr && source->path == target.place.path;
    if (source != nullptr && !target.isSource && target.path == m_sourcePath) {
        // A link is there now, or on the way, which leads to what is somebody else's.
        throw ConflictError(target.path.toStdString() +
                            ": moved or replaced by someone else since it was opened");
    }
    return target;
}

void Store::checkTarget(const Place& place) const
{
    const Place* const source = m_contents.place();
    if (source == nullptr || source->path == place.path) {
        return;
    }
    if (source->contains(place)) {
        throw InvalidPath(place.path + ": a project can't be saved inside itself");
    }
    if (place.contains(*source)) {
        throw InvalidPath(place.path + ": it holds the project that is to be saved there");
    }
}

void Store::saveDirectory(const Target& target)
{
    const bool overDirectory = target.existing && S_ISDIR(target.existing->st_mode);
    if (target.isSource && m_contents.directory) {
        saveInPlace(*m_index, m_contents, m_metadata != m_savedMetadata ? &m_metadata : nullptr,
                    m_log);
        return;
    }
    if (overDirectory && holdsRepository(target.place.path)) {
        saveOverRepository(target);
        return;
    }
    checkSource(target);
    FreshPlace fresh(target.place);
    DirectorySave save(*m_index, m_contents, m_metadata);
    save.write(fresh.path(), target.modeOr(umaskLeaves(0777)));
    auto source = std::make_unique<DirectorySource>(target.place,
                                                    openPath(fresh.path(), O_RDONLY | O_DIRECTORY));
    source->setSize(save.size());
    checkSource(target); // once more: writing took its time
    publish(fresh, target);
    save.adopt();
    adopt(std::move(source), nullptr);
}

// What is saved in the place of its source must not have been changed there by somebody else.
void Store::checkSource(const Target& target) const
{
    if (target.isSource && m_contents.archive) {
        m_contents.archive->checkUnchanged();
    } else if (target.isSource) {
        m_contents.directory->checkUnchanged(*m_index);
    }
}

void Store::saveArchive(const Target& target)
{
    ArchiveSave save(*m_index, m_contents, m_metadata);
    checkSource(target);
    if (target.isSource && m_contents.archive) {
        if (!m_index->isModified() && m_metadata == m_savedMetadata) {
            return;
        }
        save.keepForeign();
    } else if (m_contents.archive) {
        save.verifyOriginals();
    }
    if (target.existing && S_ISDIR(target.existing->st_mode) &&
        holdsRepository(target.place.path)) {
        throw AlreadyExists(target.place.path +
                            ": an archive can't take the place of a version-controlled directory");
    }
    FreshPlace fresh(target.place);
    auto source = std::make_unique<ArchiveSource>(
        target.place, save.write(fresh.path(), target.modeOr(umaskLeaves(0666)) & 0666), m_limits);
    // Nothing takes the place of a project that could not be opened afterwards.
    Index saved;
    source->load(saved);
    checkSource(target); // once more: writing took its time
    publish(fresh, target);
    save.adopt(*source);
    adopt(nullptr, std::move(source));
}

void Store::publish(FreshPlace& fresh, const Target& target)
{
    const struct stat built = statOf(openPath(fresh.path(), O_PATH));
    m_log.saving({{target.place.path, Trace::stampOf(built)}});
    fresh.publish(target.existing);
}

// A version-controlled directory stays where it is: what is in it becomes this project.
void Store::saveOverRepository(const Target& target)
{
    std::vector<std::pair<ProjectPath, std::shared_ptr<StagedFile>>> stillWritten;
    for (const Item& item : itemsBelow(m_index->root(), true)) {
        const auto staged = item.entry->staged();
        if (staged && !staged->isSealed()) {
            stillWritten.emplace_back(item.path, staged);
        }
    }
    Store other;
    other.m_log.stop();
    other.m_contents.setStaging(m_contents.staging());
    other.load(target.place);
    other.m_index->remove(other.m_index->root());
    other.import(*this, {}, {}, true);
    saveInPlace(*other.m_index, other.m_contents,
                m_metadata != other.m_savedMetadata ? &m_metadata : nullptr, m_log);
    for (auto& file : stillWritten) {
        other.apply({putEdit(file.first, std::move(file.second))});
    }
    std::swap(m_index, other.m_index);
    std::swap(m_contents, other.m_contents);
}

void Store::adopt(std::unique_ptr<DirectorySource> directory,
                  std::unique_ptr<ArchiveSource> archive)
{
    m_index->settle(true, archive != nullptr);
    m_contents.directory = std::move(directory);
    m_contents.archive = std::move(archive);
}

} // namespace pk::project
