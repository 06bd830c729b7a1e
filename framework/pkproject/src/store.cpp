#include "store.hpp"

#include "export.hpp"
#include "journal_directory.hpp"
#include "lock.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace pk::project {

namespace {

// The access mode of an fopen() mode string.
struct StreamMode
{
    explicit StreamMode(const std::string& mode)
        : kind(mode.empty() ? '\0' : mode[0]),
          updates(mode.find('+') != std::string::npos),
          excludes(mode.find('x') != std::string::npos)
    {
    }
    bool isValid() const { return kind == 'r' || kind == 'w' || kind == 'a'; }
    bool onlyReads() const { return kind == 'r' && !updates; }

    char kind;
    bool updates;
    bool excludes;
};

ProjectPath above(const ProjectPath& path)
{
    return {path.begin(), path.end() - 1};
}

ProjectPath below(ProjectPath directory, const ProjectPath& path)
{
    directory.insert(directory.end(), path.begin(), path.end());
    return directory;
}

// What a save that was killed had built so far. The next save needs its place, but opening does
// not.
void removeRemains(const Place& place)
{
    try {
        removeTree(place.fresh());
    } catch (const IoError& error) {
        warn(error.what(), __FILE__, "removeRemains", __LINE__);
    }
}

void requireName(const ProjectPath& path)
{
    if (path.empty()) {
        throw InvalidPath("'': the top of a project is no file");
    }
}

} // namespace

Store::Store(const QString& path, const ArchiveLimits& limits)
    : m_sourcePath(absolutePath(path)), m_limits(limits)
{
    const std::string text = m_sourcePath.toStdString();
    const bool isPath = !path.isEmpty() && !path.contains(QChar(0));
    if (!isPath || ::access(text.c_str(), F_OK) != 0) {
        if (isPath && errno != ENOENT && errno != ENOTDIR) {
            throwErrno(text);
        }
        throw PathNotFound("'" + path.toStdString() + "': no such file or directory");
    }
    const Place place = Place::of(text);
    const auto lock = Lock::takeIfWritable(place);
    if (lock) {
        JournalDirectory::recover(place);
        removeRemains(place);
    } else if (JournalDirectory::isPending(place)) {
        throw IoError(place.journal() +
                      ": the save that it is part of can't be completed, because '" + place.parent +
                      "' can't be written");
    }
    const std::int64_t time = Base::now();
    load(place);
    m_log.restart(base(time));
}

// What the source is known to be.
Base Store::base(std::int64_t time) const
{
    const Place* const place = m_contents.place();
    if (place == nullptr) {
        return {};
    }
    return {place->path,
            m_contents.directory ? m_contents.directory->stamp() : m_contents.archive->stamp(),
            time};
}

void Store::load(const Place& place)
{
    Fd file(::open(place.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), place.path);
    if (!file) {
        throwErrno(place.path);
    }
    const struct stat info = statOf(file);
    if (S_ISDIR(info.st_mode)) {
        m_contents.directory = std::make_unique<DirectorySource>(place, std::move(file));
        m_contents.directory->load(*m_index);
        m_metadata = m_contents.directory->loadMetadata();
    } else if (S_ISREG(info.st_mode)) {
        m_contents.archive = std::make_unique<ArchiveSource>(place, std::move(file), m_limits);
        m_contents.archive->load(*m_index);
        m_metadata = m_contents.archive->loadMetadata();
    } else {
        throw FormatError(place.path + ": it is neither a directory nor a zip archive");
    }
    m_savedMetadata = m_metadata;
}

FILE* Store::open(const ProjectPath& path, const std::string& mode)
{
    const StreamMode parsed(mode);
    if (!parsed.isValid() || path.empty()) {
        return nullptr;
    }
    if (!parsed.onlyReads()) {
        return openToWrite(path, mode);
    }
    Entry* const entry = m_index->find(path);
    return entry != nullptr && !entry->isDirectory() ? openToRead(*entry, mode) : nullptr;
}

FILE* Store::openToRead(Entry& entry, const std::string& mode)
{
    Fd file = m_contents.open(entry);
    FILE* const stream = ::fdopen(file.get(), mode.c_str());
    if (stream != nullptr) {
        file.release();
    }
    return stream;
}

FILE* Store::openToWrite(const ProjectPath& path, const std::string& mode)
{
    const StreamMode parsed(mode);
    Entry* const directory = m_index->find(above(path));
    if (isReserved(path) || directory == nullptr || !directory->isDirectory()) {
        return nullptr;
    }
    Entry* const old = Index::child(*directory, path.back());
    if ((old != nullptr && (old->isDirectory() || parsed.excludes)) ||
        (old == nullptr && parsed.kind == 'r')) {
        return nullptr;
    }
    const bool keepsBytes = old != nullptr && parsed.kind != 'w';
    auto staged = keepsBytes ? m_contents.copy(*old) : m_contents.staging()->newFile(path.back());
    FILE* const stream = std::fopen(staged->path().c_str(), (mode + "e").c_str());
    if (stream != nullptr) {
        staged->unseal();
        apply({putEdit(path, std::move(staged))});
    }
    return stream;
}

