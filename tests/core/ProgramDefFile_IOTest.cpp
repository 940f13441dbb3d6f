#include "core/ProgramDefFile_IO.h"

#include <functional>

#include "core/ConfigKeys.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

using Def = ProgramDefFile_IO;

class ProgramDef : public testing::Test {
protected:
    void Write(std::initializer_list<test::Item> items) {
        test::WriteItems(path, items);
        ASSERT_TRUE(def.Initialise(path, true));
    }
    test::TempFolder folder;
    std::wstring path = folder / L"site.adf";
    Def def;
};

TEST_F(ProgramDef, FilePermissionRows) {
    Write({{FILES_SECTION, L"Route", L"1,0,1"},
           {FILES_SECTION, L"RunLine", L"0, 1 ,0,12"},
           {FILES_SECTION, L"Waypoint", L"1"},
           {FILES_SECTION, L"Tide", L"0,0,0"},
           {FILES_SECTION, L"WorkArea", L"false,x,TRUE,y"}});
    const struct {
        const wchar_t* key;
        bool supported, create, select;
        int location;
    } rows[] = {{L"Route", true, false, true, -1},    {L"rOUTE", true, false, true, -1},
                {L"RunLine", false, true, false, 12}, {L"Waypoint", true, true, true, -1},
                {L"Units", true, true, true, -1},     {L"WorkArea", false, true, true, -1}};
    for (const auto& row : rows) {
        bool supported = false, create = false, select = false;
        int location = 5;
        EXPECT_TRUE(def.GetFilePermissions(row.key, supported, create, select, &location)) << row.key;
        EXPECT_EQ(supported, row.supported) << row.key;
        EXPECT_EQ(create, row.create) << row.key;
        EXPECT_EQ(select, row.select) << row.key;
        EXPECT_EQ(location, row.location) << row.key;
    }
    bool supported = false, create = true, select = false;
    EXPECT_TRUE(def.GetFileSupportFlag(14, supported) && def.GetFileCreateFlag(14, create) &&
                def.GetFileSelectFlag(14, select));
    EXPECT_TRUE(supported && !create && select);
}

TEST_F(ProgramDef, FailuresTellWhy) {
    Write({{PROGRAMS_SECTION, L"MASTER", L"1,orvmaster"},
           {PROGRAMS_SECTION, L"PLOT", L"x"},
           {VIEWS_SECTION, viewTypeKeys[0], L"4"},
           {VIEWS_SECTION, viewTypeKeys[1], L"many"}});
    bool a = false, b = false, c = false;
    int n = 7;
    std::wstring name;
    const struct {
        const char* what;
        bool result;
        int status;
        std::function<bool()> query;
    } rows[] = {
        {"type key", false, kFileUnknownTypeKey, [&] { return def.GetFilePermissions(L"Tide", a, b, c); }},
        {"type id", false, kFileTypeOutOfRange, [&] { return def.GetFilePermissions(147, a, b, c); }},
        {"view", true, kFileOk, [&] { return def.GetViewMax(L"PLANVIEW", n) && n == 4; }},
        {"view row missing", false, kFileNoKey, [&] { return def.GetViewMax(55, n); }},
        {"view of another type", false, kFileNoConvert, [&] { return def.GetViewMax(1, n); }},
        {"view key", false, kFileUnknownViewKey, [&] { return def.GetViewMax(L"Plan", n); }},
        {"view id", false, kFileViewOutOfRange, [&] { return def.GetViewMax(56, n); }},
        {"program", true, kFileOk, [&] { return def.GetExecutableName(L"master", name) && name == L"orvmaster"; }},
        {"program key", false, kFileUnknownProgramKey, [&] { return def.GetExecutableName(L"X", name); }},
        {"program id", false, kFileProgramOutOfRange, [&] { return def.GetExecutablePermission(47, a); }},
        {"program row missing", false, kFileNoKey, [&] { return def.GetExecutablePermission(1, a); }},
        {"program row spoilt", false, kFileNoConvert, [&] { return def.GetExecutablePermission(16, a); }},
        {"program without name", false, kFileNoConvert, [&] { return def.GetExecutableName(16, name); }},
        {"section missing", false, kFileNoSection, [&] { return def.GetLoggingPermission(0, a); }},
        {"logging id", false, kFileOk, [&] { return def.GetLoggingPermission(23, a); }},
        {"export id", false, kFileOk, [&] { return def.GetExportPermission(1, a); }},
        {"guidance id", false, kFileOk, [&] { return def.GetGuidancePermission(-1, a); }},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.query(), row.result) << row.what;
        EXPECT_EQ(def.GetErrorStatus(), row.status) << row.what;
    }
    EXPECT_EQ(n, 4);
}

