#include "another_user.hpp"
#include "journal_directory.hpp"
#include "journalled_save.hpp"
#include "power_loss.hpp"
#include "unsaved_work.hpp"
#include "zip_support.hpp"

#include <algorithm>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pk::project::test {

/// A folder "D" with "D/sub/f" is moved to "E", and "f" out of it or away.
class AFolderThatIsMoved : public testing::TestWithParam<bool>
{
protected:
    void make()
    {
        ProjectModel model;
        for (const char* const path : {"D/sub/f", "D/sub/other", "D/k"}) {
            model.writeFile(q(path), path);
        }
        m_path = m_directory.path("p" + std::to_string(++m_number));
        model.save(m_path, ArchiveFormat::Directory, true);
        m_model.emplace(m_path);
        if (GetParam()) {
            m_model->move(q("D/sub/f"), q("f2"), false);
        } else {
            m_model->remove(q("D/sub/f"));
        }
        m_model->move(q("D"), q("E"), false);
    }
    // What is at a path goes elsewhere, and a link leads there.
    QString linkElsewhere(const QString& at)
    {
        QString elsewhere = m_path + q(" elsewhere");
        EXPECT_TRUE(QFile::rename(at, elsewhere));
        EXPECT_TRUE(QFile::link(elsewhere, at));
        return elsewhere;
    }

    TemporaryDirectory m_directory;
    QString m_path;
    int m_number = 0;
    std::optional<ProjectModel> m_model;
};

TEST_P(AFolderThatIsMoved, IsNotFollowedWhenALinkTookThePlaceOfWhatIsInIt)
{
    int linked = 0;
    make();
    for (int number = 0; killIn([&] { saveInPlace(*m_model); }, number); ++number, make()) {
        SCOPED_TRACE(number);
        for (const QString& sub : {m_path + q("/D/sub"), m_path + q("/E/sub")}) {
            if (QFileInfo(sub).isDir()) {
                const Tree before = treeOf(sub);
                const QString elsewhere = linkElsewhere(sub);
                const ProjectModel opened(m_path);
                EXPECT_EQ(treeOf(elsewhere), before);
                ++linked;
                break;
            }
        }
    }
    EXPECT_GT(linked, 10);
}

TEST_P(AFolderThatIsMoved, IsNotFollowedWhenItIsMovedBackEither)
{
    int linked = 0;
    for (int number = 0;; ++number) {
        SCOPED_TRACE(number);
        make();
        FaultyDisk disk;
        disk.failAt(number, EIO, true);
        const bool isSaved = trySave(*m_model);
        if (isSaved) {
            break;
        }
        disk.heal();
        const QString sub = m_path + q("/E/sub");
        if (!QFileInfo(sub).isDir()) {
            continue;
        }
        const Tree before = treeOf(sub);
        const QString elsewhere = linkElsewhere(sub);
        EXPECT_FALSE(trySave(*m_model));
        EXPECT_EQ(treeOf(elsewhere), before);
        EXPECT_EQ(getLocal(m_path + q("/E/k")), "D/k") << "nothing was undone";
        ++linked;
    }
    EXPECT_GT(linked, 1);
}

INSTANTIATE_TEST_SUITE_P(, AFolderThatIsMoved, testing::Bool());

// Such folders come from archives.
TEST(AFolderThatItsOwnerMayNotRead, IsSavedAndRecovered)
{
    const AnotherUser user;
    const TemporaryDirectory directory;
    int pending = 0;
    using Modes = std::pair<mode_t, mode_t>; // of the folder, and of one in it
    for (const auto& [outer, inner] :
         {Modes{0300, 0755}, Modes{0, 0755}, Modes{0, 0}, Modes{0555, 0}, Modes{0755, 0}}) {
        const QString archive =
            directory.path(std::to_string(outer) + "-" + std::to_string(inner) + "-");
        putZip(archive,
               {{"d/", "", S_IFDIR | outer}, {"d/sub/", "", S_IFDIR | inner}, {"d/sub/x", "1"}});
        ProjectModel closed(archive);
        bool died = true;
        for (int number = 0; died; ++number) {
            const QString path = archive + QString::number(number);
            SCOPED_TRACE(path.toStdString());
            ProjectModel model;
            model.save(path, ArchiveFormat::Directory, true);
            model.importFile(closed, q("d"), q("d"), true);
            died = killIn([&] { saveInPlace(model); }, number);
            const bool isPending = JournalDirectory::isPending(Place::of(path.toStdString()));
            pending += isPending ? 1 : 0;
            ASSERT_NO_THROW(ProjectModel{path});
            if (isPending || !died) {
                for (const auto& [name, mode] : {std::pair{"/d", outer}, {"/d/sub", inner}}) {
                    const std::string folder = path.toStdString() + name;
                    const auto info = statOf(folder);
                    ASSERT_TRUE(info);
                    EXPECT_EQ(info->st_mode & 0777, mode);
                    ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
                }
                EXPECT_EQ(getLocal(path + q("/d/sub/x")), "1");
            }
        }
    }
    EXPECT_GT(pending, 40);
}

