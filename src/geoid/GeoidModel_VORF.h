#pragma once

#include <string_view>
#include <vector>

#include "geoid/GeoidModel.h"
#include "geoid/GridMath.h"

namespace orv {

/// Vertical offshore reference frame of the United Kingdom: a text file of points that lie on a regular grid, gaps
/// allowed (docs/formats/vorf.md), named by the project in the folder of the common project files.
class ORV_EXPORT GeoidModel_VORF : public GeoidModel {
public:
    using GeoidModel::Calculate;
    /// In metres, whatever the project's unit.
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    bool SetFileName(std::wstring name) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return path; }

private:
    bool ReadFile(std::string_view text);

    std::wstring relativeName, path;
    bool opened = false;
    std::int32_t columns = 0, rows = 0;
    double west = 0.0, south = 0.0, latitudeStep = 0.0, longitudeStep = 0.0;
    std::vector<double> values;  ///< metres, rows from the south
};

}  // namespace orv
