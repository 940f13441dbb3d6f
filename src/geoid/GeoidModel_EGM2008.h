#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/TileCache.h"

namespace orv {

/// The global geoid EGM2008 at one minute, read from the publisher's file in tiles of 100 x 100 nodes around the
/// positions asked for (docs/formats/egm2008.md). The file has a fixed name in the folder of the common project files;
/// the constructor looks for it and tells the user once if it is missing. `Calculate` from any thread.
class ORV_EXPORT GeoidModel_EGM2008 : public GeoidModel {
public:
    /// One tile: degrees, rows from the north, metres. The values are those that the file had.
    struct FileInfo : TileUse {
        std::wstring error;
        std::int16_t columns = 0, rows = 0;
        double minimumLongitude = 0.0, maximumLongitude = 0.0, minimumLatitude = 0.0, maximumLatitude = 0.0;
        double longitudeStep = 0.0, latitudeStep = 0.0;
        double stepsPerDegree = 0.0;
        bool complete = false;  ///< all values are there and none marks no data
        std::vector<float> values;
    };

    GeoidModel_EGM2008();
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return path; }

    const TileCache<FileInfo>& Tiles() const { return tiles; }

    unsigned interpolationMethod = 0;  ///< 0 bilinear, 1 bicubic, any other none; nothing here changes it
    /// A missing file is told once in a process, whichever object finds it missing.
    static std::atomic<bool> m_bNoFileReported;

private:
    const FileInfo& NewTile(double longitude, double latitude);
    bool HeightFrom(const FileInfo& tile, double longitude, double latitude, double& value) const;
    int ReadFile(FileInfo& tile) const;
    static int Grid_interpolation_bilinear(const FileInfo& tile, double longitude, double latitude, double& value);
    static int Grid_interpolation_bicubic(const FileInfo& tile, double longitude, double latitude, double& value);

    TileCache<FileInfo> tiles;
    std::wstring path;
    bool hasFolder = false;
};

}  // namespace orv
