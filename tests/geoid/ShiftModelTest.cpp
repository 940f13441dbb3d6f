#include <random>
#include <tuple>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_OSGM.h"
#include "geoid/GeoidModel_OSTN.h"
#include "geoid/GeoidModel_OSi_OSNI.h"
#include "geoid/GeoidModel_RDNAP2018_hor.h"
#include "geoid/GeoidModel_hBG03.h"
#include "geoid/TestGrid.h"

namespace orv::test {
namespace {

struct Shift {
    double x = kUntouched, y = kUntouched;
    bool operator==(const Shift&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Shift& shift) {
    return out << shift.x << " " << shift.y;
}

Shift GridShift(GeoidModel& model, double x, double y, bool inverse = false) {
    Shift shift;
    const bool ok = model.Calculate(x, y, shift.x, shift.y, inverse);
    EXPECT_EQ(ok, shift.x != kUntouched);
    return shift;
}

Shift GeoShift(GeoidModel& model, double latitude, double longitude, bool direct = true) {
    Shift shift;
    const bool ok = model.CalculateLocalEllipsCorrection(latitude, longitude, shift.x, shift.y, direct);
    EXPECT_EQ(ok, shift.x != kUntouched);
    return shift;
}

TEST(DutchGridCorrection, TakesBothGridsAndTurnsTheSign) {
    const GeoidFolders folders;
    TestGrid gx, gy;
    gy.missingRow = -1;
    GeoidFolders::Write(folders.Models(L"netherlands/x2c.grd"), Dsbb(gx));
    EXPECT_EQ(GridShift(*MakeModel(4), 4.6, 50.3), Shift()) << "one grid isn't enough";
    GeoidFolders::Write(folders.Models(L"netherlands/y2c.grd"), Dsbb(gy));
    std::mt19937 random(5);
    for (const unsigned short type : std::vector<unsigned short>{4, 13}) {
        const auto model = MakeModel(type, kFoot);
        for (int n = 0; n < 500; ++n) {
            const double x = Between(random, 3.9, 6.6), y = Between(random, 49.9, 51.2);
            const auto dx = SlowKernel(gx, Edge::InnerOpen, y, x), dy = SlowKernel(gy, Edge::InnerOpen, y, x);
            const Shift got = GridShift(*model, x / kFoot, y / kFoot, n % 2 == 0);
            EXPECT_NEAR(got.x, dx && dy ? -*dx / kFoot : kUntouched, 1e-9) << x << " " << y;
            EXPECT_NEAR(got.y, dx && dy ? -*dy / kFoot : kUntouched, 1e-9) << x << " " << y;
        }
        EXPECT_EQ(HeightAt(*model, 50.3, 4.6), kUntouched) << "the geoid's own file is missing";
    }
}

// The files have a line a node and no header; these are as large as the program expects them.
class Belgium : public testing::Test {
protected:
    static double Height(int row, int column) { return 40 + 0.125 * ((row * 7 + column * 5) % 61); }
    static double Dx(int row, int column) { return 0.25 * ((row * 3 + column) % 17); }
    static double Dy(int row, int column) { return -0.5 * ((row + column * 11) % 13); }
    static std::string Field(double value, std::size_t width) {
        std::string text = std::to_string(value);
        text.resize(width, ' ');
        return text;
    }
    void Write(int heightRows = 241) {
        std::string heights, shifts;
        for (int r = 0; r < heightRows; ++r)
            for (int c = 0; c < 361; ++c) heights += std::string(20, '7') + Field(Height(r, c), 8) + "\r\n";
        for (int r = 0; r < 116; ++r)
            for (int c = 0; c < 141; ++c) {
                shifts += std::string(25, 'x') + Field(Dx(r, c), 10) + Field(Dy(r, c), 10) + "\n";
            }
        GeoidFolders::Write(folders.Models(L"belgium/hBG03.grd"), heights);
        GeoidFolders::Write(folders.Models(L"belgium/xyGridLb72.grd"), shifts);
    }
    GeoidFolders folders;
};

TEST_F(Belgium, HeightsAndShifts) {
    EXPECT_EQ(HeightAt(*MakeModel(5), 50, 4), kUntouched);
    Write();
    const auto model = MakeModel(5, kFoot);
    std::mt19937 random(6);
    for (int n = 0; n < 500; ++n) {
        const double latitude = Between(random, 48.6, 52.4), longitude = Between(random, 1.1, 6.9);
        EXPECT_NEAR(HeightAt(*model, latitude, longitude),
                    BetweenNodes(Height, (longitude - 1) * 60, (latitude - 48.5) * 60) / kFoot, 1e-8);
        const double x = Between(random, 22001, 297999), y = Between(random, 22001, 247999);
        const Shift got = GridShift(*model, x / kFoot, y / kFoot);
        EXPECT_NEAR(got.x, BetweenNodes(Dx, (x - 20000) / 2000, (y - 20000) / 2000) / kFoot, 1e-9);
        EXPECT_NEAR(got.y, BetweenNodes(Dy, (x - 20000) / 2000, (y - 20000) / 2000) / kFoot, 1e-9);
    }
    const auto metres = MakeModel(5);
    EXPECT_EQ(GridShift(*metres, 22000, 100000), Shift()) << "exactly one cell in";
    EXPECT_NE(GridShift(*metres, 22000.1, 100000), Shift());
    EXPECT_EQ(GridShift(*metres, 100000, 248000), Shift());

    Write(100);
    const auto cut = MakeModel(5);
    EXPECT_NE(HeightAt(*cut, 49.9, 4), kUntouched) << "a short file loads";
    EXPECT_EQ(HeightAt(*cut, 50.5, 4), kUntouched) << "and ends where it ends";
}

TEST(BelgianLines, Reading) {
    const std::string blank(20, ' ');
    const std::tuple<const char*, std::string, std::vector<float>> rows[] = {
        {"the end behind the last line repeats it", blank + "1.5\n" + blank + "2.5\n", {1.5f, 2.5f, 2.5f}},
        {"a line without a value repeats the one before",
         blank + "1.5\nshort\n" + blank + "x\n",
         {1.5f, 1.5f, 1.5f, 1.5f}},
        {"a line of 49 characters", blank + "1.5" + std::string(26, ' ') + "\n", {1.5f, 1.5f}},
        {"a longer one goes on as the next", blank + "1.5" + std::string(26, ' ') + blank + "3\n", {1.5f, 3, 3}},
        {"no value at all", "header\nline\n", {}},
    };
    for (const auto& [label, text, values] : rows) EXPECT_EQ(GeoidModel_hBG03::ReadBody(text, 20, 8), values) << label;
}

std::optional<double> SlowShift(const Subgrid& g, double p, double q, int which) {
    const double x = (q - g.east) / g.dLon, y = (p - g.south) / g.dLat;
    if (!(x > 1 && x < g.columns - 2 && y > 1 && y < g.rows - 2)) return std::nullopt;
    return BetweenNodes([&](int row, int column) { return g.Node(row, column, which); }, x, y);
}

class ShiftFileModel : public testing::Test {
protected:
    bool Load(const std::string& bytes) {
        GeoidFolders::Write(folders.Models(L"Netherlands/t.gsb"), bytes);
        return model.SetFileName(L"t.gsb");
    }
    GeoidFolders folders;
    GeoidModel_RDNAP2018_hor model;
};

TEST_F(ShiftFileModel, SecondGridFirstAndSinglePrecision) {
    ASSERT_TRUE(Load(ShiftFile()));
    std::mt19937 random(7);
    int inner = 0, outer = 0;
    for (int n = 0; n < 2000; ++n) {
        const double p = Between(random, 179800, 184000), q = Between(random, -22000, -13000);
        const bool second = SlowShift(kInner, p, q, 0).has_value();
        const Subgrid& g = second ? kInner : kOuter;
        const auto latitude = SlowShift(g, p, q, 0), longitude = SlowShift(g, p, q, 1);
        const Shift got = GeoShift(model, p / 3600, -q / 3600);
        if (!latitude) {
            EXPECT_EQ(got, Shift()) << p << " " << q;
            continue;
        }
        ++(second ? inner : outer);
        EXPECT_NEAR(got.x * -3600, *latitude, 1e-6);
        EXPECT_NEAR(got.y * 3600, *longitude, 1e-6);
        EXPECT_EQ(got.x, static_cast<double>(static_cast<float>(got.x * -3600)) / -3600) << "not rounded to single";

        // What the search finds for the shifted position is the shift that leads to it, as near as it stops.
        const Shift back = GeoShift(model, p / 3600, -q / 3600, false);
        if (back == Shift()) continue;
        const double fromP = p + back.x * 3600, fromQ = q - back.y * 3600;
        const auto again = SlowShift(second ? kInner : kOuter, fromP, fromQ, 0);
        if (again && SlowShift(kInner, fromP, fromQ, 0).has_value() == second) {
            EXPECT_NEAR(back.x * -3600, *again, 0.003);
        }
    }
    EXPECT_GT(inner, 100);
    EXPECT_GT(outer, 100);
}

// On a steep grid the search jumps between two places for ever.
TEST_F(ShiftFileModel, SearchThatNeverEnds) {
    Subgrid outer = kOuter, inner = kInner;
    outer.steep = inner.steep = true;
    ASSERT_TRUE(Load(ShiftFile({outer, inner})));
    const double p = kInner.south + 6 * kInner.dLat + 20, q = kInner.east + 8 * kInner.dLon + 20;
    EXPECT_NE(GeoShift(model, p / 3600, -q / 3600), Shift());
    EXPECT_EQ(GeoShift(model, p / 3600, -q / 3600, false), Shift());
    EXPECT_EQ(GeoShift(model, std::nan(""), 5, false), Shift());
}

TEST_F(ShiftFileModel, CutAndSpoiltFiles) {
    const std::string whole = ShiftFile();
    const std::tuple<const char*, std::string, int, std::wstring> rows[] = {
        {"one record short", whole.substr(0, whole.size() - 1), kGeoidNoData, L"No data in file "},
        {"interval 0", std::string(whole).replace(312, 8, 8, '\0'), kGeoidBadHeader, L""},
        {"more records than the file has", std::string(whole).replace(344, 4, "\xff\xff\xff\x7f"), kGeoidBadHeader,
         L""},
    };
    for (const auto& [label, bytes, status, error] : rows) {
        EXPECT_FALSE(Load(bytes)) << label;
        EXPECT_EQ(model.Info().status, status) << label;
        EXPECT_EQ(model.Info().error, error.empty() ? L"" : error + model.DataFile()) << label;
        EXPECT_EQ(GeoShift(model, 50.3, 5), Shift()) << label;
    }
}

// The 1 km grid of shifts and heights.
class Kilometres : public testing::Test {
protected:
    static double Slow(double x, double y, int which) {
        return BetweenNodes([&](int row, int column) { return KilometreNode(row, column, which); }, x / 1000, y / 1000);
    }
    GeoidFolders folders;
};

TEST_F(Kilometres, ShiftsAndHeights) {
    GeoidFolders::Write(folders.Models(L"United Kingdom/k.txt"), KilometreList());
    const auto shifts = MakeModel(25, kFoot), heights = MakeModel(24, kFoot);
    ASSERT_TRUE(shifts->SetFileName(L"k.txt"));
    ASSERT_TRUE(heights->SetFileName(L"k.txt"));
    std::mt19937 random(8);
    for (int n = 0; n < 500; ++n) {
        const double x = Between(random, 0, 6999), y = Between(random, 0, 5999);
        const Shift got = GridShift(*shifts, (400000 + x) / kFoot, (100000 + y) / kFoot);
        EXPECT_NEAR(got.x, Slow(x, y, 0) / kFoot, 1e-8);
        EXPECT_NEAR(got.y, Slow(x, y, 1) / kFoot, 1e-8);
        EXPECT_NEAR(HeightAt(*heights, 0, 0, (400000 + x) / kFoot, (100000 + y) / kFoot), Slow(x, y, 2) / kFoot, 1e-8);
    }
    GeoidModel_OSTN metres;
    metres.SetFileName(L"k.txt");
    EXPECT_NE(GridShift(metres, 406999.9, 103000), Shift());
    EXPECT_EQ(GridShift(metres, 407000, 103000), Shift()) << "the east edge is outside";
    EXPECT_EQ(GridShift(metres, 403000, 106000), Shift()) << "and so is the north edge";
    // Cut toward zero, the kilometre before the grid goes on from its first cells.
    EXPECT_NEAR(GridShift(metres, 399500, 103000).x, 1.5 * KilometreNode(3, 0, 0) - 0.5 * KilometreNode(3, 1, 0), 1e-9);

    const Shift forward = GridShift(metres, 403210, 103456);
    const Shift back = GridShift(metres, 403210 + forward.x, 103456 + forward.y, true);
    EXPECT_NEAR(std::hypot(back.x - forward.x, back.y - forward.y), 0, 0.001);
    for (const double x : {450000.0, std::nan("")}) EXPECT_EQ(GridShift(metres, x, 103456, true), Shift());
}

TEST_F(Kilometres, WhichLinesCount) {
    const std::string lines =
        "1,400000,100000,1.5,2.5,3.5,1\n2,401000,100000,4.5,1\n3,402000,100000,7,8,9\nnonsense\n\n"
        "4,400000,101000,5.5,6.5,7.5,1\n";
    GeoidFolders::Write(folders.Models(L"United Kingdom/k.txt"), lines);
    GeoidModel_OSTN shifts;
    GeoidModel_OSGM heights;
    ASSERT_TRUE(shifts.SetFileName(L"k.txt"));
    ASSERT_TRUE(heights.SetFileName(L"k.txt"));
    EXPECT_EQ(shifts.Grid().nodes, (std::vector<std::array<double, 2>>{{1.5, 2.5}, {5.5, 6.5}}));
    EXPECT_EQ(heights.Grid().nodes, (std::vector<std::array<double, 1>>{{3.5}, {4.5}, {7.5}}));
    EXPECT_TRUE(shifts.Grid().columns == 1 && heights.Grid().columns == 2 && heights.Grid().rows == 2);
    EXPECT_EQ(HeightAt(heights, 0, 0, 400500, 100500), kUntouched) << "a node of the only cell is missing";
    EXPECT_FALSE(shifts.SetFileName(L"gone"));
    EXPECT_EQ(GridShift(shifts, 400500, 100500), Shift());
    EXPECT_EQ(shifts.LastReason(), GeoidReason::NoFile);
}

TEST(IrishGrid, NeedsNoCorrection) {
    double latitude = 1, longitude = 2;
    EXPECT_TRUE(GeoidModel_OSi_OSNI().CalculateLocalEllipsCorrection(53, -8, latitude, longitude, true));
    EXPECT_TRUE(latitude == 1 && longitude == 2);
}

}  // namespace
}  // namespace orv::test
