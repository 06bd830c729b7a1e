#include "behavior_export.hpp"

#include "project_xml.hpp"

#include <kx/serial.hpp>
#include <kxboxlibrary/box_constants.hpp>
#include <pk/os.hpp>
#include <pk/project/behavior_project.hpp>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStringList>
#include <QThread>
#include <boost/make_shared.hpp>

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace KX {

namespace {

/// Not the version of the box files in libraries.
const int a_behaviorBhxVersion = 2;

/// The turn of one program to export to a destination: two at once would take each other's box
/// files for their own, and what the other one made for what they made.
class Turn
{
public:
    /// Waits for whoever has it, some seconds at most. Where nothing can be locked all have it.
    explicit Turn(const QDir& destination)
        : m_directory(::open(destination.absolutePath().toLocal8Bit().constData(),
                             O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        const QDeadlineTimer patience(a_patience);
        while (isOthers() && !patience.hasExpired()) {
            QThread::msleep(1);
        }
    }
    ~Turn()
    {
        if (m_directory >= 0) {
            ::close(m_directory);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    Turn(Turn&&) = delete;
    Turn& operator=(Turn&&) = delete;

    /// Whether another program still has it.
    bool isOthers() const
    {
        return ::flock(m_directory, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }

private:
    static constexpr int a_patience = 5000; // milliseconds, as for a save

    int m_directory;
};

bool exists(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink(); // a dangling link is there, too
}

/// Makes the directory at `path` below `destination` with those above it. A symbolic link among
/// them is refused: it may lead anywhere.
void makeDirectory(const QDir& destination, const QString& path)
{
    bool made = true;
    for (int end = 0; made && end < path.size(); ++end) {
        end = path.indexOf(QLatin1Char('/'), end);
        end = end < 0 ? path.size() : end;
        const QFileInfo info(destination.filePath(path.left(end)));
        made = !info.isSymLink() && (info.isDir() || destination.mkdir(path.left(end)));
    }
    if (!made) {
        throw std::runtime_error("Could not create behavior directory at destination.");
    }
}

/// The directories on the way to `path` that are not there yet, the deepest first.
QStringList missingDirectories(const QDir& destination, const QString& path)
{
    QStringList missing;
    for (QString part = path; !part.isEmpty() && !exists(destination.filePath(part));
         part.truncate(qMax(0, part.lastIndexOf(QLatin1Char('/'))))) {
        missing.append(destination.filePath(part));
    }
    return missing;
}

/// Only a regular file, or a new one: a symbolic link is not followed, and a pipe would make the
/// export wait for whoever is at its other end.
project_xml::Stream open(const QString& path, const char* mode)
{
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile())) {
        return {nullptr, &std::fclose};
    }
    return {pk::os::fopen(path.toUtf8().constData(), mode), &std::fclose};
}

boost::shared_ptr<XmlElement> readBox(const QString& directory)
{
    project_xml::Stream stream = open(directory + QStringLiteral("/box.bhx"), "rb");
    if (!stream) {
        stream = open(directory + QStringLiteral("/behavior.bhx"), "rb");
    }
    if (!stream) {
        throw std::runtime_error("Could not open box behavior.bhx for writing.");
    }
    const auto document = project_xml::readDocument(stream);
    if (!document) {
        throw std::runtime_error("Could not parse box BHX file.");
    }
    const auto root = document->root();
    auto box = root ? root->firstChild(BoxConstants::a_boxBeacon) : boost::shared_ptr<XmlElement>();
    if (!box) {
        throw std::runtime_error("BHX file does not contain a root box.");
    }
    return box;
}

void writeBox(const boost::shared_ptr<XmlElement>& box, const QString& path)
{
    const auto root = boost::make_shared<XmlElement>(BoxConstants::a_projectTag);
    root->setAttribute("xmlns", BoxConstants::a_projectXsd, false);
    root->setAttribute("bhx_version", Serial::save(a_behaviorBhxVersion), false);
    root->addChild(box->clone());
    const QByteArray bytes = project_xml::toBytes(root);

    if (QFileInfo(path).isSymLink()) {
        pk::project::remove(path);
    }
    auto stream = open(path, "wb");
    if (!stream) {
        throw std::runtime_error("Could not open box behavior.bhx for writing.");
    }
    project_xml::write(std::move(stream), bytes, path);
}

void removeIfThere(const QString& path)
{
    try {
        pk::project::remove(path);
    } catch (const std::exception&) {
        // A box file that stays does no harm, and what a failed export leaves is not reported.
    }
}

} // namespace

void writeBehavior(const pk::project::ProjectModel& model, const QString& path,
                   const QDir& destination)
{
    using pk::project::BehaviorProject;
    using pk::project::Durability;

    const QString localPath = destination.filePath(path);
    const bool isNew = !exists(localPath);
    makeDirectory(destination, path);
    model.exportFile(path, localPath, true);

    pk::project::Project project(localPath.toStdString());
    std::map<std::string, std::string> metadata{
        {"Type", BoxConstants::a_behaviorProjectType},
        {"Version", BoxConstants::a_behaviorProjectVersion}};
    if (!isNew) {
        // It stays when its box is refused, and is a behaviour project by then.
        project.setMetadata(metadata, Durability::System);
    }
    const auto box = readBox(localPath);
    metadata[BehaviorProject::a_nameKey] = box->attribute("name", std::string());
    box->setAttribute("name", "root", false);
    removeIfThere(localPath + QStringLiteral("/box.bhx"));
    writeBox(box, localPath + QStringLiteral("/behavior.bhx"));
    project.setMetadata(metadata, Durability::System);
}

bool exportBehavior(const pk::project::ProjectModel& model, const QString& path,
                    const QDir& destination)
{
    const Turn turn(destination);
    if (turn.isOthers()) {
        return false;
    }
    const QStringList missing = missingDirectories(destination, path);
    try {
        writeBehavior(model, path, destination);
        return true;
    } catch (const std::exception&) {
        if (!missing.isEmpty()) {
            removeIfThere(missing.first());
        }
        for (const QString& parent : missing.mid(1)) {
            QDir().rmdir(parent); // fails, as it should, when something is in it
        }
        return false;
    }
}

} // namespace KX
