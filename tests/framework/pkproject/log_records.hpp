#pragma once

#include <pk/log.hpp>

#include <QString>
#include <QtGlobal>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace pk::project::test {

/// Keeps what the store logs while it lives, and keeps Qt from printing it.
class LogRecords
{
public:
    LogRecords()
        : m_handler(pk::log::addHandler([this](const pk::log::Record& record) {
              if (record.category == "pkproject") {
                  m_messages.push_back(record.message);
              }
          })),
          m_before(
              qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                                        const QString& /*t*/) {}))
    {
    }
    ~LogRecords()
    {
        qInstallMessageHandler(m_before);
        pk::log::removeHandler(m_handler);
    }
    LogRecords(const LogRecords&) = delete;
    LogRecords& operator=(const LogRecords&) = delete;
    LogRecords(LogRecords&&) = delete;
    LogRecords& operator=(LogRecords&&) = delete;

    /// The texts, sorted.
    std::vector<std::string> messages() const
    {
        std::vector<std::string> sorted = m_messages;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

private:
    std::vector<std::string> m_messages;
    std::uint64_t m_handler;
    QtMessageHandler m_before;
};

} // namespace pk::project::test
