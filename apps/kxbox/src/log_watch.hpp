#pragma once

#include <pk/log.hpp>

#include <QtGlobal>

#include <cstdint>
#include <vector>

namespace kxbox {

/// Keeps the warnings and errors that the libraries log while it lives, and keeps Qt from printing
/// them: what a command prints on stderr is the command's business. Watches may be nested.
///
/// Left out is what the library says for every box that it writes, that there was no file
/// ".metadata" of old versions to remove.
class LogWatch
{
public:
    LogWatch();
    ~LogWatch();
    LogWatch(const LogWatch&) = delete;
    LogWatch& operator=(const LogWatch&) = delete;
    LogWatch(LogWatch&&) = delete;
    LogWatch& operator=(LogWatch&&) = delete;

    const std::vector<pk::log::Record>& records() const { return m_records; }

private:
    std::vector<pk::log::Record> m_records;
    std::uint64_t m_handler;
    QtMessageHandler m_before;
};

} // namespace kxbox
