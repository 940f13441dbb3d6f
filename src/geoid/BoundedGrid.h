#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridMath.h"

namespace orv {

/// A grid with the bounds of its heights, in degrees or in projected metres. Row 0 is the southernmost, column 0 the
/// westernmost. Header and body are read apart, and each keeps what became of it.
struct BoundedGrid {
    std::wstring fileName;  ///< with its folder
    int headerStatus = kGeoidBadHeader, bodyStatus = kGeoidNoData;
    std::wstring error;
    std::int16_t nx = 0, ny = 0;
    double xlo = 0.0, xhi = 0.0, ylo = 0.0, yhi = 0.0;
    double zlo = 0.0, zhi = 0.0;  ///< a node outside these is no data
    std::vector<float> values;
    bool opened = false;

    bool Usable() const { return headerStatus == kGeoidOk && bodyStatus == kGeoidOk; }
    GeoidReason Reason() const {
        if (!opened) return GeoidReason::NoFile;
        return headerStatus != kGeoidOk ? GeoidReason::BadHeader : GeoidReason::NoData;
    }

    /// The cell of a position more than one cell within the edges, and the index of its south-west node. The sum inside
    /// the index is cut after it is formed, so a fraction just below 1 that a large sum rounds up takes the next node.
    [[nodiscard]] bool Pick(double x, double y, GridCell& cell, std::int64_t& k) const {
        const double dx = (xhi - xlo) / (nx - 1), dy = (yhi - ylo) / (ny - 1);
        if (!(xlo + dx < x && x < xhi - dx && ylo + dy < y && y < yhi - dy)) return false;
        const double fx = (x - xlo) / dx, fy = (y - ylo) / dy;
        cell.u = fx - std::floor(fx);
        cell.v = fy - std::floor(fy);
        return TruncToInt(nx * std::floor(fy) + fx, k);
    }
    int TestNode(double node) const { return node <= zhi + 0.0001 && node >= zlo - 0.0001 ? kGeoidOk : kGeoidNoData; }
};

}  // namespace orv
