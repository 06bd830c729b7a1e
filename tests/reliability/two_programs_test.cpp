// Two programs edit and save one library at the same time.
#include "child_process.hpp"
#include "library_state.hpp"
#include "settings.hpp"
#include "temporary_files.hpp"

#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/root_box_description.hpp>

#include <QDir>
#include <QLoggingCategory>
#include <boost/make_shared.hpp>

#include <array>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <sstream>

namespace reliability {
namespace {

using pk::project::ArchiveFormat;
using pk::project::ProjectModel;
using temporary::getLocal;
using temporary::q;
using temporary::TemporaryDirectory;

constexpr int a_rounds = 200;
constexpr unsigned a_kindsOfEdits = 5;
constexpr unsigned a_longestDelay = 3000; // microseconds

// Size and checksum of a file that can't be read.
constexpr const char* a_noContent = "0 da39a3ee5e6b4b0d3255bfef95601890afd80709";

/// Makes a library and gives its state.
std::string makeLibrary(const QString& path, KX::BoxLibrary::LibraryFormat form)
{
    QLoggingCategory::setFilterRules(q("kxboxlibrary.critical=false"));
    const Library library(new KX::BoxLibrary(q("Library")));
    KX::BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    for (const char* const name : {"Both", "A", "B"}) {
        folder->appendChild(
            KX::RootBoxDescription(name, boost::make_shared<KX::XmlElement>("Box")));
    }
    library->saveTo(path, form);
    return stateOf(*library);
}

/// The files of a state: their sizes and checksums by path.
std::map<std::string, std::string> filesOf(const std::string& state)
{
    std::map<std::string, std::string> files;
    std::istringstream lines(state);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, 5, "file ") == 0) {
            const std::size_t size = line.rfind(' ', line.rfind(' ') - 1);
            files[line.substr(5, size - 5)] = line.substr(size + 1);
        }
    }
    return files;
}

std::set<std::string> contentsOf(const std::string& state)
{
    std::set<std::string> contents;
    for (const auto& [path, content] : filesOf(state)) {
        contents.insert(content);
    }
    return contents;
}

std::set<std::string> pathsOf(const std::string& state)
{
    std::set<std::string> paths;
    for (const auto& [path, content] : filesOf(state)) {
        paths.insert(path);
    }
    return paths;
}

/// What is found of a directory library that was edited while another program saved it: every file
/// that was written; and the others as they were, as the other program saved them (`theirs`),
/// or, where that removed them, not at all.
void expectEdits(const std::string& found, const std::string& original, const std::string& edited,
                 const std::set<std::string>& theirs)
{
    const auto contents = contentsOf(original);
    auto foundFiles = filesOf(found);
    for (const auto& [path, content] : filesOf(edited)) {
        const auto file = foundFiles.find(path);
        const bool wasWritten = contents.count(content) == 0;
        if (file == foundFiles.end()) {
            EXPECT_FALSE(wasWritten) << path;
            continue;
        }
        EXPECT_TRUE(file->second == content || (!wasWritten && theirs.count(file->second) > 0))
            << path << ": " << file->second;
        foundFiles.erase(file);
    }
    EXPECT_TRUE(foundFiles.empty()) << foundFiles.begin()->first;
}

/// How one of the two fared.
struct Rival
{
    std::string name;   ///< which its edit holds, too
    std::string result; ///< "saved", "conflict" or "lock"
    std::string edited; ///< its library's state before the save
};

/// One library in the place for a round, and two programs on it.
class Round
{
public:
    Round(const TemporaryDirectory& directory, int number, KX::BoxLibrary::LibraryFormat form)
        : m_place(directory.path(std::to_string(number))),
          m_number(std::to_string(number)),
          m_form(form)
    {
        QDir().mkpath(m_place);
        m_original = makeLibrary(path("Library.bxl"), form);
    }
    ~Round() { QDir(m_place).removeRecursively(); }
    Round(const Round&) = delete;
    Round& operator=(const Round&) = delete;
    Round(Round&&) = delete;
    Round& operator=(Round&&) = delete;

    /// Both have opened and edited the library before either saves it.
    std::array<Rival, 2> run(std::mt19937& random)
    {
        Pipe go;
        std::array<Rival, 2> rivals{nameOf("A"), nameOf("B")};
        ChildProcess a(words(rivals[0].name, random), go.readEnd());
        ChildProcess b(words(rivals[1].name, random), go.readEnd());
        EXPECT_EQ(a.readLine().value_or(""), "ready");
        EXPECT_EQ(b.readLine().value_or(""), "ready");
        go.closeWriteEnd();
        finish(a, rivals[0]);
        finish(b, rivals[1]);
        return rivals;
    }

    void expectWinner(const Rival& winner, const Rival& loser) const
    {
        const std::string state = stateAt(path("Library.bxl"));
        EXPECT_EQ(difference(winner.edited, state), "");
        EXPECT_NE(state.find(winner.name), std::string::npos) << state;
        EXPECT_EQ(state.find(loser.name), std::string::npos) << state;
        EXPECT_EQ(QDir(m_place).entryList({q(".*.kx*")}, QDir::AllEntries | QDir::Hidden),
                  QStringList());
    }

