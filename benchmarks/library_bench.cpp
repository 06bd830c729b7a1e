// What a box library's jobs cost beside the least work that they need: see floors.hpp. Both are
// timed by turns, and the medians are compared, so that the ratio means something on any machine.
#include "edited_library.hpp"
#include "floors.hpp"
#include "generated_library.hpp"
#include "timing.hpp"

#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <boost/make_shared.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace KX;
namespace fs = std::filesystem;
using pk::project::ArchiveFormat;
using pk::project::ProjectModel;
using timing::median;
using timing::milliseconds;
using Library = std::unique_ptr<BoxLibrary, TreeDeleter>;
using Node = std::unique_ptr<BoxLibraryNode, TreeDeleter>;

struct Options
{
    int boxes = 10'000;
    int turns = 9;
    std::string only;      ///< jobs whose names hold this
    std::string page;      ///< where the table is put between its marks
    std::string library;   ///< to be edited in every way instead of measuring
    std::string edited;    ///< where what becomes of that is put
    std::string generated; ///< where a library is put instead of measuring
};

/// A piece of work, and what is done before each time without being measured.
struct Work
{
    std::function<void()> run;
    std::function<void()> prepare = [] {};
};

struct Row
{
    std::string job;
    double ours = 0;  ///< milliseconds
    double floor = 0; ///< milliseconds
    std::string atMost;
};

QString q(const fs::path& path)
{
    return QString::fromStdString(path.string());
}

Library open(const fs::path& path)
{
    return Library(new BoxLibrary(ProjectModel(q(path))));
}

BoxLibraryNode& all(const Library& library)
{
    return *library->boxRoot()->child(0);
}

std::string printed(double milliseconds)
{
    std::ostringstream text;
    text.precision(milliseconds < 10 ? 2 : 3);
    if (milliseconds < 1) {
        text << std::fixed << std::setprecision(0) << milliseconds * 1000 << " µs";
    } else if (milliseconds < 1000) {
        text << milliseconds << " ms";
    } else {
        text << milliseconds / 1000 << " s";
    }
    return text.str();
}

std::string ratio(double value)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << value;
    return text.str();
}

generated::Size sizeOf(int boxes, bool isTranslated)
{
    generated::Size size;
    size.boxes = boxes;
    size.messages = isTranslated ? 4 * boxes : 0;
    return size;
}

class Bench
{
public:
    explicit Bench(Options options) : m_options(std::move(options)) {}

    void run();
    std::string table() const;

private:
    fs::path place(const std::string& name) const
    {
        return fs::path(m_directory.path().toStdString()) / name;
    }
    /// The generated library of so many boxes, which nobody changes.
    fs::path source(int boxes, bool isTranslated = true);
    /// The same as an archive.
    fs::path archive();
    /// A copy of it, to be changed.
    fs::path copyOf(const fs::path& from, const std::string& name) const;

    bool isAsked(const std::string& job) const
    {
        return job.find(m_options.only) != std::string::npos;
    }
    void compare(const std::string& job, const std::string& atMost, const Work& ours,
                 const Work& floor, int turns = 0);
    Work rewriteTranslations(const fs::path& library) const;

    void opening();
    void openingGrows();
    void savingOneEdit();
    void firstSaves();
    void renaming();
    void tooltip();
    void creating();
    void copying();
    void exporting();
    void memory();

    Options m_options;
    QTemporaryDir m_directory;
    std::vector<Row> m_rows;
    std::vector<std::string> m_remarks;
};

fs::path Bench::source(int boxes, bool isTranslated)
{
    fs::path path = place("source" + std::to_string(boxes) + (isTranslated ? "t" : ""));
    if (!fs::exists(path)) {
        generated::writeLibrary(path, sizeOf(boxes, isTranslated));
        ::sync();
    }
    return path;
}

fs::path Bench::archive()
{
    fs::path path = place("source.bxl");
    if (!fs::exists(path)) {
        ProjectModel(q(source(m_options.boxes))).save(q(path), ArchiveFormat::Zip, false);
    }
    return path;
}

fs::path Bench::copyOf(const fs::path& from, const std::string& name) const
{
    fs::path to = place(name);
    fs::remove_all(to);
    fs::copy(from, to, fs::copy_options::recursive);
    return to;
}

