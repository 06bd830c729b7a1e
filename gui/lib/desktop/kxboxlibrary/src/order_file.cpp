#include "order_file.hpp"

#include "node_log.hpp"
#include "project_xml.hpp"

#include <kx/xml_value.hpp>

#include <utility>

namespace KX::order_file {

namespace {

const char* const a_folder = "Folder";
const char* const a_node = "Node";
const char* const a_name = "name";

QString pathOf(const QString& prefix)
{
    return prefix + fileName();
}

/// Of a shorter order file XmlDocument reads all nodes.
constexpr std::size_t a_surelyRead = 1'000'000;

struct Text
{
    std::string xml;
    std::vector<std::string> leftOut; ///< names that XML can't hold
};

/// The document as XmlDocument would write it. It is written anew with each child that comes, two
/// million lines for two thousand of them.
Text toText(const std::vector<std::string_view>& names)
{
    constexpr std::size_t a_usualLine = 48;
    const std::string node = std::string("  <") + a_node + " " + a_name + "=\"";
    const std::string first = ">\n" + node;
    const std::string next = "\" />\n" + node;
    Text text;
    text.xml.reserve(a_usualLine * (names.size() + 3));
    (text.xml += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<") += a_folder;
    const std::size_t empty = text.xml.size();
    for (const std::string_view name : names) {
        const std::size_t before = text.xml.size();
        text.xml += before == empty ? first : next;
        if (!appendXmlValue(text.xml, name)) {
            text.xml.resize(before);
            text.leftOut.emplace_back(name);
        }
    }
    if (text.xml.size() == empty) {
        text.xml += " />\n";
    } else {
        ((text.xml += "\" />\n</") += a_folder) += ">\n";
    }
    return text;
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

QString fileName()
{
    return QStringLiteral("bxlinfo");
}

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
           const std::vector<std::string_view>& names, const QByteArray& present)
{
    const auto warn = [&prefix](const std::string& what, const std::string& reason) {
        logNode(pk::log::Warning,
                "Could not write the " + what + " into '" + pathOf(prefix).toStdString() +
                    "', reason: " + reason,
                "write", __LINE__);
    };
    const Text text = toText(names); // before anything is logged, after which no node may be left
    for (const std::string& name : text.leftOut) {
        warn("place of '" + name + "'",
             std::string("characters that XML cannot hold in the attribute \"") + a_name +
                 "\" of element \"" + a_node + "\"");
    }
    std::string reason;
    if (text.xml.size() > a_surelyRead &&
        !XmlDocument::loadFromXmlBytes(text.xml.data(), text.xml.size(), &reason, nullptr)) {
        warn("order of " + std::to_string(names.size()) + " nodes", reason);
        return;
    }
    const auto bytes = QByteArray::fromRawData(text.xml.data(), static_cast<int>(text.xml.size()));
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
