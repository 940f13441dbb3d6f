#include <cmath>
#include <deque>
#include <map>

#include "../HouseReports.h"
#include "../ProfileSurvey.h"
#include "../TideStationAccess.h"
#include "../TimeText.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/FileSet.h"
#include "surveydata/LogHeader.h"
#include "surveydata/SvpFile.h"

namespace orv::cfg {

namespace {

/// A log that is being started has no header yet.
constexpr std::int64_t kStillBeingMade = 60;  // s

bool IsBeingMade(const std::wstring& path) {
    FileStatus status;
    return Files().Status(path, status) == FsResult::Ok && CurrentTime() - status.modified < kStillBeingMade;
}

/// The stations of a project that have values.
class Stations {
public:
    explicit Stations(Examination& examination) {
        for (const std::wstring& path : examination.FilesOf(kFileTypeTideStation)) {
            if (!stations.emplace_back().FileOpen(path) || stations.back().GetNumValues() == 0) stations.pop_back();
        }
    }
    bool Empty() const { return stations.empty(); }
    bool Covers(double time) {
        for (TideStation& station : stations) {
            double at = time, value = 0;
            if (station.InterpolateTide(at, value)) return true;
        }
        return false;
    }

private:
    std::deque<TideStation> stations;
};

void LookAtStation(Examination& examination, const std::wstring& path) {
    const std::string name = PathToBytes(path);
    TideStation station;
    if (!station.FileOpen(path)) {
        return examination.Tell(name, "The station can't be read", "Check the rights to it, or bring it back.");
    }
    std::size_t gaps = 0;
    double previous = NAN, longest = 0, from = 0;
    ForEachValue(station, {}, [&](double time, double) {
        if (!std::isnan(previous) && IsGap(station, previous, time)) {
            ++gaps;
            if (time - previous > longest) {
                longest = time - previous;
                from = previous;
            }
        }
        previous = time;
    });
    if (std::isnan(previous)) {
        examination.Tell(name, "The station has no values", "\"orvcfg tide import\" adds them.");
    } else if (gaps > 0) {
        const std::string span = UtcText(from) + " to " + UtcText(from + longest);
        examination.Tell(name,
                         gaps == 1 ? "A gap of " + DurationText(longest) + " isn't bridged: " + span
                                   : std::to_string(gaps) + " gaps aren't bridged, the longest of " +
                                         DurationText(longest) + ": " + span,
                         "\"orvcfg tide import\" adds what was measured; \"orvcfg tide gaps\" lists all.");
    }
}

}  // namespace

void LookAtLogs(Examination& examination) {
    for (const std::wstring& path : examination.FilesOf(kFileTypeORV2000Raw)) {
        LogHeader header;
        if (ReadLogHeader(path, header) || IsBeingMade(path)) continue;
        FileStatus status;
        const bool empty = Files().Status(path, status) == FsResult::Ok && status.size == 0;
        examination.Tell(PathToBytes(path), empty ? "The log is empty" : "The log has no header that can be read",
                         "Bring it back from the computer that made it, or from a copy.");
    }
}

void LookAtFileSets(Examination& examination) {
    for (const std::wstring& path : examination.FilesOf(kFileTypeFileSet)) {
        FileSet set;
        if (!set.FileOpen(path)) {
            examination.Tell(PathToBytes(path), "The file set can't be read", "Bring it back, or make it anew.");
            continue;
        }
        int missing = 0;
        std::wstring first;
        for (int i = 0; i < set.NumFiles(); ++i) {
            std::wstring log;
            set.GetFileNameAt(i, log);
            if (FileExists(log) || ++missing > 1) continue;
            first = std::move(log);
        }
        if (missing == 0) continue;
        examination.Tell(PathToBytes(path),
                         std::to_string(missing) + " of " + std::to_string(set.NumFiles()) +
                             " logs aren't there; the first is " + PathToBytes(first),
                         "Bring the logs back, or take them out with \"orvcfg fileset\".");
    }
}

void LookAtTide(Examination& examination) {
    for (const std::wstring& path : examination.FilesOf(kFileTypeTideStation)) LookAtStation(examination, path);
}

void LookAtTideOfLogs(Examination& examination) {
    Stations stations(examination);
    if (stations.Empty()) return;  // heights come from satellites, or tide from elsewhere
    std::size_t without = 0, logs = 0;
    std::wstring first;
    for (const std::wstring& path : examination.FilesOf(kFileTypeORV2000Raw)) {
        LogHeader header;
        if (!ReadLogHeader(path, header) || header.logTime == 0) continue;
        ++logs;
        if (stations.Covers(static_cast<double>(header.logTime) * 1000) || ++without > 1) continue;
        first = path;
    }
    if (without == 0) return;
    examination.Tell(
        PathToBytes(first),
        "No station has tide when the log starts" +
            (without > 1 ? "; so it is with " + std::to_string(without) + " of " + std::to_string(logs) + " logs"
                         : std::string()),
        "\"orvcfg tide import\" adds values; \"orvcfg tide eval\" tells what a station answers.");
}

void LookAtProfiles(Examination& examination) {
    for (const std::wstring& path : examination.FilesOf(kFileTypeSVProfile)) {
        FileObject file;
        const std::string name = PathToBytes(path);
        if (!file.FileOpen(path, kOpenRead)) {
            examination.Tell(name, "The profile can't be read: " + ToUtf8(FsResultText(file.LastResult())),
                             "Check the rights to it, or bring it back from a copy.");
            continue;
        }
        SvpFile profile;
        profile.FileOpen(file);
        const std::vector<ProfileFinding> found = CheckProfile(file, profile);
        if (found.empty()) continue;
        examination.Tell(name,
                         found.front().Text() + (found.size() > 1 ? ", and " + std::to_string(found.size() - 1) +
                                                                        " more; see \"orvcfg svp check\""
                                                                  : std::string()),
                         found.front().remedy);
    }
}

}  // namespace orv::cfg
