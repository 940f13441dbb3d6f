#include "project/AppConfig.h"

#include <cstring>

#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/service/Translator.h"
#include "project/AppSelection.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

AppConfig Made(const char* text) {
    AppConfig config;
    EXPECT_TRUE(config.FileOpen(memfile(text, strlen(text), textencoding::utf8), L"Job[navigate].acf"));
    return config;
}

TEST(AppConfig, VesselsComeInOrderWhateverTheirNumbers) {
    AppConfig config =
        Made("[Vessel(12)]\n[Vessel(0)]\n[Vessel(3)]\n[Vessel(+4)]\n[Vessel(5) ]\n[Vessel(4294967296)]\n");
    std::wstring ids;
    unsigned id = 99;
    for (bool more = config.GetFirstVesselId(id); more; more = config.GetNextVesselId(id))
        ids += std::to_wstring(id) + L" ";
    EXPECT_EQ(ids, L"3 12 ");
    EXPECT_TRUE(config.SetVesselEnable(13, true));
    EXPECT_FALSE(config.GetNextVesselId(id)) << "a list is as fresh as its scan";
    config.RemoveAllVessels();
    EXPECT_FALSE(config.GetFirstVesselId(id) || config.HasSection(L"Vessel(0)"));
    EXPECT_EQ(id, 12u);
    EXPECT_TRUE(config.HasSection(L"Vessel(+4)"));
}

TEST(AppConfig, LayoutsAreOfAUserOrCommon) {
    AppConfig config = Made(
        "[ACServer]\nName=ac\nPort=7\nLayout=common\nLayout(ab)=own\nUserInterfaceProfile=Dredge\n"
        "[Presentation(1)]\nUserInterfaceProfile=Mate[Presentation]\nLayout=p\n");
    struct Row {
        const wchar_t *user, *left, *layout;
    };
    for (const Row& row : {Row{L"", L"", L"common"}, Row{L"[a=b]", L"ab", L"own"}, Row{L"c=", L"c", L"common"}}) {
        std::wstring name, layout, profile, user = row.user;
        unsigned port = 0;
        EXPECT_TRUE(config.GetACServer(name, port, layout, profile, user));
        EXPECT_EQ(user + L"," + layout + L"," + profile + L"," + name,
                  std::wstring(row.left) + L"," + row.layout + L",Dredge[AcqComp],ac");
    }
    std::wstring name = L"kept", layout, profile, user;
    bool enable = false;
    EXPECT_FALSE(config.GetPresentation(1, name, layout, profile, user, enable)) << "it has no name";
    EXPECT_EQ(name + layout + profile, L"keptpMate[Presentation]");
    EXPECT_TRUE(enable);
    profile.clear();
    EXPECT_FALSE(config.GetPresentation(2, name, layout, profile, user, enable));
    EXPECT_EQ(profile, L"Default[Presentation]");
    user = L"[x]";
    EXPECT_TRUE(config.SetPresentation(2, L"pc", L"wide", L"M", user, false));
    EXPECT_TRUE(config.GetPresentation(2, name, layout, profile, user, enable));
    EXPECT_EQ(name + L" " + layout + L" " + user, L"pc wide x");
    EXPECT_FALSE(enable);
    unsigned port = 5;
    EXPECT_FALSE(config.GetMaster(name, port, profile));
    EXPECT_EQ(profile, L"Default[Master]");
}

TEST(AppConfig, FindsRemotesAndWhatStandsOnThem) {
    AppConfig config = Made(
        "[Remote(1)]\nName=Bow\nPort=1\n[Remote(2)]\nName=Stern\n[Remote(4)]\nName=far\n"
        "[Presentation(1)]\nName=Remote(2)\n[Presentation(2)]\nName=bridge\n"
        "[Presentation(3)]\nName=REMOTE(2)\n");
    EXPECT_EQ(config.GetNumEntries(L"Remote(%d)"), 2);
    EXPECT_EQ(config.GetNumEntries(L"Master(%d)"), -1);
    EXPECT_EQ(config.GetNumEntries(L"Remote(1)"), -1) << "a format without a number must not count for ever";
    int no = 0;
    EXPECT_TRUE(config.FindRemote(L"stern", no) && no == 2);
    EXPECT_FALSE(config.FindRemote(L"far", no));
    EXPECT_EQ(no, 3);
    EXPECT_FALSE(AppConfig().FindRemote(L"bow", no));
    EXPECT_EQ(no, 1);
    no = 0;
    EXPECT_TRUE(config.FindPresentation(2, no) && no == 1);
    EXPECT_TRUE(config.FindPresentation(2, no) && no == 3);
    EXPECT_FALSE(config.FindPresentation(2, no));
    EXPECT_EQ(no, 3);
    EXPECT_TRUE(config.GetColorTable(0) == L"Default" && config.GetColorTable(1).empty());
}

