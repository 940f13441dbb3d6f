#pragma once

#include <cstdint>
#include <string>

#include "platform/Export.h"

/// Values as views show them, never through the locale. What isn't finite, or too large for its form, shows as a plain
/// number. Any thread may call.
namespace orv {

inline constexpr int kMostDecimals = 15;  ///< more is noise of the double; decimals are clipped to 0..15

/// How a value in feet is shown. Without inch and fractions it is a plain number.
enum FeetFlags : unsigned { kFeet = 1, kFeetInch = 2, kFeetFractions = 4 };
/// Which parts a geographic position shows. Degrees are always shown, and minutes where seconds are.
enum GeogsFlags : unsigned { kGeogsDegrees = 1, kGeogsMinutes = 2, kGeogsSeconds = 4 };
enum GeogsKind : int { kLatitude = 10, kLongitude = 11 };

/// `flags`: 0, or FeetFlags for a value in feet. 12.5 shows as 12'6.00" with feet and inch, as 150.00" with inch, as
/// 12'6" with fractions (sixteenths of an inch, reduced), and as 12 1/2' with fractions but no inch.
ORV_EXPORT std::wstring FormatDouble(double value, int decimals, unsigned flags);
/// Degrees as 52°22'30.00"N; `decimals` are those of the last part, at most 9 here.
ORV_EXPORT std::wstring FormatGeogs(double degrees, int kind, unsigned flags, int decimals);
ORV_EXPORT std::wstring FormatInt(std::int64_t value);
/// Decimals of the shortest text that reads back as the value.
ORV_EXPORT int GetDoublePrecision(double value);

}  // namespace orv
