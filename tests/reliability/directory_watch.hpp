#pragma once

#include <string>

namespace reliability {

/// Waits for files to be made, renamed and removed in a directory by other programs.
class DirectoryWatch
{
public:
    explicit DirectoryWatch(const std::string& path);
    ~DirectoryWatch();
    DirectoryWatch(const DirectoryWatch&) = delete;
    DirectoryWatch& operator=(const DirectoryWatch&) = delete;
    DirectoryWatch(DirectoryWatch&&) = delete;
    DirectoryWatch& operator=(DirectoryWatch&&) = delete;

    /// Forgets what has happened until now.
    void forget();

    /// Waits until so many things have happened; for a minute at most, which fails the test.
    void await(int events);

private:
    /// Gives the number of things that happened since it was last asked; of none, waits for one.
    int next(int milliseconds);

    int m_notify;
};

} // namespace reliability
