#include "core/ProgramDefFile_IO.h"

#include <functional>
#include <tuple>

#include "core/ConfigKeys.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

class ProgramDef : public testing::Test {
protected:
    void Write(std::initializer_list<test::Item> items) {
        test::WriteItems(path, items);
        ASSERT_TRUE(def.Initialise(path, true));
    }
    test::TempFolder folder;
    std::wstring path = folder / L"site.adf";
    ProgramDefFile_IO def;
    bool a = false, b = true, c = false;
    int n = 7;
    std::wstring text = L"kept";
};

TEST_F(ProgramDef, FilePermissionRows) {
    Write({{FILES_SECTION, L"Route", L"1,0,1"},
           {FILES_SECTION, L"RunLine", L"0, 1 ,0,12"},
           {FILES_SECTION, L"Waypoint", L"0"},
           {FILES_SECTION, L"WorkArea", L"false,x,TRUE,y"}});
    const std::tuple<const wchar_t*, bool, bool, bool, int> rows[] = {
        {L"Route", true, false, true, -1},    {L"rOUTE", true, false, true, -1}, {L"RunLine", false, true, false, 12},
        {L"Waypoint", false, true, true, -1}, {L"Units", true, true, true, -1},  {L"WorkArea", false, true, true, -1}};
    for (const auto& [key, supported, create, select, location] : rows) {
        EXPECT_TRUE(def.GetFilePermissions(key, a, b, c, &n)) << key;
        EXPECT_TRUE(a == supported && b == create && c == select && n == location) << key;
    }
}

TEST_F(ProgramDef, FailuresTellWhy) {
    Write({{PROGRAMS_SECTION, L"MASTER", L"1,orvmaster"},
           {PROGRAMS_SECTION, L"PLOT", L"x"},
           {VIEWS_SECTION, viewTypeKeys[0], L"4"},
           {VIEWS_SECTION, viewTypeKeys[1], L"many"}});
    const std::tuple<const char*, bool, int, std::function<bool()>> rows[] = {
        {"type id", false, kFileTypeOutOfRange, [&] { return def.GetFilePermissions(147, a, b, c); }},
        {"view", true, kFileOk, [&] { return def.GetViewMax(L"PLANVIEW", n) && n == 4; }},
        {"view row missing", false, kFileNoKey, [&] { return def.GetViewMax(55, n); }},
        {"view of another type", false, kFileNoConvert, [&] { return def.GetViewMax(1, n); }},
        {"view id", false, kFileViewOutOfRange, [&] { return def.GetViewMax(56, n); }},
        {"program", true, kFileOk, [&] { return def.GetExecutableName(L"master", text) && text == L"orvmaster"; }},
        {"program id", false, kFileProgramOutOfRange, [&] { return def.GetExecutablePermission(47, a); }},
        {"program row missing", false, kFileNoKey, [&] { return def.GetExecutablePermission(1, a); }},
        {"program row spoilt", false, kFileNoConvert, [&] { return def.GetExecutablePermission(16, a); }},
        {"section missing", false, kFileNoSection, [&] { return def.GetUALSupportFlag(b); }},
        {"export id", false, kFileOk, [&] { return def.GetExportPermission(1, a); }},
        {"coordinate module", true, kFileOk, [&] { return def.GetCoordSysKey(text) && text == L"ORVCoordSys"; }}};
    for (const auto& [what, result, status, query] : rows) {
        EXPECT_EQ(query(), result) << what;
        EXPECT_EQ(def.GetErrorStatus(), status) << what;
    }
}

TEST_F(ProgramDef, MaximaAreReadWhereTheirFlagIsOn) {
    Write({{VESSEL_SECTION, vesselKeys[0], L"0"},
           {VESSEL_SECTION, vesselKeys[1], L"9"},
           {VESSEL_SECTION, vesselKeys[2], L"1"},
           {VESSEL_SECTION, vesselKeys[3], L"3"},
           {VESSEL_SECTION, vesselKeys[4], L"1"},
           {NETWORK_SECTION, networkKeys[0], L"0"},
           {NETWORK_SECTION, networkKeys[1], L"many"}});
    int relativeMax = 5;
    EXPECT_TRUE(def.GetVesselPermissions(a, n, b, relativeMax, c));
    EXPECT_TRUE(!a && n == 1 && b && relativeMax == 3 && c);
    EXPECT_TRUE(def.GetNetworkPermissions(b, n, relativeMax) && !b && n == 0 && relativeMax == 0);
}

TEST_F(ProgramDef, BeforeInitialiseNothingIsTouched) {
    EXPECT_FALSE(def.GetFilePermissions(14, a, b, c) || def.GetLayerMax(L"x", n) || def.GetCoordSysKey(text));
    EXPECT_TRUE(!a && b && !c && n == 7 && text == L"kept");
    Write({{VIEWS_SECTION, viewTypeKeys[0], L"4"}});
    EXPECT_FALSE(def.GetViewMax(1, n) || !def.LastRowAbsent());
    EXPECT_FALSE(def.Initialise(folder / L"missing.adf", false) || def.GetViewMax(0, n));
    EXPECT_FALSE(def.LastRowAbsent()) << "a missing definition must not pass for one without the row";
}

}  // namespace
}  // namespace orv
