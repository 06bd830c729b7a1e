#include "journal.hpp"

#include "metadata.hpp"
#include "project_path.hpp"

#include <pk/project/error.hpp>

#include <QDataStream>
#include <QString>

#include <limits>
#include <utility>

namespace pk::project {

namespace {

constexpr quint8 a_version = 2;
constexpr QDataStream::Version a_format = QDataStream::Qt_5_12;

QByteArray bytesOf(const std::string& path)
{
    return QByteArray::fromRawData(path.data(), static_cast<int>(path.size()));
}

QDataStream& operator<<(QDataStream& out, const Stamp& stamp)
{
    return out << quint64{stamp.id} << qint64{stamp.time} << qint64{stamp.bytes};
}

// Reads what Journal::toBytes() wrote: numbers and texts in Qt's data stream format.
class Reader
{
public:
    Reader(const QByteArray& bytes, std::string path) : m_in(bytes), m_path(std::move(path))
    {
        m_in.setVersion(a_format);
    }

    void require(bool condition) const
    {
        if (!condition || m_in.status() != QDataStream::Ok) {
            throw FormatError(m_path + ": damaged journal");
        }
    }
    void requireEnd() const { require(m_in.atEnd()); }

    template <class Number>
    Number number(Number least = std::numeric_limits<Number>::min())
    {
        Number value{};
        m_in >> value;
        require(value >= least);
        return value;
    }

    Stamp stamp() { return {number<quint64>(), number<qint64>(), number<qint64>()}; }

    std::string path(bool inProject)
    {
        QByteArray bytes;
        m_in >> bytes;
        require(!bytes.isEmpty());
        try {
            const ProjectPath parsed = parsePath(QString::fromUtf8(bytes));
            require(joinPath(parsed) == bytes.toStdString() &&
                    (!inProject || !isReserved(parsed) || bytes == a_metadataFile));
        } catch (const InvalidPath&) {
            require(false);
        }
        return bytes.toStdString();
    }

private:
    QDataStream m_in;
    std::string m_path;
};

} // namespace

QByteArray Journal::toBytes() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(a_format);
    out << a_version << static_cast<quint32>(collects.size());
    for (const Collect& collect : collects) {
        out << qint32{collect.from.item} << bytesOf(collect.from.path) << qint32{collect.item}
            << collect.before;
    }
    out << static_cast<quint32>(puts.size());
    for (const Put& put : puts) {
        out << bytesOf(put.path) << qint32{put.item} << quint16{put.mode} << quint8{put.replace}
            << put.before;
    }
    return bytes;
}

Journal Journal::fromBytes(const QByteArray& bytes, const std::string& path)
{
    Reader reader(bytes, path);
    reader.require(reader.number<quint8>() == a_version);
    Journal journal;
    for (auto count = reader.number<quint32>(); count > 0; --count) {
        Collect collect;
        collect.from.item = reader.number<qint32>(-1);
        collect.from.path = reader.path(collect.from.item < 0);
        collect.item = reader.number<qint32>(0);
        collect.before = reader.stamp();
        journal.collects.push_back(std::move(collect));
    }
    for (auto count = reader.number<quint32>(); count > 0; --count) {
        Put put;
        put.path = reader.path(true);
        put.item = reader.number<qint32>(-1);
        put.mode = reader.number<quint16>() & 0777;
        put.replace = reader.number<quint8>() != 0;
        put.before = reader.stamp();
        journal.puts.push_back(std::move(put));
    }
    reader.requireEnd();
    return journal;
}

} // namespace pk::project
