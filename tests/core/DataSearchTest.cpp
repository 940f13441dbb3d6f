#include "core/DataSearch.h"

#include <functional>

#include "core/CFileTypeList.h"
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

using test::TestInstallation;
using test::WriteItems;

class DataSearchStart : public testing::Test {
protected:
    bool Supported(unsigned id) {
        bool supported = false;
        EXPECT_TRUE(installation.Search().GetFileSupportFlag(id, supported));
        return supported;
    }
    TestInstallation installation;
};

TEST_F(DataSearchStart, FailuresTellWhy) {
    const std::wstring& system = installation.SystemFolder();
    const std::wstring& program = installation.ProgramFolder();
    const struct {
        const char* what;
        std::function<void()> spoil;
        bool needAppDef, userDef;
        int status;
    } rows[] = {
        {"no user profile", [] {}, false, true, kSearchNoUserProfile},
        {"no user definition",
         [&] {
             WriteItems(system + L"ORV.ini", {{USER_PROFILE_SECTION, USER_PROFILE_SECTION, L"nobody.upd"}});
         },
         false, true, kSearchNoUserDef},
        {"no general folder", [&] { installation.RemoveSetting(pathKeys[1]); }, true, false, kSearchNoAppDefLocation},
        {"no file types", [&] { SetProgramPath(program + L"sub/surveyor"); }, false, false, kSearchNoSettings},
        {"no settings", [&] { SetProgramPath(program + L"surveyor"); }, false, false, kSearchNoSettings},
        {"no program", [] { SetProgramPathMissing(); }, false, false, kSearchNoProgramPath},
        {"program path too long", [&] { SetProgramPath(L"/" + std::wstring(260, L'x')); }, false, false,
         kSearchNoProgramPath},
    };
    for (const auto& row : rows) {
        row.spoil();
        const bool lost = std::string_view(row.what) == "no settings";
        testing::internal::CaptureStdout();
        EXPECT_FALSE(installation.Search().Initialise(lost ? program : system, row.needAppDef,
                                                      row.needAppDef ? L"navigate" : L"", row.userDef, L"", L""))
            << row.what;
        const std::string said = testing::internal::GetCapturedStdout();
        EXPECT_EQ(said.starts_with("FileOpen with ORV.ini failed: "), lost) << row.what << said;
        EXPECT_EQ(installation.Search().GetErrorStatus(), row.status) << row.what;
        EXPECT_FALSE(installation.Search().IsInit()) << row.what;
    }
}

TEST_F(DataSearchStart, NameIsAskedForBeforeAnythingIsRead) {
    EXPECT_FALSE(installation.Search().Initialise(L"/nowhere/", true, L"", false, L"", L""));
    EXPECT_EQ(installation.Search().GetErrorStatus(), kSearchNoAppDefName);
    std::wstring untouched = L"kept";
    EXPECT_FALSE(installation.Search().GetFullPath(13, untouched) ||
                 installation.Search().InitProject(L"Harbour", false));
    EXPECT_EQ(untouched, L"kept");
    EXPECT_EQ(installation.Search().GetErrorStatus(), kSearchNoAppDefName) << "a query must not hide why";
}

TEST_F(DataSearchStart, AnAbsentDefinitionForbidsEverything) {
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(Supported(14));
    DataSearch& search = installation.Search();
    ASSERT_TRUE(search.Initialise(installation.SystemFolder(), true, L"elsewhere", false, L"", L""));
    for (unsigned id = 0; id < kFileTypeCount; ++id) {
        bool supported = false;
        search.GetFileSupportFlag(id, supported);
        EXPECT_FALSE(supported) << id;
    }
    int most = 7;
    EXPECT_FALSE(search.GetViewMax(0, most));
    EXPECT_EQ(search.GetErrorStatus(), kSearchAppDefFailed);
    std::wstring key;
    EXPECT_FALSE(search.GetCoordSysKey(key));
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownName);
    search.DisableAppDefReq();
    EXPECT_TRUE(search.GetViewMax(0, most) && most == kNoLimit);

    WriteItems(installation.GeneralFolder(kLocationAppDefs) + L"elsewhere.adf", {{FILES_SECTION, L"Route", L"0"}});
    ASSERT_TRUE(search.Initialise(installation.SystemFolder(), true, L"elsewhere", false, L"", L""));
    EXPECT_TRUE(Supported(15) && !Supported(14)) << "the second folder";
}

TEST_F(DataSearchStart, AnEditedDefinitionIsSignedAgain) {
    installation.AppDef({{FILES_SECTION, L"Route", L"1"}});
    std::string text = test::ReadBytes(installation.AppDefPath());
    text.replace(text.find("Route=1"), 7, "Route=0");
    test::WriteBytes(installation.AppDefPath(), text);
    ASSERT_TRUE(installation.Start());
    EXPECT_FALSE(Supported(14));
    ProtectedFileObject signedAgain;
    EXPECT_TRUE(signedAgain.FileOpen(installation.AppDefPath(), true, kOpenRead));
}

