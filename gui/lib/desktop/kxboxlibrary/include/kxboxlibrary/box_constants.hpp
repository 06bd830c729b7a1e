#pragma once

#include <kxboxlibrary/export.hpp>

/// The names that box files, box libraries and behaviour projects are written with.
namespace KX::BoxConstants {

// The tags of elements in a box file.
KXBOXLIBRARY_EXPORT extern const char* const a_metaDatasBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_timelineBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_behaviorLayerBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_motionLayerBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_behaviorKeyframeBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_motionKeyframeBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_diagramBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_boxBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_linkBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_inputBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_outputBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_parameterBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_resourceBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_metaDataBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_actuatorTreeBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_actuatorListBeacon;
KXBOXLIBRARY_EXPORT extern const char* const a_waveformListBeacon;

/// The root element of a behaviour project's box file, and of the editor's other project files.
KXBOXLIBRARY_EXPORT extern const char* const a_projectTag;
/// The namespace of that root element. It only names the vocabulary; nothing is at the address,
/// whose host is therefore of the domain that is reserved for such uses (RFC 2606).
KXBOXLIBRARY_EXPORT extern const char* const a_projectXsd;
/// The namespace in files of former versions, read but never written.
KXBOXLIBRARY_EXPORT extern const char* const a_legacyProjectXsd;
/// The root element of a box file in a library.
KXBOXLIBRARY_EXPORT extern const char* const a_boxBhxBeacon;

// The metadata "Type" and "Version" of projects.
KXBOXLIBRARY_EXPORT extern const char* const a_behaviorProjectType;
KXBOXLIBRARY_EXPORT extern const char* const a_behaviorProjectVersion;
KXBOXLIBRARY_EXPORT extern const char* const a_boxLibraryProjectType;
KXBOXLIBRARY_EXPORT extern const char* const a_boxLibraryProjectVersion;

/// The directory at a library's top that holds its translation files.
KXBOXLIBRARY_EXPORT extern const char* const a_boxLibraryTranslations;
/// What the context of every message of a library's boxes begins with, before ":".
KXBOXLIBRARY_EXPORT extern const char* const a_boxLibraryContext;

// Versions of box files.
KXBOXLIBRARY_EXPORT extern const int a_defaultBhxVersion;     ///< of a file that does not say
KXBOXLIBRARY_EXPORT extern const int a_lastVerboseBhxVersion; ///< for editors; not used here
KXBOXLIBRARY_EXPORT extern const int a_currentBhxVersion;     ///< written, and alone accepted

} // namespace KX::BoxConstants
