#pragma once

#include "project_path.hpp"
#include "staging.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unordered_set>
#include <vector>

namespace pk::project {

struct Folder;
struct Detail;

/// What tells one state of a file of the source from another.
struct Stamp
{
    std::uint64_t id = 0;  ///< inode of a file on disk; position in an archive
    std::int64_t time = 0; ///< last modification, nanoseconds since the epoch; unused in an archive
    std::int64_t bytes = 0; ///< size, unpacked

    static Stamp of(const struct stat& info);
    bool operator==(const Stamp& other) const;
    bool operator!=(const Stamp& other) const { return !(*this == other); }
};

/// A file or directory of a project.
///
/// An entry *of the source* stands for something that the source holds: at its own place in the
/// tree, or, once it was moved, at the place its detail remembers. Its bytes are there unless it
/// was rewritten. Any other entry is *new*. Entries of the source live until the index is reset,
/// also when they are removed, because others may be copies of them and the next save has to know
/// what to take away.
struct Entry
{
    Entry() = default;
    ~Entry();
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    Entry(Entry&&) = delete;
    Entry& operator=(Entry&&) = delete;

    bool isDirectory() const { return folder != nullptr; }
    /// The staged file with the entry's bytes, or null.
    std::shared_ptr<StagedFile> staged() const;
    bool wasMoved() const;
    Detail& needDetail();

    Entry* parent = nullptr;
    std::string name;
    std::unique_ptr<Folder> folder; ///< null for a file
    std::unique_ptr<Detail> detail; ///< null for most
    Stamp stamp;                    ///< of a file of the source, as it was when last looked at
    std::uint16_t mode = 0;         ///< permission bits
    bool inSource = false;
    bool rewritten = false; ///< a file of the source whose bytes are the staged ones
};

/// The entry of the source that a file has its bytes from; null when they are staged.
const Entry* originalInSource(const Entry& file);

/// The place in the source of something that is not there in the tree any more.
struct Ghost
{
    std::unique_ptr<Entry> removed; ///< what was there, if it is nowhere in the tree
    Entry* moved = nullptr;         ///< what was there, if it is in the tree at another place
};

/// What a directory holds.
struct Folder
{
    std::vector<std::unique_ptr<Entry>> children; ///< sorted by the bytes of their names
    std::map<std::string, Ghost> ghosts;          ///< by the names that the source has them under
    std::vector<std::string> leftOut; ///< sorted names of what the source has there all the same
};

/// What only few entries have.
struct Detail
{
    std::shared_ptr<StagedFile> staged; ///< the bytes; of a file that was not rewritten, a copy
    const Entry* copyOf = nullptr;      ///< the file of the source whose bytes a new file has
    Entry* homeParent = nullptr;        ///< where the source has a moved entry; null: not moved
    std::string homeName;
};

/// The tree of a project in memory, and what was changed in it since it was last in step with the
/// source. Looking up and changing one path costs a binary search per component, moving and
/// removing costs the same for a file and for a directory of ten thousand, and what a save must
/// look at is what was changed.
///
/// Does no input or output. Throws the errors of ProjectModel's operations, before it changes
/// anything.
class Index
{
public:
    Index();
    ~Index();
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;
    Index(Index&&) = delete;
    Index& operator=(Index&&) = delete;

    Entry& root() { return *m_root; }
    const Entry& root() const { return *m_root; }

    /// The entry at a path, or null; null for a reserved path.
    Entry* find(const ProjectPath& path) const;
    /// As find(), but throws PathNotFound.
    Entry& get(const ProjectPath& path) const;

    /// Whether the source has something at the path, or at one above it, that is no part of the
    /// project: in a directory of the source, wherever that is in the tree now. Of what was removed
    /// nothing is left.
    bool isLeftOut(const ProjectPath& path) const;
    /// Whether that is so at the path or anywhere below it.
    bool hasLeftOut(const ProjectPath& path) const;

