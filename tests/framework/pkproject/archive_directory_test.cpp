#include "archive_directory.hpp"
#include "raw_zip.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>

namespace pk::project::test {

namespace {

class ArchiveHeaders : public testing::Test
{
protected:
    ArchiveDirectory check(const std::string& bytes, const ArchiveLimits& limits = {}) const
    {
        const QString path = m_directory.path("a.zip");
        putLocal(path, QByteArray::fromStdString(bytes));
        const std::string name = path.toStdString();
        return readArchiveDirectory(openPath(name, O_RDONLY), name, limits);
    }

    bool isRefused(const std::string& bytes) const
    {
        try {
            check(bytes);
        } catch (const Error&) {
            return true;
        }
        return false;
    }

    TemporaryDirectory m_directory;
};

// With all that makes a header longer: extra fields, directories, packed bytes.
RawZip ordinary()
{
    RawEntry withFields = stored("a/b", "bytes");
    withFields.fields = extraField(0x5455, "times");
    withFields.localFields = extraField(0x5455, "more times");
    RawZip zip{stored("a/", ""), withFields};
    zip.add(packedTo("c", deflated(QByteArray(1000, 'c')), 1000));
    return zip;
}

} // namespace

TEST_F(ArchiveHeaders, PassesOrdinaryArchives)
{
    EXPECT_NO_THROW(check(RawZip().bytes()));
    EXPECT_NO_THROW(check(ordinary().bytes()));
    EXPECT_NO_THROW(check(ordinary().bigBytes()));
}

TEST_F(ArchiveHeaders, RefusesEveryArchiveThatIsCutOffSomewhere)
{
    for (const std::string& bytes : {ordinary().bytes(), ordinary().bigBytes()}) {
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            EXPECT_TRUE(isRefused(bytes.substr(0, size))) << size << " of " << bytes.size();
        }
    }
}

TEST_F(ArchiveHeaders, RefusesEveryArchiveThatLacksAByteSomewhere)
{
    const std::string bytes = ordinary().bytes();
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        EXPECT_TRUE(isRefused(bytes.substr(0, at) + bytes.substr(at + 1))) << at;
    }
}

TEST_F(ArchiveHeaders, EndsWithNothingWorseThanAnErrorWhateverOneByteIs)
{
    const std::string bytes = ordinary().bigBytes();
    int refused = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (const int change : {0x01, 0x80, 0xff}) {
            std::string changed = bytes;
            changed[at] = static_cast<char>(changed[at] ^ change);
            refused += isRefused(changed) ? 1 : 0;
        }
    }
    EXPECT_GT(refused, 0);
}

// Places of the disks' numbers and of the number of entries on this one, and of a record that would
// reach into what is behind it.
TEST_F(ArchiveHeaders, RefusesPartsOfArchivesAndRecordsThatOverlap)
{
    const RawZip zip = ordinary();
    const std::string before = zip.entries + zip.directory;
    for (const std::size_t at : {4U, 6U, 8U}) {
        std::string end = zip.end();
        ++end[at];
        EXPECT_THROW(check(before + end), FormatError) << at;
    }
    for (const std::size_t at : {16U, 20U, 24U, 56U + 4U, 56U + 7U}) {
        std::string end = zip.bigEnd();
        ++end[at];
        EXPECT_THROW(check(before + end + zip.end()), FormatError) << at;
    }
    std::string shorter = zip.bigEnd();
    shorter.erase(48, 8);
    shorter.replace(4, 8, little(36, 8));
    EXPECT_THROW(check(before + shorter + zip.end()), FormatError);
}

