#include "text_hash.hpp"

#include <QtEndian>

#include <random>

namespace KR::Localization {

namespace {

constexpr std::size_t a_wordSize = sizeof(std::uint64_t);

constexpr std::uint64_t rotated(std::uint64_t word, unsigned bits)
{
    return (word << bits) | (word >> (64U - bits));
}

// The four words are as in the publication.
class State
{
public:
    explicit State(const HashKey& key)
        : m_v0(key[0] ^ 0x736F6D6570736575U),
          m_v1(key[1] ^ 0x646F72616E646F6DU),
          m_v2(key[0] ^ 0x6C7967656E657261U),
          m_v3(key[1] ^ 0x7465646279746573U)
    {
    }

    template <int rounds>
    void take(std::uint64_t word)
    {
        m_v3 ^= word;
        stir<rounds>();
        m_v0 ^= word;
    }

    template <int rounds>
    std::uint64_t end()
    {
        m_v2 ^= 0xFFU;
        stir<rounds>();
        return m_v0 ^ m_v1 ^ m_v2 ^ m_v3;
    }

private:
    template <int rounds>
    void stir()
    {
        for (int i = 0; i < rounds; ++i) {
            m_v0 += m_v1;
            m_v2 += m_v3;
            m_v1 = rotated(m_v1, 13) ^ m_v0;
            m_v3 = rotated(m_v3, 16) ^ m_v2;
            m_v0 = rotated(m_v0, 32);
            m_v2 += m_v1;
            m_v0 += m_v3;
            m_v1 = rotated(m_v1, 17) ^ m_v2;
            m_v3 = rotated(m_v3, 21) ^ m_v0;
            m_v2 = rotated(m_v2, 32);
        }
    }

    std::uint64_t m_v0;
    std::uint64_t m_v1;
    std::uint64_t m_v2;
    std::uint64_t m_v3;
};

/// Less than eight bytes, the first the lowest.
std::uint64_t lastWord(const unsigned char* bytes, std::size_t size)
{
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < size; ++i) {
        word |= std::uint64_t{bytes[i]} << (8 * i);
    }
    return word;
}

HashKey drawKey()
{
    std::random_device random;
    HashKey key{};
    for (std::uint64_t& word : key) {
        word = (std::uint64_t{random()} << 32U) | random();
    }
    return key;
}

} // namespace

template <int rounds, int finalRounds>
std::uint64_t sipHash(const HashKey& key, const unsigned char* bytes, std::size_t size)
{
    State state(key);
    std::size_t at = 0;
    for (; at + a_wordSize <= size; at += a_wordSize) {
        state.take<rounds>(qFromLittleEndian<std::uint64_t>(bytes + at));
    }
    state.take<rounds>(lastWord(bytes + at, size - at) | (std::uint64_t{size} << 56U));
    return state.end<finalRounds>();
}

template std::uint64_t sipHash<1, 3>(const HashKey&, const unsigned char*, std::size_t);
template std::uint64_t sipHash<2, 4>(const HashKey&, const unsigned char*, std::size_t);

std::size_t hashText(const QString& text, std::size_t before)
{
    static const HashKey key = drawKey();
    // Some texts are short, and this is part of the key to them: nobody knows that hash either.
    const HashKey continued{key[0] ^ before, key[1]};
    return sipHash<1, 3>(continued, reinterpret_cast<const unsigned char*>(text.constData()),
                         sizeof(QChar) * static_cast<std::size_t>(text.size()));
}

} // namespace KR::Localization
