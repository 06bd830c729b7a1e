#pragma once

#include "changes.hpp"
#include "command_options.hpp"
#include "open_library.hpp"
#include "progress.hpp"
#include "text.hpp"

#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kxbox {

/// What is to be printed when a command is done.
struct Outcome
{
    Json json = Json::object(); ///< for --json
    std::string text;           ///< for people; ends with a line feed unless it is empty
    bool problems = false;      ///< check found some: exit code 1
    std::string failure;        ///< what failed though the rest was done: exit code 3
};

class LogWatch;

/// What a command works with.
class Session
{
public:
    explicit Session(Progress& progress) : m_progress(progress) {}

    bool dryRun = false;
    Progress& progress() const { return m_progress; }

    /// The library that the command line names, opened at the first call.
    OpenLibrary& library();

private:
    friend class CommandLine;

    Progress& m_progress;
    std::string m_path;
    bool m_fileNames = false;
    std::unique_ptr<OpenLibrary> m_library;
};

/// The commands: their options, their help, and what they do. One object parses one command line.
class CommandLine
{
public:
    using Action = std::function<Outcome(Session&)>;

    /// Where commands stand: on the command line, which names the library, or on a line of a batch,
    /// which has opened it, prints for all of its lines, and saves when all are done.
    enum class Place
    {
        Shell,
        Batch
    };

    explicit CommandLine(Place place);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    CommandLine(CommandLine&&) = delete;
    CommandLine& operator=(CommandLine&&) = delete;

    Place place() const { return m_place; }

    /// Parses the words of a command line, without the program's name, does what they say in
    /// `session`, and saves the library if the command edited it; on a line of a batch it does not.
    /// Throws UsageError for bad words, and what fails.
    Outcome run(std::vector<std::string> words, Session& session);
    /// Whether the words last parsed ask for the machine form.
    bool json() const { return m_json; }

    // For the functions in commands.hpp, each of which adds some commands.

    /// A command on an opened library that changes nothing.
    CommandOptions addReading(const std::string& name, const std::string& help, Action action);
    /// A command that notes what it changes in a library.
    using Edit = std::function<void(OpenLibrary&, Changes&)>;
    CommandOptions addEditing(const std::string& name, const std::string& help, Edit edit);
    /// A command that knows --dry-run and makes its own outcome.
    CommandOptions addWriting(const std::string& name, const std::string& help, Action action);
    /// A command that can't be on a line of a batch; its options but --json are its own business,
    /// the library too.
    CommandOptions addAlone(const std::string& name, const std::string& help, Action action);

    /// Commands that are added from now on are subcommands of `name`, until the next call; none for
    /// an empty name.
    void setGroup(const std::string& name, const std::string& help);

    /// The argument LIB, and --file-names.
    void addLibrary(CommandOptions& options);
    /// --dry-run.
    void addDryRun(CommandOptions& options);

private:
    /// The command at the front of the words, each of its own with a space in front: " tr add".
    /// Nothing for an option in its place. Throws UsageError when there is none.
    std::string commandOf(const std::vector<std::string>& words) const;
    CommandOptions add(const std::string& name, const std::string& help, Action action);

    Place m_place;
    std::vector<std::string> m_alone; // the commands that a batch can't have
    std::unique_ptr<CLI::App> m_app;
    CLI::App* m_group = nullptr; // of m_app
    std::string m_library;
    bool m_fileNames = false;
    bool m_dryRun = false;
    bool m_json = false;
    Action m_chosen;
};

/// Throws Failure for what the tree only logs, such as a directory that can't be moved. Not for a
/// name from disk that an order file can't hold: nothing is lost by that, and nobody could rename
/// the node otherwise.
void requireNoNodeErrors(const LogWatch& watch, const std::string& library);

/// What `changes` look like as the outcome of a command.
Outcome outcomeOf(const Changes& changes, const std::string& library, bool dryRun);

} // namespace kxbox
