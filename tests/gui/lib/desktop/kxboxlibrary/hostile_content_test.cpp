// Libraries whose files or archives somebody made to do harm.
#include "peak_memory.hpp"
#include "support.hpp"

#include <pk/project/archive_limits.hpp>

#include <QDirIterator>

#include <ostream>
#include <random>

namespace KX::test {
namespace {

using pk::project::ArchiveFormat;
using pk::project::ArchiveLimits;

/// What is in a file in place of what should be.
struct Content
{
    const char* name;
    std::function<QByteArray()> make;
};

std::ostream& operator<<(std::ostream& stream, const Content& content)
{
    return stream << content.name;
}

std::function<QByteArray()> crowd(const char* head, const char* unit, const char* tail)
{
    return [=] {
        QByteArray all = head;
        while (all.size() < 48 << 20) {
            all += unit;
        }
        return all + tail;
    };
}

/// Bytes that make an archive no bomb, whatever else is in it.
QByteArray noise()
{
    std::mt19937 random; // NOLINT(cert-msc32-c,cert-msc51-cpp): always the same is wanted
    QByteArray all(1'000'000, '\0');
    std::generate(all.begin(), all.end(), [&] { return static_cast<char>(random()); });
    return all;
}

std::function<QByteArray()> bytes(const QByteArray& all)
{
    return [=] { return all; };
}

/// A library with such a file in it, and others.
class HostileContent : public testing::TestWithParam<Content>
{
protected:
    ProjectModel stored(const std::string& file) const
    {
        project({{"A/box.bhx", boxFile()},
                 {"B/bxlinfo", orderFile({"C", "D"})},
                 {"B/D/box.bhx", boxFile()},
                 {"B/C/box.bhx", boxFile()},
                 {"translations/fr.ts", tsFile("fr")},
                 {file, GetParam().make()}})
            .save(path(), ArchiveFormat::Directory, true);
        return ProjectModel(path());
    }
    QString path() const { return m_directory.path("L.bxl"); }

private:
    const TemporaryDirectory m_directory;
};

TEST_P(HostileContent, OfABoxFileLeavesTheRest)
{
    const ProjectModel model = stored("A/box.bhx");
    EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path())); }), peak::a_kilobytes);
    const Library library = open(ProjectModel(path()));
    EXPECT_EQ(pathsBelow(*library->boxRoot()), (Names{"A", "B", "B/C", "B/D"}));
    EXPECT_EQ(library->boxRoot()->child("A")->boxData(), nullptr);
    EXPECT_EQ(library->boxRoot()->child("A")->loadBox(), nullptr);
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST_P(HostileContent, OfAnOrderFileLeavesTheRest)
{
    const ProjectModel model = stored("B/bxlinfo");
    EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path())); }), peak::a_kilobytes);
    const Library library = open(ProjectModel(path()));
    EXPECT_EQ(pathsBelow(*library->boxRoot()), (Names{"A", "B", "B/C", "B/D"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
}

TEST_P(HostileContent, OfATranslationFileLeavesTheRest)
{
    const ProjectModel model = stored("translations/de.ts");
    EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path())); }), peak::a_kilobytes);
    const LogRecords log;
    const Library library = open(ProjectModel(path()));
    EXPECT_EQ(pathsBelow(*library->boxRoot()), (Names{"A", "B", "B/C", "B/D"}));
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    ASSERT_EQ(log.of("BoxLibrary").size(), 1U);
    EXPECT_NE(log.of("BoxLibrary")[0].message.find("/translations/de.ts"), std::string::npos);
}

/// A unit that a file is filled with, up to the number of things that a document may have.
struct Filling
{
    const char* name;
    const char* unit;
    int things; ///< a unit's elements, attributes and texts
};

std::ostream& operator<<(std::ostream& stream, const Filling& filling)
{
    return stream << filling.name;
}

/// Box files that are read, but cost as much as any can.
class FullBox : public testing::TestWithParam<Filling>
{
};

TEST_P(FullBox, IsReadInBoundedMemory)
{
    constexpr int bytes = (32 << 20) - 1000;
    constexpr int things = 600'000 - 20;
    const Filling& filling = GetParam();
    QByteArray unit = filling.unit;
    const int count = things / filling.things;
    unit.replace("*", QByteArray("x").repeated(bytes / count - unit.size() + 1));
    const TemporaryDirectory directory;
    for (const auto form : {ArchiveFormat::Directory, ArchiveFormat::Zip}) {
        const QString path = directory.path("L.bxl");
        project(
            {{"A/box.bhx", boxFile("", unit.repeated(count).toStdString())}, {"noise", noise()}})
            .save(path, form, true);
        EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path)); }), peak::a_kilobytes);
        EXPECT_NE(open(ProjectModel(path))->boxRoot()->child("A")->boxData(), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FullBox,
                         testing::Values(Filling{"Parameters", "<Parameter name=\"*\"/>", 2},
                                         Filling{"Inputs", "<Input id=\"*\" name=\"\"/>", 3},
                                         Filling{"Texts", "<a>*</a>", 2},
                                         Filling{"Elements", "<a b=\"*\"/><a/>", 3}),
                         [](const auto& filling) { return std::string(filling.param.name); });

