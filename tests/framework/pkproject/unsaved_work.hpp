#pragma once

#include "dying_program.hpp"
#include "edit_log.hpp"
#include "support.hpp"

#include <pk/project/project_model.hpp>

#include <ctime>
#include <functional>

namespace pk::project::test {

/// Until a change of a file has a later time than any before.
inline void waitForTheClock()
{
    const std::int64_t begin = Base::now();
    timespec now{};
    do {
        ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    } while (std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec <= begin);
}

/// A project with a few files, in either form, and programs that die with it open.
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
        dying::runAndKill([&] {
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

} // namespace pk::project::test
