#pragma once

#include <pk/project/project_model.hpp>

#include <QString>

#include <string>
#include <vector>

/// The order file of a folder, "bxlinfo": an XML document "Folder" with a child "Node" for each of
/// the folder's children, whose attribute "name" is the child's display name.
namespace KX::order_file {

/// The names in the order file of the directory with this prefix (its path with a "/" behind it
/// unless it is empty). None when there is no such file or it is no order file.
std::vector<std::string> read(pk::project::ProjectModel& model, const QString& prefix);

/// Writes the order file; nothing when its directory is missing or something is in its place. A
/// name that XML can't hold is left out, and more nodes than are read again (XmlDocument) leave the
/// file as it was, each with a warning in the log. Throws pk::project::IoError,
/// which names the file, when it can't be written, as on a full disk; the one before stays then.
void write(pk::project::ProjectModel& model, const QString& prefix,
           const std::vector<std::string>& names);

} // namespace KX::order_file
