#include "read_ahead.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace pk::project {

ssize_t ReadAhead::read(std::uint64_t offset, char* bytes, std::size_t size) noexcept
{
    if (size == 0) {
        return 0;
    }
    if (size > a_window) {
        return readFile(offset, bytes, size);
    }
    if (offset < m_begin || offset + size > m_end) {
        const bool isNear = offset >= m_begin && offset - m_begin < 2 * m_window;
        m_window = std::max(size, isNear ? std::min(2 * m_window, a_window) : a_leastWindow);
        const ssize_t got = readFile(offset, m_bytes.get(), m_window);
        m_begin = offset;
        m_end = offset + static_cast<std::uint64_t>(std::max<ssize_t>(got, 0));
        if (got < 0) {
            return got;
        }
    }
    size = std::min<std::uint64_t>(size, m_end - offset);
    std::memcpy(bytes, m_bytes.get() + (offset - m_begin), size);
    return static_cast<ssize_t>(size);
}

ssize_t ReadAhead::readFile(std::uint64_t offset, char* bytes, std::size_t size) const noexcept
{
    std::size_t got = 0;
    while (got < size) {
        const ssize_t now =
            ::pread(m_file.get(), bytes + got, size - got, static_cast<off_t>(offset + got));
        if (now == 0) {
            break;
        }
        if (now < 0 && errno != EINTR) {
            return -1;
        }
        got += now > 0 ? static_cast<std::size_t>(now) : 0;
    }
    return static_cast<ssize_t>(got);
}

} // namespace pk::project
