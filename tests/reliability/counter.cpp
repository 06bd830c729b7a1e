// Counts in a project while others do the same:
//
//     kx_counter PROJECT TIMES
//
// When its input has ended, it adds one to the number in the project's file "count" as many times,
// opening and saving the project each time, again when another program was in the way. It prints
// how often a conflict and how often a lock was that.
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QFile>

#include <exception>
#include <iostream>
#include <unistd.h>

namespace {

constexpr unsigned a_lifeInSeconds = 120; // should it not come to an end

struct Refusals
{
    int conflicts = 0;
    int locks = 0;
};

void add(const QString& path)
{
    pk::project::ProjectModel model(path);
    const int count = model.readFile(QStringLiteral("count")).toInt();
    model.writeFile(QStringLiteral("count"), QByteArray::number(count + 1));
    model.save(QString(), pk::project::ArchiveFormat::Source, true);
}

bool tryToAdd(const QString& path, Refusals& refusals)
{
    try {
        add(path);
        return true;
    } catch (const pk::project::ConflictError&) {
        ++refusals.conflicts;
    } catch (const pk::project::LockError&) {
        ++refusals.locks;
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: kx_counter PROJECT TIMES\n";
        return 2;
    }
    ::alarm(a_lifeInSeconds);
    try {
        char byte = 0;
        while (::read(STDIN_FILENO, &byte, 1) > 0) {
        }
        Refusals refusals;
        for (int left = QByteArray(argv[2]).toInt(); left > 0;) {
            left -= tryToAdd(QFile::decodeName(argv[1]), refusals) ? 1 : 0;
        }
        std::cout << refusals.conflicts << ' ' << refusals.locks << std::endl;
        return 0;
    } catch (const std::exception& error) {
        std::cout << "failed " << error.what() << std::endl;
        return 1;
    }
}
