#include "library_signals.hpp"
#include "support.hpp"

namespace KX::test {
namespace {

using Data = boost::shared_ptr<BoxData>;

/// What data signal while this lives, in order, such as "tooltip new".
class DataSignals
{
public:
    explicit DataSignals(const BoxData& data)
    {
        QObject::connect(&data, &BoxData::tooltipChanged, &m_context, [this](const QString& value) {
            m_all.push_back("tooltip " + value.toStdString());
        });
        QObject::connect(
            &data, &BoxData::bitmapsChanged, &m_context, [this](const QList<QString>& value) {
                m_all.push_back("bitmaps " +
                                QStringList(value).join(QLatin1Char(' ')).toStdString());
            });
        QObject::connect(&data, &BoxData::bitmapExpandedChanged, &m_context, [this](bool value) {
            m_all.push_back(value ? "expanded true" : "expanded false");
        });
    }
    DataSignals(const DataSignals&) = delete;
    DataSignals& operator=(const DataSignals&) = delete;
    DataSignals(DataSignals&&) = delete;
    DataSignals& operator=(DataSignals&&) = delete;
    ~DataSignals() = default;

    const Names& all() const { return m_all; }

private:
    QObject m_context; // ends the connections
    Names m_all;
};

Library libraryWith(const QByteArray& file)
{
    return open(project({{"Walk/box.bhx", file}}));
}

/// How often a box file was written: each time a missing ".metadata" is complained about.
std::size_t writes(const LogRecords& log)
{
    return log.all().size() - log.of("kxboxlibrary").size() - log.of("BoxLibrary").size();
}

Names bitmapsIn(const XmlElement& box)
{
    Names names;
    for (const auto& bitmap : box.children("bitmap", "Bitmaps")) {
        const auto text = bitmap->text();
        names.push_back(text ? *text : "<none>");
    }
    return names;
}

/// One of the editable properties, with two ways to change it from what a box without it has.
struct Property
{
    const char* name;
    std::function<void(BoxData&)> change;
    const char* signal;                             // that the change emits
    std::function<std::string(const BoxData&)> get; // from memory
    std::function<std::string(const XmlElement&)> read;
    const char* value; // by both
};

std::ostream& operator<<(std::ostream& stream, const Property& property)
{
    return stream << property.name;
}

class EditedProperty : public testing::TestWithParam<Property>
{
protected:
    static std::string changed(BoxData& data)
    {
        const DataSignals heard(data);
        GetParam().change(data);
        EXPECT_EQ(GetParam().get(data), GetParam().value);
        return heard.all().size() == 1 ? heard.all().front() : "<not one signal>";
    }
};

INSTANTIATE_TEST_SUITE_P(
    All, EditedProperty,
    testing::Values(
        Property{"Tooltip", [](BoxData& data) { data.setTooltip(q("new")); }, "tooltip new",
                 [](const BoxData& data) { return data.tooltip().toStdString(); },
                 [](const XmlElement& box) { return box.attribute("tooltip", std::string()); },
                 "new"},
        Property{"Bitmaps",
                 [](BoxData& data) {
                     data.setBitmaps({q("b"), q("a")});
                 },
                 "bitmaps b a",
                 [](const BoxData& data) {
                     return QStringList(data.bitmaps()).join(QLatin1Char(',')).toStdString();
                 },
                 [](const XmlElement& box) {
                     const Names names = bitmapsIn(box);
                     return names.size() == 2 ? names[0] + "," + names[1] : "<not two>";
                 },
                 "b,a"},
        Property{
            "BitmapExpanded", [](BoxData& data) { data.setBitmapExpanded(false); },
            "expanded false",
            [](const BoxData& data) -> std::string {
                return data.bitmapExpanded() ? "true" : "false";
            },
            [](const XmlElement& box) { return box.attribute("bitmap_expanded", std::string()); },
            "false"}),
    [](const auto& property) { return property.param.name; });

TEST_P(EditedProperty, IsWrittenOnceAndSignalled)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    const LogRecords log;
    EXPECT_EQ(changed(*data), GetParam().signal);
    EXPECT_EQ(writes(log), 1U);
    EXPECT_EQ(GetParam().read(*data->load()), GetParam().value);
}

TEST_P(EditedProperty, IsThereWhenTheLibraryIsOpenedAgain)
{
    const TemporaryDirectory directory;
    const Library library = libraryWith(boxFile());
    GetParam().change(*library->boxRoot()->child(0)->boxData());
    library->saveTo(directory.path("Walks.bxl"), BoxLibrary::Archive);
    const Library again = open(ProjectModel(directory.path("Walks.bxl")));
    EXPECT_EQ(GetParam().get(*again->boxRoot()->child(0)->boxData()), GetParam().value);
}

TEST_P(EditedProperty, SetAgainIsNeitherWrittenNorSignalled)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    GetParam().change(*data);
    library->setDirty(false);
    // Another file shows that it is not touched.
    library->projectModel().writeFile(q("Walk/box.bhx"), boxFile());
    const DataSignals heard(*data);
    const LogRecords log;
    GetParam().change(*data);
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_EQ(writes(log), 0U);
    EXPECT_EQ(data->xmlData(), boxFile());
    EXPECT_FALSE(library->isDirty());
}

