#include "core/ConfigKeys.h"

#include <tuple>
#include "core/DataSearch.h"
#include "platform/notify/Notices.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"
#include "users/UserAccessLevelsFile.h"

namespace orv {
namespace {

using Names = std::vector<std::wstring>;

class DataSearchRights : public testing::Test {
protected:
    DataSearchRights() {
        EXPECT_TRUE(installation.Start());
        test::WriteItems(path, {{USERLEVELS_SECTION, USERLEVELS_KEY, L"Administrator; Surveyor ;Guest"},
                                {L"Surveyor", L"ID_OPEN", L"Open;10;1,1,0"},
                                {L"Surveyor", L"ID_SAVE", L"Save; 11 ;1, 0 ,0"},
                                {L"Surveyor", L"ID_SHORT", L"Short list;13;0"},
                                {L"Surveyor", L"ID_EMPTY", L"No list;14;"},
                                {L"Surveyor", L"OP_GRID", L"Grid;15;1,1,0"},
                                {L"Surveyor", L"id_lower", L"Lower;16;0,0,0"},
                                {L"Plotter", L"ID_PLOT", L"Plot;20;1,1,0"}});
    }
    /// What a level may not use after it has logged in.
    std::wstring Denied(const wchar_t* level, const wchar_t* definition = L"navigate") {
        search.GetProjectDefinition().SetAppDefinition(definition);
        search.SetUserAccessLevel(level);
        search.LoadAllowedItems();
        return Denied();
    }
    std::wstring Denied() {
        std::wstring ids;
        for (int id = 10; id < 17; ++id) ids += search.PermissionToUseItem(id) ? L"" : std::to_wstring(id) + L" ";
        return search.IsUalIniValid() ? ids : L"not valid " + ids;
    }
    test::TestInstallation installation;
    DataSearch& search = installation.Search();
    const std::wstring path = installation.SystemFolder() + L"navigate.ual";
};

TEST_F(DataSearchRights, LevelsDenyItems) {
    EXPECT_EQ(Denied(), L"not valid ") << "nothing loaded";
    EXPECT_EQ(Denied(L"Administrator"), L"13 ");
    EXPECT_EQ(Denied(L"Surveyor"), L"11 ") << "beyond the end of 13's list";
    EXPECT_EQ(Denied(L"guest"), L"13 ") << "unknown: the first level";
    EXPECT_EQ(Denied(L"Guest"), L"10 11 15 ");
    EXPECT_FALSE(search.PermissionToUseOption(15) || search.PermissionToUseItem(L"PLOTTER", 20));
    search.SetUserAccessLevel(L"Surveyor");
    EXPECT_EQ(Denied(), L"10 11 15 ") << "until the items are loaded again";
}

TEST_F(DataSearchRights, TheTwoLevelIndicesDiffer) {
    Denied(L"Guest");
    EXPECT_TRUE(search.GetLevelIndex(L"Guest") == 2 && search.GetLevelIndex(L"Nobody") == 0);
    UserAccessLevelsFile file;
    ASSERT_TRUE(file.ReadUserAccessLevelsFile() && file.ReadUserAccessLevelsFile());
    EXPECT_TRUE(file.UserAccessLevelIndex(L"Guest") == 2 && file.UserAccessLevelIndex(L"Nobody") == -1);
    EXPECT_EQ(file.Applications(), (Names{L"Surveyor", L"Plotter"}));
    EXPECT_EQ(file.GetItems(L"plotter", L"ID"), Names{L"ID_PLOT = Plot;20;1,1,0"});
}

TEST_F(DataSearchRights, ItemsOfALevel) {
    Denied(L"Administrator");
    const std::tuple<int, int, const wchar_t*, std::vector<int>> rows[] = {
        {0, 1, L"", {10, 11}}, {0, 0, L"", {13}}, {1, -1, L"ID", {10, 11}}, {2, 0, L"OP", {15}}, {-1, -1, L"", {}}};
    for (const auto& [level, value, prefix, theIds] : rows) {
        std::vector<int> ids{99};
        search.GetAllAppItems(level, value, prefix, ids);
        EXPECT_EQ(ids, theIds) << level << " " << value;
    }
}

TEST_F(DataSearchRights, WithoutAValidFileEverythingIsAllowed) {
    const NoticeRecorder notices;  // each refused file is reported
    const std::string good = test::ReadBytes(path);
    test::WriteBytes(installation.SystemFolder() + L"copy.ual", good);
    for (const wchar_t* definition : {L"copy", L"missing", L""}) {
        EXPECT_EQ(Denied(L"Guest", definition), L"not valid ") << definition;
    }
    std::string edited = good;
    edited.replace(edited.find("10;1,1,0"), 8, "10;1,1,1");
    test::WriteBytes(path, edited);
    EXPECT_EQ(Denied(L"Guest"), L"not valid ");
    EXPECT_EQ(test::ReadBytes(path), edited) << "never signed again";
    test::WriteBytes(path, good);
    EXPECT_EQ(Denied(L"Guest"), L"10 11 15 ");
}

TEST_F(DataSearchRights, RightsNarrowPermissions) {
    installation.AppDef({{GUIDANCE_SECTION, guidanceKeys[0], L"0"},
                         {USER_ACCESS_LEVELS_SECTION, USER_ACCESS_LEVELS_SUPPORT, L"1"},
                         {PROGRAMS_SECTION, L"PLOT", L"0,orvplot"}});
    EXPECT_FALSE(search.UseUserAccessLevels());
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(search.UseUserAccessLevels());
    Denied(L"Guest");
    bool a = true, b = true, c = false;
    EXPECT_TRUE(search.GetGuidancePermission(0, a) && !a && search.GetGuidancePermission(1, b, 10) && !b);
    EXPECT_TRUE(search.GetGuidancePermission(1, c) && c);
    a = b = true;
    EXPECT_TRUE(search.GetExecutablePermission(L"PLOT", a) && !a && search.GetExecutablePermission(0, b, 11) && !b);
    EXPECT_TRUE(search.GetGuidancePermission(20) && !search.GetGuidancePermission(10));
}

TEST_F(DataSearchRights, RestoresTheBackup) {
    const std::wstring live = installation.SystemFolder() + L"UserAccessLevels.ini";
    test::WriteBytes(live, "spoilt");
    test::WriteBytes(installation.SystemFolder() + L"UserAccessLevels.bak", "good");
    UserAccessLevelsFile().RestoreFromBackupFile();
    EXPECT_EQ(test::ReadBytes(live), "good");
}

}  // namespace
}  // namespace orv
