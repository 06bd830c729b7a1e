#include "survey.hpp"

#include "box_reader.hpp"
#include "log_watch.hpp"

#include <kr/localization/ts.hpp>
#include <kr/xml_beacons.hpp>
#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <pk/project/error.hpp>

#include <QRegularExpression>

#include <algorithm>
#include <set>
#include <utility>

namespace kxbox {

using pk::project::ProjectModel;

namespace {

const auto a_orderFile = QStringLiteral("bxlinfo");
const auto a_boxFile = QStringLiteral("box.bhx");
const auto a_behaviorFile = QStringLiteral("behavior.bhx");
const auto a_oldMetadata = QStringLiteral(".metadata");

QString translationsDirectory()
{
    return QString::fromLatin1(KX::BoxConstants::a_boxLibraryTranslations);
}

Damage damageOf(const QString& path, const BadBoxFile& error)
{
    return {path, error.what(), error.line, error.column};
}

/// No reader takes more.
constexpr qint64 a_largestFile = qint64{128} << 20U;

/// The store's own word on a file that can't be read would only repeat what a check says. Throws
/// BadBoxFile for one that is too large to be read.
QByteArray bytesOf(const ProjectModel& model, const QString& path)
{
    const LogWatch watch({"pkproject"});
    try {
        return model.getFileBytes(path, a_largestFile);
    } catch (const pk::project::LimitError&) {
        throw BadBoxFile("longer than 128 MiB");
    } catch (const pk::project::Error&) {
        return {}; // as readFile() has it
    }
}

OrderFile readOrderFile(const ProjectModel& model, const QString& prefix, bool isPossible)
{
    OrderFile order;
    order.path = prefix + a_orderFile;
    order.isPossible = isPossible;
    order.exists = model.hasFile(order.path);
    if (!order.exists) {
        return order;
    }
    try {
        const auto root = readXml(bytesOf(model, order.path));
        if (root->beacon() != "Folder") {
            throw BadBoxFile("the element is <" + root->beacon() + ">, not <Folder>");
        }
        for (const auto& node : root->children("Node", std::string())) {
            std::string name;
            if (node->getAttribute("name", name)) {
                order.names.push_back(std::move(name));
            } else {
                ++order.nameless;
            }
        }
    } catch (const BadBoxFile& error) {
        order.damage = damageOf(order.path, error);
    }
    return order;
}

int countPorts(const KX::XmlElement& box)
{
    std::size_t count = 0;
    for (const char* const tag : {KR::XmlBeacons::a_inputBeacon, KR::XmlBeacons::a_outputBeacon,
                                  KR::XmlBeacons::a_parameterBeacon}) {
        count += box.children(tag, std::string()).size();
    }
    return static_cast<int>(count);
}

class Surveyor
{
public:
    Surveyor(const ProjectModel& model, Progress& progress) : m_model(model), m_progress(progress)
    {
    }

    Survey survey();

private:
    void readNode(const QString& path, bool isInBox);
    /// Null when the node is a folder.
    boost::shared_ptr<KX::XmlElement> readBoxFile(SurveyedNode& node) const;
    void lookInto(SurveyedNode& box, const boost::shared_ptr<KX::XmlElement>& element) const;
    void readFolder(SurveyedNode& folder) const;
    void readTranslations();

