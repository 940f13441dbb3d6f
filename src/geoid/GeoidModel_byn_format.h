#pragma once

#include <span>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridMath.h"
#include "geoid/GridReader.h"

namespace orv {

/// Any grid of the Canadian geodetic service in the .byn form (docs/formats/byn.md), named by the project in the folder
/// of the common project files. The south and west edges belong to the grid, the last row and column don't.
class ORV_EXPORT GeoidModel_byn_format : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return info.fileName; }

    const GridFileInfo& Info() const { return info; }

private:
    int ReadFile(std::span<const std::byte> bytes);
    int Grid_interpolation(double longitude, double latitude, double& result) const;

    GridFileInfo info;
    GeoFrame frame;
    std::int16_t nodeSize = 0;
    std::vector<float> values;  ///< metres, rows from the north
};

}  // namespace orv