    /// The entry called `name` in a directory, or null.
    static Entry* child(const Entry& directory, const std::string& name);
    /// The path of an entry from the top of the tree.
    static std::string path(const Entry& entry);
    /// The path at which the source has an entry of the source.
    static std::string sourcePath(const Entry& entry);
    /// The entry that the source has at a path, wherever it is in the tree now; null when there is
    /// none.
    const Entry* findInSource(const ProjectPath& path) const;

    /// Makes a directory and those above it that are missing; these have the mode given, or the one
    /// that the umask leaves. Throws AlreadyExists for a file in the way, InvalidPath for a
    /// reserved path.
    Entry& makeDirectories(const ProjectPath& path, std::optional<std::uint16_t> mode = {});

    /// Creates or replaces a file in a directory of the tree; its bytes are those of `staged`.
    /// Without a mode a file that is replaced keeps its own and a new one gets what the umask
    /// leaves. Throws what checkFilePlace() throws.
    Entry& putFile(Entry& directory, const std::string& name, std::shared_ptr<StagedFile> staged,
                   std::optional<std::uint16_t> mode = {});

    /// Creates or replaces a file that has the bytes that the source has for `original`, an entry
    /// of it. Throws what checkFilePlace() throws.
    Entry& putCopy(Entry& directory, const std::string& name, const Entry& original,
                   std::uint16_t mode);

    /// Throws AlreadyExists when a directory is where a file is to be put, InvalidPath when the
    /// name is reserved there.
    static void checkFilePlace(const Entry& directory, const std::string& name);

    /// Removes what is at the entry, or all that the root holds.
    void remove(Entry& entry);

    /// Moves an entry to a place where nothing is.
    void move(Entry& entry, Entry& directory, const std::string& name);

    /// Whether anything was changed since the last reset.
    bool isModified() const { return !m_touched.empty() || !m_haunted.empty(); }

    /// The entries that are new, rewritten or moved, in no order; not those in new directories.
    const std::unordered_set<Entry*>& touched() const { return m_touched; }
    /// The directories with ghosts, in no order.
    const std::unordered_set<Entry*>& haunted() const { return m_haunted; }

    /// Whether the entry is in the tree.
    bool isAlive(const Entry& entry) const;

    /// Frees at most `limit` entries that were removed and are no longer needed; remove() does so
    /// in small portions.
    void sweep(std::size_t limit = SIZE_MAX);

    /// An entry of the source for loading: appended to a directory without a search. The caller
    /// sorts the directory when all are there.
    static Entry& appendLoaded(Entry& directory, std::string name, bool isDirectory,
                               std::uint16_t mode);
    static void sortLoaded(Entry& directory);
    /// The name of something in a directory of the source that does not become an entry.
    static void leaveOut(Entry& directory, std::string name);

    /// Declares the tree to be what the source holds: ghosts are dropped and nothing is new, moved
    /// or rewritten, except files whose staged bytes can still change, which stay rewritten. The
    /// stamps of files are the caller's to set. Looks at what was touched, or at the whole tree
    /// when the source is another one than before. With `keepStaged`
    /// all staged bytes stay at hand, else only those whose paths somebody was told.
    void settle(bool wholeTree, bool keepStaged);

private:
    Entry* revive(Entry& directory, const std::string& name, bool isDirectory,
                  std::optional<std::uint16_t> mode);
    Entry& attachNew(Entry& directory, const std::string& name, bool isDirectory,
                     std::uint16_t mode);
    Entry& insert(std::unique_ptr<Entry> entry, Entry& directory, const std::string& name);
    static std::unique_ptr<Entry> detach(Entry& entry);
    void bury(std::unique_ptr<Entry> entry);
    void retire(std::unique_ptr<Entry> entry);
    void exorcise(Entry& directory, const std::string& name);
    void touch(Entry& entry);
    void settle(Entry& entry, bool wholeTree, bool keepStaged,
                std::unordered_set<Entry*>& stillTouched);

    std::unordered_set<Entry*> m_touched;
    std::unordered_set<Entry*> m_haunted;
    std::vector<std::unique_ptr<Entry>> m_retired;
    std::unique_ptr<Entry> m_root;
};

} // namespace pk::project
