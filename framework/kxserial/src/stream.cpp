#include "stream.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace KX::xml {

namespace {

// Larger than most box files: one read then takes a whole one and sees its end.
constexpr std::size_t a_firstChunk = std::size_t(16) << 10U;

[[noreturn]] void fail(int error, const char* what)
{
    throw std::system_error(error == 0 ? EIO : error, std::generic_category(), what);
}

void resize(Bytes& bytes, std::size_t capacity)
{
    std::unique_ptr<char[]> other(new char[capacity + 1]);
    std::copy_n(bytes.data.get(), bytes.size, other.get());
    bytes.data = std::move(other);
}

// Fills `bytes` up to `capacity`; false when the stream ended before.
bool fill(FILE* stream, Bytes& bytes, std::size_t capacity)
{
    bytes.size += std::fread(bytes.data.get() + bytes.size, 1, capacity - bytes.size, stream);
    if (bytes.size == capacity) {
        return true;
    }
    if (std::ferror(stream) != 0) {
        fail(errno, "cannot read the document");
    }
    return false;
}

} // namespace

Bytes readStream(FILE* stream)
{
    if (stream == nullptr) {
        fail(EBADF, "cannot read the document");
    }
    std::size_t capacity = a_firstChunk;
    Bytes bytes;
    bytes.data.reset(new char[capacity]);
    errno = 0;
    while (fill(stream, bytes, capacity)) {
        if (capacity > a_maxSize) {
            fail(EFBIG, "cannot read the document");
        }
        capacity = std::min(2 * capacity, a_maxSize + 1);
        resize(bytes, capacity);
    }
    // Documents are kept as long as their elements, so what was read ahead is given back.
    resize(bytes, bytes.size);
    bytes.data[bytes.size] = '\0';
    return bytes;
}

Bytes copyOf(std::string_view bytes)
{
    if (bytes.size() > a_maxSize) {
        fail(EFBIG, "cannot read the document");
    }
    Bytes copy{std::unique_ptr<char[]>(new char[bytes.size() + 1]), bytes.size()};
    bytes.copy(copy.data.get(), bytes.size());
    copy.data[bytes.size()] = '\0';
    return copy;
}

void writeStream(FILE* stream, std::string_view bytes)
{
    if (stream == nullptr) {
        fail(EBADF, "cannot write the document");
    }
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size() ||
        std::fflush(stream) != 0) {
        fail(errno, "cannot write the document");
    }
}

} // namespace KX::xml
