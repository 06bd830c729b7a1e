#include "directory_save.hpp"

#include "journal_directory.hpp"
#include "save_plan.hpp"

#include <pk/project/error.hpp>

#include <map>
#include <optional>
#include <set>

namespace pk::project {

namespace {

// A project of up to this many files and directories is compared with the disk as a whole before it
// is saved, which costs some microseconds for each: so many cost less than the syncing. In a larger
// one only what the save touches is compared, unless something hints at other changes, so that
// saving costs no more the larger it is.
constexpr std::size_t a_comparedWhole = 128;

// From this many on, one sync of the file system is cheaper than one for each file.
constexpr std::size_t a_manyFiles = 32;

// So many of a save's steps are noted to see later whether it took effect.
constexpr std::size_t a_traces = 16;

void checkConflicts(const Index& index, const DirectorySource& source, const SavePlan& plan)
{
    const std::vector<std::string> conflicts = plan.findConflicts();
    if (source.mayHaveChanged() || source.size() <= a_comparedWhole || !conflicts.empty()) {
        source.checkUnchanged(index);
    }
    if (!conflicts.empty()) {
        throw AlreadyExists(source.place().path +
                            ": what is no part of the project is in the way: " + conflicts.front());
    }
}

Stamp writeBytes(const QByteArray& bytes, const std::string& path, mode_t mode, bool sync)
{
    const Fd file = Disk::instance().create(path, mode);
    Disk::instance().write(file, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (sync) {
        Disk::instance().sync(file);
    }
    return Stamp::of(statOf(file));
}

void planMetadata(Journal& journal, const std::optional<Stamp>& before, bool isWanted, int item)
{
    if (isWanted) {
        journal.puts.push_back(
            {a_metadataFile, item, 0, before.has_value(), before.value_or(Stamp())});
    } else if (before) {
        journal.collects.push_back({{-1, a_metadataFile}, item, *before});
    }
}

// How one sees later whether the journal was carried out: by some of what it puts, and some of what
// it takes away. All of it happens or nothing, so that some are enough.
std::vector<Trace> tracesOf(const Journal& journal, const Place& place,
                            const JournalDirectory& directory)
{
    const auto local = [&place](const std::string& path) { return place.path + "/" + path; };
    std::map<int, std::string> items; // where those are that the project has now
    std::set<std::string> vacated;
    for (const Journal::Collect& step : journal.collects) {
        if (step.from.item < 0) {
            items.emplace(step.item, local(step.from.path));
            vacated.insert(step.from.path);
        }
    }
    std::vector<Trace> traces;
    for (const Journal::Put& step : journal.puts) {
        vacated.erase(step.path);
        if (traces.size() == a_traces) {
            continue;
        }
        if (step.makesDirectory()) {
            const Trace trace{local(step.path), Trace::a_directory};
            if (!trace.isThere()) { // as one is that makes way for another
                traces.push_back(trace);
            }
            continue;
        }
        const auto item = items.find(step.item);
        const auto info =
            statOf(item != items.end() ? item->second : directory.itemPath(step.item));
        if (info) {
            traces.push_back({local(step.path), Trace::stampOf(*info)});
        }
    }
    for (const std::string& path : vacated) {
        if (traces.size() < a_traces) {
            traces.push_back({local(path), Trace::a_nothing});
        }
    }
    return traces;
}

} // namespace

void saveInPlace(Index& index, Contents& contents, const Metadata* metadata, EditLog& log)
{
    DirectorySource& source = *contents.directory;
    SavePlan plan(index, contents);
    Journal journal = plan.journal();
    const QByteArray newMetadata = metadata != nullptr ? readableMetadata(*metadata) : QByteArray();
    const int metadataItem = plan.nextItem();
    if (metadata != nullptr) {
        planMetadata(journal, source.metadataFile(), !newMetadata.isEmpty(), metadataItem);
    }
    if (journal.isEmpty()) {
        checkConflicts(index, source, plan);
        index.settle(false, false);
        return;
    }
    JournalDirectory directory(source.place());
    const bool many = plan.newFiles().size() > a_manyFiles;
    std::vector<std::pair<Entry*, Stamp>> stamps;
    for (const SavePlan::NewFile& file : plan.newFiles()) {
        const Fd fd = copyToNewFile(contents.open(*file.entry), directory.itemPath(file.item),
                                    file.entry->mode);
        if (!many) {
            Disk::instance().sync(fd);
        }
        stamps.emplace_back(file.entry, Stamp::of(statOf(fd)));
    }
    auto metadataFile = metadata == nullptr ? source.metadataFile() : std::optional<Stamp>();
    if (!newMetadata.isEmpty()) {
        metadataFile =
            writeBytes(newMetadata, directory.itemPath(metadataItem), source.metadataMode(), !many);
    }
    checkConflicts(index, source, plan);
    log.saving(tracesOf(journal, source.place(), directory));
    try {
        directory.run(journal, many);
    } catch (const Error&) {
        source.setUnfinished(directory.unfinished());
        if (!source.unfinished()) {
            log.confirm({source.place().path, source.stamp(), Base::now()});
        }
        throw;
    }
    source.setUnfinished({}); // what is left of an earlier one was somebody else's to complete
    for (const auto& stamp : stamps) {
        stamp.first->stamp = stamp.second;
    }
    index.settle(false, false);
    source.remember(metadataFile);
}

DirectorySave::DirectorySave(Index& index, Contents& contents, const Metadata& metadata)
    : m_index(index), m_contents(contents), m_metadata(metadata)
{
}

void DirectorySave::write(const std::string& path, mode_t mode)
{
    refuseLongPaths(m_index.root());
    mode |= (mode & 0444) >> 2;
    Disk::instance().mkdir(path, mode | 0700);
    const QByteArray metadata = readableMetadata(m_metadata);
    if (!metadata.isEmpty()) {
        writeBytes(metadata, path + "/" + a_metadataFile, umaskLeaves(0666), false);
    }
    writeDirectory(m_index.root(), path);
    if ((mode & 0700) != 0700) {
        Disk::instance().chmod(path, mode);
    }
    Disk::instance().syncFileSystem(path);
}

void DirectorySave::adopt() const
{
    for (const auto& stamp : m_stamps) {
        stamp.first->stamp = stamp.second;
    }
    for (Entry* const entry : m_leftOut) {
        m_index.remove(*entry);
    }
}

void DirectorySave::writeDirectory(Entry& directory, const std::string& path)
{
    for (const auto& child : directory.folder->children) {
        const std::string childPath = path + "/" + child->name;
        ++m_size;
        if (!child->isDirectory()) {
            writeFile(*child, childPath);
            continue;
        }
        Disk::instance().mkdir(childPath, child->mode | 0700);
        writeDirectory(*child, childPath);
        if ((child->mode & 0700) != 0700) {
            Disk::instance().chmod(childPath, child->mode);
        }
    }
}

void DirectorySave::writeFile(Entry& entry, const std::string& path)
{
    const Fd bytes = m_contents.openUnlessGone(entry);
    if (!bytes) {
        m_leftOut.push_back(&entry);
        return;
    }
    const Fd file = copyToNewFile(bytes, path, entry.mode);
    m_stamps.emplace_back(&entry, Stamp::of(statOf(file)));
}

} // namespace pk::project
