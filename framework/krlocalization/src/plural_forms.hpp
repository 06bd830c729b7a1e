#pragma once

#include <QString>

namespace KR::Localization {

/// How many plural forms Linguist's tools write for a language: 1 for one they don't know.
///
/// `languageCode` is an ISO 639 code, possibly followed by a script, country or encoding after one
/// of "_", "-", "." and "@"; upper and lower case are the same.
int pluralForms(const QString& languageCode);

} // namespace KR::Localization
