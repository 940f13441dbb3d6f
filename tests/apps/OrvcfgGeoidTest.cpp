#include <cmath>
#include <random>

#include "apps/RunProgram.h"
#include "geoid/GridBytes.h"

namespace orv::test {
namespace {

constexpr double kSouth = 51.0, kWest = 3.0, kStep = 0.25;
constexpr int kRows = 13, kColumns = 17;

double Node(int row, int column) {
    return Bumpy(row, column);
}

/// Bilinear between the nodes, straight from its definition.
double Direct(double latitude, double longitude) {
    const double x = (longitude - kWest) / kStep, y = (latitude - kSouth) / kStep;
    const int c = std::min(static_cast<int>(x), kColumns - 2), r = std::min(static_cast<int>(y), kRows - 2);
    const double lower = std::lerp(Node(r, c), Node(r, c + 1), x - c);
    const double upper = std::lerp(Node(r + 1, c), Node(r + 1, c + 1), x - c);
    return std::lerp(lower, upper, y - r);
}

class OrvcfgGeoidTest : public OrvcfgTest {
protected:
    void SetUp() override {
        Install("Harbour");
        WriteBytes(At(L"bumpy.gtx"), GtxFile(kSouth, kWest, kStep, kRows, kColumns, Node));
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
    EXPECT_EQ(Eval("# nothing\n").code, 0);
}

TEST_F(OrvcfgGeoidTest, AnglesInAllForms) {
    struct Row {
        std::string latitude, longitude;
        double lat, lon;  ///< 0 where it is refused
    };
    const double lat = 52 + 9 / 60.0 + 15.1 / 3600;
    const Row rows[] = {
        {"52.5", "4.25", 52.5, 4.25},
        {"+52.5", "4.25E", 52.5, 4.25},
        {"52d09'15.1\"N", "4d30'E", lat, 4.5},
        {"N52°09'15.1\"", "e4°30.0", lat, 4.5},
        {"52:09:15.1", "4:30", lat, 4.5},
        {"52d30", "364.25", 52.5, 0},       // what is outside the grid is refused as it stands
        {"52d60'N", "4.5", 0, 0},           // sixty minutes
        {"52d9.5'15\"N", "4.5", 0, 0},      // a fraction that isn't the last part
        {"-52dN", "4.5", 0, 0},             // sign and letter
        {"4d30'E", "52d09'15.1\"N", 0, 0},  // the other order
        {"nan", "4.5", 0, 0},
        {"1e400", "4.5", 0, 0},
    };
    for (const Row& row : rows) {
        const RunResult result = Eval(row.latitude + " " + row.longitude + "\n", {"--json"});
        const bool good = row.lat != 0 && row.lon != 0;
        EXPECT_EQ(result.code, good ? 0 : 1) << row.latitude << result.out;
        if (good) {
            EXPECT_NEAR(result.Json()["separation"].get<double>(), Direct(row.lat, row.lon), 1e-9) << row.latitude;
        } else {
            EXPECT_EQ(result.Json()["separation"], nullptr) << row.latitude;
            EXPECT_NE(result.Json()["reason"], "") << row.latitude;
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
    EXPECT_EQ(Lines(found.out)[1], "57 4 *  # the position lies outside the model");

    ASSERT_EQ(OnInstallation({"project", "create", "Plain"}).code, 0);
    const RunResult none = OnInstallation({"--project", "Plain", "geoid", "eval", "52", "4"});
    EXPECT_EQ(none.code, 2);  // and no 0 that could be taken for a separation
    EXPECT_NE(none.err.find("no geoid model"), std::string::npos) << none.err;
}

TEST_F(OrvcfgGeoidTest, AMissingGridIsToldOnce) {
    for (const Arguments& model : std::vector<Arguments>{{"28", "--file", "none.gtx"}, {"28"}, {"GeoidModelRDNAP"}}) {
        Arguments arguments = {"geoid", "eval", "--model"};
        arguments.insert(arguments.end(), model.begin(), model.end());
        const RunResult result = OnInstallation(arguments, "52 4\n52 5\n");
        EXPECT_EQ(result.code, 2) << model[0];
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find(Text(L"i/General/GeoidModels/")), std::string::npos) << result.err;
    }
    EXPECT_NE(OnInstallation({"geoid", "eval", "--model", "RDNAP2018"}).err.find("GeoidModelRDNAP2018"),
              std::string::npos);
}

TEST_F(OrvcfgGeoidTest, AddNeverReplacesAnotherGrid) {
    const std::string first = ReadBytes(GridFolder() + L"bumpy.gtx");
    EXPECT_EQ(first, ReadBytes(At(L"bumpy.gtx")));
    EXPECT_NE(OnInstallation({"geoid", "add", "bumpy.gtx"}).out.find("there already"), std::string::npos);
    WriteBytes(At(L"bumpy.gtx"), GtxFile<double>(51, 3, 0.5, 4, 4, Node));
    const RunResult refused = OnInstallation({"geoid", "add", "bumpy.gtx"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(ReadBytes(GridFolder() + L"bumpy.gtx"), first);
    EXPECT_EQ(OnInstallation({"geoid", "add", "bumpy.gtx", "--force"}).code, 0);
    EXPECT_EQ(ReadBytes(GridFolder() + L"bumpy.gtx"), ReadBytes(At(L"bumpy.gtx")));

    const nlohmann::json models = OnInstallation({"geoid", "list", "--json"}).Json();
    for (const auto& model : models) {
        if (model["typeId"] == 28) {
            EXPECT_EQ(model["grids"], nlohmann::json::array({"bumpy.gtx"}));
        } else if (model["typeId"] == 4) {
            EXPECT_EQ(model["grids"], nullptr);  // same folder, other files
        }
    }
}

TEST_F(OrvcfgGeoidTest, OnlyGridsAreTaken) {
    const auto grid = [](double south, double west, double step, int rows, int columns) {
        return GtxFile(south, west, step, rows, columns, Node);
    };
    struct Row {
        const char* name;
        std::string content;
        const char* words;
    };
    const std::string good = grid(51, 3, 0.25, 5, 5);
    const Row rows[] = {
        {"empty", "", "shorter than its header"},
        {"text", std::string(4000, 'x'), "nowhere on earth"},
        {"cut short", good.substr(0, good.size() - 4), "bytes"},
        {"grown", good + "x", "bytes"},
        {"no step", grid(51, 3, 0, 5, 5), "steps"},
        {"not a number", grid(std::nan(""), 3, 0.25, 5, 5), "nowhere on earth"},
        {"over the pole", grid(89, 3, 1, 5, 5), "beyond the earth"},
        {"a line", grid(51, 3, 0.25, 1, 25), "rows or columns"},
        {"its reader would take it for wider nodes", grid(51, 3, 0.25, 3, 3), "10 of them"},
        {"nothing but no data", GtxFile(51, 3, 0.25, 5, 5, [](int, int) { return -88.8888; }), "without a height"},
        {"heights of mountains", GtxFile(51, 3, 0.25, 5, 5, [](int, int) { return 4000; }), "no separation"},
        {"another country", grid(-40, 170, 0.25, 5, 5), "No model takes"},
    };
    for (const Row& row : rows) {
        WriteBytes(At(L"try.gtx"), row.content);
        const RunResult result = OnInstallation({"geoid", "add", "try.gtx"});
        EXPECT_EQ(result.code, 1) << row.name;
        EXPECT_NE(result.err.find(row.words), std::string::npos) << row.name << ": " << result.err;
        EXPECT_FALSE(Exists(GridFolder() + L"try.gtx")) << row.name;
    }
    EXPECT_EQ(OnInstallation({"geoid", "add", "try.gtx", "--model", "28"}).code, 0);  // if somebody wants it so
}

TEST_F(OrvcfgGeoidTest, InfoTellsBoundsAndGaps) {
    WriteBytes(At(L"gaps.gtx"),
               GtxFile<double>(51, 3, 0.5, 4, 5, [](int r, int c) { return r == 0 ? -88.8888 : 40.0 + r + 0.1 * c; }));
    const nlohmann::json info = Run({"geoid", "info", "gaps.gtx", "--json"}).Json()["grid"];
    EXPECT_EQ(info["nodeType"], "64-bit reals");
    EXPECT_EQ(info["north"], 52.5);
    EXPECT_EQ(info["east"], 5.0);
    EXPECT_EQ(info["nodes"], 20);
    EXPECT_EQ(info["noDataPercent"], 25.0);
    EXPECT_EQ(info["smallest"], 41.0);
    EXPECT_NEAR(info["largest"].get<double>(), 43.4, 1e-5);
    EXPECT_EQ(info["sha256"].get<std::string>().size(), 64u);
}

}  // namespace
}  // namespace orv::test
