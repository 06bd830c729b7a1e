#pragma once

#include "support.hpp"

#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/parameter.hpp>

namespace KX::test {

template <class Ios>
std::string describeIos(const Ios& ios)
{
    std::string text;
    for (const auto& io : ios) {
        text += " " + std::to_string(io->id()) + "=" + io->name();
    }
    return text + "\n";
}

inline std::string describeBox(const BoxLibraryNode& node)
{
    const auto data = node.boxData();
    std::string text = "tooltip " + data->tooltip().toStdString() + "\nbitmaps " +
                       QStringList(data->bitmaps()).join(q("|")).toStdString() + "\nexpanded " +
                       std::to_string(static_cast<int>(data->bitmapExpanded())) + "\n";
    text += "inputs" + describeIos(data->inputs()) + "outputs" + describeIos(data->outputs()) +
            "parameters" + describeIos(data->parameters()) + data->xmlData().toStdString();
    const auto resources = node.resources();
    for (const QString& file : std::as_const(resources->files)) {
        text += "resource " + file.toStdString() + " " +
                node.project()->readFile(node.path() + q("/") + file).toStdString() + "\n";
    }
    return text;
}

inline std::string describeTree(const BoxLibraryNode& node)
{
    std::string text = "node '" + node.name() + "' at '" + node.path().toStdString() + "'\n";
    if (node.boxData()) {
        return text + describeBox(node);
    }
    for (const BoxLibraryNode* const child : node.children()) {
        text += describeTree(*child);
    }
    return text + "end\n";
}

/// Everything that a library shows, as text, so that two processes can compare what they see.
inline std::string describe(BoxLibrary& library)
{
    std::string text = library.title().toStdString() + " at " + library.path().toStdString() + "\n";
    for (const char* const key : {"Type", "Version"}) {
        text += library.projectModel().getMetadata(q(key)).toStdString() + "\n";
    }
    text += describeTree(*library.boxRoot());
    const auto translators = library.translations();
    QStringList languages = translators.keys();
    languages.sort();
    for (const QString& language : std::as_const(languages)) {
        text += "language " + language.toStdString() + "\n";
        const auto translator = translators.value(language);
        for (const auto& message : translator.messages()) {
            text += message.context().toStdString() + "|" + message.source().toStdString() + "|" +
                    message.translation().toStdString() + "\n";
        }
    }
    return text;
}

} // namespace KX::test
