#include "platform/os/Clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>

#include "platform/values/TruncToInt.h"

namespace orv {

namespace {

class SystemClock : public Clock {
public:
    std::int64_t UtcMilliseconds() override {
        using namespace std::chrono;
        return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    }
};

std::atomic<Clock*> clockInForce{nullptr};

constexpr std::int64_t kDay = 86400;

int Clip(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

CalendarTime FromTm(const std::tm& tm) {
    return {Clip(std::int64_t{tm.tm_year} + 1900), tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
}

std::int64_t ZoneOffset(std::int64_t utcSeconds) {
    const std::time_t time = utcSeconds;
    std::tm tm{};
    return localtime_r(&time, &tm) ? tm.tm_gmtoff : 0;
}

}  // namespace

Clock& TheClock() {
    static SystemClock system;
    Clock* const set = clockInForce.load();
    return set ? *set : system;
}

void SetClock(Clock* clock) {
    clockInForce = clock;
}

CalendarTime LocalCalendar(std::int64_t utcSeconds) {
    const std::time_t time = utcSeconds;
    std::tm tm{};
    return localtime_r(&time, &tm) ? FromTm(tm) : CalendarTime{};
}

CalendarTime UtcCalendar(std::int64_t utcSeconds) {
    const std::time_t time = utcSeconds;
    std::tm tm{};
    return gmtime_r(&time, &tm) ? FromTm(tm) : CalendarTime{};
}

std::int64_t LocalToUtc(const CalendarTime& local) {
    // mktime answers a repeated hour by what it was asked before; the offsets of the days around it tell both passes.
    const std::int64_t asUtc = CalendarToUtc(local);
    const std::int64_t before = ZoneOffset(asUtc - kDay), after = ZoneOffset(asUtc + kDay);
    for (const std::int64_t offset : {std::max(before, after), std::min(before, after)}) {
        if (ZoneOffset(asUtc - offset) == offset) return asUtc - offset;
    }
    return asUtc - before;  // an hour that is skipped: as if the clocks had not been put forward yet
}

std::int64_t CalendarToUtc(const CalendarTime& utc) {
    std::tm tm{};
    tm.tm_year = Clip(std::int64_t{utc.year} - 1900);
    tm.tm_mon = Clip(std::int64_t{utc.month} - 1);
    tm.tm_mday = utc.day;
    tm.tm_hour = utc.hour;
    tm.tm_min = utc.minute;
    tm.tm_sec = utc.second;
    return timegm(&tm);
}

double CExTime::GetCurTime() {
    return static_cast<double>(TheClock().UtcMilliseconds());
}

double CExTime::GetCoarseTime() {
#ifdef CLOCK_REALTIME_COARSE
    timespec now = {};
    if (!clockInForce.load(std::memory_order_relaxed) && clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0) {
        const std::int64_t milliseconds = std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
        return static_cast<double>(milliseconds);
    }
#endif
    return GetCurTime();
}

std::wstring CExTime::TimeToString(double time, int, int, int) {
    std::int64_t seconds = 0;
    if (!TruncToInt(std::floor(time / 1000.0), seconds)) return {};
    const CalendarTime local = LocalCalendar(seconds);
    std::wstring text = L"0000-00-00 00:00:00";
    const auto put = [&text](std::size_t last, std::size_t digits, int value) {
        for (unsigned rest = static_cast<unsigned>(value); digits > 0; --digits, --last, rest /= 10) {
            text[last] = static_cast<wchar_t>(L'0' + rest % 10);
        }
    };
    put(3, 4, local.year);
    put(6, 2, local.month);
    put(9, 2, local.day);
    put(12, 2, local.hour);
    put(15, 2, local.minute);
    put(18, 2, local.second);
    return text;
}

}  // namespace orv
