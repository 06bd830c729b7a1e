// convert and export: libraries in another form.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "local_files.hpp"

#include <QDir>

#include <cerrno>
#include <cstring>
#include <map>
#include <sys/stat.h>

namespace kxbox {

namespace {

// convert

struct ConvertArguments
{
    std::string library;
    std::string out;
    std::string format;
};

Outcome convert(const Session& session, const ConvertArguments& arguments)
{
    requireFreePlace(arguments.out);
    // The project alone, so that every file comes along as it is.
    pk::project::ProjectModel model = openProject(arguments.library, session.progress());
    const auto files = model.getFileList(QString(), false, true, false).size();
    if (!session.dryRun) {
        session.progress().begin("converting");
        model.save(QString::fromStdString(arguments.out), projectFormat(arguments.format), false);
    }
    Changes changes;
    changes.add(arguments.format, arguments.library, arguments.out);
    changes.add("files", std::to_string(files));
    return outcomeOf(changes, arguments.library, session.dryRun);
}

// export

/// What tells whether a file was written anew: nothing when there is none.
using Stamp = std::vector<std::int64_t>;

Stamp stampOf(const std::string& file)
{
    struct stat status = {};
    if (::lstat(file.c_str(), &status) != 0) {
        return {};
    }
    return {static_cast<std::int64_t>(status.st_ino), status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec};
}

/// The behaviours of a library in tree order, and where each is exported to.
struct Behavior
{
    std::string address;
    std::string file;
    Stamp before;
};

std::vector<Behavior> behaviorsOf(const OpenLibrary& library, const std::string& destination)
{
    const QSet<QString> paths = library.behaviors(*library->boxRoot());
    std::vector<Behavior> behaviors;
    for (const KX::BoxLibraryNode* const node : OpenLibrary::subtree(*library->boxRoot())) {
        if (paths.contains(node->path())) {
            const std::string file =
                destination + "/" + node->path().toStdString() + "/behavior.bhx";
            behaviors.push_back({library.address(*node), file, stampOf(file)});
        }
    }
    return behaviors;
}

void makeDestination(const std::string& destination)
{
    if (::mkdir(destination.c_str(), 0777) != 0 && errno != EEXIST) {
        throw Failure(destination + ": can't be made: " + std::strerror(errno));
    }
    if (!QFileInfo(QString::fromStdString(destination)).isDir()) {
        throw Failure(destination + ": not a directory");
    }
}

/// A behaviour's project in the library would be written over the behaviour itself, or become a
/// node of it.
void requireOutside(const OpenLibrary& library, const std::string& destination)
{
    const QString place = QFileInfo(library->path()).canonicalFilePath();
    // The nearest directory upward that is there, since the destination need not be.
    QFileInfo at(
        QDir::cleanPath(QFileInfo(QString::fromStdString(destination)).absoluteFilePath()));
    while (!at.exists() && !at.isRoot()) {
        at = QFileInfo(at.path());
    }
    const QString found = at.canonicalFilePath();
    if (found == place || found.startsWith(place + QLatin1Char('/'))) {
        throw Failure(destination + ": it lies in the library itself");
    }
}

Outcome exportBehaviors(Session& session, const std::string& destination)
{
    const OpenLibrary& library = session.library();
    requireOutside(library, destination);
    const std::vector<Behavior> behaviors = behaviorsOf(library, destination);
    if (!session.dryRun) {
        makeDestination(destination);
        session.progress().begin("exporting");
        library->exportBehaviors(QString::fromStdString(destination));
    }
    Json exported = Json::array();
    Json missing = Json::array();
    Outcome outcome;
    for (const Behavior& behavior : behaviors) {
        const Stamp now = stampOf(behavior.file);
        const bool done = session.dryRun || (!now.empty() && now != behavior.before);
        (done ? exported : missing).push_back(behavior.address);
        outcome.text +=
            (done ? "exported      " : "not exported  ") + printable(behavior.address) + "\n";
    }
    outcome.text += counted(static_cast<int>(exported.size()), "behaviour", "behaviours") +
                    (session.dryRun ? " would be exported to " : " exported to ") +
                    printable(destination) + "\n";
    if (!missing.empty()) {
        outcome.failure = destination + ": " + std::to_string(missing.size()) + " of " +
                          counted(static_cast<int>(behaviors.size()), "behaviour", "behaviours") +
                          " could not be exported, as " + missing.front().get<std::string>();
    }
    outcome.json = {{"library", library.path()},
                    {"dryRun", session.dryRun},
                    {"destination", destination},
                    {"exported", std::move(exported)},
                    {"notExported", std::move(missing)}};
    return outcome;
}

} // namespace

void addFormCommands(CommandLine& commands)
{
    const auto converted = std::make_shared<ConvertArguments>();
    CommandOptions convertOptions =
        commands.addAlone("convert", "Writes a library in a form, file for file",
                          [converted](Session& session) { return convert(session, *converted); });
    convertOptions.argument("LIB", converted->library, "The library")
        .argument("OUT", converted->out, "Where to")
        .choice("--format", formatNames(), converted->format, "The form")
        .required();
    commands.addDryRun(convertOptions);

    const auto destination = std::make_shared<std::string>();
    CommandOptions exportOptions = commands.addAlone(
        "export", "Writes each behaviour of a library as a project of its own",
        [destination](Session& session) { return exportBehaviors(session, *destination); });
    commands.addLibrary(exportOptions);
    exportOptions.argument("DESTINATION", *destination,
                           "The directory to write them into; made if there is none");
    commands.addDryRun(exportOptions);
}

} // namespace kxbox