TEST_F(DataSearchStart, FileFlagsOfBothDefinitionsCount) {
    installation.AppDef({{FILES_SECTION, L"Route", L"1,0,1,8"}, {FILES_SECTION, L"RunLine", L"1,1,0"}});
    installation.UserDef({{FILES_SECTION, L"RunLine", L"1,0,1"}, {FILES_SECTION, L"Units", L"0,1,1"}});
    ASSERT_TRUE(installation.Start(true)) << "Profile and Unknown are rows of the key table";
    const struct {
        unsigned id;
        bool supported, create, select;
    } rows[] = {{14, true, false, true}, {15, true, false, false}, {8, false, true, true}, {16, true, true, true}};
    for (const auto& row : rows) {
        bool supported = false, create = false, select = false;
        EXPECT_TRUE(installation.Search().GetFilePermissions(row.id, supported, create, select));
        EXPECT_TRUE(supported == row.supported && create == row.create && select == row.select) << row.id;
    }
    bool a = true, b = true, c = true;
    EXPECT_FALSE(installation.Search().GetFilePermissions(147, a, b, c));
    EXPECT_EQ(installation.Search().GetErrorStatus(), kSearchUnknownFileType);
    EXPECT_FALSE(a || b || c);
    int location = -1;
    EXPECT_TRUE(installation.Search().GetFileLocation(14, location) && location == 2)
        << "a row's location isn't applied";
}

TEST_F(DataSearchStart, TheNarrowerDefinitionWins) {
    installation.AppDef({{DEVICES_SECTION, L"3", L"5"},
                         {DEVICES_SECTION, L"4", L"2"},
                         {DEVICES_SECTION, L"5", L"spoilt"},
                         {DEVICES_SECTION, L"6", L"6"},
                         {LOGGING_SECTION, loggingKeys[0], L"1"},
                         {LOGGING_SECTION, loggingKeys[1], L"0"},
                         {LOGGING_SECTION, loggingKeys[2], L"1"},
                         {VESSEL_SECTION, vesselKeys[0], L"1"},
                         {VESSEL_SECTION, vesselKeys[1], L"4"},
                         {VESSEL_SECTION, vesselKeys[6], L"1"},
                         {PROGRAMS_SECTION, L"MASTER", L"1,orvmaster"},
                         {TOOL_SECTION, L"Ruler", L"0"}});
    installation.UserDef({{DEVICES_SECTION, L"3", L"3"},
                          {DEVICES_SECTION, L"4", L"8"},
                          {DEVICES_SECTION, L"6", L"spoilt"},
                          {LOGGING_SECTION, loggingKeys[0], L"0"},
                          {VESSEL_SECTION, vesselKeys[0], L"0"},
                          {VESSEL_SECTION, vesselKeys[1], L"1"},
                          {NETWORK_SECTION, networkKeys[0], L"1"},
                          {NETWORK_SECTION, networkKeys[1], L"2"},
                          {NETWORK_SECTION, networkKeys[2], L"6"}});
    ASSERT_TRUE(installation.Start(true));
    const DataSearch& search = installation.Search();
    const struct {
        const char* what;
        bool result;
        int value, status;
        std::function<bool(int&)> query;
    } rows[] = {
        {"lower in the user's", true, 3, 0, [&](int& n) { return search.GetDeviceMax(3, n); }},
        {"lower in the application's", true, 2, 0, [&](int& n) { return search.GetDeviceMax(4, n); }},
        {"in neither", true, kNoLimit, 0, [&](int& n) { return search.GetDeviceMax(7, n); }},
        {"section in neither", true, kNoLimit, 0, [&](int& n) { return search.GetLayerMax(L"Depth", n); }},
        {"spoilt in the application's", false, -7, kSearchAppDefFailed,
         [&](int& n) { return search.GetDeviceMax(5, n); }},
        {"spoilt in the user's", false, -7, kSearchUserDefFailed, [&](int& n) { return search.GetDeviceMax(6, n); }},
        {"unknown view", false, -7, kSearchAppDefFailed, [&](int& n) { return search.GetViewMax(L"x", n); }},
    };
    for (const auto& row : rows) {
        int value = -7;
        EXPECT_EQ(row.query(value), row.result) << row.what;
        EXPECT_EQ(value, row.value) << row.what;
        EXPECT_EQ(search.GetErrorStatus(), row.status) << row.what;
    }
    const bool logging[] = {false, false, true, true};
    for (int id = 0; id < 4; ++id) {
        bool out = !logging[id];
        EXPECT_TRUE(search.GetLoggingPermission(id, out)) << id;
        EXPECT_EQ(out, logging[id]) << id;
    }
    bool multi = true, relative = false, dynamic = false, support = false, tool = true;
    int multiMax = 0, relativeMax = 0, remotes = 0, presentations = 0;
    EXPECT_TRUE(search.GetVesselPermissions(multi, multiMax, relative, relativeMax, dynamic));
    EXPECT_TRUE(!multi && multiMax == 4 && relative && relativeMax == kNoLimit && dynamic);
    EXPECT_TRUE(search.GetNetworkPermissions(support, remotes, presentations));
    EXPECT_TRUE(support && remotes == 2 && presentations == 6);
    EXPECT_TRUE(search.GetSimulationFlag(multi) && multi);
    EXPECT_FALSE(search.GetDisableLoggingFlag(multi) || multi);
    std::wstring name;
    EXPECT_TRUE(search.GetExecutableName(0, name) && name == L"orvmaster");
    EXPECT_FALSE(search.GetExecutableName(L"PLOT", name));
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownName);
    EXPECT_TRUE(search.GetToolPermission(L"Ruler", tool) && !tool);
    CToolList::GetToolList().RegisterTool(L"Ruler");
    EXPECT_FALSE(search.GetToolPermission());
    CToolList::GetToolList().RegisterTool(L"Compass");
    EXPECT_TRUE(search.GetToolPermission());
    CToolList::GetToolList().Clear();
}

