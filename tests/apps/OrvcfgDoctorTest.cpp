#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <map>

#include "apps/RunProgram.h"
#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using std::string;

/// The demonstration's sample, and hands that break it.
class OrvcfgDoctorTest : public OrvcfgTest {
public:
    void SetUp() override {
        setenv("TMPDIR", Text(L"").c_str(), 1);
        const RunResult made = Run({"demo", "--keep", "--json"});
        ASSERT_EQ(made.code, 0) << made.err;
        root = made.Json()["sample"]["folder"];
        fs::copy(root, Text(L"sound"), fs::copy_options::recursive);
    }
    void TearDown() override { unsetenv("TMPDIR"); }
    void Heal() const {
        fs::remove_all(root);
        fs::copy(Text(L"sound"), root, fs::copy_options::recursive);
    }
    string System(const string& name) const { return root + "system/" + name; }
    string General(const string& name) const { return root + "General/" + name; }
    string Project(const string& name) const { return root + "Projects/Maasvlakte/" + name; }
    RunResult Ask(Arguments arguments, const string& input = {}) const {
        arguments.insert(arguments.begin(), {"--system", System("")});
        return Run(arguments, input);
    }
    void Set(const string& file, const string& section, const string& key, const string& value) const {
        EXPECT_EQ(Ask({"config", "set", "--add", "--accept", file, section, key, value}).code, 0) << file;
    }
    void SetProject(const string& section, const string& key, const string& value) const {
        Set(Project("Project.prj"), section, key, value);
    }
    void SetVessel(const string& section, const string& key, const string& value) const {
        Set(Project("Sounder[navigate].vcf"), section, key, value);
    }
    static void Write(const string& file, const string& bytes) { WriteBytes(PathFromBytes(file), bytes); }
    static void Append(const string& file, const string& bytes) { Write(file, ReadBytes(PathFromBytes(file)) + bytes); }
    static void Date(const string& file, int days) {
        ASSERT_EQ(Files().SetModified(PathFromBytes(file), std::time(nullptr) + days * 86400, 0), FsResult::Ok);
    }
    void Tide(const string& station, const string& csv) const {
        Write(Text(L"tide.csv"), csv);
        EXPECT_EQ(Ask({"tide", "import", station, Text(L"tide.csv"), "--zone", "UTC", "--create"}).code, 0);
    }
    string log = "LogData/Sounder[navigate]_L001-20240305-091500.orv", root;
};

using Sample = const OrvcfgDoctorTest&;
struct Fault {
    const char *check, *where, *what;
    void (*plant)(Sample);
};
// Faults that don't hide each other.
const Fault kFaults[] = {
    {"signature", "presentation.adf", "changed outside",
     [](Sample s) { s.Append(s.General("ApplicationDefinitions/presentation.adf"), "[Network]\nRemoteMax=9\n"); }},
    {"needed-file", "Sounder.alr", "missing", [](Sample s) { fs::remove(s.Project("Sounder.alr")); }},
    {"grid", ".gtx", "the file has 9000",
     [](Sample s) {
         fs::resize_file(s.General("GeoidModels/Netherlands/synthetic-sample-not-for-navigation.gtx"), 9000);
     }},
    {"port", "Sounder[navigate].vcf", "port COM99, which doesn't exist",
     [](Sample s) { s.SetVessel("DEVICE(5)", "PortName", "COM99"); }},
    {"reference", "Sounder[navigate].vcf", "offset \"Mast\"",
     [](Sample s) { s.SetVessel("DEVICE(6)", "@tr.dev.SensorOffset", "0,0,1,Mast,0,1,10,1,130"); }},
    {"numbering", "Sounder[navigate].vcf", "no Offset(13)",
     [](Sample s) { s.SetVessel("GEOMETRY", "Offset(14)", "Far,0,0,0"); }},
    {"permission", "Sounder[navigate].vcf", "2 devices of group 1",
     [](Sample s) { s.Set(s.General("ApplicationDefinitions/navigate.adf"), "Devices", "1", "1"); }},
    {"rights", "navigate.ual", "don't verify",
     [](Sample s) { s.Write(s.System("navigate.ual"), "[USERLEVELS]\nuserlevels=Master;Guest\n"); }},
    {"account", "UserAccounts.ini", "ends within", [](Sample s) { s.Write(s.System("UserAccounts.ini"), "short"); }},
    {"disk-space", "Project.prj", "all logs (1) go",
     [](Sample s) {
         s.SetProject("DiskSpace", "MaxDaysEnabled", "1");
         s.SetProject("DiskSpace", "MaxDays", "30");
         s.Date(s.Project(s.log), -40);
     }},
    {"history", "Project.prj", "no file type", [](Sample s) { s.SetProject("FileHistory", "Enabled", "1"); }},
    {"folder", "Reports", "can't be written", [](Sample s) { chmod(s.Project("Reports").c_str(), 0555); }},
    {"clock", "Survey[navigate].acf", "ahead of the clock",
     [](Sample s) { s.Date(s.Project("Survey[navigate].acf"), 3); }},
    {"log", "L001", "no header",
     [](Sample s) {
         s.Write(s.Project(s.log), "noise");
         s.Date(s.Project(s.log), -40);
     }},
    {"file-set", "Day.sub", "1 of 1 logs", [](Sample s) { s.Write(s.Project("Day.sub"), "[Files]\nFile(0)=Lost\n"); }},
    {"tide", "Quay.tdg", "2024-03-20T00:00:00Z to 2024-03-20T06:00:00Z",
     [](Sample s) { s.Tide("Quay", "2024-03-20 00:00,1\n2024-03-20 06:00,1.2\n2024-03-20 06:02,1.2\n"); }},
    {"profile", "Basin.svp", "2500 m/s",
     [](Sample s) { s.Set(s.Project("Basin.svp"), "POINTS", "Point(3)", "-0.8,2500,0,0"); }},
};

