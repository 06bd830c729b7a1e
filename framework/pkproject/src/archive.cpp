#include "archive.hpp"

#include "archive_directory.hpp"
#include "conflict.hpp"
#include "read_ahead.hpp"

#include <pk/project/error.hpp>

#include <QString>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <unistd.h>
#include <utility>

namespace pk::project {

namespace {

constexpr std::size_t a_bufferSize = std::size_t{1} << 16;

struct ZipFileClose
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

// The order of a tree: what belongs to one directory stands together.
bool isBefore(const std::string& a, const std::string& b)
{
    const auto rank = [](char c) { return c == '/' ? 0 : static_cast<unsigned char>(c); };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [&](char x, char y) { return rank(x) < rank(y); });
}

Fd duplicate(const Fd& file)
{
    return {::fcntl(file.get(), F_DUPFD_CLOEXEC, 0), file.path()};
}

} // namespace

// Lets the archive library read the file, for which it asks in one piece after the other, each with
// a look and two reads. What it is shown behind the entries is not what the file has there: it
// might find another list of them than the one that was checked.
class ArchiveSource::Input
{
public:
    Input(const Fd& file, std::uint64_t end, std::string headers)
        : m_file(file), m_end(end), m_headers(std::move(headers))
    {
    }

    static zip_int64_t callback(void* user, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        return static_cast<Input*>(user)->handle(data, size, command);
    }

    /// Whether the file could not be read since this was asked last: the archive library makes a
    /// premature end of some errors.
    bool takeFailure() { return std::exchange(m_hasFailed, false); }

private:
    zip_int64_t handle(void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_SEEKABLE;
        case ZIP_SOURCE_STAT: {
            auto& info = *static_cast<zip_stat_t*>(data);
            zip_stat_init(&info);
            info.size = m_end + m_headers.size();
            info.valid = ZIP_STAT_SIZE;
            return sizeof info;
        }
        case ZIP_SOURCE_OPEN:
            m_position = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return read(static_cast<char*>(data), size);
        case ZIP_SOURCE_SEEK: {
            const zip_int64_t to = zip_source_seek_compute_offset(
                m_position, m_end + m_headers.size(), data, size, m_error.get());
            m_position = to < 0 ? m_position : static_cast<zip_uint64_t>(to);
            return to < 0 ? -1 : 0;
        }
        case ZIP_SOURCE_TELL:
            return static_cast<zip_int64_t>(m_position);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(m_error.get(), data, size);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return -1;
        }
    }

    // Nothing is thrown through the archive library, which is C.
    zip_int64_t read(char* bytes, zip_uint64_t size) noexcept
    {
        zip_uint64_t got = 0;
        if (m_position < m_end) {
            const zip_uint64_t wanted = std::min(size, m_end - m_position);
            const ssize_t now = m_file.read(m_position, bytes, wanted);
            if (now < 0) {
                m_hasFailed = true;
                zip_error_set(m_error.get(), ZIP_ER_READ, errno);
                return -1;
            }
            got = static_cast<zip_uint64_t>(now);
            m_position += got;
            if (m_position < m_end) { // all is read, or the file became shorter
                return now;
            }
        }
        const std::size_t more = m_headers.copy(bytes + got, size - got, m_position - m_end);
        m_position += more;
        return static_cast<zip_int64_t>(got + more);
    }

    ReadAhead m_file;
    zip_uint64_t m_end; ///< of the entries
    std::string m_headers;
    zip_uint64_t m_position = 0;
    bool m_hasFailed = false;
    ZipError m_error;
};

// An entry as it is in the project.
struct ArchiveSource::Item
{
    std::string path; ///< normalised
    bool isDirectory = false;
    std::uint16_t mode = 0;
    std::uint64_t position = 0;
    std::uint64_t bytes = 0;
    std::uint32_t checksum = 0;

    bool holdsTheSameAs(const Item& other) const
    {
        return isDirectory == other.isDirectory && mode == other.mode && bytes == other.bytes &&
               checksum == other.checksum;
    }
};

ArchiveSource::ArchiveSource(Place place, Fd file, const ArchiveLimits& limits)
    : m_place(std::move(place)),
      m_file(std::move(file)),
      m_stamp(Stamp::of(statOf(m_file))),
      m_limits(limits)
{
}

ArchiveSource::~ArchiveSource() = default;

