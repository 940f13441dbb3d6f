#include "housekeeping/BaseORVMessage.h"

#include <thread>

#include "Fakes.h"
#include "platform/notify/Exceptions.h"
#include "platform/os/FileTools.h"
#include "platform/service/Translator.h"
#include "platform/text/Utf.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr std::int64_t kMorning = 1614676507;  // 2021-03-02 09:15:07 UTC

class BaseORVMessageTest : public testing::Test {
protected:
    BaseORVMessageTest() { EXPECT_TRUE(installation.Start()); }
    ~BaseORVMessageTest() override {
        SetMessageDelivery({});
        SetFileSystem(nullptr);
        Translator::Instance().Deactivate();
    }
    bool Add(const std::wstring& text, bool addTime = false) {
        return sink.AddMessage(kLevelInformation, text, true, L"COM1", addTime, kNoFilter);
    }
    void AddNumbered(int count) {
        for (int i = 1; i <= count; ++i) Add(std::to_wstring(i));
    }
    std::wstring Text(bool found) const { return found ? message.GetText() : L"none"; }
    std::wstring Unused(int count = 1) {
        std::wstring texts;
        for (; count > 0; --count) texts += Text(sink.GetUnusedMessage(message));
        return texts;
    }
    std::string Log(std::wstring_view name) const { return test::ReadBytes(folder / name); }

    test::ScopedZone zone{"Europe/Amsterdam"};
    test::SetableClock clock{kMorning};
    test::TestInstallation installation;
    test::TempFolder folder;
    BaseORVMessage sink;
    Message<wchar_t> message;
};

TEST_F(BaseORVMessageTest, EmptyRing) {
    long index = 7;
    EXPECT_FALSE(sink.GetLastMessageIdx(index));
    EXPECT_EQ(sink.GetBufferStatus(), kRingEmpty);
    EXPECT_FALSE(sink.GetLastMessage(message));
    EXPECT_EQ(sink.GetErrorStatus(), kMessageNone);
    EXPECT_EQ(Unused(), L"none");
    EXPECT_EQ(sink.GetBufferStatus(), kRingNoUnused);
    EXPECT_EQ(index, 7);
    EXPECT_EQ(sink.GetPort(), L"NONE");
    EXPECT_TRUE(sink.IncrementIndex(index)) << "one slot from the start";
    EXPECT_EQ(index, 0);
}

TEST_F(BaseORVMessageTest, RingOverwritesTheOldest) {
    AddNumbered(101);
    EXPECT_EQ(sink.GetNumTotalMessages(), 100);
    EXPECT_EQ(Unused(2), L"23");
    EXPECT_EQ(Text(sink.GetPreviousMessage(message, 99)), L"2");
    EXPECT_EQ(Text(sink.GetPreviousMessage(message, 100)), L"none");
    EXPECT_EQ(sink.GetBufferStatus(), kRingOutOfRange);
    long slot = 0;
    EXPECT_EQ(Text(sink.GetMessage(message, slot)), L"101") << "slot 0 was used again";
    EXPECT_EQ(message.GetSequence(), 101);
    EXPECT_EQ(sink.GetPort(), L"COM1");
}

