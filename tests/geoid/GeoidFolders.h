#pragma once

#include <memory>
#include <string>

#include "geoid/GeoidModelList.h"
#include "platform/coord/OrvGeoCoordSysBase.h"
#include "platform/notify/Notices.h"
#include "support/TestSupport.h"

namespace orv::test {

/// An installation of its own for one test: the two folders in which models look for their files.
class GeoidFolders {
public:
    GeoidFolders();
    /// Below the folder of the common project files, or of the system's geoid models.
    std::wstring Common(std::wstring_view relative = L"") const {
        return folder / (L"common/" + std::wstring(relative));
    }
    std::wstring Models(std::wstring_view relative = L"") const {
        return folder / (L"general/GeoidModels/" + std::wstring(relative));
    }
    static void Write(const std::wstring& path, std::string_view bytes);

    NoticeRecorder notices;

private:
    TempFolder folder;
};

/// A coordinate system of which only the unit matters.
class UnitOnly : public OrvGeoCoordSysBase {
public:
    explicit UnitOnly(double metres) : factor(metres) {}
    bool Configure(const CoordSysNames&, const std::wstring&, const std::wstring&) override { return false; }
    bool Load(const CoordSysNames&, ProjectDefinition&, const std::wstring&, bool) override { return false; }
    void ConvertProject(ProjectDefinition&) override {}
    bool SaveToProject(ProjectDefinition&) override { return false; }
    OrvGeoDatabaseBase* Database() override { return nullptr; }
    void GroupName(std::wstring&) override {}
    void SystemName(std::wstring&) override {}
    void TransformationName(std::wstring&) override {}
    std::wstring EllipsoidName() override { return {}; }
    void ProjectionName(std::wstring&) override {}
    void SetLatLongOnSat(int) override {}
    bool GeoToGrid(double, double, double, double&, double&) override { return false; }
    bool GridToGeo(double, double, double, double&, double&) override { return false; }
    void Unit(double& metres, std::wstring& label) override {
        metres = factor;
        label = L"ft";
    }
    bool HeightSeparation(double, double, double&, std::wstring&) override { return false; }

private:
    double factor;
};

inline constexpr double kFoot = 0.3048;
inline constexpr double kUntouched = -12345.0;

/// A model of the registry, bound to a unit.
std::unique_ptr<GeoidModel> MakeModel(unsigned short typeId, double metresPerUnit = 1.0);

/// The separation, or kUntouched if there is none.
double HeightAt(GeoidModel& model, double latitude, double longitude, double easting = 0, double northing = 0,
                std::wstring* text = nullptr);

std::wstring Dump(GeoidModel& model, const wchar_t* indent = L"");

}  // namespace orv::test