TEST_P(EditedProperty, IsInTheFileAndInPlaceWhenItIsSignalled)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    Names values;
    const auto look = [&] { values = {GetParam().get(*data), GetParam().read(*data->load())}; };
    QObject::connect(data.get(), &BoxData::tooltipChanged, data.get(), look);
    QObject::connect(data.get(), &BoxData::bitmapsChanged, data.get(), look);
    QObject::connect(data.get(), &BoxData::bitmapExpandedChanged, data.get(), look);
    GetParam().change(*data);
    EXPECT_EQ(values, (Names{GetParam().value, GetParam().value}));
}

TEST_P(EditedProperty, MakesTheLibraryDirtyAndIsForwarded)
{
    const Library library = libraryWith(boxFile());
    const LibrarySignals heard(*library);
    GetParam().change(*library->boxRoot()->child(0)->boxData());
    EXPECT_EQ(heard.all(), (Names{"dirtyChanged true", "dataChanged Walk"}));
}

TEST_P(EditedProperty, LeavesTheRestOfTheFile)
{
    const Library library =
        libraryWith(boxFile(R"(other="x" tooltip="old" bitmap_expanded="true")",
                            "<Bitmaps kept=\"y\"><bitmap>old</bitmap><image/></Bitmaps>"
                            "<Input name=\"a\"/><Diagram><Box/></Diagram>"));
    const Data data = library->boxRoot()->child(0)->boxData();
    GetParam().change(*data);
    const auto box = data->load();
    EXPECT_EQ(box->attribute("other", std::string()), "x");
    EXPECT_EQ(box->firstChild("Bitmaps")->attribute("kept", std::string()), "y");
    EXPECT_TRUE(box->firstChild("Bitmaps")->firstChild("image"));
    EXPECT_TRUE(box->firstChild("Diagram")->firstChild("Box"));
    EXPECT_EQ(box->mixedChildren().size(), 3U);
    const auto other = [&](const char* attribute) {
        return box->attribute(attribute, std::string());
    };
    const std::string edited = GetParam().name;
    EXPECT_EQ(other("tooltip"), edited == "Tooltip" ? "new" : "old");
    EXPECT_EQ(other("bitmap_expanded"), edited == "BitmapExpanded" ? "false" : "true");
    EXPECT_EQ(bitmapsIn(*box), edited == "Bitmaps" ? (Names{"b", "a"}) : Names{"old"});
}

TEST_P(EditedProperty, IsSignalledWithoutANode)
{
    BoxData data(nullptr, element("<Box/>"));
    EXPECT_EQ(changed(data), GetParam().signal);
}

TEST_P(EditedProperty, IsSignalledWhenTheNodeIsGone)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    removeChildTree(*library->boxRoot(), 0);
    EXPECT_EQ(changed(*data), GetParam().signal);
}