zip_t* ArchiveSource::handle()
{
    if (m_zip) {
        return m_zip.get();
    }
    if (!m_input) {
        readDirectory();
    }
    ZipError failure;
    zip_source_t* const source =
        zip_source_function_create(Input::callback, m_input.get(), failure.get());
    if (source == nullptr) {
        failToRead(failure.get(), {});
    }
    m_zip.reset(zip_open_from_source(source, ZIP_RDONLY, failure.get()));
    if (!m_zip) {
        zip_source_free(source);
        failToRead(failure.get(), {});
    }
    return m_zip.get();
}

std::vector<ArchiveEntry> ArchiveSource::readDirectory()
{
    ArchiveDirectory directory = readArchiveDirectory(m_file, m_place.path, m_limits);
    m_input = std::make_unique<Input>(m_file, directory.end, std::move(directory.headers));
    m_contents.reserve(directory.entries.size());
    for (const ArchiveEntry& entry : directory.entries) {
        m_contents.push_back(entry.content);
    }
    return std::move(directory.entries);
}

void ArchiveSource::load(Index& index)
{
    const std::vector<Item> all = items();
    std::uint64_t count = all.size();
    for (const Item& item : all) {
        append(index, item, count);
    }
}

// Appends the next item in the order of the tree. `count` is that of all entries, made up ones too.
void ArchiveSource::append(Index& index, const Item& item, std::uint64_t& count) const
{
    Entry* directory = &index.root();
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = item.path.find('/', begin)) != std::string::npos;
         begin = end + 1) {
        const std::string name = item.path.substr(begin, end - begin);
        auto& children = directory->folder->children;
        if (children.empty() || children.back()->name != name) {
            if (++count > m_limits.entries) {
                throw LimitError(m_place.path + ": it has more files and directories than the " +
                                 std::to_string(m_limits.entries) + " that are read");
            }
            Index::appendLoaded(*directory, name, true, 0755);
        }
        directory = children.back().get();
        if (!directory->isDirectory()) {
            failDamaged("'" + item.path + "' lies in a file");
        }
    }
    const auto& children = directory->folder->children;
    const std::string name = item.path.substr(begin);
    if (!children.empty() && children.back()->name == name) {
        failDamaged("it holds '" + item.path + "' twice");
    }
    Entry& entry = Index::appendLoaded(*directory, name, item.isDirectory, item.mode);
    entry.stamp.id = item.position;
    entry.stamp.bytes = static_cast<std::int64_t>(item.bytes);
}

Metadata ArchiveSource::loadMetadata()
{
    if (!m_metadata) {
        return {};
    }
    return parseMetadata(readAll(m_metadata->position, a_metadataFile),
                         m_place.path + "/" + a_metadataFile);
}

QByteArray ArchiveSource::read(const Entry& entry, std::int64_t most)
{
    const std::string path = Index::sourcePath(entry);
    if (entry.stamp.bytes > most) {
        throw LimitError(m_place.path + ": '" + path + "' has more than the " +
                         std::to_string(most) + " bytes that are read");
    }
    return readAll(entry.stamp.id, path);
}

QByteArray ArchiveSource::readAll(std::uint64_t position, const std::string& name)
{
    QByteArray bytes;
    bytes.reserve(static_cast<int>(content(position).bytes));
    read(position, name,
         [&](const char* more, std::size_t count) { bytes.append(more, static_cast<int>(count)); });
    return bytes;
}

std::shared_ptr<StagedFile> ArchiveSource::unpack(const Entry& entry, Staging& staging)
{
    auto staged = staging.newFile(entry.name);
    Disk& disk = Disk::instance();
    const Fd file = disk.create(staged->path(), 0600);
    read(entry.stamp.id, Index::sourcePath(entry),
         [&](const char* bytes, std::size_t size) { disk.write(file, bytes, size); });
    staged->seal();
    return staged;
}

void ArchiveSource::verify(std::uint64_t position, const std::string& name)
{
    read(position, name, [](const char*, std::size_t) {});
}

void ArchiveSource::checkUnchanged() const
{
    const auto now = statOf(m_place.path);
    if (!now || Stamp::of(*now) != m_stamp) {
        throwConflict(m_place.path, "since it was opened",
                      now ? changesTo(*now) : std::vector<std::string>{"it was removed"});
    }
}

