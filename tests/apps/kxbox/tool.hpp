#pragma once

#include "temporary_files.hpp"

#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>
#include <nlohmann/json_fwd.hpp>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace kxbox::test {

using temporary::getLocal;
using temporary::putLocal;
using temporary::q;
using temporary::TemporaryDirectory;

/// How a run of the tool ended, to be compared whole.
struct Ending
{
    int exitCode;
    std::string out;
    std::string error;
};

inline bool operator==(const Ending& a, const Ending& b)
{
    return a.exitCode == b.exitCode && a.out == b.out && a.error == b.error;
}

inline std::ostream& operator<<(std::ostream& stream, const Ending& ending)
{
    return stream << "exit code " << ending.exitCode << "\n--- stdout\n"
                  << ending.out << "--- stderr\n"
                  << ending.error << "---";
}

/// The form of the library that a test works on.
enum class Form
{
    Directory,
    Archive
};

inline std::string nameOf(const testing::TestParamInfo<Form>& info)
{
    return info.param == Form::Directory ? "Directory" : "Archive";
}

/// The bytes of every file below a local directory, by relative path; an archive is one file.
using Files = std::map<std::string, std::string>;
Files filesOf(const QString& path);

/// Takes the permission to write away from a file or directory while it lives.
class ReadOnly
{
public:
    explicit ReadOnly(const QString& path);
    ~ReadOnly();
    ReadOnly(const ReadOnly&) = delete;
    ReadOnly& operator=(const ReadOnly&) = delete;
    ReadOnly(ReadOnly&&) = delete;
    ReadOnly& operator=(ReadOnly&&) = delete;

private:
    void add(const QString& path);
    std::map<std::string, unsigned> m_modes; // as before, by path
};

/// A test that runs the program in a directory of its own, with file names relative to it.
class ToolTest : public testing::Test
{
protected:
    /// A text of a box, whose context is "Library:/" and `path`, and its translation.
    struct Message
    {
        std::string path;
        std::string source;
        std::string translation;
    };

    using Words = std::vector<std::string>;

    QString path(const std::string& name) const { return m_directory.path(name); }
    QString path() const { return m_directory.path(); }

    /// Runs kxbox and waits for it.
    Ending run(const Words& words, const std::string& input = {}) const;
    /// What a line of bash prints, errors included, with kxbox in the PATH.
    std::string shell(const std::string& line) const;
    /// The same as a user whom the modes of files concern, also when the tests run as root.
    Ending runUnprivileged(const Words& words) const;
    /// Runs an editing command twice, the first time with --dry-run, which must say what the second
    /// time is done and change nothing below `library`. Gives what the second run prints.
    std::string runPlanned(const std::string& library, const Words& words) const;
    /// The run must end like this, with nothing on stdout, and change nothing at `library`.
    void expectRefused(const std::string& library, const Words& words, int exitCode,
                       const std::string& error) const;
    /// The JSON that the same prints with --json added; the run must end with this exit code and
    /// without a word on stderr.
    nlohmann::ordered_json json(Words words, int exitCode = 0) const;

    /// Puts a copy of the sample library there, by default in the directory form.
    void copySample(const std::string& name, Form form = Form::Directory) const;
    /// Writes a library in a form, without a change.
    void convert(const std::string& from, const std::string& to, Form form) const;
    /// The files in a library of either form.
    Files filesIn(const std::string& library) const;
    /// Makes an empty library and runs the lines of a batch on it, if there are any.
    void make(const std::string& name, Form form = Form::Directory,
              const std::string& batch = {}) const;
    /// A box file with this box element.
    void putBoxFile(const std::string& name,
                    const std::string& box = R"(<Box name="root"/>)") const;

    /// A translation file in a library in the directory form.
    void putMessages(const std::string& library, const std::string& language,
                     const std::vector<Message>& messages) const;

    /// The lines of `tree`, so that a test can look at names and order.
    std::string tree(const std::string& library) const;

private:
    Ending finish(QProcess& process, const Words& words, const std::string& input) const;

    TemporaryDirectory m_directory;
};

/// The same in both forms.
class ToolInBothForms : public ToolTest, public testing::WithParamInterface<Form>
{
};

/// The sample library, as "lib", which nothing that is tested may change.
class SampleInBothForms : public ToolInBothForms
{
protected:
    void SetUp() override
    {
        copySample("lib", GetParam());
        m_before = filesOf(path("lib"));
    }
    void TearDown() override { EXPECT_EQ(filesOf(path("lib")), m_before); }

private:
    Files m_before;
};

} // namespace kxbox::test
