#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/TileCache.h"
#include "platform/os/FileSystem.h"

namespace orv {

/// A geoid grid file that describes itself: type and unit of a node, order of rows and columns, wrap-around, no-data
/// value, scale and kind of interpolation (docs/formats/ggf.md). Named by the project in the folder of the common
/// project files, and read in tiles of at most 100 x 100 nodes around the positions asked for. `Calculate` from any
/// thread.
class ORV_EXPORT GeoidModel_TrimbleGridFile : public GeoidModel {
public:
    /// The header of the file that a model or a tile needs. In a tile bounds and counts are the tile's own.
    struct Header {
        double minimumLatitude = 0.0, maximumLatitude = 0.0, minimumLongitude = 0.0, maximumLongitude = 0.0;
        double latitudeStep = 0.0, longitudeStep = 0.0;
        std::int32_t rows = 0, columns = 0;
        double noData = 0.0, scale = 0.0;
        std::uint8_t flags = 0, unit = 0, interpolation = 0, dataType = 0, rowOrder = 0, columnOrder = 0;

        ORV_EXPORT void Read(std::span<const std::byte> bytes);
        bool Wraps() const { return flags & 0x01; }
        std::size_t NodeSize() const;  ///< bytes; 0 for a data type that doesn't exist
    };

    struct FileInfo : TileUse {
        std::wstring error;
        Header header;
        std::vector<std::byte> nodes;  ///< as they stand in the file; zeros where the file was too short

        /// False for no data and for a place that the tile doesn't have.
        bool GetTileValue(std::int32_t column, std::int32_t row, double& value) const;
        /// True if the tile can answer for the position; `longitude` may have been turned by 360 degrees then.
        bool InBounds(double& longitude, double latitude) const;
    };

    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return path; }

    const TileCache<FileInfo>& Tiles() const { return tiles; }
    const Header& FileHeader() const { return header; }
    const std::wstring& ErrorText() const { return error; }

    /// A missing file is told once in a process, whichever object finds it missing.
    static std::atomic<bool> m_bNoFileReported;

private:
    TileCache<FileInfo>::Pointer MakeTile(double& x, double y) const;
    int ReadFile(FileInfo& tile) const;
    static int Grid_interpolation_bilinear(const FileInfo& tile, double x, double y, double& value);
    static int Grid_interpolation_bicubic(const FileInfo& tile, double x, double y, double& value);

    TileCache<FileInfo> tiles;
    std::wstring path;
    std::wstring error;
    Header header;
    bool hasFolder = false;
};

}  // namespace orv
