#include "archive.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>

#include <QString>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace pk::project {

namespace {

constexpr std::size_t a_bufferSize = std::size_t{1} << 16;

struct ZipFileClose
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

struct ZipErrorFini
{
    ZipErrorFini() { zip_error_init(&error); }
    ~ZipErrorFini() { zip_error_fini(&error); }
    ZipErrorFini(const ZipErrorFini&) = delete;
    ZipErrorFini& operator=(const ZipErrorFini&) = delete;
    ZipErrorFini(ZipErrorFini&&) = delete;
    ZipErrorFini& operator=(ZipErrorFini&&) = delete;
    std::string text() { return zip_error_strerror(&error); }
    zip_error_t error{};
};

// Whether the file begins like an archive, so that what is wrong with it must be damage.
bool beginsLikeArchive(const Fd& file)
{
    char signature[4] = {};
    const ssize_t got = ::pread(file.get(), signature, sizeof signature, 0);
    const std::string text(signature, got > 0 ? static_cast<std::size_t>(got) : 0);
    return text == "PK\3\4" || text == "PK\5\6";
}

// An independent stream on the same open file, for a library that takes over what it is given.
FILE* streamOf(const Fd& file)
{
    Fd copy(::fcntl(file.get(), F_DUPFD_CLOEXEC, 0), file.path());
    FILE* const stream = copy ? ::fdopen(copy.get(), "rb") : nullptr;
    if (stream == nullptr) {
        throwErrno(file.path());
    }
    copy.release();
    return stream;
}

} // namespace

struct ArchiveSource::Item
{
    ProjectPath path;
    bool isDirectory = false;
    std::uint16_t mode = 0;
    std::uint64_t position = 0;
    std::uint64_t bytes = 0;
};

ArchiveSource::ArchiveSource(Place place, Fd file)
    : m_place(std::move(place)), m_file(std::move(file)), m_stamp(Stamp::of(statOf(m_file)))
{
}

zip_t* ArchiveSource::handle()
{
    if (m_zip) {
        return m_zip.get();
    }
    ZipErrorFini failure;
    zip_source_t* const source = zip_source_filep_create(streamOf(m_file), 0, -1, &failure.error);
    if (source == nullptr) {
        failDamaged(failure.text());
    }
    m_zip.reset(zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &failure.error));
    if (!m_zip) {
        zip_source_free(source);
        if (zip_error_code_zip(&failure.error) == ZIP_ER_NOZIP && !beginsLikeArchive(m_file)) {
            throw FormatError(m_place.path + ": it is neither a directory nor a zip archive");
        }
        failDamaged(failure.text());
    }
    return m_zip.get();
}

void ArchiveSource::load(Index& index)
{
    std::uint64_t made = 0;
    for (const Item& item : items()) {
        Entry* directory = &index.root();
        for (std::size_t i = 0; i + 1 < item.path.size(); ++i) {
            auto& children = directory->folder->children;
            if (children.empty() || children.back()->name != item.path[i]) {
                Index::appendLoaded(*directory, item.path[i], true, 0755);
                checkCount(++made);
            }
            directory = children.back().get();
            if (!directory->isDirectory()) {
                failDamaged("'" + joinPath(item.path) + "' lies in a file");
            }
        }
        const auto& children = directory->folder->children;
        if (!children.empty() && children.back()->name == item.path.back()) {
            failDamaged("it holds '" + joinPath(item.path) + "' twice");
        }
        Entry& entry =
            Index::appendLoaded(*directory, item.path.back(), item.isDirectory, item.mode);
        entry.stamp.id = item.position;
        entry.stamp.bytes = static_cast<std::int64_t>(item.bytes);
    }
}

Metadata ArchiveSource::loadMetadata()
{
    if (!m_metadata) {
        return {};
    }
    const Item file = item(*m_metadata);
    const std::string bytes = read(file.position, file.bytes, a_metadataFile);
    return parseMetadata(QByteArray::fromStdString(bytes), m_place.path + "/" + a_metadataFile);
}

std::shared_ptr<StagedFile> ArchiveSource::unpack(const Entry& entry, Staging& staging)
{
    const auto size = static_cast<std::uint64_t>(entry.stamp.bytes);
    const std::string bytes = read(entry.stamp.id, size, Index::sourcePath(entry));
    return staging.write(entry.name, bytes.data(), bytes.size());
}

void ArchiveSource::checkUnchanged() const
{
    const auto now = statOf(m_place.path);
    if (!now || Stamp::of(*now) != m_stamp) {
        throw ConflictError(m_place.path + ": changed by someone else since it was opened");
    }
}

