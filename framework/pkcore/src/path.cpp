#include <pk/path.hpp>

#include <QStandardPaths>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <fnmatch.h>
#include <set>
#include <system_error>

namespace pk::path {

namespace {

namespace fs = std::filesystem;

// Makes fnmatch() read UTF-8 and order sets by code point for the length of a scope, whatever the
// locale of the program is.
class Utf8Matching
{
public:
    Utf8Matching() : m_previous(::uselocale(utf8())) {}
    ~Utf8Matching() { ::uselocale(m_previous); }
    Q_DISABLE_COPY_MOVE(Utf8Matching)

private:
    // Null on a system without the locale: uselocale() then leaves the program's in place.
    static locale_t utf8()
    {
        static const locale_t locale =
            ::newlocale(LC_CTYPE_MASK | LC_COLLATE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    const locale_t m_previous;
};

std::string join(std::string directory, const std::string& name)
{
    directory += '/';
    directory += name;
    return directory;
}

// The components of a relative path, or none when one of them can't be part of it.
std::vector<std::string> components(const std::string& path)
{
    std::vector<std::string> result;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        std::string component = path.substr(begin, end - begin);
        if (component.empty() || component == "." || component == ".." ||
            component.find('\0') != std::string::npos) {
            return {};
        }
        result.push_back(std::move(component));
        begin = end + 1;
    }
    return result;
}

// The names in `directory` that a pattern component stands for. A directory that can't be read
// holds none.
std::vector<std::string> matches(const std::string& directory, const std::string& component)
{
    std::error_code error;
    if (fs::exists(join(directory, component), error)) {
        return {component};
    }
    std::vector<std::string> names;
    for (fs::directory_iterator it(directory, error), end; !error && it != end;
         it.increment(error)) {
        std::string name = it->path().filename().string();
        if (::fnmatch(component.c_str(), name.c_str(), FNM_NOESCAPE | FNM_PERIOD) == 0) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

// The files below `root` that the pattern stands for, as sorted relative paths.
std::vector<std::string> expand(const std::string& root, const std::vector<std::string>& pattern)
{
    std::vector<std::string> found{""};
    for (const std::string& component : pattern) {
        std::vector<std::string> next;
        for (const std::string& parent : found) {
            for (const std::string& name : matches(join(root, parent), component)) {
                next.push_back(parent.empty() ? name : join(parent, name));
            }
        }
        found = std::move(next);
    }
    const auto isNoFile = [&root](const std::string& path) {
        std::error_code error;
        return !fs::is_regular_file(join(root, path), error);
    };
    found.erase(std::remove_if(found.begin(), found.end(), isNoFile), found.end());
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace

std::vector<std::string> listData(const std::string& application, const std::string& pattern,
                                  bool includeShadowed)
{
    const std::vector<std::string> parts = components(pattern);
    if (parts.empty() || components(application).empty()) {
        return {};
    }
    const Utf8Matching utf8;
    std::vector<std::string> result;
    std::set<std::string> seen;
    const QStringList locations =
        QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (const QString& location : locations) {
        const std::string root = join(location.toStdString(), application);
        for (const std::string& path : expand(root, parts)) {
            if (includeShadowed || seen.insert(path).second) {
                result.push_back(join(root, path));
            }
        }
    }
    return result;
}

} // namespace pk::path
