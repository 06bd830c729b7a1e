// The project store at work: what is edited, what reaches the disk when, and what happens when
// something goes wrong.
#include <pk/project/project_model.hpp>

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

using pk::project::ArchiveFormat;
using pk::project::ProjectModel;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

void show(const char* what, const ProjectModel& model)
{
    std::cout << what << ":";
    for (const QString& file : model.getFileList(QString(), false, true, false)) {
        std::cout << "  " << file.toStdString();
    }
    std::cout << "\n";
}

void makeLibrary(const QString& path)
{
    ProjectModel model;
    model.setMetadata(q("title"), q("Demo"));
    for (const char* const box : {"Motions/Walk", "Motions/Run", "Speech/Say"}) {
        model.writeFile(q(box) + q("/box.bhx"), QByteArray("<Box name=\"") + box + "\"/>\n");
    }
    model.save(path, ArchiveFormat::Directory, false);
    show("A new project, saved as a directory", model);
}

void editLibrary(const QString& path)
{
    ProjectModel model(path);
    model.move(q("Motions"), q("Moves"), false);
    model.remove(q("Speech"));
    model.importFile(model, q("Moves/Walk"), q("Moves/Walk (2)"), true);
    show("Edited in private", model);
    show("On disk before the save", ProjectModel(path));
    model.save(QString(), ArchiveFormat::Source, true);
    show("On disk after it", ProjectModel(path));
}

void convertLibrary(const QString& path, const QString& archive)
{
    ProjectModel model(path);
    model.save(archive, ArchiveFormat::Zip, false);
    show("The same as one archive", ProjectModel(archive));
}

void editFromTwoSides(const QString& path)
{
    ProjectModel mine(path);
    ProjectModel theirs(path);
    theirs.writeFile(q("theirs"), "1");
    theirs.save(QString(), ArchiveFormat::Source, true);
    mine.writeFile(q("mine"), "2");
    try {
        mine.save(QString(), ArchiveFormat::Source, true);
    } catch (const pk::project::ConflictError& error) {
        std::cout << "A conflict: " << error.what() << "\n";
    }
    mine.save(path + q(" of mine"), ArchiveFormat::Directory, false);
    show("So mine is saved elsewhere", mine);
}

// Kills a program that saves without end, and looks at what it leaves.
void killWhileSaving(const QString& path)
{
    int whole = 0;
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            ProjectModel model(path);
            for (int i = 0;; ++i) {
                model.writeFile(q("a"), QByteArray::number(i));
                model.writeFile(q("b"), QByteArray::number(i));
                model.save(QString(), ArchiveFormat::Source, true);
            }
        }
        ::usleep(static_cast<useconds_t>(20'000 + 1'700 * round));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const ProjectModel model(path);
        whole += model.readFile(q("a")) == model.readFile(q("b")) ? 1 : 0;
    }
    std::cout << "Killed " << rounds << " times while saving two files that must agree: " << whole
              << " times they did\n";
}

} // namespace

int main()
{
    const QTemporaryDir place;
    const QString library = place.filePath(q("Library"));
    try {
        makeLibrary(library);
        editLibrary(library);
        convertLibrary(library, place.filePath(q("Library.bxl")));
        editFromTwoSides(library);
        killWhileSaving(library);
    } catch (const pk::project::Error& error) {
        std::cerr << "store_demo: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
