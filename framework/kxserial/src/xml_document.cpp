#include "stream.hpp"
#include "xml_scanner.hpp"
#include "xml_writer.hpp"

#include <kx/xml_document.hpp>

#include <boost/make_shared.hpp>

#include <system_error>

namespace KX {

namespace {

void report(std::string* message, const std::string& text)
{
    if (message != nullptr) {
        *message = text;
    }
}

/// Why a text that is well-formed is not read again; empty when it is.
std::string bound(const std::string& text)
{
    constexpr std::size_t a_leastBytes = 2; // of a node: "<a/>", and a blank before it
    if (text.size() > xml::a_maxSize) {
        return "longer than what is read again";
    }
    if (text.size() > a_leastBytes * xml::a_maxNodes) {
        try {
            xml::Scanner::scan(text);
        } catch (const xml::Fault& fault) {
            return fault.what();
        }
    }
    return {};
}

} // namespace

XmlDocument::XmlDocument() = default;

boost::shared_ptr<XmlDocument> XmlDocument::loadFromXmlFile(FILE* stream, std::string* error,
                                                            std::string* warning)
{
    return load([stream] { return xml::readStream(stream); }, error, warning);
}

boost::shared_ptr<XmlDocument> XmlDocument::loadFromXmlBytes(const char* bytes, std::size_t size,
                                                             std::string* error,
                                                             std::string* warning)
{
    return load([bytes, size] { return xml::copyOf({bytes, size}); }, error, warning);
}

boost::shared_ptr<XmlDocument> XmlDocument::load(const std::function<xml::Bytes()>& read,
                                                 std::string* error, std::string* warning)
{
    report(error, std::string());
    report(warning, std::string());
    xml::Bytes bytes;
    try {
        bytes = read();
        auto document = boost::make_shared<XmlDocument>();
        document->m_file = xml::ParsedXml::parse(bytes);
        document->m_root = boost::make_shared<XmlElement>(
            XmlElement::FileView{document->m_file, document->m_file->root(), false});
        return document;
    } catch (const xml::Fault& fault) {
        report(error,
               xml::position({bytes.data.get(), bytes.size}, fault.offset()) + ": " + fault.what());
    } catch (const std::system_error& failure) {
        report(error, failure.what());
    }
    return nullptr;
}

void XmlDocument::setRoot(boost::shared_ptr<XmlElement> root)
{
    m_root = std::move(root);
}

bool XmlDocument::saveToXmlFile(FILE* stream, std::string* error, std::string* warning) const
{
    report(error, std::string());
    report(warning, std::string());
    if (!m_root) {
        report(error, "no root element");
        return false;
    }
    try {
        const std::string text = xml::Writer::write(*m_root, m_file.get());
        const std::string reason = bound(text);
        if (!reason.empty()) {
            report(error, reason);
            return false;
        }
        xml::writeStream(stream, text);
        return true;
    } catch (const xml::Unwritable& reason) {
        report(error, reason.what());
    } catch (const std::system_error& failure) {
        report(error, failure.what());
    }
    return false;
}

} // namespace KX
