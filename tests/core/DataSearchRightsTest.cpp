#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"
#include "users/UserAccessLevelsFile.h"

namespace orv {
namespace {

class DataSearchRights : public testing::Test {
protected:
    DataSearchRights() {
        EXPECT_TRUE(installation.Start());
        search.GetProjectDefinition().SetAppDefinition(L"navigate");
        test::WriteItems(Path(), {{USERLEVELS_SECTION, USERLEVELS_KEY, L"Administrator; Surveyor ;Guest"},
                                  {L"Surveyor", L"ID_OPEN", L"Open;10;1,1,0"},
                                  {L"Surveyor", L"ID_SAVE", L"Save; 11 ;1, 0 ,0"},
                                  {L"Surveyor", L"ID_THREE", L"Three parts;12"},
                                  {L"Surveyor", L"ID_SHORT", L"Short list;13;0"},
                                  {L"Surveyor", L"ID_EMPTY", L"No list;14;"},
                                  {L"Surveyor", L"OP_GRID", L"Grid;15;1,1,0"},
                                  {L"Surveyor", L"id_lower", L"Lower;16;0,0,0"},
                                  {L"Plotter", L"ID_PLOT", L"Plot;20;1,1,0"}});
    }
    std::wstring Path() const { return installation.SystemFolder() + L"navigate.ual"; }
    void Login(const wchar_t* level) {
        search.SetUserAccessLevel(level);
        search.LoadAllowedItems();
    }
    std::wstring Denied() {
        std::wstring ids;
        for (int id = 10; id < 17; ++id) ids += search.PermissionToUseItem(id) ? L"" : std::to_wstring(id) + L" ";
        return ids;
    }
    test::TestInstallation installation;
    DataSearch& search = installation.Search();
};

TEST_F(DataSearchRights, LevelsDenyItems) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"Administrator", L"13 "},
        {L"Surveyor", L"11 "},
        {L"Guest", L"10 11 15 "},
        {L"guest", L"13 "},  // unknown: the first level
    };
    for (const auto& [level, denied] : rows) {
        Login(level);
        EXPECT_TRUE(search.IsUalIniValid());
        EXPECT_EQ(Denied(), denied) << level;
    }
    Login(L"Guest");
    EXPECT_FALSE(search.PermissionToUseOption(15) || search.PermissionToUseItem(L"PLOTTER", 20));
    EXPECT_TRUE(search.PermissionToUseItem(L"Elsewhere", 10) && search.PermissionToUseItem(20));
    search.SetUserAccessLevel(L"Surveyor");
    EXPECT_EQ(Denied(), L"10 11 15 ") << "until the items are loaded again";
}

TEST_F(DataSearchRights, TheTwoLevelIndicesDiffer) {
    EXPECT_EQ(search.GetLevelIndex(L"Guest"), 2);
    EXPECT_EQ(search.GetLevelIndex(L"Nobody"), 0);
    EXPECT_EQ(search.GetUserLevels(), (std::vector<std::wstring>{L"Administrator", L"Surveyor", L"Guest"}));
    UserAccessLevelsFile file;
    ASSERT_TRUE(file.ReadUserAccessLevelsFile() && file.ReadUserAccessLevelsFile());
    EXPECT_EQ(file.UserAccessLevelIndex(L"Guest"), 2);
    EXPECT_EQ(file.UserAccessLevelIndex(L"Nobody"), -1);
    EXPECT_EQ(file.Applications(), (std::vector<std::wstring>{L"Surveyor", L"Plotter"}));
    EXPECT_EQ(file.GetItems(L"plotter", L"ID"), std::vector<std::wstring>{L"ID_PLOT = Plot;20;1,1,0"});
    EXPECT_TRUE(file.GetItems(L"plotter", L"id").empty() && file.GetItems(L"Checksum", L"").empty());
}

