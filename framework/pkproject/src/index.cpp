#include "index.hpp"

#include "disk.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace pk::project {

namespace {

// How many entries of what was removed earlier one removal frees. Each may have a staged file to be
// deleted, which takes some microseconds.
constexpr std::size_t a_sweepPortion = 32;

using Children = std::vector<std::unique_ptr<Entry>>;

Children::const_iterator lowerBound(const Children& children, const std::string& name)
{
    return std::lower_bound(
        children.begin(), children.end(), name,
        [](const std::unique_ptr<Entry>& entry, const std::string& n) { return entry->name < n; });
}

// Destroys trees from the top down, so that no depth of nesting is too much for the stack.
void dismantle(std::vector<std::unique_ptr<Entry>>& entries)
{
    while (!entries.empty()) {
        const std::unique_ptr<Entry> entry = std::move(entries.back());
        entries.pop_back();
        if (!entry->isDirectory()) {
            continue;
        }
        std::move(entry->folder->children.begin(), entry->folder->children.end(),
                  std::back_inserter(entries));
        for (auto& ghost : entry->folder->ghosts) {
            if (ghost.second.removed) {
                entries.push_back(std::move(ghost.second.removed));
            }
        }
    }
}

bool contains(const Entry& outer, const Entry& inner)
{
    for (const Entry* at = &inner; at != nullptr; at = at->parent) {
        if (at == &outer) {
            return true;
        }
    }
    return false;
}

} // namespace

Stamp Stamp::of(const struct stat& info)
{
    return {info.st_ino, modificationTime(info), info.st_size};
}

bool Stamp::operator==(const Stamp& other) const
{
    return id == other.id && time == other.time && bytes == other.bytes;
}

Entry::~Entry() = default;

std::shared_ptr<StagedFile> Entry::staged() const
{
    return detail ? detail->staged : nullptr;
}

bool Entry::wasMoved() const
{
    return detail && detail->homeParent != nullptr;
}

Detail& Entry::needDetail()
{
    if (!detail) {
        detail = std::make_unique<Detail>();
    }
    return *detail;
}

const Entry* originalInSource(const Entry& file)
{
    if (file.detail && file.detail->copyOf != nullptr) {
        return file.detail->copyOf;
    }
    return file.inSource && !file.rewritten ? &file : nullptr;
}

Index::Index() : m_root(std::make_unique<Entry>())
{
    m_root->folder = std::make_unique<Folder>();
    m_root->inSource = true;
    m_root->mode = umaskLeaves(0777);
}

Entry* Index::find(const ProjectPath& path) const
{
    if (isReserved(path)) {
        return nullptr;
    }
    Entry* entry = m_root.get();
    for (const std::string& name : path) {
        entry = entry->isDirectory() ? child(*entry, name) : nullptr;
        if (entry == nullptr) {
            return nullptr;
        }
    }
    return entry;
}

bool Index::isLeftOut(const ProjectPath& path) const
{
    const Entry* entry = m_root.get();
    for (const std::string& name : path) {
        const Entry* const next = entry->isDirectory() ? child(*entry, name) : nullptr;
        if (next == nullptr) {
            return entry->isDirectory() && std::binary_search(entry->folder->leftOut.begin(),
                                                              entry->folder->leftOut.end(), name);
        }
        entry = next;
    }
    return false;
}

bool Index::hasLeftOut(const ProjectPath& path) const
{
    std::vector<const Entry*> entries{find(path)};
    while (!entries.empty() && entries.back() != nullptr) {
        const Entry& entry = *entries.back();
        entries.pop_back();
        if (!entry.isDirectory()) {
            continue;
        }
        if (!entry.folder->leftOut.empty()) {
            return true;
        }
        for (const auto& child : entry.folder->children) {
            entries.push_back(child.get());
        }
    }
    return isLeftOut(path);
}

Entry& Index::get(const ProjectPath& path) const
{
    Entry* const entry = find(path);
    if (entry == nullptr) {
        throw PathNotFound("'" + joinPath(path) + "': no such file or directory in the project");
    }
    return *entry;
}

