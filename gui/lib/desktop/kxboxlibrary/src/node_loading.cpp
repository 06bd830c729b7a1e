// How nodes are filled from the files of a project, and how new ones and copies are made.
#include "box_file.hpp"
#include "file_names.hpp"
#include "order_file.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <vector>

namespace KX {

using pk::project::ProjectModel;

namespace {

/// Whether a project has a box file or an order file at its top.
bool hasOwnFile(const ProjectModel& model)
{
    const QStringList files = model.getFileList(QString(), false, false, false);
    return std::any_of(files.begin(), files.end(), box_file::isOwn) ||
           files.contains(order_file::fileName());
}

} // namespace

void BoxLibraryNode::initFromProject()
{
    ProjectModel* const model = project();
    if (model == nullptr) {
        return;
    }
    const auto box = box_file::load(*model, prefix());
    m_isUnread = box.isUnread;
    setNames(file_names::unEscape(m_fileName), m_fileName);
    if (box.element) {
        setBoxDataInternal(boost::make_shared<BoxData>(this, box.element));
    } else if (!m_isUnread) {
        loadFolder(*model);
    } // else it may be a box, whose directory is to stay as it is
}

void BoxLibraryNode::loadFolder(ProjectModel& model)
{
    const QString prefix = this->prefix();
    std::vector<std::string> directories; // sorted
    for (const QString& entry : model.getFileList(prefix, true, false, true)) {
        if (!entry.contains(QLatin1Char('/'))) {
            directories.push_back(entry.toStdString());
        }
    }
    std::vector<bool> isListed(directories.size());
    const auto order = order_file::read(model, prefix);
    for (const std::string& name : order.names) {
        const std::string fileName = file_names::escape(name);
        const auto found = std::lower_bound(directories.begin(), directories.end(), fileName);
        const auto place = static_cast<std::size_t>(found - directories.begin());
        if (found != directories.end() && *found == fileName && !isListed[place]) {
            isListed[place] = true;
            appendChildFromProject(fileName);
        }
    }
    for (std::size_t i = 0; i < directories.size(); ++i) {
        if (!isListed[i] && directories[i] != BoxConstants::a_boxLibraryTranslations) {
            appendChildFromProject(directories[i]);
        }
    }
    m_isUnread = order.isUnread;
    if (!m_isUnread) {
        writeOrder(order.bytes);
    }
}

BoxLibraryNode* BoxLibraryNode::appendChildFromProject(const std::string& fileName)
{
    if (fileName.empty()) {
        return nullptr;
    }
    std::unique_ptr<BoxLibraryNode, TreeDeleter> child(new BoxLibraryNode);
    child->m_fileName = fileName;
    m_leftFiles.remove(QString::fromStdString(fileName));
    attach(m_children.size(), child.get());
    try {
        child->initFromProject();
    } catch (...) {
        detach(child.get());
        throw;
    }
    forward(child.get());
    setDirty(true);
    return child.release();
}

void BoxLibraryNode::init(const std::string& name)
{
    initName(name);
    if (ProjectModel* const model = project()) {
        model->mkdir(path(), false);
        saveFolder();
    }
}

void BoxLibraryNode::init(const RootBoxDescription& description)
{
    setBoxDataInternal(boost::make_shared<BoxData>(this, description.box));
    initName(description.name);
    saveBox(description.box->clone(), false);
    if (description.resources) {
        importResources(*description.resources);
    }
}

void BoxLibraryNode::importResources(const BoxResourceList& resources)
{
    ProjectModel* const model = project();
    if (model == nullptr || resources.projectModel == nullptr) {
        return;
    }
    const QString from = resources.path.isEmpty() ? QString() : resources.path + QLatin1Char('/');
    const QString to = prefix();
    for (const QString& file : resources.files) {
        if (!file.isEmpty()) {
            const QString name = file.startsWith(QLatin1Char('/')) ? file.mid(1) : file;
            model->importFile(*resources.projectModel, from + name, to + name, false);
        }
    }
}

BoxLibraryNode* BoxLibraryNode::fromDescription(const RootBoxDescription& description)
{
    if (!description.box) {
        return nullptr;
    }
    auto node = std::make_unique<BoxLibraryNode>();
    node->m_detachedProject = std::make_unique<ProjectModel>();
    node->init(description);
    return node.release();
}

BoxLibraryNode* BoxLibraryNode::clone() const
{
    std::unique_ptr<BoxLibraryNode, TreeDeleter> copy(new BoxLibraryNode);
    const bool isRoot = m_parent == nullptr && m_library != nullptr;
    copy->initName(isRoot ? m_library->title().toStdString() : m_name);
    copy->m_detachedProject = copyFiles();
    // What was left out of the project does not come along.
    copy->m_isUnread = m_isUnread && hasOwnFile(*copy->m_detachedProject);
    removeLeftFiles(*copy->m_detachedProject, QString());
    if (m_boxData) {
        copy->m_boxData = m_boxData->clone(copy.get());
    }
    for (const BoxLibraryNode* const child : m_children) {
        copy->appendChildFromProject(child->m_fileName);
    }
    if (m_isUnread && !copy->m_isUnread) {
        copy->saveFolder();
    }
    return copy.release();
}

void BoxLibraryNode::removeLeftFiles(ProjectModel& copy, const QString& prefix) const
{
    for (const QString& fileName : m_leftFiles) {
        try {
            copy.remove(prefix + fileName);
        } catch (const pk::project::Error&) {
            // They were removed before, or could not be copied to the top of a project.
        }
    }
    for (const BoxLibraryNode* const child : m_children) {
        child->removeLeftFiles(copy, prefix + QString::fromStdString(child->m_fileName) +
                                         QLatin1Char('/'));
    }
}

std::unique_ptr<ProjectModel> BoxLibraryNode::copyFiles() const
{
    auto copy = std::make_unique<ProjectModel>();
    if (const ProjectModel* const model = project()) {
        try {
            copy->importFile(*model, path(), QString(), true);
        } catch (const pk::project::PathNotFound&) {
            if (!model->getFileList(path(), true, false, false).isEmpty()) {
                throw; // somebody else removed one of them: the others must not be lost
            }
            // A node whose directory is gone has no files.
        }
    }
    return copy;
}

} // namespace KX
