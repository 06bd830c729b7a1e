#pragma once

#include <kx/xml_element.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>
#include <boost/shared_ptr.hpp>

/// The file that describes a box: "behavior.bhx" where there is one, else "box.bhx".
///
/// Its root is a "KinestraBox", or a "KinestraProject" of a known namespace, with the version in
/// "bhx_version"; the box itself is the root's child "Box". `prefix` is the path of the box's
/// directory with a "/" behind it unless it is empty. What the operations do is said at loadBox(),
/// loadBoxData() and saveBox() of BoxLibraryNode.
namespace KX::box_file {

/// What load() found.
struct Box
{
    boost::shared_ptr<XmlElement> element; ///< null where there is no box
    bool isUnread = false; ///< there is a file that could not be read (project_xml::Reading)
};

/// The element is part of a document that nobody else has.
Box load(const pk::project::ProjectModel& model, const QString& prefix);
QByteArray loadBytes(const pk::project::ProjectModel& model, const QString& prefix);
void save(pk::project::ProjectModel& model, const QString& prefix,
          const boost::shared_ptr<XmlElement>& box);

/// Whether a file of the directory belongs to the box itself, so that it is no resource.
bool isOwn(const QString& file);

} // namespace KX::box_file
