#pragma once

#include <QString>

#include <string>

namespace pk::project {

/// The absolute form of a local path, without a trailing "/".
QString absolutePath(const QString& path);

/// A place on the local disk where a project is, or is to be saved: where it really is, behind any
/// symbolic links, and what the store keeps beside it while it works on it.
struct Place
{
    /// The place that an absolute path means. What the path names need not exist, but the directory
    /// above it must (IoError).
    static Place of(const std::string& path);

    std::string path;
    std::string parent;
    std::string name;

    /// The file whose lock keeps other programs out.
    std::string lockFile() const { return beside("lock"); }
    /// The directory in which a save to a directory in place keeps what it needs to be finished.
    std::string journal() const { return beside("journal"); }
    /// The file or directory that a save builds before it takes the place over.
    std::string fresh() const { return beside("new"); }

    /// Whether `other` lies inside this place, or is the same.
    bool contains(const Place& other) const;

private:
    std::string beside(const char* what) const;
};

} // namespace pk::project
