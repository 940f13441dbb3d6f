#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// Outline of a tidal area: polygons of (longitude, latitude), longitudes -180 to 180.
struct TidalBoundary {
    struct Point {
        double longitude, latitude;
    };
    using Polygon = std::vector<Point>;

    std::wstring fileName;
    double lastUse = 0.0;
    std::vector<Polygon> polygons;

    /// True for a position in any of the polygons.
    ORV_EXPORT bool Holds(double longitude, double latitude) const;
};

/// The polygons of a boundary file: lines of longitude, latitude, a number, ring; up to the first line that isn't one.
ORV_EXPORT std::vector<TidalBoundary::Polygon> ReadBoundary(std::string_view text);

}  // namespace orv
