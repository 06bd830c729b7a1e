#include "message_index.hpp"

#include "text_hash.hpp"

namespace KR::Localization {

namespace {

std::size_t hashKey(const QString& context, const QString& source, const QString& comment)
{
    return hashText(comment, hashText(source, hashText(context)));
}

bool hasKey(const Message& message, const QString& context, const QString& source,
            const QString& comment)
{
    return message.source() == source && message.context() == context &&
           message.comment() == comment;
}

} // namespace

MessageIndex::MessageIndex(const QList<Message>& messages)
    : m_list(messages), m_table(messages.size())
{
    m_chains.reserve(static_cast<std::size_t>(messages.size()));
    m_next.reserve(static_cast<std::size_t>(messages.size()));
    for (int i = 0; i < messages.size(); ++i) {
        add(i);
    }
}

void MessageIndex::add(int position)
{
    const Message& message = m_list.at(position);
    m_next.push_back(-1);
    int& chain = m_table.at(
        hashKey(message.context(), message.source(), message.comment()), [&](int candidate) {
            const Message& other = m_list.at(m_chains[static_cast<std::size_t>(candidate)].first);
            return hasKey(other, message.context(), message.source(), message.comment());
        });
    if (chain == PositionTable::a_none) {
        chain = static_cast<int>(m_chains.size());
        m_chains.push_back({position, position});
    } else {
        Chain& known = m_chains[static_cast<std::size_t>(chain)];
        m_next[static_cast<std::size_t>(known.last)] = position;
        known.last = position;
    }
}

int MessageIndex::chainOf(const QString& context, const QString& source,
                          const QString& comment) const
{
    return m_table.find(hashKey(context, source, comment), [&](int candidate) {
        const Message& first = m_list.at(m_chains[static_cast<std::size_t>(candidate)].first);
        return hasKey(first, context, source, comment);
    });
}

int MessageIndex::find(const QString& context, const QString& source, const QString& comment) const
{
    const int chain = chainOf(context, source, comment);
    return chain < 0 ? -1 : m_chains[static_cast<std::size_t>(chain)].first;
}

void MessageIndex::remove(const Message& message)
{
    const int number = chainOf(message.context(), message.source(), message.comment());
    if (number < 0) {
        return;
    }
    Chain& chain = m_chains[static_cast<std::size_t>(number)];
    int before = -1;
    for (int i = chain.first; i >= 0; i = m_next[static_cast<std::size_t>(i)]) {
        if (m_list.at(i).isSharedWith(message)) {
            unlink(chain, before, i);
            return;
        }
        before = i;
    }
    unlink(chain, -1, chain.first);
}

void MessageIndex::unlink(Chain& chain, int before, int position)
{
    if (chain.first == chain.last) {
        const Message& message = m_list.at(position);
        const auto hash = hashKey(message.context(), message.source(), message.comment());
        m_table.at(hash, [&](int candidate) {
            return &m_chains[static_cast<std::size_t>(candidate)] == &chain;
        }) = PositionTable::a_removed;
        return;
    }
    const int next = m_next[static_cast<std::size_t>(position)];
    if (before < 0) {
        chain.first = next;
    } else {
        m_next[static_cast<std::size_t>(before)] = next;
    }
    if (chain.last == position) {
        chain.last = before;
    }
}

void MessageIndex::append(QList<Message>& messages, const QList<Message>& added)
{
    const int before = messages.size();
    // Let go of first: a list that is shared would be copied as a whole to be appended to.
    m_list.clear();
    messages.append(added);
    m_list = messages;
    for (int i = before; i < m_list.size(); ++i) {
        add(i);
    }
}

} // namespace KR::Localization
