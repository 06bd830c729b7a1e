#include <pk/log.hpp>

namespace {

// Logs under a category of its own when static objects are made and when they are destroyed.
class LogsOutsideMain
{
public:
    LogsOutsideMain() { log("helper.early", "before main"); }
    ~LogsOutsideMain() { log("helper.late", "after main"); }
    LogsOutsideMain(const LogsOutsideMain&) = delete;
    LogsOutsideMain(LogsOutsideMain&&) = delete;
    LogsOutsideMain& operator=(const LogsOutsideMain&) = delete;
    LogsOutsideMain& operator=(LogsOutsideMain&&) = delete;

private:
    static void log(const char* category, const char* message)
    {
        pk::log::log(pk::log::Warning, category, message, nullptr, nullptr, 0);
    }
};

const LogsOutsideMain a_logsOutsideMain;

} // namespace

int main()
{
    for (const char* category : {"helper.one", "helper.two"}) {
        pk::log::log(pk::log::Error, category, "error", "helper.cpp", "main", 1);
        pk::log::log(pk::log::Warning, category, "warning", "helper.cpp", "main", 2);
        pk::log::log(pk::log::Info, category, "info", "helper.cpp", "main", 3);
        pk::log::log(pk::log::Debug, category, "debug", "helper.cpp", "main", 4);
    }
}
