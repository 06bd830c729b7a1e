#include "staging.hpp"

#include <QDir>
#include <QString>

#include <fcntl.h>
#include <unistd.h>

namespace pk::project {

namespace {

// A name may be as long as the file system takes; with a number in front it might be too long.
constexpr std::size_t a_longestName = 200;

Fd create(const StagedFile& file)
{
    Fd fd(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600), file.path());
    if (!fd) {
        throwErrno(file.path());
    }
    return fd;
}

} // namespace

StagedFile::StagedFile(std::shared_ptr<Staging> staging, std::string path)
    : m_staging(std::move(staging)), m_path(std::move(path))
{
}

StagedFile::~StagedFile()
{
    ::unlink(m_path.c_str());
}

Fd StagedFile::open() const
{
    return openPath(m_path, O_RDONLY);
}

bool StagedFile::isSealed()
{
    if (!m_sealed) {
        // A read lease is granted only while nobody has the file open for writing.
        const Fd file(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC), m_path);
        m_sealed = !file || ::fcntl(file.get(), F_SETLEASE, F_RDLCK) == 0;
    }
    return m_sealed;
}

Staging::~Staging()
{
    if (!m_directory.empty()) {
        ::rmdir(m_directory.c_str());
    }
}

std::shared_ptr<StagedFile> Staging::newFile(const std::string& name)
{
    if (m_directory.empty()) {
        std::string path = QDir::tempPath().toStdString() + "/kxproject-XXXXXX";
        if (::mkdtemp(path.data()) == nullptr) {
            throwErrno(path);
        }
        m_directory = path;
    }
    std::string file = m_directory + "/" + std::to_string(++m_lastNumber);
    if (name.size() <= a_longestName) {
        file += "-" + name;
    }
    return std::make_shared<StagedFile>(shared_from_this(), std::move(file));
}

std::shared_ptr<StagedFile> Staging::write(const std::string& name, const char* bytes,
                                           std::size_t size)
{
    auto staged = newFile(name);
    const Fd file = create(*staged);
    // The usual disk, not the seam: what is staged is no part of a save.
    Disk().write(file, bytes, size);
    staged->seal();
    return staged;
}

std::shared_ptr<StagedFile> Staging::copy(const std::string& name, const Fd& from)
{
    auto staged = newFile(name);
    const Fd file = create(*staged);
    Disk().copy(from, file);
    staged->seal();
    return staged;
}

} // namespace pk::project
