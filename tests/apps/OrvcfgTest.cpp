#include <filesystem>
#include <set>
#include <tuple>

#include "apps/RunProgram.h"
#include "platform/text/Utf.h"

namespace orv::test {
namespace {

TEST_F(OrvcfgTest, InitMakesAnInstallationOnce) {
    Install();
    EXPECT_TRUE(Exists(At(L"i/General/ApplicationDefinitions/navigate.adf")));
    const std::string settings = ReadBytes(At(L"i/system/ORV.ini"));
    EXPECT_NE(settings.find("Projects=" + Text(L"i/Projects/")), std::string::npos) << settings;

    WriteBytes(At(L"i/General/ApplicationDefinitions/navigate.adf"), "; mine\n");
    const RunResult again = Run({"init", "i"});
    EXPECT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(again.out.find("made  "), std::string::npos) << again.out;
    EXPECT_EQ(ReadBytes(At(L"i/system/ORV.ini")), settings);
    EXPECT_EQ(ReadBytes(At(L"i/General/ApplicationDefinitions/navigate.adf")).find("; mine"), 0u);

    MakeFolders(At(L"other/mine"));
    EXPECT_EQ(Run({"init", "other"}).code, 2);
    EXPECT_FALSE(Exists(At(L"other/system")));
}

TEST_F(OrvcfgTest, AProjectIsThereForTheNextRun) {
    Install("Harbour");
    const RunResult list = OnInstallation({"project", "list", "--json"});
    ASSERT_EQ(list.code, 0) << list.err;
    ASSERT_EQ(list.Json().size(), 1u);  // the common files are no project
    EXPECT_EQ(list.Json()[0]["title"], "Häfen");
    EXPECT_EQ(list.Json()[0]["signature"], "valid");
    const RunResult show = OnInstallation({"project", "show", "--json"});
    ASSERT_EQ(show.code, 0) << show.err;
    const nlohmann::json project = show.Json();
    EXPECT_EQ(project["coordinateSystem"]["system"], "RD New - NAP 2018");
    EXPECT_EQ(project["coordinateSystem"]["geoidModel"], "GeoidModelRDNAP2018");
    EXPECT_EQ(project["coordinateSystem"]["geoidUsable"], false);  // no grid has been added
}

TEST_F(OrvcfgTest, ANewProjectFollowsTheUnitOfItsSystem) {
    Install();
    const RunResult systems = OnInstallation({"project", "systems", "--json"});
    ASSERT_EQ(systems.code, 0) << systems.err;
    std::set<std::string> tried;
    for (const nlohmann::json& row : systems.Json()) {
        const std::string unit = row["unit"], name = "In " + unit;
        if (!tried.insert(unit).second) continue;
        const RunResult made = OnInstallation({"project", "create", name, "--group", row["group"].get<std::string>(),
                                               "--coord-system", row["system"].get<std::string>()});
        ASSERT_EQ(made.code, 0) << made.err;
        const nlohmann::json shown = OnInstallation({"project", "show", name, "--json"}).Json();
        EXPECT_EQ(shown["units"][1]["unit"], unit);
        EXPECT_EQ(shown["units"][4]["unit"], unit);
    }
}

TEST_F(OrvcfgTest, ExitCodesAndWhatToDo) {
    Install("Harbour");
    WriteBytes(At(L"plain.ini"), "[Size]\nWidth=2\n");
    const std::tuple<Arguments, int, const char*> rows[] = {
        {{"--help"}, 0, ""},
        {{}, 2, "subcommand is required"},
        {{"pathz"}, 2, "Did you mean \"paths\"?"},
        {{"paths", "--system", "nowhere"}, 2, "nowhere/ORV.ini: No such file"},
        {{"--system", "i", "paths"}, 2, "i/system"},
        {{"--system", "i/system", "--app-def", "", "paths"}, 2, "Name one with --app-def"},
        {{"--system", "i/system", "paths"}, 0, ""},
        {{"--system", "i/system", "types", "Tidestaton"}, 1, "Did you mean \"TideStation\"?"},
        {{"--system", "i/system", "--project", "Habour", "project", "show"}, 2, "Did you mean \"Harbour\"?"},
        {{"--system", "i/system", "project", "create", "Harbour"}, 1, "there already"},
        {{"--system", "i/system", "project", "create", "a/b"}, 1, "can't be the name"},
        {{"--system", "i/system", "project", "create", "B", "--group", "Netherland"}, 1, "\"Netherlands\""},
        {{"--system", "i/system", "project", "create", "B", "--system", "i/system"}, 1, "in front of \"project\""},
        // A name that is also a subcommand is a name where one is expected.
        {{"--system", "i/system", "project", "create", "paths"}, 0, ""},
        {{"config", "get", "nosuch.ini", "A"}, 1, "nosuch.ini: Can't be read"},
        {{"config", "get", "plain.ini", "Size", "Widht"}, 1, "Did you mean \"Width\"?"},
        {{"config", "set", "plain.ini", "Size", "Height", "1"}, 1, "--add"},
        {{"config", "check", "plain.ini"}, 0, ""},
        {{"config", "check", "plain.ini", "--strict"}, 1, "no signature"},
        {{"demo", "--project", "Harbour"}, 2, "of its own"},
        {{"demo", "--grid", "plain.ini"}, 2, "No grid that the model can read"},
        {{"demo", "--folder", "i"}, 2, "i: The folder isn't empty"},
    };
    for (const auto& [arguments, code, words] : rows) {
        const RunResult result = Run(arguments);
        std::string what;
        for (const std::string& argument : arguments) what += argument + " ";
        EXPECT_EQ(result.code, code) << what << result.err;
        if (*words == '\0') {
            EXPECT_EQ(result.err, "") << what;
        } else {
            EXPECT_NE(result.err.find(words), std::string::npos) << what << result.err;
        }
    }
    EXPECT_FALSE(Exists(At(L"i/Projects/B")));
}

TEST_F(OrvcfgTest, SetChangesOneLineAndKeepsTheSignature) {
    Install("Harbour");
    const std::string file = "i/Projects/Harbour/Project.prj";
    const std::vector<std::string> before = Lines(ReadBytes(ProjectFile()));
    ASSERT_EQ(Run({"config", "set", file, "Formats", "DepthDecimals", "3"}).code, 0);
    const std::vector<std::string> after = Lines(ReadBytes(ProjectFile()));
    ASSERT_EQ(after.size(), before.size());
    std::vector<std::string> changed;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (after[i] != before[i]) changed.push_back(after[i]);
    }
    ASSERT_EQ(changed.size(), 2u);  // the item and the signature
    EXPECT_EQ(Run({"config", "check", "--strict", file}).code, 0);
}

TEST_F(OrvcfgTest, AHandEditedFileIsRefusedUntilItIsSigned) {
    Install("Harbour");
    const std::string file = "i/Projects/Harbour/Project.prj";
    std::string edited = ReadBytes(ProjectFile());
    edited.replace(edited.find("DepthDecimals=2"), 15, "DepthDecimals=4");
    WriteBytes(ProjectFile(), edited);

    EXPECT_EQ(Run({"config", "check", file}).code, 1);
    EXPECT_EQ(Run({"config", "set", file, "Formats", "DepthDecimals", "3"}).code, 1);
    EXPECT_EQ(OnInstallation({"project", "list", "--json"}).Json()[0]["signature"], "content changed");
    EXPECT_EQ(ReadBytes(ProjectFile()), edited);  // looking at a file doesn't sign it

    EXPECT_EQ(Run({"config", "sign", file, "--json"}).Json()[0]["was"], "content changed");
    EXPECT_EQ(Run({"config", "check", file}).code, 0);
    WriteBytes(ProjectFile(), edited);
    EXPECT_EQ(Run({"config", "set", file, "Formats", "DepthDecimals", "3", "--accept"}).code, 0);
    EXPECT_EQ(Run({"config", "get", file, "Formats", "DepthDecimals"}).out, "3\n");
}

TEST_F(OrvcfgTest, APlainFileStaysPlain) {
    WriteBytes(At(L"plain.ini"), "[Size]\nWidth=2\n");
    EXPECT_EQ(Run({"config", "set", "plain.ini", "Size", "Width", "-7"}).code, 0);
    EXPECT_EQ(Run({"config", "set", "plain.ini", "New", "Key", "a=b", "--add"}).code, 0);
    EXPECT_EQ(ReadBytes(At(L"plain.ini")), "[Size]\nWidth=-7\n\n[New]\nKey=a=b\n");
}

TEST_F(OrvcfgTest, CheckTellsLineAndCause) {
    const std::tuple<const char*, std::string, int, const char*> rows[] = {
        {"odd line", "[A]\nx=1\nhello\n", 3, "neither"},
        {"repeated key", "[A]\nx=1\n; note\n x = 2\n", 4, "after line 2"},
        {"repeated section", "[A]\nx=1\n[B]\ny=1\n[A]\nz=1\n", 5, "after line 1"},
        {"text before the first section is fine", "x\ny=1\ny=2\n[A]\n", 0, ""},
    };
    for (const auto& [name, content, line, words] : rows) {
        WriteBytes(At(L"check.ini"), content);
        const RunResult result = Run({"config", "check", "check.ini", "--json"});
        EXPECT_EQ(result.code, line > 0 ? 1 : 0) << name;
        const nlohmann::json findings = result.Json()[0]["findings"];
        ASSERT_EQ(findings.size(), line > 0 ? 1u : 0u) << name << result.out;
        if (line == 0) continue;
        EXPECT_EQ(findings[0]["line"], line) << name;
        EXPECT_NE(findings[0]["what"].get<std::string>().find(words), std::string::npos) << name;
        EXPECT_NE(result.err.find("check.ini:" + std::to_string(line) + ": "), std::string::npos) << result.err;
    }
}

TEST_F(OrvcfgTest, PathsTellEveryLocation) {
    Install("Harbour");
    const RunResult result = OnInstallation({"--project", "Harbour", "--common", "shared", "paths", "--json"});
    ASSERT_EQ(result.code, 0) << result.err;
    const nlohmann::json paths = result.Json();
    ASSERT_EQ(paths.size(), 35u);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        EXPECT_EQ(paths[i]["location"], i);
        EXPECT_NE(paths[i]["folder"].is_string(), paths[i].contains("reason")) << paths[i];
    }
    EXPECT_EQ(paths[2]["folder"], Text(L"i/Projects/Harbour/"));
    EXPECT_EQ(paths[2]["origin"], "--project in 4");
    EXPECT_EQ(paths[11]["folder"], Text(L"i/General/GeoidModels/"));
    EXPECT_EQ(paths[25]["folder"], Text(L"shared/S57Charts/"));
}

