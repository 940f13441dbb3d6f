#include "project/VesselConfig.h"

#include <cstring>
#include <tuple>

#include "definitions/CDataId.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"
#include "project/AliasMap.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

VesselConfig VesselFrom(std::string_view text, std::wstring_view name = L"Sounder[navigate].vcf") {
    VesselConfig vessel;
    EXPECT_TRUE(vessel.FileOpen(memfile(text.data(), text.size(), textencoding::utf8), name));
    return vessel;
}

std::string TextOf(const VesselConfig& vessel) {
    CharBuffer buffer;
    vessel.FileSave(buffer, textencoding::utf8);
    std::string text = buffer.Bytes();
    std::erase(text, '\r');
    return text;
}

// Names of devices by their numbers, "-" for a gap.
std::wstring Devices(const VesselConfig& vessel, unsigned last, std::wstring_view word = kDeviceWord) {
    std::wstring names;
    for (unsigned no = 1; no <= last; ++no) {
        std::wstring name = L"-";
        vessel.GetItem(NumberedSection(word, no), L"Name", name);
        names += name;
    }
    return names;
}

TEST(VesselConfig, AnItemLeadsToItsSectionAndKey) {
    VesselConfig vessel;
    vessel.SetVesselDraft(1.5);
    vessel.SetSubsurfaceVessel(true);
    vessel.SetCenterOfGravityOffset({1, -2.25, 0});
    vessel.SetOffset(1, L"Bow", 0.5, -1, 2);
    vessel.SetVesselDredgeInstruction(L"Plan");
    vessel.SetDesignModel(52, L"Basin");
    vessel.SetDesignModelMaxZ(-12, true);
    vessel.SetRLRetrieval(3);
    vessel.SetUseOfftrackCondition(false);
    vessel.SetLeadInLength(50);
    vessel.SetProdUpdateDtm(L"Day");
    vessel.EnableMaxSizePerFile(true);
    vessel.SetAutoSwitch(2, true);
    EXPECT_EQ(TextOf(vessel),
              "[GEOMETRY]\nDraft=1.5\nSubsurface=1\nCenterOfGravityOffset=1.000000,-2.250000,0.000000\n"
              "Offset(1)=Bow,0.500000,-1.000000,2.000000\n\n[GUIDANCE]\nDredgeInstruction=Plan\n"
              "DesignModelType=DesignModel3D\nDesignModelName=Basin\nDesignModelMaxZ=-12\nDesignModelMaxZEnable=1\n"
              "Retrieval=3\nUseOfftrackLimit=0\nLeadInLength=50\n\n[LOGGING]\nProductionUpdateDtm=Day\n"
              "EnableMaxSizePerFile=1\n\n[DATASOURCE(2)]\nAutoswitch=1\n");
    double maximum = 0;
    bool enabled = false;
    EXPECT_TRUE(vessel.GetDesignModelMaxZ(maximum, enabled) && maximum == -12 && enabled);
    vessel.DeleteItem(L"GUIDANCE", L"DesignModelMaxZEnable", false);
    maximum = 7;
    EXPECT_FALSE(vessel.GetDesignModelMaxZ(maximum, enabled));
    EXPECT_EQ(maximum, 7);
    unsigned type = 7;
    std::wstring name = L"mine";
    EXPECT_TRUE(vessel.GetDesignModel(type, name) && type == 52 && name == L"Basin");
    vessel.DeleteItem(L"GUIDANCE", L"DesignModelName", false);
    EXPECT_FALSE(vessel.GetDesignModel(type, name));
    COrvDouble3D centre{1, 2, 3};
    EXPECT_FALSE(VesselConfig().GetCenterOfGravityOffset(centre));
    EXPECT_EQ(centre, COrvDouble3D());
}

