#pragma once

#include "contents.hpp"
#include "index.hpp"
#include "metadata.hpp"

#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace pk::project {

/// What is behind a ProjectModel, which describes the operations: the index, where its files' bytes
/// are, and the metadata.
class Store
{
public:
    Store() = default;
    explicit Store(const QString& path, const ArchiveLimits& limits = {});

    const QString& sourcePath() const { return m_sourcePath; }
    const Metadata& metadata() const { return m_metadata; }
    Metadata& metadata() { return m_metadata; }
    Index& index() const { return *m_index; }

    FILE* open(const ProjectPath& path, const std::string& mode);
    QByteArray read(const ProjectPath& path);
    void write(const ProjectPath& path, const QByteArray& bytes);
    std::string localPath(const ProjectPath& path);
    void move(const ProjectPath& from, const ProjectPath& to, bool overwrite);
    void import(Store& source, const ProjectPath& from, const ProjectPath& to, bool recursive);
    void exportTo(const ProjectPath& from, const std::string& localPath, bool recursive);
    void save(const QString& path, ArchiveFormat format, bool overwrite);

private:
    struct Item;
    struct Target;
    static bool leaveOut(const Item& item);
    static std::vector<Item> itemsBelow(Entry& from, bool recursive);
    void checkImport(const std::vector<Item>& items, const ProjectPath& to) const;
    Entry& directoryFor(const ProjectPath& path);
    FILE* openToRead(Entry& entry, const std::string& mode);
    FILE* openToWrite(const ProjectPath& path, const std::string& mode);
    void load(const Place& place);
    void undoUnfinished() const;
    Target resolveTarget(const QString& path, ArchiveFormat format) const;
    void checkTarget(const Place& place) const;
    void saveDirectory(const Target& target);
    void saveArchive(const Target& target);
    void saveOverRepository(const Target& target);
    void adopt(std::unique_ptr<DirectorySource> directory, std::unique_ptr<ArchiveSource> archive);

    QString m_sourcePath;
    ArchiveLimits m_limits;
    Metadata m_metadata;
    Metadata m_savedMetadata;
    Contents m_contents;
    std::unique_ptr<Index> m_index = std::make_unique<Index>();
};

} // namespace pk::project
