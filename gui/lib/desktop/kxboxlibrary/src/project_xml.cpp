#include "project_xml.hpp"

#include "node_log.hpp"

#include <pk/project/error.hpp>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

namespace KX::project_xml {

namespace {

// No document has more (XmlDocument).
constexpr std::int64_t a_mostBytes = std::int64_t{32} << 20U;

} // namespace

boost::shared_ptr<XmlDocument> readDocument(const Stream& stream)
{
    return stream ? XmlDocument::loadFromXmlFile(stream.get(), nullptr, nullptr) : nullptr;
}

Reading read(const pk::project::ProjectModel& model, const QString& path)
{
    Reading reading;
    try {
        reading.bytes = model.getFileBytes(path, a_mostBytes);
        const auto size = static_cast<std::size_t>(reading.bytes.size());
        const auto document =
            XmlDocument::loadFromXmlBytes(reading.bytes.constData(), size, nullptr, nullptr);
        reading.root = document ? document->root() : nullptr;
    } catch (const pk::project::Error& error) {
        if (!model.hasFile(path)) { // which is not asked before, as it mostly is there
            reading.isUnread = model.isLeftOut(path);
            return reading;
        }
        // Nothing can be had of a damaged or endless file; of any other one, as one that is gone
        // just now, it may still be.
        reading.isUnread = dynamic_cast<const pk::project::FormatError*>(&error) == nullptr &&
                           dynamic_cast<const pk::project::LimitError*>(&error) == nullptr;
        logNode(pk::log::Warning, error.what(), __func__, __LINE__);
    }
    return reading;
}

QByteArray toBytes(const boost::shared_ptr<XmlElement>& root)
{
    XmlDocument document;
    document.setRoot(root);
    char* bytes = nullptr;
    std::size_t size = 0;
    FILE* const stream = ::open_memstream(&bytes, &size);
    if (stream == nullptr) {
        throw std::bad_alloc();
    }
    std::string error;
    const bool written = document.saveToXmlFile(stream, &error, nullptr);
    const bool closed = std::fclose(stream) == 0;
    const std::unique_ptr<char, void (*)(void*)> freeing(bytes, &std::free);
    if (!written || !closed) {
        throw std::runtime_error(error);
    }
    return {bytes, static_cast<int>(size)};
}

void write(Stream stream, const QByteArray& bytes, const QString& path)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool written = std::fwrite(bytes.constData(), 1, size, stream.get()) == size;
    const bool closed = std::fclose(stream.release()) == 0;
    if (!written || !closed) {
        throw std::runtime_error("could not write '" + path.toStdString() +
                                 "': " + std::generic_category().message(errno));
    }
}

} // namespace KX::project_xml