INSTANTIATE_TEST_SUITE_P(
    All, HostileContent,
    testing::Values(
        Content{"Nothing", bytes({})}, Content{"NoXml", bytes("no XML")},
        Content{"ANull", bytes(QByteArray("<a>\0</a>", 8))},
        Content{"Entities", bytes("<!DOCTYPE a [<!ENTITY b 'bb'><!ENTITY c '&b;&b;'>]><a>&c;</a>")},
        Content{"DeepNesting", bytes(QByteArray("<a>").repeated(1'000'000))},
        Content{"ManyElements", crowd("<Folder>", "<Node/>", "</Folder>")},
        Content{"ManyMessages",
                crowd("<TS language=\"de\"><context>", "<message/>", "</context></TS>")},
        Content{"MixedTexts",
                crowd("<KinestraBox bhx_version=\"3\"><Box>", "x<a/>", "</Box></KinestraBox>")},
        Content{"LongText", crowd("<TS language=\"de\"><context><message><source>", "xxxxxxxx",
                                  "</source></message></context><x/></TS>")}),
    [](const auto& content) { return std::string(content.param.name); });

TEST(HostileTranslations, OfAnySizeAreNeitherReadNorUnpacked)
{
    for (const auto form : {ArchiveFormat::Directory, ArchiveFormat::Zip}) {
        const TemporaryDirectory directory;
        const QString path = directory.path("L.bxl");
        project({{"translations/de.ts", QByteArray(129 << 20, '\0')},
                 {"translations/fr.ts", tsFile("fr")},
                 {"noise", noise()}})
            .save(path, form, false);
        EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path)); }), peak::a_kilobytes / 16);
        const TemporaryDirectory staging;
        const EnvironmentVariable temporary("TMPDIR", staging.path());
        const LogRecords log;
        const Library library = open(ProjectModel(path));
        EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
        ASSERT_EQ(log.of("BoxLibrary").size(), 1U);
        EXPECT_EQ(log.of("BoxLibrary")[0].message,
                  "L- translation file is too large: translations/de.ts");
        qint64 staged = 0;
        for (QDirIterator each(staging.path(), QDir::Files, QDirIterator::Subdirectories);
             each.hasNext();) {
            each.next();
            staged += each.fileInfo().size();
        }
        EXPECT_LT(staged, 100'000);
    }
}

TEST(HostileTranslations, ThatAreDamagedInAnArchiveLeaveTheRest)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("L.kbl");
    project({{"A/box.bhx", boxFile()},
             {"translations/de.ts", tsFile("de")},
             {"translations/fr.ts", tsFile("fr")}})
        .save(path, ArchiveFormat::Zip, false);
    QByteArray archive = getLocal(path);
    const int name = archive.indexOf("translations/de.ts");
    archive[name + 40] = static_cast<char>(~archive[name + 40]);
    putLocal(path, archive);
    const LogRecords log;
    const Library library = open(ProjectModel(path));
    EXPECT_EQ(pathsBelow(*library->boxRoot()), Names{"A"});
    EXPECT_EQ(languagesOf(*library), Names{"fr 1"});
    ASSERT_EQ(log.of("BoxLibrary").size(), 1U);
    EXPECT_EQ(log.of("BoxLibrary")[0].message.find(
                  "L- could not open translation file: translations/de.ts, reason: "),
              0U);
}

// Archives

struct Attack
{
    const char* name;
    std::function<QByteArray(QByteArray)> change;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const Attack& attack)
{
    return stream << attack.name;
}

/// Gives a file another name, as long as that is, wherever the archive says it.
std::function<QByteArray(QByteArray)> renamed(const QByteArray& name)
{
    return [=](QByteArray archive) { return archive.replace("B/evil.txt", name); };
}

/// Puts bytes at a place from the beginning of each entry's record in the central directory.
std::function<QByteArray(QByteArray)> marked(int offset, const QByteArray& mark)
{
    return [=](QByteArray archive) {
        for (int at = archive.indexOf("PK\1\2"); at >= 0; at = archive.indexOf("PK\1\2", at + 1)) {
            archive.replace(at + offset, mark.size(), mark);
        }
        return archive;
    };
}

