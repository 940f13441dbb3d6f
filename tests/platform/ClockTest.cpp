#include "platform/os/Clock.h"

#include "platform/os/ProgramPath.h"
#include "platform/text/PathText.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

std::string Text(const CalendarTime& t) {
    char text[100];
    std::snprintf(text, sizeof text, "%d-%d-%d %d:%d:%d", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return text;
}

TEST(Clock, CalendarsByZone) {
    const struct {
        const char* zone;
        CalendarTime local;
        std::int64_t utc;
        const char* back;  // what that moment reads as
    } rows[] = {
        {"UTC0", {1970, 1, 1, 0, 0, 0}, 0, "1970-1-1 0:0:0"},
        {"UTC0", {2024, 14, -1, 25, 61, -1}, 1738288859, "2025-1-31 2:0:59"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2024, 7, 1, 12, 0, 0}, 1719828000, "2024-7-1 12:0:0"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2024, 10, 27, 2, 30, 0}, 1729989000, "2024-10-27 2:30:0"},  // the first pass
        {"CET-1CEST,M3.5.0,M10.5.0/3", {2024, 3, 31, 2, 30, 0}, 1711848600, "2024-3-31 3:30:0"},    // is skipped
        {"EST5EDT,M3.2.0,M11.1.0", {2024, 11, 3, 1, 30, 0}, 1730611800, "2024-11-3 1:30:0"},
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", {2024, 4, 7, 2, 30, 0}, 1712417400, "2024-4-7 2:30:0"},
    };
    for (const auto& row : rows) {
        const test::ScopedZone zone(row.zone);
        EXPECT_EQ(LocalToUtc(row.local), row.utc) << row.zone << ' ' << row.back;
        EXPECT_EQ(Text(LocalCalendar(row.utc)), row.back) << row.zone;
    }
    EXPECT_EQ(Text(UtcCalendar(-1)), "1969-12-31 23:59:59");
    EXPECT_EQ(CalendarToUtc({2000, 2, 29, 12, 0, 0}), 951825600);
    EXPECT_EQ(Text(UtcCalendar(std::numeric_limits<std::int64_t>::max())), "1970-1-1 0:0:0");
}

TEST(Clock, MayBeSet) {
    struct : Clock {
        std::int64_t UtcMilliseconds() override { return 1234567; }
    } fixed;
    SetClock(&fixed);
    EXPECT_EQ(CExTime::GetCurTime(), 1234567.0);
    SetClock(nullptr);
    EXPECT_GT(CExTime::GetCurTime(), 1.7e12);
}

TEST(ProgramPath, MayBeSetAndIsLimited) {
    std::wstring path = L"before";
    ASSERT_TRUE(GetProgramPath(path, 10000));
    EXPECT_EQ(GetNameFromPath(path), L"platform_tests");
    EXPECT_EQ(GetAppPath(), GetFolderFromPath(path));
    SetProgramPath(L"\\opt\\orv\\bin\\\U0001F6A2");
    EXPECT_TRUE(GetModulePath(path, 15));
    EXPECT_EQ(path, L"/opt/orv/bin/\U0001F6A2");
    EXPECT_FALSE(GetProgramPath(path, 14)) << "the ship counts as two";
    SetProgramPathMissing();
    EXPECT_FALSE(GetProgramPath(path));
    EXPECT_EQ(GetAppPath(), L"");
    EXPECT_EQ(path, L"/opt/orv/bin/\U0001F6A2") << "left alone on failure";
    SetProgramPath(L"");
    EXPECT_TRUE(GetProgramPath(path, 10000));
}

TEST(ProgramPath, FindsTheDataOfABuildOrAnInstallation) {
    const test::TempFolder root;
    test::MakeFolders(root / L"bin");
    const std::wstring bin = root / L"bin";
    std::wstring folder = bin;
    EXPECT_FALSE(CheckAppPathForDevelopEnvironment(folder));
    EXPECT_EQ(folder, bin);
    test::MakeFolders(root / L"share/orv");
    EXPECT_TRUE(CheckAppPathForDevelopEnvironment(folder));
    EXPECT_EQ(folder, root / L"share/orv/");
    test::WriteBytes(root / L"bin/orv-data-root", "/src/d\xC3\xA4ta\r\nmore");
    folder = bin + L"/";
    EXPECT_TRUE(CheckAppPathForDevelopEnvironment(folder));
    EXPECT_EQ(folder, L"/src/däta/");
}

}  // namespace
}  // namespace orv
