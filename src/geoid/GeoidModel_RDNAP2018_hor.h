#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridReader.h"

namespace orv {

/// One grid of a shift file. Arc seconds, longitudes positive west; row 0 is the southernmost, column 0 the
/// easternmost.
struct NtvTwoSubgrid {
    /// Latitude shift and longitude shift; the accuracies that follow in the file serve nobody here.
    using Record = std::array<float, 2>;

    std::int16_t columns = 0, rows = 0;
    double E_LONG = 0.0, W_LONG = 0.0, S_LAT = 0.0, N_LAT = 0.0;
    double LONG_INC = 0.0, LAT_INC = 0.0;
    double columnsPerSecond = 0.0, rowsPerSecond = 0.0;
    std::int32_t GS_COUNT = 0;
    std::vector<Record> records;
    bool complete = false;  ///< no shift of a record is NaN

    /// From SUB_NAME to the last record. kGeoidBadHeader for an interval of 0.
    int Read(GridReader& in);
    /// Shifts at a position more than one cell within the edges; outputs are left alone on failure.
    ORV_EXPORT int Interpolate(double latitudeSeconds, double westSeconds, double& latitudeShift,
                               double& longitudeShift) const;
};

/// Geographic shift between the Dutch national system and ETRS89 of 2018: an NTv2 file of two grids (docs/formats/
/// ntv2.md), named by the project, in the folder "Netherlands" of the system's geoid models. The second grid of the
/// file is the one that counts, the first is asked where the second has no value.
class ORV_EXPORT GeoidModel_RDNAP2018_hor : public GeoidModel {
public:
    bool SetFileName(std::wstring name) override;
    /// Given minus shifted position, in degrees. `direct` reads the shift at the position itself; otherwise the
    /// position is a shifted one, and the shift that leads to it is found by iteration.
    bool CalculateLocalEllipsCorrection(double latitude, double longitude, double& dLatitude, double& dLongitude,
                                        bool direct) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return info.fileName; }

    const GridFileInfo& Info() const { return info; }
    const std::array<NtvTwoSubgrid, 2>& Subgrids() const { return subgrids; }

private:
    int ReadFile(std::span<const std::byte> bytes);

    GridFileInfo info;
    std::array<NtvTwoSubgrid, 2> subgrids;
};

}  // namespace orv
