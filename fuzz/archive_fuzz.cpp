// Bytes as an archive: it opens or is refused, its files can be read or are damaged, and it can be
// saved elsewhere, in both forms, with what can be read of it.
#include "libraries.hpp"

#include <pk/project/error.hpp>

using namespace fuzz;
using pk::project::ArchiveFormat;

namespace {

const bool a_prepared = prepare();

/// False when a file is damaged.
bool readAll(const ProjectModel& model)
{
    bool whole = true;
    for (const QString& path : model.getFileList(QString(), false, true, false)) {
        try {
            QFile file(model.getFileLocalPath(path));
            require(file.open(QIODevice::ReadOnly), "a file's local path can be read");
            require(file.readAll() == model.readFile(path), "both ways of reading give the same");
        } catch (const pk::project::Error&) {
            whole = false;
            require(model.readFile(path).isEmpty(), "nothing is read of a damaged file");
        }
    }
    return whole;
}

/// False when it was refused.
bool saveTo(const QString& path, const QString& source, ArchiveFormat format, const Contents& files)
{
    ProjectModel model(source);
    try {
        model.save(path, format, false);
    } catch (const pk::project::Error&) {
        require(!QFileInfo::exists(path), "a save that failed leaves nothing");
        require(contentsOf(model) == files, "a save that failed leaves the model");
        return false;
    }
    requireSame(printed(contentsOf(model)), printed(files), "a save leaves the model's files");
    requireSame(printed(contentsOf(ProjectModel(path))), printed(files),
                "a saved project has the archive's files");
    return true;
}

void checkSource(const QString& source, const TemporaryDirectory& directory)
{
    ProjectModel model(source);
    const bool whole = readAll(model);
    const Contents files = contentsOf(model);
    const bool saved = saveTo(directory.path("directory"), source, ArchiveFormat::Directory, files);
    require(saved || !whole || !files.empty(), "an empty project can be saved");
    if (saveTo(directory.path("copy.zip"), source, ArchiveFormat::Zip, files) && saved && whole) {
        // Where both forms took everything, an edit in place does too.
        model.writeFile(q("fuzz/new"), "new");
        model.save(QString(), ArchiveFormat::Source, true);
        Contents edited = files;
        edited["fuzz"] = "<directory>";
        edited["fuzz/new"] = "new";
        requireSame(printed(contentsOf(ProjectModel(source))), printed(edited),
                    "an archive is saved in place");
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TemporaryDirectory directory;
    const QString source = directory.path("source.zip");
    putLocal(source, bytesOf(data, size));
    try {
        checkSource(source, directory);
    } catch (const pk::project::Error&) {
        // Refused, which must not take anything else than an Error.
    }
    return 0;
}
