#pragma once

#include "tool.hpp"

#include <pk/project/project_model.hpp>

#include <string>

/// What the tests of translations have in common: a library, and translation files.
namespace kxbox::test::translations {

inline const char* const a_nothingToChange = "Nothing to change.\n";

/// "Motion/Walk" with four texts, one of which it has twice, "Say: it" with two, an empty folder.
inline const char* const a_walk =
    R"(<Box name="root" tooltip="Goes"><Input name="start" id="1" type="1" type_size="1" )"
    R"(nature="2" tooltip="Starts"/><Output name="done" id="2" type="1" type_size="1" )"
    R"(nature="1" tooltip="Starts"/></Box>)";
inline const char* const a_say =
    R"(<Box name="root" tooltip="Speaks &#39;it&#39;"><Parameter name="text" id="1" )"
    R"(content_type="0" value="" default_value=""/></Box>)";
inline const char* const a_batch = "add-folder / Motion\n"
                                   "add-box Motion Walk --from walk.bhx\n"
                                   "add-box / 'Say: it' --from say.bhx\n"
                                   "add-folder Motion Empty\n";

/// A `<message>` of a translation file.
inline std::string message(const std::string& source, const std::string& translation,
                           const std::string& state = {}, const std::string& comment = {})
{
    return "    <message>\n        <source>" + source + "</source>\n" +
           (comment.empty() ? "" : "        <comment>" + comment + "</comment>\n") +
           "        <translation" + (state.empty() ? "" : " type=\"" + state + "\"") + ">" +
           translation + "</translation>\n    </message>\n";
}

/// A `<context>` with its messages.
inline std::string context(const std::string& name, const std::string& messages)
{
    return "<context>\n    <name>" + name + "</name>\n" + messages + "</context>\n";
}

/// A translation file.
inline std::string ts(const std::string& language, const std::string& contexts,
                      const std::string& source = "en")
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\" "
           "language=\"" +
           language + "\"" + (source.empty() ? "" : " sourcelanguage=\"" + source + "\"") + ">\n" +
           contexts + "</TS>\n";
}

/// The contexts of the boxes without any translation.
inline const std::string a_untranslatedWalk =
    context("Library:/Motion/Walk",
            message("Goes", "", "unfinished") + message("start", "", "unfinished") +
                message("Starts", "", "unfinished") + message("done", "", "unfinished"));
inline const std::string a_untranslatedSay =
    context("Library:/Say%3a it",
            message("Speaks &apos;it&apos;", "", "unfinished") + message("text", "", "unfinished"));

/// A test of translations, in both forms of a library.
class TranslationsInBothForms : public ToolInBothForms
{
protected:
    /// The library that the constants describe, without a language.
    void makeLibrary() const
    {
        putBoxFile("walk.bhx", a_walk);
        putBoxFile("say.bhx", a_say);
        make("lib", GetParam(), a_batch);
    }

    static QString place(const std::string& language)
    {
        return q("translations/translation_" + language + ".ts");
    }

    std::string getTs(const std::string& language) const
    {
        return pk::project::ProjectModel(path("lib")).readFile(place(language)).toStdString();
    }

    void putTs(const std::string& language, const std::string& bytes) const
    {
        pk::project::ProjectModel model(path("lib"));
        model.writeFile(place(language), QByteArray::fromStdString(bytes));
        model.save(QString(), pk::project::ArchiveFormat::Source, true);
    }

    /// Runs a command that fails and must not touch the library.
    void expectFailure(const Words& words, const std::string& reason) const
    {
        const Files before = filesOf(path("lib"));
        EXPECT_EQ(run(words), (Ending{3, "", "kxbox: " + reason + "\n"}));
        EXPECT_EQ(filesOf(path("lib")), before);
    }

    /// Runs an editing command, first with --dry-run, which must not touch the library.
    void expectEdit(const Words& words, const std::string& changes) const
    {
        const Files before = filesOf(path("lib"));
        Words dry = words;
        dry.emplace_back("--dry-run");
        EXPECT_EQ(run(dry), (Ending{0, changes + "Nothing was written (--dry-run).\n", ""}));
        EXPECT_EQ(filesOf(path("lib")), before);
        EXPECT_EQ(run(words), (Ending{0, changes, ""}));
        EXPECT_NE(filesOf(path("lib")), before);
    }

    /// Runs an editing command on `lib` that has nothing to do.
    void expectNothing(const Words& words) const
    {
        const Files before = filesOf(path("lib"));
        EXPECT_EQ(run(words), (Ending{0, a_nothingToChange, ""}));
        EXPECT_EQ(filesOf(path("lib")), before);
    }
};

} // namespace kxbox::test::translations
