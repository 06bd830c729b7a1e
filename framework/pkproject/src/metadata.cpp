#include "metadata.hpp"

#include <pk/project/error.hpp>

#include <QJsonDocument>
#include <QJsonObject>

namespace pk::project {

bool setMetadataValue(Metadata& metadata, const QString& key, const QString& value)
{
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
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        const QString reason = error.error != QJsonParseError::NoError
                                   ? error.errorString()
                                   : QStringLiteral("it is no JSON object");
        throw FormatError(path + ": damaged project metadata: " + reason.toStdString());
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it.value().isString()) {
            throw FormatError(path + ": damaged project metadata: the value of '" +
                              it.key().toStdString() + "' is no text");
        }
        setMetadataValue(metadata, it.key(), it.value().toString());
    }
    return metadata;
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
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace pk::project
