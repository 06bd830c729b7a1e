#pragma once

#include "progress.hpp"

#include <kr/localization/translator.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QString>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kxbox {

/// A box library on disk, opened to be looked at and edited; and how people name what is in it.
///
/// Nothing on disk changes before save(): edits live in the library's project model.
class OpenLibrary
{
public:
    /// How nodes are addressed (node_address.hpp): by the names that people see, or by the names of
    /// their directories, which are the ones in contexts of messages too.
    enum class Addressing
    {
        Names,
        FileNames
    };

    /// Opens openProject() as a writable library, whatever the disk allows, so that its
    /// translations are those in it.
    OpenLibrary(const std::string& path, Progress& progress);

    KX::BoxLibrary& operator*() const { return *m_library; }
    KX::BoxLibrary* operator->() const { return m_library.get(); }

    /// As the user gave it.
    const std::string& path() const { return m_path; }
    Progress& progress() const { return m_progress; }

    Addressing addressing() const { return m_addressing; }
    void setAddressing(Addressing addressing) { m_addressing = addressing; }
    std::string address(const KX::BoxLibraryNode& node) const;

    /// The node at an address. Throws Failure when there is none, or more than one: two directories
    /// may stand for one name.
    KX::BoxLibraryNode& node(const std::string& address) const;
    /// The same, of which a folder, or a box, is made: Failure when it is the other.
    KX::BoxLibraryNode& folder(const std::string& address) const;
    KX::BoxLibraryNode& box(const std::string& address) const;
    /// The same, not the root.
    KX::BoxLibraryNode& nodeBelowRoot(const std::string& address) const;
    /// The same for each of several, in the order given. Throws Failure when one is given twice or
    /// is below another.
    std::vector<KX::BoxLibraryNode*>
    nodesBelowRoot(const std::vector<std::string>& addresses) const;

    /// Every node below `node`, in the order of the tree, `node` first.
    static std::vector<KX::BoxLibraryNode*> subtree(KX::BoxLibraryNode& node);
    static bool isFolder(const KX::BoxLibraryNode& node) { return node.boxData() == nullptr; }
    /// The paths of the behaviours at or below a node.
    std::set<QString> behaviors(KX::BoxLibraryNode& node) const;

    /// Throws Failure when a translation file would be lost with the next change of messages,
    /// because it can't be read, names no language, or its language has another file.
    void requireReadableTranslations() const;
    /// Whether there are translations that opening left out of the project.
    bool areTranslationsLeftOut() const { return m_areTranslationsLeftOut; }

    /// Whether the disk lets it be saved: the library, and the directory that it is in, where the
    /// store keeps what it needs for a save.
    bool isWritable() const;
    /// Whether there is something to save.
    bool isEdited() const { return m_edited; }
    void setEdited() { m_edited = true; }
    /// Throws Failure for an archive that can't be written, which the store would replace all the
    /// same, and what the store throws.
    void save();

private:
    std::string nameOf(const KX::BoxLibraryNode& node) const;
    /// Why there is no one node for an address, of which `found` are those called `name`.
    std::string reasonAgainst(const std::string& address, const KX::BoxLibraryNode& folder,
                              const std::string& name,
                              const std::vector<KX::BoxLibraryNode*>& found) const;

    std::string m_path;
    Progress& m_progress;
    std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> m_library;
    Addressing m_addressing = Addressing::Names;
    bool m_edited = false;
    bool m_areTranslationsLeftOut = false;
};

/// The project of a library: a directory or an archive. Where the metadata does not say what it is,
/// it counts as a library's when it has an order file at its top, or a box there or in a folder
/// there. Throws Failure for any other project, and what the project store throws.
pk::project::ProjectModel openProject(const std::string& path, Progress& progress);

/// How many messages of a context, and of all contexts below it, each language has; languages
/// without any are left out.
QMap<QString, int> countMessages(const KX::BoxLibrary::Translators& translators,
                                 const QString& context);
QMap<QString, int> countMessages(const KX::BoxLibrary& library, const QString& context);

} // namespace kxbox
