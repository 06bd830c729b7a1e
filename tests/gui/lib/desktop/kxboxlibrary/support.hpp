#pragma once

#include "resource_limit.hpp"
#include "temporary_files.hpp"

#include <kr/localization/ts.hpp>
#include <kx/xml_document.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/log.hpp>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KX::test {

using pk::project::ProjectModel;
using Library = std::unique_ptr<BoxLibrary, TreeDeleter>;
using DetachedNode = std::unique_ptr<BoxLibraryNode, TreeDeleter>;
using Names = std::vector<std::string>;

using temporary::FileSizeLimit;
using temporary::getLocal;
using temporary::putLocal;
using temporary::q;
using temporary::TemporaryDirectory;

/// The methods that a class itself adds to its meta-object, such as
/// "public signal titleChanged(QString title)".
inline Names methodsOf(const QMetaObject& meta)
{
    const std::array<const char*, 3> access{"private", "protected", "public"};
    const std::array<const char*, 4> kind{"method", "signal", "slot", "constructor"};
    Names methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QByteArrayList arguments = method.parameterTypes();
        for (int argument = 0; argument < arguments.size(); ++argument) {
            arguments[argument] += ' ' + method.parameterNames().at(argument);
        }
        methods.push_back(std::string(access.at(method.access())) + " " +
                          kind.at(method.methodType()) + " " + method.name().toStdString() + "(" +
                          arguments.join(", ").toStdString() + ")");
    }
    return methods;
}

/// Delivers what queued connections hold for an object.
inline void deliverQueued(QObject& receiver)
{
    std::string name = "kxboxlibrary_test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    const QCoreApplication application(count, arguments.data());
    QCoreApplication::sendPostedEvents(&receiver);
}

/// Keeps what is logged while it lives.
class LogRecords
{
public:
    LogRecords()
        : m_handler(pk::log::addHandler(
              [this](const pk::log::Record& record) { m_records.push_back(record); }))
    {
    }
    ~LogRecords() { pk::log::removeHandler(m_handler); }
    LogRecords(const LogRecords&) = delete;
    LogRecords& operator=(const LogRecords&) = delete;
    LogRecords(LogRecords&&) = delete;
    LogRecords& operator=(LogRecords&&) = delete;

    const std::vector<pk::log::Record>& all() const { return m_records; }
    /// Those of a category but for the ones that every saved box brings, about ".metadata".
    std::vector<pk::log::Record> of(const std::string& category) const
    {
        std::vector<pk::log::Record> records;
        std::copy_if(m_records.begin(), m_records.end(), std::back_inserter(records),
                     [&](const pk::log::Record& record) {
                         return record.category == category &&
                                record.message.find(".metadata' file") == std::string::npos;
                     });
        return records;
    }

private:
    std::vector<pk::log::Record> m_records;
    std::uint64_t m_handler;
};

/// Does something with every log record while it lives; what it throws reaches who logged.
class LogHook
{
public:
    explicit LogHook(std::function<void(const pk::log::Record&)> hook)
        : m_handler(pk::log::addHandler(std::move(hook)))
    {
    }
    ~LogHook() { pk::log::removeHandler(m_handler); }
    LogHook(const LogHook&) = delete;
    LogHook& operator=(const LogHook&) = delete;
    LogHook(LogHook&&) = delete;
    LogHook& operator=(LogHook&&) = delete;

private:
    std::uint64_t m_handler;
};

/// While it lives, an environment variable has another value.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char* name, const QString& value) : m_name(name)
    {
        if (qEnvironmentVariableIsSet(name)) {
            m_before = qgetenv(name);
        }
        qputenv(name, value.toUtf8());
    }
    ~EnvironmentVariable()
    {
        if (m_before) {
            qputenv(m_name, *m_before);
        } else {
            qunsetenv(m_name);
        }
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    EnvironmentVariable(EnvironmentVariable&&) = delete;
    EnvironmentVariable& operator=(EnvironmentVariable&&) = delete;

private:
    const char* const m_name;
    std::optional<QByteArray> m_before;
};

