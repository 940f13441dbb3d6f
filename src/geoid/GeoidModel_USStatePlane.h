#pragma once

#include <memory>
#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/TidalBoundary.h"
#include "geoid/TileCache.h"
#include "geoid/VdatumGrids.h"

namespace orv {

/// Geoid heights of the United States from the vertical datum tree below the folder of the common project files; where
/// a tidal area covers the position, brought to local mean sea level and to the chart datum. The file name is the key
/// of a geoid ("geoid03", "GEOID06", "none"), the chart datum that of a tidal grid ("LMSL", "MLLW", "none"). Grids are
/// read when they are first needed. `Calculate` from any thread.
class ORV_EXPORT GeoidModel_USStatePlane : public GeoidModel {
public:
    bool Init(OrvGeoCoordSysBase* coordSys) override;
    using GeoidModel::Calculate;
    /// Appends to `text` which grids took part and what each gave.
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void SetGeoidChartDatum(std::wstring chartDatum) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return indexFile; }

    const std::vector<VdatumGrid>& GeoidGrids() const { return geoids; }

private:
    struct Tidal {
        int area = -1;
        bool hasLmsl = false, hasChart = false;
        double lmsl = 0.0, chart = 0.0;
    };

    int PickGeoidGrid(double latitude, double longitude) const;
    int FindArea(double latitude, double longitude, double now, std::vector<std::wstring>& missing);
    Tidal LookUpTides(double latitude, double longitude, double now, std::vector<std::wstring>& missing);
    void Sweep(double now);
    /// `missing` takes the files that the user has to be told of, once the lock is free again.
    bool CalculateLocked(double latitude, double longitude, double& value, std::wstring& text,
                         std::vector<std::wstring>& missing);
    void Alert(const std::wstring& path) const;

    std::wstring indexFile;
    // Guarded by the mutex while `Calculate` runs; grids themselves are shared by copies and never change.
    std::vector<VdatumGrid> geoids;
    std::vector<VdatumGrid> areas;
    std::vector<VdatumGrid> charts;         ///< index for index with the areas; none for LMSL
    std::vector<TidalBoundary> boundaries;  ///< index for index with the areas
    double lastSweep = 0.0, lastSearch = 0.0;
    int lastArea = -1;
    OwnMutex mutex;
};

}  // namespace orv
