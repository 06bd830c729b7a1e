#include <pk/log.hpp>

#include <QLoggingCategory>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using pk::log::Record;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const pk::log::Category a_madeBeforeMain = pk::log::addCategory("test.early");

void logMessage(const std::string& message, pk::log::Category category = "test")
{
    pk::log::log(pk::log::Warning, category, message, "file.cpp", "function", 7);
}

/// Adds a handler and removes it at the end of the scope.
class ScopedHandler
{
public:
    explicit ScopedHandler(std::function<void(const Record&)> handler)
        : m_id(pk::log::addHandler(std::move(handler)))
    {
    }
    ~ScopedHandler() { pk::log::removeHandler(m_id); }
    Q_DISABLE_COPY_MOVE(ScopedHandler)

    std::uint64_t id() const { return m_id; }

private:
    const std::uint64_t m_id;
};

struct QtMessage
{
    QtMsgType type;
    std::string category, text, file, function;
    int line;
    const char* categoryAddress;
};

/// Takes over Qt's message logging, and its filter rules, for the length of a test.
class QtMessages
{
public:
    QtMessages() : m_previous(qInstallMessageHandler(&QtMessages::take))
    {
        const std::lock_guard<std::mutex> lock(mutex());
        messages().clear();
    }
    ~QtMessages()
    {
        qInstallMessageHandler(m_previous);
        QLoggingCategory::setFilterRules(QString());
    }
    Q_DISABLE_COPY_MOVE(QtMessages)

    std::vector<QtMessage> taken() const
    {
        const std::lock_guard<std::mutex> lock(mutex());
        return messages();
    }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> result;
        for (const QtMessage& message : taken()) {
            result.push_back(message.text);
        }
        return result;
    }

private:
    static std::string orNull(const char* text) { return text != nullptr ? text : "(null)"; }

    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        const std::lock_guard<std::mutex> lock(mutex());
        messages().push_back({type, orNull(context.category), text.toStdString(),
                              orNull(context.file), orNull(context.function), context.line,
                              context.category});
    }

    static std::mutex& mutex()
    {
        static std::mutex mutex;
        return mutex;
    }

    static std::vector<QtMessage>& messages()
    {
        static std::vector<QtMessage> messages;
        return messages;
    }

    const QtMessageHandler m_previous;
};

QProcessEnvironment environmentWith(const char* rules)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QString::fromUtf8(rules));
    environment.insert(QStringLiteral("QT_LOGGING_TO_CONSOLE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_MESSAGE_PATTERN"),
                       QStringLiteral("%{category}|%{type}|%{message}"));
    return environment;
}

// The lines that the helper program writes when it runs under these filter rules.
std::vector<std::string> helperOutput(const char* rules)
{
    QProcess process;
    process.setProcessEnvironment(environmentWith(rules));
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(KX_LOG_HELPER), QStringList());
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        ADD_FAILURE() << process.errorString().toStdString();
    }
    std::vector<std::string> lines;
    for (const QByteArray& line : process.readAll().trimmed().split('\n')) {
        lines.push_back(line.toStdString());
    }
    return lines;
}

} // namespace

TEST(LogHandler, GetsEveryFieldOfARecord)
{
    const QtMessages qt;
    std::vector<Record> records;
    const ScopedHandler handler([&](const Record& record) { records.push_back(record); });

    pk::log::log(pk::log::Error, "test.fields", "gr\xc3\xbc\xc3\x9f", "dir/file.cpp", "save", 616);

    EXPECT_THAT(records,
                ElementsAre(AllOf(Field(&Record::level, pk::log::Error),
                                  Field(&Record::category, "test.fields"),
                                  Field(&Record::message, "gr\xc3\xbc\xc3\x9f"),
                                  Field(&Record::file, "dir/file.cpp"),
                                  Field(&Record::function, "save"), Field(&Record::line, 616))));
}

