#pragma once

#include "position_table.hpp"

#include <kr/localization/message.hpp>

#include <QList>
#include <QSharedData>

#include <vector>

namespace KR::Localization {

/// The look-up by context, source and comment over a list of messages.
///
/// It keeps a copy of the list that it was built of. The copy shares its data with the translator's
/// list as long as nobody changes that one, which is how a change is noticed without being told.
/// Messages with the same key are chained in the order of the list, so that a thousand copies of
/// one message cost no more than a thousand different ones.
class MessageIndex : public QSharedData
{
public:
    explicit MessageIndex(const QList<Message>& messages);

    /// Whether `messages` is still the list that the index is of.
    bool isCurrent(const QList<Message>& messages) const { return m_list.isSharedWith(messages); }

    /// The position of the first message with the key; -1 when there is none.
    int find(const QString& context, const QString& source, const QString& comment) const;

    /// Takes `message` out: the message itself if it is there, else the first one with its key.
    void remove(const Message& message);

    /// Appends to `messages`, of which the index is, and indexes what is new. `added` may be
    /// `messages` itself.
    void append(QList<Message>& messages, const QList<Message>& added);

private:
    struct Chain
    {
        int first;
        int last;
    };
    void add(int position);
    int chainOf(const QString& context, const QString& source, const QString& comment) const;
    void unlink(Chain& chain, int before, int position);

    QList<Message> m_list;
    PositionTable m_table; // gives positions in m_chains
    std::vector<Chain> m_chains;
    std::vector<int> m_next; // per message the next one with its key; -1 at the end
};

} // namespace KR::Localization