void Bench::compare(const std::string& job, const std::string& atMost, const Work& ours,
                    const Work& floor, int turns)
{
    if (!isAsked(job)) {
        return;
    }
    std::vector<double> times;
    std::vector<double> floorTimes;
    for (int turn = 0; turn < (turns > 0 ? turns : m_options.turns); ++turn) {
        floor.prepare();
        floorTimes.push_back(milliseconds(floor.run));
        ours.prepare();
        times.push_back(milliseconds(ours.run));
    }
    m_rows.push_back({job, median(times), median(floorTimes), atMost});
    const Row& row = m_rows.back();
    std::cout << row.job << ": " << printed(row.ours) << ", floor " << printed(row.floor) << ", "
              << ratio(row.ours / row.floor) << " (at most " << row.atMost << ")" << std::endl;
}

/// pugixml parsing and saving both translation files.
Work Bench::rewriteTranslations(const fs::path& library) const
{
    return {[this, library] {
        for (const char* const name : {"translation_de.ts", "translation_fr.ts"}) {
            floors::rewriteXml((library / "translations" / name).string(), place(name).string());
        }
    }};
}

// What is opened is closed outside the measured time; the floor has nothing to close.
void Bench::opening()
{
    Library library;
    const auto close = [&] { library.reset(); };
    const fs::path directory = source(m_options.boxes, false);
    const Work floor{[&] { floors::openDirectory(directory.string()); }};
    compare("open a directory", "1.8", {[&] { library = open(directory); }, close}, floor);
    const Work archiveFloor{[this] { floors::openArchive(place("plain.bxl").string()); }};
    if (isAsked("open an archive")) {
        ProjectModel(q(directory)).save(q(place("plain.bxl")), ArchiveFormat::Zip, false);
    }
    compare("open an archive", "1.6", {[&] { library = open(place("plain.bxl")); }, close},
            archiveFloor);
}

void Bench::openingGrows()
{
    if (!isAsked("open ten times as many boxes")) {
        return;
    }
    std::map<int, std::vector<double>> times;
    for (int turn = 0; turn < m_options.turns; ++turn) {
        for (const int boxes : {m_options.boxes / 10, m_options.boxes, m_options.boxes * 10}) {
            const fs::path path = source(boxes, false);
            Library library;
            times[boxes].push_back(milliseconds([&] { library = open(path); }));
        }
    }
    for (const int boxes : {m_options.boxes, m_options.boxes * 10}) {
        m_rows.push_back({"open " + std::to_string(boxes) + " boxes, beside a tenth of them",
                          median(times[boxes]), median(times[boxes / 10]), "11.5"});
        std::cout << m_rows.back().job << ": " << ratio(m_rows.back().ours / m_rows.back().floor)
                  << std::endl;
    }
}

void Bench::savingOneEdit()
{
    // Many turns, because a disk is not always as fast; not more, because ext4 looks at every inode
    // that was deleted in the last seconds when it needs a new one.
    constexpr int turns = 41;
    const std::string bytes =
        floors::read((source(m_options.boxes) / "All/Folder 0/Box 7/box.bhx").string());
    const Work floor{[&] { floors::replaceSynced(place("file").string(), bytes); }};
    for (const int boxes : {100, m_options.boxes, m_options.boxes * 10}) {
        const std::string job =
            "save one edit of " + std::to_string(boxes) + " boxes to the directory";
        if (isAsked(job)) {
            const Library library = open(copyOf(source(boxes, false), "edited"));
            BoxLibraryNode* const box = all(library).child(0)->child(7);
            int number = 0;
            compare(job, "4",
                    {[&] { library->save(); },
                     [&] { box->boxData()->setTooltip(QString::number(++number)); }},
                    floor, turns);
        }
    }
    const std::string job = "save one edit to the archive";
    if (isAsked(job)) {
        const fs::path edited = place("edited.bxl");
        fs::copy_file(archive(), edited, fs::copy_options::overwrite_existing);
        const Library library = open(edited);
        BoxLibraryNode* const box = all(library).child(0)->child(7);
        int number = 0;
        const fs::path replaced = place("replaced.bxl");
        fs::copy_file(archive(), replaced, fs::copy_options::overwrite_existing);
        compare(job, "1.3",
                {[&] { library->save(); },
                 [&] { box->boxData()->setTooltip(QString::number(++number)); }},
                {[&] {
                    floors::replaceEntry(replaced.string(), "All/Folder 0/Box 7/box.bhx", bytes);
                }});
    }
}

