#pragma once

#include "faulty_disk.hpp"
#include "place.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pk::project::test {

inline void saveInPlace(ProjectModel& model)
{
    model.save(QString(), ArchiveFormat::Source, true);
}

/// Paths and bytes of files.
using Files = std::vector<std::pair<std::string, std::string>>;

/// Makes a model that has these files a project on disk.
inline void saveFiles(ProjectModel& model, const Files& files, const QString& path)
{
    for (const auto& [name, bytes] : files) {
        model.writeFile(q(name), QByteArray::fromStdString(bytes));
    }
    model.save(path, ArchiveFormat::Directory, true);
}

/// Whether it can be saved.
inline bool trySave(ProjectModel& model)
{
    try {
        saveInPlace(model);
    } catch (const Error&) {
        return false;
    }
    return true;
}

/// The contents of all files but the metadata; without what a Tree of the disk has before them.
inline std::set<std::string> contentsOf(const Tree& tree)
{
    std::set<std::string> contents;
    for (const auto& file : tree) {
        if (file.first.back() != '/' && file.first != ".kxproject") {
            contents.insert(file.second.substr(file.second.find(':') + 1));
        }
    }
    return contents;
}

/// A project that is saved in place so that everything happens: a file is replaced, one removed,
/// one new; a directory moved, one removed, one new, one swapped with its child.
class AJournalledSave : public testing::Test
{
protected:
    AJournalledSave() { start(); }
    // The old project, and a model with the edits.
    void start()
    {
        m_model.reset();
        removeTree(path().toStdString());
        removeTree(place().journal());
        ProjectModel model;
        for (const char* const path : {"changed", "gone", "moved/a", "dropped/b", "x/y/z"}) {
            model.writeFile(q(path), path);
        }
        model.setMetadata(q("k"), q("old"));
        model.save(path(), ArchiveFormat::Directory, true);
        m_old = treeOf(path());
        m_model.emplace(path());
        m_model->writeFile(q("changed"), "again");
        m_model->remove(q("gone"));
        m_model->writeFile(q("new/file"), "new");
        m_model->move(q("moved"), q("new/moved"), false);
        m_model->remove(q("dropped"));
        m_model->move(q("x/y"), q("y"), false);
        m_model->move(q("x"), q("y/x"), false);
        m_model->setMetadata(q("k"), q("new"));
        m_new = treeOf(*m_model);
    }
    QString path() const { return m_directory.path("project"); }
    Place place() const { return Place::of(path().toStdString()); }
    void save() { saveInPlace(*m_model); }

    // Runs a save in a program that dies when it comes to an operation; true when it died.
    bool dieAt(int number)
    {
        return killIn([this] { save(); }, number);
    }

    TemporaryDirectory m_directory;
    Tree m_old;
    Tree m_new;
    std::optional<ProjectModel> m_model;
};

} // namespace pk::project::test
