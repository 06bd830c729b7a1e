#include "disk.hpp"
#include "journal_directory.hpp"
#include "lock.hpp"
#include "metadata.hpp"
#include "place.hpp"
#include "project_path.hpp"

#include <pk/project/project.hpp>

#include <QFileInfo>

#include <fcntl.h>
#include <optional>

namespace pk::project {

namespace {

std::string metadataPath(const std::string& directory)
{
    return directory + "/" + a_metadataFile;
}

struct MetadataFile
{
    Metadata metadata;
    mode_t mode;
};

MetadataFile load(const std::string& directory)
{
    const std::string path = metadataPath(directory);
    if (!statOf(path)) {
        return {{}, umaskLeaves(0666)};
    }
    const Fd file = openPath(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    return {readMetadata(file), statOf(file).st_mode & 0777};
}

void writeMetadata(const Place& place, const MetadataFile& file, Durability durability)
{
    const std::string fresh = place.fresh();
    const std::string path = metadataPath(place.path);
    const QByteArray bytes = readableMetadata(file.metadata);
    const bool isSynced = durability == Durability::Disk;
    if (bytes.isEmpty()) {
        removeTree(path);
    } else {
        removeTree(fresh);
        try {
            const Fd fd = Disk::instance().create(fresh, file.mode);
            Disk::instance().write(fd, bytes.constData(), static_cast<std::size_t>(bytes.size()));
            if (isSynced) {
                Disk::instance().sync(fd);
            }
            Disk::instance().rename(fresh, path);
        } catch (const IoError&) {
            removeTree(fresh);
            throw;
        }
    }
    if (isSynced) {
        syncDirectory(place.path);
    }
}

} // namespace

Project::Project(const std::string& directory)
    : m_directory(absolutePath(textOf(directory)).toStdString())
{
    if (directory.empty() || !QFileInfo(QString::fromStdString(m_directory)).isDir()) {
        throw PathNotFound("'" + directory + "': no such directory");
    }
    const Place place = Place::of(m_directory);
    if (!exists(place.journal())) {
        return;
    }
    if (const auto lock = Lock::takeIfWritable(place)) {
        JournalDirectory::recover(place);
    }
}

std::string Project::getMetadata(const std::string& key) const
{
    return load(m_directory).metadata.value(QString::fromStdString(key)).toStdString();
}

void Project::setMetadata(const std::string& key, const std::string& value)
{
    setMetadata({{key, value}}, Durability::Disk);
}

void Project::setMetadata(const std::map<std::string, std::string>& values, Durability durability)
{
    const Place place = Place::of(m_directory);
    const Lock lock = durability == Durability::Disk ? Lock::take(place) : Lock::takeBriefly(place);
    JournalDirectory::recover(place);
    MetadataFile file = load(place.path);
    bool isChanged = false;
    for (const auto& [key, value] : values) {
        isChanged |= setMetadataValue(file.metadata, QString::fromStdString(key),
                                      QString::fromStdString(value));
    }
    if (isChanged) {
        writeMetadata(place, file, durability);
    }
}

void remove(const QString& localPath)
{
    const QString name = QFileInfo(localPath).fileName();
    if (localPath.contains(QChar(0)) || name == QLatin1String("..") || name == QLatin1String(".")) {
        throw InvalidPath("'" + localPath.section(QChar(0), 0, 0).toStdString() +
                          "': it is no path to be deleted");
    }
    const std::string path = absolutePath(localPath).toStdString();
    if (localPath.isEmpty() || !statOf(path)) {
        throw PathNotFound("'" + localPath.toStdString() + "': no such file or directory");
    }
    removeTree(path);
}

} // namespace pk::project
