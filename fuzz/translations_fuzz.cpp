// Bytes as one of a library's translation files: what the library makes of it is what it writes,
// and stays so when boxes are renamed and renamed back.
#include "libraries.hpp"

#include <kr/localization/ts.hpp>
#include <pk/project/error.hpp>

#include <QMap>

using namespace fuzz;

namespace {

const bool a_prepared = prepare();

const char* const a_french = R"(<TS version="2.1" language="fr"><context><name>Library:/A</name>
<message><source>on</source><translation>marche</translation></message></context></TS>)";

/// The files of all languages, as they are written.
std::string filesOf(const KX::BoxLibrary::Translators& translators)
{
    QMap<QString, QByteArray> files;
    for (auto it = translators.cbegin(); it != translators.cend(); ++it) {
        files[it.key()] = KR::Localization::TS::translatorTo(it.value(), false);
    }
    std::string text;
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        text += it.key().toStdString() + ":\n" + it.value().toStdString();
    }
    return text;
}

/// False when the languages make no file names, which must leave everything as it was.
bool rewrite(KX::BoxLibrary& library)
{
    const std::string before = filesOf(library.translations());
    bool written = true;
    try {
        library.setTranslations(library.translations());
    } catch (const pk::project::Error&) {
        written = false;
    }
    requireSame(filesOf(library.translations()), before, "translations are read as written");
    return written;
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProjectModel model;
    model.mkdir(q("A/B"), true);
    model.writeFile(q("translations/a.ts"), bytesOf(data, size));
    model.writeFile(q("translations/french.ts"), a_french);
    const Library library = open(std::move(model));
    require(library->translationsFiles().size() == 2, "every file is listed");
    if (!rewrite(*library)) {
        return 0;
    }
    require(library->translationsFiles().size() == library->translations().size(),
            "there is a file for each language");
    const std::string before = filesOf(library->translations());
    requireSame(filesOf(reread(*library)->translations()), before,
                "the files say what the library says");
    KX::BoxLibraryNode* const node = library->boxRoot()->child(0);
    node->setName("Renamed?");
    requireSame(filesOf(reread(*library)->translations()), filesOf(library->translations()),
                "the files say what the library says after a rename");
    if (before.find("Renamed") == std::string::npos) {
        node->setName("A");
        requireSame(filesOf(library->translations()), before, "a rename is undone by another");
    }
    node->removeTranslations();
    library->removeTranslations(library->translationContext());
    requireSame(filesOf(reread(*library)->translations()), filesOf(library->translations()),
                "the files say what the library says after a removal");
    return 0;
}
