#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/coord/OrvGeoCoordSysFactories.h"

namespace orv::test {

/// What a scripted coordinate system does, and what it was asked.
struct CoordSysScript {
    bool loads = true, converts = false, saves = true;
    std::wstring unitName, unitMnemonic = L"fth";  ///< the one unit that its database defines
    double unitFactor = 1.8288;
    double gridUnit = 1.0;  ///< of its grid coordinates, in metres
    std::vector<std::wstring> calls;
};

class ScriptedDatabase : public OrvGeoDatabaseBase {
public:
    explicit ScriptedDatabase(CoordSysScript& theScript) : script(theScript) {}
    bool UnitDefinition(const std::wstring& name, std::wstring&, std::wstring& mnemonic, double& factor,
                        int&) override {
        if (name != script.unitName) return false;
        mnemonic = script.unitMnemonic;
        factor = script.unitFactor;
        return true;
    }
    std::wstring UnitOfSystem(const std::wstring&, const std::wstring&) override { return L"Meters"; }
    bool ConvertOldLayout(ProjectDefinition&, std::wstring& group, std::wstring&) override {
        script.calls.push_back(L"convert");
        if (script.converts) group = L"Renamed";
        return script.converts;
    }
    bool AddGeoidModel(const std::wstring&, const std::wstring&, const std::wstring&, const std::wstring&,
                       bool) override {
        return false;
    }
    bool AddManualSeparation(const std::wstring&, const std::wstring&, const std::wstring&, double, bool) override {
        return false;
    }
    bool AddPostCorrection(const std::wstring&, const std::wstring&, double, double, double, const std::wstring&,
                           const std::wstring&, bool) override {
        return false;
    }
    std::wstring ListEntry(const std::wstring&, const std::wstring& system) override { return system; }
    std::vector<std::wstring> Groups() override { return {}; }
    std::vector<std::wstring> Systems(const std::wstring&) override { return {}; }

private:
    CoordSysScript& script;
};

class ScriptedCoordSys : public OrvGeoCoordSysBase {
public:
    explicit ScriptedCoordSys(CoordSysScript& theScript) : script(theScript), database(theScript) {}
    bool Configure(const CoordSysNames& given, const std::wstring&, const std::wstring&) override {
        names = given;
        return script.loads;
    }
    bool Load(const CoordSysNames& given, ProjectDefinition&, const std::wstring& none, bool save) override {
        names = given;
        script.calls.push_back(L"load " + given.group + L"/" + given.system + L" " + none + (save ? L" save" : L""));
        return script.loads;
    }
    void ConvertProject(ProjectDefinition&) override { script.calls.push_back(L"convert project"); }
    bool SaveToProject(ProjectDefinition&) override {
        script.calls.push_back(L"save");
        return script.saves;
    }
    OrvGeoDatabaseBase* Database() override { return &database; }
    void GroupName(std::wstring& out) override { out = names.group; }
    void SystemName(std::wstring& out) override { out = names.system; }
    void TransformationName(std::wstring& out) override { out = L"shift"; }
    std::wstring EllipsoidName() override { return L"ellipsoid"; }
    void ProjectionName(std::wstring& out) override { out = L"projection"; }
    void SetLatLongOnSat(int on) override { script.calls.push_back(L"sat " + std::to_wstring(on)); }
    bool GeoToGrid(double, double, double, double&, double&) override { return false; }
    bool GridToGeo(double, double, double, double&, double&) override { return false; }
    void Unit(double& factor, std::wstring& label) override {
        factor = script.gridUnit;
        label = factor == 1.0 ? L"m" : L"ft";
    }
    bool HeightSeparation(double, double, double&, std::wstring&) override { return false; }

private:
    CoordSysScript& script;
    ScriptedDatabase database;
    CoordSysNames names;
};

}  // namespace orv::test
