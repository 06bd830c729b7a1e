#include "archive_save.hpp"

#include "archive_directory.hpp"
#include "save_plan.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace pk::project {

namespace {

// The earliest time that an archive can hold, which has no time zone.
time_t noTime()
{
    std::tm time = {};
    time.tm_year = 80; // since 1900
    time.tm_mday = 1;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

// The archive library writes no archive without entries; this is one.
constexpr char a_emptyArchive[22] = {'P', 'K', 5, 6};

// The general flags that say how an entry was packed, with which it is copied.
constexpr zip_uint16_t a_packingFlags = 0x0006;

// The archive library takes a name with control characters for no UTF-8, but stores it as it is
// when it may guess.
zip_flags_t encodingOf(const std::string& name)
{
    const bool controls = std::any_of(name.begin(), name.end(),
                                      [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    return controls ? ZIP_FL_ENC_GUESS : ZIP_FL_ENC_UTF_8;
}

} // namespace

template <class Action>
zip_int64_t ArchiveSave::guard(const Action& action)
{
    try {
        return action();
    } catch (...) {
        // No exception may pass through the archive library, which is C.
        if (!m_failure) {
            m_failure = std::current_exception();
        }
        return -1;
    }
}

// Hands an entry's bytes to the archive library. The file is opened when its turn comes.
class ArchiveSave::Input
{
public:
    Input(ArchiveSave& save, std::size_t added, zip_uint64_t size)
        : m_save(save), m_added(added), m_size(size)
    {
    }

    static zip_int64_t callback(void* user, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        auto& input = *static_cast<Input*>(user);
        const zip_int64_t result =
            input.m_save.guard([&] { return input.handle(data, size, command); });
        if (result < 0) {
            zip_error_set(input.m_error.get(), ZIP_ER_READ, EIO);
        }
        return result;
    }

private:
    zip_int64_t handle(void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_READABLE;
        case ZIP_SOURCE_STAT:
            return describe(*static_cast<zip_stat_t*>(data));
        case ZIP_SOURCE_OPEN:
            m_file = m_save.m_contents.open(*m_save.m_added[m_added].entry);
            return 0;
        case ZIP_SOURCE_READ:
            return read(data, size);
        case ZIP_SOURCE_CLOSE:
            m_file.reset();
            return 0;
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(m_error.get(), data, size);
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return -1;
        }
    }

    zip_int64_t describe(zip_stat_t& info) const
    {
        zip_stat_init(&info);
        info.size = m_size;
        info.valid = ZIP_STAT_SIZE;
        return sizeof info;
    }

    zip_int64_t read(void* data, zip_uint64_t size)
    {
        ssize_t got = 0;
        do {
            got = ::read(m_file.get(), data, size);
        } while (got < 0 && errno == EINTR);
        if (got < 0) {
            throwErrno(m_file.path());
        }
        m_save.m_added[m_added].bytes += static_cast<std::uint64_t>(got);
        return got;
    }

    ArchiveSave& m_save;
    std::size_t m_added;
    zip_uint64_t m_size;
    Fd m_file;
    ZipError m_error;
};

// Hands an entry of the source archive to the archive library as it is there, packed. To copy out
// of an archive that it had opened itself, it would make as much of that as opening it takes.
class ArchiveSave::Original
{
public:
    Original(ArchiveSave& save, const PackedEntry& entry) : m_save(save), m_entry(entry) {}

    static zip_int64_t callback(void* user, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        return static_cast<Original*>(user)->handle(data, size, command);
    }

private:
    zip_int64_t handle(void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_READABLE |
                   ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_GET_FILE_ATTRIBUTES);
        case ZIP_SOURCE_GET_FILE_ATTRIBUTES: {
            auto& attributes = *static_cast<zip_file_attributes_t*>(data);
            zip_file_attributes_init(&attributes);
            attributes.general_purpose_bit_flags = m_entry.flags;
            attributes.general_purpose_bit_mask = a_packingFlags;
            attributes.ascii = m_entry.isText ? 1 : 0;
            attributes.valid =
                ZIP_FILE_ATTRIBUTES_GENERAL_PURPOSE_BIT_FLAGS | ZIP_FILE_ATTRIBUTES_ASCII;
            return sizeof attributes;
        }
        case ZIP_SOURCE_STAT: {
            auto& info = *static_cast<zip_stat_t*>(data);
            zip_stat_init(&info);
            info.size = m_entry.bytes;
            info.comp_size = m_entry.packed;
            info.comp_method = m_entry.method;
            info.crc = m_entry.checksum;
            info.valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC;
            return sizeof info;
        }
        case ZIP_SOURCE_OPEN:
            m_at = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return read(static_cast<char*>(data), size);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(m_error.get(), data, size);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return -1;
        }
    }