TEST_F(DataSearchStart, SystemFolderComesFromTheBrandingWhenNotGiven) {
    BrandingConfig& branding = BrandingConfig::Instance();
    const BrandingConfig before = branding;
    const std::wstring& system = installation.SystemFolder();
    branding.SetRootProgramDataFolder(system.substr(0, system.rfind(L"system")));
    branding.SetProgramDataFolder(L"system/");
    EXPECT_TRUE(installation.Search().Initialise(L"", false, L"", false, L"", L""));
    std::wstring folder;
    EXPECT_TRUE(installation.Search().GetDataPathInfo(kLocationSystemData, folder) && folder == system);
    branding = before;
}

TEST_F(DataSearchStart, SettingsAreReadOnceAFolder) {
    OrvIniFile_IO settings;
    bool check = false;
    EXPECT_TRUE(settings.SetShowToolTip(true)) << "memory only";
    EXPECT_FALSE(settings.GetShowToolTip(check) || settings.GetPMCheck(check, true) || check);
    ASSERT_TRUE(settings.Initialise(installation.SystemFolder()));
    EXPECT_FALSE(settings.GetPMCheck(check, true));
    EXPECT_TRUE(check) << "the default that is told";
    EXPECT_TRUE(settings.SetPMCheck(false, true) && settings.SetUserLanguage(L" 409"));
    EXPECT_FALSE(settings.GetPMCheck(check, false)) << "the other section";
    ASSERT_TRUE(settings.Initialise(installation.SystemFolder()));
    std::wstring language;
    EXPECT_TRUE(settings.GetPMCheck(check, true) && !check && settings.GetUserLanguage(language) &&
                language == L" 409");
    EXPECT_FALSE(settings.GetLanguage(language)) << "the system's language is another item";
    EXPECT_EQ(settings.Verify(), ProtectedFileObject::Verification::Valid) << "each change signs";
    testing::internal::CaptureStdout();
    EXPECT_FALSE(settings.Initialise(installation.ProgramFolder()) || settings.IsInit());
    testing::internal::GetCapturedStdout();
}

/// A project that notes how it is opened.
class NotedProject : public ProjectDefinition {
public:
    using ProjectDefinition::Init;
    bool Init(const std::wstring& path, bool saveCoordSys) override {
        opened = path + (saveCoordSys ? L"|save" : L"");
        return SetItem(OPTIONS_SECTION, SHOW_NO_DETECTION_BEAMS, 3, true) && succeeds;
    }
    std::wstring opened;
    bool succeeds = true;
};

TEST_F(DataSearchStart, OpensTheProject) {
    DataSearch& search = installation.Search();
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
    EXPECT_EQ(project->opened, installation.ProgramFolder() + L"Quay/Project.prj");
    std::wstring path;
    EXPECT_TRUE(search.GetOrvIni().GetProjectPath(path) && path == installation.ProgramFolder());

    installation.RemoveSetting(pathKeys[kLocationProject]);
    ASSERT_TRUE(installation.Start());
    EXPECT_FALSE(search.InitProject(L"", false));
    EXPECT_EQ(search.GetCurrentProjectName(), L"");
}

TEST_F(DataSearchStart, MakesTheSmallProjectOnFirstUse) {
    const NoticeRecorder notices;  // no coordinate module is there
    EXPECT_FALSE(installation.Search().InitProjectSUI());
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(installation.Search().InitProjectSUI());
    EXPECT_TRUE(test::Exists(installation.SystemFolder() + L"ProjectSUI.prj"));
    EXPECT_TRUE(installation.Search().InitProjectSUI());
}

}  // namespace
}  // namespace orv
