#pragma once

#include <pk/project/project_model.hpp>

#include <QByteArray>

#include <string>
#include <vector>

/// Files outside of any library.
namespace kxbox {

/// The bytes of a file, or of the standard input. Throws Failure, with the reason, when it can't be
/// read or has more than a gigabyte.
QByteArray readLocalFile(const std::string& path);
QByteArray readStandardInput();

/// Throws Failure when nothing new can be made at `path`: something is there, the directory above
/// is not, or it is in a library.
void requireFreePlace(const std::string& path);
/// The same for what may be there already.
void requirePlace(const std::string& path);

/// What the forms of a library are called, and the project's form for a name.
std::vector<std::string> formatNames();
pk::project::ArchiveFormat projectFormat(const std::string& name);

} // namespace kxbox
