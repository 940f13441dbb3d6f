#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "geoid/GeoidModel.h"
#include "platform/values/TruncToInt.h"

/// Places and interpolations that more than one model uses. A model that differs in one bit has its own.
namespace orv {

/// Rounds down to an index; false for NaN and for what no index can be.
[[nodiscard]] inline bool FloorIndex(double value, std::int32_t& index) {
    std::int32_t whole = 0;
    if (!TruncToInt(value, whole)) return false;
    if (value < whole) {  // the cut went up
        if (whole == std::numeric_limits<std::int32_t>::min()) return false;
        --whole;
    }
    index = whole;
    return true;
}

/// FloorIndex(distance / step) and what is left over of the cell, with `inverse` = 1 / step. The product tells both
/// unless it comes to lie next to a whole number, and is there long before the quotient would be: below 2^31 it is less
/// than 1e-6 away from it. On a whole number nothing is left.
[[nodiscard, gnu::always_inline]] inline bool SplitQuotient(double distance, double step, double inverse,
                                                            std::int32_t& index, double& rest) {
    const double guess = distance * inverse;
    if (std::fabs(guess) < 2147483648.0) [[likely]] {
        const auto whole = static_cast<std::int32_t>(guess);
        rest = guess - whole;
        if (std::fabs(rest - 0.5) < 0.5 - 1e-6) [[likely]] {  // a negative guess leaves no rest between 0 and 1
            index = whole;
            return true;
        }
    }
    const double quotient = distance / step;
    if (!FloorIndex(quotient, index)) return false;
    rest = quotient - index;
    return true;
}

/// FloorIndex(distance / step) alone.
[[nodiscard, gnu::always_inline]] inline bool FloorQuotient(double distance, double step, double inverse,
                                                            std::int32_t& index) {
    double unused = 0.0;
    return SplitQuotient(distance, step, inverse, index, unused);
}

template <class Node>
bool IsNumber(const Node& node) {
    if constexpr (std::is_floating_point_v<Node>) return !std::isnan(node);
    return true;
}

/// How models read nodes, but for those of a GTX and of a kilometre grid, whose edges are their own: those `at` the
/// given indices, in that order. An index below `lowest` or past the end is kGeoidOutside; a node that isn't a number
/// is kGeoidNoData; else `test(node)` tells the code.
template <class Node, std::size_t N, class Test>
int TakeNodes(const std::vector<Node>& nodes, std::int64_t lowest, const std::array<std::int64_t, N>& at, Test test,
              std::array<Node, N>& out) {
    for (std::size_t i = 0; i < N; ++i) {
        if (at[i] < lowest || static_cast<std::uint64_t>(at[i]) >= nodes.size()) return kGeoidOutside;
        const Node node = nodes[static_cast<std::size_t>(at[i])];
        if (!IsNumber(node)) return kGeoidNoData;
        if (const int code = test(node); code != kGeoidOk) return code;
        out[i] = node;
    }
    return kGeoidOk;
}

/// `Side` rows of as many neighbours, `stride` apart.
template <std::size_t Side>
struct NodeBlock {
    std::int64_t first = 0, stride = 0;
};

/// The test of nodes that are all known to be numbers and to have data: only whether they are there is asked.
struct AllHaveData {
    template <class Node>
    int operator()(const Node&) const {
        return kGeoidOk;
    }
};

/// A block node by node: the first that fails tells the code.
template <class Node, std::size_t Side, class Test>
[[gnu::noinline]] int TakeNodesInTurn(const std::vector<Node>& nodes, std::int64_t lowest, NodeBlock<Side> block,
                                      Test test, std::array<Node, Side * Side>& out) {
    std::array<std::int64_t, Side * Side> at{};
    for (std::size_t n = 0; n < at.size(); ++n) {
        at[n] = block.first + static_cast<std::int64_t>(n / Side) * block.stride + static_cast<std::int64_t>(n % Side);
    }
    return TakeNodes(nodes, lowest, at, test, out);
}

/// The same for a block, row by row. Nearly always all are there and have data, which takes no branch a node to find
/// out; and what is taken stays in registers.
template <class Node, std::size_t Side, class Test>
[[gnu::always_inline]] inline int TakeNodes(const std::vector<Node>& nodes, std::int64_t lowest,
                                            const NodeBlock<Side>& block, Test test,
                                            std::array<Node, Side * Side>& out) {
    constexpr auto side = static_cast<std::int64_t>(Side);
    const std::int64_t lastRow = block.first + (side - 1) * block.stride;
    if (std::min(block.first, lastRow) >= std::max<std::int64_t>(lowest, 0) &&
        std::max(block.first, lastRow) + side <= static_cast<std::int64_t>(nodes.size())) {
        bool fine = true;
        for (std::size_t row = 0; row < Side; ++row) {
            const Node* from = nodes.data() + block.first + static_cast<std::int64_t>(row) * block.stride;
            for (std::size_t column = 0; column < Side; ++column) {
                const Node node = from[column];
                out[row * Side + column] = node;
                if constexpr (!std::is_same_v<Test, AllHaveData>) {
                    fine &= IsNumber(node);
                    fine &= test(node) == kGeoidOk;
                }
            }
        }
        if (fine) return kGeoidOk;
    }
    std::array<Node, Side * Side> taken{};
    const int code = TakeNodesInTurn(nodes, lowest, block, test, taken);
    if (code == kGeoidOk) out = taken;
    return code;
}

/// Test of the grids that mark no data by exactly this value.
inline int Is9999(double node) {
    return node == 9999.0 ? kGeoidNoData : kGeoidOk;
}

/// A cell and the place in it: column from the west or the east, row from the south or the north, as the grid counts.
struct GridCell {
    std::int32_t i = 0, j = 0;
    double u = 0.0, v = 0.0;  ///< 0 to 1 across the cell

