// A tide value: the station "Quay" of the project, asked at a moment.
#include <platform/os/Clock.h>
#include <surveydata/TideStation.h>

#include "Start.h"

int main(int argc, char** argv) {
    if (!Start(argc, argv)) return 1;

    // quote: tide
    std::wstring path = L"Quay";
    orv::DataSearch::GetDataSearch().GetFullPath(orv::kFileTypeTideStation, path);
    orv::TideStation station;  // any thread may ask it
    if (!station.FileOpen(path)) {
        std::printf("%s can't be read\n", orv::ToUtf8(path).c_str());
        return 1;
    }
    const orv::CalendarTime utc{.year = 2024, .month = 3, .day = 1, .hour = 7, .minute = 22};
    double time = orv::CExTime::ConvertCTime(orv::CalendarToUtc(utc)), tide = 0;
    if (station.InterpolateTide(time, tide)) {
        std::printf("%s: %+.3f m\n", orv::ToUtf8(station.GetStationName()).c_str(), tide);
    } else {
        std::puts("a gap, or too far beyond the last value");
    }
    // quote end
    return station.FileClose(false);
}
