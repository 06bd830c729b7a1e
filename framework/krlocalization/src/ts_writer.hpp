#pragma once

#include <kr/localization/translator.hpp>

#include <QByteArray>

namespace KR::Localization {

/// Writes a file of Qt Linguist as TS::translatorTo() describes it.
QByteArray writeTs(const Translator& translator, bool withoutObsolete);

} // namespace KR::Localization
