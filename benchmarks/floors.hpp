#pragma once

#include <string>

/// The least work that the jobs of a library need, with plain calls alone.
namespace floors {

/// Walks a directory, reads every XML file that is no translation file, and parses it. Gives their
/// number.
int openDirectory(const std::string& path);

/// Inflates the same files of an archive and parses them.
int openArchive(const std::string& path);

/// Replaces a file so that a crash leaves the old one or the new one: writes a new one, syncs it,
/// renames it and syncs the directory.
void replaceSynced(const std::string& path, const std::string& bytes);

/// Replaces an entry of an archive and syncs the new archive.
void replaceEntry(const std::string& archive, const std::string& name, const std::string& bytes);

/// Copies a tree and syncs the file system.
void copySynced(const std::string& from, const std::string& to);

/// Compresses the files of a directory into a new archive.
void compress(const std::string& directory, const std::string& archive);

/// Parses a translation file with pugixml and writes it to another file.
void rewriteXml(const std::string& from, const std::string& to);

/// Makes the directories of a tree and hard links to its files.
void link(const std::string& from, const std::string& to);

/// Copies a tree without syncing, parses the file `xml` of each directory that has it, and writes
/// it beside that.
void copyAndRewrite(const std::string& from, const std::string& to, const std::string& xml);

/// Reads a whole file.
std::string read(const std::string& path);

} // namespace floors
