#include "support/TestInstallation.h"

#include <stdexcept>

#include "core/ConfigKeys.h"
#include "platform/os/ProgramPath.h"
#include "project/ProjectDefinition.h"

namespace orv::test {

namespace {

class FreshDataSearch : public DataSearch {
public:
    static void Install() { SetDataSearch(std::make_unique<FreshDataSearch>()); }
    static void Remove() { SetDataSearch(nullptr); }
};

void Must(bool done, const char* what) {
    if (!done) throw std::runtime_error(what);
}

void Put(FileObject& file, std::wstring_view section, std::wstring_view key, std::wstring_view value) {
    Must(file.SetItem(section, key, value, true), "can't set an item");
}

/// A default unit and metres (or what the kind counts in) per unit, in the order of the unit kinds.
struct UnitRow {
    std::wstring_view name, definition;
};
constexpr UnitRow kUnits[kUnitKinds] = {
    {L"None", L"1,,,0"},
    {L"Meters", L"1,m,,0"},
    {L"Knots", L"0.514444444444444,kn,,0"},
    {L"Meters", L"1,m,,0"},
    {L"Meters", L"1,m,,0"},
    {L"Cubic Meters", L"1,m3,,0"},
    {L"Tonnes/m3", L"1000,t/m3,,0"},
    {L"Meters/second", L"1,m/s,,0"},
    {L"Cubic Meters/hour", L"0.000277777777777778,m3/h,,0"},
    {L"Meters", L"1,m,,0"},
    {L"Bar", L"100000,bar,,0"},
    {L"Kilowatts", L"1000,kW,,0"},
    {L"Revolutions/minute", L"0.0166666666666667,rpm,,0"},
    {L"Tonnes", L"1000,t,,0"},
    {L"Degrees", L"1,deg,,0"},
    {L"Degrees", L"1,deg,,0"},
    {L"Meters/second2", L"1,m/s2,,0"},
    {L"Degrees/second", L"1,deg/s,,0"},
    {L"Cubic Meters/second", L"1,m3/s,,0"},
    {L"Degrees", L"1,deg,,0"},
    {L"Square Meters", L"1,m2,,0"},
    {L"Celsius", L"1,C,,0"},
    {L"Millimeters", L"0.001,mm,,0"},
    {L"Kilonewtons", L"1000,kN,,0"},
    {L"Kilometers", L"1000,km,Station,0"},
    {L"Liters/hour", L"0.000000277777777777778,l/h,,0"},
    {L"Liters", L"0.001,l,,0"},
    {L"Meters/second", L"1,m/s,,0"},
};
// Besides meters, in the kinds whose default they are.
constexpr UnitRow kFeet[] = {{UNIT_INTERNATIONAL_FEET, L"0.3048,ft,,0"},
                             {UNIT_US_SURVEY_FEET, L"0.304800609601219,ft,,0"}};

}  // namespace

void WriteItems(const std::wstring& path, std::initializer_list<Item> items) {
    ProtectedFileObject file;
    Must(file.FileOpen(path, false, kOpenCreateRead), "can't make a protected file");
    for (const Item& item : items) Put(file, item.section, item.key, item.value);
    Must(file.FileSave(L"", 0, kSave), "can't save a protected file");
}

void DeleteItem(const std::wstring& path, std::wstring_view section, std::wstring_view key) {
    ProtectedFileObject file;
    Must(file.FileOpen(path, false, kOpenRead) && file.DeleteItem(section, key, false) && file.FileSave(L"", 0, kSave),
         "can't delete an item");
}

TestInstallation::TestInstallation() {
    for (const std::wstring& folder :
         {ProgramFolder(), SystemFolder(), GeneralFolder(), ProjectFolder(), CommonFolder(),
          GeneralFolder(kLocationAppDefs), GeneralFolder(kLocationGeoidModels)}) {
        MakeFolders(folder);
    }
    SetProgramPath(ProgramFolder() + L"surveyor");
    WriteSettings();
    WriteFileTypes();
    WriteUnits();
    AppDef({{COORDSYSTEM_SECTION, coordsystemKeys[12], std::wstring(COORDSYS_MODULE_KEY)}});
    FreshDataSearch::Install();
}

TestInstallation::~TestInstallation() {
    FreshDataSearch::Remove();
    SetProgramPath(L"");
}

std::wstring TestInstallation::GeneralFolder(int location) const {
    return GeneralFolder() + std::wstring(pathKeys[static_cast<std::size_t>(location)]) + L"/";
}

std::wstring TestInstallation::AppDefPath(std::wstring_view name) const {
    return GeneralFolder() + std::wstring(name) + L".adf";
}

void TestInstallation::WriteSettings() const {
    // What has no default; relative where an installer writes it so.
    WriteItems(SystemFolder() + std::wstring(ORV_DEF_FILENAME),
               {{DATA_PATH_SECTION, pathKeys[kLocationGeneral], GeneralFolder()},
                {DATA_PATH_SECTION, pathKeys[kLocationProject], L"Harbour"},
                {DATA_PATH_SECTION, pathKeys[kLocationProjects], ProjectsRoot()},
                {DATA_PATH_SECTION, pathKeys[kLocationUserGeneral], root / L"user/"},
                {DATA_PATH_SECTION, pathKeys[kLocationFileHistory], L"History"},
                {DATA_PATH_SECTION, pathKeys[7], L"Programs"},
                {DATA_PATH_SECTION, pathKeys[24], L"Charts"},
                {DATA_PATH_SECTION, USE_DEFAULT_COMMON_PATH, L"1"}});
}

void TestInstallation::WriteFileTypes() const {
    FileObject file;
    Must(file.FileOpen(ProgramFolder() + std::wstring(FILETYPES_DEF_FILENAME), kOpenCreateRead), "no file types");
    for (const std::wstring_view key : fileTypeKeys) {
        // The one without a description stays without.
        if (key != L"Unknown") Put(file, FILE_TYPE_LIST_SECTION, key, L"A file of " + std::wstring(key));
    }
    Put(file, L"StandardShape", L"Grab", L"7,Clamshell grab");
    Put(file, L"StandardShape", L"Vessel", L"1");
    Put(file, L"StandardShape", L"Homemade", L"3,Not in the table");
    Must(file.FileSave(L"", kSave), "can't save the file types");
}

void TestInstallation::WriteUnits() const {
    FileObject file;
    Must(file.FileOpen(GeneralFolder() + L"Units.uni", kOpenCreateRead), "no units");
    for (std::size_t kind = 0; kind < kUnitKinds; ++kind) {
        const std::wstring_view kindName = UnitKindNames()[kind];
        Put(file, UNITS_DEFAULT_SECTION, kindName, kUnits[kind].name);
        Put(file, kindName, kUnits[kind].name, kUnits[kind].definition);
        if (kUnits[kind].name != UNIT_METERS) continue;
        for (const UnitRow& feet : kFeet) Put(file, kindName, feet.name, feet.definition);
    }
    Must(file.FileSave(L"", kSave), "can't save the units");
}

void TestInstallation::Setting(std::wstring_view key, std::wstring value) const {
    WriteItems(SystemFolder() + std::wstring(ORV_DEF_FILENAME), {{DATA_PATH_SECTION, key, std::move(value)}});
}

void TestInstallation::RemoveSetting(std::wstring_view key) const {
    DeleteItem(SystemFolder() + std::wstring(ORV_DEF_FILENAME), DATA_PATH_SECTION, key);
}

void TestInstallation::UserDef(std::initializer_list<Item> items) const {
    WriteItems(UserDefPath(), items);
    WriteItems(SystemFolder() + std::wstring(ORV_DEF_FILENAME),
               {{USER_PROFILE_SECTION, USER_PROFILE_SECTION, L"operator.upd"}});
}

bool TestInstallation::Start(bool userDef) const {
    return Search().Initialise(SystemFolder(), true, L"navigate", userDef, L"", L"");
}

void TestInstallation::Restart() const {
    FreshDataSearch::Install();
}

}  // namespace orv::test
