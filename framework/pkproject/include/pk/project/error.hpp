#pragma once

#include <pkproject/export.hpp>

#include <stdexcept>

namespace pk::project {

/// What the project store throws. what() names the thing, usually a path, and the reason, in
/// English. An operation that throws has changed nothing, unless its own description says more.
struct PKPROJECT_EXPORT Error : std::runtime_error
{
    using std::runtime_error::runtime_error;
    Error(const Error&) = default;
    Error(Error&&) = default;
    Error& operator=(const Error&) = default;
    Error& operator=(Error&&) = default;
    ~Error() override;
};

/// A file or directory that an operation needs does not exist.
struct PKPROJECT_EXPORT PathNotFound : Error
{
    using Error::Error;
};

/// A path that no project can hold, or that belongs to the store or to a version-control system.
struct PKPROJECT_EXPORT InvalidPath : Error
{
    using Error::Error;
};

/// Something is in the place where an operation was to put something else.
struct PKPROJECT_EXPORT AlreadyExists : Error
{
    using Error::Error;
};

/// Not a project: no directory and no zip archive, or one that is damaged, encrypted or holds what
/// no project can hold.
struct PKPROJECT_EXPORT FormatError : Error
{
    using Error::Error;
};

/// The source was changed by someone else since it was opened; what() lists what changed.
struct PKPROJECT_EXPORT ConflictError : Error
{
    using Error::Error;
};

/// Another program is saving the project, or it can't be found out whether one is.
struct PKPROJECT_EXPORT LockError : Error
{
    using Error::Error;
};

/// An archive exceeds the bounds within which archives are read, or would when it is saved
/// (archive_limits.hpp); or a file has more bytes than are asked for.
struct PKPROJECT_EXPORT LimitError : Error
{
    using Error::Error;
};

/// The operating system refused: no permission, no space, a name that is too long, a broken disk.
struct PKPROJECT_EXPORT IoError : Error
{
    using Error::Error;
};

} // namespace pk::project
