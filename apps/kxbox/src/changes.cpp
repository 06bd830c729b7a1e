#include "changes.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kxbox {

void Changes::add(const std::string& what, const std::string& subject, const std::string& result)
{
    m_changes.push_back({what, subject, result, {}});
}

void Changes::addMessages(const QString& from, const QString& to, const QMap<QString, int>& counts)
{
    if (!counts.isEmpty()) {
        m_changes.push_back({"messages", from.toStdString(), to.toStdString(), counts});
    }
}

Json Changes::json() const
{
    Json list = Json::array();
    for (const Change& change : m_changes) {
        Json entry = {{"change", change.what}, {"subject", change.subject}};
        if (!change.result.empty()) {
            entry["result"] = change.result;
        }
        for (auto it = change.messages.begin(); it != change.messages.end(); ++it) {
            entry["messages"][it.key().toStdString()] = it.value();
        }
        list.push_back(std::move(entry));
    }
    return list;
}

std::string Changes::text() const
{
    std::size_t width = 0;
    for (const Change& change : m_changes) {
        width = std::max(width, change.what.size());
    }
    std::string text;
    for (const Change& change : m_changes) {
        text += change.what + std::string(width - change.what.size() + 2, ' ') +
                printable(change.subject);
        if (!change.result.empty()) {
            text += " -> " + printable(change.result);
        }
        std::string separator = " (";
        for (auto it = change.messages.begin(); it != change.messages.end(); ++it) {
            text += separator + printable(it.key()) + ' ' + std::to_string(it.value());
            separator = ", ";
        }
        text += change.messages.isEmpty() ? "\n" : ")\n";
    }
    return text;
}

} // namespace kxbox
