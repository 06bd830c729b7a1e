#include "log_watch.hpp"

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

} // namespace

LogWatch::LogWatch()
    : m_handler(pk::log::addHandler([this](const pk::log::Record& record) {
          if (record.level <= pk::log::Warning && !isUsual(record)) {
              m_records.push_back(record);
          }
      })),
      m_before(qInstallMessageHandler(printNothing))
{
}

LogWatch::~LogWatch()
{
    qInstallMessageHandler(m_before);
    pk::log::removeHandler(m_handler);
}

} // namespace kxbox
