#pragma once

#include <string_view>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridMath.h"
#include "geoid/GridReader.h"
#include "geoid/KilometreGrid.h"

namespace orv {

/// Geoid of Great Britain and Ireland, named by the project in the folder "United Kingdom" of the system's geoid
/// models: either the comma-separated 1 km grid, which takes easting and northing (docs/formats/kilometre-grid.md), or,
/// with the extension "gri", a text grid that takes latitude and longitude (docs/formats/gri.md).
class ORV_EXPORT GeoidModel_OSGM : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return info.fileName; }

    const GridFileInfo& Info() const { return info; }
    const KilometreGrid<1>& Grid() const { return kilometres; }

private:
    int ReadGrid(std::string_view text);
    int Grid_interpolation(double longitude, double latitude, double& result) const;

    std::wstring relativeName;
    GridFileInfo info;
    KilometreGrid<1> kilometres;
    bool isGrid = false;
    GeoFrame frame;
    std::vector<float> values;  ///< metres, rows from the north
};

}  // namespace orv