// The folder of all projects is no project's.
TEST_F(OrvcfgTest, WithoutAProjectItsFoldersAreMissing) {
    Install();
    const nlohmann::json paths = OnInstallation({"paths", "--json"}).Json();
    for (const int location : {2, 3, 12, 23}) {
        const auto& row = paths[static_cast<std::size_t>(location)];
        EXPECT_EQ(row["folder"], nullptr) << row;
        EXPECT_NE(row["reason"].get<std::string>().find("--project"), std::string::npos) << row;
    }
    EXPECT_TRUE(paths[4]["folder"].is_string());
    EXPECT_EQ(OnInstallation({"files", "VesselConfig"}).code, 1);
}

TEST_F(OrvcfgTest, RepairKeepsACopyAndSaysWhatWasMissing) {
    Install("Harbour");
    std::string damaged = ReadBytes(ProjectFile());
    const std::size_t begin = damaged.find("DepthDecimals");
    damaged.erase(begin, damaged.find('\n', begin) + 1 - begin);
    WriteBytes(ProjectFile(), damaged);
    const RunResult show = OnInstallation({"project", "show"});
    EXPECT_EQ(show.code, 2);
    EXPECT_NE(show.err.find("DepthDecimals"), std::string::npos) << show.err;
    WriteBytes(ProjectFile(), damaged);  // opening it has signed it

    const RunResult repair = OnInstallation({"project", "repair", "Harbour", "--json"});
    EXPECT_EQ(repair.code, 0) << repair.err;
    EXPECT_EQ(ReadBytes(ProjectFile() + L".before-repair"), damaged);
    std::set<std::string> added;
    const nlohmann::json told = repair.Json();
    for (const auto& row : told["changes"]) {
        if (row["change"] == "added") added.insert(row["key"]);
    }
    EXPECT_EQ(added, std::set<std::string>{"DepthDecimals"});
    EXPECT_EQ(OnInstallation({"project", "repair"}).code, 0);
    EXPECT_EQ(ReadBytes(ProjectFile() + L".before-repair"), damaged);  // the first copy stays
    EXPECT_TRUE(Exists(ProjectFile() + L".before-repair-2"));
}

