#include "archive_directory.hpp"

#include "project_path.hpp"
#include "read_ahead.hpp"

#include <pk/project/error.hpp>

#include <QString>
#include <zip.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <tuple>
#include <vector>
#include <zlib.h>

namespace pk::project {

namespace {

// The sizes of what the format has, without what varies.
constexpr std::size_t a_endSize = 22;
constexpr std::size_t a_locatorSize = 20;
constexpr std::size_t a_bigEndSize = 56;
constexpr std::size_t a_centralSize = 46;
constexpr std::size_t a_localSize = 30;
constexpr std::size_t a_longestComment = 0xffff;

constexpr std::uint16_t a_bigField = 0x0001;       // sizes and offset of more than 32 bits
constexpr std::uint16_t a_nameField = 0x7075;      // the name in UTF-8
constexpr std::size_t a_nameFieldHead = 5;         // a version and the other name's checksum
constexpr std::uint16_t a_encryptedFlags = 0x2041; // of the general flags: the bytes, in either
                                                   // of two ways, or the headers
constexpr std::uint16_t a_sizesBehindFlag = 0x0008;
constexpr std::uint16_t a_patchedFlag = 0x0020;
constexpr std::uint16_t a_utf8Flag = 0x0800;
constexpr std::uint32_t a_isBig = 0xffffffff; // a number that is in a_bigField
constexpr std::uint8_t a_unix = 3;            // the system

// The archive library takes any end that it finds in so many bytes.
constexpr std::size_t a_searched = std::size_t{1} << 17;

std::uint64_t number(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint64_t result = 0;
    for (std::size_t i = size; i-- > 0;) {
        result = result << 8 | static_cast<unsigned char>(bytes[at + i]);
    }
    return result;
}

std::uint16_t number16(std::string_view bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(number(bytes, at, 2));
}

std::uint32_t number32(std::string_view bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(number(bytes, at, 4));
}

bool hasSignature(std::string_view bytes, std::size_t at, const char* signature)
{
    return bytes.compare(at, 4, signature, 4) == 0;
}

std::string little(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xff);
    }
    return bytes;
}

// The methods that unpack with little memory whatever the archive says.
bool isRead(std::uint16_t method)
{
    return method == ZIP_CM_STORE || method == ZIP_CM_DEFLATE || method == ZIP_CM_BZIP2;
}

// The text that UTF-8 stands for; none for what is no UTF-8.
std::optional<std::string> utf8(std::string_view bytes)
{
    std::string text(bytes);
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(text.begin(), text.end(), isAscii) || textOf(text).toStdString() == text) {
        return text;
    }
    return {};
}

// The text that bytes of the first PCs' code page stand for.
std::string utf8OfPage437(std::string_view bytes)
{
    static constexpr char16_t a_upperHalf[] =
        u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
        u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";
    QString text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        text += QChar(code < 0x80 ? char16_t{code} : a_upperHalf[code - 0x80]);
    }
    return text.toStdString();
}

// Where the central directory is, and how many entries it is said to have.
struct Extent
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t count = 0;
    bool isBig = false; ///< else the count is modulo 65,536
};

// What a header says of an entry.
struct Header
{
    // What both of an entry's have at the same places, counted from the version that it needs.
    void readCommon(std::string_view from)
    {
        flags = number16(from, 2);
        method = number16(from, 4);
        time = number32(from, 6);
        crc = number32(from, 10);
        packed = number32(from, 14);
        bytes = number32(from, 18);
    }

    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t time = 0;
    std::uint32_t crc = 0;
    std::uint64_t packed = 0;
    std::uint64_t bytes = 0;
    std::string_view name;
    std::string_view otherName; ///< in UTF-8, which is better

    // Of the header in the central directory alone.
    std::uint64_t offset = 0;
    std::size_t at = 0;      ///< where it is
    std::uint64_t begin = 0; ///< of the packed bytes
};

