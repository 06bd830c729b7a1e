#pragma once

#include <kr/localization/translator.hpp>
#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_resource_list.hpp>
#include <kxboxlibrary/export.hpp>
#include <kxboxlibrary/root_box_description.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>
#include <string>

namespace KX {

class BoxData;
class BoxLibrary;
class SiblingNames;

/// One node of a box library: a folder, which has children, or a box, which has box data. Which of
/// the two it is does not change.
///
/// Every node is a directory of a project, named by the node's *file name*; its path is the chain
/// of file names from the first level down. What the user sees is its *name*, from which the file
/// name is derived (escapeFileName()). Names are UTF-8. No two children of a folder have the same
/// name, unless directories on disk do (as "A%2fB" and "A%2FB" both mean A/B).
///
/// A node is *attached* in the tree of a library, whose files it reads and writes, or *detached*:
/// made by take(), clone() or fromDescription(), without a parent, with a project model of its own
/// that has the node's files at its top. Where there is no project at all (a node made by the
/// default constructor, and what is put below it), operations on files do nothing.
///
/// Ownership. A folder's list of children does not own them. A child that was inserted as a
/// detached node is a QObject child of its folder and dies with it. A child that was loaded or
/// created in place is not: it dies by removeChild() and otherwise lives on, so that whoever holds
/// a pointer to it may keep it; when its folder dies, it has no parent, no library and no files any
/// more. TreeDeleter deletes a tree as a whole, removeChildTree() a part of one.
///
/// Files follow every edit at once, in the project model. Operations that change the tree throw
/// what the project model throws, and leave tree and files as they were, unless they say otherwise
/// (what a taken node left at a place does not come back). An edit marks the library dirty; none
/// does in a detached tree. Give a box no children: their directories would be resources of the box
/// when it is loaded.
///
/// Used from the library's thread only.
class KXBOXLIBRARY_EXPORT BoxLibraryNode : public QObject
{
    Q_OBJECT

public:
    using Translators = QHash<QString, KR::Localization::Translator>; ///< by language code

    /// A node with nothing: no parent, library, name, children, box data or project.
    BoxLibraryNode();
    /// The root of a library, which becomes its QObject parent; loads the whole tree
    /// (initFromProject()). When that throws, what was loaded is deleted.
    explicit BoxLibraryNode(BoxLibrary* library);
    ~BoxLibraryNode() override;
    BoxLibraryNode(const BoxLibraryNode&) = delete;
    BoxLibraryNode& operator=(const BoxLibraryNode&) = delete;
    BoxLibraryNode(BoxLibraryNode&&) = delete;
    BoxLibraryNode& operator=(BoxLibraryNode&&) = delete;

    // Where the node is

    /// The library of the tree; null in a detached one.
    BoxLibrary* library() const;
    /// The project that holds the node's files: that of the nearest detached node upward, this one
    /// included, or the library's; null where there is none. Not owned.
    pk::project::ProjectModel* project() const;
    /// The node's directory in its project: "" for a node without a parent, else its parent's path
    /// and its file name, joined with "/".
    QString path() const;
    const std::string& name() const { return m_name; }
    const std::string& fileName() const { return m_fileName; }
    BoxLibraryNode* parent() const { return m_parent; }
    /// The place among the parent's children, in linear time; 0 without a parent.
    int index() const;
    /// The child at a place; null out of range.
    BoxLibraryNode* child(int i) const;
    /// The first child of this name, byte for byte; null when there is none.
    BoxLibraryNode* child(const std::string& name) const;
    /// In the order in which they are shown.
    const QList<BoxLibraryNode*>& children() const { return m_children; }
    /// Null for a folder.
    boost::shared_ptr<BoxData> boxData() const { return m_boxData; }

    /// BoxLibrary::setDirty() of the library; nothing without one.
    void setDirty(bool value);

    /// Makes this node a box with these data, whose changes it forwards from now on; data that it
    /// had before are released. Nothing is written or signalled.
    void setBoxDataInternal(boost::shared_ptr<BoxData> data);

    // Names

