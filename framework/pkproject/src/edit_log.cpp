#include "edit_log.hpp"

#include "warn.hpp"

#include <pk/project/error.hpp>

#include <QByteArray>
#include <QDataStream>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace pk::project {

namespace {

// A log is a sequence of records: a head, which is the size of the payload in bytes (32 bits) and
// its checksum (16 bits, qChecksum()), and the payload, which begins with its kind; all in Qt's
// data stream format.
enum class RecordKind : std::uint8_t
{
    Base = 1,
    Edits = 2,
    Saving = 3
};

constexpr std::uint8_t a_version = 2;
constexpr std::size_t a_headSize = sizeof(quint32) + sizeof(quint16);
constexpr std::uint16_t a_noMode = 0xffff;
constexpr std::int64_t a_noSize = -1;

QByteArray bytesOf(const std::string& text)
{
    return QByteArray::fromRawData(text.data(), static_cast<int>(text.size()));
}

void writeStamp(QDataStream& out, const Stamp& stamp)
{
    out << quint64{stamp.id} << qint64{stamp.time} << qint64{stamp.bytes};
}

void writeBase(QDataStream& out, const Base& base)
{
    out << static_cast<quint8>(RecordKind::Base) << a_version << bytesOf(base.path);
    writeStamp(out, base.stamp);
    out << qint64{base.time};
}

template <class WriteTo>
QByteArray recordOf(WriteTo&& writeTo)
{
    QByteArray payload;
    QDataStream out(&payload, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_12);
    writeTo(out);
    QByteArray record;
    QDataStream head(&record, QIODevice::WriteOnly);
    const auto size = static_cast<quint32>(payload.size());
    head << size << qChecksum(payload.constData(), size);
    return record + payload;
}

LoggedEdit logged(const Edit& edit)
{
    switch (edit.kind) {
    case EditKind::PutFile:
        return {edit.kind, joinPath(edit.path), edit.staged->name(), edit.mode,
                edit.staged->size()};
    case EditKind::PutCopy:
        return {edit.kind, joinPath(edit.path), Index::sourcePath(*edit.original), edit.mode, {}};
    case EditKind::Move:
        return {edit.kind, joinPath(edit.path), joinPath(edit.to), {}, {}};
    case EditKind::SetMetadata:
        return {edit.kind, edit.key.toStdString(), edit.value.toStdString(), {}, {}};
    case EditKind::MakeDirectory:
    case EditKind::Remove:
        break;
    }
    return {edit.kind, joinPath(edit.path), {}, edit.mode, {}};
}

class Reader
{
public:
    Reader(QByteArray payload, std::string path)
        : m_payload(std::move(payload)), m_path(std::move(path)), m_in(m_payload)
    {
        m_in.setVersion(QDataStream::Qt_5_12);
    }

    template <class Number>
    Number number()
    {
        Number value{};
        m_in >> value;
        return value;
    }

    std::string text()
    {
        QByteArray bytes;
        m_in >> bytes;
        return bytes.toStdString();
    }

    void require(bool condition) const
    {
        if (!condition || m_in.status() != QDataStream::Ok) {
            throw FormatError(m_path + ": damaged log of edits");
        }
    }

    void requireEnd() const { require(m_in.atEnd()); }

private:
    QByteArray m_payload;
    std::string m_path;
    QDataStream m_in;
};

// The payload of the record at a place; nothing when there is none that is whole. Without the first
// one, which says what the edits were made on, those that follow it say nothing.
std::optional<QByteArray> payloadAt(const std::string& bytes, std::size_t at,
                                    const std::string& path)
{
    if (bytes.size() - at < a_headSize) {
        return std::nullopt;
    }
    Reader head(QByteArray::fromRawData(bytes.data() + at, a_headSize), path);
    const auto size = head.number<quint32>();
    const auto checksum = head.number<quint16>();
    if (size == 0 && at > 0) {
        return std::nullopt; // zeros, which a power failure leaves at an end, and their checksum
    }
    const char* const begin = bytes.data() + at + a_headSize;
    if (size > bytes.size() - at - a_headSize) {
        return std::nullopt;
    }
    const bool isWhole = qChecksum(begin, size) == checksum;
    head.require(isWhole || at > 0);
    return isWhole ? std::make_optional(QByteArray::fromRawData(begin, static_cast<int>(size)))
                   : std::nullopt;
}

Stamp readStamp(Reader& reader)
{
    return {reader.number<quint64>(), reader.number<qint64>(), reader.number<qint64>()};
}

Base readBase(Reader& reader)
{
    reader.require(reader.number<quint8>() == a_version);
    Base base;
    base.path = reader.text();
    base.stamp = readStamp(reader);
    base.time = reader.number<qint64>();
    return base;
}

std::vector<LoggedEdit> readEdits(Reader& reader)
{
    std::vector<LoggedEdit> edits;
    for (auto count = reader.number<quint32>(); count > 0; --count) {
        const auto kind = reader.number<quint8>();
        LoggedEdit edit{static_cast<EditKind>(kind), reader.text(), reader.text(), {}, {}};
        const auto mode = reader.number<quint16>();
        if (mode != a_noMode) {
            edit.mode = mode & 0777;
        }
        const auto size = reader.number<qint64>();
        if (size != a_noSize) {
            edit.bytes = size;
        }
        reader.require(kind <= static_cast<quint8>(EditKind::SetMetadata));
        edits.push_back(std::move(edit));
    }
    return edits;
}

std::vector<Trace> readTraces(Reader& reader)
{
    std::vector<Trace> traces;
    for (auto count = reader.number<quint32>(); count > 0; --count) {
        traces.push_back({reader.text(), readStamp(reader)});
        reader.require(true);
    }
    return traces;
}

} // namespace