std::map<string, string> Contents(const string& folder) {
    std::map<string, string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        contents[entry.path()] = entry.is_regular_file() ? ReadBytes(PathFromBytes(entry.path().native())) : "";
    }
    return contents;
}

void Holds(const nlohmann::json& findings, const Fault& fault) {
    const auto found = std::find_if(findings.begin(), findings.end(),
                                    [&](const nlohmann::json& row) { return row["check"] == fault.check; });
    ASSERT_NE(found, findings.end()) << fault.check << "\n" << findings.dump(1);
    EXPECT_NE((*found)["where"].get<string>().find(fault.where), string::npos) << found->dump(1);
    EXPECT_NE((*found)["what"].get<string>().find(fault.what), string::npos) << found->dump(1);
    EXPECT_NE((*found)["remedy"], "");
    EXPECT_NE((*found)["why"], "");
}

TEST_F(OrvcfgDoctorTest, FindsWhatWasPlantedAndNothingElse) {
    const RunResult sound = Ask({"doctor", "--json"});
    EXPECT_EQ(sound.code, 0);
    EXPECT_EQ(sound.Json()["findings"].size(), 0u) << sound.out;
    EXPECT_EQ(sound.Json()["skipped"], 0);
    for (const Fault& fault : kFaults) {
        SCOPED_TRACE(fault.check);
        fault.plant(*this);
        const RunResult run = Ask({"doctor", "--json"});
        EXPECT_EQ(run.Json()["findings"].size(), 1u) << run.out;
        Holds(run.Json()["findings"], fault);
        EXPECT_EQ(run.code, run.Json()["errors"] == 0 ? 0 : 1);
        Heal();
    }
    for (const Fault& fault : kFaults) fault.plant(*this);
    const auto before = Contents(root);
    const RunResult all = Ask({"doctor", "Maasvlakte", "--json"});
    EXPECT_EQ(all.Json()["findings"].size(), std::size(kFaults)) << all.out;
    for (const Fault& fault : kFaults) Holds(all.Json()["findings"], fault);
    EXPECT_EQ(all.code, 1);
    EXPECT_EQ(all.err, "");
    EXPECT_EQ(Contents(root), before) << "a look changes nothing, a wrong signature least of all";
}

TEST_F(OrvcfgDoctorTest, LooksOnBehindWhatKeepsTheRestClosed) {
    const auto checks = [&](const RunResult& run) {
        std::vector<string> names;
        const nlohmann::json findings = run.Json()["findings"];
        for (const auto& row : findings) names.push_back(row["check"]);
        return names;
    };
    using Names = std::vector<string>;
    Append(General("ApplicationDefinitions/navigate.adf"), "[Vessel]\nMultiObject=0\n");
    fs::remove(Project("Sounder.alr"));
    EXPECT_EQ(checks(Ask({"doctor", "--json"})), (Names{"signature", "needed-file"}));
    Heal();
    fs::remove(General("GeoidModels/Netherlands/synthetic-sample-not-for-navigation.gtx"));
    EXPECT_EQ(checks(Ask({"doctor", "--json"})), Names{"geoid"});
    Heal();
    Write(Project("Project.prj"), "[Header]\nProjectName=x\n");
    const RunResult empty = Ask({"doctor", "--json"});
    EXPECT_EQ(checks(empty), (Names{"signature", "project"})) << empty.out;
    Heal();
    SetProject("CoordSystem", "OldGeoidMode", "1");
    EXPECT_EQ(checks(Ask({"doctor", "--json"})), Names{"project"});
    EXPECT_NE(Ask({"doctor"}).out.find("project upgrade --plan"), string::npos);
    Heal();
    for (const char* gone : {"Maasmond.tdg", "maasmond_20243.tid"}) fs::remove(Project(gone));
    Tide("Pier", "2024-03-20 00:00,1\n2024-03-20 00:02,1\n");
    EXPECT_EQ(checks(Ask({"doctor", "--json"})), Names{"tide-of-log"});
    EXPECT_EQ(Ask({"doctor", "Nowhere"}).code, 2);
    EXPECT_EQ(Run({"--system", "nowhere", "doctor"}).code, 2);
    EXPECT_NE(Ask({"doctor"}).out.find("21 checks: 0 errors, 1 warning\n"), string::npos);
}

}  // namespace
}  // namespace orv::test
