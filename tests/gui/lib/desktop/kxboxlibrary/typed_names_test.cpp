#include "support.hpp"

#include <pk/project/error.hpp>

#include <iostream>
#include <random>

// Whatever somebody types as a name is the name of the node, also when the library is opened again.
namespace KX::test {
namespace {

constexpr std::size_t a_longestFileName = 255;

// Strings as they can be typed: any Unicode but control characters, which no line has.
class Typist
{
public:
    explicit Typist(unsigned seed) : m_random(seed) {}

    /// A name of as many bytes on disk, or one less where the next character does not fit.
    std::string name(std::size_t bytes)
    {
        QString text;
        const unsigned alphabet = below(a_alphabets);
        for (;;) {
            const QString longer = text + character(below(4) == 0 ? below(a_alphabets) : alphabet);
            if (BoxLibraryNode::escapeFileName(longer.toStdString()).size() > bytes) {
                break;
            }
            text = longer;
        }
        while (BoxLibraryNode::escapeFileName((text + q("x")).toStdString()).size() <= bytes) {
            text += q("x");
        }
        return text.toStdString();
    }

    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }

private:
    static constexpr unsigned a_alphabets = 7;

    // Of printable ASCII, of what is escaped or has a meaning in paths, XML or shells, of other
    // scripts, of spaces and marks, of symbols, of private use, of any plane.
    QString character(unsigned alphabet)
    {
        static const QString special = QString::fromUtf8(R"(%/\?*:|"<>&'.()[]{}~$#;,-_ ^`!@=+)");
        switch (alphabet) {
        case 0:
            return QString(QChar(0x20 + below(0x5f)));
        case 1:
            return special.mid(static_cast<int>(below(static_cast<unsigned>(special.size()))), 1);
        case 2:
            return QString(QChar(0xa1 + below(0x24ff - 0xa1)));
        case 3:
            return QString(QChar(below(2) == 0 ? 0x2000 + below(0x27) : 0x300 + below(0x6f)));
        case 4:
            return fromUcs4(0x1f300 + below(0x2ff));
        case 5:
            return fromUcs4(0xe000 + below(0x1900));
        default:
            return fromUcs4(0x10000 + below(0x100000));
        }
    }

    static QString fromUcs4(unsigned code) { return QString::fromUcs4(&code, 1); }

    std::mt19937 m_random;
};

// Whether a library gives a name as it is, and not a number for it.
bool isKept(const std::string& name)
{
    return BoxLibraryNode::unNumberName(name) == name;
}

Names namesBelow(const BoxLibraryNode& node)
{
    Names names;
    for (const BoxLibraryNode* const child : node.children()) {
        names.push_back(child->name());
        const Names below = namesBelow(*child);
        names.insert(names.end(), below.begin(), below.end());
    }
    return names;
}

class TypedNames : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
};

INSTANTIATE_TEST_SUITE_P(Both, TypedNames,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive), formName);

TEST_P(TypedNames, AreTheNamesOfNodesAndComeBack)
{
    const TemporaryDirectory directory;
    Typist typist(2026);
    Library library = newLibrary();
    std::set<std::string> typed;
    BoxLibraryNode* folder = library->boxRoot();
    for (std::size_t bytes = 1; bytes <= a_longestFileName; ++bytes) {
        for (int i = 0; i < 4; ++i) {
            const std::string name = typist.name(bytes);
            if (name.empty() || !isKept(name) || !typed.insert(name).second) {
                continue;
            }
            BoxLibraryNode* const node =
                i % 2 == 0 ? folder->appendChild(name) : folder->appendChild(description("typed"));
            ASSERT_NE(node, nullptr) << name;
            node->setName(name);
            ASSERT_EQ(node->name(), name);
            ASSERT_LE(node->fileName().size(), a_longestFileName);
        }
        // Not too deep: a path has its bounds as well.
        folder = bytes % 16 == 0 ? library->boxRoot()->child(0) : folder;
    }
    EXPECT_GT(typed.size(), 900U);
    const Names names = namesBelow(*library->boxRoot());
    library = reopened(std::move(library), directory, GetParam());
    EXPECT_EQ(namesBelow(*library->boxRoot()), names);
}

TEST_P(TypedNames, ThatAreTooLongAreRefusedByTheSaveAlone)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("library");
    Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    folder->appendChild(description("Box"));
    library->saveTo(path, BoxLibrary::Directory);
    const auto before = contentsOf(ProjectModel(path));
    Typist typist(7);
    for (const std::size_t bytes : {a_longestFileName + 1, a_longestFileName + 40}) {
        const std::string name = typist.name(bytes);
        folder->setName(name);
        EXPECT_EQ(folder->name(), name);
        if (GetParam() == BoxLibrary::Directory) {
            std::string message;
            try {
                library->save();
            } catch (const pk::project::IoError& error) {
                message = error.what();
            }
            EXPECT_EQ(message.find(path.toStdString() + ": it can't be saved: "), 0U) << message;
            EXPECT_NE(message.find(BoxLibraryNode::escapeFileName(name)), std::string::npos)
                << message;
            EXPECT_NE(message.find("File name too long"), std::string::npos) << message;
            EXPECT_EQ(contentsOf(ProjectModel(path)), before);
        } else {
            // An archive has no such bound; only the names of the file system do.
            library->saveTo(directory.path("archive"), BoxLibrary::Archive);
            const Library again = open(ProjectModel(directory.path("archive")));
            EXPECT_EQ(namesBelow(*again->boxRoot()), (Names{name, "Box"}));
            EXPECT_THROW(library->saveTo(directory.path("back"), BoxLibrary::Directory),
                         pk::project::IoError);
            EXPECT_FALSE(QFileInfo::exists(directory.path("back")));
        }
    }
    const std::string longest = typist.name(a_longestFileName);
    folder->setName(longest);
    library->saveTo(directory.path("short enough"), GetParam());
    const Library again = open(ProjectModel(directory.path("short enough")));
    EXPECT_EQ(namesBelow(*again->boxRoot()), (Names{longest, "Box"}));
}

} // namespace
} // namespace KX::test
