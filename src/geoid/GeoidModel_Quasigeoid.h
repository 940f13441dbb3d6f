#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridReader.h"

namespace orv {

/// A quasi-geoid of heights in whole millimetres (docs/formats/quasigeoid.md). Degrees; rows from the north.
struct QuasigeoidGrid {
    std::int16_t columns = 0, rows = 0;
    double minimumLongitude = 0.0, maximumLongitude = 0.0, minimumLatitude = 0.0, maximumLatitude = 0.0;
    double longitudeStep = 0.0, latitudeStep = 0.0;
    std::vector<std::int32_t> values;

    /// kGeoidBadHeader for a step of 0, kGeoidNoData without a node.
    ORV_EXPORT int ReadFile(std::span<const std::byte> bytes);
    /// Positions from one step within the edges, which count as inside.
    ORV_EXPORT int Grid_interpolation_bilinear(double longitude, double latitude, double& value) const;
    /// Positions more than two steps within the edges.
    ORV_EXPORT int Grid_interpolation_bicubic(double longitude, double latitude, double& value) const;
};

/// The European quasi-geoid EGG97 and the German one, GCG, are one model under two names: a file named by the project
/// in the folder of the common project files.
template <int KeyIndex>
class GeoidModel_Quasigeoid : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return info.fileName; }

    const GridFileInfo& Info() const { return info; }

private:
    GridFileInfo info;
    QuasigeoidGrid grid;

public:
    unsigned interpolationMethod = 0;  ///< 0 bilinear, 1 bicubic, any other none; nothing here changes it
};

extern template class ORV_EXPORT GeoidModel_Quasigeoid<16>;
extern template class ORV_EXPORT GeoidModel_Quasigeoid<20>;
using GeoidModel_QuasigeoidEGG97 = GeoidModel_Quasigeoid<16>;
using GeoidModel_Quasigeoid_GCG = GeoidModel_Quasigeoid<20>;

}  // namespace orv