    zip_int64_t read(char* bytes, zip_uint64_t size)
    {
        const std::uint64_t wanted = std::min(size, m_entry.packed - m_at);
        const ssize_t got = m_save.m_ahead->read(m_entry.begin + m_at, bytes, wanted);
        if (got < 0 || static_cast<std::uint64_t>(got) < wanted) {
            const int error = got < 0 ? errno : EIO; // or the file became shorter
            zip_error_set(m_error.get(), ZIP_ER_READ, error);
            return -1;
        }
        m_at += wanted;
        return got;
    }

    ArchiveSave& m_save;
    const PackedEntry m_entry;
    std::uint64_t m_at = 0;
    ZipError m_error;
};

// Takes what the archive library writes, a field at a time, and asks for its position between
// them: the file gets much at once.
class ArchiveSave::Output
{
public:
    Output(ArchiveSave& save, const Fd& file) : m_save(save), m_file(file) {}

    static zip_int64_t callback(void* user, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        auto& output = *static_cast<Output*>(user);
        if (command == ZIP_SOURCE_STAT) {
            // It is not there yet, as far as the archive library needs to know.
            zip_error_set(output.m_error.get(), ZIP_ER_READ, ENOENT);
            return -1;
        }
        const zip_int64_t result =
            output.m_save.guard([&] { return output.handle(data, size, command); });
        if (result < 0) {
            zip_error_set(output.m_error.get(), ZIP_ER_WRITE, EIO);
        }
        return result;
    }

private:
    zip_int64_t handle(void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_WRITABLE;
        case ZIP_SOURCE_WRITE:
            write(static_cast<const char*>(data), size);
            return static_cast<zip_int64_t>(size);
        case ZIP_SOURCE_TELL_WRITE:
            return static_cast<zip_int64_t>(m_position);
        case ZIP_SOURCE_SEEK_WRITE: {
            const zip_int64_t to =
                zip_source_seek_compute_offset(m_position, m_length, data, size, m_error.get());
            m_position = to < 0 ? m_position : static_cast<zip_uint64_t>(to);
            return to < 0 ? -1 : 0;
        }
        case ZIP_SOURCE_COMMIT_WRITE:
            flush();
            return 0;
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(m_error.get(), data, size);
        case ZIP_SOURCE_BEGIN_WRITE:
        case ZIP_SOURCE_ROLLBACK_WRITE:
        case ZIP_SOURCE_REMOVE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return -1;
        }
    }

    void write(const char* bytes, zip_uint64_t size)
    {
        if (m_position < m_begin || m_position > m_begin + m_bytes.size()) {
            flush();
            m_begin = m_position;
        }
        // The header of an entry is written again when its size is known.
        m_bytes.replace(m_position - m_begin, size, bytes, size);
        m_position += size;
        m_length = std::max(m_length, m_position);
        if (m_bytes.size() >= a_bufferSize) {
            flush();
        }
    }

    void flush()
    {
        if (::lseek(m_file.get(), static_cast<off_t>(m_begin), SEEK_SET) < 0) {
            throwErrno(m_file.path());
        }
        Disk::instance().write(m_file, m_bytes.data(), m_bytes.size());
        m_begin += m_bytes.size();
        m_bytes.clear();
    }

    static constexpr std::size_t a_bufferSize = std::size_t{1} << 16;

    ArchiveSave& m_save;
    const Fd& m_file;
    std::string m_bytes;      // not in the file yet
    zip_uint64_t m_begin = 0; // where they will be
    zip_uint64_t m_position = 0;
    zip_uint64_t m_length = 0;
    ZipError m_error;
};

