#include <kr/xml_beacons.hpp>
#include <kr/xml_manager.hpp>
#include <kx/xml_document.hpp>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

using KR::XmlManager;
using ElementPtr = boost::shared_ptr<const KX::XmlElement>;

namespace {

ElementPtr element(const std::string& xml)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), &std::fclose);
    if (!file || std::fputs(xml.c_str(), file.get()) == EOF) {
        throw std::runtime_error("cannot write a file");
    }
    std::rewind(file.get());
    std::string error;
    const auto document = KX::XmlDocument::loadFromXmlFile(file.get(), &error, nullptr);
    if (!document) {
        throw std::runtime_error(error);
    }
    return document->root();
}

// A box's numbers taken so far; what they stand for does not matter.
XmlManager::IoById taken(const std::vector<int>& ids)
{
    XmlManager::IoById ioById;
    for (const int id : ids) {
        ioById.emplace(id, boost::make_shared<KR::Input>(id, "taken", "", KR::Port::Properties()));
    }
    return ioById;
}

TEST(XmlManager, ReadsAnInput)
{
    XmlManager::IoById ioById;
    const auto input = XmlManager::createInput(
        element("<Input name='onStart \xC3\xA9' type='1' type_size='4' nature='2' inner='1' "
                "tooltip='Starts.' id='12'/>"),
        ioById);
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->id(), 12);
    EXPECT_EQ(input->name(), "onStart \xC3\xA9");
    EXPECT_EQ(input->tooltip(), "Starts.");
    EXPECT_EQ(input->type(), 1);
    EXPECT_EQ(input->typeSize(), 4);
    EXPECT_EQ(input->nature(), 2);
    EXPECT_TRUE(input->inner());
    EXPECT_EQ(ioById.at(12), input);
}

TEST(XmlManager, ReadsAnOutput)
{
    XmlManager::IoById ioById;
    const auto output = XmlManager::createOutput(
        element("<Output name='onStopped' type='3' type_size='2' nature='1' id='4'/>"), ioById);
    ASSERT_NE(output, nullptr);
    EXPECT_EQ(output->id(), 4);
    EXPECT_EQ(output->name(), "onStopped");
    EXPECT_EQ(output->tooltip(), "");
    EXPECT_EQ(output->type(), 3);
    EXPECT_EQ(output->typeSize(), 2);
    EXPECT_EQ(output->nature(), 1);
    EXPECT_FALSE(output->inner());
    EXPECT_EQ(ioById.at(4), output);
}

TEST(XmlManager, ReadsAParameter)
{
    XmlManager::IoById ioById;
    const auto parameter = XmlManager::createParameter(
        element("<Parameter name='Speed' inherits_from_parent='1' content_type='2' value='50' "
                "default_value='40' min='0' max='100' custom_choice='true' tooltip='t' id='5'>"
                "<Choice value='10'/><Choice/><Other value='x'/><Choice value=''/>"
                "<Choice value='20'/></Parameter>"),
        ioById);
    ASSERT_NE(parameter, nullptr);
    EXPECT_EQ(parameter->id(), 5);
    EXPECT_EQ(parameter->name(), "Speed");
    EXPECT_EQ(parameter->tooltip(), "t");
    EXPECT_TRUE(parameter->inheritsFromParent());
    EXPECT_EQ(parameter->contentType(), 2);
    EXPECT_EQ(parameter->value(), "50");
    EXPECT_EQ(parameter->defaultValue(), "40");
    EXPECT_EQ(parameter->minimum(), "0");
    EXPECT_EQ(parameter->maximum(), "100");
    EXPECT_TRUE(parameter->customChoice());
    EXPECT_EQ(parameter->choices(), (std::vector<std::string>{"10", "", "20"}));
    EXPECT_EQ(ioById.at(5), parameter);
}

