#include "faulty_disk.hpp"
#include "random_editor.hpp"
#include "support.hpp"

#include <iostream>
#include <memory>

namespace pk::project::test {

class RandomEdits : public testing::TestWithParam<Form>
{
};

TEST_P(RandomEdits, AreWhatIsSavedAndOpenedAgain)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const TemporaryDirectory directory;
        const QString path = directory.path("project");
        const FaultyDisk withoutSync;
        auto model = std::make_unique<ProjectModel>();
        Editor editor(seed, *model);
        for (int round = 0; round < 12; ++round) {
            for (int i = 0; i < 12; ++i) {
                editor.edit();
                ASSERT_NO_FATAL_FAILURE(editor.check());
            }
            model->save(round == 0 ? path : QString(),
                        round == 0 ? formatOf(GetParam()) : ArchiveFormat::Source, true);
            editor.check();
            ASSERT_EQ(treeOf(ProjectModel(path)), editor.reference().tree);
            ASSERT_EQ(leftBeside(path), QStringList());
            if (round % 4 == 3) {
                model = std::make_unique<ProjectModel>(path);
                editor.setModel(*model);
            }
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Both, RandomEdits, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

// The operation number n of a save fails, for each n until the save succeeds: then the place holds
// the old project, or the new one, and the model every edit.
class FailingSave : public testing::TestWithParam<Form>
{
};

TEST_P(FailingSave, LeavesTheOldProjectAndAllEdits)
{
    int points = 0;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        for (const bool onwards : {false, true}) {
            for (int number = 0;; ++number) {
                SCOPED_TRACE("seed " + std::to_string(seed) + ", operation " +
                             std::to_string(number) + (onwards ? " and all later" : ""));
                const TemporaryDirectory directory;
                const QString path = directory.path("project");
                auto model = std::make_unique<ProjectModel>();
                Editor editor(seed, *model);
                for (int i = 0; i < 30; ++i) {
                    editor.edit();
                }
                model->save(path, formatOf(GetParam()), true);
                const Tree before = editor.reference().tree;
                for (int i = 0; i < 25; ++i) {
                    editor.edit();
                }
                const Tree after = editor.reference().tree;
                FaultyDisk disk;
                disk.failAt(number, EIO, onwards);
                bool failed = false;
                try {
                    model->save(QString(), ArchiveFormat::Source, true);
                } catch (const Error& error) {
                    failed = true;
                    EXPECT_NE(std::string(error.what()).find(path.toStdString()),
                              std::string::npos);
                }
                const bool reached = disk.count() > number;
                disk.heal();
                if (onwards && number % 2 == 0) {
                    // Somebody else comes first.
                    const Tree found = treeOf(ProjectModel(path));
                    EXPECT_TRUE(found == before || found == after);
                } else {
                    if (!onwards) {
                        editor.check();
                        EXPECT_EQ(treeOf(ProjectModel(path)), failed ? before : after);
                        EXPECT_EQ(leftBeside(path), QStringList());
                    }
                    model->save(QString(), ArchiveFormat::Source, true);
                    editor.check();
                    EXPECT_EQ(treeOf(ProjectModel(path)), after);
                    EXPECT_EQ(leftBeside(path), QStringList());
                }
                ++points;
                if (testing::Test::HasFailure()) {
                    return;
                }
                if (!reached) {
                    break;
                }
            }
        }
    }
    std::cout << points << " points of failure" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Both, FailingSave, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

} // namespace pk::project::test
