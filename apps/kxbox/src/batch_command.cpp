// batch: several commands on one open library.
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "local_files.hpp"
#include "shell_words.hpp"

#include <QByteArray>

namespace kxbox {

namespace {

Outcome runLine(const std::string& line, Session& session)
{
    const std::vector<std::string> words = shellWords(line);
    return words.empty() ? Outcome() : CommandLine(CommandLine::Place::Batch).run(words, session);
}

Outcome batch(Session& session, const std::string& file)
{
    OpenLibrary& library = session.library();
    const bool isInput = file == "-";
    const std::string name = isInput ? "standard input" : file;
    QByteArray text = isInput ? readStandardInput() : readLocalFile(file);
    if (text.startsWith("\xef\xbb\xbf")) {
        text.remove(0, 3); // the byte order mark of some editors
    }
    const auto lines = text.split('\n');
    Outcome outcome;
    outcome.json = {{"library", library.path()}, {"dryRun", session.dryRun}};
    outcome.json["results"] = Json::array();
    for (int i = 0; i < lines.size(); ++i) {
        const std::string place = name + ":" + std::to_string(i + 1) + ": ";
        try {
            Outcome done = runLine(lines.at(i).toStdString(), session);
            if (!done.json.empty()) {
                done.json.erase("library"); // said once for all
                done.json.erase("dryRun");
                done.json["line"] = i + 1;
                outcome.json["results"].push_back(std::move(done.json));
            }
            outcome.text += done.text;
            outcome.problems = outcome.problems || done.problems;
        } catch (const UsageError& error) {
            throw UsageError(place + error.what());
        } catch (const std::exception& error) {
            throw Failure(place + error.what());
        }
    }
    if (session.dryRun && library.isEdited()) {
        outcome.text += "Nothing was written (--dry-run).\n";
    }
    return outcome;
}

} // namespace

void addBatchCommand(CommandLine& commands)
{
    const auto file = std::make_shared<std::string>();
    CommandOptions options = commands.addAlone(
        "batch", "Runs commands from a file on one open library: all of them, or none",
        [file](Session& session) { return batch(session, *file); });
    commands.addLibrary(options);
    options.argument("FILE", *file,
                     "A command a line, without kxbox and LIB, quoted as for a shell; # begins a "
                     "comment, and - is the standard input");
    commands.addDryRun(options);
}

} // namespace kxbox
