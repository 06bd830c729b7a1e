// Reading and writing 10,000 box files of 4 KB, against the parser alone on the same bytes in the
// same run. The rows that matter come in pairs, and ratio_to_pugixml in the Ratio rows is the
// median of the library's processor times over the median of the parser's, measured in turns.
#include <kx/xml_document.hpp>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int a_fileCount = 10000;
constexpr std::size_t a_fileSize = 4096;

using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;

std::string port(const char* tag, int id, const std::string& name)
{
    return "    <" + std::string(tag) + " name=\"" + name + R"(" type="1" type_size="1" nature=")" +
           std::to_string(id % 4) +
           R"(" inner="0" tooltip="Signal sent when the &quot;box&quot; runs." id=")" +
           std::to_string(id) + "\" />\n";
}

std::string innerBox(int id)
{
    const std::string number = std::to_string(id);
    return "              <Box name=\"Step " + number + "\" id=\"" + number +
           R"(" localization="8" tooltip="" x=")" + std::to_string(40 * id) +
           "\" y=\"52\">\n                <Bitmaps>\n"
           "                  <bitmap>media/images/box/box-diagram.png</bitmap>\n"
           "                </Bitmaps>\n              </Box>\n"
           "              <Link inputowner=\"" +
           number + R"(" indexofinput="2" outputowner="0" indexofoutput="4" />)" + "\n";
}

// A box with its ports, a timeline with a diagram inside, and a script that fills it up to 4 KB.
std::string boxFile(int number)
{
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>
<KinestraBox bhx_version="3">
  <Box name="root" id="-1" localization="8" tooltip="Walks &amp; waits, box )" +
                       std::to_string(number) + R"(." x="0" y="0">
    <Bitmaps>
      <bitmap>media/images/box/root.png</bitmap>
    </Bitmaps>
)";
    text += port("Input", 1, "onLoad") + port("Input", 2, "onStart") + port("Input", 3, "onStop") +
            port("Output", 4, "onStopped");
    text += R"(    <Parameter name="Speed" inherits_from_parent="0" content_type="2" value="50")"
            R"( default_value="50" min="0" max="100" tooltip="In percent." id="5" />
    <Timeline enable="1" fps="25" start_frame="1" end_frame="-1" size="300">
      <BehaviorLayer name="behavior_layer1">
        <BehaviorKeyframe name="keyframe1" index="1">
          <Diagram scale="100">
)";
    text += innerBox(1) + innerBox(2) + innerBox(3);
    text += "          </Diagram>\n        </BehaviorKeyframe>\n      </BehaviorLayer>\n"
            "    </Timeline>\n    <script language=\"4\">\n      <content><![CDATA[";
    const std::string tail = "]]></content>\n    </script>\n  </Box>\n</KinestraBox>\n";
    const std::string line = "    if self.a < self.b and self.b > 0: self.onStopped()\n";
    while (text.size() + line.size() + tail.size() <= a_fileSize) {
        text += line;
    }
    return text.append(a_fileSize - text.size() - tail.size(), '#') + tail;
}

const std::vector<std::string>& boxFiles()
{
    static const std::vector<std::string> files = [] {
        std::vector<std::string> made;
        made.reserve(a_fileCount);
        for (int i = 0; i < a_fileCount; ++i) {
            made.push_back(boxFile(i));
        }
        return made;
    }();
    return files;
}

void require(bool good)
{
    if (!good) {
        std::abort();
    }
}

FilePtr openForReading(const std::string& bytes)
{
    // The stream only reads, but the interface predates const.
    return {fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"), &std::fclose};
}

boost::shared_ptr<KX::XmlDocument> load(const std::string& bytes)
{
    const FilePtr stream = openForReading(bytes);
    auto document = KX::XmlDocument::loadFromXmlFile(stream.get(), nullptr, nullptr);
    require(document != nullptr);
    return document;
}

// Makes every element an object of its own, as a program that looks at all of them does.
std::size_t visit(const KX::XmlElement& element)
{
    std::size_t count = 1;
    for (const auto& child : element.mixedChildren()) {
        count += visit(*child);
    }
    return count;
}

void loadAll()
{
    for (const std::string& bytes : boxFiles()) {
        benchmark::DoNotOptimize(load(bytes));
    }
}

void loadAndVisitAll()
{
    for (const std::string& bytes : boxFiles()) {
        benchmark::DoNotOptimize(visit(*load(bytes)->root()));
    }
}

void parseAll()
{
    for (const std::string& bytes : boxFiles()) {
        pugi::xml_document document;
        require(document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default,
                                     pugi::encoding_utf8));
        benchmark::DoNotOptimize(document.first_child());
    }
}

