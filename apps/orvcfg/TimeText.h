#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Document.h"

namespace orv::cfg {

/// Seconds since 1970 UTC: local time for people, UTC in ISO form for programs.
Cell TimeCell(std::int64_t utcSeconds);
/// Local time as "2026-03-02", "2026-03-02 10:15" or "2026-03-02T10:15:07", with a Z behind it UTC, in seconds since
/// 1970 UTC. None for anything else.
std::optional<std::int64_t> ReadTime(std::string_view text);
/// What to tell about a text that `ReadTime` refuses.
inline constexpr std::string_view kTimeForms =
    "Give local time as \"2026-03-02 10:15\", the day alone, or UTC as 2026-03-02T10:15:00Z.";

/// Milliseconds since 1970 UTC as 2021-03-02T10:15:30.25Z, with as many places as it takes to read the same back. A
/// number that is no moment of the years 1 to 9999 is shown as it is.
std::string UtcText(double utcMilliseconds);
Cell UtcCell(double utcMilliseconds);
bool IsCivilTime(double utcMilliseconds);  ///< within the years 1 to 9999
/// A length of time: 250 ms, 6 min 40.5 s, 12 d 4 h.
std::string DurationText(double milliseconds);

/// Reads times, of which those without a zone mean nothing until it is told where their clock stood.
class TimeReader {
public:
    /// "UTC", "UTC+1", "UTC-3:30", "local" for this computer's zone, or a place such as "Europe/Amsterdam". Null, or
    /// why it is none of these. A place becomes the zone of the program.
    const char* SetZone(std::string_view words);
    /// 2021-03-02 10:15, with seconds, their decimals, and Z or +01:00 behind it as they come. Null and
    /// `utcMilliseconds` is set, or why not. Times of one clock come in order: of an hour that summer time repeats the
    /// second pass is meant once the first one has been read further than that.
    const char* Read(std::string_view text, double& utcMilliseconds);
    /// How many times could have been meant either way.
    std::size_t Ambiguous() const { return ambiguous; }

private:
    const char* FromLocal(std::int64_t asUtc, std::int64_t& utcSeconds);
    enum class Zone { None, Fixed, ByRules } zone = Zone::None;
    std::int64_t fixedOffset = 0;  // seconds east of UTC
    std::int64_t last = 0;         // seconds since 1970 UTC, of the time read last by the rules
    std::size_t ambiguous = 0;
};

}  // namespace orv::cfg
