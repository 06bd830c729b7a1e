#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace kxbox {

/// What one command can be told. Each function adds an argument or option, which puts what the
/// command line says into a variable of the command; the variable must live until then. The only
/// place, with command_line.cpp, that knows the library that parses.
class CommandOptions
{
public:
    explicit CommandOptions(CLI::App& command) : m_command(&command) {}

    /// An argument, which must be there.
    CommandOptions& argument(const std::string& name, std::string& value, const std::string& help);
    CommandOptions& argument(const std::string& name, int& value, const std::string& help);
    /// One or more of them, behind all others.
    CommandOptions& arguments(const std::string& name, std::vector<std::string>& values,
                              const std::string& help);
    CommandOptions& optionalArgument(const std::string& name, std::string& value,
                                     const std::string& help);

    /// An option with a value, such as "--to", which the help calls `valueName`. An optional value
    /// says whether the option was there.
    CommandOptions& option(const std::string& name, const std::string& valueName,
                           std::string& value, const std::string& help);
    CommandOptions& option(const std::string& name, const std::string& valueName,
                           std::optional<std::string>& value, const std::string& help);
    CommandOptions& option(const std::string& name, const std::string& valueName,
                           std::optional<int>& value, const std::string& help);
    /// The same with any number of values.
    CommandOptions& options(const std::string& name, const std::string& valueName,
                            std::vector<std::string>& values, const std::string& help);
    /// Nothing else than one of `choices`.
    CommandOptions& choice(const std::string& name, const std::vector<std::string>& choices,
                           std::string& value, const std::string& help);
    /// Some of `choices`, separated by commas.
    CommandOptions& list(const std::string& name, const std::string& valueName,
                         const std::vector<std::string>& choices, std::vector<std::string>& values,
                         const std::string& help);
    /// A number that is not negative.
    CommandOptions& count(const std::string& name, const std::string& valueName, int& value,
                          const std::string& help);
    CommandOptions& flag(const std::string& name, bool& value, const std::string& help);

    /// The option that was added last must be there.
    CommandOptions& required();

    /// What must be done to every word of a command line before it is parsed, so that a value is
    /// taken as it is, whatever it looks like.
    static std::string protectedWord(std::string word);

private:
    CLI::App* m_command;
    CLI::Option* m_last = nullptr;
};

} // namespace kxbox