void Bench::firstSaves()
{
    const fs::path from = source(m_options.boxes);
    Library library = open(from);
    const auto job = [&](const char* name, BoxLibrary::LibraryFormat format) {
        return Work{[&library, this, name, format] { library->saveTo(q(place(name)), format); },
                    [&library, this, name, from] {
                        // Such as it was when it was opened: nothing is staged but order files.
                        fs::remove_all(place(name));
                        fs::remove_all(place("copy"));
                        fs::remove(place("copy.bxl"));
                        library = open(from);
                        ::sync();
                    }};
    };
    const auto clear = [this] {
        fs::remove_all(place("copy"));
        fs::remove(place("copy.bxl"));
        ::sync();
    };
    if (isAsked("first save to a directory")) {
        compare("first save to a directory", "1.5", job("first", BoxLibrary::Directory),
                {[&] { floors::copySynced(from.string(), place("copy").string()); }, clear});
    }
    if (isAsked("first save to an archive")) {
        compare("first save to an archive", "1.2", job("first.bxl", BoxLibrary::Archive),
                {[&] { floors::compress(from.string(), place("copy.bxl").string()); }, clear});
    }
}

void Bench::renaming()
{
    const fs::path from = source(m_options.boxes);
    const Library library = open(from);
    const Work floor = rewriteTranslations(from);
    BoxLibraryNode& folder = all(library);
    BoxLibraryNode* const box = folder.child(3)->child(7);
    int number = 0;
    compare("rename a box", "2.5", {[&] { box->setName("Renamed " + std::to_string(++number)); }},
            floor);
    compare("rename the folder of all boxes", "2.5",
            {[&] { folder.setName("Renamed " + std::to_string(++number)); }}, floor);
    BoxLibraryNode* places[] = {library->boxRoot()->appendChild("Here"),
                                library->boxRoot()->appendChild("There")};
    compare("move the folder of all boxes", "2.5", {[&] {
                std::swap(places[0], places[1]);
                places[0]->moveIn(0, {&folder});
            }},
            floor);
    compare("take the folder of all boxes and insert it elsewhere", "-", {[&] {
                std::swap(places[0], places[1]);
                const QString old = folder.translationContext();
                Node taken(folder.take());
                places[0]->appendChild(taken.release());
                folder.changeContext(old, folder.translationContext());
            }},
            floor);
}

void Bench::tooltip()
{
    const Library library = open(source(m_options.boxes));
    const auto data = all(library).child(3)->child(7)->boxData();
    const fs::path file = source(m_options.boxes) / "All/Folder 3/Box 67/box.bhx";
    int number = 0;
    compare("set a tooltip", "3", {[&] { data->setTooltip(QString::number(++number)); }},
            {[&] { floors::rewriteXml(file.string(), place("box.bhx").string()); }}, 1'001);
}

void Bench::creating()
{
    const auto create = [](int count) {
        const Library library(new BoxLibrary(QStringLiteral("Measured")));
        BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
        const RootBoxDescription box{"Box", boost::make_shared<XmlElement>("Box")};
        for (int i = 0; i < count; ++i) {
            folder->appendChild(box);
        }
    };
    // The files go to memory: both sides leave thousands of deleted ones, and ext4 looks at each
    // that was deleted in the last minutes when it needs a new one.
    const QByteArray temporary = qgetenv("TMPDIR");
    if (fs::is_directory("/dev/shm")) {
        qputenv("TMPDIR", "/dev/shm");
    }
    compare("create 2,000 boxes in a folder, beside 200", "15", {[&] { create(2000); }},
            {[&] { create(200); }});
    temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary);
}

// The folder is cloned, the clone is put back, and removed. Its messages are those of the folder.
void Bench::copying()
{
    const fs::path from = source(m_options.boxes);
    const Library library = open(from);
    const Work links{[&] { floors::link((from / "All").string(), place("linked").string()); },
                     [this] { fs::remove_all(place("linked")); }};
    const Work rewriting = rewriteTranslations(from);
    const Work linksAndMessages{[&] {
                                    links.run();
                                    rewriting.run();
                                },
                                links.prepare};
    Node clone;
    const BoxLibrary::Translators messages = library->translations();
    const auto remove = [&] {
        if (library->boxRoot()->children().size() > 1) {
            library->boxRoot()->removeChild(1);
        }
    };
    compare("clone the folder of all boxes", "2", {[&] { clone.reset(all(library).clone()); }},
            links, 5);
    compare("insert the clone, with its messages", "2",
            {[&] { library->insertChildren(library->boxRoot(), 1, {clone.release()}, messages); },
             [&] {
                 remove();
                 clone.reset(all(library).clone());
             }},
            linksAndMessages, 5);
    compare("remove it, with its messages", "2",
            {remove,
             [&] {
                 if (!clone) {
                     clone.reset(all(library).clone());
                 }
                 remove();
                 library->insertChildren(library->boxRoot(), 1, {clone.release()}, messages);
             }},
            linksAndMessages, 5);
}