    /// The loser's model is as before, and was saved elsewhere; whether that is its whole library.
    /// An archive is kept open and so stays readable; of a directory, only what was written is.
    bool expectRescued(const Rival& loser, const Rival& winner) const
    {
        const std::string refused = file(loser, ".refused");
        const std::string rescued = stateAt(path(letter(loser) + "/Library.bxl"));
        if (m_form == KX::BoxLibrary::Archive) {
            EXPECT_EQ(difference(loser.edited, refused), "");
            EXPECT_EQ(difference(loser.edited, rescued), "");
        } else {
            auto theirs = contentsOf(winner.edited);
            expectEdits(rescued, m_original, loser.edited, theirs);
            theirs.insert(a_noContent);
            expectEdits(refused, m_original, loser.edited, theirs);
            EXPECT_EQ(pathsOf(refused), pathsOf(loser.edited));
        }
        EXPECT_NE(rescued.find(loser.name), std::string::npos) << rescued;
        return rescued == loser.edited;
    }

private:
    QString path(const std::string& name) const { return m_place + q("/" + name); }
    Rival nameOf(const char* letter) const { return {letter + m_number + "x", {}, {}}; }
    static std::string letter(const Rival& rival) { return rival.name.substr(0, 1); }
    std::string file(const Rival& rival, const char* suffix) const
    {
        return getLocal(path(letter(rival) + suffix)).toStdString();
    }

    std::vector<std::string> words(const std::string& name, std::mt19937& random) const
    {
        const std::string letter = name.substr(0, 1);
        QDir(m_place).mkpath(q(letter));
        return {KX_RIVAL,
                path("Library.bxl").toStdString(),
                name,
                std::to_string(random() % a_kindsOfEdits),
                std::to_string(random() % a_longestDelay),
                path(letter + "/Library.bxl").toStdString(),
                path(letter).toStdString()};
    }

    void finish(ChildProcess& program, Rival& rival) const
    {
        std::istringstream lines(program.readAll());
        EXPECT_EQ(program.exitCode(), 0) << lines.str();
        lines >> rival.result;
        rival.edited = file(rival, ".edited");
        const bool rescued = lines.str().find("\nrescued\n") != std::string::npos;
        EXPECT_EQ(rescued, rival.result == "conflict" || rival.result == "lock") << lines.str();
        EXPECT_TRUE(rescued || rival.result == "saved") << lines.str();
    }

    QString m_place;
    std::string m_number;
    KX::BoxLibrary::LibraryFormat m_form;
    std::string m_original; ///< state of the library before
};

TEST(TwoPrograms, ThatOpenedALibraryBeforeEitherSavedItCannotBothSaveIt)
{
    const TemporaryDirectory directory;
    std::mt19937 random(chooseSeed());
    std::array<int, 2> wins{};
    int conflicts = 0;
    int locks = 0;
    int whole = 0;
    for (int number = 0; number < a_rounds && !testing::Test::HasFailure(); ++number) {
        SCOPED_TRACE("round " + std::to_string(number));
        Round round(directory, number,
                    number % 2 == 0 ? KX::BoxLibrary::Directory : KX::BoxLibrary::Archive);
        const auto rivals = round.run(random);
        const std::size_t winner = rivals[0].result == "saved" ? 0 : 1;
        const Rival& loser = rivals[1 - winner];
        ASSERT_EQ(rivals[winner].result, "saved");
        ASSERT_NE(loser.result, "saved");
        ++wins[winner];
        ++(loser.result == "lock" ? locks : conflicts);
        round.expectWinner(rivals[winner], loser);
        whole += round.expectRescued(loser, rivals[winner]) ? 1 : 0;
    }
    std::cout << "A won " << wins[0] << " times, B " << wins[1] << " times; the other got "
              << conflicts << " conflicts and " << locks << " locks and rescued " << whole
              << " whole libraries" << std::endl;
    EXPECT_EQ(wins[0] + wins[1], a_rounds);
}

class CountingPrograms : public testing::TestWithParam<ArchiveFormat>
{
protected:
    TemporaryDirectory m_directory;
};

std::string formName(const testing::TestParamInfo<ArchiveFormat>& info)
{
    return info.param == ArchiveFormat::Zip ? "Archive" : "Directory";
}

INSTANTIATE_TEST_SUITE_P(Both, CountingPrograms,
                         testing::Values(ArchiveFormat::Directory, ArchiveFormat::Zip), formName);

// A save that was lost would be a number too few, one that was repeated a number too many.
TEST_P(CountingPrograms, LoseNoSave)
{
    constexpr int times = 100;
    const QString path = m_directory.path("project");
    ProjectModel model;
    model.writeFile(q("count"), "0");
    model.save(path, GetParam(), false);
    Pipe go;
    const std::vector<std::string> words{KX_COUNTER, path.toStdString(), std::to_string(times)};
    ChildProcess a(words, go.readEnd());
    ChildProcess b(words, go.readEnd());
    go.closeWriteEnd();
    for (ChildProcess* const program : {&a, &b}) {
        const std::string refusals = program->readAll();
        EXPECT_EQ(program->exitCode(), 0) << refusals;
        std::cout << "conflicts and locks: " << refusals;
    }
    EXPECT_EQ(ProjectModel(path).readFile(q("count")), QByteArray::number(2 * times));
    EXPECT_EQ(QDir(m_directory.path()).entryList({q(".*.kx*")}, QDir::AllEntries | QDir::Hidden),
              QStringList());
}

} // namespace
} // namespace reliability
