#pragma once

#include "require.hpp"

#include <kx/xml_document.hpp>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

/// XML documents in memory.
namespace fuzz {

using DocumentPtr = boost::shared_ptr<KX::XmlDocument>;
using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;

/// Null for bytes that are refused.
inline DocumentPtr load(const char* bytes, std::size_t size)
{
    // fmemopen refuses an empty buffer; a document of one space is refused for the same reason.
    std::string copy = size == 0 ? " " : std::string(bytes, size);
    const FilePtr stream(fmemopen(copy.data(), copy.size(), "rb"), &std::fclose);
    require(stream != nullptr, "a stream over memory opens");
    std::string error;
    DocumentPtr document = KX::XmlDocument::loadFromXmlFile(stream.get(), &error, nullptr);
    require((document == nullptr) != error.empty(), "an error goes with a refusal");
    return document;
}

inline std::string save(const KX::XmlDocument& document)
{
    char* bytes = nullptr;
    std::size_t size = 0;
    FilePtr stream(open_memstream(&bytes, &size), &std::fclose);
    require(stream != nullptr, "a stream into memory opens");
    require(document.saveToXmlFile(stream.get(), nullptr, nullptr), "what was loaded is saved");
    stream.reset();
    std::string saved(bytes, size);
    std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): open_memstream gives it that way
    return saved;
}

/// The bytes of a document with this root.
inline std::string save(const boost::shared_ptr<KX::XmlElement>& root)
{
    KX::XmlDocument document;
    document.setRoot(root);
    return save(document);
}

} // namespace fuzz
