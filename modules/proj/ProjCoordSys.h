#pragma once

#include <memory>
#include <string>

#include "ProjGeoDatabase.h"
#include "ProjTransformation.h"
#include "geoid/GeoidModel.h"
#include "platform/coord/OrvGeoCoordSysBase.h"

namespace orv {

/// A project's coordinate system, taken from the database by name and computed by PROJ. Threads as the base class says.
class ProjCoordSys : public OrvGeoCoordSysBase {
public:
    bool Configure(const CoordSysNames& names, const std::wstring& text, const std::wstring& none) override;
    bool Load(const CoordSysNames& names, ProjectDefinition& project, const std::wstring& none, bool save) override;
    void ConvertProject(ProjectDefinition& project) override;
    bool SaveToProject(ProjectDefinition& project) override;
    OrvGeoDatabaseBase* Database() override { return &database; }
    void GroupName(std::wstring& out) override { out = names.group; }
    void SystemName(std::wstring& out) override { out = names.system; }
    void TransformationName(std::wstring& out) override { out = system.transformation; }
    std::wstring EllipsoidName() override;
    void ProjectionName(std::wstring& out) override;
    void SetLatLongOnSat(int on) override;

    bool GeoToGrid(double latitude, double longitude, double height, double& x, double& y) override;
    bool GridToGeo(double x, double y, double height, double& latitude, double& longitude) override;
    void Unit(double& factor, std::wstring& label) override;
    bool HeightSeparation(double latitude, double longitude, double& value, std::wstring& reason) override;

private:
    bool Bind(const CoordSysNames& wanted, const std::wstring& none);
    void ChooseModels();
    std::unique_ptr<GeoidModel> MakeModel(const std::wstring& typeKey, const std::wstring& file,
                                          const std::wstring& datum);
    bool GridShift(double x, double y, bool inverse, double& dx, double& dy) const;
    bool ModelSeparation(double latitude, double longitude, double& value, std::wstring& reason);

    ProjGeoDatabase database;
    CoordSysNames names;  ///< as asked for; the models as they are in force once the system is bound
    // Fixed from one binding to the next; null or empty when it failed.
    GeoSystem system;
    std::shared_ptr<const ProjTransformation> transformation;
    double unitFactor = 1.0;
    std::wstring unitLabel = L"m";
    int geoidType = -1;
    std::unique_ptr<GeoidModel> geoid, gridShift;
    std::wstring problem = L"No coordinate system is loaded";
};

}  // namespace orv
