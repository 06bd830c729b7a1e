#pragma once

#include <pk/log.hpp>

#include <QtGlobal>

#include <cstdint>
#include <string>
#include <vector>

namespace kxbox {

/// Keeps the warnings and errors that the libraries log while it lives, and keeps Qt from printing
/// them: what a command prints on stderr is the command's business. Watches may be nested: each
/// keeps what is logged, except that an inner one can take categories for its own.
///
/// Left out is what the library says for every box that it writes, that there was no file
/// ".metadata" of old versions to remove.
class LogWatch
{
public:
    /// `own` are the categories of which the watches around this one hear nothing meanwhile.
    explicit LogWatch(std::vector<std::string> own = {});
    ~LogWatch();
    LogWatch(const LogWatch&) = delete;
    LogWatch& operator=(const LogWatch&) = delete;
    LogWatch(LogWatch&&) = delete;
    LogWatch& operator=(LogWatch&&) = delete;

    const std::vector<pk::log::Record>& records() const { return m_records; }

private:
    bool isOwnedInside(const std::string& category) const;

    std::vector<std::string> m_own;
    std::vector<pk::log::Record> m_records;
    std::uint64_t m_handler;
    QtMessageHandler m_before;
};

} // namespace kxbox