Entry* Index::child(const Entry& directory, const std::string& name)
{
    const Children& children = directory.folder->children;
    const auto it = lowerBound(children, name);
    return it != children.end() && (*it)->name == name ? it->get() : nullptr;
}

std::string Index::path(const Entry& entry)
{
    return entry.parent != nullptr ? joinPath(path(*entry.parent), entry.name) : std::string();
}

std::string Index::sourcePath(const Entry& entry)
{
    if (entry.wasMoved()) {
        return joinPath(sourcePath(*entry.detail->homeParent), entry.detail->homeName);
    }
    return entry.parent != nullptr ? joinPath(sourcePath(*entry.parent), entry.name)
                                   : std::string();
}

const Entry* Index::findInSource(const ProjectPath& path) const
{
    const Entry* entry = m_root.get();
    for (const std::string& name : path) {
        if (entry == nullptr || !entry->isDirectory()) {
            return nullptr;
        }
        const auto ghost = entry->folder->ghosts.find(name);
        if (ghost != entry->folder->ghosts.end()) {
            entry = ghost->second.removed ? ghost->second.removed.get() : ghost->second.moved;
            continue;
        }
        entry = child(*entry, name);
        entry = entry != nullptr && entry->inSource && !entry->wasMoved() ? entry : nullptr;
    }
    return entry;
}

Entry& Index::makeDirectories(const ProjectPath& path, std::optional<std::uint16_t> mode)
{
    if (isReserved(path)) {
        throw InvalidPath("'" + joinPath(path) + "': the name is reserved at a project's top");
    }
    Entry* at = m_root.get();
    std::size_t known = 0;
    for (; known < path.size(); ++known) {
        Entry* const next = child(*at, path[known]);
        if (next == nullptr) {
            break;
        }
        if (!next->isDirectory()) {
            throw AlreadyExists("'" + Index::path(*next) + "': a file is in the way");
        }
        at = next;
    }
    for (; known < path.size(); ++known) {
        Entry* const revived = revive(*at, path[known], true, mode);
        at = revived != nullptr
                 ? revived
                 : &attachNew(*at, path[known], true, mode.value_or(umaskLeaves(0777)));
    }
    return *at;
}

void Index::checkFilePlace(const Entry& directory, const std::string& name)
{
    if (directory.parent == nullptr && isReservedName(name)) {
        throw InvalidPath("'" + name + "': the name is reserved at a project's top");
    }
    const Entry* const old = child(directory, name);
    if (old != nullptr && old->isDirectory()) {
        throw AlreadyExists("'" + path(*old) + "': a directory is in the way");
    }
}

Entry& Index::putFile(Entry& directory, const std::string& name, std::shared_ptr<StagedFile> staged,
                      std::optional<std::uint16_t> mode)
{
    checkFilePlace(directory, name);
    Entry* entry = child(directory, name);
    if (entry == nullptr) {
        entry = revive(directory, name, false, {});
    }
    if (entry == nullptr) {
        entry = &attachNew(directory, name, false, umaskLeaves(0666));
    }
    entry->mode = mode.value_or(entry->mode);
    entry->needDetail().staged = std::move(staged);
    entry->detail->copyOf = nullptr;
    entry->rewritten = entry->inSource;
    touch(*entry);
    return *entry;
}

Entry& Index::putCopy(Entry& directory, const std::string& name, const Entry& original,
                      std::uint16_t mode)
{
    checkFilePlace(directory, name);
    if (Entry* const old = child(directory, name)) {
        remove(*old);
    }
    Entry& entry = attachNew(directory, name, false, mode);
    entry.needDetail().copyOf = &original;
    return entry;
}

void Index::remove(Entry& entry)
{
    if (entry.parent != nullptr) {
        bury(detach(entry));
    } else {
        while (!entry.folder->children.empty()) {
            bury(detach(*entry.folder->children.back()));
        }
    }
    sweep(a_sweepPortion);
}

