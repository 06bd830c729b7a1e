#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace pk::project {

/// What a program that died had edited in a project and not saved: see ProjectModel::recoverable().
struct UnsavedWork
{
    /// The staging directory that the program left, which tells one piece of work from another.
    QString directory;
    /// The absolute path of the project, behind any symbolic links; empty when it was never saved.
    QString project;
    /// When the last edit was made, UTC.
    QDateTime time;
    /// The edits in words, in their order.
    QStringList edits;
    /// What someone else changed in the project since; empty when the edits fit it as they are.
    QStringList changes;
};

} // namespace pk::project
