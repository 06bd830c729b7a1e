#include "ts_memory.hpp"

#include <algorithm>
#include <string_view>

namespace KR::Localization {

namespace {

// What the parser and the translator make of a thing in the file.
constexpr std::size_t a_node = 64;
constexpr std::size_t a_element = a_node + 16;
constexpr std::size_t a_attribute = 104;
constexpr std::size_t a_string = 48;
constexpr std::size_t a_stringByte = 2;
constexpr std::size_t a_message = 160;
constexpr std::size_t a_extra = 192;
// Of a node for which a text has to be parsed again, with its white space.
constexpr std::size_t a_again = 2 * a_node;

bool isBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

class Estimate
{
public:
    explicit Estimate(std::string_view bytes)
        : m_rest(bytes), m_cost(2 * bytes.size()), m_again(bytes.size())
    {
    }

    std::size_t get()
    {
        while (!m_rest.empty()) {
            addText(take('<'));
            addTag(take('>'));
        }
        return m_cost;
    }

private:
    /// What is in front of the next such character, which is passed over.
    std::string_view take(char end)
    {
        const std::size_t size = std::min(m_rest.find(end), m_rest.size());
        const std::string_view taken = m_rest.substr(0, size);
        m_rest.remove_prefix(std::min(size + 1, m_rest.size()));
        return taken;
    }

    void addText(std::string_view text)
    {
        addAttributes(text); // of a tag, when what ended it was the ">" in a value
        const bool isWhole = m_isOpened && m_rest.substr(0, 1) == "/";
        if (text.empty() || (!isWhole && isBlank(text))) {
            return;
        }
        m_cost += a_string + a_stringByte * text.size();
        if (!m_isOpened) {
            addAgain();
        }
    }

    void addTag(std::string_view tag)
    {
        const auto begins = [tag](std::string_view name) {
            return tag.substr(0, name.size()) == name;
        };
        m_isOpened =
            !begins("/") && !begins("!") && !begins("?") && !tag.empty() && tag.back() != '/';
        if (begins("/")) {
            return;
        }
        m_cost += a_element + a_stringByte * tag.size();
        addAttributes(tag);
        m_cost += begins("message") ? a_message : 0;
        m_cost += begins("extra-") ? a_extra : 0;
        if (begins("byte") || begins("!--") || begins("![")) {
            addAgain();
        }
    }

    void addAttributes(std::string_view text)
    {
        m_cost += a_attribute * static_cast<std::size_t>(std::count(text.begin(), text.end(), '='));
    }

    void addAgain()
    {
        m_cost += a_node + a_again + m_again;
        m_again = 0; // the bytes are copied once
    }

    std::string_view m_rest;
    std::size_t m_cost;
    std::size_t m_again;
    bool m_isOpened = false; // an element, so that text would be the first in it
};

/// Whether as many tags and attributes as there may be, of the costliest kind, and the texts
/// between them would take more memory.
bool mayTakeMore(std::string_view bytes, std::size_t most)
{
    constexpr std::size_t perText = a_string + a_node + a_again;
    constexpr std::size_t perTag = a_element + std::max({a_message, a_extra, a_node + a_again});
    constexpr std::size_t perByte = 3 + 2 * a_stringByte;
    std::size_t cost = perByte * bytes.size() + perText;
    const auto add = [&](char mark, std::size_t each) {
        for (std::size_t at = bytes.find(mark); at != std::string_view::npos && cost <= most;
             at = bytes.find(mark, at + 1)) {
            cost += each;
        }
    };
    add('<', perTag + perText);
    add('=', a_attribute);
    return cost > most;
}

std::string_view viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

} // namespace

std::size_t memoryToRead(const QByteArray& bytes)
{
    return Estimate(viewOf(bytes)).get();
}

bool takesTooMuchMemory(const QByteArray& bytes)
{
    constexpr std::size_t most = a_mostMegabytesToRead << 20U;
    return mayTakeMore(viewOf(bytes), most) && memoryToRead(bytes) > most;
}

} // namespace KR::Localization
