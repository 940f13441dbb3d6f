#include "ScriptedCoordSys.h"
#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/text/Utf.h"
#include "project/ProjectDefinition.h"
#include "project/VesselConfig.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

using Outcome = VesselUpgrade::Outcome;

// Words that a person reads, as they stand; the rest of each tells whom to ask.
constexpr const wchar_t* kDatum =
    L"Datum transformation conversion failed.\nThe project has two positioning systems which\n"
    L"both use a different datum transformation.\nPlease contact your distributor.\n";
constexpr const wchar_t* kCorrection =
    L"Post correction conversion failed.\nThe project contains two positioning systems which\n"
    L"both use a different XYZ correction.\nPlease contact your distributor.\n";
constexpr const wchar_t* kManual =
    L"Geoid model conversion failed.\nThe geoid model setting\n\"Use manual input with separation related to none "
    L"WGS84\"\nis not supported in the new version.\nPlease contact support.\n";
constexpr const wchar_t* kReceiver =
    L"Geoid model conversion failed.\nThe geoid model setting\n\"Use receiver supplied with height source from "
    L"GPS\"\nis not supported in the new version.\nPlease contact support.\n";
constexpr const wchar_t* kGeoid =
    L"Geoid model conversion failed. \nThe project contains two positioning systems which\nuse both a different geoid "
    L"model setting.\nPlease contact your distributor.\n";

std::string Device(int no, const std::string& more) {
    return "[DEVICE(" + std::to_string(no) + ")]\r\nNumComps=1\r\n" + more;
}
std::string Correction(const std::string& x, const std::string& group = "Comp(1)") {
    const std::string key = "@tr." + group + ".";
    return key + "XCor=0," + x + "\r\n" + key + "YCor=0,2\r\n" + key + "ZCor=0,3\r\n";
}
std::string Geoid(int mode, const std::string& separation = "0", int relatedTo = 0,
                  const std::string& group = "Comp(1)") {
    const std::string key = "@tr." + group + ".";
    return key + "ReduceHgtGeoid=0,1\r\n" + key + "GeoidSep=0," + std::to_string(mode) + "\r\n" + key +
           "SepManInput=0," + separation + "\r\n" + key + "GeoidSepRelTo=0," + std::to_string(relatedTo) + "\r\n";
}
std::string Datum(bool apply, const std::string& name) {
    return std::string("@tr.dev.ApplyDtf=0,") + (apply ? "1" : "0") + "\r\n@tr.dev.DtfName=0," + name + "\r\n";
}

class Conversion : public ::testing::Test {
protected:
    void SetUp() override {
        OrvGeoCoordSysList::GetCoordSysList().Register(
            std::wstring(COORDSYS_MODULE_KEY), [this] { return std::make_unique<test::ScriptedCoordSys>(script); });
        ASSERT_TRUE(installation.Start());
        test::MakeFolders(installation.ProjectFolder());
        path = installation.ProjectFolder() + L"Project.prj";
    }
    void TearDown() override {
        OrvGeoCoordSysList::GetCoordSysList().Register(std::wstring(COORDSYS_MODULE_KEY), nullptr);
    }
    std::wstring VesselPath(std::size_t index) const {
        return installation.ProjectFolder() + L"V" + std::to_wstring(index + 1) + L"[navigate].vcf";
    }
    /// An old project with these vessels.
    void Make(const std::vector<std::string>& vessels) {
        ASSERT_TRUE(ProjectDefinition().CreateDefaultFile(installation.ProjectFolder(), true));
        test::WriteItems(path, {{COORDSYSTEM_SECTION, coordsystemKeys[7], L"G"},
                                {COORDSYSTEM_SECTION, coordsystemKeys[8], L"S"},
                                {COORDSYSTEM_SECTION, coordsystemKeys[10], L"Meters"},
                                {COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, std::wstring(GEODESY_VERSION)},
                                {COORDSYSTEM_SECTION, OLD_GEOID_MODE, L"1"},
                                {APPLICATION_SECTION, appParamKeys[0], L"navigate"},
                                {APPLICATION_SECTION, appParamKeys[2], L"Survey"}});
        std::string config;
        for (std::size_t i = 0; i < vessels.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            config += "[Vessel(" + number + ")]\r\nVesselConfig=V" + number + "[navigate]\r\n";
            test::WriteBytes(VesselPath(i), vessels[i]);
        }
        test::WriteBytes(installation.ProjectFolder() + L"Survey[navigate].acf", config);
        script.calls.clear();
    }
    bool Opens() {
        project = std::make_unique<ProjectDefinition>();
        return project->Init(path, false);
    }
    bool Converted(std::size_t index) const {
        return test::ReadBytes(VesselPath(index)).find("GeodesyVersion=1.0.1") != std::string::npos;
    }

