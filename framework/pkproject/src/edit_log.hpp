#pragma once

#include "disk.hpp"
#include "index.hpp"
#include "project_path.hpp"
#include "staging.hpp"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pk::project {

/// The kinds of changes that a project can undergo. The numbers stand in the logs of edits.
enum class EditKind : std::uint8_t
{
    MakeDirectory, ///< with those above it that are missing
    PutFile,       ///< creates or replaces a file; makes the directories above it
    PutCopy,       ///< the same with the bytes of a file of the source
    Move,          ///< removes what is at the new path
    Remove,
    SetMetadata
};

/// One change of a project's tree or metadata.
struct Edit
{
    Edit(EditKind k, ProjectPath p) : kind(k), path(std::move(p)) {}

    EditKind kind;
    ProjectPath path;
    ProjectPath to;                     ///< of Move
    std::optional<std::uint16_t> mode;  ///< of what is made or put; none: as Index has it
    std::shared_ptr<StagedFile> staged; ///< of PutFile
    const Entry* original = nullptr;    ///< of PutCopy, an entry of the source
    QString key;                        ///< of SetMetadata
    QString value;                      ///< of SetMetadata
};

/// An Edit as it is in a log.
struct LoggedEdit
{
    EditKind kind;
    std::string path;  ///< of SetMetadata the key
    std::string other; ///< the new path, the staged file's name, the path in the source, the value
    std::optional<std::uint16_t> mode;
    std::optional<std::int64_t> bytes; ///< size of the staged file; none: it was still written

    /// The edit in words, for people.
    QString toText() const;
};

/// The project on disk that edits were made on, and when it was seen to be as it was then.
struct Base
{
    std::string path;      ///< where it really is; empty for a project that was never saved
    Stamp stamp;           ///< of the directory or archive
    std::int64_t time = 0; ///< nanoseconds since the epoch, as the times of files

    static std::int64_t now();
};

/// Something by which one sees later whether a save took effect.
struct Trace
{
    static constexpr Stamp a_nothing{};
    static constexpr Stamp a_directory{0, 0, -1}; ///< a new one

    /// Of what comes to the path: a directory by its inode alone, as it changes with what is in it.
    static Stamp stampOf(const struct stat& info);
    /// Whether that is at the path.
    bool isThere() const;

    std::string path; ///< absolute
    Stamp stamp;      ///< what is at the path once the save took effect
};

/// What a log holds.
struct EditHistory
{
    Base base;
    std::vector<std::vector<LoggedEdit>> operations; ///< each done whole or not at all
    std::vector<Trace> lastSave;                     ///< of a save that was begun last of all

    /// Whether the last save that was begun, and that no edit followed, took effect, so that
    /// nothing of this is unsaved. In doubt it did not: what is saved already is no loss.
    bool isSaved() const;
};

/// The log, in a model's staging directory, of the edits that it was not asked to save yet. It is
/// what a model can be restored from when its program died: the staged files hold the bytes, the
/// log says what is to be done with them. Made when the first edit is.
///
/// What can't be noted, on a full disk, is no reason to refuse an edit: it is noted together with
/// the next one that can be, and pk::log says so. A process that was forked off notes nothing.
class EditLog
{
public:
    static constexpr const char* a_fileName = "log";

    explicit EditLog(std::shared_ptr<Staging> staging);
    ~EditLog();
    EditLog(const EditLog&) = delete;
    EditLog& operator=(const EditLog&) = delete;
    EditLog(EditLog&&) = delete;
    EditLog& operator=(EditLog&&) = delete;

    /// Empties the log: what comes is done on `base`.
    void restart(Base base);

    /// Notes nothing until the next restart.
    void stop();

    /// Says that the base was seen again as it was, after changes that were undone; nothing when
    /// it is another project that was.
    void confirm(Base base);

    /// Notes edits that were made by one operation, and releases the staging directory then.
    void append(const std::vector<Edit>& edits);

    /// Notes that a save is about to take effect, and how one sees whether it did.
    void saving(const std::vector<Trace>& traces);

    /// Reads a log up to the first record that is not whole: the one that was being written when
    /// its program, or the machine, died. Throws FormatError when the first of all is damaged, or
    /// one says what none can, and IoError.
    static EditHistory read(const Fd& file);

private:
    bool isEmpty() const { return m_size == 0 && m_unwritten.isEmpty(); }
    template <class WriteTo>
    void note(WriteTo&& writeTo);
    void flush();

    std::shared_ptr<Staging> m_staging;
    Maker m_maker;
    Base m_base;
    std::string m_path;      ///< empty when there is no file
    std::int64_t m_size = 0; ///< of what is in the file, without a part of a record at the end
    QByteArray m_unwritten;  ///< records for which there was no room in the file
    bool m_isStopped = false;
};

} // namespace pk::project
