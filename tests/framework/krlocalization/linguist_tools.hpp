#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

/// The real tools of Qt Linguist, and the files of the test corpus.
namespace linguist {

struct Result
{
    int exitCode;
    QByteArray output;
};

/// Runs a tool with `input` as its standard input.
inline Result run(const char* program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(QString::fromUtf8(program), arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool finished = process.waitForFinished(-1);
    EXPECT_TRUE(finished) << program << ": " << process.errorString().toStdString();
    return {process.exitCode(), process.readAllStandardOutput()};
}

/// The file as lconvert reads and writes it; a failed test and no bytes when it refuses it.
inline QByteArray lconvert(const QByteArray& ts, const QStringList& options = {})
{
    const QStringList names{QStringLiteral("-if"), QStringLiteral("ts"), QStringLiteral("-of"),
                            QStringLiteral("ts"),  QStringLiteral("-i"), QStringLiteral("-")};
    const Result result = run(KX_LCONVERT, names + options, ts);
    EXPECT_EQ(result.exitCode, 0) << "lconvert refuses " << ts.constData();
    return result.output;
}

/// Whether lconvert reads the file.
inline bool isRefused(const QByteArray& ts)
{
    const QStringList names{QStringLiteral("-if"), QStringLiteral("ts"), QStringLiteral("-of"),
                            QStringLiteral("ts"),  QStringLiteral("-i"), QStringLiteral("-")};
    return run(KX_LCONVERT, names, ts).exitCode != 0;
}

/// The bytes of a file in the test's data directory.
inline QByteArray data(const std::string& name)
{
    QFile file(QString::fromUtf8(KX_TEST_DATA "/") + QString::fromStdString(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

} // namespace linguist