    test::CoordSysScript script;
    test::TestInstallation installation;
    std::unique_ptr<ProjectDefinition> project;
    std::wstring path;
};

struct Case {
    const char* name;
    std::vector<std::string> vessels;
    const wchar_t* refusal;            // null: converted
    std::vector<std::wstring> stored;  // by the last vessel
};

TEST_F(Conversion, AcceptsWhatAgreesAndRefusesTheRestInItsWords) {
    const std::wstring model(GeoidmodelTypeKeys[5]), manual(GeoidmodelTypeKeys[1]), receiver(GeoidmodelTypeKeys[0]);
    const Case cases[] = {
        {"no devices", {"[GENERAL]\r\n"}, nullptr, {L"post 0 0 0 " + receiver + L" ''"}},
        {"one model",
         {Device(1, Correction("1.5") + Geoid(5)) + Device(2, Correction("1.5") + Geoid(5))},
         nullptr,
         {L"geoid G/S " + model + L" ''", L"post 1.5 2 3 " + model + L" ''"}},
        {"first correction behind a device without one",
         {Device(1, "") + Device(2, Correction("7")), Device(1, Correction("7"))},
         nullptr,
         {L"post 7 2 3 " + receiver + L" ''"}},
        {"a geoid for each vessel",
         {Device(1, Geoid(5)), Device(1, Geoid(1, "40.25"))},
         nullptr,
         {L"manual G/S " + manual + L" 40.25", L"post 0 0 0 " + manual + L" ''"}},
        {"a flag that is off isn't compared",
         {Device(1, Geoid(5)) + Device(2, "@tr.Comp(1).ReduceHgtGeoid=0,0\r\n@tr.Comp(1).GeoidSep=0,1\r\n")},
         nullptr,
         {L"geoid G/S " + model + L" ''", L"post 0 0 0 " + model + L" ''"}},
        {"disabled devices may disagree",
         {Device(1, Correction("1")) + Device(2, "DeviceEnable=0\r\n" + Correction("2") + Geoid(1, "1", 3))},
         nullptr,
         {L"post 1 2 3 " + receiver + L" ''"}},
        {"a mode that no table has", {Device(1, Geoid(77))}, nullptr, {L"geoid G/S  ''", L"post 0 0 0  ''"}},
        {"corrections differ in the last bit",
         {Device(1, Correction("0.1")), Device(1, Correction("0.10000000000000002"))},
         kCorrection,
         {}},
        {"manual separations differ", {Device(1, Geoid(1, "4")) + Device(2, Geoid(1, "5"))}, kGeoid, {}},
        {"a user's computation disagrees",
         {Device(1, Geoid(5)) + "[COMPUTATION(1)]\r\n" + Geoid(6, "0", 0, "cmp")},
         kGeoid,
         {}},
        {"manual, not to WGS 84", {Device(1, Geoid(1, "4", 2))}, kManual, {}},
        {"receiver, height source GPS",
         {Device(1, Geoid(0) + Datum(false, "") + "@tr.Comp(2).HgtSourceGps=0,1\r\n")},
         kReceiver,
         {}},
        {"receiver, with a transformation",
         {Device(1, Geoid(0) + Datum(true, "shift") + "@tr.Comp(2).HgtSourceGps=0,1\r\n")},
         nullptr,
         {L"post 0 0 0 " + receiver + L" ''"}},
        {"transformations differ", {Device(1, Datum(true, "default")), Device(1, Datum(true, "shift"))}, kDatum, {}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Make(one.vessels);
        std::vector<VesselUpgrade> plan;
        {
            const NoticeRecorder quiet;
            const std::string before = test::ReadBytes(VesselPath(0));
            ProjectDefinition planned;
            bool marked = false;
            ASSERT_TRUE(planned.PlanUpgrade(path, marked, plan) && marked);
            ASSERT_EQ(plan.size(), one.vessels.size());
            EXPECT_EQ(quiet.Text(Notice::Message), L"") << "a plan shows nothing by itself";
            EXPECT_EQ(test::ReadBytes(VesselPath(0)), before);
        }
        const NoticeRecorder notices;
        script.calls.clear();
        EXPECT_EQ(Opens(), one.refusal == nullptr) << ToUtf8(project->LastProblem());
        EXPECT_EQ(notices.Text(Notice::Message), one.refusal ? one.refusal : L"");
        const std::size_t last = one.vessels.size() - 1;
        EXPECT_EQ(Converted(last), one.refusal == nullptr);
        EXPECT_EQ(plan[last].outcome, one.refusal ? Outcome::Refused : Outcome::Converts);
        EXPECT_EQ(plan[last].problem + (one.refusal ? L"\n" : L""), one.refusal ? one.refusal : L"");
        for (std::size_t i = 0; i < last; ++i) EXPECT_TRUE(Converted(i)) << "vessels ahead of the refusal stay so";
        if (one.refusal) continue;
        ASSERT_GE(script.calls.size(), one.stored.size());
        EXPECT_TRUE(std::equal(one.stored.rbegin(), one.stored.rend(), script.calls.rbegin()))
            << ToUtf8(script.calls.back());
    }
}

TEST_F(Conversion, KeepsTheDevicesTransformationAndStoresOnceChanged) {
    script.changes = true;
    Make({Device(1, Datum(true, "shift")) + Device(2, Datum(true, "shift") + "@tr.dev.SelectDTF=0,0\r\n") +
          Device(3, "")});
    ASSERT_TRUE(Opens());
    EXPECT_EQ(script.calls.back(), L"save") << "a changed database is read again and told to the project";
    const std::string vessel = test::ReadBytes(VesselPath(0));
    EXPECT_NE(vessel.find("@tr.dev.SelectDTF=0,1\r\n"), std::string::npos) << vessel;
    EXPECT_NE(vessel.find("@tr.dev.SelectDTF=0,0\r\n"), std::string::npos) << "a converted device stays";
    EXPECT_NE(vessel.find("[DEVICE(3)]\r\nNumComps=1\r\n\r\n[GeodesySection]"), std::string::npos) << vessel;

    // The mark is still on the disk, and its vessel is converted: nothing tells any more what its devices agreed on.
    const NoticeRecorder notices;
    EXPECT_FALSE(Opens());
    EXPECT_EQ(notices.Text(Notice::Message), L"");
    EXPECT_NE(project->LastProblem(), L"");
    project->FileSave(L"", 0, kSave);
    EXPECT_TRUE(Opens());

    script.saves = false;
    Make({Device(1, Correction("1"))});
    EXPECT_FALSE(Opens());
    EXPECT_FALSE(Converted(0)) << "a vessel is saved when its settings are";
}

TEST_F(Conversion, FailedFileCallsLeaveEachVesselWhole) {
    const std::vector<std::string> vessels = {Device(1, Correction("1")), Device(1, Correction("1") + Geoid(5))};
    std::string converted[2], saved;
    Make(vessels);
    ASSERT_TRUE(Opens());
    for (std::size_t i = 0; i < 2; ++i) converted[i] = test::ReadBytes(VesselPath(i));
    const NoticeRecorder quiet;
    test::FailEachCall(
        [&] {
            Make(vessels);
            saved = test::ReadBytes(path);
        },
        [&] { return Opens(); },
        [&](bool opened) {
            for (std::size_t i = 0; i < 2; ++i) {
                const std::string now = test::ReadBytes(VesselPath(i));
                EXPECT_TRUE(now == converted[i] || now == vessels[i]) << i << "\n" << now << opened;
            }
            EXPECT_EQ(test::ReadBytes(path), saved);
        });
}

TEST_F(Conversion, FixesAVesselFromElsewhere) {
    Make({Device(1, Correction("1") + Datum(true, "other")), Device(1, Correction("2") + Datum(true, "shift"))});
    VesselConfig first, second;
    ASSERT_TRUE(first.FileOpen(VesselPath(0), kOpenRead) && second.FileOpen(VesselPath(1), kOpenRead));
    ProjectDefinition taking;
    const NoticeRecorder notices;
    EXPECT_TRUE(taking.FixOldVesselCfg(first, false));
    EXPECT_FALSE(taking.FixOldVesselCfg(first, false)) << "it is converted";
    EXPECT_TRUE(taking.FixOldVesselCfg(second, false)) << "each starts anew when computations aren't looked at";
    EXPECT_FALSE(taking.AddGeoidInfoToDB(first)) << "without a coordinate system there is nowhere to store";
    EXPECT_EQ(notices.Text(Notice::Message), L"");
    EXPECT_FALSE(Converted(0)) << "the caller saves";
}

}  // namespace
}  // namespace orv