TEST(LogHandler, GetsEmptyTextForAMissingFileAndFunction)
{
    const QtMessages qt;
    std::vector<Record> records;
    const ScopedHandler handler([&](const Record& record) { records.push_back(record); });

    pk::log::log(pk::log::Warning, "test", "", nullptr, nullptr, 0);

    EXPECT_THAT(records, ElementsAre(AllOf(Field(&Record::message, ""), Field(&Record::file, ""),
                                           Field(&Record::function, ""))));
}

TEST(LogHandler, GetsRecordsOfEveryLevelWhateverTheRulesSay)
{
    const QtMessages qt;
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    std::vector<pk::log::LogLevel> levels;
    const ScopedHandler handler([&](const Record& record) { levels.push_back(record.level); });

    for (const auto level : {pk::log::Fatal, pk::log::Error, pk::log::Warning, pk::log::Info,
                             pk::log::Verbose, pk::log::Debug}) {
        pk::log::log(level, "test", "text", nullptr, nullptr, 0);
    }

    EXPECT_THAT(levels, ElementsAre(pk::log::Fatal, pk::log::Error, pk::log::Warning, pk::log::Info,
                                    pk::log::Verbose, pk::log::Debug));
    EXPECT_THAT(qt.texts(), IsEmpty());
}

TEST(LogHandler, IsCalledInTheOrderOfAddingAndBeforeQt)
{
    const QtMessages qt;
    std::vector<std::string> calls;
    const ScopedHandler first([&](const Record&) {
        calls.emplace_back("first");
        EXPECT_THAT(qt.texts(), IsEmpty());
    });
    const ScopedHandler second([&](const Record&) { calls.emplace_back("second"); });

    logMessage("text");

    EXPECT_THAT(calls, ElementsAre("first", "second"));
    EXPECT_THAT(qt.texts(), ElementsAre("text"));
}

TEST(LogHandler, IsCalledNoMoreOnceItIsRemoved)
{
    const QtMessages qt;
    int calls = 0;
    const std::uint64_t id = pk::log::addHandler([&](const Record&) { ++calls; });
    EXPECT_NE(id, 0U);

    logMessage("seen");
    pk::log::removeHandler(id);
    pk::log::removeHandler(id);
    pk::log::removeHandler(0);
    logMessage("not seen");

    EXPECT_EQ(calls, 1);
}

TEST(LogHandler, HasANumberThatNoHandlerHadBefore)
{
    const std::uint64_t first = pk::log::addHandler([](const Record&) {});
    pk::log::removeHandler(first);
    const std::uint64_t second = pk::log::addHandler([](const Record&) {});
    pk::log::removeHandler(second);

    EXPECT_NE(first, second);
}

TEST(LogHandler, ThatIsEmptyIsNotCalled)
{
    const QtMessages qt;
    const ScopedHandler handler{std::function<void(const Record&)>()};

    logMessage("text");

    EXPECT_THAT(qt.texts(), ElementsAre("text"));
}

TEST(LogHandler, MayLog)
{
    const QtMessages qt;
    std::vector<std::string> seen;
    const ScopedHandler handler([&](const Record& record) {
        seen.push_back(record.message);
        if (record.message == "outer") {
            logMessage("inner");
        }
    });

    logMessage("outer");

    EXPECT_THAT(seen, ElementsAre("outer", "inner"));
    EXPECT_THAT(qt.texts(), ElementsAre("inner", "outer"));
}

TEST(LogHandler, MayAddAHandlerForTheRecordsThatFollow)
{
    const QtMessages qt;
    std::vector<std::string> seen;
    std::unique_ptr<const ScopedHandler> added;
    const ScopedHandler handler([&](const Record&) {
        if (!added) {
            added = std::make_unique<const ScopedHandler>(
                [&](const Record& record) { seen.push_back(record.message); });
        }
    });

    logMessage("first");
    logMessage("second");

    EXPECT_THAT(seen, ElementsAre("second"));
}

TEST(LogHandler, MayRemoveItself)
{
    const QtMessages qt;
    int calls = 0;
    std::uint64_t id = 0;
    id = pk::log::addHandler([&](const Record&) {
        ++calls;
        pk::log::removeHandler(id);
    });

    logMessage("first");
    logMessage("second");

    EXPECT_EQ(calls, 1);
}

