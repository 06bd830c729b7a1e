#pragma once

#include <QByteArray>

#include <cstddef>

namespace KR::Localization {

/// Bytes of memory that reading a translation file takes at most, its own bytes included, found by
/// one look at these without making anything: a few bytes of a hostile file can ask for hundreds.
/// Never less than it takes, for usual files about a fifth more.
std::size_t memoryToRead(const QByteArray& bytes);

/// With what a program has anyway, less than 256. Files that would take more are not read.
constexpr std::size_t a_mostMegabytesToRead = 240;

/// Whether it is more than that, with a look that takes a sixth of the time for usual files.
bool takesTooMuchMemory(const QByteArray& bytes);

} // namespace KR::Localization
