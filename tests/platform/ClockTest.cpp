#include "platform/os/Clock.h"

#include <limits>
#include <tuple>

#include "platform/os/ProgramPath.h"
#include "platform/text/PathText.h"
#include "support/TestSupport.h"

namespace orv::test {

std::string Text(const CalendarTime& t) {
    char text[100];
    std::snprintf(text, sizeof text, "%d-%d-%d %d:%d:%d", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return text;
}

TEST(Clock, CalendarsByZone) {
    constexpr auto cet = "CET-1CEST,M3.5.0,M10.5.0/3";
    // Local time, the moment it means, and what that moment reads as.
    const std::tuple<const char*, CalendarTime, std::int64_t, const char*> rows[] = {
        {"UTC0", {2024, 14, -1, 25, 61, -1}, 1738288859, "2025-1-31 2:0:59"},
        {cet, {2024, 7, 1, 12, 0, 0}, 1719828000, "2024-7-1 12:0:0"},
        {cet, {2024, 10, 27, 2, 30, 0}, 1729989000, "2024-10-27 2:30:0"},  // the first pass
        {cet, {2024, 3, 31, 2, 30, 0}, 1711848600, "2024-3-31 3:30:0"},    // is skipped
        {"AEST-10AEDT,M10.1.0,M4.1.0/3", {2024, 4, 7, 2, 30, 0}, 1712417400, "2024-4-7 2:30:0"},
    };
    for (const auto& [zone, local, utc, back] : rows) {
        const ScopedZone scope(zone);
        EXPECT_EQ(LocalToUtc(local), utc) << zone << ' ' << back;
        EXPECT_EQ(Text(LocalCalendar(utc)), back) << zone;
    }
    EXPECT_EQ(Text(UtcCalendar(-1)), "1969-12-31 23:59:59");
    EXPECT_EQ(Text(UtcCalendar(std::numeric_limits<std::int64_t>::max())), "1970-1-1 0:0:0");
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
    EXPECT_EQ(path, L"/opt/orv/bin/\U0001F6A2") << "left alone on failure";
    SetProgramPath(L"");
}

}  // namespace orv::test
