#include "surveydata/LogFileName.h"

#include <random>

#include "core/ConfigKeys.h"
#include "platform/os/Clock.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr std::int64_t kStart = 1614680130;  // 2021-03-02 10:15:30 UTC

struct FixedClock : Clock {
    FixedClock() { SetClock(this); }
    ~FixedClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return kStart * 1000 + 999; }
};

LogFields Waverly(std::int64_t replay = 0, int count = 0) {
    return {L"Waverly", L"Sweep", L"L001", kStart, replay, count};
}

TEST(LogName, TakesTitlesApart) {
    const test::ScopedZone zone("UTC0");
    struct Row {
        const char* what;
        const wchar_t* title;
        bool good;
        const wchar_t* runline;
        std::int64_t time, replay;
        int count;
    };
    const std::int64_t minute = kStart - 30;
    const Row rows[] = {
        {"plain", L"Waverly[Sweep]_L001-20210302-101530", true, L"L001", kStart, 0, 0},
        {"hyphen in the run line", L"Waverly[Sweep]_L-1-20210302-1015", true, L"L-1", minute, 0, 0},
        {"almost a date in it", L"Waverly[Sweep]_L-2021030-101530-20210302-101530", true, L"L-2021030-101530", kStart,
         0, 0},
        {"replayed", L"Waverly[Sweep]_L001-20210302-101530-R20210302-101530", true, L"L001", kStart, kStart, 0},
        {"replayed twice", L"Waverly[Sweep]_L001-20210302-101530-R20210302-101530-2", true, L"L001", kStart, kStart, 2},
        {"short replay", L"Waverly[Sweep]_L001-20210302-101530-R20210302-1015", false, L"L001", kStart, 0, 0},
        {"both short: too short for a replay", L"W[S]_A-20210302-1015-R20210302-1015", false, L"A", minute, 0, 0},
        {"both short, counted", L"W[S]_A-20210302-1015-R20210302-1015-2", true, L"A", minute, minute, 2},
        {"no run line", L"Waverly[Sweep]_-20210302-101530", true, L"", kStart, 0, 0},
        {"no run line, replayed", L"Waverly[Sweep]_-20210302-101530-R20210302-101530", false, L"", kStart, kStart, 0},
        {"day 31 rolls over", L"Waverly[Sweep]_A-20210231-101530", true, L"A", kStart + 86400, 0, 0},
        {"month 13", L"Waverly[Sweep]_A-20211302-101530", false, L"A", 0, 0, 0},
        {"no digits", L"Waverly[Sweep]_A-2021O302-101530", false, L"A", 0, 0, 0},
        {"start of the epoch", L"Waverly[Sweep]_A-19700101-000000", true, L"A", 0, 0, 0},
        {"before 1900", L"Waverly[Sweep]_A-18000101-0000", true, L"A", 0, 0, 0},
        {"before 1601", L"Waverly[Sweep]_A-16000101-0000", false, L"A", 0, 0, 0},
        {"no brackets", L"Waverly_L001-20210302-101530", false, L"", 0, 0, 0},
        {"bracket in front", L"[Sweep]_L001-20210302-101530", false, L"", 0, 0, 0},
        {"ends in the bracket", L"Waverly[Sweep]", false, L"", 0, 0, 0},
        {"one hyphen", L"Waverly[Sweep]_L001-20210302", false, L"", 0, 0, 0},
        {"nothing", L"", false, L"", 0, 0, 0},
    };
    for (const Row& row : rows) {
        LogFields fields;
        EXPECT_EQ(ParseLogName(row.title, fields), row.good) << row.what;
        EXPECT_EQ(fields.runline, row.runline) << row.what;
        EXPECT_EQ(fields.logTime, row.time) << row.what;
        EXPECT_EQ(fields.replayTime, row.replay) << row.what;
        EXPECT_EQ(fields.replayCount, row.count) << row.what;
    }
    for (const LogFields& fields : {Waverly(), Waverly(kStart + 9), Waverly(kStart + 9, 12)}) {
        LogFields again;
        EXPECT_TRUE(ParseLogName(AutomaticLogName(fields), again));
        EXPECT_EQ(AutomaticLogName(again), AutomaticLogName(fields));
    }
}

TEST(LogName, TimesAreLocalAndARepeatedHourIsItsFirstPass) {
    const test::ScopedZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(LogTimeText(kStart), L"20210302-111530");
    std::int64_t time = 0;
    EXPECT_TRUE(ParseLogTime(L"20211031-023000", time));
    EXPECT_EQ(time, 1635640200);  // 00:30 UTC, summer time
    EXPECT_EQ(LogTimeText(time + 3600), L"20211031-023000");
    EXPECT_FALSE(ParseLogTime(L"20211031-023", time));
}

