#include "another_user.hpp"
#include "everything_project.hpp"
#include "faulty_disk.hpp"
#include "power_loss.hpp"

#include <pk/project/error.hpp>

#include <cerrno>
#include <iostream>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// A save of edits of every kind is stopped at each of its operations on the disk.
namespace pk::project::test {

namespace {

using Scratch = EverythingProject::Scratch;

struct SavePath
{
    const char* name;
    Form source;
    Form target;
    enum Place
    {
        InPlace,
        New,
        OverAnother,
        OverRepository
    } place;
};

std::ostream& operator<<(std::ostream& stream, const SavePath& path)
{
    return stream << path.name;
}

// With the address sanitizer it takes a hundred times as long to make another process, so that
// there only every fifth operation is one at which it is killed.
#ifdef __SANITIZE_ADDRESS__
constexpr int a_killStep = 5;
#else
constexpr int a_killStep = 1;
#endif

// A place to save to, and a model with edits that is to be saved there.
class Desk
{
public:
    explicit Desk(const SavePath& path) : m_path(path)
    {
        EverythingProject::make().save(source(), formatOf(path.source), true);
        if (path.place == SavePath::OverAnother || path.place == SavePath::OverRepository) {
            ProjectModel other;
            other.writeFile(q("another/project"), "here");
            other.save(target(), formatOf(path.target), true);
        }
        if (path.place == SavePath::OverRepository) {
            putLocal(target() + q("/.git/HEAD"), "ref: main");
        }
        startAgain();
        m_before = treeOf(m_directory.path());
    }