TEST(VesselConfig, NameContourAndModelOfTheDay) {
    EXPECT_EQ(VesselFrom("", L"/p/Sounder[navigate].vcf").GetVesselName(), L"Sounder");
    EXPECT_EQ(VesselFrom("", L"/p/Sounder.vcf").GetVesselName(), L"Sounder");
    const std::tuple<const char*, bool, const wchar_t*> contours[] = {
        {"[GEOMETRY]\nShapeSelection=0,0,0,0,,hull,,-1\nVesselContour=old\n", true, L"hull"},
        {"[GEOMETRY]\nShapeSelection=1,1,0,1,Launch,hull,,3\nVesselContour=old\n", true, L"untouched"},
        {"[GEOMETRY]\nShapeSelection=0,0,0,0,,hull\nVesselContour=old\n", true, L"old"},
        {"[GEOMETRY]\nShapeSelection=0, 0 ,0,0,, hull ,,-1\n", true, L"hull"},
        {"[GEOMETRY]\n", false, L"untouched"},
    };
    for (const auto& [text, found, expected] : contours) {
        std::wstring contour = L"untouched";
        EXPECT_EQ(VesselFrom(text).GetVesselContour(contour), found) << text;
        EXPECT_EQ(contour, expected) << text;
    }
    const std::int64_t now = TheClock().UtcMilliseconds() / 1000;
    const CalendarTime today = LocalCalendar(now);
    std::wstring model, other = L"untouched";
    const VesselConfig vessel = VesselFrom("[LOGGING]\nUpdateDtm=Stored\nDtmGeneratedPerSurvey=1\n");
    EXPECT_TRUE(vessel.GetUpdateDtm(model));
    EXPECT_EQ(model.size(), 14u);
    EXPECT_EQ(model.substr(0, 10), L"survey" + std::to_wstring(today.year));
    EXPECT_TRUE(vessel.GetBscatUpdateDtm(other) && other.ends_with(L"[Backscatter-Model]"));
    EXPECT_FALSE(vessel.GetProdUpdateDtm(other));
}

// ---- ids

TEST(VesselIds, ReferencesFollowACopiedVessel) {
    const std::tuple<const char*, const wchar_t*, const wchar_t*, const char*, const char*> rows[] = {
        {"data", L"S", L"@tr.dev.HeaveItem", "0,0,3,15,1,131", "0,0,9,15,1,131"},
        {"data, with an index", L"S", L"@tr.Comp(1).HeaveItem(2)", "0,0,3,15,1,131", "0,0,9,15,1,131"},
        {"fixed data", L"S", L"@tr.dev.HeaveItem", "256,0,3,15,1,131", "256,0,3,15,1,131"},
        {"other flags", L"S", L"@tr.dev.HeaveItem", "512,0,3,15,1,131", "512,0,9,15,1,131"},
        {"the original's group", L"S", L"@tr.dev.HeaveItem", "0,0,3,1012,1,1", "0,0,9,1011,1,1"},
        {"that group, fixed", L"S", L"@tr.dev.HeaveItem", "256,0,3,1012,1,1", "256,0,3,1011,1,1"},
        {"flags that don't read", L"S", L"@tr.dev.HeaveItem", "x,0,3,15,1,131", "x,0,9,15,1,131"},
        {"offset without flags", L"S", L"@tr.dev.AntennaOffset", ",0,3,Bow,0,3,1,1,1", ",0,9,Bow,0,9,1,1,1"},
        {"no vessel's group", L"S", L"@tr.dev.TideItem", "0,0,3,20,1,140", "0,0,3,20,1,140"},
        {"no vessel's computation", L"S", L"@tr.dev.TideItem", "0,0,3,1007,1,140", "0,0,3,1007,1,140"},
        {"too short", L"S", L"@tr.dev.HeaveItem", "0,0,3,15", "0,0,3,15"},
        {"offset", L"S", L"@tr.dev.AntennaOffset", "0,0,3,Bow,0,3,1,1,110", "0,0,9,Bow,0,9,1,1,110"},
        {"fixed offset", L"S", L"@tr.dev.AntennaOffset", "256,0,3,Bow,0,3,1,1,1", "256,0,3,Bow,0,3,1,1,1"},
        {"offset, no vessel's group", L"S", L"@tr.dev.AntennaOffset", "0,0,3,Bow,0,3,20,1,1", "0,0,3,Bow,0,3,20,1,1"},
        {"no reference", L"S", L"@tr.dev.XCor", "0,0,3,15,1,131", "0,0,3,15,1,131"},
        {"a key that only starts like one", L"S", L"@tracer.HeaveItem", "0,0,3,15,1,131", "0,0,3,15,1,131"},
        {"interval", L"S", L"@tr.dev.IntervalLogItem", "0,a;3;b,c", "0,a;9;b,c"},
        {"alias", L"Aliases", L"Alias(1)", "Main,0,3,1000,1,110", "Main,0,9,1000,1,110"},
        {"condition", L"LOGGING", L"DataCondition(1)", "0,3,1000", "0,9,1000"},
        {"device of a model", L"LOGGING", L"DtmDevice(1,2)", "0,3,1000", "0,9,1000"},
        {"device of the production", L"LOGGING", L"ProductionUpdateDtmDevice(1)", "0,3", "0,9"},
        {"elsewhere", L"GUIDANCE", L"DtmDevice(1)", "0,3,1000", "0,3,1000"},
        {"draught", L"LoadAndDraught", L"DraughtOffset(1)", "0,0,3,Keel,0,3,55,1,1", "0,0,9,Keel,0,9,55,1,1"},
        {"output", L"DEVICE(1)", L"DataOutItem(1,1)", "0,3,1012,1,110", "0,9,1011,1,110"},
        {"trigger", L"DEVICE(1)", L"DataId(1)", "0,3,1012,1,110", "0,9,1012,1,110"},
        {"output of no vessel", L"DEVICE(1)", L"DataOutItem(1,2)", "0,0,1000,1,110", "0,0,1000,1,110"},
        {"output of no vessel's group", L"DEVICE(1)", L"DataOutItem(1,3)", "0,3,20,1,140", "0,3,20,1,140"},
        {"beyond a gap", L"DEVICE(3)", L"DataId(1)", "0,3,1000,1,110", "0,3,1000,1,110"},
    };
    for (const auto& [name, section, key, before, after] : rows) {
        VesselConfig vessel;
        const std::wstring value(before, before + std::strlen(before));
        std::wstring now;
        vessel.SetItem(section, key, value, true);
        EXPECT_TRUE(vessel.SetVesselID(9)) << name;
        EXPECT_TRUE(vessel.GetItem(section, key, now));
        EXPECT_EQ(std::string(now.begin(), now.end()), after) << name;
    }
}

