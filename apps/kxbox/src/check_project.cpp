#include "checks.hpp"

#include <kxboxlibrary/box_constants.hpp>

namespace kxbox {

namespace {

/// Where a directory project has its metadata.
const char* const a_metadataFile = ".kxproject";

} // namespace

void checkProject(const Survey& survey, Problems& problems)
{
    const auto warn = [&problems](const std::string& key, const std::string& text) {
        problems.add({Severity::Warning, "metadata", a_metadataFile,
                      "the metadata \"" + key + "\" " + text, key});
    };
    const QString expected = QString::fromLatin1(KX::BoxConstants::a_boxLibraryProjectVersion);
    if (survey.type.isEmpty()) {
        warn("Type", "is missing");
    }
    if (survey.version.isEmpty()) {
        warn("Version", "is missing");
    } else if (survey.version != expected) {
        warn("Version",
             "is '" + survey.version.toStdString() + "', not '" + expected.toStdString() + "'");
    }
    for (const SurveyedNode& folder : survey.nodes) {
        const QStringList strays = folder.wasBox ? QStringList() : folder.strays;
        for (const QString& stray : strays) {
            problems.add({Severity::Note, "stray", stray.toStdString(), "it belongs to no node"});
        }
    }
}

} // namespace kxbox
