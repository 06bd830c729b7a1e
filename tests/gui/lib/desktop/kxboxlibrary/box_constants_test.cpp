#include <kxboxlibrary/box_constants.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace KX::BoxConstants;

struct NamedConstant
{
    const char* constant;
    const char* value;
};

class TextConstants : public testing::TestWithParam<NamedConstant>
{
};

TEST_P(TextConstants, HaveTheirValues)
{
    EXPECT_STREQ(GetParam().constant, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    All, TextConstants,
    testing::Values(
        NamedConstant{a_metaDatasBeacon, "MetaDatas"}, NamedConstant{a_timelineBeacon, "Timeline"},
        NamedConstant{a_behaviorLayerBeacon, "BehaviorLayer"},
        NamedConstant{a_motionLayerBeacon, "MotionLayer"},
        NamedConstant{a_behaviorKeyframeBeacon, "BehaviorKeyframe"},
        NamedConstant{a_motionKeyframeBeacon, "MotionKeyframe"},
        NamedConstant{a_diagramBeacon, "Diagram"}, NamedConstant{a_boxBeacon, "Box"},
        NamedConstant{a_linkBeacon, "Link"}, NamedConstant{a_inputBeacon, "Input"},
        NamedConstant{a_outputBeacon, "Output"}, NamedConstant{a_parameterBeacon, "Parameter"},
        NamedConstant{a_resourceBeacon, "Resource"}, NamedConstant{a_metaDataBeacon, "MetaData"},
        NamedConstant{a_actuatorTreeBeacon, "ActuatorTree"},
        NamedConstant{a_actuatorListBeacon, "ActuatorList"},
        NamedConstant{a_waveformListBeacon, "Waveforms"},
        NamedConstant{a_projectTag, "KinestraProject"},
        NamedConstant{a_boxBhxBeacon, "KinestraBox"},
        NamedConstant{a_behaviorProjectType, "KinestraProject"},
        NamedConstant{a_behaviorProjectVersion, "2.0"},
        NamedConstant{a_boxLibraryProjectType, "KinestraBoxLibrary"},
        NamedConstant{a_boxLibraryProjectVersion, "3.0"},
        NamedConstant{a_boxLibraryTranslations, "translations"},
        NamedConstant{a_boxLibraryContext, "Library"}));

TEST(BoxConstants, SchemasDifferInTheirHostOnly)
{
    const std::string current = a_projectXsd;
    const std::string legacy = a_legacyProjectXsd;
    const std::string path = "/schema/kinestra/project.xsd";
    for (const std::string& uri : {current, legacy}) {
        const auto host = uri.find("://") + 3;
        EXPECT_EQ(uri.substr(uri.find('/', host)), path);
    }
    EXPECT_NE(current, legacy);
}

TEST(BoxConstants, VersionsOfBoxFiles)
{
    EXPECT_EQ(a_defaultBhxVersion, 0);
    EXPECT_EQ(a_lastVerboseBhxVersion, 1);
    EXPECT_EQ(a_currentBhxVersion, 3);
}

} // namespace
