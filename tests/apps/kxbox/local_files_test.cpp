#include "failure.hpp"
#include "local_files.hpp"
#include "temporary_files.hpp"

#include <unistd.h>

namespace kxbox {
namespace {

using temporary::putLocal;
using temporary::TemporaryDirectory;

std::string failureOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "none";
}

TEST(LocalFiles, AreReadWhole)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("file").toStdString();
    for (const int size : {0, 1, 65535, 65536, 65537, 200000}) {
        QByteArray bytes(size, '\0');
        for (int i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>(i * 7);
        }
        putLocal(directory.path("file"), bytes);
        EXPECT_EQ(readLocalFile(path), bytes) << size;
    }
}

TEST(LocalFiles, ThatCannotBeReadAreNamed)
{
    const TemporaryDirectory directory;
    const std::string top = directory.path().toStdString();
    EXPECT_EQ(failureOf([&] { readLocalFile(top + "/x"); }), top + "/x: No such file or directory");
    EXPECT_EQ(failureOf([&] { readLocalFile(top); }), top + ": Is a directory");
}

TEST(LocalFiles, TakeAPlaceAlsoAsDanglingLinks)
{
    const TemporaryDirectory directory;
    const std::string top = directory.path().toStdString();
    const std::string link = top + "/link";
    requireFreePlace(link);
    ASSERT_EQ(::symlink("nowhere", link.c_str()), 0);
    EXPECT_EQ(failureOf([&] { requireFreePlace(link); }), link + ": something is there already");
    EXPECT_EQ(failureOf([&] { requireFreePlace(top); }), top + ": something is there already");
}

TEST(LocalFiles, HaveFormatsByName)
{
    EXPECT_EQ(projectFormat("archive"), pk::project::ArchiveFormat::Zip);
    EXPECT_EQ(projectFormat("directory"), pk::project::ArchiveFormat::Directory);
}

} // namespace
} // namespace kxbox
