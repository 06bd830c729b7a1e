#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

/// Decisions decoded from an input, byte by byte; when it is used up, always the first choice.
class Choices
{
public:
    Choices(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool isEmpty() const { return m_size == 0; }
    /// From 0 to `count` - 1; 0 for no choice.
    std::size_t below(std::size_t count)
    {
        const std::size_t value = byte();
        return count > 1 ? value % count : 0;
    }
    bool yes() { return below(2) == 1; }
    /// The next bytes as they are.
    std::string bytes(std::size_t count)
    {
        std::string text;
        while (text.size() < count && !isEmpty()) {
            text += static_cast<char>(byte());
        }
        return text;
    }

private:
    std::uint8_t byte()
    {
        if (m_size == 0) {
            return 0;
        }
        --m_size;
        return *m_data++;
    }

    const std::uint8_t* m_data;
    std::size_t m_size;
};

} // namespace fuzz