ArchiveSave::ArchiveSave(Index& index, Contents& contents, const Metadata& metadata)
    : m_index(index), m_contents(contents), m_metadata(formatMetadata(metadata)), m_noTime(noTime())
{
}

ArchiveSave::~ArchiveSave() = default;

void ArchiveSave::keepForeign()
{
    m_keepForeign = true;
}

void ArchiveSave::verifyOriginals()
{
    m_verifyOriginals = true;
}

Fd ArchiveSave::write(const std::string& path, mode_t mode)
{
    m_path = path;
    refuseLongPaths(m_index.root());
    const Fd file = Disk::instance().create(path, mode);
    Output output(*this, file);
    ZipError error;
    zip_source_t* const target = zip_source_function_create(Output::callback, &output, error.get());
    if (target == nullptr) {
        fail(path, zip_error_strerror(error.get()));
    }
    ZipHandle zip(zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, error.get()));
    if (!zip) {
        zip_source_free(target);
        fail(path, zip_error_strerror(error.get()));
    }
    addMetadata(zip.get());
    addDirectory(zip.get(), m_index.root());
    if (m_keepForeign && m_contents.archive) {
        addForeign(zip.get());
    }
    if (zip_get_num_entries(zip.get(), 0) == 0) {
        Disk::instance().write(file, a_emptyArchive, sizeof a_emptyArchive);
    } else if (zip_close(zip.get()) != 0) {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
        fail(path, zip_strerror(zip.get()));
    } else {
        zip.release(); // NOLINT(bugprone-unused-return-value): zip_close() has freed it
    }
    Disk::instance().sync(file);
    return openPath(path, O_RDONLY);
}

void ArchiveSave::adopt(ArchiveSource& source) const
{
    for (const Added& added : m_added) {
        added.entry->stamp = {added.position, 0, static_cast<std::int64_t>(added.bytes)};
    }
    for (Entry* const entry : m_leftOut) {
        m_index.remove(*entry);
    }
    source.setForeign(m_foreign);
}

void ArchiveSave::addMetadata(zip_t* zip)
{
    if (!m_metadata.isEmpty()) {
        addSource(zip, a_metadataFile,
                  zip_source_buffer(zip, m_metadata.constData(),
                                    static_cast<zip_uint64_t>(m_metadata.size()), 0),
                  0644);
    }
}

void ArchiveSave::addDirectory(zip_t* zip, Entry& directory)
{
    for (const auto& child : directory.folder->children) {
        if (!isArchivePath(Index::path(*child))) {
            throw InvalidPath("'" + Index::path(*child) +
                              "': in an archive the path would lead out of it");
        }
        if (!child->isDirectory()) {
            addFile(zip, *child);
            continue;
        }
        addFolder(zip, Index::path(*child) + "/", S_IFDIR | child->mode);
        addDirectory(zip, *child);
    }
}

void ArchiveSave::addFolder(zip_t* zip, const std::string& name, mode_t mode)
{
    m_names.add(name);
    const zip_int64_t position = zip_dir_add(zip, name.c_str(), encodingOf(name));
    finishEntry(zip, position, name, mode);
    // Or the archive library makes a compressor for nothing, of 256 KB that it clears.
    zip_set_file_compression(zip, static_cast<zip_uint64_t>(position), ZIP_CM_STORE, 0);
}

