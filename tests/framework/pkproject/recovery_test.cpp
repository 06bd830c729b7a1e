#include "dying_program.hpp"
#include "faulty_disk.hpp"
#include "log_records.hpp"
#include "random_editor.hpp"
#include "recovery.hpp"
#include "support.hpp"

#include <pk/log.hpp>
#include <pk/project/project.hpp>

#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <ctime>
#include <iostream>
#include <memory>
#include <sys/resource.h>

namespace pk::project::test {
namespace {

using dying::runAndKill;

// A project with a few files, in either form, and programs that die with it open.
class UnsavedWorkInBothForms : public testing::TestWithParam<Form>
{
protected:
    void SetUp() override
    {
        ProjectModel model;
        model.setMetadata(q("title"), q("Old"));
        model.writeFile(q("a"), "1");
        model.writeFile(q("d/b"), "2");
        model.writeFile(q("d/e/c"), "3");
        model.writeFile(q("gone"), "4");
        model.save(path(), formatOf(GetParam()), false);
    }

    QString path() const { return m_directory.path("project"); }
    QString path(const std::string& name) const { return m_directory.path(name); }
    const TemporaryFiles& files() const { return m_files; }

    static void edit(ProjectModel& model)
    {
        ProjectModel other;
        other.writeFile(q("x/y"), "other's");
        other.mkdir(q("x/empty"), true);
        model.writeFile(q("a"), "replaced");
        model.writeFile(q("a"), "rewritten");
        model.writeFile(q("new/file"), "new");
        model.writeFile(q("gone"), "not for long");
        model.remove(q("gone"));
        model.move(q("d"), q("moved"), false);
        model.importFile(model, q("moved/e"), q("copy"), true);
        model.writeFile(q("moved/e/c"), "changed after the copy");
        model.importFile(other, q("x"), q("imported"), true);
        model.mkdir(q("empty/deep"), true);
        model.setMetadata(q("title"), q("New"));
        model.setMetadata(q("bytes"), QString::fromUtf8("\xc3\xa4\n\0x", 5));
        model.setMetadata(q("mark"), QString(QChar::ByteOrderMark) + q("x"));
        putThroughStream(model, "streamed", "through a stream");
    }

    // Another program opens the project, edits it and is killed.
    void leaveUnsavedWork(const std::function<void(ProjectModel&)>& editing = edit) const
    {
        runAndKill([&] {
            // On the heap: nothing of it is closed.
            auto* const model = new ProjectModel(path());
            editing(*model);
        });
    }

    UnsavedWork onlyWork() const
    {
        const QList<UnsavedWork> work = ProjectModel::recoverable(path());
        EXPECT_EQ(work.size(), 1);
        return work.value(0);
    }

