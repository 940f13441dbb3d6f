#include <tuple>

#include "apps/RunProgram.h"
#include "platform/text/PathText.h"

namespace orv::test {
namespace {

class OrvcfgVessel : public OrvcfgTest {
protected:
    void SetUp() override { Put("boat.vcf"); }
    void Put(const std::string& name) const {
        WriteBytes(folder / std::wstring(name.begin(), name.end()),
                   ReadBytes(PathFromBytes(ORV_SOURCE_DIR) + L"/data/Sample/Sounder.vcf"));
    }
    void Edit(const char* section, const char* key, const char* value) const {
        EXPECT_EQ(Run({"config", "set", "--add", "boat.vcf", section, key, value}).code, 0) << key;
    }
};

TEST_F(OrvcfgVessel, CheckFindsWhatIsWrong) {
    Install();
    for (const char* port : {"1", "2"}) {
        ASSERT_EQ(OnInstallation({"port", "new", port, "--handler", "Serial", "--file", "ports.ini"}).code, 0);
    }
    EXPECT_EQ(Run({"vessel", "check", "boat.vcf", "-q"}).code, 0);
    const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
        {"DEVICE(2)", "PortName", "COM1", "is on port COM1, as is \"Receiver bow\""},
        {"DEVICE(5)", "@tr.dev.SensorOffset", "0,0,1,Mast,0,1,5,1,110", "offset \"Mast\", which doesn't exist"},
        {"DEVICE(5)", "@tr.dev.SensorOffset", "0,0,1,Gyro,0,1,5,2,110", "device 2 of group 5"},
        {"DEVICE(5)", "@tr.dev.HeaveItem(1)", "0,0,1,777,1,1", "group 777 isn't in the data definition"},
        {"DEVICE(17)", "DataOutItem(1,1)", "0,1,1000", "doesn't read as a reference"},
        {"Aliases", "Alias(9)", "Lost,0,1,5,2,110", "device 2 of group 5"},
        {"LOGGING", "DtmDevice(2)", "0,1,5,3,110,more", "device 3 of group 5"},
        {"GUIDANCE", "AutoNextLineCondition(2)", "0,me,1005", "doesn't read as a reference"},
        {"DEVICE(5)", "@tr.dev.IntervalLogItem", "0,0;1;5;4;110,9", "device 4 of group 5"},
        {"DEVICE(22)", "GroupId", "1", "Numbers are missing ahead of it: 21"},
        {"COMPUTATION(8)", "GroupId", "1000", "Numbers are missing ahead of it: 7"},
        {"GEOMETRY", "Offset(14)", "Far,0,0,0", "there is no Offset(13)"},
    };
    for (const auto& [section, key, value, words] : rows) {
        Put("boat.vcf");
        Edit(section, key, value);
        const RunResult result = Run({"vessel", "check", "boat.vcf", "--json"});
        EXPECT_EQ(result.code, 1) << words;
        EXPECT_NE(result.err.find(words), std::string::npos) << words << "\n" << result.err;
    }
    Put("boat.vcf");
    const RunResult ports = Run({"vessel", "check", "boat.vcf", "--ports", "ports.ini", "--json"});
    EXPECT_EQ(ports.Json()[0]["findings"].size(), 18u) << ports.err;
    WriteBytes(At(L"ports.ini"), "[COM(1)]\n[COM(2)]\n");
    EXPECT_EQ(Run({"vessel", "check", "boat.vcf", "--ports", "ports.ini", "--json"}).Json(), ports.Json());
    EXPECT_EQ(Run({"vessel", "check", "boat.vcf", "--ports", "none.ini"}).code, 2);
    EXPECT_EQ(OnInstallation({"config", "set", "--add", "--accept", "i/General/ApplicationDefinitions/navigate.adf",
                              "Devices", "1", "1"})
                  .code,
              0);
    EXPECT_NE(OnInstallation({"vessel", "check", "boat.vcf"}).err.find("2 devices of group 1 Satellite positioning"),
              std::string::npos);
}

TEST_F(OrvcfgVessel, ChangesRenumbersAndExchanges) {
    Install();
    EXPECT_EQ(Run({"vessel", "set", "boat.vcf", "draft", "1.42"}).code, 0);
    EXPECT_EQ(Run({"vessel", "set", "boat.vcf", "id", "7"}).code, 0);
    nlohmann::json shown = Run({"vessel", "show", "boat.vcf", "--json"}).Json();
    EXPECT_EQ(shown["vessel"]["draft"], 1.42);
    EXPECT_EQ(shown["vessel"]["id"], 7);
    EXPECT_EQ(shown["offsetList"][8]["devices"], "5, 14, 15");
    for (const Arguments& wrong :
         {Arguments{"draft", "deep"}, {"draught", "1"}, {"port", "COM1"}, {"port", "COM1", "--device", "99"}}) {
        Arguments arguments = {"vessel", "set", "boat.vcf"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_NE(Run(arguments).code, 0) << wrong[0];
    }
    EXPECT_EQ(OnInstallation({"vessel", "push", "boat.vcf", "common.vcf"}).code, 0);
    Put("other.vcf");
    EXPECT_EQ(Run({"vessel", "diff", "boat.vcf", "other.vcf"}).code, 1);
    EXPECT_EQ(OnInstallation({"vessel", "pull", "other.vcf", "common.vcf"}).code, 0);
    EXPECT_EQ(Run({"vessel", "show", "other.vcf", "--json"}).Json()["vessel"]["draft"], 1.42);
    const std::string before = ReadBytes(At(L"other.vcf"));
    EXPECT_EQ(OnInstallation({"vessel", "pull", "other.vcf", "none.vcf"}).code, 1);
    EXPECT_EQ(Run({"vessel", "apply", "other.vcf", "common.vcf"}).code, 1);
    EXPECT_EQ(ReadBytes(At(L"other.vcf")), before);

    Edit("DEVICE(23)", "GroupId", "1");
    const std::string gap = ReadBytes(At(L"boat.vcf"));
    const RunResult plan = Run({"vessel", "renumber", "boat.vcf", "--dry-run", "--json"});
    EXPECT_EQ(plan.Json()[0]["was"], 23) << plan.out;
    EXPECT_EQ(plan.Json()[0]["is"], 3);
    EXPECT_EQ(ReadBytes(At(L"boat.vcf")), gap);
    EXPECT_EQ(Run({"vessel", "renumber", "boat.vcf"}).code, 0);
    EXPECT_EQ(Run({"vessel", "renumber", "boat.vcf", "--json"}).Json().size(), 0u);

    // Ordering would make holes for what isn't a device of the row.
    for (const auto& [section, group, words] :
         {std::tuple("PLUGIN_DEVICE_STATE", "0", "isn't a device"), {"DEVICE(200)", "1", "too far behind"}}) {
        Put("boat.vcf");
        Edit("DEVICE(23)", "GroupId", "1");
        Edit(section, "GroupId", group);
        EXPECT_NE(Run({"vessel", "renumber", "boat.vcf"}).err.find(words), std::string::npos);
        EXPECT_EQ(Run({"vessel", "renumber", "boat.vcf", "--json"}).code, 1);
        const nlohmann::json devices = Run({"vessel", "devices", "boat.vcf", "--json"}).Json();
        EXPECT_EQ(devices[0]["no"], 1);
        EXPECT_EQ(devices[20]["no"], 21);
        EXPECT_EQ(devices[20]["group"], 1) << "the gaps are closed, the order stays";
        EXPECT_EQ(Run({"vessel", "diff", "boat.vcf", "boat.vcf"}).code, 1);
    }
}

}  // namespace
}  // namespace orv::test
