#pragma once

#include "contents.hpp"
#include "index.hpp"
#include "journal.hpp"

#include <map>
#include <string>
#include <vector>

namespace pk::project {

/// Throws InvalidPath when what is at or below an entry has come, by moving, to a path that no
/// project can have: it would be left out when the project is opened again.
void refuseLongPaths(const Entry& entry);

/// What a save in place of a project directory has to do: from what was touched in the index alone,
/// so that a plan costs what the changes since the last save cost, whatever the project's size.
class SavePlan
{
public:
    /// A file to be written as an item of the journal.
    struct NewFile
    {
        Entry* entry;
        int item;
    };

    /// Plans; the index is swept. Throws InvalidPath for paths that are too long, and what reading
    /// the files' bytes throws.
    SavePlan(Index& index, Contents& contents);

    const Journal& journal() const { return m_journal; }
    const std::vector<NewFile>& newFiles() const { return m_newFiles; }
    int nextItem() { return m_items++; }

    /// What the plan relies on, compared with what is on the disk; the differences.
    std::vector<std::string> findConflicts() const;

private:
    void visit(Entry& entry);
    void visitFile(Entry& entry);
    void visitGhosts(Entry& directory);
    bool isUnchanged(Entry& entry) const;
    static bool isReplaced(const Entry& directory, const std::string& name, const Ghost& ghost);
    void expectFree(const Entry& entry);
    Journal::Location locate(const std::string& sourcePath) const;

    struct Taken
    {
        const Entry* entry; ///< of the source
        int item;
        bool isDropped; ///< not put anywhere
    };
    Index& m_index;
    Contents& m_contents;
    std::map<std::string, Taken> m_taken;         ///< by source path: collected
    std::map<std::string, Journal::Put> m_placed; ///< by path in the tree
    std::vector<NewFile> m_newFiles;
    std::vector<const Entry*> m_replaced; ///< files of the source that new ones take the place of
    std::vector<std::string> m_expectFree;
    Journal m_journal;
    int m_items = 0;
};

} // namespace pk::project