TEST(XmlManager, GivesBadAndMissingPropertiesTheirDefaults)
{
    for (const char* attributes :
         {"", "type='' type_size='x' nature='1.5' inner='maybe' content_type='99999999999' "
              "inherits_from_parent='2' custom_choice='on'"}) {
        const std::string xml = std::string("<x name='n' ") + attributes + "/>";
        XmlManager::IoById ioById;
        const auto input = XmlManager::createInput(element(xml), ioById);
        ASSERT_NE(input, nullptr);
        EXPECT_EQ(input->type(), 0);
        EXPECT_EQ(input->typeSize(), 1);
        EXPECT_EQ(input->nature(), 0);
        EXPECT_FALSE(input->inner());
        const auto parameter = XmlManager::createParameter(element(xml), ioById);
        ASSERT_NE(parameter, nullptr);
        EXPECT_EQ(parameter->contentType(), 0);
        EXPECT_FALSE(parameter->inheritsFromParent());
        EXPECT_FALSE(parameter->customChoice());
        EXPECT_EQ(parameter->value(), "");
        EXPECT_TRUE(parameter->choices().empty());
    }
}

struct RefusedCase
{
    const char* xml;
    const char* why;
};

std::ostream& operator<<(std::ostream& out, const RefusedCase& refused)
{
    return out << refused.why;
}

class XmlManagerRefuses : public ::testing::TestWithParam<RefusedCase>
{
};

TEST_P(XmlManagerRefuses, AndAddsNothing)
{
    const ElementPtr described = element(GetParam().xml);
    XmlManager::IoById ioById = taken({7});
    EXPECT_EQ(XmlManager::createInput(described, ioById), nullptr);
    EXPECT_EQ(XmlManager::createOutput(described, ioById), nullptr);
    EXPECT_EQ(XmlManager::createParameter(described, ioById), nullptr);
    EXPECT_EQ(ioById.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, XmlManagerRefuses,
    ::testing::Values(RefusedCase{"<x id='1'/>", "no name"},
                      RefusedCase{"<x name='' id='1'/>", "empty name"},
                      RefusedCase{"<x/>", "neither name nor id"},
                      RefusedCase{"<x name='n' id=''/>", "empty id"},
                      RefusedCase{"<x name='n' id='one'/>", "id in words"},
                      RefusedCase{"<x name='n' id='1.5'/>", "fractional id"},
                      RefusedCase{"<x name='n' id=' 1'/>", "id with a blank"},
                      RefusedCase{"<x name='n' id='2147483648'/>", "id out of range"},
                      RefusedCase{"<x name='n' id='7'/>", "taken id"},
                      RefusedCase{"<x name='n' id='07'/>", "taken id in another form"}));

TEST(XmlManager, RefusesNull)
{
    XmlManager::IoById ioById;
    EXPECT_EQ(XmlManager::createInput(nullptr, ioById), nullptr);
    EXPECT_EQ(XmlManager::createOutput(nullptr, ioById), nullptr);
    EXPECT_EQ(XmlManager::createParameter(nullptr, ioById), nullptr);
    EXPECT_TRUE(ioById.empty());
}

struct NextIdCase
{
    std::vector<int> taken;
    int next;
};

class XmlManagerNextId : public ::testing::TestWithParam<NextIdCase>
{
};

TEST_P(XmlManagerNextId, IsTheFreeOneAfterTheLargest)
{
    XmlManager::IoById ioById = taken(GetParam().taken);
    const auto input = XmlManager::createInput(element("<Input name='n'/>"), ioById);
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->id(), GetParam().next);
    EXPECT_EQ(ioById.at(GetParam().next), input);
}

constexpr int a_largest = std::numeric_limits<int>::max();

INSTANTIATE_TEST_SUITE_P(Numbers, XmlManagerNextId,
                         ::testing::Values(NextIdCase{{}, 1}, NextIdCase{{1, 2}, 3},
                                           NextIdCase{{1, 5}, 6}, NextIdCase{{-9}, 1},
                                           NextIdCase{{0}, 1},
                                           NextIdCase{{a_largest - 1}, a_largest},
                                           NextIdCase{{a_largest}, 1},
                                           NextIdCase{{-1, 1, 2, 4, a_largest}, 3}));

TEST(XmlManager, CountsAllKindsOfOneBoxTogether)
{
    XmlManager::IoById ioById;
    EXPECT_EQ(XmlManager::createInput(element("<Input name='a' id='1'/>"), ioById)->id(), 1);
    EXPECT_EQ(XmlManager::createOutput(element("<Output name='a' id='1'/>"), ioById), nullptr);
    EXPECT_EQ(XmlManager::createOutput(element("<Output name='a'/>"), ioById)->id(), 2);
    EXPECT_EQ(XmlManager::createParameter(element("<Parameter name='a'/>"), ioById)->id(), 3);
    EXPECT_EQ(ioById.size(), 3U);
}

} // namespace