    /// The file name for a name. The characters % < > : " / | ? *, a dot at the very end, and a
    /// space at the very beginning or end become "%" and two lower-case hexadecimal digits.
    /// Everything else stays, the backslash too. The result of these four functions ends at the
    /// first NUL, as their input does, and bytes that are no UTF-8 become U+FFFD.
    static std::string escapeFileName(const std::string& name);
    /// The name for a file name: every "%" with two hexadecimal digits becomes the character with
    /// that code (Latin-1). The inverse of escapeFileName().
    static std::string unEscapeFileName(const std::string& fileName);
    /// "Box" and 2 give "Box (2)".
    static std::string numberName(const std::string& name, int number);
    /// The name without one " (NUMBER)" at its very end, where NUMBER may have no digits.
    static std::string unNumberName(const std::string& name);

    /// Sets name and file name to what is asked for, without its number, or, when a sibling has
    /// that name, with the first free number from 2 on. Below a parent, names count as taken whose
    /// files would meet others: the empty one (the parent's own directory), "bxlinfo", at a
    /// library's top "translations", and, in every folder, since each can become the top of a
    /// project by take() and clone(), what cannot stand there (ProjectModel). Takes time that
    /// does not depend on the number of siblings, once the first call has looked at all of them.
    /// Changes nothing else.
    void initName(const std::string& name);

    /// Renames the node: finds a free name (initName()), moves the node's directory and its
    /// messages, writes its new name into its parent's order file, marks the library dirty and
    /// emits dataChanged(). Nothing when that is its name already; of a node without a parent the
    /// name alone is set, as it is.
    ///
    /// A directory that can't be moved (something the tree does not know is in the way) is left
    /// where it is, with a warning in the log: the node then is at its new path without its files.
    /// Throws pk::project::InvalidPath, and does nothing, when no project can have the new path,
    /// or could have the old one, after a renaming above it.
    /// When the translation files or the order file can't be written, that exception comes last,
    /// when the node has its name and place and was signalled.
    void setName(const std::string& name);

    // Loading and making

    /// Fills this node, whose parent and file name are set, from its project: a directory with a
    /// readable box file (loadBox()) makes it a box, any other a folder, with a child for each
    /// directory in it, loaded the same way. Names come from the directories' names. Children are
    /// in the order of the order file, those that it does not list after them in the order of
    /// ProjectModel::getFileList(); an unlisted "translations" is passed over. An order file that
    /// is missing, damaged or no order file counts as empty. It is written anew where it would be
    /// another one. Files that are there but can't be read stay as they are: with such an order
    /// file the folder has its children in that order of the project, and with such a box file the
    /// node is a folder without children. Until the library is opened again, saveFolder() of either
    /// throws IoError, as do, before they do anything, what inserts children, removeChild(), and
    /// setName() of a child. Called once, by what makes nodes. What the project model throws ends
    /// the loading, in the middle of the tree.
    void initFromProject();

    /// Appends the child in the directory `fileName`; null when `fileName` is empty. When loading
    /// it throws, there is no child.
    BoxLibraryNode* appendChildFromProject(const std::string& fileName);

    /// Makes this node, whose parent is set, a new folder: name, directory, empty order file.
    void init(const std::string& name);

    /// Makes this node, whose parent is set, a new box: box data, name, box file, and copies of the
    /// resources, whose paths may begin with one "/"; empty ones are passed over.
    void init(const RootBoxDescription& description);

    /// A detached box, which the caller owns; null when the description has no element.
    static BoxLibraryNode* fromDescription(const RootBoxDescription& description);

    /// A detached copy of this node and all below, with copies of their files, which the caller
    /// owns. Its name is this one's without number, or the library's title for the root. A box's
    /// copied data have no inputs, outputs and parameters, and their changes are not forwarded.
    BoxLibraryNode* clone() const;

    // Saving

    /// Writes the order file from the current children. A child whose name XML can't hold (control
    /// characters) is left out, with a warning in the log, and so comes last when the folder is
    /// loaded. Nothing when the file can't be created. Throws std::runtime_error when it can't be
    /// written whole.
    void saveFolder();

    /// Writes the node's own file anew: the order file of a folder; of a box the box file, from
    /// what is in it. False, with an error in the log's category "kxboxlibrary", when that throws a
    /// std::exception. Does not change whether the library is dirty.
    bool save();

    /// The same for this node and all below. False only when this node's own file failed, and then
    /// nothing below it was written; what fails below is logged, and the rest is still written.
    bool saveAll();

    // Editing the tree. Indices are clamped: 0 or less is the front, too large the end.

