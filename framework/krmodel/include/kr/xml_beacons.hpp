#pragma once

#include <krmodel/export.hpp>

/// The tags of the elements that describe what a box exchanges with its surroundings.
namespace KR::XmlBeacons {

KRMODEL_EXPORT extern const char* const a_inputBeacon;     ///< "Input"
KRMODEL_EXPORT extern const char* const a_outputBeacon;    ///< "Output"
KRMODEL_EXPORT extern const char* const a_parameterBeacon; ///< "Parameter"

} // namespace KR::XmlBeacons