    std::int64_t Column(std::size_t further) const { return i + static_cast<std::int64_t>(further); }
    std::int64_t Row(std::size_t further) const { return j + static_cast<std::int64_t>(further); }
};

/// A regular grid in degrees.
struct GeoFrame {
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;
    double longitudeStep = 0.0, latitudeStep = 0.0;
    std::int16_t columns = 0, rows = 0;

    /// Works out columns and rows from bounds and steps. Formats differ in what they add before they cut: with 1.0 a
    /// grid whose extent divides just below a whole number has a row or column less than its publisher meant.
    [[nodiscard]] bool CountNodes(double added) {
        return TruncToInt((east - west) / longitudeStep + added, columns) &&
               TruncToInt((north - south) / latitudeStep + added, rows);
    }
    /// More than one cell away from every edge.
    bool HoldsInner(double longitude, double latitude) const {
        return west + longitudeStep < longitude && longitude < east - longitudeStep &&
               south + latitudeStep < latitude && latitude < north - latitudeStep;
    }
    /// Counts from the south-west corner.
    [[nodiscard]] bool Pick(double longitude, double latitude, GridCell& cell) const {
        if (!FloorIndex((longitude - west) / longitudeStep, cell.i)) return false;
        if (!FloorIndex((latitude - south) / latitudeStep, cell.j)) return false;
        cell.u = (longitude - cell.i * longitudeStep - west) / longitudeStep;
        cell.v = (latitude - cell.j * latitudeStep - south) / latitudeStep;
        return true;
    }
    /// Corners of a cell, the southern pair first, in files whose first row is the northernmost or southernmost.
    NodeBlock<2> CornersNorthFirst(const GridCell& cell) const {
        return {(std::int64_t{rows} - cell.j - 1) * columns + cell.i, -std::int64_t{columns}};
    }
    NodeBlock<2> CornersSouthFirst(const GridCell& cell) const {
        return {std::int64_t{cell.j} * columns + cell.i, columns};
    }
};

// Bilinear reads. q[0] and q[1] are the row where v is 0, each pair ordered by u.

template <class Node>
double Bilinear(const std::array<Node, 4>& q, double u, double v) {
    const double first = (double{q[1]} - double{q[0]}) * u + q[0];
    const double second = (double{q[3]} - double{q[2]}) * u + q[2];
    return (second - first) * v + first;
}

/// The differences along a row are rounded to single precision.
inline double BilinearSingleDifferences(const std::array<float, 4>& q, double u, double v) {
    const float along0 = q[1] - q[0], along1 = q[3] - q[2];
    const double first = along0 * u + q[0];
    const double second = along1 * u + q[2];
    return (second - first) * v + first;
}

/// Single precision throughout.
inline float BilinearSingle(const std::array<float, 4>& q, float u, float v) {
    const float first = (q[1] - q[0]) * u + q[0];
    const float second = (q[3] - q[2]) * u + q[2];
    return (second - first) * v + first;
}

// The cubic kernel over 4 x 4 nodes.

using CubicWeights = std::array<double, 4>;

inline CubicWeights KernelWeights(double x) {
    const double x2 = x * x, x3 = x2 * x;
    return {x2 - x / 2 - x3 / 2, 1 - 2.5 * x2 + 1.5 * x3, 2 * x2 + x / 2 - 1.5 * x3, x3 / 2 - x2 / 2};
}

/// Derivatives of the kernel's weights.
inline CubicWeights KernelSlopes(double x) {
    const double x2 = x * x;
    return {2 * x - 0.5 - 1.5 * x2, 4.5 * x2 - 5 * x, 4 * x + 0.5 - 4.5 * x2, 1.5 * x2 - x};
}

inline CubicWeights Reversed(const CubicWeights& w) {
    return {w[3], w[2], w[1], w[0]};
}

template <class Node>
double KernelSum(const std::array<Node, 16>& nodes, const CubicWeights& rows, const CubicWeights& columns) {
    CubicWeights down{};  // a column each, so that the four go on side by side
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) down[column] += rows[row] * nodes[row * 4 + column];
    }
    return (columns[0] * down[0] + columns[1] * down[1]) + (columns[2] * down[2] + columns[3] * down[3]);
}

/// Cubic through four values at -1, 0, 1 and 2, in single precision; its slopes are twice the usual ones.
inline float InterpolateCubic(float y0, float y1, float y2, float y3, float t) {
    const float a = y3 - y2 - y0 + y1;
    const float t2 = t * t, t3 = t2 * t;
    return (y0 - y1 - a) * t2 + a * t3 + (y2 - y0) * t + y1;
}

inline float BicubicSingle(const std::array<float, 16>& q, float t, float w) {
    std::array<float, 4> across{};
    for (std::size_t row = 0; row < 4; ++row) {
        const std::size_t n = row * 4;
        across[row] = InterpolateCubic(q[n], q[n + 1], q[n + 2], q[n + 3], t);
    }
    return InterpolateCubic(across[0], across[1], across[2], across[3], w);
}

/// Natural cubic spline through `n` values (2 to 6) at 1, 2, ... n. Outside 0 to n it goes on as a straight line.
ORV_EXPORT double SplineInterpolate(double x, const double* y, int n);

}  // namespace orv
