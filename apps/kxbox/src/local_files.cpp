#include "local_files.hpp"

#include "failure.hpp"

#include <kxboxlibrary/box_library.hpp>
#include <pk/os.hpp>

#include <QDir>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace kxbox {

namespace {

constexpr std::size_t a_chunk = 65536;
constexpr int a_mostBytes = 1 << 30; // as of a file in an archive

[[noreturn]] void fail(const std::string& path)
{
    throw Failure(path + ": " + std::strerror(errno));
}

QByteArray readAll(FILE* file, const std::string& name)
{
    QByteArray bytes;
    std::array<char, a_chunk> chunk{};
    while (const std::size_t read = std::fread(chunk.data(), 1, chunk.size(), file)) {
        if (bytes.size() > a_mostBytes) {
            throw Failure(name + ": it has more than " + std::to_string(a_mostBytes) + " bytes");
        }
        bytes.append(chunk.data(), static_cast<int>(read));
    }
    if (std::ferror(file) != 0) {
        fail(name);
    }
    return bytes;
}

} // namespace

QByteArray readLocalFile(const std::string& path)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(pk::os::fopen(path.c_str(), "rb"),
                                                     std::fclose);
    if (!file) {
        fail(path);
    }
    return readAll(file.get(), path);
}

QByteArray readStandardInput()
{
    return readAll(stdin, "standard input");
}

void requireFreePlace(const std::string& path)
{
    requirePlace(path);
    struct stat status = {};
    if (::lstat(path.c_str(), &status) == 0) {
        throw Failure(path + ": something is there already");
    }
}

void requirePlace(const std::string& path)
{
    const QString place =
        QDir::cleanPath(QFileInfo(QString::fromStdString(path)).absoluteFilePath());
    QDir directory(QFileInfo(place).path());
    if (path.empty()) {
        throw Failure("'': no path");
    }
    if (!directory.exists()) {
        throw Failure(path + ": the directory '" + directory.path().toStdString() +
                      "' does not exist");
    }
    directory = QDir(QFileInfo(place).isDir() ? place : directory.path());
    directory = QDir(directory.canonicalPath());
    do {
        if (directory.exists(QStringLiteral(".kxproject")) &&
            directory.path() != QFileInfo(place).canonicalFilePath()) {
            throw Failure(path + ": it would lie in the library '" +
                          directory.path().toStdString() + "'");
        }
    } while (directory.cdUp());
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
