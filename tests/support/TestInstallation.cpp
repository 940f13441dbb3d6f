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

/// Default units in the order of the unit kinds. All but the lengths count in themselves and are known by their name.
const wchar_t* const kDefaultUnits =
    L"None,Meters,Knots,Meters,Meters,Cubic Meters,Tonnes/m3,Meters/second,Cubic Meters/hour,Meters,Bar,Kilowatts,"
    L"Revolutions/minute,Tonnes,Degrees,Degrees,Meters/second2,Degrees/second,Cubic Meters/second,Degrees,"
    L"Square Meters,Celsius,Millimeters,Kilonewtons,Kilometers,Liters/hour,Liters,Meters/second";
constexpr std::pair<std::wstring_view, std::wstring_view> kLengths[] = {
    {UNIT_METERS, L"1,m,,0"},
    {UNIT_INTERNATIONAL_FEET, L"0.3048,ft,,0"},
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
    const COrvString names(kDefaultUnits, L',', true);
    for (int kind = 0; kind < kUnitKinds; ++kind) {
        const std::wstring_view kindName = UnitKindNames()[static_cast<std::size_t>(kind)];
        const std::wstring& name = names[kind];
        Put(file, UNITS_DEFAULT_SECTION, kindName, name);
        Put(file, kindName, name, L"1," + name + L",,0");
        if (name != UNIT_METERS) continue;
        for (const auto& [length, unit] : kLengths) Put(file, kindName, length, unit);
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
