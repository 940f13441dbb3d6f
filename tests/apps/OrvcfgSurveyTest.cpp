#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>
#include <tuple>

#include "apps/RunProgram.h"
#include "core/DataSearch.h"
#include "platform/crypto/Crc8.h"
#include "platform/watch/SubscriptionManager.h"
#include "surveydata/TideStation.h"

namespace orv::test {
namespace {

using std::string;

string Record(char type, std::string_view payload) {
    const auto sum = static_cast<char>(Compute8BitCRC(std::as_bytes(std::span(payload))));
    return string{type, 0, static_cast<char>(payload.size()), 0} + string(payload) + sum;
}

class OrvcfgSurveyTest : public OrvcfgTest {
protected:
    OrvcfgSurveyTest() { setenv("TZ", "UTC0", 1); }
    RunResult Tide(Arguments arguments, const string& input = {}) const {
        arguments.insert(arguments.begin(), {"--project", "Harbour", "tide"});
        return OnInstallation(arguments, input);
    }
    RunResult Import(const string& csv, Arguments more) const {
        WriteBytes(At(L"a.csv"), csv);
        more.insert(more.begin(), {"import", "Pier", "a.csv"});
        return Tide(more);
    }
    void Fails(const RunResult& result, int code, const string& words) const {
        EXPECT_EQ(result.code, code) << result.err;
        EXPECT_NE(result.err.find(words), string::npos) << result.err;
    }
};

TEST_F(OrvcfgSurveyTest, SvpCheckTellsEveryFaultWithItsLine) {
    const std::tuple<const char*, const char*, int, const char*> rows[] = {
        {"sound", "Point(1)=-1,1500,0,0\nPoint(2)=-2,1501,0,0\n", 0, ""},
        {"twice", "Point(1)=-1,1500,0,0\nPoint(2)=-2,1500,0,0\nPoint(3)=-1,1500,0,0\n", 4, "in Point(1) already"},
        {"order", "Point(1)=-2,1500,0,0\nPoint(2)=-1,1500,0,0\n", 3, "Wrong order"},
        {"sign", "Point(1)=1,1500,0,0\nPoint(2)=-2,1500,0,0\n", 2, "wrong sign"},
        {"slow with the offset", "Point(1)=-1,1400.5,0,0\n[OFFSET]\nSVOffset=-1\n", 2, "1399.5 m/s with the offset"},
        {"fast", "Point(1)=-1,1600.1,0,0\n", 2, "isn't between 1400 and 1600"},
        {"no number", "Point(1)=-1,1500,0,x\n", 2, "isn't four numbers"},
        {"gap", "Point(1)=-1,1500,0,0\n\nPoint(3)=-3,1500,0,0\n", 4, "never read"},
    };
    for (const auto& [what, points, line, words] : rows) {
        WriteBytes(At(L"a.svp"), string("[POINTS]\n") + points);
        const RunResult result = Run({"svp", "check", "a.svp", "--json"});
        EXPECT_EQ(result.code, line > 0 ? 1 : 0) << what << result.err;
        const nlohmann::json findings = result.Json()[0]["findings"];
        ASSERT_EQ(findings.size(), line > 0 ? 1u : 0u) << what << result.out;
        if (line == 0) continue;
        EXPECT_EQ(findings[0]["line"], line) << what;
        const string told = findings[0]["what"];
        EXPECT_NE(told.find(words), string::npos) << told;
    }
}

TEST_F(OrvcfgSurveyTest, SvpReducesAndDraws) {
    string dense = "; cast 7\n[POINTS]\n";
    for (int i = 1; i <= 300; ++i) {
        dense += "Point(" + std::to_string(i) + ")=" + std::to_string(-0.1 * i) + ",1480,0,0\n";
    }
    WriteBytes(At(L"a.svp"), dense);
    const RunResult reduced = Run({"svp", "reduce", "a.svp", "-o", "b.svp", "--json"});
    EXPECT_EQ(reduced.Json()["reduced"], 15) << "12 to 10 m, 3 by 5 m";
    EXPECT_EQ(Run({"svp", "show", "b.svp", "--json"}).Json()["points"][12]["depth"], -20);
    EXPECT_EQ(ReadBytes(At(L"b.svp")).find("; cast 7"), 0u);
    const string picture = Run({"svp", "plot", "a.svp"}).out;
    for (const char* part : {"Sound velocity (m/s)", "Depth (m", "<polyline", "300 samples", "</svg>"}) {
        EXPECT_NE(picture.find(part), string::npos) << part;
    }
    WriteBytes(At(L"a.svp"), "[POINTS]\n");
    Fails(Run({"svp", "plot", "a.svp"}), 1, "no sample");
}

TEST_F(OrvcfgSurveyTest, TideAnswersWithItsRule) {
    Install("Harbour");
    Fails(Import("2021-03-02 10:00,1\n", {"--create"}), 2, "--zone is required");
    Fails(Import("2021-03-02 10:00,1\n", {"--create", "--zone", "CEST"}), 2, "UTC");
    ASSERT_EQ(Import("time;value\r\n2021-03-02 11:00;1\r\n2021-03-02 11:04;2\n2021-03-02 12:00:30.5Z;5",
                     {"--create", "--zone", "UTC+1"})
                  .code,
              0);
    const std::pair<const char*, const char*> rows[] = {
        {"2021-03-02T10:04:00Z", "2.0000  # exact"},
        {"2021-03-02T10:01Z", "1.2500  # interpolated"},
        {"2021-03-02 12:03Z", "5.0000  # held: 2 min 29.5 s after the last"},
        {"2021-03-02T10:30Z", "*  # refused: it lies in a gap of 1 h 56 min 30.5 s"},
        {"2021-03-02T12:30Z", "*  # refused: 29 min 29.5 s after the last value"},
        {"2021-03-02T10:00Z", "*  # refused: it is the first value"},
        {"2021-03-02T10:00", "*  # refused: its zone isn't told"},
        {"2021-02-29T10:00Z", "*  # refused: there is no such day"},
        {"# quay", "# quay"},
    };
    string input;
    for (const auto& [time, answer] : rows) input += string(time) + "\n";
    const RunResult result = Tide({"eval", "Pier"}, input);
    Fails(result, 1, "5 of 8 times have no tide");
    const std::vector<string> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), std::size(rows));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NE(lines[i].find(rows[i].second), string::npos) << lines[i];
    }
    EXPECT_EQ(Tide({"gaps", "Pier", "--json"}).Json().size(), 1u);
    const string picture = Tide({"plot", "Pier"}).out;
    for (const char* part : {"Tide (m)", "Time (UTC), 2021-03-02", "gap that isn", "12:00"}) {
        EXPECT_NE(picture.find(part), string::npos) << part;
    }
}

