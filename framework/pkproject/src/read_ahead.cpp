#include "read_ahead.hpp"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace pk::project {

ssize_t ReadAhead::read(std::uint64_t offset, char* bytes, std::size_t size)
{
    if (size > a_window) {
        return readFile(offset, bytes, size);
    }
    if (offset < m_begin || offset + size > m_begin + m_bytes.size()) {
        m_bytes.resize(a_window);
        const ssize_t got = readFile(offset, m_bytes.data(), m_bytes.size());
        m_begin = offset;
        m_bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0) {
            return got;
        }
    }
    return static_cast<ssize_t>(m_bytes.copy(bytes, size, offset - m_begin));
}

ssize_t ReadAhead::readFile(std::uint64_t offset, char* bytes, std::size_t size) const
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
