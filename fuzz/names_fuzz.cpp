// Bytes as a name, as a file name and as a path in a project: names survive the way to a directory
// and back, siblings never share one, and a path stands for the one place that it is listed at.
#include "libraries.hpp"

#include <pk/project/error.hpp>

#include <set>
#include <vector>

using namespace fuzz;
using Node = KX::BoxLibraryNode;

namespace {

const bool a_prepared = prepare();

/// What the functions on names make of bytes that are no name: valid UTF-8 up to the first NUL.
std::string decoded(const std::string& bytes)
{
    return QString::fromUtf8(bytes.c_str()).toUtf8().toStdString();
}

bool isName(const std::string& bytes)
{
    return bytes.find('\0') == std::string::npos && decoded(bytes) == bytes &&
           bytes.compare(0, 3, "\xef\xbb\xbf") != 0;
}

void checkEscaping(const std::string& bytes)
{
    const std::string fileName = Node::escapeFileName(bytes);
    require(isName(fileName) && isName(Node::unEscapeFileName(bytes)), "all results are names");
    require(fileName.find_first_of("<>:\"/|?*") == std::string::npos,
            "a file name has no special character");
    require(fileName.empty() ||
                (fileName.front() != ' ' && fileName.back() != ' ' && fileName.back() != '.'),
            "a file name begins and ends with neither space nor dot");
    requireSame(Node::escapeFileName(Node::unEscapeFileName(fileName)), fileName,
                "a file name is that of its name");
    if (isName(bytes)) {
        requireSame(Node::unEscapeFileName(fileName), bytes,
                    "a name comes back from its file name");
    }
}

void checkNumbers(const std::string& bytes)
{
    const std::string base = Node::unNumberName(bytes);
    require(isName(base), "a name without number is a name");
    for (const int number : {0, 2, 10, 2147483647}) {
        const std::string numbered = Node::numberName(bytes, number);
        requireSame(Node::unNumberName(numbered),
                    isName(bytes) ? bytes : Node::unEscapeFileName(Node::escapeFileName(bytes)),
                    "a number comes off again");
    }
    if (isName(bytes)) {
        require(bytes.compare(0, base.size(), base) == 0, "only the end of a name is its number");
    }
}

/// Folders of the same name at the top, in a folder, and with every other way to get the name.
void checkSiblings(const std::string& bytes)
{
    const Library library(new KX::BoxLibrary(q("Demo")));
    Node& root = *library->boxRoot();
    std::set<std::string> names;
    std::set<std::string> reread;
    const auto add = [&](Node* node) {
        if (node != nullptr) {
            require(names.insert(node->name()).second, "siblings have names of their own");
            require(isNamed(*node, bytes),
                    "a node has the name that was asked for, but for the number");
            require(library->projectModel().hasFile(node->path() + q("/bxlinfo")),
                    "a folder's files are at its path");
        }
    };
    for (int i = 0; i < 3; ++i) {
        add(root.appendChild(bytes));
    }
    for (const char* const name : {"a", "b"}) {
        Node* const child = root.appendChild(std::string(name));
        const std::string before = child->name();
        child->setName(bytes);
        if (child->name() != before) {
            add(child);
        } else {
            names.insert(before);
        }
    }
    const Library again = fuzz::reread(*library);
    for (const Node* const child : again->boxRoot()->children()) {
        reread.insert(child->name());
    }
    require(reread == names, "the names are read as they are in memory");
}

void checkPath(const std::string& bytes)
{
    const QString path = q(bytes);
    ProjectModel model;
    try {
        model.writeFile(path, "x");
    } catch (const pk::project::Error&) {
        require(!model.hasFile(path), "a path that is refused has no file");
        require(contentsOf(model).empty(), "a path that is refused leaves nothing");
        return;
    }
    require(model.hasFile(path) && model.readFile(path) == "x", "a file is where it was put");
    const QStringList files = model.getFileList(QString(), false, true, false);
    require(files.size() == 1 && model.hasFile(files.front()), "a file is listed at one path");
    model.writeFile(files.front(), "y");
    require(model.readFile(path) == "y", "the listed path stands for the same file");
    require(!files.front().startsWith(QLatin1Char('/')) && !files.front().contains(q("//")) &&
                !q("/" + files.front().toStdString() + "/").contains(q("/./")) &&
                !q("/" + files.front().toStdString() + "/").contains(q("/../")),
            "a listed path is normal");
    if (!files.front().startsWith(q("to/"))) { // what a file is in cannot be replaced by it
        model.move(path, q("to"), true);
        require(model.readFile(q("to")) == "y", "a file moves from the path that it was put at");
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes = bytesOf(data, size).toStdString();
    checkEscaping(bytes);
    checkNumbers(bytes);
    checkSiblings(bytes);
    checkPath(bytes);
    return 0;
}
