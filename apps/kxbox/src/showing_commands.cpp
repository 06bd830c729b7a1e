// info, tree and show: what is in a library.
#include "command_line.hpp"
#include "commands.hpp"
#include "messages.hpp"

#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/parameter.hpp>
#include <kxboxlibrary/box_data.hpp>

#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <set>

namespace kxbox {

namespace {

using KX::BoxLibraryNode;

// info

qint64 bytesOf(const KX::BoxLibrary& library)
{
    const QFileInfo place(library.path());
    if (!place.isDir()) {
        return place.size();
    }
    qint64 bytes = 0;
    for (const QString& file : library.projectModel().getFileList(QString(), false, true, false)) {
        bytes += QFileInfo(library.path() + QLatin1Char('/') + file).size();
    }
    return bytes;
}

QStringList languagesOf(const KX::BoxLibrary& library)
{
    QStringList languages = library.translations().keys();
    std::sort(languages.begin(), languages.end());
    return languages;
}

Json toJson(const QStringList& list)
{
    Json array = Json::array();
    for (const QString& text : list) {
        array.push_back(text.toStdString());
    }
    return array;
}

std::string joined(const QStringList& list)
{
    return list.isEmpty() ? "-" : list.join(QStringLiteral(", ")).toStdString();
}

Outcome info(Session& session)
{
    OpenLibrary& library = session.library();
    int folders = -1; // the root is none
    int boxes = 0;
    int resources = 0;
    for (BoxLibraryNode* const node : OpenLibrary::subtree(*library->boxRoot())) {
        ++(OpenLibrary::isFolder(*node) ? folders : boxes);
        if (!OpenLibrary::isFolder(*node)) {
            resources += node->resources()->files.size();
        }
    }
    const auto behaviors = library.behaviors(*library->boxRoot()).size();
    const QStringList languages = languagesOf(*library);
    const QFileInfo place(library->path());
    const std::string form = place.isDir() ? "directory" : "archive";
    const bool readOnly = !library.isWritable();
    const qint64 bytes = bytesOf(*library);

    Outcome outcome;
    outcome.json = {{"library", library.path()},
                    {"title", library->title().toStdString()},
                    {"form", form},
                    {"folders", folders},
                    {"boxes", boxes},
                    {"behaviours", behaviors},
                    {"resources", resources},
                    {"languages", toJson(languages)},
                    {"bytes", bytes},
                    {"readOnly", readOnly}};
    outcome.text = "title       " + printable(library->title()) + "\n" +  //
                   "form        " + form + "\n" +                         //
                   "folders     " + std::to_string(folders) + "\n" +      //
                   "boxes       " + std::to_string(boxes) + "\n" +        //
                   "behaviours  " + std::to_string(behaviors) + "\n" +    //
                   "resources   " + std::to_string(resources) + "\n" +    //
                   "languages   " + printable(joined(languages)) + "\n" + //
                   "size        " + std::to_string(bytes) + " bytes\n" +  //
                   "read-only   " + (readOnly ? "yes" : "no") + "\n";
    return outcome;
}

// tree

/// Draws and lists a tree.
class TreeView
{
public:
    TreeView(const OpenLibrary& library, BoxLibraryNode& top, int depth)
        : m_behaviors(library.behaviors(top)), m_depth(depth)
    {
        const bool isRoot = top.parent() == nullptr;
        const std::string name = isRoot ? library->title().toStdString() : top.name();
        m_text = printable(name) + mark(top) + "\n";
        m_json = entry(name, top);
        add(top, m_json, std::string(), 1);
    }

    const std::string& text() const { return m_text; }
    const Json& json() const { return m_json; }

private:
    std::string mark(const BoxLibraryNode& node) const
    {
        if (OpenLibrary::isFolder(node)) {
            return "/";
        }
        return m_behaviors.count(node.path()) != 0 ? "  [behaviour]" : "";
    }

    Json entry(const std::string& name, const BoxLibraryNode& node) const
    {
        Json json = {{"name", name}, {"fileName", node.fileName()}};
        const bool isFolder = OpenLibrary::isFolder(node);
        json["kind"] = isFolder ? "folder" : "box";
        if (!isFolder) {
            json["behaviour"] = m_behaviors.count(node.path()) != 0;
        }
        return json;
    }

