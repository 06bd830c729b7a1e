// Edits a library and saves it, again and again, until it is killed:
//
//     kx_edit_loop LIBRARY SEED STATES
//
// Before each save it writes the state that is to be saved to the file STATES/NUMBER and then
// announces it with the line "save NUMBER"; after it, it prints "saved NUMBER MICROSECONDS". Its
// first lines are "opening" and, when the state that was found is in STATES/0, "opened". So whoever
// kills it knows which states can be on disk.
#include "library_editor.hpp"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace reliability;
using pk::project::ArchiveFormat;
using pk::project::ProjectModel;
using Clock = std::chrono::steady_clock;

constexpr unsigned a_lifeInSeconds = 300; // nobody kills it
constexpr unsigned a_edits = 6;
constexpr unsigned a_replacing = 5; // one save in so many

void announce(const std::string& line)
{
    std::cout << line << std::endl;
    if (!std::cout) {
        throw std::runtime_error("nobody reads what is announced");
    }
}

/// Puts the library's project, as one that was never there, in the place of what is there.
void replace(const QString& path, const ProjectModel& model)
{
    ProjectModel copy;
    copy.importFile(model, QString(), QString(), true);
    for (const char* const key : {"Type", "Version", "title", a_stateKey}) {
        copy.setMetadata(QString::fromLatin1(key), model.getMetadata(QString::fromLatin1(key)));
    }
    copy.save(path, QFileInfo(path).isDir() ? ArchiveFormat::Directory : ArchiveFormat::Zip, true);
}

void loop(const QString& path, unsigned seed, const QString& states)
{
    std::mt19937 random(seed);
    announce("opening");
    Library library = openLibrary(path);
    writeState(states + QStringLiteral("/0"), stateOf(*library));
    announce("opened");
    for (int number = 1;; ++number) {
        LibraryEditor editor(*library, random);
        for (auto left = random() % a_edits; left != 0; --left) {
            editor.edit();
        }
        library->projectModel().setMetadata(QString::fromLatin1(a_stateKey),
                                            QStringLiteral("%1 of seed %2").arg(number).arg(seed));
        const bool replaces = random() % a_replacing == 0;
        writeState(states + QLatin1Char('/') + QString::number(number), stateOf(*library));
        announce("save " + std::to_string(number));
        const auto begin = Clock::now();
        replaces ? replace(path, library->projectModel()) : library->save();
        const std::chrono::duration<double, std::micro> duration = Clock::now() - begin;
        announce("saved " + std::to_string(number) + " " +
                 std::to_string(static_cast<long>(duration.count())));
        if (replaces) {
            library = openLibrary(path);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: kx_edit_loop LIBRARY SEED STATES\n";
        return 2;
    }
    ::alarm(a_lifeInSeconds);
    // Each box that is written logs that there was no file ".metadata" of old versions to remove.
    QLoggingCategory::setFilterRules(QStringLiteral("kxboxlibrary.critical=false"));
    try {
        loop(QFile::decodeName(argv[1]), static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)),
             QFile::decodeName(argv[3]));
    } catch (const std::exception& error) {
        std::cout << "failed " << error.what() << std::endl;
    }
    return 1;
}
