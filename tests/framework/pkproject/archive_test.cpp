#include "archive.hpp"
#include "raw_zip.hpp"
#include "support.hpp"
#include "zip_support.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>

#include <cstdlib>
#include <fcntl.h>
#include <ostream>
#include <unistd.h>

namespace pk::project::test {

class AnArchive : public testing::Test
{
protected:
    QString path() const { return m_directory.path("p.zip"); }
    std::string refusal() const
    {
        return messageOf<FormatError>([&] { const ProjectModel opened(path()); });
    }
    ArchiveSource source() const
    {
        const std::string text = path().toStdString();
        return {Place::of(text), openPath(text, O_RDONLY), {}};
    }
    // Replaces four bytes at an offset from the end, or from the start.
    void poke(std::size_t at, std::uint32_t value) const
    {
        std::string bytes = getLocal(path()).toStdString();
        for (std::size_t i = 0; i < 4; ++i) {
            bytes.at(at + i) = static_cast<char>(value >> (8 * i) & 0xff);
        }
        putLocal(path(), QByteArray::fromStdString(bytes));
    }
    // Where the central directory's entry number `number` begins.
    std::size_t central(int number) const
    {
        const std::string bytes = getLocal(path()).toStdString();
        std::size_t at = bytes.find("PK\1\2");
        for (; number > 0; --number) {
            at = bytes.find("PK\1\2", at + 4);
        }
        return at;
    }

    // What this process reads from its open file from now on is an error.
    static void replaceOpenFile(const QString& path)
    {
        int replaced = 0;
        for (const QString& name : QDir(q("/proc/self/fd")).entryList(QDir::Files)) {
            if (QFile::symLinkTarget(q("/proc/self/fd/") + name) == path) {
                const Fd directory = openPath("/", O_RDONLY | O_DIRECTORY);
                EXPECT_EQ(::dup2(directory.get(), name.toInt()), name.toInt());
                ++replaced;
            }
        }
        EXPECT_GT(replaced, 0);
    }

