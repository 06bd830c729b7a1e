#pragma once

#include "disk.hpp"
#include "temporary_files.hpp"

#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace pk::project::test {

using temporary::getLocal;
using temporary::putLocal;
using temporary::q;
using temporary::TemporaryDirectory;

/// What is below a local directory: "name/" for directories, "name" with mode and bytes for files,
/// the target for symbolic links, only the mode for special files. The metadata file is among them.
using Tree = std::map<std::string, std::string>;

inline Tree treeOf(const QString& directory)
{
    Tree tree;
    QDirIterator it(directory,
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const std::string name = QDir(directory).relativeFilePath(path).toStdString();
        struct stat info = {};
        EXPECT_EQ(::lstat(path.toStdString().c_str(), &info), 0);
        const std::string mode = std::to_string(info.st_mode & 0777);
        if (S_ISLNK(info.st_mode)) {
            tree[name] = "-> " + QFile::symLinkTarget(path).toStdString();
        } else if (S_ISDIR(info.st_mode)) {
            tree[name + "/"] = mode;
        } else if (!S_ISREG(info.st_mode)) {
            tree[name] = mode + " special";
        } else {
            tree[name] = mode + ":" + getLocal(path).toStdString();
        }
    }
    return tree;
}

/// What a model says that it holds, as treeOf() says it of a directory, without modes.
inline Tree treeOf(const ProjectModel& model)
{
    Tree tree;
    for (const QString& name : model.getFileList(QString(), true, true, false)) {
        if (model.hasFile(name)) {
            tree[name.toStdString()] = model.readFile(name).toStdString();
        } else {
            tree[name.toStdString() + "/"] = "";
        }
    }
    return tree;
}

/// The names in the directory above `path` that the store left there.
inline QStringList leftBeside(const QString& path)
{
    QStringList names =
        QDir(QFileInfo(path).path()).entryList({q(".*.kx*")}, QDir::AllEntries | QDir::Hidden);
    return names;
}

/// Runs an action and gives the text of the E that it throws.
template <class E>
std::string messageOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const E& error) {
        return error.what();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "another exception: " << error.what();
        return {};
    }
    ADD_FAILURE() << "no exception";
    return {};
}

/// Whether a place holds a directory or an archive.
enum class Form
{
    Directory,
    Archive
};

inline ArchiveFormat formatOf(Form form)
{
    return form == Form::Directory ? ArchiveFormat::Directory : ArchiveFormat::Zip;
}

inline std::string nameOf(const testing::TestParamInfo<Form>& info)
{
    return info.param == Form::Directory ? "Directory" : "Archive";
}

/// What tells whether a file was touched: its inode and its modification time.
inline std::pair<ino_t, std::int64_t> stampOf(const QString& path)
{
    const auto info = statOf(path.toStdString());
    EXPECT_TRUE(info) << path.toStdString();
    return info ? std::make_pair(info->st_ino, modificationTime(*info))
                : std::make_pair(ino_t{0}, std::int64_t{0});
}

/// While it lives, the system's place for temporary files is a directory of the test.
class TemporaryFiles
{
public:
    TemporaryFiles() { qputenv("TMPDIR", m_directory.path().toUtf8()); }
    ~TemporaryFiles() { m_hadOne ? qputenv("TMPDIR", m_before) : qunsetenv("TMPDIR"); }
    TemporaryFiles(const TemporaryFiles&) = delete;
    TemporaryFiles& operator=(const TemporaryFiles&) = delete;
    TemporaryFiles(TemporaryFiles&&) = delete;
    TemporaryFiles& operator=(TemporaryFiles&&) = delete;

    /// The files and directories there, with all that is below.
    Tree tree() const { return treeOf(m_directory.path()); }
    QString path() const { return m_directory.path(); }

private:
    TemporaryDirectory m_directory;
    bool m_hadOne = qEnvironmentVariableIsSet("TMPDIR");
    QByteArray m_before = qgetenv("TMPDIR");
};

/// Writes a text to a stream, down to the file.
inline void put(FILE* stream, const char* text)
{
    EXPECT_GE(std::fputs(text, stream), 0);
    EXPECT_EQ(std::fflush(stream), 0);
}

inline void close(FILE* stream)
{
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(std::fclose(stream), 0);
}

/// Writes a text through a stream of the model.
inline void putThroughStream(ProjectModel& model, const char* path, const std::string& text)
{
    FILE* const stream = model.fopen(q(path), q("wb"));
    ASSERT_NE(stream, nullptr) << path;
    EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), stream), text.size());
    EXPECT_EQ(std::fclose(stream), 0);
}

/// Bytes that can't be compressed. With more than 64 KiB, an archive is written in pieces.
inline QByteArray noise(unsigned seed, int size)
{
    std::seed_seq sequence{seed};
    std::mt19937 random(sequence);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random() % 256);
    }
    return bytes;
}

} // namespace pk::project::test
