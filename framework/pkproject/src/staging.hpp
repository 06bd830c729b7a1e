#pragma once

#include "disk.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace pk::project {

class Staging;

/// The process that made something in a staging directory. One that is forked off has it only on
/// loan, and removes nothing of it.
class Maker
{
public:
    bool isHere() const { return m_process == ::getpid(); }

private:
    pid_t m_process = ::getpid();
};

/// One file of a staging directory: the bytes of a project's file since somebody wrote it. Written
/// by whoever made it and by nobody after that, so that any number of entries can share it; given
/// back to the directory with its last owner.
class StagedFile
{
public:
    StagedFile(std::shared_ptr<Staging> staging, std::string path);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    StagedFile(StagedFile&&) = delete;
    StagedFile& operator=(StagedFile&&) = delete;

    const std::string& path() const { return m_path; }
    /// Its name in the staging directory.
    std::string name() const { return m_path.substr(m_path.rfind('/') + 1); }
    bool isIn(const Staging& staging) const { return m_staging.get() == &staging; }

    /// Opens the file for reading.
    Fd open() const;

    /// Says that nobody has the file open for writing any more.
    void seal() { m_sealed = true; }

    /// Says that the file has been handed out as a stream that writes to it.
    void unseal() { m_sealed = false; }

    /// Says that somebody was told the path and may come back to it.
    void keepPath() { m_pathIsKept = true; }
    bool isPathKept() const { return m_pathIsKept; }

    /// Says that the log of edits names the file, or is about to.
    void note() { m_isNoted = true; }
    bool isNoted() const { return m_isNoted; }

    /// Whether its bytes can be written over once nobody needs it: nobody else knows the file.
    bool isUnknown() const;

    /// How many bytes it has; nothing when somebody may still write it. Throws IoError.
    std::optional<std::int64_t> size() const;

    /// Whether the bytes can't change any more. For a file handed out as a stream the kernel is
    /// asked whether the stream is still open; where it can't tell, the answer is no.
    bool isSealed();

private:
    std::shared_ptr<Staging> m_staging;
    std::string m_path;
    Maker m_maker;
    bool m_sealed = false;
    bool m_pathIsKept = false;
    bool m_isNoted = false;
    unsigned m_forks; ///< how often the process had been forked when it was made
};

/// The private directory of this process below the system's place for temporary files, with one
/// directory for each Staging in it. The process holds the lock on a file in it, by which others
/// tell what living programs have there from what dead ones left.
class StagingRoot
{
public:
    static constexpr const char* a_prefix = "kxproject-";
    static constexpr const char* a_lockFile = "lock";

    /// The one of this process, made when there is none. Throws IoError.
    static std::shared_ptr<StagingRoot> get();
    ~StagingRoot();
    StagingRoot(const StagingRoot&) = delete;
    StagingRoot& operator=(const StagingRoot&) = delete;
    StagingRoot(StagingRoot&&) = delete;
    StagingRoot& operator=(StagingRoot&&) = delete;

    /// Makes a directory in it and gives its path. Throws IoError.
    std::string makeDirectory();

private:
    explicit StagingRoot(std::string place);
    bool make();

    std::string m_place; ///< the directory that this one is in
    std::string m_path;
    Fd m_lock;
    Maker m_maker;
    std::uint64_t m_lastNumber = 0;
};

/// The staging directory of a model, made when the first file is and removed with the last. Held by
/// the model and by every staged file in it.
class Staging : public std::enable_shared_from_this<Staging>
{
public:
    static std::shared_ptr<Staging> make() { return std::shared_ptr<Staging>(new Staging); }
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;
    Staging(Staging&&) = delete;
    Staging& operator=(Staging&&) = delete;

    /// The directory, made when this process has not done so yet. Throws IoError.
    const std::string& directory();

    /// A place for a new file, which the caller creates; its name begins with a number and ends in
    /// `name` when that is short enough. Throws IoError.
    std::shared_ptr<StagedFile> newFile(const std::string& name);

    /// A new, sealed file with the given bytes. Throws IoError.
    std::shared_ptr<StagedFile> write(const std::string& name, const char* bytes, std::size_t size);

    /// A new, sealed file with the bytes that follow the position of `from`. Throws IoError.
    std::shared_ptr<StagedFile> copy(const std::string& name, const Fd& from);

    /// A new, sealed file with the bytes of the file at `path`, a sealed one of another staging
    /// directory: the same file under a second name where the file system has that. Throws IoError.
    std::shared_ptr<StagedFile> link(const std::string& name, const std::string& path);

    /// Takes back a file that nobody needs any more. One that nobody knows is kept, empty, for the
    /// next bytes that are written: a file that is written again and again would otherwise be one
    /// new and one deleted file each time, and ext4 looks at all that were deleted in the last
    /// minutes when it needs a new one.
    void takeBack(const StagedFile& file) noexcept;

    /// From here to release(), files that the log of edits names stay as they are when they are
    /// taken back: until it says what became of them, they are what a recovery would look for.
    void hold() { m_isHolding = true; }
    void release() noexcept;

private:
    Staging() = default;
    void dispose(const std::string& path, bool isUnknown) noexcept;
    Fd takeSpare(const std::string& path);

    std::shared_ptr<StagingRoot> m_root;
    Maker m_maker; ///< of the directory
    std::string m_directory;
    struct Held
    {
        std::string path;
        bool isUnknown;
    };
    std::vector<Held> m_held;
    bool m_isHolding = false;
    std::string m_spare; ///< path of an empty file that nobody needs; of none at times
    std::uint64_t m_lastNumber = 0;
};

} // namespace pk::project
