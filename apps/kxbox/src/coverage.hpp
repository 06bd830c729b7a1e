#pragma once

#include "open_library.hpp"
#include "text.hpp"

#include <QStringList>

#include <string>
#include <vector>

namespace kxbox {

/// How far the translation of some texts into one language is. A text with several messages counts
/// as the best of them.
struct Coverage
{
    int finished = 0;   ///< has a translation that is confirmed
    int unfinished = 0; ///< has one that is not
    int missing = 0;    ///< has none

    int texts() const { return finished + unfinished + missing; }
    Coverage& operator+=(const Coverage& other);
    /// "12/40  30 %", finished of all, rounded down so that 100 % means all; "-" for no texts.
    std::string text() const;
};

/// A folder with all that is below it.
struct FolderCoverage
{
    std::string address;
    int texts = 0;
    std::vector<Coverage> languages; ///< in the order of the report's
};

/// The coverage of a library by language and folder.
class CoverageReport
{
public:
    explicit CoverageReport(OpenLibrary& library);

    /// {"texts": ..., "languages": {"fr": {"finished", "unfinished", "missing", "vanished"}},
    /// "folders": [{"node", "texts", "languages": {"fr": {"finished", "unfinished", "missing"}}}]}:
    /// the whole library, and every folder in the order of the tree with all that is below it.
    Json json() const;
    /// A table of the same.
    std::string text() const;

private:
    std::vector<std::vector<std::string>> cells() const;
    std::vector<std::string> numbers(const char* title, int Coverage::*number) const;

    QStringList m_languages;               // sorted
    std::vector<int> m_vanished;           // messages of texts that are gone, by language
    std::vector<FolderCoverage> m_folders; // the root, which is the whole library, first
};

} // namespace kxbox