TEST(AFolderThatItsOwnerMayNotRead, IsInNobodysWayWhenASaveIsUndone)
{
    const AnotherUser user;
    const TemporaryDirectory directory;
    const QString archive = directory.path("archive");
    putZip(archive, {{"d/", "", S_IFDIR | 0}, {"d/x", "1"}});
    ProjectModel closed(archive);
    bool failed = true;
    for (int number = 0; failed; ++number) {
        SCOPED_TRACE(number);
        const QString path = directory.path("p" + std::to_string(number));
        ProjectModel model;
        model.writeFile(q("m"), "m");
        model.save(path, ArchiveFormat::Directory, true);
        model.importFile(closed, q("d"), q("d"), true);
        model.move(q("m"), q("m2"), false);
        FaultyDisk disk;
        disk.failAt(number, EIO, true);
        failed = !trySave(model);
        disk.heal();
        EXPECT_EQ(model.readFile(q("m2")), "m");
        EXPECT_NO_THROW(saveInPlace(model));
        EXPECT_EQ(getLocal(path + q("/m2")), "m");
        EXPECT_EQ(::chmod((path + q("/d")).toStdString().c_str(), 0700), 0);
        EXPECT_EQ(getLocal(path + q("/d/x")), "1");
    }
}

/// A save is killed at each operation in turn; then somebody comes.
class AnInterruptedSave : public testing::Test
{
protected:
    // `edit` changes a project of these files. `meddle` gets the path of each that a killed save
    // left unfinished and says whether there was something to do; `check` gets those, opened.
    template <class Edit, class Meddle, class Check>
    void forEach(const Files& files, const Edit& edit, const Meddle& meddle, const Check& check)
    {
        int meddled = 0;
        bool died = true;
        for (int number = 0; died && !HasFailure(); ++number) {
            const QString path = m_directory.path("p" + std::to_string(++m_paths));
            SCOPED_TRACE(path.toStdString());
            ProjectModel model;
            saveFiles(model, files, path);
            edit(model);
            died = killIn([&] { saveInPlace(model); }, number);
            if (JournalDirectory::isPending(Place::of(path.toStdString()))) {
                waitForTheClock();
                if (meddle(path)) {
                    ++meddled;
                    check(path);
                }
            }
        }
        EXPECT_GT(meddled, 0);
    }
    static bool putIfThere(const QString& path)
    {
        if (QFileInfo::exists(QFileInfo(path).path())) {
            putLocal(path, "somebody's");
            return true;
        }
        return false;
    }
    static void expectSomebodys(const QString& path)
    {
        EXPECT_EQ(contentsOf(treeOf(ProjectModel(path))).count("somebody's"), 1U);
    }

    const AnotherUser m_user; // whom modes concern
    TemporaryDirectory m_directory;
    int m_paths = 0;
};

TEST_F(AnInterruptedSave, LeavesASavedFileItsNameWhenItGivesBackWhatWasThere)
{
    forEach(
        {{"d/f", "old"}, {"d/k", "k"}},
        [](ProjectModel& model) {
            model.remove(q("d/f"));
            model.move(q("d"), q("E"), false);
            model.writeFile(q("d"), "saved");
        },
        [](const QString& path) {
            return QFileInfo::exists(path + q("/d/f")) && putIfThere(path + q("/d/f"));
        },
        [](const QString& path) {
            EXPECT_EQ(treeOf(ProjectModel(path)), (Tree{{"E/", ""},
                                                        {"E/k", "k"},
                                                        {"d", "saved"},
                                                        {"d.~1~/", ""},
                                                        {"d.~1~/f.~1~", "somebody's"}}));
        });
}

