#include "disk.hpp"
#include "log_records.hpp"
#include "set_aside.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <set>
#include <string>

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
    setAside(path("a"), path("a"));
    EXPECT_EQ(treeOf(m_directory.path()).count("a.~3~"), 1U);
    EXPECT_EQ(log.messages(),
              std::vector<std::string>{path("a") +
                                       ": somebody else put or changed it while a save was "
                                       "unfinished; it is now '" +
                                       path("a.~3~") + "'"});
    EXPECT_THROW(setAside(path("a"), path("a")), IoError);
    put("b");
    setAside(path("b"), path("a"));
    EXPECT_EQ(treeOf(m_directory.path()).count("a.~4~"), 1U);
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

TEST_F(SettingAside, SeesWhatChangedInADirectory)
{
    put("d/e/f");
    const auto set = [&](const char* name, std::int64_t time) { Disk().setTime(path(name), time); };
    const auto isChanged = [&](const std::set<std::string>& touched = {}) {
        return isChangedSince(path("d"), 1000, touched);
    };
    set("d/e/f", 1000);
    set("d/e", 1000);
    set("d", 1000);
    EXPECT_FALSE(isChanged());
    set("d/e", 1001);
    EXPECT_TRUE(isChanged());
    EXPECT_FALSE(isChanged({path("d/e")}));
    set("d/e/f", 1001);
    EXPECT_TRUE(isChanged({path("d"), path("d/e")}));
    EXPECT_TRUE(isChangedSince(path("missing"), 1000, {}));
}

} // namespace pk::project::test
