#include "read_ahead.hpp"
#include "support.hpp"

#include <cerrno>
#include <fcntl.h>

namespace pk::project::test {

namespace {

class AReadAhead : public testing::Test
{
protected:
    static constexpr int a_size = 3 * static_cast<int>(ReadAhead::a_window) + 5;

    QByteArray read(std::uint64_t offset, std::size_t size)
    {
        QByteArray bytes(static_cast<int>(size), 'x');
        const ssize_t got = m_ahead.read(offset, bytes.data(), size);
        return got < 0 ? QByteArray("<error>") : bytes.left(static_cast<int>(got));
    }

    QByteArray byteAt(std::uint64_t offset) const
    {
        return m_bytes.mid(static_cast<int>(offset), 1);
    }

    const TemporaryDirectory m_directory;
    const QString m_path = m_directory.path("f");
    const QByteArray m_bytes = [] {
        QByteArray bytes;
        for (int i = 0; i < a_size; ++i) {
            bytes += static_cast<char>(i * 7 + i / 251);
        }
        return bytes;
    }();
    const Fd m_file = [this] {
        putLocal(m_path, m_bytes);
        return openPath(m_path.toStdString(), O_RDONLY);
    }();
    ReadAhead m_ahead{m_file};
};

} // namespace

TEST_F(AReadAhead, GivesTheBytesOfAnyPlaceInAnyOrder)
{
    constexpr int window = static_cast<int>(ReadAhead::a_window);
    for (const int size : {0, 1, 100, window - 1, window, window + 1, 2 * window, a_size}) {
        for (const int offset : {a_size - 1, 0, window - 1, window, 1, 2 * window + 50, a_size - 5,
                                 a_size, a_size + 1, a_size + window}) {
            EXPECT_EQ(read(static_cast<std::uint64_t>(offset), static_cast<std::size_t>(size)),
                      m_bytes.mid(offset, size))
                << size << " bytes at " << offset;
        }
    }
}

TEST_F(AReadAhead, LeavesTheFilesPositionToOthers)
{
    ASSERT_EQ(::lseek(m_file.get(), 7, SEEK_SET), 7);
    read(100, 10);
    read(0, a_size);
    EXPECT_EQ(::lseek(m_file.get(), 0, SEEK_CUR), 7);
}

// What has been read is seen by its being as it was before the file changed.
TEST_F(AReadAhead, ReadsOnceWhatLiesCloseTogether)
{
    constexpr std::uint64_t least = ReadAhead::a_leastWindow;
    EXPECT_EQ(read(50, 1), byteAt(50));
    putLocal(m_path, QByteArray(a_size, 'y'));
    EXPECT_EQ(read(50 + least - 1, 1), byteAt(50 + least - 1));
    EXPECT_EQ(read(50 + least, 1), QByteArray("y"));
    EXPECT_EQ(read(49, 2), QByteArray("yy"));
    EXPECT_EQ(read(51, 1), QByteArray("y"));
}

TEST_F(AReadAhead, ReadsMoreAtOnceTheMoreIsWanted)
{
    constexpr std::uint64_t least = ReadAhead::a_leastWindow;
    read(0, 1);
    read(2 * least - 1, 1); // reads two of the least windows
    putLocal(m_path, QByteArray(a_size, 'y'));
    EXPECT_EQ(read(4 * least - 2, 1), byteAt(4 * least - 2));
    EXPECT_EQ(read(9 * least, 1), QByteArray("y")); // far away, and so one
    putLocal(m_path, m_bytes);
    EXPECT_EQ(read(10 * least - 1, 1), QByteArray("y"));
    EXPECT_EQ(read(10 * least, 1), byteAt(10 * least));
}

TEST_F(AReadAhead, SaysThatNothingCanBeRead)
{
    const Fd directory = openPath(m_directory.path().toStdString(), O_RDONLY);
    ReadAhead ahead(directory);
    char byte = 0;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ahead.read(0, &byte, 1), -1);
        EXPECT_EQ(errno, EISDIR);
    }
}

} // namespace pk::project::test