TEST(LogHandler, MayLogWhileItIsDestroyed)
{
    struct LogsAtItsEnd
    {
        void operator()(const int* number) const
        {
            logMessage("destroyed");
            std::default_delete<const int>()(number);
        }
    };
    const QtMessages qt;
    const std::uint64_t id = pk::log::addHandler(
        [captured = std::shared_ptr<const int>(new int(0), LogsAtItsEnd())](const Record&) {});

    pk::log::removeHandler(id);

    EXPECT_THAT(qt.texts(), ElementsAre("destroyed"));
}

TEST(LogHandler, PassesItsExceptionToTheCallerAndStaysInPlace)
{
    const QtMessages qt;
    int calls = 0;
    const ScopedHandler handler([&](const Record&) {
        if (++calls == 1) {
            throw std::runtime_error("handler");
        }
    });

    EXPECT_THROW(logMessage("first"), std::runtime_error);
    logMessage("second");

    EXPECT_EQ(calls, 2);
    EXPECT_THAT(qt.texts(), ElementsAre("second"));
}

TEST(LogHandler, MissesNoRecordWhileOtherHandlersComeAndGo)
{
    constexpr int a_threads = 4;
    constexpr int a_records = 500;
    const QtMessages qt;
    std::atomic<int> seen = 0;
    std::atomic<int> passing = 0;
    const ScopedHandler handler([&](const Record&) { ++seen; });

    std::vector<std::thread> threads;
    for (int i = 0; i < a_threads; ++i) {
        threads.emplace_back([] {
            for (int record = 0; record < a_records; ++record) {
                logMessage("text", pk::log::addCategory("test." + std::to_string(record)));
            }
        });
        threads.emplace_back([&passing] {
            for (int round = 0; round < a_records; ++round) {
                const ScopedHandler brief([&passing](const Record&) { ++passing; });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(seen, a_threads * a_records);
    EXPECT_EQ(qt.texts().size(), static_cast<std::size_t>(a_threads * a_records));
    const int passed = passing;
    logMessage("last");
    EXPECT_EQ(passing, passed);
}

TEST(LogRecord, OfLevelSilentGoesNowhere)
{
    const QtMessages qt;
    int calls = 0;
    const ScopedHandler handler([&](const Record&) { ++calls; });

    pk::log::log(pk::log::Silent, "test", "text", nullptr, nullptr, 0);

    EXPECT_EQ(calls, 0);
    EXPECT_THAT(qt.texts(), IsEmpty());
}

TEST(LogRecord, ReachesQtWithCategoryFileFunctionAndLine)
{
    const QtMessages qt;

    pk::log::log(pk::log::Error, "test.qt", "gr\xc3\xbc\xc3\x9f", "dir/file.cpp", "save", 616);
    pk::log::log(pk::log::Error, "test.qt", "", nullptr, nullptr, 0);

    EXPECT_THAT(
        qt.taken(),
        ElementsAre(AllOf(Field(&QtMessage::category, "test.qt"),
                          Field(&QtMessage::text, "gr\xc3\xbc\xc3\x9f"),
                          Field(&QtMessage::file, "dir/file.cpp"),
                          Field(&QtMessage::function, "save"), Field(&QtMessage::line, 616)),
                    AllOf(Field(&QtMessage::text, ""), Field(&QtMessage::file, "(null)"),
                          Field(&QtMessage::function, "(null)"))));
}

struct LevelCase
{
    const char* name;
    pk::log::LogLevel level;
    QtMsgType type;
    bool shownByDefault;
};

class LogLevel : public testing::TestWithParam<LevelCase>
{
};

TEST_P(LogLevel, BecomesAQtMessageType)
{
    const QtMessages qt;
    QLoggingCategory::setFilterRules(QStringLiteral("test.level=true"));

    pk::log::log(GetParam().level, "test.level", "text", nullptr, nullptr, 0);

    EXPECT_THAT(qt.taken(), ElementsAre(Field(&QtMessage::type, GetParam().type)));
}

TEST_P(LogLevel, IsShownFromInfoUpwardsWithoutARule)
{
    const QtMessages qt;

    pk::log::log(GetParam().level, "test.default", "text", nullptr, nullptr, 0);

    EXPECT_EQ(qt.taken().size(), GetParam().shownByDefault ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, LogLevel,
                         testing::Values(LevelCase{"Fatal", pk::log::Fatal, QtCriticalMsg, true},
                                         LevelCase{"Error", pk::log::Error, QtCriticalMsg, true},
                                         LevelCase{"Warning", pk::log::Warning, QtWarningMsg, true},
                                         LevelCase{"Info", pk::log::Info, QtInfoMsg, true},
                                         LevelCase{"Verbose", pk::log::Verbose, QtDebugMsg, false},
                                         LevelCase{"Debug", pk::log::Debug, QtDebugMsg, false}),
                         [](const auto& each) { return each.param.name; });

TEST(LogFilter, RulesSetWhileRunningApplyToTheirCategoryAlone)
{
    const QtMessages qt;

    logMessage("a before", "test.a");
    QLoggingCategory::setFilterRules(QStringLiteral("test.a.warning=false"));
    logMessage("a filtered", "test.a");
    logMessage("b", "test.b");
    QLoggingCategory::setFilterRules(QString());
    logMessage("a after", "test.a");

    EXPECT_THAT(qt.texts(), ElementsAre("a before", "b", "a after"));
}

TEST(LogFilter, RulesOfTheEnvironmentApply)
{
    const std::vector<std::string> lines =
        helperOutput("helper.one=false;helper.one.debug=true;helper.two.info=false");

    EXPECT_THAT(lines, testing::IsSupersetOf({"helper.one|debug|debug", "helper.two|critical|error",
                                              "helper.two|warning|warning"}));
    EXPECT_THAT(lines, Not(testing::Contains(HasSubstr("helper.one|warning"))));
    EXPECT_THAT(lines, Not(testing::Contains(HasSubstr("|info"))));
    EXPECT_THAT(lines, Not(testing::Contains(HasSubstr("helper.two|debug"))));
}

TEST(LogFilter, RulesOfTheEnvironmentApplyOutsideMain)
{
    const std::vector<std::string> lines = helperOutput("helper.early=false;helper.late=false");

    EXPECT_THAT(lines, testing::Contains("helper.one|warning|warning"));
    EXPECT_THAT(lines, Not(testing::Contains(HasSubstr("before main"))));
    EXPECT_THAT(lines, Not(testing::Contains(HasSubstr("after main"))));
}

TEST(Log, WorksBeforeAndAfterMain)
{
    const std::vector<std::string> lines = helperOutput("");

    EXPECT_EQ(lines.front(), "helper.early|warning|before main");
    // Qt's message pattern may be gone by then, the message is not.
    EXPECT_THAT(lines.back(), HasSubstr("after main"));
}

TEST(LogCategory, MayBeMadeByAStaticInitialiser)
{
    const QtMessages qt;

    logMessage("text", a_madeBeforeMain);

    EXPECT_THAT(qt.taken(), ElementsAre(Field(&QtMessage::category, "test.early")));
}

TEST(LogCategory, OfANameThatIsKnownIsTheSameCategory)
{
    const QtMessages qt;

    logMessage("", pk::log::addCategory("test.same"));
    logMessage("", pk::log::addCategory("test.same"));
    logMessage("", "test.same");

    const std::vector<QtMessage> messages = qt.taken();
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_EQ(messages[0].categoryAddress, messages[1].categoryAddress);
    EXPECT_EQ(messages[0].categoryAddress, messages[2].categoryAddress);
}

TEST(LogCategory, KeepsItsName)
{
    EXPECT_EQ(pk::log::addCategory("BoxLibrary").name(), "BoxLibrary");
    EXPECT_EQ(pk::log::addCategory("").name(), "");
    EXPECT_EQ(pk::log::Category("other").name(), "other");
    const char* const none = nullptr;
    EXPECT_EQ(pk::log::Category(none).name(), "");
}