    static void expectEqual(const ProjectModel& model, const ProjectModel& expected)
    {
        EXPECT_EQ(treeOf(model), treeOf(expected));
        for (const char* const key : {"title", "bytes", "mark"}) {
            EXPECT_EQ(model.getMetadata(q(key)), expected.getMetadata(q(key)));
        }
    }

private:
    TemporaryFiles m_files;
    TemporaryDirectory m_directory;
};

INSTANTIATE_TEST_SUITE_P(Both, UnsavedWorkInBothForms,
                         testing::Values(Form::Directory, Form::Archive), nameOf);

// Until a change of a file has a later time than any before.
void waitForTheClock()
{
    const std::int64_t begin = Base::now();
    timespec now{};
    do {
        ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    } while (std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec <= begin);
}

TEST_P(UnsavedWorkInBothForms, OfEveryKindIsGivenBack)
{
    const Tree before = treeOf(path(""));
    leaveUnsavedWork();
    EXPECT_EQ(treeOf(path("")), before);
    const UnsavedWork work = onlyWork();
    EXPECT_EQ(work.project, path());
    EXPECT_EQ(work.changes, QStringList());
    EXPECT_TRUE(work.time.isValid());
    EXPECT_EQ(
        work.edits,
        QStringList({q("write a"), q("write a"), q("write new/file"), q("write gone"),
                     q("remove gone"), q("move d to moved"), q("make directory copy"),
                     q("copy d/e/c to copy/c"), q("write moved/e/c"), q("make directory imported"),
                     q("make directory imported/empty"), q("write imported/y"),
                     q("make directory empty/deep"), q("set title to New"),
                     q("set bytes to ") + QString::fromUtf8("\xc3\xa4\n\0x", 5),
                     q("set mark to ") + QChar::ByteOrderMark + q("x"), q("write streamed")}));
    ProjectModel expected(path());
    edit(expected);
    {
        ProjectModel recovered = ProjectModel::recover(work);
        EXPECT_EQ(recovered.getSourcePath(), path());
        expectEqual(recovered, expected);
        EXPECT_EQ(treeOf(path("")), before);
        recovered.save(QString(), ArchiveFormat::Source, true);
        expectEqual(recovered, ProjectModel(path()));
    }
    ProjectModel::discard(work);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
}

TEST_P(UnsavedWorkInBothForms, StaysUntilItIsDiscarded)
{
    leaveUnsavedWork();
    {
        ProjectModel recovered = ProjectModel::recover(onlyWork());
        recovered.remove(q("new"));
    }
    const UnsavedWork work = onlyWork();
    EXPECT_EQ(ProjectModel::recover(work).readFile(q("new/file")), QByteArray("new"));
    ProjectModel::discard(work);
    EXPECT_EQ(files().tree(), Tree());
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_THROW(ProjectModel::recover(work), PathNotFound);
    EXPECT_THROW(ProjectModel::discard(work), PathNotFound);
}

TEST_P(UnsavedWorkInBothForms, IsOfferedForItsProjectAlone)
{
    ProjectModel(path()).save(path("other"), ArchiveFormat::Source, false);
    leaveUnsavedWork();
    EXPECT_EQ(ProjectModel::recoverable(path("other")).size(), 0);
    EXPECT_EQ(ProjectModel::recoverable(QString()).size(), 0);
    ASSERT_EQ(::symlink("project", path("link").toStdString().c_str()), 0);
    EXPECT_EQ(ProjectModel::recoverable(path("link")).size(), 1);
    EXPECT_EQ(ProjectModel::recoverable(path("missing")).size(), 0);
}

TEST_P(UnsavedWorkInBothForms, OfSeveralProgramsIsListedByTime)
{
    leaveUnsavedWork([](ProjectModel& model) { model.writeFile(q("a"), "first"); });
    waitForTheClock();
    leaveUnsavedWork([](ProjectModel& model) { model.writeFile(q("a"), "second"); });
    const QList<UnsavedWork> work = ProjectModel::recoverable(path());
    ASSERT_EQ(work.size(), 2);
    EXPECT_EQ(ProjectModel::recover(work[0]).readFile(q("a")), QByteArray("first"));
    EXPECT_EQ(ProjectModel::recover(work[1]).readFile(q("a")), QByteArray("second"));
}

TEST_P(UnsavedWorkInBothForms, SurvivesADeathDuringItsRecovery)
{
    leaveUnsavedWork();
    const UnsavedWork work = onlyWork();
    runAndKill([&] {
        auto* const model = new ProjectModel(ProjectModel::recover(work));
        model->writeFile(q("later"), "even later");
    });
    const QList<UnsavedWork> both = ProjectModel::recoverable(path());
    ASSERT_EQ(both.size(), 2);
    ProjectModel expected(path());
    edit(expected);
    expectEqual(ProjectModel::recover(both[0]), expected);
    expected.writeFile(q("later"), "even later");
    expectEqual(ProjectModel::recover(both[1]), expected);
}

TEST_P(UnsavedWorkInBothForms, OfLivingProgramsIsNotTouched)
{
    ProjectModel model(path());
    edit(model);
    const Tree before = files().tree();
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(files().tree(), before);
    UnsavedWork work;
    work.directory = QFileInfo(model.getFileLocalPath(q("a"))).path();
    EXPECT_THROW(ProjectModel::recover(work), LockError);
    EXPECT_THROW(ProjectModel::discard(work), LockError);
    EXPECT_EQ(files().tree(), before);
}

TEST_P(UnsavedWorkInBothForms, IsNotWhatWasSaved)
{
    leaveUnsavedWork([](ProjectModel& model) {
        edit(model);
        model.save(QString(), ArchiveFormat::Source, true);
    });
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(files().tree(), Tree());
}

TEST_P(UnsavedWorkInBothForms, IsNotWhatChangesNothing)
{
    leaveUnsavedWork([](ProjectModel& model) {
        model.writeFile(q("a"), "1");
        model.writeFile(q("d/b"), "2");
    });
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(files().tree(), Tree());
    leaveUnsavedWork([](ProjectModel& model) {
        model.writeFile(q("a"), "1");
        model.writeFile(q("d/b"), "3");
    });
    EXPECT_EQ(onlyWork().edits.size(), 2);
    ProjectModel::discard(onlyWork());
    ProjectModel(path()).exportFile(q("a"), path("a"), false);
    leaveUnsavedWork([this](ProjectModel& model) {
        putLocal(path("other/a"), "1");
        ASSERT_EQ(::chmod(path("other/a").toStdString().c_str(), 0755), 0);
        model.importFile(ProjectModel(path("other")), q("a"), q("a"), false);
    });
    EXPECT_EQ(onlyWork().edits, QStringList({q("write a")}));
}

TEST_P(UnsavedWorkInBothForms, IsKeptWhenTheLogCannotBeReadAtTheMoment)
{
    leaveUnsavedWork();
    const QString log = onlyWork().directory + q("/log");
    ASSERT_TRUE(QFile::rename(log, log + q(".aside")));
    ASSERT_EQ(::symlink("log.aside", log.toStdString().c_str()), 0); // not followed: an error
    const LogRecords records;
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(records.messages().size(), 1U);
    ASSERT_TRUE(QFile::rename(log + q(".aside"), log) ||
                (QFile::remove(log) && QFile::rename(log + q(".aside"), log)));
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 1);
}

TEST_P(UnsavedWorkInBothForms, OnAProjectThatCannotBeOpenedIsKept)
{
    leaveUnsavedWork([](ProjectModel& model) { model.writeFile(q("a"), "1"); });
    const QString aside = path("aside");
    ASSERT_TRUE(QFile::rename(path(), aside));
    putLocal(path(), "no project");
    const LogRecords records;
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(records.messages().size(), 1U);
    ASSERT_TRUE(QFile::remove(path()));
    ASSERT_TRUE(QFile::rename(aside, path()));
    leaveUnsavedWork([](ProjectModel& model) { model.writeFile(q("a"), "2"); });
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 1);
}

