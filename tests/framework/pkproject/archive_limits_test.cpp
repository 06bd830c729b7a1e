#include "raw_zip.hpp"
#include "support.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>

#include <functional>
#include <ostream>

namespace pk::project::test {

namespace {

struct LimitCase
{
    const char* name;
    std::uint64_t ArchiveLimits::*limit;
    std::uint64_t bound; ///< just enough for the archive
    std::function<std::string()> make;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const LimitCase& one)
{
    return stream << one.name;
}

class ALimit : public testing::TestWithParam<LimitCase>
{
protected:
    // Everything else is out of the way.
    static ArchiveLimits limits(std::uint64_t value)
    {
        constexpr std::uint64_t a_none = ~std::uint64_t{0};
        ArchiveLimits limits{a_none, a_none, a_none, a_none, 0, a_none, a_none};
        limits.*GetParam().limit = value;
        if (GetParam().limit == &ArchiveLimits::ratioFreeBytes) {
            limits.ratio = 0;
        }
        return limits;
    }
    TemporaryDirectory m_directory;
};

// Of 200 bytes: the rest is a comment.
std::string of200Bytes()
{
    const RawZip zip{packedTo("a", "xy", 600)};
    const std::string body = zip.entries + zip.directory;
    return body + zip.end(std::string(200 - body.size() - zip.end().size(), ' '));
}

std::string ofThreeEntries()
{
    return RawZip{stored("a/", ""), stored("a/b", "1"), stored("c", "2")}.bytes();
}

// Each size takes an extra field when it has more than 32 bits.
RawEntry declaring(const std::string& name, std::uint64_t bytes)
{
    RawEntry entry = packedTo(name, "xy", 0xffffffff);
    entry.fields = extraField(1, little(bytes, 8));
    entry.localFields = entry.fields;
    return entry;
}

} // namespace

TEST_P(ALimit, IsWhatIsStillRead)
{
    const QString path = m_directory.path("p.zip");
    putLocal(path, QByteArray::fromStdString(GetParam().make()));
    EXPECT_NO_THROW(ProjectModel(path, limits(GetParam().bound)));
    EXPECT_NO_THROW(ProjectModel(path, limits(GetParam().bound + 1)));
    const std::string message = messageOf<LimitError>(
        [&] { const ProjectModel model(path, limits(GetParam().bound - 1)); });
    EXPECT_EQ(message.find(path.toStdString()), 0U) << message;
    EXPECT_NE(message.find(GetParam().reason), std::string::npos) << message;
}

INSTANTIATE_TEST_SUITE_P(
    All, ALimit,
    testing::Values(
        LimitCase{"Entries", &ArchiveLimits::entries, 3, ofThreeEntries,
                  "it holds 3 entries, more than the 2 that are read"},
        LimitCase{"Directories", &ArchiveLimits::entries, 5,
                  [] { return RawZip{stored("a/b/c/d/e", "")}.bytes(); },
                  "more files and directories than the 4 that are read"},
        LimitCase{"DirectoriesOfTwo", &ArchiveLimits::entries, 5,
                  [] {
                      return RawZip{stored("a/b/c", ""), stored("d/e", "")}.bytes();
                  },
                  "more files and directories than the 4 that are read"},
        LimitCase{"FileBytes", &ArchiveLimits::fileBytes, 600, of200Bytes,
                  "'a' unpacks to 600 bytes, more than is read of one file"},
        LimitCase{"ManyFileBytes", &ArchiveLimits::fileBytes, std::uint64_t{5} << 30,
                  [] { return RawZip{declaring("a", std::uint64_t{5} << 30)}.bytes(); },
                  "'a' unpacks to 5368709120 bytes"},
        LimitCase{"Bytes", &ArchiveLimits::bytes, 2, ofThreeEntries,
                  "it unpacks to more bytes than are read of one archive"},
        LimitCase{
            "ManyBytes", &ArchiveLimits::bytes, (std::uint64_t{4} << 30) + 1,
            [] {
                return RawZip{declaring("a", std::uint64_t{4} << 30), stored("b", "x")}.bytes();
            },
            "it unpacks to more bytes"},
        LimitCase{"Ratio", &ArchiveLimits::ratio, 3, of200Bytes,
                  "it unpacks to more than 2 times its size"},
        LimitCase{"RatioFreeBytes", &ArchiveLimits::ratioFreeBytes, 600, of200Bytes,
                  "it unpacks to more than 1 times its size"},
        LimitCase{"DirectoryBytes", &ArchiveLimits::directoryBytes, 3 * 46 + 2 + 3 + 1,
                  ofThreeEntries, "its central directory has 144 bytes, more than the 143"},
        LimitCase{"NameBytes", &ArchiveLimits::directoryBytes, 300,
                  [] { return RawZip{stored(std::string(100, '\xb0'), "")}.bytes(); },
                  "its names have 300 bytes, more than the 299 that are read"},
        LimitCase{"HeaderBytes", &ArchiveLimits::directoryBytes, 2 * (30 + 1) + 100 + 50,
                  [] {
                      RawZip zip;
                      for (const std::size_t size : {96U, 46U}) {
                          RawEntry entry = stored(std::string(1, size == 96 ? 'a' : 'b'), "");
                          entry.localFields = extraField(0x5455, std::string(size, 'x'));
                          zip.add(entry);
                      }
                      return zip.bytes();
                  },
                  "the headers of its entries have 212 bytes, more than the 211"},
        LimitCase{"MetadataBytes", &ArchiveLimits::metadataBytes, 9,
                  [] { return RawZip{stored(".kxproject", "{\"a\":\"b\"}")}.bytes(); },
                  "p.zip/.kxproject: it unpacks to 9 bytes, more than is read of it"}),
    [](const auto& c) { return std::string(c.param.name); });

TEST(ArchiveLimitsOf, AModelAreTheUsualOnes)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    putLocal(path, QByteArray::fromStdString(
                       RawZip{declaring("a", archive_limits::a_maxFileBytes + 1)}.bytes()));
    EXPECT_THROW(ProjectModel{path}, LimitError);
    EXPECT_THROW(ProjectModel(path, ArchiveLimits{}), LimitError);
    ArchiveLimits raised;
    raised.fileBytes = archive_limits::a_maxFileBytes + 1;
    EXPECT_THROW(ProjectModel(path, raised), LimitError); // it unpacks to many times its size
    raised.ratio = archive_limits::a_maxFileBytes;
    EXPECT_TRUE(ProjectModel(path, raised).hasFile(q("a")));
}

