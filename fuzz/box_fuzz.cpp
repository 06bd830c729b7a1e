// Bytes as the box file of two boxes, in the form of a library's box and of a behaviour project:
// what is accepted is the same in both, is written with the same meaning and read the same again,
// and can be edited and exported.
#include "libraries.hpp"
#include "xml_bytes.hpp"

#include <algorithm>

using namespace fuzz;

namespace {

const bool a_prepared = prepare();

template <class Port>
std::string portText(const Port& port)
{
    return std::to_string(port.id()) + ' ' + port.name() + ' ' + port.tooltip() + ' ' +
           std::to_string(port.type()) + ' ' + std::to_string(port.typeSize()) + ' ' +
           std::to_string(port.nature()) + ' ' + std::to_string(port.inner()) + '\n';
}

std::string parameterText(const KR::Parameter& parameter)
{
    std::string text =
        std::to_string(parameter.id()) + ' ' + parameter.name() + ' ' + parameter.tooltip() + ' ' +
        std::to_string(parameter.contentType()) + ' ' + parameter.value() + ' ' +
        parameter.defaultValue() + ' ' + parameter.minimum() + ' ' + parameter.maximum() + ' ' +
        std::to_string(parameter.customChoice()) + std::to_string(parameter.inheritsFromParent());
    for (const std::string& choice : parameter.choices()) {
        text += " [" + choice + ']';
    }
    return text + '\n';
}

/// Everything that a library shows of a box.
std::string textOf(const KX::BoxLibraryNode& node)
{
    const auto data = node.boxData();
    require(data != nullptr, "a box stays a box");
    std::string text = data->tooltip().toStdString() + '\n' +
                       (data->bitmapExpanded() ? "expanded\n" : "collapsed\n");
    for (const QString& bitmap : data->bitmaps()) {
        text += '[' + bitmap.toStdString() + "]\n";
    }
    for (const auto& input : data->inputs()) {
        text += "in " + portText(*input);
    }
    for (const auto& output : data->outputs()) {
        text += "out " + portText(*output);
    }
    for (const auto& parameter : data->parameters()) {
        text += "parameter " + parameterText(*parameter);
    }
    return text;
}

/// The box's element as it is written.
std::string elementOf(const KX::BoxLibraryNode& node)
{
    const auto box = node.loadBox();
    require(box != nullptr, "a box has a box file that can be read");
    box->setAttribute("name", "root", false);
    return save(box);
}

void checkSaving(KX::BoxLibraryNode& node)
{
    const std::string before = elementOf(node);
    const std::string data = textOf(node);
    require(node.save(), "a box that was read is written");
    const auto& model = *node.project();
    require(model.hasFile(node.path() + q("/box.bhx")) &&
                !model.hasFile(node.path() + q("/behavior.bhx")),
            "a box that was written has one box file");
    requireSame(elementOf(node), before, "the written box file says what the read one did");
    requireSame(textOf(node), data, "writing leaves the data");
    const QByteArray bytes = node.loadBoxData();
    require(node.save() && node.loadBoxData() == bytes, "a second save gives the same bytes");
}

void checkEditing(KX::BoxLibraryNode& node)
{
    const auto data = node.boxData();
    data->setTooltip(data->tooltip() + q(" <&\"'>\t\n"));
    QList<QString> bitmaps = data->bitmaps();
    std::reverse(bitmaps.begin(), bitmaps.end());
    bitmaps.append(q("icons/]]> & .png"));
    data->setBitmaps(bitmaps);
    data->setBitmapExpanded(!data->bitmapExpanded());
}

void checkExport(KX::BoxLibrary& library)
{
    QStringList behaviors;
    library.xFindBehaviors(library.boxRoot(), behaviors);
    if (behaviors.isEmpty()) {
        return;
    }
    const TemporaryDirectory directory;
    library.exportBehaviors(directory.path("."));
    for (int i = 0; i < behaviors.size(); ++i) {
        QFile file(directory.path((behaviors.at(i) + q("/behavior.bhx")).toUtf8().constData()));
        require(file.open(QIODevice::ReadOnly), "every behaviour is exported");
        const QByteArray bytes = file.readAll();
        const auto document = load(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        require(document != nullptr, "an exported behaviour can be read");
        requireSame(save(document->root()->firstChild("Box")->clone()),
                    elementOf(*library.boxRoot()->child(i)),
                    "an exported behaviour says what its box does");
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProjectModel model;
    model.writeFile(q("A/box.bhx"), bytesOf(data, size));
    model.writeFile(q("B/behavior.bhx"), bytesOf(data, size));
    const Library library = open(std::move(model));
    KX::BoxLibraryNode* const root = library->boxRoot();
    require(root->children().size() == 2, "every directory is a node");
    const bool isBox = root->child(0)->boxData() != nullptr;
    require(isBox == (root->child(1)->boxData() != nullptr), "both forms are accepted or none");
    require(root->child(0)->loadBoxData() == bytesOf(data, size),
            "opening leaves a box file as it is");
    if (!isBox) {
        return 0;
    }
    requireSame(textOf(*root->child(0)), textOf(*root->child(1)), "both forms mean the same");
    checkExport(*library);
    for (KX::BoxLibraryNode* const node : root->children()) {
        checkSaving(*node);
        checkEditing(*node);
    }
    const Library again = reread(*library);
    requireSame(textOf(*again->boxRoot()->child(0)), textOf(*root->child(0)),
                "an edited box is read as it is in memory");
    requireSame(textOf(*again->boxRoot()->child(1)), textOf(*root->child(0)),
                "both forms are edited alike");
    return 0;
}