TEST_P(UnsavedWorkInBothForms, IsWhatCameAfterTheSave)
{
    leaveUnsavedWork([](ProjectModel& model) {
        FILE* const stream = model.fopen(q("open"), q("wb"));
        put(stream, "before");
        model.writeFile(q("a"), "saved");
        model.save(QString(), ArchiveFormat::Source, true);
        put(stream, " and after");
        model.writeFile(q("d/b"), "not saved");
    });
    const UnsavedWork work = onlyWork();
    EXPECT_EQ(work.edits, QStringList({q("write open"), q("write d/b")}));
    const ProjectModel recovered = ProjectModel::recover(work);
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("saved"));
    EXPECT_EQ(recovered.readFile(q("d/b")), QByteArray("not saved"));
    EXPECT_EQ(recovered.readFile(q("open")), QByteArray("before and after"));
}

TEST_P(UnsavedWorkInBothForms, IsStillThereAfterASaveThatFailed)
{
    const QString completed = path("completed");
    ProjectModel expected(path());
    edit(expected);
    expected.writeFile(q("after"), "the failure");
    for (int number = 0; !QFileInfo::exists(completed); ++number) {
        SCOPED_TRACE("operation " + std::to_string(number));
        const QString project = path("failing");
        ProjectModel(path()).save(project, ArchiveFormat::Source, true);
        runAndKill([&] {
            auto* const model = new ProjectModel(project);
            edit(*model);
            FaultyDisk disk;
            disk.failAt(number, EIO, false);
            try {
                model->save(QString(), ArchiveFormat::Source, true);
                putLocal(disk.count() > number ? path("swallowed") : completed, "");
            } catch (const IoError&) {
            }
            disk.heal(); // what is staged goes through it as well
            model->writeFile(q("after"), "the failure");
        });
        const QList<UnsavedWork> work = ProjectModel::recoverable(project);
        ASSERT_EQ(work.size(), 1);
        EXPECT_EQ(work[0].changes, QStringList());
        expectEqual(ProjectModel::recover(work[0]), expected);
        ProjectModel::discard(work[0]);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(UnsavedWorkInBothForms, IsRefusedWhereSomeoneElseChangedTheProject)
{
    leaveUnsavedWork();
    waitForTheClock();
    {
        ProjectModel model(path());
        model.writeFile(q("d/b"), "theirs");
        model.writeFile(q("theirs"), "too");
        model.save(QString(), ArchiveFormat::Source, true);
    }
    const UnsavedWork work = onlyWork();
    const std::string message = messageOf<ConflictError>([&] { ProjectModel::recover(work); });
    const char* const changed = GetParam() == Form::Directory ? "'d/b' was changed" : "project'";
    EXPECT_NE(message.find(changed), std::string::npos) << message;
    EXPECT_NE(work.changes.join(q(", ")).toStdString().find(changed), std::string::npos);
    const ProjectModel recovered = ProjectModel::recover(work, true);
    EXPECT_EQ(recovered.readFile(q("theirs")), QByteArray("too"));
    EXPECT_EQ(recovered.readFile(q("moved/b")), QByteArray("theirs"));
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("rewritten"));
}

TEST_P(UnsavedWorkInBothForms, ThatDoesNotFitTheProjectAnyMoreIsRefused)
{
    leaveUnsavedWork();
    waitForTheClock();
    {
        ProjectModel model(path());
        model.remove(q("d"));
        model.save(QString(), ArchiveFormat::Source, true);
    }
    const UnsavedWork work = onlyWork();
    EXPECT_THROW(ProjectModel::recover(work), ConflictError);
    const std::string message =
        messageOf<ConflictError>([&] { ProjectModel::recover(work, true); });
    EXPECT_NE(message.find("'d': no such file"), std::string::npos) << message;
    remove(path());
    EXPECT_EQ(onlyWork().changes, QStringList({q("'") + path() + q("' was removed")}));
    EXPECT_THROW(ProjectModel::recover(work, true), PathNotFound);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 1);
}