    TemporaryDirectory m_directory;
};

TEST_F(AnArchive, IsReadWithDirectoriesThatItDoesNotName)
{
    putZip(path(), {{"b/c/d.txt", "1"}, {"a/", ""}, {"b/e", "2", S_IFREG | 0755}, {"b-", "3"}});
    const ProjectModel model(path());
    EXPECT_EQ(
        treeOf(model),
        (Tree{
            {"a/", ""}, {"b-", "3"}, {"b/", ""}, {"b/c/", ""}, {"b/c/d.txt", "1"}, {"b/e", "2"}}));
    model.exportFile(QString(), m_directory.path("out"), true);
    EXPECT_EQ(treeOf(m_directory.path("out"))["b/e"], std::to_string(0755) + ":2");
}

TEST_F(AnArchive, OfTheZipToolIsRead)
{
    putLocal(m_directory.path("tree/a/b"), QByteArray("text").repeated(1000));
    QDir(m_directory.path("tree")).mkdir(q("empty"));
    const QString command = q("cd '%1' && zip -q -r -9 ../p.zip .").arg(m_directory.path("tree"));
    // NOLINTNEXTLINE(cert-env33-c): a fixed command of the test
    ASSERT_EQ(std::system(command.toStdString().c_str()), 0);
    const ProjectModel model(path());
    EXPECT_EQ(treeOf(model), (Tree{{"a/", ""},
                                   {"a/b", QByteArray("text").repeated(1000).toStdString()},
                                   {"empty/", ""}}));
}

TEST_F(AnArchive, WithoutEntriesIsAnEmptyProject)
{
    putLocal(path(), QByteArray("PK\5\6") + QByteArray(18, '\0'));
    EXPECT_TRUE(treeOf(ProjectModel(path())).empty());
}

TEST_F(AnArchive, UnpacksAnEntryWhenItIsAskedFor)
{
    const TemporaryFiles files;
    putZip(path(), {{"a", "1"}, {"b", "2"}});
    const ProjectModel model(path());
    EXPECT_TRUE(model.hasFile(q("a")));
    EXPECT_TRUE(files.tree().empty());
    const QString local = model.getFileLocalPath(q("a"));
    EXPECT_EQ(getLocal(local), QByteArray("1"));
    EXPECT_EQ(files.tree().count(QDir(files.path()).relativeFilePath(local).toStdString()), 1U);
    const Tree tree = files.tree();
    EXPECT_EQ(model.getFileLocalPath(q("a")), local);
    EXPECT_EQ(files.tree(), tree);
}

TEST_F(AnArchive, StaysReadableWhenItsFileIsReplaced)
{
    putZip(path(), {{"a", "1"}});
    const ProjectModel model(path());
    ASSERT_TRUE(QFile::remove(path()));
    putLocal(path(), "something else");
    EXPECT_EQ(model.readFile(q("a")), QByteArray("1"));
}

TEST_F(AnArchive, ThatChangedIsNoticed)
{
    putZip(path(), {{"a", "1"}});
    const ArchiveSource archive = source();
    EXPECT_NO_THROW(archive.checkUnchanged());
    putLocal(path(), getLocal(path()) + "x");
    EXPECT_NE(messageOf<ConflictError>([&] { archive.checkUnchanged(); }).find("p.zip"),
              std::string::npos);
    ASSERT_TRUE(QFile::remove(path()));
    EXPECT_THROW(archive.checkUnchanged(), ConflictError);
}

TEST_F(AnArchive, ThatIsNoneIsRefused)
{
    for (const QByteArray& bytes : {QByteArray("<xml/>"), QByteArray(), QByteArray(100'000, 'x')}) {
        putLocal(path(), bytes);
        EXPECT_EQ(refusal(),
                  path().toStdString() + ": it is neither a directory nor a zip archive");
    }
}

TEST_F(AnArchive, ThatIsEncryptedIsRefusedAsThat)
{
    putZip(path(), {{"plain", "1"}, {"secret", "2", S_IFREG | 0644, ZIP_CM_STORE, 0, "password"}});
    EXPECT_NE(refusal().find("encrypted archive: 'secret'"), std::string::npos) << refusal();
}

TEST_F(AnArchive, CutOffAnywhereIsRefusedAsDamaged)
{
    putZip(path(), {{"a", "1"}, {"b/c", std::string(300, 'x')}, {"d", "some text"}});
    const QByteArray whole = getLocal(path());
    for (int size = 4; size < whole.size(); ++size) {
        putLocal(path(), whole.left(size));
        ASSERT_NE(refusal().find("p.zip: damaged archive: "), std::string::npos) << size;
    }
}

TEST_F(AnArchive, WithAnyByteOfItsDirectoryFlippedIsReadOrRefused)
{
    putZip(path(), {{"a", "1"}, {"b/c", std::string(300, 'x')}});
    const QByteArray whole = getLocal(path());
    int refused = 0;
    for (int at = static_cast<int>(central(0)); at < whole.size(); ++at) {
        for (const int bits : {0x01, 0x80, 0xff}) {
            QByteArray bytes = whole;
            bytes[at] = static_cast<char>(bytes[at] ^ bits);
            putLocal(path(), bytes);
            try {
                treeOf(ProjectModel(path()));
            } catch (const FormatError&) {
                ++refused;
            } catch (const LimitError&) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

TEST_F(AnArchive, WithAFlippedByteOfContentCanNotBeRead)
{
    putZip(path(), {{"a", "some text", S_IFREG | 0644, ZIP_CM_STORE}});
    ASSERT_TRUE(patchLocal(path(), "some", "sOme"));
    ProjectModel model(path());
    EXPECT_TRUE(model.hasFile(q("a")));
    EXPECT_EQ(model.readFile(q("a")), QByteArray());
    const std::string message = messageOf<FormatError>([&] { model.getFileLocalPath(q("a")); });
    EXPECT_NE(message.find("damaged archive: 'a'"), std::string::npos) << message;
}

struct Hostile
{
    const char* name;
    std::vector<ZipEntry> entries;
    const char* from; ///< replaced, when not null
    const char* to;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const Hostile& hostile)
{
    return stream << hostile.name;
}

class AHostileArchive : public AnArchive, public testing::WithParamInterface<Hostile>
{
};

TEST_P(AHostileArchive, IsRefused)
{
    const Hostile& hostile = GetParam();
    putZip(path(), hostile.entries);
    if (hostile.from != nullptr) {
        // In the local header and in the central directory.
        ASSERT_TRUE(patchLocal(path(), hostile.from, hostile.to));
        ASSERT_TRUE(patchLocal(path(), hostile.from, hostile.to));
    }
    EXPECT_NE(refusal().find(hostile.reason), std::string::npos) << refusal();
    EXPECT_FALSE(QFileInfo::exists(m_directory.path("evil")));
}

INSTANTIATE_TEST_SUITE_P(
    Archives, AHostileArchive,
    testing::Values(
        Hostile{"Parent", {{"../evil", "1"}}, nullptr, nullptr, "no '..'"},
        Hostile{"ParentWithin", {{"a/../../evil", "1"}}, nullptr, nullptr, "no '..'"},
        Hostile{"Absolute", {{"/tmp/evil", "1"}}, nullptr, nullptr, "is relative"},
        Hostile{"Twice", {{"aa", "1"}, {"bb", "2"}}, "bb", "aa", "damaged archive: "},
        Hostile{"TwiceNormalised", {{"a", "1"}, {"./a", "2"}}, nullptr, nullptr, "'a' twice"},
        Hostile{"DirectoryTwice", {{"a/", ""}, {"a//", ""}}, nullptr, nullptr, "'a' twice"},
        Hostile{"FileAndDirectory", {{"a", "1"}, {"a/", ""}}, nullptr, nullptr, "'a' twice"},
        Hostile{"BelowAFile", {{"a", "1"}, {"a/b", "2"}}, nullptr, nullptr, "'a/b' lies in a file"},
        Hostile{"DeepBelowAFile",
                {{"x/a/b/c", "1"}, {"x/a", "2"}},
                nullptr,
                nullptr,
                "'x/a/b/c' lies in a file"},
        Hostile{"Link", {{"a", "/etc/passwd", S_IFLNK | 0777}}, nullptr, nullptr, "is a link"},
        Hostile{"Pipe", {{"a", "", S_IFIFO | 0644}}, nullptr, nullptr, "is a link or a device"}),
    [](const auto& hostile) { return std::string(hostile.param.name); });

TEST_F(AnArchive, ThatDeclaresTooLargeAFileIsRefused)
{
    putZip(path(), {{"a", std::string(100'000, 'x')}});
    poke(central(0) + 24, (1U << 30) + 1);
    EXPECT_ANY_THROW(ProjectModel{path()});
    // A consistent one, in both of its headers.
    poke(22, (1U << 30) + 1);
    const std::string message = messageOf<LimitError>([&] { const ProjectModel m(path()); });
    EXPECT_NE(message.find("'a' unpacks to 1073741825 bytes"), std::string::npos) << message;
}

TEST_F(AnArchive, ThatUnpacksToManyTimesItsSizeIsRefused)
{
    putZip(path(), {{"a", std::string(archive_limits::a_ratioFreeBytes + 1, '\0')}});
    const std::string message = messageOf<LimitError>([&] { const ProjectModel m(path()); });
    EXPECT_NE(message.find("more than 200 times its size"), std::string::npos) << message;
}

TEST_F(AnArchive, SmallerThanThatMayBeAsRepetitiveAsItLikes)
{
    putZip(path(), {{"a", std::string(std::size_t{8} << 20, '\0')}});
    EXPECT_LT(QFileInfo(path()).size(), (8 << 20) / 500);
    EXPECT_EQ(ProjectModel(path()).readFile(q("a")).size(), 8 << 20);
}

TEST_F(AnArchive, ThatUnpacksToMoreThanItDeclaresIsDamaged)
{
    putZip(path(), {{"a", std::string(100'000, 'x')}});
    poke(central(0) + 24, 10);
    poke(22, 10);
    ProjectModel model(path());
    EXPECT_THROW(model.getFileLocalPath(q("a")), FormatError);
}

TEST_F(AnArchive, HasItsVersionControlFilesBesideTheProject)
{
    putZip(path(), {{".git/HEAD", "ref"}, {"a", "1"}, {".svn", "2"}, {"b/.git/x", "3"}});
    Index index;
    ArchiveSource archive = source();
    archive.load(index);
    std::vector<std::pair<std::uint64_t, std::string>> foreign;
    for (const ArchiveSource::Foreign& known : archive.foreign()) {
        foreign.emplace_back(known.position, known.name);
    }
    EXPECT_EQ(foreign, (decltype(foreign){{0, ".git/HEAD"}, {2, ".svn"}}));
    EXPECT_EQ(index.find({".git"}), nullptr);
    EXPECT_NE(index.find({"b", ".git", "x"}), nullptr);
}

TEST_F(AnArchive, WhoseVersionControlFilesCannotBeIsRefused)
{
    putZip(path(), {{"a", "1"}, {".git/a", "1"}, {".git//a", "2"}});
    EXPECT_EQ(refusal(), path().toStdString() + ": damaged archive: it holds '.git/a' twice");
    putZip(path(), {{"a", "1"}, {".git/b", "1"}, {".git", "2"}});
    EXPECT_EQ(refusal(), path().toStdString() + ": damaged archive: '.git/b' lies in a file");
    for (const char* const name : {".kxproject/", ".kxproject/x"}) {
        putZip(path(), {{"a", "1"}, {name, ""}});
        EXPECT_EQ(refusal(), path().toStdString() + ": damaged archive: '.kxproject' is no file");
    }
}

// As on a disk with a bad sector: nothing is known of what is there.
TEST_F(AnArchive, ThatCannotBeReadIsNotTakenForADamagedOne)
{
    const std::string large = noise(1, 100'000).toStdString();
    putZip(path(), {{"a", "small"}, {"b", large}, {"c", large}});
    const ProjectModel model(path());
    EXPECT_EQ(model.getFileBytes(q("a"), 5), QByteArray("small"));
    replaceOpenFile(path());
    for (const char* const name : {"b", "c"}) { // of which b's header was read with a's
        const std::string error =
            messageOf<IoError>([&] { model.getFileBytes(q(name), 1'000'000); });
        EXPECT_EQ(error.find(path().toStdString() + ": it can't be read: '" + name + "': "), 0U)
            << error;
    }
}

TEST_F(AnArchive, WithDamagedMetadataIsRefused)
{
    putZip(path(), {{".kxproject", "no json"}});
    EXPECT_NE(refusal().find("p.zip/.kxproject: damaged project metadata"), std::string::npos);
}

// The archive library takes any end in the last 64 KB, and a wider one rather than the right one.
TEST(AHiddenEnd, IsNotTakenForTheArchives)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    const RawZip hidden{stored("hidden", "x"), stored("hidden too", "y"), stored("and this", "z")};
    const RawZip shown = [&] {
        RawZip zip{stored("shown", "x")};
        zip.entries = hidden.bytes() + zip.entries; // its place is behind
        zip.directory.clear();
        zip.count = 0;
        RawEntry entry = stored("shown", "x");
        entry.at = static_cast<std::uint32_t>(hidden.bytes().size());
        zip.add(entry);
        return zip;
    }();
    const RawZip plain{stored("shown", "x")};
    const std::string comment = RawZip().end() + "behind";
    std::string split = shown.bytes();
    split[split.size() - 18] = 1; // as if it was on the second disk
    const auto filesIn = [&](const std::string& bytes) {
        putLocal(path, QByteArray::fromStdString(bytes));
        return treeOf(ProjectModel(path));
    };
    EXPECT_EQ(filesIn(shown.bytes()), (Tree{{"shown", "x"}}));
    EXPECT_EQ(filesIn(shown.entries + shown.directory + shown.bigEnd() + shown.end()),
              (Tree{{"shown", "x"}}));
    EXPECT_EQ(filesIn(plain.entries + plain.directory + plain.end(comment)),
              (Tree{{"shown", "x"}}));
    EXPECT_THROW(filesIn(split), FormatError);
    std::string inLocator = shown.bigEnd();
    inLocator.replace(56 + 4, 4, "PK\5\6");
    EXPECT_THROW(filesIn(shown.entries + shown.directory + inLocator + shown.end()), FormatError);
}

} // namespace pk::project::test
