// A program that edits and saves a library is killed at moments chosen by chance.
#include "child_process.hpp"
#include "directory_watch.hpp"
#include "library_state.hpp"
#include "settings.hpp"
#include "temporary_files.hpp"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace reliability {
namespace {

using temporary::getLocal;
using temporary::q;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;
using States = std::vector<std::string>;

/// What can be on disk after what a program announced: the state before the save that it was in,
/// or the one after it.
struct Announced
{
    bool opened = false;
    bool inSave = false;
    int number = 0; ///< of the last save that was begun; 0: none
    double saveMicroseconds = 0;
    std::string failure;

    void add(const std::string& line)
    {
        std::istringstream words(line);
        std::string what;
        words >> what;
        if (what == "opened") {
            opened = true;
        } else if (what == "save" && words >> number) {
            inSave = true;
        } else if (what == "saved" && words >> number >> saveMicroseconds) {
            inSave = false;
        } else if (what != "opening") {
            failure = line;
        }
    }
};

/// When a program is killed: after it announced a save, or that it opens the library, and then
/// when so many files came and went beside the library and, or, some time went by.
struct Moment
{
    int afterSave; ///< 0: opening
    int events;
    double part; ///< of what a save, or opening, takes
};

struct Figures
{
    int kills = 0;
    int inSave = 0;
    int inOpening = 0;
    int inRecovery = 0; ///< when opening had something to recover
    int oldStates = 0;
    int newStates = 0;
    int journals = 0;
    int built = 0; ///< places with something that a save had built
    int checks = 0;
};

/// One library and what happened to it.
class Torture
{
public:
    Torture(KX::BoxLibrary::LibraryFormat form, unsigned seed) : m_random(seed)
    {
        QDir(m_directory.path()).mkpath(q("place"));
        QDir(m_directory.path()).mkpath(q("states"));
        QDir(m_directory.path()).mkpath(q("tmp"));
        const Library library(new KX::BoxLibrary(q("Library")));
        library->saveTo(path(), form);
        m_candidates = {stateAt(path())};
        m_watch.emplace(m_directory.path("place").toStdString());
        m_before = qgetenv("TMPDIR");
        qputenv("TMPDIR", m_directory.path("tmp").toUtf8());
    }
    ~Torture() { m_before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_before); }
    Torture(const Torture&) = delete;
    Torture& operator=(const Torture&) = delete;
    Torture(Torture&&) = delete;
    Torture& operator=(Torture&&) = delete;

    /// Starts the program, kills it and looks at what it left: mostly in its place, otherwise at a
    /// copy, so that the next program that is started finds it.
    void kill();

    const Figures& figures() const { return m_figures; }

private:
    QString place() const { return m_directory.path("place"); }
    QString path() const { return libraryIn(place()); }
    static QString libraryIn(const QString& place) { return place + q("/Library.bxl"); }
    unsigned below(unsigned end) { return static_cast<unsigned>(m_random() % end); }

    Moment chooseMoment();
    std::optional<Microseconds> await(ChildProcess& program, const Moment& moment,
                                      Announced& announced);
    Announced runUntil(const Moment& moment);
    void learnFrom(const Announced& announced);
    std::string stateFile(int number) const;
    void settle(const std::string& state);
    /// The library in a directory opens, and is one of the states that it can be in; nothing is
    /// left beside it, and the tool finds nothing wrong.
    void check(const QString& place);
    void checkCopy();
    static void runTool(const QString& place);
    static QStringList namesIn(const QString& place);
    QStringList beside() const { return namesIn(place()); }
    void countLeft();

    temporary::TemporaryDirectory m_directory;
    std::optional<DirectoryWatch> m_watch; // as long as the place: it takes a while to close
    QByteArray m_before;
    std::mt19937 m_random;
    States m_candidates;
    Figures m_figures;
    Microseconds m_opening{10000};
};

