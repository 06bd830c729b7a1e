#include "support.hpp"
#include "unpacker.hpp"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

namespace pk::project::test {
namespace {

constexpr std::uint16_t a_stored = 0;
constexpr std::uint16_t a_deflated = 8;

/// Text that hardly shrinks.
std::string noise(std::size_t size)
{
    std::string text;
    std::uint32_t state = 1;
    while (text.size() < size) {
        state = state * 1664525 + 1013904223;
        text += static_cast<char>(state >> 24);
    }
    return text;
}

std::string deflated(const std::string& bytes)
{
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

class AnUnpacker : public testing::Test
{
protected:
    /// An entry in the file, with what stands for it in front of others.
    PackedEntry put(const std::string& bytes, const std::string& packed, std::uint16_t method)
    {
        PackedEntry entry{m_bytes.size(), packed.size(), bytes.size(), 0, method, 0, false};
        entry.checksum = static_cast<std::uint32_t>(
            crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
        m_bytes += packed;
        putLocal(m_directory.path("file"), QByteArray::fromStdString(m_bytes));
        m_file = openPath(m_directory.path("file").toStdString(), O_RDONLY);
        return entry;
    }

    const char* read(Unpacker& unpacker, const PackedEntry& entry)
    {
        m_read.clear();
        return unpacker.read(
            entry, [this](const char* bytes, std::size_t size) { m_read.append(bytes, size); });
    }

    std::string faultOf(const PackedEntry& entry)
    {
        Unpacker unpacker(m_file);
        const char* const fault = read(unpacker, entry);
        EXPECT_LE(m_read.size(), entry.bytes);
        return fault != nullptr ? fault : "";
    }

    TemporaryDirectory m_directory;
    std::string m_bytes;
    std::string m_read;
    Fd m_file;
};

TEST_F(AnUnpacker, ReadsWhatIsStoredAndWhatIsDeflatedInAnyOrder)
{
    std::vector<std::pair<std::string, PackedEntry>> entries;
    for (const std::string& bytes :
         {std::string(), std::string("text"), noise(200'000), std::string(300'000, 'a')}) {
        for (const std::uint16_t method : {a_stored, a_deflated}) {
            const std::string packed = method == a_stored ? bytes : deflated(bytes);
            entries.emplace_back(bytes, put(bytes, packed, method));
        }
    }
    Unpacker unpacker(m_file);
    for (std::size_t i = 0; i < 2 * entries.size(); ++i) {
        const auto& [bytes, entry] = entries[i * 5 % entries.size()];
        EXPECT_EQ(read(unpacker, entry), nullptr) << i;
        EXPECT_EQ(m_read, bytes) << i;
    }
}

TEST_F(AnUnpacker, KnowsItsMethods)
{
    EXPECT_TRUE(Unpacker::canRead(a_stored));
    EXPECT_TRUE(Unpacker::canRead(a_deflated));
    EXPECT_FALSE(Unpacker::canRead(12));
}

TEST_F(AnUnpacker, TellsWhatIsWrong)
{
    const std::string bytes = noise(100'000) + std::string(100'000, 'a');
    const PackedEntry right = put(bytes, deflated(bytes), a_deflated);
    ASSERT_EQ(faultOf(right), "");
    PackedEntry entry = right;
    entry.checksum ^= 1U;
    EXPECT_EQ(faultOf(entry), "CRC error");
    entry = right;
    entry.bytes -= 1;
    EXPECT_EQ(faultOf(entry), "it is longer than declared");
    entry = right;
    entry.bytes += 1;
    EXPECT_EQ(faultOf(entry), "it is shorter than declared");
    entry = right;
    entry.packed -= 20;
    EXPECT_EQ(faultOf(entry), "its packed bytes are cut off");
    entry = right;
    entry.begin += 3;
    entry.packed -= 3;
    EXPECT_NE(faultOf(entry), "");
    const PackedEntry noDeflate = put(bytes, std::string(100, '\xff'), a_deflated);
    EXPECT_EQ(faultOf(noDeflate), "its packed bytes are damaged");
    PackedEntry stored = put("text", "text", a_stored);
    stored.bytes = 3;
    EXPECT_EQ(faultOf(stored), "it is longer than declared");
    EXPECT_EQ(faultOf(right), "");
}

TEST_F(AnUnpacker, ReadsOnAfterADamagedEntry)
{
    const std::string bytes = noise(1000);
    const PackedEntry damaged = put(bytes, std::string(100, '\xff'), a_deflated);
    const PackedEntry right = put(bytes, deflated(bytes), a_deflated);
    Unpacker unpacker(m_file);
    EXPECT_NE(read(unpacker, damaged), nullptr);
    EXPECT_EQ(read(unpacker, right), nullptr);
    EXPECT_EQ(m_read, bytes);
}

TEST_F(AnUnpacker, OfAFileThatBecameShorterOrCanNotBeReadIsAnError)
{
    const std::string bytes = noise(100'000);
    const PackedEntry entry = put(bytes, bytes, a_stored);
    ASSERT_EQ(::truncate(m_file.path().c_str(), 50'000), 0);
    EXPECT_THROW(faultOf(entry), ReadFailure);
    m_file = openPath(m_directory.path().toStdString(), O_RDONLY | O_DIRECTORY);
    EXPECT_THROW(faultOf(entry), ReadFailure);
}

} // namespace
} // namespace pk::project::test