TEST_P(EditedProperty, IsSignalledWithoutAProject)
{
    BoxLibraryNode node;
    BoxData data(&node, element("<Box/>"));
    EXPECT_EQ(changed(data), GetParam().signal);
}

TEST_P(EditedProperty, IsSignalledWithoutABoxFile)
{
    const Library library = libraryWith(boxFile());
    library->projectModel().remove(q("Walk/box.bhx"));
    EXPECT_EQ(changed(*library->boxRoot()->child(0)->boxData()), GetParam().signal);
    EXPECT_FALSE(library->projectModel().hasFile(q("Walk/box.bhx")));
    EXPECT_TRUE(library->isDirty());
}

TEST_P(EditedProperty, IsSignalledWithAnUnreadableBoxFile)
{
    const Library library = libraryWith(boxFile());
    library->projectModel().writeFile(q("Walk/box.bhx"), "<KinestraBox");
    EXPECT_EQ(changed(*library->boxRoot()->child(0)->boxData()), GetParam().signal);
    EXPECT_EQ(library->projectModel().readFile(q("Walk/box.bhx")), QByteArray("<KinestraBox"));
}

TEST_P(EditedProperty, IsInPlaceAndSignalledWhenItCannotBeWritten)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(GetParam().change(*data), std::runtime_error);
    }
    EXPECT_EQ(GetParam().get(*data), GetParam().value);
    EXPECT_EQ(heard.all(), Names{GetParam().signal});
    const auto valueInFile = [&] {
        return GetParam().get(BoxData(nullptr, library->boxRoot()->child(0)->loadBox()));
    };
    EXPECT_NE(valueInFile(), GetParam().value);
    GetParam().change(*data);
    EXPECT_EQ(valueInFile(), GetParam().value);
    GetParam().change(*data);
    EXPECT_EQ(heard.all(), (Names{GetParam().signal, GetParam().signal}));
}

TEST_P(EditedProperty, ThatCouldNotBeWrittenCanBeSetAgainAfterTheFileCouldNotBeRead)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode& node = *library->boxRoot()->child(0);
    const Data data = node.boxData();
    const QByteArray file = data->xmlData();
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(GetParam().change(*data), std::runtime_error);
    }
    library->projectModel().writeFile(q("Walk/box.bhx"), "<KinestraBox");
    GetParam().change(*data);
    EXPECT_EQ(data->xmlData(), QByteArray("<KinestraBox"));
    library->projectModel().writeFile(q("Walk/box.bhx"), file);
    GetParam().change(*data);
    EXPECT_EQ(GetParam().get(BoxData(nullptr, node.loadBox())), GetParam().value);
}

TEST(EditedProperties, ThatCouldNotBeWrittenLeaveTheFileToOthers)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode& node = *library->boxRoot()->child(0);
    const Data data = node.boxData();
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(data->setTooltip(q("refused")), std::runtime_error);
    }
    const auto box = node.loadBox();
    box->setAttribute("tooltip", std::string("another's"), false);
    node.saveBox(box, false);
    data->setBitmapExpanded(false);
    EXPECT_EQ(BoxData(nullptr, node.loadBox()).tooltip(), q("another's"));
}

TEST(EditedProperties, ThatCouldNotBeWrittenCanBeSetAgainInAClone)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode& node = *library->boxRoot()->child(0);
    {
        const FileSizeLimit full(0);
        EXPECT_THROW(node.boxData()->setTooltip(q("new")), std::runtime_error);
    }
    const std::unique_ptr<BoxLibraryNode, TreeDeleter> copy(node.clone());
    copy->boxData()->setTooltip(q("new"));
    EXPECT_EQ(BoxData(nullptr, copy->loadBox()).tooltip(), q("new"));
}

// Each on its own

TEST(Tooltip, KeepsEveryCharacterInTheFile)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    const QString tooltip = q("<a> & \"b\" 'c'\t\u00fc\nd\re \U0001F600");
    node->boxData()->setTooltip(tooltip);
    EXPECT_EQ(BoxData(nullptr, node->loadBox()).tooltip(), tooltip);
}

