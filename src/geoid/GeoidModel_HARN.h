#pragma once

#include <string>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/TileCache.h"
#include "geoid/VdatumGrids.h"

namespace orv {

/// Geographic shift between the realisations of the datum of the United States, from the grids that two indexes of the
/// vertical datum tree list: one for longitudes, one for latitudes. Grids are read when they are first needed.
/// `CalculateLocalEllipsCorrection` from any thread.
class ORV_EXPORT GeoidModel_HARN : public GeoidModel {
public:
    /// Tells the user when an index is missing, and answers true all the same; false without a data folder.
    bool Init(OrvGeoCoordSysBase* coordSys) override;
    /// Reads the two indexes below `folder` (ends in a separator), which the model then uses.
    bool CheckGeoidModelFiles(const std::wstring& folder, std::wstring& message, bool withDropHint) override;
    /// Shifted minus given position, in degrees, in either direction: `direct` isn't looked at.
    bool CalculateLocalEllipsCorrection(double latitude, double longitude, double& dLatitude, double& dLongitude,
                                        bool direct) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return indexFile; }

private:
    void Sweep();

    std::wstring indexFile;
    // Guarded by the mutex while positions are asked for; index for index.
    std::vector<VdatumGrid> longitudes, latitudes;
    double lastSweep = 0.0;
    OwnMutex mutex;
};

}  // namespace orv
