#include "command_options.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <utility>

namespace kxbox {

namespace {

// Put in front of a value that means something to CLI11, which takes "[a,b]" for a list and "++"
// for the end of a command, and taken off again when it has been parsed.
constexpr char a_mark = '\x1f';

std::string unmarked(std::string word)
{
    return !word.empty() && word.front() == a_mark ? word.substr(1) : std::move(word);
}

/// An option whose values are texts, taken as they are.
template <class Value>
CLI::Option* addText(CLI::App& command, const std::string& name, const std::string& valueName,
                     Value& value, const std::string& help)
{
    return command.add_option(name, value, help)->type_name(valueName)->transform(unmarked);
}

std::string joined(const std::vector<std::string>& choices)
{
    std::string text;
    for (const std::string& choice : choices) {
        text += (text.empty() ? "" : "|") + choice;
    }
    return text;
}

/// What is wrong with a number that is not to be negative.
std::string requireCount(const std::string& number)
{
    return number.rfind('-', 0) == 0 ? number + " is less than 0" : std::string();
}

} // namespace

std::string CommandOptions::protectedWord(std::string word)
{
    const bool isList = word.size() > 1 && word.front() == '[' && word.back() == ']';
    const bool endsCommand = word == "++";
    const bool isMarked = !word.empty() && word.front() == a_mark; // must not lose it
    return isList || endsCommand || isMarked ? a_mark + std::move(word) : std::move(word);
}

CommandOptions& CommandOptions::argument(const std::string& name, std::string& value,
                                         const std::string& help)
{
    m_last = addText(*m_command, name, "", value, help)->required();
    return *this;
}

CommandOptions& CommandOptions::argument(const std::string& name, int& value,
                                         const std::string& help)
{
    m_last = m_command->add_option(name, value, help)->type_name("")->required();
    return *this;
}

CommandOptions& CommandOptions::arguments(const std::string& name, std::vector<std::string>& values,
                                          const std::string& help)
{
    m_last = addText(*m_command, name, "", values, help)->required();
    return *this;
}

CommandOptions& CommandOptions::optionalArgument(const std::string& name, std::string& value,
                                                 const std::string& help)
{
    m_last = addText(*m_command, name, "", value, help);
    return *this;
}

CommandOptions& CommandOptions::option(const std::string& name, const std::string& valueName,
                                       std::string& value, const std::string& help)
{
    m_last = addText(*m_command, name, valueName, value, help);
    return *this;
}

CommandOptions& CommandOptions::option(const std::string& name, const std::string& valueName,
                                       std::optional<std::string>& value, const std::string& help)
{
    m_last = addText(*m_command, name, valueName, value, help);
    return *this;
}

CommandOptions& CommandOptions::option(const std::string& name, const std::string& valueName,
                                       std::optional<int>& value, const std::string& help)
{
    m_last = m_command->add_option(name, value, help)->type_name(valueName);
    return *this;
}

CommandOptions& CommandOptions::options(const std::string& name, const std::string& valueName,
                                        std::vector<std::string>& values, const std::string& help)
{
    m_last = addText(*m_command, name, valueName, values, help);
    return *this;
}

CommandOptions& CommandOptions::choice(const std::string& name,
                                       const std::vector<std::string>& choices, std::string& value,
                                       const std::string& help)
{
    m_last = addText(*m_command, name, joined(choices), value, help)->check(CLI::IsMember(choices));
    return *this;
}

CommandOptions& CommandOptions::list(const std::string& name, const std::string& valueName,
                                     const std::vector<std::string>& choices,
                                     std::vector<std::string>& values, const std::string& help)
{
    m_last = m_command->add_option(name, values, help)
                 ->type_name(valueName)
                 ->delimiter(',')
                 ->check(CLI::IsMember(choices));
    return *this;
}

CommandOptions& CommandOptions::count(const std::string& name, const std::string& valueName,
                                      int& value, const std::string& help)
{
    m_last = m_command->add_option(name, value, help)
                 ->type_name(valueName)
                 ->check(CLI::Validator(requireCount, std::string()));
    return *this;
}

CommandOptions& CommandOptions::required()
{
    m_last->required();
    return *this;
}

CommandOptions& CommandOptions::flag(const std::string& name, bool& value, const std::string& help)
{
    m_last = m_command->add_flag(name, value, help);
    return *this;
}

} // namespace kxbox
