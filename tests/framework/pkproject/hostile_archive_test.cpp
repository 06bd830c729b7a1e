#include "peak_memory.hpp"
#include "raw_zip.hpp"
#include "support.hpp"
#include "zip_support.hpp"

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>

#include <functional>
#include <ostream>

// Archives that somebody made to do harm: what is read of them costs little and stays inside.
namespace pk::project::test {

namespace {

void readAllOf(const QString& path)
{
    const ProjectModel model(path);
    for (const QString& name : model.getFileList(QString(), false, true, false)) {
        model.getFileLocalPath(name);
    }
}

// Many, and each of them empty.
std::string fieldsOf(std::size_t bytes)
{
    std::string fields;
    while (fields.size() + 4 <= bytes) {
        fields += extraField(0x9000, "");
    }
    return fields;
}

RawEntry withMode(std::uint32_t mode)
{
    RawEntry entry = stored("device", "x");
    entry.mode = mode;
    return entry;
}

RawEntry madeBy(std::uint8_t system, const std::string& name)
{
    RawEntry entry = stored(name, "x");
    entry.system = system;
    return entry;
}

RawEntry changed(RawEntry entry, const std::function<void(RawEntry&)>& change)
{
    change(entry);
    return entry;
}

RawEntry pointingAt(std::uint32_t at, RawEntry entry, const std::string& name)
{
    entry.at = at;
    entry.name = name;
    return entry;
}

// Names that the hash of the archive library doesn't tell apart: "aB" and "b!" have the same.
std::string colliding(std::uint64_t number, int length)
{
    std::string name;
    for (int i = 0; i < length; ++i) {
        name += (number >> i & 1) != 0 ? "aB" : "b!";
    }
    return name;
}

std::string many(std::uint64_t count, const std::function<RawEntry(std::uint64_t)>& entry)
{
    RawZip zip;
    for (std::uint64_t i = 0; i < count; ++i) {
        zip.add(entry(i));
    }
    return zip.bytes();
}

std::string withCount(RawZip zip, std::uint64_t count, bool big)
{
    zip.count = count;
    return big ? zip.bigBytes() : zip.bytes();
}

// Each entry lies in the bytes of the one before.
std::string quoted()
{
    const std::string kernel = deflated(QByteArray(40'000'000, '\0'));
    RawZip zip{packedTo("0", kernel, 40'000'000)};
    RawZip inner{packedTo("1", kernel, 40'000'000)};
    RawZip outer{packedTo("2", inner.entries, 40'000'000)};
    outer.add(pointingAt(31, packedTo("1", kernel, 40'000'000), "1"));
    return outer.bytes();
}

// So many zeros, packed by bzip2: some hundred thousand times smaller.
RawEntry bzip2edZeros(std::uint64_t count)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    putZip(path, {{"a", std::string(count, '\0'), S_IFREG | 0644, ZIP_CM_BZIP2}});
    const std::string bytes = getLocal(path).toStdString();
    const auto sizeAt = [&bytes](std::size_t at) {
        return static_cast<unsigned char>(bytes[at]) +
               256U * static_cast<unsigned char>(bytes[at + 1]);
    };
    const std::size_t begin = 30 + sizeAt(26) + sizeAt(28);
    RawEntry entry = packedTo("a", bytes.substr(begin, zipEntries(path)[0].packed), count);
    entry.method = ZIP_CM_BZIP2;
    return entry;
}

struct Attack
{
    const char* name;
    std::function<std::string()> make;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const Attack& attack)
{
    return stream << attack.name;
}

class AnAttack : public testing::TestWithParam<Attack>
{
};

template <class... Entries>
std::function<std::string()> zipOf(Entries... entries)
{
    return [=] { return RawZip{entries...}.bytes(); };
}

template <class... Attacks>
auto attacks(Attacks... all)
{
    return testing::Values(all...);
}

const auto a_nameOfAttack = [](const auto& info) { return std::string(info.param.name); };

} // namespace

