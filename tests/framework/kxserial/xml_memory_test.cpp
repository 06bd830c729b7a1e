#include "peak_memory.hpp"
#include "stream.hpp"
#include "xml_helpers.hpp"
#include "xml_text.hpp"

#include <ostream>

using namespace KX::testing;
using KX::XmlDocument;
using KX::xml::a_maxNodes;
using KX::xml::a_maxSize;

namespace {

/// What of a document takes much memory: `unit`, which is `nodes` nodes, as often as a document may
/// have it, and a text as long as it may be.
struct Crowd
{
    const char* name;
    std::string head;
    std::string unit;
    std::string tail;
    std::size_t nodes;

    std::string document() const
    {
        const std::size_t most = (a_maxNodes - 3) / nodes;
        std::string bytes = head + "<t>";
        const std::size_t others = head.size() + most * unit.size() + tail.size() + 7;
        bytes.append(a_maxSize - others, 'x');
        return bytes + "</t>" + repeated(unit, most) + tail;
    }
};

std::ostream& operator<<(std::ostream& stream, const Crowd& crowd)
{
    return stream << crowd.name;
}

class CrowdedDocument : public ::testing::TestWithParam<Crowd>
{
};

// Read, and every child of the root looked at, as the readers of the files of a library do.
TEST_P(CrowdedDocument, IsReadInBoundedMemory)
{
    const std::string bytes = GetParam().document();
    const FilePtr file = own(::tmpfile());
    ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file.get()), bytes.size());
    std::rewind(file.get());
    const long taken = peak::kilobytesOf([&] {
        const auto document = XmlDocument::loadFromXmlFile(file.get(), nullptr, nullptr);
        ASSERT_TRUE(document);
        for (const auto& child : document->root()->children("a", std::string())) {
            std::string value;
            child->getAttribute("a", value);
        }
    });
    RecordProperty("megabytes", static_cast<int>(taken / 1024));
    EXPECT_LT(taken, peak::a_kilobytes);
}

INSTANTIATE_TEST_SUITE_P(All, CrowdedDocument,
                         ::testing::Values(Crowd{"Elements", "<a>", "<a/>", "</a>", 1},
                                           Crowd{"Attributes", "<a>", "<a a='' b=''/>", "</a>", 3},
                                           Crowd{"Texts", "<a>", "x<a/>", "</a>", 2},
                                           Crowd{"TextsInElements", "<a>", "<a>x</a>", "</a>", 2},
                                           Crowd{"Sections", "<a>", "<![CDATA[]]>", "</a>", 1},
                                           Crowd{"Comments", "<a>", "<!---->", "</a>", 1},
                                           Crowd{"Instructions", "<a>", "<?a?>", "</a>", 1}),
                         [](const auto& crowd) { return std::string(crowd.param.name); });

} // namespace