TEST(AppConfig, ComputersAndRemoteVesselsReadBackAsWritten) {
    AppConfig config = Made("[COLORTABLES]\nDepth=Sand\nEnabled=1\n");
    std::wstring name, layout, profile, user, host, far;
    unsigned port = 0, id = 0;
    bool enabled = false;
    double rate = 0;
    EXPECT_FALSE(config.GetACServer(name, port, layout, profile, user) || config.GetRemote(1, name, port));
    EXPECT_EQ(profile, L"Default[AcqComp]") << "completed without a section too";
    EXPECT_TRUE(config.SetMaster(L"m", 1, L"Own") && config.GetMaster(name, port, profile));
    EXPECT_EQ(name + profile, L"mDefault[Master]") << "whatever is stored";
    EXPECT_TRUE(config.SetRemote(1, L"r", 2) && config.DeleteItem(L"Remote(1)", L"Name", false));
    EXPECT_TRUE(config.GetRemote(1, name, port) && name == L"m" && port == 2) << "the section is enough";
    user = L"[u]";
    EXPECT_TRUE(config.SetACServer(L"a", 3, L"wide", L"P", user));
    EXPECT_TRUE(config.GetACServer(name, port, layout, profile, user));
    EXPECT_EQ(name + layout + profile + user, L"awideP[AcqComp]u");
    EXPECT_TRUE(config.SetPresentation(1, L"p", L"l", L"P", user, true) && config.RemovePresentation(1));
    EXPECT_EQ(config.GetNumEntries(L"Presentation(%d)"), -1);
    EXPECT_TRUE(config.SetRemoteVessel(5, 9, L"tug", 80, true, 2.5, L"Night"));
    EXPECT_TRUE(config.GetRemoteVesselId(5, id) && config.GetRemoteVesselHost(5, host, port) &&
                config.GetRemoteUpdateRate(5, enabled, rate) && config.GetRemoteConfig(5, far));
    EXPECT_EQ(host + far, L"tugNight");
    EXPECT_TRUE(id == 9 && port == 80 && enabled && rate == 2.5);
    EXPECT_FALSE(config.GetRemoteVesselId(6, id) || config.GetRemoteVesselHost(6, host, port) ||
                 config.GetRemoteUpdateRate(6, enabled, rate) || config.GetRemoteConfig(6, far));
    EXPECT_TRUE(config.GetUseProjectColorTables() && config.GetColorTable(0) == L"Sand");
}

// ---- selection

class SelectionTest : public testing::Test {
protected:
    SelectionTest() {
        installation.AppDef({{L"Application", L"DefinitionDescription", L"Survey"}});
        test::WriteItems(installation.AppDefPath(L"dredge"), {{L"Application", L"IDS_AppDef_Description", L"IDS_D"}});
        EXPECT_TRUE(installation.Start());
        EXPECT_TRUE(project.CreateDefaultFile(installation.ProjectFolder(), true));
        for (const char* name :
             {"Night[navigate].acf", "Day[navigate].acf", "Day[navigate2].acf", "Ship[navigate].vcf"}) {
            test::WriteBytes(installation.ProjectFolder() + std::wstring(name, name + strlen(name)), "");
        }
    }
    test::TestInstallation installation;
    ProjectDefinition project;
};

TEST_F(SelectionTest, DialogueTakesTheDefinitionOfADescription) {
    CAppDefDlg dialog(project);
    ASSERT_EQ(dialog.GetDefinitions().size(), 2u);
    EXPECT_EQ(dialog.GetDefinitions()[0].description, L"dredge");
    EXPECT_EQ(dialog.GetDefinitions()[1].description, L"Survey");
    std::wstring chosen;
    EXPECT_EQ(dialog.GetConfigurations(L"navigate", chosen), (std::vector<std::wstring>{L"Day", L"Night"}));
    EXPECT_EQ(chosen, L"Day");
    EXPECT_FALSE(dialog.OnOK(L"Other", L"Night"));
    EXPECT_TRUE(dialog.OnOK(L"Survey", L"Night"));
    EXPECT_TRUE(project.GetAppDefinition(chosen) && chosen == L"navigate");
    dialog.GetConfigurations(L"navigate", chosen);
    EXPECT_EQ(chosen, L"Night");
}

TEST_F(SelectionTest, LeavingTheWizardsPagePutsTheDefinitionInForce) {
    DataSearch& search = installation.Search();
    Translator::Lookups texts;
    texts.resource = [](std::wstring_view id) { return std::wstring(id) + L" text"; };
    Translator::Instance().Activate(texts);
    CAppDefSelectDlg page;
    EXPECT_EQ(CAppDefDlg(project).GetDefinitions()[0].description, L"dredge") << "only the wizard translates";
    Translator::Instance().Deactivate();
    const NoticeRecorder notices;
    EXPECT_FALSE(page.OnNext());
    EXPECT_EQ(notices.Text(Notice::Message), L"Please select an application type.\n");
    page.Select(0);
    EXPECT_FALSE(page.OnNext()) << "without a project nothing can be saved";
    ASSERT_TRUE(search.GetProjectDefinition().ReOpenFile(installation.ProjectFolder() + L"Project.prj"));
    const std::wstring types = installation.ProgramFolder() + std::wstring(FILETYPES_DEF_FILENAME);
    ASSERT_EQ(Files().Rename(types, types + L".aside"), FsResult::Ok);
    EXPECT_FALSE(page.OnNext() || search.IsInit());
    EXPECT_EQ(search.GetErrorStatus(), kSearchNoSettings);
    ASSERT_EQ(Files().Rename(types + L".aside", types), FsResult::Ok);
    EXPECT_TRUE(page.OnNext()) << "a failed try doesn't close the page";
    EXPECT_TRUE(search.GetAppDef().GetFileTitle() == L"dredge" && search.IsInit());
    ASSERT_TRUE(project.ReOpenFile(installation.ProjectFolder() + L"Project.prj"));
    std::wstring text;
    EXPECT_TRUE(project.GetAppDefDescription(text) && text == L"IDS_D text");

    search.GetProjectDefinition().SetAppDefinition(L"navigate");
    CVslCfgSelPage vessels;
    bool create = true;
    vessels.GetData(create, text);
    EXPECT_TRUE(!create && text == L"Ship");
    vessels.SetCreateNew(true);
    vessels.GetData(create, text);
    EXPECT_TRUE(create && !vessels.IsListEnabled());
}

}  // namespace
}  // namespace orv
