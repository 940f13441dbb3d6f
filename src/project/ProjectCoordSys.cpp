#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/notify/Notices.h"
#include "platform/text/CaseFold.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

const std::wstring kNone = L"none";

/// Units that follow a new system unit. The spellings are those of the units file.
struct DependentUnits {
    std::wstring_view systemUnit, paper, volume, area, velocity;
};
constexpr DependentUnits kFeetUnits[] = {
    {UNIT_INTERNATIONAL_FEET, L"Inch", L"Cubic int. Yards", L"Square Int. Yards", L"International Feet/second"},
    {UNIT_US_SURVEY_FEET, L"Inch", L"Cubic U.S. Yards", L"Square U.S. Yards", L"U.S. Survey Feet/second"},
};
constexpr DependentUnits kMetricUnits = {L"", L"Millimeters", L"Cubic Meters", L"Square Meters", L"Meters/second"};

const DependentUnits& UnitsFor(std::wstring_view systemUnit) {
    for (const DependentUnits& row : kFeetUnits) {
        if (row.systemUnit == systemUnit) return row;
    }
    return kMetricUnits;
}

bool IsSecondModule(std::wstring_view key) {
    return EqualNoCase(key, COORDSYS_SECOND_MODULE_KEY);
}

void StripBrackets(std::wstring& name) {
    if (name.starts_with(L'[')) name.erase(0, 1);
    if (name.ends_with(L']')) name.pop_back();
}

void AddBrackets(std::wstring& name) {
    if (!name.starts_with(L'[')) name = L"[" + name + L"]";
}

}  // namespace

// ---- choice and reading

bool ProjectDefinition::CheckCoordSysKey() {
    if (suiMode) {
        coordSysKey = COORDSYS_MODULE_KEY;
        return true;
    }
    const DataSearch& search = DataSearch::GetDataSearch();
    if (!search.IsInit()) return Fail(L"The data search isn't initialised.");
    const ProgramDefFile_IO& definition = search.GetAppDef();
    if (!definition.FileInitialised()) {
        DataSearchStatus::Set(kSearchUnknownName);
        return Fail(L"No application definition is open; the project's coordinate module can't be chosen.");
    }
    std::wstring programKey(COORDSYS_MODULE_KEY), projectKey;
    definition.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysModuleKey], programKey);
    if (!GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysModuleKey], projectKey) ||
        EqualNoCase(programKey, projectKey)) {
        coordSysKey = programKey;
        return true;
    }
    if (IsSecondModule(programKey) && EqualNoCase(projectKey, COORDSYS_MODULE_KEY)) {
        coordSysKey = projectKey;
        return true;
    }
    return Fail(L"The project's coordinate module \"" + projectKey + L"\" doesn't go with the application's \"" +
                programKey + L"\".");
}

bool ProjectDefinition::RegisterCoordSys() {
    coordSys.reset();
    OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
    if (loader.LoadDLL(coordSysKey, nullptr)) return true;
    Notify(Notice::Message, L"Load coordinate system dll failed");
    return Fail(L"The coordinate module " + coordSysKey + L" can't be loaded: " + loader.LastError());
}

CoordSysNames ProjectDefinition::ReadCoordSysNames() const {
    CoordSysNames names;
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGroupName], names.group);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysSystemName], names.system);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidName], names.geoidModelName);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidFile], names.geoidModelFile);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysChartDatum], names.geoidChartDatum);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysPostName], names.postModelName);
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysPostFile], names.postModelFile);
    return names;
}

bool ProjectDefinition::ReadCoordSys(bool save) {
    CoordSysNames names = ReadCoordSysNames();
    coordSys.reset();
    coordSys = OrvGeoCoordSysList::GetCoordSysList().Create(coordSysKey);
    if (!coordSys) return Fail(L"The coordinate module " + coordSysKey + L" makes no coordinate system.");
    int latLongOnSat = 1;
    GetItem(OPTIONS_SECTION, LATLONG_ON_SAT, latLongOnSat);
    coordSys->SetLatLongOnSat(latLongOnSat);
    std::wstring version;
    if (!GetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, version) || version != GEODESY_VERSION) {
        OrvGeoDatabaseBase* database = coordSys->Database();
        if (database && database->ConvertOldLayout(*this, names.group, names.system)) coordSysConverted = true;
    }
    if (!coordSys->Load(names, *this, kNone, save)) {
        return Fail(L"The coordinate system \"" + names.system + L"\" of group \"" + names.group +
                    L"\" can't be loaded.");  // the object stays: the caller can ask it
    }
    if (coordSysConverted) coordSys->ConvertProject(*this);
    return true;
}

// ---- queries and saving

