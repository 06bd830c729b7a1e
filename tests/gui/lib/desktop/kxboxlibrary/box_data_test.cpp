#include "support.hpp"

#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

using Data = boost::shared_ptr<BoxData>;

/// Data of no node.
Data dataOf(const std::string& attributes, const std::string& content = {})
{
    return boost::make_shared<BoxData>(nullptr,
                                       element("<Box " + attributes + ">" + content + "</Box>"));
}

Library walk(const std::string& attributes = {}, const std::string& content = {})
{
    return open(project({{"Walk/box.bhx", boxFile(attributes, content)}}));
}

template <class Io>
Names namesOf(const QList<boost::shared_ptr<Io>>& ios)
{
    Names names;
    for (const auto& io : ios) {
        names.push_back(std::to_string(io->id()) + " " + io->name());
    }
    return names;
}

/// Whether the library takes the data for those of a behaviour.
bool isBehavior(BoxLibrary& library, const Data& data)
{
    BoxLibraryNode node;
    node.setBoxDataInternal(data);
    QStringList paths;
    library.xFindBehaviors(&node, paths);
    return !paths.isEmpty();
}

// Meta-object

TEST(BoxDataMetaObject, HasExactlyTheThreeSignalsInTheirOrder)
{
    EXPECT_EQ(methodsOf(BoxData::staticMetaObject),
              (Names{"public signal tooltipChanged(QString newValue)",
                     "public signal bitmapsChanged(QList<QString> newValue)",
                     "public signal bitmapExpandedChanged(bool newValue)"}));
}

TEST(BoxDataMetaObject, HasNoPropertiesAndNoEnums)
{
    const QMetaObject& meta = BoxData::staticMetaObject;
    EXPECT_EQ(meta.propertyCount(), meta.propertyOffset());
    EXPECT_EQ(meta.enumeratorCount(), meta.enumeratorOffset());
}

TEST(BoxDataMetaType, OfBitmapsIsKnownByName)
{
    const int type = QMetaType::type("QList<QString>");
    EXPECT_NE(type, static_cast<int>(QMetaType::UnknownType));
    EXPECT_EQ(type, qMetaTypeId<QList<QString>>());
}

TEST(BoxDataMetaType, OfBitmapsTravelsInQueuedSignals)
{
    const Data data = dataOf("");
    QObject receiver;
    QList<QString> bitmaps;
    QObject::connect(
        data.get(), &BoxData::bitmapsChanged, &receiver,
        [&bitmaps](const QList<QString>& value) { bitmaps = value; }, Qt::QueuedConnection);
    data->setBitmaps({q("a.png")});
    EXPECT_TRUE(bitmaps.isEmpty());
    deliverQueued(receiver);
    EXPECT_EQ(bitmaps, QList<QString>{q("a.png")});
}

// Construction

TEST(BoxDataFromElement, NeedAnElement)
{
    BoxLibraryNode node;
    EXPECT_THROW(BoxData(&node, nullptr), std::invalid_argument);
    EXPECT_TRUE(node.QObject::children().isEmpty());
}

TEST(BoxDataFromElement, HaveTheNodeAsQObjectParent)
{
    BoxLibraryNode node;
    const BoxData data(&node, element("<Box/>"));
    EXPECT_EQ(data.parent(), &node);
}

TEST(BoxDataFromElement, DoNotNeedANode)
{
    EXPECT_EQ(dataOf("")->parent(), nullptr);
}

TEST(BoxDataFromElement, DoNotKeepIt)
{
    const auto xml = element(R"(<Box tooltip="a"><Input name="b"/></Box>)");
    const auto holders = xml.use_count();
    const BoxData data(nullptr, xml);
    EXPECT_EQ(xml.use_count(), holders);
}

TEST(BoxDataFromElement, HaveDefaultsForAnEmptyBox)
{
    const Data data = dataOf("");
    EXPECT_EQ(data->tooltip(), QString());
    EXPECT_TRUE(data->bitmaps().isEmpty());
    EXPECT_TRUE(data->bitmapExpanded());
    EXPECT_TRUE(data->inputs().isEmpty());
    EXPECT_TRUE(data->outputs().isEmpty());
    EXPECT_TRUE(data->parameters().isEmpty());
}

TEST(BoxDataFromElement, ReadTheTooltip)
{
    EXPECT_EQ(dataOf("tooltip=\"Goes &lt;there&gt; &amp; \u00fcber&#10;hills\"")->tooltip(),
              q("Goes <there> & \u00fcber\nhills"));
}