ArchiveSource::Item ArchiveSource::item(std::uint64_t position)
{
    zip_stat_t info;
    zip_stat_init(&info);
    constexpr zip_uint64_t needed = ZIP_STAT_NAME | ZIP_STAT_SIZE | ZIP_STAT_ENCRYPTION_METHOD;
    if (zip_stat_index(handle(), position, 0, &info) != 0 || (info.valid & needed) != needed) {
        failDamaged(zip_strerror(handle()));
    }
    const std::string name = nameOf(position, info.name);
    if (info.encryption_method != ZIP_EM_NONE) {
        throw FormatError(m_place.path + ": encrypted archive: '" + name + "' can't be read");
    }
    Item item;
    item.position = position;
    item.bytes = info.size;
    item.isDirectory = !name.empty() && name.back() == '/';
    item.mode = item.isDirectory ? 0755 : 0644;
    try {
        item.path = parsePath(QString::fromStdString(name));
    } catch (const InvalidPath& error) {
        throw FormatError(m_place.path + ": it holds what no project can: " + error.what());
    }
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    zip_file_get_external_attributes(handle(), position, 0, &system, &attributes);
    const mode_t mode = attributes >> 16;
    if (system == ZIP_OPSYS_UNIX && mode != 0) {
        if (!S_ISREG(mode) && !S_ISDIR(mode) && (mode & S_IFMT) != 0) {
            throw FormatError(m_place.path + ": it holds what no project can: '" + name +
                              "' is a link or a device");
        }
        item.mode = static_cast<std::uint16_t>(mode & 0777);
    }
    return item;
}

// The name as it stands in the archive if it is UTF-8, else as the archive library makes UTF-8 of
// it.
std::string ArchiveSource::nameOf(std::uint64_t position, const char* converted)
{
    const char* const raw = zip_get_name(handle(), position, ZIP_FL_ENC_RAW);
    const bool isUtf8 = raw != nullptr && QString::fromUtf8(raw).toUtf8() == raw;
    return isUtf8 ? raw : converted;
}

// Sorted by their paths, so that what belongs to one directory stands together.
std::vector<ArchiveSource::Item> ArchiveSource::items()
{
    const auto count = static_cast<std::uint64_t>(zip_get_num_entries(handle(), 0));
    checkCount(count);
    std::vector<Item> items;
    std::uint64_t bytes = 0;
    for (std::uint64_t position = 0; position < count; ++position) {
        Item next = item(position);
        bytes += std::min(next.bytes, archive_limits::a_maxBytes + 1);
        checkBounds(bytes, next.bytes, joinPath(next.path));
        if (next.path.empty()) {
            continue;
        }
        if (!isReserved(next.path)) {
            items.push_back(std::move(next));
        } else if (next.path.size() == 1 && next.path.front() == a_metadataFile) {
            m_metadata = position;
        } else if (next.path.front() != a_metadataFile) {
            m_foreign.emplace_back(position, joinPath(next.path) + (next.isDirectory ? "/" : ""));
        }
    }
    std::sort(items.begin(), items.end(),
              [](const Item& a, const Item& b) { return a.path < b.path; });
    return items;
}

void ArchiveSource::checkCount(std::uint64_t count) const
{
    if (count > archive_limits::a_maxEntries) {
        throw LimitError(m_place.path + ": it holds " + std::to_string(count) +
                         " entries, more than the " + std::to_string(archive_limits::a_maxEntries) +
                         " that are read");
    }
}

void ArchiveSource::checkBounds(std::uint64_t bytes, std::uint64_t fileBytes,
                                const std::string& name) const
{
    if (fileBytes > archive_limits::a_maxFileBytes) {
        throw LimitError(m_place.path + ": '" + name + "' unpacks to " + std::to_string(fileBytes) +
                         " bytes, more than is read of one file");
    }
    if (bytes > archive_limits::a_maxBytes) {
        throw LimitError(m_place.path + ": it unpacks to more bytes than are read of one archive");
    }
    const auto packed = static_cast<std::uint64_t>(m_stamp.bytes);
    if (bytes > archive_limits::a_ratioFreeBytes && bytes / archive_limits::a_maxRatio > packed) {
        throw LimitError(m_place.path + ": it unpacks to more than " +
                         std::to_string(archive_limits::a_maxRatio) + " times its size");
    }
}

std::string ArchiveSource::read(std::uint64_t position, std::uint64_t size, const std::string& name)
{
    const std::unique_ptr<zip_file_t, ZipFileClose> file(zip_fopen_index(handle(), position, 0));
    if (!file) {
        failDamaged("'" + name + "': " + zip_strerror(handle()));
    }
    // One byte more than declared shows both that there is no more and that the checksum fits.
    std::string bytes(size + 1, '\0');
    std::size_t got = 0;
    for (;;) {
        const std::size_t room = std::min(bytes.size() - got, a_bufferSize);
        const zip_int64_t now = room > 0 ? zip_fread(file.get(), &bytes[got], room) : -1;
        if (now < 0) {
            failDamaged("'" + name + "': " +
                        (room > 0 ? zip_file_strerror(file.get()) : "it is longer than declared"));
        }
        if (now == 0) {
            break;
        }
        got += static_cast<std::size_t>(now);
    }
    if (got != size) {
        failDamaged("'" + name + "': it is shorter than declared");
    }
    bytes.resize(got);
    return bytes;
}

void ArchiveSource::failDamaged(const std::string& reason) const
{
    throw FormatError(m_place.path + ": damaged archive: " + reason);
}

} // namespace pk::project
