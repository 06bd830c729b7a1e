// What a program that died left beside a project and in its staging directory: a journal or a log
// of edits with bytes of any kind. The project opens or is refused, is the same when it is opened
// again, and nothing but it changes; what can be recovered is saved as it is in memory.
#include "libraries.hpp"

#include <pk/project/error.hpp>

#include <QDataStream>

#include <sys/stat.h>
#include <unistd.h>

using namespace fuzz;
using pk::project::ArchiveFormat;
using pk::project::Error;

namespace {

const bool a_prepared = prepare();

/// A project "project" beside "outside", which nobody may touch.
class Place
{
public:
    Place()
    {
        require(QDir().mkpath(path("project/d/e")) && QDir().mkdir(path("outside")),
                "directories can be made");
        for (const char* const name :
             {"project/a", "project/d/b", "project/d/e/c", "outside/kept"}) {
            putLocal(path(name), name);
        }
    }
    ~Place()
    {
        QFile kept(path("outside/kept"));
        require(
            kept.open(QIODevice::ReadOnly) && kept.readAll() == "outside/kept" &&
                QDir(path("outside")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size() ==
                    1,
            "nothing else is touched");
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    Place(Place&&) = delete;
    Place& operator=(Place&&) = delete;

    QString path(const char* name) const { return m_directory.path(name); }

private:
    TemporaryDirectory m_directory;
};

void checkJournal(const char* name, const QByteArray& bytes)
{
    const Place place;
    const QString journal = place.path(".project.kxjournal");
    require(QDir().mkdir(journal) && QDir().mkdir(journal + q("/1")), "directories can be made");
    putLocal(journal + q("/0"), "item");
    putLocal(journal + q("/1/below"), "below");
    putLocal(journal + q("/") + q(name), bytes);
    try {
        const Contents first = contentsOf(ProjectModel(place.path("project")));
        require(!QFileInfo::exists(journal), "a save is completed once");
        requireSame(printed(contentsOf(ProjectModel(place.path("project")))), printed(first),
                    "a completed save stays as it is");
    } catch (const Error&) {
        require(QFileInfo::exists(journal), "a refused journal stays");
    }
}

QByteArray recordOf(const QByteArray& payload)
{
    QByteArray record;
    QDataStream head(&record, QIODevice::WriteOnly);
    const auto size = static_cast<quint32>(payload.size());
    head << size << qChecksum(payload.constData(), size);
    return record + payload;
}

/// The record with which a log begins, for a project that has changed since.
QByteArray baseRecord(const QString& project)
{
    QByteArray payload;
    QDataStream out(&payload, QIODevice::WriteOnly);
    out << quint8{1} << quint8{2} << project.toUtf8() << quint64{1} << qint64{1} << qint64{1}
        << qint64{1};
    return recordOf(payload);
}

/// Each record begins with its size in one byte, so that the checksums are no obstacle.
QByteArray recordsOf(const QByteArray& bytes)
{
    QByteArray records;
    for (int at = 0; at < bytes.size();) {
        const int size = static_cast<unsigned char>(bytes[at]);
        records += recordOf(bytes.mid(at + 1, size));
        at += 1 + size;
    }
    return records;
}

void checkRecovered(const pk::project::UnsavedWork& work, const Place& place)
{
    try {
        ProjectModel model = ProjectModel::recover(work, true);
        const Contents contents = contentsOf(model);
        model.save(place.path("saved"), ArchiveFormat::Directory, true);
        requireSame(printed(contentsOf(ProjectModel(place.path("saved")))), printed(contents),
                    "what is recovered can be saved");
    } catch (const Error&) {
        // It may say that it does not fit.
    }
    try {
        ProjectModel::discard(work);
        require(!QFileInfo::exists(work.directory), "discarded work is gone");
    } catch (const pk::project::PathNotFound&) {
        // Gone meanwhile.
    }
}

void checkLog(const QByteArray& bytes)
{
    const Place place;
    const QString root = QDir::tempPath() + q("/kxproject-fuzz" + std::to_string(::getpid()));
    require(QDir().mkpath(root + q("/1")) && ::chmod(root.toUtf8().constData(), 0700) == 0,
            "a staging directory can be made");
    putLocal(root + q("/lock"), {});
    putLocal(root + q("/1/1-file"), "staged");
    putLocal(root + q("/1/log"), baseRecord(place.path("project")) + recordsOf(bytes));
    const Contents before = contentsOf(ProjectModel(place.path("project")));
    for (const auto& work : ProjectModel::recoverable(place.path("project"))) {
        if (work.directory.startsWith(root)) {
            checkRecovered(work, place);
        }
    }
    requireSame(printed(contentsOf(ProjectModel(place.path("project")))), printed(before),
                "recovering leaves the project alone");
    QDir(root).removeRecursively();
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const QByteArray bytes = bytesOf(data + 1, size - 1);
    switch (data[0] % 3) {
    case 0:
        checkJournal("collect", bytes);
        break;
    case 1:
        checkJournal("put", bytes);
        break;
    default:
        checkLog(bytes);
    }
    return 0;
}
