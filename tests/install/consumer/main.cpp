#include <kr/localization/translator.hpp>
#include <kr/xml_beacons.hpp>
#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/log.hpp>
#include <pk/project/project_model.hpp>

#include <QByteArray>
#include <QString>

#include <exception>
#include <iostream>
#include <memory>
#include <string>

namespace {

bool check(bool holds, const char* what)
{
    if (!holds) {
        std::cerr << "failed: " << what << '\n';
    }
    return holds;
}

bool logs()
{
    std::string seen;
    const std::uint64_t id =
        pk::log::addHandler([&seen](const pk::log::Record& record) { seen = record.message; });
    pk::log::log(pk::log::Info, "consumer", "hello", __FILE__, __func__, __LINE__);
    pk::log::removeHandler(id);
    return seen == "hello";
}

bool savesAProject(const QString& path)
{
    const QString file = QStringLiteral("Walk/box.xml");
    pk::project::ProjectModel project;
    project.writeFile(file, QByteArrayLiteral("<Box/>"));
    project.save(path, pk::project::ArchiveFormat::Directory, false);
    return pk::project::ProjectModel(path).readFile(file) == QByteArrayLiteral("<Box/>");
}

// Errors are thrown by the library and caught here, which needs their type information exported.
bool catchesErrors()
{
    try {
        pk::project::ProjectModel().remove(QStringLiteral("missing"));
    } catch (const pk::project::PathNotFound&) {
        return true;
    }
    return false;
}

bool holdsXml()
{
    KX::XmlElement element{std::string(KR::XmlBeacons::a_inputBeacon)};
    element.setAttribute("id", 7, false);
    int id = 0;
    return element.beacon() == "Input" && element.getAttribute("id", id) && id == 7;
}

bool translates()
{
    const KR::Localization::Translator translator(QStringLiteral("fr_FR"));
    return translator.languageCode() == QStringLiteral("fr_FR");
}

bool editsALibrary()
{
    const std::unique_ptr<KX::BoxLibrary, KX::TreeDeleter> library(
        new KX::BoxLibrary(QStringLiteral("Foreign")));
    const KX::BoxLibraryNode* signalled = nullptr;
    QObject::connect(library.get(), &KX::BoxLibrary::dataChanged,
                     [&signalled](const KX::BoxLibraryNode* node) { signalled = node; });
    KX::BoxLibraryNode* const folder = library->boxRoot()->appendChild("Motions");
    folder->setName("Moves");
    return signalled == folder && library->isDirty() &&
           library->projectModel().hasFile(QStringLiteral("Moves/bxlinfo"));
}

} // namespace

// The argument is a path at which nothing is yet.
int main(int argc, char** argv)
try {
    if (argc != 2) {
        return 2;
    }
    const bool all = check(logs(), "log") &&
                     check(savesAProject(QString::fromLocal8Bit(argv[1])), "project") &&
                     check(catchesErrors(), "error") && check(holdsXml(), "xml") &&
                     check(translates(), "translator") && check(editsALibrary(), "library");
    return all ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
