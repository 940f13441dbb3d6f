#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "geoid/GridReader.h"
#include "platform/Export.h"

namespace orv {

/// A grid in the GTX form (docs/formats/gtx.md). Degrees; row 0 is the southernmost, column 0 the westernmost. Never
/// changes once read: any thread may interpolate.
struct GtxGrid {
    double longitudeStep = 0.0, latitudeStep = 0.0;
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;
    std::int32_t columns = 0, rows = 0;
    std::vector<float> values;
};

/// Puts the content of a file in the place of `grid`. kGeoidNoData when it holds no node.
ORV_EXPORT int ReadGtx(std::span<const std::byte> bytes, GtxGrid& grid);
/// The same from a path, with status and error in `info`.
int ReadGtx(std::wstring path, GridFileInfo& info, GtxGrid& grid);
int ReadGtx(int location, std::wstring_view relative, GridFileInfo& info, GtxGrid& grid);

/// All four edges belong to the grid; false outside, for NaN, and where a short file lacks a node. No number stands for
/// no data here.
ORV_EXPORT bool BilinearGtx(const GtxGrid& grid, double latitude, double longitude, double& value);

}  // namespace orv
