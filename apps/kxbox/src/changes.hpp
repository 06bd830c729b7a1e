#pragma once

#include "open_library.hpp"
#include "text.hpp"

#include <QMap>
#include <QString>

#include <string>
#include <vector>

namespace kxbox {

/// What a command does to a library, one change after the other: the plan of a dry run, and the
/// report when it is done.
class Changes
{
public:
    /// `what` says what happens, in a word ("rename", "directory"), `subject` to what, and
    /// `result`, where there is one, what becomes of it.
    void add(const std::string& what, const std::string& subject, const std::string& result = {});

    /// Messages of a context, and of all below it, get another context, or go when `to` is empty;
    /// nothing is added when there are none.
    void addMessages(const QString& from, const QString& to, const QMap<QString, int>& counts);

    bool isEmpty() const { return m_changes.empty(); }
    Json json() const;
    /// One line each.
    std::string text() const;

private:
    struct Change
    {
        std::string what;
        std::string subject;
        std::string result;
        QMap<QString, int> messages; // how many, by language
    };
    std::vector<Change> m_changes;
};

} // namespace kxbox
