#include "core/DataSearch.h"

#include <functional>

#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/os/ProgramPath.h"
#include "platform/service/BrandingConfig.h"
#include "platform/service/CToolList.h"
#include "platform/service/Multibeam.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

class DataSearchStart : public testing::Test {
protected:
    bool Start(std::wstring folder, const wchar_t* appDef, bool userDef = false) {
        return search.Initialise(folder, *appDef != L'\0', appDef, userDef, L"", L"");
    }
    /// Supported, create and select as three digits.
    std::wstring Flags(unsigned id) {
        bool supported = true, create = true, select = true;
        search.GetFilePermissions(id, supported, create, select);
        return std::to_wstring(supported) + std::to_wstring(create) + std::to_wstring(select);
    }
    test::TestInstallation installation;
    DataSearch& search = installation.Search();
    const std::wstring system = installation.SystemFolder(), program = installation.ProgramFolder();
};

TEST_F(DataSearchStart, FailuresTellWhy) {
    EXPECT_FALSE(search.Initialise(L"/nowhere/", true, L"", false, L"", L""));
    std::wstring untouched = L"kept";
    EXPECT_FALSE(search.GetFullPath(13, untouched) || search.InitProject(L"Harbour", false) || untouched != L"kept");
    EXPECT_EQ(search.GetErrorStatus(), kSearchNoAppDefName) << "a query must not hide why";

    const std::wstring tooLong = L"/" + std::wstring(260, L'x');
    const struct {
        const char* what;
        std::wstring program;
        const wchar_t* appDef;
        bool userDef;
        int status;
    } rows[] = {{"no user profile", L"surveyor", L"", true, kSearchNoUserProfile},
                {"no general folder", L"surveyor", L"navigate", false, kSearchNoAppDefLocation},
                {"no file types", L"elsewhere/surveyor", L"", false, kSearchNoSettings},
                {"program path too long", tooLong, L"", false, kSearchNoProgramPath}};
    installation.RemoveSetting(pathKeys[kLocationGeneral]);
    for (const auto& row : rows) {
        SetProgramPath(program + row.program);
        EXPECT_FALSE(Start(system, row.appDef, row.userDef) || search.IsInit()) << row.what;
        EXPECT_EQ(search.GetErrorStatus(), row.status) << row.what;
    }
    SetProgramPathMissing();
    EXPECT_TRUE(!Start(system, L"") && search.GetErrorStatus() == kSearchNoProgramPath);
    SetProgramPath(program + L"surveyor");
    installation.UserDef({});
    test::WriteItems(system + L"ORV.ini", {{USER_PROFILE_SECTION, USER_PROFILE_SECTION, L"nobody.upd"}});
    EXPECT_TRUE(!Start(system, L"", true) && search.GetErrorStatus() == kSearchNoUserDef);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(!Start(L"/nowhere/", L"") && search.GetErrorStatus() == kSearchNoSettings);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "FileOpen with ORV.ini failed: /nowhere/ORV.ini\n");
}

TEST_F(DataSearchStart, AnAbsentDefinitionForbidsEverything) {
    ASSERT_TRUE(installation.Start());
    EXPECT_EQ(Flags(14), L"111");
    ASSERT_TRUE(Start(system, L"elsewhere"));
    for (unsigned id = 0; id < 147; ++id) EXPECT_EQ(Flags(id), L"000") << id;
    int most = 7;
    EXPECT_TRUE(!search.GetViewMax(0, most) && search.GetErrorStatus() == kSearchAppDefFailed);
    std::wstring key;
    EXPECT_TRUE(!search.GetCoordSysKey(key) && search.GetErrorStatus() == kSearchUnknownName);
    search.DisableAppDefReq();
    EXPECT_TRUE(search.GetViewMax(0, most) && most == kNoLimit);

    test::WriteItems(installation.GeneralFolder(kLocationAppDefs) + L"elsewhere.adf",
                     {{FILES_SECTION, L"Route", L"0"}});
    ASSERT_TRUE(Start(system, L"elsewhere"));
    EXPECT_TRUE(Flags(15) == L"111" && Flags(14) == L"011") << "the second folder";
}

TEST_F(DataSearchStart, AnEditedDefinitionIsSignedAgain) {
    installation.AppDef({{FILES_SECTION, L"Route", L"1"}});
    std::string text = test::ReadBytes(installation.AppDefPath());
    text.replace(text.find("Route=1"), 7, "Route=0");
    test::WriteBytes(installation.AppDefPath(), text);
    ASSERT_TRUE(installation.Start());
    EXPECT_EQ(Flags(14), L"011");
    ProtectedFileObject signedAgain;
    EXPECT_TRUE(signedAgain.FileOpen(installation.AppDefPath(), true, kOpenRead));
}