QByteArray Store::read(const ProjectPath& path, std::int64_t most)
{
    return m_contents.read(getFile(path), std::min(most, a_largestArray));
}

std::int64_t Store::size(const ProjectPath& path) const
{
    return m_contents.size(getFile(path));
}

void Store::write(const ProjectPath& path, const QByteArray& bytes)
{
    requireName(path);
    if (const Entry* const directory = m_index->find(above(path))) {
        if (directory->isDirectory()) {
            Index::checkFilePlace(*directory, path.back());
        }
    }
    auto staged = m_contents.staging()->write(path.back(), bytes.constData(),
                                              static_cast<std::size_t>(bytes.size()));
    apply({putEdit(path, std::move(staged))});
}

void Store::makeDirectory(const ProjectPath& path, bool recursive)
{
    if (!recursive && path.size() > 1) {
        m_index->get(above(path));
    }
    apply({Edit(EditKind::MakeDirectory, path)});
}

void Store::remove(const ProjectPath& path)
{
    apply({Edit(EditKind::Remove, path)});
}

void Store::setMetadata(const QString& key, const QString& value)
{
    Edit edit(EditKind::SetMetadata, {});
    edit.key = key;
    edit.value = value;
    apply({std::move(edit)});
}

void Store::apply(std::vector<Edit> edits)
{
    std::vector<Edit> done;
    done.reserve(edits.size());
    m_contents.staging()->hold(); // until the log has what is done here
    for (Edit& edit : edits) {
        apply(std::move(edit), done);
    }
    if (!done.empty()) {
        m_log.append(done);
    }
}

// Makes an edit and adds what it came to: with the modes that things got, and without what was so
// already.
void Store::apply(Edit edit, std::vector<Edit>& done)
{
    switch (edit.kind) {
    case EditKind::MakeDirectory:
        makeDirectories(edit.path, edit.mode, done);
        return;
    case EditKind::PutFile: {
        requireName(edit.path);
        Entry& directory = directoryFor(edit.path, done);
        edit.staged->note();
        edit.mode = m_index->putFile(directory, edit.path.back(), edit.staged, edit.mode).mode;
        break;
    }
    case EditKind::PutCopy: {
        requireName(edit.path);
        Entry& directory = directoryFor(edit.path, done);
        edit.mode = edit.mode.value_or(edit.original->mode);
        m_index->putCopy(directory, edit.path.back(), *edit.original, *edit.mode);
        break;
    }
    case EditKind::Move:
        applyMove(edit.path, edit.to, done);
        break;
    case EditKind::Remove:
        m_index->remove(m_index->get(edit.path));
        break;
    case EditKind::SetMetadata:
        if (!setMetadataValue(m_metadata, edit.key, edit.value)) {
            return;
        }
    }
    done.push_back(std::move(edit));
}

// The directory at a path. Each one that is missing is made by an edit of its own.
Entry& Store::makeDirectories(const ProjectPath& path, std::optional<std::uint16_t> mode,
                              std::vector<Edit>& done)
{
    Entry* entry = m_index->find(path);
    if (entry != nullptr && entry->isDirectory()) {
        return *entry;
    }
    ProjectPath part;
    for (const std::string& name : path) {
        part.push_back(name);
        entry = m_index->find(part);
        if (entry == nullptr || !entry->isDirectory()) {
            Edit edit(EditKind::MakeDirectory, part);
            entry = &m_index->makeDirectories(part, mode);
            edit.mode = entry->mode;
            done.push_back(std::move(edit));
        }
    }
    return *entry;
}

std::string Store::localPath(const ProjectPath& path)
{
    return m_contents.localPath(getFile(path));
}

Entry& Store::getFile(const ProjectPath& path) const
{
    Entry& entry = m_index->get(path);
    if (entry.isDirectory()) {
        throw PathNotFound("'" + joinPath(path) + "': it is a directory");
    }
    return entry;
}

void Store::move(const ProjectPath& from, const ProjectPath& to, bool overwrite)
{
    checkMove(from, to);
    if (from == to) {
        return;
    }
    if (!overwrite && m_index->find(to) != nullptr) {
        throw AlreadyExists("'" + joinPath(to) + "': it exists already");
    }
    Edit edit(EditKind::Move, from);
    edit.to = to;
    apply({std::move(edit)});
}

