#include "faulty_disk.hpp"
#include "raw_zip.hpp"
#include "support.hpp"
#include "zip_support.hpp"

#include <pk/project/error.hpp>

#include <cstdlib>

namespace pk::project::test {

class AnArchiveSave : public testing::Test
{
protected:
    QString path() const { return m_directory.path("p.zip"); }
    static void saveInPlace(ProjectModel& model)
    {
        model.save(QString(), ArchiveFormat::Source, true);
    }

    TemporaryDirectory m_directory;
};

TEST_F(AnArchiveSave, CopiesUnchangedEntriesAsTheyAre)
{
    const std::string text = QByteArray("some text ").repeated(5000).toStdString();
    putZip(path(), {{"changed", "1"},
                    {"level1", text, S_IFREG | 0640, ZIP_CM_DEFLATE, 1},
                    {"moved", text, S_IFREG | 0644, ZIP_CM_DEFLATE, 1},
                    {"stored", text, S_IFREG | 0600, ZIP_CM_STORE}});
    const auto before = zipEntries(path());
    ProjectModel model(path());
    model.writeFile(q("changed"), "2");
    model.move(q("moved"), q("there/moved"), false);
    model.importFile(model, q("stored"), q("copy"), false);
    saveInPlace(model);
    const auto after = zipEntries(path());
    ASSERT_EQ(after.size(), 6U);
    EXPECT_EQ(after[0].name, "changed");
    EXPECT_EQ(after[0].bytes, "2");
    EXPECT_EQ(after[1].name, "copy");
    EXPECT_EQ(after[1].method, ZIP_CM_STORE);
    EXPECT_EQ(after[2].name, "level1");
    EXPECT_EQ(after[2].packed, before[1].packed);
    EXPECT_EQ(after[2].mode, S_IFREG | 0640U);
    EXPECT_EQ(after[3].name, "stored");
    EXPECT_EQ(after[3].method, ZIP_CM_STORE);
    EXPECT_EQ(after[3].packed, text.size());
    EXPECT_EQ(after[4].name, "there/");
    EXPECT_EQ(after[5].name, "there/moved");
    EXPECT_EQ(after[5].packed, before[2].packed);
    EXPECT_EQ(treeOf(model), treeOf(ProjectModel(path())));
}

TEST_F(AnArchiveSave, GivesTheSameBytesForTheSameProject)
{
    ProjectModel first;
    first.writeFile(q("b"), "2");
    first.mkdir(q("a/empty"), true);
    first.setMetadata(q("k"), q("v"));
    first.save(path(), ArchiveFormat::Zip, true);
    ProjectModel second;
    second.setMetadata(q("k"), q("v"));
    second.mkdir(q("a/empty"), true);
    second.writeFile(q("b"), "2");
    second.save(m_directory.path("other.zip"), ArchiveFormat::Zip, true);
    EXPECT_EQ(getLocal(path()), getLocal(m_directory.path("other.zip")));
    const QByteArray bytes = getLocal(path());
    first.writeFile(q("b"), "3");
    saveInPlace(first);
    EXPECT_NE(getLocal(path()), bytes);
    first.writeFile(q("b"), "2");
    saveInPlace(first);
    EXPECT_EQ(getLocal(path()), bytes);
}

TEST_F(AnArchiveSave, WritesNoTimesOfNow)
{
    ProjectModel model;
    model.writeFile(q("a"), "1");
    model.mkdir(q("b"), false);
    model.save(path(), ArchiveFormat::Zip, true);
    for (const ZipEntry& entry : zipEntries(path())) {
        EXPECT_LT(entry.time, std::time_t{316'000'000}) << entry.name; // in January 1980
    }
}

TEST_F(AnArchiveSave, WithoutChangesTouchesNothing)
{
    putZip(path(), {{"a", "1"}});
    ProjectModel model(path());
    const auto stamp = stampOf(path());
    saveInPlace(model);
    EXPECT_EQ(stampOf(path()), stamp);
}

TEST_F(AnArchiveSave, GivesTheSameTreeFromDirectoryToArchiveToDirectory)
{
    putLocal(m_directory.path("tree/a/script"), "#!/bin/sh\n");
    putLocal(m_directory.path("tree/b"), QByteArray("\0\xff binary", 9));
    putLocal(m_directory.path("tree/empty file"), "");
    putLocal(m_directory.path("tree/gr\xc3\xbc\xc3\x9f"), "1");
    QDir(m_directory.path("tree")).mkpath(q("empty/one"));
    const std::string tree = m_directory.path("tree").toStdString();
    ASSERT_EQ(::chmod((tree + "/a/script").c_str(), 0751), 0);
    ASSERT_EQ(::chmod((tree + "/b").c_str(), 0400), 0);
    ASSERT_EQ(::chmod((tree + "/empty/one").c_str(), 0710), 0);
    ProjectModel model(m_directory.path("tree"));
    model.setMetadata(q("k"), q("v"));
    model.save(QString(), ArchiveFormat::Source, true);
    model.save(path(), ArchiveFormat::Zip, true);
    ProjectModel back(path());
    back.save(m_directory.path("back"), ArchiveFormat::Directory, true);
    EXPECT_EQ(treeOf(m_directory.path("back")), treeOf(m_directory.path("tree")));
}

TEST_F(AnArchiveSave, IsAcceptedByOtherTools)
{
    ProjectModel model;
    model.writeFile(q("a/gr\xc3\xbc\xc3\x9f"), QByteArray("text").repeated(10'000));
    model.writeFile(q("empty"), "");
    model.mkdir(q("d"), false);
    model.save(path(), ArchiveFormat::Zip, true);
    model.writeFile(q("b"), "1");
    saveInPlace(model);
    const std::string command = "unzip -tqq '" + path().toStdString() + "' >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a fixed command of the test
}

TEST_F(AnArchiveSave, OfAnEmptyProjectCanBeOpened)
{
    ProjectModel model;
    model.save(path(), ArchiveFormat::Zip, true);
    EXPECT_TRUE(treeOf(ProjectModel(path())).empty());
    model.writeFile(q("a"), "1");
    saveInPlace(model);
    model.remove(QString());
    saveInPlace(model);
    EXPECT_TRUE(treeOf(ProjectModel(path())).empty());
}

TEST_F(AnArchiveSave, InPlaceKeepsVersionControlEntries)
{
    putZip(path(), {{".git/", "", S_IFDIR | 0755},
                    {".git/HEAD", "ref: main", S_IFREG | 0600, ZIP_CM_STORE},
                    {"a", "1"}});
    ProjectModel model(path());
    for (const char* const bytes : {"2", "3"}) {
        model.writeFile(q("a"), bytes);
        saveInPlace(model);
        const auto entries = zipEntries(path());
        ASSERT_EQ(entries.size(), 3U);
        EXPECT_EQ(entries[0].bytes, bytes);
        EXPECT_EQ(entries[1].name, ".git/");
        EXPECT_EQ(entries[2].name, ".git/HEAD");
        EXPECT_EQ(entries[2].bytes, "ref: main");
        EXPECT_EQ(entries[2].mode, S_IFREG | 0600U);
        EXPECT_EQ(entries[2].method, ZIP_CM_STORE);
    }
    EXPECT_EQ(treeOf(model), (Tree{{"a", "3"}}));
}

TEST_F(AnArchiveSave, ElsewhereLeavesVersionControlEntriesBehind)
{
    putZip(path(), {{".git/HEAD", "ref"}, {"a", "1"}});
    ProjectModel model(path());
    model.save(m_directory.path("other.zip"), ArchiveFormat::Source, true);
    EXPECT_EQ(zipEntries(m_directory.path("other.zip")).size(), 1U);
}

TEST_F(AnArchiveSave, SyncsTheNewFileBeforeItTakesThePlace)
{
    putZip(path(), {{"a", "1"}});
    ProjectModel model(path());
    model.writeFile(q("a"), "2");
    FaultyDisk disk;
    saveInPlace(model);
    const std::string place = path().toStdString();
    const std::string fresh = m_directory.path(".p.zip.kxnew").toStdString();
    std::vector<std::string> log;
    for (const std::string& step : disk.log()) {
        if (step != "write " + fresh) {
            log.push_back(step);
        }
    }
    EXPECT_EQ(log, (std::vector<std::string>{
                       "create " + fresh, "sync " + fresh, "exchange " + fresh + " " + place,
                       "sync " + m_directory.path().toStdString(), "unlink " + fresh}));
}

TEST_F(AnArchiveSave, ReadsUnchangedEntriesOfADamagedArchiveAsTheyAre)
{
    putZip(path(), {{"a", "some text", S_IFREG | 0644, ZIP_CM_STORE}, {"b", "1"}});
    ASSERT_TRUE(patchLocal(path(), "some", "sOme"));
    ProjectModel model(path());
    const QByteArray before = getLocal(path());
    model.writeFile(q("b"), "2");
    try {
        saveInPlace(model);
    } catch (const Error&) {
        EXPECT_EQ(getLocal(path()), before);
    }
    EXPECT_EQ(model.readFile(q("b")), QByteArray("2"));
}

// What another system keeps where Unix has the mode is none.
TEST(AnArchiveOfAnotherSystem, KeepsTheFlagsThatSayHowAnEntryWasPacked)
{
    const TemporaryDirectory directory;
    RawEntry best = packedTo("a", deflated("some text"), 9);
    best.flags = 0x0002;
    best.crc = crcOf("some text");
    putLocal(directory.path("p.zip"),
             QByteArray::fromStdString(RawZip{best, stored("b", "1")}.bytes()));
    ProjectModel model(directory.path("p.zip"));
    model.writeFile(q("b"), "2");
    model.save(QString(), ArchiveFormat::Source, true);
    const std::string bytes = getLocal(directory.path("p.zip")).toStdString();
    EXPECT_EQ(bytes.at(bytes.find("PK\3\4") + 6), 2);
    EXPECT_EQ(bytes.at(bytes.find("PK\1\2") + 8), 2);
    EXPECT_EQ(ProjectModel(directory.path("p.zip")).readFile(q("a")), QByteArray("some text"));
}

// Others take a deflated file without a byte for a damaged one.
TEST(AnArchiveOfAnotherSystem, HasItsEmptyFilesStored)
{
    const TemporaryDirectory directory;
    RawEntry empty = packedTo("a", "", 0);
    empty.flags = 0x0002;
    RawEntry foreign = empty;
    foreign.name = ".git/a";
    putLocal(directory.path("p.zip"),
             QByteArray::fromStdString(RawZip{empty, foreign, stored("b", "1")}.bytes()));
    ProjectModel model(directory.path("p.zip"));
    EXPECT_EQ(model.readFile(q("a")), QByteArray());
    model.writeFile(q("b"), "2");
    model.save(QString(), ArchiveFormat::Source, true);
    const std::string bytes = getLocal(directory.path("p.zip")).toStdString();
    for (std::size_t at = 0; (at = bytes.find("PK\3\4", at)) != std::string::npos; ++at) {
        EXPECT_EQ(bytes.at(at + 6), 0);
        EXPECT_EQ(bytes.at(at + 8), 0);
    }
    EXPECT_EQ(treeOf(ProjectModel(directory.path("p.zip"))), (Tree{{"a", ""}, {"b", "2"}}));
}

TEST(AnArchiveOfAnotherSystem, IsSavedWithItsVersionControlFiles)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    RawEntry file = stored(".git/x", "x");
    RawEntry folder = stored(".git/d/", "");
    file.system = folder.system = 0;
    file.mode = folder.mode = S_IFLNK | 0777;
    putLocal(path, QByteArray::fromStdString(RawZip{file, folder, stored("a", "x")}.bytes()));
    ProjectModel model(path);
    model.writeFile(q("b"), "y");
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(treeOf(ProjectModel(path)), (Tree{{"a", "x"}, {"b", "y"}}));
    std::map<std::string, mode_t> modes;
    for (const auto& entry : zipEntries(path)) {
        modes[entry.name] = entry.mode;
    }
    EXPECT_EQ(modes[".git/x"], mode_t{S_IFREG | 0644});
    EXPECT_EQ(modes[".git/d/"], mode_t{S_IFDIR | 0755});
}

} // namespace pk::project::test
