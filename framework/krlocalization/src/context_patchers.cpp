#include <kr/localization/context_patchers.hpp>

#include <algorithm>
#include <functional>
#include <utility>

namespace KR::Localization {

namespace {

constexpr QLatin1Char a_separator('/');

/// The values of `map` by views of its keys, which live as long as the map is not changed.
std::map<QStringView, QString> byView(const QMap<QString, QString>& map)
{
    std::map<QStringView, QString> views;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        views.emplace_hint(views.end(), it.key(), it.value());
    }
    return views;
}

/// Whether `context` begins with a whole path of `length` characters.
bool endsComponent(const QString& context, int length)
{
    return length == context.size() || (length < context.size() && context[length] == a_separator);
}

} // namespace

ContextBoxNamePatcher::ContextBoxNamePatcher(const QString& context, QMap<QString, QString> names)
    : m_prefix(context + a_separator), m_names(std::move(names)), m_newNames(byView(m_names))
{
    m_newNames.erase(QStringView());
}

bool ContextBoxNamePatcher::operator()(QString& context) const
{
    int slash = context.indexOf(a_separator);
    while (slash >= 0) {
        const int start = slash + 1;
        slash = context.indexOf(a_separator, start);
        const int end = slash < 0 ? context.size() : slash;
        const auto name = m_newNames.find(QStringView(context).mid(start, end - start));
        if (name != m_newNames.end()) {
            context = m_prefix + name->second + context.midRef(end);
            return true;
        }
    }
    return false;
}

ContextMatchPatcher::ContextMatchPatcher(const QMap<QString, QString>& contexts)
    : m_contexts(contexts), m_newContexts(byView(m_contexts))
{
    m_lengths.reserve(static_cast<std::size_t>(m_contexts.size()));
    for (auto it = m_contexts.cbegin(); it != m_contexts.cend(); ++it) {
        m_lengths.push_back(it.key().size());
    }
    std::sort(m_lengths.begin(), m_lengths.end(), std::greater<>());
    m_lengths.erase(std::unique(m_lengths.begin(), m_lengths.end()), m_lengths.end());
}

bool ContextMatchPatcher::operator()(QString& context) const
{
    for (const int length : m_lengths) {
        if (!endsComponent(context, length)) {
            continue;
        }
        const auto found = m_newContexts.find(QStringView(context).left(length));
        if (found != m_newContexts.end()) {
            context = found->second + context.midRef(length);
            return true;
        }
    }
    return false;
}

ContextRecursiveFinder::ContextRecursiveFinder(QString context) : m_context(std::move(context)) {}

bool ContextRecursiveFinder::operator()(const QString& context) const
{
    return endsComponent(context, m_context.size()) && context.startsWith(m_context);
}

} // namespace KR::Localization