void Bench::exporting()
{
    if (!isAsked("export 2,000 behaviours")) {
        return;
    }
    const fs::path from = place("behaviours");
    generated::writeBehaviors(from, 2'000);
    const Library library = open(from);
    // Nothing is removed in between: after that, a file system may look long for each new inode.
    fs::path to;
    const auto next = [&, count = 0]() mutable {
        to = place("exported" + std::to_string(++count));
        fs::create_directory(to);
    };
    compare("export 2,000 behaviours", "1.8", {[&] { library->exportBehaviors(q(to)); }, next},
            {[&] {
                 floors::copyAndRewrite((from / "All").string(), (to / "copied").string(),
                                        "box.bhx");
             },
             next},
            5);
}

double residentMegabytes()
{
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    file >> pages >> pages;
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// In a process of its own, which has not used any memory before.
void Bench::memory()
{
    if (!isAsked("memory")) {
        return;
    }
    const fs::path path = source(m_options.boxes, false);
    std::cout << std::flush;
    const pid_t child = ::fork();
    if (child == 0) {
        const double before = residentMegabytes();
        const Library library = open(path);
        const double after = residentMegabytes();
        std::ofstream(place("memory"))
            << (library->boxRoot()->children().isEmpty() ? 0 : after - before);
        ::_exit(0);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("the process that measures memory failed");
    }
    double megabytes = 0;
    std::ifstream(place("memory")) >> megabytes;
    m_remarks.push_back("Resident memory after opening " + std::to_string(m_options.boxes) +
                        " boxes without translations: " + ratio(megabytes) +
                        " MB more than before (at most 45).");
    std::cout << m_remarks.back() << std::endl;
}

void Bench::run()
{
    memory();
    opening();
    savingOneEdit();
    firstSaves();
    if (isAsked("rename a box") || isAsked("the folder of all boxes")) {
        renaming();
    }
    tooltip();
    creating();
    copying();
    exporting();
    openingGrows();
}

std::string Bench::table() const
{
    std::ostringstream text;
    text << "| job | time | floor | ratio | at most |\n|---|---|---|---|---|\n";
    for (const Row& row : m_rows) {
        text << "| " << row.job << " | " << printed(row.ours) << " | " << printed(row.floor)
             << " | " << ratio(row.ours / row.floor) << " | " << row.atMost << " |\n";
    }
    for (const std::string& remark : m_remarks) {
        text << "\n" << remark << "\n";
    }
    return text.str();
}

/// Puts the table between the marks that the page has for it.
void putIntoPage(const std::string& path, const std::string& table)
{
    const std::string begin = "<!-- figures of library_bench -->\n";
    const std::string end = "<!-- end of the figures -->\n";
    std::string page = floors::read(path);
    const auto from = page.find(begin);
    const auto to = page.find(end);
    if (from == std::string::npos || to == std::string::npos) {
        throw std::runtime_error(path + ": it has no marks for the figures");
    }
    page.replace(from, to - from, begin + "\n" + table + "\n");
    std::ofstream(path, std::ios::binary) << page;
}

int number(const std::string& text)
{
    std::size_t end = 0;
    const int value = std::stoi(text, &end);
    if (end != text.size() || value < 1000) {
        throw std::invalid_argument(text + ": not a number from 1000 on");
    }
    return value;
}

Options parse(const std::vector<std::string>& arguments)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&] { return arguments.at(++i); };
        if (argument == "--boxes") {
            options.boxes = number(value());
        } else if (argument == "--only") {
            options.only = value();
        } else if (argument == "--page") {
            options.page = value();
        } else if (argument == "--edit") {
            options.library = value();
            options.edited = value();
        } else if (argument == "--generate") {
            options.generated = value();
        } else {
            throw std::invalid_argument(argument + ": no such option");
        }
    }
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
        const Options options = parse({argv + 1, argv + argc});
        if (!options.generated.empty()) {
            generated::writeLibrary(options.generated, sizeOf(options.boxes, true));
            return 0;
        }
        if (!options.library.empty()) {
            edited::edit(options.library, options.edited);
            return 0;
        }
        Bench bench(options);
        bench.run();
        std::cout << '\n' << bench.table();
        if (!options.page.empty()) {
            putIntoPage(options.page, bench.table());
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "library_bench [--boxes N] [--only JOB] [--page FILE] | [--boxes N] "
                     "--generate LIBRARY | "
                     "--edit LIBRARY RESULT: "
                  << error.what() << '\n';
        return 1;
    }
}
