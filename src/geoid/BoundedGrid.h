#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
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
    double dx = 0.0, dy = 0.0;    ///< widths of a cell, see SetSteps
    double columnsPerUnit = 0.0, rowsPerUnit = 0.0;
    std::vector<float> values;
    bool opened = false;
    bool complete = false;  ///< known to have data at every node, see Examine

    bool Usable() const { return headerStatus == kGeoidOk && bodyStatus == kGeoidOk; }
    GeoidReason Reason() const {
        if (!opened) return GeoidReason::NoFile;
        return headerStatus != kGeoidOk ? GeoidReason::BadHeader : GeoidReason::NoData;
    }

    auto NodeTest() const {
        return [most = zhi + 0.0001, least = zlo - 0.0001](double node) {
            return node <= most && node >= least ? kGeoidOk : kGeoidNoData;
        };
    }
    /// To be called once everything is read: what is asked of all nodes now needn't be asked at each position.
    void Examine() {
        // The limits as the outermost floats within them, and no branch: so four nodes are looked at in one step.
        constexpr double largest = std::numeric_limits<float>::max();
        const double mostHeight = std::clamp(zhi + 0.0001, -largest, largest);
        const double leastHeight = std::clamp(zlo - 0.0001, -largest, largest);
        auto most = static_cast<float>(mostHeight), least = static_cast<float>(leastHeight);
        if (most > mostHeight) most = std::nextafter(most, -static_cast<float>(largest));
        if (least < leastHeight) least = std::nextafter(least, static_cast<float>(largest));
        std::uint32_t beyond = 0;
        for (const float node : values) {
            beyond |= node <= most ? 0u : 1u;
            beyond |= node >= least ? 0u : 1u;
        }
        complete = beyond == 0;
    }
    /// To be called once counts and bounds are known.
    void SetSteps() {
        dx = (xhi - xlo) / (nx - 1);
        dy = (yhi - ylo) / (ny - 1);
        columnsPerUnit = 1.0 / dx;
        rowsPerUnit = 1.0 / dy;
    }
    /// The cell of a position more than one cell within the edges, and the index of its south-west node. The sum inside
    /// the index is cut after it is formed, so a fraction just below 1 that a large sum rounds up takes the next node.
    [[nodiscard]] bool Pick(double x, double y, GridCell& cell, std::int64_t& k) const {
        if (!(xlo + dx < x && x < xhi - dx && ylo + dy < y && y < yhi - dy)) return false;
        if (!SplitQuotient(x - xlo, dx, columnsPerUnit, cell.i, cell.u) ||
            !SplitQuotient(y - ylo, dy, rowsPerUnit, cell.j, cell.v)) {
            return false;
        }
        k = std::int64_t{nx} * cell.j + cell.i;
        return cell.u < 1 - 1e-6 || TruncToInt(static_cast<double>(std::int64_t{nx} * cell.j) + (x - xlo) / dx, k);
    }
    template <std::size_t Side>
    int Take(const NodeBlock<Side>& block, std::array<float, Side * Side>& nodes) const {
        if (complete) return TakeNodes(values, 1, block, AllHaveData{}, nodes);
        return TakeNodes(values, 1, block, NodeTest(), nodes);
    }
};

}  // namespace orv
