#include "command_line.hpp"

#include "commands.hpp"
#include "failure.hpp"
#include "log_watch.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <utility>

namespace kxbox {

namespace {

const char* const a_about =
    "Shows, edits, translates, checks and exports libraries of robot behaviour boxes.";
const char* const a_footer =
    "A library is a directory or an archive. A node of it is named by the names on the way to it,\n"
    "as in Motion/Walk, with \\/ for a slash in a name; / is the library itself.\n"
    "Exit codes: 0 done, 1 check found problems, 2 bad usage, 3 failed.";

void requireUtf8(const std::vector<std::string>& words)
{
    for (const std::string& word : words) {
        if (word.rfind("\xef\xbb\xbf", 0) == 0) { // QString drops it
            throw UsageError("'" + word + "' begins with a byte order mark");
        }
        if (QString::fromStdString(word).toStdString() != word) {
            throw UsageError("'" + word + "' is not UTF-8");
        }
    }
}

/// `command`, if there is one, begins with a space.
std::string hint(const std::string& command)
{
    return " (see 'kxbox" + command + " --help')";
}

std::string noCommand(const std::string& name)
{
    return "no command '" + name + "'";
}

} // namespace

OpenLibrary& Session::library()
{
    if (!m_library) {
        m_library = std::make_unique<OpenLibrary>(m_path, m_progress);
    }
    m_library->setAddressing(m_fileNames ? OpenLibrary::Addressing::FileNames
                                         : OpenLibrary::Addressing::Names);
    return *m_library;
}

CommandLine::CommandLine(Place place)
    : m_place(place), m_app(std::make_unique<CLI::App>(a_about, "kxbox"))
{
    m_app->require_subcommand(1);
    if (place == Place::Shell) {
        m_app->footer(a_footer);
        m_app->set_version_flag("--version", std::string("kxbox ") + KXBOX_VERSION);
    } else {
        m_app->set_help_flag();
    }
    addShowingCommands(*this);
    addFindCommand(*this);
    addMakingCommands(*this);
    addTreeCommands(*this);
    addCopyCommand(*this);
    addFormCommands(*this);
    addTranslationCommands(*this);
    addCheckCommand(*this);
    addRecoverCommand(*this);
    addBatchCommand(*this);
}

CommandLine::~CommandLine() = default;

Outcome CommandLine::run(std::vector<std::string> words, Session& session)
{
    requireUtf8(words);
    const std::string command = commandOf(words);
    std::transform(words.begin(), words.end(), words.begin(), CommandOptions::protectedWord);
    std::reverse(words.begin(), words.end()); // as CLI11 wants them
    try {
        m_app->parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        Outcome help;
        help.text = m_app->help();
        return help;
    } catch (const CLI::CallForVersion&) {
        Outcome version;
        version.text = m_app->version() + "\n";
        return version;
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what() + (m_place == Place::Shell ? hint(command) : std::string()));
    }
    if (m_place == Place::Shell) {
        session.m_path = m_library;
        session.dryRun = m_dryRun;
    }
    session.m_fileNames = m_fileNames;
    Outcome outcome = m_chosen(session);
    if (m_place == Place::Shell && !m_dryRun && session.m_library &&
        session.m_library->isEdited()) {
        session.m_library->save();
    }
    return outcome;
}

std::string CommandLine::commandOf(const std::vector<std::string>& words) const
{
    const std::string end = m_place == Place::Shell ? hint("") : "";
    std::string command;
    const CLI::App* app = m_app.get();
    for (std::size_t i = 0;; ++i) {
        const auto commands = app->get_subcommands({});
        if (commands.empty()) {
            return command;
        }
        if (i == words.size()) {
            throw UsageError("a command is missing" + end);
        }
        const std::string& name = words[i];
        if (m_place == Place::Shell && name.rfind('-', 0) == 0) {
            return command; // --help
        }
        if (std::find(m_alone.begin(), m_alone.end(), name) != m_alone.end()) {
            throw UsageError("'" + name + "' can't be part of a batch");
        }
        const auto found =
            std::find_if(commands.begin(), commands.end(),
                         [&name](const CLI::App* known) { return known->get_name() == name; });
        if (found == commands.end()) {
            throw UsageError(noCommand(name).append(end));
        }
        app = *found;
        command += " " + name;
    }
}

CommandOptions CommandLine::add(const std::string& name, const std::string& help, Action action)
{
    CLI::App& command = *(m_group != nullptr ? m_group : m_app.get())->add_subcommand(name, help);
    command.callback([this, action = std::move(action)] { m_chosen = action; });
    CommandOptions options(command);
    if (m_place == Place::Shell) {
        options.flag("--json", m_json, "Print JSON");
    } else {
        command.set_help_flag();
    }
    return options;
}

CommandOptions CommandLine::addReading(const std::string& name, const std::string& help,
                                       Action action)
{
    CommandOptions options = add(name, help, std::move(action));
    addLibrary(options);
    return options;
}

CommandOptions CommandLine::addEditing(const std::string& name, const std::string& help, Edit edit)
{
    return addWriting(name, help, [this, edit = std::move(edit)](Session& session) {
        OpenLibrary& library = session.library();
        Changes changes;
        const LogWatch watch;
        edit(library, changes);
        requireNoNodeErrors(watch, library.path());
        if (!changes.isEmpty()) {
            library.setEdited();
        }
        return outcomeOf(changes, library.path(), m_dryRun);
    });
}

CommandOptions CommandLine::addWriting(const std::string& name, const std::string& help,
                                       Action action)
{
    CommandOptions options = addReading(name, help, std::move(action));
    addDryRun(options);
    return options;
}

CommandOptions CommandLine::addAlone(const std::string& name, const std::string& help,
                                     Action action)
{
    if (m_place == Place::Batch) {
        m_alone.push_back(name);
    }
    return add(name, help, std::move(action));
}

void CommandLine::setGroup(const std::string& name, const std::string& help)
{
    m_group = nullptr;
    if (!name.empty()) {
        m_group = m_app->add_subcommand(name, help);
        m_group->require_subcommand(1);
        if (m_place == Place::Batch) {
            m_group->set_help_flag();
        }
    }
}

void CommandLine::addLibrary(CommandOptions& options)
{
    options.flag("--file-names", m_fileNames,
                 "Name nodes by their directories instead of their names");
    if (m_place == Place::Shell) {
        options.argument("LIB", m_library, "The library: a directory or an archive");
    }
}

void CommandLine::addDryRun(CommandOptions& options)
{
    if (m_place == Place::Shell) {
        options.flag("--dry-run", m_dryRun, "Say what would be done, and change nothing");
    }
}

void requireNoNodeErrors(const LogWatch& watch, const std::string& library)
{
    for (const pk::log::Record& record : watch.records()) {
        const bool isAboutOrder = record.message.rfind("Could not write the place of ", 0) == 0;
        if (record.category == "kxboxlibrary" && !isAboutOrder) {
            throw Failure(library + ": " + record.message);
        }
    }
}

Outcome outcomeOf(const Changes& changes, const std::string& library, bool dryRun)
{
    Outcome outcome;
    outcome.json["library"] = library;
    outcome.json["dryRun"] = dryRun;
    outcome.json["changes"] = changes.json();
    outcome.text = changes.isEmpty() ? "Nothing to change.\n" : changes.text();
    if (dryRun && !changes.isEmpty()) {
        outcome.text += "Nothing was written (--dry-run).\n";
    }
    return outcome;
}

} // namespace kxbox