// How what is on disk, which is not what it was, is different.
std::vector<std::string> ArchiveSource::changesTo(const struct stat& now) const
{
    if (!S_ISREG(now.st_mode)) {
        return {"it is no archive any more"};
    }
    if (now.st_ino == m_stamp.id) {
        return {"it was written to in its place"}; // so that nothing is left of what it was
    }
    try {
        ArchiveSource before(m_place, duplicate(m_file), m_limits);
        ArchiveSource after(m_place, openPath(m_place.path, O_RDONLY | O_NONBLOCK), m_limits);
        std::vector<std::string> changes;
        const auto note = [&changes](const Item* was, const Item* is, const std::string& name) {
            if (was == nullptr || is == nullptr) {
                changes.push_back(name + (was == nullptr ? " was added" : " was removed"));
            } else if (!is->holdsTheSameAs(*was)) {
                changes.push_back(name + " was changed");
            }
        };
        const std::vector<Item> old = before.items();
        const std::vector<Item> present = after.items();
        auto was = old.begin();
        for (const Item& is : present) {
            for (; was != old.end() && isBefore(was->path, is.path); ++was) {
                note(&*was, nullptr, "'" + was->path + "'");
            }
            const bool isKnown = was != old.end() && was->path == is.path;
            note(isKnown ? &*was : nullptr, &is, "'" + is.path + "'");
            was += isKnown ? 1 : 0;
        }
        for (; was != old.end(); ++was) {
            note(&*was, nullptr, "'" + was->path + "'");
        }
        if (before.m_metadata || after.m_metadata) {
            note(before.m_metadata.get(), after.m_metadata.get(), "the project's metadata");
        }
        return changes;
    } catch (const Error&) {
        return {"it can't be read any more"};
    }
}

ArchiveSource::Item ArchiveSource::item(const ArchiveEntry& entry, std::uint64_t position) const
{
    Item item;
    item.position = position;
    item.bytes = entry.content.bytes;
    item.checksum = entry.content.checksum;
    item.isDirectory = !entry.name.empty() && entry.name.back() == '/';
    item.mode = item.isDirectory ? 0755 : 0644;
    setPath(item, entry.name, entry.isUnix);
    if (entry.mode != 0) {
        if (!S_ISREG(entry.mode) && !S_ISDIR(entry.mode) && (entry.mode & S_IFMT) != 0) {
            throw FormatError(m_place.path + ": it holds what no project can: '" + entry.name +
                              "' is a link or a device");
        }
        item.mode = static_cast<std::uint16_t>(entry.mode & 0777);
    }
    return item;
}

// Only on Unix "\" can be part of a name; elsewhere it was meant to be a separator.
void ArchiveSource::setPath(Item& item, const std::string& name, bool isUnix) const
{
    const std::string refusal = m_place.path + ": it holds what no project can: ";
    try {
        item.path = joinPath(parsePath(textOf(name)));
    } catch (const InvalidPath& error) {
        throw FormatError(refusal + error.what());
    }
    if (!isUnix && name.find('\\') != std::string::npos) {
        throw FormatError(refusal + "'" + name + "': names are separated by '/', not by '\\'");
    }
    if (!isArchivePath(item.path)) {
        throw FormatError(refusal + "'" + name + "': the path leads out of the archive");
    }
}

// In the order of the tree.
std::vector<ArchiveSource::Item> ArchiveSource::items()
{
    std::vector<ArchiveEntry> entries = readDirectory();
    std::vector<Item> items;
    std::vector<Item> foreign;
    items.reserve(entries.size());
    std::uint64_t bytes = 0;
    for (std::size_t position = 0; position < entries.size(); ++position) {
        const mode_t mode = entries[position].mode;
        Item next = item(std::exchange(entries[position], {}), position);
        bytes += std::min(next.bytes, std::numeric_limits<std::uint64_t>::max() - bytes);
        checkBounds(bytes, next.bytes, next.path);
        if (next.path.empty()) {
            continue;
        }
        const std::string top = next.path.substr(0, next.path.find('/'));
        if (!isReservedName(top)) {
            items.push_back(std::move(next));
        } else if (top != a_metadataFile) {
            m_foreign.push_back({position, next.path + (next.isDirectory ? "/" : ""), mode});
            foreign.push_back(std::move(next));
        } else if (next.path != a_metadataFile || next.isDirectory) {
            failDamaged("'" + top + "' is no file");
        } else if (m_metadata) {
            failDamaged("it holds '" + top + "' twice");
        } else {
            setMetadata(std::move(next));
        }
    }
    sort(items);
    sort(foreign);
    Index others; // of which nothing is wanted but that it can be
    std::uint64_t total = entries.size();
    for (const Item& item : foreign) {
        append(others, item, total);
    }
    return items;
}

