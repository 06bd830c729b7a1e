#pragma once

#include "disk.hpp"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <string>

namespace pk::project {

/// A project's metadata. No value is empty.
using Metadata = QMap<QString, QString>;

/// The name of the file at a project's top level that holds its metadata: a JSON object of strings,
/// its keys in order. A project without metadata has no such file.
constexpr const char* a_metadataFile = ".kxproject";

/// Sets a value, or removes the key when it is empty; true when that changed anything. Lone
/// surrogates, which UTF-8 cannot have, become "?".
bool setMetadataValue(Metadata& metadata, const QString& key, const QString& value);

/// Reads the file's bytes; none give no metadata. `path` is for the message of the FormatError that
/// anything else than an object of strings is answered with.
Metadata parseMetadata(const QByteArray& bytes, const std::string& path);

/// Reads an open metadata file. Throws as parseMetadata(), IoError, and LimitError for one with
/// more than archive_limits::a_maxMetadataBytes.
Metadata readMetadata(const Fd& file);

/// The file's bytes; the same metadata always gives the same. Empty without metadata.
QByteArray formatMetadata(const Metadata& metadata);

/// The same, but LimitError when readMetadata() would not read them.
QByteArray readableMetadata(const Metadata& metadata);

} // namespace pk::project
