#pragma once

#include <pk/project/project_model.hpp>

#include <QByteArray>

#include <string>

/// Files outside of any library.
namespace kxbox {

/// The bytes of a file. Throws Failure, with the reason, when it can't be read.
QByteArray readLocalFile(const std::string& path);

/// Throws Failure when something is at `path`.
void requireFreePlace(const std::string& path);

/// The project's form for "directory" and "archive".
pk::project::ArchiveFormat projectFormat(const std::string& name);

} // namespace kxbox