    /// Inserts a detached node with its files, under a free name (initName()), and becomes its
    /// QObject parent. Files that another node left at its place when it was taken go. Of a
    /// node without a project nothing but an empty directory is made, whatever it holds, and where
    /// this folder has no project the node's files are dropped. No message is moved:
    /// insertChildren() does that.
    ///
    /// Null, and nothing happens, when `node` is null or not detached: has a parent, is a library's
    /// root, or has this node below it. When copying the files throws, the node is detached as
    /// before and still the caller's.
    BoxLibraryNode* insertChild(int index, BoxLibraryNode* node);
    /// The same at the end.
    BoxLibraryNode* appendChild(BoxLibraryNode* node);

    /// BoxLibrary::insertChildren() with this node as the parent; nothing without a library.
    void insertChildren(int index, QList<BoxLibraryNode*> nodes, const Translators& translators);

    /// Makes a new box; null when the description has no element.
    BoxLibraryNode* insertChild(int index, const RootBoxDescription& description);
    BoxLibraryNode* appendChild(const RootBoxDescription& description);

    /// Makes a new folder; null when the name is empty.
    BoxLibraryNode* insertChild(int index, const std::string& name);
    BoxLibraryNode* appendChild(const std::string& name);

    /// Removes a child with its messages and files and deletes it; of the nodes below it those that
    /// were inserted are deleted with it, the others live on (removeChildTree() deletes all). An
    /// index out of range does nothing. Files that can't be removed are left, with a warning in the
    /// log. Throws when the translations can't be written, before
    /// anything is removed, or the order file can't, after the child is gone.
    void removeChild(int index);

    /// Detaches this node, whose files are copied into a project model of its own, and gives it to
    /// the caller. Null, and nothing happens, for a node without a parent. Throws when a file can't
    /// be copied (clone() too), and nothing has happened.
    ///
    /// This is half of a move or a cut: the files stay in the old project too, until something
    /// takes their place or they are removed, the old order file stays as it is, so do the
    /// messages, the library does not become dirty, and the old parent still forwards the node's
    /// changes, until that comes below the node itself.
    BoxLibraryNode* take();

    /// Removes the node's directory, with all below it, from the project; of a node without a
    /// parent everything in its project. Throws pk::project::PathNotFound when it is not there.
    void unInit();

    /// Moves nodes of the same tree into this folder with their files and messages, whatever is in
    /// them at the cost of renaming one: what take() and insertChildren() do by copying. They come,
    /// in the order of the list, in front of the child that is at `index` before the move, or the
    /// first one behind it that is not in the list; the number of children is the end. Those from
    /// other folders get free names (initName()), and this folder becomes their QObject parent and
    /// forwards their changes. Messages that another node left at a new place go, as its files do.
    /// No signal is emitted but the library's, for being dirty and for its messages.
    ///
    /// False, and nothing happens, when this is a box, there are no nodes, or one of them is null,
    /// given twice, of another tree, its top, or this folder or above it. Throws IoError, before
    /// anything happens, when the order file of a folder in question could not be read when it was
    /// loaded. When a node can't be moved, that is thrown (PathNotFound: it has no directory;
    /// InvalidPath: it would be too deep; AlreadyExists: a file is there), those before it are
    /// moved. When the messages or an order file can't be written, that comes last.
    bool moveIn(int index, const QList<BoxLibraryNode*>& nodes);

    /// Moves the children from `first` to `last`, both included, in front of the one that is at
    /// `destination` before the move; the number of children is the end. Only the order of the
    /// list changes: it reaches the order file with the next saveFolder(), save() or saveAll(), and
    /// to mark the library dirty is the caller's business. Nothing happens when an index is out of
    /// range, `last` is less than `first`, or `destination` lies within the run.
    void moveChildren(int first, int last, int destination);

    // Box files

    /// A copy of the box element in "behavior.bhx", or, where there is none, "box.bhx", read anew
    /// for every call. Null when there is no such file or it is not a box file or behaviour project
    /// of exactly the version a_currentBhxVersion.
    boost::shared_ptr<XmlElement> loadBox() const;

    /// The bytes of that file, whatever they are; empty when it can't be read.
    QByteArray loadBoxData() const;

