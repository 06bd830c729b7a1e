#include "message_index.hpp"

#include <kr/localization/translator.hpp>

#include <stdexcept>
#include <utility>

namespace KR::Localization {

Translator::Translator() = default;

Translator::Translator(QString languageCode) : m_languageCode(std::move(languageCode)) {}

Translator::Translator(const Translator& other) = default;
Translator::Translator(Translator&& other) noexcept = default;
Translator& Translator::operator=(const Translator& other) = default;
Translator& Translator::operator=(Translator&& other) noexcept = default;
Translator::~Translator() = default;

void Translator::setExtra(const QString& key, const QString& value)
{
    if (!Message::isExtraKey(key)) {
        throw std::invalid_argument("not an extra field's name: " + key.toStdString());
    }
    m_extras.insert(key, value);
}

void Translator::append(const QList<Message>& messages)
{
    // constData: the index of a copy of this translator is not to be copied only to be asked.
    if (m_index.constData() != nullptr && m_index.constData()->isCurrent(m_messages)) {
        m_index->append(m_messages, messages);
    } else {
        dropIndex();
        m_messages.append(messages);
    }
}

const Message* Translator::find(const QString& context, const QString& source,
                                const QString& comment) const
{
    ensuredIndexed();
    const int position = m_index.constData()->find(context, source, comment);
    return position < 0 ? nullptr : &m_messages.at(position);
}

void Translator::ensuredIndexed() const
{
    if (m_index.constData() == nullptr || !m_index.constData()->isCurrent(m_messages)) {
        m_index = new MessageIndex(m_messages);
    }
}

void Translator::delIndex(const Message& message)
{
    ensuredIndexed();
    m_index->remove(message);
}

bool Translator::operator==(const Translator& other) const
{
    return m_languageCode == other.m_languageCode &&
           m_sourceLanguageCode == other.m_sourceLanguageCode &&
           m_dependencies == other.m_dependencies && m_extras == other.m_extras &&
           m_locationStyle == other.m_locationStyle && m_messages == other.m_messages;
}

void Translator::dropIndex()
{
    m_index = nullptr;
}

} // namespace KR::Localization
