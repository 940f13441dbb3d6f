#include <atomic>
#include <filesystem>
#include <random>
#include <thread>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_USStatePlane.h"
#include "geoid/TestGrid.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::test {
namespace {

/// A clock that stands until it is set.
class StillClock : public Clock {
public:
    StillClock() { SetClock(this); }
    ~StillClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return now; }
    std::atomic<std::int64_t> now = 1'700'000'000'000;
};

TEST(VdatumIndex, Records) {
    const auto list = ReadInf(L"/v/",
                              "[header]\r\nno point=1\r\n"
                              "a.maxlat=58.5\r\na.maxlon= 234\r\na.minlat=49\r\na.minlon=230.25 E\r\n"
                              "a.source=core\\geoid03\\g.gtx\r\na.description=x=y.z\r\na.maxlat=12\r\n"
                              "b.maxlat=1\nb.description=nothing to read, not kept\n"
                              "c.region.minlat=5\nc.source name=c/d.gtx\nc.note=maxlon here\nc.maxlon=7");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].north, 58.5) << "the first value stands";
    EXPECT_EQ(list[0].east, 234);
    EXPECT_EQ(list[0].south, 49);
    EXPECT_EQ(list[0].west, 230.25);
    EXPECT_EQ(list[0].source, L"core\\geoid03\\g.gtx") << "as it stands";
    EXPECT_EQ(list[0].fileName, L"/v/core/geoid03/g.gtx");
    EXPECT_EQ(list[0].description, L"x=y.z");
    EXPECT_EQ(list[1].source, L"c/d.gtx");
    EXPECT_EQ(list[1].south, 5) << "names are found anywhere behind the point";
    EXPECT_EQ(list[1].east, 7) << "behind the '=' too, but that value was no number";
    EXPECT_TRUE(ReadInf(L"", "").empty());
}

TEST(TidalBoundary, CountsCrossings) {
    // A square with a notch, then an island; what follows the bad line doesn't count.
    TidalBoundary boundary;
    boundary.polygons = ReadBoundary(
        "0 0 1 1\n4 0 1 1\n4 4 1 1\n2 1 1 1\n0 4 1 1\n0 0 1 1\r\n 10 10 1 2\n12 10 1 2\n12 12 1 2\nend\n20 20 1 3\n");
    ASSERT_EQ(boundary.polygons.size(), 2u);
    const struct {
        double x, y;
        bool inside;
    } rows[] = {{1, 0.5, true}, {2, 3, false}, {3.5, 3, true}, {5, 1, false}, {11.5, 11, true}, {10.5, 11, false}};
    for (const auto& row : rows) EXPECT_EQ(boundary.Holds(row.x, row.y), row.inside) << row.x << " " << row.y;
    EXPECT_FALSE(TidalBoundary().Holds(0, 0));
}

TEST(VdatumGridValue, SplinesByTheRoomThereIs) {
    // Along a row the nodes follow a cubic, which six nodes with free ends follow closely in the middle and four less.
    const auto node = [](int r, int c) { return 10 + r + 0.001 * c * c * c; };
    GtxGrid grid;
    const std::string bytes = GtxFile(40, 230, 0.25, 12, 14, node);
    ASSERT_EQ(ReadGtx(View(bytes), grid), kGeoidOk);
    const auto at = [&](double row, double column) {
        double value = kUntouched;
        return VdatumGridValue(grid, 40 + row * 0.25, 230 + column * 0.25, value) ? value : kUntouched;
    };
    const auto cubic = [](double x) { return 0.001 * x * x * x; };
    // What a natural spline through `n` values gives in the middle of its middle piece, by its own equations.
    const double four = (-3 * cubic(5) + 23 * cubic(6) + 23 * cubic(7) - 3 * cubic(8)) / 40;
    EXPECT_NEAR(at(6.5, 2.5), 16.5 + (-3 * cubic(1) + 23 * cubic(2) + 23 * cubic(3) - 3 * cubic(4)) / 40, 1e-5);
    EXPECT_NEAR(at(6.5, 6.5), 16.5 + cubic(6.5), 3e-4);
    EXPECT_GT(std::fabs(at(6.5, 6.5) - 16.5 - four), 1e-3) << "six nodes where there are six";
    EXPECT_NEAR(at(10.5, 6.5), 20.5 + (cubic(6) + cubic(7)) / 2, 1e-5) << "bilinear in the last row";
    EXPECT_NEAR(at(1.5, 6.5), 11.5 + (cubic(6) + cubic(7)) / 2, 1e-5) << "and in the first two";
    EXPECT_NEAR(at(6.5, 12.5), 16.5 + (cubic(12) + cubic(13)) / 2, 1e-5);
    EXPECT_EQ(at(6.0002, 6.0003), static_cast<float>(node(6, 6))) << "on a node";
    EXPECT_EQ(at(11, 13), static_cast<float>(node(11, 13)));
    EXPECT_EQ(at(11.01, 5), kUntouched);
    grid.values.resize(100);
    EXPECT_EQ(at(10.5, 6.5), kUntouched) << "a short grid";
}

