#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "geoid/GridMath.h"
#include "geoid/TileCache.h"
#include "platform/Export.h"
#include "platform/os/FileSystem.h"
#include "platform/values/Angles.h"

/// The self-describing geoid grid file and the pieces of it that are held in memory. See docs/formats/ggf.md.
namespace orv {

inline constexpr std::size_t kGgfHeaderBytes = 146;

// Header bits. The order of rows has two of them: one tells the reader how rows lie in the file, the other tells the
// interpolation whether row 0 of a tile is the north. Writers set them as they please; both are taken at their word.
inline constexpr std::uint8_t kGgfWraps = 0x01, kGgfScaled = 0x02, kGgfHasNoData = 0x04;  // flags
inline constexpr std::uint8_t kGgfProjected = 0x20, kGgfByColumns = 0x40;                 // flags
inline constexpr std::uint8_t kGgfFileFromSouth = 0x01, kGgfTileFromNorth = 0x02;         // rowOrder
inline constexpr std::uint8_t kGgfFromWest = 0x01;                                        // columnOrder

/// What a model or a tile needs of a file's header. In a tile bounds and counts are the tile's own.
struct GgfHeader {
    double minimumLatitude = 0.0, maximumLatitude = 0.0, minimumLongitude = 0.0, maximumLongitude = 0.0;
    double latitudeStep = 0.0, longitudeStep = 0.0;
    std::int32_t rows = 0, columns = 0;
    double noData = 0.0, scale = 0.0;
    std::uint8_t flags = 0, unit = 0, interpolation = 0, dataType = 0, rowOrder = 0, columnOrder = 0;

    ORV_EXPORT void Read(std::span<const std::byte> bytes);
    bool Wraps() const { return flags & kGgfWraps; }
    ORV_EXPORT std::size_t NodeSize() const;  ///< bytes; 0 for a data type that doesn't exist
    /// Of the NodeSize() bytes of a node in the file; NaN for no data.
    ORV_EXPORT double NodeValue(std::span<const std::byte> node) const;
};

struct GgfTile : TileUse {
    std::wstring error;
    GgfHeader header;
    double columnsPerUnit = 0.0, rowsPerUnit = 0.0;
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;  ///< what it answers for, see SetReach
    bool answersAll = false;
    bool complete = false;       ///< row by row, all values are there and none is NaN
    std::vector<double> values;  ///< NaN is no data

    /// False for no data and for a place that the tile doesn't have.
    bool GetTileValue(std::int64_t column, std::int64_t row, double& value) const {
        if (column < 0 || column >= header.columns) {
            if (!header.Wraps()) return false;
            column %= header.columns;
            if (column < 0) column += header.columns;
        }
        if (row < 0 || row >= header.rows) return false;
        const std::int64_t index = header.flags & kGgfByColumns ? std::int64_t{header.rows} * column + row
                                                                : std::int64_t{header.columns} * row + column;
        if (static_cast<std::size_t>(index) >= values.size() || std::isnan(values[static_cast<std::size_t>(index)])) {
            return false;
        }
        value = values[static_cast<std::size_t>(index)];
        return true;
    }
    /// True if the `Side` rows of as many values from a place on are all there, have data and lie row by row.
    template <std::int64_t Side>
    bool HasPlain(std::int64_t column, std::int64_t row) const {
        return complete && column >= 0 && row >= 0 && column + Side <= header.columns && row + Side <= header.rows;
    }
    /// The value at a place of such a block, and those of the row behind it.
    const double* At(std::int64_t column, std::int64_t row) const {
        return values.data() + row * header.columns + column;
    }
    /// Any `Side` rows of as many values; false if one isn't there or has no data. Apart, so that the plain way stays
    /// short.
    template <std::size_t Side>
    [[gnu::noinline]] bool TakeBlock(std::int64_t column, std::int64_t row,
                                     std::array<double, Side * Side>& out) const {
        const auto any = [](double) { return kGeoidOk; };
        const auto side = static_cast<std::int64_t>(Side);
        const bool inOneRun = !(header.flags & kGgfByColumns) && column >= 0 && row >= 0 &&
                              column + side <= header.columns && row + side <= header.rows;
        if (inOneRun) {
            const NodeBlock<Side> block{row * header.columns + column, header.columns};
            return TakeNodes(values, 0, block, any, out) == kGeoidOk;
        }
        for (std::size_t n = 0; n < out.size(); ++n) {
            const auto further = static_cast<std::int64_t>(n % Side), down = static_cast<std::int64_t>(n / Side);
            if (!GetTileValue(column + further, row + down, out[n])) return false;
        }
        return true;
    }
    /// True if the tile can answer for the position; `longitude` may have been turned by 360 degrees then.
    bool InBounds(double& longitude, double latitude) const {
        if (answersAll) return true;
        double x = longitude;
        if (west > x) x = TrimAngle(x + 360.0);
        if (west > x || x > east || south > latitude || latitude > north) return false;
        longitude = x;
        return true;
    }
    /// To be called once the header stands.
    void SetReach();
    /// Fills the values from an open file with header `whole`; false for a data type that doesn't exist and for bounds
    /// that no nodes belong to. Nodes behind the end of the file read as zeros.
    bool Read(File& file, const GgfHeader& whole);
};

}  // namespace orv