TEST_P(UnsavedWorkInBothForms, AtRandomIsGivenBack)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const QString project = path("random");
        Reference saved;
        {
            ProjectModel model;
            Editor editor(seed, model);
            for (int i = 0; i < 15; ++i) {
                editor.edit();
            }
            model.save(project, formatOf(GetParam()), true);
            saved = editor.reference();
        }
        const auto continueEditing = [&](ProjectModel& model) {
            Editor editor(seed + 1000, model);
            editor.reference() = saved;
            for (int i = 0; i < 25; ++i) {
                editor.edit();
            }
            return editor.reference().tree;
        };
        runAndKill([&] { continueEditing(*new ProjectModel(project)); });
        ProjectModel expected(project);
        const Tree tree = continueEditing(expected);
        const QList<UnsavedWork> work = ProjectModel::recoverable(project);
        ASSERT_EQ(work.size(), 1);
        ProjectModel recovered = ProjectModel::recover(work[0]);
        ASSERT_EQ(treeOf(recovered), tree);
        recovered.save(QString(), ArchiveFormat::Source, true);
        ASSERT_EQ(treeOf(ProjectModel(project)), tree);
        ProjectModel::discard(work[0]);
        ASSERT_FALSE(QFileInfo::exists(QFileInfo(work[0].directory).path()));
    }
}