void ArchiveSave::addFile(zip_t* zip, Entry& entry)
{
    const std::string name = Index::path(entry);
    const mode_t mode = S_IFREG | entry.mode;
    const auto position = static_cast<std::uint64_t>(zip_get_num_entries(zip, 0));
    if (const Entry* const original = m_contents.archive ? originalInSource(entry) : nullptr) {
        m_added.push_back({&entry, position, static_cast<std::uint64_t>(original->stamp.bytes)});
        if (m_verifyOriginals) {
            m_contents.archive->verify(original->stamp.id, name);
        }
        addOriginal(zip, name, original->stamp.id, mode);
        return;
    }
    // Opened once for its size and again when its turn comes: the archive library wants to know
    // all sizes first, and there may be more files than can be open at a time.
    const Fd file = m_contents.openUnlessGone(entry);
    if (!file) {
        m_leftOut.push_back(&entry);
        return;
    }
    m_names.add(name);
    m_added.push_back({&entry, position, 0});
    m_inputs.push_back(std::make_unique<Input>(*this, m_added.size() - 1,
                                               static_cast<zip_uint64_t>(statOf(file).st_size)));
    addSource(zip, name, zip_source_function(zip, Input::callback, m_inputs.back().get()), mode);
}

// With the modes that they had.
void ArchiveSave::addForeign(zip_t* zip)
{
    for (const ArchiveSource::Foreign& foreign : m_contents.archive->foreign()) {
        const bool isDirectory = foreign.name.back() == '/';
        const mode_t usual = isDirectory ? S_IFDIR | 0755 : S_IFREG | 0644;
        const mode_t mode = foreign.mode != 0 ? foreign.mode : usual;
        m_foreign.push_back(
            {static_cast<std::uint64_t>(zip_get_num_entries(zip, 0)), foreign.name, mode});
        if (isDirectory) {
            addFolder(zip, foreign.name, mode);
        } else {
            addOriginal(zip, foreign.name, foreign.position, mode);
        }
    }
}

void ArchiveSave::addOriginal(zip_t* zip, const std::string& name, std::uint64_t position,
                              mode_t mode)
{
    ArchiveSource& archive = *m_contents.archive;
    if (!m_ahead) {
        m_ahead = std::make_unique<ReadAhead>(archive.file());
    }
    const PackedEntry& entry = archive.content(position);
    m_originals.push_back(std::make_unique<Original>(*this, entry));
    m_names.add(name);
    const auto added = static_cast<zip_uint64_t>(zip_get_num_entries(zip, 0));
    addSource(zip, name, zip_source_function(zip, Original::callback, m_originals.back().get()),
              mode);
    // Otherwise what was stored as it is would be compressed now.
    zip_set_file_compression(zip, added, entry.method, 0);
}

void ArchiveSave::addSource(zip_t* zip, const std::string& name, zip_source_t* source, mode_t mode)
{
    if (source == nullptr) {
        fail(name, zip_strerror(zip));
    }
    const zip_int64_t position = zip_file_add(zip, name.c_str(), source, encodingOf(name));
    if (position < 0) {
        zip_source_free(source);
    }
    finishEntry(zip, position, name, mode);
}

void ArchiveSave::finishEntry(zip_t* zip, zip_int64_t position, const std::string& name,
                              mode_t mode) const
{
    const auto index = static_cast<zip_uint64_t>(position);
    if (position < 0 || zip_file_set_mtime(zip, index, m_noTime, 0) != 0 ||
        zip_file_set_external_attributes(zip, index, 0, ZIP_OPSYS_UNIX,
                                         static_cast<zip_uint32_t>(mode) << 16) != 0) {
        fail(name, zip_strerror(zip));
    }
}

void ArchiveSave::fail(const std::string& name, const std::string& reason) const
{
    throw IoError(m_path + ": '" + name + "' can't be written: " + reason);
}

} // namespace pk::project
