#pragma once

#include <pk/project/error.hpp>
#include <pkproject/export.hpp>

#include <QString>

#include <map>
#include <string>

namespace pk::project {

/// How safe something is when the call that wrote it returns.
enum class Durability
{
    Disk,   ///< it outlives a crash of the machine
    System, ///< it outlives the program; the machine may lose it until the system has written it
};

/// A project directory on disk, seen through its metadata. The metadata is the one that a
/// ProjectModel opened on the directory has, and the other way round. Nothing is kept in memory: a
/// value is read from disk when it is asked for, and copies stand for the same directory.
class PKPROJECT_EXPORT Project
{
public:
    /// The project in a local directory (UTF-8), which need not hold any metadata yet. Completes or
    /// undoes a save that was interrupted there. Throws PathNotFound when there is no such
    /// directory, LockError and IoError.
    explicit Project(const std::string& directory);

    /// The value of a key (UTF-8); empty when absent. Throws FormatError when the metadata on disk
    /// is damaged, LimitError when it has more bytes than archive_limits::a_maxMetadataBytes,
    /// IoError when it can't be read.
    std::string getMetadata(const std::string& key) const;

    /// Sets a value; an empty one removes the key. It is on disk when this returns, and a crash
    /// leaves the old metadata or the new. Throws as getMetadata() does, and LockError.
    void setMetadata(const std::string& key, const std::string& value);

    /// Sets several values with one write: all or none are there when it fails. Throws as the
    /// other. With Durability::System a crash of the machine may leave a project without metadata.
    void setMetadata(const std::map<std::string, std::string>& values, Durability durability);

private:
    std::string m_directory;
};

/// Deletes a local file, or a directory with its contents. A symbolic link is deleted itself.
/// Throws PathNotFound when nothing is there, InvalidPath for a path that holds a NUL or ends in
/// "." or
/// "..", IoError when it can't be deleted; part of a directory may be gone then.
PKPROJECT_EXPORT void remove(const QString& localPath);

} // namespace pk::project