TEST_F(DataSearchRights, ItemsOfALevel) {
    Login(L"Administrator");
    const struct {
        int level, value;
        const wchar_t* prefix;
        std::vector<int> ids;
    } rows[] = {{0, 1, L"", {10, 11}}, {0, 0, L"", {13}}, {1, -1, L"ID", {10, 11}},  {2, 0, L"OP", {15}},
                {3, -1, L"", {}},      {-1, -1, L"", {}}, {0, -1, L"", {10, 11, 13}}};
    for (const auto& row : rows) {
        std::vector<int> ids{99};
        search.GetAllAppItems(row.level, row.value, row.prefix, ids);
        EXPECT_EQ(ids, row.ids) << row.level << " " << row.value;
    }
}

TEST_F(DataSearchRights, WithoutAValidFileEverythingIsAllowed) {
    EXPECT_TRUE(search.PermissionToUseItem(10)) << "nothing loaded";
    Login(L"Guest");
    EXPECT_FALSE(search.PermissionToUseItem(10));
    // Copied under another name, edited, gone, and a project that names none.
    search.GetProjectDefinition().SetAppDefinition(L"other");
    test::WriteBytes(installation.SystemFolder() + L"other.ual", test::ReadBytes(Path()));
    Login(L"Guest");
    EXPECT_TRUE(search.PermissionToUseItem(10) && !search.IsUalIniValid());

    search.GetProjectDefinition().SetAppDefinition(L"navigate");
    const std::string good = test::ReadBytes(Path());
    std::string edited = good;
    edited.replace(edited.find("10;1,1,0"), 8, "10;1,1,1");
    test::WriteBytes(Path(), edited);
    Login(L"Guest");
    EXPECT_TRUE(search.PermissionToUseItem(11) && !search.IsUalIniValid());
    EXPECT_EQ(test::ReadBytes(Path()), edited) << "never signed again";
    EXPECT_TRUE(search.GetUserLevels().empty());

    test::WriteBytes(Path(), good);
    Login(L"Guest");
    EXPECT_FALSE(search.PermissionToUseItem(11));
    for (const wchar_t* name : {L"missing", L""}) {
        search.GetProjectDefinition().SetAppDefinition(name);
        Login(L"Guest");
        EXPECT_TRUE(search.PermissionToUseItem(11) && !search.IsUalIniValid()) << name;
    }
}

TEST_F(DataSearchRights, RightsNarrowPermissions) {
    installation.AppDef({{GUIDANCE_SECTION, guidanceKeys[0], L"0"},
                         {USER_ACCESS_LEVELS_SECTION, USER_ACCESS_LEVELS_SUPPORT, L"1"},
                         {PROGRAMS_SECTION, L"PLOT", L"0,orvplot"}});
    EXPECT_FALSE(search.UseUserAccessLevels());
    ASSERT_TRUE(installation.Start());
    EXPECT_TRUE(search.UseUserAccessLevels());
    Login(L"Guest");
    bool route = true, lines = true, free = false, plot = true, master = false;
    EXPECT_TRUE(search.GetGuidancePermission(0, route) && search.GetGuidancePermission(1, lines, 10) &&
                search.GetGuidancePermission(1, free));
    EXPECT_TRUE(!route && !lines && free);
    EXPECT_TRUE(search.GetExecutablePermission(L"PLOT", plot) && search.GetExecutablePermission(0, master, 20));
    EXPECT_TRUE(!plot && master);
    EXPECT_TRUE(search.GetGuidancePermission(20) && !search.GetGuidancePermission(10));
    for (const std::wstring_view key : guidanceKeys) installation.AppDef({{GUIDANCE_SECTION, key, L"0"}});
    ASSERT_TRUE(installation.Start());
    EXPECT_FALSE(search.GetGuidancePermission(20));
}

TEST_F(DataSearchRights, RestoresTheBackup) {
    const std::wstring live = installation.SystemFolder() + L"UserAccessLevels.ini";
    test::WriteBytes(live, "spoilt");
    test::WriteBytes(installation.SystemFolder() + L"UserAccessLevels.bak", "good");
    UserAccessLevelsFile file;
    file.RestoreFromBackupFile();
    EXPECT_EQ(test::ReadBytes(live), "good");
}

}  // namespace
}  // namespace orv
