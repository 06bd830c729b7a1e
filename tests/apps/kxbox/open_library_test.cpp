#include "tool.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// What every command that works on a library has in common: opening, finding nodes, saving.
namespace kxbox::test {
namespace {

class OpeningLibraries : public ToolTest
{
protected:
    std::string absolute(const std::string& name) const { return path(name).toStdString(); }
};

class LibrariesInBothForms : public ToolInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, LibrariesInBothForms, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST_F(OpeningLibraries, RefusesWhatIsNone)
{
    EXPECT_EQ(run({"info", "x"}), (Ending{3, "", "kxbox: 'x': no such file or directory\n"}));
    EXPECT_EQ(run({"info", ""}).exitCode, 3);
    putLocal(path("text"), "no library");
    EXPECT_EQ(
        run({"info", "text"}),
        (Ending{3, "",
                "kxbox: " + absolute("text") + ": it is neither a directory nor a zip archive\n"}));
    putLocal(path("empty/some/where/deep/box.bhx"), "<Box/>");
    EXPECT_EQ(
        run({"info", "empty"}),
        (Ending{3, "", "kxbox: empty: not a box library: it holds no box and no order file\n"}));
    EXPECT_FALSE(QFileInfo::exists(path("empty/bxlinfo")));
}

TEST_F(OpeningLibraries, RefusesProjectsOfOtherKinds)
{
    copySample("sample");
    ASSERT_EQ(run({"export", "sample", "out"}).exitCode, 0);
    EXPECT_EQ(run({"info", "out/Lights & sounds/Blink"}).exitCode, 3);
    EXPECT_EQ(run({"convert", "out/Lights & sounds/Blink", "x", "--format", "archive"}).exitCode,
              3);
    EXPECT_FALSE(QFileInfo::exists(path("x")));
}

TEST_F(OpeningLibraries, TakesADirectoryWithoutMetadataForWhatItHolds)
{
    putBoxFile("a/Box/box.bhx");
    EXPECT_EQ(tree("a"), "a/\n└── Box\n");
    putBoxFile("b/Folder/Box/behavior.bhx");
    EXPECT_EQ(tree("b"), "b/\n└── Folder/\n    └── Box\n");
    putLocal(path("c/bxlinfo"), "");
    EXPECT_EQ(tree("c/"), "c/\n");
}

TEST_F(OpeningLibraries, RefusesDamagedArchives)
{
    copySample("whole", Form::Archive);
    const QByteArray bytes = getLocal(path("whole"));
    for (const int size : {4, 1000, bytes.size() / 2, bytes.size() - 1}) {
        putLocal(path("cut"), bytes.left(size));
        const Ending ending = run({"rename", "cut", "Motion", "M"});
        EXPECT_EQ(ending.exitCode, 3) << size;
        EXPECT_EQ(ending.out, "");
        EXPECT_EQ(ending.error.find("kxbox: " + absolute("cut") + ": "), 0U) << ending;
        EXPECT_EQ(q(ending.error).count(QLatin1Char('\n')), 1) << ending;
        EXPECT_EQ(getLocal(path("cut")), bytes.left(size));
    }
}

struct AddressCase
{
    std::string address;
    std::string error; ///< after "kxbox: lib: "
};

class BadAddresses : public ToolTest, public testing::WithParamInterface<AddressCase>
{
};

TEST_P(BadAddresses, AreRefusedByName)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-folder / A\nadd-box A Box --from box.bhx\n");
    expectRefused("lib", {"show", "lib", GetParam().address}, 3,
                  "kxbox: " + GetParam().error + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    , BadAddresses,
    testing::Values(AddressCase{"B", "lib: no node 'B': the library has no 'B'"},
                    AddressCase{"a/Box", "lib: no node 'a/Box': the library has no 'a'"},
                    AddressCase{"A/B", "lib: no node 'A/B': 'A' has no 'B'"},
                    AddressCase{"A\\/Box", "lib: no node 'A\\/Box': the library has no 'A/Box'"},
                    AddressCase{"A/Box/x", "lib: no node 'A/Box/x': 'A/Box' is a box, which has "
                                           "no nodes below it"},
                    AddressCase{"A//Box", "'A//Box': an address has no empty names"},
                    AddressCase{"A", "lib: 'A' is a folder, not a box"},
                    AddressCase{"/", "lib: '/' is a folder, not a box"},
                    AddressCase{"", "lib: '' is a folder, not a box"},
                    AddressCase{"A\nB", "lib: no node 'A\\nB': the library has no 'A\\nB'"},
                    AddressCase{"\xff", "lib: no node '\xef\xbf\xbd': the library has no "
                                        "'\xef\xbf\xbd'"}));

TEST_F(OpeningLibraries, TellsDirectoriesOfOneNameApartByFileNames)
{
    make("lib", Form::Directory);
    putBoxFile("lib/A%2FB/box.bhx");
    putBoxFile("lib/A%2fB/box.bhx");
    expectRefused("lib", {"remove", "lib", "A\\/B"}, 3,
                  "kxbox: lib: 'A\\/B' is ambiguous: 'A%2FB' and 'A%2fB' are both called 'A/B' "
                  "(--file-names tells them apart)\n");
    EXPECT_EQ(run({"remove", "lib", "A%2FB", "--file-names"}),
              (Ending{0, "remove     A%2FB\ndirectory  A%2FB\n", ""}));
    EXPECT_EQ(tree("lib"), "lib/\n└── A/B\n");
    EXPECT_TRUE(QFileInfo::exists(path("lib/A%2fB/box.bhx")));
}

TEST_P(LibrariesInBothForms, ThatCannotBeWrittenStayAsTheyAre)
{
    QDir().mkpath(path("d"));
    copySample("d/lib", GetParam());
    const Files before = filesOf(path("d/lib"));
    const ReadOnly readOnly(path("d"));
    EXPECT_EQ(runUnprivileged({"tree", "d/lib", "Logic"}).exitCode, 0);
    const std::string place = path("d").toStdString();
    const std::string error =
        "kxbox: " + (GetParam() == Form::Archive ? "d/lib: it is read-only\n"
                                                 : place + "/lib: it can't be saved: " + place +
                                                       "/.lib.kxlock: Permission denied\n");
    for (const Words& words :
         {Words{"rename", "d/lib", "Motion", "M"}, Words{"remove", "d/lib", "Motion"},
          Words{"copy", "d/lib", "Motion", "--into", "d/lib"}}) {
        EXPECT_EQ(runUnprivileged(words), (Ending{3, "", error}));
        EXPECT_EQ(filesOf(path("d/lib")), before);
    }
    EXPECT_NE(runUnprivileged({"info", "d/lib"}).out.find("read-only   yes\n"), std::string::npos);
}

TEST_F(OpeningLibraries, LeavesAnArchiveAloneThatIsReadOnly)
{
    QDir().mkpath(path("d"));
    ASSERT_EQ(::chmod(path("d").toStdString().c_str(), 0777), 0);
    copySample("d/lib", Form::Archive);
    ASSERT_EQ(::chmod(path("d/lib").toStdString().c_str(), 0444), 0);
    const Files before = filesOf(path("d/lib"));
    EXPECT_EQ(runUnprivileged({"rename", "d/lib", "Motion", "M"}),
              (Ending{3, "", "kxbox: d/lib: it is read-only\n"}));
    EXPECT_EQ(filesOf(path("d/lib")), before);
    EXPECT_NE(runUnprivileged({"info", "d/lib"}).out.find("read-only   yes\n"), std::string::npos);
}

TEST_F(OpeningLibraries, GivesUpOnOneThatAnotherProgramKeepsSaving)
{
    make("lib", Form::Archive);
    const int lock = ::open((absolute(".lib.kxlock")).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    expectRefused("lib", {"add-folder", "lib", "/", "A"}, 3,
                  "kxbox: " + absolute("lib") + ": it is in use by another program\n");
    ::close(lock);
    EXPECT_EQ(run({"add-folder", "lib", "/", "A"}).exitCode, 0);
}

TEST_P(LibrariesInBothForms, ThatOthersSavedInBetweenAreNotOverwritten)
{
    make("lib", GetParam(), "add-folder / A\n");
    ASSERT_EQ(::mkfifo(path("commands").toStdString().c_str(), 0600), 0);
    QProcess process;
    process.setWorkingDirectory(path());
    process.start(q(KXBOX_PROGRAM), {q("batch"), q("lib"), q("commands")});
    // It can be opened once the program reads from it, which has opened the library by then.
    int commands = -1;
    while ((commands = ::open(path("commands").toStdString().c_str(),
                              O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0 &&
           !process.waitForFinished(10)) {
    }
    ASSERT_GE(commands, 0);
    EXPECT_EQ(run({"rename", "lib", "A", "Theirs"}).exitCode, 0);
    const Files saved = filesOf(path("lib"));
    const std::string line = "rename A Mine\n";
    EXPECT_EQ(::write(commands, line.data(), line.size()), static_cast<ssize_t>(line.size()));
    ::close(commands);
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
    const QByteArray error = process.readAllStandardError();
    EXPECT_EQ(error.count('\n'), 1) << error.constData();
    EXPECT_TRUE(error.contains("changed")) << error.constData();
    EXPECT_EQ(filesOf(path("lib")), saved);
    EXPECT_EQ(tree("lib"), "lib/\n└── Theirs/\n");
}

TEST_F(OpeningLibraries, WarnsOfTranslationFilesThatWouldBeLostAndKeepsThem)
{
    make("lib", Form::Directory, "add-folder / A\nadd-folder / B\n");
    putLocal(path("lib/translations/translation_xx.ts"), "<TS version=\"2.1\"></TS>");
    const std::string warning = "kxbox: warning: lib- No language code found in " +
                                absolute("lib") +
                                "/translations/translation_xx.ts translation file\n";
    EXPECT_EQ(run({"tree", "lib"}), (Ending{0, "lib/\n├── A/\n└── B/\n", warning}));
    const std::string error = "kxbox: lib: 1 of 1 translation files would be lost: "
                              "'kxbox check' says which and why\n";
    expectRefused("lib", {"rename", "lib", "A", "C"}, 3, error);
    expectRefused("lib", {"remove", "lib", "A"}, 3, error);
    expectRefused("lib", {"move", "lib", "A", "--to", "B"}, 3, error);
    make("other", Form::Directory, "add-folder / C\n");
    expectRefused("lib", {"copy", "other", "C", "--into", "lib"}, 3, error);
    EXPECT_EQ(run({"add-folder", "lib", "A", "C"}).error, warning);
    EXPECT_TRUE(QFileInfo::exists(path("lib/translations/translation_xx.ts")));
}

TEST_F(OpeningLibraries, KeepsTranslationsWhoseDirectoryIsNoPartOfTheProject)
{
    make("lib", Form::Directory, "add-folder / A\n");
    putLocal(path("outside/translation_fr.ts"), R"(<TS version="2.1" language="fr"></TS>)");
    ASSERT_EQ(::symlink("../outside", path("lib/translations").toStdString().c_str()), 0);
    const Ending ending = run({"rename", "lib", "A", "C"});
    EXPECT_EQ(ending.exitCode, 3);
    EXPECT_NE(ending.error.find("kxbox: lib: not all of 'translations' can be read: the rest would "
                                "be lost\n"),
              std::string::npos)
        << ending.error;
    EXPECT_TRUE(QFileInfo(path("lib/A")).isDir());
    ASSERT_TRUE(QFile::remove(path("lib/translations")));
    ASSERT_EQ(run({"tr", "add", "lib", "de"}).exitCode, 0);
    ASSERT_EQ(::symlink("../../outside/translation_fr.ts",
                        path("lib/translations/translation_fr.ts").toStdString().c_str()),
              0);
    EXPECT_EQ(run({"rename", "lib", "A", "C"}).exitCode, 3);
    ASSERT_TRUE(QDir().rename(path("lib/A"), path("lib/A%2FB")));
    const Ending fixed = run({"check", "lib", "--fix"});
    EXPECT_NE(fixed.out.find("not fixed: A%2FB: messages could get lost"), std::string::npos)
        << fixed.out;
    EXPECT_TRUE(QFileInfo(path("lib/translations/translation_fr.ts")).isSymLink());
    ASSERT_TRUE(QFile::remove(path("lib/translations/translation_fr.ts")));
    EXPECT_EQ(run({"check", "lib", "--fix"}).out.find("not fixed: "), std::string::npos);
    EXPECT_TRUE(QFileInfo(path("lib/A%2fB")).isDir());
    putLocal(path("lib/translations/below/translation_it.ts"), "");
    EXPECT_EQ(run({"rename", "lib", "A\\/B", "D"}).exitCode, 3);
    EXPECT_TRUE(QFileInfo(path("lib/translations/below/translation_it.ts")).isFile());
}

TEST_F(OpeningLibraries, LetsNodesBeRenamedWhoseNamesNoOrderFileCanHold)
{
    make("lib", Form::Directory);
    QDir().mkpath(path("lib/a\x01"));
    QDir().mkpath(path("lib/b\x02"));
    EXPECT_EQ(run({"rename", "lib", "a\x01", "A"}).exitCode, 0);
    EXPECT_EQ(run({"rename", "lib", "b\x02", "B"}),
              (Ending{0, "rename     b\\x02 -> B\ndirectory  b\\x02 -> B\n",
                      "kxbox: warning: Could not write the place of 'b\\x02' into 'bxlinfo', "
                      "reason: characters that XML cannot hold in the attribute \"name\" of "
                      "element \"Node\"\n"}));
    EXPECT_EQ(run({"tree", "lib"}), (Ending{0, "lib/\n├── A/\n└── B/\n", ""}));
}

} // namespace
} // namespace kxbox::test