TEST(Tooltip, CanBecomeEmpty)
{
    const Library library = libraryWith(boxFile("tooltip=\"old\""));
    const Data data = library->boxRoot()->child(0)->boxData();
    data->setTooltip(QString());
    EXPECT_EQ(data->load()->attribute("tooltip", std::string("<none>")), "");
}

TEST(Tooltip, WithWhatXmlCannotHoldIsRefusedButInPlaceAndSignalled)
{
    const Library library = libraryWith(boxFile("tooltip=\"old\""));
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    EXPECT_THROW(data->setTooltip(q("a\x01")), std::invalid_argument);
    EXPECT_EQ(data->tooltip(), q("a\x01"));
    EXPECT_EQ(heard.all(), Names{"tooltip a\x01"});
    EXPECT_EQ(data->xmlData(), boxFile("tooltip=\"old\""));
    EXPECT_TRUE(library->isDirty());
}

const char* const a_twoBitmaps = "<Bitmaps><bitmap>a</bitmap><bitmap>b</bitmap></Bitmaps>";

TEST(Bitmaps, SetToAnEqualListAreNeitherWrittenNorSignalled)
{
    const Library library = libraryWith(boxFile("", a_twoBitmaps));
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    data->setBitmaps({q("a"), q("b")});
    data->setBitmaps(data->bitmaps());
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_EQ(data->xmlData(), boxFile("", a_twoBitmaps));
}

TEST(Bitmaps, InAnotherOrderAreWrittenAndSignalled)
{
    const Library library = libraryWith(boxFile("", a_twoBitmaps));
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    data->setBitmaps({q("b"), q("a")});
    EXPECT_EQ(heard.all(), Names{"bitmaps b a"});
    EXPECT_EQ(bitmapsIn(*data->load()), (Names{"b", "a"}));
}

TEST(Bitmaps, OfAPartOfTheListAreWrittenAndSignalled)
{
    const Library library = libraryWith(boxFile("", a_twoBitmaps));
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    data->setBitmaps({q("a")});
    EXPECT_EQ(heard.all(), Names{"bitmaps a"});
    EXPECT_EQ(bitmapsIn(*data->load()), Names{"a"});
}

TEST(Bitmaps, NoneLeaveNoneInTheFile)
{
    const Library library = libraryWith(boxFile("", a_twoBitmaps));
    const Data data = library->boxRoot()->child(0)->boxData();
    data->setBitmaps({});
    EXPECT_EQ(bitmapsIn(*data->load()), Names{});
}

TEST(Bitmaps, OfABoxWithoutAnyGetAContainer)
{
    const Library library = libraryWith(boxFile("", "<Diagram/>"));
    const Data data = library->boxRoot()->child(0)->boxData();
    data->setBitmaps({q("\u00fc&.png")});
    EXPECT_EQ(bitmapsIn(*data->load()), Names{"\u00fc&.png"});
}

TEST(Bitmaps, EndAtTheirFirstNulInTheFileAlone)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    const QString bitmap = q(std::string("a\0b", 3));
    data->setBitmaps({bitmap});
    EXPECT_EQ(data->bitmaps(), QList<QString>{bitmap});
    EXPECT_EQ(bitmapsIn(*data->load()), Names{"a"});
}

TEST(Bitmaps, WithWhatXmlCannotHoldAreRefusedButInPlaceAndSignalled)
{
    const QByteArray file = boxFile("", a_twoBitmaps);
    const Library library = libraryWith(file);
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    EXPECT_THROW(data->setBitmaps({q("c"), q("\x01")}), std::invalid_argument);
    EXPECT_EQ(data->bitmaps(), (QList<QString>{q("c"), q("\x01")}));
    EXPECT_EQ(heard.all(), Names{"bitmaps c \x01"});
    EXPECT_EQ(data->xmlData(), file);
}

