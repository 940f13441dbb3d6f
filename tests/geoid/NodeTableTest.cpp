#include "geoid/NodeTable.h"

#include <algorithm>
#include <random>
#include <sstream>

#include "geoid/GeoidFolders.h"
#include "geoid/TestGrid.h"
#include "platform/text/PathText.h"

namespace orv::test {
namespace {

std::string Shipped(const char* name) {
    return ReadBytes(PathFromBytes(std::string(ORV_SOURCE_DIR) + "/data/geoid/" + name));
}

using TableFunction = int (*)(double, double, double*, double*, double*);

struct Result {
    int code;
    double height, north, east;
};
Result At(TableFunction function, double latitude, double longitude) {
    Result r{};
    r.code = function(latitude, longitude, &r.height, &r.north, &r.east);
    return r;
}

TEST(NodeTable, ShippedFigures) {
    const std::vector<double> min = ReadNodeTable(Shipped("geodemin.csv"), 64, 52);
    ASSERT_EQ(min.size(), 64u * 52u);
    EXPECT_EQ(std::vector<double>(min.begin(), min.begin() + 4), (std::vector{-1.746, -1.779, -1.808, -1.835}));
    EXPECT_EQ(std::vector<double>(min.end() - 52, min.end() - 48), (std::vector{1.136, 1.187, 1.238, 1.295}));
    EXPECT_EQ(*std::min_element(min.begin(), min.end()), -3.769);
    EXPECT_EQ(*std::max_element(min.begin(), min.end()), 4.334);
    const std::vector<double> sea = ReadNodeTable(Shipped("geonz97.csv"), 80, 66);
    ASSERT_EQ(sea.size(), 80u * 66u);
    EXPECT_EQ(std::vector<double>(sea.begin(), sea.begin() + 4), (std::vector{-1590., -1631., -1676., -1719.}));
    EXPECT_EQ(std::vector<double>(sea.end() - 66, sea.end() - 62), (std::vector{365., 397., 429., 466.}));
    EXPECT_EQ(std::count(sea.begin(), sea.end(), -9999.0), 1923);
}

TEST(NodeTable, Shape) {
    EXPECT_EQ(ReadNodeTable("1,2\r\n3,4\n", 2, 2), (std::vector{1., 2., 3., 4.}));
    for (const char* wrong : {"1,2\n3\n", "1,2\n", "1,2\n3,4,5\n", "1,2\n3,4\n5,6\n", "1;2\n3;4\n", ""}) {
        EXPECT_TRUE(ReadNodeTable(wrong, 2, 2).empty()) << wrong;
    }
}

// The table as a grid from the south-west, for the slow calculation.
TEST(NodeTable, AgreesWithASlowCalculation) {
    const struct {
        TableFunction function;
        std::vector<double> nodes;
        double south, west;
        int rows, columns;
        bool sea;
    } tables[] = {{geodemin, ReadNodeTable(Shipped("geodemin.csv"), 64, 52), 50.525, 3.208333333333333, 64, 52, false},
                  {geonz97, ReadNodeTable(Shipped("geonz97.csv"), 80, 66), 51.025, 2.5416666666666665, 80, 66, true}};
    std::mt19937 random(10);
    for (const auto& table : tables) {
        int found = 0;
        for (int n = 0; n < 3000; ++n) {
            const double y = std::uniform_real_distribution(0.2, table.rows - 1.2)(random);
            const double x = std::uniform_real_distribution(0.2, table.columns - 1.2)(random);
            const int i = static_cast<int>(x), j = static_cast<int>(y);
            double expected = 0;
            // The row and the column next to the last are out of reach, although the stencil would fit.
            bool there = i >= 1 && j >= 1 && j <= table.rows - 3 && i <= table.columns - 3;
            for (int r = -1; r <= 2 && there; ++r) {
                for (int c = -1; c <= 2; ++c) {
                    double node =
                        table.nodes[static_cast<std::size_t>((table.rows - 1 - j - r) * table.columns + i + c)];
                    if (table.sea && node == -9999) there = false;
                    node = table.sea ? node / 1000 + 44
                                     : node + 44 - 0.5082 - (table.south + (j + r) * 0.05 - 52) * 0.0414 +
                                           (table.west + (i + c) / 12.0 - 5) * 0.0529;
                    const auto weight = [](int k, double t) {  // by distance from the node
                        const double d = std::fabs(t - k);
                        return d < 1 ? 1 - 2.5 * d * d + 1.5 * d * d * d : 2 - 4 * d + 2.5 * d * d - 0.5 * d * d * d;
                    };
                    expected += weight(r, y - j) * weight(c, x - i) * node;
                }
            }
            const double latitude = table.south + y * 0.05, longitude = table.west + x / 12;
            const Result got = At(table.function, latitude, longitude);
            ASSERT_EQ(got.code, there ? 0 : -1) << latitude << " " << longitude;
            if (!there) continue;
            ++found;
            EXPECT_NEAR(got.height, expected, 1e-8);
            // The slopes are those of the heights around, where all of them lie in one cell.
            const double step = 1e-5, fy = y - j, fx = x - i;
            if (std::min({fy, 1 - fy, fx, 1 - fx}) < 0.11) continue;
            const double up = At(table.function, latitude + step, longitude).height;
            const double down = At(table.function, latitude - step, longitude).height;
            const double right = At(table.function, latitude, longitude + step).height;
            const double left = At(table.function, latitude, longitude - step).height;
            EXPECT_NEAR(got.north, -(up - down) / (2 * step) / 111190, 1e-9);
            EXPECT_NEAR(got.east, -(right - left) / (2 * step) / 111190 / std::cos(latitude * std::acos(-1) / 180),
                        1e-9);
        }
        EXPECT_GT(found, 1500);
    }
}

TEST(NodeTable, OutOfReach) {
    EXPECT_EQ(At(geodemin, 50.6, 5).code, 0);
    for (const auto& [latitude, longitude] : std::initializer_list<std::pair<double, double>>{
             {50.56, 5}, {53.63, 5}, {52, 3.25}, {52, 7.5}, {std::nan(""), 5}, {52, 1e300}}) {
        const Result got = At(geodemin, latitude, longitude);
        EXPECT_EQ(got.code, -1) << latitude << " " << longitude;
        EXPECT_EQ(got.height, -999.999);
        EXPECT_EQ(got.north, -999.999);
        EXPECT_EQ(got.east, -999.999);
    }
    EXPECT_EQ(At(geonz97, 52.0, 6.0).code, -1) << "land";
    EXPECT_EQ(HeightAt(*MakeModel(21), 52.0, 6.0), kUntouched);
    EXPECT_NEAR(HeightAt(*MakeModel(2, kFoot), 52, 5), At(geodemin, 52, 5).height / kFoot, 1e-9);
}

TEST(NodeTable, InstallationsOwnTable) {
    const GeoidFolders folders;
    std::ostringstream own;
    for (int r = 0; r < 64; ++r)
        for (int c = 0; c < 52; ++c) own << r * 0.001 << (c == 51 ? "\n" : ",");
    GeoidFolders::Write(folders.Models(L"geodemin.csv"), own.str());
    const auto model = MakeModel(2);
    const double builtIn = At(geodemin, 52, 5).height, trend = -0.5082;
    EXPECT_NEAR(HeightAt(*model, 52.025, 5), 44 + 0.033 + trend - 0.025 * 0.0414, 1e-6);
    EXPECT_EQ(model->DataFile(), folders.Models(L"geodemin.csv"));
    GeoidFolders::Write(folders.Models(L"geodemin.csv"), own.str() + "1\n");
    EXPECT_EQ(HeightAt(*MakeModel(2), 52, 5), builtIn) << "a table of another shape isn't used";
    EXPECT_NE(folders.notices.Text(Notice::Information).find(L"geodemin.csv"), std::wstring::npos);
}

}  // namespace
}  // namespace orv::test
