#include <pk/log.hpp>

#include <QLoggingCategory>
#include <QString>

#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace pk::log {

// The name is what the Qt category points to, so it is declared first and never moves.
struct Category::Data
{
    explicit Data(std::string n) : name(std::move(n)), qt(name.c_str(), QtInfoMsg) {}

    const std::string name;
    const QLoggingCategory qt;
};

namespace {

using Handler = std::function<void(const Record&)>;
using Handlers = std::vector<std::pair<std::uint64_t, std::shared_ptr<const Handler>>>;

struct HandlerList
{
    std::mutex mutex;
    Handlers handlers;
    std::uint64_t lastId = 0;
};

// Never destroyed: records may come from the destructors of other static objects.
HandlerList& handlerList()
{
    static auto* const list = new HandlerList;
    return *list;
}

Handlers currentHandlers()
{
    auto& list = handlerList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    return list.handlers;
}

QtMsgType qtType(LogLevel level)
{
    switch (level) {
    case Silent:
    case Fatal:
    case Error:
        return QtCriticalMsg;
    case Warning:
        return QtWarningMsg;
    case Info:
        return QtInfoMsg;
    case Verbose:
    case Debug:
        break;
    }
    return QtDebugMsg;
}

std::string orEmpty(const char* text)
{
    return text != nullptr ? text : "";
}

} // namespace

Category::Category(const char* name) : m_data(find(orEmpty(name))) {}

const std::string& Category::name() const
{
    return m_data->name;
}

const Category::Data* Category::find(const std::string& name)
{
    static auto* const mutex = new std::mutex;
    static auto* const categories = new std::map<std::string, std::unique_ptr<const Data>>;
    const std::lock_guard<std::mutex> lock(*mutex);
    auto& data = (*categories)[name];
    if (!data) {
        data = std::make_unique<const Data>(name);
    }
    return data.get();
}

Category addCategory(const std::string& name)
{
    return Category(Category::find(name));
}

void log(LogLevel level, Category category, const std::string& message, const char* file,
         const char* function, int line)
{
    if (level == Silent) {
        return;
    }
    const Handlers handlers = currentHandlers();
    if (!handlers.empty()) {
        const Record record{level,         category.name(),   message,
                            orEmpty(file), orEmpty(function), line};
        for (const auto& handler : handlers) {
            if (*handler.second) {
                (*handler.second)(record);
            }
        }
    }
    const QtMsgType type = qtType(level);
    if (category.m_data->qt.isEnabled(type)) {
        const QMessageLogContext context(file, line, function, category.name().c_str());
        qt_message_output(type, context, QString::fromStdString(message));
    }
}

std::uint64_t addHandler(std::function<void(const Record&)> handler)
{
    auto& list = handlerList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    list.handlers.emplace_back(++list.lastId, std::make_shared<const Handler>(std::move(handler)));
    return list.lastId;
}

void removeHandler(std::uint64_t id)
{
    // Outlives the lock: what a handler holds may log when it is destroyed.
    std::shared_ptr<const Handler> removed;
    auto& list = handlerList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    for (auto it = list.handlers.begin(); it != list.handlers.end(); ++it) {
        if (it->first == id) {
            removed = std::move(it->second);
            list.handlers.erase(it);
            return;
        }
    }
}

} // namespace pk::log