TEST(ArchiveLimitsOf, AModelHoldForWhatItSaves)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    putLocal(path, QByteArray::fromStdString(ofThreeEntries()));
    const QByteArray before = getLocal(path);
    ArchiveLimits limits;
    limits.entries = 3;
    ProjectModel model(path, limits);
    model.writeFile(q("d"), "3");
    const std::string message =
        messageOf<LimitError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
    EXPECT_EQ(message, path.toStdString() + ": it can't be saved: " + path.toStdString() +
                           ": it holds 4 entries, more than the 3 that are read");
    EXPECT_EQ(getLocal(path), before);
    EXPECT_EQ(leftBeside(path), QStringList());
    EXPECT_EQ(model.readFile(q("a/b")), QByteArray("1"));
    model.remove(q("c"));
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(treeOf(model), (Tree{{"a/", ""}, {"a/b", "1"}, {"d", "3"}}));
    EXPECT_EQ(treeOf(ProjectModel(path, limits)), treeOf(model));
}

TEST(ArchiveLimitsOf, AModelOfADirectoryHoldForTheArchivesThatItIsSavedTo)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("p/zeros"), QByteArray(66 << 20, '\0'));
    const QString archive = directory.path("p.zip");
    ProjectModel usual(directory.path("p"));
    EXPECT_THROW(usual.save(archive, ArchiveFormat::Zip, false), LimitError);
    EXPECT_FALSE(QFileInfo::exists(archive));
    EXPECT_EQ(usual.getSourcePath(), directory.path("p"));
    ArchiveLimits limits;
    limits.ratio = 2000;
    ProjectModel raised(directory.path("p"), limits);
    raised.save(archive, ArchiveFormat::Zip, false);
    EXPECT_EQ(raised.readFile(q("zeros")).size(), 66 << 20);
    EXPECT_THROW(ProjectModel{archive}, LimitError);
    EXPECT_TRUE(ProjectModel(archive, limits).hasFile(q("zeros")));
}

} // namespace pk::project::test
