#include "box_file.hpp"
#include "file_names.hpp"
#include "node_log.hpp"
#include "order_file.hpp"
#include "run_then.hpp"
#include "sibling_names.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/project/error.hpp>

#include <QFileInfo>
#include <QMetaType>
#include <QStringList>
#include <boost/make_shared.hpp>

#include <utility>

namespace KX {

namespace {

const int a_nodeType = qRegisterMetaType<BoxLibraryNode*>("KX::BoxLibraryNode *");

} // namespace

BoxLibraryNode::BoxLibraryNode() = default;

BoxLibraryNode::BoxLibraryNode(BoxLibrary* library) : QObject(library), m_library(library)
{
    try {
        initFromProject();
    } catch (...) {
        for (BoxLibraryNode* const child : std::as_const(m_children)) {
            TreeDeleter()(child);
        }
        throw;
    }
}

BoxLibraryNode::~BoxLibraryNode()
{
    // Others may hold data of this node, replaced ones too, so none must die with their QObject
    // parent.
    for (BoxData* const data : findChildren<BoxData*>(QString(), Qt::FindDirectChildrenOnly)) {
        data->setParent(nullptr);
    }
}

BoxLibrary* BoxLibraryNode::library() const
{
    const BoxLibraryNode* node = this;
    while (node->m_library == nullptr && node->m_parent != nullptr) {
        node = node->m_parent;
    }
    return node->m_library;
}

pk::project::ProjectModel* BoxLibraryNode::project() const
{
    for (const BoxLibraryNode* node = this; node != nullptr; node = node->m_parent) {
        if (node->m_detachedProject) {
            return node->m_detachedProject.get();
        }
        if (node->m_library != nullptr) {
            return &node->m_library->projectModel();
        }
    }
    return nullptr;
}

QString BoxLibraryNode::path() const
{
    std::vector<const std::string*> names;
    for (const BoxLibraryNode* node = this; node->m_parent != nullptr; node = node->m_parent) {
        names.push_back(&node->m_fileName);
    }
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        (path += name == names.rbegin() ? "" : "/") += **name;
    }
    return QString::fromStdString(path);
}

QString BoxLibraryNode::prefix() const
{
    const QString path = this->path();
    return path.isEmpty() ? path : path + QLatin1Char('/');
}

int BoxLibraryNode::index() const
{
    return m_parent != nullptr ? m_parent->m_children.indexOf(const_cast<BoxLibraryNode*>(this))
                               : 0;
}

BoxLibraryNode* BoxLibraryNode::child(int i) const
{
    return m_children.value(i, nullptr);
}

BoxLibraryNode* BoxLibraryNode::child(const std::string& name) const
{
    for (BoxLibraryNode* const child : m_children) {
        if (child->m_name == name) {
            return child;
        }
    }
    return nullptr;
}

// NOLINTNEXTLINE(readability-make-member-function-const): the library changes
void BoxLibraryNode::setDirty(bool value)
{
    if (BoxLibrary* const library = this->library()) {
        library->setDirty(value);
    }
}

void BoxLibraryNode::setBoxDataInternal(boost::shared_ptr<BoxData> data)
{
    m_boxData = std::move(data);
    if (m_boxData) {
        connect(m_boxData.get(), &BoxData::tooltipChanged, this, &BoxLibraryNode::onBoxDataChanged);
        connect(m_boxData.get(), &BoxData::bitmapsChanged, this, &BoxLibraryNode::onBoxDataChanged);
        connect(m_boxData.get(), &BoxData::bitmapExpandedChanged, this,
                &BoxLibraryNode::onBoxDataChanged);
    }
}

void BoxLibraryNode::onBoxDataChanged()
{
    setDirty(true);
    Q_EMIT dataChanged(this);
}

// Names

std::string BoxLibraryNode::escapeFileName(const std::string& name)
{
    return file_names::escape(name);
}

std::string BoxLibraryNode::unEscapeFileName(const std::string& fileName)
{
    return file_names::unEscape(fileName);
}

std::string BoxLibraryNode::numberName(const std::string& name, int number)
{
    return file_names::number(name, number);
}

std::string BoxLibraryNode::unNumberName(const std::string& name)
{
    return file_names::unNumber(name);
}

/// Everything that gives a child a name goes through here, so that its parent knows the names.
void BoxLibraryNode::setNames(std::string name, std::string fileName)
{
    if (m_parent != nullptr && m_parent->m_childNames) {
        m_parent->m_childNames->remove(m_name);
        m_parent->m_childNames->add(name);
    }
    m_name = std::move(name);
    m_fileName = std::move(fileName);
}

SiblingNames& BoxLibraryNode::childNames()
{
    if (!m_childNames) {
        m_childNames = std::make_unique<SiblingNames>();
        // The empty name would be this folder's own directory.
        m_childNames->add(std::string());
        // No project can have the others at its top, where this folder's children are when it is
        // detached.
        for (const char* const name : {"bxlinfo", ".git", ".hg", ".svn", ".kxproject"}) {
            m_childNames->add(name);
        }
        if (m_library != nullptr) {
            m_childNames->add(BoxConstants::a_boxLibraryTranslations);
        }
        for (const BoxLibraryNode* const child : std::as_const(m_children)) {
            m_childNames->add(child->m_name);
        }
    }
    return *m_childNames;
}

