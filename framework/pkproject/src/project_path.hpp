#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pk::project {

/// A normalised path inside a project: the names from its top down, in UTF-8. None for the top.
using ProjectPath = std::vector<std::string>;

/// Normalises a path as ProjectModel describes it; throws InvalidPath for one it refuses.
ProjectPath parsePath(const QString& path);

/// Whether a path of so many bytes and names is one that parsePath() refuses as too long.
bool isTooLong(std::size_t bytes, std::size_t names);

/// A text in UTF-8, with a byte order mark at its beginning, which QString takes for none of it.
QString textOf(const std::string& utf8);

/// Whether a name begins with a byte order mark. Much that reads text takes such a name for the one
/// without the mark, so that no project has one.
bool beginsWithMark(std::string_view name);

/// The names joined with "/".
std::string joinPath(const ProjectPath& path);

/// `directory` and `name` joined with "/", or `name` alone when `directory` is empty.
std::string joinPath(const std::string& directory, const std::string& name);

/// Whether an entry of this name at a project's top level is no part of the project.
bool isReservedName(std::string_view name);

/// Whether the path lies at or below a reserved name of the top level.
bool isReserved(const ProjectPath& path);

} // namespace pk::project
