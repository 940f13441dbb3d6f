#include "geoid/GtxGrid.h"

#include <cmath>
#include <limits>

#include "geoid/GridMath.h"

namespace orv {

namespace {

// The form doesn't tell the width of its nodes: the file's length does. The header counts as content, so a file of
// fewer than ten floats looks like one of doubles.
bool HoldsDoubles(std::uint64_t length, std::int64_t nodes) {
    const auto count = static_cast<std::uint64_t>(nodes);
    return count <= std::numeric_limits<std::uint64_t>::max() / sizeof(double) && length > count * sizeof(double);
}

void ReadDoubles(GridReader& in, std::int64_t nodes, std::vector<float>& values) {
    const std::uint64_t count = in.NodesLeft(nodes, sizeof(double));
    values.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) values.push_back(static_cast<float>(in.Read<double>()));
}

int Finish(GridFileInfo& info, const std::string& bytes, GtxGrid& grid) {
    info.status = ReadGtx(AsBytes(bytes), grid);
    return info.status == kGeoidOk ? info.status : info.status = info.NoDataInFile();
}

}  // namespace

int ReadGtx(std::span<const std::byte> bytes, GtxGrid& grid) {
    grid = {};
    GridReader in(bytes, std::endian::big);
    grid.south = in.Read<double>();
    grid.west = in.Read<double>();
    grid.latitudeStep = in.Read<double>();
    grid.longitudeStep = in.Read<double>();
    grid.columnsPerDegree = 1.0 / grid.longitudeStep;
    grid.rowsPerDegree = 1.0 / grid.latitudeStep;
    grid.rows = in.Read<std::int32_t>();
    grid.columns = in.Read<std::int32_t>();
    grid.north = (grid.rows - 1.0) * grid.latitudeStep + grid.south;
    grid.east = (grid.columns - 1.0) * grid.longitudeStep + grid.west;

    const std::int64_t nodes = NodeCount(grid.rows, grid.columns);
    if (HoldsDoubles(in.Length(), nodes)) {
        ReadDoubles(in, nodes, grid.values);
    } else {
        in.ReadRun(static_cast<std::uint64_t>(nodes), grid.values);
    }
    return grid.values.empty() ? kGeoidNoData : kGeoidOk;
}

int ReadGtx(std::wstring path, GridFileInfo& info, GtxGrid& grid) {
    std::string bytes;
    grid = {};
    return ReadGridFile(std::move(path), info, bytes) ? Finish(info, bytes, grid) : info.status;
}

int ReadGtx(int location, std::wstring_view relative, GridFileInfo& info, GtxGrid& grid) {
    std::string bytes;
    grid = {};
    return ReadGridFile(location, relative, info, bytes) ? Finish(info, bytes, grid) : info.status;
}

bool BilinearGtxAtEdge(const GtxGrid& grid, double latitude, double longitude, double& value) {
    GridCell cell;
    if (!PickGtx(grid, latitude, longitude, cell)) return false;
    const double u = cell.u, v = cell.v;
    const auto k = static_cast<std::size_t>(std::int64_t{grid.columns} * cell.j + cell.i);
    const auto columns = static_cast<std::size_t>(grid.columns);
    const auto& node = grid.values;
    const bool lastColumn = cell.i >= grid.columns - 1;

    // Right below the north edge the cell counts as having no upper row, so the last 0.0001 degree takes the row under
    // it as it stands. Users know the heights that come of it.
    double height = 0.0;
    if (grid.north - latitude < 0.0001) {
        if (k + (lastColumn ? 0 : 1) >= node.size()) return false;
        const double q0 = node[k], q1 = node[lastColumn ? k : k + 1];
        height = q0 * (1 - u) / (1 - u + u) + q1 * u / (1 - u + u);
    } else {  // on the east edge the nodes further east have no weight, and there are none
        if (!lastColumn || k + columns >= node.size()) return false;
        height = node[k] * (1 - v) + node[k + columns] * v;
    }
    if (!std::isfinite(height)) return false;
    value = height;
    return true;
}

}  // namespace orv
