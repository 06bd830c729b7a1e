#include "local_files.hpp"

#include "failure.hpp"

#include <kxboxlibrary/box_library.hpp>
#include <pk/os.hpp>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace kxbox {

namespace {

constexpr std::size_t a_chunk = 65536;

[[noreturn]] void fail(const std::string& path)
{
    throw Failure(path + ": " + std::strerror(errno));
}

} // namespace

QByteArray readLocalFile(const std::string& path)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(pk::os::fopen(path.c_str(), "rb"),
                                                     std::fclose);
    if (!file) {
        fail(path);
    }
    QByteArray bytes;
    std::array<char, a_chunk> chunk{};
    while (const std::size_t read = std::fread(chunk.data(), 1, chunk.size(), file.get())) {
        bytes.append(chunk.data(), static_cast<int>(read));
    }
    if (std::ferror(file.get()) != 0) {
        fail(path);
    }
    return bytes;
}

void requireFreePlace(const std::string& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) == 0) {
        throw Failure(path + ": something is there already");
    }
}

std::vector<std::string> formatNames()
{
    return {"directory", "archive"};
}

pk::project::ArchiveFormat projectFormat(const std::string& name)
{
    return KX::libraryFormatToProjectFormat(name == "archive" ? KX::BoxLibrary::Archive
                                                              : KX::BoxLibrary::Directory);
}

} // namespace kxbox
