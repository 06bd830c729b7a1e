#include "publish.hpp"

#include "disk.hpp"
#include "warn.hpp"

#include <pk/project/error.hpp>

namespace pk::project {

FreshPlace::FreshPlace(const Place& target) : m_target(target), m_path(target.fresh()) {}

FreshPlace::~FreshPlace()
{
    if (m_isUncertain) {
        return;
    }
    try {
        removeTree(m_path);
    } catch (const Error& error) {
        // The next one to open or save the target removes it.
        warn(error.what(), __FILE__, "~FreshPlace", __LINE__);
    }
}

void FreshPlace::publish(const std::optional<struct stat>& existing)
{
    Disk& disk = Disk::instance();
    if (!existing) {
        disk.renameNew(m_path, m_target.path);
        syncOr([&] { disk.renameNew(m_target.path, m_path); });
        return;
    }
    try {
        disk.exchange(m_path, m_target.path);
    } catch (const IoError&) {
        const auto built = statOf(m_path);
        if (S_ISDIR(existing->st_mode) || !built || S_ISDIR(built->st_mode)) {
            throw;
        }
        // A file system that can't exchange can still replace a file by a file.
        disk.rename(m_path, m_target.path);
        syncOr([] { throw IoError("what was there is gone"); });
        return;
    }
    syncOr([&] { disk.exchange(m_path, m_target.path); });
}

// Waits until the new name is on the disk. Where that fails, `undo` takes it back; where that fails
// too, the place holds the new project, and that it does is what counts. As long as the disk may
// hold either, neither is removed.
void FreshPlace::syncOr(const std::function<void()>& undo)
{
    try {
        syncDirectory(m_target.parent);
    } catch (const IoError& error) {
        m_isUncertain = true;
        try {
            undo();
        } catch (const Error& failure) {
            warn(std::string(error.what()) + "; " + failure.what(), __FILE__, "syncOr", __LINE__);
            return;
        }
        try {
            syncDirectory(m_target.parent);
            m_isUncertain = false;
        } catch (const IoError& failure) {
            warn(failure.what(), __FILE__, "syncOr", __LINE__);
        }
        throw;
    }
}

} // namespace pk::project
