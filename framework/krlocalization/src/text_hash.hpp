#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

namespace KR::Localization {

/// What is known to this process alone.
using HashKey = std::array<std::uint64_t, 2>;

/// SipHash (J.-P. Aumasson and D. J. Bernstein, "SipHash: a fast short-input PRF", 2012) with
/// `rounds` for each eight bytes and `finalRounds` at the end: whoever does not know the key can't
/// make texts that meet in a table, with which hashes without one are made slow.
template <int rounds, int finalRounds>
std::uint64_t sipHash(const HashKey& key, const unsigned char* bytes, std::size_t size);

extern template std::uint64_t sipHash<1, 3>(const HashKey&, const unsigned char*, std::size_t);
extern template std::uint64_t sipHash<2, 4>(const HashKey&, const unsigned char*, std::size_t);

/// The hash of a text, to be continued with the hash of another one; with a key that each process
/// draws by lot.
std::size_t hashText(const QString& text, std::size_t before = 0);

} // namespace KR::Localization