/// The tree: two geoid grids that overlap, and a tidal area off the coast of the second.
class VdatumTree : public testing::Test {
protected:
    VdatumTree() {
        Grid(L"core/geoid03/g2003a01.gtx", 40, 230, [](int, int) { return -20; });
        Grid(L"core/geoid03/g2003a02.gtx", 46, 232, [](int, int) { return -30; });
        Grid(L"core/geoid06/g2006a02.gtx", 46, 232, [](int, int) { return -36; });
        Grid(L"Bay/tss.gtx", 47, 236, [](int, int c) { return c > 30 ? -88.8888 : 0.5; });
        Grid(L"Bay/MLLW.gtx", 47, 236, [](int r, int) { return r > 30 ? -88.8888 : -1.25; });
        Text(L"core/geoid03.inf",
             Index("a", "core\\geoid03\\g2003a01.gtx", 40, 230) + Index("b", "core\\geoid03\\g2003a02.gtx", 46, 232));
        Text(L"tidal_area.inf", Index("bay", "Bay", 47, 236));
        Text(L"Bay/Bay.bnd", "-123.9 47.1 1 1\n-116.1 47.1 1 1\n-116.1 55 1 1\n-123.9 55 1 1\n");
    }
    void Text(std::wstring_view name, const std::string& text) { GeoidFolders::Write(Path(name), text); }
    template <class Node>
    void Grid(std::wstring_view name, double south, double west, Node node) {
        Text(name, GtxFile(south, west, 0.25, 41, 41, node));
    }
    static std::string Index(const std::string& key, const std::string& source, double south, double west) {
        const auto line = [&](const char* name, double value) {
            return key + "." + name + "=" + std::to_string(value) + "\r\n";
        };
        return key + ".source=" + source + "\r\n" + line("minlat", south) + line("maxlat", south + 10) +
               line("minlon", west) + line("maxlon", west + 10);
    }
    std::wstring Path(std::wstring_view name) const { return folders.Common(L"vdatum/" + std::wstring(name)); }
    void Remove(std::wstring_view name) const { std::filesystem::remove(PathToBytes(Path(name))); }
    std::wstring TextAt(double latitude, double longitude) {
        std::wstring text;
        last = HeightAt(model, latitude, longitude, 0, 0, &text);
        return text;
    }

    StillClock clock;
    GeoidFolders folders;
    GeoidModel_USStatePlane model;
    double last = 0;
};

