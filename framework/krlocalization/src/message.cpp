#include <kr/localization/message.hpp>

#include <QSharedData>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace KR::Localization {

struct Message::Data : QSharedData
{
    QString context;
    QString source;
    QString comment;
    QString id;
    QString translation;    // the first form: most messages have no other
    QStringList otherForms; // those behind it
    QString oldSource;
    QString oldComment;
    QString extraComment;
    QString translatorComment;
    QString userData;
    QVector<Location> locations;
    Extras extras;
    State state = State::Unfinished;
    bool plural = false;
    bool hasForms = false; // whether there is a first form, which may be empty

    bool hasSameText(const Data& other) const;
};

bool Message::Data::hasSameText(const Data& other) const
{
    return source == other.source && comment == other.comment && id == other.id &&
           translation == other.translation && otherForms == other.otherForms &&
           hasForms == other.hasForms && state == other.state && plural == other.plural &&
           locations == other.locations && oldSource == other.oldSource &&
           oldComment == other.oldComment && extraComment == other.extraComment &&
           translatorComment == other.translatorComment && userData == other.userData &&
           extras == other.extras;
}

Message::Message() : m_data(new Data) {}

Message::Message(const QString& context, const QString& source, const QString& comment) : Message()
{
    m_data->context = context;
    m_data->source = source;
    m_data->comment = comment;
}

Message::Message(const Message& other) = default;
Message::Message(Message&& other) noexcept = default;
Message& Message::operator=(const Message& other) = default;
Message& Message::operator=(Message&& other) noexcept = default;
Message::~Message() = default;

const QString& Message::context() const
{
    return m_data->context;
}

void Message::setContext(const QString& context)
{
    m_data->context = context;
}

const QString& Message::source() const
{
    return m_data->source;
}

void Message::setSource(QString source)
{
    m_data->source = std::move(source);
}

const QString& Message::comment() const
{
    return m_data->comment;
}

void Message::setComment(QString comment)
{
    m_data->comment = std::move(comment);
}

const QString& Message::id() const
{
    return m_data->id;
}

void Message::setId(QString id)
{
    m_data->id = std::move(id);
}

Message::State Message::state() const
{
    return m_data->state;
}

void Message::setState(State state)
{
    m_data->state = state;
}

bool Message::isPlural() const
{
    return m_data->plural;
}

void Message::setPlural(bool plural)
{
    m_data->plural = plural;
}

QStringList Message::translations() const
{
    return m_data->hasForms ? QStringList(m_data->translation) + m_data->otherForms : QStringList();
}

void Message::setTranslations(const QStringList& translations)
{
    m_data->translation = translations.value(0);
    m_data->otherForms = translations.mid(1);
    m_data->hasForms = !translations.isEmpty();
}

const QString& Message::translation() const
{
    return m_data->translation;
}

void Message::setTranslation(QString translation)
{
    m_data->translation = std::move(translation);
    m_data->otherForms.clear();
    m_data->hasForms = true;
}

bool Message::isTranslated() const
{
    const QStringList& others = m_data->otherForms;
    return !m_data->translation.isEmpty() ||
           std::any_of(others.begin(), others.end(),
                       [](const QString& form) { return !form.isEmpty(); });
}

const QString& Message::oldSource() const
{
    return m_data->oldSource;
}

void Message::setOldSource(QString oldSource)
{
    m_data->oldSource = std::move(oldSource);
}

const QString& Message::oldComment() const
{
    return m_data->oldComment;
}

void Message::setOldComment(QString oldComment)
{
    m_data->oldComment = std::move(oldComment);
}

const QString& Message::extraComment() const
{
    return m_data->extraComment;
}

void Message::setExtraComment(QString extraComment)
{
    m_data->extraComment = std::move(extraComment);
}

const QString& Message::translatorComment() const
{
    return m_data->translatorComment;
}

void Message::setTranslatorComment(QString translatorComment)
{
    m_data->translatorComment = std::move(translatorComment);
}

const QString& Message::userData() const
{
    return m_data->userData;
}

void Message::setUserData(QString userData)
{
    m_data->userData = std::move(userData);
}

const QVector<Location>& Message::locations() const
{
    return m_data->locations;
}

void Message::setLocations(const QVector<Location>& locations)
{
    m_data->locations = locations;
}

const Message::Extras& Message::extras() const
{
    return m_data->extras;
}

void Message::setExtra(const QString& key, const QString& value)
{
    if (!isExtraKey(key)) {
        throw std::invalid_argument("not an extra field's name: " + key.toStdString());
    }
    m_data->extras.insert(key, value);
}

void Message::removeExtra(const QString& key)
{
    m_data->extras.remove(key);
}

bool Message::isExtraKey(const QString& key)
{
    return !key.isEmpty() && std::all_of(key.begin(), key.end(), [](QChar c) {
        return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('-') ||
               c == QLatin1Char('_') || c == QLatin1Char('.');
    });
}

bool Message::operator==(const Message& other) const
{
    return m_data == other.m_data || (context() == other.context() && hasSameText(other));
}

bool Message::hasSameText(const Message& other) const
{
    return m_data == other.m_data || m_data->hasSameText(*other.m_data);
}

} // namespace KR::Localization
