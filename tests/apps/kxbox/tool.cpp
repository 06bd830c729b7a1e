#include "tool.hpp"

#include "text.hpp"

#include <QDirIterator>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <nlohmann/json.hpp>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kxbox::test {

namespace {

constexpr int a_patience = 120000; // ms; far more than any run takes

/// For root, a process without the capability that lets root write where modes forbid it. It can
/// still read everything, the program and its libraries wherever they are.
class UnprivilegedProcess : public QProcess
{
protected:
    void setupChildProcess() override
    {
        if (::geteuid() == 0 && ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) != 0) {
            ::_exit(126); // which no test expects
        }
    }
};

std::string nameOf(Form form)
{
    return form == Form::Directory ? "directory" : "archive";
}

/// The JSON of a dry run must have the changes of these lines.
void expectSameChanges(const std::string& lines, const std::string& json)
{
    const auto parsed = nlohmann::ordered_json::parse(json, nullptr, false);
    EXPECT_EQ(parsed.value("dryRun", false), true) << json;
    std::string fromJson;
    for (const auto& change : parsed.value("changes", nlohmann::ordered_json::array())) {
        fromJson += change["change"].get<std::string>() + " " +
                    printable(change["subject"].get<std::string>());
        if (change.contains("result")) {
            fromJson += " -> " + printable(change["result"].get<std::string>());
        }
        std::string separator = " (";
        const auto messages = change.value("messages", nlohmann::ordered_json::object());
        for (const auto& [language, count] : messages.items()) {
            fromJson += separator + language + " " + count.dump();
            separator = ", ";
        }
        fromJson += change.contains("messages") ? ")\n" : "\n";
    }
    static const QRegularExpression column(q("^(\\S+) +"), QRegularExpression::MultilineOption);
    EXPECT_EQ(fromJson, q(lines).replace(column, q("\\1 ")).toStdString());
}

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

ReadOnly::ReadOnly(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        QDirIterator it(path, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            add(it.next());
        }
    }
    add(path);
}

ReadOnly::~ReadOnly()
{
    for (const auto& [path, mode] : m_modes) {
        EXPECT_EQ(::chmod(path.c_str(), mode), 0) << path;
    }
}

void ReadOnly::add(const QString& path)
{
    const std::string name = path.toStdString();
    struct stat status = {};
    ASSERT_EQ(::stat(name.c_str(), &status), 0) << name;
    m_modes[name] = status.st_mode & 07777U;
    ASSERT_EQ(::chmod(name.c_str(), status.st_mode & 07555U), 0) << name;
}

Ending ToolTest::finish(QProcess& process, const Words& words, const std::string& input) const
{
    QStringList arguments;
    for (const std::string& word : words) {
        arguments.append(q(word));
    }
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
    environment.insert(q("TMPDIR"), path()); // where nothing is of programs that died
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(q("bash"), {q("-c"), q(line)});
    EXPECT_TRUE(process.waitForFinished(a_patience)) << line;
    return process.readAll().toStdString();
}

Ending ToolTest::run(const Words& words, const std::string& input) const
{
    QProcess process;
    return finish(process, words, input);
}

Ending ToolTest::runUnprivileged(const Words& words) const
{
    UnprivilegedProcess process;
    return finish(process, words, {});
}

std::string ToolTest::runPlanned(const std::string& library, const Words& words) const
{
    Words planning = words;
    planning.insert(planning.begin() + 1, "--dry-run");
    Words planningJson = planning;
    planningJson.insert(planningJson.begin() + 1, "--json");
    const Files before = filesOf(path(library));
    const Ending planned = run(planning);
    const Ending plannedJson = run(planningJson);
    EXPECT_EQ(filesOf(path(library)), before);
    const Ending done = run(words);
    EXPECT_EQ(planned, (Ending{0, done.out + "Nothing was written (--dry-run).\n", ""}));
    EXPECT_EQ(done.exitCode, 0) << done;
    expectSameChanges(done.out, plannedJson.out);
    EXPECT_NE(filesOf(path(library)), before);
    return done.out;
}

void ToolTest::expectRefused(const std::string& library, const Words& words, int exitCode,
                             const std::string& error) const
{
    const Files before = filesOf(path(library));
    EXPECT_EQ(run(words), (Ending{exitCode, "", error}));
    EXPECT_EQ(filesOf(path(library)), before);
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
    convert(KXBOX_SAMPLE, name, form);
}

void ToolTest::convert(const std::string& from, const std::string& to, Form form) const
{
    const Ending ending = run({"convert", from, to, "--format", nameOf(form)});
    ASSERT_EQ(ending.exitCode, 0) << ending;
}

Files ToolTest::filesIn(const std::string& library) const
{
    if (QFileInfo(path(library)).isDir()) {
        return filesOf(path(library));
    }
    const TemporaryDirectory unpacked;
    const std::string copy = unpacked.path("copy").toStdString();
    convert(library, copy, Form::Directory);
    return filesOf(q(copy));
}

void ToolTest::putMessages(const std::string& library, const std::string& language,
                           const std::vector<Message>& messages) const
{
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                       "<TS version=\"2.1\" language=\"" +
                       language + "\">\n";
    for (const Message& message : messages) {
        text += "<context><name>Library:/" + message.path + "</name><message><source>" +
                message.source + "</source><translation>" + message.translation +
                "</translation></message></context>\n";
    }
    putLocal(path(library + "/translations/translation_" + language + ".ts"),
             QByteArray::fromStdString(text + "</TS>\n"));
}

void ToolTest::make(const std::string& name, Form form, const std::string& batch) const
{
    ASSERT_EQ(run({"new", name, "--format", nameOf(form)}).exitCode, 0);
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
