#include "support.hpp"

#include <pk/project/error.hpp>
#include <pk/project/project.hpp>

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <ostream>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

// Others change what a model was opened from: a save finds it, says it, and overwrites nothing.
namespace pk::project::test {

namespace {

using Listing = std::multiset<std::string>;

struct Change
{
    const char* name;
    std::function<void(const QString& project)> make;
    Listing listed; ///< in the error's text, for a directory
};

std::ostream& operator<<(std::ostream& stream, const Change& change)
{
    return stream << change.name;
}

struct Edits
{
    const char* name;
    std::function<void(ProjectModel& model)> make;
};

const Edits a_edits[] = {
    {"none", [](ProjectModel& /*model*/) {}},
    {"elsewhere", [](ProjectModel& model) { model.writeFile(q("mine"), "m"); }},
    {"metadata alone", [](ProjectModel& model) { model.setMetadata(q("title"), q("mine")); }},
    {"everything", [](ProjectModel& model) {
         model.writeFile(q("mine"), "m");
         model.writeFile(q("a"), "mine");
         model.writeFile(q("d/b"), "mine");
         model.writeFile(q("d/added"), "mine");
         model.remove(q("d/e"));
         model.move(q("x"), q("moved"), false);
         model.setMetadata(q("title"), q("mine"));
     }}};

void rename(const QString& from, const QString& to)
{
    ASSERT_EQ(::rename(from.toStdString().c_str(), to.toStdString().c_str()), 0);
}

QString beside(const QString& path, const char* name)
{
    return QFileInfo(path).path() + q("/") + q(name);
}

// A clock need not tick between two steps of a test.
void makeOld(const QString& path)
{
    const struct timespec old[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.toStdString().c_str(), old, 0), 0);
}

class OutsideChanges : public testing::Test
{
protected:
    QString path() const { return m_directory.path("p"); }
    // Everything there, and what tells that nobody has written it again.
    Tree now() const
    {
        Tree tree = treeOf(m_directory.path());
        for (auto& entry : tree) {
            const auto stamp = stampOf(m_directory.path(entry.first));
            entry.second += " " + std::to_string(stamp.first) + " " + std::to_string(stamp.second);
        }
        return tree;
    }
    void make(Form form, int files = 0) const
    {
        ProjectModel model;
        for (const char* const name : {"a", "d/b", "d/e/c", "d/e/f", "x/y", "x/z"}) {
            model.writeFile(q(name), "theirs");
        }
        for (int i = 0; i < files; ++i) {
            model.writeFile(q("many/" + std::to_string(i)), "old");
        }
        model.setMetadata(q("title"), q("theirs"));
        model.save(path(), formatOf(form), true);
        for (const auto& entry : treeOf(m_directory.path())) {
            makeOld(m_directory.path(entry.first));
        }
    }
    // The text of the error that a save in place ends with, when it leaves everything as it is and
    // the model can be saved elsewhere with all its edits.
    std::string conflictOf(ProjectModel& model, Form form) const
    {
        const Tree before = now();
        std::string message =
            messageOf<ConflictError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
        EXPECT_EQ(now(), before);
        const TemporaryDirectory elsewhere;
        const bool edited = model.hasFile(q("mine"));
        model.save(elsewhere.path("p"), formatOf(form), false);
        EXPECT_EQ(now(), before);
        const ProjectModel saved(elsewhere.path("p"));
        EXPECT_EQ(treeOf(saved), treeOf(model));
        EXPECT_EQ(saved.readFile(q("mine")), QByteArray(edited ? "m" : ""));
        EXPECT_EQ(saved.getMetadata(q("title")), model.getMetadata(q("title")));
        return message;
    }
    void changeAndSave(const Change& change, Form form,
                       const std::function<void(const std::string&)>& check) const
    {
        for (const Edits& edits : a_edits) {
            SCOPED_TRACE(edits.name);
            removeTree(path().toStdString());
            removeTree(m_directory.path("aside").toStdString());
            make(form);
            ProjectModel model(path());
            change.make(path());
            edits.make(model);
            check(conflictOf(model, form));
        }
    }

private:
    const TemporaryDirectory m_directory;
};

class OutsideChange : public OutsideChanges, public testing::WithParamInterface<Change>
{
};

// The changes that a text lists.
Listing listingIn(const std::string& text)
{
    Listing listing;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(", ", begin), text.size());
        listing.insert(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return listing;
}

} // namespace

class ChangeInADirectory : public OutsideChange
{
};

TEST_P(ChangeInADirectory, IsListedAndNothingIsOverwritten)
{
    changeAndSave(GetParam(), Form::Directory, [&](const std::string& message) {
        const std::string begin =
            path().toStdString() + ": changed by someone else since it was opened: ";
        ASSERT_EQ(message.substr(0, begin.size()), begin);
        EXPECT_EQ(listingIn(message.substr(begin.size())), GetParam().listed);
    });
}