TEST_F(ArchiveHeaders, RefusesPlacesThatNoFileHas)
{
    const RawZip zip = ordinary();
    for (const std::uint64_t place : {~std::uint64_t{0}, std::uint64_t{1} << 63U}) {
        std::string end = zip.bigEnd();
        end.replace(56 + 8, 8, little(place, 8));
        EXPECT_THROW(check(zip.entries + zip.directory + end + zip.end()), FormatError);
        RawEntry entry = stored("a", "bytes");
        entry.at = 0xffffffff;
        entry.fields = extraField(1, little(place, 8));
        RawZip far{stored("b", "bytes")};
        far.add(entry);
        EXPECT_THROW(check(far.bytes()), FormatError);
    }
}

TEST_F(ArchiveHeaders, CountsEntriesAndDirectoryBytesUpToTheLimits)
{
    const RawZip zip = ordinary();
    ArchiveLimits limits;
    limits.entries = zip.count;
    limits.directoryBytes = zip.directory.size();
    EXPECT_NO_THROW(check(zip.bytes(), limits));

    ArchiveLimits fewer = limits;
    --fewer.entries;
    EXPECT_THROW(check(zip.bytes(), fewer), LimitError);
    EXPECT_THROW(check(zip.bigBytes(), fewer), LimitError);

    ArchiveLimits shorter = limits;
    --shorter.directoryBytes;
    EXPECT_THROW(check(zip.bytes(), shorter), LimitError);
    EXPECT_THROW(check(zip.bigBytes(), shorter), LimitError);
}

TEST_F(ArchiveHeaders, NamesTheArchiveAndTheEntry)
{
    RawZip zip = ordinary();
    RawEntry shorter = stored("shorter", "bytes");
    shorter.bytes = 4;
    zip.add(shorter);
    EXPECT_EQ(messageOf<FormatError>([&] { check(zip.bytes()); }),
              m_directory.path("a.zip").toStdString() +
                  ": damaged archive: 'shorter' has not the size that it declares");
}

// What the local header says, which the archive library does not look at.
TEST_F(ArchiveHeaders, RefusesHeadersThatDiffer)
{
    const RawZip zip{packedTo("name", deflated(QByteArray(1000, 'c')), 1000)};
    const std::string good = zip.bytes();
    EXPECT_NO_THROW(check(good));
    // Places of the method, time and date, the checksum, both sizes and the name.
    for (const std::size_t at : {8U, 10U, 12U, 14U, 18U, 22U, 30U}) {
        std::string bytes = good;
        ++bytes[at];
        EXPECT_EQ(messageOf<FormatError>([&] { check(bytes); }),
                  m_directory.path("a.zip").toStdString() +
                      ": damaged archive: the two headers of 'name' differ")
            << at;
    }
}

TEST_F(ArchiveHeaders, PassesWhatWasWrittenAsAStream)
{
    const auto streamed = [](std::uint16_t flags, std::size_t leftOut) {
        RawEntry entry = stored("a", "bytes");
        entry.flags = flags;
        RawZip zip{entry};
        zip.entries.replace(14, leftOut, std::string(leftOut, '\0'));
        return zip.bytes();
    };
    // Nothing, checksum and packed size as the zip tool does, and all.
    for (const std::size_t leftOut : {0U, 8U, 12U}) {
        EXPECT_NO_THROW(check(streamed(0x0008, leftOut))) << leftOut;
        EXPECT_EQ(isRefused(streamed(0, leftOut)), leftOut != 0) << leftOut;
    }
}

TEST_F(ArchiveHeaders, RefusesAnotherNameOfOneHeaderAlone)
{
    RawEntry entry = stored("a", "bytes");
    entry.fields = extraField(0x7075, little(1, 1) + little(crcOf("a"), 4) + "b");
    EXPECT_TRUE(isRefused(RawZip{entry}.bytes()));
    entry.localFields = entry.fields;
    EXPECT_NO_THROW(check(RawZip{entry}.bytes()));
    // One that is for another name does not count.
    const std::string good = entry.fields;
    entry.fields = entry.localFields = good + extraField(0x7075, little(1, 5) + "c");
    EXPECT_NO_THROW(check(RawZip{entry}.bytes()));
    entry.fields = entry.localFields = good + good;
    EXPECT_EQ(messageOf<FormatError>([&] { check(RawZip{entry}.bytes()); }),
              m_directory.path("a.zip").toStdString() +
                  ": damaged archive: 'b' has more than two names");
}

