#include <pk/os.hpp>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

File open(const std::string& path, const char* mode)
{
    return {pk::os::fopen(path.c_str(), mode), &std::fclose};
}

void write(const std::string& path, const char* mode, const std::string& text)
{
    const File file = open(path, mode);
    ASSERT_TRUE(file);
    ASSERT_EQ(std::fwrite(text.data(), 1, text.size(), file.get()), text.size());
}

std::string read(const std::string& path)
{
    const File file = open(path, "rb");
    std::array<char, 64> buffer{};
    return file
               ? std::string(buffer.data(), std::fread(buffer.data(), 1, buffer.size(), file.get()))
               : "(not opened)";
}

class OsFopen : public testing::Test
{
protected:
    std::string path(const std::string& name) const
    {
        return m_directory.path().toStdString() + "/" + name;
    }

private:
    const QTemporaryDir m_directory;
};

} // namespace

TEST_F(OsFopen, TakesThePathAsUtf8)
{
    const std::string name = "gr\xc3\xbc\xc3\x9f \xe6\x97\xa5\xe6\x9c\xac.txt";

    write(path(name), "wb", "text");

    EXPECT_EQ(read(path(name)), "text");
    const std::filesystem::directory_iterator entries(path(""));
    EXPECT_EQ(entries->path().filename().string(), name);
}

TEST_F(OsFopen, HonoursTheMode)
{
    write(path("file"), "w", "a");
    write(path("file"), "a", "b");
    EXPECT_EQ(read(path("file")), "ab");

    errno = 0;
    EXPECT_FALSE(open(path("file"), "wx"));
    EXPECT_EQ(errno, EEXIST);

    write(path("file"), "w", "c");
    EXPECT_EQ(read(path("file")), "c");
}

TEST_F(OsFopen, RefusesMissingArguments)
{
    for (const auto& [name, mode] :
         {std::pair<const char*, const char*>{nullptr, "r"}, {"/", nullptr}, {"/", ""}}) {
        errno = 0;
        EXPECT_EQ(pk::os::fopen(name, mode), nullptr);
        EXPECT_EQ(errno, EINVAL);
    }
}

struct FailureCase
{
    const char* name;
    const char* file;
    const char* mode;
    int error;
};

class OsFopenFailure : public OsFopen, public testing::WithParamInterface<FailureCase>
{
};

TEST_P(OsFopenFailure, GivesNullAndSetsErrno)
{
    errno = 0;
    EXPECT_FALSE(open(path(GetParam().file), GetParam().mode));
    EXPECT_EQ(errno, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Each, OsFopenFailure,
                         testing::Values(FailureCase{"MissingFile", "missing", "rb", ENOENT},
                                         FailureCase{"MissingDirectory", "a/b", "wb", ENOENT},
                                         FailureCase{"WritingADirectory", "", "wb", EISDIR},
                                         FailureCase{"UnknownMode", "file", "q", EINVAL}),
                         [](const auto& each) { return each.param.name; });

class OsFopenMode : public OsFopen, public testing::WithParamInterface<const char*>
{
};

TEST_P(OsFopenMode, GivesAStreamThatOtherProgramsDoNotInherit)
{
    write(path("file"), "w", "text");

    const File file = open(path("file"), GetParam());

    ASSERT_TRUE(file);
    EXPECT_NE(::fcntl(::fileno(file.get()), F_GETFD) & FD_CLOEXEC, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, OsFopenMode,
                         testing::Values("r", "rb", "r+", "rb+", "r+b", "re", "w", "wb", "w+b", "a",
                                         "ab", "a+"));
