#pragma once

#include <kx/xml_document.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace KX::testing {

using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;

inline FilePtr own(FILE* stream)
{
    if (stream == nullptr) {
        throw std::runtime_error("cannot open a stream");
    }
    return {stream, &std::fclose};
}

/// A file of its own, gone with the stream, that is at its start.
inline FilePtr fileWith(std::string_view bytes)
{
    FilePtr file = own(std::tmpfile());
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
        throw std::runtime_error("cannot write a file");
    }
    std::rewind(file.get());
    return file;
}

inline std::string contentOf(FILE* stream)
{
    std::rewind(stream);
    std::string bytes;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream)) {
        bytes += static_cast<char>(c);
    }
    return bytes;
}

inline boost::shared_ptr<XmlDocument> load(std::string_view bytes, std::string* error = nullptr)
{
    return XmlDocument::loadFromXmlFile(fileWith(bytes).get(), error, nullptr);
}

/// The document, or a failure of the test that names the reason.
inline boost::shared_ptr<XmlDocument> mustLoad(std::string_view bytes)
{
    std::string error;
    auto document = load(bytes, &error);
    if (!document) {
        throw std::runtime_error(error + " in " + std::string(bytes));
    }
    return document;
}

/// The root of a document.
inline boost::shared_ptr<XmlElement> element(std::string_view bytes)
{
    return mustLoad(bytes)->root();
}

inline std::string save(const XmlDocument& document)
{
    const FilePtr file = fileWith({});
    std::string error;
    if (!document.saveToXmlFile(file.get(), &error, nullptr)) {
        throw std::runtime_error(error);
    }
    return contentOf(file.get());
}

/// What a document with this root is written as, after the XML declaration and without the line
/// feed at the end.
inline std::string written(const boost::shared_ptr<XmlElement>& root)
{
    XmlDocument document;
    document.setRoot(root);
    const std::string bytes = save(document);
    const std::size_t start = bytes.find('\n') + 1;
    return bytes.substr(start, bytes.size() - start - 1);
}

/// Turns the element and everything below it from views of a file into objects.
inline std::size_t visit(const XmlElement& element)
{
    std::size_t count = 1;
    for (const auto& child : element.mixedChildren()) {
        count += visit(*child);
    }
    return count;
}

inline std::string repeated(std::string_view text, std::size_t times)
{
    std::string all;
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

/// A document of `levels` elements, each but the last around the next.
inline std::string nested(std::size_t levels)
{
    return repeated("<a>", levels) + repeated("</a>", levels);
}

} // namespace KX::testing
