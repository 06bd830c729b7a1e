#pragma once

#include <filesystem>
#include <string>

/// Libraries of any size, the same bytes each time, written without the libraries that are
/// measured.
namespace generated {

struct Size
{
    int boxes = 10'000;
    int boxesOfFolder = 20;
    int messages = 40'000; ///< of each of the two languages; 0: no translation files
};

/// Writes the library directory `path`, which does not exist yet: a folder "All" that holds folders
/// of boxes. One box in fifty is large; ten thousand have 37 MB.
void writeLibrary(const std::filesystem::path& path, const Size& size);

/// Writes a library of `count` behaviours in such folders, each with two other files.
void writeBehaviors(const std::filesystem::path& path, int count);

} // namespace generated
