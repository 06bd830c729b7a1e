#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

namespace KX::xml {

/// The bytes of a document. One zero byte, which `size` does not count, follows them.
struct Bytes
{
    std::unique_ptr<char[]> data;
    std::size_t size = 0;
};

/// Most bytes of a document: far above any box, and a bound for a stream without end.
constexpr std::size_t a_maxSize = std::size_t(32) << 20U;

/// Reads `stream`, seekable or not, from its position to its end. Throws `std::system_error` when
/// reading fails, `stream` is null, or there is more than `a_maxSize`.
Bytes readStream(FILE* stream);

/// A copy of bytes in memory; throws as readStream() for too many.
Bytes copyOf(std::string_view bytes);

/// Writes all of `bytes` and flushes. Throws `std::system_error` when `stream` is null or does not
/// take everything, which for a full disk can show as late as in the flush.
void writeStream(FILE* stream, std::string_view bytes);

} // namespace KX::xml
