#include "box_file.hpp"

#include "node_log.hpp"
#include "project_xml.hpp"

#include <kx/serial.hpp>
#include <kxboxlibrary/box_constants.hpp>

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace KX::box_file {

namespace {

const auto a_boxFile = QStringLiteral("box.bhx");
const auto a_behaviorFile = QStringLiteral("behavior.bhx");
const auto a_metadataFile = QStringLiteral(".metadata");

QString pathOf(const pk::project::ProjectModel& model, const QString& prefix)
{
    const QString behavior = prefix + a_behaviorFile;
    return model.hasFile(behavior) ? behavior : prefix + a_boxFile;
}

bool isAccepted(const XmlElement& root)
{
    using namespace BoxConstants;
    if (root.attribute("bhx_version", a_defaultBhxVersion) != a_currentBhxVersion) {
        return false;
    }
    if (root.beacon() == a_projectTag) {
        const auto xmlns = root.attribute("xmlns", std::string());
        return xmlns == a_projectXsd || xmlns == a_legacyProjectXsd;
    }
    return root.beacon() == a_boxBhxBeacon;
}

/// Nothing writes this file any more, but old libraries have it.
void removeMetadata(pk::project::ProjectModel& model, const QString& prefix)
{
    try {
        model.remove(prefix + a_metadataFile);
    } catch (const std::exception& error) {
        logNode(pk::log::Error,
                "Could not remove '" + (prefix + a_metadataFile).toStdString() +
                    "' file, reason: " + error.what(),
                "saveBox", __LINE__);
    }
}

} // namespace

Box load(const pk::project::ProjectModel& model, const QString& prefix)
{
    const QString path = pathOf(model, prefix);
    const QString own = prefix + a_boxFile;
    if (path != own && model.isLeftOut(own)) { // which nothing may be written to
        return {nullptr, true};
    }
    const auto file = project_xml::read(model, path);
    const auto box = file.root && isAccepted(*file.root)
                         ? file.root->firstChild(BoxConstants::a_boxBeacon)
                         : boost::shared_ptr<XmlElement>();
    return {box, file.isUnread || (!box && model.isLeftOut(prefix + a_behaviorFile))};
}

QByteArray loadBytes(const pk::project::ProjectModel& model, const QString& prefix)
{
    return model.readFile(pathOf(model, prefix));
}

void save(pk::project::ProjectModel& model, const QString& prefix,
          const boost::shared_ptr<XmlElement>& box)
{
    const QString path = prefix + a_boxFile;
    if (!box) {
        throw std::invalid_argument("no box to write into '" + path.toStdString() +
                                    "': the box file is missing or cannot be read");
    }
    const auto root = boost::make_shared<XmlElement>(BoxConstants::a_boxBhxBeacon);
    root->setAttribute("bhx_version", Serial::save(BoxConstants::a_currentBhxVersion), true);
    box->setAttribute("name", "root", false);
    root->addChild(box);
    // Made before any file is touched, because this can fail.
    const QByteArray bytes = project_xml::toBytes(root);

    model.mkdir(prefix, true);
    try {
        // Not fopen(), which would leave a part of the file when the disk is full.
        model.writeFile(path, bytes);
    } catch (const pk::project::AlreadyExists&) {
        // A directory in its place: the box cannot have a file.
    }
    const QString behavior = prefix + a_behaviorFile;
    if (model.hasFile(behavior)) {
        model.remove(behavior);
    }
    removeMetadata(model, prefix);
}

bool isOwn(const QString& file)
{
    return file == a_boxFile || file == a_behaviorFile || file == a_metadataFile;
}

} // namespace KX::box_file