const std::vector<boost::shared_ptr<KX::XmlDocument>>& documents(bool visited)
{
    static std::array<std::vector<boost::shared_ptr<KX::XmlDocument>>, 2> all;
    auto& made = all.at(visited ? 1 : 0);
    if (made.empty()) {
        for (const std::string& bytes : boxFiles()) {
            made.push_back(load(bytes));
            if (visited) {
                visit(*made.back()->root());
            }
        }
    }
    return made;
}

const std::vector<std::unique_ptr<pugi::xml_document>>& parsed()
{
    static const std::vector<std::unique_ptr<pugi::xml_document>> all = [] {
        std::vector<std::unique_ptr<pugi::xml_document>> made;
        for (const std::string& bytes : boxFiles()) {
            made.push_back(std::make_unique<pugi::xml_document>());
            require(made.back()->load_buffer(bytes.data(), bytes.size()));
        }
        return made;
    }();
    return all;
}

// Both writers write to streams in memory of the same kind.
FilePtr openForWriting(std::array<char, 4 * a_fileSize>& buffer)
{
    return {fmemopen(buffer.data(), buffer.size(), "wb"), &std::fclose};
}

void saveAll(bool visited)
{
    static std::array<char, 4 * a_fileSize> buffer;
    for (const auto& document : documents(visited)) {
        const FilePtr stream = openForWriting(buffer);
        require(document->saveToXmlFile(stream.get(), nullptr, nullptr));
    }
}

void saveAllParsed()
{
    static std::array<char, 4 * a_fileSize> buffer;
    for (const auto& document : parsed()) {
        const FilePtr stream = openForWriting(buffer);
        pugi::xml_writer_file writer(stream.get());
        document->save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
        require(std::fflush(stream.get()) == 0);
    }
}

template <class Work>
double seconds(const Work& work)
{
    // Processor time: what other programs do meanwhile is no part of the comparison.
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <class Ours, class Theirs>
void compare(benchmark::State& state, const Ours& ours, const Theirs& theirs)
{
    ours();
    theirs();
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    for (auto _ : state) {
        theirTimes.push_back(seconds(theirs));
        ourTimes.push_back(seconds(ours));
        state.SetIterationTime(ourTimes.back());
    }
    state.counters["kxserial_ms"] = 1000 * median(ourTimes);
    state.counters["pugixml_ms"] = 1000 * median(theirTimes);
    state.counters["ratio_to_pugixml"] = median(ourTimes) / median(theirTimes);
}

void loadRatio(benchmark::State& state)
{
    compare(state, loadAll, parseAll);
}

void loadAndVisitRatio(benchmark::State& state)
{
    compare(state, loadAndVisitAll, parseAll);
}

void saveRatio(benchmark::State& state)
{
    compare(
        state, [] { saveAll(false); }, saveAllParsed);
}

void saveVisitedRatio(benchmark::State& state)
{
    compare(
        state, [] { saveAll(true); }, saveAllParsed);
}

constexpr int a_turns = 15;

BENCHMARK(loadRatio)->UseManualTime()->Iterations(a_turns)->Unit(benchmark::kMillisecond);
BENCHMARK(loadAndVisitRatio)->UseManualTime()->Iterations(a_turns)->Unit(benchmark::kMillisecond);
BENCHMARK(saveRatio)->UseManualTime()->Iterations(a_turns)->Unit(benchmark::kMillisecond);
BENCHMARK(saveVisitedRatio)->UseManualTime()->Iterations(a_turns)->Unit(benchmark::kMillisecond);

} // namespace
