#include "timing.hpp"

#include <kr/localization/ts.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QLoggingCategory>
#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <pugixml.hpp>

#include <memory>
#include <string>
#include <vector>

// Edits of a box library, beside the least work that the same job needs. Both are timed in turn,
// and the counters give the medians in milliseconds and their ratio.

namespace {

using timing::median;
using timing::milliseconds;
using timing::StringWriter;

using namespace KX;
using KR::Localization::Message;
using KR::Localization::Translator;
using Library = std::unique_ptr<BoxLibrary, TreeDeleter>;

constexpr int a_messages = 40000;
constexpr int a_messagesOfBox = 8;

/// Times both in turn as often as the benchmark runs. The counters are named after them.
template <class Ours, class Floor>
void compare(benchmark::State& state, const Ours& ours, const Floor& floor)
{
    std::vector<double> ourTimes;
    std::vector<double> floorTimes;
    while (state.KeepRunning()) {
        floorTimes.push_back(milliseconds(floor));
        ourTimes.push_back(milliseconds(ours));
        state.SetIterationTime(ourTimes.back() / 1000);
    }
    state.counters["library_ms"] = median(ourTimes);
    state.counters["floor_ms"] = median(floorTimes);
    state.counters["ratio"] = median(ourTimes) / median(floorTimes);
}

Library newLibrary()
{
    // Every box that is written says that it had no ".metadata".
    QLoggingCategory::setFilterRules(QStringLiteral("kxboxlibrary.critical=false"));
    return Library(new BoxLibrary(QStringLiteral("Measured")));
}

RootBoxDescription description()
{
    return {"Box", boost::make_shared<XmlElement>("Box")};
}

void createBoxes(int count)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    const RootBoxDescription box = description();
    for (int i = 0; i < count; ++i) {
        folder->appendChild(box);
    }
}

/// 2,000 boxes of one name in a folder; the floor is 200 boxes, so linear is 10.
void createInOneFolder(benchmark::State& state)
{
    compare(
        state, [] { createBoxes(2000); }, [] { createBoxes(200); });
}
BENCHMARK(createInOneFolder)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

/// Only the names: 10,000 siblings that all ask for the same one; the floor is 1,000 siblings.
void nameSiblings(benchmark::State& state)
{
    const auto name = [](int count) {
        const std::unique_ptr<BoxLibraryNode, TreeDeleter> folder(new BoxLibraryNode);
        for (int i = 0; i < count; ++i) {
            auto* const node = new BoxLibraryNode;
            node->initName("Box");
            folder->appendChild(node);
        }
    };
    compare(
        state, [&name] { name(10000); }, [&name] { name(1000); });
}
BENCHMARK(nameSiblings)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

Translator translator(const QString& language)
{
    Translator result(language);
    for (int i = 0; i < a_messages; ++i) {
        const int box = i / a_messagesOfBox;
        Message message(QStringLiteral("Library:/Folder %1/Box %2").arg(box / 25).arg(box),
                        QStringLiteral("What box %1 does when the robot says \"hello\"").arg(i));
        message.setTranslation(QStringLiteral("Ce que fait la bo\u00eete %1").arg(i));
        message.setState(Message::State::Finished);
        result.messages().append(message);
    }
    return result;
}

/// Renames a box of a library with two languages; the floor parses and writes both files.
void rename(benchmark::State& state, const std::string& folderName, const std::string& boxName)
{
    const Library library = newLibrary();
    library->setTranslations({{QStringLiteral("fr"), translator(QStringLiteral("fr"))},
                              {QStringLiteral("de"), translator(QStringLiteral("de"))}});
    BoxLibraryNode* const folder = library->boxRoot()->appendChild(folderName);
    BoxLibraryNode* const box = folder->appendChild(description());
    const QByteArray bytes =
        library->projectModel().readFile(QStringLiteral("translations/translation_fr.ts"));
    box->setName(boxName);
    bool other = false;
    compare(
        state,
        [&] {
            other = !other;
            box->setName(other ? "Another" : boxName);
        },
        [&bytes] {
            for (int language = 0; language < 2; ++language) {
                pugi::xml_document document;
                document.load_buffer(bytes.constData(), static_cast<std::size_t>(bytes.size()));
                StringWriter writer;
                document.save(writer, "    ");
            }
        });
    state.counters["file_MB"] = static_cast<double>(bytes.size()) / 1e6;
}

void renameBoxWithMessages(benchmark::State& state)
{
    rename(state, "Folder 12", "Box 300");
}
BENCHMARK(renameBoxWithMessages)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(21);

void renameBoxWithoutMessages(benchmark::State& state)
{
    rename(state, "Folder", "Untranslated");
}
BENCHMARK(renameBoxWithoutMessages)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(21);

} // namespace
