#pragma once

#include <span>

#include "geoid/BoundedGrid.h"
#include "geoid/GeoidModel.h"

namespace orv {

/// Geoid of the Netherlands of 2004 with the correction of the national grid: three files of fixed names in the folder
/// "netherlands" of the system's geoid models (docs/formats/dsbb.md), read by the constructor. A file that is missing
/// fails only what needs it.
class ORV_EXPORT GeoidModel_RDNAP : public GeoidModel {
public:
    using FileInfo = BoundedGrid;

    GeoidModel_RDNAP();
    /// Correction of grid coordinates; the last argument changes nothing.
    bool Calculate(double x, double y, double& dx, double& dy, bool inverse) override;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return geoidGrid.fileName; }

    const FileInfo& GeoidGrid() const { return geoidGrid; }
    const FileInfo& XGrid() const { return xGrid; }
    const FileInfo& YGrid() const { return yGrid; }

    /// Both work on the bytes of a file and tell errors by the name in `info`.
    static int ReadHeaher(std::span<const std::byte> bytes, FileInfo& info);
    static int ReadBody(std::span<const std::byte> bytes, FileInfo& info);

protected:
    static int Grid_interpolation(const FileInfo& grid, double x, double y, double& result);

private:
    FileInfo geoidGrid, xGrid, yGrid;
};

/// The same files for the heights of 2008: 0.0088 m lower.
class ORV_EXPORT GeoidModel_RDNAP2008 : public GeoidModel_RDNAP {
public:
    using GeoidModel_RDNAP::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
};

}  // namespace orv