TEST(BitmapExpandedFlag, GoesBothWays)
{
    const Library library = libraryWith(boxFile("bitmap_expanded=\"no boolean\""));
    const Data data = library->boxRoot()->child(0)->boxData();
    data->setBitmapExpanded(true); // which it is
    EXPECT_EQ(data->load()->attribute("bitmap_expanded", std::string()), "no boolean");
    data->setBitmapExpanded(false);
    EXPECT_EQ(data->load()->attribute("bitmap_expanded", std::string()), "false");
    data->setBitmapExpanded(true);
    EXPECT_EQ(data->load()->attribute("bitmap_expanded", std::string()), "true");
}

// saveName()

TEST(SaveName, NamesEveryBoxRoot)
{
    const Library library = open(project(
        {{"Walk/box.bhx", R"(<KinestraBox bhx_version="3"><Box name="Old"/></KinestraBox>)"}}));
    const Data data = library->boxRoot()->child(0)->boxData();
    const LogRecords log;
    data->saveName("X");
    EXPECT_EQ(writes(log), 1U);
    EXPECT_EQ(data->load()->attribute("name", std::string()), "root");
}

TEST(SaveName, SignalsNothing)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    const LibrarySignals heardOfLibrary(*library);
    data->saveName("X");
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_EQ(heardOfLibrary.all(), Names{});
    EXPECT_EQ(library->boxRoot()->child(0)->name(), "Walk");
}

TEST(SaveName, DoesNothingWithoutABoxFile)
{
    const Library library = libraryWith(boxFile());
    library->projectModel().remove(q("Walk/box.bhx"));
    library->boxRoot()->child(0)->boxData()->saveName("X");
    EXPECT_FALSE(library->projectModel().hasFile(q("Walk/box.bhx")));
}

TEST(SaveName, DoesNothingWithoutANode)
{
    const LogRecords log;
    BoxData data(nullptr, element("<Box/>"));
    data.saveName("X");
    EXPECT_TRUE(log.all().empty());
}

TEST(SaveName, RefusesWhatXmlCannotHold)
{
    const Library library = libraryWith(boxFile());
    const Data data = library->boxRoot()->child(0)->boxData();
    EXPECT_THROW(data->saveName("\x01"), std::invalid_argument);
    EXPECT_EQ(data->xmlData(), boxFile());
}

// updateData()

TEST(UpdateData, RenamesTheNodeAndSetsTheRest)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    const LogRecords log;
    node->boxData()->updateData(q("R\u00fcn?"), q("new"), {q("a")}, false);
    EXPECT_EQ(node->name(), "R\u00fcn?");
    EXPECT_EQ(node->path(), q("R\u00fcn%3f"));
    EXPECT_EQ(node->boxData()->tooltip(), q("new"));
    EXPECT_EQ(node->boxData()->bitmaps(), QList<QString>{q("a")});
    EXPECT_FALSE(node->boxData()->bitmapExpanded());
    EXPECT_EQ(writes(log), 3U);
    const BoxData written(nullptr, node->loadBox());
    EXPECT_EQ(written.tooltip(), q("new"));
    EXPECT_EQ(written.bitmaps(), QList<QString>{q("a")});
    EXPECT_FALSE(written.bitmapExpanded());
}

TEST(UpdateData, SignalsInItsOrder)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    const Data data = node->boxData();
    Names events;
    QObject::connect(node, &BoxLibraryNode::dataChanged, node, [&] {
        events.push_back(node->name() + " " + data->tooltip().toStdString() + " " +
                         std::to_string(data->bitmaps().size()) +
                         (data->bitmapExpanded() ? " true" : " false"));
    });
    data->updateData(q("Run"), q("new"), {q("a")}, false);
    EXPECT_EQ(events,
              (Names{"Run  0 true", "Run new 0 true", "Run new 1 true", "Run new 1 false"}));
}

TEST(UpdateData, WithWhatThereIsDoesNothing)
{
    const QByteArray file = boxFile("tooltip=\"t\"", a_twoBitmaps);
    const Library library = libraryWith(file);
    const Data data = library->boxRoot()->child(0)->boxData();
    const LibrarySignals heard(*library);
    data->updateData(q("Walk"), q("t"), {q("a"), q("b")}, true);
    EXPECT_EQ(heard.all(), Names{});
    EXPECT_EQ(data->xmlData(), file);
}

