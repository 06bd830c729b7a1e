#pragma once

#include "support.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pk::project::test {

/// An entry of a zip archive as its headers have it, true or not.
struct RawEntry
{
    std::string name;
    std::string packed;                 ///< the bytes after the local header
    std::uint16_t method = 0;           ///< stored
    std::optional<std::uint64_t> bytes; ///< unpacked, when not those of `packed`
    std::uint32_t crc = 0;
    std::uint32_t mode = S_IFREG | 0644; ///< of Unix
    std::uint8_t system = 3;             ///< Unix
    std::uint16_t flags = 0;
    std::string fields;                      ///< extra fields in the central directory
    std::string localFields;                 ///< and in the local header
    std::optional<std::string> localName;    ///< when another
    std::optional<std::uint64_t> packedSize; ///< when another
    std::optional<std::uint32_t> at;         ///< an entry without bytes and header, which are there
};

constexpr std::uint16_t a_deflated = 8;

inline std::string little(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xff);
    }
    return bytes;
}

inline std::string extraField(std::uint16_t id, const std::string& bytes)
{
    return little(id, 2) + little(bytes.size(), 2) + bytes;
}

inline std::uint32_t crcOf(const std::string& bytes)
{
    std::uint32_t crc = 0xffffffff;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1 ^ (crc & 1 ? 0xedb88320 : 0);
        }
    }
    return ~crc;
}

/// Bytes as they stand in an archive when they are deflated.
inline std::string deflated(const QByteArray& bytes)
{
    // Between a length of four bytes, a head of two and a checksum of four.
    const QByteArray packed = qCompress(bytes, 9);
    return packed.mid(6, packed.size() - 10).toStdString();
}

/// So many zeros, deflated, without having them in memory: 159 times smaller.
inline std::string deflatedZeros(std::uint64_t count)
{
    std::string bytes;
    unsigned buffer = 0;
    int filled = 0;
    const auto put = [&](unsigned code, int size) {
        for (int i = size; i-- > 0;) {
            buffer |= (code >> i & 1) << filled;
            if (++filled == 8) {
                bytes += static_cast<char>(buffer);
                buffer = 0;
                filled = 0;
            }
        }
    };
    constexpr std::uint64_t repeated = 258;
    put(0b110, 3);      // the last block, with the fixed code
    put(0b00110000, 8); // a zero
    for (--count; count >= repeated; count -= repeated) {
        put(0b11000101, 8); // 258 times
        put(0, 5);          // what was one before
    }
    for (; count > 0; --count) {
        put(0b00110000, 8);
    }
    put(0, 7); // the end
    put(0, (8 - filled) % 8);
    return bytes;
}

/// An entry with these bytes, stored, and all that is true of them.
inline RawEntry stored(const std::string& name, const std::string& bytes)
{
    RawEntry entry;
    entry.name = name;
    entry.packed = bytes;
    entry.crc = crcOf(bytes);
    return entry;
}

/// An entry with these packed bytes, which are said to unpack to so many.
inline RawEntry packedTo(const std::string& name, const std::string& packed, std::uint64_t bytes)
{
    RawEntry entry;
    entry.name = name;
    entry.packed = packed;
    entry.method = a_deflated;
    entry.bytes = bytes;
    return entry;
}

/// A zip archive from what its headers are to say.
class RawZip
{
public:
    RawZip() = default;
    RawZip(std::initializer_list<RawEntry> all)
    {
        for (const RawEntry& entry : all) {
            add(entry);
        }
    }

    void add(const RawEntry& entry)
    {
        const std::uint64_t size = entry.packedSize.value_or(entry.packed.size());
        const std::string common = little(entry.flags, 2) + little(entry.method, 2) +
                                   little(0x00210000, 4) + little(entry.crc, 4) + little(size, 4) +
                                   little(entry.bytes.value_or(size), 4);
        const std::string localName = entry.localName.value_or(entry.name);
        const std::uint64_t at = entry.at.value_or(entries.size());
        if (!entry.at) {
            entries += "PK\3\4" + little(20, 2) + common + little(localName.size(), 2) +
                       little(entry.localFields.size(), 2) + localName + entry.localFields +
                       entry.packed;
        }
        directory += "PK\1\2" + little(20, 1) + little(entry.system, 1) + little(20, 2) + common +
                     little(entry.name.size(), 2) + little(entry.fields.size(), 2) + little(0, 6) +
                     little(std::uint64_t{entry.mode} << 16, 4) + little(at, 4) + entry.name +
                     entry.fields;
        ++count;
    }

    std::string bytes() const { return entries + directory + end(); }
    /// The same with the end for more entries than the other can count in front.
    std::string bigBytes() const { return entries + directory + bigEnd() + end(); }

    std::string end(const std::string& comment = {}) const
    {
        return std::string("PK\5\6") + little(0, 4) + little(count, 2) + little(count, 2) +
               little(directory.size(), 4) + little(entries.size(), 4) + little(comment.size(), 2) +
               comment;
    }
    std::string bigEnd() const
    {
        const std::string record = little(45, 2) + little(45, 2) + little(0, 8) + little(count, 8) +
                                   little(count, 8) + little(directory.size(), 8) +
                                   little(entries.size(), 8);
        return std::string("PK\6\6") + little(record.size(), 8) + record + "PK\6\7" + little(0, 4) +
               little(entries.size() + directory.size(), 8) + little(1, 4);
    }

    std::string entries;
    std::string directory;
    std::uint64_t count = 0; ///< may be made another
};

} // namespace pk::project::test
