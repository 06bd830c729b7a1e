#pragma once

#include <pkcore/export.hpp>

#include <cstdio>

/// What the operating system does, with paths in UTF-8.
namespace pk::os {

/// The C library's fopen() for a UTF-8 `path`. The stream is not inherited by programs that this
/// one starts. Null, with errno set, when the file can't be opened or an argument is null.
PKCORE_EXPORT FILE* fopen(const char* path, const char* mode);

} // namespace pk::os
