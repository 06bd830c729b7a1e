// How the tree is changed: inserting, making, removing, taking and moving nodes.
#include "node_log.hpp"
#include "run_then.hpp"
#include "sibling_names.hpp"

#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace KX {

using pk::project::ProjectModel;

void BoxLibraryNode::attach(int index, BoxLibraryNode* child)
{
    m_children.insert(qBound(0, index, m_children.size()), child);
    child->m_parent = this;
    if (m_childNames) {
        m_childNames->add(child->m_name);
    }
}

void BoxLibraryNode::detach(BoxLibraryNode* child)
{
    m_children.removeAll(child);
    child->m_parent = nullptr;
    if (m_childNames) {
        m_childNames->remove(child->m_name);
    }
}

void BoxLibraryNode::forward(BoxLibraryNode* child)
{
    // A node that was taken is still forwarded by its old parent. Where that is below `child` by
    // now, changes would go round in circles.
    QList<BoxLibraryNode*> reached{this};
    for (int i = 0; i < reached.size(); ++i) {
        BoxLibraryNode* const node = reached.at(i);
        const auto forwarders = node->m_forwarders;
        for (const QPointer<BoxLibraryNode>& forwarder : forwarders) {
            if (forwarder == nullptr || forwarder->isBelow(child)) {
                node->stopForwarding(forwarder);
            } else if (!reached.contains(forwarder)) {
                reached.append(forwarder);
            }
        }
    }
    if (!child->m_forwarders.contains(this)) {
        connect(child, &BoxLibraryNode::dataChanged, this, &BoxLibraryNode::dataChanged);
        child->m_forwarders.append(this);
    }
}

void BoxLibraryNode::stopForwarding(BoxLibraryNode* forwarder)
{
    if (forwarder != nullptr) {
        disconnect(this, &BoxLibraryNode::dataChanged, forwarder, &BoxLibraryNode::dataChanged);
    }
    m_forwarders.removeAll(forwarder);
}

void BoxLibraryNode::adopt(int index, BoxLibraryNode* child, const std::string& name,
                           const std::function<void()>& fill)
{
    ProjectModel* const model = project();
    bool makesPlace = false;
    checkIsRead();
    attach(index, child);
    try {
        child->initName(name);
        makesPlace = model != nullptr && child->clearPlace(*model);
        fill();
        saveFolder();
    } catch (...) {
        if (makesPlace) {
            child->removeFiles(*model);
        }
        detach(child);
        throw;
    }
    forward(child);
    setDirty(true);
}

bool BoxLibraryNode::clearPlace(ProjectModel& model)
{
    if (m_parent->m_leftFiles.remove(QString::fromStdString(m_fileName))) {
        removeFiles(model);
    }
    return !model.hasFile(path()) && model.getFileList(path(), true, false, false).isEmpty();
}

void BoxLibraryNode::removeFiles(ProjectModel& model) const
{
    try {
        model.remove(path());
    } catch (const pk::project::PathNotFound&) {
        // There is nothing to remove, which is what was wanted.
    } catch (const pk::project::Error& error) {
        logNode(pk::log::Warning,
                "Could not remove '" + path().toStdString() + "', reason: " + error.what(),
                __func__, __LINE__);
    }
}

bool BoxLibraryNode::isBelow(const BoxLibraryNode* node) const
{
    const BoxLibraryNode* ancestor = this;
    while (ancestor != nullptr && ancestor != node) {
        ancestor = ancestor->m_parent;
    }
    return ancestor != nullptr;
}

BoxLibraryNode* BoxLibraryNode::insertChild(int index, BoxLibraryNode* node)
{
    if (node == nullptr || node->m_parent != nullptr || node->m_library != nullptr ||
        isBelow(node)) {
        return nullptr;
    }
    const std::string name = node->m_name;
    const std::string fileName = node->m_fileName;
    std::unique_ptr<ProjectModel> own;
    node->setParent(this);
    try {
        adopt(index, node, name, [this, node, &own] {
            if (ProjectModel* const model = project()) {
                if (node->m_detachedProject) {
                    model->importFile(*node->m_detachedProject, QString(), node->path(), true);
                } else {
                    model->mkdir(node->path(), false);
                }
            }
            own = std::move(node->m_detachedProject);
        });
    } catch (...) {
        if (own) {
            node->m_detachedProject = std::move(own);
        }
        node->setParent(nullptr);
        node->setNames(name, fileName);
        throw;
    }
    return node;
}

BoxLibraryNode* BoxLibraryNode::appendChild(BoxLibraryNode* node)
{
    return insertChild(m_children.size(), node);
}

void BoxLibraryNode::insertChildren(int index, QList<BoxLibraryNode*> nodes,
                                    const Translators& translators)
{
    if (BoxLibrary* const library = this->library()) {
        library->insertChildren(this, index, std::move(nodes), translators);
    }
}

BoxLibraryNode* BoxLibraryNode::insertChild(int index, const RootBoxDescription& description)
{
    if (!description.box) {
        return nullptr;
    }
    auto child = std::make_unique<BoxLibraryNode>();
    adopt(index, child.get(), description.name, [&] { child->init(description); });
    return child.release();
}

BoxLibraryNode* BoxLibraryNode::appendChild(const RootBoxDescription& description)
{
    return insertChild(m_children.size(), description);
}

BoxLibraryNode* BoxLibraryNode::insertChild(int index, const std::string& name)
{
    if (name.empty()) {
        return nullptr;
    }
    auto child = std::make_unique<BoxLibraryNode>();
    adopt(index, child.get(), name, [&] { child->init(name); });
    return child.release();
}

