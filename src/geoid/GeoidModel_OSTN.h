#pragma once

#include "geoid/GeoidModel.h"
#include "geoid/KilometreGrid.h"

namespace orv {

/// Shift between ETRS89 and national grid coordinates of Great Britain (docs/formats/kilometre-grid.md): a file named
/// by the project in the folder "United Kingdom" of the system's geoid models.
class ORV_EXPORT GeoidModel_OSTN : public GeoidModel {
public:
    using GeoidModel::Calculate;
    /// The shift to add to ETRS89 coordinates; `inverse`: the shift to take off national grid coordinates.
    bool Calculate(double x, double y, double& dx, double& dy, bool inverse) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return path; }

    const KilometreGrid<2>& Grid() const { return grid; }

private:
    bool InterpolateBack(double x, double y, std::array<double, 2>& shift) const;

    std::wstring relativeName, path;
    bool opened = false;
    KilometreGrid<2> grid;
};

}  // namespace orv