TEST(VesselIds, TheFirstReferenceThatTells) {
    unsigned id = 0;
    EXPECT_FALSE(VesselFrom("[S]\n@tr.dev.HeaveItem(2)=0,0,4,15,1,131\n").GetVesselID(id)) << "an indexed one doesn't";
    EXPECT_TRUE(VesselFrom("[S]\n@tr.dev.HeaveItem(2)=0,0,4,15,1,131\n@tr.dev.HeaveItem=0,0,x\n"
                           "@tr.dev.TideItem=0,0,5,15,1,131\n")
                    .GetVesselID(id));
    EXPECT_EQ(id, 5u);
}

TEST(VesselIds, ConditionsOfTheNextLineLandInLogging) {
    VesselConfig vessel = VesselFrom("[GUIDANCE]\nAutoNextLineCondition(1)=0,3,1005\n");
    vessel.SetVesselID(9);
    EXPECT_EQ(TextOf(vessel),
              "[GUIDANCE]\nAutoNextLineCondition(1)=0,3,1005\n\n[LOGGING]\nAutoNextLineCondition(1)=0,9,1005\n");
}

TEST(VesselIds, TheSampleVesselKeepsNothingOfItsOldId) {
    VesselConfig vessel;
    ASSERT_TRUE(vessel.FileOpen(PathFromBytes(ORV_SOURCE_DIR) + L"/data/Sample/Sounder.vcf", kOpenRead));
    EXPECT_EQ(vessel.GetNumDevices(), 20u);
    EXPECT_EQ(vessel.GetNumComputations(), 6u);
    EXPECT_EQ(vessel.GetNumDataSources(), 3u);
    EXPECT_EQ(vessel.GetNumOffsets(), 12u);
    EXPECT_FALSE(vessel.OrderDevices());
    const VesselConfig before = vessel;
    unsigned id = 0;
    EXPECT_TRUE(vessel.GetVesselID(id) && id == 1);
    vessel.SetVesselID(41);
    EXPECT_TRUE(vessel.GetVesselID(id) && id == 41);
    vessel.SetVesselID(1);
    vessel.DeleteItem(L"LOGGING", L"AutoNextLineCondition(1)", false);
    EXPECT_EQ(TextOf(vessel), TextOf(before));
}

// ---- numbers

