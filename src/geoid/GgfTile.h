#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "geoid/TileCache.h"
#include "platform/Export.h"
#include "platform/os/FileSystem.h"

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
};

struct GgfTile : TileUse {
    std::wstring error;
    GgfHeader header;
    std::vector<std::byte> nodes;  ///< as they stand in the file; zeros where the file was too short

    /// False for no data and for a place that the tile doesn't have.
    ORV_EXPORT bool GetTileValue(std::int64_t column, std::int64_t row, double& value) const;
    /// True if the tile can answer for the position; `longitude` may have been turned by 360 degrees then.
    bool InBounds(double& longitude, double latitude) const;
    /// Fills the nodes from an open file with header `whole`; false for a data type that doesn't exist and for bounds
    /// that no nodes belong to. A file that ends early leaves zeros.
    bool Read(File& file, const GgfHeader& whole);
};

}  // namespace orv
