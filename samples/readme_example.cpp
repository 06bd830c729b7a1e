#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QLoggingCategory>
#include <boost/make_shared.hpp>

#include <iostream>
#include <memory>

int main()
{
    // Each box that is written logs that there was no file ".metadata" of old versions to remove.
    QLoggingCategory::setFilterRules(QStringLiteral("kxboxlibrary.critical=false"));

    const std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> library(
        new KX::BoxLibrary(QStringLiteral("Example")));
    KX::BoxLibraryNode* const motions = library->boxRoot()->appendChild("Motions");
    const KX::RootBoxDescription walk("Walk", boost::make_shared<KX::XmlElement>("Box"));
    KX::BoxLibraryNode* const first = motions->appendChild(walk);
    motions->appendChild(walk); // becomes "Walk (2)"
    first->boxData()->setTooltip(QStringLiteral("Goes somewhere, slowly or fast"));
    first->setName("Walk / run"); // its directory follows
    library->saveTo(QStringLiteral("Example.bxl"), KX::BoxLibrary::Archive);

    for (const QString& file : library->projectModel().getFileList(QString(), false, true, false)) {
        std::cout << file.toStdString() << '\n';
    }
}