TEST(VesselDevices, ClosingGapsAndOrdering) {
    const auto numbered = [](std::initializer_list<unsigned> numbers) {
        VesselConfig vessel;
        for (const unsigned no : numbers) {
            vessel.SetItem(NumberedSection(kDeviceWord, no), L"Name", static_cast<int>(no % 100), true);
        }
        return vessel;
    };
    VesselConfig gaps = numbered({2, 3});
    EXPECT_EQ(gaps.GetFirstFreeDeviceNumber(), 1u);
    EXPECT_EQ(gaps.CloseDeviceGaps(), 2u);
    EXPECT_EQ(Devices(gaps, 3), L"23-");
    VesselConfig far = numbered({1, 3, 102, 205});
    EXPECT_EQ(far.CloseDeviceGaps(), 4u);
    EXPECT_EQ(Devices(far, 4), L"132-");
    EXPECT_TRUE(far.HaveDevice(205)) << "out of reach";

    VesselConfig vessel = VesselFrom(
        "[DEVICE(1)]\nName=a\nGroupId=30\n[DEVICE(2)]\nName=b\nGroupId=2\nSubSystemId=1\n"
        "[DEVICE(3)]\nName=c\nGroupId=1\n[DEVICE(4)]\nName=d\nGroupId=30\n[DEVICE(5)]\nName=e\nGroupId=1\n");
    EXPECT_TRUE(vessel.OrderDevices());
    EXPECT_EQ(Devices(vessel, 5), L"ceadb");
    const std::string ordered = TextOf(vessel);
    EXPECT_FALSE(vessel.OrderDevices());
    EXPECT_EQ(TextOf(vessel), ordered);
    vessel.CreateSection(L"DEVICE(07)", false);
    vessel.CreateSection(L"MYDEVICE", false);
    EXPECT_EQ(vessel.GetNumDevices(), 7u);
    EXPECT_TRUE(vessel.RemoveAllDevices());
    EXPECT_EQ(TextOf(vessel), "[MYDEVICE]\n");
}

TEST(VesselDevices, ComputationsMoveUp) {
    const auto vessel = [] {
        VesselConfig made;
        for (const auto& [no, group] : {std::pair(1u, 5u), {2u, 7u}, {3u, 7u}, {4u, 5u}}) {
            made.SetComputation(no, std::wstring(1, static_cast<wchar_t>(L'a' + no - 1)), group);
        }
        return made;
    };
    VesselConfig one = vessel(), group = vessel();
    EXPECT_TRUE(one.RemoveCompAndRename(1));
    EXPECT_EQ(Devices(one, 4, kComputationWord), L"bcd-");
    EXPECT_FALSE(one.RemoveCompAndRename(4));
    EXPECT_TRUE(group.RemoveCompByGroupIdAndRename(7));
    EXPECT_EQ(Devices(group, 3, kComputationWord), L"ad-");
    EXPECT_FALSE(group.RemoveCompByGroupIdAndRename(7));
}

TEST(VesselDevices, PortsOfTheOldForm) {
    const std::tuple<const char*, bool, const wchar_t*> rows[] = {
        {"PortName=Sonar\nPort=3\n", true, L"Sonar"},
        {"InterfaceType=1\nPort=3\n", true, L"COM3"},
        {"InterfaceType=2\nPort=3\n", true, L"NET3"},
        {"Port=3\n", true, L"COM3"},
        {"", false, L"COM-1"},
    };
    for (const auto& [items, found, expected] : rows) {
        const VesselConfig vessel = VesselFrom(std::string("[DEVICE(1)]\nDriver=d\nGroupId=1\n") + items);
        std::wstring driver, port, section, options, guid, copied = L"mine";
        unsigned group = 0, portGroup = 9;
        int subSystem = 9;
        EXPECT_EQ(vessel.GetDeviceAttribs(1, driver, group, port, section, subSystem, options, portGroup, guid, copied),
                  found)
            << items;
        EXPECT_EQ(port, expected);
        EXPECT_TRUE(subSystem == 0 && portGroup == 0 && copied == L"mine") << items;
    }
}

