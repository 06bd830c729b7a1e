#pragma once

#include "require.hpp"

#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

/// Libraries, and projects in memory and in temporary directories.
namespace fuzz {

using pk::project::ProjectModel;
using Library = std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter>;
using DetachedNode = std::unique_ptr<KX::BoxLibraryNode, KX::TreeDeleter>;
/// Paths with the bytes of files; directories have "<directory>".
using Contents = std::map<std::string, QByteArray>;

inline QString q(const std::string& text)
{
    return QString::fromStdString(text);
}

inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), static_cast<int>(size)};
}

/// Switches the log off, because hostile input is worth a warning each time, and keeps temporary
/// files in memory where that can be. Always true, so that a target can do it before its first
/// input.
inline bool prepare()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    const QFileInfo memory(q("/dev/shm"));
    return !memory.isDir() || !memory.isWritable() || qputenv("TMPDIR", "/dev/shm");
}

/// A temporary directory, for as long as it lives.
class TemporaryDirectory
{
public:
    TemporaryDirectory() { require(m_directory.isValid(), "a temporary directory can be made"); }
    QString path(const char* name) const { return m_directory.filePath(q(name)); }

private:
    QTemporaryDir m_directory;
};

/// Puts bytes into a local file, whose directory exists.
inline void putLocal(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "a local file can be written");
}

inline Library open(ProjectModel model)
{
    return Library(new KX::BoxLibrary(std::move(model)));
}

/// A library that reads what another one has in its project now.
inline Library reread(const KX::BoxLibrary& library)
{
    ProjectModel copy;
    copy.importFile(library.projectModel(), QString(), QString(), true);
    return open(std::move(copy));
}

inline Contents contentsOf(const ProjectModel& model)
{
    Contents contents;
    for (const QString& path : model.getFileList(QString(), true, true, false)) {
        contents[path.toStdString()] =
            model.hasFile(path) ? model.readFile(path) : QByteArray("<directory>");
    }
    return contents;
}

/// For requireSame().
inline std::string printed(const Contents& contents)
{
    std::string text;
    for (const auto& [path, bytes] : contents) {
        text += path + ": " + bytes.toStdString() + '\n';
    }
    return text;
}

/// Whether a node that was to be called `asked` has that name without number, or with a free one.
inline bool isNamed(const KX::BoxLibraryNode& node, const std::string& asked)
{
    const std::string base = KX::BoxLibraryNode::unNumberName(asked);
    return node.name() == base || KX::BoxLibraryNode::unNumberName(node.name()) == base;
}

} // namespace fuzz
