#include "timing.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>
#include <kr/localization/ts.hpp>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <memory>
#include <string>
#include <vector>

// Reading and writing a large translation file beside what pugixml alone needs to parse and save
// the same bytes. Both are timed in turn, and the counters give the medians in milliseconds and
// their ratio.

namespace {

using timing::median;
using timing::milliseconds;
using timing::StringWriter;

using namespace KR::Localization;

constexpr int a_messages = 40000;

Message message(int i)
{
    Message m(QStringLiteral("Library:/Folder %1/Box %2").arg(i / 200).arg(i / 8),
              QStringLiteral("What box %1 does when the robot says \"hello\" & waves").arg(i));
    m.setTranslation(QStringLiteral("Ce que fait la bo\u00eete %1 quand l'automate salue").arg(i));
    m.setState(i % 5 == 0 ? Message::State::Unfinished : Message::State::Finished);
    if (i % 3 == 0) {
        m.setComment(QStringLiteral("Name of the box"));
    }
    if (i % 4 == 0) {
        m.setLocations({{QStringLiteral("../folder/box.xar"), i % 100 + 1}});
    }
    if (i % 50 == 0) {
        m.setPlural(true);
        m.setTranslations({QStringLiteral("%n pas"), QStringLiteral("%n pas !")});
    }
    return m;
}

const Translator& translator()
{
    static const Translator made = [] {
        Translator t(QStringLiteral("fr"));
        for (int i = 0; i < a_messages; ++i) {
            t.messages().append(message(i));
        }
        return t;
    }();
    return made;
}

const QByteArray& file()
{
    static const QByteArray bytes = TS::translatorTo(translator(), false);
    return bytes;
}

/// Times both in turn as often as the benchmark runs.
template <class Ours, class Theirs>
void compare(benchmark::State& state, const Ours& ours, const Theirs& theirs)
{
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    while (state.KeepRunning()) {
        theirTimes.push_back(theirs());
        ourTimes.push_back(ours());
        state.SetIterationTime(ourTimes.back() / 1000);
    }
    state.counters["krlocalization_ms"] = median(ourTimes);
    state.counters["pugixml_ms"] = median(theirTimes);
    state.counters["ratio"] = median(ourTimes) / median(theirTimes);
    state.counters["file_MB"] = static_cast<double>(file().size()) / 1e6;
}

void read(benchmark::State& state)
{
    const QByteArray& bytes = file();
    compare(
        state,
        [&bytes] {
            Translator result;
            return milliseconds([&] { result = TS::translatorFrom(bytes); });
        },
        [&bytes] {
            pugi::xml_document document;
            return milliseconds([&] {
                document.load_buffer(bytes.constData(), static_cast<std::size_t>(bytes.size()));
            });
        });
}
BENCHMARK(read)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(41);

void write(benchmark::State& state)
{
    const Translator& messages = translator();
    pugi::xml_document document;
    document.load_buffer(file().constData(), static_cast<std::size_t>(file().size()));
    compare(
        state,
        [&messages] {
            QByteArray bytes;
            return milliseconds([&] { bytes = TS::translatorTo(messages, false); });
        },
        [&document] {
            StringWriter writer;
            return milliseconds([&] { document.save(writer, "    "); });
        });
}
BENCHMARK(write)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(41);

/// Renaming one box in a set of two languages, as the first change after copying the set.
void renameInCopiedSet(benchmark::State& state)
{
    const QHash<QString, Translator> set{{QStringLiteral("fr"), translator()},
                                         {QStringLiteral("de"), translator()}};
    ContextMatchPatcher patcher(
        {{QStringLiteral("Library:/Folder 12/Box 300"), QStringLiteral("Library:/Folder 12/Run")}});
    while (state.KeepRunning()) {
        QHash<QString, Translator> copy = set;
        rewriteContexts(copy, patcher);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(renameInCopiedSet)->Unit(benchmark::kMillisecond);

/// Inserting the messages of 10,000 boxes of changed names.
void insertManyNames(benchmark::State& state)
{
    QMap<QString, QString> names;
    for (int i = 0; i < 10000; ++i) {
        names.insert(QStringLiteral("Box %1").arg(i), QStringLiteral("Box %1 (2)").arg(i));
    }
    const QHash<QString, Translator> source{{QStringLiteral("fr"), translator()}};
    ContextBoxNamePatcher patcher(QStringLiteral("Library:/New"), names);
    while (state.KeepRunning()) {
        QHash<QString, Translator> target = source;
        insertMessages(target, source, patcher);
        benchmark::DoNotOptimize(target);
    }
}
BENCHMARK(insertManyNames)->Unit(benchmark::kMillisecond);

void buildIndex(benchmark::State& state)
{
    while (state.KeepRunning()) {
        state.PauseTiming();
        Translator copy(QStringLiteral("fr"));
        copy.messages() = translator().messages();
        state.ResumeTiming();
        copy.ensuredIndexed();
    }
}
BENCHMARK(buildIndex)->Unit(benchmark::kMillisecond);

} // namespace
