#include "messages.hpp"

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