// Into the order of the tree, in which what was saved here is.
void ArchiveSource::sort(std::vector<Item>& items)
{
    const auto order = [](const Item& a, const Item& b) { return isBefore(a.path, b.path); };
    if (!std::is_sorted(items.begin(), items.end(), order)) {
        // Which compares least, whatever order somebody chose: long names take long.
        std::stable_sort(items.begin(), items.end(), order);
    }
}

void ArchiveSource::setMetadata(Item&& item)
{
    if (item.bytes > m_limits.metadataBytes) {
        throw LimitError(m_place.path + "/" + a_metadataFile + ": it unpacks to " +
                         std::to_string(item.bytes) + " bytes, more than is read of it");
    }
    m_metadata = std::make_unique<const Item>(std::move(item));
}

void ArchiveSource::checkBounds(std::uint64_t bytes, std::uint64_t fileBytes,
                                const std::string& name) const
{
    if (fileBytes > m_limits.fileBytes) {
        throw LimitError(m_place.path + ": '" + name + "' unpacks to " + std::to_string(fileBytes) +
                         " bytes, more than is read of one file");
    }
    if (bytes > m_limits.bytes) {
        throw LimitError(m_place.path + ": it unpacks to more bytes than are read of one archive");
    }
    const auto packed = static_cast<std::uint64_t>(m_stamp.bytes);
    const std::uint64_t ratio = std::max<std::uint64_t>(m_limits.ratio, 1);
    if (bytes > m_limits.ratioFreeBytes && (bytes - 1) / ratio >= packed) {
        throw LimitError(m_place.path + ": it unpacks to more than " + std::to_string(ratio) +
                         " times its size");
    }
}

const PackedEntry& ArchiveSource::content(std::uint64_t position)
{
    if (!m_input) {
        readDirectory();
    }
    return m_contents.at(position);
}

void ArchiveSource::read(std::uint64_t position, const std::string& name,
                         const Unpacker::Sink& sink)
{
    const PackedEntry& entry = content(position);
    if (!Unpacker::canRead(entry.method)) {
        readByLibrary(position, name, sink);
        return;
    }
    try {
        if (const char* const fault = m_unpacker.read(entry, sink)) {
            failDamaged("'" + name + "': " + fault);
        }
    } catch (const ReadFailure& failure) {
        failUnread("'" + name + "': " + failure.what());
    }
}

void ArchiveSource::readByLibrary(std::uint64_t position, const std::string& name,
                                  const Unpacker::Sink& sink)
{
    const std::uint64_t size = content(position).bytes;
    const std::unique_ptr<zip_file_t, ZipFileClose> file(zip_fopen_index(handle(), position, 0));
    if (!file) {
        failToRead(zip_get_error(handle()), "'" + name + "': ");
    }
    // Reading on to the end shows both that there is no more and that the checksum fits.
    const std::size_t bufferSize = std::min<std::uint64_t>(size + 1, a_bufferSize);
    const std::unique_ptr<char[]> buffer(new char[bufferSize]);
    std::uint64_t left = size;
    for (;;) {
        const zip_int64_t got = zip_fread(file.get(), buffer.get(), bufferSize);
        if (got < 0) {
            failToRead(zip_file_get_error(file.get()), "'" + name + "': ");
        }
        if (got == 0) {
            break;
        }
        if (static_cast<std::uint64_t>(got) > left) {
            failDamaged("'" + name + "': it is longer than declared");
        }
        left -= static_cast<std::uint64_t>(got);
        sink(buffer.get(), static_cast<std::size_t>(got));
    }
    if (left > 0) {
        failDamaged("'" + name + "': it is shorter than declared");
    }
}

// Only what the archive holds can be damaged; that it can't be read may pass.
void ArchiveSource::failToRead(zip_error_t* error, const std::string& what) const
{
    const std::string reason = what + zip_error_strerror(error);
    const bool hasFailed = m_input && m_input->takeFailure();
    if (hasFailed || zip_error_code_zip(error) == ZIP_ER_MEMORY) {
        failUnread(reason);
    }
    failDamaged(reason);
}

void ArchiveSource::failUnread(const std::string& reason) const
{
    throw IoError(m_place.path + ": it can't be read: " + reason);
}

void ArchiveSource::failDamaged(const std::string& reason) const
{
    throw FormatError(m_place.path + ": damaged archive: " + reason);
}

} // namespace pk::project