TEST_F(AnInterruptedSave, GivesBackMuchToOnePlace)
{
    Files files{{"d/k", "k"}};
    for (int i = 0; i < 30; ++i) {
        files.emplace_back("d/" + std::to_string(i), "x");
    }
    forEach(
        files,
        [](ProjectModel& model) {
            for (int i = 0; i < 30; ++i) {
                model.remove(q("d/" + std::to_string(i)));
            }
            model.move(q("d"), q("E"), false);
            model.writeFile(q("d"), "saved");
        },
        [](const QString& path) {
            const bool isThere = QFileInfo(path + q("/d")).isDir();
            for (int i = 0; isThere && i < 30; ++i) {
                putIfThere(path + q("/d/") + QString::number(i));
            }
            return isThere && QFileInfo::exists(path + q("/d/29"));
        },
        [](const QString& path) {
            const Tree tree = treeOf(ProjectModel(path));
            EXPECT_EQ(tree.at("d"), "saved");
            EXPECT_EQ(tree.count("d.~1~/"), 1U);
            EXPECT_EQ(tree.count("d.~2~/"), 0U);
        });
}

// As in a copy of project and journal that did not keep the files' times.
TEST_F(AnInterruptedSave, SyncsOnceForAllThatItPutsAside)
{
    Files files;
    for (int i = 0; i < 30; ++i) {
        files.emplace_back(std::to_string(i), "old");
    }
    std::size_t aside = 0;
    forEach(
        files,
        [&](ProjectModel& model) {
            for (const auto& file : files) {
                model.writeFile(q(file.first), "new");
            }
        },
        [&](const QString& path) {
            for (const auto& file : files) {
                putLocal(path + q("/") + q(file.first), "somebody's");
            }
            return true;
        },
        [&](const QString& path) {
            const FaultyDisk disk;
            const Tree tree = treeOf(ProjectModel(path));
            aside = std::max(aside, tree.size() - files.size());
            const auto syncs =
                std::count_if(disk.log().begin(), disk.log().end(),
                              [](const auto& step) { return step.find("sync") == 0; });
            EXPECT_LT(syncs, 10);
        });
    EXPECT_EQ(aside, files.size());
}

TEST_F(AnInterruptedSave, GivesBackToAFolderThatNobodyMayWriteTo)
{
    const QString archive = m_directory.path("archive");
    putZip(archive, {{"d/", "", S_IFDIR | 0555}, {"d/x", "1"}});
    ProjectModel closed(archive);
    forEach(
        {{"d/f", "f"}, {"d/k", "k"}},
        [&](ProjectModel& model) {
            model.remove(q("d/f"));
            model.move(q("d"), q("E"), false);
            model.importFile(closed, q("d"), q("d"), true);
        },
        [](const QString& path) {
            return QFileInfo::exists(path + q("/d/f")) && putIfThere(path + q("/d/f"));
        },
        [](const QString& path) {
            expectSomebodys(path);
            EXPECT_EQ(statOf((path + q("/d")).toStdString()).value().st_mode & 0777, 0555U);
            EXPECT_EQ(::chmod((path + q("/d")).toStdString().c_str(), 0755), 0);
        });
}

TEST_F(AnInterruptedSave, KeepsAFolderThatTookTheNameOfAFileThatItRemoves)
{
    forEach(
        {{"gone", "gone"}, {"other", "1"}},
        [this](ProjectModel& model) {
            putLocal(m_directory.path("old/precious"), "somebody's");
            waitForTheClock();
            model.remove(q("gone"));
            model.writeFile(q("other"), "2");
        },
        [this](const QString& path) {
            return QFile::remove(path + q("/gone")) &&
                   QFile::rename(m_directory.path("old"), path + q("/gone"));
        },
        expectSomebodys);
}