/// The root element of a document given as text.
inline boost::shared_ptr<XmlElement> element(const std::string& xml)
{
    FILE* const stream = ::fmemopen(const_cast<char*>(xml.data()), xml.size(), "rb");
    std::string error;
    const auto document = XmlDocument::loadFromXmlFile(stream, &error, nullptr);
    static_cast<void>(std::fclose(stream));
    EXPECT_TRUE(document) << error << " in " << xml;
    return document ? document->root() : nullptr;
}

/// A box file with the given attributes and content of its "Box".
inline QByteArray boxFile(const std::string& attributes = {}, const std::string& content = {})
{
    return QByteArray::fromStdString(R"(<KinestraBox bhx_version="3"><Box name="root" )" +
                                     attributes + ">" + content + "</Box></KinestraBox>");
}

/// A translation file.
inline QByteArray translationFile(const std::string& language, const std::string& content = {})
{
    return QByteArray::fromStdString(R"(<TS version="2.1" language=")" + language + "\">" +
                                     content + "</TS>");
}

/// What makes a box a behaviour.
inline const char* behaviorContent()
{
    return R"(<Input id="1" name="onLoad" type="1" type_size="1" nature="0"/>)"
           R"(<Input id="2" name="onStart" type="1" type_size="1" nature="2"/>)"
           R"(<Input id="3" name="onStop" type="1" type_size="1" nature="3"/>)"
           R"(<Output id="4" name="onStopped" type="1" type_size="1" nature="1"/>)"
           R"(<Timeline/>)";
}

/// The file of a behaviour box of the given name.
inline QByteArray behaviorBox(const std::string& name)
{
    return QByteArray::fromStdString(R"(<KinestraBox bhx_version="3"><Box name=")" + name +
                                     R"(" tooltip="of )" + name + R"(">)" + behaviorContent() +
                                     "</Box></KinestraBox>");
}

inline QByteArray orderFile(const Names& names)
{
    QByteArray xml = "<Folder>";
    for (const std::string& name : names) {
        xml += "<Node name=\"" + QByteArray::fromStdString(name) + "\"/>";
    }
    return xml + "</Folder>";
}

/// Files of a project: paths with their bytes; a path that ends in "/" is a directory.
inline ProjectModel project(const std::vector<std::pair<std::string, QByteArray>>& files)
{
    ProjectModel model;
    for (const auto& [path, bytes] : files) {
        if (path.back() == '/') {
            model.mkdir(q(path), true);
        } else {
            model.writeFile(q(path), bytes);
        }
    }
    return model;
}

/// The same project after it was saved to a local path and opened again from there.
inline ProjectModel stored(ProjectModel model, const QString& path,
                           pk::project::ArchiveFormat format)
{
    model.save(path, format, false);
    return ProjectModel(path);
}

inline Library open(ProjectModel model, bool readOnly = false)
{
    return Library(new BoxLibrary(std::move(model), readOnly, nullptr));
}

inline Library newLibrary()
{
    return Library(new BoxLibrary(q("Demo"), false, nullptr));
}

/// What a box called `name` can be made from.
inline RootBoxDescription description(const std::string& name, const std::string& content = {})
{
    return {name, element("<Box name=\"x\">" + content + "</Box>")};
}

inline Names childNames(const BoxLibraryNode& node)
{
    Names names;
    for (const BoxLibraryNode* const child : node.children()) {
        names.push_back(child->name());
    }
    return names;
}

/// The names in a folder's order file.
inline Names orderIn(const ProjectModel& model, const std::string& folder = {})
{
    const QByteArray bytes = model.readFile(q(folder.empty() ? "bxlinfo" : folder + "/bxlinfo"));
    Names names;
    for (const auto& node : element(bytes.toStdString())->children("Node", "")) {
        names.push_back(node->attribute("name", std::string("<none>")));
    }
    return names;
}

