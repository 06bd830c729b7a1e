#include "archive_check.hpp"

#include "read_ahead.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <tuple>
#include <vector>

namespace pk::project {

namespace {

// The sizes of what the format has, without what varies.
constexpr std::size_t a_endSize = 22;
constexpr std::size_t a_locatorSize = 20;
constexpr std::size_t a_bigEndSize = 56;
constexpr std::size_t a_centralSize = 46;
constexpr std::size_t a_localSize = 30;
constexpr std::size_t a_longestComment = 0xffff;

constexpr std::uint16_t a_bigField = 0x0001;      // sizes and offset of more than 32 bits
constexpr std::uint16_t a_nameField = 0x7075;     // the name in UTF-8
constexpr std::size_t a_nameFieldHead = 5;        // before that name
constexpr std::uint16_t a_encryptedFlag = 0x0001; // of the general flags
constexpr std::uint16_t a_sizesBehindFlag = 0x0008;
constexpr std::uint16_t a_stored = 0; // the method

// The archive library keeps each extra field in memory of its own and compares those of the two
// headers of an entry with each other. Real archives have up to four.
constexpr int a_mostFields = 6;

// The archive library looks names up by walking a chain. In a real archive the longest has some
// ten; long ones must have been made on purpose.
constexpr std::uint32_t a_longestChain = 1000;

std::uint64_t number(const std::string& bytes, std::size_t at, std::size_t size)
{
    std::uint64_t result = 0;
    for (std::size_t i = size; i-- > 0;) {
        result = result << 8 | static_cast<unsigned char>(bytes[at + i]);
    }
    return result;
}

std::uint16_t number16(const std::string& bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(number(bytes, at, 2));
}

std::uint32_t number32(const std::string& bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(number(bytes, at, 4));
}

bool hasSignature(const std::string& bytes, std::size_t at, const char* signature)
{
    return bytes.compare(at, 4, signature, 4) == 0;
}

// The hash by which the archive library finds names.
std::uint32_t hashOf(const std::string& name)
{
    std::uint32_t hash = 5381;
    for (const char c : name) {
        hash = hash * 33 + static_cast<unsigned char>(c);
    }
    return hash;
}

// Where the central directory is, and how many entries it is said to have.
struct Extent
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t count = 0;
    bool isBig = false; ///< else the count is modulo 65,536
};

// What a header says of an entry, as far as it is needed here.
struct Header
{
    // What both of an entry's have at the same places, counted from the version that it needs.
    void readCommon(const std::string& from, std::size_t at)
    {
        flags = number16(from, at + 2);
        method = number16(from, at + 4);
        time = number32(from, at + 6);
        crc = number32(from, at + 10);
        packed = number32(from, at + 14);
        bytes = number32(from, at + 18);
    }

    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t time = 0;
    std::uint32_t crc = 0;
    std::uint64_t packed = 0;
    std::uint64_t bytes = 0;
    std::uint64_t offset = 0; ///< in the central directory alone
    std::string name;
    std::string otherName; ///< which the archive library may prefer
};

// Whether an entry's two headers say the same. Who writes an archive as a stream leaves of checksum
// and sizes out of the local one what is not known yet.
bool agree(const Header& central, const Header& local)
{
    const bool mayBeLeftOut = (local.flags & a_sizesBehindFlag) != 0;
    const auto fits = [mayBeLeftOut](std::uint64_t said, std::uint64_t is) {
        return said == is || (mayBeLeftOut && said == 0);
    };
    return local.method == central.method && local.time == central.time &&
           local.otherName == central.otherName && fits(local.crc, central.crc) &&
           fits(local.packed, central.packed) && fits(local.bytes, central.bytes);
}

class Check
{
public:
    Check(const Fd& file, const std::string& path, const ArchiveLimits& limits)
        : m_file(file),
          m_path(path),
          m_limits(limits),
          m_size(static_cast<std::uint64_t>(statOf(file).st_size))
    {
    }

