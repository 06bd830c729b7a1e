#include <kxboxlibrary/box_constants.hpp>

namespace KX::BoxConstants {

const char* const a_metaDatasBeacon = "MetaDatas";
const char* const a_timelineBeacon = "Timeline";
const char* const a_behaviorLayerBeacon = "BehaviorLayer";
const char* const a_motionLayerBeacon = "MotionLayer";
const char* const a_behaviorKeyframeBeacon = "BehaviorKeyframe";
const char* const a_motionKeyframeBeacon = "MotionKeyframe";
const char* const a_diagramBeacon = "Diagram";
const char* const a_boxBeacon = "Box";
const char* const a_linkBeacon = "Link";
const char* const a_inputBeacon = "Input";
const char* const a_outputBeacon = "Output";
const char* const a_parameterBeacon = "Parameter";
const char* const a_resourceBeacon = "Resource";
const char* const a_metaDataBeacon = "MetaData";
const char* const a_actuatorTreeBeacon = "ActuatorTree";
const char* const a_actuatorListBeacon = "ActuatorList";
const char* const a_waveformListBeacon = "Waveforms";

const char* const a_projectTag = "KinestraProject";
const char* const a_projectXsd = "http://kinestra.example/schema/kinestra/project.xsd";
const char* const a_legacyProjectXsd = "http://legacy.kinestra.example/schema/kinestra/project.xsd";
const char* const a_boxBhxBeacon = "KinestraBox";

const char* const a_behaviorProjectType = "KinestraProject";
const char* const a_behaviorProjectVersion = "2.0";
const char* const a_boxLibraryProjectType = "KinestraBoxLibrary";
const char* const a_boxLibraryProjectVersion = "3.0";

const char* const a_boxLibraryTranslations = "translations";
const char* const a_boxLibraryContext = "Library";

const int a_defaultBhxVersion = 0;
const int a_lastVerboseBhxVersion = 1;
const int a_currentBhxVersion = 3;

} // namespace KX::BoxConstants
