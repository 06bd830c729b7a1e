#include "support.hpp"

// The library that comes with the sources, as a user would work on it.
namespace KX::test {
namespace {

ProjectModel sample()
{
    return ProjectModel(q(KX_SAMPLE_LIBRARY));
}

struct Counts
{
    int folders;
    int boxes;
    int resources;
};

Counts count(const BoxLibraryNode& node)
{
    if (node.boxData()) {
        return {0, 1, static_cast<int>(node.resources()->files.size())};
    }
    Counts counts{1, 0, 0};
    for (const BoxLibraryNode* const child : node.children()) {
        const Counts below = count(*child);
        counts.folders += below.folders;
        counts.boxes += below.boxes;
        counts.resources += below.resources;
    }
    return counts;
}

TEST(SampleLibrary, HoldsWhatItsPageSays)
{
    const LogRecords records;
    const Library library = open(sample());
    EXPECT_EQ(library->title(), q("Standard"));
    const Counts counts = count(*library->boxRoot());
    EXPECT_EQ(counts.folders, 18); // with the root
    EXPECT_EQ(counts.boxes, 67);
    EXPECT_EQ(counts.resources, 94);
    QStringList behaviors;
    library->xFindBehaviors(library->boxRoot(), behaviors);
    EXPECT_EQ(behaviors.size(), 13);
    for (const char* const language : {"fr", "de", "ja"}) {
        EXPECT_EQ(contextsOf(*library, language).size(), 712U) << language;
    }
    EXPECT_TRUE(records.all().empty());
}

TEST(SampleLibrary, StaysAsItIsWhenEverythingIsWrittenAnew)
{
    const TemporaryDirectory directory;
    const ProjectModel original = sample();
    for (const auto format : {BoxLibrary::Directory, BoxLibrary::Archive}) {
        const Library library = open(sample());
        library->setTranslations(library->translations());
        ASSERT_TRUE(library->boxRoot()->saveAll());
        const QString path = directory.path("Copy" + std::to_string(format));
        library->saveTo(path, format);
        const ProjectModel copy(path);
        ASSERT_EQ(filesOf(copy), filesOf(original));
        for (const std::string& file : filesOf(copy)) {
            EXPECT_EQ(copy.readFile(q(file)), original.readFile(q(file))) << file;
        }
    }
}

TEST(SampleLibrary, EveryBehaviorIsExported)
{
    const TemporaryDirectory directory;
    const Library library = open(sample());
    QStringList behaviors;
    library->xFindBehaviors(library->boxRoot(), behaviors);
    library->exportBehaviors(directory.path());
    for (const QString& path : std::as_const(behaviors)) {
        EXPECT_TRUE(QFileInfo::exists(directory.path(path.toStdString() + "/behavior.bhx")))
            << path.toStdString();
    }
}

} // namespace
} // namespace KX::test
