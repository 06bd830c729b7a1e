// Directories that are not named as the library would name them.
#include "check_fixes.hpp"
#include "reserved_names.hpp"

#include <kr/localization/context_patchers.hpp>

#include <map>
#include <set>

namespace kxbox {

using KX::BoxLibraryNode;

namespace {

struct Renaming
{
    BoxLibraryNode* node; // not owned
    QString from;
    QString to;
};

/// What the children of a folder are called, to foretell what BoxLibraryNode::initName() does.
class Siblings
{
public:
    explicit Siblings(const BoxLibraryNode& folder)
        : m_isTop(folder.parent() == nullptr), m_model(*folder.project()), m_path(folder.path())
    {
        for (const BoxLibraryNode* const child : folder.children()) {
            ++m_counts[child->name()];
        }
        const QStringList files = m_model.getFileList(m_path, true, false, false);
        m_files = std::set<QString>(files.begin(), files.end());
    }

    /// Why a child can't have the directory that goes with its name; empty when it can.
    std::string obstacle(const BoxLibraryNode& child);

private:
    bool isTaken(const std::string& name) const;
    bool keepsNumber(const std::string& name);

    /// The names that are given after a base name, up to the first that is free.
    struct Chain
    {
        std::set<std::string> names;
        bool isComplete = false;
    };

    bool m_isTop;
    const pk::project::ProjectModel& m_model;
    QString m_path;
    std::map<std::string, int> m_counts;
    std::set<QString> m_files;
    std::map<std::string, Chain> m_chains;
};

bool Siblings::isTaken(const std::string& name) const
{
    return name.empty() || m_counts.count(name) > 0 || !reservedReason(name, m_isTop).empty();
}

/// Whether a child that asks for `name` gets it, and not the same with a lower number.
bool Siblings::keepsNumber(const std::string& name)
{
    const std::string base = BoxLibraryNode::unNumberName(name);
    Chain& chain = m_chains[base];
    for (auto number = static_cast<int>(chain.names.size()) + 1;
         !chain.isComplete && chain.names.count(name) == 0; ++number) {
        const std::string next = number == 1 ? base : BoxLibraryNode::numberName(base, number);
        chain.names.insert(next);
        chain.isComplete = !isTaken(next);
    }
    return chain.names.count(name) > 0;
}

std::string Siblings::obstacle(const BoxLibraryNode& child)
{
    const std::string& name = child.name();
    const std::string escaped = BoxLibraryNode::escapeFileName(name);
    const QString fileName = QString::fromStdString(escaped);
    if (name.empty()) {
        return "it stands for no name";
    }
    if (const std::string reason = reservedReason(name, m_isTop); !reason.empty()) {
        return "the name '" + name + "' is reserved: " + reason;
    }
    if (m_counts[name] > 1) {
        return "another node is called '" + name + "' too";
    }
    if (m_files.count(fileName) != 0 || m_model.isLeftOut(prefixOf(m_path) + fileName)) {
        return "there is something else at '" + escaped + "'";
    }
    return keepsNumber(name) ? "" : "the library would give '" + name + "' another number";
}

/// `to` is where the folder is going to be.
void plan(const BoxLibraryNode& folder, const QString& to, std::vector<Renaming>& plans,
          Fixes& fixes)
{
    const QString from = folder.path();
    std::optional<Siblings> siblings;
    for (BoxLibraryNode* const child : folder.children()) {
        std::string fileName = child->fileName();
        const std::string canonical = BoxLibraryNode::escapeFileName(child->name());
        const QString childFrom = prefixOf(from) + QString::fromStdString(fileName);
        if (fileName != canonical) {
            if (!siblings) {
                siblings.emplace(folder);
            }
            const std::string obstacle = siblings->obstacle(*child);
            if (obstacle.empty()) {
                fileName = canonical;
                plans.push_back(
                    {child, childFrom, prefixOf(to) + QString::fromStdString(canonical)});
            } else {
                note(fixes.refused, childFrom, obstacle);
            }
        }
        plan(*child, prefixOf(to) + QString::fromStdString(fileName), plans, fixes);
    }
}

} // namespace

void note(std::vector<std::string>& texts, const QString& path, const std::string& text)
{
    texts.push_back(path.toStdString() + ": " + text);
}

void fixDirectoryNames(OpenLibrary& library, std::vector<TranslationFile>& files, Fixes& fixes)
{
    std::vector<Renaming> plans;
    plan(*library->boxRoot(), QString(), plans, fixes);
    if (plans.empty()) {
        return;
    }
    QMap<QString, QString> contexts;
    for (const Renaming& renaming : plans) {
        contexts.insert(contextOf(renaming.from), contextOf(renaming.to));
    }
    if (!moveMessages(library, files, contexts)) {
        for (const Renaming& renaming : plans) {
            note(fixes.refused, renaming.from,
                 "messages could get lost, as long as not every translation file is in order");
        }
        return;
    }
    for (const Renaming& renaming : plans) { // from the top down
        const QString before = renaming.node->path();
        // Not setName(), which would write all translation files for each node.
        renaming.node->initName(renaming.node->name());
        library->projectModel().move(before, renaming.node->path(), false);
        fixes.renamed.insert(renaming.from, renaming.to);
        note(fixes.done, renaming.from, "renamed to " + renaming.to.toStdString());
    }
}

Problems followed(const Problems& problems, const QMap<QString, QString>& renamed)
{
    QMap<QString, QString> contexts;
    for (auto it = renamed.cbegin(); it != renamed.cend(); ++it) {
        contexts.insert(contextOf(it.key()), contextOf(it.value()));
    }
    const KR::Localization::ContextMatchPatcher followPath(renamed);
    const KR::Localization::ContextMatchPatcher followContext(contexts);
    const auto follow = [](const auto& patcher, std::string& text) {
        QString followed = QString::fromStdString(text);
        if (patcher(followed)) {
            text = followed.toStdString();
        }
    };
    Problems result;
    for (Problem problem : problems.list()) {
        follow(followPath, problem.path);
        follow(followContext, problem.subject);
        result.add(std::move(problem));
    }
    return result;
}

} // namespace kxbox
