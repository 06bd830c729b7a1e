#include "stream.hpp"
#include "xml_helpers.hpp"

#include <array>
#include <system_error>
#include <unistd.h>

using namespace KX::testing;
using KX::xml::Bytes;
using KX::xml::copyOf;
using KX::xml::readStream;
using KX::xml::writeStream;

namespace {

std::string text(const Bytes& bytes)
{
    return {bytes.data.get(), bytes.size};
}

TEST(Stream, ReadsEverySizeAroundItsChunks)
{
    constexpr std::size_t a_chunk = 16384;
    for (const std::size_t size : {std::size_t(0), std::size_t(1), a_chunk - 1, a_chunk,
                                   a_chunk + 1, 2 * a_chunk, 100 * a_chunk + 7}) {
        std::string bytes(size, 'x');
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>('a' + i % 23);
        }
        const Bytes read = readStream(fileWith(bytes).get());
        EXPECT_EQ(text(read), bytes);
        EXPECT_EQ(read.data[read.size], '\0');
    }
}

TEST(Stream, CopiesBytesUpToItsBound)
{
    const Bytes copy = copyOf("0123456789");
    EXPECT_EQ(text(copy), "0123456789");
    EXPECT_EQ(copy.data[copy.size], '\0');
    EXPECT_THROW(copyOf(std::string(KX::xml::a_maxSize + 1, ' ')), std::system_error);
}

TEST(Stream, ReadsFromThePositionOfTheStream)
{
    const FilePtr file = fileWith("0123456789");
    ASSERT_EQ(std::fseek(file.get(), 4, SEEK_SET), 0);
    EXPECT_EQ(text(readStream(file.get())), "456789");
}

TEST(Stream, ReadsAPipe)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const FilePtr reader = own(fdopen(ends[0], "rb"));
    const std::string bytes(20000, 'p');
    {
        const FilePtr writer = own(fdopen(ends[1], "wb"));
        writeStream(writer.get(), bytes);
    }
    EXPECT_EQ(text(readStream(reader.get())), bytes);
}

TEST(Stream, RefusesAStreamWithoutEnd)
{
    const FilePtr endless = own(std::fopen("/dev/zero", "rb"));
    EXPECT_THROW(readStream(endless.get()), std::system_error);
}

TEST(Stream, ReportsAFailedRead)
{
    const FilePtr directory = own(std::fopen("/", "rb"));
    try {
        readStream(directory.get());
        FAIL() << "read a directory";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), EISDIR);
    }
    EXPECT_THROW(readStream(nullptr), std::system_error);
}

TEST(Stream, WritesAndFlushes)
{
    const FilePtr file = fileWith({});
    writeStream(file.get(), "abc");
    std::array<char, 4> seen{};
    EXPECT_EQ(pread(fileno(file.get()), seen.data(), seen.size(), 0), 3);
    EXPECT_STREQ(seen.data(), "abc");
}

TEST(Stream, ReportsAFullDisk)
{
    for (const std::size_t size : {std::size_t(3), std::size_t(1) << 20U}) {
        const FilePtr full = own(std::fopen("/dev/full", "wb"));
        try {
            writeStream(full.get(), std::string(size, 'x'));
            FAIL() << "wrote to a full disk";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code().value(), ENOSPC);
        }
    }
}

TEST(Stream, ReportsAStreamThatCannotBeWritten)
{
    const FilePtr file = own(std::fopen("/dev/null", "rb"));
    EXPECT_THROW(writeStream(file.get(), "abc"), std::system_error);
    EXPECT_THROW(writeStream(nullptr, "abc"), std::system_error);
}

} // namespace
