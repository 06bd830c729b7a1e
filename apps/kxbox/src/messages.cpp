#include "messages.hpp"

#include <nlohmann/json.hpp>

#include <utility>

namespace kxbox {

using KR::Localization::Message;

const char* nameOf(Message::State state)
{
    using State = Message::State;
    switch (state) {
    case State::Finished:
        return "finished";
    case State::Unfinished:
        return "unfinished";
    case State::Vanished:
        return "vanished";
    case State::Obsolete:
        return "obsolete";
    }
    return "";
}

void addTranslation(Json& object, const Message& message)
{
    if (!message.isPlural()) {
        object["translation"] = message.translation().toStdString();
        return;
    }
    Json forms = Json::array();
    for (const QString& form : message.translations()) {
        forms.push_back(form.toStdString());
    }
    object["translations"] = std::move(forms);
}

bool isGone(const Message& message)
{
    return message.state() == Message::State::Vanished ||
           message.state() == Message::State::Obsolete;
}

TextKey keyOf(const Message& message)
{
    return {message.context(), message.source()};
}

} // namespace kxbox