// Throws unless there is something that can be moved.
void Store::checkMove(const ProjectPath& from, const ProjectPath& to) const
{
    requireName(from);
    requireName(to);
    m_index->get(from);
    if (to.size() > from.size() && std::equal(from.begin(), from.end(), to.begin())) {
        throw InvalidPath("'" + joinPath(from) + "': it can't be moved into itself, to '" +
                          joinPath(to) + "'");
    }
    if (from.size() > to.size() && std::equal(to.begin(), to.end(), from.begin())) {
        throw InvalidPath("'" + joinPath(to) + "': it can't be replaced by what it holds");
    }
}

void Store::applyMove(const ProjectPath& from, const ProjectPath& to, std::vector<Edit>& done)
{
    checkMove(from, to);
    if (from == to) {
        return;
    }
    Entry& entry = m_index->get(from);
    Entry& directory = directoryFor(to, done);
    if (Entry* const old = Index::child(directory, to.back())) {
        m_index->remove(*old);
    }
    m_index->move(entry, directory, to.back());
}

void Store::import(Store& source, const ProjectPath& from, const ProjectPath& to, bool recursive)
{
    Entry& first = source.m_index->get(from);
    if (!first.isDirectory()) {
        requireName(to);
    }
    if (&source == this && from == to) {
        return;
    }
    std::vector<Item> items = itemsBelow(first, recursive);
    if (to.empty()) {
        items.erase(std::remove_if(items.begin(), items.end(), leaveOut), items.end());
    }
    checkImport(items, to);
    // All that can fail comes first, and nothing is read from entries that are replaced.
    std::vector<Edit> edits;
    edits.reserve(items.size());
    for (const Item& item : items) {
        Edit edit(EditKind::MakeDirectory, below(to, item.path));
        edit.mode = item.mode;
        if (!item.isDirectory) {
            edit.original = &source == this ? originalInSource(*item.entry) : nullptr;
            edit.kind = edit.original != nullptr ? EditKind::PutCopy : EditKind::PutFile;
        }
        if (edit.kind == EditKind::PutFile) {
            edit.staged = source.m_contents.share(*item.entry, *m_contents.staging());
        }
        edits.push_back(std::move(edit));
    }
    apply(std::move(edits));
}

void Store::exportTo(const ProjectPath& from, const std::string& localPath, bool recursive)
{
    Exporter exporter(localPath);
    for (const Item& item : itemsBelow(m_index->get(from), recursive)) {
        if (leaveOut(item)) {
            continue;
        }
        if (item.isDirectory) {
            exporter.makeDirectory(joinPath(item.path), item.mode);
        } else {
            exporter.writeFile(joinPath(item.path), m_contents.open(*item.entry), item.mode);
        }
    }
    exporter.finish();
}

// Whether something would get a name at a project's top that is reserved there.
bool Store::leaveOut(const Item& item)
{
    if (item.path.size() == 1 && isReserved(item.path)) {
        warn("'" + Index::path(*item.entry) +
                 "' is not copied: the name is reserved at a project's top",
             __FILE__, "leaveOut", __LINE__);
    }
    return isReserved(item.path);
}

// What is to be copied, directories before what they hold, the first with an empty path.
std::vector<Store::Item> Store::itemsBelow(Entry& from, bool recursive)
{
    std::vector<Item> items{{{}, &from, from.isDirectory(), from.mode}};
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Item directory = items[i];
        if (!directory.isDirectory || (i > 0 && !recursive)) {
            continue;
        }
        for (const auto& child : directory.entry->folder->children) {
            if (recursive || !child->isDirectory()) {
                items.push_back({below(directory.path, {child->name}), child.get(),
                                 child->isDirectory(), child->mode});
            }
        }
    }
    return items;
}

void Store::checkImport(const std::vector<Item>& items, const ProjectPath& to) const
{
    for (const Item& item : items) {
        const ProjectPath path = below(to, item.path);
        if (isReserved(path)) {
            throw InvalidPath("'" + joinPath(path) + "': the name is reserved at a project's top");
        }
        const std::string text = joinPath(path);
        if (isTooLong(text.size(), path.size())) {
            throw InvalidPath("'" + text + "': the path is too long");
        }
        const Entry* const old = m_index->find(path);
        if (old != nullptr && old->isDirectory() != item.isDirectory) {
            throw AlreadyExists("'" + joinPath(path) + "': a " +
                                (old->isDirectory() ? "directory" : "file") + " is in the way");
        }
    }
}

// The directory that is to hold a path, made when it is missing.
Entry& Store::directoryFor(const ProjectPath& path, std::vector<Edit>& done)
{
    if (isReserved(path)) {
        throw InvalidPath("'" + joinPath(path) + "': the name is reserved at a project's top");
    }
    return makeDirectories(above(path), {}, done);
}

Edit Store::putEdit(const ProjectPath& path, std::shared_ptr<StagedFile> staged)
{
    Edit edit(EditKind::PutFile, path);
    edit.staged = std::move(staged);
    return edit;
}

} // namespace pk::project