TEST_F(BaseORVMessageTest, ReadersNeverSeeStaleSlots) {
    AddNumbered(5);
    long index = 4;
    EXPECT_EQ(Text(sink.GetMessageAndIncrement(message, index)), L"5");
    EXPECT_EQ(index, 0);
    index = 9;
    EXPECT_EQ(Text(sink.GetMessageAndIncrement(message, index)), L"none");
    EXPECT_EQ(index, 0) << "a view of a longer past";
    for (long bad : {5L, -1L, 100L}) {
        EXPECT_FALSE(sink.GetMessage(message, bad)) << bad;
        EXPECT_FALSE(sink.GetPreviousMessage(message, bad)) << bad;
    }
    Message<wchar_t> wanted;
    const struct {
        std::int32_t sequence;
        long distance, slot;  ///< -1: not found
        int status, absoluteStatus;
    } rows[] = {{5, 0, 4, kRingOk, kRingOk}, {2, 3, 1, kRingOk, kRingOk}, {6, -1, -1, kRingOutOfRange, kRingOk}};
    for (const auto& row : rows) {
        wanted.SetSequence(row.sequence);
        long distance = -1, slot = -1;
        EXPECT_EQ(sink.SearchMessage(wanted, distance), row.distance >= 0);
        EXPECT_EQ(sink.GetBufferStatus(), row.status);
        EXPECT_EQ(sink.SearchMessageAbsolute(wanted, slot), row.slot >= 0);
        EXPECT_EQ(sink.GetBufferStatus(), row.absoluteStatus);
        EXPECT_TRUE(distance == row.distance && slot == row.slot) << row.sequence;
    }
    AddNumbered(100);
    long index100 = -1;
    EXPECT_FALSE(sink.SearchMessage(wanted = {}, index100));
    EXPECT_EQ(sink.GetBufferStatus(), kRingNotFound);
}

TEST_F(BaseORVMessageTest, TextsOfTheOtherForms) {
    Translator::Lookups lookups;
    lookups.resource = [](std::wstring_view id) { return id == L"17" ? L"%s: 100% of %s, %n" : L""; };
    Translator::Instance().Activate(lookups);
    CException exception(std::wstring(300, L'e'));
    const std::wstring time = L"2021-03-02 10:15:07 : ";
    const struct {
        bool added;
        std::wstring text;
    } rows[] = {
        {sink.AddMessage(kLevelFailure, 17, "a", "b"), time + L"a: 100% of b, %n"},
        {sink.AddMessage(kLevelFailure, 0, L"a", L"b"), time + L"Unknown error"},
        {sink.AddMessage(kLevelFailure, 18, L"a", L"b"), time + L"Message 18: a b"},
        {sink.AddMessage(&exception), time + std::wstring(254, L'e')},
        {sink.AddMessage(kLevelFailure,
                         "Stra\xDF"
                         "e",
                         false, L"", false, kNoFilter),
         L"Stra\u00dfe"},
        {sink.AddMessage(kLevelFailure,
                         "Stra\xC3\x9F"
                         "e",
                         false, L"", false, kNoFilter),
         L"Stra\u00dfe"},
    };
    for (const auto& row : rows) EXPECT_EQ(Text(sink.GetUnusedMessage(message)), row.text);
    const char* const none = nullptr;
    EXPECT_FALSE(sink.AddMessage(nullptr) || sink.AddMessage(kLevelFailure, 17, none, "b") ||
                 sink.AddMessage(kLevelFailure, none, true, L"", true, kNoFilter));
    EXPECT_EQ(sink.GetNumTotalMessages(), 6);
}

TEST_F(BaseORVMessageTest, DayChangeStartsANewFile) {
    ASSERT_TRUE(sink.SetLogging(true, folder.Path(), L"night"));
    clock.seconds = kMorning + 49000;  // 23:51:47 here
    EXPECT_TRUE(Add(L"gr\u00fc\u00df", true));
    clock.seconds = kMorning + 50000;
    EXPECT_TRUE(Add(L"after midnight", true));
    EXPECT_TRUE(sink.SetLogging(false, L"", L""));
    const std::string start = "*** Start of ORV Session ***\n\n*** Start of Logging Session ***\n";
    const std::string end = "\n*** End of Logging Session ***\n";
    EXPECT_EQ(Log(L"surveyor_night_20210302.log"), start + "2021-03-02 23:51:47 : gr\xC3\xBC\xC3\x9F\n" + end);
    EXPECT_EQ(Log(L"surveyor_night_20210303.log"), start + "2021-03-03 00:08:27 : after midnight\n" + end);
    ASSERT_TRUE(sink.SetLogging(true, L"", L""));
    EXPECT_TRUE(sink.SetLogging(false, L"", L"")) << "kept folder and prefix";
    EXPECT_TRUE(Log(L"surveyor_night_20210303.log").ends_with(end + "\n*** Start of Logging Session ***\n" + end));
}