    CentralDirectory run()
    {
        const Extent extent = findDirectory();
        checkCount(extent.count);
        if (extent.size > m_limits.directoryBytes) {
            throw LimitError(m_path + ": its central directory has " + std::to_string(extent.size) +
                             " bytes, more than the " + std::to_string(m_limits.directoryBytes) +
                             " that are read");
        }
        m_directory = read(extent.offset, extent.size);
        readDirectory(extent);
        checkNames();
        checkRanges(extent.offset);
        return {extent.offset, extent.size, m_ranges.size()};
    }

private:
    [[noreturn]] void fail(const std::string& reason) const
    {
        throw FormatError(m_path + ": damaged archive: " + reason);
    }

    // Fewer bytes than asked for only at the end of the file.
    std::string read(std::uint64_t offset, std::uint64_t size)
    {
        const std::uint64_t there = offset < m_size ? m_size - offset : 0;
        std::string bytes(std::min(size, there), '\0');
        const ssize_t got = m_file.read(offset, bytes.data(), bytes.size());
        if (got < 0) {
            throwErrno(m_path);
        }
        if (static_cast<std::size_t>(got) < bytes.size()) {
            fail("it became shorter while it was read");
        }
        return bytes;
    }

    Extent findDirectory();
    Extent bigExtent(std::uint64_t locatorAt, const std::string& locator);
    void requireOneDisk(std::uint64_t disks, std::uint64_t count, std::uint64_t all) const;
    void checkCount(std::uint64_t count) const;
    void readDirectory(const Extent& extent);
    std::size_t readEntry(std::size_t at);
    Header headerAt(std::size_t at) const;
    void readFields(Header& entry, const std::string& fields) const;
    void readBigField(Header& entry, const std::string& field) const;
    void checkEntry(const Header& entry) const;
    void checkNames() const;
    void checkRanges(std::uint64_t end);
    std::uint64_t endOf(const Header& central);

    // The bytes of the file that an entry takes up.
    struct Range
    {
        std::uint64_t begin;
        std::uint32_t headerAt; ///< in the central directory
    };

