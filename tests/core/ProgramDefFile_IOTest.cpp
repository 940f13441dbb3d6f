#include "core/ProgramDefFile_IO.h"

#include <functional>

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
    const struct {
        const wchar_t* key;
        bool supported, create, select;
        int location;
    } rows[] = {{L"Route", true, false, true, -1},    {L"rOUTE", true, false, true, -1},
                {L"RunLine", false, true, false, 12}, {L"Waypoint", false, true, true, -1},
                {L"Units", true, true, true, -1},     {L"WorkArea", false, true, true, -1}};
    for (const auto& row : rows) {
        EXPECT_TRUE(def.GetFilePermissions(row.key, a, b, c, &n)) << row.key;
        EXPECT_TRUE(a == row.supported && b == row.create && c == row.select && n == row.location) << row.key;
    }
    EXPECT_TRUE(def.GetFileSupportFlag(14, a) && def.GetFileCreateFlag(14, b) && def.GetFileSelectFlag(14, c));
    EXPECT_TRUE(a && !b && c);
}

TEST_F(ProgramDef, FailuresTellWhy) {
    Write({{PROGRAMS_SECTION, L"MASTER", L"1,orvmaster"},
           {PROGRAMS_SECTION, L"PLOT", L"x"},
           {VIEWS_SECTION, viewTypeKeys[0], L"4"},
           {VIEWS_SECTION, viewTypeKeys[1], L"many"}});
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
        {"program", true, kFileOk, [&] { return def.GetExecutableName(L"master", text) && text == L"orvmaster"; }},
        {"program key", false, kFileUnknownProgramKey, [&] { return def.GetExecutableName(L"X", text); }},
        {"program id", false, kFileProgramOutOfRange, [&] { return def.GetExecutablePermission(47, a); }},
        {"program row missing", false, kFileNoKey, [&] { return def.GetExecutablePermission(1, a); }},
        {"program row spoilt", false, kFileNoConvert, [&] { return def.GetExecutablePermission(16, a); }},
        {"program without name", false, kFileNoConvert, [&] { return def.GetExecutableName(16, text); }},
        {"section missing", false, kFileNoSection, [&] { return def.GetUALSupportFlag(b); }},
        {"layer missing", false, kFileNoSection, [&] { return def.GetLayerMax(L"x", n); }},
        {"logging id", false, kFileOk, [&] { return def.GetLoggingPermission(23, a); }},
        {"export id", false, kFileOk, [&] { return def.GetExportPermission(1, a); }},
        {"guidance id", false, kFileOk, [&] { return def.GetGuidancePermission(-1, a); }},
        {"coordinate module", true, kFileOk, [&] { return def.GetCoordSysKey(text) && text == L"ORVCoordSys"; }}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.query(), row.result) << row.what;
        EXPECT_EQ(def.GetErrorStatus(), row.status) << row.what;
    }
    EXPECT_EQ(n, 1) << "an absent layer";
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
    Write({{NETWORK_SECTION, networkKeys[0], L"1"}});
    EXPECT_FALSE(def.GetNetworkPermissions(b, n, relativeMax));
    EXPECT_EQ(def.GetErrorStatus(), kFileNoConvert);
}

TEST_F(ProgramDef, BeforeInitialiseNothingIsTouched) {
    EXPECT_FALSE(def.GetFilePermissions(14, a, b, c) || def.GetLayerMax(L"x", n) || def.GetCoordSysKey(text));
    EXPECT_TRUE(!a && b && !c && n == 7 && text == L"kept");
    EXPECT_FALSE(def.GetFilePermissions(L"nothing like it", a, b, c) || b);
    EXPECT_EQ(def.GetErrorStatus(), kFileUnknownTypeKey);
    Write({{VIEWS_SECTION, viewTypeKeys[0], L"4"}});
    EXPECT_FALSE(def.GetViewMax(1, n) || !def.LastRowAbsent());
    EXPECT_FALSE(def.Initialise(folder / L"missing.adf", false) || def.GetViewMax(0, n));
    EXPECT_FALSE(def.LastRowAbsent()) << "a missing definition must not pass for one without the row";
}

}  // namespace
}  // namespace orv
