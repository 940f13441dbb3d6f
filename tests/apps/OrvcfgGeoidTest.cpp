#include <cmath>
#include <random>
#include <tuple>

#include "apps/RunProgram.h"
#include "geoid/TestGrid.h"
#include "platform/os/FileTools.h"
#include "platform/text/Utf.h"

namespace orv::test {
namespace {

constexpr double kSouth = 51.0, kWest = 3.0, kStep = 0.25;
constexpr int kRows = 13, kColumns = 17;

double Direct(double latitude, double longitude) {
    return BetweenNodes(Bumpy, (longitude - kWest) / kStep, (latitude - kSouth) / kStep, kRows, kColumns);
}

class OrvcfgGeoidTest : public OrvcfgTest {
protected:
    void SetUp() override {
        Install("Harbour");
        WriteBytes(At(L"bumpy.gtx"), GtxFile(kSouth, kWest, kStep, kRows, kColumns, Bumpy));
        const RunResult added = OnInstallation({"geoid", "add", "bumpy.gtx"});
        ASSERT_EQ(added.code, 0) << added.err;
    }
    RunResult Eval(const std::string& input, Arguments more = {}) const {
        more.insert(more.begin(), {"geoid", "eval", "--model", "28", "--file", "bumpy.gtx"});
        return OnInstallation(more, input);
    }
};

TEST_F(OrvcfgGeoidTest, SeparationsAreBilinear) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> latitude(kSouth, kSouth + (kRows - 1) * kStep - 0.001);
    std::uniform_real_distribution<double> longitude(kWest, kWest + (kColumns - 1) * kStep);
    std::string input;
    std::vector<double> expected;
    for (int i = 0; i < 20000; ++i) {  // more than one block of input
        const double lat = std::round(latitude(random) * 1e9) / 1e9, lon = std::round(longitude(random) * 1e9) / 1e9;
        input += nlohmann::json(lat).dump() + " " + nlohmann::json(lon).dump() + "\n";
        expected.push_back(Direct(lat, lon));
    }
    const RunResult result = Eval(input, {"--decimals", "9"});
    ASSERT_EQ(result.code, 0) << result.err;
    const std::vector<std::string> lines = Lines(result.out), given = Lines(input);
    ASSERT_EQ(lines.size(), expected.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        ASSERT_EQ(lines[i].find(given[i] + " "), 0u) << lines[i];
        ASSERT_NEAR(std::stod(lines[i].substr(given[i].size())), expected[i], 1e-8) << lines[i];
    }
}

TEST_F(OrvcfgGeoidTest, TheFilterKeepsWhatIsNoPosition) {
    ASSERT_EQ(Direct(52, 4), 41.75);
    const std::string centre = "41.7500";
    const RunResult result =
        Eval("# harbour  52 4\n\n   \n52 4 quay 7\n 52\t4\n52 4\r\n60 4 far\n52\n95 4\n52,1 4\nabc 4");
    EXPECT_EQ(result.code, 1);
    const std::vector<std::string> lines = Lines(result.out);
    const std::vector<std::string> expected = {
        "# harbour  52 4",
        "",
        "   ",
        "52 4 " + centre + " quay 7",
        "52 4 " + centre,
        "52 4 " + centre,
        "60 4 * far  # the position lies outside the model",
        "52 *  # a position has a latitude and a longitude",
        "95 4 *  # latitude outside -90 to 90 degrees",
        "52,1 4 *  # latitude is no angle",
        "abc 4 *  # latitude is no angle",
    };
    EXPECT_EQ(lines, expected);
    EXPECT_NE(result.err.find("5 of 8 positions"), std::string::npos) << result.err;
}

TEST_F(OrvcfgGeoidTest, AnglesInAllForms) {
    const double lat = 52 + 9 / 60.0 + 15.1 / 3600;
    const std::tuple<std::string, std::string, double, double> rows[] = {
        {"52.5", "4.25", 52.5, 4.25},
        {"52d09'15.1\"N", "4d30'E", lat, 4.5},
        {"52:09:15.1", "4:30", lat, 4.5},
        {"52d30", "364.25", 52.5, 0},       // what is outside the grid is refused as it stands
        {"52d9.5'15\"N", "4.5", 0, 0},      // a fraction that isn't the last part
        {"-52dN", "4.5", 0, 0},             // sign and letter
        {"4d30'E", "52d09'15.1\"N", 0, 0},  // the other order
        {"1e400", "4.5", 0, 0},
    };
    for (const auto& [latitude, longitude, theLat, lon] : rows) {
        const RunResult result = Eval(latitude + " " + longitude + "\n", {"--json"});
        const bool good = theLat != 0 && lon != 0;
        EXPECT_EQ(result.code, good ? 0 : 1) << latitude << result.out;
        if (good) {
            EXPECT_NEAR(result.Json()["separation"].get<double>(), Direct(theLat, lon), 1e-9) << latitude;
        } else {
            EXPECT_EQ(result.Json()["separation"], nullptr) << latitude;
            EXPECT_NE(result.Json()["reason"], "") << latitude;
        }
    }
    EXPECT_EQ(Eval("4.25 52.5 a\n", {"--lonlat", "--decimals", "1"}).out.find("4.25 52.5 4"), 0u);
    // Western and southern positions are arguments, too, though they look like options.
    const RunResult west = Eval("", {"52.5", "-4.25", "-52.5", "4.25"});
    EXPECT_EQ(Lines(west.out).size(), 2u) << west.err;
    EXPECT_EQ(Eval("", {"52.5"}).code, 2);
}

TEST_F(OrvcfgGeoidTest, TheProjectsOwnGeoid) {
    const RunResult missing = OnInstallation({"geoid", "eval", "52", "4"});
    EXPECT_EQ(missing.code, 2);
    EXPECT_EQ(missing.out, "");
    EXPECT_NE(missing.err.find("nlgeo2018.gtx"), std::string::npos) << missing.err;
    EXPECT_NE(missing.err.find(Text(L"i/General/GeoidModels/Netherlands/")), std::string::npos) << missing.err;

    WriteBytes(GridFolder() + L"nlgeo2018.gtx", ReadBytes(At(L"bumpy.gtx")));
    const RunResult found = OnInstallation({"geoid", "eval", "52.1", "4.1", "57", "4"});
    EXPECT_EQ(found.code, 1);
    EXPECT_EQ(Lines(found.out)[0], Lines(Eval("52.1 4.1").out)[0]);

    ASSERT_EQ(OnInstallation({"project", "create", "Plain"}).code, 0);
    const RunResult none = OnInstallation({"--project", "Plain", "geoid", "eval", "52", "4"});
    EXPECT_EQ(none.code, 2);  // and no 0 that could be taken for a separation
    EXPECT_NE(none.err.find("no geoid model"), std::string::npos) << none.err;
}

TEST_F(OrvcfgGeoidTest, AddNeverReplacesAnotherGrid) {
    const std::string first = ReadBytes(GridFolder() + L"bumpy.gtx");
    EXPECT_EQ(first, ReadBytes(At(L"bumpy.gtx")));
    EXPECT_NE(OnInstallation({"geoid", "add", "bumpy.gtx"}).out.find("there already"), std::string::npos);
    WriteBytes(At(L"bumpy.gtx"), GtxFile<double>(51, 3, 0.5, 4, 4, Bumpy));
    const RunResult refused = OnInstallation({"geoid", "add", "bumpy.gtx"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(ReadBytes(GridFolder() + L"bumpy.gtx"), first);
    EXPECT_EQ(OnInstallation({"geoid", "add", "bumpy.gtx", "--force"}).code, 0);
    EXPECT_EQ(ReadBytes(GridFolder() + L"bumpy.gtx"), ReadBytes(At(L"bumpy.gtx")));

    const nlohmann::json models = OnInstallation({"geoid", "list", "--json"}).Json();
    for (const auto& model : models) {
        if (model["typeId"] == 28) {
            EXPECT_EQ(model["grids"], nlohmann::json::array({"bumpy.gtx"}));
        }
    }
}

TEST_F(OrvcfgGeoidTest, OnlyGridsAreTaken) {
    const auto grid = [](double south, double west, double step, int rows, int columns) {
        return GtxFile(south, west, step, rows, columns, Bumpy);
    };
    const std::string good = grid(51, 3, 0.25, 5, 5);
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"cut short", good.substr(0, good.size() - 4), "bytes"},
        {"grown", good + "x", "bytes"},
        {"no step", grid(51, 3, 0, 5, 5), "steps"},
        {"not a number", grid(std::nan(""), 3, 0.25, 5, 5), "nowhere on earth"},
        {"its reader would take it for wider nodes", grid(51, 3, 0.25, 3, 3), "10 of them"},
        {"nothing but no data", GtxFile(51, 3, 0.25, 5, 5, [](int, int) { return -88.8888; }), "without a height"},
        {"heights of mountains", GtxFile(51, 3, 0.25, 5, 5, [](int, int) { return 4000; }), "no separation"},
        {"another country", grid(-40, 170, 0.25, 5, 5), "No model takes"},
    };
    for (const auto& [name, content, words] : rows) {
        WriteBytes(At(L"try.gtx"), content);
        const RunResult result = OnInstallation({"geoid", "add", "try.gtx"});
        EXPECT_EQ(result.code, 1) << name;
        EXPECT_NE(result.err.find(words), std::string::npos) << name << ": " << result.err;
        EXPECT_FALSE(Exists(GridFolder() + L"try.gtx")) << name;
    }
    EXPECT_EQ(OnInstallation({"geoid", "add", "try.gtx", "--model", "28"}).code, 0);  // if somebody wants it so
}

TEST_F(OrvcfgGeoidTest, InfoTellsBoundsAndGaps) {
    WriteBytes(At(L"gaps.gtx"),
               GtxFile<double>(51, 3, 0.5, 4, 5, [](int r, int c) { return r == 0 ? -88.8888 : 40.0 + r + 0.1 * c; }));
    const nlohmann::json info = Run({"geoid", "info", "gaps.gtx", "--json"}).Json()["grid"];
    EXPECT_EQ(info["nodeType"], "64-bit reals");
    EXPECT_TRUE(info["north"] == 52.5 && info["east"] == 5.0 && info["nodes"] == 20) << info;
    EXPECT_EQ(info["noDataPercent"], 25.0);
    EXPECT_EQ(info["smallest"], 41.0);
    EXPECT_NEAR(info["largest"].get<double>(), 43.4, 1e-5);
}

// Every form, known by its content alone, under a name that says nothing.
struct FormRow {
    const char* form;
    std::string bytes;
    unsigned short model;
    std::string name;  // under which it is put; empty for its own
    double largest;
    bool refusedShort;  // by its model, when it is cut
};

std::vector<FormRow> Forms() {
    const TestGrid g;
    TestGrid danish;
    danish.south = 55;
    danish.west = 8;
    std::string shifts = ShiftFile();
    shifts.replace(0, 9, "NUM_OREC\x0b");
    shifts[40] = 2;
    return {
        {"NTv2", shifts, 29, "", 0, true},
        {"DSBB", Dsbb(g), 4, "nlgeo04.grd", 45, false},
        {"GGF", Ggf{.rowOrder = 2}.Bytes(), 26, "", 45, false},
        {"BYN", Byn(g, 2), 23, "", 45, false},
        {"GRAVSOFT", Gravsoft(g, 777, false), 22, "LAT2006.01", 45, false},
        {"GRAVSOFT", Gravsoft(danish, 777, true), 14, "", 45, false},
        {"quasi-geoid", Quasigeoid(g), 16, "", 45, false},
        {"text grid (.gri)", Gri(g), 24, "g24.gri", 45, true},
        {"1 km list of shifts and heights", KilometreList(), 25, "", 0, false},
        {"VORF list", Vorf(g), 27, "", 45, false},
    };
}

TEST_F(OrvcfgGeoidTest, EveryForm) {
    const nlohmann::json models = OnInstallation({"geoid", "list", "--json"}).Json();
    for (const FormRow& row : Forms()) {
        const std::string file = "g" + std::to_string(row.model) + ".any";
        WriteBytes(At(FromUtf8(file)), row.bytes);
        const nlohmann::json info = Run({"geoid", "info", file, "--json"}).Json();
        EXPECT_EQ(info["grid"]["form"], row.form);
        if (row.largest != 0) {
            EXPECT_TRUE(info["grid"]["largest"] == row.largest && info["grid"]["smallest"] == 40.0) << info;
            EXPECT_NEAR(info["grid"]["noDataPercent"].get<double>(), 100 / 110.0, 1e-9) << row.form;
        }
        const RunResult added = OnInstallation({"geoid", "add", file, "--json"});
        ASSERT_EQ(added.code, 0) << row.form << added.err;
        const nlohmann::json done = added.Json().begin().value();
        std::string placed;  // read as models do, which don't tell upper case from lower
        EXPECT_EQ(ReadWholeFile(FromUtf8(done["path"].get<std::string>()), placed), FsResult::Ok) << done;
        EXPECT_TRUE(placed == row.bytes) << done;
        EXPECT_EQ(added.Json().begin().key(), row.name.empty() ? file : row.name);
        for (const auto& model : models) {
            if (model["typeId"] == row.model) {
                EXPECT_EQ(done["model"], model["key"]) << row.form;
            }
        }

        EXPECT_EQ(Run({"geoid", "check", file}).code, 0) << row.form;
        // Half of a node, so that no form can take it for a smaller grid.
        WriteBytes(At(L"cut.any"), row.bytes.substr(0, row.bytes.size() - (row.refusedShort ? 9 : 2)));
        if (row.model == 27 || row.model == 25) continue;  // a list with gaps is a list
        const RunResult cut = Run({"geoid", "check", "cut.any"});
        EXPECT_EQ(cut.code, row.refusedShort ? 1 : 0) << row.form;
        EXPECT_NE(cut.out.find(row.refusedShort ? "refuses" : "accepts"), std::string::npos) << row.form << cut.out;
        EXPECT_EQ(Run({"geoid", "check", "--strict", "cut.any"}).code, 1) << row.form;
    }
    const RunResult whole = OnInstallation({"geoid", "check", "--json"});
    EXPECT_EQ(whole.code, 0) << whole.out;
    EXPECT_GT(whole.Json().size(), 5u) << "what was added, and what belongs to it and is missing";
    EXPECT_NE(OnInstallation({"geoid", "dump", "--model", "4"}).out.find("nlgeo04.grd"), std::string::npos);
    EXPECT_EQ(OnInstallation({"geoid", "eval", "--grid", "--model", "24", "--file", "g24.gri", "5", "5"}).code, 1);
}

TEST_F(OrvcfgGeoidTest, ShiftsThereAndBack) {
    WriteBytes(At(L"s.gsb"), Forms()[0].bytes);
    WriteBytes(At(L"k.txt"), KilometreList());
    ASSERT_EQ(OnInstallation({"geoid", "add", "s.gsb", "k.txt"}).code, 0);
    const std::tuple<const char*, const char*, const char*, double> rows[] = {{"29", "s.gsb", "50.3 5.5", 1e-8},
                                                                              {"25", "k.txt", "403210 103456", 2e-3}};
    for (const auto& [model, file, place, near] : rows) {
        const Arguments shift = {"geoid", "shift", "--apply", "--decimals", "12", "--model", model, "--file", file};
        const std::string there = OnInstallation(shift, std::string("# kept\n") + place + " buoy\n").out;
        double x = 0, y = 0, u = 0, v = 0, back = 0, again = 0;
        ASSERT_EQ(std::sscanf(there.c_str(), "# kept\n%lf %lf %lf %lf buoy", &x, &y, &u, &v), 4) << there;
        EXPECT_NE(x, u);
        Arguments inverse = shift;
        inverse.push_back("--inverse");
        const std::string home = OnInstallation(inverse, std::to_string(u) + " " + std::to_string(v)).out;
        ASSERT_EQ(std::sscanf(home.c_str(), "%*s %*s %lf %lf", &back, &again), 2) << home;
        EXPECT_NEAR(std::hypot(back - x, again - y), 0, near + 1e-6);
    }
    EXPECT_EQ(OnInstallation({"geoid", "shift", "--model", "29", "--file", "s.gsb", "10", "10"}).code, 1);
    EXPECT_EQ(OnInstallation({"geoid", "shift", "--model", "28", "--file", "bumpy.gtx", "52", "4"}).code, 2);
}

TEST_F(OrvcfgGeoidTest, VerifyTellsStationsThatAreOut) {
    const auto verify = [&](const std::string& stations) {
        WriteBytes(At(L"stations.txt"), stations);
        return OnInstallation({"geoid", "verify", "stations.txt", "--model", "28", "--file", "bumpy.gtx"});
    };
    EXPECT_EQ(verify("# published\n52 4 41.75 0.0001 quay\n52 4 41.7495 0.001\n").code, 0);
    const RunResult out = verify("52 4 41.75 0.01 in\n52 4 41.77 0.01 far\n60 4 41 0.1 off\n");
    EXPECT_EQ(out.code, 1);
    EXPECT_NE(out.out.find("OUT far"), std::string::npos) << out.out;
    EXPECT_NE(out.err.find("2 of 3"), std::string::npos) << out.err;
    for (const char* wrong : {"", "52 4\n", "52 4 41.75\n", "52 4 41.75 -1\n", "52 4 nan 0.1\n"}) {
        EXPECT_EQ(verify(wrong).code, 1) << wrong;
    }
}

TEST_F(OrvcfgGeoidTest, MapMarksWhatIsRefused) {
    const RunResult map = OnInstallation({"geoid", "map", "28", "--file", "bumpy.gtx", "--bounds", "51", "3", "56", "7",
                                          "--cells", "20", "-o", "map.svg"});
    ASSERT_EQ(map.code, 0) << map.err;
    const std::string svg = ReadBytes(At(L"map.svg"));
    EXPECT_EQ(svg.find("<svg"), 0u);
    EXPECT_NE(svg.find("40.0 % of the 320"), std::string::npos) << "two fifths lie north of the grid";
    EXPECT_EQ(
        OnInstallation({"geoid", "map", "28", "--file", "bumpy.gtx", "--bounds", "0", "0", "1", "1", "-o", "-"}).code,
        1);
}

}  // namespace
}  // namespace orv::test
