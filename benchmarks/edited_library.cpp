#include "edited_library.hpp"

#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <boost/make_shared.hpp>

#include <memory>

namespace edited {

using namespace KX;
namespace fs = std::filesystem;
using Library = std::unique_ptr<BoxLibrary, TreeDeleter>;

namespace {

QString q(const fs::path& path)
{
    return QString::fromStdString(path.string());
}

Library open(const fs::path& path)
{
    return Library(new BoxLibrary(pk::project::ProjectModel(q(path))));
}

void setTooltips(BoxLibraryNode& node)
{
    if (node.boxData()) {
        node.boxData()->setTooltip(QStringLiteral("edited \u00e9 <&>"));
    }
    for (BoxLibraryNode* const child : node.children()) {
        setTooltips(*child);
    }
}

} // namespace

void edit(const fs::path& from, const fs::path& to)
{
    fs::create_directories(to / "exported");
    const Library library = open(from);
    BoxLibraryNode* const root = library->boxRoot();
    library->exportBehaviors(q(to / "exported"));
    library->saveTo(q(to / "opened.bxl"), BoxLibrary::Directory);
    BoxLibraryNode* const folder = root->child(0);
    folder->child(0)->setName("Renamed");
    folder->setName("All of it / \"here\"");
    BoxLibraryNode* const place = root->appendChild("New");
    for (int i = 0; i < 30; ++i) {
        place->appendChild({"Box", boost::make_shared<XmlElement>("Box")});
    }
    const BoxLibrary::Translators messages = library->translations();
    library->insertChildren(place, 3, {folder->clone()}, messages);
    const QString old = folder->translationContext();
    place->appendChild(folder->take());
    folder->changeContext(old, folder->translationContext());
    place->moveChildren(1, 4, 9);
    place->removeChild(2);
    library->insertChildren(root, 0, {folder->child(1)->clone()}, messages);
    setTooltips(*folder->child(2));
    root->saveAll();
    library->saveTo(q(to / "edited.bxl"), BoxLibrary::Directory);
    library->saveTo(q(to / "archive.bxl"), BoxLibrary::Archive);
    place->child(1)->setName("Again");
    library->save();
    open(to / "archive.bxl")->saveTo(q(to / "unpacked.bxl"), BoxLibrary::Directory);
}

} // namespace edited
