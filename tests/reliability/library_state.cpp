#include "library_state.hpp"

#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <QCryptographicHash>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace reliability {

namespace {

using Lines = std::vector<std::string>;

void addMetadata(std::ostream& state, const pk::project::ProjectModel& files)
{
    for (const char* const key : {"Type", "Version", "title", a_stateKey}) {
        state << key << ' ' << files.getMetadata(QString::fromLatin1(key)).toStdString() << '\n';
    }
}

void addFiles(std::ostream& state, const pk::project::ProjectModel& files)
{
    for (const QString& path : files.getFileList(QString(), true, true, false)) {
        if (files.hasFile(path)) {
            const QByteArray bytes = files.readFile(path);
            state << "file " << path.toStdString() << ' ' << bytes.size() << ' '
                  << QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().toStdString()
                  << '\n';
        } else {
            state << "directory " << path.toStdString() << '\n';
        }
    }
}

void addNode(std::ostream& state, const KX::BoxLibraryNode& node)
{
    state << "node " << node.path().toStdString() << " '" << node.name() << '\'';
    if (const auto data = node.boxData()) {
        state << " '" << data->tooltip().toStdString() << "' "
              << QStringList(data->bitmaps()).join(QLatin1Char('|')).toStdString() << ' '
              << data->bitmapExpanded();
    }
    state << '\n';
    for (const KX::BoxLibraryNode* const child : node.children()) {
        addNode(state, *child);
    }
}

void addMessages(std::ostream& state, const KX::BoxLibrary& library)
{
    const auto translators = library.translations();
    QStringList languages = translators.keys();
    languages.sort();
    for (const QString& language : std::as_const(languages)) {
        const auto translator = translators.value(language);
        state << "language " << language.toStdString() << '\n';
        for (const auto& message : translator.messages()) {
            state << "message " << message.context().toStdString() << '|'
                  << message.source().toStdString() << '|' << message.translation().toStdString()
                  << '\n';
        }
    }
}

std::string stateOf(KX::BoxLibrary& library, const pk::project::ProjectModel& files)
{
    std::ostringstream state;
    addMetadata(state, files);
    addNode(state, *library.boxRoot());
    addMessages(state, library);
    addFiles(state, files);
    return state.str();
}

Lines sortedLines(const std::string& text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

Library openLibrary(const QString& path)
{
    return Library(new KX::BoxLibrary(pk::project::ProjectModel(path)));
}

std::string stateOf(KX::BoxLibrary& library)
{
    return stateOf(library, library.projectModel());
}

std::string stateAt(const QString& path)
{
    const Library library = openLibrary(path);
    return stateOf(*library, pk::project::ProjectModel(path));
}

void writeState(const QString& path, const std::string& state)
{
    QFile file(path);
    const auto size = static_cast<qint64>(state.size());
    if (!file.open(QIODevice::WriteOnly) || file.write(state.data(), size) != size ||
        !file.flush()) {
        throw std::runtime_error(path.toStdString() + " can't be written");
    }
}

std::string difference(const std::string& expected, const std::string& found)
{
    if (expected == found) {
        return {};
    }
    const Lines before = sortedLines(expected);
    const Lines after = sortedLines(found);
    Lines missing;
    Lines added;
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                        std::back_inserter(missing));
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                        std::back_inserter(added));
    std::ostringstream text;
    for (const std::string& line : missing) {
        text << "- " << line << '\n';
    }
    for (const std::string& line : added) {
        text << "+ " << line << '\n';
    }
    return missing.empty() && added.empty() ? "the order differs\n" : text.str();
}

} // namespace reliability
