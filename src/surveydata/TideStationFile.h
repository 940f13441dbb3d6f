#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// The file of a tide gauge, without its values, and the names of its value files. Bytes and texts only: knows no path.
/// See docs/formats/tide.md. Any thread may call.
namespace orv {

inline constexpr double kTideLimit = 300000.0;  ///< milliseconds: what limits start from

struct TideStationData {
    std::wstring name = L"Tide Station";
    double x = 0, y = 0;
    double offset = 0;  ///< is added to every value
    std::wstring id = L"Station 1";
    double maximumGap = kTideLimit;   ///< milliseconds between two values that may be bridged
    double maximumSpan = kTideLimit;  ///< milliseconds for which an end value is held
    bool extrapolate = true;
    bool limitGaps = true;  ///< false: any gap is bridged
};

enum class TideStationRead {
    Empty,    ///< not even four bytes: a station that hasn't been saved yet; nothing is read
    NoName,   ///< it ends before its name does; what stands in front of it is read
    Complete  ///< read, what is missing behind the name as it was
};
ORV_EXPORT TideStationRead ParseTideStation(std::span<const std::byte> bytes, TideStationData& station);
ORV_EXPORT std::string TideStationBytes(const TideStationData& station);

/// A month: milliseconds since 1970 UTC, the end not in it.
struct TideSpan {
    double start = 0, end = 0;
    bool Holds(double time) const { return time >= start && time < end; }
};
/// The month told by the title of a value file: behind the last underscore four characters of the year, 1970 to 3000,
/// and the month, 1 to 12. False otherwise.
ORV_EXPORT bool ParseTideFileTitle(std::wstring_view title, TideSpan& span);
/// Title of the value file that a time falls in: station title, underscore, year, month without a leading zero; all in
/// lower case. Empty for a time whose month can't be told by a title.
ORV_EXPORT std::wstring TideFileTitle(std::wstring_view stationTitle, double time);

}  // namespace orv
