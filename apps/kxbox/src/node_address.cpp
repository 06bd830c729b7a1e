#include "node_address.hpp"

#include "failure.hpp"

namespace kxbox::node_address {

std::vector<std::string> parse(const std::string& address)
{
    std::vector<std::string> names(1);
    for (std::size_t i = 0; i < address.size(); ++i) {
        const char next = i + 1 < address.size() ? address[i + 1] : '\0';
        if (address[i] == '\\' && (next == '/' || next == '\\')) {
            names.back() += next;
            ++i;
        } else if (address[i] == '/') {
            names.emplace_back();
        } else {
            names.back() += address[i];
        }
    }
    if (names.front().empty()) {
        names.erase(names.begin());
    }
    if (!names.empty() && names.back().empty()) {
        names.pop_back();
    }
    for (const std::string& name : names) {
        if (name.empty()) {
            throw Failure("'" + address + "': an address has no empty names");
        }
    }
    return names;
}

std::string format(const std::vector<std::string>& names)
{
    std::string address;
    for (const std::string& name : names) {
        if (!address.empty()) {
            address += '/';
        }
        for (const char character : name) {
            if (character == '/' || character == '\\') {
                address += '\\';
            }
            address += character;
        }
    }
    return address.empty() ? "/" : address;
}

} // namespace kxbox::node_address
