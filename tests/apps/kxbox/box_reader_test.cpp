#include "box_reader.hpp"
#include "temporary_files.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/project/project_model.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

namespace kxbox::test {
namespace {

using temporary::q;

struct BoxFile
{
    std::string bytes;
    std::string error; ///< empty for a box
};

std::ostream& operator<<(std::ostream& stream, const BoxFile& file)
{
    return stream << file.bytes;
}

class BoxFiles : public testing::TestWithParam<BoxFile>
{
};

std::string errorOf(const QByteArray& bytes)
{
    try {
        return readBox(bytes)->beacon() == "Box" ? "" : "not the box";
    } catch (const BadBoxFile& error) {
        return error.text();
    }
}

TEST_P(BoxFiles, AreReadAsTheLibraryReadsThem)
{
    const QByteArray bytes = QByteArray::fromStdString(GetParam().bytes);
    for (const char* const file : {"Walk/box.bhx", "Walk/behavior.bhx"}) {
        pk::project::ProjectModel model;
        model.writeFile(q(file), bytes);
        const std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> library(
            new KX::BoxLibrary(std::move(model)));
        ASSERT_EQ(library->boxRoot()->children().size(), 1);
        const KX::BoxLibraryNode* const node = library->boxRoot()->child(0);
        EXPECT_EQ(node->loadBox() != nullptr, GetParam().error.empty());
        EXPECT_EQ(node->boxData() != nullptr, GetParam().error.empty());
    }
    EXPECT_EQ(errorOf(bytes), GetParam().error);
}

std::string project(const char* xmlns)
{
    return std::string(R"(<KinestraProject bhx_version="3" xmlns=")") + xmlns +
           R"("><Box/></KinestraProject>)";
}

const std::string a_noNamespace =
    "the namespace '' is not 'http://kinestra.example/schema/kinestra/project.xsd'";

INSTANTIATE_TEST_SUITE_P(
    , BoxFiles,
    testing::Values(
        BoxFile{R"(<KinestraBox bhx_version="3"><Box/></KinestraBox>)", ""},
        BoxFile{R"(<KinestraBox bhx_version="03"><a/><Box/><Box/></KinestraBox>)", ""},
        BoxFile{"\xef\xbb\xbf<KinestraBox bhx_version='3'><Box>&#x9;</Box></KinestraBox>\n", ""},
        BoxFile{"", "the file is empty or can't be read"},
        BoxFile{" ", "line 1, column 2: no root element"},
        BoxFile{"<KinestraBox><Box/></KinestraBox>", "the version (bhx_version) is 0, not 3"},
        BoxFile{R"(<KinestraBox bhx_version="x"><Box/></KinestraBox>)",
                "the version (bhx_version) is 0, not 3"},
        BoxFile{R"(<KinestraBox bhx_version="2"><Box/></KinestraBox>)",
                "the version (bhx_version) is 2, not 3"},
        BoxFile{R"(<KinestraBox bhx_version="3"/>)", "there is no <Box> in it"},
        BoxFile{R"(<KinestraBox bhx_version="3"><a><Box/></a></KinestraBox>)",
                "there is no <Box> in it"},
        BoxFile{R"(<Box bhx_version="3"/>)",
                "the element is <Box>, not <KinestraBox> or <KinestraProject>"},
        BoxFile{R"(<KinestraProject bhx_version="3"><Box/></KinestraProject>)", a_noNamespace},
        BoxFile{project(KX::BoxConstants::a_projectXsd), ""},
        BoxFile{project(KX::BoxConstants::a_legacyProjectXsd), ""},
        BoxFile{"<KinestraBox bhx_version=\"3\">\n  <Box>&no;</Box></KinestraBox>",
                "line 2, column 8: an unknown entity or an \"&\" on its own"},
        BoxFile{"<KinestraBox>\xff</KinestraBox>", "line 1, column 14: bytes that are not UTF-8"}));

} // namespace
} // namespace kxbox::test
