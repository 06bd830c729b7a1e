#pragma once

#include "archive_directory.hpp"
#include "disk.hpp"
#include "index.hpp"
#include "metadata.hpp"
#include "place.hpp"
#include "staging.hpp"
#include "unpacker.hpp"

#include <pk/project/archive_limits.hpp>

#include <zip.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pk::project {

struct ZipDiscard
{
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
/// An open archive; dropped without saving unless it is released into zip_close().
using ZipHandle = std::unique_ptr<zip_t, ZipDiscard>;

/// What the archive library says of a failure.
class ZipError
{
public:
    ZipError() { zip_error_init(&m_error); }
    ~ZipError() { zip_error_fini(&m_error); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;
    ZipError(ZipError&&) = delete;
    ZipError& operator=(ZipError&&) = delete;
    zip_error_t* get() { return &m_error; }

private:
    zip_error_t m_error{};
};

/// The archive that a model was opened from or saved to. The open file is held, so that its bytes
/// stay as they were even when the file on disk is replaced. Its central directory is read when it
/// is first needed, and the archive library opens it only when an entry is packed by a method that
/// few archives have.
class ArchiveSource
{
public:
    /// The archive in an open file. `place` is where it is on disk.
    ArchiveSource(Place place, Fd file, const ArchiveLimits& limits);
    ~ArchiveSource();
    ArchiveSource(const ArchiveSource&) = delete;
    ArchiveSource& operator=(const ArchiveSource&) = delete;
    ArchiveSource(ArchiveSource&&) = delete;
    ArchiveSource& operator=(ArchiveSource&&) = delete;

    const Place& place() const { return m_place; }

    /// The archive's file as it was when it was opened.
    const Stamp& stamp() const { return m_stamp; }

    /// Fills an empty index with what the archive holds. Throws FormatError for what is no zip
    /// archive, is damaged or encrypted, or holds what no project can, LimitError for one out of
    /// bounds, IoError.
    void load(Index& index);

    /// Reads the metadata file that load() found. Throws FormatError, LimitError, IoError.
    Metadata loadMetadata();

    /// The bytes of an entry of the source, whose checksum is verified. Throws FormatError for a
    /// damaged entry, LimitError for more than `most`, IoError.
    QByteArray read(const Entry& entry, std::int64_t most);

    /// A staged file with the bytes of an entry of the source, whose checksum is verified. Throws
    /// FormatError for a damaged entry, IoError.
    std::shared_ptr<StagedFile> unpack(const Entry& entry, Staging& staging);

    /// Unpacks an entry, as unpack() does, only to see that it is undamaged.
    void verify(std::uint64_t position, const std::string& name);

    /// Where the file has the bytes of the entry at a position, for copying them as they are.
    /// Throws as load().
    const PackedEntry& content(std::uint64_t position);
    const Fd& file() const { return m_file; }

    /// A version-control file or directory in the archive.
    struct Foreign
    {
        std::uint64_t position;
        std::string name; ///< with a "/" at the end for a directory
        mode_t mode;      ///< 0 when the archive does not say
    };
    /// What is no part of the project, but kept when it is saved in place.
    const std::vector<Foreign>& foreign() const { return m_foreign; }
    void setForeign(std::vector<Foreign> f) { m_foreign = std::move(f); }

    /// Throws ConflictError unless the file on disk is the one that is open, as it was then; it
    /// lists what is different in the project that is there now.
    void checkUnchanged() const;

private:
    class Input;
    struct Item;
    std::vector<ArchiveEntry> readDirectory();
    zip_t* handle();
    Item item(const ArchiveEntry& entry, std::uint64_t position) const;
    std::vector<Item> items();
    void setMetadata(Item&& item);
    static void sort(std::vector<Item>& items);
    void append(Index& index, const Item& item, std::uint64_t& count) const;
    std::vector<std::string> changesTo(const struct stat& now) const;
    void setPath(Item& item, const std::string& name, bool isUnix) const;
    void checkBounds(std::uint64_t bytes, std::uint64_t fileBytes, const std::string& name) const;
    void read(std::uint64_t position, const std::string& name, const Unpacker::Sink& sink);
    void readByLibrary(std::uint64_t position, const std::string& name, const Unpacker::Sink& sink);
    QByteArray readAll(std::uint64_t position, const std::string& name);
    [[noreturn]] void failToRead(zip_error_t* error, const std::string& what) const;
    [[noreturn]] void failUnread(const std::string& reason) const;
    [[noreturn]] void failDamaged(const std::string& reason) const;

    Place m_place;
    Fd m_file;
    Stamp m_stamp;
    ArchiveLimits m_limits;
    std::unique_ptr<Input> m_input;      ///< of the archive library, from readDirectory() on
    ZipHandle m_zip;                     ///< null until it is needed
    std::vector<PackedEntry> m_contents; ///< by their positions, from readDirectory() on
    Unpacker m_unpacker{m_file};
    std::unique_ptr<const Item> m_metadata; ///< null for none
    std::vector<Foreign> m_foreign;
};

} // namespace pk::project