/// Every file of a project, in the order of their bytes.
inline Names filesOf(const ProjectModel& model, const std::string& directory = {})
{
    Names names;
    for (const QString& file : model.getFileList(q(directory), false, true, false)) {
        names.push_back(file.toStdString());
    }
    return names;
}

/// One language's translator with a message for each context, all with the source "text".
inline KR::Localization::Translator translator(const std::string& language, const Names& contexts)
{
    KR::Localization::Translator result(q(language));
    for (const std::string& context : contexts) {
        KR::Localization::Message message(q(context), q("text"));
        message.setTranslation(q("translated"));
        message.setState(KR::Localization::Message::State::Finished);
        result.messages().append(message);
    }
    return result;
}

/// A set of translators, as the library takes it.
inline BoxLibrary::Translators
translators(const std::vector<KR::Localization::Translator>& languages)
{
    BoxLibrary::Translators set;
    for (const auto& language : languages) {
        set.insert(language.languageCode(), language);
    }
    return set;
}

/// A translation file with a message for each context.
inline QByteArray tsFile(const std::string& language, const Names& contexts = {"Library:/A"})
{
    return KR::Localization::TS::translatorTo(translator(language, contexts), false);
}

/// A library's languages in order, each with its number of messages.
inline Names languagesOf(const BoxLibrary& library)
{
    Names languages;
    const BoxLibrary::Translators set = library.translations();
    for (auto it = set.cbegin(); it != set.cend(); ++it) {
        languages.push_back(it.key().toStdString() + " " +
                            std::to_string(it.value().messages().size()));
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

/// The names of a library's translation files in the order of the list: of a project's own files
/// those in the project, since what is not saved yet has other names on disk.
inline Names listOf(const BoxLibrary& library)
{
    const ProjectModel& model = library.projectModel();
    std::map<QString, std::string> own;
    for (const std::string& file : filesOf(model, "translations")) {
        own.emplace(model.getFileLocalPath(q("translations/" + file)), file);
    }
    Names names;
    for (const QString& path : library.translationsFiles()) {
        const auto found = own.find(path);
        names.push_back(found != own.end() ? found->second
                                           : QFileInfo(path).fileName().toStdString());
    }
    return names;
}

/// The contexts of a language's messages, in order.
inline Names contextsOf(const BoxLibrary& library, const std::string& language)
{
    Names contexts;
    const KR::Localization::Translator found = library.translations().value(q(language));
    for (const auto& message : found.messages()) {
        contexts.push_back(message.context().toStdString());
    }
    return contexts;
}

/// Everything in a project: paths with the bytes of files, "<directory>" for directories.
inline std::map<std::string, QByteArray> contentsOf(const ProjectModel& model)
{
    std::map<std::string, QByteArray> contents;
    for (const QString& path : model.getFileList(QString(), true, true, false)) {
        contents[path.toStdString()] = model.hasFile(path) ? model.readFile(path) : "<directory>";
    }
    return contents;
}

/// The paths of all nodes below one, in tree order.
inline Names pathsBelow(const BoxLibraryNode& node)
{
    Names paths;
    for (const BoxLibraryNode* const child : node.children()) {
        paths.push_back(child->path().toStdString());
        const Names below = pathsBelow(*child);
        paths.insert(paths.end(), below.begin(), below.end());
    }
    return paths;
}

/// The library after it was saved in a form and opened from there.
inline Library reopened(Library library, const TemporaryDirectory& directory,
                        BoxLibrary::LibraryFormat form)
{
    const QString path = directory.path("saved.bxl");
    library->saveTo(path, form);
    library.reset();
    return open(ProjectModel(path));
}

/// The names of forms in the names of tests.
inline std::string formName(const testing::TestParamInfo<BoxLibrary::LibraryFormat>& form)
{
    return form.param == BoxLibrary::Archive ? "Archive" : "Directory";
}

} // namespace KX::test
