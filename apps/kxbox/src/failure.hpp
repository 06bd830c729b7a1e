#pragma once

#include <stdexcept>

namespace kxbox {

/// Why a command can't be done. what() names the thing and the reason, for the user.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What is wrong with the words of a command line.
struct UsageError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

} // namespace kxbox
