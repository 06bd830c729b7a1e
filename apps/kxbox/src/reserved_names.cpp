#include "reserved_names.hpp"

#include "failure.hpp"
#include "text.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <QStringList>

#include <algorithm>

namespace kxbox {

namespace {

constexpr std::size_t a_longestFileName = 255;

bool isStoreFile(const QString& name)
{
    return name == QStringLiteral(".kxproject") ||
           (name.startsWith(QLatin1Char('.')) && (name.endsWith(QStringLiteral(".kxlock")) ||
                                                  name.endsWith(QStringLiteral(".kxjournal")) ||
                                                  name.endsWith(QStringLiteral(".kxnew")) ||
                                                  name.endsWith(QStringLiteral(".kxexport"))));
}

} // namespace

std::string reservedReason(const std::string& name, bool topLevel)
{
    static const QStringList files = {QStringLiteral("bxlinfo"), QStringLiteral("box.bhx"),
                                      QStringLiteral("behavior.bhx"), QStringLiteral(".metadata")};
    static const QStringList versionControl = {QStringLiteral(".git"), QStringLiteral(".hg"),
                                               QStringLiteral(".svn")};
    const QString folded = QString::fromStdString(name).toCaseFolded();
    if (topLevel && folded == QLatin1String(KX::BoxConstants::a_boxLibraryTranslations)) {
        return "at the top of a library this is the place of the translations";
    }
    if (files.contains(folded)) {
        return "this is the name of a file of the library";
    }
    if (versionControl.contains(folded)) {
        return "this is the directory of a version-control system";
    }
    if (isStoreFile(folded)) {
        return "this is the name of a file of the project store";
    }
    return {};
}

void checkName(const std::string& name, bool topLevel)
{
    if (name.empty()) {
        throw Failure("a name cannot be empty");
    }
    // The tree takes a number at the end off before it looks for a free one.
    const std::string reason = reservedReason(KX::BoxLibraryNode::unNumberName(name), topLevel);
    if (!reason.empty()) {
        throw Failure("the name '" + name + "' is reserved: " + reason);
    }
    const QString text = QString::fromStdString(name);
    if (std::any_of(text.begin(), text.end(), isControl)) {
        throw Failure("the name '" + printable(name) + "' has control characters");
    }
    const std::size_t bytes = KX::BoxLibraryNode::escapeFileName(name).size();
    if (bytes > a_longestFileName) {
        throw Failure("the name '" + name + "' is too long: its directory would have a name of " +
                      std::to_string(bytes) + " bytes, and file systems take " +
                      std::to_string(a_longestFileName));
    }
}

} // namespace kxbox