    const ProjectModel& m_model;
    Progress& m_progress;
    Survey m_survey;
};

Survey Surveyor::survey()
{
    const int directories = m_model.getFileList(QString(), true, true, true).size();
    m_progress.begin("checking", static_cast<std::size_t>(directories) + 1);
    m_survey.paths = m_model.getFileList(QString(), true, true, false);
    m_survey.type = m_model.getMetadata(QStringLiteral("Type"));
    m_survey.version = m_model.getMetadata(QStringLiteral("Version"));
    readNode(QString(), false);
    readTranslations();
    return std::move(m_survey);
}

void Surveyor::readNode(const QString& path, bool isInBox)
{
    m_progress.step();
    SurveyedNode node;
    node.path = path;
    if (const auto element = readBoxFile(node)) {
        node.isBox = true;
        lookInto(node, element);
        m_survey.nodes.push_back(std::move(node));
        return;
    }
    const bool wasBox = isInBox || (node.refusedBox && !path.isEmpty());
    node.wasBox = wasBox;
    readFolder(node);
    const QStringList directories = node.directories;
    m_survey.nodes.push_back(std::move(node));
    for (const QString& directory : directories) {
        readNode(prefixOf(path) + directory, wasBox);
    }
}

boost::shared_ptr<KX::XmlElement> Surveyor::readBoxFile(SurveyedNode& node) const
{
    const QString box = prefixOf(node.path) + a_boxFile;
    const QString behavior = prefixOf(node.path) + a_behaviorFile;
    const bool hasBox = m_model.hasFile(box);
    const bool hasBehavior = m_model.hasFile(behavior);
    node.hasBothBoxFiles = hasBox && hasBehavior;
    if (!hasBox && !hasBehavior) {
        return nullptr;
    }
    const QString file = hasBehavior ? behavior : box;
    try {
        return readBox(bytesOf(m_model, file));
    } catch (const BadBoxFile& error) {
        node.refusedBox = damageOf(file, error);
        return nullptr;
    }
}

void Surveyor::lookInto(SurveyedNode& box, const boost::shared_ptr<KX::XmlElement>& element) const
{
    const KX::BoxData data(nullptr, element);
    const auto isResource = [&](const QString& name) {
        return !name.startsWith(QLatin1Char('/')) && name != a_boxFile && name != a_behaviorFile &&
               name != a_oldMetadata && m_model.hasFile(prefixOf(box.path) + name);
    };
    std::set<QString> seen;
    for (const QString& bitmap : data.bitmaps()) {
        if (!isResource(bitmap) && seen.insert(bitmap).second) {
            box.missingBitmaps.append(bitmap);
        }
    }
    box.refusedPorts = countPorts(*element) - data.inputs().size() - data.outputs().size() -
                       data.parameters().size();
}

void Surveyor::readFolder(SurveyedNode& folder) const
{
    const QString prefix = prefixOf(folder.path);
    QStringList directories = m_model.getFileList(folder.path, true, false, true);
    folder.order = readOrderFile(m_model, prefix, !directories.contains(a_orderFile));
    // The library passes over a directory of this name, wherever it is, unless it is listed.
    const auto isTranslations = [](const std::string& name) {
        return KX::BoxLibraryNode::escapeFileName(name) ==
               KX::BoxConstants::a_boxLibraryTranslations;
    };
    const auto& names = folder.order.names;
    if (std::none_of(names.begin(), names.end(), isTranslations) &&
        directories.removeAll(translationsDirectory()) > 0 && !folder.path.isEmpty()) {
        folder.passedOver.append(prefix + translationsDirectory());
    }
    folder.directories = directories;
    for (const QString& file : m_model.getFileList(folder.path, false, false, false)) {
        if (file != a_orderFile && file != a_boxFile && file != a_behaviorFile) {
            folder.strays.append(prefix + file);
        }
    }
}

void Surveyor::readTranslations()
{
    m_progress.step();
    const QString directory = translationsDirectory();
    for (const QString& file : m_model.getFileList(directory, false, false, false)) {
        const QString path = prefixOf(directory) + file;
        try {
            m_survey.translations.push_back(readTranslationFile(path, bytesOf(m_model, path)));
        } catch (const BadBoxFile& error) {
            TranslationFile tooLarge;
            tooLarge.path = path;
            tooLarge.damage = damageOf(path, error);
            m_survey.translations.push_back(std::move(tooLarge));
        }
    }
    for (const QString& name : m_model.getFileList(directory, true, false, true)) {
        m_survey.translationDirectories.append(prefixOf(directory) + name);
    }
}

Damage damageOf(const QString& path, const std::string& message)
{
    static const QRegularExpression place(QStringLiteral("line (\\d+): (.*)$"),
                                          QRegularExpression::DotMatchesEverythingOption);
    const auto match = place.match(QString::fromStdString(message));
    if (!match.hasMatch()) {
        return {path, message};
    }
    return {path, match.captured(2).toStdString(), match.captured(1).toInt()};
}

} // namespace

Survey surveyOf(const ProjectModel& model, Progress& progress)
{
    return Surveyor(model, progress).survey();
}

TranslationFile readTranslationFile(const QString& path, const QByteArray& bytes)
{
    TranslationFile file;
    file.path = path;
    if (bytes.isEmpty()) {
        file.damage = {path, "the file is empty or can't be read"};
        return file;
    }
    const LogWatch watch({"krlocalization"});
    file.translator = KR::Localization::TS::translatorFrom(bytes);
    if (!watch.records().empty()) {
        file.damage = damageOf(path, watch.records().back().message);
    }
    return file;
}

QString nameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString directoryOf(const QString& path)
{
    return path.left(std::max(0, path.lastIndexOf(QLatin1Char('/'))));
}

QString prefixOf(const QString& directory)
{
    return directory.isEmpty() ? directory : directory + QLatin1Char('/');
}

QString displayNameOf(const QString& fileName)
{
    return QString::fromStdString(KX::BoxLibraryNode::unEscapeFileName(fileName.toStdString()));
}

QString fileNameOf(const QString& displayName)
{
    return QString::fromStdString(KX::BoxLibraryNode::escapeFileName(displayName.toStdString()));
}

QString contextOf(const QString& path)
{
    return QString::fromLatin1(KX::BoxConstants::a_boxLibraryContext) + QStringLiteral(":/") + path;
}

} // namespace kxbox
