#include "set_aside.hpp"

#include "disk.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <fcntl.h>
#include <vector>

namespace pk::project {

namespace {

constexpr std::size_t a_longestName = 255;

bool isInsideCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
}

} // namespace

std::string freePathLike(const std::string& path)
{
    const std::size_t nameAt = path.rfind('/') + 1;
    for (int number = 1;; ++number) {
        const std::string end = ".~" + std::to_string(number) + "~";
        std::size_t size = std::min(path.size(), nameAt + a_longestName - end.size());
        while (size < path.size() && isInsideCharacter(path[size])) {
            --size;
        }
        std::string other = path.substr(0, size) + end;
        if (!statOf(other)) {
            return other;
        }
    }
}

void setAside(const std::string& from, const std::string& path)
{
    const std::string other = freePathLike(path);
    Disk::instance().renameNew(from, other);
    warn(path + ": somebody else put or changed it while a save was unfinished; it is now '" +
             other + "'",
         __FILE__, "setAside", __LINE__);
}

bool isChangedSince(const std::string& directory, std::int64_t since,
                    const std::set<std::string>& touched)
{
    try {
        const Fd fd = openPath(directory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        if (touched.count(directory) == 0 && modificationTime(statOf(fd)) > since) {
            return true;
        }
        const std::vector<std::string> names = namesIn(fd);
        return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            const std::string path = directory + "/" + name;
            const auto info = statOf(path);
            return info && (S_ISDIR(info->st_mode) ? isChangedSince(path, since, touched)
                                                   : modificationTime(*info) > since);
        });
    } catch (const IoError&) {
        return true;
    }
}

} // namespace pk::project
