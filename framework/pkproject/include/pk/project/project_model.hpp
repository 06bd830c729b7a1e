#pragma once

#include <pk/project/archive_limits.hpp>
#include <pk/project/error.hpp>
#include <pk/project/unsaved_work.hpp>
#include <pkproject/export.hpp>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <memory>

namespace pk::project {

class Store;

/// The form in which a project is saved. Unspecified and Source keep the form of the current
/// source; a project without one becomes a directory.
enum class ArchiveFormat : int
{
    Unspecified = 0,
    Source = 1,
    Directory = 2,
    Zip = 7
};

/// A project: a tree of files and directories with a little metadata, edited in private and saved
/// as a whole.
///
/// A model holds an index of the project in memory. The place that it was opened from or last saved
/// to, its *source*, is only read until the next save; whatever is written in between goes to a
/// private staging directory, which the model removes when it is destroyed. Queries read the index
/// alone. Bytes of files that were not rewritten are read from the source when they are asked for.
/// A log of the edits lies in the staging directory too: a program that dies leaves both, and
/// recoverable() and recover() give back what it had not saved. Where an edit can't be noted in the
/// log, on a full disk, it is made all the same, with a warning in pk::log, and is noted with the
/// next one that can be. A process that is forked off notes nothing and removes nothing of it.
///
/// Paths are relative to the project's top and use "/". A leading "./", a trailing "/", doubled "/"
/// and "." components are normalised away; the empty path is the top itself. An absolute path, a
/// component "..", a NUL, a name that begins with a byte order mark, what is no valid Unicode, and
/// more than 4,096 bytes or 256 components are refused: fopen() gives null, hasFile() false, every
/// other operation throws InvalidPath. File names are UTF-8 and compared byte by byte.
///
/// No part of the project are, at its top level, the version-control entries ".git", ".hg" and
/// ".svn", and the store's own metadata file ".kxproject": they are never found, listed, read,
/// moved, exported or imported, nothing can be put there (InvalidPath), and a save leaves
/// version-control entries of its target as they are. No part of a directory project either, and
/// never followed, are symbolic links, special files, names that are not UTF-8, directories that
/// can't be read, and what has a path that is refused; opening logs a warning for each.
///
/// Operations that put something at a path make the missing directories above it, except fopen()
/// and mkdir() without `recursive`. New files and directories get the modes that the process's
/// umask leaves; a file that is rewritten keeps its mode.
///
/// A model that was moved from may only be assigned to or destroyed. Used from one thread at a
/// time. Models are independent of each other, also when they were opened on the same place: the
/// first save wins, the other model's save throws ConflictError and its edits can still be saved
/// elsewhere.
class PKPROJECT_EXPORT ProjectModel
{
public:
    /// An empty project without a source.
    ProjectModel();

    /// Opens a directory, or a zip archive, at a local path. A save that another program began
    /// there and did not end is completed or undone first, whichever leaves a whole project.
    /// A source that can't be written opens all the same. Throws PathNotFound for a missing path,
    /// FormatError for what is no project, LimitError for an archive out of bounds, LockError when
    /// another program keeps saving the project, IoError for what can't be read.
    explicit ProjectModel(const QString& path);

    /// The same with other bounds for archives. They hold for what is opened here and for every
    /// archive that the model is saved to.
    ProjectModel(const QString& path, const ArchiveLimits& limits);

    ~ProjectModel();
    ProjectModel(ProjectModel&& other) noexcept;
    ProjectModel& operator=(ProjectModel&& other) noexcept;
    ProjectModel(const ProjectModel&) = delete;
    ProjectModel& operator=(const ProjectModel&) = delete;

    /// The absolute local path that the project was opened from or last saved to, without a
    /// trailing "/"; empty when there is none.
    QString getSourcePath() const;

    /// The metadata value of a key; empty when absent.
    QString getMetadata(const QString& key) const;

    /// Sets a metadata value; an empty one removes the key. Lone surrogates become "?" in both.
    /// Reaches the disk with the next save.
    void setMetadata(const QString& key, const QString& value);

    /// What is in `directory`, as names relative to it, sorted by their UTF-8 bytes: the files,
    /// with `includeDirectories` the directories too, with `directoriesOnly` these alone. With
    /// `recursive` also what is below, as "images/a.png". Empty for a missing directory.
    QStringList getFileList(const QString& directory, bool includeDirectories, bool recursive,
                            bool directoriesOnly) const;

    /// Whether `path` is a file of the project; false for a directory.
    bool hasFile(const QString& path) const;

    /// Whether opening the source directory left out what is at `path`, or a directory above it,
    /// because it is a link, is neither file nor directory, has a name that no project can have, or
    /// can't be read. Somebody knows what is there: it is not gone. It moves and goes with its
    /// directory, is not copied, not saved elsewhere, and does not count where the project has a
    /// file of its own.
    bool isLeftOut(const QString& path) const;

    /// Whether it left out anything in a directory, at any depth, or the directory.
    bool hasLeftOut(const QString& directory) const;

    /// Opens a file as the C library's fopen() does, with any of its modes; null on failure. A file
    /// opened for writing replaces the project's file at once, with what is flushed; its directory
    /// must exist. The caller closes the stream, which stays valid whatever happens to the model:
    /// what is written to it after a save is an edit since that save.
    FILE* fopen(const QString& path, const QString& mode);

    /// The bytes of a file; empty when it does not exist or can't be read.
    QByteArray readFile(const QString& path) const;

    /// The bytes of a file, of which there may be `most`. Throws PathNotFound, LimitError when
    /// there are more, IoError, and FormatError when the archive that holds it is damaged.
    QByteArray getFileBytes(const QString& path, std::int64_t most) const;

