#include "contents.hpp"

#include "warn.hpp"

#include <pk/project/error.hpp>

namespace pk::project {

Fd Contents::open(Entry& entry)
{
    unpack(entry);
    if (const auto staged = entry.staged()) {
        return staged->open();
    }
    return directory->open(*originalInSource(entry));
}

QByteArray Contents::read(const Entry& entry, std::int64_t most) const
{
    if (const auto staged = entry.staged()) {
        return readAll(staged->open(), most);
    }
    const Entry& original = *originalInSource(entry);
    return archive ? archive->read(original, most) : directory->read(original, most);
}

std::int64_t Contents::size(const Entry& entry) const
{
    if (const auto staged = entry.staged()) {
        return statOf(staged->open()).st_size;
    }
    return originalInSource(entry)->stamp.bytes;
}

const Place* Contents::place() const
{
    if (directory) {
        return &directory->place();
    }
    return archive ? &archive->place() : nullptr;
}

Fd Contents::openUnlessGone(Entry& entry)
{
    try {
        return open(entry);
    } catch (const PathNotFound& error) {
        warn(std::string(error.what()) + "; it is left out of the saved project", __FILE__,
             "openUnlessGone", __LINE__);
        return {};
    }
}

std::string Contents::localPath(Entry& entry)
{
    unpack(entry);
    const auto staged = entry.staged();
    if (staged) {
        staged->keepPath();
    }
    return staged ? staged->path() : directory->localPath(*originalInSource(entry));
}

std::shared_ptr<StagedFile> Contents::share(Entry& entry, Staging& staging)
{
    unpack(entry);
    auto staged = entry.staged();
    if (!staged || !staged->isSealed()) {
        return staging.copy(entry.name, open(entry));
    }
    return staged->isIn(staging) ? staged : staging.link(entry.name, staged->path());
}

std::shared_ptr<StagedFile> Contents::copy(Entry& entry)
{
    return m_staging->copy(entry.name, open(entry));
}

// An archive's file is unpacked once; what was unpacked stays at hand until the next save.
void Contents::unpack(Entry& entry)
{
    if (archive && !entry.staged()) {
        entry.needDetail().staged = archive->unpack(*originalInSource(entry), *m_staging);
    }
}

} // namespace pk::project
