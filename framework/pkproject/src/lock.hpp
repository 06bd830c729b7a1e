#pragma once

#include "disk.hpp"

#include <chrono>
#include <optional>
#include <string>

namespace pk::project {

struct Place;

/// Keeps every other program, and every other model of this one, from saving a place or completing
/// a save of it. The kernel holds the lock, so that a program that died holds none; the lock file
/// beside the place says for people who has it, and is removed with the lock.
class Lock
{
public:
    /// Saves take milliseconds to seconds, so it is worth to wait for one rather than to fail.
    static constexpr std::chrono::milliseconds a_patience{5000};

    /// Takes the lock, waiting for whoever has it. Throws LockError, also where the file system
    /// can't say who that is, and IoError when the lock file can't be made. A LockError names the
    /// owner when the lock file does, in one line of bounded length, whatever is in the file.
    static Lock take(const Place& place, std::chrono::milliseconds patience = a_patience);

    /// The same for work that waits for nothing. Nobody is told who has the lock: to write that,
    /// and to remove a file with something in it, takes longer than such work.
    static Lock takeBriefly(const Place& place);

    /// As take(), but gives nothing where no lock file can be made: from there nobody saves the
    /// place.
    static std::optional<Lock> takeIfWritable(const Place& place);

    ~Lock();
    Lock(Lock&& other) noexcept = default;
    Lock& operator=(Lock&& other) = delete;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    explicit Lock(Fd file) : m_file(std::move(file)) {}
    static Lock take(const Place& place, std::chrono::milliseconds patience,
                     const std::string& myName);
    Fd m_file;
};

} // namespace pk::project
