#pragma once

#include "problems.hpp"
#include "survey.hpp"

/// What `check` looks for. Each adds what it finds in a survey.
namespace kxbox {

/// Box files that are no boxes, and boxes that the library can't show whole.
void checkBoxes(const Survey& survey, Problems& problems);

/// Order files against the directories that are there.
void checkOrder(const Survey& survey, Problems& problems);

/// Names of nodes, and of all files and directories, that don't go with the library or with other
/// file systems.
void checkNames(const Survey& survey, Problems& problems);

/// Translation files, and messages that are nobody's.
void checkTranslations(const Survey& survey, Problems& problems);

/// The metadata, and files that belong to nothing.
void checkProject(const Survey& survey, Problems& problems);

} // namespace kxbox
