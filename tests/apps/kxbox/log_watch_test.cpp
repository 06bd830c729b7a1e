#include "log_watch.hpp"

#include <QString>
#include <QtDebug>
#include <gtest/gtest.h>

#include <string>

namespace kxbox {
namespace {

using Texts = std::vector<std::string>;

Texts textsOf(const LogWatch& watch)
{
    Texts texts;
    for (const pk::log::Record& record : watch.records()) {
        texts.push_back(record.message);
    }
    return texts;
}

void log(pk::log::LogLevel level, const std::string& text)
{
    pk::log::log(level, "kxboxlibrary", text, "", "", 0);
}

Texts printed; // by Qt's message logging

void keepPrinted(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    printed.push_back(text.toStdString());
}

/// Puts Qt's messages into `printed` while it lives.
class Printed
{
public:
    Printed() : m_before(qInstallMessageHandler(keepPrinted)) { printed.clear(); }
    ~Printed() { qInstallMessageHandler(m_before); }
    Printed(const Printed&) = delete;
    Printed& operator=(const Printed&) = delete;
    Printed(Printed&&) = delete;
    Printed& operator=(Printed&&) = delete;

private:
    QtMessageHandler m_before;
};

TEST(LogWatch, KeepsWarningsAndErrorsWhileItLives)
{
    const Printed qt;
    log(pk::log::Error, "before");
    {
        const LogWatch watch;
        log(pk::log::Fatal, "fatal");
        log(pk::log::Error, "error");
        log(pk::log::Warning, "warning");
        log(pk::log::Info, "info");
        qWarning("of Qt");
        EXPECT_EQ(textsOf(watch), (Texts{"fatal", "error", "warning"}));
    }
    log(pk::log::Error, "after");
    EXPECT_EQ(printed.size(), 2U);
    EXPECT_NE(printed.front().find("before"), std::string::npos);
    EXPECT_NE(printed.back().find("after"), std::string::npos);
}

TEST(LogWatch, LeavesOutThatThereWasNoFileOfOldVersions)
{
    const Printed qt;
    const LogWatch watch;
    log(pk::log::Error, "Could not remove 'a/.metadata' file, reason: 'a/.metadata': no such");
    log(pk::log::Error, "Could not remove 'a/b' file, reason: it is used");
    EXPECT_EQ(textsOf(watch), Texts{"Could not remove 'a/b' file, reason: it is used"});
}

TEST(LogWatch, CanBeInAnother)
{
    const Printed qt;
    const LogWatch outer;
    log(pk::log::Warning, "1");
    {
        const LogWatch inner;
        log(pk::log::Warning, "2");
        EXPECT_EQ(textsOf(inner), Texts{"2"});
    }
    log(pk::log::Warning, "3");
    EXPECT_EQ(textsOf(outer), (Texts{"1", "2", "3"}));
    EXPECT_EQ(printed, Texts{});
}

TEST(LogWatch, HearsWhatAnInnerWatchHearsButForItsOwnCategories)
{
    const Printed qt;
    const auto warn = [](const char* category, const char* message) {
        pk::log::log(pk::log::Warning, category, message, "", "", 0);
    };
    const LogWatch outer;
    {
        const LogWatch middle;
        const LogWatch inner({"a", "b"});
        warn("a", "1");
        warn("c", "2");
        {
            const LogWatch innermost;
            warn("b", "3");
            EXPECT_EQ(textsOf(innermost), Texts{"3"});
        }
        EXPECT_EQ(textsOf(inner), (Texts{"1", "2", "3"}));
        EXPECT_EQ(textsOf(middle), Texts{"2"});
    }
    warn("a", "4");
    EXPECT_EQ(textsOf(outer), (Texts{"2", "4"}));
}

} // namespace
} // namespace kxbox
