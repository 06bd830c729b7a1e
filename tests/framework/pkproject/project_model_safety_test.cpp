#include "another_user.hpp"
#include "journal.hpp"
#include "resource_limit.hpp"
#include "support.hpp"
#include "unsaved_work.hpp"

#include <pk/project/project.hpp>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// What must not happen, whatever is on the disk: projects lost, others' files touched.
namespace pk::project::test {

namespace {

class SafetyInBothForms : public testing::TestWithParam<Form>
{
protected:
    QString path() const { return m_directory.path("Library"); }
    QString other() const { return m_directory.path("Other"); }
    void make() const
    {
        ProjectModel model;
        model.writeFile(q("a/b"), "1");
        model.writeFile(q("c"), "2");
        model.setMetadata(q("title"), q("t"));
        model.save(path(), formatOf(GetParam()), false);
    }

private:
    const TemporaryDirectory m_directory;
};

void permitAll(const QString& path)
{
    EXPECT_EQ(::chmod(path.toStdString().c_str(), 0777), 0);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Both, SafetyInBothForms, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST_P(SafetyInBothForms, MoreFilesThanCanBeOpenAreSaved)
{
    const temporary::ResourceLimit few(RLIMIT_NOFILE, 64);
    ProjectModel model;
    for (int i = 0; i < 300; ++i) {
        model.writeFile(q("f") + QString::number(i), "x");
    }
    model.save(other(), ArchiveFormat::Directory, false);
    model.save(path(), formatOf(GetParam()), false);
    EXPECT_EQ(ProjectModel(path()).getFileList(QString(), false, false, false).size(), 300);
}

TEST_P(SafetyInBothForms, SavingToASourceThatIsGoneIsAConflictAlsoWithoutEdits)
{
    make();
    ProjectModel model(path());
    pk::project::remove(path());
    EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), ConflictError);
    EXPECT_FALSE(QFileInfo::exists(path()));
}

TEST_P(SafetyInBothForms, SavingToAChangedSourceIsAConflictAlsoWithoutEdits)
{
    make();
    ProjectModel model(path());
    ProjectModel theirs(path());
    theirs.remove(q("c"));
    theirs.save(QString(), ArchiveFormat::Source, true);
    EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), ConflictError);
}