TEST_F(OrvcfgTest, ResultsThatCannotBeWrittenAreNoSuccess) {
    Install();
    EXPECT_EQ(Run({"--system", "i/system", "types"}, "", ">/dev/full").code, 2);
    EXPECT_EQ(Run({"--system", "i/system", "types"}, "", ">&-").code, 2);
}

TEST_F(OrvcfgTest, DemoShowsHeightsAtAllPositionsAndCleansUp) {
    const nlohmann::json demo = Run({"demo", "--json"}).Json();
    ASSERT_EQ(demo["heights"].size(), 10u);
    int without = 0;
    for (const auto& row : demo["heights"]) {
        without += row["height"].is_null() ? 1 : 0;
        if (row["height"].is_null()) continue;
        EXPECT_NEAR(row["height"].get<double>() + row["separation"].get<double>(), 50.0, 1e-9);
    }
    EXPECT_EQ(without, 1);
    EXPECT_FALSE(Exists(FromUtf8(demo["sample"]["folder"].get<std::string>())));
}

TEST_F(OrvcfgTest, LiveDataByGroupAndByUse) {
    const RunResult groups = Run({"datadef", "groups", "--kind", "composite", "--json"});
    ASSERT_EQ(groups.code, 0) << groups.err;
    EXPECT_EQ(groups.Json()[1]["name"], "Survey");
    const nlohmann::json motion = Run({"datadef", "items", "mru", "--json"}).Json();
    EXPECT_EQ(motion["items"][4]["mnemonic"], "Heave");
    EXPECT_EQ(motion["items"][0]["simulation"], nullptr);
    WriteBytes(At(L"own.ini"), "[7]\nName=Own\nItem(0)=Heave,H,103,8,0,162\n[8]\nItem(0)=Time\nItem(1)=Depth,D,1\n");
    const RunResult found = Run({"datadef", "find", "162", "nothing", "DEP", "--file", "own.ini", "--json"});
    EXPECT_EQ(found.code, 1);
    EXPECT_NE(found.err.find("\"nothing\""), std::string::npos) << found.err;
    EXPECT_EQ(found.Json()[0]["groupName"], "Own");
    EXPECT_EQ(found.Json()[1]["type"], nullptr);
}

