#include "generated_library.hpp"

#include <algorithm>
#include <fstream>
#include <functional>

namespace generated {

namespace {

namespace fs = std::filesystem;

constexpr int a_largeEvery = 50;
constexpr int a_smallPorts = 12;
constexpr int a_largePorts = 120;

void write(const fs::path& path, const std::string& bytes)
{
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (!file.flush()) {
        throw fs::filesystem_error("can't be written", path,
                                   std::make_error_code(std::errc::io_error));
    }
}

std::string numbered(const char* text, int number)
{
    return text + std::to_string(number);
}

std::string order(const std::string& prefix, int first, int count)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Folder>\n";
    for (int i = first; i < first + count; ++i) {
        xml.append("  <Node name=\"").append(prefix).append(std::to_string(i)).append("\" />\n");
    }
    return xml + "</Folder>\n";
}

// As an editor writes it: a script, and inputs and outputs with tooltips.
std::string box(int number, int ports)
{
    const std::string n = std::to_string(number);
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<KinestraBox bhx_version=\"3\">\n"
        "  <Box name=\"root\" tooltip=\"What box " +
        n +
        " does for the robot &amp; its user.\" bitmap_expanded=\"true\">\n"
        "    <Bitmaps>\n      <bitmap>icon.png</bitmap>\n    </Bitmaps>\n"
        "    <Script language=\"python\"><![CDATA[def start(box, value):\n";
    for (int i = 0; i < ports; ++i) {
        xml.append(numbered("    if value == ", i))
            .append(numbered(":\n        box.send(\"output", i))
            .append("\", box.setting(\"limit\") * value)\n");
    }
    xml += "]]></Script>\n";
    for (int i = 0; i < ports; ++i) {
        const std::string id = std::to_string(i + 1);
        xml.append(i % 2 == 0 ? "    <Input name=\"input" : "    <Output name=\"output")
            .append(id)
            .append(R"(" id=")")
            .append(id)
            .append(R"(" type="2" type_size="1" nature="2" tooltip="Takes the value number )")
            .append(id)
            .append(" of box ")
            .append(n)
            .append(", which is looked at when it comes.\" />\n");
    }
    return xml + "  </Box>\n</KinestraBox>\n";
}

std::string behavior(int number)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<KinestraBox bhx_version=\"3\">\n"
           "  <Box name=\"Behaviour " +
           std::to_string(number) +
           "\" tooltip=\"A behaviour\">\n"
           "    <Input id=\"1\" name=\"onLoad\" type=\"1\" type_size=\"1\" nature=\"0\" />\n"
           "    <Input id=\"2\" name=\"onStart\" type=\"1\" type_size=\"1\" nature=\"2\" />\n"
           "    <Input id=\"3\" name=\"onStop\" type=\"1\" type_size=\"1\" nature=\"3\" />\n"
           "    <Output id=\"4\" name=\"onStopped\" type=\"1\" type_size=\"1\" nature=\"1\" />\n"
           "    <Timeline />\n  </Box>\n</KinestraBox>\n";
}

std::string translations(const std::string& language, const Size& size)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                      "<TS version=\"2.1\" language=\"" +
                      language + "\" sourcelanguage=\"en\">\n";
    const int ofBox = size.messages / size.boxes;
    for (int i = 0; i < size.boxes; ++i) {
        xml.append("<context>\n    <name>Library:/All/Folder ")
            .append(std::to_string(i / size.boxesOfFolder))
            .append(numbered("/Box ", i))
            .append("</name>\n");
        for (int message = 0; message < ofBox; ++message) {
            const std::string text = numbered(" number ", message) + numbered(" of box ", i);
            xml.append("    <message>\n        <source>Takes the value").append(text);
            xml.append(", which is looked at.</source>\n        <translation>")
                .append(language)
                .append(": la valeur")
                .append(text)
                .append(", regard\xc3\xa9"
                        "e.</translation>\n    </message>\n");
        }
        xml += "</context>\n";
    }
    return xml + "</TS>\n";
}

void writeFolders(const fs::path& path, int boxes, int ofFolder,
                  const std::function<void(const fs::path& directory, int number)>& writeBox)
{
    write(path / ".kxproject",
          "{\n    \"Type\": \"KinestraBoxLibrary\",\n    \"Version\": \"3.0\",\n"
          "    \"title\": \"Generated\"\n}\n");
    write(path / "bxlinfo", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Folder>\n"
                            "  <Node name=\"All\" />\n</Folder>\n");
    write(path / "All" / "bxlinfo", order("Folder ", 0, (boxes + ofFolder - 1) / ofFolder));
    for (int first = 0; first < boxes; first += ofFolder) {
        const fs::path folder = path / "All" / numbered("Folder ", first / ofFolder);
        const int count = std::min(ofFolder, boxes - first);
        write(folder / "bxlinfo", order("Box ", first, count));
        for (int i = first; i < first + count; ++i) {
            writeBox(folder / numbered("Box ", i), i);
        }
    }
}

} // namespace

void writeLibrary(const fs::path& path, const Size& size)
{
    writeFolders(path, size.boxes, size.boxesOfFolder, [](const fs::path& directory, int number) {
        const bool isLarge = number % a_largeEvery == a_largeEvery - 1;
        write(directory / "box.bhx", box(number, isLarge ? a_largePorts : a_smallPorts));
    });
    if (size.messages > 0) {
        for (const char* const language : {"fr", "de"}) {
            write(path / "translations" / (std::string("translation_") + language + ".ts"),
                  translations(language, size));
        }
    }
}

void writeBehaviors(const fs::path& path, int count)
{
    writeFolders(path, count, 20, [](const fs::path& directory, int number) {
        write(directory / "box.bhx", behavior(number));
        write(directory / "icon.png", std::string(2'000, 'i'));
        write(directory / "sounds" / "step.wav", std::string(8'000, 's'));
    });
}

} // namespace generated