// Two in three during a save, as far as that can be hit; the others while the program opens the
// library, or anywhere. A save that is to be recovered is always interrupted once more.
Moment Torture::chooseMoment()
{
    // As many random numbers each time, so that a seed gives the same choices whatever happens.
    const double part = std::uniform_real_distribution<double>(0, 1.2)(m_random);
    const int save = static_cast<int>(2 + below(4));
    const int events = static_cast<int>(1 + below(6));
    const unsigned kind = below(6);
    if (kind == 0 || beside().size() > 1) {
        return {0, 0, part};
    }
    switch (kind) {
    case 1:
        return {0, 0, part * 4};
    case 2:
        return {save, events, 0};
    case 3:
        return {save, 2, part}; // there is the lock, and something being written
    default:
        return {save, 0, part};
    }
}

// Waits for the moment, but for the time that is to go by, which it gives; nothing when the program
// ends before that.
std::optional<Microseconds> Torture::await(ChildProcess& program, const Moment& moment,
                                           Announced& announced)
{
    Clock::time_point opening;
    while (auto line = program.readLine()) {
        announced.add(*line);
        if (*line == "opening") {
            opening = Clock::now();
        } else if (*line == "opened") {
            m_opening = Clock::now() - opening;
        }
        if (announced.number == moment.afterSave && announced.inSave == (moment.afterSave > 0)) {
            m_watch->forget();
            m_watch->await(moment.events);
            return moment.part *
                   (announced.inSave ? Microseconds(announced.saveMicroseconds) : m_opening);
        }
    }
    return std::nullopt;
}

Announced Torture::runUntil(const Moment& moment)
{
    Announced announced;
    ChildProcess program({KX_EDIT_LOOP, path().toStdString(), std::to_string(m_random()),
                          m_directory.path("states").toStdString()});
    const auto time = await(program, moment, announced);
    if (!time) {
        announced.failure += " the program ended by itself";
        return announced;
    }
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(*time);
    for (const std::string& line : program.readLinesUntil(end)) {
        announced.add(line);
    }
    const bool killed = program.kill();
    std::istringstream rest(program.readAll());
    for (std::string line; std::getline(rest, line);) {
        announced.add(line);
    }
    if (!killed && announced.failure.empty()) {
        announced.failure = "the program ended by itself";
    }
    return announced;
}

std::string Torture::stateFile(int number) const
{
    return getLocal(m_directory.path("states/" + std::to_string(number))).toStdString();
}

// The library is in this state now, which is one of those that it could be in.
void Torture::settle(const std::string& state)
{
    const auto found = std::find(m_candidates.begin(), m_candidates.end(), state);
    if (found == m_candidates.end()) {
        for (const std::string& candidate : m_candidates) {
            ADD_FAILURE() << "the library is not\n" << difference(candidate, state);
        }
        return;
    }
    if (m_candidates.size() == 2) {
        ++(found == m_candidates.begin() ? m_figures.oldStates : m_figures.newStates);
    }
    m_candidates = {state};
}

void Torture::learnFrom(const Announced& announced)
{
    ASSERT_EQ(announced.failure, "");
    ++m_figures.kills;
    if (!announced.opened) {
        ++m_figures.inOpening;
        return;
    }
    settle(stateFile(0));
    m_figures.inSave += announced.inSave ? 1 : 0;
    m_candidates = {stateFile(announced.number)};
    if (announced.inSave) {
        m_candidates.insert(m_candidates.begin(), stateFile(announced.number - 1));
    }
}

QStringList Torture::namesIn(const QString& place)
{
    return QDir(place).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                 QDir::NoDotAndDotDot);
}

void Torture::countLeft()
{
    m_figures.journals += beside().contains(q(".Library.bxl.kxjournal")) ? 1 : 0;
    m_figures.built += beside().contains(q(".Library.bxl.kxnew")) ? 1 : 0;
}

