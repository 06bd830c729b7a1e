#pragma once

#include <pkcore/export.hpp>

#include <string>
#include <vector>

/// Where the framework's files are on this machine.
namespace pk::path {

/// The data files of an application that match a pattern, as absolute UTF-8 paths.
///
/// Looks for `<dir>/<application>/<pattern>` in every generic data location of QStandardPaths, the
/// user's first (XDG_DATA_HOME, then XDG_DATA_DIRS). The result follows that order; within a
/// location it is sorted by the bytes of the relative path. Directories are not listed.
///
/// `pattern` is relative and joined with "/". In each of its components "*" stands for any
/// characters, "?" for one and "[...]" for one of a set; a file name's leading dot must be written
/// out. Characters are those of UTF-8, in every locale. A component that names an existing file as
/// it stands, brackets and all, means that file. A pattern that is absolute, holds a NUL, or has an
/// empty component, "." or "..", matches nothing.
///
/// With `includeShadowed` false a file hides those of the same relative path in later locations.
PKCORE_EXPORT std::vector<std::string> listData(const std::string& application,
                                                const std::string& pattern, bool includeShadowed);

} // namespace pk::path
