#include "open_library.hpp"

#include "failure.hpp"
#include "node_address.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kxboxlibrary/box_constants.hpp>

#include <QFileInfo>

#include <algorithm>
#include <set>
#include <utility>

namespace kxbox {

using KX::BoxLibraryNode;
using pk::project::ProjectModel;

namespace {

QString translationsDirectory()
{
    return QString::fromLatin1(KX::BoxConstants::a_boxLibraryTranslations);
}

/// Not from any box file, so that nobody makes a library of a directory that has some deep in it.
bool looksLikeLibrary(const ProjectModel& model)
{
    const auto isBox = [&model](const QString& directory) {
        return model.hasFile(directory + QStringLiteral("/box.bhx")) ||
               model.hasFile(directory + QStringLiteral("/behavior.bhx"));
    };
    const auto directoriesIn = [&model](const QString& directory) {
        return model.getFileList(directory, true, false, true);
    };
    const QStringList top = directoriesIn(QString());
    return model.hasFile(QStringLiteral("bxlinfo")) ||
           std::any_of(top.begin(), top.end(), [&](const QString& directory) {
               const QStringList below = directoriesIn(directory);
               return isBox(directory) ||
                      std::any_of(below.begin(), below.end(), [&](const QString& child) {
                          return isBox(directory + QLatin1Char('/') + child);
                      });
           });
}

void append(BoxLibraryNode& node, std::vector<BoxLibraryNode*>& nodes)
{
    nodes.push_back(&node);
    for (BoxLibraryNode* const child : node.children()) {
        append(*child, nodes);
    }
}

} // namespace

ProjectModel openProject(const std::string& path, Progress& progress)
{
    progress.begin("opening");
    ProjectModel model(QString::fromStdString(path));
    const QString type = model.getMetadata(QStringLiteral("Type"));
    if (type.isEmpty() ? !looksLikeLibrary(model)
                       : type != QLatin1String(KX::BoxConstants::a_boxLibraryProjectType)) {
        throw Failure(path + ": not a box library: " +
                      (type.isEmpty() ? std::string("it holds no box and no order file")
                                      : "it is a '" + type.toStdString() + "'"));
    }
    return model;
}

OpenLibrary::OpenLibrary(const std::string& path, Progress& progress)
    : m_path(path), m_progress(progress), m_library(new KX::BoxLibrary(openProject(path, progress)))
{
    m_areTranslationsLeftOut = m_library->projectModel().hasLeftOut(translationsDirectory());
}

std::string OpenLibrary::nameOf(const BoxLibraryNode& node) const
{
    return m_addressing == Addressing::Names ? node.name() : node.fileName();
}

std::string OpenLibrary::address(const BoxLibraryNode& node) const
{
    std::vector<std::string> names;
    for (const BoxLibraryNode* at = &node; at->parent() != nullptr; at = at->parent()) {
        names.push_back(nameOf(*at));
    }
    std::reverse(names.begin(), names.end());
    return node_address::format(names);
}

std::string OpenLibrary::reasonAgainst(const std::string& address, const BoxLibraryNode& folder,
                                       const std::string& name,
                                       const std::vector<BoxLibraryNode*>& found) const
{
    std::string reason;
    if (!found.empty()) {
        reason = "'" + address + "' is ambiguous: '" + found[0]->fileName() + "' and '";
        reason += found[1]->fileName() + "' are both called '" + name;
        return reason + "' (--file-names tells them apart)";
    }
    reason = "no node '" + address + "': ";
    reason += folder.parent() == nullptr ? "the library" : "'" + this->address(folder) + "'";
    reason +=
        isFolder(folder) ? " has no '" + name + "'" : " is a box, which has no nodes below it";
    return reason;
}

BoxLibraryNode& OpenLibrary::node(const std::string& address) const
{
    BoxLibraryNode* at = m_library->boxRoot();
    for (const std::string& name : node_address::parse(address)) {
        std::vector<BoxLibraryNode*> found;
        for (BoxLibraryNode* const child : at->children()) {
            if (nameOf(*child) == name) {
                found.push_back(child);
            }
        }
        if (found.size() != 1) {
            throw Failure(m_path + ": " + reasonAgainst(address, *at, name, found));
        }
        at = found.front();
    }
    return *at;
}

BoxLibraryNode& OpenLibrary::folder(const std::string& address) const
{
    BoxLibraryNode& found = node(address);
    if (!isFolder(found)) {
        throw Failure(m_path + ": '" + address + "' is a box, not a folder");
    }
    return found;
}

BoxLibraryNode& OpenLibrary::box(const std::string& address) const
{
    BoxLibraryNode& found = node(address);
    if (isFolder(found)) {
        throw Failure(m_path + ": '" + address + "' is a folder, not a box");
    }
    return found;
}

BoxLibraryNode& OpenLibrary::nodeBelowRoot(const std::string& address) const
{
    BoxLibraryNode& found = node(address);
    if (found.parent() == nullptr) {
        throw Failure(m_path + ": '" + address + "' is the library's root, which stays as it is");
    }
    return found;
}

std::vector<BoxLibraryNode*>
OpenLibrary::nodesBelowRoot(const std::vector<std::string>& addresses) const
{
    std::vector<BoxLibraryNode*> nodes;
    QSet<const BoxLibraryNode*> given;
    for (const std::string& address : addresses) {
        BoxLibraryNode& found = nodeBelowRoot(address);
        if (given.contains(&found)) {
            throw Failure(m_path + ": '" + address + "' is given twice");
        }
        given.insert(&found);
        nodes.push_back(&found);
    }
    for (const BoxLibraryNode* const node : nodes) {
        for (const BoxLibraryNode* at = node->parent(); at != nullptr; at = at->parent()) {
            if (given.contains(at)) {
                throw Failure(m_path + ": '" + address(*node) + "' is below '" + address(*at) +
                              "', which is given too");
            }
        }
    }
    return nodes;
}

std::vector<BoxLibraryNode*> OpenLibrary::subtree(BoxLibraryNode& node)
{
    std::vector<BoxLibraryNode*> nodes;
    append(node, nodes);
    return nodes;
}

std::set<QString> OpenLibrary::behaviors(BoxLibraryNode& node) const
{
    QStringList paths;
    m_library->xFindBehaviors(&node, paths);
    return std::set<QString>(paths.begin(), paths.end());
}

void OpenLibrary::requireReadableTranslations() const
{
    if (m_areTranslationsLeftOut) {
        throw Failure(m_path + ": not all of '" + translationsDirectory().toStdString() +
                      "' can be read: the rest would be lost");
    }
    const auto files =
        m_library->projectModel().getFileList(translationsDirectory(), false, true, false).size();
    const auto languages = m_library->translations().size();
    if (files != languages) {
        throw Failure(m_path + ": " + std::to_string(files - languages) + " of " +
                      std::to_string(files) +
                      " translation files would be lost: 'kxbox check' says which and why");
    }
}

bool OpenLibrary::isWritable() const
{
    const QFileInfo place(m_library->path());
    return place.isWritable() && QFileInfo(place.path()).isWritable();
}

void OpenLibrary::save()
{
    const QFileInfo place(m_library->path());
    if (place.isFile() && !place.isWritable()) {
        throw Failure(m_path + ": it is read-only");
    }
    m_progress.begin("saving");
    m_library->save();
    m_edited = false;
}

QMap<QString, int> countMessages(const KX::BoxLibrary& library, const QString& context)
{
    return countMessages(library.translations(), context);
}

QMap<QString, int> countMessages(const KX::BoxLibrary::Translators& translators,
                                 const QString& context)
{
    const KR::Localization::ContextRecursiveFinder concerns(context);
    QMap<QString, int> counts;
    for (auto it = translators.begin(); it != translators.end(); ++it) {
        const auto& messages = it.value().messages();
        const auto count =
            std::count_if(messages.begin(), messages.end(),
                          [&concerns](const auto& message) { return concerns(message.context()); });
        if (count > 0) {
            counts.insert(it.key(), static_cast<int>(count));
        }
    }
    return counts;
}

} // namespace kxbox