class HostileLibraryArchive : public testing::TestWithParam<Attack>
{
};

TEST_P(HostileLibraryArchive, IsRefusedAndNothingIsWritten)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("in/it/L.kbl");
    QDir(directory.path()).mkpath(q("in/it"));
    project({{"A/box.bhx", boxFile()}, {"B/evil.txt", "x"}, {"C/evil.txt", "y"}})
        .save(path, ArchiveFormat::Zip, false);
    const QByteArray good = getLocal(path);
    ASSERT_NO_THROW(open(ProjectModel(path)));
    putLocal(path, GetParam().change(good));
    ASSERT_NE(getLocal(path), good);
    EXPECT_LT(peak::kilobytesOf([&] { open(ProjectModel(path)); }, 2), peak::a_kilobytes);
    try {
        open(ProjectModel(path));
        ADD_FAILURE() << "it was opened";
    } catch (const pk::project::Error& error) {
        const std::string message = error.what();
        EXPECT_EQ(message.find(path.toStdString()), 0U) << message;
        EXPECT_NE(message.find(GetParam().reason), std::string::npos) << message;
    }
    EXPECT_EQ(QDir(directory.path("in/it")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList(q("L.kbl")));
    EXPECT_EQ(QDir(directory.path("in")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList(q("it")));
}

INSTANTIATE_TEST_SUITE_P(
    All, HostileLibraryArchive,
    testing::Values(
        Attack{"LeadingOut", renamed("../evil.tx"),
               "'../evil.tx': a path in a project has no '..'"},
        Attack{"LeadingOutInTheMiddle", renamed("B/../../ev"),
               "'B/../../ev': a path in a project has no '..'"},
        Attack{"LeadingOutByBackslashes", renamed("..\\evil.tx"),
               "the path leads out of the archive"},
        Attack{"Absolute", renamed("/evil.text"), "'/evil.text': a path in a project is relative"},
        Attack{"OnADrive", renamed("C:/evil.tx"),
               "'C:/evil.tx': the path leads out of the archive"},
        Attack{"WithANull", renamed(QByteArray("B/evil\0txt", 10)), "a path has no NUL character"},
        Attack{"TwiceTheSame", renamed("C/evil.txt"),
               "damaged archive: it holds 'C/evil.txt' twice"},
        Attack{"AFileInAFile", renamed("A/box.bhx/"), "A/box.bhx"},
        Attack{"ALink", marked(40, QByteArray("\xff\xa1", 2)), "is a link or a device"},
        Attack{"ADevice", marked(40, QByteArray("\xb6\x21", 2)), "is a link or a device"},
        Attack{"Encrypted", marked(8, QByteArray("\1\0", 2)), "encrypted archive"},
        Attack{"OfAnotherMethod", marked(10, QByteArray("\x63\0", 2)), "is packed by method 99"},
        Attack{"FalseSizes", marked(24, QByteArray("\xff\xff\xff\x7f", 4)), "damaged archive"},
        Attack{"Truncated", [](const QByteArray& good) { return good.left(good.size() / 2); },
               "its end is missing"},
        Attack{"WithoutAnEnd", [](const QByteArray& good) { return good.chopped(10); },
               "its end is missing"},
        Attack{"WithMoreEntriesThanThere",
               [](QByteArray good) {
                   const int end = good.lastIndexOf("PK\5\6");
                   return good.replace(end + 8, 4, QByteArray("\x60\xea\x60\xea", 4));
               },
               "damaged archive"},
        Attack{"NoArchive", [](const QByteArray&) { return QByteArray(100'000, 'x'); },
               "neither a directory nor a zip archive"}),
    [](const auto& attack) { return std::string(attack.param.name); });

TEST(HostileLibraryBombs, AreRefused)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("L.kbl");
    const QString source = directory.path("L.bxl");
    project({{"A/box.bhx", boxFile()}, {"A/zeros", "0"}, {"B/box.bhx", boxFile()}})
        .save(source, ArchiveFormat::Directory, false);
    ASSERT_TRUE(QFile::resize(source + q("/A/zeros"), 80 << 20));
    ArchiveLimits large;
    large.ratioFreeBytes = 100 << 20;
    ProjectModel(source, large).save(path, ArchiveFormat::Zip, false);
    EXPECT_THROW(open(ProjectModel(path)), pk::project::LimitError);
    EXPECT_EQ(childNames(*open(ProjectModel(path, large))->boxRoot()), (Names{"A", "B"}));
    large.entries = 3;
    EXPECT_THROW(open(ProjectModel(path, large)), pk::project::LimitError);
}

} // namespace
} // namespace KX::test
