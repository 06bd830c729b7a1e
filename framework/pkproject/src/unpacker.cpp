#include "unpacker.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <zlib.h>

namespace pk::project {

namespace {

constexpr std::uint16_t a_stored = 0;
constexpr std::uint16_t a_deflated = 8;

constexpr std::size_t a_packedSize = ReadAhead::a_window;
constexpr std::size_t a_unpackedSize = std::size_t{1} << 16;

constexpr const char* a_isLonger = "it is longer than declared";
constexpr const char* a_isShorter = "it is shorter than declared";

Bytef* bytesOf(char* bytes)
{
    return reinterpret_cast<Bytef*>(bytes);
}

} // namespace

// Passes on what an entry turns out to be.
class Unpacker::Check
{
public:
    Check(const PackedEntry& entry, const Sink& sink)
        : m_left(entry.bytes), m_wanted(entry.checksum), m_sink(sink)
    {
    }

    /// False for more bytes than there may be.
    bool take(char* bytes, std::size_t size)
    {
        if (size > m_left) {
            return false;
        }
        m_left -= size;
        m_checksum = crc32_z(m_checksum, bytesOf(bytes), size);
        m_sink(bytes, size);
        return true;
    }

    const char* end() const
    {
        return m_left > 0 ? a_isShorter : m_checksum != m_wanted ? "CRC error" : nullptr;
    }

private:
    std::uint64_t m_left;
    std::uint32_t m_wanted;
    uLong m_checksum = 0;
    const Sink& m_sink;
};

Unpacker::Unpacker(const Fd& file)
    : m_ahead(file), m_packed(new char[a_packedSize]), m_unpacked(new char[a_unpackedSize])
{
}

Unpacker::~Unpacker()
{
    if (m_stream) {
        inflateEnd(m_stream.get());
    }
}

bool Unpacker::canRead(std::uint16_t method)
{
    return method == a_stored || method == a_deflated;
}

const char* Unpacker::read(const PackedEntry& entry, const Sink& sink)
{
    Check check(entry, sink);
    return entry.method == a_stored ? readStored(entry, check) : readDeflated(entry, check);
}

// The headers have been checked against the size of the file: it became shorter since.
void Unpacker::fill(std::uint64_t begin, std::size_t size)
{
    const ssize_t got = m_ahead.read(begin, m_packed.get(), size);
    if (got < 0) {
        throw ReadFailure(std::strerror(errno));
    }
    if (static_cast<std::size_t>(got) < size) {
        throw ReadFailure("it became shorter");
    }
}

const char* Unpacker::readStored(const PackedEntry& entry, Check& check)
{
    for (std::uint64_t at = 0; at < entry.packed;) {
        const std::size_t size = std::min<std::uint64_t>(entry.packed - at, a_packedSize);
        fill(entry.begin + at, size);
        if (!check.take(m_packed.get(), size)) {
            return a_isLonger;
        }
        at += size;
    }
    return check.end();
}

const char* Unpacker::readDeflated(const PackedEntry& entry, Check& check)
{
    if (!m_stream) {
        auto stream = std::make_unique<z_stream>();
        if (inflateInit2(stream.get(), -MAX_WBITS) != Z_OK) { // no header, as in archives
            throw std::bad_alloc();
        }
        m_stream = std::move(stream);
    }
    z_stream& stream = *m_stream;
    inflateReset(&stream);
    stream.avail_in = 0;
    std::uint64_t at = 0;
    for (;;) {
        if (stream.avail_in == 0 && at < entry.packed) {
            const std::size_t size = std::min<std::uint64_t>(entry.packed - at, a_packedSize);
            fill(entry.begin + at, size);
            at += size;
            stream.next_in = bytesOf(m_packed.get());
            stream.avail_in = static_cast<uInt>(size);
        }
        stream.next_out = bytesOf(m_unpacked.get());
        stream.avail_out = a_unpackedSize;
        const int result = inflate(&stream, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) {
            throw std::bad_alloc();
        }
        if (!check.take(m_unpacked.get(), a_unpackedSize - stream.avail_out)) {
            return a_isLonger;
        }
        if (result == Z_STREAM_END) {
            return check.end();
        }
        if (result == Z_BUF_ERROR) {
            return "its packed bytes are cut off";
        }
        if (result != Z_OK) {
            return "its packed bytes are damaged";
        }
    }
}

} // namespace pk::project