TEST_F(DataSearchStart, FileFlagsOfBothDefinitionsCount) {
    installation.AppDef({{FILES_SECTION, L"Route", L"1,0,1,8"}, {FILES_SECTION, L"RunLine", L"1,1,0"}});
    installation.UserDef({{FILES_SECTION, L"RunLine", L"1,0,1"}, {FILES_SECTION, L"Units", L"0,1,1"}});
    ASSERT_TRUE(installation.Start(true)) << "Profile and Unknown are rows of the key table";
    EXPECT_TRUE(Flags(14) == L"101" && Flags(15) == L"100" && Flags(8) == L"011" && Flags(16) == L"111");
    EXPECT_EQ(Flags(147), L"000");
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownFileType);
    int location = -1;
    EXPECT_TRUE(search.GetFileLocation(14, location) && location == 2) << "a row's location isn't applied";
}

TEST_F(DataSearchStart, TheNarrowerDefinitionWins) {
    installation.AppDef({{DEVICES_SECTION, L"3", L"5"},
                         {DEVICES_SECTION, L"4", L"2"},
                         {DEVICES_SECTION, L"5", L"spoilt"},
                         {DEVICES_SECTION, L"6", L"6"},
                         {LOGGING_SECTION, L"Orv", L"1"},
                         {LOGGING_SECTION, L"Raw", L"0"},
                         {VESSEL_SECTION, vesselKeys[0], L"1"},
                         {VESSEL_SECTION, vesselKeys[1], L"4"},
                         {VESSEL_SECTION, vesselKeys[2], L"0"},
                         {VESSEL_SECTION, vesselKeys[6], L"1"},
                         {PROGRAMS_SECTION, L"MASTER", L"1,orvmaster"},
                         {TOOL_SECTION, L"Ruler", L"0"}});
    installation.UserDef({{DEVICES_SECTION, L"3", L"3"},
                          {DEVICES_SECTION, L"4", L"8"},
                          {DEVICES_SECTION, L"6", L"spoilt"},
                          {LOGGING_SECTION, L"Orv", L"0"},
                          {VESSEL_SECTION, vesselKeys[0], L"0"},
                          {VESSEL_SECTION, vesselKeys[1], L"1"},
                          {VESSEL_SECTION, vesselKeys[2], L"1"},
                          {NETWORK_SECTION, networkKeys[0], L"1"},
                          {NETWORK_SECTION, networkKeys[1], L"2"},
                          {NETWORK_SECTION, networkKeys[2], L"6"}});
    ASSERT_TRUE(installation.Start(true));
    const struct {
        const char* what;
        int value, status;
        std::function<bool(int&)> query;
    } rows[] = {
        {"lower in the user's", 3, 0, [&](int& n) { return search.GetDeviceMax(3, n); }},
        {"lower in the application's", 2, 0, [&](int& n) { return search.GetDeviceMax(4, n); }},
        {"in neither", kNoLimit, 0, [&](int& n) { return search.GetDeviceMax(7, n); }},
        {"section in neither", kNoLimit, 0, [&](int& n) { return search.GetLayerMax(L"Depth", n); }},
        {"spoilt in the application's", -7, kSearchAppDefFailed, [&](int& n) { return search.GetDeviceMax(5, n); }},
        {"spoilt in the user's", -7, kSearchUserDefFailed, [&](int& n) { return search.GetDeviceMax(6, n); }},
        {"unknown view", -7, kSearchAppDefFailed, [&](int& n) { return search.GetViewMax(L"x", n); }}};
    for (const auto& row : rows) {
        int value = -7;
        EXPECT_EQ(row.query(value), row.status == 0) << row.what;
        EXPECT_EQ(value, row.value) << row.what;
        EXPECT_EQ(search.GetErrorStatus(), row.status) << row.what;
    }
    bool a = true, b = true, c = false;
    int n = 0, m = 0;
    EXPECT_TRUE(search.GetLoggingPermission(0, a) && !a && search.GetLoggingPermission(1, b) && !b);
    EXPECT_TRUE(search.GetLoggingPermission(2, c) && c && !search.GetLoggingPermission(23, c));
    EXPECT_TRUE(search.GetVesselPermissions(a, n, b, m, c) && !a && n == 4 && !b && m == kNoLimit && c);
    EXPECT_TRUE(search.GetNetworkPermissions(a, n, m) && a && n == 2 && m == 6);
    EXPECT_TRUE(search.GetSimulationFlag(a) && a && !search.GetDisableLoggingFlag(a) && !a);
    std::wstring name;
    EXPECT_TRUE(search.GetExecutableName(0, name) && name == L"orvmaster" && !search.GetExecutableName(L"PLOT", name));
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownName);
    CToolList::GetToolList().RegisterTool(L"Ruler");
    EXPECT_FALSE(search.GetToolPermission());
    CToolList::GetToolList().RegisterTool(L"Compass");
    EXPECT_TRUE(search.GetToolPermission());
    CToolList::GetToolList().Clear();
}

