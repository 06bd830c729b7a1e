#pragma once

#include "disk.hpp"

#include <memory>
#include <string>

namespace pk::project {

class Staging;

/// One file of a staging directory: the bytes of a project's file since somebody wrote it. Written
/// by whoever made it and by nobody after that, so that any number of models can share it; removed
/// from the disk with its last owner.
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

    /// Opens the file for reading.
    Fd open() const;

    /// Says that nobody has the file open for writing any more.
    void seal() { m_sealed = true; }

    /// Says that the file has been handed out as a stream that writes to it.
    void unseal() { m_sealed = false; }

    /// Says that somebody was told the path and may come back to it.
    void keepPath() { m_pathIsKept = true; }
    bool isPathKept() const { return m_pathIsKept; }

    /// Whether the bytes can't change any more. For a file handed out as a stream the kernel is
    /// asked whether the stream is still open; where it can't tell, the answer is no.
    bool isSealed();

private:
    std::shared_ptr<Staging> m_staging;
    std::string m_path;
    bool m_sealed = false;
    bool m_pathIsKept = false;
};

/// A private directory below the system's place for temporary files, made when the first file is
/// and removed with the last. Held by a model and by every staged file in it.
class Staging : public std::enable_shared_from_this<Staging>
{
public:
    static std::shared_ptr<Staging> make() { return std::shared_ptr<Staging>(new Staging); }
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;
    Staging(Staging&&) = delete;
    Staging& operator=(Staging&&) = delete;

    /// A place for a new file, which the caller creates; its name ends in `name` when that is short
    /// enough. Throws IoError.
    std::shared_ptr<StagedFile> newFile(const std::string& name);

    /// A new, sealed file with the given bytes. Throws IoError.
    std::shared_ptr<StagedFile> write(const std::string& name, const char* bytes, std::size_t size);

    /// A new, sealed file with the bytes that follow the position of `from`. Throws IoError.
    std::shared_ptr<StagedFile> copy(const std::string& name, const Fd& from);

private:
    Staging() = default;
    std::string m_directory;
    std::uint64_t m_lastNumber = 0;
};

} // namespace pk::project