INSTANTIATE_TEST_SUITE_P(
    All, ChangeInADirectory,
    testing::Values(
        Change{"FileEdited",
               [](const QString& p) { putLocal(p + q("/d/b"), "longer than it was"); },
               {"'d/b' was changed"}},
        Change{"FileEditedToTheSameLength",
               [](const QString& p) { putLocal(p + q("/d/b"), "THEIRS"); },
               {"'d/b' was changed"}},
        Change{"FileEmptied",
               [](const QString& p) { putLocal(p + q("/d/e/c"), ""); },
               {"'d/e/c' was changed"}},
        Change{"FileAdded",
               [](const QString& p) { putLocal(p + q("/d/e/new"), "n"); },
               {"'d/e/new' was added"}},
        Change{"FileAddedWhereTheModelHasOne",
               [](const QString& p) { putLocal(p + q("/d/added"), "n"); },
               {"'d/added' was added"}},
        Change{"FolderAdded",
               [](const QString& p) { putLocal(p + q("/n/m/o"), "n"); },
               {"'n' was added"}},
        Change{"FileRemoved",
               [](const QString& p) { ASSERT_TRUE(QFile::remove(p + q("/x/y"))); },
               {"'x/y' was removed"}},
        Change{"FolderRemoved",
               [](const QString& p) { pk::project::remove(p + q("/d/e")); },
               {"'d/e' was removed"}},
        Change{"FileRenamed",
               [](const QString& p) { rename(p + q("/a"), p + q("/z")); },
               {"'a' was removed", "'z' was added"}},
        Change{"FolderRenamed",
               [](const QString& p) { rename(p + q("/x"), p + q("/z")); },
               {"'x' was removed", "'z' was added"}},
        Change{"FileMovedToAnotherFolder",
               [](const QString& p) { rename(p + q("/x/y"), p + q("/d/e/y")); },
               {"'x/y' was removed", "'d/e/y' was added"}},
        Change{"FilesSwapped",
               [](const QString& p) {
                   Disk::instance().exchange((p + q("/x/y")).toStdString(),
                                             (p + q("/x/z")).toStdString());
               },
               {"'x/y' was changed", "'x/z' was changed"}},
        Change{"FileReplacedByAFolder",
               [](const QString& p) {
                   ASSERT_TRUE(QFile::remove(p + q("/a")));
                   putLocal(p + q("/a/b"), "n");
               },
               {"'a' was replaced"}},
        Change{"FolderReplacedByAFile",
               [](const QString& p) {
                   pk::project::remove(p + q("/d/e"));
                   putLocal(p + q("/d/e"), "n");
               },
               {"'d/e' was replaced"}},
        Change{"MetadataEdited",
               [](const QString& p) { putLocal(p + q("/.kxproject"), R"({"title": "other"})"); },
               {"the project's metadata"}},
        Change{"MetadataRemoved",
               [](const QString& p) { ASSERT_TRUE(QFile::remove(p + q("/.kxproject"))); },
               {"the project's metadata"}},
        Change{
            "ManyThings",
            [](const QString& p) {
                putLocal(p + q("/a"), "other");
                putLocal(p + q("/d/n"), "n");
                pk::project::remove(p + q("/x"));
                putLocal(p + q("/.kxproject"), "{}");
            },
            {"'a' was changed", "'d/n' was added", "'x' was removed", "the project's metadata"}}),
    [](const auto& change) { return std::string(change.param.name); });

class ADirectoryThatIsGone : public OutsideChange
{
};

TEST_P(ADirectoryThatIsGone, IsAConflict)
{
    changeAndSave(GetParam(), Form::Directory, [&](const std::string& message) {
        EXPECT_EQ(message,
                  path().toStdString() + ": moved or replaced by someone else since it was opened");
    });
}

INSTANTIATE_TEST_SUITE_P(
    All, ADirectoryThatIsGone,
    testing::Values(Change{"Moved", [](const QString& p) { rename(p, beside(p, "aside")); }, {}},
                    Change{"ReplacedByAnother",
                           [](const QString& p) {
                               rename(p, beside(p, "aside"));
                               putLocal(p + q("/a"), "another");
                           },
                           {}},
                    Change{"ReplacedByItsCopy",
                           [](const QString& p) {
                               const QString copy = beside(p, "copy");
                               ProjectModel(p).save(copy, ArchiveFormat::Directory, false);
                               rename(p, beside(p, "aside"));
                               rename(copy, p);
                           },
                           {}},
                    Change{"ReplacedByAnArchive",
                           [](const QString& p) {
                               const QString copy = beside(p, "copy");
                               ProjectModel(p).save(copy, ArchiveFormat::Zip, false);
                               rename(p, beside(p, "aside"));
                               rename(copy, p);
                           },
                           {}}),
    [](const auto& change) { return std::string(change.param.name); });

class ChangeOfAnArchive : public OutsideChange
{
};