// Ends its process in the place of an operation.
class DeadlyDisk : public FaultyDisk
{
protected:
    void fail(const std::string& /*path*/) override { ::kill(::getpid(), SIGKILL); }
};

// Whatever moment of a save a program dies at, what is on the disk and what is recovered is
// together all that it had.
TEST_P(UnsavedWorkInBothForms, IsWhatAnInterruptedSaveDidNotSave)
{
    ProjectModel expected(path());
    edit(expected);
    const QString completed = path("completed");
    int unsaved = 0;
    int saved = 0;
    for (int number = 0; !QFileInfo::exists(completed); ++number) {
        SCOPED_TRACE("operation " + std::to_string(number));
        const QString project = path("interrupted");
        ProjectModel(path()).save(project, ArchiveFormat::Source, true);
        runAndKill([&] {
            auto* const model = new ProjectModel(project);
            edit(*model);
            DeadlyDisk disk;
            disk.failAt(number, EIO, false);
            model->save(QString(), ArchiveFormat::Source, true);
            putLocal(completed, "");
        });
        const QList<UnsavedWork> work = ProjectModel::recoverable(project);
        ++(work.isEmpty() ? saved : unsaved);
        if (work.isEmpty()) {
            expectEqual(ProjectModel(project), expected);
        } else {
            ASSERT_EQ(work.size(), 1);
            EXPECT_EQ(work[0].changes, QStringList());
            expectEqual(ProjectModel::recover(work[0]), expected);
            ProjectModel::discard(work[0]);
        }
        // Of the dead program; what is left is this one's.
        EXPECT_EQ(QDir(files().path()).entryList({q("kxproject-*")}).size(), 1);
        ASSERT_FALSE(HasFailure());
    }
    std::cout << unsaved << " points before the save counts, " << saved << " after\n";
    EXPECT_GT(unsaved, 5);
    EXPECT_GT(saved, 1);
}

class AnUnsavedWork : public UnsavedWorkInBothForms
{
protected:
    std::string logPath() const { return onlyWork().directory.toStdString() + "/log"; }
};

INSTANTIATE_TEST_SUITE_P(, AnUnsavedWork, testing::Values(Form::Directory), nameOf);

TEST_P(AnUnsavedWork, OfAProjectThatWasNeverSavedIsGivenBack)
{
    runAndKill([&] {
        edit(*[] {
            auto* const model = new ProjectModel;
            model->writeFile(q("d/e/c"), "3");
            return model;
        }());
    });
    const QList<UnsavedWork> work = ProjectModel::recoverable(QString());
    ASSERT_EQ(work.size(), 1);
    EXPECT_EQ(work[0].project, QString());
    const ProjectModel recovered = ProjectModel::recover(work[0]);
    EXPECT_EQ(recovered.getSourcePath(), QString());
    EXPECT_EQ(recovered.readFile(q("copy/c")), QByteArray("3"));
}

TEST_P(AnUnsavedWork, IsNoticedToBeOnAProjectWhoseDirectoryWasReplaced)
{
    leaveUnsavedWork();
    ProjectModel(path()).save(path("other"), ArchiveFormat::Source, false);
    remove(path());
    ASSERT_TRUE(QDir().rename(path("other"), path()));
    EXPECT_EQ(onlyWork().changes, QStringList({q("'") + path() + q("' was replaced")}));
}

TEST_P(AnUnsavedWork, IsNoticedToBeOnAProjectWithOtherMetadata)
{
    leaveUnsavedWork();
    waitForTheClock();
    Project(path().toStdString()).setMetadata("title", "Theirs");
    EXPECT_NE(onlyWork().changes, QStringList());
}