TEST_F(BaseORVMessageTest, WithoutAFolderForTheNewDayTheOldFileGoesOn) {
    installation.Search().GetProjectDefinition().SetLogDataPath(folder.Path());
    ASSERT_TRUE(sink.SetLogging(true, L"", L""));
    Add(L"today");
    installation.Restart();  // no project is open now
    clock.seconds = kMorning + 86400;
    Add(L"tomorrow");
    EXPECT_TRUE(sink.GetLogging() && sink.SetLogging(false, L"", L""));
    const std::string log = Log(L"surveyor_20210302.log");
    EXPECT_LT(log.find("today\ntomorrow\n"), log.find("*** End"));
}

TEST_F(BaseORVMessageTest, AWriterGivesUpOnAWindowThatHangs) {
    std::promise<void> handling, release;
    SetMessageDelivery([&](AbstractORVMessage&, bool post) {
        if (post) return;
        handling.set_value();
        release.get_future().wait();
    });
    std::jthread other([&] { sink.AddMessage(kLevelInformation, L"sent", false, L"", false, kNoFilter); });
    handling.get_future().wait();
    EXPECT_FALSE(Add(L"late"));
    EXPECT_EQ(sink.GetErrorStatus(), kMessageTimeout);
    EXPECT_EQ(Text(sink.GetLastMessage(message)), L"sent");
    release.set_value();
}

TEST_F(BaseORVMessageTest, BareAndRawLogs) {
    sink.SetNoHeader(true);
    for (const bool raw : {false, true}) {
        sink.SetRawMsg(raw);
        ASSERT_TRUE(sink.SetLogging(true, folder.Path(), L""));
        Add(L"one", true);
        Add(L"two", true);
        ASSERT_TRUE(sink.SetLogging(false, L"", L""));
    }
    EXPECT_EQ(Log(L"surveyor_20210302.log"), "one\ntwo\nonetwo");
}

TEST_F(BaseORVMessageTest, FlushesOnceAMinute) {
    sink.SetNoHeader(true);
    ASSERT_TRUE(sink.SetLogging(true, folder.Path(), L""));
    const struct {
        int second;
        std::string file;
    } rows[] = {{0, "0\n"}, {59, "0\n"}, {60, "0\n59\n60\n"}, {119, "0\n59\n60\n"}, {30, "0\n59\n60\n119\n30\n"}};
    for (const auto& row : rows) {
        clock.seconds = kMorning + row.second;
        Add(std::to_wstring(row.second));
        EXPECT_EQ(Log(L"surveyor_20210302.log"), row.file) << row.second;
    }
    EXPECT_NE(Files().Remove(folder / L"surveyor_20210302.log"), FsResult::Ok) << "it is being written";
}

TEST_F(BaseORVMessageTest, ABadDiskEndsLoggingAndIsReportedOnce) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
        SCOPED_TRACE(n);
        test::TempFolder fresh;
        FailingFileSystem failing(n);
        SetFileSystem(&failing);
        {
            BaseORVMessage bad;
            const bool started = bad.SetLogging(true, fresh.Path(), L"");
            EXPECT_EQ(bad.GetErrorStatus(), started ? kMessageOk : kMessageNoLog);
            for (int day = 0; day < 3; ++day) {
                clock.seconds = kMorning + day * 86400;
                EXPECT_TRUE(bad.AddMessage(kLevelInformation, L"text", true, L"", false, kNoFilter));
            }
            EXPECT_TRUE(bad.SetLogging(false, L"", L""));
            failed = failing.HasFailed();
            const int reports = bad.GetNumTotalMessages() - 3;
            EXPECT_LE(reports, failed ? 1 : 0);
        }
        SetFileSystem(nullptr);
        EXPECT_TRUE(!failed || n < 200);
        EXPECT_TRUE(failed || n > 10) << "the calls aren't counted";
    }
}

