#pragma once

#include "geoid/GeoidModel.h"

namespace orv {

/// The model of a project without a geoid: heights stay as they are, everywhere.
class ORV_EXPORT GeoidModel_Null : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
};

}  // namespace orv
