#pragma once

#include <cstdint>
#include <string>

#include "platform/Export.h"

namespace orv {

/// A moment: seconds since 1970 UTC.
using CTime = std::int64_t;

/// A moment broken down, in local time or UTC as the operation says.
struct CalendarTime {
    int year = 1970, month = 1, day = 1;  ///< month 1..12, day 1..31
    int hour = 0, minute = 0, second = 0;
};

/// Where the time comes from. A host or a test may set its own. Any thread may call.
class ORV_EXPORT Clock {
public:
    virtual ~Clock() = default;
    virtual std::int64_t UtcMilliseconds() = 0;  ///< since 1970
};

ORV_EXPORT Clock& TheClock();
ORV_EXPORT void SetClock(Clock* clock);  ///< not owned; nullptr puts the system's clock back

ORV_EXPORT CalendarTime LocalCalendar(std::int64_t utcSeconds);  ///< by the zone of the process
ORV_EXPORT CalendarTime UtcCalendar(std::int64_t utcSeconds);
/// Seconds since 1970 UTC. Fields beyond their range roll over; an hour that summer time repeats means its first pass.
ORV_EXPORT std::int64_t LocalToUtc(const CalendarTime& local);
ORV_EXPORT std::int64_t CalendarToUtc(const CalendarTime& utc);

/// The suite's time: milliseconds since 1970 UTC as a double.
class ORV_EXPORT CExTime {
public:
    static double GetCurTime();
    /// Of a file time: seconds since 1970 UTC.
    static double ConvertCTime(std::int64_t utcSeconds) { return static_cast<double>(utcSeconds) * 1000.0; }
    /// The same, some milliseconds old at most and many times cheaper: for marks of use.
    static double GetCoarseTime();
    /// "YYYY-MM-DD HH:MM:SS", local, of milliseconds since 1970 UTC. The three switches of the suite's form stand for
    /// date and time with seconds; all values give it here.
    static std::wstring TimeToString(double time, int date, int milliseconds, int seconds);
};

}  // namespace orv