void BoxLibraryNode::initName(const std::string& name)
{
    std::string free = file_names::unNumber(name);
    if (m_parent != nullptr) {
        SiblingNames& names = m_parent->childNames();
        names.remove(m_name); // a node is not in its own way
        free = names.firstFree(free);
        names.add(m_name);
    }
    std::string fileName = file_names::escape(free);
    setNames(std::move(free), std::move(fileName));
}

void BoxLibraryNode::setName(const std::string& name)
{
    if (m_parent == nullptr) {
        m_name = name;
        return;
    }
    if (name == m_name) {
        return;
    }
    m_parent->checkIsRead();
    const std::string oldName = m_name;
    const std::string oldFileName = m_fileName;
    const QString oldContext = translationContext();
    setNames(std::string(), m_fileName);
    initName(name);
    if (m_fileName != oldFileName) {
        try {
            moveFiles(oldFileName);
        } catch (...) {
            setNames(oldName, oldFileName);
            throw;
        }
    }
    const auto signal = [this] {
        setDirty(true);
        Q_EMIT dataChanged(this);
    };
    // Without its name in the order file the node would lose its place when it is loaded.
    const auto savePlace = [&] { runThen([this] { m_parent->saveFolder(); }, signal); };
    runThen([&] { changeContext(oldContext, translationContext()); }, savePlace);
}

void BoxLibraryNode::moveFiles(const std::string& oldFileName)
{
    pk::project::ProjectModel* const model = project();
    if (model == nullptr) {
        return;
    }
    const QString to = path();
    const QString from =
        QFileInfo(to).path() + QLatin1Char('/') + QString::fromStdString(oldFileName);
    try {
        clearPlace(*model);
        model->move(from, to, false);
    } catch (const pk::project::InvalidPath&) {
        throw; // no project can have that path
    } catch (const pk::project::Error& error) {
        logNode(pk::log::Warning,
                "Could not move '" + from.toStdString() + "' to '" + to.toStdString() +
                    "', reason: " + error.what(),
                "setName", __LINE__);
    }
}

// Saving

void BoxLibraryNode::saveFolder()
{
    writeOrder(QByteArray());
}

void BoxLibraryNode::writeOrder(const QByteArray& present)
{
    if (pk::project::ProjectModel* const model = project()) {
        checkIsRead();
        std::vector<std::string_view> names;
        names.reserve(static_cast<std::size_t>(m_children.size()));
        for (const BoxLibraryNode* const child : std::as_const(m_children)) {
            names.push_back(child->m_name);
        }
        order_file::write(*model, prefix(), names, present);
    }
}

void BoxLibraryNode::checkIsRead() const
{
    if (m_isUnread) {
        throw pk::project::IoError("'/" + path().toStdString() +
                                   "': its own file could not be read when it was loaded, and "
                                   "stays as it is");
    }
}

void BoxLibraryNode::saveOwnFile()
{
    if (const auto data = m_boxData) { // held, whoever reacts to the write
        saveBox(loadBox(), false);
    } else {
        saveFolder();
    }
}

bool BoxLibraryNode::saves(const char* function, int line, const std::function<void()>& write) const
{
    try {
        write();
        return true;
    } catch (const std::exception& error) {
        logNode(pk::log::Error,
                "Could not save node " + path().toStdString() + ", reason: " + error.what(),
                function, line);
        return false;
    }
}

bool BoxLibraryNode::save()
{
    return saves("save", 616, [this] { saveOwnFile(); });
}

bool BoxLibraryNode::saveAll()
{
    return saves("saveAll", 643, [this] {
        saveOwnFile();
        const QList<BoxLibraryNode*> children = m_boxData ? QList<BoxLibraryNode*>() : m_children;
        for (BoxLibraryNode* const child : children) {
            child->saveAll();
        }
    });
}

// Box files

boost::shared_ptr<XmlElement> BoxLibraryNode::loadBox() const
{
    const pk::project::ProjectModel* const model = project();
    return model != nullptr ? box_file::load(*model, prefix()).element : nullptr;
}

QByteArray BoxLibraryNode::loadBoxData() const
{
    const pk::project::ProjectModel* const model = project();
    return model != nullptr ? box_file::loadBytes(*model, prefix()) : QByteArray();
}

void BoxLibraryNode::saveBox(const boost::shared_ptr<XmlElement>& box, bool /*behavior*/)
{
    if (pk::project::ProjectModel* const model = project()) {
        box_file::save(*model, prefix(), box);
    }
}

boost::shared_ptr<BoxResourceList> BoxLibraryNode::resources() const
{
    pk::project::ProjectModel* const model = project();
    if (model == nullptr) {
        return nullptr;
    }
    QStringList files = model->getFileList(path(), false, true, false);
    files.erase(std::remove_if(files.begin(), files.end(), box_file::isOwn), files.end());
    return boost::make_shared<BoxResourceList>(model, path(), files);
}

// Messages

QString BoxLibraryNode::translationContext() const
{
    const BoxLibrary* const library = this->library();
    return (library != nullptr ? library->translationContext() : QString()) + QLatin1Char('/') +
           path();
}

// NOLINTNEXTLINE(readability-make-member-function-const): the library changes
void BoxLibraryNode::changeContext(const QString& from, const QString& to)
{
    if (BoxLibrary* const library = this->library()) {
        library->changeContextes({{from, to}});
    }
}

// NOLINTNEXTLINE(readability-make-member-function-const): the library changes
void BoxLibraryNode::removeTranslations()
{
    if (BoxLibrary* const library = this->library()) {
        library->removeTranslations(library->subtreeContext(path()));
    }
}

} // namespace KX
