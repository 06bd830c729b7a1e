#include "place.hpp"

#include "disk.hpp"

#include <pk/project/error.hpp>

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace pk::project {

namespace {

// Names beside a project are this much longer than its own at most.
constexpr std::size_t a_longestName = 200;

struct Free
{
    void operator()(char* text) const { std::free(text); }
};

// Empty when there is nothing at the path.
std::string realPath(const std::string& path)
{
    const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
    if (!real && errno != ENOENT) {
        throwErrno(path);
    }
    return real ? std::string(real.get()) : std::string();
}

} // namespace

QString absolutePath(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

Place Place::of(const std::string& path)
{
    std::string real = realPath(path);
    if (real.empty()) {
        const std::size_t slash = path.rfind('/');
        const std::string above = path.substr(0, slash == 0 ? 1 : slash);
        real = realPath(above);
        if (real.empty()) {
            throw IoError(path + ": the directory '" + above + "' does not exist");
        }
        real += (real == "/" ? "" : "/") + path.substr(slash + 1);
    }
    const std::size_t slash = real.rfind('/');
    Place place;
    place.path = real;
    place.parent = real.substr(0, slash == 0 ? 1 : slash);
    place.name = real.substr(slash + 1);
    if (place.name.empty()) {
        throw InvalidPath(path + ": the top of the file system is no place for a project");
    }
    return place;
}

bool Place::contains(const Place& other) const
{
    return other.path == path || other.path.compare(0, path.size() + 1, path + "/") == 0;
}

std::string Place::beside(const char* what) const
{
    std::string base = name;
    if (base.size() > a_longestName) {
        base = QCryptographicHash::hash(QByteArray::fromStdString(name), QCryptographicHash::Sha1)
                   .toHex()
                   .toStdString();
    }
    return (parent == "/" ? "" : parent) + "/." + base + ".kx" + what;
}

} // namespace pk::project
