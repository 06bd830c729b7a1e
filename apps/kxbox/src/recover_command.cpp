// recover: what a program that died had not saved.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "open_library.hpp"

#include <pk/project/project_model.hpp>

#include <QDateTime>
#include <QFileInfo>
#include <nlohmann/json.hpp>

namespace kxbox {

namespace {

using pk::project::ProjectModel;
using pk::project::UnsavedWork;

struct Arguments
{
    std::string library;
    std::optional<std::string> from;
    bool discard = false;
    bool force = false;
};

/// What people call a piece of work: the last two names of its directory.
std::string nameOf(const UnsavedWork& work)
{
    const QFileInfo directory(work.directory);
    return (QFileInfo(directory.path()).fileName() + QLatin1Char('/') + directory.fileName())
        .toStdString();
}

std::string describe(const UnsavedWork& work)
{
    return nameOf(work) + " of " + work.time.toString(Qt::ISODate).toStdString() + ", " +
           std::to_string(work.edits.size()) + (work.edits.size() == 1 ? " edit" : " edits");
}

/// The work that the arguments mean; nothing when there is none at all.
std::optional<UnsavedWork> choose(const Arguments& arguments)
{
    const QList<UnsavedWork> found =
        ProjectModel::recoverable(QString::fromStdString(arguments.library));
    std::string known;
    for (const UnsavedWork& work : found) {
        if (nameOf(work) == arguments.from) {
            return work;
        }
        known.append(known.empty() ? "" : "; ").append(describe(work));
    }
    if (arguments.from) {
        throw Failure(arguments.library + ": no unsaved work '" + *arguments.from + "'" +
                      (known.empty() ? "" : " among " + known));
    }
    if (found.size() > 1) {
        throw Failure(arguments.library +
                      ": several programs left unsaved work, so --from must name one: " + known);
    }
    return found.isEmpty() ? std::nullopt : std::optional<UnsavedWork>(found.first());
}

void recover(const UnsavedWork& work, bool force, Progress& progress)
{
    progress.begin("recovering");
    ProjectModel model = ProjectModel::recover(work, force);
    model.save(QString(), pk::project::ArchiveFormat::Source, true);
    ProjectModel::discard(work);
}

std::vector<std::string> texts(const QStringList& list)
{
    std::vector<std::string> result;
    for (const QString& text : list) {
        result.push_back(text.toStdString());
    }
    return result;
}

std::string textOf(const UnsavedWork& work, const Arguments& arguments, bool isDryRun)
{
    std::string text = (arguments.discard ? "discard " : "recover ") + describe(work) + ":\n";
    for (const QString& edit : work.edits) {
        text.append("  ").append(printable(edit.toStdString())).append("\n");
    }
    for (const QString& change : work.changes) {
        text.append("changed by someone else since: ")
            .append(printable(change.toStdString()))
            .append("\n");
    }
    return isDryRun ? text + "Nothing was written (--dry-run).\n" : text;
}

Outcome recoverUnsaved(const Session& session, const Arguments& arguments)
{
    if (!arguments.discard) { // which may be all that can be done with a library that is gone
        openProject(arguments.library, session.progress());
    }
    const std::optional<UnsavedWork> work = choose(arguments);
    Outcome outcome;
    outcome.json = {{"library", arguments.library}, {"dryRun", session.dryRun}};
    outcome.json["work"] = nullptr;
    if (!work) {
        outcome.text = "There is no unsaved work.\n";
        return outcome;
    }
    if (!session.dryRun && arguments.discard) {
        ProjectModel::discard(*work);
    } else if (!session.dryRun) {
        recover(*work, arguments.force, session.progress());
    }
    outcome.json["work"] = {{"name", nameOf(*work)},
                            {"time", work->time.toString(Qt::ISODate).toStdString()},
                            {"edits", texts(work->edits)},
                            {"changes", texts(work->changes)},
                            {"discarded", arguments.discard}};
    outcome.text = textOf(*work, arguments, session.dryRun);
    return outcome;
}

} // namespace

void addRecoverCommand(CommandLine& commands)
{
    const auto arguments = std::make_shared<Arguments>();
    CommandOptions options = commands.addAlone(
        "recover", "Gives back what a program that died had edited and not saved",
        [arguments](Session& session) { return recoverUnsaved(session, *arguments); });
    options.argument("LIB", arguments->library, "The library")
        .option("--from", "NAME", arguments->from, "Which, when several programs left some")
        .flag("--force", arguments->force, "Also when someone else changed the library since")
        .flag("--discard", arguments->discard, "Remove it instead");
    commands.addDryRun(options);
}

} // namespace kxbox
