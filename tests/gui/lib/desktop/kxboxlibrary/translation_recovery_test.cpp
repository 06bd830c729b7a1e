// A program that dies while it writes translations leaves the old ones or the new ones.
#include "dying_program.hpp"
#include "support.hpp"

#include <filesystem>
#include <functional>
#include <ostream>

namespace KX::test {
namespace {

using pk::project::UnsavedWork;

struct Change
{
    const char* name;
    std::vector<std::pair<std::string, QByteArray>> files; ///< before it
    std::function<void(BoxLibrary&)> make;
};

std::ostream& operator<<(std::ostream& stream, const Change& change)
{
    return stream << change.name;
}

/// A library, and what a program left that was killed after it had changed the translations.
class KilledProgram : public testing::TestWithParam<Change>
{
protected:
    KilledProgram()
    {
        project(GetParam().files).save(path("L.bxl"), pk::project::ArchiveFormat::Directory, false);
        QDir(m_directory.path()).mkdir(q("left"));
        const EnvironmentVariable place("TMPDIR", path("left"));
        dying::runAndKill([&] {
            BoxLibrary* const library = opened().release(); // alive until the end
            GetParam().make(*library);
        });
        for (const auto& entry : Entries(path("left").toStdString())) {
            if (entry.path().filename() == "log") {
                m_log = QDir(path("left")).relativeFilePath(q(entry.path().string()));
            }
        }
        EXPECT_FALSE(m_log.isEmpty());
    }

    QString path(const std::string& name) const { return m_directory.path(name); }
    Library opened() const { return open(ProjectModel(path("L.bxl"))); }
    int lengthOfLog() const
    {
        return static_cast<int>(QFileInfo(path("left") + q("/") + m_log).size());
    }

    /// The translations that are got back when the program is killed after it has written so many
    /// bytes of its log.
    BoxLibrary::Translators recoveredAfter(int bytes) const
    {
        const TemporaryDirectory copy;
        std::filesystem::copy(path("left").toStdString(), copy.path().toStdString(),
                              std::filesystem::copy_options::recursive);
        EXPECT_TRUE(QFile::resize(copy.path(m_log.toStdString()), bytes));
        const EnvironmentVariable place("TMPDIR", copy.path());
        const QList<UnsavedWork> work = ProjectModel::recoverable(path("L.bxl"));
        return work.isEmpty() ? opened()->translations()
                              : open(ProjectModel::recover(work.first()))->translations();
    }

private:
    using Entries = std::filesystem::recursive_directory_iterator;
    const TemporaryDirectory m_directory;
    QString m_log;
};

TEST_P(KilledProgram, LeavesEachLanguageAsItWasOrAsItIsToBe)
{
    const LogRecords log;
    const BoxLibrary::Translators before = opened()->translations();
    const int end = lengthOfLog();
    const BoxLibrary::Translators after = recoveredAfter(end);
    EXPECT_TRUE(after != before);
    constexpr int step = 16; // shorter than any record
    for (int length = 0; length < end; length += step) {
        const BoxLibrary::Translators recovered = recoveredAfter(length);
        for (const QString& language : before.keys() + after.keys()) {
            const auto translator = recovered.value(language);
            EXPECT_TRUE(translator == before.value(language) || translator == after.value(language))
                << language.toStdString() << " after " << length << " of " << end << " bytes";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    SetTranslations, KilledProgram,
    testing::Values(Change{"InFilesOfTheirOwn",
                           {{"translations/translation_de.ts", tsFile("de")},
                            {"translations/translation_fr.ts", tsFile("fr")}},
                           [](BoxLibrary& library) {
                               library.setTranslations(translators(
                                   {translator("de", {"x", "y"}), translator("fr", {"z"})}));
                           }},
                    Change{
                        "InFilesOfOtherNames",
                        {{"translations/a.ts", tsFile("de")}, {"translations/z.ts", tsFile("fr")}},
                        [](BoxLibrary& library) {
                            library.setTranslations(translators(
                                {translator("de", {"x", "y"}), translator("fr", {"z"})}));
                        }},
                    Change{"OfOtherLanguages",
                           {{"translations/translation_de.ts", tsFile("de")},
                            {"translations/translation_fr.ts", tsFile("fr")},
                            {"translations/old/it.ts", tsFile("it")}},
                           [](BoxLibrary& library) {
                               library.setTranslations(
                                   translators({translator("fr", {"z"}), translator("ja", {"x"})}));
                           }},
                    Change{"OfNoLanguage",
                           {{"translations/translation_de.ts", tsFile("de")},
                            {"translations/translation_fr.ts", tsFile("fr")}},
                           [](BoxLibrary& library) { library.setTranslations({}); }}),
    [](const auto& change) { return std::string(change.param.name); });

} // namespace
} // namespace KX::test
