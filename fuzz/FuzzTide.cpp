// Any bytes as a file of tide values and as a station file.

#include <cmath>
#include <cstring>
#include <span>

#include "Fuzz.h"
#include "surveydata/TideFile.h"
#include "surveydata/TideStationFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    orv::TideFile file;
    file.Parse(bytes);
    REQUIRE(static_cast<std::size_t>(file.GetNumValues()) <= size / orv::TideFile::kRecordSize);
    double time = 0, value = 0, before = -INFINITY, exact = 0;
    for (bool more = file.GetFirstTideValue(time, value); more; more = file.GetNextTideValue(time, value)) {
        REQUIRE(time > before);
        before = time;
        REQUIRE(file.GetTideValue(time, exact));
    }
    if (size >= sizeof time) std::memcpy(&time, data, sizeof time);
    const bool added = file.AddTideValue(time, 1);
    REQUIRE(!added || file.DeleteTideValue(time));

    orv::TideStationData station, again;
    if (orv::ParseTideStation(bytes, station) != orv::TideStationRead::Complete) return 0;
    const std::string saved = orv::TideStationBytes(station);
    REQUIRE(orv::ParseTideStation(std::as_bytes(std::span(saved)), again) == orv::TideStationRead::Complete);
    REQUIRE(again.name == station.name && again.id == station.id);
    orv::TideSpan span;
    const std::wstring title = orv::TideFileTitle(station.name, station.x);
    if (!title.empty()) REQUIRE(orv::ParseTideFileTitle(title, span) && span.start < span.end);
    return 0;
}
