#include "check_library.hpp"

#include <pk/project/project_model.hpp>

namespace kxbox::test {

namespace {

const char* const a_metadata = R"({"Type": "KinestraBoxLibrary", "Version": "3.0"})";

Edits goodLibrary()
{
    return {{".kxproject", a_metadata},
            {"bxlinfo", orderFile({"Motion", "Say"})},
            {"Motion/bxlinfo", orderFile({"Walk", "Run"})},
            {"Motion/Walk/box.bhx", boxFile()},
            {"Motion/Run/box.bhx", boxFile()},
            {"Say/box.bhx", boxFile("<Bitmaps><bitmap>icon.png</bitmap></Bitmaps>")},
            {"Say/icon.png", "a picture"},
            {"translations/translation_fr.ts",
             translationFile("fr", message("Library:/Motion/Walk", "Go", "Va"))}};
}

} // namespace

std::string orderFile(const std::vector<std::string>& names)
{
    std::string nodes;
    for (const std::string& name : names) {
        nodes += "  <Node name=\"" + name + "\" />\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Folder>\n" + nodes + "</Folder>\n";
}

std::string boxFile(const std::string& content)
{
    return R"(<KinestraBox bhx_version="3"><Box name="root">)" + content + "</Box></KinestraBox>";
}

std::string message(const std::string& context, const std::string& source,
                    const std::string& translation)
{
    return "<context>\n    <name>" + context + "</name>\n    <message>\n        <source>" + source +
           "</source>\n        <translation" + (translation.empty() ? " type=\"unfinished\"" : "") +
           ">" + translation + "</translation>\n    </message>\n</context>\n";
}

std::string translationFile(const std::string& language, const std::string& messages)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\"" +
           (language.empty() ? "" : " language=\"" + language + "\"") + ">\n" + messages +
           "</TS>\n";
}

ToolTest::Words CheckTest::makeLibrary(Form form, const Edits& edits, const Words& options) const
{
    Edits files = goodLibrary();
    for (const auto& [file, bytes] : edits) {
        files[file] = bytes;
    }
    const QString directory = path(form == Form::Directory ? "lib.bxl" : "source");
    for (const auto& [file, bytes] : files) {
        const QString place = directory + q("/" + file);
        if (file.back() == '/') {
            EXPECT_TRUE(bytes ? QDir().mkpath(place) : true);
        } else if (bytes) {
            putLocal(place, QByteArray::fromStdString(*bytes));
        }
    }
    for (const auto& [file, bytes] : files) {
        if (file.back() == '/' && !bytes) {
            EXPECT_TRUE(QDir(directory + q("/" + file)).removeRecursively());
        }
    }
    if (form == Form::Archive) {
        const Ending made = run({"convert", "source", "lib.bxl", "--format", "archive"});
        EXPECT_EQ(made.exitCode, 0) << made;
    }
    Words words{"check", "lib.bxl"};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

Files CheckTest::libraryFiles() const
{
    const pk::project::ProjectModel model(path("lib.bxl"));
    Files files;
    for (const QString& file : model.getFileList(QString(), false, true, false)) {
        files[file.toStdString()] = model.readFile(file).toStdString();
    }
    return files;
}

} // namespace kxbox::test
