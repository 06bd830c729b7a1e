#pragma once

#include <kr/localization/translator.hpp>
#include <kxboxlibrary/export.hpp>
#include <pk/project/project_model.hpp>

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace KX {

class BoxLibraryNode;
class TranslationMemo;

/// An open box library: a tree of folders and boxes, their files, and the translations of their
/// texts.
///
/// On disk a library is a project (pk::project::ProjectModel): one directory per node, in a folder
/// the order file "bxlinfo", in a box its box file and resources, at the top the directory
/// "translations" with one file per language, and the metadata "Type", "Version" and "title". Every
/// edit is written into the project model at once; save() and saveTo() put the model on disk.
///
/// Translations. The files are what counts: the translators are read from them and never stored
/// otherwise. Every message has a context that says which node it belongs to, "Library:/" and the
/// node's path. Each operation that changes messages rewrites all translation files and reads them
/// again, also when none was concerned; it takes time in proportion to the messages of the
/// languages that did change, and to the bytes of all files.
///
/// Ownership: the library owns its project model and the root node. Nodes that were loaded or
/// created in place outlive it (box_library_node.hpp); TreeDeleter deletes them too.
///
/// Exceptions of the project model pass through all operations. Everything runs on the thread that
/// owns the library; there are no locks.
class KXBOXLIBRARY_EXPORT BoxLibrary : public QObject
{
    Q_OBJECT

public:
    /// The form in which saveTo() writes a library.
    enum LibraryFormat : int
    {
        Directory = 0,
        Archive = 1
    };
    using Translators = QHash<QString, KR::Localization::Translator>; ///< by language code

    /// Opens the library in `model`: loads the whole tree, which writes every folder's order file
    /// into the model, and reads the translations. The library is not dirty afterwards, and what
    /// loading signalled nobody could hear. `readOnly` only says how the library is to be treated:
    /// it decides where translations are looked for, and editors show it; nothing is locked. Throws
    /// what the model throws; nothing of the tree stays behind then.
    explicit BoxLibrary(pk::project::ProjectModel model, bool readOnly = false,
                        QObject* parent = nullptr);

    /// Makes a new, empty library that is on no disk yet, and is not dirty.
    explicit BoxLibrary(const QString& title, bool readOnly = false, QObject* parent = nullptr);

    ~BoxLibrary() override;
    BoxLibrary(const BoxLibrary&) = delete;
    BoxLibrary& operator=(const BoxLibrary&) = delete;
    BoxLibrary(BoxLibrary&&) = delete;
    BoxLibrary& operator=(BoxLibrary&&) = delete;

    /// The metadata "title", or, when that is empty, makeTitleFromPath(path()).
    QString title() const;
    /// Nothing when it is the title already. Otherwise sets the metadata, emits titleChanged(), and
    /// makes the library dirty.
    void setTitle(const QString& title);
    /// The file name of a path, without ".bxl" or ".kbl" in any case of letters at its end. A path
    /// that ends in "/" has an empty file name.
    static QString makeTitleFromPath(const QString& path);

    /// Where the library was opened or last saved; empty when nowhere.
    QString path() const;

    /// Never null.
    BoxLibraryNode* boxRoot() { return m_root; }

    /// The library's files. Who changes them behind the tree's back answers for what the tree then
    /// means.
    pk::project::ProjectModel& projectModel() { return m_model; }
    const pk::project::ProjectModel& projectModel() const { return m_model; }

    /// Whether nodes or the title were edited since the library was opened or saved. What changes
    /// translations alone (setTranslations() and the like) and moveChildren() leave it to the
    /// caller to say so.
    bool isDirty() const { return m_dirty; }
    /// Emits dirtyChanged() when this is a change.
    void setDirty(bool value);

    bool isReadOnly() const { return m_readOnly; }
    /// Emits readOnlyChanged(), which looks for the translation files anew, when this is a change.
    void setReadOnly(bool value);

    /// The node at a path of child indices from the root; null where there is none.
    BoxLibraryNode* node(const QList<int>& indices) const;

    /// Puts the project model on disk where it came from; the library is then not dirty. Node files
    /// are in the model already, except an order that moveChildren() changed: see
    /// BoxLibraryNode::saveAll(). Throws what the model throws, for a library that was never saved
    /// too, and is then as dirty as before.
    void save();

    /// Takes the title from `path`, puts the project model there, becomes writable and clean, and
    /// looks for translation files anew, with the signals in this order. What the model throws
    /// leaves everything but the title as it was.
    void saveTo(const QString& path, LibraryFormat format);

    // Translations

    /// The local paths of the translation files, in the order in which they are read.
    QStringList translationsFiles() const { return m_translationFiles; }
    /// What the translation files say, by language code. Copies cost nothing.
    Translators translations() const { return m_translators; }

    /// Looks for the translation files: in a writable library every file directly in the project
    /// directory "translations", in a read-only one the files
    /// "libraries/box/FILENAME/translations/*.ts" of the application "kinestra" in the data
    /// directories (pk::path::listData), FILENAME being the last part of path(). A file of the
    /// project that is larger than 128 MiB, or damaged in an archive, is left out with a warning in
    /// the log's category "BoxLibrary". When the list is not the one before, emits
    /// translationFilesListChanged(), by which the translators are read. Throws what the project
    /// model throws when a file can't be read at all; the list is then the one before.
    void updateTranslationFilesList();

    /// Reads every listed file anew. A file that can't be opened, is larger than 128 MiB or names
    /// no language is left out with such a warning; of several files of one language the first
    /// counts.
    void updateTranslators();

    /// Replaces the translation files by one per entry, "translations/translation_LANGUAGE.ts" with
    /// the key as the language, and reads them again. The translators are then what the files say,
    /// so an entry should be stored under its own language code. Characters that file names can't
    /// have are escaped as in node names (BoxLibraryNode::escapeFileName). In a read-only library
    /// the files are written and the translators, read from elsewhere, stay. When the model throws,
    /// a writable library puts the files from before back, under these names, as far as the model
    /// takes them. The new files are written before old ones are removed: what is recovered when
    /// the program dies in between (ProjectModel::recover()) has each language as it was or as it
    /// was to be.
    void setTranslations(const Translators& translators);

    /// What the contexts of all messages of the library begin with: "Library:".
    QString translationContext() const;

    /// Adds the messages of boxes that were inserted below the node at `path` (empty for the root).
    /// `names` says how each box was called before and is called now, by display names. A message's
    /// box is found by the first component of its context, after the first "/", that is the file
    /// name of a former name; its context becomes the box's new one, with whatever came after that
    /// component. Messages of no such box come in as they are. What is there already is not looked
    /// at, except that files hold a message but once (KR::Localization::TS).
    void insertMessages(const QString& path, const Translators& translators,
                        const QMap<QString, QString>& names);

    /// Removes every message whose context is `context` or below it. A language without messages
    /// stays, with its file.
    void removeTranslations(const QString& context);

    /// Gives contexts new values, old to new, and everything below them; of several that match a
    /// message the longest counts, and contexts can be swapped.
    void changeContextes(const QMap<QString, QString>& contexts);

    /// The same for nodes that came to new places: messages that are at a new context, or below it,
    /// were left there by others and go.
    void moveMessages(const QMap<QString, QString>& contexts);

    // Editing and export

    /// Inserts detached nodes below `parent` at consecutive positions from `index` on (which is
    /// clamped), in the order of the list, and then brings in their messages from `translators`
    /// (insertMessages()). Of nodes that had the same name the last one gets the messages. Nothing
    /// happens when `parent` is null or the list is empty; nodes that insertChild() refuses are
    /// passed over. When an insertion throws, the nodes before it are in, with their messages, and
    /// the others are as they were; when the messages can't be written, all nodes are in and the
    /// messages are those of before.
    void insertChildren(BoxLibraryNode* parent, int index, QList<BoxLibraryNode*> nodes,
                        const Translators& translators);

    /// Writes every behaviour box of the library into the directory `destination` as a behaviour
    /// project of its own, at the box's path: the box's files, with the box file made into a
    /// "behavior.bhx" whose box is called "root", and the metadata and name of a behaviour project.
    /// Existing directories are merged with. Symbolic links below `destination` are not followed.
    /// The system writes the files to the disk when it sees fit: an export can be done again.
    /// Several programs can export to one destination at once; each waits for the others' turns, a
    /// behaviour at a time.
    ///
    /// A behaviour that can't be exported is left out without a message: what was made for it goes
    /// again, unless its directory existed before; the others are exported. Throws
    /// pk::project::PathNotFound, with an empty text, when `destination` does not exist.
    void exportBehaviors(const QString& destination);

    /// Appends the paths of all behaviour boxes at or below `node`, in tree order.
    void xFindBehaviors(BoxLibraryNode* node, QStringList& paths);

Q_SIGNALS:
    /// The title changed; comes before the library becomes dirty by it.
    void titleChanged(const QString& title);
    /// The name or the data of a node of the tree changed.
    void dataChanged(KX::BoxLibraryNode* node);
    /// isDirty() changed to `value`.
    void dirtyChanged(bool value);
    /// isReadOnly() changed to `value`, and the translations are those of the new place.
    void readOnlyChanged(bool value);
    /// translationsFiles() changed, and translations() with them. When the translations are
    /// replaced it comes with none of them, when the old files are gone, and with the new ones.
    void translationFilesListChanged();

private:
    friend class BoxLibraryNode; // for subtreeContext()

    void setTranslationFilesList(const QStringList& files);
    void warnOfFile(const std::string& message, const char* function, int line) const;
    void putBackTranslations(const Translators& translators, const QStringList& pathsBefore);
    /// The context of the node at a path and of all below it. The root's is the library's own,
    /// without the "/" of BoxLibraryNode::translationContext().
    QString subtreeContext(const QString& path) const;

    pk::project::ProjectModel m_model;
    BoxLibraryNode* m_root = nullptr; // owned
    bool m_readOnly = false;
    bool m_dirty = false;
    QStringList m_translationFiles;
    Translators m_translators;
    std::unique_ptr<TranslationMemo> m_memo;
};

/// The project's form for a library's: Directory and Zip, Unspecified for what is no format.
KXBOXLIBRARY_EXPORT pk::project::ArchiveFormat
libraryFormatToProjectFormat(BoxLibrary::LibraryFormat format);

} // namespace KX
