#pragma once

#include "disk.hpp"
#include "read_ahead.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>

struct z_stream_s;

namespace pk::project {

/// Where an archive has the bytes of an entry, and how.
struct PackedEntry
{
    std::uint64_t begin = 0;
    std::uint64_t packed = 0; ///< bytes there
    std::uint64_t bytes = 0;  ///< unpacked
    std::uint32_t checksum = 0;
    std::uint16_t method = 0; ///< as the format numbers them; stored without bytes
    std::uint16_t flags = 0;  ///< the general ones
    bool isText = false;      ///< as whoever packed it thought
};

/// Why an archive's file can't be read.
struct ReadFailure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Unpacks entries of an archive that are stored or deflated, as nearly all are. The archive
/// library, which can do that too, makes what it needs anew for each; a box file takes less time to
/// unpack than that.
class Unpacker
{
public:
    /// Refers to `file`.
    explicit Unpacker(const Fd& file);
    ~Unpacker();
    Unpacker(const Unpacker&) = delete;
    Unpacker& operator=(const Unpacker&) = delete;
    Unpacker(Unpacker&&) = delete;
    Unpacker& operator=(Unpacker&&) = delete;

    /// Whether entries packed by a method are unpacked here.
    static bool canRead(std::uint16_t method);

    using Sink = std::function<void(const char* bytes, std::size_t size)>;
    /// Gives `sink` the bytes of an entry, piece by piece and no more than it is said to have, and
    /// checks them. Null, or what is wrong with the entry. Throws ReadFailure, and what
    /// `sink` throws.
    const char* read(const PackedEntry& entry, const Sink& sink);

private:
    class Check;
    void fill(std::uint64_t begin, std::size_t size);
    const char* readStored(const PackedEntry& entry, Check& check);
    const char* readDeflated(const PackedEntry& entry, Check& check);

    ReadAhead m_ahead;
    std::unique_ptr<char[]> m_packed;
    std::unique_ptr<char[]> m_unpacked;
    std::unique_ptr<z_stream_s> m_stream; ///< null until it is needed
};

} // namespace pk::project
