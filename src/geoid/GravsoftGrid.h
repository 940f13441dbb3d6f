#pragma once

#include <span>
#include <vector>

#include "geoid/GridMath.h"
#include "geoid/GridReader.h"

namespace orv {

/// A binary grid of the GRAVSOFT family (docs/formats/gravsoft.md). The models that read it differ in four points.
struct GravsoftGrid {
    struct Rules {
        bool checksMarker;  ///< the file must begin with 777
        double added;       ///< to extent / step before it is cut to a number of nodes
        bool northFirst;    ///< row 0 is the northernmost; else the southernmost
        bool zeroIsNoData;  ///< beside 9999.0
    };

    GridFileInfo info;
    GeoFrame frame;
    std::vector<float> values;

    /// Binds the grid to a file of the system's geoid models and reads it.
    void Read(std::wstring_view relative, const Rules& rules);
    /// From bytes. kGeoidNoData without the marker or without a node, kGeoidBadHeader for a step of 0.
    ORV_EXPORT int ReadFile(std::span<const std::byte> bytes, const Rules& rules);
    /// Positions more than one cell within the edges.
    ORV_EXPORT int Grid_interpolation(double longitude, double latitude, const Rules& rules, double& result) const;
};

}  // namespace orv
