#include "checks.hpp"

#include <QMap>

#include <set>

namespace kxbox {

namespace {

const char* const a_fileKind = "order-file";
const char* const a_entryKind = "order-entry";

/// Of a folder whose order file can be read.
void checkEntries(const SurveyedNode& folder, Problems& problems)
{
    const std::string path = folder.order.path.toStdString();
    // What entries can stand for. A directory that is not named as the library would name it has
    // none, which checkNames() says.
    QMap<QString, bool> isListed;
    std::set<QString> misnamed;
    for (const QString& directory : folder.directories) {
        const QString canonical = fileNameOf(displayNameOf(directory));
        if (canonical == directory) {
            isListed.insert(directory, false);
        } else {
            misnamed.insert(canonical);
        }
    }
    std::set<QString> told;
    const auto warn = [&](const std::string& name, const QString& directory, const char* text) {
        if (told.insert(directory).second) {
            problems.add({Severity::Warning, a_entryKind, path, "'" + name + text, name});
        }
    };
    for (const std::string& name : folder.order.names) {
        const QString directory = fileNameOf(QString::fromStdString(name));
        const auto found = isListed.find(directory);
        if (found != isListed.end() && !*found) {
            *found = true;
        } else if (misnamed.count(directory) == 0) {
            warn(name, directory,
                 found != isListed.end() ? "' is listed twice" : "' has no directory");
        }
    }
    if (folder.order.nameless > 0) {
        problems.add({Severity::Warning, a_entryKind, path,
                      counted(folder.order.nameless, "entry has", "entries have") + " no name"});
    }
    for (const QString& directory : folder.directories) {
        if (!isListed.value(directory, true)) {
            problems.add({Severity::Warning, "order-directory",
                          (prefixOf(folder.path) + directory).toStdString(),
                          "not listed in " + path});
        }
    }
}

} // namespace

void checkOrder(const Survey& survey, Problems& problems)
{
    for (const SurveyedNode& folder : survey.nodes) {
        const OrderFile& order = folder.order;
        if (folder.isBox) {
            continue;
        }
        if (order.damage) {
            problems.add({Severity::Warning,
                          a_fileKind,
                          order.path.toStdString(),
                          order.damage->reason,
                          {},
                          order.damage->line,
                          order.damage->column});
        } else if (order.exists) {
            checkEntries(folder, problems);
        } else if (order.isPossible && !folder.wasBox) {
            problems.add({Severity::Warning, a_fileKind, order.path.toStdString(),
                          "the order file is missing"});
        }
        for (const QString& path : folder.passedOver) {
            problems.add({Severity::Warning, "order-directory", path.toStdString(),
                          "not listed in " + order.path.toStdString() +
                              ", and the library passes over an unlisted directory of this name"});
        }
    }
}

} // namespace kxbox