    // As another program would.
    void startAgain()
    {
        m_model = ProjectModel(source());
        EverythingProject::edit(m_model);
    }
    ProjectModel& model() { return m_model; }
    QString directory() const { return m_directory.path(); }
    QString target() const { return m_directory.path("project"); }
    QString source() const
    {
        return m_path.place == SavePath::InPlace ? target() : m_elsewhere.path("project");
    }
    const Tree& before() const { return m_before; }
    Tree now() const { return treeOf(m_directory.path()); }
    void save() { m_model.save(target(), formatOf(m_path.target), true); }

private:
    const SavePath& m_path;
    const Scratch m_directory;
    const Scratch m_elsewhere;
    ProjectModel m_model;
    Tree m_before;
};

// What a directory holds once the project in it was opened; nothing when there is none.
Tree openedIn(const QString& directory)
{
    try {
        const ProjectModel opened(directory + q("/project"));
    } catch (const PathNotFound&) {
        return {}; // what a save had begun to build is for the next one to remove
    }
    return treeOf(directory);
}

} // namespace

// All of it as a usual user, whom modes concern.
class SaveFaults : public testing::TestWithParam<SavePath>
{
protected:
    SaveFaults()
    {
        Desk desk(GetParam());
        desk.save();
        m_after = desk.now();
        EXPECT_EQ(EverythingProject::contentsOf(ProjectModel(desk.target())),
                  EverythingProject::edited());
        EXPECT_NE(desk.before(), m_after);
    }
    Tree leftOfModels() const { return m_staging.tree(); }
    static void TearDownTestSuite()
    {
        std::cout << "points of all saves: " << allPoints() << std::endl;
    }
    const Tree& after() const { return m_after; }
    void report(const char* way, int points)
    {
        allPoints() += points;
        RecordProperty("points", points);
        std::cout << GetParam().name << ", " << way << ": " << points << " points" << std::endl;
    }
    static void expectAllEdits(const ProjectModel& model)
    {
        EXPECT_EQ(EverythingProject::contentsOf(model), EverythingProject::edited());
    }

private:
    static int& allPoints()
    {
        static int points = 0;
        return points;
    }
    const AnotherUser m_user;
    const TemporaryFiles m_staging;
    Tree m_after;
};

class SaveFaultsWithErrors : public SaveFaults
{
protected:
    void TearDown() override { EXPECT_EQ(leftOfModels(), Tree()); }
    // Lets operation `number` fail in a save. Gives whether there was such an operation.
    bool failOnce(Desk& desk, int number, int error)
    {
        FaultyDisk disk;
        disk.failAt(number, error, false);
        m_failed = false;
        try {
            desk.save();
        } catch (const IoError& failure) {
            m_failed = true;
            const std::string message = failure.what();
            EXPECT_EQ(message.find(desk.target().toStdString() + ": it can't be saved: "), 0U);
            EXPECT_NE(message.find(std::generic_category().message(error)), std::string::npos)
                << message;
        }
        return disk.count() > number;
    }
    // What is left beside the project when it could be saved, but not be cleared away, goes with
    // the next opening.
    void expectOldOrNew(const Desk& desk) const
    {
        if (m_failed) {
            EXPECT_EQ(desk.now(), desk.before());
        } else {
            EXPECT_EQ(openedIn(desk.directory()), after());
        }
    }
    bool m_failed = false;
};

TEST_P(SaveFaultsWithErrors, LeaveOldProjectAndEditsAndALaterSaveWorks)
{
    int points = 0;
    bool reached = true;
    for (int number = 0; reached && !HasFailure(); ++number, ++points) {
        SCOPED_TRACE("operation " + std::to_string(number));
        Desk desk(GetParam());
        reached = failOnce(desk, number, EIO);
        expectOldOrNew(desk);
        expectAllEdits(desk.model());
        desk.save();
        EXPECT_EQ(desk.now(), after());
    }
    report("an I/O error", points);
}

// What can't be opened or looked at.
TEST_P(SaveFaultsWithErrors, OfLooksLeaveOldProjectAndEditsAndALaterSaveWorks)
{
    int points = 0;
    bool reached = true;
    for (int number = 0; reached && !HasFailure(); ++number, ++points) {
        SCOPED_TRACE("look " + std::to_string(number));
        Desk desk(GetParam());
        m_failed = false;
        {
            FaultyDisk disk;
            disk.failLookAt(number, EMFILE);
            try {
                desk.save();
            } catch (const Error& failure) {
                m_failed = true;
                EXPECT_NE(std::string(failure.what()).find("Too many open files"),
                          std::string::npos)
                    << failure.what();
            }
            reached = disk.looks() > number;
        }
        EXPECT_EQ(openedIn(desk.directory()), m_failed ? desk.before() : after());
        expectAllEdits(desk.model());
        EXPECT_NO_THROW(desk.save());
        EXPECT_EQ(desk.now(), after());
    }
    report("a failed look", points);
}

TEST_P(SaveFaultsWithErrors, OneAfterTheOtherLeaveOldProjectAndEdits)
{
    for (const int error : {ENOSPC, EACCES}) {
        auto desk = std::make_unique<Desk>(GetParam());
        int points = 0;
        bool reached = true;
        for (int number = 0; reached && !HasFailure(); ++number, ++points) {
            SCOPED_TRACE("operation " + std::to_string(number));
            reached = failOnce(*desk, number, error);
            expectOldOrNew(*desk);
            if (!m_failed) {
                expectAllEdits(desk->model());
                desk = std::make_unique<Desk>(GetParam());
            }
        }
        report(error == ENOSPC ? "a full disk" : "no permission", points);
    }
}

TEST_P(SaveFaults, KilledInBetweenLeaveTheOldProjectOrTheNew)
{
    int points = 0;
    bool reached = true;
    for (int number = 0; reached && !HasFailure(); number += a_killStep, ++points) {
        SCOPED_TRACE("operation " + std::to_string(number));
        Desk desk(GetParam());
        reached = killIn([&] { desk.save(); }, number);
        const Tree found = openedIn(desk.directory());
        EXPECT_TRUE(found == after() || (found == desk.before() && reached))
            << testing::PrintToString(found);
        if (found == desk.before()) {
            desk.startAgain();
            desk.save();
            EXPECT_EQ(desk.now(), after());
        }
    }
    report("a killed process", points);
}

TEST_P(SaveFaults, AndAPowerFailureLeaveTheOldProjectOrTheNew)
{
    Desk desk(GetParam());
    const PowerLossDisk disk(desk.directory());
    desk.save();
    PowerLossDisk::unplug();
    std::seed_seq sequence{1};
    std::mt19937 random(sequence);
    int points = 0;
    for (int count = 0; count <= disk.count() && !HasFailure(); ++count) {
        for (const unsigned chance : {0U, 100U, 50U, 80U}) {
            SCOPED_TRACE("power lost after change " + std::to_string(count) + ", " +
                         std::to_string(chance) + "% of the unsynced changes survive");
            const Scratch lost;
            SCOPED_TRACE(disk.materialise(lost.path(), count, chance, random));
            const Tree found = openedIn(lost.path());
            EXPECT_TRUE(found == after() || (found == desk.before() && count < disk.count()))
                << testing::PrintToString(found);
            ++points;
        }
    }
    report("a power failure", points);
}

const SavePath a_savePaths[] = {
    {"DirectoryInPlace", Form::Directory, Form::Directory, SavePath::InPlace},
    {"NewDirectory", Form::Directory, Form::Directory, SavePath::New},
    {"DirectoryOverAnother", Form::Directory, Form::Directory, SavePath::OverAnother},
    {"DirectoryOverARepository", Form::Directory, Form::Directory, SavePath::OverRepository},
    {"ArchiveInPlace", Form::Archive, Form::Archive, SavePath::InPlace},
    {"NewArchive", Form::Archive, Form::Archive, SavePath::New},
    {"DirectoryToArchive", Form::Directory, Form::Archive, SavePath::New},
    {"DirectoryBecomesArchive", Form::Directory, Form::Archive, SavePath::InPlace},
    {"ArchiveBecomesDirectory", Form::Archive, Form::Directory, SavePath::InPlace}};

std::string nameOfPath(const testing::TestParamInfo<SavePath>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Of, SaveFaults, testing::ValuesIn(a_savePaths), nameOfPath);
INSTANTIATE_TEST_SUITE_P(Of, SaveFaultsWithErrors, testing::ValuesIn(a_savePaths), nameOfPath);

} // namespace pk::project::test
