#include "place.hpp"
#include "project_path.hpp"
#include "recovery.hpp"
#include "store.hpp"
#include "warn.hpp"

#include <pk/project/project_model.hpp>

#include <algorithm>
#include <vector>

namespace pk::project {

namespace {

struct ListOptions
{
    bool directories;
    bool recursive;
    bool files;
};

void list(const Entry& directory, const std::string& prefix, const ListOptions& options,
          std::vector<std::string>& names)
{
    for (const auto& child : directory.folder->children) {
        std::string name = prefix + child->name;
        if (child->isDirectory() && options.recursive) {
            list(*child, name + "/", options, names);
        }
        if (child->isDirectory() ? options.directories : options.files) {
            names.push_back(std::move(name));
        }
    }
}

} // namespace

ProjectModel::ProjectModel() : m_store(std::make_unique<Store>()) {}

ProjectModel::ProjectModel(const QString& path) : m_store(std::make_unique<Store>(path)) {}

ProjectModel::ProjectModel(const QString& path, const ArchiveLimits& limits)
    : m_store(std::make_unique<Store>(path, limits))
{
}

ProjectModel::ProjectModel(std::unique_ptr<Store> store) : m_store(std::move(store)) {}

ProjectModel::~ProjectModel() = default;
ProjectModel::ProjectModel(ProjectModel&& other) noexcept = default;
ProjectModel& ProjectModel::operator=(ProjectModel&& other) noexcept = default;

QString ProjectModel::getSourcePath() const
{
    return m_store->sourcePath();
}

QString ProjectModel::getMetadata(const QString& key) const
{
    return m_store->metadata().value(key);
}

void ProjectModel::setMetadata(const QString& key, const QString& value)
{
    m_store->setMetadata(key, value);
}

QStringList ProjectModel::getFileList(const QString& directory, bool includeDirectories,
                                      bool recursive, bool directoriesOnly) const
{
    const Entry* const entry = m_store->index().find(parsePath(directory));
    if (entry == nullptr || !entry->isDirectory()) {
        return {};
    }
    std::vector<std::string> names;
    list(*entry, {}, {includeDirectories || directoriesOnly, recursive, !directoriesOnly}, names);
    std::sort(names.begin(), names.end());
    QStringList result;
    result.reserve(static_cast<int>(names.size()));
    for (const std::string& name : names) {
        result.append(QString::fromStdString(name));
    }
    return result;
}

bool ProjectModel::hasFile(const QString& path) const
{
    try {
        const Entry* const entry = m_store->index().find(parsePath(path));
        return entry != nullptr && !entry->isDirectory();
    } catch (const InvalidPath&) {
        return false;
    }
}

bool ProjectModel::isLeftOut(const QString& path) const
{
    try {
        return m_store->index().isLeftOut(parsePath(path));
    } catch (const InvalidPath&) {
        return false;
    }
}

bool ProjectModel::hasLeftOut(const QString& directory) const
{
    return m_store->index().hasLeftOut(parsePath(directory));
}

FILE* ProjectModel::fopen(const QString& path, const QString& mode)
{
    try {
        return m_store->open(parsePath(path), mode.toStdString());
    } catch (const Error& error) {
        warn(error.what(), __FILE__, "fopen", __LINE__);
        return nullptr;
    }
}

QByteArray ProjectModel::readFile(const QString& path) const
{
    const ProjectPath parsed = parsePath(path);
    const Entry* const entry = m_store->index().find(parsed);
    try {
        const bool isFile = entry != nullptr && !entry->isDirectory();
        return isFile ? m_store->read(parsed, a_largestArray) : QByteArray();
    } catch (const Error& error) {
        warn(error.what(), __FILE__, "readFile", __LINE__);
        return {};
    }
}

QByteArray ProjectModel::getFileBytes(const QString& path, std::int64_t most) const
{
    return m_store->read(parsePath(path), most);
}

std::int64_t ProjectModel::getFileSize(const QString& path) const
{
    return m_store->size(parsePath(path));
}

void ProjectModel::writeFile(const QString& path, const QByteArray& bytes)
{
    m_store->write(parsePath(path), bytes);
}

QString ProjectModel::getFileLocalPath(const QString& path) const
{
    return QString::fromStdString(m_store->localPath(parsePath(path)));
}

void ProjectModel::mkdir(const QString& path, bool recursive)
{
    m_store->makeDirectory(parsePath(path), recursive);
}

void ProjectModel::move(const QString& from, const QString& to, bool overwrite)
{
    m_store->move(parsePath(from), parsePath(to), overwrite);
}

void ProjectModel::remove(const QString& path)
{
    m_store->remove(parsePath(path));
}

void ProjectModel::importFile(const ProjectModel& source, const QString& from, const QString& to,
                              bool recursive)
{
    m_store->import(*source.m_store, parsePath(from), parsePath(to), recursive);
}

void ProjectModel::exportFile(const QString& from, const QString& localPath, bool recursive) const
{
    if (localPath.isEmpty() || localPath.contains(QChar(0))) {
        throw InvalidPath("'" + localPath.section(QChar(0), 0, 0).toStdString() +
                          "': it is no path to export to");
    }
    const QString absolute = absolutePath(localPath);
    m_store->exportTo(parsePath(from), absolute.toStdString(), recursive);
}

void ProjectModel::save(const QString& path, ArchiveFormat format, bool overwrite)
{
    m_store->save(path, format, overwrite);
}

QList<UnsavedWork> ProjectModel::recoverable(const QString& path)
{
    return findUnsavedWork(path);
}

ProjectModel ProjectModel::recover(const UnsavedWork& work, bool evenIfChanged,
                                   const ArchiveLimits& limits)
{
    return ProjectModel(recoverWork(work, evenIfChanged, limits));
}

void ProjectModel::discard(const UnsavedWork& work)
{
    discardWork(work);
}

} // namespace pk::project