std::uint32_t checksumOf(std::string_view bytes)
{
    return static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

std::string nameOf(const Header& header)
{
    if (!header.otherName.empty()) {
        return std::string(header.otherName);
    }
    const std::optional<std::string> name = utf8(header.name);
    return name ? *name : utf8OfPage437(header.name);
}

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

class Reader
{
public:
    Reader(const Fd& file, const std::string& path, const ArchiveLimits& limits)
        : m_file(file),
          m_path(path),
          m_limits(limits),
          m_size(static_cast<std::uint64_t>(statOf(file).st_size))
    {
    }

    ArchiveDirectory run()
    {
        const Extent extent = findDirectory();
        checkCount(extent.count);
        checkSize("its central directory has ", extent.size);
        m_directory = read(extent.offset, extent.size);
        readHeaders(extent);
        checkRanges(extent.offset);
        return result(extent.offset);
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
    void checkSize(const char* what, std::uint64_t size) const;
    void readHeaders(const Extent& extent);
    std::size_t readHeader(std::size_t at);
    void readFields(Header& header, std::string_view fields) const;
    void readBigField(Header& header, std::string_view field) const;
    void readNameField(Header& header, std::string_view field, std::uint32_t checksum) const;
    void checkHeader(const Header& header) const;
    void checkRanges(std::uint64_t end);
    std::uint64_t findContent(Header& central);
    ArchiveDirectory result(std::uint64_t end) const;
    ArchiveEntry entryOf(const Header& header) const;
    std::string shown(const Header& header) const;

    ReadAhead m_file;
    const std::string& m_path;
    const ArchiveLimits& m_limits;
    std::uint64_t m_size;
    std::string m_directory;
    std::vector<Header> m_headers;  ///< in it
    std::uint64_t m_localBytes = 0; ///< read of the entries' own headers
};

// The record at the end of the archive, whose comment reaches to the end of the file. Where that
// can be said of two, readers might differ in which they take.
Extent Reader::findDirectory()
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

Extent Reader::bigExtent(std::uint64_t locatorAt, const std::string& locator)
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

void Reader::requireOneDisk(std::uint64_t disks, std::uint64_t count, std::uint64_t all) const
{
    if (disks != 0 || count != all) {
        fail("it is a part of an archive on several disks");
    }
}

void Reader::checkCount(std::uint64_t count) const
{
    if (count > m_limits.entries) {
        throw LimitError(m_path + ": it holds " + std::to_string(count) +
                         " entries, more than the " + std::to_string(m_limits.entries) +
                         " that are read");
    }
}

void Reader::checkSize(const char* what, std::uint64_t size) const
{
    if (size > m_limits.directoryBytes) {
        throw LimitError(m_path + ": " + what + std::to_string(size) + " bytes, more than the " +
                         std::to_string(m_limits.directoryBytes) + " that are read");
    }
}

void Reader::readHeaders(const Extent& extent)
{
    for (std::size_t at = 0; at < m_directory.size();) {
        at += readHeader(at);
        checkCount(m_headers.size());
    }
    const std::uint64_t count = extent.isBig ? m_headers.size() : m_headers.size() % 0x10000;
    if (count != extent.count) {
        fail("its central directory has " + std::to_string(m_headers.size()) +
             " entries instead of " + std::to_string(extent.count));
    }
}

// Gives how many bytes the header takes up in the central directory.
std::size_t Reader::readHeader(std::size_t at)
{
    const std::string_view left = std::string_view(m_directory).substr(at);
    if (left.size() < a_centralSize || !hasSignature(left, 0, "PK\1\2")) {
        fail("its central directory is damaged");
    }
    const std::size_t nameSize = number16(left, 28);
    const std::size_t fieldsSize = number16(left, 30);
    const std::size_t size = a_centralSize + nameSize + fieldsSize + number16(left, 32);
    if (size > left.size()) {
        fail("its central directory is cut off");
    }
    Header header;
    header.readCommon(left.substr(6));
    header.offset = number32(left, 42);
    header.at = at;
    header.name = left.substr(a_centralSize, nameSize);
    readFields(header, left.substr(a_centralSize + nameSize, fieldsSize));
    checkHeader(header);
    m_headers.push_back(header);
    return size;
}

// Takes from a header's extra fields what the entry needs.
void Reader::readFields(Header& header, std::string_view fields) const
{
    bool hasBig = false;
    std::optional<std::uint32_t>
        checksum; // of the name, for which there may be thousands of fields
    for (std::size_t at = 0; at + 4 <= fields.size();) {
        const std::uint16_t id = number16(fields, at);
        const std::size_t size = number16(fields, at + 2);
        const std::string_view field = fields.substr(at + 4, size);
        if (id == a_bigField && !hasBig) {
            readBigField(header, field);
            hasBig = true;
        } else if (id == a_nameField && field.size() > a_nameFieldHead && field[0] == 1) {
            checksum = checksum ? checksum : checksumOf(header.name);
            readNameField(header, field, *checksum);
        }
        at += 4 + size;
    }
}

// It has, in this order, those numbers that don't fit into their places.
void Reader::readBigField(Header& header, std::string_view field) const
{
    std::size_t at = 0;
    for (std::uint64_t* const value : {&header.bytes, &header.packed, &header.offset}) {
        if (*value != a_isBig) {
            continue;
        }
        if (at + 8 > field.size()) {
            fail("the extra fields of '" + nameOf(header) + "' are cut off");
        }
        *value = number(field, at, 8);
        at += 8;
    }
}

// It is for the name with its checksum: whoever changes that may not know of it.
void Reader::readNameField(Header& header, std::string_view field, std::uint32_t checksum) const
{
    if (number32(field, 1) != checksum || !utf8(field.substr(a_nameFieldHead))) {
        return;
    }
    if (!header.otherName.empty()) { // readers might differ in which they take
        fail("'" + nameOf(header) + "' has more than two names");
    }
    header.otherName = field.substr(a_nameFieldHead);
}

void Reader::checkHeader(const Header& header) const
{
    for (const std::string_view name : {header.name, header.otherName}) {
        const std::size_t nul = name.find('\0');
        if (nul != std::string_view::npos) {
            throw FormatError(m_path + ": it holds what no project can: '" +
                              std::string(name.substr(0, nul)) + "': a path has no NUL character");
        }
    }
    const auto name = [&header] { return "'" + nameOf(header) + "'"; };
    if ((header.flags & a_utf8Flag) != 0 && !utf8(header.name)) {
        fail(name() + " is not in UTF-8, as it is said to be");
    }
    if ((header.flags & a_encryptedFlags) != 0) {
        throw FormatError(m_path + ": encrypted archive: " + name() + " can't be read");
    }
    if ((header.flags & a_patchedFlag) != 0) {
        throw FormatError(m_path + ": " + name() +
                          " can't be read: it is a change of what another archive has");
    }
    if (!isRead(header.method)) {
        throw FormatError(m_path + ": " + name() + " can't be read: it is packed by method " +
                          std::to_string(header.method) + ", which is not supported");
    }
    const bool isEmpty = header.packed == 0 && (header.bytes != 0 || header.crc != 0);
    if (isEmpty || (header.method == ZIP_CM_STORE && header.packed != header.bytes)) {
        fail(name() + " has not the size that it declares");
    }
}

void Reader::checkRanges(std::uint64_t end)
{
    std::vector<Header*> headers;
    headers.reserve(m_headers.size());
    for (Header& header : m_headers) {
        headers.push_back(&header);
    }
    std::sort(headers.begin(), headers.end(), [](const Header* a, const Header* b) {
        return std::tie(a->offset, a->at) < std::tie(b->offset, b->at);
    });
    const Header* before = nullptr;
    std::uint64_t free = 0;
    for (Header* const header : headers) {
        if (before != nullptr && header->offset < free) {
            fail("'" + nameOf(*before) + "' and '" + nameOf(*header) + "' share bytes");
        }
        free = findContent(*header);
        if (free > end) {
            fail("'" + nameOf(*header) + "' is cut off");
        }
        before = header;
    }
}

// Takes note of where an entry's packed bytes begin, and gives where they end. Its local header
// must be there and say what the other does.
std::uint64_t Reader::findContent(Header& central)
{
    const auto name = [&central] { return "'" + nameOf(central) + "'"; };
    const std::string head = read(central.offset, a_localSize);
    if (head.size() < a_localSize || !hasSignature(head, 0, "PK\3\4")) {
        fail(name() + " is not where it should be");
    }
    const std::size_t nameSize = number16(head, 26);
    const std::size_t size = nameSize + number16(head, 28);
    const std::uint64_t begin = central.offset + a_localSize + size;
    if (begin > m_size || central.packed > m_size - begin) {
        fail(name() + " is cut off");
    }
    m_localBytes += a_localSize + size;
    checkSize("the headers of its entries have ", m_localBytes);
    const std::string rest = read(central.offset + a_localSize, size);
    Header local;
    local.readCommon(std::string_view(head).substr(4));
    local.name = std::string_view(rest).substr(0, nameSize);
    readFields(local, std::string_view(rest).substr(nameSize));
    if (local.name != central.name || !agree(central, local)) {
        fail("the two headers of " + name() + " differ");
    }
    central.begin = begin;
    return begin + central.packed;
}

ArchiveDirectory Reader::result(std::uint64_t end) const
{
    ArchiveDirectory directory;
    directory.end = end;
    directory.entries.reserve(m_headers.size());
    std::uint64_t nameBytes = 0;
    for (const Header& header : m_headers) {
        directory.entries.push_back(entryOf(header));
        // A name of the code page can be three times as long in UTF-8.
        nameBytes += directory.entries.back().name.size();
        checkSize("its names have ", nameBytes);
        directory.headers += shown(header);
    }
    const std::uint64_t size = directory.headers.size();
    const std::string record = little(45, 2) + little(45, 2) + little(0, 8) +
                               little(m_headers.size(), 8) + little(m_headers.size(), 8) +
                               little(size, 8) + little(end, 8);
    directory.headers += std::string(a_searched, '\0') + "PK\6\6" + little(record.size(), 8) +
                         record + "PK\6\7" + little(0, 4) + little(end + size + a_searched, 8) +
                         little(1, 4) + "PK\5\6" + little(0, 4) + std::string(12, '\xff') +
                         little(0, 2);
    return directory;
}

ArchiveEntry Reader::entryOf(const Header& header) const
{
    ArchiveEntry entry;
    entry.name = nameOf(header);
    // Of nothing some programs say that it is deflated, which has bytes.
    const bool isEmpty = header.packed == 0;
    entry.content = {header.begin,
                     header.packed,
                     header.bytes,
                     header.crc,
                     isEmpty ? std::uint16_t{ZIP_CM_STORE} : header.method,
                     isEmpty ? std::uint16_t{0} : header.flags,
                     (number16(m_directory, header.at + 36) & 1) != 0};
    entry.isUnix = number(m_directory, header.at + 5, 1) == a_unix;
    entry.mode = entry.isUnix ? number16(m_directory, header.at + 40) : 0;
    return entry;
}

// The header without what the archive library does not need.
std::string Reader::shown(const Header& header) const
{
    const std::string_view all = std::string_view(m_directory).substr(header.at, a_centralSize);
    std::string big;
    for (const auto& [at, value] : {std::pair{24U, header.bytes}, std::pair{20U, header.packed},
                                    std::pair{42U, header.offset}}) {
        if (number32(all, at) == a_isBig) {
            big += little(value, 8);
        }
    }
    if (!big.empty()) {
        big = little(a_bigField, 2) + little(big.size(), 2) + big;
    }
    // No name, comment and number of a disk.
    return std::string(all.substr(0, 28)) + little(0, 2) + little(big.size(), 2) + little(0, 4) +
           std::string(all.substr(36)) + big;
}

} // namespace

ArchiveDirectory readArchiveDirectory(const Fd& file, const std::string& path,
                                      const ArchiveLimits& limits)
{
    return Reader(file, path, limits).run();
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
