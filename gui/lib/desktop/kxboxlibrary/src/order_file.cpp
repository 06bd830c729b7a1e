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

} // namespace

std::vector<std::string> read(pk::project::ProjectModel& model, const QString& prefix)
{
    std::vector<std::string> names;
    const auto folder = project_xml::read(project_xml::open(model, pathOf(prefix), "rb"));
    if (folder && folder->beacon() == a_folder) {
        for (const auto& node : folder->children(a_node, std::string())) {
            std::string name;
            if (node->getAttribute(a_name, name)) {
                names.push_back(std::move(name));
            }
        }
    }
    return names;
}

void write(pk::project::ProjectModel& model, const QString& prefix,
           const std::vector<std::string>& names)
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
    const QByteArray bytes = project_xml::toBytes(folder);
    project_xml::write(project_xml::open(model, pathOf(prefix), "wb"), bytes, pathOf(prefix));
}

} // namespace KX::order_file