void Torture::kill()
{
    const bool isUnfinished = beside().size() > 1;
    const Moment moment = chooseMoment();
    SCOPED_TRACE("kill " + std::to_string(m_figures.kills + 1));
    const Announced announced = runUntil(moment);
    ASSERT_NO_FATAL_FAILURE(learnFrom(announced));
    m_figures.inRecovery += isUnfinished && !announced.opened ? 1 : 0;
    countLeft();
    // What killed programs leave for themselves.
    QDir(m_directory.path("tmp")).removeRecursively();
    QDir(m_directory.path()).mkpath(q("tmp"));
    below(3) != 0 ? check(place()) : checkCopy();
}

void Torture::check(const QString& place)
{
    ++m_figures.checks;
    const bool toolIsFirst = below(2) == 0;
    if (toolIsFirst) {
        runTool(place);
    }
    try {
        settle(stateAt(libraryIn(place)));
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the library can't be opened: " << error.what();
    }
    EXPECT_EQ(namesIn(place), QStringList(q("Library.bxl")));
    if (!toolIsFirst) {
        runTool(place);
    }
}

void Torture::checkCopy()
{
    const temporary::TemporaryDirectory copy;
    const std::filesystem::path to = copy.path("place").toStdString();
    const std::filesystem::path from = place().toStdString();
    std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
    // By their times one sees what somebody else changed.
    for (const auto& entry : std::filesystem::recursive_directory_iterator(from)) {
        std::filesystem::last_write_time(to / std::filesystem::relative(entry.path(), from),
                                         entry.last_write_time());
    }
    check(copy.path("place"));
}

void Torture::runTool(const QString& place)
{
    ChildProcess tool({KXBOX_PROGRAM, "check", libraryIn(place).toStdString()}, -1, true);
    const std::string text = tool.readAll();
    EXPECT_EQ(tool.exitCode(), 0) << text;
    EXPECT_EQ(text, "No problems.\n");
    EXPECT_EQ(namesIn(place), QStringList(q("Library.bxl")));
}

void print(const char* form, const Figures& figures, Clock::duration time)
{
    std::cout << form << ": " << figures.kills << " kills, " << figures.inSave << " during a save ("
              << figures.inSave * 100 / std::max(figures.kills, 1) << " %; after it "
              << figures.oldStates << " old and " << figures.newStates << " new states), "
              << figures.inOpening << " while opening (" << figures.inRecovery
              << " with a save to recover); " << figures.journals << " left a journal, "
              << figures.built << " a half-built library; " << figures.checks << " checks; "
              << std::fixed << std::setprecision(1) << std::chrono::duration<double>(time).count()
              << " s" << std::endl;
}

class KilledPrograms : public testing::TestWithParam<KX::BoxLibrary::LibraryFormat>
{
};

std::string formName(const testing::TestParamInfo<KX::BoxLibrary::LibraryFormat>& info)
{
    return info.param == KX::BoxLibrary::Archive ? "Archive" : "Directory";
}

INSTANTIATE_TEST_SUITE_P(Torture, KilledPrograms,
                         testing::Values(KX::BoxLibrary::Directory, KX::BoxLibrary::Archive),
                         formName);

TEST_P(KilledPrograms, LeaveTheOldLibraryOrTheNewOne)
{
    const unsigned rounds = numberFromEnvironment("KX_TORTURE_ROUNDS", 30);
    const unsigned seed = chooseSeed();
    const auto begin = Clock::now();
    Torture torture(GetParam(), seed);
    // Both forms together make the rounds.
    const unsigned kills = rounds / 2 + (GetParam() == KX::BoxLibrary::Directory ? rounds % 2 : 0);
    for (unsigned i = 0; i < kills && !HasFailure(); ++i) {
        torture.kill();
    }
    print(formName({GetParam(), 0}).c_str(), torture.figures(), Clock::now() - begin);
    EXPECT_EQ(torture.figures().checks, torture.figures().kills);
    EXPECT_TRUE(kills < 10 || torture.figures().inSave > 0) << "no kill hit a save";
}

} // namespace
} // namespace reliability