TEST_P(AnUnsavedWork, EndsWithTheLastEditThatWasNotedWhole)
{
    leaveUnsavedWork();
    const std::string log = logPath();
    const QByteArray whole = getLocal(QString::fromStdString(log));
    ProjectModel expected(path());
    edit(expected);
    for (int size = whole.size() - 1; size > 0; --size) {
        putLocal(QString::fromStdString(log), whole.left(size));
        const QList<UnsavedWork> work = ProjectModel::recoverable(path());
        if (work.isEmpty()) {
            break; // the log says no more of which project it is
        }
        EXPECT_LT(work[0].edits.size(), 17);
        // What was replaced later is not there for an earlier state.
        try {
            ProjectModel::recover(work[0]);
        } catch (const IoError& error) {
            EXPECT_NE(std::string(error.what()).find("' are lost"), std::string::npos);
        }
        ASSERT_FALSE(HasFailure()) << size;
    }
}

TEST_P(AnUnsavedWork, WithADamagedLogIsLeftAndReported)
{
    leaveUnsavedWork();
    const UnsavedWork work = onlyWork();
    const QString log = work.directory + q("/log");
    const QByteArray whole = getLocal(log);
    int refused = 0;
    for (int at = 0; at < whole.size(); ++at) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        putLocal(log, damaged);
        try {
            ProjectModel::recover(work, true);
        } catch (const Error&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, whole.size() / 3);
    putLocal(log, QByteArray(100, '\0'));
    EXPECT_THROW(ProjectModel::recover(work), FormatError);
    std::vector<std::string> warnings;
    const auto handler = pk::log::addHandler(
        [&](const pk::log::Record& record) { warnings.push_back(record.message); });
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    pk::log::removeHandler(handler);
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_EQ(warnings[0], log.toStdString() + ": damaged log of edits");
    putLocal(log, whole);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 1);
}

TEST_P(AnUnsavedWork, WhoseBytesAreGoneIsAnError)
{
    leaveUnsavedWork([](ProjectModel& model) { model.writeFile(q("d/b"), "bytes"); });
    const UnsavedWork work = onlyWork();
    const QString bytes = QDir(work.directory).entryList({q("*-b")}).value(0);
    ASSERT_TRUE(QFile::remove(work.directory + q("/") + bytes));
    ASSERT_EQ(::symlink("/etc/passwd", (work.directory + q("/") + bytes).toStdString().c_str()), 0);
    const std::string message = messageOf<IoError>([&] { ProjectModel::recover(work); });
    EXPECT_EQ(message, work.directory.toStdString() + ": the bytes of 'd/b' are lost");
}

TEST_P(AnUnsavedWork, OfSomebodyElseIsNotLookedAt)
{
    leaveUnsavedWork();
    const QString root = QFileInfo(onlyWork().directory).path();
    ASSERT_EQ(::chmod(root.toStdString().c_str(), 0755), 0);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    ASSERT_EQ(::chmod(root.toStdString().c_str(), 0700), 0);
    const QString elsewhere = path("elsewhere");
    ASSERT_TRUE(QDir().rename(root, elsewhere));
    ASSERT_EQ(::symlink(elsewhere.toStdString().c_str(), root.toStdString().c_str()), 0);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
}

TEST_P(AnUnsavedWork, ThatCannotBeNotedIsDoneAllTheSame)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        static_cast<void>(::signal(SIGXFSZ, SIG_IGN));
        const rlimit limit{4096, 4096};
        int warnings = 0;
        pk::log::addHandler([&](const pk::log::Record&) { ++warnings; });
        ProjectModel model(path());
        const bool isLimited = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
        for (int i = 0; i < 200; ++i) {
            model.move(q(i % 2 == 0 ? "d" : "other"), q(i % 2 == 0 ? "other" : "d"), false);
            model.writeFile(q("a"), QByteArray::number(i));
        }
        const bool isDone = model.readFile(q("a")) == "199" && model.hasFile(q("d/b"));
        model.save(QString(), ArchiveFormat::Source, true);
        model.writeFile(q("a"), "after the save");
        ::_exit(isLimited && isDone && warnings == 1 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(onlyWork().edits, QStringList({q("write a")}));
    EXPECT_EQ(ProjectModel::recover(onlyWork()).readFile(q("a")), QByteArray("after the save"));
}

} // namespace
} // namespace pk::project::test
