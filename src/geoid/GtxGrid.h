#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "geoid/GridMath.h"
#include "geoid/GridReader.h"
#include "platform/Export.h"

namespace orv {

/// A grid in the GTX form (docs/formats/gtx.md). Degrees; row 0 is the southernmost, column 0 the westernmost. Never
/// changes once read: any thread may interpolate.
struct GtxGrid {
    double longitudeStep = 0.0, latitudeStep = 0.0;
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;
    double columnsPerDegree = 0.0, rowsPerDegree = 0.0;  ///< what the steps are one divided by
    std::int32_t columns = 0, rows = 0;
    std::vector<float> values;
};

/// Puts the content of a file in the place of `grid`. kGeoidNoData when it holds no node.
ORV_EXPORT int ReadGtx(std::span<const std::byte> bytes, GtxGrid& grid);
/// The same from a path, with status and error in `info`.
int ReadGtx(std::wstring path, GridFileInfo& info, GtxGrid& grid);
int ReadGtx(int location, std::wstring_view relative, GridFileInfo& info, GtxGrid& grid);

/// The cell of a position: column i, row j. All four edges belong to the grid; false outside and for NaN.
[[nodiscard, gnu::always_inline]] inline bool PickGtx(const GtxGrid& grid, double latitude, double longitude,
                                                      GridCell& cell) {
    const bool inside = latitude >= grid.south && latitude <= grid.north &&  //
                        longitude >= grid.west && longitude <= grid.east;
    return inside && SplitQuotient(longitude - grid.west, grid.longitudeStep, grid.columnsPerDegree, cell.i, cell.u) &&
           SplitQuotient(latitude - grid.south, grid.latitudeStep, grid.rowsPerDegree, cell.j, cell.v);
}

/// What BilinearGtx gives in the last 0.0001 degree in the north, in the last column and in cells that the end of a
/// short file cuts.
ORV_EXPORT bool BilinearGtxAtEdge(const GtxGrid& grid, double latitude, double longitude, double& value);

/// False outside, for NaN, and where a short file lacks a node. No number stands for no data here.
inline bool BilinearGtx(const GtxGrid& grid, double latitude, double longitude, double& value) {
    GridCell cell;
    if (!PickGtx(grid, latitude, longitude, cell)) return false;
    // The nodes of a cell lie in file order, so a test of the last one that counts is a test of all.
    const auto columns = static_cast<std::size_t>(grid.columns);
    const auto k = static_cast<std::size_t>(std::int64_t{grid.columns} * cell.j + cell.i);
    if (cell.i >= grid.columns - 1 || grid.north - latitude < 0.0001 || k + columns + 1 >= grid.values.size())
        [[unlikely]] {
        return BilinearGtxAtEdge(grid, latitude, longitude, value);
    }
    const float* const node = grid.values.data() + k;
    const double height = Bilinear(std::array{node[0], node[1], node[columns], node[columns + 1]}, cell.u, cell.v);
    if (!std::isfinite(height)) return false;
    value = height;
    return true;
}

}  // namespace orv