TEST_F(ProgramDef, MaximaAreReadWhereTheirFlagIsOn) {
    Write({{VESSEL_SECTION, vesselKeys[0], L"0"},
           {VESSEL_SECTION, vesselKeys[1], L"9"},
           {VESSEL_SECTION, vesselKeys[2], L"1"},
           {VESSEL_SECTION, vesselKeys[3], L"3"},
           {VESSEL_SECTION, vesselKeys[4], L"1"},
           {NETWORK_SECTION, networkKeys[0], L"0"},
           {NETWORK_SECTION, networkKeys[1], L"many"}});
    bool multi = true, relative = false, dynamic = false, support = true;
    int multiMax = 5, relativeMax = 5, remotes = 5, presentations = 5;
    EXPECT_TRUE(def.GetVesselPermissions(multi, multiMax, relative, relativeMax, dynamic));
    EXPECT_TRUE(!multi && multiMax == 1 && relative && relativeMax == 3 && dynamic);
    EXPECT_TRUE(def.GetNetworkPermissions(support, remotes, presentations));
    EXPECT_TRUE(!support && remotes == 0 && presentations == 0);
    test::WriteItems(path, {{NETWORK_SECTION, networkKeys[0], L"1"}});
    ASSERT_TRUE(def.Initialise(path, true));
    EXPECT_FALSE(def.GetNetworkPermissions(support, remotes, presentations));
    EXPECT_EQ(def.GetErrorStatus(), kFileNoConvert);
}

TEST_F(ProgramDef, AbsentRowsGiveTheirDefaults) {
    Write({{VESSEL_SECTION, L"Other", L"1"}});
    const std::pair<bool (Def::*)(int&) const, int> maxima[] = {
        {&Def::GetMultiMax, 1}, {&Def::GetRelativeMax, 0}, {&Def::GetRemoteNumMax, 0}};
    for (const auto& [getter, expected] : maxima) {
        int out = 77;
        EXPECT_FALSE((def.*getter)(out));
        EXPECT_EQ(out, expected);
    }
    int layers = 77, devices = 77;
    EXPECT_FALSE(def.GetLayerMax(L"Depth", layers) || def.GetDeviceMax(4294967295u, devices));
    EXPECT_TRUE(layers == 1 && devices == 0);
    bool untouched = true;
    EXPECT_FALSE(def.GetUALSupportFlag(untouched));
    EXPECT_TRUE(untouched);
    std::wstring key;
    EXPECT_TRUE(def.GetCoordSysKey(key) && key == L"ORVCoordSys");
}

TEST_F(ProgramDef, BeforeInitialiseNothingIsTouched) {
    bool a = true, b = false, c = true;
    int n = 77;
    std::wstring key = L"kept";
    EXPECT_FALSE(def.GetFilePermissions(14, a, b, c) || def.GetLayerMax(L"x", n) || def.GetCoordSysKey(key));
    EXPECT_TRUE(a && !b && c && n == 77 && key == L"kept");
    EXPECT_FALSE(def.LastRowAbsent());
    EXPECT_FALSE(def.GetFilePermissions(L"nothing like it", a, b, c));
    EXPECT_TRUE(!a && !b && !c && def.GetErrorStatus() == kFileUnknownTypeKey);
    Write({{VIEWS_SECTION, viewTypeKeys[0], L"4"}});
    EXPECT_FALSE(def.Initialise(folder / L"missing.adf", false));
    EXPECT_FALSE(def.GetViewMax(0, n) || def.IsInit());
    EXPECT_EQ(def.GetErrorStatus(), kFileOk) << "a missing definition must not pass for one without the row";
}

}  // namespace
}  // namespace orv
