#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/text/NumberText.h"

namespace orv::test {

/// What a scripted coordinate system does, and what it was asked.
struct CoordSysScript {
    bool loads = true, converts = false, saves = true;
    bool changes = false;                          ///< its database is changed by what is added
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
    bool AddGeoidModel(const std::wstring& group, const std::wstring& system, const std::wstring& key,
                       const std::wstring& file, bool overwrite) override {
        return Add(overwrite, L"geoid " + group + L"/" + system + L" " + key + L" '" + file + L"'");
    }
    bool AddManualSeparation(const std::wstring& group, const std::wstring& system, const std::wstring& key,
                             double separation, bool overwrite) override {
        return Add(overwrite, L"manual " + group + L"/" + system + L" " + key + L" " + ShortestText(separation));
    }
    bool AddPostCorrection(const std::wstring&, const std::wstring&, double x, double y, double z,
                           const std::wstring& key, const std::wstring& text, bool overwrite) override {
        return Add(overwrite, L"post " + ShortestText(x) + L" " + ShortestText(y) + L" " + ShortestText(z) + L" " +
                                  key + L" '" + text + L"'");
    }
    std::wstring ListEntry(const std::wstring&, const std::wstring& system) override { return system; }
    std::vector<std::wstring> Groups() override { return {}; }
    std::vector<std::wstring> Systems(const std::wstring&) override { return {}; }

private:
    bool Add(bool overwrite, const std::wstring& call) {
        script.calls.push_back(call + (overwrite ? L"" : L" kept"));
        return script.changes;
    }
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
