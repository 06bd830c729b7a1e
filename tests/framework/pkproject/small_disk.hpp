#pragma once

#include "support.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pk::project::test {

/// A file system of 256 KiB of its own, which only the process that mounts it sees.
class SmallDisk
{
public:
    /// Runs `body` in another process that has the disk mounted; false where that is not permitted.
    /// What the body expects and does not find fails the test.
    static bool with(const std::function<void(SmallDisk& disk)>& body)
    {
        constexpr int a_forbidden = 77;
        const TemporaryDirectory directory;
        const pid_t child = ::fork();
        if (child == 0) {
            SmallDisk disk(directory.path().toStdString());
            if (!disk.mount()) {
                ::_exit(a_forbidden);
            }
            [&]() noexcept { body(disk); }();
            static_cast<void>(std::fflush(nullptr));
            ::_exit(testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == a_forbidden) {
            return false;
        }
        EXPECT_EQ(status, 0) << "see what the other process printed";
        return true;
    }

    QString path(const char* name) const { return q(m_path + "/" + name); }

    /// Takes all room but so many bytes.
    void fillTo(std::size_t free)
    {
        makeRoom();
        struct statvfs info = {};
        EXPECT_EQ(::statvfs(m_path.c_str(), &info), 0);
        const std::size_t room = info.f_bavail * info.f_bsize;
        const Fd file(::open(filler().c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600), filler());
        EXPECT_EQ(::posix_fallocate(file.get(), 0, static_cast<off_t>(room - std::min(free, room))),
                  free < room ? 0 : EINVAL);
    }
    void makeRoom() { ::unlink(filler().c_str()); }

    /// Makes it read-only, or writable again.
    void setReadOnly(bool readOnly)
    {
        const unsigned long flags = MS_REMOUNT | (readOnly ? 0UL + MS_RDONLY : 0UL);
        EXPECT_EQ(::mount("small", m_path.c_str(), "tmpfs", flags, a_size), 0);
    }

private:
    static constexpr const char* a_size = "size=256k";

    explicit SmallDisk(std::string path) : m_path(std::move(path)) {}
    std::string filler() const { return m_path + "/filler"; }

    bool mount() const
    {
        const uid_t user = ::geteuid();
        const gid_t group = ::getegid();
        if (::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) {
            return false;
        }
        if (user != 0) {
            putSystem("/proc/self/setgroups", "deny");
            putSystem("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
            putSystem("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
        }
        return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("small", m_path.c_str(), "tmpfs", 0, a_size) == 0;
    }
    static void putSystem(const char* path, const std::string& text)
    {
        const Fd file(::open(path, O_WRONLY | O_CLOEXEC), path);
        if (file && ::write(file.get(), text.data(), text.size()) < 0) {
            errno = 0; // mounting will fail then
        }
    }

    std::string m_path;
};

} // namespace pk::project::test
