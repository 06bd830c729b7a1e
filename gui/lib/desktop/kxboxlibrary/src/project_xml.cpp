#include "project_xml.hpp"

#include "node_log.hpp"

#include <pk/project/error.hpp>

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

namespace KX::project_xml {

namespace {

bool isDamaged(pk::project::ProjectModel& model, const QString& path)
{
    try {
        model.getFileLocalPath(path);
        return false;
    } catch (const pk::project::FormatError&) {
        return true;
    }
}

} // namespace

boost::shared_ptr<XmlDocument> readDocument(const Stream& stream)
{
    return stream ? XmlDocument::loadFromXmlFile(stream.get(), nullptr, nullptr) : nullptr;
}

Reading read(pk::project::ProjectModel& model, const QString& path)
{
    Reading reading = read({model.fopen(path, QStringLiteral("rb")), &std::fclose}, path);
    if (!reading.stream) {
        reading.isUnread = model.hasFile(path) && !isDamaged(model, path);
    }
    return reading;
}

Reading read(Stream stream, const QString& path)
{
    Reading reading;
    reading.stream = std::move(stream);
    if (reading.stream) {
        std::string error;
        const auto document = XmlDocument::loadFromXmlFile(reading.stream.get(), &error, nullptr);
        reading.root = document ? document->root() : nullptr;
        reading.isUnread = std::ferror(reading.stream.get()) != 0;
        if (reading.isUnread) {
            logNode(pk::log::Warning, "'" + path.toStdString() + "': " + error, __func__, __LINE__);
        }
    }
    return reading;
}

QByteArray bytes(const Stream& stream)
{
    QFile file;
    std::rewind(stream.get());
    return file.open(stream.get(), QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