TEST_F(OrvcfgTest, PortsAreAddedAndShownAsTheyAre) {
    const auto port = [&](Arguments arguments) {
        arguments.insert(arguments.begin(), "port");
        arguments.insert(arguments.end(), {"--file", "ports.ini"});
        return Run(arguments);
    };
    EXPECT_EQ(port({"list"}).code, 2);
    const std::tuple<Arguments, int, const char*> rows[] = {
        {{"new", "3", "--handler", "Serial", "--set", "Baudrate=9600"}, 0, ""},
        {{"new", "3", "--handler", "Serial"}, 1, "Port already exists"},
        {{"new", "a b"}, 1, "cannot contain a space"},
        {{"new", "x", "--handler", "socket"}, 1, "Did you mean \"Socket\"?"},
        {{"new", "x", "--set", "Baudrate"}, 1, "KEY=VALUE"},
        {{"show", "COM4"}, 1, "Did you mean \"COM3\"?"},
        {{"list"}, 0, ""}};
    for (const auto& [arguments, code, told] : rows) {
        const RunResult result = port(arguments);
        EXPECT_EQ(result.code, code) << result.err;
        EXPECT_NE(result.err.find(told), std::string::npos) << result.err;
    }
    const std::string replay = ReadBytes(At(L"ports.ini")) + "[Eye]\nHandler=FjordEye\nHostAdress=file:a\n[Bad]\n";
    WriteBytes(At(L"ports.ini"), replay);
    const RunResult list = port({"list", "--json"});
    EXPECT_EQ(list.code, 1);  // a port without handler
    EXPECT_EQ(list.Json()[0]["settings"], "9600 8-NO-1");
    EXPECT_EQ(list.Json()[2]["handler"], nullptr);
    EXPECT_EQ(ReadBytes(At(L"ports.ini")), replay);
}

TEST_F(OrvcfgTest, DepsNamesWhatTheSampleLacks) {
    const RunResult demo = Run({"demo", "--keep", "--json"});
    ASSERT_EQ(demo.code, 0) << demo.err;
    const std::string root = demo.Json()["sample"]["folder"];
    const Arguments deps = {"--system", root + "system", "deps", "--list"};
    const RunResult whole = Run(deps);
    EXPECT_EQ(whole.code, 0) << whole.err;
    const std::vector<std::string> files = Lines(whole.out);
    EXPECT_EQ(files.size(), 9u) << whole.out;
    for (const char* ending : {"prj", "adf", "uni", "gtx", "acf", "vcf", "vsl", "alr", "vsf"}) {
        EXPECT_NE(whole.out.find(std::string(".") + ending + "\n"), std::string::npos) << ending;
    }
    const RunResult shown = Run({"--system", root + "system", "app", "show", "--json"});
    EXPECT_EQ(shown.Json()["vessels"][0]["exists"], true);
    EXPECT_EQ(Run({"--system", root + "system", "app", "select", "navigate", "Night"}).code, 1);
    EXPECT_EQ(Run({"--system", root + "system", "app", "select", "navigate", "Night", "--create"}).code, 0);
    EXPECT_EQ(Run({"--system", root + "system", "app", "select", "navigate", "Survey"}).code, 0);
    for (const std::string& file : files) {
        if (!file.ends_with(".alr")) continue;
        std::filesystem::remove(file);
        const RunResult lacking = Run(deps);
        EXPECT_EQ(lacking.code, 1);
        EXPECT_NE(lacking.err.find(file + ": missing, needed by Sounder[navigate].vcf"), std::string::npos)
            << lacking.err;
    }
    std::filesystem::remove_all(root);
}

}  // namespace
}  // namespace orv::test
