#pragma once

#include <pk/project/project_model.hpp>

#include <QByteArray>

#include <string>
#include <vector>

/// Files outside of any library.
namespace kxbox {

/// The bytes of a file. Throws Failure, with the reason, when it can't be read.
QByteArray readLocalFile(const std::string& path);

/// Throws Failure when something is at `path`.
void requireFreePlace(const std::string& path);

/// What the forms of a library are called, and the project's form for a name.
std::vector<std::string> formatNames();
pk::project::ArchiveFormat projectFormat(const std::string& name);

} // namespace kxbox
