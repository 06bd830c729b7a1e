// What the documents show of the tool is what it does.
#include "command_line.hpp"
#include "tool.hpp"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include <set>

namespace kxbox::test {
namespace {

/// A command of a document, with what it prints there.
struct Shown
{
    std::string command;
    std::string output;
};

QString source(const std::string& file)
{
    return q(KXBOX_REPOSITORY) + QLatin1Char('/') + q(file);
}

std::vector<std::string> documents()
{
    std::vector<std::string> files = {"README.md"};
    for (const QString& name : QDir(source("docs")).entryList({q("*.md")}, QDir::Files)) {
        files.push_back("docs/" + name.toStdString());
    }
    return files;
}

/// The blocks of a kind in a document of Markdown, one after the other.
QString blocks(const std::string& file, const std::string& kind)
{
    QString text;
    bool inside = false;
    for (const QString& line : QString::fromUtf8(getLocal(source(file))).split(QLatin1Char('\n'))) {
        if (line.startsWith(q("```"))) {
            inside = !inside && line == q("```" + kind);
        } else if (inside) {
            text += line + QLatin1Char('\n');
        }
    }
    return text;
}

/// Without the line feeds at the end.
std::string trimmed(std::string text)
{
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

/// Commands begin with "$ "; what follows until the next is their output.
std::vector<Shown> commandsOf(const std::string& file)
{
    std::vector<Shown> commands;
    for (const QString& line : blocks(file, "console").split(QLatin1Char('\n'))) {
        if (line.startsWith(q("$ "))) {
            commands.push_back({line.mid(2).toStdString(), ""});
        } else if (!commands.empty()) {
            commands.back().output += line.toStdString() + "\n";
        }
    }
    for (Shown& shown : commands) {
        shown.output = trimmed(shown.output);
    }
    return commands;
}

class Documents : public ToolTest, public testing::WithParamInterface<std::string>
{
};

/// "docs/demo.md" as the name of a test: docsdemomd.
std::string testName(const testing::TestParamInfo<std::string>& file)
{
    return q(file.param).remove(QRegularExpression(q("[^A-Za-z0-9]"))).toStdString();
}

INSTANTIATE_TEST_SUITE_P(All, Documents, testing::ValuesIn(documents()), testName);

TEST_P(Documents, ShowWhatTheirCommandsPrint)
{
    shell("cp -r '" KXBOX_SAMPLE "' standard.bxl");
    for (const Shown& shown : commandsOf(GetParam())) {
        EXPECT_EQ(trimmed(shell(shown.command)), shown.output) << "$ " << shown.command;
    }
}

TEST_P(Documents, ShowTheToolWithItsOutputOnly)
{
    EXPECT_FALSE(blocks(GetParam(), "sh").contains(q("kxbox ")));
}

class Demo : public ToolTest
{
};

TEST_F(Demo, IsAsItsPageShows)
{
    EXPECT_EQ(trimmed(shell("'" KXBOX_REPOSITORY "/samples/demo.sh' build/demo")),
              trimmed(blocks("docs/demo.md", "text").toStdString()));
}

/// The commands of the tool, such as "tr add", and the help of each.
class Help : public ToolTest
{
protected:
    std::map<std::string, std::string> helpByCommand() const
    {
        std::map<std::string, std::string> pages;
        for (const std::string& command : commandsIn(run({"--help"}).out)) {
            const std::string page = run({command, "--help"}).out;
            const std::vector<std::string> below = commandsIn(page);
            for (const std::string& subcommand : below) {
                const std::string name = std::string(command).append(" ").append(subcommand);
                pages[name] = run({command, subcommand, "--help"}).out;
            }
            if (below.empty()) {
                pages[command] = page;
            }
        }
        return pages;
    }

    static std::vector<std::string> matches(const std::string& text, const char* expression)
    {
        std::vector<std::string> found;
        const QRegularExpression pattern(q(expression), QRegularExpression::MultilineOption);
        auto it = pattern.globalMatch(q(text));
        while (it.hasNext()) {
            found.push_back(it.next().captured(1).toStdString());
        }
        return found;
    }

    static std::vector<std::string> optionsIn(const std::string& page)
    {
        return matches(page, "(--[a-z][a-z-]*)");
    }

private:
    static std::vector<std::string> commandsIn(const std::string& page)
    {
        return matches(page.substr(std::min(page.find("Subcommands:"), page.size())),
                       "^  ([a-z-]+) ");
    }
};

TEST_F(Help, IsKeptByTheManual)
{
    const QString manual =
        QString::fromUtf8(getLocal(source("apps/kxbox/kxbox.1"))).remove(QLatin1Char('\\'));
    const auto pages = helpByCommand();
    EXPECT_EQ(pages.size(), 23U);
    for (const auto& [command, page] : pages) {
        const int begin = manual.indexOf(q(".BI \"" + command + " "));
        ASSERT_GE(begin, 0) << command;
        const QString entry = manual.mid(begin, manual.indexOf(q(".TP"), begin) - begin);
        const QString options = manual.mid(manual.indexOf(q(".SH OPTIONS")));
        for (const std::string& option : optionsIn(page)) {
            EXPECT_TRUE(entry.contains(q(option)) || options.contains(q(option)))
                << command << ' ' << option;
        }
    }
}

/// What the shell offers at the end of a line.
class Completion : public Help
{
protected:
    std::string complete(const std::string& words) const
    {
        return shell("source '" KXBOX_REPOSITORY "/apps/kxbox/kxbox.bash'; COMP_WORDS=(" + words +
                     "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kxbox; "
                     "printf '%s\\n' \"${COMPREPLY[@]}\"");
    }
};

TEST_F(Completion, OffersCommandsAndTheirOptions)
{
    EXPECT_EQ(complete("kxbox re"), "rename\nremove\nreorder\nrecover\n");
    EXPECT_EQ(complete("kxbox tr s"), "status\nset\n");
    for (const auto& [command, page] : helpByCommand()) {
        const std::string offered = complete("kxbox " + command + " standard.bxl -");
        for (const std::string& option : optionsIn(page)) {
            EXPECT_NE(offered.find(option + "\n"), std::string::npos) << command << ' ' << option;
        }
    }
}

TEST_F(Completion, OffersNodesOfTheLibraryOfTheLine)
{
    copySample("standard.bxl");
    EXPECT_EQ(complete("kxbox show standard.bxl Log"),
              "Logic\nLogic/Both\nLogic/Either | or\nLogic/Not\nLogic/Compare\n"
              "Logic/Chance: 50 %\nLogic/On \\/ off\n");
    EXPECT_EQ(complete("kxbox remove standard.bxl Logic/Not Logic/E"), "Logic/Either | or\n");
    EXPECT_EQ(complete("kxbox move standard.bxl --at 3 Logic/Not --to Mo") + "\n",
              "Motion\n" + shell("kxbox find standard.bxl '' --in name | grep '^Motion/'") + "\n");
    make("other.bxl", Form::Directory, "add-folder / Mine\n");
    EXPECT_EQ(complete("kxbox copy standard.bxl Logic --into other.bxl --to ''"), "/\nMine\n");
    EXPECT_EQ(complete(R"(kxbox show --file-names standard.bxl Logic/On\ %)"),
              "Logic/On %2f off\n");
    EXPECT_EQ(complete(R"(kxbox show standard.bxl Motion/Walking/Go\ t)"),
              "Motion/Walking/Go to: x, y\n");
    // As readline has it: the name in three words, of which the last is replaced.
    EXPECT_EQ(complete(R"(kxbox show standard.bxl Motion/Walking/Go\ to : \ )"), " x, y\n");
    EXPECT_EQ(complete(R"(kxbox show standard.bxl Motion/Walking/Go\ to :)"), " x, y\n");
    EXPECT_EQ(complete(R"(kxbox show standard.bxl Speech/Tell\ a)"), "Speech/Tell a story\n");
}

TEST_F(Completion, LeavesFilesToTheShell)
{
    for (const char* const words : {"kxbox info ''", "kxbox copy a.bxl b --into ''",
                                    "kxbox batch a.bxl ''", "kxbox add-box a.bxl b c --from ''"}) {
        EXPECT_EQ(complete(words), "\n") << words;
    }
}

/// The names of all tests, "Suite.Name".
std::set<QString> testNames()
{
    static const QRegularExpression test(q(R"(^TEST(?:_[FP])?\((\w+),\s*(\w+)\))"),
                                         QRegularExpression::MultilineOption);
    std::set<QString> names;
    QDirIterator files(source("tests"), {q("*_test.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        auto found = test.globalMatch(QString::fromUtf8(getLocal(files.next())));
        while (found.hasNext()) {
            const auto match = found.next();
            names.insert(match.captured(1) + QLatin1Char('.') + match.captured(2));
        }
    }
    return names;
}

TEST(Promises, NameTestsThatAreThere)
{
    static const QRegularExpression name(q(R"(`(\w+\.[A-Z]\w+)`)"));
    const std::set<QString> names = testNames();
    int named = 0;
    for (const char* const page : {"docs/reliability.md", "SECURITY.md"}) {
        auto found = name.globalMatch(QString::fromUtf8(getLocal(source(page))));
        for (; found.hasNext(); ++named) {
            const QString test = found.next().captured(1);
            EXPECT_EQ(names.count(test), 1U) << test.toStdString();
        }
    }
    EXPECT_GT(named, 30);
}

} // namespace
} // namespace kxbox::test
