#pragma once

#include "geoid/GeoidModel.h"
#include "geoid/NodeTable.h"

namespace orv {

/// Geoid of the Netherlands before 2004, from a table that is part of the program (data/geoid/README.md).
class ORV_EXPORT GeoidModel_DeMin : public GeoidModel {
public:
    GeoidModel_DeMin();
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return table->fileName; }

private:
    SharedNodeTable table;
};

/// Geoid of the Dutch part of the North Sea, from a table that is part of the program; none over land.
class ORV_EXPORT GeoidModel_GeoNZ97 : public GeoidModel {
public:
    GeoidModel_GeoNZ97();
    using GeoidModel::Calculate;
    bool Calculate(double latitude, double longitude, double easting, double northing, double& value,
                   std::wstring& text) override;
    void DumpGeoidXml(std::wostream& stream, const wchar_t* indent) override;
    std::wstring DataFile() const override { return table->fileName; }

private:
    SharedNodeTable table;
};

}  // namespace orv
