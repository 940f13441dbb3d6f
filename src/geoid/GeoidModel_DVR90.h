#pragma once

#include "geoid/GeoidModel.h"
#include "geoid/GravsoftGrid.h"

namespace orv {

/// Geoid of Denmark: a grid named by the project in the folder "Denmark" of the system's geoid models. For an empty
/// name "Dvr90g2002.01" is read, and the name stays empty.
class ORV_EXPORT GeoidModel_DVR90 : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return grid.info.fileName; }

    const GridFileInfo& Info() const { return grid.info; }

private:
    GravsoftGrid grid;
};

}  // namespace orv
