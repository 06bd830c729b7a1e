#include "duplicates.hpp"

#include "position_table.hpp"
#include "text_hash.hpp"

namespace KR::Localization {

namespace {

bool sameContents(const Message& a, const Message& b)
{
    return a.source() == b.source() && a.context() == b.context() &&
           (a.source().isEmpty() || a.comment() == b.comment());
}

/// Takes messages one by one and keeps the first of each kind.
class Collector
{
public:
    explicit Collector(int size) : m_ids(0), m_contents(size) { m_kept.reserve(size); }

    void add(const Message& message)
    {
        if (!message.id().isEmpty()) {
            const int known = idSlot(message.id());
            if (known >= 0) {
                merge(known, message);
                return;
            }
        }
        const auto isKey = [&](int i) { return sameContents(m_kept.at(i), message); };
        int& known = m_contents.at(hashContents(message), isKey);
        if (known >= 0 && (message.id().isEmpty() || m_kept.at(known).id().isEmpty())) {
            takeId(known, message);
            merge(known, message);
            return;
        }
        // Of messages with equal contents and different ids, the last one takes what follows.
        known = m_kept.size();
        m_kept.append(message);
        if (!message.id().isEmpty()) {
            setIdSlot(message.id(), m_kept.size() - 1);
        }
    }

    QList<Message> result() const { return m_kept; }

private:
    std::size_t hashContents(const Message& message)
    {
        if (message.context() != m_context) {
            m_context = message.context();
            m_contextHash = hashText(m_context);
        }
        const auto hash = hashText(message.source(), m_contextHash);
        const bool isAll = message.source().isEmpty() || message.comment().isEmpty();
        return isAll ? hash : hashText(message.comment(), hash);
    }

    int idSlot(const QString& id) const
    {
        return m_ids.find(hashText(id), [&](int i) { return m_kept.at(i).id() == id; });
    }

    void setIdSlot(const QString& id, int position)
    {
        m_ids.at(hashText(id), [&](int i) { return m_kept.at(i).id() == id; }) = position;
    }

    void takeId(int position, const Message& message)
    {
        if (!message.id().isEmpty() && m_kept.at(position).id().isEmpty()) {
            m_kept[position].setId(message.id());
            setIdSlot(message.id(), position);
        }
    }

    void merge(int position, const Message& message)
    {
        if (message.isTranslated() && !m_kept.at(position).isTranslated()) {
            m_kept[position].setTranslations(message.translations());
        }
    }

    QList<Message> m_kept;
    PositionTable m_ids;
    PositionTable m_contents;
    QString m_context; // of the last message, as of most that follow
    std::size_t m_contextHash = hashText(QString());
};

} // namespace

QList<Message> withoutDuplicates(const QList<Message>& messages)
{
    Collector collector(messages.size());
    for (const Message& message : messages) {
        collector.add(message);
    }
    return collector.result();
}

} // namespace KR::Localization
