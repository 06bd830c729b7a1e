#include "problems.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <tuple>

namespace kxbox {

namespace {

const char* nameOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

/// Neither paths nor subjects have a NUL, which no file name and no XML can hold.
std::string keyOf(const Problem& problem)
{
    return problem.kind + '\0' + problem.path + '\0' + problem.subject;
}

std::string lineOf(const Problem& problem)
{
    std::string line = nameOf(problem.severity);
    line += ": " + printable(problem.path.empty() ? "/" : problem.path);
    for (const int number : {problem.line, problem.column}) {
        if (number > 0) {
            line += ":" + std::to_string(number);
        }
    }
    return line + ": " + printable(problem.text) + "\n";
}

} // namespace

void Problems::add(const Problems& others)
{
    m_problems.insert(m_problems.end(), others.m_problems.begin(), others.m_problems.end());
}

void Problems::addFixed(const Problems& before)
{
    std::set<std::string> open;
    for (const Problem& problem : m_problems) {
        open.insert(keyOf(problem));
    }
    for (Problem problem : before.m_problems) {
        if (open.count(keyOf(problem)) == 0) {
            problem.fixed = true;
            m_problems.push_back(std::move(problem));
        }
    }
}

void Problems::sort()
{
    const auto key = [](const Problem& problem) {
        return std::tie(problem.severity, problem.path, problem.line, problem.column);
    };
    std::stable_sort(m_problems.begin(), m_problems.end(),
                     [&key](const Problem& a, const Problem& b) { return key(a) < key(b); });
}

bool Problems::remain() const
{
    return std::any_of(m_problems.begin(), m_problems.end(), [](const Problem& problem) {
        return !problem.fixed && problem.severity != Severity::Note;
    });
}

std::string Problems::text() const
{
    std::string text;
    for (const Problem& problem : m_problems) {
        if (!problem.fixed) {
            text += lineOf(problem);
        }
    }
    std::string counts = remain() ? "" : "No problems";
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const auto count = std::count_if(m_problems.begin(), m_problems.end(), [=](const auto& p) {
            return !p.fixed && p.severity == severity;
        });
        if (count > 0) {
            const std::string name = nameOf(severity);
            counts +=
                (counts.empty() ? "" : ", ") + counted(static_cast<int>(count), name, name + "s");
        }
    }
    return text + counts + (counts == "No problems" ? ".\n" : "\n");
}

Json Problems::json() const
{
    Json list = Json::array();
    for (const Problem& problem : m_problems) {
        Json entry = {
            {"severity", nameOf(problem.severity)}, {"kind", problem.kind}, {"path", problem.path}};
        if (problem.line > 0) {
            entry["line"] = problem.line;
        }
        if (problem.column > 0) {
            entry["column"] = problem.column;
        }
        entry["text"] = problem.text;
        entry["fixed"] = problem.fixed;
        list.push_back(std::move(entry));
    }
    return list;
}

} // namespace kxbox
