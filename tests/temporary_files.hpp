#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>

/// What tests that work on files have in common.
namespace temporary {

inline QString q(const std::string& text)
{
    return QString::fromStdString(text);
}

/// A temporary directory that is gone after the test, in memory where that can be, because tests
/// make and sync very many files.
class TemporaryDirectory
{
public:
    TemporaryDirectory() : m_directory(base() + q("/kx-test-XXXXXX"))
    {
        EXPECT_TRUE(m_directory.isValid());
    }
    QString path(const std::string& name) const { return m_directory.filePath(q(name)); }
    QString path() const { return m_directory.path(); }

private:
    static QString base()
    {
        const QFileInfo memory(q("/dev/shm"));
        return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
    }
    QTemporaryDir m_directory;
};

/// Puts bytes into a local file, making its directory.
inline void putLocal(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray getLocal(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

} // namespace temporary
