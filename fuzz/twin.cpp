#include "twin.hpp"

#include <kr/localization/message.hpp>

#include <algorithm>

namespace fuzz {

namespace {

using Node = KX::BoxLibraryNode;

std::string below(const std::string& path, const std::string& name)
{
    return path.empty() ? name : path + '/' + name;
}

std::string fileNameOf(const Twin& twin)
{
    return Node::escapeFileName(twin.name);
}

/// Whether an order file, which is XML, can have the name.
bool isOrderable(const std::string& name)
{
    const QString text = q(name);
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        const ushort c = character.unicode();
        return (c >= 0x20 || c == '\t' || c == '\n' || c == '\r') && c != 0xfffe && c != 0xffff;
    });
}

std::string boxText(const QString& tooltip, const QList<QString>& bitmaps, bool expanded)
{
    std::string text = ": " + tooltip.toStdString() + (expanded ? " expanded" : " collapsed");
    for (const QString& bitmap : bitmaps) {
        text += " [" + bitmap.toStdString() + ']';
    }
    return text;
}

void addText(std::string& text, const Twin& twin, const std::string& path)
{
    text += path + ": " + twin.name;
    text += twin.isBox ? boxText(twin.tooltip, twin.bitmaps, twin.expanded) : std::string();
    text += '\n';
    for (const auto& child : twin.children) {
        addText(text, *child, below(path, fileNameOf(*child)));
    }
}

void addText(std::string& text, const Node& node)
{
    text += node.path().toStdString() + ": " + (node.parent() != nullptr ? node.name() : "");
    if (const auto data = node.boxData()) {
        text += boxText(data->tooltip(), data->bitmaps(), data->bitmapExpanded());
    }
    text += '\n';
    for (const Node* const child : node.children()) {
        addText(text, *child);
    }
}

void addFiles(Contents& files, const Twin& twin, const std::string& path)
{
    if (!path.empty()) {
        files[path] = "<directory>";
    }
    files[below(path, twin.isBox ? "box.bhx" : "bxlinfo")] = "<node>";
    for (const std::string& resource : twin.resources) {
        const std::string file = below(path, resource);
        files[file.substr(0, file.rfind('/'))] = "<directory>";
        files[file] = QByteArray::fromStdString(resource);
    }
    for (const auto& child : twin.children) {
        addFiles(files, *child, below(path, fileNameOf(*child)));
    }
}

void addLeft(std::vector<std::string>& paths, const Twin& twin, const std::string& path)
{
    for (const std::string& left : twin.left) {
        paths.push_back(below(path, left));
    }
    for (const auto& child : twin.children) {
        addLeft(paths, *child, below(path, fileNameOf(*child)));
    }
}

bool isAtOrBelow(const std::string& path, const std::string& directory)
{
    return path == directory || path.compare(0, directory.size() + 1, directory + '/') == 0;
}

void addMessages(std::multiset<std::string>& messages, const Twin& twin, const std::string& context)
{
    for (const auto& [language, source] : twin.messages) {
        messages.insert(messageText(language, context, source, source));
    }
    for (const auto& child : twin.children) {
        addMessages(messages, *child, context + '/' + fileNameOf(*child));
    }
}

} // namespace

std::unique_ptr<Twin> Twin::clone() const
{
    auto copy = std::make_unique<Twin>();
    copy->name = name;
    copy->isBox = isBox;
    copy->tooltip = tooltip;
    copy->bitmaps = bitmaps;
    copy->expanded = expanded;
    copy->resources = resources;
    copy->messages = messages;
    for (const auto& child : children) {
        copy->children.push_back(child->clone());
    }
    return copy;
}

void Twin::dropMessages()
{
    messages.clear();
    for (const auto& child : children) {
        child->dropMessages();
    }
}

std::size_t Twin::size() const
{
    std::size_t size = 1;
    for (const auto& child : children) {
        size += child->size();
    }
    return size;
}

void Twin::sortAsLoaded()
{
    const auto rest =
        std::stable_partition(children.begin(), children.end(),
                              [](const auto& child) { return isOrderable(child->name); });
    std::sort(rest, children.end(),
              [](const auto& a, const auto& b) { return fileNameOf(*a) < fileNameOf(*b); });
    for (const auto& child : children) {
        child->sortAsLoaded();
    }
}

std::string textOf(const Twin& twin)
{
    std::string text;
    addText(text, twin, {});
    return text;
}

std::string textOf(const Node& node)
{
    std::string text;
    addText(text, node);
    return text;
}

std::vector<std::string> leftPaths(const Twin& root)
{
    std::vector<std::string> paths;
    addLeft(paths, root, {});
    return paths;
}

Contents filesOf(const Twin& root)
{
    Contents files;
    addFiles(files, root, {});
    return files;
}

Contents filesOf(const KX::BoxLibrary& library, const Twin& root)
{
    const ProjectModel& model = library.projectModel();
    std::vector<std::string> ignored = leftPaths(root);
    ignored.emplace_back("translations");
    Contents files;
    for (const QString& path : model.getFileList(QString(), true, true, false)) {
        const std::string name = path.toStdString();
        if (std::any_of(ignored.begin(), ignored.end(), [&name](const std::string& directory) {
                return isAtOrBelow(name, directory);
            })) {
            continue;
        }
        const QString file = path.section(QLatin1Char('/'), -1);
        if (!model.hasFile(path)) {
            files[name] = "<directory>";
        } else if (file == q("bxlinfo") || file == q("box.bhx")) {
            files[name] = "<node>";
        } else {
            files[name] = model.readFile(path);
        }
    }
    return files;
}

std::string messageText(const QString& language, const std::string& context, const QString& source,
                        const QString& translation)
{
    return language.toStdString() + ' ' + context + ": " + source.toStdString() + " = " +
           translation.toStdString();
}

std::multiset<std::string> messagesOf(const Twin& root)
{
    std::multiset<std::string> messages;
    for (const auto& child : root.children) {
        addMessages(messages, *child, "Library:/" + fileNameOf(*child));
    }
    return messages;
}

std::multiset<std::string> messagesOf(const KX::BoxLibrary::Translators& translators)
{
    std::multiset<std::string> messages;
    for (auto it = translators.cbegin(); it != translators.cend(); ++it) {
        for (const auto& message : it.value().messages()) {
            messages.insert(messageText(it.key(), message.context().toStdString(), message.source(),
                                        message.translation()));
        }
    }
    return messages;
}

} // namespace fuzz
