#pragma once

#include "contents.hpp"
#include "edit_log.hpp"
#include "index.hpp"
#include "metadata.hpp"

#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace pk::project {

class FreshPlace;

/// What is behind a ProjectModel, which describes the operations: the index, where its files' bytes
/// are, and the metadata.
class Store
{
public:
    Store() = default;
    explicit Store(const QString& path, const ArchiveLimits& limits = {});

    const QString& sourcePath() const { return m_sourcePath; }
    const Metadata& metadata() const { return m_metadata; }
    Index& index() const { return *m_index; }
    /// For files that apply() is to put.
    Staging& staging() { return *m_contents.staging(); }

    FILE* open(const ProjectPath& path, const std::string& mode);
    Fd open(Entry& file) { return m_contents.open(file); }
    QByteArray read(const ProjectPath& path, std::int64_t most);
    std::int64_t size(const ProjectPath& path) const;
    void write(const ProjectPath& path, const QByteArray& bytes);
    std::string localPath(const ProjectPath& path);
    void makeDirectory(const ProjectPath& path, bool recursive);
    void move(const ProjectPath& from, const ProjectPath& to, bool overwrite);
    void remove(const ProjectPath& path);
    void setMetadata(const QString& key, const QString& value);
    void import(Store& source, const ProjectPath& from, const ProjectPath& to, bool recursive);
    void exportTo(const ProjectPath& from, const std::string& localPath, bool recursive);
    void save(const QString& path, ArchiveFormat format, bool overwrite);

    /// Makes all edits of one operation and notes them in the log. Throws what Index throws; of
    /// more than one edit only the caller knows that none will throw.
    void apply(std::vector<Edit> edits);

private:
    struct Item
    {
        ProjectPath path; ///< below what is copied
        Entry* entry;
        bool isDirectory;
        std::uint16_t mode;
    };
    struct Target;
    static bool leaveOut(const Item& item);
    static std::vector<Item> itemsBelow(Entry& from, bool recursive);
    void checkImport(const std::vector<Item>& items, const ProjectPath& to) const;
    void apply(Edit edit, std::vector<Edit>& done);
    Entry& makeDirectories(const ProjectPath& path, std::optional<std::uint16_t> mode,
                           std::vector<Edit>& done);
    void checkMove(const ProjectPath& from, const ProjectPath& to) const;
    void applyMove(const ProjectPath& from, const ProjectPath& to, std::vector<Edit>& done);
    static Edit putEdit(const ProjectPath& path, std::shared_ptr<StagedFile> staged);
    void restartLog();
    Base base(std::int64_t time) const;
    Entry& directoryFor(const ProjectPath& path, std::vector<Edit>& done);
    Entry& getFile(const ProjectPath& path) const;
    FILE* openToRead(Entry& entry, const std::string& mode);
    FILE* openToWrite(const ProjectPath& path, const std::string& mode);
    void load(const Place& place);
    void undoUnfinished(bool mustSucceed);
    void rememberUndone();
    Target resolveTarget(const QString& path, ArchiveFormat format) const;
    void checkTarget(const Place& place) const;
    void saveDirectory(const Target& target);
    void checkSource(const Target& target) const;
    void saveArchive(const Target& target);
    void publish(FreshPlace& fresh, const Target& target);
    void saveOverRepository(const Target& target);
    void adopt(std::unique_ptr<DirectorySource> directory, std::unique_ptr<ArchiveSource> archive);

    QString m_sourcePath;
    ArchiveLimits m_limits;
    Metadata m_metadata;
    Metadata m_savedMetadata;
    Contents m_contents;
    std::unique_ptr<Index> m_index = std::make_unique<Index>();
    EditLog m_log{m_contents.staging()};
};

} // namespace pk::project
