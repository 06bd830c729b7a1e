#include "edit_log.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <QFileInfo>

#include <fcntl.h>

namespace pk::project::test {
namespace {

class AnEditLog : public testing::Test
{
protected:
    EditLog& log() { return m_log; }
    Staging& staging() { return *m_staging; }
    std::string path() { return m_staging->directory() + "/" + EditLog::a_fileName; }
    EditHistory history() { return EditLog::read(openPath(path(), O_RDONLY)); }
    bool isThere() { return statOf(path()).has_value(); }

private:
    TemporaryFiles m_files;
    std::shared_ptr<Staging> m_staging = Staging::make();
    EditLog m_log{m_staging};
};

const Base a_base{"/some/project", {7, 8, 9}, 10};

TEST_F(AnEditLog, IsMadeWithTheFirstEdit)
{
    log().restart(a_base);
    log().confirm(a_base);
    log().saving({{"/x", {1, 2, 3}}});
    EXPECT_FALSE(isThere());
    log().append({Edit(EditKind::Remove, {"a"})});
    EXPECT_TRUE(isThere());
}

TEST_F(AnEditLog, GivesBackWhatWasNoted)
{
    log().restart(a_base);
    Edit put(EditKind::PutFile, {"a", "b\n"});
    put.staged = staging().write("b\n", "", 0);
    put.mode = 0640;
    Edit move(EditKind::Move, {"a"});
    move.to = {"c", "d"};
    Edit metadata(EditKind::SetMetadata, {});
    metadata.key = q("key");
    metadata.value = QString::fromUtf8("\xc3\xa4");
    log().append({put, move});
    log().append({metadata});
    log().saving({{"/x", {1, 2, 3}}, {"/y", {4, 5, 6}}});
    const EditHistory read = history();
    EXPECT_EQ(read.base.path, a_base.path);
    EXPECT_EQ(read.base.stamp, a_base.stamp);
    EXPECT_EQ(read.base.time, a_base.time);
    ASSERT_EQ(read.operations.size(), 2U);
    ASSERT_EQ(read.operations[0].size(), 2U);
    EXPECT_EQ(read.operations[0][0].path, "a/b\n");
    EXPECT_EQ(read.operations[0][0].other, put.staged->name());
    EXPECT_EQ(read.operations[0][0].mode, 0640);
    EXPECT_EQ(read.operations[0][1].path, "a");
    EXPECT_EQ(read.operations[0][1].other, "c/d");
    EXPECT_FALSE(read.operations[0][1].mode);
    ASSERT_EQ(read.operations[1].size(), 1U);
    EXPECT_EQ(read.operations[1][0].kind, EditKind::SetMetadata);
    EXPECT_EQ(read.operations[1][0].path, "key");
    EXPECT_EQ(read.operations[1][0].other, "\xc3\xa4");
    ASSERT_EQ(read.lastSave.size(), 2U);
    EXPECT_EQ(read.lastSave[1].path, "/y");
    EXPECT_EQ(read.lastSave[1].stamp, (Stamp{4, 5, 6}));
}

TEST_F(AnEditLog, EndsWhereNothingButZerosFollow)
{
    log().restart(a_base);
    log().append({Edit(EditKind::Remove, {"a"})});
    const QString file = QString::fromStdString(path());
    const QByteArray whole = getLocal(file);
    for (const int zeros : {1, 5, 6, 7, 4096}) {
        putLocal(file, whole + QByteArray(zeros, '\0'));
        EXPECT_EQ(history().operations.size(), 1U) << zeros;
    }
}

TEST_F(AnEditLog, BeginsAnew)
{
    log().append({Edit(EditKind::Remove, {"a"})});
    log().restart(a_base);
    EXPECT_EQ(history().operations.size(), 0U);
    log().append({Edit(EditKind::Remove, {"b"})});
    const EditHistory read = history();
    EXPECT_EQ(read.base.path, a_base.path);
    ASSERT_EQ(read.operations.size(), 1U);
    EXPECT_EQ(read.operations[0][0].path, "b");
}

TEST_F(AnEditLog, KnowsTheLastBaseThatWasConfirmed)
{
    log().restart(a_base);
    log().append({Edit(EditKind::Remove, {"a"})});
    Base later = a_base;
    later.time = 11;
    log().confirm(later);
    EXPECT_EQ(history().base.time, 11);
    EXPECT_EQ(history().operations.size(), 1U);
    later.path = "/another/project";
    later.time = 12;
    log().confirm(later);
    EXPECT_EQ(history().base.path, a_base.path);
    EXPECT_EQ(history().base.time, 11);
}

TEST_F(AnEditLog, NotesNothingWhenItIsStopped)
{
    log().append({Edit(EditKind::Remove, {"a"})});
    log().stop();
    log().append({Edit(EditKind::Remove, {"a"})});
    EXPECT_EQ(history().operations.size(), 0U);
}

TEST_F(AnEditLog, KnowsWhetherASaveTookEffect)
{
    const TemporaryDirectory directory;
    const QString there = directory.path("there");
    putLocal(there, "1");
    const std::string path = there.toStdString();
    const Stamp stamp = Stamp::of(*statOf(path));
    EditHistory read;
    EXPECT_FALSE(read.isSaved());
    read.lastSave = {{path, stamp}};
    EXPECT_TRUE(read.isSaved());
    read.lastSave = {{path, stamp}, {directory.path("missing").toStdString(), stamp}};
    EXPECT_FALSE(read.isSaved());
    // File systems give an inode that became free to the next file.
    read.lastSave = {{path, {stamp.id, stamp.time - 1, stamp.bytes}}};
    EXPECT_FALSE(read.isSaved());
}

TEST_F(AnEditLog, KnowsThatASaveThatEditsFollowedHasFailed)
{
    const std::vector<Trace> traces = {{"/x", {1, 2, 3}}};
    log().restart(a_base);
    log().append({Edit(EditKind::Remove, {"a"})});
    log().saving(traces);
    EXPECT_EQ(history().lastSave.size(), 1U);
    log().append({Edit(EditKind::Remove, {"b"})});
    EXPECT_EQ(history().lastSave.size(), 0U);
    log().saving(traces);
    log().confirm(a_base);
    EXPECT_EQ(history().lastSave.size(), 0U);
}

} // namespace
} // namespace pk::project::test