void Index::move(Entry& entry, Entry& directory, const std::string& name)
{
    if (contains(entry, directory)) {
        throw InvalidPath("'" + path(entry) + "': it can't be moved into itself, to '" +
                          joinPath(path(directory), name) + "'");
    }
    std::unique_ptr<Entry> owned = detach(entry);
    m_touched.erase(&entry);
    if (entry.inSource && !entry.wasMoved()) {
        Detail& detail = entry.needDetail();
        detail.homeParent = entry.parent;
        detail.homeName = entry.name;
        entry.parent->folder->ghosts[entry.name].moved = &entry;
        m_haunted.insert(entry.parent);
    }
    if (entry.wasMoved() && entry.detail->homeParent == &directory &&
        entry.detail->homeName == name) {
        exorcise(directory, name);
        entry.detail->homeParent = nullptr;
        entry.detail->homeName.clear();
    }
    insert(std::move(owned), directory, name);
    if (!entry.inSource || entry.wasMoved() || entry.rewritten) {
        touch(entry);
    }
}

bool Index::isAlive(const Entry& entry) const
{
    const Entry* at = &entry;
    while (at->parent != nullptr) {
        if (child(*at->parent, at->name) != at) {
            return false;
        }
        at = at->parent;
    }
    return at == m_root.get();
}

Index::~Index()
{
    m_retired.push_back(std::move(m_root));
    dismantle(m_retired);
}

void Index::sweep(std::size_t limit)
{
    for (; limit > 0 && !m_retired.empty(); --limit) {
        const std::unique_ptr<Entry> entry = std::move(m_retired.back());
        m_retired.pop_back();
        m_touched.erase(entry.get());
        if (!entry->isDirectory()) {
            continue;
        }
        for (std::unique_ptr<Entry>& child : entry->folder->children) {
            bury(std::move(child));
        }
    }
}

Entry& Index::appendLoaded(Entry& directory, std::string name, bool isDirectory, std::uint16_t mode)
{
    auto entry = std::make_unique<Entry>();
    entry->parent = &directory;
    entry->name = std::move(name);
    entry->mode = mode;
    entry->inSource = true;
    if (isDirectory) {
        entry->folder = std::make_unique<Folder>();
    }
    directory.folder->children.push_back(std::move(entry));
    return *directory.folder->children.back();
}

void Index::sortLoaded(Entry& directory)
{
    Children& children = directory.folder->children;
    children.shrink_to_fit();
    std::sort(children.begin(), children.end(),
              [](const auto& a, const auto& b) { return a->name < b->name; });
    std::sort(directory.folder->leftOut.begin(), directory.folder->leftOut.end());
}

void Index::leaveOut(Entry& directory, std::string name)
{
    directory.folder->leftOut.push_back(std::move(name));
}

void Index::settle(bool wholeTree, bool keepStaged)
{
    std::unordered_set<Entry*> stillTouched;
    if (wholeTree) {
        settle(*m_root, true, keepStaged, stillTouched);
    } else {
        for (Entry* const entry : m_touched) {
            if (isAlive(*entry)) {
                settle(*entry, false, keepStaged, stillTouched);
            }
        }
    }
    m_touched = std::move(stillTouched);
    for (Entry* const directory : std::exchange(m_haunted, {})) {
        if (isAlive(*directory)) {
            for (auto& ghost : directory->folder->ghosts) {
                if (ghost.second.removed) {
                    m_retired.push_back(std::move(ghost.second.removed));
                }
            }
            directory->folder->ghosts.clear();
        }
    }
    dismantle(m_retired);
}

