#pragma once

#include <kx/xml_document.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/log.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KX::test {

using pk::project::ProjectModel;
using Library = std::unique_ptr<BoxLibrary, TreeDeleter>;
using DetachedNode = std::unique_ptr<BoxLibraryNode, TreeDeleter>;
using Names = std::vector<std::string>;

inline QString q(const std::string& text)
{
    return QString::fromStdString(text);
}

/// A temporary directory that is gone after the test, in memory where that can be.
class TemporaryDirectory
{
public:
    TemporaryDirectory() : m_directory(base() + q("/kxboxlibrary-test-XXXXXX"))
    {
        EXPECT_TRUE(m_directory.isValid());
    }
    QString path(const std::string& name) const { return m_directory.filePath(q(name)); }
    QString path() const { return m_directory.path(); }

private:
    static QString base()
    {
        const QFileInfo memory(q("/dev/shm"));
        return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
    }
    QTemporaryDir m_directory;
};

inline void putLocal(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray getLocal(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
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

/// The contexts of a language's messages, in order.
inline Names contextsOf(const BoxLibrary& library, const std::string& language)
{
    const KR::Localization::Translator translator = library.translations().value(q(language));
    Names contexts;
    for (const auto& message : translator.messages()) {
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
