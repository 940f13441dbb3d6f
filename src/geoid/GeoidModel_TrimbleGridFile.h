#pragma once

#include <atomic>
#include <string>

#include "geoid/GeoidModel.h"
#include "geoid/GgfTile.h"
#include "geoid/TileCache.h"

namespace orv {

/// A geoid grid file that describes itself: type and unit of a node, order of rows and columns, wrap-around, no-data
/// value, scale and kind of interpolation (docs/formats/ggf.md). Named by the project in the folder of the common
/// project files, and read in tiles of at most 100 x 100 nodes around the positions asked for. `Calculate` from any
/// thread.
class ORV_EXPORT GeoidModel_TrimbleGridFile : public GeoidModel {
public:
    using Header = GgfHeader;
    using FileInfo = GgfTile;

    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return path; }

    const TileCache<FileInfo>& Tiles() const { return tiles; }
    const Header& FileHeader() const { return header; }
    /// Why the file, or the first tile that has no values, couldn't be read; empty without such.
    std::wstring ErrorText() const;

    /// A missing file is told once in a process, whichever object finds it missing.
    static std::atomic<bool> m_bNoFileReported;

private:
    TileCache<FileInfo>::Pointer MakeTile(double& x, double y) const;
    bool FromNewTile(double x, double y, double& value);
    bool HeightFrom(const FileInfo& tile, double x, double y, double& value) const;
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