    ReadAhead m_file;
    const std::string& m_path;
    const ArchiveLimits& m_limits;
    std::uint64_t m_size;
    std::string m_directory;
    std::vector<Range> m_ranges;
    std::vector<std::uint32_t> m_hashes; ///< of all names
};

// The record at the end of the archive, whose comment reaches to the end of the file. Where that
// can be said of two, readers might differ in which they take.
Extent Check::findDirectory()
{
    const std::uint64_t tailSize =
        std::min<std::uint64_t>(m_size, a_locatorSize + a_endSize + a_longestComment);
    const std::string tail = read(m_size - tailSize, tailSize);
    std::optional<std::size_t> found;
    for (std::size_t at = 0; (at = tail.find("PK\5\6", at)) != std::string::npos; ++at) {
        if (at + a_endSize <= tail.size() &&
            at + a_endSize + number16(tail, at + 20) == tail.size()) {
            if (found) {
                fail("it has two ends");
            }
            found = at;
        }
    }
    if (!found) {
        const std::string begin = read(0, 4);
        if (begin != "PK\3\4" && begin != "PK\5\6") {
            throw FormatError(m_path + ": it is neither a directory nor a zip archive");
        }
        fail("its end is missing");
    }
    const std::uint64_t endAt = m_size - tailSize + *found;
    if (*found >= a_locatorSize && hasSignature(tail, *found - a_locatorSize, "PK\6\7")) {
        return bigExtent(endAt - a_locatorSize, tail.substr(*found - a_locatorSize, a_locatorSize));
    }
    requireOneDisk(number32(tail, *found + 4), number16(tail, *found + 8),
                   number16(tail, *found + 10));
    Extent extent;
    extent.count = number16(tail, *found + 10);
    extent.size = number32(tail, *found + 12);
    extent.offset = number32(tail, *found + 16);
    if (extent.offset + extent.size != endAt) {
        fail("its central directory is not where it should be");
    }
    return extent;
}

Extent Check::bigExtent(std::uint64_t locatorAt, const std::string& locator)
{
    const std::uint64_t at = number(locator, 8, 8);
    const std::string end = read(at, a_bigEndSize);
    if (end.size() < a_bigEndSize || !hasSignature(end, 0, "PK\6\6") ||
        at + a_bigEndSize > locatorAt || number(end, 4, 8) != locatorAt - at - 12) {
        fail("its end is damaged");
    }
    requireOneDisk(number32(locator, 4) | number(end, 16, 8), number(end, 24, 8),
                   number(end, 32, 8));
    Extent extent;
    extent.isBig = true;
    extent.count = number(end, 32, 8);
    extent.size = number(end, 40, 8);
    extent.offset = number(end, 48, 8);
    if (extent.offset > at || extent.size != at - extent.offset) {
        fail("its central directory is not where it should be");
    }
    return extent;
}

void Check::requireOneDisk(std::uint64_t disks, std::uint64_t count, std::uint64_t all) const
{
    if (disks != 0 || count != all) {
        fail("it is a part of an archive on several disks");
    }
}

void Check::checkCount(std::uint64_t count) const
{
    if (count > m_limits.entries) {
        throw LimitError(m_path + ": it holds " + std::to_string(count) +
                         " entries, more than the " + std::to_string(m_limits.entries) +
                         " that are read");
    }
}

void Check::readDirectory(const Extent& extent)
{
    // The places of names are kept in 32 bits.
    if (m_directory.size() > std::numeric_limits<std::uint32_t>::max()) {
        fail("its central directory is too large");
    }
    for (std::size_t at = 0; at < m_directory.size();) {
        at += readEntry(at);
        checkCount(m_ranges.size());
    }
    const std::uint64_t count = extent.isBig ? m_ranges.size() : m_ranges.size() % 0x10000;
    if (count != extent.count) {
        fail("its central directory has " + std::to_string(m_ranges.size()) +
             " entries instead of " + std::to_string(extent.count));
    }
}

// Gives how many bytes the entry takes up in the central directory.
std::size_t Check::readEntry(std::size_t at)
{
    const std::size_t left = m_directory.size() - at;
    if (left < a_centralSize || !hasSignature(m_directory, at, "PK\1\2")) {
        fail("its central directory is damaged");
    }
    const std::size_t nameSize = number16(m_directory, at + 28);
    const std::size_t fieldsSize = number16(m_directory, at + 30);
    const std::size_t size = a_centralSize + nameSize + fieldsSize + number16(m_directory, at + 32);
    if (size > left) {
        fail("its central directory is cut off");
    }
    const Header entry = headerAt(at);
    checkEntry(entry);
    m_ranges.push_back({entry.offset, static_cast<std::uint32_t>(at)});
    m_hashes.push_back(hashOf(entry.name));
    if (!entry.otherName.empty()) {
        m_hashes.push_back(hashOf(entry.otherName));
    }
    return size;
}

// What the central directory has at a place where a whole header is.
Header Check::headerAt(std::size_t at) const
{
    const std::size_t nameSize = number16(m_directory, at + 28);
    Header header;
    header.readCommon(m_directory, at + 6);
    header.offset = number32(m_directory, at + 42);
    header.name = m_directory.substr(at + a_centralSize, nameSize);
    readFields(header,
               m_directory.substr(at + a_centralSize + nameSize, number16(m_directory, at + 30)));
    return header;
}

// Counts the extra fields of a header, and takes from them what the entry needs.
void Check::readFields(Header& entry, const std::string& fields) const
{
    bool hasBig = false;
    int count = 0;
    for (std::size_t at = 0; at + 4 <= fields.size();) {
        const std::uint16_t id = number16(fields, at);
        const std::size_t size = number16(fields, at + 2);
        const std::string field = fields.substr(at + 4, size);
        if (id == a_bigField && !hasBig) {
            readBigField(entry, field);
            hasBig = true;
        } else if (id == a_nameField && field.size() > a_nameFieldHead) {
            if (!entry.otherName.empty()) { // the archive library takes the first
                fail("'" + entry.name + "' has more than two names");
            }
            entry.otherName = field.substr(a_nameFieldHead);
        }
        at += 4 + size;
        if (++count > a_mostFields) {
            fail("'" + entry.name + "' has too many extra fields");
        }
    }
}

// It has, in this order, those numbers that don't fit into their places.
void Check::readBigField(Header& entry, const std::string& field) const
{
    std::size_t at = 0;
    for (std::uint64_t* const value : {&entry.bytes, &entry.packed, &entry.offset}) {
        if (*value != 0xffffffff) {
            continue;
        }
        if (at + 8 > field.size()) {
            fail("the extra fields of '" + entry.name + "' are cut off");
        }
        *value = number(field, at, 8);
        at += 8;
    }
}

void Check::checkEntry(const Header& entry) const
{
    for (const std::string* const name : {&entry.name, &entry.otherName}) {
        const std::size_t nul = name->find('\0');
        if (nul != std::string::npos) {
            throw FormatError(m_path + ": it holds what no project can: '" + name->substr(0, nul) +
                              "': a path has no NUL character");
        }
    }
    const bool isStored = entry.method == a_stored && (entry.flags & a_encryptedFlag) == 0;
    const bool isEmpty = entry.packed == 0 && (entry.bytes != 0 || entry.crc != 0);
    if (isEmpty || (isStored && entry.packed != entry.bytes)) {
        fail("'" + entry.name + "' has not the size that it declares");
    }
}

// Lays the hashes out in a table of the size that the archive library takes.
void Check::checkNames() const
{
    std::size_t size = 256;
    while (size * 3 < m_ranges.size() * 4) {
        size *= 2;
    }
    std::vector<std::uint32_t> chains(size, 0);
    for (const std::uint32_t hash : m_hashes) {
        if (++chains[hash % size] > a_longestChain) {
            fail("its names are such that it takes long to tell them apart");
        }
    }
}

void Check::checkRanges(std::uint64_t end)
{
    std::sort(m_ranges.begin(), m_ranges.end(), [](const Range& a, const Range& b) {
        return std::tie(a.begin, a.headerAt) < std::tie(b.begin, b.headerAt);
    });
    const Range* before = nullptr;
    std::uint64_t free = 0;
    for (const Range& range : m_ranges) {
        const Header header = headerAt(range.headerAt);
        if (before != nullptr && range.begin < free) {
            fail("'" + headerAt(before->headerAt).name + "' and '" + header.name + "' share bytes");
        }
        free = endOf(header);
        if (free > end) {
            fail("'" + header.name + "' is cut off");
        }
        before = &range;
    }
}

// Where an entry's packed bytes end. Its local header must be there and say what the other does.
std::uint64_t Check::endOf(const Header& central)
{
    const std::string name = "'" + central.name + "'";
    const std::string head = read(central.offset, a_localSize);
    if (head.size() < a_localSize || !hasSignature(head, 0, "PK\3\4")) {
        fail(name + " is not where it should be");
    }
    const std::size_t nameSize = number16(head, 26);
    const std::size_t fieldsSize = number16(head, 28);
    const std::uint64_t begin = central.offset + a_localSize + nameSize + fieldsSize;
    if (begin > m_size || central.packed > m_size - begin) {
        fail(name + " is cut off");
    }
    const std::string rest = read(central.offset + a_localSize, nameSize + fieldsSize);
    Header local;
    local.readCommon(head, 4);
    local.name = rest.substr(0, nameSize);
    if (fieldsSize > 0) {
        readFields(local, rest.substr(nameSize));
    }
    if (local.name != central.name || !agree(central, local)) {
        fail("the two headers of " + name + " differ");
    }
    return begin + central.packed;
}

} // namespace

CentralDirectory checkArchive(const Fd& file, const std::string& path, const ArchiveLimits& limits)
{
    return Check(file, path, limits).run();
}

bool isArchivePath(const std::string& path)
{
    const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (path.size() > 1 && isLetter(path[0]) && path[1] == ':' &&
        (path.size() == 2 || isSeparator(path[2]))) {
        return false;
    }
    if (!path.empty() && path.front() == '/') {
        return false;
    }
    for (auto begin = path.begin(); begin != path.end();) {
        const auto end = std::find_if(begin, path.end(), isSeparator);
        if (std::string(begin, end) == "..") {
            return false;
        }
        begin = end == path.end() ? end : end + 1;
    }
    return true;
}

} // namespace pk::project
