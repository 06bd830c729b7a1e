#include "tool.hpp"

#include <QDirIterator>
#include <QProcessEnvironment>

namespace kxbox::test {

namespace {

constexpr int a_patience = 120000; // ms; far more than any run takes

} // namespace

Files filesOf(const QString& path)
{
    if (!QFileInfo(path).isDir()) {
        return {{QFileInfo(path).fileName().toStdString(), getLocal(path).toStdString()}};
    }
    Files files;
    QDirIterator it(path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        files[QDir(path).relativeFilePath(file).toStdString()] = getLocal(file).toStdString();
    }
    return files;
}

Ending ToolTest::run(const Words& words, const std::string& input) const
{
    QStringList arguments;
    for (const std::string& word : words) {
        arguments.append(q(word));
    }
    QProcess process;
    process.setWorkingDirectory(path());
    process.start(q(KXBOX_PROGRAM), arguments);
    process.write(QByteArray::fromStdString(input));
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(a_patience)) << process.errorString().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

std::string ToolTest::shell(const std::string& line) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString program = QFileInfo(q(KXBOX_PROGRAM)).path();
    environment.insert(q("PATH"), program + q(":") + environment.value(q("PATH")));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(q("bash"), {q("-c"), q(line)});
    EXPECT_TRUE(process.waitForFinished(a_patience)) << line;
    return process.readAll().toStdString();
}

nlohmann::ordered_json ToolTest::json(Words words, int exitCode) const
{
    words.emplace_back("--json");
    const Ending ending = run(words);
    EXPECT_EQ(ending.exitCode, exitCode);
    EXPECT_EQ(ending.error, "");
    return nlohmann::ordered_json::parse(ending.out, nullptr, false);
}

void ToolTest::copySample(const std::string& name, Form form) const
{
    const std::string format = form == Form::Directory ? "directory" : "archive";
    ASSERT_EQ(run({"convert", KXBOX_SAMPLE, name, "--format", format}).exitCode, 0);
}

void ToolTest::make(const std::string& name, Form form, const std::string& batch) const
{
    const std::string format = form == Form::Directory ? "directory" : "archive";
    ASSERT_EQ(run({"new", name, "--format", format}).exitCode, 0);
    if (!batch.empty()) {
        const Ending ending = run({"batch", name, "-"}, batch);
        ASSERT_EQ(ending.exitCode, 0) << ending;
    }
}

void ToolTest::putBoxFile(const std::string& name, const std::string& box) const
{
    putLocal(path(name),
             QByteArray::fromStdString("<KinestraBox bhx_version=\"3\">" + box + "</KinestraBox>"));
}

std::string ToolTest::tree(const std::string& library) const
{
    const Ending ending = run({"tree", library});
    EXPECT_EQ(ending.exitCode, 0) << ending;
    return ending.out;
}

} // namespace kxbox::test