TEST_P(ChangeOfAnArchive, IsListedAndNothingIsOverwritten)
{
    changeAndSave(GetParam(), Form::Archive, [&](const std::string& message) {
        const std::string start =
            path().toStdString() + ": changed by someone else since it was opened";
        ASSERT_EQ(message.find(start), 0U) << message;
        const std::string rest = message.substr(start.size());
        EXPECT_EQ(rest.substr(0, 2), GetParam().listed.empty() ? "" : ": ");
        EXPECT_EQ(listingIn(rest.substr(rest.empty() ? 0 : 2)), GetParam().listed) << message;
    });
}

INSTANTIATE_TEST_SUITE_P(
    All, ChangeOfAnArchive,
    testing::Values(Change{"SavedByAnother",
                           [](const QString& p) {
                               ProjectModel model(p);
                               model.writeFile(q("d/new"), "another");
                               model.writeFile(q("x/y"), "another");
                               model.writeFile(q("x/z"), "THEIRS");
                               model.remove(q("a"));
                               model.move(q("d/e"), q("e"), false);
                               model.setMetadata(q("title"), q("another"));
                               model.save(QString(), ArchiveFormat::Source, true);
                           },
                           {"'a' was removed", "'d/e' was removed", "'d/e/c' was removed",
                            "'d/e/f' was removed", "'d/new' was added", "'e' was added",
                            "'e/c' was added", "'e/f' was added", "'x/y' was changed",
                            "'x/z' was changed", "the project's metadata was changed"}},
                    Change{"EditedInItsPlaceToTheSameLength",
                           [](const QString& p) { putLocal(p, getLocal(p)); },
                           {"it was written to in its place"}},
                    Change{"ReplacedByItsCopy",
                           [](const QString& p) {
                               ASSERT_TRUE(QFile::copy(p, beside(p, "copy")));
                               makeOld(beside(p, "copy"));
                               rename(beside(p, "copy"), p);
                           },
                           {}},
                    Change{"ReplacedByADirectory",
                           [](const QString& p) {
                               ASSERT_TRUE(QFile::remove(p));
                               putLocal(p + q("/a"), "another");
                           },
                           {"it is no archive any more"}},
                    Change{"ReplacedByNoArchive",
                           [](const QString& p) {
                               ASSERT_TRUE(QFile::remove(p));
                               putLocal(p, "no archive");
                           },
                           {"it can't be read any more"}},
                    Change{"Removed",
                           [](const QString& p) { ASSERT_TRUE(QFile::remove(p)); },
                           {"it was removed"}}),
    [](const auto& change) { return std::string(change.param.name); });

class ACheckout : public OutsideChanges
{
};

TEST(ADirectoryInItsPlace, IsNoMoreReplacedByAnArchiveThanByADirectory)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("project");
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.save(path, ArchiveFormat::Directory, false);
    ASSERT_TRUE(QFile::rename(path, directory.path("moved")));
    putLocal(path + q("/precious"), "1");
    model.writeFile(q("a"), "2");
    for (const ArchiveFormat format : {ArchiveFormat::Directory, ArchiveFormat::Zip}) {
        EXPECT_THROW(model.save(QString(), format, true), ConflictError);
        EXPECT_EQ(getLocal(path + q("/precious")), "1");
    }
}

TEST_F(ACheckout, OfManyFilesIsFoundAndListedInPart)
{
    constexpr int files = 30;
    make(Form::Directory, files);
    ProjectModel model(path());
    for (int i = 0; i < files; ++i) {
        const QString file = path() + q("/many/") + QString::number(i);
        ASSERT_TRUE(QFile::remove(file));
        putLocal(file, "new");
        makeOld(file);
    }
    model.writeFile(q("mine"), "m");
    const std::string message = conflictOf(model, Form::Directory);
    const Listing listing = listingIn(message.substr(message.find(": 'many") + 2));
    EXPECT_EQ(listing.size(), 21U) << message;
    EXPECT_EQ(listing.count("and 10 more"), 1U) << message;
    EXPECT_EQ(std::count_if(listing.begin(), listing.end(),
                            [](const std::string& change) {
                                return change.find("'many/") == 0 &&
                                       change.find("' was changed") != std::string::npos;
                            }),
              20);
}

// Of more files than are all compared.
TEST_F(ACheckout, ThatRemovesADirectoryOfALargeProjectIsListed)
{
    make(Form::Directory, 1500);
    ProjectModel model(path());
    const std::string removed = path().toStdString() + "/d/e";
    const struct stat above = *statOf(path().toStdString() + "/d");
    removeTree(removed);
    const struct timespec before[2] = {above.st_atim, above.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, (path() + q("/d")).toStdString().c_str(), before, 0), 0);
    model.writeFile(q("d/e/mine"), "m");
    model.writeFile(q("mine"), "m");
    const std::string message = conflictOf(model, Form::Directory);
    EXPECT_NE(message.find("'d/e' was removed"), std::string::npos) << message;
}

} // namespace pk::project::test