Entry* Index::revive(Entry& directory, const std::string& name, bool isDirectory,
                     std::optional<std::uint16_t> mode)
{
    const auto it = directory.folder->ghosts.find(name);
    if (it == directory.folder->ghosts.end() || !it->second.removed ||
        it->second.removed->isDirectory() != isDirectory ||
        (isDirectory && !it->second.removed->folder->leftOut.empty()) ||
        it->second.removed->mode != mode.value_or(it->second.removed->mode)) {
        return nullptr;
    }
    std::unique_ptr<Entry> owned = std::move(it->second.removed);
    exorcise(directory, name);
    Entry& entry = insert(std::move(owned), directory, name);
    if (isDirectory) {
        // It comes back empty: what it held is removed one by one.
        while (!entry.folder->children.empty()) {
            bury(detach(*entry.folder->children.back()));
        }
    }
    return &entry;
}

Entry& Index::attachNew(Entry& directory, const std::string& name, bool isDirectory,
                        std::uint16_t mode)
{
    auto owned = std::make_unique<Entry>();
    owned->mode = mode;
    if (isDirectory) {
        owned->folder = std::make_unique<Folder>();
    }
    Entry& entry = insert(std::move(owned), directory, name);
    touch(entry);
    return entry;
}

Entry& Index::insert(std::unique_ptr<Entry> entry, Entry& directory, const std::string& name)
{
    Entry& inserted = *entry;
    inserted.parent = &directory;
    inserted.name = name;
    Children& children = directory.folder->children;
    children.insert(lowerBound(children, name), std::move(entry));
    return inserted;
}

std::unique_ptr<Entry> Index::detach(Entry& entry)
{
    Children& children = entry.parent->folder->children;
    const auto at = children.begin() + (lowerBound(children, entry.name) - children.cbegin());
    std::unique_ptr<Entry> owned = std::move(*at);
    children.erase(at);
    return owned;
}

// Takes what was removed from the tree to where the source has it, or away when it is new.
void Index::bury(std::unique_ptr<Entry> entry)
{
    if (!entry->inSource) {
        retire(std::move(entry));
        return;
    }
    m_touched.erase(entry.get());
    if (entry->wasMoved()) {
        // What it goes back to may lie in itself, moved there: that goes home first.
        while (contains(*entry, *entry->detail->homeParent)) {
            Entry* inner = entry->detail->homeParent;
            while (!inner->wasMoved()) {
                inner = inner->parent;
            }
            bury(detach(*inner));
        }
        entry->parent = std::exchange(entry->detail->homeParent, nullptr);
        entry->name = std::move(entry->detail->homeName);
    }
    Entry& home = *entry->parent;
    Ghost& ghost = home.folder->ghosts[entry->name];
    ghost.moved = nullptr;
    ghost.removed = std::move(entry);
    m_haunted.insert(&home);
}

void Index::retire(std::unique_ptr<Entry> entry)
{
    m_touched.erase(entry.get());
    m_retired.push_back(std::move(entry));
}

void Index::exorcise(Entry& directory, const std::string& name)
{
    directory.folder->ghosts.erase(name);
    if (directory.folder->ghosts.empty()) {
        m_haunted.erase(&directory);
    }
}

// What is in a new directory is found through that.
void Index::touch(Entry& entry)
{
    if (entry.parent->inSource) {
        m_touched.insert(&entry);
    }
}

void Index::settle(Entry& entry, bool wholeTree, bool keepStaged,
                   std::unordered_set<Entry*>& stillTouched)
{
    const bool isNew = !std::exchange(entry.inSource, true);
    entry.rewritten = false;
    if (entry.detail) {
        std::shared_ptr<StagedFile> staged = std::move(entry.detail->staged);
        entry.detail.reset();
        entry.rewritten = staged && !staged->isSealed();
        if (entry.rewritten || (staged && (keepStaged || staged->isPathKept()))) {
            entry.needDetail().staged = std::move(staged);
        }
        if (entry.rewritten) {
            stillTouched.insert(&entry);
        }
    }
    if (entry.isDirectory() && wholeTree) {
        entry.folder->leftOut.clear(); // another source has nothing else
    }
    if (entry.isDirectory() && (wholeTree || isNew)) {
        for (const std::unique_ptr<Entry>& child : entry.folder->children) {
            settle(*child, wholeTree, keepStaged, stillTouched);
        }
    }
}

} // namespace pk::project
