#pragma once

#include <string_view>

#include "geoid/GeoidModel.h"
#include "geoid/GravsoftGrid.h"

namespace orv {

/// Geoid of Sweden: a grid named by the project, without its extension ".grd", in the folder "Sweden" of the system's
/// geoid models. An empty name means "Swen01l".
class ORV_EXPORT GeoidModel_Sweden : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return grid.info.fileName; }

    const GridFileInfo& Info() const { return grid.info; }

protected:
    bool Load(std::wstring_view folder, std::wstring_view extension);

private:
    GravsoftGrid grid;
};

/// Geoid of Norway: the same with the extension ".bin" in the folder "Norway", and no name for an empty one.
class ORV_EXPORT GeoidModel_Norway : public GeoidModel_Sweden {
public:
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
};

}  // namespace orv