QString LoggedEdit::toText() const
{
    const QString what = textOf(path);
    switch (kind) {
    case EditKind::MakeDirectory:
        return QStringLiteral("make directory %1").arg(what);
    case EditKind::PutFile:
        return QStringLiteral("write %1").arg(what);
    case EditKind::PutCopy:
        return QStringLiteral("copy %1 to %2").arg(textOf(other), what);
    case EditKind::Move:
        return QStringLiteral("move %1 to %2").arg(what, textOf(other));
    case EditKind::Remove:
        return QStringLiteral("remove %1").arg(what);
    case EditKind::SetMetadata:
        break;
    }
    return QStringLiteral("set %1 to %2").arg(what, textOf(other));
}

std::int64_t Base::now()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

Stamp Trace::stampOf(const struct stat& info)
{
    return S_ISDIR(info.st_mode) ? Stamp{info.st_ino, 0, a_directory.bytes} : Stamp::of(info);
}

bool Trace::isThere() const
{
    const auto info = statOf(path);
    if (!info) {
        return stamp == a_nothing;
    }
    return stamp == a_directory ? S_ISDIR(info->st_mode) : stampOf(*info) == stamp;
}

bool EditHistory::isSaved() const
{
    return !lastSave.empty() && std::all_of(lastSave.begin(), lastSave.end(),
                                            [](const Trace& trace) { return trace.isThere(); });
}

EditLog::EditLog(std::shared_ptr<Staging> staging) : m_staging(std::move(staging)) {}

EditLog::~EditLog()
{
    if (!m_path.empty() && m_maker.isHere()) {
        ::unlink(m_path.c_str());
    }
}

void EditLog::restart(Base base)
{
    // Emptying a file costs a file system less than making another with the next edit.
    if (!isEmpty() && m_maker.isHere() && ::truncate(m_path.c_str(), 0) != 0) {
        ::unlink(m_path.c_str());
    }
    m_size = 0;
    m_unwritten.clear();
    m_base = std::move(base);
    m_isStopped = false;
    m_staging->release();
}

void EditLog::stop()
{
    restart(m_base);
    m_isStopped = true;
}

// Appends a record, after the one for the base when it is the first.
template <class WriteTo>
void EditLog::note(WriteTo&& writeTo)
{
    if (m_isStopped || !m_maker.isHere()) {
        return;
    }
    const bool isBehind = !m_unwritten.isEmpty();
    if (isEmpty()) {
        m_unwritten += recordOf([&](QDataStream& out) { writeBase(out, m_base); });
    }
    m_unwritten += recordOf(writeTo);
    try {
        flush();
    } catch (const IoError& error) {
        if (!isBehind) {
            warn(std::string(error.what()) + "; should this program die before this is mended, its "
                                             "last edits can't be recovered",
                 __FILE__, "note", __LINE__);
        }
    }
}

void EditLog::flush()
{
    std::string path = m_staging->directory() + "/" + a_fileName;
    const Fd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), path);
    if (!file) {
        throwErrno(path);
    }
    m_path = std::move(path);
    if (::lseek(file.get(), m_size, SEEK_SET) < 0) { // over what an earlier attempt left
        throwErrno(m_path);
    }
    // The usual disk, not the seam: no save depends on what is noted.
    Disk().write(file, m_unwritten.constData(), static_cast<std::size_t>(m_unwritten.size()));
    m_size += m_unwritten.size();
    m_unwritten.clear();
}

void EditLog::confirm(Base base)
{
    if (base.path != m_base.path) {
        return;
    }
    m_base = std::move(base);
    if (!isEmpty()) {
        note([&](QDataStream& out) { writeBase(out, m_base); });
    }
}

void EditLog::append(const std::vector<Edit>& edits)
{
    note([&](QDataStream& out) {
        out << static_cast<quint8>(RecordKind::Edits) << static_cast<quint32>(edits.size());
        for (const Edit& edit : edits) {
            const LoggedEdit record = logged(edit);
            out << static_cast<quint8>(record.kind) << bytesOf(record.path) << bytesOf(record.other)
                << quint16{record.mode.value_or(a_noMode)}
                << qint64{record.bytes.value_or(a_noSize)};
        }
    });
    if (m_unwritten.isEmpty()) {
        m_staging->release();
    }
}

void EditLog::saving(const std::vector<Trace>& traces)
{
    if (!isEmpty()) {
        note([&](QDataStream& out) {
            out << static_cast<quint8>(RecordKind::Saving) << static_cast<quint32>(traces.size());
            for (const Trace& trace : traces) {
                out << bytesOf(trace.path);
                writeStamp(out, trace.stamp);
            }
        });
    }
}

EditHistory EditLog::read(const Fd& file)
{
    const std::string bytes = readAll(file).toStdString();
    EditHistory history;
    std::size_t at = 0;
    while (const auto payload = payloadAt(bytes, at, file.path())) {
        Reader reader(*payload, file.path());
        const auto kind = static_cast<RecordKind>(reader.number<quint8>());
        reader.require(at == 0 ? kind == RecordKind::Base : kind >= RecordKind::Base);
        switch (kind) {
        case RecordKind::Base:
            history.base = readBase(reader);
            break;
        case RecordKind::Edits:
            history.operations.push_back(readEdits(reader));
            break;
        case RecordKind::Saving:
            history.lastSave = readTraces(reader);
            break;
        default:
            reader.require(false);
        }
        if (kind != RecordKind::Saving) {
            history.lastSave.clear(); // it failed, or there would be no more
        }
        reader.requireEnd();
        at += a_headSize + static_cast<std::size_t>(payload->size());
    }
    return history;
}

} // namespace pk::project
