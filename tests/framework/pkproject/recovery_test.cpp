#include "faulty_disk.hpp"
#include "log_records.hpp"
#include "random_editor.hpp"
#include "recovery.hpp"
#include "unsaved_work.hpp"

#include <pk/log.hpp>
#include <pk/project/project.hpp>

#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <memory>

namespace pk::project::test {
namespace {

using dying::runAndKill;

INSTANTIATE_TEST_SUITE_P(Both, UnsavedWorkInBothForms,
                         testing::Values(Form::Directory, Form::Archive), nameOf);

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
        QStringList({q("write a"), q("write a"), q("make directory new"), q("write new/file"),
                     q("write gone"), q("remove gone"), q("move d to moved"),
                     q("make directory copy"), q("copy d/e/c to copy/c"), q("write moved/e/c"),
                     q("make directory imported"), q("make directory imported/empty"),
                     q("write imported/y"), q("make directory empty"),
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
        model.setMetadata(q("title"), q("Old"));
        model.mkdir(q("d/e"), true);
        model.move(q("a"), q("a"), true);
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
    EXPECT_EQ(onlyWork().changes.size(), 1);
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

// The clock ticks before a file that was to be replaced loses its second name, which is a change of
// the file.
class TickingDisk : public FaultyDisk
{
public:
    void unlink(const std::string& path) override
    {
        if (path.find(".old") != std::string::npos) {
            waitForTheClock();
        }
        FaultyDisk::unlink(path);
    }
};

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
            TickingDisk disk;
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

class InterruptedSaveInBothForms : public UnsavedWorkInBothForms
{
protected:
    // What is on the disk and what is recovered is together all that a program had, whatever moment
    // of a save it dies at.
    void interruptEverywhere(const std::function<void(ProjectModel&)>& editing)
    {
        ProjectModel expected(path());
        editing(expected);
        const QString completed = path("completed" + std::to_string(++m_editings));
        for (int number = 0; !QFileInfo::exists(completed); ++number) {
            SCOPED_TRACE("operation " + std::to_string(number));
            const QString project = path("interrupted");
            ProjectModel(path()).save(project, ArchiveFormat::Source, true);
            runAndKill([&] {
                auto* const model = new ProjectModel(project);
                editing(*model);
                DeadlyDisk disk;
                disk.failAt(number, EIO, false);
                model->save(QString(), ArchiveFormat::Source, true);
                putLocal(completed, "");
            });
            const QList<UnsavedWork> work = ProjectModel::recoverable(project);
            ++(work.isEmpty() ? m_saved : m_unsaved);
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
    }

    int m_editings = 0;
    int m_unsaved = 0;
    int m_saved = 0;
};

INSTANTIATE_TEST_SUITE_P(Both, InterruptedSaveInBothForms,
                         testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(InterruptedSaveInBothForms, LeavesWhatItDidNotSave)
{
    interruptEverywhere([](ProjectModel& model) {
        edit(model);
        model.writeFile(q("large"), noise(1, 300'000));
    });
    std::cout << m_unsaved << " points before the save counts, " << m_saved << " after\n";
    EXPECT_GT(m_unsaved, 5);
    EXPECT_GT(m_saved, 1);
}

TEST_P(InterruptedSaveInBothForms, WithoutAnythingNewLeavesWhatItDidNotSave)
{
    for (const auto editing : std::initializer_list<void (*)(ProjectModel&)>{
             [](ProjectModel& model) { model.remove(q("gone")); },
             [](ProjectModel& model) { model.remove(q("d")); },
             [](ProjectModel& model) { model.move(q("a"), q("b"), false); },
             [](ProjectModel& model) { model.move(q("d/e"), q("e"), false); },
             [](ProjectModel& model) { model.mkdir(q("new/deep"), true); },
             [](ProjectModel& model) {
                 model.remove(q("gone"));
                 model.mkdir(q("gone"), false);
             },
             [](ProjectModel& model) {
                 model.move(q("a"), q("x"), false);
                 model.move(q("gone"), q("a"), false);
                 model.move(q("x"), q("gone"), false);
             },
             [](ProjectModel& model) {
                 model.move(q("d"), q("x"), false);
                 model.mkdir(q("d"), false);
                 model.move(q("x/e"), q("d/e"), false);
             }}) {
        interruptEverywhere(editing);
        ASSERT_FALSE(HasFailure()) << m_editings;
    }
    EXPECT_GT(m_saved, 8);
}

} // namespace
} // namespace pk::project::test
