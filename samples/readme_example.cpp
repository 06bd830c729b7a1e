#include <kx/xml_document.hpp>
#include <pk/project/project_model.hpp>

#include <boost/make_shared.hpp>

int main()
{
    const auto box = boost::make_shared<KX::XmlElement>("Box");
    box->setAttribute("name", std::string("Walk"), false);
    KX::XmlDocument document;
    document.setRoot(box);

    pk::project::ProjectModel project; // nothing is at its place on disk before save()
    project.mkdir(QStringLiteral("Walk"), false);
    FILE* file = project.fopen(QStringLiteral("Walk/box.xml"), QStringLiteral("wb"));
    if (file == nullptr || !document.saveToXmlFile(file, nullptr, nullptr) || fclose(file) != 0) {
        return 1;
    }
    project.save(QStringLiteral("example.zip"), pk::project::ArchiveFormat::Zip, true);
    return std::puts(project.readFile(QStringLiteral("Walk/box.xml")).constData()) < 0 ? 1 : 0;
}
