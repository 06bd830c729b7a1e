#include "log_records.hpp"
#include "recovery.hpp"
#include "resource_limit.hpp"
#include "unsaved_work.hpp"

#include <pk/log.hpp>
#include <pk/project/project.hpp>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

// What dead programs leave, whole or not, and who may look at it.
namespace pk::project::test {
namespace {

using dying::runAndKill;

class AnUnsavedWork : public UnsavedWorkInBothForms
{
protected:
    std::string logPath() const { return onlyWork().directory.toStdString() + "/log"; }
    std::string livingLogPath() const
    {
        QDirIterator log(files().path(), {q("log")}, QDir::Files, QDirIterator::Subdirectories);
        return log.next().toStdString();
    }
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
        EXPECT_LT(work[0].edits.size(), 19);
        // What was replaced later is not there for an earlier state.
        try {
            ProjectModel::recover(work[0]);
        } catch (const IoError& error) {
            EXPECT_NE(std::string(error.what()).find("' are lost"), std::string::npos);
        }
        ASSERT_FALSE(HasFailure()) << size;
    }
}

TEST_P(AnUnsavedWork, EndsWhereItsLogIsDamaged)
{
    leaveUnsavedWork();
    const UnsavedWork work = onlyWork();
    const QString log = work.directory + q("/log");
    const QByteArray whole = getLocal(log);
    int found = 0;
    for (int at = whole.size() - 1; at >= 0; --at) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        putLocal(log, damaged);
        const LogRecords records; // of what was damaged in the first record
        for (const UnsavedWork& less : ProjectModel::recoverable(path())) {
            ++found;
            ASSERT_LT(less.edits.size(), work.edits.size());
            ASSERT_EQ(less.edits, work.edits.mid(0, less.edits.size())) << at;
        }
        if (!QFileInfo::exists(log)) {
            break; // no edit was whole: removed as needless
        }
    }
    EXPECT_GT(found, whole.size() / 2);
}

TEST_P(AnUnsavedWork, WithADamagedLogIsLeftAndReported)
{
    leaveUnsavedWork();
    const UnsavedWork work = onlyWork();
    const QString log = work.directory + q("/log");
    const QByteArray whole = getLocal(log);
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
    putLocal(log, "");
    ProjectModel::discard(work);
    EXPECT_EQ(files().tree(), Tree());
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

TEST_P(AnUnsavedWork, WhoseBytesAreGoneIsGivenBackWithoutThem)
{
    leaveUnsavedWork([](ProjectModel& model) {
        model.writeFile(q("d/b"), "cut short by a power failure");
        model.writeFile(q("d/new"), "cut short");
        model.writeFile(q("a"), "whole");
    });
    const UnsavedWork work = onlyWork();
    for (const char* const pattern : {"*-b", "*-new"}) {
        const QString name = QDir(work.directory).entryList({q(pattern)}).value(0);
        ASSERT_EQ(::truncate((work.directory + q("/") + name).toStdString().c_str(), 5), 0);
    }
    EXPECT_THROW(ProjectModel::recover(work), IoError);
    const LogRecords records;
    const ProjectModel recovered = ProjectModel::recover(work, true);
    const std::string lost = work.directory.toStdString() + ": the bytes of ";
    EXPECT_EQ(records.messages(),
              std::vector<std::string>({lost + "'d/b' are lost", lost + "'d/new' are lost"}));
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("whole"));
    EXPECT_EQ(recovered.readFile(q("d/b")), QByteArray("2"));
    EXPECT_FALSE(recovered.hasFile(q("d/new")));
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

TEST_P(AnUnsavedWork, ThatCannotBeNotedIsDoneAllTheSameAndNotedLater)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        static_cast<void>(::signal(SIGXFSZ, SIG_IGN));
        const rlimit limit{4096, RLIM_INFINITY};
        const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
        int warnings = 0;
        pk::log::addHandler([&](const pk::log::Record&) { ++warnings; });
        auto* const model = new ProjectModel(path());
        const bool isLimited = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
        for (int i = 0; i < 100; ++i) {
            model->move(q(i % 2 == 0 ? "d" : "other"), q(i % 2 == 0 ? "other" : "d"), false);
            model->writeFile(q("a"), QByteArray::number(i));
        }
        const bool isDone = model->readFile(q("a")) == "99" && model->hasFile(q("d/b"));
        const bool isMended = ::setrlimit(RLIMIT_FSIZE, &none) == 0;
        model->remove(q("gone"));
        if (isLimited && isDone && isMended && warnings == 1) {
            ::kill(::getpid(), SIGKILL);
        }
        ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(onlyWork().edits.size(), 201);
    const ProjectModel recovered = ProjectModel::recover(onlyWork());
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("99"));
    EXPECT_TRUE(recovered.hasFile(q("d/b")));
    EXPECT_FALSE(recovered.hasFile(q("gone")));
}

