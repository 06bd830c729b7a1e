#include "checks.hpp"
#include "reserved_names.hpp"

#include <QMap>
#include <QSet>

#include <algorithm>

namespace kxbox {

namespace {

constexpr int a_longestName = 255; // bytes

// Nodes

std::string reservedTextOf(const QString& name, bool isAtTop)
{
    const std::string reason = reservedReason(name.toStdString(), isAtTop);
    return reason.empty() ? reason : "the name '" + name.toStdString() + "' is reserved: " + reason;
}

void checkDirectory(const SurveyedNode& node, Problems& problems)
{
    const std::string path = node.path.toStdString();
    const QString fileName = nameOf(node.path);
    const QString name = displayNameOf(fileName);
    const QString canonical = fileNameOf(name);
    const bool isAtTop = !node.path.contains(QLatin1Char('/'));
    for (const QString& reserved : {name, fileName}) {
        const std::string text = reservedTextOf(reserved, isAtTop);
        if (!text.empty()) {
            problems.add({Severity::Error, "reserved-name", path, text});
            return;
        }
    }
    if (canonical.isEmpty()) {
        problems.add({Severity::Warning, "directory-name", path,
                      "this directory stands for a node without a name"});
    } else if (canonical != fileName) {
        problems.add({Severity::Warning, "directory-name", path,
                      "the directory of '" + name.toStdString() + "' should be called '" +
                          canonical.toStdString() +
                          "': it can't keep its place in the order, and its messages get lost "
                          "when it is copied"});
    }
}

void checkSiblings(const SurveyedNode& folder, Problems& problems)
{
    QMap<QString, QString> firstOfName;
    for (const QString& directory : folder.directories) {
        const QString name = displayNameOf(directory);
        const auto first = firstOfName.constFind(name);
        if (first == firstOfName.constEnd()) {
            firstOfName.insert(name, directory);
            continue;
        }
        problems.add({Severity::Warning, "same-name",
                      (prefixOf(folder.path) + directory).toStdString(),
                      "this node is called '" + name.toStdString() + "', as the one in '" +
                          first->toStdString() + "' is"});
    }
}

// Files and directories

/// What Windows takes for a device, whatever follows the first dot.
bool isDevice(const QString& name)
{
    static const QSet<QString> devices = [] {
        QSet<QString> names = {QStringLiteral("CON"),    QStringLiteral("PRN"),
                               QStringLiteral("AUX"),    QStringLiteral("NUL"),
                               QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
        for (const QChar digit : QString::fromUtf8("123456789¹²³")) {
            names << QStringLiteral("COM") + digit << QStringLiteral("LPT") + digit;
        }
        return names;
    }();
    return devices.contains(name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper());
}

QString specialCharactersIn(const QString& name)
{
    QString found;
    for (const QChar character : QStringLiteral("<>:\"\\|?*")) {
        if (name.contains(character)) {
            found += character;
        }
    }
    return found;
}

/// Why not every file system can hold a file of this name.
std::vector<std::string> faultsOf(const QString& name)
{
    std::vector<std::string> faults;
    const auto bytes = name.toUtf8().size();
    if (bytes > a_longestName) {
        faults.push_back("the name has " + std::to_string(bytes) + " bytes, more than " +
                         std::to_string(a_longestName));
    }
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' '))) {
        faults.emplace_back(name.endsWith(QLatin1Char('.')) ? "the name ends with a dot"
                                                            : "the name ends with a space");
    }
    if (isDevice(name)) {
        faults.emplace_back("the name is that of a device on other systems");
    }
    const QString special = specialCharactersIn(name);
    if (!special.isEmpty()) {
        faults.push_back("the name has characters that other systems can't have: " +
                         special.toStdString());
    }
    if (std::any_of(name.begin(), name.end(), isControl)) {
        faults.emplace_back("the name has control characters");
    }
    return faults;
}

/// Siblings that are one file where upper and lower case, or the forms in which Unicode writes
/// accents, are the same.
void checkCollisions(const QStringList& paths, Problems& problems)
{
    QMap<QString, QString> firsts;
    for (const QString& path : paths) {
        const QString composed = nameOf(path).normalized(QString::NormalizationForm_C);
        const QString place = prefixOf(directoryOf(path)) + composed.toCaseFolded();
        const auto first = firsts.constFind(place);
        if (first == firsts.constEnd()) {
            firsts.insert(place, path);
            continue;
        }
        const QString other = nameOf(*first);
        const bool isSpelling = other.normalized(QString::NormalizationForm_C) == composed;
        problems.add(
            {Severity::Warning, "name-case", path.toStdString(),
             "the name differs from '" + other.toStdString() + "' only in " +
                 (isSpelling ? "the way in which accents are written" : "upper and lower case")});
    }
}

} // namespace

void checkNames(const Survey& survey, Problems& problems)
{
    for (const SurveyedNode& node : survey.nodes) {
        if (!node.path.isEmpty()) {
            checkDirectory(node, problems);
        }
        checkSiblings(node, problems);
    }
    for (const QString& path : survey.paths) {
        for (const std::string& fault : faultsOf(nameOf(path))) {
            problems.add({Severity::Warning, "name-portable", path.toStdString(), fault, fault});
        }
    }
    checkCollisions(survey.paths, problems);
}

} // namespace kxbox
