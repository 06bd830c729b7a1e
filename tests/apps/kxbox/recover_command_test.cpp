#include "dying_program.hpp"
#include "open_library.hpp"
#include "progress.hpp"
#include "tool.hpp"

#include <kxboxlibrary/box_data.hpp>

#include <QRegularExpression>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <unistd.h>

namespace kxbox::test {
namespace {

// While it lives, temporary files of this program and of those that it starts have a directory of
// their own.
class TemporaryPlace
{
public:
    TemporaryPlace() { qputenv("TMPDIR", m_directory.path().toUtf8()); }
    ~TemporaryPlace() { m_hadOne ? qputenv("TMPDIR", m_before) : qunsetenv("TMPDIR"); }
    TemporaryPlace(const TemporaryPlace&) = delete;
    TemporaryPlace& operator=(const TemporaryPlace&) = delete;
    TemporaryPlace(TemporaryPlace&&) = delete;
    TemporaryPlace& operator=(TemporaryPlace&&) = delete;

    QString path() const { return m_directory.path(); }

private:
    bool m_hadOne = qEnvironmentVariableIsSet("TMPDIR");
    QByteArray m_before = qgetenv("TMPDIR");
    TemporaryDirectory m_directory;
};

// An editor that dies with the sample library open, as "lib", edited and not saved.
class Recovering : public ToolInBothForms
{
protected:
    void SetUp() override
    {
        copySample("lib", GetParam());
        copySample("expected", GetParam());
    }

    static void edit(OpenLibrary& library)
    {
        library.node("Motion").setName("Moves");
        library.box("Logic/Not").boxData()->setTooltip(q("The contrary"));
        const KX::BoxLibraryNode& vision = library.node("Vision");
        KX::removeChildTree(*vision.parent(), vision.index());
    }

    std::unique_ptr<OpenLibrary> open(const std::string& name)
    {
        return std::make_unique<OpenLibrary>(path(name).toStdString(), m_progress);
    }

    void dieAfter(const std::function<void(OpenLibrary&)>& editing)
    {
        dying::runAndKill([&] {
            m_opened = open("lib");
            editing(*m_opened);
        });
    }

    void leaveUnsavedWork() { dieAfter(edit); }

    /// The part of the only piece of work's name that differs each time is "X".
    static std::string withoutName(const std::string& text)
    {
        return QString::fromStdString(text)
            .replace(QRegularExpression(q("kxproject-\\w+/\\d+ of [-0-9T:]+Z")), q("X"))
            .toStdString();
    }

    int leftovers() const { return QDir(m_temporary.path()).entryList({q("kxproject-*")}).size(); }

private:
    TemporaryPlace m_temporary;
    Progress m_progress{STDERR_FILENO};
    std::unique_ptr<OpenLibrary> m_opened; // in the editor, so that nothing is closed when it dies
};

INSTANTIATE_TEST_SUITE_P(, Recovering, testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(Recovering, FindsNothingWhereNothingIsUnsaved)
{
    const Ending nothing{0, "There is no unsaved work.\n", ""};
    EXPECT_EQ(run({"recover", "lib"}), nothing);
    EXPECT_EQ(json({"recover", "lib"})["work"], nullptr);
    dieAfter([](OpenLibrary&) {});
    EXPECT_EQ(run({"recover", "lib"}), nothing);
    EXPECT_EQ(leftovers(), 0);
    leaveUnsavedWork();
    EXPECT_EQ(run({"recover", "expected"}), nothing);
    EXPECT_EQ(leftovers(), 1);
}

TEST_P(Recovering, GivesBackWhatAnEditorHadNotSaved)
{
    leaveUnsavedWork();
    const auto planned = json({"recover", "lib", "--dry-run"});
    EXPECT_EQ(planned["dryRun"], true);
    const auto& edits = planned["work"]["edits"];
    EXPECT_NE(std::find(edits.begin(), edits.end(), "move Motion to Moves"), edits.end())
        << planned;
    EXPECT_NE(std::find(edits.begin(), edits.end(), "remove Vision"), edits.end()) << planned;
    EXPECT_EQ(planned["work"]["changes"].size(), 0U);
    const Ending plan = run({"recover", "lib", "--dry-run"});
    const Ending done = run({"recover", "lib"});
    EXPECT_EQ(plan, (Ending{0, done.out + "Nothing was written (--dry-run).\n", ""}));
    EXPECT_EQ(done.exitCode, 0) << done;
    const std::string text = withoutName(done.out);
    EXPECT_EQ(text.find("recover X, "), 0U) << text;
    EXPECT_NE(text.find("\n  move Motion to Moves\n"), std::string::npos) << text;
    {
        const auto library = open("expected");
        edit(*library);
        library->setEdited();
        library->save();
    }
    EXPECT_EQ(filesIn("lib"), filesIn("expected"));
    EXPECT_EQ(leftovers(), 0);
    EXPECT_EQ(run({"check", "lib"}).exitCode, 0);
}

TEST_P(Recovering, DiscardsWhatNobodyWants)
{
    leaveUnsavedWork();
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"recover", "lib", "--discard", "--dry-run"}).exitCode, 0);
    EXPECT_EQ(leftovers(), 1);
    EXPECT_EQ(json({"recover", "lib", "--discard"})["work"]["discarded"], true);
    EXPECT_EQ(leftovers(), 0);
    EXPECT_EQ(filesOf(path("lib")), before);
    EXPECT_EQ(run({"recover", "lib"}).out, "There is no unsaved work.\n");
}