TEST_F(DataSearchStart, SystemFolderComesFromTheBrandingWhenNotGiven) {
    BrandingConfig& branding = BrandingConfig::Instance();
    const BrandingConfig before = branding;
    branding.SetRootProgramDataFolder(system.substr(0, system.rfind(L"system")));
    branding.SetProgramDataFolder(L"system/");
    std::wstring folder;
    EXPECT_TRUE(Start(L"", L"") && search.GetDataPathInfo(kLocationSystemData, folder) && folder == system);
    branding = before;
}

TEST_F(DataSearchStart, SettingsAreReadOnceAFolder) {
    OrvIniFile_IO settings;
    bool check = false;
    EXPECT_TRUE(settings.SetShowToolTip(true)) << "memory only";
    EXPECT_FALSE(settings.GetShowToolTip(check) || settings.GetPMCheck(check, true) || check);
    ASSERT_TRUE(settings.Initialise(system));
    EXPECT_TRUE(!settings.GetPMCheck(check, true) && check) << "the default that is told";
    EXPECT_TRUE(settings.SetPMCheck(false, true) && settings.SetUserLanguage(L" 409"));
    EXPECT_FALSE(settings.GetPMCheck(check, false)) << "the other section";
    ASSERT_TRUE(settings.Initialise(system));
    std::wstring language;
    EXPECT_TRUE(settings.GetPMCheck(check, true) && !check && settings.GetUserLanguage(language) &&
                language == L" 409");
    EXPECT_FALSE(settings.GetLanguage(language)) << "the system's language is another item";
    EXPECT_EQ(settings.Verify(), ProtectedFileObject::Verification::Valid) << "each change signs";
}

/// A project that notes how it is opened.
class NotedProject : public ProjectDefinition {
public:
    bool Init(const std::wstring& path, bool saveCoordSys) override {
        opened = path + (saveCoordSys ? L"|save" : L"");
        return SetItem(OPTIONS_SECTION, SHOW_NO_DETECTION_BEAMS, 3, true) && succeeds;
    }
    std::wstring opened;
    bool succeeds = true;
};

TEST_F(DataSearchStart, OpensTheProject) {
    const auto project = std::make_shared<NotedProject>();
    search.SetProjectDefinition(project);
    search.SetProjectDefinition(nullptr);
    ASSERT_TRUE(installation.Start());
    Multibeam::SetShowNoDetectionBeams(0);
    EXPECT_TRUE(search.InitProject(L"", true));
    EXPECT_EQ(project->opened, installation.ProjectFolder() + L"Project.prj|save");
    EXPECT_EQ(Multibeam::GetShowNoDetectionBeams(), 3);

    project->succeeds = false;
    EXPECT_FALSE(search.InitProject(L"Job.1", false));
    EXPECT_EQ(project->opened, installation.ProjectsRoot() + L"Job.1/Project.prj");
    EXPECT_EQ(search.GetCurrentProjectName(), L"Job.1") << "noted before the project is known to exist";

    project->succeeds = true;
    installation.RemoveSetting(pathKeys[kLocationProjects]);
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(search.InitProject(L"Quay", false));
    EXPECT_EQ(project->opened, program + L"Quay/Project.prj");
    std::wstring path;
    EXPECT_TRUE(search.GetOrvIni().GetProjectPath(path) && path == program);

    installation.RemoveSetting(pathKeys[kLocationProject]);
    ASSERT_TRUE(installation.Start());
    EXPECT_FALSE(search.InitProject(L"", false));
}

TEST_F(DataSearchStart, MakesTheSmallProjectOnFirstUse) {
    const NoticeRecorder notices;  // no coordinate module is there
    EXPECT_FALSE(search.InitProjectSUI());
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(search.InitProjectSUI() && test::Exists(system + L"ProjectSUI.prj") && search.InitProjectSUI());
}

}  // namespace
}  // namespace orv