BoxLibraryNode* BoxLibraryNode::appendChild(const std::string& name)
{
    return insertChild(m_children.size(), name);
}

void BoxLibraryNode::removeChild(int index)
{
    BoxLibraryNode* const child = this->child(index);
    if (child == nullptr) {
        return;
    }
    checkIsRead();
    child->stopForwarding(this);
    try {
        child->removeTranslations();
    } catch (...) {
        forward(child);
        throw;
    }
    if (ProjectModel* const model = child->project()) {
        child->removeFiles(*model);
    }
    std::unique_ptr<BoxLibraryNode> removed(child);
    detach(child);
    runThen([this] { saveFolder(); },
            [this, &removed] {
                removed.reset();
                setDirty(true);
            });
}

// NOLINTNEXTLINE(readability-make-member-function-const): the project changes
void BoxLibraryNode::unInit()
{
    if (ProjectModel* const model = project()) {
        model->remove(path());
    }
}

BoxLibraryNode* BoxLibraryNode::take()
{
    BoxLibraryNode* const folder = m_parent;
    if (folder == nullptr) {
        return nullptr;
    }
    auto own = copyFiles();
    folder->detach(this);
    folder->m_leftFiles.insert(QString::fromStdString(m_fileName));
    m_library = nullptr;
    setParent(nullptr);
    m_detachedProject = std::move(own);
    return this;
}

bool BoxLibraryNode::canMoveIn(const QList<BoxLibraryNode*>& nodes) const
{
    const auto top = [](const BoxLibraryNode* node) {
        while (node->m_parent != nullptr) {
            node = node->m_parent;
        }
        return node;
    };
    std::set<const BoxLibraryNode*> seen;
    return !m_boxData && !nodes.isEmpty() &&
           std::all_of(nodes.begin(), nodes.end(), [&](const BoxLibraryNode* node) {
               return node != nullptr && node->m_parent != nullptr && top(node) == top(this) &&
                      !isBelow(node) && seen.insert(node).second;
           });
}

bool BoxLibraryNode::moveIn(int index, const QList<BoxLibraryNode*>& nodes)
{
    if (!canMoveIn(nodes)) {
        return false;
    }
    std::set<BoxLibraryNode*> folders{this};
    std::map<BoxLibraryNode*, QString> contexts; // as they were, also of one below another
    for (BoxLibraryNode* const node : nodes) {
        folders.insert(node->m_parent);
        contexts[node] = node->translationContext();
    }
    for (const BoxLibraryNode* const folder : folders) {
        folder->checkIsRead();
    }
    int at = qBound(0, index, m_children.size());
    while (at < m_children.size() && contexts.count(m_children.at(at)) > 0) {
        ++at;
    }
    BoxLibraryNode* const next = child(at);
    QList<BoxLibraryNode*> here;
    QMap<QString, QString> newContexts;
    const auto move = [&] {
        for (BoxLibraryNode* const node : nodes) {
            if (node->m_parent != this) {
                moveIn(node);
                newContexts.insert(contexts[node], node->translationContext());
            }
            here.append(node);
        }
    };
    const auto moveMessages = [&] {
        bringTogether(here, next);
        BoxLibrary* const library = this->library();
        if (library != nullptr && !newContexts.isEmpty()) {
            library->moveMessages(newContexts);
        }
    };
    const auto writeOrders = [&] {
        for (BoxLibraryNode* const folder : folders) {
            folder->saveFolder();
        }
    };
    runThen(move, [&] {
        runThen(moveMessages, [&] { runThen(writeOrders, [this] { setDirty(true); }); });
    });
    return true;
}

void BoxLibraryNode::moveIn(BoxLibraryNode* node)
{
    BoxLibraryNode* const folder = node->m_parent;
    const int index = node->index();
    const QString from = node->path();
    const std::string name = node->m_name;
    const std::string fileName = node->m_fileName;
    folder->detach(node);
    attach(m_children.size(), node);
    try {
        node->initName(name);
        if (ProjectModel* const model = project()) {
            node->clearPlace(*model);
            model->move(from, node->path(), false);
        }
    } catch (...) {
        detach(node);
        node->setNames(name, fileName);
        folder->attach(index, node);
        throw;
    }
    node->stopForwarding(folder);
    forward(node);
    node->setParent(this);
}

void BoxLibraryNode::bringTogether(const QList<BoxLibraryNode*>& nodes, BoxLibraryNode* next)
{
    const std::set<BoxLibraryNode*> moved(nodes.begin(), nodes.end());
    QList<BoxLibraryNode*> children;
    children.reserve(m_children.size());
    for (BoxLibraryNode* const child : std::as_const(m_children)) {
        if (child == next) {
            children += nodes;
        }
        if (moved.count(child) == 0) {
            children.append(child);
        }
    }
    m_children = next == nullptr ? children + nodes : children;
}

void BoxLibraryNode::moveChildren(int first, int last, int destination)
{
    const int count = m_children.size();
    const bool isRun = first >= 0 && first <= last && last < count;
    const bool isPlace = destination >= 0 && destination <= count;
    if (!isRun || !isPlace) {
        return;
    }
    const auto begin = m_children.begin();
    if (destination <= first) {
        std::rotate(begin + destination, begin + first, begin + last + 1);
    } else if (destination > last) {
        std::rotate(begin + first, begin + last + 1, begin + destination);
    }
}

} // namespace KX