TEST(UpdateData, WritesOnlyWhatDiffers)
{
    const Library library = libraryWith(boxFile("tooltip=\"t\"", a_twoBitmaps));
    const Data data = library->boxRoot()->child(0)->boxData();
    const DataSignals heard(*data);
    const LogRecords log;
    data->updateData(q("Run"), q("t"), {q("a"), q("b")}, false);
    EXPECT_EQ(heard.all(), Names{"expanded false"});
    EXPECT_EQ(writes(log), 1U);
}

TEST(UpdateData, TakesTheNameUpToItsFirstNul)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    node->boxData()->updateData(q(std::string("Run\0ning", 8)), QString(), {}, true);
    EXPECT_EQ(node->name(), "Run");
}

TEST(UpdateData, TakesAFreeName)
{
    const Library library =
        open(project({{"Run/box.bhx", boxFile()}, {"Walk/box.bhx", boxFile()}}));
    BoxLibraryNode* const node = library->boxRoot()->child(1);
    node->boxData()->updateData(q("Run"), q("new"), {}, true);
    EXPECT_EQ(node->name(), "Run (2)");
    EXPECT_EQ(node->loadBox()->attribute("tooltip", std::string()), "new");
    EXPECT_EQ(library->boxRoot()->child(0)->loadBoxData(), boxFile());
}

TEST(UpdateData, WithoutANodeSetsTheRest)
{
    BoxData data(nullptr, element("<Box/>"));
    data.updateData(q("Run"), q("new"), {q("a")}, false);
    EXPECT_EQ(data.tooltip(), q("new"));
    EXPECT_EQ(data.bitmaps(), QList<QString>{q("a")});
    EXPECT_FALSE(data.bitmapExpanded());
}

TEST(UpdateData, ThatFailsKeepsWhatWasDoneUntilThen)
{
    const Library library = libraryWith(boxFile());
    BoxLibraryNode* const node = library->boxRoot()->child(0);
    const Data data = node->boxData();
    EXPECT_THROW(data->updateData(q("Run"), q("new"), {q("\x01")}, false), std::invalid_argument);
    EXPECT_EQ(node->path(), q("Run"));
    EXPECT_EQ(data->load()->attribute("tooltip", std::string()), "new");
    EXPECT_TRUE(data->bitmapExpanded());
}

TEST(UpdateData, EndsInOrderWhenTheBoxIsRemovedByWhoHearsOfIt)
{
    for (const auto hearOfName : {true, false}) {
        const Library library = open(project({{"Box/box.bhx", boxFile()}}));
        BoxLibraryNode* const root = library->boxRoot();
        BoxData* const data = root->child(0)->boxData().get(); // the node alone holds them
        const auto remove = [root] { root->removeChild(0); };
        if (hearOfName) {
            QObject::connect(library.get(), &BoxLibrary::dataChanged, remove);
        } else {
            QObject::connect(data, &BoxData::tooltipChanged, remove);
        }
        data->updateData(q("New"), q("new"), {q("a")}, false);
        EXPECT_TRUE(root->children().isEmpty());
        EXPECT_EQ(filesOf(library->projectModel()), Names{"bxlinfo"});
    }
}

TEST(Tooltip, IsSetInOrderWhenTheBoxIsRemovedWhileItIsWritten)
{
    const Library library = open(project({{"Box/box.bhx", boxFile()}}));
    BoxLibraryNode* const root = library->boxRoot();
    BoxData* const data = root->child(0)->boxData().get(); // the node alone holds them
    // Of the missing ".metadata".
    const LogHook hook([root](const pk::log::Record&) {
        if (!root->children().isEmpty()) {
            root->removeChild(0);
        }
    });
    data->setTooltip(q("new"));
    EXPECT_TRUE(root->children().isEmpty());
}

} // namespace
} // namespace KX::test
