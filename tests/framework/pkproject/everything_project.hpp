#pragma once

#include "support.hpp"

#include <string>

namespace pk::project::test {

/// A small project, and edits of it of every kind: files and directories made, changed, removed,
/// moved, replaced by the other kind and swapped with each other, modes, and metadata.
class EverythingProject
{
public:
    /// A temporary directory whose directories need not permit to be removed from.
    class Scratch
    {
    public:
        Scratch() = default;
        ~Scratch() { removeTree(m_directory.path().toStdString()); }
        Scratch(const Scratch&) = delete;
        Scratch& operator=(const Scratch&) = delete;
        Scratch(Scratch&&) = delete;
        Scratch& operator=(Scratch&&) = delete;
        QString path(const std::string& name) const { return m_directory.path(name); }
        QString path() const { return m_directory.path(); }

    private:
        const TemporaryDirectory m_directory;
    };

    static ProjectModel make()
    {
        ProjectModel model;
        for (const char* const path :
             {"becomesDirectory", "becomesFile/f", "changed", "gone", "goneToo/d/f", "left/l",
              "moved/deep/f", "one", "right/r", "run.sh", "same", "two"}) {
            model.writeFile(q(path), path);
        }
        model.writeFile(q("large"), large());
        model.setMetadata(q("title"), q("old"));
        model.setMetadata(q("dropped"), q("x"));
        return model;
    }

    static void edit(ProjectModel& model)
    {
        model.writeFile(q("changed"), "CHANGED");
        model.writeFile(q("new/a"), "new");
        model.writeFile(q("new/large"), large());
        model.mkdir(q("empty"), false);
        model.remove(q("gone"));
        model.remove(q("goneToo"));
        model.move(q("moved"), q("there/moved"), false);
        swap(model, "one", "two");
        swap(model, "left", "right");
        model.remove(q("becomesDirectory"));
        model.writeFile(q("becomesDirectory/f"), "f");
        model.remove(q("becomesFile"));
        putThroughStream(model, "becomesFile", "file");
        importModes(model);
        model.setMetadata(q("title"), q("new"));
        model.setMetadata(q("dropped"), QString());
        model.setMetadata(q("added"), q("y"));
    }

    /// What contentsOf() says of the edited project.
    static Tree edited()
    {
        const std::string directory = std::to_string(umaskLeaves(0777));
        const std::string file = std::to_string(umaskLeaves(0666)) + ":";
        return {{"[added]", "y"},
                {"[title]", "new"},
                {"becomesDirectory/", directory},
                {"becomesDirectory/f", file + "f"},
                {"becomesFile", file + "file"},
                {"changed", file + "CHANGED"},
                {"closed/", std::to_string(0500)},
                {"closed/secret", std::to_string(0600) + ":secret"},
                {"empty/", directory},
                {"large", file + large().toStdString()},
                {"left/", directory},
                {"left/r", file + "right/r"},
                {"new/", directory},
                {"new/a", file + "new"},
                {"new/large", file + large().toStdString()},
                {"one", file + "two"},
                {"right/", directory},
                {"right/l", file + "left/l"},
                {"run.sh", std::to_string(0750) + ":run.sh"},
                {"same", file + "same"},
                {"there/", directory},
                {"there/moved/", directory},
                {"there/moved/deep/", directory},
                {"there/moved/deep/f", file + "moved/deep/f"},
                {"two", file + "one"}};
    }

    /// Files with modes and bytes, directories with modes, and metadata of a project.
    static Tree contentsOf(const ProjectModel& model)
    {
        const Scratch scratch;
        model.exportFile(QString(), scratch.path("all"), true);
        Tree tree = treeOf(scratch.path("all"));
        for (const char* const key : {"title", "dropped", "added"}) {
            const QString value = model.getMetadata(q(key));
            if (!value.isEmpty()) {
                tree[std::string("[") + key + "]"] = value.toStdString();
            }
        }
        return tree;
    }

private:
    static const QByteArray& large()
    {
        static const QByteArray bytes = noise(1, 150'000);
        return bytes;
    }

    static void swap(ProjectModel& model, const char* a, const char* b)
    {
        model.move(q(a), q("aside"), false);
        model.move(q(b), q(a), false);
        model.move(q("aside"), q(b), false);
    }

    // Modes other than the usual come from projects that have them.
    static void importModes(ProjectModel& model)
    {
        const Scratch scratch;
        putLocal(scratch.path("p/run.sh"), "run.sh");
        putLocal(scratch.path("p/closed/secret"), "secret");
        const auto path = [&](const char* name) { return scratch.path(name).toStdString(); };
        EXPECT_EQ(::chmod(path("p/run.sh").c_str(), 0750), 0);
        EXPECT_EQ(::chmod(path("p/closed/secret").c_str(), 0600), 0);
        EXPECT_EQ(::chmod(path("p/closed").c_str(), 0500), 0);
        model.importFile(ProjectModel(scratch.path("p")), QString(), QString(), true);
    }
};

} // namespace pk::project::test
