#include "project_xml.hpp"

#include <pk/project/error.hpp>

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <unistd.h>

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

Stream open(pk::project::ProjectModel& model, const QString& path)
{
    Stream stream(model.fopen(path, QStringLiteral("rb")), &std::fclose);
    if (!stream && model.hasFile(path)) {
        isDamaged(model, path); // throws when it can't be unpacked
    }
    return stream;
}

bool isUnreadable(pk::project::ProjectModel& model, const QString& path)
{
    if (!model.hasFile(path) || isDamaged(model, path)) {
        return false;
    }
    // Not through the model, which has told the log already.
    const QByteArray local = QFile::encodeName(model.getFileLocalPath(path));
    const int file = ::open(local.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file >= 0) {
        ::close(file);
    }
    return file < 0 && errno != ENOENT;
}

boost::shared_ptr<XmlDocument> readDocument(const Stream& stream)
{
    return stream ? XmlDocument::loadFromXmlFile(stream.get(), nullptr, nullptr) : nullptr;
}

boost::shared_ptr<XmlElement> read(const Stream& stream)
{
    const auto document = readDocument(stream);
    return document ? document->root() : nullptr;
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
