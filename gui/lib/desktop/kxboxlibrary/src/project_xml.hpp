#pragma once

#include <kx/xml_document.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>
#include <boost/shared_ptr.hpp>

#include <cstdio>
#include <memory>

/// XML documents in files.
namespace KX::project_xml {

/// A stream that closes itself.
using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

/// The document in a stream; null when `stream` is null or holds none.
boost::shared_ptr<XmlDocument> readDocument(const Stream& stream);

/// What was found in a file of a project.
struct Reading
{
    /// The root element; null when there is no such file or it holds no document, as a damaged one
    /// in an archive.
    boost::shared_ptr<XmlElement> root;
    /// There is a file that could not be read just now, as without permission or from a bad sector,
    /// or a link: nothing is known of what it holds, so nothing may take its place.
    bool isUnread = false;
    QByteArray bytes; ///< of the file, where it could be read
};

/// Reads a file; the log says why it could not be read.
Reading read(const pk::project::ProjectModel& model, const QString& path);

/// The bytes of a document with this root. Throws std::runtime_error when it cannot be written.
QByteArray toBytes(const boost::shared_ptr<XmlElement>& root);

/// Writes all bytes to `stream`, that of a local file, and closes it. Throws std::runtime_error,
/// which names `path`, when not all could be written.
void write(Stream stream, const QByteArray& bytes, const QString& path);

} // namespace KX::project_xml
