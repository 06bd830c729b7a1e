// Bytes as an order file: every directory beside it is a node exactly once, those that it lists in
// its order, and the order file that is written is read to the same order.
#include "libraries.hpp"
#include "xml_bytes.hpp"

#include <algorithm>
#include <array>
#include <vector>

using namespace fuzz;

namespace {

const bool a_prepared = prepare();

using Names = std::vector<std::string>;

// In the order of their bytes. One is a name that XML cannot hold.
const std::array<const char*, 8> a_directories{"%20x",
                                               "100%25",
                                               "A",
                                               "A (2)",
                                               "Ask%3a what is it%3f",
                                               "translations",
                                               "z\x01",
                                               "\xc3\x9c\xf0\x9f\xa4\x96"};

/// The file names that the order file asks for, each once, in so far as they exist.
Names listed(const std::uint8_t* data, std::size_t size)
{
    Names names;
    const DocumentPtr document = load(reinterpret_cast<const char*>(data), size);
    if (!document || document->root()->beacon() != "Folder") {
        return names;
    }
    for (const auto& node : document->root()->children("Node", std::string())) {
        std::string name;
        if (!node->getAttribute("name", name)) {
            continue;
        }
        name = KX::BoxLibraryNode::escapeFileName(name);
        const auto is = [&name](const std::string& other) { return other == name; };
        if (std::any_of(a_directories.begin(), a_directories.end(), is) &&
            std::none_of(names.begin(), names.end(), is)) {
            names.push_back(name);
        }
    }
    return names;
}

/// The children that are expected: first what is listed, then the rest.
Names expected(Names names)
{
    for (const std::string directory : a_directories) {
        if (std::find(names.begin(), names.end(), directory) == names.end() &&
            directory != "translations") {
            names.push_back(directory);
        }
    }
    return names;
}

std::string childrenOf(const KX::BoxLibraryNode& folder)
{
    std::string text;
    for (const KX::BoxLibraryNode* const child : folder.children()) {
        text += child->fileName() + '\n';
    }
    return text;
}

std::string joined(const Names& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += name + '\n';
    }
    return text;
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProjectModel model;
    for (const std::string folder : {"", "A/"}) {
        model.writeFile(q(folder + "bxlinfo"), bytesOf(data, size));
        for (const char* const directory : a_directories) {
            model.mkdir(q(folder + directory), true);
        }
    }
    const Library library = open(std::move(model));
    KX::BoxLibraryNode& root = *library->boxRoot();
    const std::string order = joined(expected(listed(data, size)));
    requireSame(childrenOf(root), order, "the top has its children in this order");
    requireSame(childrenOf(*root.child("A")), order, "a folder has its children in this order");

    require(root.saveAll(), "folders can be written");
    const Contents written = contentsOf(library->projectModel());
    const Library again = reread(*library);
    // A name that XML cannot hold comes last, which may not be where it was.
    const std::string last = "z\x01\n";
    std::string kept = order;
    kept.erase(kept.find(last), last.size());
    requireSame(childrenOf(*again->boxRoot()), kept + last, "the order is read as it was written");
    requireSame(printed(contentsOf(again->projectModel())), printed(written),
                "reading a written library changes no file");
    return 0;
}
