#pragma once

#include "place.hpp"

#include <functional>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace pk::project {

/// What a save builds beside its target before it takes the target's place. The caller holds the
/// target's lock.
class FreshPlace
{
public:
    explicit FreshPlace(const Place& target);
    /// Removes what was not published, or what the published took the place of; unless the disk
    /// refused to say which of them it holds, then the next one to open or save the target does.
    ~FreshPlace();
    FreshPlace(const FreshPlace&) = delete;
    FreshPlace& operator=(const FreshPlace&) = delete;
    FreshPlace(FreshPlace&&) = delete;
    FreshPlace& operator=(FreshPlace&&) = delete;

    /// Where to build; nothing is there yet.
    const std::string& path() const { return m_path; }

    /// Puts what was built, and synced, in the target's place, in one step, and syncs that. What is
    /// there, as the caller saw it, is there until then. When this throws, an IoError or
    /// AlreadyExists, the target is as before. A disk that can neither sync nor take it back leaves
    /// the new project in place and a warning in the log.
    void publish(const std::optional<struct stat>& existing);

private:
    void syncOr(const std::function<void()>& undo);
    Place m_target;
    std::string m_path;
    bool m_isUncertain = false;
};

} // namespace pk::project
