#include "project_path.hpp"

#include "metadata.hpp"

#include <pk/project/error.hpp>

#include <algorithm>

namespace pk::project {

namespace {

// What Linux takes as a path; it also bounds how deep directories nest.
constexpr std::size_t a_longestPath = 4096;
constexpr std::size_t a_deepest = 256;

} // namespace

ProjectPath parsePath(const QString& path)
{
    const std::string text = path.toStdString();
    if (path.startsWith(QLatin1Char('/'))) {
        throw InvalidPath("'" + text + "': a path in a project is relative");
    }
    if (path.contains(QChar(0))) {
        throw InvalidPath("'" + text.substr(0, text.find('\0')) + "': a path has no NUL character");
    }
    const bool isAscii =
        std::all_of(path.begin(), path.end(), [](QChar c) { return c.unicode() < 0x80; });
    if (text.size() > a_longestPath || (!isAscii && textOf(text) != path)) {
        throw InvalidPath("'" + text.substr(0, a_longestPath) + "': " +
                          (text.size() > a_longestPath ? "the path is too long"
                                                       : "the path is no valid Unicode"));
    }
    ProjectPath parts;
    parts.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '/')) + 1);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('/', begin), text.size());
        const auto part = std::string_view(text).substr(begin, end - begin);
        if (part == "..") {
            throw InvalidPath("'" + text + "': a path in a project has no '..'");
        }
        if (beginsWithMark(part)) {
            throw InvalidPath("'" + text +
                              "': a name in a project has no byte order mark in front");
        }
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        begin = end + 1;
    }
    if (parts.size() > a_deepest) {
        throw InvalidPath("'" + text + "': the path has more than " + std::to_string(a_deepest) +
                          " components");
    }
    return parts;
}

bool isTooLong(std::size_t bytes, std::size_t names)
{
    return bytes > a_longestPath || names > a_deepest;
}

QString textOf(const std::string& utf8)
{
    // In front, a byte order mark would be dropped.
    return beginsWithMark(utf8) ? QString::fromStdString("/" + utf8).mid(1)
                                : QString::fromStdString(utf8);
}

bool beginsWithMark(std::string_view name)
{
    return name.substr(0, 3) == "\xef\xbb\xbf";
}

std::string joinPath(const ProjectPath& path)
{
    std::string result;
    for (const std::string& part : path) {
        if (!result.empty()) {
            result += '/';
        }
        result += part;
    }
    return result;
}

std::string joinPath(const std::string& directory, const std::string& name)
{
    return directory.empty() ? name : directory + "/" + name;
}

bool isReservedName(std::string_view name)
{
    return name == ".git" || name == ".hg" || name == ".svn" || name == a_metadataFile;
}

bool isReserved(const ProjectPath& path)
{
    return !path.empty() && isReservedName(path.front());
}

} // namespace pk::project
