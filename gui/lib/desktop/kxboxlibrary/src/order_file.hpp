#pragma once

#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// The order file of a folder, "bxlinfo": an XML document "Folder" with a child "Node" for each of
/// the folder's children, whose attribute "name" is the child's display name.
namespace KX::order_file {

/// "bxlinfo".
QString fileName();

/// What an order file says: nothing when there is no such file or it is no order file.
struct Order
{
    std::vector<std::string> names;
    QByteArray bytes;      ///< of the file
    bool isUnread = false; ///< there is a file that could not be read (project_xml::Reading)
};

/// Reads the order file of the directory with this prefix (its path with a "/" behind it unless it
/// is empty).
Order read(pk::project::ProjectModel& model, const QString& prefix);

/// Writes the order file; nothing when it holds the same bytes, as far as the caller knows these,
/// when its directory is missing or when something is in its place. A name that XML can't hold is
/// left out, and more nodes than are read again (XmlDocument) leave the file as it was, each with a
/// warning in the log. Throws pk::project::IoError, which names the file, when it can't be written,
/// as on a full disk; the one before stays then.
void write(pk::project::ProjectModel& model, const QString& prefix,
           const std::vector<std::string_view>& names, const QByteArray& present = {});

} // namespace KX::order_file
