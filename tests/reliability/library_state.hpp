#pragma once

#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QString>

#include <memory>
#include <string>

namespace reliability {

using Library = std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter>;

/// Opens a library at a local path.
Library openLibrary(const QString& path);

/// The key of metadata that makes every state of a library another one.
constexpr const char* a_stateKey = "State";

/// All that a library is, as lines of text: metadata, tree, box data, messages, and every directory
/// and file of its project with size and checksum. Where the library is does not matter, so that
/// different programs can compare what they see.
std::string stateOf(KX::BoxLibrary& library);

/// The state of the library on disk. The files are those that lie there, not what opening makes of
/// them.
std::string stateAt(const QString& path);

/// Writes a state to a file; it is there whole when this returns. Throws std::runtime_error.
void writeState(const QString& path, const std::string& state);

/// Where two states differ, for people; nothing when they don't.
std::string difference(const std::string& expected, const std::string& found);

} // namespace reliability