TEST_F(BaseORVMessageTest, DeliversInBothModesAndLetsTheWindowAnswer) {
    std::wstring modes;
    SetMessageDelivery([&](AbstractORVMessage& source, bool post) {
        modes += post ? L"p" : L"s";
        EXPECT_EQ(&source, &sink);
        if (!post) source.AddMessage(kLevelInformation, L"answer", true, L"", false, kNoFilter);
    });
    Add(L"posted");
    sink.AddMessage(kLevelInformation, L"sent", false, L"", false, kNoFilter);
    EXPECT_EQ(modes, L"psp");
    EXPECT_EQ(Unused(3), L"postedsentanswer");
}

/// Eight writers and two readers; the window keeps what arrived, in the ring's order. ORV_MESSAGES sets how many.
class ManyThreads : public BaseORVMessageTest {
protected:
    ManyThreads() {
        const char* const count = std::getenv("ORV_MESSAGES");
        each = (count ? std::atoi(count) : 16000) / kWriters;
        sink.SetNoHeader(true);
        SetMessageDelivery([this](AbstractORVMessage&, bool) {
            Message<wchar_t> newest;
            EXPECT_TRUE(sink.GetLastMessage(newest));
            EXPECT_EQ(newest.GetSequence(), ++arrived);
            order += ToUtf8(newest.GetText()) + '\n';
            if (arrived == kWriters * each / 3) clock.seconds += 86400;
        });
    }
    void WriteAll() {
        std::vector<std::thread> threads;
        std::atomic<bool> done = false;
        for (int i = 0; i < kReaders; ++i) threads.emplace_back([&] { Read(done); });
        for (int i = 0; i < kWriters; ++i) {
            threads.emplace_back([&, i] {
                for (int n = 0; n < each; ++n) Add(std::to_wstring(i) + L" writes " + std::to_wstring(n));
            });
        }
        for (std::size_t i = kReaders; i < threads.size(); ++i) threads[i].join();
        done = true;
        for (int i = 0; i < kReaders; ++i) threads[static_cast<std::size_t>(i)].join();
    }
    void Read(const std::atomic<bool>& done) {
        Message<wchar_t> read;
        for (long index = 0, found = 0; !done;) {
            EXPECT_TRUE(!sink.GetMessageAndIncrement(read, index) || !read.GetText().empty());
            if (sink.GetLastMessage(read)) sink.SearchMessage(read, found);
            sink.GetPort();
        }
    }
    static constexpr int kWriters = 8;
    static constexpr int kReaders = 2;
    int each = 0, arrived = 0;
    std::string order;
};

TEST_F(ManyThreads, EveryMessageIsInTheFilesInTheOrderOfTheRing) {
    ASSERT_TRUE(sink.SetLogging(true, folder.Path(), L""));
    WriteAll();
    ASSERT_TRUE(sink.SetLogging(false, L"", L""));
    EXPECT_EQ(arrived, kWriters * each);
    EXPECT_TRUE(Log(L"surveyor_20210302.log") + Log(L"surveyor_20210303.log") == order);
    EXPECT_GT(Log(L"surveyor_20210303.log").size(), order.size() / 2) << "the day didn't change in between";
}

TEST_F(ManyThreads, ADiskThatFillsUpEndsTheLogAndNothingElse) {
    FailingFileSystem full(20);
    SetFileSystem(&full);
    ASSERT_TRUE(sink.SetLogging(true, folder.Path(), L""));
    WriteAll();
    SetFileSystem(nullptr);
    EXPECT_TRUE(full.HasFailed() && !sink.GetLogging());
    EXPECT_EQ(arrived, kWriters * each + 1) << "and one report";
    const std::string kept = Log(L"surveyor_20210302.log") + Log(L"surveyor_20210303.log");
    EXPECT_GT(kept.size(), 16384u);
    EXPECT_TRUE(order.starts_with(kept));
}

}  // namespace
}  // namespace orv
