#pragma once

#include <cmath>
#include <limits>
#include <string>

#include "surveydata/TideStation.h"

namespace orv::cfg {

class Session;

/// Opens a station of the chosen project by its path or its name; `create` makes it if it isn't there. False after a
/// problem has been told.
bool OpenStation(Session& session, const std::string& argument, TideStation& station, bool create = false);

/// A stretch of time in milliseconds since 1970 UTC, both ends in it. What isn't given is open.
struct TideRange {
    double from = -std::numeric_limits<double>::infinity(), to = std::numeric_limits<double>::infinity();
};
/// Reads the ends of a range, which tell their zone themselves or are UTC. False after a problem has been told.
bool ReadRange(Session& session, const std::string& from, const std::string& to, TideRange& range);

/// Calls `use(time, value)` for every value of the range, in order. The offset is added.
template <class Use>
void ForEachValue(TideStation& station, const TideRange& range, Use use) {
    double time = range.from, value = 0;
    const int first = std::isinf(range.from) ? TideStation::kFirst : TideStation::kFirstAfterOrEqual;
    for (bool more = station.GetTideValue(first, time, value); more && time <= range.to;
         more = station.GetTideValue(TideStation::kNext, time, value)) {
        use(time, value);
    }
}

/// What a station answers at a time, and by which rule.
struct TideAnswer {
    enum Rule { Exact, Interpolated, Held, Refused } rule = Refused;
    double value = 0;    ///< with the offset; nothing when refused
    std::string detail;  ///< what it was made of, or why there is none
};
const char* TideRuleName(TideAnswer::Rule rule);
TideAnswer AnswerOf(TideStation& station, double time);

/// Whether two neighbours lie too far apart for the station to bridge.
bool IsGap(const TideStation& station, double from, double to);

}  // namespace orv::cfg