// Whatever the fields, a name that is made of them gives them back; around the changes of summer time, a leap day and
// the turn of a year.
TEST(LogName, RandomNamesComeBack) {
    const test::ScopedZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    std::mt19937 random(3);
    const auto pick = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    const auto text = [&](std::wstring_view characters) {
        std::wstring made;
        for (std::size_t length = 1 + pick(8); length > 0; --length) made += characters[pick(characters.size())];
        return made;
    };
    const std::int64_t moments[] = {1616893200, 1635642000, 1582934400, 1609455600};
    const auto moment = [&] { return moments[pick(4)] + static_cast<std::int64_t>(pick(14400)) - 7200; };
    for (int round = 0; round < 20000; ++round) {
        const std::wstring_view plain = L"aZ0 ._~\u00E9", runline = L"aR-2021.[]_";
        LogFields fields{text(plain), text(plain), text(runline), moment(), 0, 0};
        if (pick(2)) fields.replayTime = moment();
        if (fields.replayTime != 0) fields.replayCount = static_cast<int>(pick(12));
        const std::wstring name = AutomaticLogName(fields);
        LogFields again;
        ASSERT_TRUE(ParseLogName(name, again)) << round;
        // The second pass of the hour in October reads as the first.
        for (const auto& [wanted, found] :
             {std::pair{fields.logTime, again.logTime}, std::pair{fields.replayTime, again.replayTime}}) {
            ASSERT_TRUE(found == wanted || (found == wanted - 3600 && LogTimeText(found) == LogTimeText(wanted)));
        }
        ASSERT_EQ(again.vessel + again.surveyType + again.runline, fields.vessel + fields.surveyType + fields.runline);
        ASSERT_EQ(again.replayCount, fields.replayCount);
        ASSERT_EQ(AutomaticLogName(again), name);
    }
}

TEST(LogName, NumbersReplays) {
    const test::ScopedZone zone("UTC0");
    struct Row {
        const char* what;
        std::vector<std::wstring> names;
        const wchar_t* text;
    };
    const std::wstring base = L"W[S]_L-20210302-101530-R20210303-", now = L"-R20210302-101530";
    for (const Row& row : {Row{"first", {}, L""},
                           {"counts", {base + L"090000-2.orv", base + L"090000-7.orv"}, L"-8"},
                           {"last digit of the seconds", {base + L"090004.orv"}, L"-5"},
                           {"behind a short time", {base + L"0900-3.orv"}, L"-4"},
                           {"too short, no dot, no R", {base + L".orv", base + L"090000-9", L"x.orv"}, L""},
                           {"a huge count", {base + L"090000-2147483647.orv"}, L"-2147483648"}}) {
        EXPECT_EQ(ReplayText(row.names, kStart), now + row.text) << row.what;
    }
    const test::TempFolder folder;
    const FixedClock clock;
    test::WriteBytes(folder / L"W[S]_L-20210302-101530.orv", "");
    test::WriteBytes(folder / L"W[S]_L-20210302-101530-R20210303-090000-4.orv", "");
    EXPECT_EQ(LogFileName::CreateReplayString(folder / L"W[S]_L-20210302-101530.orv"), now + L"-5");
}

TEST(LogFileName, ComposesAfterTheProject) {
    const test::ScopedZone zone("UTC0");
    const test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    const auto set = [&](std::wstring_view key, const wchar_t* value) {
        project.SetItem(DATA_PATH_SECTION, key, value, true);
    };
    LogFileName log;
    log.SetVesselName(L"W.1");
    log.SetSurveyType(L"Sweep");
    log.SetRunlineName(L"L-1");
    log.SetLogTime(kStart);
    EXPECT_EQ(log.GetName(), L"W.1[Sweep]_L~1-20210302-101530");
    EXPECT_TRUE(log.IsValid());
    EXPECT_EQ(log.VesselConfigName(), L"W.1[Sweep]");
    set(REPLACE_DOTS_IN_LOGFILENAME, L"1");
    EXPECT_EQ(log.GetName(), L"W_1[Sweep]_L~1-20210302-101530") << "also on a name that is there";
    struct Row {
        const char* what;
        const wchar_t *choice, *items, *separator, *name;
    };
    for (const Row& row : {
             Row{"in their order", L"1", L"Start time,1,Nonsense,1,User text,1,Vessel name,1", L"-", L"101530-W_1"},
             {"flags", L"1", L"Start date,0,Run line name,1,Survey type,yes", L"+", L"L~1"},
             {"dots where '-' isn't between", L"1", L"Vessel name,1,Start date,1", L"+", L"W-1+20210302"},
             {"none", L"1", L"Vessel name,0", L"-", L""},
             {"no such choice", L"2", L"Vessel name,1", L"-", L""},
         }) {
        set(LOG_FILE_NAMING, row.choice);
        set(FILENAME_ITEMS, row.items);
        set(LOG_FILE_SEPARATOR, row.separator);
        log.SetReplayCount(0);  // composes anew
        EXPECT_EQ(log.GetName(), row.name) << row.what;
    }
    LogFileName renamed(L"W[S]_L-20210302-101530.orv");
    EXPECT_TRUE(renamed.SetName(renamed.GetName()) && renamed.SetNameFromFileTitle(renamed.GetName()));
    log.ForceAutoNaming(true);
    log.SetReplayTime(kStart);
    log.SetReplayCount(2);
    EXPECT_EQ(log.GetName(), L"W_1[Sweep]_L~1-20210302-101530-R20210302-101530-2");
}

}  // namespace
}  // namespace orv
