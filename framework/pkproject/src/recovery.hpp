#pragma once

#include "store.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/unsaved_work.hpp>

#include <QList>
#include <QString>

#include <memory>

namespace pk::project {

/// What is behind ProjectModel::recoverable(), recover() and discard(), which describe them.
QList<UnsavedWork> findUnsavedWork(const QString& path);
std::unique_ptr<Store> recoverWork(const UnsavedWork& work, bool evenIfChanged,
                                   const ArchiveLimits& limits);
void discardWork(const UnsavedWork& work);

} // namespace pk::project
