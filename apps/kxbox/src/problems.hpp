#pragma once

#include "text.hpp"

#include <string>
#include <utility>
#include <vector>

namespace kxbox {

enum class Severity
{
    Error,   ///< something in the library is not seen, or will be lost
    Warning, ///< something is not what it says, or will not be everywhere
    Note     ///< worth a look, and no problem
};

/// One thing that `check` found.
struct Problem
{
    Severity severity = Severity::Warning;
    std::string kind; ///< a word that stays the same, for programs
    std::string path; ///< of the file or directory in the project; empty for the library's top
    std::string text; ///< what is wrong there
    /// What in the file it is about, when there can be several of one kind; not printed.
    std::string subject = {};
    int line = 0;   ///< from 1 on; 0 where there is none, like `column`
    int column = 0; ///< in characters
    bool fixed = false;
};

/// Problems in the order in which they are printed, after sort().
class Problems
{
public:
    void add(Problem problem) { m_problems.push_back(std::move(problem)); }
    void add(const Problems& others);
    const std::vector<Problem>& list() const { return m_problems; }

    /// Adds those of `before`, marked as fixed, that are not among these: a problem is recognised
    /// by its kind, path and subject.
    void addFixed(const Problems& before);

    /// Errors first, then by path.
    void sort();

    /// Whether an error or a warning is not fixed.
    bool remain() const;
    /// A line for each that is not fixed, as a compiler prints them, and one that counts them.
    std::string text() const;
    Json json() const;

private:
    std::vector<Problem> m_problems;
};

} // namespace kxbox