TEST_F(VdatumTree, PicksTheGridInWhichAPositionIsWellInside) {
    ASSERT_TRUE(model.SetFileName(L"Geoid03"));
    const struct {
        const char* label;
        double latitude, longitude, value;
    } rows[] = {
        {"first grid alone", 42, -128, -20},
        {"second alone", 54, 240, -30},
        {"both: the first", 48.05, 238, -20},
        {"near the first's north edge, once it is read", 49.9, 238, -30},
        {"near both edges of the first", 49.95, 239.95, -30},
        {"near the first's edge and outside the second", 45.9, 239.9, -20},
        {"west of all", 45, 229, kUntouched},
        {"the corner where the first wins holds it no longer", 55, 233, kUntouched},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(HeightAt(model, row.latitude, row.longitude), row.value, 1e-4) << row.label;
    EXPECT_NEAR(HeightAt(model, 49.95, 233, 0, 0), -20, 1e-4) << "in the corner even near an edge";
    EXPECT_EQ(model.LastReason(), GeoidReason::Outside);
}

TEST_F(VdatumTree, NamesOfTheGeoid) {
    for (const wchar_t* name : {L"", L"none", L"<None>"}) {
        EXPECT_TRUE(model.SetFileName(name));
        EXPECT_EQ(TextAt(54, 240), L"");
        EXPECT_EQ(last, kUntouched);
    }
    EXPECT_TRUE(model.SetFileName(L"geoid06"));
    EXPECT_NE(TextAt(54, 240).find(L"core\\geoid03\\g2003a02.gtx:-30.0000m"), std::wstring::npos);
    EXPECT_TRUE(model.SetFileName(L"GEOID06"));
    EXPECT_EQ(model.GeoidGrids().size(), 2u);
    EXPECT_NE(TextAt(54, 240).find(L"core\\geoid06\\g2006a02.gtx:-36.0000m"), std::wstring::npos);
    EXPECT_FALSE(model.SetFileName(L"geoid99"));
    EXPECT_EQ(
        folders.notices.Text(Notice::Message),
        L"Failed to find file(s):\n\"" + Path(L"core/geoid99.inf") +
            L"\"\n\nDownload the NOAA Vertical Datum Transformation model files from: \"the publisher's site\"\n\n"
            L"Unzip the files and copy to folder:\n" +
            Path(L"") + L"\n\n\n");
    EXPECT_EQ(HeightAt(model, 54, 240), kUntouched);
}

TEST_F(VdatumTree, TidalTerms) {
    UnitOnly feet(0.5);
    model.Init(&feet);
    model.SetFileName(L"geoid03");
    const std::wstring geoid = L"core\\geoid03\\g2003a02.gtx:-60.0000ft";
    const auto expect = [&](double latitude, double longitude, const std::wstring& text, double metres) {
        clock.now += 15000;
        EXPECT_EQ(TextAt(latitude, longitude), geoid + text) << latitude << " " << longitude;
        EXPECT_NEAR(last, metres / 0.5, 1e-6);
    };
    expect(54, 240, L" No Tidal Vertical Datum info !", -30);
    model.SetGeoidChartDatum(L"LMSL");
    expect(54, 240, L" Bay LMSL:-1.0000ft", -30.5);
    expect(54, 235, L" No Tidal Vertical Datum info !", -30);
    model.SetGeoidChartDatum(L"MLLW");
    expect(51, 240, L" Bay LMSL:-1.0000ft MLLW:-2.5000ft", -31.75);
    expect(54.9, 240, L" Bay LMSL:-1.0000ft MLLW:No Data", -30.5);
    // The grid of -88.8888 begins east of the spline's reach here, so the height itself stays.
    model.SetFileName(L"geoid03");
    expect(51, 241.5, L" Bay LMSL:-1.0000ft MLLW:-2.5000ft", -31.75);
    model.SetGeoidChartDatum(L"MHHW");
    expect(51, 240, L" Bay LMSL:-1.0000ft", -30.5);
    EXPECT_EQ(folders.notices.Text(Notice::Alert), L"") << "an area needn't have every datum";
    model.SetGeoidChartDatum(L"none");
    expect(51, 240, L" No Tidal Vertical Datum info !", -30);
    Remove(L"tidal_area.inf");
    model.SetGeoidChartDatum(L"MLLW");
    expect(51, 240, L" No Tidal Vertical Datum info !", -30);
    EXPECT_NE(folders.notices.Text(Notice::Message).find(L"tidal_area.inf"), std::wstring::npos);
}

TEST_F(VdatumTree, NoDataInTheArea) {
    Grid(L"Bay/tss.gtx", 47, 236, [](int, int) { return -88.8888; });
    model.SetFileName(L"geoid03");
    model.SetGeoidChartDatum(L"MLLW");
    EXPECT_EQ(TextAt(51, 240), L"core\\geoid03\\g2003a02.gtx:-30.0000m Bay LMSL:No Data MLLW:-1.2500m");
    EXPECT_NEAR(last, -31.25, 1e-6);
}

// An area is searched for every fifteen seconds; grids that nobody asked for in three minutes go.
TEST_F(VdatumTree, TimesOfSearchAndSweep) {
    model.SetFileName(L"geoid03");
    model.SetGeoidChartDatum(L"LMSL");
    EXPECT_EQ(TextAt(51, 235).find(L"Bay"), std::wstring::npos);
    clock.now += 14999;
    EXPECT_EQ(TextAt(51, 240).find(L"Bay"), std::wstring::npos) << "'none' stands for its time too";
    clock.now += 1;
    EXPECT_NE(TextAt(51, 240).find(L"Bay"), std::wstring::npos);
    clock.now -= 3600000;
    EXPECT_EQ(TextAt(51, 235).find(L"Bay"), std::wstring::npos) << "a clock set back doesn't freeze the area";
    clock.now += 3600000;

    HeightAt(model, 42, 232);
    ASSERT_TRUE(model.GeoidGrids()[0].grid);
    clock.now += 179999;
    HeightAt(model, 54, 240);
    EXPECT_TRUE(model.GeoidGrids()[0].grid);
    clock.now += 180000;
    HeightAt(model, 54, 240);
    EXPECT_FALSE(model.GeoidGrids()[0].grid);
    EXPECT_TRUE(model.GeoidGrids()[1].grid) << "used just now";
    EXPECT_NEAR(HeightAt(model, 42, 232), -20, 1e-4) << "read again when it is needed";
}

TEST_F(VdatumTree, WhatIsMissingIsTold) {
    model.SetFileName(L"geoid03");
    model.SetGeoidChartDatum(L"LMSL");
    Remove(L"Bay/Bay.bnd");
    EXPECT_NE(TextAt(54, 240).find(L" No Tidal"), std::wstring::npos);
    EXPECT_NE(folders.notices.Text(Notice::Alert).find(L"\"" + Path(L"Bay/Bay.bnd") + L"\""), std::wstring::npos);
    Remove(L"core/geoid03/g2003a01.gtx");
    for (int n = 0; n < 2; ++n) EXPECT_EQ(HeightAt(model, 42, 232), kUntouched);
    const std::wstring alerts = folders.notices.Text(Notice::Alert);
    EXPECT_NE(alerts.find(L"g2003a01.gtx\""), std::wstring::npos);
    EXPECT_EQ(alerts.find(L"g2003a01.gtx\""), alerts.rfind(L"g2003a01.gtx\"")) << "then the grid is passed over";
    EXPECT_NE(alerts.find(L"copy to folder:\n" + folders.Common() + L"\n\n"), std::wstring::npos);
}

TEST_F(VdatumTree, EightThreads) {
    model.SetFileName(L"geoid03");
    model.SetGeoidChartDatum(L"MLLW");
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 8; ++t) {
        threads.emplace_back([&, t] {
            for (int n = 0; n < 200; ++n) {
                if (n % 50 == 0) clock.now += 100000;  // the sweep runs between
                const double height = HeightAt(model, t % 2 ? 42 : 51, t % 2 ? 232 : 240);
                if (std::fabs(height - (t % 2 ? -20 : -31.75)) > 1e-3 && height != -30) ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

class DatumShift : public VdatumTree {
protected:
    void WriteGrids() {
        Grid(L"core/lo.gtx", 40, 230, [](int r, int c) { return 0.125 * ((r * 5 + c * 3 + r * c) % 17); });
        Grid(L"core/la.gtx", 40, 230, [](int r, int c) { return 0.25 * ((r * 3 + c * 7 + r * c) % 13); });
        Text(L"core/hpgnlo.inf", Index("a", "core/lo.gtx", 40, 230));
        Text(L"core/hpgnla.inf", Index("a", "core/la.gtx", 40, 230));
    }
    static double Slow(double x, double y, int a, int b, int m, double unit) {
        const int i = std::min(static_cast<int>(x), 39), j = std::min(static_cast<int>(y), 39);
        const auto node = [&](int r, int c) { return unit * ((r * a + c * b + r * c) % m); };
        const double u = x - i, v = y - j;
        return (1 - v) * ((1 - u) * node(j, i) + u * node(j, i + 1)) +
               v * ((1 - u) * node(j + 1, i) + u * node(j + 1, i + 1));
    }
};

TEST_F(DatumShift, BothGridsClosedEdges) {
    WriteGrids();
    const auto harn = MakeModel(8);
    std::mt19937 random(9);
    for (int n = 0; n < 500; ++n) {
        const auto place = [&](int step) {
            return n % step == 0 ? 40.0 : std::uniform_real_distribution(0.0, 40.0)(random);
        };
        const double x = place(7), y = place(5);
        double latitude = kUntouched, longitude = kUntouched;
        const double turned = n % 2 ? 360 : 0;
        ASSERT_TRUE(harn->CalculateLocalEllipsCorrection(40 + y / 4, 230 + x / 4 - turned, latitude, longitude, n % 3));
        EXPECT_NEAR(longitude, -Slow(x, y, 5, 3, 17, 0.125) / 3600, 1e-12);
        EXPECT_NEAR(latitude, Slow(x, y, 3, 7, 13, 0.25) / 3600, 1e-12);
    }
    double untouched = 1, too = 2;
    EXPECT_FALSE(harn->CalculateLocalEllipsCorrection(50.001, 235, untouched, too, true));
    EXPECT_FALSE(harn->CalculateLocalEllipsCorrection(45, std::nan(""), untouched, too, true));
    EXPECT_EQ(untouched + too, 3);
    EXPECT_EQ(folders.notices.Text(Notice::Message) + folders.notices.Text(Notice::Alert), L"");
    Remove(L"core/la.gtx");
    EXPECT_FALSE(MakeModel(8)->CalculateLocalEllipsCorrection(45, 235, untouched, too, true));
    EXPECT_NE(folders.notices.Text(Notice::Alert).find(L"la.gtx\""), std::wstring::npos);
}

TEST_F(DatumShift, MissingIndexes) {
    WriteGrids();
    Remove(L"core/hpgnlo.inf");
    const auto harn = MakeModel(8);  // says so and goes on
    EXPECT_NE(folders.notices.Text(Notice::Message).find(L"Or Drag and Drop the zip file on the Geoid Models tab."),
              std::wstring::npos);
    std::wstring message;
    EXPECT_FALSE(harn->CheckGeoidModelFiles(folders.Common(), message, false));
    EXPECT_EQ(message.find(L"hpgnla.inf"), std::wstring::npos) << "only what is missing";
    EXPECT_EQ(message.find(L"Drag"), std::wstring::npos);
    Remove(L"core/hpgnla.inf");
    EXPECT_FALSE(harn->CheckGeoidModelFiles(folders.Common(), message, false));
    EXPECT_EQ(
        message.substr(0, message.find(L"\n\nDownload")),
        L"Failed to find file(s):\n\"" + Path(L"core/hpgnlo.inf") + L"\" and \"" + Path(L"core/hpgnla.inf") + L"\"");
    WriteGrids();
    EXPECT_TRUE(harn->CheckGeoidModelFiles(folders.Common(), message, true));
    EXPECT_TRUE(harn->CheckGeoidModelFiles(folders.Common(), message, true));
    EXPECT_EQ(message, L"");
    EXPECT_EQ(Dump(*harn, L" "),
              L" <geoidmodel>\n   <name>GeoidModelHARN</name>\n   <xfileinfolist>\n"
              L"     <filename>" +
                  Path(L"core/lo.gtx") + L"</filename>\n   </yfileinfolist>\n   <yfileinfolist>\n     <filename>" +
                  Path(L"core/la.gtx") + L"</filename>\n   </yfileinfolist>\n </geoidmodel>\n")
        << "each list once, and the tag that doesn't match";
}

}  // namespace
}  // namespace orv::test