OrvGeoDatabaseBase* ProjectDefinition::GetGeoDatabase() const {
    return coordSys ? coordSys->Database() : nullptr;
}

bool ProjectDefinition::GetTransformationName(std::wstring& name, std::wstring& out) const {
    if (!coordSys) return false;
    coordSys->GroupName(name);
    coordSys->TransformationName(out);
    return true;
}

bool ProjectDefinition::GetProjectionName(std::wstring& name, std::wstring& out) const {
    if (!coordSys) return false;
    coordSys->GroupName(name);
    coordSys->ProjectionName(out);
    return true;
}

bool ProjectDefinition::GetEllipsoidName(std::wstring& name, std::wstring& out) const {
    if (!coordSys) return false;
    coordSys->GroupName(name);
    out = coordSys->EllipsoidName();
    return true;
}

bool ProjectDefinition::UpdateGeoCoordSys() {
    ReadCoordSys(false);  // an object whose load failed still saves what it knows
    return _BackupCoordSysInfo();
}

bool ProjectDefinition::SaveCoordinateSystemParams() {
    return Init(true) && _BackupCoordSysInfo();
}

bool ProjectDefinition::_BackupCoordSysInfo() {
    return coordSys && coordSys->SaveToProject(*this);
}

std::unique_ptr<OrvGeoCoordSysBase> ProjectDefinition::CreateNewCoordSys(
    const std::wstring& group, const std::wstring& system, const std::wstring& geoidModelName,
    const std::wstring& geoidModelFile, const std::wstring& geoidChartDatum, const std::wstring& postModelName,
    const std::wstring& postModelFile) const {
    auto made = OrvGeoCoordSysList::GetCoordSysList().Create(coordSysKey);
    const CoordSysNames names = {group,           system,        geoidModelName, geoidModelFile,
                                 geoidChartDatum, postModelName, postModelFile};
    if (!made || !made->Configure(names, L"", kNone)) return nullptr;
    return made;
}

// ---- the section, for dialogues

void GetCoordSysData(const ProtectedFileObject* file, std::wstring& group, std::wstring& system, std::wstring& key,
                     std::wstring& unit, std::wstring& geoidName, std::wstring& geoidFile, std::wstring& chartDatum,
                     std::wstring& postName, std::wstring& postFile) {
    if (!file) return;
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGroupName], group);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysSystemName], system);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysModuleKey], key);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidName], geoidName);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidFile], geoidFile);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysChartDatum], chartDatum);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysPostName], postName);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysPostFile], postFile);
    file->GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysUnit], unit);
    if (key.empty() && !DataSearch::GetDataSearch().GetCoordSysKey(key)) DataSearchStatus::Set(kSearchUnknownName);
    if (!IsSecondModule(key)) return;
    StripBrackets(group);
    StripBrackets(system);
}

void SetCoordSysData(ProtectedFileObject* file, std::wstring group, std::wstring system, std::wstring key,
                     std::wstring unit, std::wstring geoidName, std::wstring geoidFile, std::wstring chartDatum,
                     std::wstring postName, std::wstring postFile) {
    if (!file) return;
    if (IsSecondModule(key)) {
        AddBrackets(system);
        AddBrackets(group);
    }
    const auto put = [&](CoordsystemKeyRow row, const std::wstring& value) {
        file->SetItem(COORDSYSTEM_SECTION, coordsystemKeys[row], value, true);
    };
    put(kCoordsysGroupName, group);
    put(kCoordsysSystemName, system);
    put(kCoordsysModuleKey, key);
    put(kCoordsysGeoidName, geoidName);
    put(kCoordsysGeoidFile, geoidFile);
    put(kCoordsysChartDatum, chartDatum);
    put(kCoordsysPostName, postName);
    put(kCoordsysPostFile, postFile);
    put(kCoordsysUnit, unit);

    const auto& kinds = UnitKindNames();
    std::wstring oldUnit;
    file->GetItem(UNITS_SECTION, kinds[1], oldUnit);
    file->SetItem(UNITS_SECTION, kinds[1], unit, true);
    if (oldUnit == unit) return;  // the user's own choices stay
    const DependentUnits& units = UnitsFor(TrimBlanks(unit));
    file->SetItem(UNITS_SECTION, kinds[4], unit, true);
    file->SetItem(UNITS_SECTION, kinds[9], unit, true);
    file->SetItem(UNITS_SECTION, kinds[3], unit, true);
    file->SetItem(UNITS_SECTION, kinds[22], units.paper, true);
    file->SetItem(UNITS_SECTION, kinds[5], units.volume, true);
    file->SetItem(UNITS_SECTION, kinds[20], units.area, true);
    file->SetItem(UNITS_SECTION, kinds[7], units.velocity, true);
}

}  // namespace orv
