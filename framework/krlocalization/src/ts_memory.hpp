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

inline bool takesTooMuchMemory(const QByteArray& bytes)
{
    return memoryToRead(bytes) > a_mostMegabytesToRead << 20U;
}

} // namespace KR::Localization