    /// How many bytes a file has, or had when the project was opened if it was not edited since:
    /// nothing is read. Throws PathNotFound, and IoError for an edited one.
    std::int64_t getFileSize(const QString& path) const;

    /// Creates or replaces a file. Throws AlreadyExists when a directory is there.
    void writeFile(const QString& path, const QByteArray& bytes);

    /// An absolute local path at which the file's bytes can be read until the model is destroyed or
    /// the file is next changed, moved or removed (a file that was moved since the last save, until
    /// the next); an archive's file is unpacked for it. Never to be written to. Throws PathNotFound
    /// when there is no such file.
    QString getFileLocalPath(const QString& path) const;

    /// Makes a directory; an existing one is no error. Without `recursive` the directory above it
    /// must exist (PathNotFound). Throws AlreadyExists when a file is in the way.
    void mkdir(const QString& path, bool recursive);

    /// Moves a file or directory to a new path. Throws PathNotFound when `from` is missing,
    /// AlreadyExists when `to` exists and `overwrite` is false, InvalidPath when `to` lies inside
    /// `from` or `from` inside `to`. With `overwrite` what was at `to` is removed. The cost does
    /// not depend on what is below `from`.
    void move(const QString& from, const QString& to, bool overwrite);

    /// Removes a file, or a directory with all it holds; the empty path empties the project.
    /// Throws PathNotFound.
    void remove(const QString& path);

    /// Copies `from` of `source` to `to` in this project: a file, or a directory with the files in
    /// it and, with `recursive`, all that is below. `source` may be this model, and `to` may lie
    /// inside `from`: what is copied is what was there before. A directory that exists at `to` is
    /// merged with, its files of the same name replaced. Names that may not stand at a project's
    /// top level are left out, with a warning in the log, when they would get there. Modes are
    /// kept. Throws PathNotFound, and AlreadyExists where a file would replace a directory or a
    /// directory a file.
    void importFile(const ProjectModel& source, const QString& from, const QString& to,
                    bool recursive);

    /// Copies `from`, as importFile() does, to a local path, merging with a directory that exists
    /// there (which may be reached through a link). Nothing outside `localPath` is written: a
    /// symbolic link below it is never followed, one in the way of a directory is an IoError, one
    /// in the way of a file is replaced. A file is replaced whole or not at all. The directories
    /// above `localPath` must exist. Throws PathNotFound and IoError; what was copied before a
    /// failure stays.
    void exportFile(const QString& from, const QString& localPath, bool recursive) const;

    /// Saves the project, all or nothing, and makes the saved place its source.
    ///
    /// An empty `path` is the current source. `overwrite` false refuses an existing target, the
    /// source included (AlreadyExists). With `overwrite` the project takes the place of whatever is
    /// at the target: of a directory with all it holds, a project or not, except version-control
    /// entries at its top; of a file. What is no part of the project does not come along to another
    /// place or form, and where it is in the way of a save in place (a symbolic link of a new
    /// file's name) that throws AlreadyExists. The top directory's own mode is the target's. A
    /// target inside the project itself, or one that holds it, is refused (InvalidPath). When the
    /// target is the source and someone else changed it since it was opened, ConflictError lists
    /// what changed. A name that leads out of an archive where backslashes separate names or "C:"
    /// is a drive ("C:/a", or ".." and a backslash) is no error in a directory, but InvalidPath for
    /// an archive; a path that moving made too long is InvalidPath in both; and an archive that the
    /// model could not open within its limits, or with thousands of names that were made to look
    /// alike to the archive library, is LimitError.
    /// Throws FormatError when an archive that is the source is damaged where it has to be read.
    /// Throws LockError when another program is saving the target, IoError with path and reason for
    /// everything the operating system refuses. After an error the target and the model are as
    /// before, and a later save, there or elsewhere, works.
    ///
    /// Saving to the source directory costs in proportion to what was changed since the last save;
    /// files whose bytes are as before are not touched. Saving to the source archive copies
    /// unchanged entries as they are.
    void save(const QString& path, ArchiveFormat format, bool overwrite);

    /// What programs that died had edited and not saved in the project at a local path, the latest
    /// last; for an empty path, in projects that were never saved. Looks in the place for temporary
    /// files of this process, at what this user's programs left there; what belongs to a living one
    /// is never touched, and edits that change nothing are none. A save that was interrupted at the
    /// path is completed or undone first, and what dead programs left without need is removed.
    /// Costs a look at each process's directory there, and at each file of the project when there
    /// is work to be recovered. A log of edits that is damaged is left, with a warning in pk::log.
    /// Throws IoError, and LockError when another program keeps saving the project.
    static QList<UnsavedWork> recoverable(const QString& path);

    /// A model of the project as the program that died had it: the project is opened and the edits
    /// are made again, so that a save gives what that program would have saved. The work stays
    /// recoverable until it is discarded, which should follow the save. With `evenIfChanged` the
    /// edits are made on a project that someone else changed since as well; what was changed in
    /// files that they replace or remove is then lost with the save. Files whose bytes were lost,
    /// in a power failure, are then left as the project has them, with a warning each in pk::log.
    /// Throws ConflictError, which lists the changes, for a changed project otherwise, or when an
    /// edit does not fit there any more (the directory of the work still has the bytes);
    /// PathNotFound for what is not recoverable (any more), LockError for what a living program
    /// has, IoError for bytes that are lost, and what opening throws.
    static ProjectModel recover(const UnsavedWork& work, bool evenIfChanged = false,
                                const ArchiveLimits& limits = {});

    /// Removes what a program that died left, and with it the possibility to recover it. Throws
    /// PathNotFound, LockError and IoError.
    static void discard(const UnsavedWork& work);

private:
    explicit ProjectModel(std::unique_ptr<Store> store);

    std::unique_ptr<Store> m_store;
};

} // namespace pk::project
