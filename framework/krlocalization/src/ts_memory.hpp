#pragma once

#include <QByteArray>

#include <cstddef>

namespace KR::Localization {

/// Bytes of memory that reading a translation file takes at most, its own bytes included, found by
/// one look at these without making anything: a few bytes of a hostile file can ask for hundreds.
/// Never less than it takes, for usual files about a fifth more.
std::size_t memoryToRead(const QByteArray& bytes);

} // namespace KR::Localization
