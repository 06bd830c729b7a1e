// new, add-folder, add-box and set: what makes libraries and nodes and edits boxes.
#include "box_reader.hpp"
#include "command_line.hpp"
#include "commands.hpp"
#include "failure.hpp"
#include "local_files.hpp"
#include "reserved_names.hpp"

#include <kxboxlibrary/box_data.hpp>

#include <QDir>
#include <QFileInfo>
#include <boost/make_shared.hpp>

namespace kxbox {

namespace {

using KX::BoxLibraryNode;
using pk::project::ProjectModel;

// new

struct NewArguments
{
    std::string library;
    std::string title;
    std::string format = "directory";
};

Outcome makeLibrary(const NewArguments& arguments, const Session& session)
{
    requireFreePlace(arguments.library);
    // Without a "/" at the end, behind which there would be no file name.
    const QString path = QDir::cleanPath(QString::fromStdString(arguments.library));
    const QString title = arguments.title.empty() ? KX::BoxLibrary::makeTitleFromPath(path)
                                                  : QString::fromStdString(arguments.title);
    const std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> library(new KX::BoxLibrary(title));
    if (!session.dryRun) {
        // Not saveTo(), which takes the title from the path and what is there for the old library.
        library->projectModel().save(path, projectFormat(arguments.format), false);
    }
    Changes changes;
    changes.add("library", title.toStdString(), arguments.library);
    return outcomeOf(changes, arguments.library, session.dryRun);
}

// add-folder, add-box

/// Notes a node that was made, and that it did not get the name that was asked for.
void noteNode(const OpenLibrary& library, Changes& changes, const char* kind,
              const BoxLibraryNode& node, const std::string& name)
{
    if (node.name() != name) {
        changes.add("renumber", name, node.name());
    }
    changes.add(kind, library.address(node));
    changes.add("directory", node.path().toStdString());
}

void addFolder(OpenLibrary& library, Changes& changes, const std::string& parent,
               const std::string& name)
{
    BoxLibraryNode& folder = library.folder(parent);
    checkName(name, folder.parent() == nullptr);
    const BoxLibraryNode* const node = folder.appendChild(name);
    noteNode(library, changes, "folder", *node, name);
}

struct BoxArguments
{
    std::string parent;
    std::string name;
    std::string file;
    std::vector<std::string> resources;
};

boost::shared_ptr<KX::XmlElement> readBoxFile(const std::string& path)
{
    try {
        return readBox(readLocalFile(path));
    } catch (const BadBoxFile& error) {
        throw Failure(path + ": not a box file: " + error.text());
    }
}

/// Copies a file, or a directory with all that is in it, to the top of a project.
void addResource(ProjectModel& resources, const std::string& path)
{
    const QString local = QString::fromStdString(path);
    // Of "data/" and "." too.
    const QString name = QFileInfo(QDir::cleanPath(QFileInfo(local).absoluteFilePath())).fileName();
    const std::string reason = reservedReason(name.toStdString(), false);
    if (!reason.empty()) {
        throw Failure(path + ": can't be a resource: " + reason);
    }
    if (resources.getFileList(QString(), true, false, false).contains(name)) {
        throw Failure(path + ": another resource has the same name");
    }
    if (QFileInfo(local).isDir()) {
        resources.importFile(ProjectModel(local), QString(), name, true);
    } else {
        resources.writeFile(name, readLocalFile(path));
    }
}

void addBox(OpenLibrary& library, Changes& changes, const BoxArguments& arguments)
{
    BoxLibraryNode& folder = library.folder(arguments.parent);
    checkName(arguments.name, folder.parent() == nullptr);
    const auto box = readBoxFile(arguments.file);
    ProjectModel resources;
    for (const std::string& path : arguments.resources) {
        addResource(resources, path);
    }
    const auto list = boost::make_shared<KX::BoxResourceList>(
        &resources, QString(), resources.getFileList(QString(), false, true, false));
    BoxLibraryNode* const node =
        folder.appendChild(KX::RootBoxDescription(arguments.name, box, list));
    noteNode(library, changes, "box", *node, arguments.name);
    for (const QString& file : list->files) {
        changes.add("resource", file.toStdString());
    }
}

// set

struct SetArguments
{
    std::string node;
    std::optional<std::string> tooltip;
    std::vector<std::string> bitmaps; // none when they are to stay
    std::string expanded;             // empty when it is to stay
};

QList<QString> bitmapsFrom(const std::vector<std::string>& names)
{
    QList<QString> bitmaps;
    for (const std::string& name : names) {
        if (!name.empty()) {
            bitmaps.append(QString::fromStdString(name));
        }
    }
    return bitmaps;
}

void requireResources(const OpenLibrary& library, const BoxLibraryNode& node,
                      const QList<QString>& bitmaps)
{
    const QStringList resources = node.resources()->files;
    for (const QString& bitmap : bitmaps) {
        if (!resources.contains(bitmap)) {
            throw Failure(library.path() + ": the box '" + library.address(node) +
                          "' has no resource '" + bitmap.toStdString() + "' for a bitmap");
        }
    }
}

void setData(OpenLibrary& library, Changes& changes, const SetArguments& arguments)
{
    if (!arguments.tooltip && arguments.bitmaps.empty() && arguments.expanded.empty()) {
        throw UsageError("set: one of --tooltip, --bitmap and --expanded is required");
    }
    const BoxLibraryNode& node = library.box(arguments.node);
    KX::BoxData& data = *node.boxData();
    const std::string address = library.address(node);
    if (arguments.tooltip && *arguments.tooltip != data.tooltip().toStdString()) {
        try {
            data.setTooltip(QString::fromStdString(*arguments.tooltip));
        } catch (const std::invalid_argument& error) {
            throw Failure(library.path() + ": the box '" + address +
                          "' can't have this tooltip: " + error.what());
        }
        changes.add("tooltip", address, *arguments.tooltip);
    }
    const QList<QString> bitmaps = bitmapsFrom(arguments.bitmaps);
    if (!arguments.bitmaps.empty() && bitmaps != data.bitmaps()) {
        requireResources(library, node, bitmaps);
        data.setBitmaps(bitmaps);
        changes.add("bitmaps", address,
                    QStringList(bitmaps).join(QStringLiteral(", ")).toStdString());
    }
    const bool expanded = arguments.expanded == "yes";
    if (!arguments.expanded.empty() && expanded != data.bitmapExpanded()) {
        data.setBitmapExpanded(expanded);
        changes.add("expanded", address, arguments.expanded);
    }
}

} // namespace

void addMakingCommands(CommandLine& commands)
{
    const auto make = std::make_shared<NewArguments>();
    CommandOptions newOptions =
        commands.addAlone("new", "Makes an empty library",
                          [make](Session& session) { return makeLibrary(*make, session); });
    newOptions.argument("LIB", make->library, "Where to")
        .option("--title", "T", make->title,
                "Its title; if there is none, its file name without .bxl or .kbl")
        .choice("--format", formatNames(), make->format, "Its form, a directory if not given");
    commands.addDryRun(newOptions);

    struct FolderArguments
    {
        std::string parent;
        std::string name;
    };
    const auto folder = std::make_shared<FolderArguments>();
    commands
        .addEditing("add-folder", "Makes a folder",
                    [folder](OpenLibrary& library, Changes& changes) {
                        addFolder(library, changes, folder->parent, folder->name);
                    })
        .argument("PARENT", folder->parent, "The folder to put it in")
        .argument("NAME", folder->name, "Its name");

    const auto box = std::make_shared<BoxArguments>();
    commands
        .addEditing(
            "add-box", "Makes a box",
            [box](OpenLibrary& library, Changes& changes) { addBox(library, changes, *box); })
        .argument("PARENT", box->parent, "The folder to put it in")
        .argument("NAME", box->name, "Its name")
        .option("--from", "FILE", box->file, "The box file to make it from")
        .required()
        .options("--resource", "F", box->resources,
                 "Files, and directories with their files, to put beside it");

    const auto set = std::make_shared<SetArguments>();
    commands
        .addEditing(
            "set", "Edits a box",
            [set](OpenLibrary& library, Changes& changes) { setData(library, changes, *set); })
        .argument("NODE", set->node, "A box")
        .option("--tooltip", "T", set->tooltip, "What it is for")
        .options("--bitmap", "B", set->bitmaps, "Resources of the box that show it; '' for none")
        .choice("--expanded", {"yes", "no"}, set->expanded, "Whether it is shown with its bitmap");
}

} // namespace kxbox