TEST_F(ArchiveHeaders, GiveNamesInUtf8)
{
    const auto nameOf = [this](const std::string& name, const std::string& fields = {}) {
        RawEntry entry = stored(name, "");
        entry.fields = entry.localFields = fields;
        return check(RawZip{entry}.bytes()).entries.at(0).name;
    };
    const auto other = [](const std::string& of, const std::string& name) {
        return extraField(0x7075, little(1, 1) + little(crcOf(of), 4) + name);
    };
    EXPECT_EQ(nameOf("plain"), "plain");
    EXPECT_EQ(nameOf("caf\u00e9"), "caf\u00e9");
    EXPECT_EQ(nameOf("caf\x82"), "caf\u00e9");
    EXPECT_EQ(nameOf("\x82 caf\u00e9"), "\u00e9 caf\u251c\u2310"); // one or the other, never both
    EXPECT_EQ(nameOf("caf?", other("caf?", "caf\u00e9")), "caf\u00e9");
    EXPECT_EQ(nameOf("caf?", other("cafe", "caf\u00e9")), "caf?");
    EXPECT_EQ(nameOf("caf?", other("caf?", "caf\x82")), "caf?");
    EXPECT_EQ(nameOf("caf?", other("caf?", "")), "caf?");
    EXPECT_EQ(nameOf("caf?", extraField(0x7075, "")), "caf?");

    std::string upperHalf;
    for (int code = 0x80; code < 0x100; ++code) {
        upperHalf += static_cast<char>(code);
    }
    EXPECT_EQ(nameOf(upperHalf), "ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒ"
                                 "áíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
                                 "└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
                                 "αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0");
}

TEST_F(ArchiveHeaders, TellWhatAnEntryIs)
{
    RawEntry folder = stored("a/", "");
    folder.mode = S_IFDIR | 0700;
    RawEntry foreign = stored("b", "bytes");
    foreign.system = 0;
    const ArchiveDirectory directory = check(RawZip{folder, foreign}.bytes());
    ASSERT_EQ(directory.entries.size(), 2U);
    EXPECT_TRUE(directory.entries[0].isUnix);
    EXPECT_EQ(directory.entries[0].mode, mode_t{S_IFDIR | 0700});
    EXPECT_FALSE(directory.entries[1].isUnix);
    EXPECT_EQ(directory.entries[1].mode, 0U);
    EXPECT_EQ(directory.entries[1].content.bytes, 5U);
    EXPECT_EQ(directory.entries[1].content.checksum, crcOf("bytes"));
}

struct PathInArchive
{
    const char* path;
    bool isPossible;
};

class ArchivePath : public testing::TestWithParam<PathInArchive>
{
};

TEST_P(ArchivePath, StaysInsideOnEverySystem)
{
    EXPECT_EQ(isArchivePath(GetParam().path), GetParam().isPossible) << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    , ArchivePath,
    testing::Values(
        PathInArchive{"a", true}, PathInArchive{"a/b", true}, PathInArchive{"a\\b", true},
        PathInArchive{"..a", true}, PathInArchive{"a..", true}, PathInArchive{"...", true},
        PathInArchive{"a:", false}, PathInArchive{"a:b", true}, PathInArchive{"ab:/c", true},
        PathInArchive{"1:/a", true}, PathInArchive{"C:/a", false}, PathInArchive{"c:\\a", false},
        PathInArchive{"..", false}, PathInArchive{"..\\a", false}, PathInArchive{"a\\..\\b", false},
        PathInArchive{"a/..\\b", false}, PathInArchive{"a\\..", false}, PathInArchive{"\\a", true},
        PathInArchive{"\\", true}, PathInArchive{"/a", false}, PathInArchive{"\\..", false}));

} // namespace pk::project::test
