// Makes the disk of a program that is linked with it a slow one, as real ones are, in the place of
// the C library's functions: else whoever ends the program from outside hardly ever hits the moment
// between two changes.
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

template <class... Arguments>
int slowly(long call, Arguments... arguments) noexcept
{
    const struct timespec aWhile = {0, 100'000};
    ::nanosleep(&aWhile, nullptr);
    return static_cast<int>(::syscall(call, arguments...));
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): theirs are reserved names.

#define KX_INSTEAD extern "C" __attribute__((visibility("default"))) int

KX_INSTEAD fsync(int file)
{
    return slowly(SYS_fsync, file);
}

KX_INSTEAD syncfs(int file) noexcept
{
    return slowly(SYS_syncfs, file);
}

KX_INSTEAD mkdir(const char* path, mode_t mode) noexcept
{
    return slowly(SYS_mkdirat, AT_FDCWD, path, mode);
}

KX_INSTEAD rename(const char* from, const char* to) noexcept
{
    return slowly(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0U);
}

KX_INSTEAD renameat2(int fromAt, const char* from, int toAt, const char* to,
                     unsigned flags) noexcept
{
    return slowly(SYS_renameat2, fromAt, from, toAt, to, flags);
}

KX_INSTEAD unlink(const char* path) noexcept
{
    return slowly(SYS_unlinkat, AT_FDCWD, path, 0);
}

KX_INSTEAD rmdir(const char* path) noexcept
{
    return slowly(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)
