#include "log_records.hpp"
#include "set_aside.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <string>
#include <sys/stat.h>

namespace pk::project::test {

namespace {

class SettingAside : public testing::Test
{
protected:
    std::string path(const std::string& name) const { return m_directory.path(name).toStdString(); }
    void put(const std::string& name) const { putLocal(m_directory.path(name), "1"); }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(SettingAside, TakesTheFirstNameThatNobodyHas)
{
    put("a");
    put("a.~1~");
    put("a.~2~/b");
    const LogRecords log;
    setAside(path("a"));
    EXPECT_EQ(treeOf(m_directory.path()).count("a.~3~"), 1U);
    EXPECT_EQ(log.messages(),
              std::vector<std::string>{path("a") +
                                       ": somebody else put or changed it while a save was "
                                       "unfinished; it is now '" +
                                       path("a.~3~") + "'"});
    EXPECT_THROW(setAside(path("a")), IoError);
}

TEST_F(SettingAside, ShortensNamesThatWouldBecomeTooLong)
{
    EXPECT_EQ(freePathLike("/d/" + std::string(251, 'n')), "/d/" + std::string(251, 'n') + ".~1~");
    EXPECT_EQ(freePathLike("/d/" + std::string(255, 'n')), "/d/" + std::string(251, 'n') + ".~1~");
    std::string umlauts;
    for (int i = 0; i < 127; ++i) {
        umlauts += "\xc3\xbc";
    }
    EXPECT_EQ(freePathLike("/d/x" + umlauts), "/d/x" + umlauts.substr(0, 250) + ".~1~");
    EXPECT_EQ(freePathLike("/d/" + umlauts), "/d/" + umlauts.substr(0, 250) + ".~1~");
}

TEST_F(SettingAside, SeesWhatChangedBelowADirectory)
{
    put("d/e/f");
    struct stat info = {};
    ASSERT_EQ(::lstat(path("d/e/f").c_str(), &info), 0);
    const std::int64_t time =
        std::int64_t{info.st_ctim.tv_sec} * 1'000'000'000 + info.st_ctim.tv_nsec;
    EXPECT_FALSE(isChangedBelow(path("d"), time));
    EXPECT_TRUE(isChangedBelow(path("d"), time - 1));
    ASSERT_EQ(::symlink("nowhere", path("d/link").c_str()), 0);
    EXPECT_TRUE(isChangedBelow(path("d"), time - 1));
}

} // namespace pk::project::test
