#pragma once

#include <string_view>

#include "geoid/BoundedGrid.h"
#include "geoid/GeoidModel.h"

namespace orv {

/// Geoid of Belgium with the correction of the Lambert 72 grid: two text files of fixed names in the folder "belgium"
/// of the system's geoid models (docs/formats/belgium.md), read by the constructor. The files have no header: their
/// size is known here.
class ORV_EXPORT GeoidModel_hBG03 : public GeoidModel {
public:
    using FileInfo = BoundedGrid;

    GeoidModel_hBG03();
    /// Correction of grid coordinates; the last argument changes nothing.
    bool Calculate(double x, double y, double& dx, double& dy, bool inverse) override;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return heightGrid.fileName; }

    const FileInfo& HeightGrid() const { return heightGrid; }
    const FileInfo& XGrid() const { return xGrid; }

    /// One float a line, `width` characters at most from character `column` (from 0) on.
    static std::vector<float> ReadBody(std::string_view text, std::size_t column, std::size_t width);

private:
    static int Grid_interpolation(const FileInfo& grid, double x, double y, double& result);

    FileInfo heightGrid, xGrid, yGrid;
};

}  // namespace orv
