#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace KR::Localization {

/// A hash table from keys to positions in a list, where the keys are: it stores hash and position
/// alone and asks its caller whether the key at a position is the one that is looked for.
///
/// One block of memory, no allocation per entry.
class PositionTable
{
public:
    static constexpr int a_none = -1;
    static constexpr int a_removed = -2;

    explicit PositionTable(int expectedSize = 0)
    {
        std::size_t capacity = 16;
        while (capacity < 2 * static_cast<std::size_t>(expectedSize)) {
            capacity *= 2;
        }
        m_slots.resize(capacity);
    }

    /// The position of the key for which `isKey(position)` is true; a_none when there is none.
    template <class IsKey>
    int find(std::size_t hash, const IsKey& isKey) const
    {
        return m_slots[slot(hash, isKey)].position;
    }

    /// The place that holds the key's position, to be changed: a_none in a new one, which must be
    /// set at once; a_removed takes an entry out. Good until the next call.
    template <class IsKey>
    int& at(std::size_t hash, const IsKey& isKey)
    {
        if (2 * (m_used + 1) > m_slots.size()) {
            grow();
        }
        Slot& found = m_slots[slot(hash, isKey)];
        if (found.position == a_none) {
            found.hash = hash;
            ++m_used;
        }
        return found.position;
    }

private:
    struct Slot
    {
        std::size_t hash = 0;
        int position = a_none;
    };

    // A removed slot keeps its place: what was put in after it may lie behind it.
    template <class IsKey>
    std::size_t slot(std::size_t hash, const IsKey& isKey) const
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t i = hash & mask;
        while (m_slots[i].position != a_none &&
               (m_slots[i].hash != hash || m_slots[i].position == a_removed ||
                !isKey(m_slots[i].position))) {
            i = (i + 1) & mask;
        }
        return i;
    }

    void grow()
    {
        const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(2 * m_slots.size()));
        m_used = 0;
        for (const Slot& moved : old) {
            if (moved.position >= 0) {
                m_slots[slot(moved.hash, [](int) { return false; })] = moved;
                ++m_used;
            }
        }
    }

    std::vector<Slot> m_slots; // a power of two, at most half of them used
    std::size_t m_used = 0;
};

} // namespace KR::Localization
