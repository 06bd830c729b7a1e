#include "floors.hpp"

#include <pugixml.hpp>
#include <zip.h>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace floors {

namespace {

void require(bool condition, const std::string& what)
{
    if (!condition) {
        throw std::runtime_error("floor: " + what);
    }
}

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool isRead(std::string_view name)
{
    return endsWith(name, "/bxlinfo") || endsWith(name, ".bhx") || name == "bxlinfo";
}

void parse(std::string& bytes)
{
    pugi::xml_document document;
    require(document.load_buffer_inplace(bytes.data(), bytes.size()), "no XML");
}

void write(const std::string& path, const char* bytes, std::size_t size, bool isSynced)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(::write(file, bytes, size) == static_cast<ssize_t>(size), path);
    if (isSynced) {
        ::fsync(file);
    }
    ::close(file);
}

void sync(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    require(::fsync(file) == 0, path);
    ::close(file);
}

/// Calls enter(path) for each directory and visit(path) for each file below a directory, which come
/// relative to it.
template <class Enter, class Visit>
void walk(const std::string& top, const std::string& below, const Enter& enter, const Visit& visit)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(
        ::opendir(below.empty() ? top.c_str() : (top + "/" + below).c_str()), &::closedir);
    require(directory != nullptr, top);
    while (const dirent* const entry = ::readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        std::string path = below;
        path.append(below.empty() ? "" : "/").append(name);
        if (entry->d_type == DT_DIR) {
            enter(path);
            walk(top, path, enter, visit);
        } else {
            visit(path);
        }
    }
}

constexpr auto a_nothing = [](const std::string& /*path*/) {};

void copy(const std::string& from, const std::string& to)
{
    require(::mkdir(to.c_str(), 0755) == 0, to);
    walk(
        from, "", [&](const std::string& path) { ::mkdir((to + "/" + path).c_str(), 0755); },
        [&](const std::string& path) {
            const int in = ::open((from + "/" + path).c_str(), O_RDONLY | O_CLOEXEC);
            const int out =
                ::open((to + "/" + path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            while (::copy_file_range(in, nullptr, out, nullptr, 1U << 30U, 0) > 0) {
            }
            ::close(in);
            ::close(out);
        });
}

struct Writer : pugi::xml_writer
{
    void write(const void* data, std::size_t size) override
    {
        bytes.append(static_cast<const char*>(data), size);
    }
    std::string bytes;
};

using Zip = std::unique_ptr<zip_t, int (*)(zip_t*)>;

Zip openZip(const std::string& path, int flags)
{
    int error = 0;
    Zip zip(::zip_open(path.c_str(), flags, &error), &::zip_close);
    require(zip != nullptr, path);
    return zip;
}

} // namespace

std::string read(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    require(::fstat(file, &info) == 0, path);
    std::string bytes(static_cast<std::size_t>(info.st_size), '\0');
    require(::read(file, bytes.data(), bytes.size()) == info.st_size, path);
    ::close(file);
    return bytes;
}

int openDirectory(const std::string& path)
{
    int files = 0;
    walk(path, "", a_nothing, [&](const std::string& file) {
        if (isRead(file)) {
            std::string bytes = read(path + "/" + file);
            parse(bytes);
            ++files;
        }
    });
    return files;
}

int openArchive(const std::string& path)
{
    const Zip zip = openZip(path, ZIP_RDONLY);
    int files = 0;
    const zip_int64_t count = ::zip_get_num_entries(zip.get(), 0);
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
        zip_stat_t info;
        ::zip_stat_index(zip.get(), i, 0, &info);
        if (isRead(info.name)) {
            std::string bytes(info.size, '\0');
            zip_file_t* const file = ::zip_fopen_index(zip.get(), i, 0);
            require(::zip_fread(file, bytes.data(), bytes.size()) ==
                        static_cast<zip_int64_t>(bytes.size()),
                    info.name);
            ::zip_fclose(file);
            parse(bytes);
            ++files;
        }
    }
    return files;
}

void replaceSynced(const std::string& path, const std::string& bytes)
{
    write(path + ".new", bytes.data(), bytes.size(), true);
    require(::rename((path + ".new").c_str(), path.c_str()) == 0, path);
    sync(path.substr(0, path.rfind('/')));
}

void replaceEntry(const std::string& archive, const std::string& name, const std::string& bytes)
{
    Zip zip = openZip(archive, 0);
    zip_source_t* const source = ::zip_source_buffer(zip.get(), bytes.data(), bytes.size(), 0);
    require(::zip_file_add(zip.get(), name.c_str(), source, ZIP_FL_OVERWRITE) >= 0, name);
    require(::zip_close(zip.release()) == 0, archive);
    sync(archive);
}

void copySynced(const std::string& from, const std::string& to)
{
    copy(from, to);
    const int directory = ::open(to.c_str(), O_RDONLY | O_DIRECTORY);
    ::syncfs(directory);
    ::close(directory);
}

void compress(const std::string& directory, const std::string& archive)
{
    Zip zip = openZip(archive, ZIP_CREATE | ZIP_TRUNCATE);
    walk(
        directory, "",
        [&](const std::string& path) { ::zip_dir_add(zip.get(), path.c_str(), ZIP_FL_ENC_UTF_8); },
        [&](const std::string& path) {
            const std::string file = directory + "/" + path;
            zip_source_t* const source = ::zip_source_file(zip.get(), file.c_str(), 0, -1);
            require(::zip_file_add(zip.get(), path.c_str(), source, ZIP_FL_ENC_UTF_8) >= 0, path);
        });
    require(::zip_close(zip.release()) == 0, archive);
    sync(archive);
}

void rewriteXml(const std::string& from, const std::string& to)
{
    std::string bytes = read(from);
    pugi::xml_document document;
    require(document.load_buffer_inplace(bytes.data(), bytes.size()), from);
    Writer writer;
    document.save(writer, "    ");
    write(to + ".new", writer.bytes.data(), writer.bytes.size(), false);
    require(::rename((to + ".new").c_str(), to.c_str()) == 0, to);
}

void link(const std::string& from, const std::string& to)
{
    require(::mkdir(to.c_str(), 0755) == 0, to);
    walk(
        from, "", [&](const std::string& path) { ::mkdir((to + "/" + path).c_str(), 0755); },
        [&](const std::string& path) {
            require(::link((from + "/" + path).c_str(), (to + "/" + path).c_str()) == 0, path);
        });
}

void copyAndRewrite(const std::string& from, const std::string& to, const std::string& xml)
{
    copy(from, to);
    walk(to, "", a_nothing, [&](const std::string& path) {
        if (endsWith(path, "/" + xml)) {
            rewriteXml(to + "/" + path, to + "/" + path);
        }
    });
}

} // namespace floors
