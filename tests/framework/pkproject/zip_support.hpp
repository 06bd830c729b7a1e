#pragma once

#include "support.hpp"

#include <zip.h>

#include <string>
#include <sys/stat.h>
#include <vector>

namespace pk::project::test {

/// An entry of a zip archive, as the archive library has it.
struct ZipEntry
{
    std::string name;
    std::string bytes;
    mode_t mode = S_IFREG | 0644; ///< 0: no mode is written
    zip_int32_t method = ZIP_CM_DEFLATE;
    zip_uint32_t level = 6;
    std::string password = {}; ///< encrypted when not empty

    // Set when an archive is read.
    std::uint64_t packed = 0;
    std::uint32_t crc = 0;
    std::time_t time = 0;
};

/// Writes a zip archive with the archive library.
inline void putZip(const QString& path, const std::vector<ZipEntry>& entries)
{
    int error = 0;
    zip_t* const zip = zip_open(path.toStdString().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(zip, nullptr);
    for (const ZipEntry& entry : entries) {
        zip_int64_t index = -1;
        if (entry.name.back() == '/') {
            index = zip_dir_add(zip, entry.name.c_str(), ZIP_FL_ENC_UTF_8);
        } else {
            index = zip_file_add(zip, entry.name.c_str(),
                                 zip_source_buffer(zip, entry.bytes.data(), entry.bytes.size(), 0),
                                 ZIP_FL_ENC_UTF_8);
        }
        ASSERT_GE(index, 0) << entry.name;
        const auto position = static_cast<zip_uint64_t>(index);
        zip_set_file_compression(zip, position, entry.method, entry.level);
        if (entry.mode != 0) {
            zip_file_set_external_attributes(zip, position, 0, ZIP_OPSYS_UNIX,
                                             static_cast<zip_uint32_t>(entry.mode) << 16);
        }
        if (!entry.password.empty()) {
            ASSERT_EQ(
                zip_file_set_encryption(zip, position, ZIP_EM_TRAD_PKWARE, entry.password.c_str()),
                0);
        }
    }
    ASSERT_EQ(zip_close(zip), 0) << zip_strerror(zip);
}

/// The entries of a zip archive in their order.
inline std::vector<ZipEntry> zipEntries(const QString& path)
{
    std::vector<ZipEntry> entries;
    int error = 0;
    zip_t* const zip = zip_open(path.toStdString().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    if (zip == nullptr) {
        ADD_FAILURE() << path.toStdString() << ": error " << error;
        return entries;
    }
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(zip, 0));
    for (zip_uint64_t i = 0; i < count; ++i) {
        zip_stat_t info;
        zip_stat_index(zip, i, 0, &info);
        ZipEntry entry;
        entry.name = info.name;
        entry.method = info.comp_method;
        entry.packed = info.comp_size;
        entry.crc = info.crc;
        entry.time = info.mtime;
        zip_uint8_t system = 0;
        zip_uint32_t attributes = 0;
        zip_file_get_external_attributes(zip, i, 0, &system, &attributes);
        entry.mode = attributes >> 16;
        entry.bytes.resize(info.size);
        zip_file_t* const file = zip_fopen_index(zip, i, 0);
        EXPECT_EQ(zip_fread(file, entry.bytes.data(), info.size),
                  static_cast<zip_int64_t>(info.size));
        zip_fclose(file);
        entries.push_back(entry);
    }
    zip_discard(zip);
    return entries;
}

/// Changes the first place where `from` is in a file to `to`, of the same length; true when there
/// was one.
inline bool patchLocal(const QString& path, const std::string& from, const std::string& to,
                       bool last = false)
{
    std::string bytes = getLocal(path).toStdString();
    const std::size_t at = last ? bytes.rfind(from) : bytes.find(from);
    if (at == std::string::npos || from.size() != to.size()) {
        return false;
    }
    bytes.replace(at, to.size(), to);
    putLocal(path, QByteArray::fromStdString(bytes));
    return true;
}

} // namespace pk::project::test