TEST(BoxDataFromElement, ReadTheNodesBoxFile)
{
    const Library library = walk("tooltip=\"Goes there\"");
    EXPECT_EQ(library->boxRoot()->child(0)->boxData()->tooltip(), q("Goes there"));
}

TEST(BoxDataFromElement, SkipBitmapsWithoutText)
{
    const Data data =
        dataOf("", "<Bitmaps><bitmap>a.png</bitmap><bitmap/><bitmap>b.png</bitmap></Bitmaps>");
    EXPECT_EQ(data->bitmaps(), (QList<QString>{q("a.png"), q("b.png")}));
}

TEST(BoxDataFromElement, ReadBitmapsAsUtf8AndFromCdata)
{
    const Data data = dataOf("", "<Bitmaps><bitmap>\u00fc.png</bitmap>"
                                 "<bitmap><![CDATA[a&b.png]]></bitmap>"
                                 "<bitmap><![CDATA[]]></bitmap></Bitmaps>");
    EXPECT_EQ(data->bitmaps(), (QList<QString>{q("\u00fc.png"), q("a&b.png"), QString()}));
}

TEST(BoxDataFromElement, IgnoreBitmapsOutsideTheContainer)
{
    const Data data = dataOf("", "<bitmap>a.png</bitmap><Other><bitmap>b.png</bitmap></Other>"
                                 "<Bitmaps><bitmap>c.png</bitmap></Bitmaps><bitmap>d.png</bitmap>");
    EXPECT_EQ(data->bitmaps(), QList<QString>{q("c.png")});
}

TEST(BoxDataFromElement, IgnoreBitmapsWithoutAnyContainer)
{
    EXPECT_TRUE(dataOf("", "<bitmap>a.png</bitmap>")->bitmaps().isEmpty());
}

TEST(BoxDataFromElement, IgnoreOtherElementsInTheContainer)
{
    const Data data = dataOf("", "<Bitmaps><image>a.png</image><Bitmap>b.png</Bitmap></Bitmaps>");
    EXPECT_TRUE(data->bitmaps().isEmpty());
}

TEST(BoxDataFromElement, ReadTheFirstContainerOfBitmapsOnly)
{
    const Data data = dataOf("", "<Bitmaps><bitmap>a.png</bitmap></Bitmaps>"
                                 "<Bitmaps><bitmap>b.png</bitmap></Bitmaps>");
    EXPECT_EQ(data->bitmaps(), QList<QString>{q("a.png")});
}

TEST(BoxDataFromElement, ReadInputsOutputsAndParameters)
{
    const Data data = dataOf("", "<Parameter name=\"p\" id=\"7\"/><Output name=\"o\" id=\"5\"/>"
                                 "<Input name=\"a\" id=\"2\"/><Input name=\"b\" id=\"1\"/>");
    EXPECT_EQ(namesOf(data->inputs()), (Names{"2 a", "1 b"}));
    EXPECT_EQ(namesOf(data->outputs()), Names{"5 o"});
    EXPECT_EQ(namesOf(data->parameters()), Names{"7 p"});
}

TEST(BoxDataFromElement, ReadTheirProperties)
{
    const Data data = dataOf("", R"(<Input name="a" type="2" type_size="3" nature="4"/>)"
                                 R"(<Parameter name="p" value="v"/>)");
    ASSERT_EQ(data->inputs().size(), 1);
    EXPECT_EQ(data->inputs().first()->type(), 2);
    EXPECT_EQ(data->inputs().first()->typeSize(), 3);
    EXPECT_EQ(data->inputs().first()->nature(), 4);
    ASSERT_EQ(data->parameters().size(), 1);
    EXPECT_EQ(data->parameters().first()->value(), "v");
}

TEST(BoxDataFromElement, SkipInputsOutputsAndParametersThatAreRefused)
{
    const Data data = dataOf("", "<Input/><Input name=\"a\"/><Input name=\"b\" id=\"x\"/>"
                                 "<Output/><Parameter name=\"\"/>");
    EXPECT_EQ(namesOf(data->inputs()), Names{"1 a"});
    EXPECT_TRUE(data->outputs().isEmpty());
    EXPECT_TRUE(data->parameters().isEmpty());
}

TEST(BoxDataFromElement, NumberInputsThenOutputsThenParameters)
{
    const Data data = dataOf("", "<Parameter name=\"p\" id=\"1\"/><Parameter name=\"r\"/>"
                                 "<Output name=\"o\" id=\"1\"/><Output name=\"s\"/>"
                                 "<Input name=\"a\" id=\"1\"/>");
    EXPECT_EQ(namesOf(data->inputs()), Names{"1 a"});
    EXPECT_EQ(namesOf(data->outputs()), Names{"2 s"});
    EXPECT_EQ(namesOf(data->parameters()), Names{"3 r"});
}

