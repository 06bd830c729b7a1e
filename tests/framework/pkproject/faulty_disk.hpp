#pragma once

#include "disk.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace pk::project::test {

/// Counts the operations on the disk while it lives, and makes some of them fail.
class FaultyDisk : public Disk
{
public:
    FaultyDisk() { Disk::replace(this); }
    ~FaultyDisk() override { Disk::replace(nullptr); }
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;
    FaultyDisk(FaultyDisk&&) = delete;
    FaultyDisk& operator=(FaultyDisk&&) = delete;

    /// Operation number `number`, from 0, fails with `error`; `onwards` says that all later ones
    /// do.
    void failAt(int number, int error, bool onwards)
    {
        m_failing = number;
        m_error = error;
        m_onwards = onwards;
    }
    /// All operations from number `number` on fail too.
    void failFrom(int number) { m_failingFrom = number; }
    /// The process ends, as if it was killed, when it comes to operation `number`, from 0; half of
    /// what that would write is written.
    void dieAt(int number) { m_dying = number; }
    /// The exit code of a process that ended so.
    static constexpr int a_died = 42;
    /// Look number `number`, from 0, fails with `error`; looks are not operations.
    void failLookAt(int number, int error)
    {
        m_failingLook = number;
        m_lookError = error;
    }
    int looks() const { return m_looks; }
    /// From now on nothing fails.
    void heal()
    {
        m_failing = -1;
        m_failingLook = -1;
    }

    int count() const { return static_cast<int>(m_log.size()); }
    const std::vector<std::string>& log() const { return m_log; }

    Fd create(const std::string& path, mode_t mode) override
    {
        step("create " + path, path);
        return Disk::create(path, mode);
    }
    void write(const Fd& file, const char* bytes, std::size_t size) override
    {
        if (count() == m_dying) {
            Disk::write(file, bytes, size / 2);
        }
        step("write " + file.path(), file.path());
        Disk::write(file, bytes, size);
    }
    void copy(const Fd& from, const Fd& to) override
    {
        step("copy " + to.path(), to.path());
        Disk::copy(from, to);
    }
    void sync(const Fd& file) override { step("sync " + file.path(), file.path()); }
    void syncFileSystem(const std::string& path) override { step("syncfs " + path, path); }
    void mkdir(const std::string& path, mode_t mode) override
    {
        step("mkdir " + path, path);
        Disk::mkdir(path, mode);
    }
    void chmod(const std::string& path, mode_t mode) override
    {
        step("chmod " + path, path);
        Disk::chmod(path, mode);
    }
    void setTime(const std::string& path, std::int64_t time) override
    {
        step("time " + path, path);
        Disk::setTime(path, time);
    }
    void rename(const std::string& from, const std::string& to) override
    {
        step("rename " + from + " " + to, to);
        Disk::rename(from, to);
    }
    void renameNew(const std::string& from, const std::string& to) override
    {
        step("renameNew " + from + " " + to, to);
        Disk::renameNew(from, to);
    }
    void exchange(const std::string& a, const std::string& b) override
    {
        step("exchange " + a + " " + b, b);
        Disk::exchange(a, b);
    }
    void link(const std::string& from, const std::string& to) override
    {
        step("link " + from + " " + to, to);
        Disk::link(from, to);
    }
    void unlink(const std::string& path) override
    {
        step("unlink " + path, path);
        Disk::unlink(path);
    }
    void rmdir(const std::string& path) override
    {
        step("rmdir " + path, path);
        Disk::rmdir(path);
    }

    int refusal(const std::string& /*path*/) override
    {
        return m_looks++ == m_failingLook ? m_lookError : 0;
    }

protected:
    /// What a failing operation does; errno is set.
    virtual void fail(const std::string& path) { throwErrno(path); }

private:
    void step(const std::string& what, const std::string& path)
    {
        const int number = count();
        if (number == m_dying) {
            ::_exit(a_died);
        }
        m_log.push_back(what);
        if (m_failing >= 0 && (number == m_failing || (m_onwards && number > m_failing) ||
                               (m_failingFrom >= 0 && number >= m_failingFrom))) {
            errno = m_error;
            fail(path);
        }
    }

    std::vector<std::string> m_log;
    int m_failing = -1;
    int m_failingFrom = -1;
    int m_failingLook = -1;
    int m_lookError = 0;
    int m_looks = 0;
    int m_dying = -1;
    int m_error = 0;
    bool m_onwards = false;
};

/// Runs `action` in another process, which ends at operation `number` of the disk. Gives whether
/// there was such an operation.
template <class Action>
bool killIn(const Action& action, int number)
{
    const pid_t child = ::fork();
    if (child == 0) {
        FaultyDisk disk;
        disk.dieAt(number);
        [&]() noexcept { action(); }();
        ::_exit(0);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    const bool died = WIFEXITED(status) && WEXITSTATUS(status) == FaultyDisk::a_died;
    EXPECT_TRUE(died || status == 0) << status;
    return died;
}

} // namespace pk::project::test
