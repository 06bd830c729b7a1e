#pragma once

#include <pk/project/project_model.hpp>

#include <QHash>
#include <QSet>
#include <QString>

namespace kxbox {

/// What lies in the directory of a library and is no part of its project, because it could not be
/// read when the library was opened, or is a link or no file: nobody knows what is in it, so it
/// must not count as gone. An archive has nothing of the kind.
class LeftOut
{
public:
    /// Compares the project with its source on the disk, as they are when a directory is first
    /// asked for. Refers to `model`.
    explicit LeftOut(const pk::project::ProjectModel& model);

    /// Whether `path`, or a directory above it, was left out.
    bool has(const QString& path) const;
    /// Whether the box file of a box at `path` was left out, or a directory above it.
    bool hasBoxAt(const QString& path) const;
    /// Whether a directory, or anything below it, was left out.
    bool hasAnyIn(const QString& directory) const;

private:
    bool isInProject(const QString& path) const;

    const pk::project::ProjectModel& m_model;
    QString m_source;
    mutable QHash<QString, QSet<QString>> m_names; // in directories that were asked for
};

} // namespace kxbox
