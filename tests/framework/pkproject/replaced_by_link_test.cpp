#include "another_user.hpp"
#include "everything_project.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <functional>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>

// Something of a project is replaced by a link, or by what is no file, after it was opened.
namespace pk::project::test {

namespace {

// A project "p" beside what must be neither read nor touched, "outside". With `large` the project
// is one that a save does not compare whole.
class Site
{
public:
    explicit Site(bool large)
    {
        for (const char* const name : {"p/a", "p/d/b", "p/d/e/c"}) {
            putLocal(local(name), "mine");
        }
        for (const char* const name : {"outside/b", "outside/e/c", "outside/new"}) {
            putLocal(local(name), "secret");
        }
        for (int i = 0; large && i < 1001; ++i) {
            putLocal(local("p/many/" + std::to_string(i)), "");
        }
    }
    QString local(const std::string& name) const { return m_directory.path(name); }
    std::string path(const std::string& name) const { return local(name).toStdString(); }
    Tree tree() const { return treeOf(m_directory.path()); }
    Tree outside() const { return treeOf(local("outside")); }
    /// Takes something of the project away, so that the link to where it is now has its inode.
    void takeAway(const std::string& name) const
    {
        QDir().mkpath(local("aside"));
        ASSERT_EQ(::rename(path("p/" + name).c_str(), path("aside/taken").c_str()), 0);
    }
    void link(const std::string& name, const char* target) const
    {
        ASSERT_EQ(::symlink(target, path("p/" + name).c_str()), 0);
    }

private:
    const EverythingProject::Scratch m_directory;
};

struct Replacement
{
    const char* name;
    const char* path;
    std::function<void(const Site& site)> put;
};

std::ostream& operator<<(std::ostream& stream, const Replacement& replacement)
{
    return stream << replacement.name;
}

struct Edit
{
    const char* name;
    std::function<void(ProjectModel& model)> make;
};

Edit writing(const char* path)
{
    return {path, [path](ProjectModel& model) { model.writeFile(q(path), "edited"); }};
}
Edit removing(const char* path)
{
    return {path, [path](ProjectModel& model) { model.remove(q(path)); }};
}
Edit moving(const char* path)
{
    return {path, [path](ProjectModel& model) { model.move(q(path), q("moved"), false); }};
}

const Edit a_edits[] = {writing("a"),   writing("d/b"),  writing("d/new"), writing("d/e/c"),
                        writing("new"), removing("d/b"), removing("d/e"),  removing("d"),
                        moving("d/b"),  moving("d/e/c"), moving("d/e"),    moving("d"),
                        removing("a"),  moving("a")};

// Those that work where something is replaced; a large project takes its time to make.
const Edit a_nearEdits[] = {writing("d/b"), writing("d/e/c"), writing("d/new"), removing("d"),
                            moving("d")};

bool holds(const Tree& tree, const std::string& text)
{
    return std::any_of(tree.begin(), tree.end(), [&](const auto& entry) {
        return entry.second.find(text) != std::string::npos;
    });
}

} // namespace

class ReplacedByALink : public testing::TestWithParam<Replacement>
{
protected:
    static void replace(const Site& site)
    {
        site.takeAway(GetParam().path);
        GetParam().put(site);
    }

private:
    const AnotherUser m_user;
};

TEST_P(ReplacedByALink, IsAConflictBeforeAnythingIsWritten)
{
    for (const Edit& edit : a_edits) {
        SCOPED_TRACE(edit.name);
        const Site site(false);
        ProjectModel model(site.local("p"));
        replace(site);
        const Tree before = site.tree();
        edit.make(model);
        const std::string message =
            messageOf<ConflictError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
        EXPECT_NE(message.find("'" + std::string(GetParam().path) + "' was "), std::string::npos)
            << message;
        EXPECT_EQ(site.tree(), before);
    }
}

TEST_P(ReplacedByALink, IsNotFollowedByASaveThatDoesNotCompareTheWholeProject)
{
    for (const Edit& edit : a_nearEdits) {
        SCOPED_TRACE(edit.name);
        const Site site(true);
        ProjectModel model(site.local("p"));
        replace(site);
        const Tree before = site.tree();
        const Tree aside = treeOf(site.local("aside"));
        const Tree outside = site.outside();
        edit.make(model);
        try {
            model.save(QString(), ArchiveFormat::Source, true);
        } catch (const ConflictError&) {
            EXPECT_EQ(site.tree(), before);
        }
        EXPECT_EQ(site.outside(), outside);
        EXPECT_EQ(treeOf(site.local("aside")), aside);
        EXPECT_FALSE(holds(treeOf(site.local("p")), "secret"));
    }
}

TEST_P(ReplacedByALink, IsNotRead)
{
    const Site site(false);
    const ProjectModel model(site.local("p"));
    replace(site);
    const Tree outside = site.outside();
    const Tree aside = treeOf(site.local("aside"));
    EXPECT_THROW(model.exportFile(QString(), site.local("exported"), true), Error);
    EXPECT_FALSE(holds(treeOf(site.local("exported")), "secret"));
    ProjectModel other;
    EXPECT_THROW(other.importFile(model, QString(), QString(), true), Error);
    EXPECT_EQ(treeOf(other), Tree());
    for (const char* const file : {"d/b", "d/e/c"}) {
        const std::string replaced = GetParam().path;
        const bool isConcerned = std::string(file).compare(0, replaced.size(), replaced) == 0;
        EXPECT_EQ(model.readFile(q(file)), QByteArray(isConcerned ? "" : "mine")) << file;
    }
    EXPECT_EQ(site.outside(), outside);
    EXPECT_EQ(treeOf(site.local("aside")), aside);
}

TEST_P(ReplacedByALink, DoesNotComeAlongElsewhere)
{
    for (const Form form : {Form::Directory, Form::Archive}) {
        const Site site(false);
        ProjectModel model(site.local("p"));
        replace(site);
        const Tree before = site.tree();
        try {
            model.save(site.local("other"), formatOf(form), false);
        } catch (const IoError&) {
            EXPECT_EQ(site.tree(), before);
            continue;
        }
        // A folder there is a file that was removed.
        EXPECT_EQ(GetParam().name, std::string("FileByFolder"));
        EXPECT_EQ(treeOf(model).count("d/b"), 0U);
        EXPECT_EQ(treeOf(ProjectModel(site.local("other"))), treeOf(model));
    }
}

std::function<void(const Site&)> byLink(const char* at, const char* target)
{
    return [at, target](const Site& site) { site.link(at, target); };
}

INSTANTIATE_TEST_SUITE_P(
    All, ReplacedByALink,
    testing::Values(
        Replacement{"FileByLinkOutside", "d/b", byLink("d/b", "../../outside/b")},
        Replacement{"FileByLinkToItself", "d/b", byLink("d/b", "../../aside/taken")},
        Replacement{"InnerFileByLinkOutside", "d/e/c", byLink("d/e/c", "../../../outside/b")},
        Replacement{"FolderByLinkOutside", "d", byLink("d", "../outside")},
        Replacement{"FolderByLinkToItself", "d", byLink("d", "../aside/taken")},
        Replacement{"InnerFolderByLinkOutside", "d/e", byLink("d/e", "../../outside/e")},
        Replacement{"InnerFolderByLinkToItself", "d/e", byLink("d/e", "../../aside/taken")},
        Replacement{
            "FileByPipe", "d/b",
            [](const Site& site) { ASSERT_EQ(::mkfifo(site.path("p/d/b").c_str(), 0666), 0); }},
        Replacement{"FileByFolder", "d/b",
                    [](const Site& site) { putLocal(site.local("p/d/b/x"), "theirs"); }}),
    [](const auto& replacement) { return std::string(replacement.param.name); });

// A link takes the place of a whole project, or of a directory above it.
class AProjectReplacedByALink : public testing::TestWithParam<Form>
{
};

TEST_P(AProjectReplacedByALink, IsAConflictAndTheLinkIsNotFollowed)
{
    for (const char* const taken : {"above", "above/p"}) {
        for (const bool byName : {false, true}) {
            SCOPED_TRACE(std::string(taken) + (byName ? ", saved by its path" : ""));
            const TemporaryDirectory directory;
            const QString path = directory.path("above/p");
            for (const char* const place : {"above", "outside"}) {
                ProjectModel model;
                model.writeFile(q("a"), place);
                QDir().mkpath(directory.path(place));
                model.save(directory.path(place) + q("/p"), formatOf(GetParam()), false);
            }
            ProjectModel model(path);
            ASSERT_TRUE(QFile::rename(directory.path(taken), directory.path("aside")));
            const QString target = taken == std::string("above") ? q("outside") : q("outside/p");
            ASSERT_TRUE(QFile::link(directory.path(target.toStdString()), directory.path(taken)));
            const Tree before = treeOf(directory.path());
            model.writeFile(q("b"), "edited");
            EXPECT_EQ(messageOf<ConflictError>([&] {
                          model.save(byName ? path : QString(), ArchiveFormat::Source, true);
                      }),
                      path.toStdString() +
                          ": moved or replaced by someone else since it was opened");
            EXPECT_EQ(treeOf(directory.path()), before);
            model.save(directory.path("elsewhere"), formatOf(GetParam()), false);
            EXPECT_EQ(treeOf(ProjectModel(directory.path("elsewhere"))),
                      (Tree{{"a", "above"}, {"b", "edited"}}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Both, AProjectReplacedByALink,
                         testing::Values(Form::Directory, Form::Archive), nameOf);

} // namespace pk::project::test
