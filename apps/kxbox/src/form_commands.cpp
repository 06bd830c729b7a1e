// convert and export: libraries in another form.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "local_files.hpp"

#include <QDir>

#include <cerrno>
#include <cstring>
#include <set>
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
    QString path;
    std::string file;
    Stamp before;
};

std::vector<Behavior> behaviorsOf(const OpenLibrary& library, const std::string& destination)
{
    const std::set<QString> paths = library.behaviors(*library->boxRoot());
    std::vector<Behavior> behaviors;
    for (const KX::BoxLibraryNode* const node : OpenLibrary::subtree(*library->boxRoot())) {
        if (paths.count(node->path()) != 0) {
            const std::string file =
                destination + "/" + node->path().toStdString() + "/behavior.bhx";
            behaviors.push_back({library.address(*node), node->path(), file, stampOf(file)});
        }
    }
    return behaviors;
}

void makeDestination(const std::string& destination)
{
    if (::mkdir(destination.c_str(), 0777) != 0 && errno != EEXIST) {
        throw Failure(destination + ": can't be made: " + std::strerror(errno));
    }
}

/// A behaviour's project in the library would be written over the behaviour itself, or become a
/// node of it.
void requireOutside(const OpenLibrary& library, const std::string& destination)
{
    const QFileInfo place(QString::fromStdString(destination));
    if (place.exists() && !place.isDir()) {
        throw Failure(destination + ": not a directory");
    }
    // A library need not have metadata by which requirePlace() knows it.
    const QString top = QFileInfo(library->path()).canonicalFilePath();
    const QString found =
        (place.exists() ? place : QFileInfo(place.absolutePath())).canonicalFilePath();
    if (found == top || found.startsWith(top + QLatin1Char('/'))) {
        throw Failure(destination + ": it lies in the library itself");
    }
}

/// Whether something that is no directory is in the way of a directory below another.
bool isBlocked(const std::string& destination, const QString& path)
{
    QString place = QString::fromStdString(destination);
    for (const QString& name : path.split(QLatin1Char('/'))) {
        place += QLatin1Char('/') + name;
        const QFileInfo info(place);
        if (info.isSymLink() || (info.exists() && !info.isDir())) {
            return true;
        }
    }
    return false;
}

/// Exports, or for a dry run says what would be, and gives whether each was.
std::vector<bool> exported(Session& session, const std::vector<Behavior>& behaviors,
                           const std::string& destination)
{
    if (!session.dryRun) {
        makeDestination(destination);
        session.progress().begin("exporting");
        session.library()->exportBehaviors(QString::fromStdString(destination));
    }
    std::vector<bool> result;
    for (const Behavior& behavior : behaviors) {
        const Stamp now = stampOf(behavior.file);
        result.push_back(session.dryRun ? !isBlocked(destination, behavior.path)
                                        : !now.empty() && now != behavior.before);
    }
    return result;
}

Outcome exportBehaviors(Session& session, const std::string& destination)
{
    const OpenLibrary& library = session.library();
    requireOutside(library, destination);
    requirePlace(destination);
    const std::vector<Behavior> behaviors = behaviorsOf(library, destination);
    const std::vector<bool> done = exported(session, behaviors, destination);
    Json written = Json::array();
    Json missing = Json::array();
    Outcome outcome;
    for (std::size_t i = 0; i < behaviors.size(); ++i) {
        const std::string& address = behaviors[i].address;
        (done[i] ? written : missing).push_back(address);
        outcome.text += (done[i] ? "exported      " : "not exported  ") + printable(address) + "\n";
    }
    outcome.text += counted(static_cast<int>(written.size()), "behaviour", "behaviours") +
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
                    {"exported", std::move(written)},
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
