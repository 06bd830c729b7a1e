#pragma once

#include <pkcore/export.hpp>

#include <cstdint>
#include <functional>
#include <string>

/// The framework's log. A record is handed to every handler and then to Qt's message logging, under
/// the category's name, so that QT_LOGGING_RULES, the message pattern and an installed Qt message
/// handler apply to it. All functions may be called from any thread.
namespace pk::log {

/// How much a record matters, the most important first. A record of level Silent goes nowhere;
/// a number that is no level counts as Debug.
///
/// In Qt's message logging Fatal and Error are critical messages (Fatal does not end the program),
/// Warning is a warning, Info an info, Verbose and Debug are debug messages, which Qt shows only
/// when a filter rule switches them on.
enum LogLevel
{
    Silent = 0,
    Fatal = 1,
    Error = 2,
    Warning = 3,
    Info = 4,
    Verbose = 5,
    Debug = 6
};

/// A name under which records are grouped and filtered.
///
/// A cheap handle to an entry of a list that lives as long as the program: copies and categories of
/// the same name are the same category.
class PKCORE_EXPORT Category
{
public:
    /// The category called `name`, registered when it is not yet; null counts as an empty name.
    Category(const char* name); // NOLINT(google-explicit-constructor): log("name", ...) is the use

    const std::string& name() const;

private:
    friend PKCORE_EXPORT Category addCategory(const std::string& name);
    friend PKCORE_EXPORT void log(LogLevel level, Category category, const std::string& message,
                                  const char* file, const char* function, int line);
    struct Data;
    explicit Category(const Data* data) : m_data(data) {}
    static const Data* find(const std::string& name);

    const Data* m_data;
};

/// Registers the category `name`; a second registration gives the same category.
PKCORE_EXPORT Category addCategory(const std::string& name);

/// What a handler is given of one call of log().
struct Record
{
    LogLevel level;
    std::string category;
    std::string message; ///< UTF-8
    std::string file;    ///< empty when the caller gave none, like `function`
    std::string function;
    int line;
};

/// Logs `message` (UTF-8). Handlers see every record, whatever Qt's filter rules say. An exception
/// that a handler throws reaches the caller.
PKCORE_EXPORT void log(LogLevel level, Category category, const std::string& message,
                       const char* file, const char* function, int line);

/// Adds a handler, called synchronously with every record, in the order of adding, until it is
/// removed. It may log, and add and remove handlers, itself included; an empty one is not called.
/// Gives the number by which removeHandler() knows it, never 0.
PKCORE_EXPORT std::uint64_t addHandler(std::function<void(const Record&)> handler);

/// Removes a handler; an unknown number changes nothing. A call that another thread has already
/// begun may still reach the handler.
PKCORE_EXPORT void removeHandler(std::uint64_t id);

} // namespace pk::log