    /// Writes `box` as the node's box file "box.bhx", making its directory, and removes
    /// "behavior.bhx" and ".metadata" beside it. `box` itself is changed, to be called "root", and
    /// becomes the child of another element. `behavior` does not matter.
    ///
    /// Nothing without a project. Where a directory has the place of "box.bhx", none is written,
    /// and the other two are removed all the same. Throws std::invalid_argument when `box` is null,
    /// as after a loadBox() that found nothing, std::runtime_error when XML can't hold it (it is
    /// nested too deep), and what the project model throws when not all of it could be written; the
    /// files are then as before. That there was no ".metadata", the usual case, is an error record
    /// in the log's category "kxboxlibrary".
    void saveBox(const boost::shared_ptr<XmlElement>& box, bool behavior);

    /// The files of the node's directory, and below it, but for box files and ".metadata". Null
    /// without a project.
    boost::shared_ptr<BoxResourceList> resources() const;

    // Messages

    /// The context of the node's messages: the library's translation context (nothing without a
    /// library), "/" and the path.
    QString translationContext() const;
    /// Gives a context, and all below it, a new value in the library's messages. Nothing without a
    /// library.
    void changeContext(const QString& from, const QString& to);
    /// Removes the messages of this node and all below from the library. Nothing without a library.
    void removeTranslations();

Q_SIGNALS:
    /// The name or box data of `node`, this one or one below it, changed.
    void dataChanged(KX::BoxLibraryNode* node);

private:
    Q_SLOT void onBoxDataChanged();

    /// The path, with a "/" behind it unless it is empty.
    QString prefix() const;
    bool isBelow(const BoxLibraryNode* node) const;
    void setNames(std::string name, std::string fileName);
    SiblingNames& childNames();

    void loadFolder(pk::project::ProjectModel& model);
    void importResources(const BoxResourceList& resources);
    /// A project that has this node's files at its top.
    std::unique_ptr<pk::project::ProjectModel> copyFiles() const;
    /// Removes from a copy of this node's files, at `prefix`, what was left of taken nodes in the
    /// tree: loading would make nodes of it again.
    void removeLeftFiles(pk::project::ProjectModel& copy, const QString& prefix) const;
    /// Removes what a node that was taken left at this child's place. Whether nothing is there
    /// then.
    bool clearPlace(pk::project::ProjectModel& model);
    void moveFiles(const std::string& oldFileName);
    void removeFiles(pk::project::ProjectModel& model) const;

    void attach(int index, BoxLibraryNode* child);
    void detach(BoxLibraryNode* child);
    /// Makes the changes of `child` changes of this node too.
    void forward(BoxLibraryNode* child);
    /// Null stands for those that are gone.
    void stopForwarding(BoxLibraryNode* forwarder);
    /// Makes `child` a child of a name like `name`, with `fill` for its files; undone when that
    /// throws.
    void adopt(int index, BoxLibraryNode* child, const std::string& name,
               const std::function<void()>& fill);
    bool canMoveIn(const QList<BoxLibraryNode*>& nodes) const;
    /// Moves one node to the end of this folder; no order file is written.
    void moveIn(BoxLibraryNode* node);
    /// Puts children, in the order of the list, in front of `next`, or at the end.
    void bringTogether(const QList<BoxLibraryNode*>& nodes, BoxLibraryNode* next);

    /// saveFolder() of a folder whose order file holds the bytes `present`, if any.
    void writeOrder(const QByteArray& present);
    /// Throws IoError when what is in the node's own file is not known.
    void checkIsRead() const;
    void saveOwnFile();
    bool saves(const char* function, int line, const std::function<void()>& write) const;

    std::unique_ptr<pk::project::ProjectModel> m_detachedProject;
    BoxLibrary* m_library = nullptr; // of the root alone; not owned
    std::string m_name;
    std::string m_fileName;
    QPointer<BoxLibraryNode> m_parent; // not owned; null once it is gone
    // What forwards this node's changes: its parent, and those before take(). Not owned.
    QList<QPointer<BoxLibraryNode>> m_forwarders;
    QList<BoxLibraryNode*> m_children;
    boost::shared_ptr<BoxData> m_boxData;
    bool m_isUnread = false; // the box file or order file could not be read when it was loaded
    // Null until a child needs a name. Then always the names of m_children.
    std::unique_ptr<SiblingNames> m_childNames;
    QSet<QString> m_leftFiles; // the file names under which taken children left their files
};

} // namespace KX
