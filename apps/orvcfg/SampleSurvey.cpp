#include "SampleSurvey.h"

#include <cmath>
#include <numbers>
#include <span>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/crypto/Crc8.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/LogHeader.h"
#include "surveydata/LogNaming.h"
#include "surveydata/TideStation.h"

namespace orv::cfg {

namespace {

constexpr double kHour = 3'600'000;                // ms
constexpr double kStart = 1'709'510'400'000;       // 2024-03-04 00:00 UTC
constexpr std::int64_t kLogStart = 1'709'630'100;  // 2024-03-05 09:15 UTC
constexpr double kInterval = kHour / 6;
constexpr int kValues = 7 * 24 * 6 + 1;  // of a week

/// Metres above the datum: what a gauge of a harbour on the North Sea could show. Period in hours, amplitude, phase.
double MadeUpTide(double hours) {
    constexpr double waves[][3] = {{12.4206, 0.79, 1.1}, {12.0, 0.19, 2.6}, {6.2103, 0.17, 0.4}, {25.8193, 0.11, 3.0}};
    double tide = 0.07;
    for (const auto& [period, amplitude, phase] : waves) {
        tide += amplitude * std::cos(2 * std::numbers::pi * hours / period - phase);
    }
    return std::round(tide * 1000) / 1000;
}

bool PutTide() {
    std::wstring path = L"Maasmond";
    TideStation station;
    // A file of no length is a station that hasn't been saved yet.
    if (!DataSearch::GetDataSearch().GetFullPathForWriting(kFileTypeTideStation, path) ||
        SaveWholeFile(path, {}) != FsResult::Ok || !station.FileOpen(path)) {
        return false;
    }
    station.SetStationName(L"Maasmond (made up)");
    station.SetStationID(L"MSM");
    station.SetStationPos({64'770, 444'000, 0});
    station.SetInterpolAttribs(true, kHour);
    for (int i = 0; i < kValues; ++i) {
        const double at = i * kInterval;
        if (!station.AddTideValue(kStart + at, MadeUpTide(at / kHour))) return false;
    }
    return station.FileSave();
}

void AppendRecord(std::string& log, std::uint16_t type, std::string_view payload) {
    for (const std::size_t number : {static_cast<std::size_t>(type), payload.size()}) {
        log += static_cast<char>(number & 0xFF);
        log += static_cast<char>(number >> 8 & 0xFF);
    }
    log.append(payload);
    log += static_cast<char>(Compute8BitCRC(std::as_bytes(std::span(payload))));
}

bool PutLog(const LogFields& fields) {
    std::string header = "[HEADER]\r\n";
    const auto add = [&](std::wstring_view key, const std::wstring& value) {
        header += ToUtf8(key) + "=" + ToUtf8(value) + "\r\n";
    };
    add(TEXT_ENCODING, L"UTF-8");
    add(VESSELNAME, fields.vessel);
    add(SURVEYTYPE, fields.surveyType);
    add(RUNLINENAME, fields.runline);
    add(ACQUIS_LOGSTARTTIME, LogTimeText(fields.logTime));
    std::string log;
    AppendRecord(log, 1, "sample");
    AppendRecord(log, kLogHeaderRecord, header);
    std::wstring path = ComposeLogName(fields, {});
    return DataSearch::GetDataSearch().GetFullPathForWriting(kFileTypeORV2000Raw, path) &&
           MakeFolders(GetFolderFromPath(path)) == FsResult::Ok && SaveWholeFile(path, log) == FsResult::Ok;
}

}  // namespace

bool PutSampleSurvey(std::wstring_view vessel, std::wstring_view surveyType) {
    return PutTide() && PutLog({std::wstring(vessel), std::wstring(surveyType), L"L001", kLogStart, 0, 0});
}

}  // namespace orv::cfg