TEST(BoxDataFromElement, IgnoreInputsOutputsAndParametersOfInnerBoxes)
{
    const Data data = dataOf("", "<Diagram><Box><Input name=\"a\"/><Output name=\"b\"/>"
                                 "<Parameter name=\"c\"/></Box></Diagram>");
    EXPECT_TRUE(data->inputs().isEmpty());
    EXPECT_TRUE(data->outputs().isEmpty());
    EXPECT_TRUE(data->parameters().isEmpty());
}

TEST(BoxDataFromElement, GiveTheSameInputsOutputsAndParametersEachTime)
{
    const Data data = dataOf("", R"(<Input name="a"/><Output name="b"/><Parameter name="c"/>)");
    EXPECT_EQ(data->inputs(), data->inputs());
    EXPECT_EQ(data->outputs(), data->outputs());
    EXPECT_EQ(data->parameters(), data->parameters());
    EXPECT_EQ(data->inputs().size(), 1);
    EXPECT_EQ(data->outputs().size(), 1);
    EXPECT_EQ(data->parameters().size(), 1);
}

TEST(BoxDataFromElement, TellBehaviors)
{
    const Library library = newLibrary();
    EXPECT_TRUE(isBehavior(*library, dataOf("", behaviorContent())));
    EXPECT_FALSE(isBehavior(*library, dataOf("", "<Timeline/>")));
}

/// The attribute "bitmap_expanded" with the flag that it means.
struct ExpandedAttribute
{
    const char* attribute;
    bool expanded;
};

std::ostream& operator<<(std::ostream& stream, const ExpandedAttribute& attribute)
{
    return stream << '\'' << attribute.attribute << '\'';
}

class BitmapExpanded : public testing::TestWithParam<ExpandedAttribute>
{
};

TEST_P(BitmapExpanded, IsTrueUnlessTheAttributeIsFalse)
{
    EXPECT_EQ(dataOf(GetParam().attribute)->bitmapExpanded(), GetParam().expanded);
}

INSTANTIATE_TEST_SUITE_P(All, BitmapExpanded,
                         testing::Values(ExpandedAttribute{"", true},
                                         ExpandedAttribute{"bitmap_expanded=\"true\"", true},
                                         ExpandedAttribute{"bitmap_expanded=\"1\"", true},
                                         ExpandedAttribute{"bitmap_expanded=\"false\"", false},
                                         ExpandedAttribute{"bitmap_expanded=\"0\"", false},
                                         ExpandedAttribute{"bitmap_expanded=\"\"", true},
                                         ExpandedAttribute{"bitmap_expanded=\"no\"", true},
                                         ExpandedAttribute{"bitmap_expanded=\" false\"", true},
                                         ExpandedAttribute{"bitmapExpanded=\"false\"", true}));

// The end

TEST(BoxDataDestructor, TouchesNeitherTheNodeNorTheBoxFile)
{
    const Library library = walk();
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    const QByteArray file = node->loadBoxData();
    const Data own = node->boxData();
    const LogRecords log;
    {
        const BoxData other(node, node->loadBox());
    }
    EXPECT_EQ(node->boxData(), own);
    EXPECT_EQ(node->loadBoxData(), file);
    EXPECT_FALSE(library->isDirty());
    EXPECT_TRUE(log.all().empty());
}

// Files

TEST(BoxDataFile, IsTheNodes)
{
    const QByteArray file = boxFile("tooltip=\"a\"");
    const Library library = open(project({{"Walk/box.bhx", file}}));
    const Data data = library->boxRoot()->child(0)->boxData();
    EXPECT_EQ(data->xmlData(), file);
    ASSERT_TRUE(data->load());
    EXPECT_EQ(data->load()->beacon(), "Box");
    EXPECT_EQ(data->load()->attribute("tooltip", std::string()), "a");
}

TEST(BoxDataFile, IsParsedForEachCall)
{
    const Library library = walk("tooltip=\"a\"");
    const Data data = library->boxRoot()->child(0)->boxData();
    data->load()->setAttribute("tooltip", "mine", false);
    EXPECT_EQ(data->load()->attribute("tooltip", std::string()), "a");
    library->projectModel().writeFile(q("Walk/box.bhx"), boxFile("tooltip=\"b\""));
    EXPECT_EQ(data->load()->attribute("tooltip", std::string()), "b");
    EXPECT_EQ(data->tooltip(), q("a"));
}