TEST_F(OrvcfgSurveyTest, ImportTakesAllOrNothingAndExportGivesItBack) {
    Install("Harbour");
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"decimal comma", "2021-03-02 10:00,1,25\n", "a.csv:1: more than"},
        {"no value", "2021-03-02 10:00,1\n2021-03-02 10:01,\n", "a.csv:2: the value is no number"},
        {"another value", "2021-03-02 10:00,1\n2021-03-02 10:00,2\n", "a.csv:2: 2021-03-02T09:00:00Z has another"},
        {"never", "2021-03-28 02:30,1\n", "a.csv:1: the clocks went forward"},
        {"American", "03/02/2021 10:00,1\n", "a.csv:1: a time reads like"},
    };
    for (const auto& [what, csv, words] : rows) {
        Fails(Import(csv, {"--create", "--zone", "Europe/Amsterdam"}), 1, words);
        EXPECT_FALSE(Exists(At(L"i/Projects/Harbour/Pier.tdg"))) << what;
    }
    // The hour that comes twice, in the order of the gauge.
    ASSERT_EQ(Import("2021-10-31 02:30,0.1\n2021-10-31 02:59:59,0.2\n2021-10-31 02:30,0.3\n",
                     {"--create", "--zone", "Europe/Amsterdam"})
                  .code,
              0);
    const string all = "time,value\n2021-10-31T00:30:00Z,0.1\n2021-10-31T00:59:59Z,0.2\n2021-10-31T01:30:00Z,0.3\n";
    EXPECT_EQ(Tide({"export", "Pier", "-q"}).out, all);
    EXPECT_EQ(Import(all, {"--zone", "UTC", "--json"}).out.find("\"added\": 0") == string::npos, false);
    Fails(Import("2021-10-31 00:30,9\n", {"--zone", "UTC"}), 1, "--replace");
    EXPECT_EQ(Tide({"export", "Pier", "-q"}).out, all);
    EXPECT_EQ(Import("2021-10-31 00:30,9\n", {"--zone", "UTC", "--replace"}).code, 0);
    EXPECT_EQ(Tide({"info", "Pier", "--json"}).Json()["months"][0]["highest"], 9);
}