TEST(VesselDevices, NamesComeFromAliases) {
    VesselConfig vessel = VesselFrom(
        "[Aliases]\nAlias(1)=Main,0,3,1,1,110\nAlias(2)=broken,1\n[DEVICE(1)]\nDriver=gps.drv\n[DEVICE(2)]\nDriver="
        "x\n");
    EXPECT_EQ(vessel.GetDeviceName(1, CDataId(3, 1, 1, 110)), L"Main");
    EXPECT_TRUE(vessel.HasKey(L"DEVICE(1)", L"UserName"));
    EXPECT_TRUE(vessel.GetDeviceName(2, CDataId(3, 999, 2, 110)).ends_with(L"(2) - x"));
    EXPECT_TRUE(vessel.HasKey(L"DEVICE(2)", L"UserName")) << "an empty alias is kept, too";
    AliasMap aliases;
    aliases.Load(vessel);
    const AliasMap copy = aliases;
    aliases.Load(VesselConfig());
    EXPECT_EQ(copy.GetDataId(L"Main") + copy.GetDataId(L"broken") + aliases.GetDataId(L"Main"), L"3,1,1,110");
}

TEST(VesselDevices, OffsetsAreFoundDeviceByDevice) {
    VesselConfig vessel = VesselFrom(
        "[DEVICE(1)]\n@tr.dev.AntennaOffset=0,0,1,Bow,0,1,1,1,1\n@tr.dev.SensorOffset=0,0,1,Bow,0,1,1,1,1\n"
        "@tr.dev.PivotOffset=0,0,1,bow,0,1,1,1,1\n[DEVICE(2)]\nx=1\n"
        "[DEVICE(3)]\n@tr.Comp(1).PivotOffset=0,0,1,Bow,0,1,1,1,1\n");
    std::wstring found, key, value;
    unsigned device = 0;
    EXPECT_FALSE(vessel.FindOffsetUsage(L"Bow", 3, device, key, value));
    for (int mode = kSearchFirst; vessel.FindOffsetUsage(L"Bow", mode, device, key, value); mode = kSearchNext) {
        found += std::to_wstring(device) + key + L";";
    }
    EXPECT_EQ(found, L"1@tr.dev.AntennaOffset;1@tr.dev.SensorOffset;3@tr.Comp(1).PivotOffset;");
    vessel.RemoveDevice(2);
    vessel.SetItem(L"DEVICE(4)", L"x", 1, true);
    vessel.DeleteItem(L"DEVICE(1)", L"@tr.dev.AntennaOffset", false);
    EXPECT_TRUE(vessel.FindOffsetUsage(L"bow", kSearchFirst, device, key, value));
    EXPECT_FALSE(vessel.FindOffsetUsage(L"bow", kSearchNext, device, key, value)) << "a gap ends it";
    vessel.SetItem(L"GEOMETRY", L"Offset(1)", L"Bow,1,2", true);
    double x = 7, y = 7, z = 7;
    EXPECT_FALSE(vessel.GetOffset(1, key, x, y, z) || x + y + z != 21);
    EXPECT_TRUE(vessel.RemoveAllOffsets() && !vessel.RemoveAllOffsets());
}

TEST(VesselDevices, ConditionsAreAppendedHoweverManyAreClaimed) {
    VesselConfig vessel = VesselFrom(
        "[DATASOURCE(1)]\nNumConditions(1,2)=2000000000\nSwitchCondition(1,2,7)=late\nSwitchCondition(1,2,0)=first\n"
        "SwitchCondition(1,20,0)=other\n");
    std::vector<std::wstring> list = {L"mine"};
    EXPECT_TRUE(vessel.GetDataConditions(1, 1, 2, list));
    EXPECT_EQ(list, (std::vector<std::wstring>{L"mine", L"first", L"late"}));
    EXPECT_TRUE(vessel.SetDataConditions(1, 1, 2, {L"a"}));
    EXPECT_EQ(TextOf(vessel),
              "[DATASOURCE(1)]\nNumConditions(1,2)=1\nSwitchCondition(1,20,0)=other\nSwitchCondition(1,2,0)=a\n");
    EXPECT_FALSE(vessel.GetDataConditions(2, 1, 2, list));
    VesselConfig fresh;
    fresh.SetDataConditions(2, 1, 2, {L"a"});
    EXPECT_EQ(TextOf(fresh), "[DATASOURCE(2)]\nNumConditions(1,2)=1\nSwitchCondition(1,2,0)=a\n");
}

}  // namespace
}  // namespace orv
