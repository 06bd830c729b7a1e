#pragma once

#include "disk.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sys/types.h>

namespace pk::project {

/// Reads from a file at any place, without its position. Small pieces that lie close together take
/// one system call, whoever else reads the file meanwhile.
class ReadAhead
{
public:
    /// How much is read at once, where pieces lie close together and where they don't.
    static constexpr std::size_t a_window = std::size_t{1} << 14;
    static constexpr std::size_t a_leastWindow = std::size_t{1} << 12;

    /// Refers to `file`.
    explicit ReadAhead(const Fd& file) : m_file(file), m_bytes(new char[a_window]) {}

    /// Copies `size` bytes that begin at `offset`, and gives how many there are, fewer only at the
    /// end of the file; -1 with errno set when they can't be read.
    ssize_t read(std::uint64_t offset, char* bytes, std::size_t size) noexcept;

private:
    ssize_t readFile(std::uint64_t offset, char* bytes, std::size_t size) const noexcept;

    const Fd& m_file;
    std::unique_ptr<char[]> m_bytes; ///< of the last window
    std::uint64_t m_begin = 0;       ///< where they are in the file
    std::uint64_t m_end = 0;
    std::size_t m_window = 0; ///< of which the file may have had less
};

} // namespace pk::project