    void add(const BoxLibraryNode& node, Json& json, const std::string& indentation, int depth)
    {
        if (!OpenLibrary::isFolder(node)) {
            return;
        }
        if (depth > m_depth) {
            json["childCount"] = node.children().size();
            return;
        }
        json["children"] = Json::array();
        for (BoxLibraryNode* const child : node.children()) {
            const bool isLast = child == node.children().back();
            m_text += indentation + (isLast ? "└── " : "├── ") + printable(child->name()) +
                      mark(*child) + "\n";
            Json childJson = entry(child->name(), *child);
            add(*child, childJson, indentation + (isLast ? "    " : "│   "), depth + 1);
            json["children"].push_back(std::move(childJson));
        }
    }

    std::set<QString> m_behaviors;
    int m_depth;
    std::string m_text;
    Json m_json;
};

struct TreeArguments
{
    std::string node;
    int depth = std::numeric_limits<int>::max();
};

Outcome tree(Session& session, const TreeArguments& arguments)
{
    OpenLibrary& library = session.library();
    const TreeView view(library, library.node(arguments.node), arguments.depth);
    Outcome outcome;
    outcome.text = view.text();
    outcome.json = {{"library", library.path()}, {"tree", view.json()}};
    return outcome;
}

// show

Json messagesOf(const OpenLibrary& library, const BoxLibraryNode& node)
{
    const QString context = node.translationContext();
    const KX::BoxLibrary::Translators translators = library->translations();
    Json json = Json::object();
    for (const QString& language : languagesOf(*library)) {
        Json list = Json::array();
        const auto translator = translators.value(language);
        for (const auto& message : translator.messages()) {
            if (message.context() == context) {
                Json entry = {{"source", message.source().toStdString()}};
                addTranslation(entry, message);
                entry["state"] = nameOf(message.state());
                list.push_back(std::move(entry));
            }
        }
        json[language.toStdString()] = std::move(list);
    }
    return json;
}

Json portJson(const KR::Port& port)
{
    return {{"id", port.id()},      {"name", port.name()},         {"tooltip", port.tooltip()},
            {"type", port.type()},  {"typeSize", port.typeSize()}, {"nature", port.nature()},
            {"inner", port.inner()}};
}

Json parameterJson(const KR::Parameter& parameter)
{
    return {{"id", parameter.id()},
            {"name", parameter.name()},
            {"tooltip", parameter.tooltip()},
            {"contentType", parameter.contentType()},
            {"value", parameter.value()},
            {"defaultValue", parameter.defaultValue()},
            {"minimum", parameter.minimum()},
            {"maximum", parameter.maximum()},
            {"choices", parameter.choices()},
            {"customChoice", parameter.customChoice()},
            {"inheritsFromParent", parameter.inheritsFromParent()}};
}

template <class List, class ToJson>
Json listJson(const List& list, ToJson toJson)
{
    Json json = Json::array();
    for (const auto& element : list) {
        json.push_back(toJson(*element));
    }
    return json;
}

Json boxJson(const OpenLibrary& library, BoxLibraryNode& node)
{
    const KX::BoxData& data = *node.boxData();
    Json json = {{"library", library.path()},
                 {"node", library.address(node)},
                 {"directory", node.path().toStdString()},
                 {"behaviour", library.behaviors(node).count(node.path()) != 0},
                 {"tooltip", data.tooltip().toStdString()},
                 {"bitmaps", toJson(data.bitmaps())},
                 {"expanded", data.bitmapExpanded()}};
    json["inputs"] = listJson(data.inputs(), portJson);
    json["outputs"] = listJson(data.outputs(), portJson);
    json["parameters"] = listJson(data.parameters(), parameterJson);
    json["resources"] = toJson(node.resources()->files);
    json["messages"] = messagesOf(library, node);
    return json;
}

std::string textOf(const Json& json)
{
    return printable(json.get<std::string>());
}

std::string listText(const char* title, const Json& list)
{
    std::string text;
    for (const Json& entry : list) {
        text += std::string(text.empty() ? title : "            ") + textOf(entry) + "\n";
    }
    return text.empty() ? std::string(title) + "-\n" : text;
}

/// Inputs, outputs or parameters: a line each, names in a column.
std::string ioText(const char* title, const Json& list)
{
    int width = 0;
    for (const Json& io : list) {
        width = std::max(width, QString::fromStdString(textOf(io["name"])).size());
    }
    std::string text = list.empty() ? "" : std::string(title) + "\n";
    for (const Json& io : list) {
        const QString name = QString::fromStdString(textOf(io["name"])).leftJustified(width);
        QString line = QStringLiteral("  ") + name;
        if (io.contains("value")) {
            line += QStringLiteral("  = ") + QString::fromStdString(textOf(io["value"]));
        }
        line += QStringLiteral("  ") + QString::fromStdString(textOf(io["tooltip"]));
        while (line.endsWith(QLatin1Char(' '))) { // there is no tooltip
            line.chop(1);
        }
        text += line.toStdString() + "\n";
    }
    return text;
}

std::string joinedForms(const Json& forms)
{
    std::string text;
    for (const Json& form : forms) {
        text += (text.empty() ? "" : " | ") + textOf(form);
    }
    return text;
}

std::string messagesText(const Json& messages)
{
    std::string text;
    for (const auto& [language, list] : messages.items()) {
        if (!list.empty()) {
            text += "messages in " + printable(language) + "\n";
        }
        for (const Json& message : list) {
            const std::string state = textOf(message["state"]);
            text += "  ";
            text += textOf(message["source"]);
            text += "\n    ";
            if (state != "finished") {
                text += "(";
                text += state;
                text += ") ";
            }
            text += message.contains("translation") ? textOf(message["translation"])
                                                    : joinedForms(message["translations"]);
            text.erase(text.find_last_not_of(' ') + 1);
            text += "\n";
        }
    }
    return text;
}

std::string boxText(const Json& json)
{
    return "box         " + textOf(json["node"]) +
           (json["behaviour"].get<bool>() ? "  [behaviour]" : "") + "\n" + //
           "directory   " + textOf(json["directory"]) + "\n" +             //
           "tooltip     " + textOf(json["tooltip"]) + "\n" +               //
           listText("bitmaps     ", json["bitmaps"]) +                     //
           "expanded    " + (json["expanded"].get<bool>() ? "yes" : "no") + "\n" +
           listText("resources   ", json["resources"]) + ioText("inputs", json["inputs"]) +
           ioText("outputs", json["outputs"]) + ioText("parameters", json["parameters"]) +
           messagesText(json["messages"]);
}

struct ShowArguments
{
    std::string node;
    bool xml = false;
};

Outcome show(Session& session, const ShowArguments& arguments)
{
    OpenLibrary& library = session.library();
    BoxLibraryNode& node = library.box(arguments.node);
    Outcome outcome;
    if (arguments.xml) {
        outcome.text = node.loadBoxData().toStdString();
        outcome.json = {
            {"library", library.path()}, {"node", library.address(node)}, {"xml", outcome.text}};
    } else {
        outcome.json = boxJson(library, node);
        outcome.text = boxText(outcome.json);
    }
    return outcome;
}

} // namespace

void addShowingCommands(CommandLine& commands)
{
    commands.addReading("info", "Says what a library is and what it holds", info);

    const auto treed = std::make_shared<TreeArguments>();
    commands
        .addReading("tree", "Shows folders and boxes",
                    [treed](Session& session) { return tree(session, *treed); })
        .optionalArgument("NODE", treed->node, "Where to begin")
        .count("--depth", "N", treed->depth, "How many levels to show below it");

    const auto shown = std::make_shared<ShowArguments>();
    commands
        .addReading("show", "Shows all that a box is made of",
                    [shown](Session& session) { return show(session, *shown); })
        .argument("NODE", shown->node, "A box")
        .flag("--xml", shown->xml, "Print its box file instead");
}

} // namespace kxbox
