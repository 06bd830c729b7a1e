#include "metadata.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>

#include <QJsonDocument>
#include <QJsonObject>

namespace pk::project {

namespace {

/// The text that is read where this one was written, as UTF-8.
QString storable(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            ++i;
        } else if (text.at(i).isSurrogate()) {
            text[i] = QLatin1Char('?');
        }
    }
    return text;
}

/// Whether there is nothing but one object or array in a JSON text, as far as it is one. Qt leaks
/// those inside when a key that has one comes twice.
bool isFlat(const QByteArray& json)
{
    bool isString = false;
    int containers = 0;
    for (int i = 0; i < json.size(); ++i) {
        const char c = json.at(i);
        if (isString) {
            i += c == '\\' ? 1 : 0;
            isString = c != '"';
        } else {
            isString = c == '"';
            containers += c == '{' || c == '[' ? 1 : 0;
        }
    }
    return containers <= 1;
}

} // namespace

bool setMetadataValue(Metadata& metadata, const QString& anyKey, const QString& anyValue)
{
    const QString key = storable(anyKey);
    const QString value = storable(anyValue);
    if (metadata.value(key) == value) {
        return false;
    }
    if (value.isEmpty()) {
        metadata.remove(key);
    } else {
        metadata.insert(key, value);
    }
    return true;
}

Metadata parseMetadata(const QByteArray& bytes, const std::string& path)
{
    Metadata metadata;
    if (bytes.isEmpty()) {
        return metadata;
    }
    const std::string refusal = path + ": damaged project metadata: ";
    if (!isFlat(bytes)) {
        throw FormatError(refusal + "it holds more than texts");
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        const QString reason = error.error != QJsonParseError::NoError
                                   ? error.errorString()
                                   : QStringLiteral("it is no JSON object");
        throw FormatError(refusal + reason.toStdString());
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it.value().isString()) {
            throw FormatError(refusal + "the value of '" + it.key().toStdString() + "' is no text");
        }
        setMetadataValue(metadata, it.key(), it.value().toString());
    }
    return metadata;
}

Metadata readMetadata(const Fd& file)
{
    if (static_cast<std::uint64_t>(statOf(file).st_size) > archive_limits::a_maxMetadataBytes) {
        throw LimitError(file.path() + ": it has more bytes than are read of it");
    }
    return parseMetadata(readAll(file), file.path());
}

QByteArray formatMetadata(const Metadata& metadata)
{
    if (metadata.isEmpty()) {
        return {};
    }
    QJsonObject object;
    for (auto it = metadata.begin(); it != metadata.end(); ++it) {
        object.insert(it.key(), it.value());
    }
    QByteArray bytes = QJsonDocument(object).toJson(QJsonDocument::Indented);
    // Qt drops a byte order mark at the front of a text that it reads, unless it is escaped.
    return bytes.replace("\xef\xbb\xbf", "\\ufeff");
}

QByteArray readableMetadata(const Metadata& metadata)
{
    QByteArray bytes = formatMetadata(metadata);
    if (static_cast<std::uint64_t>(bytes.size()) > archive_limits::a_maxMetadataBytes) {
        throw LimitError("the metadata have more than the " +
                         std::to_string(archive_limits::a_maxMetadataBytes) +
                         " bytes that are read");
    }
    return bytes;
}

} // namespace pk::project
