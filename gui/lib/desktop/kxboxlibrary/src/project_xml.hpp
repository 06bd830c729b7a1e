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

/// A file of a project, to be read (ProjectModel::fopen()); null when there is none, when it is
/// damaged or when it may not be read. Throws pk::project::IoError when it can't be unpacked from
/// its archive, so that a full disk does not make a box look like a folder. None is written through
/// a stream: ProjectModel::writeFile() does it whole or not at all.
Stream open(pk::project::ProjectModel& model, const QString& path);

/// Whether a project has a file that can't be read now, as without permission: what is in it is not
/// known, so nothing may take its place. A damaged one in an archive is as good as none.
bool isUnreadable(pk::project::ProjectModel& model, const QString& path);

/// The document in a stream; null when `stream` is null or holds none.
boost::shared_ptr<XmlDocument> readDocument(const Stream& stream);

/// The root element of that document; null where there is none.
boost::shared_ptr<XmlElement> read(const Stream& stream);

/// All bytes of a stream that can be read again from its start.
QByteArray bytes(const Stream& stream);

/// The bytes of a document with this root. Throws std::runtime_error when it cannot be written.
QByteArray toBytes(const boost::shared_ptr<XmlElement>& root);

/// Writes all bytes to `stream`, that of a local file, and closes it. Throws std::runtime_error,
/// which names `path`, when not all could be written.
void write(Stream stream, const QByteArray& bytes, const QString& path);

} // namespace KX::project_xml
