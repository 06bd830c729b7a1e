#include "shell_words.hpp"

#include "failure.hpp"

namespace kxbox {

namespace {

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

} // namespace

std::vector<std::string> shellWords(const std::string& line)
{
    std::vector<std::string> words;
    bool inWord = false;
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char character = line[i];
        const char next = i + 1 < line.size() ? line[i + 1] : '\0';
        if (quote == '\0' && isBlank(character)) {
            inWord = false;
            continue;
        }
        if (!inWord) {
            if (character == '#') {
                break;
            }
            words.emplace_back();
            inWord = true;
        }
        if (quote != '\0' && character == quote) {
            quote = '\0';
        } else if (quote == '\0' && (character == '\'' || character == '"')) {
            quote = character;
        } else if (character == '\\' &&
                   (quote == '\0' || (quote == '"' && (next == '"' || next == '\\')))) {
            if (++i == line.size()) {
                throw UsageError("nothing follows the last backslash");
            }
            words.back() += next;
        } else {
            words.back() += character;
        }
    }
    if (quote != '\0') {
        throw UsageError(std::string("a quotation that begins with ") + quote + " has no end");
    }
    return words;
}

} // namespace kxbox
