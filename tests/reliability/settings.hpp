#pragma once

#include <QByteArray>
#include <QString>

#include <iostream>
#include <random>

namespace reliability {

/// The number in an environment variable, or the usual one.
inline unsigned numberFromEnvironment(const char* name, unsigned usual)
{
    bool isNumber = false;
    const unsigned number = qEnvironmentVariable(name).toUInt(&isNumber);
    return isNumber ? number : usual;
}

/// What a test's random choices begin with: another number each time, which is printed, unless one
/// is asked for.
inline unsigned chooseSeed()
{
    const unsigned seed = numberFromEnvironment("KX_TORTURE_SEED", std::random_device()());
    std::cout << "KX_TORTURE_SEED=" << seed << std::endl;
    return seed;
}

} // namespace reliability
