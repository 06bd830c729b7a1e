// check: what is wrong with a library, and mending what is safe.
#include "check_fixes.hpp"
#include "checks.hpp"
#include "command_line.hpp"
#include "commands.hpp"
#include "log_watch.hpp"

#include <set>

namespace kxbox {

namespace {

struct Arguments
{
    bool fix = false;
    bool isBatch = false; ///< a line of a batch, which says itself that nothing was written
};

void checkAllButOrder(const Survey& survey, Problems& problems)
{
    checkProject(survey, problems);
    checkBoxes(survey, problems);
    checkNames(survey, problems);
    checkTranslations(survey, problems);
}

/// What the library has when it is saved now.
Problems checkAll(const OpenLibrary& library)
{
    const Survey survey = surveyOf(library->projectModel(), library.progress());
    Problems problems;
    checkOrder(survey, problems);
    checkAllButOrder(survey, problems);
    return problems;
}

/// Loading has written anew the order files with something wrong, and saving mends them.
void noteOrderFiles(const Problems& before, const Problems& after, Fixes& fixes)
{
    Problems mended = after;
    mended.addFixed(before);
    std::set<std::string> files;
    for (const Problem& problem : mended.list()) {
        const QString path = QString::fromStdString(problem.path);
        if (!problem.fixed) {
            continue;
        }
        if (problem.kind == "order-directory") {
            files.insert((prefixOf(directoryOf(path)) + QStringLiteral("bxlinfo")).toStdString());
        } else {
            files.insert(problem.path);
        }
    }
    for (const std::string& file : files) {
        fixes.done.push_back(file + ": written anew");
    }
}

/// A library as it is found.
struct Findings
{
    Problems order;
    Problems others;
    std::vector<TranslationFile> translations;
};

Findings find(const OpenLibrary& library)
{
    // The order files that count are those on disk, on a line of a batch too, since loading the
    // library has written anew each with something wrong.
    const auto disk = [&library] {
        const LogWatch saidBefore({"pkproject"}); // when the library was opened
        return openProject(library.path(), library.progress());
    }();
    Survey survey = surveyOf(disk, library.progress());
    Findings findings;
    checkOrder(survey, findings.order);
    if (library.isEdited()) {
        survey = surveyOf(library->projectModel(), library.progress());
    }
    checkAllButOrder(survey, findings.others);
    findings.translations = std::move(survey.translations);
    return findings;
}

/// Mends what can be mended; `problems` become those that are left and those that are fixed.
Fixes fix(OpenLibrary& library, Findings findings, Problems& problems)
{
    Fixes fixes;
    fixMetadata(library, fixes);
    std::size_t done = 0;
    do { // as long as one thing mended makes another one possible
        done = fixes.done.size();
        fixes.refused.clear();
        fixDirectoryNames(library, findings.translations, fixes);
        fixTranslations(library, findings.translations, fixes);
    } while (fixes.done.size() > done);
    library->updateTranslationFilesList();
    library->updateTranslators();
    const Problems order = followed(findings.order, fixes.renamed);
    problems = checkAll(library);
    noteOrderFiles(order, problems, fixes);
    Problems before = followed(findings.others, fixes.renamed);
    before.add(order);
    problems.addFixed(before);
    if (!fixes.done.empty()) {
        library.setEdited();
    }
    return fixes;
}

std::string textOf(const Fixes& fixes, bool isDryRun)
{
    std::string text;
    for (const std::string& done : fixes.done) {
        text += "fixed: " + printable(done) + "\n";
    }
    for (const std::string& refused : fixes.refused) {
        text += "not fixed: " + printable(refused) + "\n";
    }
    return isDryRun && !fixes.done.empty() ? text + "Nothing was written (--dry-run).\n" : text;
}

Outcome check(Session& session, const Arguments& arguments)
{
    // The library's own words on what is found here.
    const LogWatch watch({"BoxLibrary", "kxboxlibrary", "krlocalization"});
    OpenLibrary& library = session.library();
    Findings findings = find(library);
    Problems problems;
    Fixes fixes;
    if (arguments.fix) {
        fixes = fix(library, std::move(findings), problems);
    } else {
        problems.add(findings.order);
        problems.add(findings.others);
    }
    problems.sort();
    Outcome outcome;
    outcome.json = {{"library", library.path()}, {"dryRun", session.dryRun}};
    outcome.json["problems"] = problems.json();
    outcome.json["fixed"] = fixes.done;
    outcome.json["notFixed"] = fixes.refused;
    outcome.text = textOf(fixes, session.dryRun && !arguments.isBatch) + problems.text();
    outcome.problems = problems.remain();
    return outcome;
}

} // namespace

void addCheckCommand(CommandLine& commands)
{
    const auto arguments = std::make_shared<Arguments>();
    arguments->isBatch = commands.place() == CommandLine::Place::Batch;
    commands
        .addWriting("check", "Finds what is wrong with a library; exit code 1 if anything",
                    [arguments](Session& session) { return check(session, *arguments); })
        .flag("--fix", arguments->fix, "Mend what can be mended without losing anything");
}

} // namespace kxbox
