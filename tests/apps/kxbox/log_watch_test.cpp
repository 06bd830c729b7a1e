#include "log_watch.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kxbox::test {
namespace {

void warn(const char* category, const char* message)
{
    pk::log::log(pk::log::Warning, category, message, "", "", 0);
}

std::string heard(const LogWatch& watch)
{
    std::string text;
    for (const pk::log::Record& record : watch.records()) {
        text += record.message + " ";
    }
    return text;
}

TEST(LogWatch, KeepsWarningsAndErrors)
{
    const LogWatch watch;
    warn("a", "warning");
    pk::log::log(pk::log::Error, "a", "error", "", "", 0);
    pk::log::log(pk::log::Info, "a", "info", "", "", 0);
    EXPECT_EQ(heard(watch), "warning error ");
}

TEST(LogWatch, HearsWhatAnInnerWatchHearsButForItsOwnCategories)
{
    const LogWatch outer;
    {
        const LogWatch middle;
        const LogWatch inner({"a", "b"});
        warn("a", "1");
        warn("c", "2");
        {
            const LogWatch innermost;
            warn("b", "3");
            EXPECT_EQ(heard(innermost), "3 ");
        }
        EXPECT_EQ(heard(inner), "1 2 3 ");
        EXPECT_EQ(heard(middle), "2 ");
    }
    warn("a", "4");
    EXPECT_EQ(heard(outer), "2 4 ");
}

} // namespace
} // namespace kxbox::test
