#include "box_reader.hpp"

#include <kx/xml_document.hpp>
#include <kxboxlibrary/box_constants.hpp>

#include <QRegularExpression>

#include <cstdio>
#include <memory>

namespace kxbox {

namespace {

[[noreturn]] void failAt(const std::string& error)
{
    static const QRegularExpression place(QStringLiteral("^line (\\d+), column (\\d+): (.*)$"),
                                          QRegularExpression::DotMatchesEverythingOption);
    const auto match = place.match(QString::fromStdString(error));
    if (!match.hasMatch()) {
        throw BadBoxFile(error);
    }
    throw BadBoxFile(match.captured(3).toStdString(), match.captured(1).toInt(),
                     match.captured(2).toInt());
}

void checkRoot(const KX::XmlElement& root)
{
    using namespace KX::BoxConstants;
    if (root.beacon() != a_boxBhxBeacon && root.beacon() != a_projectTag) {
        throw BadBoxFile("the element is <" + root.beacon() + ">, not <" + a_boxBhxBeacon +
                         "> or <" + a_projectTag + ">");
    }
    const auto version = root.attribute("bhx_version", a_defaultBhxVersion);
    if (version != a_currentBhxVersion) {
        throw BadBoxFile("the version (bhx_version) is " + std::to_string(version) + ", not " +
                         std::to_string(a_currentBhxVersion));
    }
    const auto xmlns = root.attribute("xmlns", std::string());
    if (root.beacon() == a_projectTag && xmlns != a_projectXsd && xmlns != a_legacyProjectXsd) {
        throw BadBoxFile("the namespace '" + xmlns + "' is not '" + a_projectXsd + "'");
    }
}

} // namespace

std::string BadBoxFile::text() const
{
    return line == 0 ? what()
                     : "line " + std::to_string(line) + ", column " + std::to_string(column) +
                           ": " + what();
}

boost::shared_ptr<KX::XmlElement> readXml(const QByteArray& bytes)
{
    if (bytes.isEmpty()) {
        throw BadBoxFile("the file is empty or can't be read");
    }
    // The stream only reads, so that the cast takes nothing away.
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(
        ::fmemopen(const_cast<char*>(bytes.data()), static_cast<std::size_t>(bytes.size()), "rb"),
        std::fclose);
    std::string error = "out of memory";
    const auto document =
        stream ? KX::XmlDocument::loadFromXmlFile(stream.get(), &error, nullptr) : nullptr;
    if (!document) {
        failAt(error);
    }
    return document->root();
}

boost::shared_ptr<KX::XmlElement> readBox(const QByteArray& bytes)
{
    const auto root = readXml(bytes);
    checkRoot(*root);
    const auto box = root->firstChild(KX::BoxConstants::a_boxBeacon);
    if (!box) {
        throw BadBoxFile("there is no <" + std::string(KX::BoxConstants::a_boxBeacon) + "> in it");
    }
    return box->clone();
}

bool isBoxLeftOut(const pk::project::ProjectModel& model, const QString& directory)
{
    return model.isLeftOut(directory + QStringLiteral("/box.bhx")) ||
           model.isLeftOut(directory + QStringLiteral("/behavior.bhx"));
}

} // namespace kxbox