// One process edits, the other has the station open and is told.
TEST_F(OrvcfgSurveyTest, AnotherProcessSeesWhatIsImported) {
    Install("Harbour");
    ASSERT_EQ(Import("2021-03-02 10:00,1\n2021-03-02 10:01,2\n", {"--create", "--zone", "UTC"}).code, 0);
    DataSearch& search = DataSearch::GetDataSearch();
    ASSERT_TRUE(search.Initialise(At(L"i/system/"), true, L"navigate", false, L"", L""));
    search.GetOrvIni().SetCurrentProjectName(L"Harbour");
    TideStation station;
    ASSERT_TRUE(station.FileOpen(At(L"i/Projects/Harbour/Pier.tdg")));
    ASSERT_EQ(station.GetNumValues(), 2);
    std::atomic<int> told = 0;
    const int number = SubscriptionManager::Instance().Subscribe([&](int, const std::wstring&) { ++told; });
    ASSERT_EQ(Import("2021-03-02 10:02,3\n", {"--zone", "UTC"}).code, 0);
    for (int wait = 0; wait < 1000 && station.GetNumValues() < 3; ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_GT(told, 0);
    EXPECT_EQ(station.GetNumValues(), 3);
    SubscriptionManager::Instance().Unsubscribe(number);
    station.FileClose(false);
}

TEST_F(OrvcfgSurveyTest, LogsAreNamedReadAndRenamed) {
    const string title = "Waverly[Sweep]_L~1-20210302-101530";
    EXPECT_EQ(Run({"log", "name", "--automatic", "--vessel", "Waverly", "--type", "Sweep", "--runline", "L-1", "--time",
                   "2021-03-02 10:15:30"})
                  .out,
              title + "\n");
    const RunResult parsed = Run({"log", "parse"}, "# mine\n" + title + ".orv\nWaverly.orv\n");
    EXPECT_EQ(parsed.code, 1);
    EXPECT_EQ(parsed.out, "# mine\n" + title + ".orv\tWaverly\tSweep\tL~1\t20210302-101530\t-\t0\n" +
                              "Waverly.orv\t*  # there is no survey type in brackets\n");
    const string text = "\xEF\xBB\xBF[HEADER]\r\nVesselName=Waverly\r\nRunlineName=L001\r\nOrvVersion=5\r\n";
    WriteBytes(At(L"a.orv"), Record(1, "x") + Record(2, text));
    Fails(Run({"log", "set-runline", "a.orv", "L001-much-longer-than-it-was"}), 1, "--cut");
    EXPECT_EQ(ReadBytes(At(L"a.orv")), Record(1, "x") + Record(2, text)) << "not touched";
    EXPECT_EQ(Run({"log", "set-runline", "a.orv", "L002"}).code, 0);
    const nlohmann::json header = Run({"log", "header", "a.orv", "--json"}).Json()[0];
    EXPECT_EQ(header["runline"], "L002");
    EXPECT_EQ(header["orvVersion"], "5");
    EXPECT_EQ(header["start"], nullptr);
    Fails(Run({"log", "header", "stdin"}), 1, "ends before its header");
}

TEST_F(OrvcfgSurveyTest, FileSetsKeepLogsByTime) {
    Install("Harbour");
    const auto set = [&](Arguments arguments) {
        arguments.insert(arguments.begin(), {"--project", "Harbour", "fileset"});
        return OnInstallation(arguments);
    };
    Fails(set({"list", "Day"}), 2, "No such file set");
    WriteBytes(At(L"W[S]_L2-20210302-120000.orv"), "");
    WriteBytes(At(L"W[S]_L1-20210302-110000.orv"), "");
    Fails(set({"add", "Day", "--create", "W[S]_L2-20210302-120000.orv", "nosuch", "W[S]_L1-20210302-110000.orv"}), 1,
          "nosuch.orv: No such log");
    const nlohmann::json rows = set({"list", "Day", "--json"}).Json();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["runline"], "L1");
    EXPECT_EQ(rows[0]["start"], "2021-03-02T11:00:00Z");
    Fails(set({"remove", "Day", "W[S]_L3-20210302-120000"}), 1, "isn't in the set");
    EXPECT_EQ(set({"remove", "Day", "W[S]_L1-20210302-110000.orv"}).code, 0);
    EXPECT_EQ(set({"list", "Day", "--paths"}).out, Text(L"W[S]_L2-20210302-120000.orv") + "\n");
}

}  // namespace
}  // namespace orv::test
