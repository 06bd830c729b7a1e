#include "staging.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>

namespace pk::project::test {

class AStaging : public testing::Test
{
protected:
    TemporaryFiles m_files;
};

TEST_F(AStaging, MakesNothingUntilSomethingIsWritten)
{
    const auto staging = Staging::make();
    EXPECT_TRUE(m_files.tree().empty());
}

TEST_F(AStaging, IsPrivate)
{
    const auto staging = Staging::make();
    const auto file = staging->write("name.xar", "text", 4);
    const Tree tree = m_files.tree();
    ASSERT_EQ(tree.size(), 2U);
    EXPECT_EQ(tree.begin()->second, std::to_string(0700));
    EXPECT_EQ(std::next(tree.begin())->second, std::to_string(0600) + ":text");
    EXPECT_TRUE(QString::fromStdString(file->path()).endsWith(q("name.xar")));
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, IsRemovedWithItsLastOwner)
{
    auto staging = Staging::make();
    auto file = staging->write("a", "1", 1);
    const auto other = staging->write("a", "2", 1);
    staging.reset();
    file.reset();
    EXPECT_EQ(m_files.tree().size(), 2U);
    EXPECT_EQ(readAll(other->open()), "2");
}

TEST_F(AStaging, LeavesNothing)
{
    {
        const auto staging = Staging::make();
        const auto file = staging->write("a", "1", 1);
        staging->write("b", "2", 1);
    }
    EXPECT_TRUE(m_files.tree().empty());
}

TEST_F(AStaging, TakesTheLongestName)
{
    const auto staging = Staging::make();
    const std::string name(255, 'n');
    EXPECT_EQ(readAll(staging->write(name, "1", 1)->open()), "1");
}

TEST_F(AStaging, CopiesAFile)
{
    putLocal(m_files.path() + q("/source"), "text");
    const auto staging = Staging::make();
    const Fd source = openPath((m_files.path() + q("/source")).toStdString(), O_RDONLY);
    const auto file = staging->copy("a", source);
    EXPECT_EQ(readAll(file->open()), "text");
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, KnowsWhetherAStreamCanStillChangeAFile)
{
    const auto staging = Staging::make();
    const auto file = staging->newFile("a");
    FILE* const stream = std::fopen(file->path().c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    file->unseal();
    EXPECT_FALSE(file->isSealed());
    close(stream);
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, WithoutAPlaceIsAnError)
{
    qputenv("TMPDIR", "/proc");
    const auto staging = Staging::make();
    const std::string message = messageOf<IoError>([&] { staging->write("a", "1", 1); });
    EXPECT_NE(message.find("/proc/kxproject-"), std::string::npos) << message;
}

} // namespace pk::project::test
