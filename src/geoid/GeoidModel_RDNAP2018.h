#pragma once

#include "geoid/GeoidModel.h"
#include "geoid/GtxGrid.h"

namespace orv {

/// Quasi-geoid of the Netherlands of 2018: a GTX grid named by the project, in the folder "Netherlands" of the system's
/// geoid models.
class ORV_EXPORT GeoidModel_RDNAP2018 : public GeoidModel {
public:
    using GeoidModel::Calculate;
    /// `value` becomes 0 where the grid has none.
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return info.fileName; }

    const GridFileInfo& Info() const { return info; }

private:
    GridFileInfo info;
    GtxGrid grid;
};

}  // namespace orv