TEST(BoxDataFile, IsNothingWithoutANode)
{
    const Data data = dataOf("tooltip=\"a\"");
    EXPECT_EQ(data->xmlData(), QByteArray());
    EXPECT_EQ(data->load(), nullptr);
}

TEST(BoxDataFile, IsNothingWhenTheNodeIsGone)
{
    Library library = walk("tooltip=\"a\"");
    const Data data = library->boxRoot()->child(0)->boxData();
    removeChildTree(*library->boxRoot(), 0);
    EXPECT_EQ(data->tooltip(), q("a"));
    EXPECT_EQ(data->xmlData(), QByteArray());
    EXPECT_EQ(data->load(), nullptr);
}

TEST(BoxDataSave, WritesTheElementIntoTheNodesFile)
{
    const Library library = walk();
    const Data data = library->boxRoot()->child(0)->boxData();
    data->save(element("<Box tooltip=\"saved\"/>"));
    EXPECT_EQ(data->load()->attribute("tooltip", std::string()), "saved");
    EXPECT_EQ(data->tooltip(), QString());
    EXPECT_FALSE(library->isDirty());
}

TEST(BoxDataSave, RefusesNoElement)
{
    const Library library = walk();
    const Data data = library->boxRoot()->child(0)->boxData();
    const QByteArray file = data->xmlData();
    EXPECT_THROW(data->save(nullptr), std::invalid_argument);
    EXPECT_EQ(data->xmlData(), file);
}

TEST(BoxDataSave, DoesNothingWithoutANode)
{
    const LogRecords log;
    const Data data = dataOf("");
    const auto xml = element("<Box name=\"x\"/>");
    data->save(xml);
    data->save(nullptr);
    EXPECT_EQ(xml->attribute("name", std::string()), "x");
    EXPECT_TRUE(log.all().empty());
}

// Clones

TEST(BoxDataClone, HasTheDescriptionButNoInputsOutputsAndParameters)
{
    const Data data =
        dataOf(R"(tooltip="a" bitmap_expanded="false")",
               std::string(behaviorContent()) +
                   "<Parameter name=\"p\"/><Bitmaps><bitmap>a.png</bitmap></Bitmaps>");
    ASSERT_FALSE(data->inputs().isEmpty() || data->outputs().isEmpty() ||
                 data->parameters().isEmpty());
    const Data copy = data->clone(nullptr);
    EXPECT_EQ(copy->tooltip(), q("a"));
    EXPECT_EQ(copy->bitmaps(), QList<QString>{q("a.png")});
    EXPECT_FALSE(copy->bitmapExpanded());
    EXPECT_TRUE(copy->inputs().isEmpty());
    EXPECT_TRUE(copy->outputs().isEmpty());
    EXPECT_TRUE(copy->parameters().isEmpty());
}

TEST(BoxDataClone, IsABehaviorWhenTheOriginalIs)
{
    const Library library = newLibrary();
    EXPECT_TRUE(isBehavior(*library, dataOf("", behaviorContent())->clone(nullptr)));
    EXPECT_FALSE(isBehavior(*library, dataOf("")->clone(nullptr)));
}

TEST(BoxDataClone, HasNoQObjectParent)
{
    BoxLibraryNode node;
    const Data data = boost::make_shared<BoxData>(&node, element("<Box/>"));
    EXPECT_EQ(data->clone(&node)->parent(), nullptr);
}

TEST(BoxDataClone, BelongsToTheGivenNode)
{
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile("tooltip=\"b\"")}}));
    BoxLibraryNode* const root = library->boxRoot();
    const Data copy = root->child(0)->boxData()->clone(root->child(1));
    EXPECT_EQ(copy->tooltip(), QString());
    EXPECT_EQ(copy->load()->attribute("tooltip", std::string()), "b");
    copy->setTooltip(q("new"));
    EXPECT_EQ(root->child(1)->loadBox()->attribute("tooltip", std::string()), "new");
    EXPECT_EQ(root->child(0)->loadBoxData(), boxFile());
}

TEST(BoxDataClone, IsIndependentOfTheOriginal)
{
    const Data data = dataOf("tooltip=\"a\"");
    const Data copy = data->clone(nullptr);
    copy->setTooltip(q("b"));
    EXPECT_EQ(data->tooltip(), q("a"));
    EXPECT_EQ(copy->tooltip(), q("b"));
}

} // namespace
} // namespace KX::test
