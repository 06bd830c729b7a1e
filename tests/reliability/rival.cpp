// Edits a library and saves it while another program does the same:
//
//     kx_rival LIBRARY NAME EDIT DELAY ELSEWHERE STATES
//
// It opens the library, makes edit number EDIT, in which NAME can be found, and writes the state
// that the library then has to the file STATES.edited; it prints "ready" and waits for the end of
// its input. DELAY microseconds later it saves, and prints "saved"; or, when that is refused,
// "conflict" or "lock" and the reason. Then it writes the state of its library once more, to
// STATES.refused, saves it at ELSEWHERE and prints "rescued".
#include "library_state.hpp"

#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <boost/make_shared.hpp>

#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace reliability;
using Clock = std::chrono::steady_clock;

constexpr unsigned a_lifeInSeconds = 120; // nobody lets it go

/// Of the kinds of edits, each of which the rival may make as well, the one of a number.
void edit(KX::BoxLibrary& library, const std::string& name, int kind)
{
    KX::BoxLibraryNode& folder = *library.boxRoot()->child("Folder");
    switch (kind) {
    case 0: // the same box
        folder.child("Both")->boxData()->setTooltip(QString::fromStdString(name));
        break;
    case 1: // a box of its own
        folder.child(name.substr(0, 1))->boxData()->setTooltip(QString::fromStdString(name));
        break;
    case 2: // a new box
        folder.appendChild(KX::RootBoxDescription(name, boost::make_shared<KX::XmlElement>("Box")));
        break;
    case 3: // the name of the folder
        folder.setName(name);
        break;
    default: // a file that no node knows
        library.projectModel().writeFile(QString::fromStdString("notes of " + name), "text");
        library.setDirty(true);
    }
}

void waitForEndOfInput()
{
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
}

void waitBusily(std::chrono::microseconds time)
{
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
    }
}

/// Saves the library; otherwise gives why that was refused.
std::string save(KX::BoxLibrary& library)
{
    try {
        library.save();
    } catch (const pk::project::ConflictError& error) {
        return std::string("conflict ") + error.what();
    } catch (const pk::project::LockError& error) {
        return std::string("lock ") + error.what();
    }
    return {};
}

void rescue(KX::BoxLibrary& library, const QString& elsewhere, const QString& states)
{
    if (!library.isDirty()) {
        throw std::runtime_error("the library thinks that it was saved");
    }
    writeState(states + QStringLiteral(".refused"), stateOf(library));
    library.saveTo(elsewhere, QFileInfo(library.path()).isDir() ? KX::BoxLibrary::Directory
                                                                : KX::BoxLibrary::Archive);
    std::cout << "rescued" << std::endl;
}

void run(char** words)
{
    const QString states = QFile::decodeName(words[6]);
    const Library library = openLibrary(QFile::decodeName(words[1]));
    edit(*library, words[2], QByteArray(words[3]).toInt());
    writeState(states + QStringLiteral(".edited"), stateOf(*library));
    std::cout << "ready" << std::endl;
    waitForEndOfInput();
    waitBusily(std::chrono::microseconds(QByteArray(words[4]).toInt()));
    const std::string refusal = save(*library);
    std::cout << (refusal.empty() ? "saved" : refusal.substr(0, refusal.find('\n'))) << std::endl;
    if (!refusal.empty()) {
        rescue(*library, QFile::decodeName(words[5]), states);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 7) {
        std::cerr << "usage: kx_rival LIBRARY NAME EDIT DELAY ELSEWHERE STATES\n";
        return 2;
    }
    ::alarm(a_lifeInSeconds);
    // Each box that is written logs that there was no file ".metadata" of old versions to remove,
    // and the store what the other program removed.
    QLoggingCategory::setFilterRules(
        QStringLiteral("kxboxlibrary.critical=false\npkproject.warning=false"));
    try {
        run(argv);
        return 0;
    } catch (const std::exception& error) {
        std::cout << "failed " << error.what() << std::endl;
        return 1;
    }
}
