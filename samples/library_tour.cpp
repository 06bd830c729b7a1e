// What docs/library.md explains, as a program: the tree, the files, and the life of an edit.
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/log.hpp>

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <boost/make_shared.hpp>

#include <iostream>
#include <memory>

using Library = std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter>;

namespace {

// A library to look at: two folders, three boxes, one language.
void makeLibrary(const QString& path)
{
    const Library library(new KX::BoxLibrary(QStringLiteral("Tour")));
    KX::BoxLibraryNode* const motions = library->boxRoot()->appendChild("Motions");
    KX::BoxLibraryNode* const speech = library->boxRoot()->appendChild("Speech");
    const auto box = boost::make_shared<KX::XmlElement>("Box");
    box->setAttribute("tooltip", "A box", false);
    motions->appendChild(KX::RootBoxDescription("Walk", box));
    motions->appendChild(KX::RootBoxDescription("Run", box));
    speech->appendChild(KX::RootBoxDescription("Say: Hello?", box));

    KR::Localization::Message message(QStringLiteral("Library:/Motions/Walk"),
                                      QStringLiteral("A box"));
    message.setTranslation(QString::fromUtf8("Une boîte"));
    message.setState(KR::Localization::Message::State::Finished);
    KR::Localization::Translator french(QStringLiteral("fr"));
    french.append({message});
    library->setTranslations({{QStringLiteral("fr"), french}});
    library->saveTo(path, KX::BoxLibrary::Directory);
}

// [tree]
void print(const KX::BoxLibraryNode& node, const std::string& indent = {})
{
    for (const KX::BoxLibraryNode* const child : node.children()) {
        std::cout << indent << child->name();
        if (const auto data = child->boxData()) { // a box; a folder has none
            std::cout << ": " << data->tooltip().toStdString();
        }
        std::cout << '\n';
        print(*child, indent + "  ");
    }
}

void showTree(const QString& path)
{
    const Library library(new KX::BoxLibrary(pk::project::ProjectModel(path)));
    std::cout << library->title().toStdString() << '\n';
    print(*library->boxRoot(), "  ");
}
// [tree]

// [files]
void showFiles(const QString& path)
{
    const Library library(new KX::BoxLibrary(pk::project::ProjectModel(path)));
    const KX::BoxLibraryNode* const hello = library->boxRoot()->child("Speech")->child(0);
    std::cout << hello->name() << " is in " << hello->path().toStdString() << ":\n"
              << hello->loadBoxData().constData() << "The order of its folder's children:\n"
              << library->projectModel().readFile(QStringLiteral("Speech/bxlinfo")).constData();
}
// [files]

// [edit]
void edit(const QString& path)
{
    const Library library(new KX::BoxLibrary(pk::project::ProjectModel(path)));
    QObject::connect(library.get(), &KX::BoxLibrary::dataChanged, [](KX::BoxLibraryNode* node) {
        std::cout << "changed: " << node->path().toStdString() << '\n';
    });
    QObject::connect(library.get(), &KX::BoxLibrary::dirtyChanged,
                     [](bool dirty) { std::cout << (dirty ? "to be saved" : "saved") << '\n'; });
    library->boxRoot()->child("Motions")->setName("Moves");
    const auto french = library->translations().value(QStringLiteral("fr"));
    for (const auto& message : french.messages()) {
        std::cout << "message of " << message.context().toStdString() << '\n';
    }
    library->save();
}
// [edit]

// Shows errors, but not the one that every written box brings: that there was no file ".metadata"
// of old versions to remove.
void showErrors(const pk::log::Record& record)
{
    if (record.level <= pk::log::Error &&
        record.message.find(".metadata' file, reason: ") == std::string::npos) {
        std::cerr << record.message << '\n';
    }
}

} // namespace

int main()
{
    QLoggingCategory::setFilterRules(QStringLiteral("kxboxlibrary.critical=false"));
    pk::log::addHandler(showErrors);
    const QTemporaryDir place;
    const QString path = place.filePath(QStringLiteral("Tour"));
    try {
        makeLibrary(path);
        showTree(path);
        showFiles(path);
        edit(path);
        showTree(path);
    } catch (const pk::project::Error& error) {
        std::cerr << "library_tour: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