TEST_P(Recovering, DiscardsWhatWasEditedInALibraryThatIsGone)
{
    leaveUnsavedWork();
    ASSERT_TRUE(QFile::rename(path("lib"), path("elsewhere")));
    EXPECT_EQ(run({"recover", "lib"}).exitCode, 3);
    const auto discarded = json({"recover", "lib", "--discard"});
    EXPECT_EQ(discarded["work"]["changes"].size(), 1U) << discarded;
    EXPECT_EQ(leftovers(), 0);
}

TEST_P(Recovering, AsksWhichOfSeveral)
{
    leaveUnsavedWork();
    leaveUnsavedWork();
    const Ending ending = run({"recover", "lib"});
    EXPECT_EQ(ending.exitCode, 3);
    EXPECT_NE(ending.error.find("kxbox: lib: several programs left unsaved work, so --from must "
                                "name one: kxproject-"),
              std::string::npos)
        << ending;
    const QString name =
        QRegularExpression(q("kxproject-\\w+/\\d+")).match(q(ending.error)).captured();
    EXPECT_EQ(run({"recover", "lib", "--from", name.toStdString(), "--discard"}).exitCode, 0);
    const Ending gone = run({"recover", "lib", "--from", name.toStdString()});
    EXPECT_EQ(gone.exitCode, 3);
    EXPECT_EQ(gone.error.find("kxbox: lib: no unsaved work '" + name.toStdString() +
                              "' among kxproject-"),
              0U)
        << gone;
    EXPECT_EQ(run({"recover", "lib"}).exitCode, 0);
}

TEST_P(Recovering, RefusesALibraryThatSomeoneElseChanged)
{
    leaveUnsavedWork();
    ASSERT_EQ(run({"rename", "lib", "Speech", "Voice"}).exitCode, 0);
    const Files before = filesOf(path("lib"));
    const Ending refused = run({"recover", "lib"});
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_EQ(refused.out, "");
    EXPECT_NE(refused.error.find("changed by someone else since: '"), std::string::npos) << refused;
    EXPECT_EQ(filesOf(path("lib")), before);
    EXPECT_NE(run({"recover", "lib", "--dry-run"}).out.find("changed by someone else since: '"),
              std::string::npos);
    EXPECT_EQ(run({"recover", "lib", "--force"}).exitCode, 0);
    EXPECT_NE(tree("lib").find(" Moves/"), std::string::npos);
    EXPECT_NE(filesIn("lib").count("Voice/bxlinfo"), 0U);
}

TEST_P(Recovering, NeedsALibrary)
{
    EXPECT_EQ(run({"recover", "x"}), (Ending{3, "", "kxbox: 'x': no such file or directory\n"}));
    EXPECT_EQ(run({"recover"}).exitCode, 2);
}

} // namespace
} // namespace kxbox::test
