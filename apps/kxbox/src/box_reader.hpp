#pragma once

#include <kx/xml_element.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <boost/shared_ptr.hpp>

#include <stdexcept>

namespace kxbox {

/// A box file that the library does not take for one. what() is the reason, without the place.
struct BadBoxFile : std::runtime_error
{
    BadBoxFile(const std::string& reason, int atLine = 0, int atColumn = 0)
        : std::runtime_error(reason), line(atLine), column(atColumn)
    {
    }
    /// The reason with the place, where it has one: "line 3, column 7: reason".
    std::string text() const;

    int line;   ///< from 1 on; 0 where the reason has no place
    int column; ///< in characters, as `line`
};

/// The root element of an XML file. Throws BadBoxFile, with the place, for what is none.
boost::shared_ptr<KX::XmlElement> readXml(const QByteArray& bytes);

/// The box element in the bytes of a box file. Throws BadBoxFile for what
/// KX::BoxLibraryNode::loadBox() refuses, and says why.
boost::shared_ptr<KX::XmlElement> readBox(const QByteArray& bytes);

/// Whether the box file of a box with this directory was left out when the project was opened, so
/// that nobody knows what is in it.
bool isBoxLeftOut(const pk::project::ProjectModel& model, const QString& directory);

} // namespace kxbox
