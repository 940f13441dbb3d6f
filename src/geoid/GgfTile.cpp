#include "geoid/GgfTile.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "geoid/GridMath.h"
#include "geoid/GridReader.h"
#include "platform/values/Angles.h"

namespace orv {

namespace {

double UnitFactorOf(std::uint8_t unit) {
    switch (unit) {
        case 1:
            return 0.001;
        case 2:
            return 0.01;
        case 8:
            return 0.024500050833;  // the files' own idea of it, far from an inch
        case 16:
            return 0.30480061;
        case 32:
            return 0.0254;
        case 64:
            return 0.3048;
        default:
            return 1.0;
    }
}

/// Cells that an interpolation needs on every side; none for the codes that no tile is tested by.
int Margin(std::uint8_t interpolation) {
    switch (interpolation) {
        case 1:
        case 2:
            return 1;
        case 4:
        case 8:
        case 16:
            return 2;
        default:
            return 0;
    }
}

// The nodes of a file that make up a tile: first and last column and row, and the last of the file.
struct Window {
    std::int32_t c0 = 0, c1 = 0, lastColumn = 0;
    std::int32_t r0 = 0, r1 = 0, lastRow = 0;

    [[nodiscard]] bool Place(const GgfHeader& file, const GgfHeader& tile) {
        const auto column = [&](double longitude, std::int32_t& index) {
            return FloorIndex((longitude - file.minimumLongitude) / file.longitudeStep + 0.5, index);
        };
        const auto row = [&](double latitude, std::int32_t& index) {
            return FloorIndex((latitude - file.minimumLatitude) / file.latitudeStep + 0.5, index);
        };
        return column(tile.minimumLongitude, c0) && column(tile.maximumLongitude, c1) &&
               column(file.maximumLongitude, lastColumn) && row(tile.minimumLatitude, r0) &&
               row(tile.maximumLatitude, r1) && row(file.maximumLatitude, lastRow);
    }
};

// Copies runs of nodes from the file into a tile; false when the file, or the tile, is at its end.
class RunReader {
public:
    RunReader(File& source, std::size_t size, std::vector<std::byte>& target)
        : file(source), nodeSize(size), nodes(target) {}
    bool ReadFromFile(std::int64_t fileNode, std::int64_t tileNode, std::int64_t count) {
        const auto size = static_cast<std::int64_t>(nodeSize);
        const auto held = static_cast<std::int64_t>(nodes.size()) / size;
        if (fileNode < 0 || tileNode < 0 || count < 0 || count > held - tileNode) return false;
        const auto run =
            std::span(nodes).subspan(static_cast<std::size_t>(tileNode * size), static_cast<std::size_t>(count * size));
        return ReadAt(file, static_cast<std::uint64_t>(fileNode * size) + kGgfHeaderBytes, run) == run.size();
    }

private:
    File& file;
    std::size_t nodeSize;
    std::vector<std::byte>& nodes;
};

void ReadRows(RunReader& in, const GgfHeader& file, const GgfHeader& tile, const Window& at) {
    const std::int64_t fileColumns = file.columns, tileColumns = tile.columns;
    // A tile across the seam takes its rows in two parts. The parts meet where the field's files were made to fit:
    // lengths and, going up, the row of the second part are those that the tiles have always been built with.
    const bool split = tile.Wraps() && (at.c0 < 0 || at.c1 > at.lastColumn);
    std::int64_t lengthA = tileColumns;
    if (split) lengthA = at.c0 < 0 ? tileColumns + at.c0 : fileColumns - at.c0;
    lengthA = std::clamp<std::int64_t>(lengthA, 0, tileColumns);
    const std::int64_t lengthB = tileColumns - lengthA;
    std::int64_t start = tile.columnOrder & kGgfFromWest ? at.c0 : std::int64_t{at.lastColumn} - at.c1;
    if (split && start < 0) start += fileColumns;

    const std::int64_t rows = std::int64_t{at.r1} - at.r0 + 1;
    for (std::int64_t n = 0; n < rows; ++n) {
        const bool up = tile.rowOrder & kGgfFileFromSouth;
        const std::int64_t p = up ? at.r0 + n : at.r1 - n;
        const std::int64_t mirrored = at.lastRow - p;
        const std::int64_t row = up ? p : mirrored;
        if (!in.ReadFromFile(start + fileColumns * row, n * tileColumns, lengthA)) return;
        if (lengthB > 0 && !in.ReadFromFile(fileColumns * mirrored, n * tileColumns + lengthA, lengthB)) return;
    }
}

void ReadColumns(RunReader& in, const GgfHeader& file, const GgfHeader& tile, const Window& at) {
    const bool fromWest = tile.columnOrder & kGgfFromWest;
    const std::int64_t columns = std::int64_t{at.c1} - at.c0 + 1;
    for (std::int64_t n = 0; n < columns; ++n) {
        const std::int64_t column = fromWest ? at.c0 + n : at.lastColumn - (at.c1 - n);
        const std::int64_t first = fromWest ? at.r0 : std::int64_t{at.lastRow} - at.r1;
        if (!in.ReadFromFile(first + column * file.rows, n * tile.rows, tile.rows)) return;
    }
}

}  // namespace

void GgfHeader::Read(std::span<const std::byte> bytes) {
    GridReader in(bytes);
    in.Skip(48);  // version and texts
    minimumLatitude = in.Read<double>();
    maximumLatitude = in.Read<double>();
    minimumLongitude = in.Read<double>();
    maximumLongitude = in.Read<double>();
    latitudeStep = in.Read<double>();
    longitudeStep = in.Read<double>();
    rows = in.Read<std::int32_t>();
    columns = in.Read<std::int32_t>();
    in.Skip(16);
    noData = in.Read<double>();
    scale = in.Read<double>();
    in.Skip(2);
    flags = in.Read<std::uint8_t>();
    unit = in.Read<std::uint8_t>();
    interpolation = in.Read<std::uint8_t>();
    dataType = in.Read<std::uint8_t>();
    rowOrder = in.Read<std::uint8_t>();
    columnOrder = in.Read<std::uint8_t>();
    // A grid around the globe wraps, whatever its flags say.
    if (TrimAngle(minimumLongitude) == TrimAngle(maximumLongitude)) flags |= kGgfWraps;
}

std::size_t GgfHeader::NodeSize() const {
    switch (dataType) {
        case 1:
            return 1;
        case 2:
            return 2;
        case 4:
        case 8:
            return 4;
        case 16:
        case 32:
            return 8;
        default:
            return 0;
    }
}

double GgfHeader::NodeValue(std::span<const std::byte> bytes) const {
    GridReader in(bytes);
    double node = 0.0;
    switch (dataType) {
        case 1:
            node = in.Read<std::int8_t>();
            break;
        case 2:
            node = in.Read<std::int16_t>();
            break;
        case 4:
            node = in.Read<std::int32_t>();
            break;
        case 8:
            node = in.Read<float>();
            break;
        default:
            node = in.Read<double>();
    }
    constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
    if (std::isnan(node) || (flags & kGgfHasNoData && std::fabs(node - noData) < 0.0001)) return nothing;
    const double value = node * UnitFactorOf(unit);
    return flags & kGgfScaled ? value * scale : value;
}

void GgfTile::SetReach() {
    const int margin = Margin(header.interpolation);
    answersAll = margin == 0;  // so the first tile answers for the whole grid
    const double aside = margin * header.longitudeStep, down = margin * header.latitudeStep;
    west = header.minimumLongitude + aside;
    east = header.maximumLongitude - aside;
    south = header.minimumLatitude + down;
    north = header.maximumLatitude - down;
    columnsPerUnit = 1.0 / header.longitudeStep;
    rowsPerUnit = 1.0 / header.latitudeStep;
}

bool GgfTile::Read(File& file, const GgfHeader& whole) {
    const std::size_t size = header.NodeSize();
    Window at;
    if (size == 0 || !at.Place(whole, header)) return false;
    std::vector<std::byte> nodes(static_cast<std::size_t>(NodeCount(header.rows, header.columns)) * size);
    RunReader in(file, size, nodes);
    if (header.flags & kGgfByColumns) {
        ReadColumns(in, whole, header, at);
    } else {
        ReadRows(in, whole, header, at);
    }
    values.reserve(nodes.size() / size);
    for (std::span<const std::byte> rest = nodes; !rest.empty(); rest = rest.subspan(size)) {
        values.push_back(header.NodeValue(rest.first(size)));
    }
    complete = !(header.flags & kGgfByColumns) && !values.empty() &&
               values.size() == static_cast<std::size_t>(NodeCount(header.rows, header.columns)) &&
               std::none_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
    return true;
}

}  // namespace orv
