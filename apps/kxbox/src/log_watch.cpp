#include "log_watch.hpp"

#include <algorithm>
#include <utility>

namespace kxbox {

namespace {

void printNothing(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                  const QString& /*message*/)
{
}

bool isUsual(const pk::log::Record& record)
{
    return record.message.find(".metadata' file, reason: ") != std::string::npos;
}

/// All watches, the innermost last.
std::vector<const LogWatch*>& watches()
{
    static std::vector<const LogWatch*> all;
    return all;
}

} // namespace

LogWatch::LogWatch(std::vector<std::string> own)
    : m_own(std::move(own)),
      m_handler(pk::log::addHandler([this](const pk::log::Record& record) {
          if (record.level <= pk::log::Warning && !isUsual(record) &&
              !isOwnedInside(record.category)) {
              m_records.push_back(record);
          }
      })),
      m_before(qInstallMessageHandler(printNothing))
{
    watches().push_back(this);
}

LogWatch::~LogWatch()
{
    watches().pop_back();
    qInstallMessageHandler(m_before);
    pk::log::removeHandler(m_handler);
}

bool LogWatch::isOwnedInside(const std::string& category) const
{
    const auto self = std::find(watches().begin(), watches().end(), this);
    return std::any_of(self + 1, watches().end(), [&category](const LogWatch* inner) {
        return std::find(inner->m_own.begin(), inner->m_own.end(), category) != inner->m_own.end();
    });
}

} // namespace kxbox
