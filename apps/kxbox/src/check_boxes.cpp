#include "checks.hpp"

namespace kxbox {

namespace {

void checkBox(const SurveyedNode& box, Problems& problems)
{
    const std::string path = box.path.toStdString();
    if (box.path.isEmpty()) {
        problems.add({Severity::Error,
                      "box-at-top",
                      {},
                      "the library is one box, and every directory in it a resource of that box"});
    }
    for (const QString& bitmap : box.missingBitmaps) {
        problems.add({Severity::Warning, "bitmap", path,
                      "the bitmap '" + bitmap.toStdString() + "' is no resource of the box",
                      bitmap.toStdString()});
    }
    if (box.refusedPorts > 0) {
        const std::string many = counted(box.refusedPorts, "input, output or parameter has",
                                         "inputs, outputs or parameters have");
        problems.add({Severity::Warning, "port", path,
                      many + " no name, or a number (id) that is bad or taken, and can't be used"});
    }
}

} // namespace

void checkBoxes(const Survey& survey, Problems& problems)
{
    for (const SurveyedNode& node : survey.nodes) {
        if (node.isBox) {
            checkBox(node, problems);
        }
        if (node.hasBothBoxFiles) {
            problems.add({Severity::Warning, "box-file-twice",
                          (prefixOf(node.path) + QStringLiteral("box.bhx")).toStdString(),
                          "'behavior.bhx' beside it counts, and the next edit of the box "
                          "overwrites this file"});
        }
        if (const auto& refused = node.refusedBox) {
            problems.add({Severity::Error,
                          "box-file",
                          refused->path.toStdString(),
                          refused->reason,
                          {},
                          refused->line,
                          refused->column});
        }
    }
}

} // namespace kxbox
