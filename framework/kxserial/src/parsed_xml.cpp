#include "parsed_xml.hpp"

#include "xml_scanner.hpp"

#include <boost/make_shared.hpp>

namespace KX::xml {

namespace {

// Line ends are normalised and checks are done before, so the parser does neither.
constexpr unsigned a_parseOptions = pugi::parse_cdata | pugi::parse_escapes |
                                    pugi::parse_wconv_attribute | pugi::parse_comments |
                                    pugi::parse_pi | pugi::parse_doctype;

std::size_t normaliseLineEnds(char* text, std::size_t size)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const bool isReturn = text[i] == '\r';
        if (isReturn && i + 1 < size && text[i + 1] == '\n') {
            continue;
        }
        text[kept++] = isReturn ? '\n' : text[i];
    }
    text[kept] = '\0';
    return kept;
}

} // namespace

boost::shared_ptr<const ParsedXml> ParsedXml::parse(Bytes& bytes)
{
    const ScanResult scanned = Scanner::scan({bytes.data.get(), bytes.size});
    if (scanned.carriageReturns) {
        bytes.size = normaliseLineEnds(bytes.data.get(), bytes.size);
    }
    auto parsed = boost::make_shared<ParsedXml>();
    const pugi::xml_parse_result result = parsed->m_document.load_buffer_inplace(
        bytes.data.get(), bytes.size,
        a_parseOptions |
            (scanned.meaningfulBlanks ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single),
        pugi::encoding_utf8);
    if (!result) {
        throw Fault(result.description(), static_cast<std::size_t>(result.offset));
    }
    parsed->m_standalone = scanned.standalone;
    parsed->m_mixed = scanned.meaningfulBlanks;
    parsed->m_bytes = std::move(bytes);
    return parsed;
}

std::string position(std::string_view document, std::size_t offset)
{
    const std::string_view before = document.substr(0, offset);
    std::size_t line = 1;
    std::size_t column = 1;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const char c = before[i];
        if (c == '\n' && i > 0 && before[i - 1] == '\r') {
            continue;
        }
        if (c == '\n' || c == '\r') {
            ++line;
            column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
            ++column;
        }
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

} // namespace KX::xml