TEST_P(AnAttack, IsRefusedAtLittleCostAndLeavesNothing)
{
    const TemporaryFiles files;
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    putLocal(path, QByteArray::fromStdString(GetParam().make()));
    EXPECT_LT(peak::kilobytesOf([&] { readAllOf(path); }, 2), peak::a_kilobytes);
    const std::string message = messageOf<Error>([&] { readAllOf(path); });
    EXPECT_EQ(message.find(path.toStdString()), 0U) << message;
    EXPECT_NE(message.find(GetParam().reason), std::string::npos) << message;
    EXPECT_EQ(
        QDir(directory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList(q("p.zip")));
    EXPECT_EQ(files.tree(), Tree());
}

INSTANTIATE_TEST_SUITE_P(
    Names, AnAttack,
    attacks(
        Attack{"ParentByBackslash", zipOf(stored("..\\evil", "x")), "leads out"},
        Attack{"ParentByBackslashWithin", zipOf(stored("a\\..\\..\\evil", "x")), "leads out"},
        Attack{"ParentByBothSlashes", zipOf(stored("a/..\\evil", "x")), "leads out"},
        Attack{"AbsoluteByBackslash", zipOf(madeBy(0, "\\evil")), "separated by '/'"},
        Attack{"Drive", zipOf(stored("C:/evil", "x")), "leads out"},
        Attack{"DriveByBackslash", zipOf(stored("C:\\evil", "x")), "leads out"},
        Attack{"DriveAfterADot", zipOf(stored("./c:/evil", "x")), "leads out"},
        Attack{"DriveAlone", zipOf(stored("z:", "x")), "leads out"},
        Attack{"BackslashOfDos", zipOf(madeBy(0, "a\\b")), "separated by '/'"},
        Attack{"BackslashOfNtfs", zipOf(madeBy(10, "a\\b")), "separated by '/'"},
        Attack{"Nul", zipOf(stored(std::string("a\0b", 3), "x")), "'a': a path has no NUL"},
        Attack{"NulAtTheEnd", zipOf(stored(std::string("a\0", 2), "x")), "'a': a path has no NUL"},
        Attack{"NulBeforeASlash", zipOf(stored(std::string("a\0/", 3), "")), "no NUL"},
        Attack{"NulAlone", zipOf(stored(std::string(1, '\0'), "x")), "no NUL"},
        Attack{"NulInTheOtherName",
               zipOf(changed(stored("ab", "x"),
                             [](RawEntry& e) {
                                 e.fields =
                                     extraField(0x7075, little(1, 1) + little(crcOf("ab"), 4) +
                                                            std::string("a\0c", 3));
                             })),
               "'a': a path has no NUL"},
        Attack{"ParentInTheOtherName",
               zipOf(changed(stored("ab", "x"),
                             [](RawEntry& e) {
                                 e.fields = extraField(
                                     0x7075, little(1, 1) + little(crcOf("ab"), 4) + "../evil");
                                 e.localFields = e.fields;
                             })),
               "no '..'"},
        Attack{"AnotherNameInTheLocalHeader",
               zipOf(changed(stored("ab", "x"), [](RawEntry& e) { e.localName = "cd"; })),
               "damaged archive: "},
        Attack{"Mark",
               zipOf(stored("\xef\xbb\xbf"
                            "a",
                            "x")),
               "no byte order mark"},
        Attack{"MarkKnownToBeUtf8",
               zipOf(changed(stored("\xef\xbb\xbf"
                                    "a",
                                    "x"),
                             [](RawEntry& e) { e.flags = 0x0800; })),
               "no byte order mark"},
        Attack{"MarkBelow",
               zipOf(stored("a/\xef\xbb\xbf"
                            "b",
                            "x")),
               "no byte order mark"},
        Attack{"TooLong", zipOf(stored(std::string(4097, 'a'), "x")), "too long"},
        Attack{"TooDeep", zipOf(stored(QByteArray("a/").repeated(256).toStdString() + "a", "x")),
               "more than 256 components"},
        Attack{"MetadataTwice", zipOf(stored(".kxproject", "{}"), stored("./.kxproject", "{}")),
               "'.kxproject' twice"},
        Attack{"NoUtf8ThoughItSaysSo",
               zipOf(changed(stored("caf\xe9", "x"), [](RawEntry& e) { e.flags = 0x0800; })),
               "is not in UTF-8, as it is said to be"}),
    a_nameOfAttack);

INSTANTIATE_TEST_SUITE_P(
    Entries, AnAttack,
    attacks(
        Attack{"CharacterDevice", zipOf(withMode(S_IFCHR | 0644)), "a link or a device"},
        Attack{"BlockDevice", zipOf(withMode(S_IFBLK | 0644)), "a link or a device"},
        Attack{"Socket", zipOf(withMode(S_IFSOCK | 0644)), "a link or a device"},
        Attack{"Encrypted",
               zipOf(changed(stored("a", std::string(13, 'x')),
                             [](RawEntry& e) {
                                 e.flags = 1;
                                 e.bytes = 1;
                             })),
               "encrypted archive: 'a'"},
        Attack{"StronglyEncrypted",
               zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.flags = 0x41; })),
               "encrypted archive: 'a'"},
        Attack{"StronglyEncryptedWithoutSayingSo",
               zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.flags = 0x40; })),
               "encrypted archive: 'a'"},
        Attack{"WithMaskedHeaders",
               zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.flags = 0x2000; })),
               "encrypted archive: 'a'"},
        Attack{"Patch", zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.flags = 0x20; })),
               "it is a change of what another archive has"},
        Attack{"MethodThatTakesMemory",
               zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.method = 14; })),
               "packed by method 14"},
        Attack{"UnknownMethod",
               zipOf(changed(stored("a", "x"), [](RawEntry& e) { e.method = 1234; })),
               "packed by method 1234"},
        Attack{"StoredWithAnotherSize",
               zipOf(changed(stored("a", "some"), [](RawEntry& e) { e.bytes = 3; })),
               "not the size that it declares"},
        Attack{"SizeWithoutBytes", zipOf(packedTo("a", "", 10)), "not the size that it declares"},
        Attack{"ChecksumWithoutBytes",
               zipOf(changed(stored("a", ""), [](RawEntry& e) { e.crc = 1; })),
               "not the size that it declares"},
        Attack{"Shorter", zipOf(packedTo("a", deflated(QByteArray(1000, 'x')), 1001)),
               "damaged archive: 'a': "},
        Attack{"Longer", zipOf(packedTo("a", deflated(QByteArray(1000, 'x')), 999)),
               "damaged archive: 'a': "},
        Attack{"AnotherChecksum", zipOf(packedTo("a", deflated(QByteArray(1000, 'x')), 1000)),
               "damaged archive: 'a': CRC error"},
        Attack{"NothingThatUnpacks", zipOf(packedTo("a", std::string(1000, '\xff'), 1000)),
               "damaged archive: 'a': "},
        Attack{"LongerThanTheArchive",
               zipOf(changed(stored("a", "some"),
                             [](RawEntry& e) { e.packedSize = e.bytes = 5'000; })),
               "'a' is cut off"},
        Attack{"IntoTheCentralDirectory",
               zipOf(changed(stored("a", "some"), [](RawEntry& e) { e.packedSize = e.bytes = 5; })),
               "'a' is cut off"},
        Attack{"Elsewhere",
               [] {
                   return RawZip{stored("a", "x"), pointingAt(32, stored("b", "x"), "b")}.bytes();
               },
               "'b' is not where it should be"},
        Attack{
            "BehindTheEnd",
            [] {
                return RawZip{stored("a", "x"), pointingAt(70'000, stored("b", "x"), "b")}.bytes();
            },
            "'b' is not where it should be"},
        Attack{"CutOffField",
               zipOf(changed(stored("a", "x"),
                             [](RawEntry& e) {
                                 e.bytes = 0xffffffff;
                                 e.packedSize = 0xffffffff;
                                 e.fields = extraField(1, little(1, 8));
                             })),
               "extra fields of 'a' are cut off"}),
    a_nameOfAttack);

INSTANTIATE_TEST_SUITE_P(
    Directories, AnAttack,
    attacks(Attack{"FewerEntriesThanDeclared",
                   [] {
                       return withCount({stored("a", "x"), stored("b", "y")}, 3, false);
                   },
                   "has 2 entries instead of 3"},
            Attack{"MoreEntriesThanDeclared",
                   [] {
                       return withCount({stored("a", "x"), stored("b", "y")}, 1, true);
                   },
                   "has 2 entries instead of 1"},
            Attack{"CutOff",
                   [] {
                       RawZip zip{stored("a", "x"), stored("b", "y")};
                       zip.directory.pop_back();
                       return zip.bytes();
                   },
                   "central directory is cut off"},
            Attack{"CutOffInAHeader",
                   [] {
                       RawZip zip{stored("a", "x"), stored("b", "y")};
                       zip.directory.resize(zip.directory.size() - 20);
                       return zip.bytes();
                   },
                   "central directory is damaged"},
            Attack{"Overwritten",
                   [] {
                       RawZip zip{stored("a", "x"), stored("b", "y")};
                       zip.directory[47] = 'Q';
                       return zip.bytes();
                   },
                   "central directory is damaged"},
            Attack{"WithAHoleBehind",
                   [] {
                       const RawZip zip{stored("a", "x")};
                       return zip.entries + zip.directory + "hole" + zip.end();
                   },
                   "not where it should be"},
            Attack{"WithAHoleBehindAndABigEnd",
                   [] {
                       const RawZip zip{stored("a", "x")};
                       return zip.entries + zip.directory + "hole" + zip.bigEnd() + zip.end();
                   },
                   "its end is damaged"},
            Attack{"TwoEnds",
                   [] {
                       const RawZip zip{stored("a", "x")};
                       return zip.entries + zip.directory + zip.end(RawZip().end());
                   },
                   "it has two ends"},
            Attack{"NoEnd",
                   [] {
                       const RawZip zip{stored("a", "x")};
                       return zip.entries + zip.directory + zip.end() + "more";
                   },
                   "its end is missing"},
            Attack{"AMillionEntriesDeclared",
                   [] { return withCount({stored("a", "x")}, 1'000'000, true); },
                   "it holds 1000000 entries, more than the 250000"},
            Attack{"AMillionEntries",
                   [] {
                       RawZip zip;
                       for (int i = 0; i < 1'000'000; ++i) {
                           zip.add(pointingAt(0, {}, std::to_string(i)));
                       }
                       return zip.bytes();
                   },
                   "more than the 33554432 that are read"},
            Attack{"OneEntryTooMany",
                   [] {
                       RawZip zip;
                       for (int i = 0; i < 250'001; ++i) {
                           zip.add(pointingAt(0, {}, std::to_string(i)));
                       }
                       return zip.bytes();
                   },
                   "it holds 250001 entries, more than the 250000"},
            Attack{"TooManyDirectories",
                   [] {
                       RawZip zip;
                       for (int i = 0; i < 2'000; ++i) {
                           zip.add(stored(std::to_string(i) +
                                              QByteArray("/a").repeated(126).toStdString(),
                                          ""));
                       }
                       return zip.bytes();
                   },
                   "more files and directories than the 250000"}),
    a_nameOfAttack);

INSTANTIATE_TEST_SUITE_P(
    Bombs, AnAttack,
    attacks(Attack{"OfManyEntriesWithTheSameBytes",
                   [] {
                       const RawEntry kernel =
                           packedTo("0", deflated(QByteArray(40'000'000, '\0')), 40'000'000);
                       RawZip zip{kernel};
                       for (int i = 1; i < 1000; ++i) {
                           zip.add(pointingAt(0, kernel, std::to_string(i)));
                       }
                       return zip.bytes();
                   },
                   "share bytes"},
            Attack{"OfEntriesThatHoldOthers", quoted, "'2' and '1' share bytes"},
            Attack{"ThatDeclaresGigabytesInOneFile",
                   zipOf(packedTo("a", deflated(QByteArray(40'000'000, '\0')), 3'000'000'000)),
                   "'a' unpacks to 3000000000 bytes, more than is read of one file"},
            Attack{"ThatDeclaresGigabytes",
                   [] {
                       const std::string packed = deflated(QByteArray(128 << 20, '\0'));
                       return many(16, [&](std::uint64_t i) {
                           return packedTo(std::to_string(i), packed, 128 << 20);
                       });
                   },
                   "more than 200 times its size"},
            Attack{"ThatDeclaresLittle",
                   zipOf(packedTo("a", deflated(QByteArray(40'000'000, '\0')), 1000)),
                   "damaged archive: 'a': it is longer than declared"},
            Attack{"OfBzip2",
                   [] {
                       return many(50, [kernel = bzip2edZeros(100 << 20)](std::uint64_t i) {
                           return changed(kernel, [i](RawEntry& e) { e.name = std::to_string(i); });
                       });
                   },
                   "more than 200 times its size"},
            Attack{"OfBzip2ThatDeclaresLittle",
                   [] {
                       return RawZip{
                           changed(bzip2edZeros(100 << 20), [](RawEntry& e) { e.bytes = 1000; })}
                           .bytes();
                   },
                   "damaged archive: 'a': it is longer than declared"},
            Attack{"OfMetadata",
                   zipOf(packedTo(".kxproject", deflated(QByteArray(5 << 20, ' ')), 5 << 20)),
                   "p.zip/.kxproject: it unpacks to 5242880 bytes"}),
    a_nameOfAttack);

class AnArchiveOfAStranger : public testing::Test
{
protected:
    QString path() const { return m_directory.path("p.zip"); }
    void put(const std::string& bytes) const { putLocal(path(), QByteArray::fromStdString(bytes)); }
    TemporaryFiles m_files;
    TemporaryDirectory m_directory;
};

TEST_F(AnArchiveOfAStranger, MayHaveNamesThatDifferOnlyInCase)
{
    put(RawZip{stored("a", "1"), stored("A", "2"), stored("B/c", "3"), stored("b/C", "4")}.bytes());
    EXPECT_EQ(treeOf(ProjectModel(path())),
              (Tree{{"A", "2"}, {"B/", ""}, {"B/c", "3"}, {"a", "1"}, {"b/", ""}, {"b/C", "4"}}));
}

TEST_F(AnArchiveOfAStranger, MayHaveABackslashInANameOfUnix)
{
    put(RawZip{stored("\\a\\b", "1"), stored("d: e/..f\\c:", "2")}.bytes());
    const Tree tree{{"\\a\\b", "1"}, {"d: e/", ""}, {"d: e/..f\\c:", "2"}};
    ProjectModel model(path());
    EXPECT_EQ(treeOf(model), tree);
    model.save(m_directory.path("copy.zip"), ArchiveFormat::Zip, false);
    EXPECT_EQ(treeOf(ProjectModel(m_directory.path("copy.zip"))), tree);
}

TEST_F(AnArchiveOfAStranger, HasNoLinksButThoseOfUnix)
{
    put(RawZip{changed(withMode(S_IFLNK | 0777), [](RawEntry& e) { e.system = 0; })}.bytes());
    ProjectModel model(path());
    model.exportFile(QString(), m_directory.path("out"), true);
    EXPECT_EQ(treeOf(m_directory.path("out")), (Tree{{"device", std::to_string(0644) + ":x"}}));
}

TEST_F(AnArchiveOfAStranger, MayHaveTheBigEndAndCommentAndSomethingInFront)
{
    RawZip zip;
    zip.entries = "#!/bin/sh";
    zip.add(stored("a", "1"));
    zip.add(packedTo("b", "", 0));
    put(zip.entries + zip.directory + zip.bigEnd() + zip.end("a PK\5\6 in a comment"));
    EXPECT_EQ(treeOf(ProjectModel(path())), (Tree{{"a", "1"}, {"b", ""}}));
}

TEST_F(AnArchiveOfAStranger, MayHaveSizesInExtraFields)
{
    const std::string sizes = little(4, 8) + little(4, 8);
    put(RawZip{
        stored("a", "1"), changed(stored("b", "some"), [&](RawEntry& e) {
            e.bytes = e.packedSize = 0xffffffff;
            e.fields = extraField(0x5455, "time!") + extraField(1, sizes);
            e.localFields = extraField(1, sizes);
        })}.bytes());
    EXPECT_EQ(treeOf(ProjectModel(path())), (Tree{{"a", "1"}, {"b", "some"}}));
}

// As some programs do, which count modulo 65,536.
TEST_F(AnArchiveOfAStranger, MayHaveMoreEntriesThanItsEndCanCount)
{
    put(many(65'540, [](std::uint64_t i) { return stored(std::to_string(i), ""); }));
    const ProjectModel model(path());
    EXPECT_EQ(model.getFileList(QString(), false, false, false).size(), 65'540);
    EXPECT_TRUE(model.hasFile(q("65539")));
}

// What stands in an entry is the end of its name, so that one is not taken for another.
constexpr int a_saidOfName = 9;

RawEntry saying(const std::string& name)
{
    return stored(name, name.substr(name.size() - a_saidOfName));
}

std::string numbered(std::uint64_t i)
{
    return std::to_string(100'000'000 + i);
}

// Fields for a name that is not this one, each of which the name must be looked at for.
std::string otherNames(std::size_t bytes)
{
    std::string fields;
    while (fields.size() + 10 <= bytes) {
        fields += extraField(0x7075, little(1, 5) + "x");
    }
    return fields;
}

// The archive library would compare each name with all others of the same hash, and keep each field
// in memory of its own.
struct Burden
{
    const char* name;
    std::function<std::string()> make;
    int count;
};

std::ostream& operator<<(std::ostream& stream, const Burden& burden)
{
    return stream << burden.name;
}

class ABurden : public testing::TestWithParam<Burden>
{
};

TEST_P(ABurden, CostsLittle)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("p.zip");
    putLocal(path, QByteArray::fromStdString(GetParam().make()));
    EXPECT_LT(peak::kilobytesOf([&] { const ProjectModel model(path); }, 2), peak::a_kilobytes);
    const ProjectModel model(path);
    EXPECT_EQ(model.getFileList(QString(), false, false, false).size(), GetParam().count);
    const QString last = model.getFileList(QString(), false, false, false).last();
    EXPECT_EQ(model.readFile(last), last.right(a_saidOfName).toUtf8());
}

INSTANTIATE_TEST_SUITE_P(
    All, ABurden,
    testing::Values(Burden{"OfNamesWithOneHash",
                           [] {
                               return many(200'000, [](std::uint64_t i) {
                                   return saying(colliding(i, 18));
                               });
                           },
                           200'000},
                    Burden{"OfNamesWithOneHashInAnotherCode",
                           [] {
                               return many(200'000, [](std::uint64_t i) {
                                   return saying("\xff" + colliding(i, 18));
                               });
                           },
                           200'000},
                    Burden{"OfNamesThatGrow",
                           [] {
                               return many(150'000, [](std::uint64_t i) {
                                   return saying(std::string(60, '\xb0') + numbered(i));
                               });
                           },
                           150'000},
                    Burden{"OfFields",
                           [] {
                               return many(500, [](std::uint64_t i) {
                                   RawEntry entry = saying(numbered(i));
                                   entry.fields = entry.localFields = fieldsOf(0xffff);
                                   return entry;
                               });
                           },
                           500},
                    Burden{"OfOtherNames",
                           [] {
                               return many(400, [](std::uint64_t i) {
                                   RawEntry entry = saying(std::string(4000, 'a') + numbered(i));
                                   entry.fields = entry.localFields = otherNames(0xffff);
                                   return entry;
                               });
                           },
                           400}),
    [](const auto& burden) { return std::string(burden.param.name); });

// Or it would take hours, with a million of them.
TEST_F(AnArchiveOfAStranger, WithNamesOfOneHashIsSavedAsADirectory)
{
    put(many(7'000, [](std::uint64_t i) { return saying(colliding(i, 18)); }));
    ProjectModel model(path());
    model.writeFile(q("new"), "x");
    const std::string message =
        messageOf<LimitError>([&] { model.save(QString(), ArchiveFormat::Source, true); });
    EXPECT_NE(message.find("take too long to tell apart in an archive"), std::string::npos)
        << message;
    model.save(m_directory.path("copy"), ArchiveFormat::Directory, false);
    EXPECT_EQ(
        ProjectModel(m_directory.path("copy")).getFileList(QString(), false, false, false).size(),
        7'001);
    EXPECT_EQ(ProjectModel(path()).getFileList(QString(), false, false, false).size(), 7'000);
}

TEST_F(AnArchiveOfAStranger, IsUnpackedPieceByPiece)
{
    // The checksum is wrong, which shows only when all has been read.
    constexpr int size = 48 << 20;
    put(RawZip{packedTo("a", deflatedZeros(size), size)}.bytes());
    EXPECT_LT(peak::kilobytesOf([&] { readAllOf(path()); }), (24 << 10) * peak::a_sanitizerFactor);
    const std::string message = messageOf<FormatError>([&] { readAllOf(path()); });
    EXPECT_NE(message.find("'a': CRC error"), std::string::npos) << message;
    EXPECT_TRUE(m_files.tree().empty());
}

TEST_F(AnArchiveOfAStranger, WithADamagedEntryIsSavedNowhereElse)
{
    put(RawZip{stored("a", "1"), packedTo("b", deflated("some text"), 9)}.bytes());
    ProjectModel model(path());
    for (const ArchiveFormat format : {ArchiveFormat::Zip, ArchiveFormat::Directory}) {
        const std::string message =
            messageOf<FormatError>([&] { model.save(m_directory.path("copy"), format, false); });
        EXPECT_NE(message.find("'b': CRC error"), std::string::npos) << message;
        EXPECT_FALSE(QFileInfo::exists(m_directory.path("copy")));
    }
    EXPECT_EQ(model.getSourcePath(), path());
}

TEST_F(AnArchiveOfAStranger, WithADamagedEntryKeepsItAsThatInPlace)
{
    put(RawZip{stored("a", "1"), packedTo("b", deflated("some text"), 9)}.bytes());
    ProjectModel model(path());
    model.writeFile(q("a"), "2");
    model.save(QString(), ArchiveFormat::Source, true);
    const ProjectModel opened(path());
    EXPECT_EQ(opened.readFile(q("a")), QByteArray("2"));
    const std::string message = messageOf<FormatError>([&] { opened.getFileLocalPath(q("b")); });
    EXPECT_NE(message.find("'b': CRC error"), std::string::npos) << message;
}

TEST(AProjectForAnArchive, HasNoNamesThatLeadOutOfIt)
{
    const TemporaryDirectory directory;
    for (const char* const name :
         {"..\\evil", "C:/evil", "C:\\evil", "\\..\\evil", "a/..\\..\\evil"}) {
        ProjectModel model;
        model.writeFile(q(name), "x");
        const std::string message = messageOf<InvalidPath>(
            [&] { model.save(directory.path("p.zip"), ArchiveFormat::Zip, false); });
        EXPECT_NE(message.find("in an archive the path would lead out of it"), std::string::npos)
            << message;
        EXPECT_TRUE(QDir(directory.path()).isEmpty());
        model.save(directory.path("p"), ArchiveFormat::Directory, false);
        EXPECT_EQ(treeOf(ProjectModel(directory.path("p"))), treeOf(model));
        removeTree(directory.path("p").toStdString());
    }
}

} // namespace pk::project::test
