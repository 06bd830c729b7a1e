#include "log_watch.hpp"
#include "peak_memory.hpp"
#include "survey.hpp"
#include "temporary_files.hpp"

#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <unistd.h>

namespace kxbox::test {
namespace {

using temporary::q;

const char* const a_box = R"(<KinestraBox bhx_version="3"><Box/></KinestraBox>)";

class Surveys : public testing::TestWithParam<std::vector<std::pair<const char*, const char*>>>
{
};

void collect(const KX::BoxLibraryNode& node, QMap<QString, bool>& nodes)
{
    nodes.insert(node.path(), node.boxData() != nullptr);
    for (const KX::BoxLibraryNode* const child : node.children()) {
        collect(*child, nodes);
    }
}

TEST_P(Surveys, FindTheNodesThatTheLibraryLoads)
{
    const LogWatch watch;
    pk::project::ProjectModel model;
    for (const auto& [file, bytes] : GetParam()) {
        model.writeFile(q(file), bytes);
    }
    Progress progress(STDERR_FILENO);
    QMap<QString, bool> surveyed;
    for (const SurveyedNode& node : surveyOf(model, progress).nodes) {
        EXPECT_FALSE(surveyed.contains(node.path)) << node.path.toStdString();
        surveyed.insert(node.path, node.isBox);
    }
    const std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> library(
        new KX::BoxLibrary(std::move(model)));
    QMap<QString, bool> loaded;
    collect(*library->boxRoot(), loaded);
    EXPECT_EQ(surveyed, loaded);
}

using Files = std::vector<std::pair<const char*, const char*>>;

INSTANTIATE_TEST_SUITE_P(
    , Surveys,
    testing::Values(
        Files{},
        Files{{"A/B/C/box.bhx", a_box}, {"A/B/C/images/a.png", ""}, {"A/D/behavior.bhx", a_box}},
        Files{{"A/box.bhx", "<a/>"}, {"A/images/a.png", ""}, {"A/B/box.bhx", a_box}},
        Files{{"A/behavior.bhx", ""}, {"A/box.bhx", a_box}, {"box.bhx/box.bhx/x", ""}},
        Files{{"box.bhx", a_box}, {"A/box.bhx", a_box}},
        Files{{"translations/a.ts", ""}, {"A/translations/B/box.bhx", a_box}},
        Files{{"bxlinfo", "<Folder><Node name='translations'/></Folder>"},
              {"translations/x/box.bhx", a_box},
              {"A/bxlinfo", "<Folder><Node name='translations'/><Node name='X'/></Folder>"},
              {"A/translations/B/box.bhx", a_box}},
        Files{{"bxlinfo", "<Order><Node name='translations'/></Order>"}, {"translations/x/y", ""}},
        Files{{"bxlinfo/bxlinfo", "<Folder><Node name='x'/></Folder>"}, {"A/bxlinfo/x/y", ""}},
        Files{{"A%2fB/x", ""}, {"A%2FB/box.bhx", a_box}, {"50%/%00/x", ""}, {"a\x01/x", ""}}));

TEST(ASurvey, DoesNotReadFilesThatNoReaderTakes)
{
    const temporary::TemporaryDirectory directory;
    for (const char* const file : {"bxlinfo", "A/box.bhx", "translations/translation_fr.ts"}) {
        const QString path = directory.path("L.bxl/") + q(file);
        temporary::putLocal(path, a_box);
        ASSERT_EQ(::truncate(path.toStdString().c_str(), off_t{1} << 33U), 0);
    }
    std::vector<QString> damaged;
    const long taken = peak::kilobytesOf([&] {
        Progress progress(STDERR_FILENO);
        surveyOf(pk::project::ProjectModel(directory.path("L.bxl")), progress);
    });
    EXPECT_LT(taken, 64L << 10U); // far from the 128 MiB that a reader may take
    Progress progress(STDERR_FILENO);
    const Survey survey = surveyOf(pk::project::ProjectModel(directory.path("L.bxl")), progress);
    ASSERT_EQ(survey.nodes.size(), 2U);
    ASSERT_TRUE(survey.nodes[0].order.damage);
    EXPECT_EQ(survey.nodes[0].order.damage->reason, "longer than 128 MiB");
    ASSERT_TRUE(survey.nodes[1].refusedBox);
    EXPECT_EQ(survey.nodes[1].refusedBox->reason, "longer than 128 MiB");
    ASSERT_EQ(survey.translations.size(), 1U);
    ASSERT_TRUE(survey.translations[0].damage);
    EXPECT_EQ(survey.translations[0].damage->reason, "longer than 128 MiB");
}

} // namespace
} // namespace kxbox::test
