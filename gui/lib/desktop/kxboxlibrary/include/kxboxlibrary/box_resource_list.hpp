#pragma once

#include <pk/project/project_model.hpp>

#include <QString>
#include <QStringList>

#include <utility>

namespace KX {

/// Where a box's resources are: files beside its box file, such as pictures and sounds.
///
/// The project is not owned and must live as long as anyone looks into it. The list is a snapshot:
/// it follows neither the project nor the box.
class BoxResourceList
{
public:
    BoxResourceList(pk::project::ProjectModel* model, QString directory, QStringList names)
        : projectModel(model), path(std::move(directory)), files(std::move(names))
    {
    }

    pk::project::ProjectModel* projectModel; ///< the project that holds the files; may be null
    QString path;      ///< the box's directory in the project; empty for the project's top
    QStringList files; ///< paths relative to `path`
};

} // namespace KX