TEST_P(AnUnsavedWork, IsWhatWasNotedWhenNothingCouldBeNotedAfterIt)
{
    leaveUnsavedWork([this](ProjectModel& model) {
        model.writeFile(q("a"), "an hour of work");
        model.writeFile(q("new"), "of the same hour");
        const temporary::FileSizeLimit nothingMore(
            static_cast<rlim_t>(statOf(livingLogPath())->st_size));
        model.writeFile(q("a"), "two");
        model.writeFile(q("a"), "three");
        model.remove(q("new"));
    });
    const ProjectModel recovered = ProjectModel::recover(onlyWork());
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("an hour of work"));
    EXPECT_EQ(recovered.readFile(q("new")), QByteArray("of the same hour"));
}

namespace {

// Tells in which order files of a directory were changed or removed.
class Watch
{
public:
    explicit Watch(const std::string& directory)
    {
        EXPECT_GE(::inotify_add_watch(m_fd.get(), directory.c_str(), IN_MODIFY | IN_DELETE), 0);
    }

    std::vector<std::string> names() const
    {
        std::array<char, 4096> events{};
        const ssize_t size = ::read(m_fd.get(), events.data(), events.size());
        std::vector<std::string> names;
        for (const char* at = events.data(); at < events.data() + size;) {
            inotify_event event{};
            std::memcpy(&event, at, sizeof event);
            at += sizeof event;
            names.emplace_back(at); // filled up with zeros
            at += event.len;
        }
        return names;
    }

private:
    Fd m_fd{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC), "inotify"};
};

} // namespace

TEST_P(AnUnsavedWork, KeepsItsBytesUntilItIsNotedWhatReplacedThem)
{
    ProjectModel model(path());
    model.writeFile(q("a"), "one");
    model.writeFile(q("new"), "one");
    const std::string log = livingLogPath();
    const Watch watch(log.substr(0, log.rfind('/')));
    model.writeFile(q("a"), "two");
    EXPECT_EQ(watch.names(), (std::vector<std::string>{"3-a", "log", "1-a"}));
    model.remove(q("new"));
    EXPECT_EQ(watch.names(), (std::vector<std::string>{"log", "2-new"}));
}

TEST_P(AnUnsavedWork, OutlivesAForkedProcessThatEndsInOrder)
{
    leaveUnsavedWork([](ProjectModel& model) {
        model.writeFile(q("a"), "the parent's");
        auto copy = std::make_unique<ProjectModel>(std::move(model));
        const pid_t child = ::fork();
        if (child == 0) {
            copy->writeFile(q("d/b"), "the child's");
            copy->save(QString(), ArchiveFormat::Source, true);
            copy.reset();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        EXPECT_EQ(copy->readFile(q("a")), QByteArray("the parent's"));
        copy->writeFile(q("new"), "the parent's");
        static_cast<void>(copy.release());
    });
    const ProjectModel recovered = ProjectModel::recover(onlyWork(), true);
    EXPECT_EQ(recovered.readFile(q("a")), QByteArray("the parent's"));
    EXPECT_EQ(recovered.readFile(q("new")), QByteArray("the parent's"));
}

// Searchers see what others look at, and take no work away from under them.
TEST_P(AnUnsavedWork, IsFoundByManyProgramsAtOnce)
{
    leaveUnsavedWork();
    const QString root = QFileInfo(onlyWork().directory).path();
    const Fd lock = openPath((root + q("/lock")).toStdString(), O_RDONLY);
    ASSERT_EQ(::flock(lock.get(), LOCK_SH | LOCK_NB), 0); // as a searcher has it
    const UnsavedWork work = onlyWork();
    EXPECT_EQ(ProjectModel::recover(work).readFile(q("a")), QByteArray("rewritten"));
    putLocal(work.directory + q("/log"), "");
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_TRUE(QFileInfo::exists(work.directory));
    ASSERT_EQ(::flock(lock.get(), LOCK_UN), 0);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(files().tree(), Tree());
}

TEST_P(AnUnsavedWork, IsNotWhatAProgramThatHadNoLockYetLeft)
{
    const QString unfinished = files().path() + q("/kxproject-abcdef");
    ASSERT_EQ(::mkdir(unfinished.toStdString().c_str(), 0700), 0);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_EQ(files().tree(), Tree());
    putLocal(unfinished + q("/somebody's"), "");
    ASSERT_EQ(::chmod(unfinished.toStdString().c_str(), 0700), 0);
    EXPECT_EQ(ProjectModel::recoverable(path()).size(), 0);
    EXPECT_TRUE(QFileInfo::exists(unfinished + q("/somebody's")));
}

} // namespace
} // namespace pk::project::test
