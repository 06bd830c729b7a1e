#pragma once

#include <kr/localization/translator.hpp>

#include <QByteArray>

namespace KR::Localization {

/// Reads a file of Qt Linguist as TS::translatorFrom() describes it; throws DamagedFile.
///
/// The file's nesting is fixed, so the reader goes down it with one function per level, and deeper
/// files are refused without recursion.
Translator readTs(const QByteArray& bytes);

} // namespace KR::Localization
