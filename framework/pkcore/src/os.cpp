#include <pk/os.hpp>

#include <cerrno>
#include <string>

namespace pk::os {

FILE* fopen(const char* path, const char* mode)
{
    if (path == nullptr || mode == nullptr || *mode == '\0') {
        errno = EINVAL;
        return nullptr;
    }
    std::string closedOnExec(mode);
    closedOnExec.insert(1, 1, 'e');
    return std::fopen(path, closedOnExec.c_str());
}

} // namespace pk::os