TEST_P(SafetyInBothForms, LocalPathsOutliveASave)
{
    make();
    ProjectModel model(path());
    model.writeFile(q("new"), "new");
    const QString fresh = model.getFileLocalPath(q("new"));
    const QString old = model.getFileLocalPath(q("c"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(getLocal(fresh), QByteArray("new"));
    EXPECT_EQ(getLocal(old), QByteArray("2"));
    EXPECT_EQ(getLocal(model.getFileLocalPath(q("new"))), QByteArray("new"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(getLocal(fresh), QByteArray("new"));
}

TEST_P(SafetyInBothForms, StreamsInNewDirectoriesStayValidWhenSavedOverARepository)
{
    putLocal(other() + q("/.git/HEAD"), "ref");
    ProjectModel model;
    model.mkdir(q("d/e"), true);
    FILE* const stream = model.fopen(q("d/e/x"), q("wb"));
    ASSERT_NE(stream, nullptr);
    EXPECT_GE(std::fputs("one", stream), 0);
    EXPECT_EQ(std::fflush(stream), 0);
    model.save(other(), ArchiveFormat::Directory, true);
    EXPECT_GE(std::fputs(" two", stream), 0);
    EXPECT_EQ(std::fclose(stream), 0);
    EXPECT_EQ(ProjectModel(other()).readFile(q("d/e/x")), QByteArray("one"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(ProjectModel(other()).readFile(q("d/e/x")), QByteArray("one two"));
}

TEST_P(SafetyInBothForms, FilesThatSomebodyRemovedAreLeftOutOfASaveElsewhere)
{
    ProjectModel source;
    source.writeFile(q("a/b"), "1");
    source.writeFile(q("c"), "2");
    source.save(path(), ArchiveFormat::Directory, false);
    ProjectModel model(path());
    model.writeFile(q("mine"), "3");
    ASSERT_TRUE(QFile::remove(path() + q("/c")));
    EXPECT_THROW(model.save(QString(), ArchiveFormat::Source, true), ConflictError);
    model.save(other(), formatOf(GetParam()), false);
    EXPECT_EQ(treeOf(ProjectModel(other())), Tree({{"a/", ""}, {"a/b", "1"}, {"mine", "3"}}));
    EXPECT_EQ(treeOf(model), treeOf(ProjectModel(other())));
}

TEST_P(SafetyInBothForms, NamesWithControlCharactersAreKept)
{
    ProjectModel model;
    model.writeFile(q("a\x01\x1f\n\xc3\xa9/b\x02"), "1");
    model.save(path(), formatOf(GetParam()), false);
    EXPECT_EQ(treeOf(ProjectModel(path())), treeOf(model));
}

TEST_P(SafetyInBothForms, ADirectoryOfAnotherUserCanBeSavedByWhoMayWriteIt)
{
    make();
    const QString above = QFileInfo(path()).path();
    permitAll(above);
    if (GetParam() == Form::Directory) {
        permitAll(path());
        permitAll(path() + q("/a"));
    }
    {
        const AnotherUser user;
        ProjectModel model(path());
        model.writeFile(q("a/b"), "changed");
        model.save(QString(), ArchiveFormat::Source, true);
    }
    EXPECT_EQ(ProjectModel(path()).readFile(q("a/b")), QByteArray("changed"));
}

TEST_P(SafetyInBothForms, ALockFileThatAnotherUsersProgramLeftIsNotInTheWay)
{
    make();
    const QString lock = QFileInfo(path()).path() + q("/.Library.kxlock");
    putLocal(lock, "process 1\n");
    permitAll(QFileInfo(path()).path());
    {
        const AnotherUser user;
        EXPECT_EQ(ProjectModel(path()).readFile(q("c")), QByteArray("2"));
    }
    putLocal(lock, "process 1\n");
    EXPECT_EQ(::chmod(lock.toStdString().c_str(), 0600), 0);
    const AnotherUser user;
    EXPECT_EQ(ProjectModel(path()).readFile(q("c")), QByteArray("2"));
}

TEST_P(SafetyInBothForms, SavingWhereNothingCanBeMadeSaysThatItIsNotPermitted)
{
    make();
    const QString above = QFileInfo(path()).path();
    EXPECT_EQ(::chmod(above.toStdString().c_str(), 0555), 0);
    {
        const AnotherUser user;
        ProjectModel model(path());
        model.writeFile(q("new"), "1");
        const std::string message =
            messageOf<IoError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
        EXPECT_EQ(message, path().toStdString() + ": it can't be saved: " + above.toStdString() +
                               "/.Library.kxlock: Permission denied");
    }
    permitAll(above);
}

TEST_P(SafetyInBothForms, AModelLeavesNothingBehind)
{
    // A program whose model lives as long as itself.
    const auto endInOrderWithAnOpenModel = [this] {
        const pid_t child = ::fork();
        if (child == 0) {
            static ProjectModel model(path());
            model.writeFile(q("c"), "never saved");
            std::exit(0); // NOLINT(concurrency-mt-unsafe): the only thread
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    };
    make();
    const TemporaryDirectory temporary;
    const QByteArray old = qgetenv("TMPDIR");
    qputenv("TMPDIR", temporary.path().toUtf8());
    FILE* stream = nullptr;
    {
        ProjectModel model(path());
        model.writeFile(q("c"), "1");
        stream = model.fopen(q("open"), q("wb"));
        ASSERT_NE(stream, nullptr);
        model.getFileLocalPath(q("a/b"));
        ProjectModel copy;
        copy.importFile(model, QString(), QString(), true);
        ProjectModel moved(std::move(model));
        moved.save(QString(), ArchiveFormat::Source, true);
        moved.writeFile(q("b"), "never saved");
        EXPECT_EQ(std::fclose(copy.fopen(q("c"), q("ab"))), 0);
        EXPECT_FALSE(treeOf(temporary.path()).empty());
    }
    EXPECT_EQ(treeOf(temporary.path()), Tree());
    EXPECT_NE(std::fputs("to a model that is gone", stream), EOF);
    EXPECT_EQ(std::fclose(stream), 0);
    endInOrderWithAnOpenModel();
    EXPECT_EQ(treeOf(temporary.path()), Tree());
    EXPECT_EQ(leftBeside(path()), QStringList());
    if (old.isEmpty()) {
        qunsetenv("TMPDIR");
    } else {
        qputenv("TMPDIR", old);
    }
}

TEST(AModel, GoesFromDirectoryToArchiveToDirectoryUnchanged)
{
    const TemporaryDirectory directory;
    const QString first = directory.path("first");
    putLocal(first + q("/a/run.sh"), "#!/bin/sh\n");
    putLocal(first + q("/a/secret"), QByteArray("\0\xff binary", 9));
    putLocal(first + q("/\xc3\xa9 \\ % \n/x"), "");
    QDir().mkpath(first + q("/empty/deep"));
    ASSERT_EQ(::chmod((first + q("/a/run.sh")).toStdString().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((first + q("/a/secret")).toStdString().c_str(), 0400), 0);
    ASSERT_EQ(::chmod((first + q("/empty")).toStdString().c_str(), 0700), 0);
    const Tree tree = treeOf(first);
    ProjectModel(first).save(directory.path("second"), ArchiveFormat::Zip, false);
    ProjectModel(directory.path("second"))
        .save(directory.path("third"), ArchiveFormat::Directory, false);
    EXPECT_EQ(treeOf(directory.path("third")), tree);
    ProjectModel(directory.path("third")).save(directory.path("fourth"), ArchiveFormat::Zip, false);
    EXPECT_EQ(getLocal(directory.path("fourth")), getLocal(directory.path("second")));
}

TEST(Safety, ExportKeepsFilesThatAreCalledLikeItsOwn)
{
    const TemporaryDirectory directory;
    ProjectModel model;
    model.writeFile(q("d/.kxexport"), "1");
    model.writeFile(q("d/a"), "2");
    putLocal(directory.path("x/.kxexport/f"), "precious");
    model.exportFile(q("d/a"), directory.path("x/a"), true);
    EXPECT_EQ(getLocal(directory.path("x/.kxexport/f")), QByteArray("precious"));
    model.exportFile(q("d"), directory.path("y"), true);
    EXPECT_EQ(getLocal(directory.path("y/.kxexport")), QByteArray("1"));
    EXPECT_EQ(getLocal(directory.path("y/a")), QByteArray("2"));
    EXPECT_EQ(treeOf(directory.path("y")).size(), 2U);
}

TEST(Safety, DeletingRefusesPathsThatMeanSomethingElse)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("d/f"), "1");
    const QString path = directory.path("d");
    EXPECT_THROW(pk::project::remove(path + q("/..")), InvalidPath);
    EXPECT_THROW(pk::project::remove(path + q("/.")), InvalidPath);
    EXPECT_THROW(pk::project::remove(path + QChar(0) + q("x")), InvalidPath);
    EXPECT_EQ(getLocal(directory.path("d/f")), QByteArray("1"));
}

TEST(Safety, PathsWithoutBoundsAreRefused)
{
    ProjectModel model;
    const QString deep = q("a/").repeated(256);
    model.mkdir(deep, true);
    EXPECT_THROW(model.mkdir(deep + q("b"), true), InvalidPath);
    EXPECT_THROW(model.writeFile(q("n").repeated(4097), "1"), InvalidPath);
    EXPECT_THROW(model.writeFile(QString(QChar(0xd800)), "1"), InvalidPath);
    model.mkdir(q("d/") + q("a/").repeated(200), true);
    EXPECT_THROW(model.importFile(model, q("d"), q("b/").repeated(100), true), InvalidPath);
    EXPECT_EQ(treeOf(model).count("b"), 0U);
}

TEST(Safety, TheMetadataFileKeepsItsMode)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p");
    ProjectModel model;
    model.setMetadata(q("a"), q("1"));
    model.save(path, ArchiveFormat::Directory, false);
    const std::string file = (path + q("/.kxproject")).toStdString();
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    ProjectModel again(path);
    again.setMetadata(q("a"), q("2"));
    again.save(QString(), ArchiveFormat::Source, true);
    struct stat info = {};
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
}

struct CraftedJournal
{
    const char* name;
    const char* phase;
    Journal journal;
    bool isRefused = false;
};

class MadeUpJournal : public testing::TestWithParam<CraftedJournal>
{
};

TEST_P(MadeUpJournal, DoesNotReachOutOfTheProject)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p");
    const QString journal = directory.path(".p.kxjournal");
    putLocal(path + q("/.git/config"), "mine");
    putLocal(directory.path("outside/f"), "precious");
    putLocal(directory.path("outside/dir/g"), "precious too");
    waitForTheClock();
    putLocal(journal + q("/") + q(GetParam().phase), GetParam().journal.toBytes());
    putLocal(journal + q("/0"), "evil");
    ASSERT_TRUE(QFile::link(directory.path(), journal + q("/5")));
    ASSERT_TRUE(QFile::link(directory.path("outside/f"), journal + q("/7")));
    ASSERT_TRUE(QFile::link(directory.path("outside"), path + q("/link")));
    const Tree outside = treeOf(directory.path("outside"));
    bool isRefused = false;
    try {
        const ProjectModel model(path);
    } catch (const FormatError&) {
        isRefused = true;
    }
    EXPECT_EQ(isRefused, GetParam().isRefused);
    EXPECT_EQ(treeOf(directory.path("outside")), outside);
    EXPECT_EQ(getLocal(path + q("/.git/config")), QByteArray("mine"));
}

INSTANTIATE_TEST_SUITE_P(
    All, MadeUpJournal,
    testing::Values(
        CraftedJournal{"ThroughAnItem", "collect", {{{{5, "outside/f"}, 6, {}}}, {}}},
        CraftedJournal{"ThroughALink", "collect", {{{{-1, "link/f"}, 6, {}}}, {}}},
        CraftedJournal{"ThroughACollectedLink",
                       "collect",
                       {{{{-1, "link"}, 3, {}}, {{3, "f"}, 4, {}}, {{3, "dir"}, 6, {}}}, {}}},
        CraftedJournal{"PutThroughALink", "put", {{}, {{"link/g", 0, 0, false, {}}}}},
        CraftedJournal{"PutThroughALinkThatWasPut",
                       "put",
                       {{}, {{"x", 5, 0, false, {}}, {"x/outside/g", 0, 0, false, {}}}}},
        CraftedJournal{
            "AModeThroughALink", "put", {{}, {{"x", -1, 0077, false, {}}, {"x", 7, 0, false, {}}}}},
        CraftedJournal{"AModeBehindALink",
                       "put",
                       {{},
                        {{"x", -1, 0755, false, {}},
                         {"x/outside", -1, 0077, false, {}},
                         {"x", 5, 0, false, {}}}}},
        CraftedJournal{"IntoARepository", "put", {{}, {{".git/config", 0, 0, true, {}}}}, true},
        CraftedJournal{"Upwards", "put", {{}, {{"../outside/f", 0, 0, false, {}}}}, true}),
    [](const auto& c) { return std::string(c.param.name); });

TEST(Safety, AFileInTheJournalsPlaceIsNamed)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("p/a"), "1");
    putLocal(directory.path(".p.kxjournal"), "mine");
    EXPECT_NE(
        messageOf<FormatError>([&] { ProjectModel(directory.path("p")); }).find(".p.kxjournal"),
        std::string::npos);
    EXPECT_EQ(getLocal(directory.path(".p.kxjournal")), QByteArray("mine"));
}

} // namespace pk::project::test
