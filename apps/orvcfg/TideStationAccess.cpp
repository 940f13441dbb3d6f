#include "TideStationAccess.h"

#include "Session.h"
#include "SurveyFiles.h"
#include "TimeText.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

namespace {

/// The value that a search of the station finds, if any.
struct Neighbour {
    Neighbour(TideStation& station, int mode, double at) : time(at), found(station.GetTideValue(mode, time, value)) {}
    double time, value = 0;
    bool found;
};

/// "3 min after the last value, 2021-...".
std::string FromEnd(double time, const Neighbour& end, bool after) {
    return DurationText(std::fabs(time - end.time)) +
           (after ? " after the last value, " : " before the first value, ") + UtcText(end.time);
}

/// Why there is no value beyond the ends of the series.
std::string WhyNotHeld(TideStation& station, double time, const Neighbour& end, bool after) {
    bool holds = false;
    double span = 0;
    station.GetExtrapolationAttribs(holds, span);
    if (time == end.time) {
        return holds ? "it is the first value, with none before it to interpolate from"
                     : "it is an end of the series, and end values aren't held";
    }
    if (!holds) return FromEnd(time, end, after) + ", and end values aren't held";
    return FromEnd(time, end, after) + ", and held is " + DurationText(span);
}

}  // namespace

bool OpenStation(Session& session, const std::string& argument, TideStation& station, bool create) {
    if (!OpenProjectFolder(session)) return false;
    const std::wstring path = SurveyFilePath(kFileTypeTideStation, argument);
    const std::string name = PathToBytes(path);
    const bool there = FileExists(path);
    if (!there && !create) {
        session.Problem(name, "No such station", "\"orvcfg files TideStation\" lists those of the project.");
        return false;
    }
    // A file of no length is a station that hasn't been saved yet.
    if (!there && SaveWholeFile(path, {}) != FsResult::Ok) {
        session.Problem(name, "The station can't be made", "Check that its folder is there and may be written to.");
        return false;
    }
    if (!station.FileOpen(path)) {
        session.Problem(name, "The station can't be read", "Check who may read it, and that no program is writing it.");
        return false;
    }
    if (!there) station.SetStationName(GetTitleFromPath(path));
    session.Detail("station " + name);
    return true;
}

bool ReadRange(Session& session, const std::string& from, const std::string& to, TideRange& range) {
    TimeReader reader;
    reader.SetZone("UTC");
    const auto read = [&](const char* option, const std::string& text, double& time) {
        const char* const wrong = text.empty() ? nullptr : reader.Read(text, time);
        if (wrong) session.Problem({}, std::string(option) + " \"" + text + "\": " + wrong);
        return !wrong;
    };
    return read("--from", from, range.from) && read("--to", to, range.to);
}

bool IsGap(const TideStation& station, double from, double to) {
    bool limited = false;
    double longest = 0;
    station.GetInterpolAttribs(limited, longest);
    return limited && to - from > longest;
}

const char* TideRuleName(TideAnswer::Rule rule) {
    constexpr const char* names[] = {"exact", "interpolated", "held", "refused"};
    return names[rule];
}

TideAnswer AnswerOf(TideStation& station, double time) {
    TideAnswer answer;
    double at = time, value = 0;
    const bool found = station.InterpolateTide(at, value);
    if (found) answer.value = value;
    const Neighbour before(station, TideStation::kLastBefore, time);
    const Neighbour after(station, TideStation::kFirstAfterOrEqual, time);
    if (!before.found && !after.found) {
        answer.detail = "the station has no values";
        return answer;
    }
    if (found && after.found && after.time == time) {
        answer.rule = TideAnswer::Exact;
        return answer;
    }
    if (before.found && after.found) {
        const std::string around = UtcText(before.time) + " and " + UtcText(after.time);
        const std::string length = DurationText(after.time - before.time);
        answer.rule = found ? TideAnswer::Interpolated : TideAnswer::Refused;
        answer.detail = found ? "between " + around : "it lies in a gap of " + length + " between " + around;
        if (found) return answer;
        bool limited = false;
        double longest = 0;
        station.GetInterpolAttribs(limited, longest);
        answer.detail += ", and bridged is " + DurationText(longest);
        return answer;
    }
    const bool isAfter = before.found;
    const Neighbour& end = isAfter ? before : after;
    answer.rule = found ? TideAnswer::Held : TideAnswer::Refused;
    answer.detail = found ? FromEnd(time, end, isAfter) : WhyNotHeld(station, time, end, isAfter);
    return answer;
}

}  // namespace orv::cfg
