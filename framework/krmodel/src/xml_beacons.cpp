#include <kr/xml_beacons.hpp>

namespace KR::XmlBeacons {

const char* const a_inputBeacon = "Input";
const char* const a_outputBeacon = "Output";
const char* const a_parameterBeacon = "Parameter";

} // namespace KR::XmlBeacons
