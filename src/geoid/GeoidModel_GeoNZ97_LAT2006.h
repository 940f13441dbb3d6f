#pragma once

#include "geoid/GeoidModel.h"
#include "geoid/GravsoftGrid.h"
#include "geoid/NodeTable.h"

namespace orv {

/// The North Sea geoid brought from mean sea level to lowest astronomical tide by a reduction grid: "LAT2006.01" in the
/// folder "Noordzee reductionmatrix" of the system's geoid models, read by the constructor.
class ORV_EXPORT GeoidModel_GeoNZ97_LAT2006 : public GeoidModel {
public:
    GeoidModel_GeoNZ97_LAT2006();
    using GeoidModel::Calculate;
    /// Appends the reduction to `text`. The geoid's part stays in metres in every project; the reduction is in project
    /// units. Where only the reduction is missing, `value` holds the geoid's part and the result is false.
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return grid.info.fileName; }

    const GridFileInfo& Info() const { return grid.info; }

private:
    SharedNodeTable table;
    GravsoftGrid grid;
};

}  // namespace orv
