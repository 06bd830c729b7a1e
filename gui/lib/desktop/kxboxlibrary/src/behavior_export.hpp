#pragma once

#include <pk/project/project_model.hpp>

#include <QDir>
#include <QString>

namespace KX {

/// Writes the box at `path` of a library's project into the directory at `path` below `destination`
/// as a behaviour project. A failure of any kind that is a std::exception removes the directories
/// that were made for it and is not reported: false is the result. Whoever else exports a behaviour
/// to `destination` is waited for, up to five seconds; then that is the failure.
bool exportBehavior(const pk::project::ProjectModel& model, const QString& path,
                    const QDir& destination);

/// The same without the last sentence: what fails is thrown, with whatever was made left there. A
/// new directory gets its metadata last, all at once; nobody is to see one that fails.
void writeBehavior(const pk::project::ProjectModel& model, const QString& path,
                   const QDir& destination);

} // namespace KX