TEST_F(AnInterruptedSave, IsCompletedWhenAFolderTookTheNameOfAFileThatItMoves)
{
    forEach(
        {{"a", "a"}, {"b", "b"}},
        [](ProjectModel& model) {
            model.remove(q("b"));
            model.move(q("a"), q("b"), false);
        },
        [](const QString& path) {
            if (!QFile::remove(path + q("/a"))) {
                return false;
            }
            putLocal(path + q("/a/precious"), "somebody's");
            return true;
        },
        expectSomebodys);
}

TEST_F(AnInterruptedSave, LeavesAFolderItsModeThatGivesItsPlaceToAClosedOne)
{
    const QString archive = m_directory.path("archive");
    putZip(archive, {{"d/", "", S_IFDIR | 0}, {"d/x", "1"}});
    ProjectModel closed(archive);
    forEach(
        {{"d/f", "f"}, {"d/k", "k"}},
        [&](ProjectModel& model) {
            model.move(q("d"), q("E"), false);
            model.importFile(closed, q("d"), q("d"), true);
        },
        [](const QString& /*path*/) { return true; },
        [](const QString& path) {
            EXPECT_NO_THROW(ProjectModel{path});
            EXPECT_EQ(statOf((path + q("/E")).toStdString()).value().st_mode & 0777, 0755U);
            EXPECT_EQ(::chmod((path + q("/d")).toStdString().c_str(), 0755), 0);
        });
}

TEST_F(AnInterruptedSave, IsCompletedBesideLinksThatLeadNowhere)
{
    for (const char* const target : {"sub", "/proc/1/cwd"}) {
        forEach(
            {{"D/sub/x/f", "f"}, {"D/k", "k"}},
            [](ProjectModel& model) {
                model.move(q("D/sub/x/f"), q("f2"), false);
                model.move(q("D"), q("E"), false);
            },
            [&](const QString& path) {
                const std::string sub =
                    (path + (QFileInfo(path + q("/D/sub")).isDir() ? q("/D/sub") : q("/E/sub")))
                        .toStdString();
                return ::rename(sub.c_str(), (path + q(" elsewhere")).toStdString().c_str()) == 0 &&
                       ::symlink(target, sub.c_str()) == 0;
            },
            [](const QString& path) {
                EXPECT_NO_THROW(ProjectModel{path});
                EXPECT_EQ(getLocal(path + q("/E/k")), "k");
            });
    }
}

class APowerFailureInARecovery : public testing::TestWithParam<bool>
{
};

INSTANTIATE_TEST_SUITE_P(, APowerFailureInARecovery, testing::Bool());

TEST_P(APowerFailureInARecovery, LosesNothingOfOthers)
{
    std::seed_seq sequence{1};
    std::mt19937 random(sequence);
    int states = 0;
    bool died = true;
    for (int number = 0; died; ++number) {
        const TemporaryDirectory directory;
        const QString path = directory.path("p");
        ProjectModel model;
        model.writeFile(q("d/f"), "f old");
        model.writeFile(q("d/g"), "g old");
        model.save(path, ArchiveFormat::Directory, true);
        model.writeFile(q("d/f"), "f new");
        model.writeFile(q("d/h"), "h new");
        if (GetParam()) {
            model.move(q("d"), q("e"), false);
        }
        died = killIn([&] { saveInPlace(model); }, number);
        if (!JournalDirectory::isPending(Place::of(path.toStdString())) ||
            QFileInfo::exists(path + q("/d/h")) || !QFileInfo::exists(path + q("/d"))) {
            continue;
        }
        waitForTheClock();
        putLocal(path + q("/d/h"), "somebody's");
        PowerLossDisk disk(directory.path());
        EXPECT_EQ(contentsOf(treeOf(ProjectModel(path))).count("somebody's"), 1U);
        PowerLossDisk::unplug();
        for (int count = 0; count <= disk.count(); ++count) {
            for (const unsigned chance : {0U, 50U, 50U, 50U, 50U, 100U}) {
                const TemporaryDirectory lost;
                SCOPED_TRACE(disk.materialise(lost.path(), count, chance, random));
                ASSERT_EQ(contentsOf(treeOf(ProjectModel(lost.path("p")))).count("somebody's"), 1U);
                ++states;
            }
        }
    }
    EXPECT_GT(states, 100);
}

} // namespace pk::project::test
