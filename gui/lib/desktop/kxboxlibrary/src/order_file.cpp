#include "order_file.hpp"

#include "node_log.hpp"
#include "project_xml.hpp"

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace KX::order_file {

namespace {

const char* const a_folder = "Folder";
const char* const a_node = "Node";
const char* const a_name = "name";

QString pathOf(const QString& prefix)
{
    return prefix + QStringLiteral("bxlinfo");
}

/// Whether a project has a directory, at a cost that does not depend on what is in the project.
bool hasDirectory(pk::project::ProjectModel& model, const QString& path)
{
    try {
        model.move(path, path, false); // changes nothing
    } catch (const pk::project::PathNotFound&) {
        return false;
    } catch (const pk::project::AlreadyExists&) {
        return true;
    }
    return true;
}

/// Whether the order file can be there: its directory is, which writing would make otherwise.
bool hasPlace(pk::project::ProjectModel& model, const QString& prefix)
{
    return prefix.isEmpty() || model.hasFile(pathOf(prefix)) || hasDirectory(model, prefix);
}

} // namespace

Order read(pk::project::ProjectModel& model, const QString& prefix)
{
    const auto file = project_xml::read(model, pathOf(prefix));
    Order order;
    order.isUnread = file.isUnread;
    if (file.root && file.root->beacon() == a_folder) {
        order.bytes = file.bytes;
        for (const auto& node : file.root->children(a_node, std::string())) {
            std::string name;
            if (node->getAttribute(a_name, name)) {
                order.names.push_back(std::move(name));
            }
        }
    }
    return order;
}

void write(pk::project::ProjectModel& model, const QString& prefix,
           const std::vector<std::string>& names, const QByteArray& present)
{
    const auto folder = boost::make_shared<XmlElement>(a_folder);
    for (const std::string& name : names) {
        const auto node = boost::make_shared<XmlElement>(a_node);
        try {
            node->setAttribute(a_name, name, false);
        } catch (const std::invalid_argument& error) {
            logNode(pk::log::Warning,
                    "Could not write the place of '" + name + "' into '" +
                        pathOf(prefix).toStdString() + "', reason: " + error.what(),
                    __func__, __LINE__);
            continue;
        }
        folder->addChild(node);
    }
    QByteArray bytes;
    try {
        bytes = project_xml::toBytes(folder);
    } catch (const std::runtime_error& error) {
        logNode(pk::log::Warning,
                "Could not write the order of " + std::to_string(names.size()) + " nodes into '" +
                    pathOf(prefix).toStdString() + "', reason: " + error.what(),
                __func__, __LINE__);
        return;
    }
    try {
        if (bytes != present && hasPlace(model, prefix)) {
            model.writeFile(pathOf(prefix), bytes);
        }
    } catch (const pk::project::AlreadyExists&) {
        // A directory in its place, or a file in that of its directory.
    } catch (const pk::project::InvalidPath&) {
        // Too long, or not the library's: the folder cannot have one.
    } catch (const pk::project::IoError& error) {
        throw pk::project::IoError("could not write '" + pathOf(prefix).toStdString() +
                                   "': " + error.what());
    }
}

} // namespace KX::order_file
