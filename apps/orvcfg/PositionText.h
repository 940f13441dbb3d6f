#pragma once

#include <string>
#include <string_view>

namespace orv::cfg {

enum class Angle { Latitude, Longitude };

/// Reads decimal degrees, or degrees with minutes and seconds as in 52d09'15.1"N, 52°09'N or W3d30; a letter N, S, E or
/// W may stand in front or behind. Null and `degrees` is set, or why the text is no such angle.
const char* ReadAngle(std::string_view text, Angle kind, double& degrees);

enum class PlaceOrder { LatLon, LonLat, Grid };
/// The two figures of a position: `y` and `x` are latitude and longitude, or for Grid (easting first, in metres)
/// northing and easting. Null, or why the words are no position.
const char* ReadPlace(std::string_view first, std::string_view second, PlaceOrder order, double& y, double& x);

/// Degrees for people. `flags` as a project has them: 4 shows seconds, 2 minutes; `decimals` are those of the last.
std::string AngleText(double degrees, Angle kind, unsigned flags, int decimals);

/// `value` with so many decimals behind `text`; never by the locale.
void AppendFixed(std::string& text, double value, int decimals);

/// Takes the next word off the front of `line`; empty at its end. Words stand apart by blanks and tabs.
std::string_view NextWord(std::string_view& line);

}  // namespace orv::cfg
