#include "text_hash.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <vector>

namespace {

using KR::Localization::HashKey;
using KR::Localization::hashText;
using KR::Localization::sipHash;

const HashKey a_key{0x0706050403020100U, 0x0F0E0D0C0B0A0908U};

std::vector<unsigned char> countedTo(std::size_t size)
{
    std::vector<unsigned char> bytes(size);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return bytes;
}

std::uint64_t published(std::size_t size)
{
    return sipHash<2, 4>(a_key, countedTo(size).data(), size);
}

} // namespace

// The values are those of the publication's appendix and of its authors' test program.
TEST(SipHash, GivesThePublishedValues)
{
    EXPECT_EQ(published(15), 0xA129CA6149BE45E5U);
    EXPECT_EQ(published(0), 0x726FDB47DD0E0E31U);
    EXPECT_EQ(published(1), 0x74F839C593DC67FDU);
    EXPECT_EQ(published(8), 0x93F5F5799A932462U);
}

TEST(SipHash, DependsOnTheKeyAndOnEveryByte)
{
    std::set<std::uint64_t> hashes;
    for (std::size_t size = 0; size < 20; ++size) {
        hashes.insert(sipHash<1, 3>(a_key, countedTo(size).data(), size));
        hashes.insert(sipHash<1, 3>({1, 2}, countedTo(size).data(), size));
        for (std::size_t i = 0; i < size; ++i) {
            std::vector<unsigned char> bytes = countedTo(size);
            bytes[i] ^= 1U;
            hashes.insert(sipHash<1, 3>(a_key, bytes.data(), size));
        }
    }
    EXPECT_EQ(hashes.size(), 40 + 190U);
}

TEST(HashText, TellsTheOrderOfTexts)
{
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    EXPECT_EQ(hashText(b, hashText(a)), hashText(b, hashText(a)));
    EXPECT_NE(hashText(b, hashText(a)), hashText(a, hashText(b)));
    EXPECT_EQ(hashText(QString()), hashText(QStringLiteral("")));
}
