#include <kr/localization/context_patchers.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace KR::Localization;

namespace {

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

using Names = std::vector<std::pair<std::string, std::string>>;

QMap<QString, QString> map(const Names& names)
{
    QMap<QString, QString> result;
    for (const auto& name : names) {
        result.insert(text(name.first), text(name.second));
    }
    return result;
}

/// A rewriting and what comes of it: an empty result stands for "unchanged, and false".
struct Case
{
    std::string parent;
    Names names;
    std::string context;
    std::string result;
};

template <class Patcher>
void check(Patcher patcher, const Case& c)
{
    QString context = text(c.context);
    const bool changed = patcher(context);
    EXPECT_EQ(context.toStdString(), c.result.empty() ? c.context : c.result);
    EXPECT_EQ(changed, !c.result.empty());
}

class BoxNamePatcher : public testing::TestWithParam<Case>
{
};
class MatchPatcher : public testing::TestWithParam<Case>
{
};

} // namespace

TEST_P(BoxNamePatcher, Rewrites)
{
    check(ContextBoxNamePatcher(text(GetParam().parent), map(GetParam().names)), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Contexts, BoxNamePatcher,
    testing::Values(
        Case{"Library:", {{"Walk", "Walk (2)"}}, "Library:/Walk", "Library:/Walk (2)"},
        Case{"Library:/Motions", {{"Walk", "Run"}}, "Library:/Walk", "Library:/Motions/Run"},
        Case{"Library:/M", {{"Walk", "Run"}}, "Library:/A/B/Walk/x/y", "Library:/M/Run/x/y"},
        Case{"Library:/M", {{"Walk", "Run"}}, "Any:/Walk", "Library:/M/Run"},
        Case{"Library:/M", {{"Walk", "Run"}}, "/Walk", "Library:/M/Run"},
        Case{"Library:/M", {{"Walk", "Run"}}, "Library:/Walker", ""},
        Case{"Library:/M", {{"Walk", "Run"}}, "Library:/aWalk/Walk2", ""},
        Case{"Library:/M", {{"Walk", "Run"}}, "Library:/walk", ""},
        Case{"Library:/M", {{"Walk", "Run"}}, "Walk", ""},
        Case{"Library:/M", {{"Walk", "Run"}}, "Walk/other", ""},
        Case{"Library:/M", {{"Walk", "Run"}}, "", ""},
        // The leftmost component that is a name, and only that one.
        Case{"L:", {{"a", "1"}, {"b", "2"}}, "X:/c/b/a/b", "L:/2/a/b"},
        Case{"L:", {{"a", "b"}, {"b", "a"}}, "X:/a/b", "L:/b/b"},
        Case{"L:", {{"a", "b"}, {"b", "c"}}, "X:/a", "L:/b"},
        // True for a box that keeps its place and name.
        Case{"Library:", {{"Walk", "Walk"}}, "Library:/Walk", "Library:/Walk"},
        Case{"Library:", {{"", "x"}}, "Library://Walk", ""},
        Case{"Library:", {{"Walk", "x"}}, "Library://Walk/", "Library:/x/"},
        Case{"Library:", {}, "Library:/Walk", ""},
        // Everything is literal.
        Case{"L:/p.*", {{"a.b", "\\1$&"}}, "L:/a.b/c", "L:/p.*/\\1$&/c"},
        Case{"L:", {{"a.b", "x"}}, "L:/aXb", ""},
        Case{"L:", {{"Walk (2)", "Walk [3]"}}, "L:/Walk (2)", "L:/Walk [3]"},
        Case{"L:", {{"[x]", "%1%2"}}, "L:/[x]/^$", "L:/%1%2/^$"},
        Case{"L:", {{"[x]", "y"}}, "L:/x", ""}, Case{"L:", {{"c:\\d", "%n"}}, "L:/c:\\d", "L:/%n"},
        Case{"L:", {{"a|b", "c"}}, "L:/a", ""},
        Case{"L:", {{"\u00e9t\u00e9", "\U0001F600"}}, "L:/\u00e9t\u00e9/x", "L:/\U0001F600/x"}));

TEST_P(MatchPatcher, Rewrites)
{
    check(ContextMatchPatcher(map(GetParam().names)), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Contexts, MatchPatcher,
    testing::Values(
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:/a", "Library:/b"},
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:/a/x/y", "Library:/b/x/y"},
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:/a/", "Library:/b/"},
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:/ab", ""},
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:/a.b", ""},
        Case{"", {{"Library:/a", "Library:/b"}}, "Library:", ""},
        Case{"", {{"Library:/a", "Library:/b"}}, "x/Library:/a", ""},
        Case{"", {{"Library:/a", "Library:/b"}}, "library:/a", ""},
        Case{"", {{"Library:/a", "Library:/a"}}, "Library:/a", "Library:/a"},
        Case{"", {{"Library:", "Other:"}}, "Library:/a", "Other:/a"},
        // Swapped and chained contexts are rewritten once.
        Case{"", {{"L:/a", "L:/b"}, {"L:/b", "L:/a"}}, "L:/a/1", "L:/b/1"},
        Case{"", {{"L:/a", "L:/b"}, {"L:/b", "L:/a"}}, "L:/b", "L:/a"},
        Case{"", {{"L:/a", "L:/b"}, {"L:/b", "L:/c"}}, "L:/a", "L:/b"},
        // The longest key counts.
        Case{"", {{"L:/a", "1"}, {"L:/a/b", "2"}, {"L:", "3"}}, "L:/a/b/c", "2/c"},
        Case{"", {{"L:/a", "1"}, {"L:/a/b", "2"}, {"L:", "3"}}, "L:/a/bc", "1/bc"},
        Case{"", {{"L:/a", "1"}, {"L:/a/b", "2"}, {"L:", "3"}}, "L:/b", "3/b"},
        Case{"", {}, "L:/a", ""},
        Case{"", {{"L:/a.b(c)[d]\\$1%1", "\\0$&%2"}}, "L:/a.b(c)[d]\\$1%1/x", "\\0$&%2/x"},
        Case{"", {{"L:/a.b", "x"}}, "L:/aXb", ""}, Case{"", {{"L:/.*", "x"}}, "L:/a", ""}));

TEST(ContextRecursiveFinder, FindsAContextAndWhatIsBelowIt)
{
    const ContextRecursiveFinder finder(text("Library:/a.b (1)"));
    const std::vector<std::tuple<std::string, bool>> cases{
        {"Library:/a.b (1)", true},     {"Library:/a.b (1)/", true},
        {"Library:/a.b (1)/x/y", true}, {"Library:/a.b (1)x", false},
        {"Library:/aXb (1)", false},    {"Library:/a.b", false},
        {"x/Library:/a.b (1)", false},  {"", false},
        {"library:/a.b (1)", false}};
    for (const auto& [context, found] : cases) {
        EXPECT_EQ(finder(text(context)), found) << context;
    }
}

TEST(ContextRecursiveFinder, OfTheLibraryFindsEverythingInIt)
{
    const ContextRecursiveFinder finder(text("Library:"));
    EXPECT_TRUE(finder(text("Library:")));
    EXPECT_TRUE(finder(text("Library:/a")));
    EXPECT_FALSE(finder(text("Library:a")));
}

TEST(ContextPatchers, GoOnWorkingAsCopiesAfterTheOriginalIsGone)
{
    auto box = std::make_unique<ContextBoxNamePatcher>(text("L:"), map({{"a", "b"}}));
    auto match = std::make_unique<ContextMatchPatcher>(map({{"L:/b", "L:/c"}}));
    ContextBoxNamePatcher boxCopy = *box;
    ContextMatchPatcher matchCopy = *match;
    box.reset();
    match.reset();
    QString context = text("X:/a/d");
    EXPECT_TRUE(boxCopy(context));
    EXPECT_TRUE(matchCopy(context));
    EXPECT_EQ(context.toStdString(), "L:/c/d");
}
