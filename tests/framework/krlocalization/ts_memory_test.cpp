#include "peak_memory.hpp"
#include "ts_memory.hpp"
#include "ts_reader.hpp"
#include "xml_source.hpp"

#include <kr/localization/ts.hpp>

#include <ostream>
#include <string>

using namespace KR::Localization;

namespace {

constexpr std::size_t a_most = std::size_t(240) << 20U;
constexpr const char* a_refusal = "it would take more than 240 MiB of memory";

/// A file that asks for much memory: a unit many times between a head and a tail.
struct Crowd
{
    const char* name;
    const char* head;
    const char* unit;
    const char* tail;

    QByteArray with(int units) const { return head + QByteArray(unit).repeated(units) + tail; }
    /// As many units as a file may have; each takes as much.
    int most() const
    {
        const std::size_t thousand = memoryToRead(with(1000));
        const std::size_t others = memoryToRead(with(2000)) - thousand;
        return 1000 + static_cast<int>((a_most - thousand) * 1000 / others);
    }
};

std::ostream& operator<<(std::ostream& stream, const Crowd& crowd)
{
    return stream << crowd.name;
}

std::string refusal(const QByteArray& bytes)
{
    try {
        readTs(bytes);
    } catch (const DamagedFile& damage) {
        return damage.what();
    }
    return {};
}

} // namespace

class CrowdedTs : public testing::TestWithParam<Crowd>
{
};

TEST_P(CrowdedTs, IsReadInBoundedMemoryOrRefused)
{
    const Crowd& crowd = GetParam();
    const int most = crowd.most();
    const QByteArray bytes = crowd.with(most);
    const long taken = peak::kilobytesOf([&] { TS::translatorFrom(bytes); });
    RecordProperty("megabytes", static_cast<int>((taken + bytes.size() / 1024) / 1024));
    EXPECT_LT(taken + bytes.size() / 1024, peak::a_kilobytes) << most;
    EXPECT_EQ(refusal(crowd.with(most + 1)), a_refusal);
}

#define TS_HEAD "<TS version=\"2.1\" language=\"fr\">"
#define MESSAGE_HEAD TS_HEAD "<context><message>"
#define MESSAGE_TAIL "</message></context></TS>"

INSTANTIATE_TEST_SUITE_P(
    All, CrowdedTs,
    testing::Values(
        Crowd{"Messages", TS_HEAD "<context>", "<message/>", "</context></TS>"},
        Crowd{"MessagesWithTexts", TS_HEAD "<context>",
              "<message><source>a</source><translation>b</translation></message>",
              "</context></TS>"},
        Crowd{"Locations", MESSAGE_HEAD, "<location/>", MESSAGE_TAIL},
        Crowd{"FormsWithTexts", TS_HEAD "<context><message numerus=\"yes\"><translation>",
              "<numerusform>a</numerusform>", "</translation></message></context></TS>"},
        Crowd{"OneText", MESSAGE_HEAD "<source>", "xxxxxxxxxxxxxxxx", "</source>" MESSAGE_TAIL},
        Crowd{"BytesWithValues", MESSAGE_HEAD "<source>", " <byte value=\"x41\"/>",
              "</source>" MESSAGE_TAIL},
        Crowd{"CommentsInAText", TS_HEAD "<context><name>", " <!---->", "</name></context></TS>"},
        Crowd{"Dependencies", TS_HEAD "<dependencies>", "<dependency catalog=\"a\"/>",
              "</dependencies></TS>"},
        Crowd{"UnknownElementsInAText", MESSAGE_HEAD "<source>x", " <a/>",
              "</source>" MESSAGE_TAIL},
        Crowd{"AttributesAfterABracketInAValue", "<TS a=\">\"", " b=\"\"", "></TS>"},
        Crowd{"StartTags", "", "<a>", ""}),
    [](const auto& crowd) { return std::string(crowd.param.name); });

TEST(TsMemory, IsUsedUpToTheBound)
{
    const Crowd crowd{"Contexts", TS_HEAD, "<context/>", "</TS>"};
    EXPECT_EQ(refusal(crowd.with(crowd.most())), "");
}

#undef MESSAGE_TAIL
#undef MESSAGE_HEAD
#undef TS_HEAD

// A hundred thousand messages with all that Linguist writes of one.
TEST(TsMemory, IsEnoughForLargeFiles)
{
    Translator translator(QStringLiteral("fr"));
    for (int i = 0; i < 100'000; ++i) {
        Message message(QStringLiteral("Library:/Motion/Walking/Folder %1/Walk").arg(i / 20),
                        QStringLiteral("Goes forward or back, and turns %1.").arg(i));
        message.setComment(QStringLiteral("Input of a box"));
        message.setTranslation(QStringLiteral("Avance ou recule et tourne %1.").arg(i));
        message.setExtraComment(QStringLiteral("People read it"));
        message.setTranslatorComment(QStringLiteral("On le lit"));
        message.setLocations({{QStringLiteral("Motion/Walking/box.bhx"), i}});
        message.setState(Message::State::Finished);
        translator.messages().append(message);
    }
    const QByteArray bytes = TS::translatorTo(translator, false);
    EXPECT_EQ(TS::translatorFrom(bytes).messages().size(), 100'000);
}
