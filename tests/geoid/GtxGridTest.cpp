#include "geoid/GtxGrid.h"

#include <cmath>
#include <random>

#include "geoid/GridBytes.h"
#include "support/TestSupport.h"

namespace orv::test {
namespace {

GtxGrid Read(const std::string& bytes) {
    GtxGrid grid;
    EXPECT_EQ(ReadGtx(View(bytes), grid), kGeoidOk);
    return grid;
}

constexpr double untouched = -12345.0;
double At(const GtxGrid& grid, double latitude, double longitude) {
    double value = untouched;
    const bool ok = BilinearGtx(grid, latitude, longitude, value);
    EXPECT_EQ(ok, value != untouched);
    return value;
}

// Steps of a quarter degree, so that every position below is exact.
TEST(GtxGrid, InterpolatesInsideAndOnItsEdges) {
    const GtxGrid grid = Read(GtxFile(50, 4, 0.25, 4, 5, Bumpy));
    EXPECT_EQ(grid.north, 50.75);
    EXPECT_EQ(grid.east, 5.0);
    const struct {
        const char* name;
        double latitude, longitude, value;
    } rows[] = {
        {"first node", 50, 4, Bumpy(0, 0)},
        {"middle of a cell", 50.125, 4.125, (0.0 + Bumpy(0, 0) + Bumpy(0, 1) + Bumpy(1, 0) + Bumpy(1, 1)) / 4},
        {"south-east corner", 50, 5, Bumpy(0, 4)},
        {"between two nodes of the east edge", 50.375, 5, (0.0 + Bumpy(1, 4) + Bumpy(2, 4)) / 2},
        {"north edge", 50.75, 4.125, (0.0 + Bumpy(3, 0) + Bumpy(3, 1)) / 2},
        {"north-east corner", 50.75, 5, Bumpy(3, 4)},
        {"last strip below the north edge takes the row under it", 50.75 - 0.00005, 4.5, Bumpy(2, 2)},
        {"past the east edge", 50.25, 5.0000001, untouched},
        {"past the north edge", 50.7500001, 4.5, untouched},
        {"south of the grid", 49.9999999, 4.5, untouched},
        {"west of the grid", 50.5, 3.9999999, untouched},
        {"latitude NaN", NAN, 4.5, untouched},
        {"longitude infinite", 50.5, INFINITY, untouched},
    };
    for (const auto& row : rows) EXPECT_DOUBLE_EQ(At(grid, row.latitude, row.longitude), row.value) << row.name;
}

TEST(GtxGrid, AgreesWithAPlainCalculation) {
    const double south = 50.525, west = 3.2083, step = 0.0125;
    const GtxGrid grid = Read(GtxFile(south, west, step, 40, 50, Bumpy));
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const double latitude = std::uniform_real_distribution(south, south + 38.9 * step)(random);
        const double longitude = std::uniform_real_distribution(west, west + 49 * step)(random);
        const int r = static_cast<int>(std::floor((latitude - south) / step));
        const int c = static_cast<int>(std::floor((longitude - west) / step));
        const double v = (latitude - south) / step - r, u = (longitude - west) / step - c;
        const double lower = Bumpy(r, c) + u * (double{Bumpy(r, c + 1)} - Bumpy(r, c));
        const double upper = Bumpy(r + 1, c) + u * (double{Bumpy(r + 1, c + 1)} - Bumpy(r + 1, c));
        EXPECT_NEAR(At(grid, latitude, longitude), lower + v * (upper - lower), 1e-9);
    }
}

// The width of the nodes is told by the length of the file alone.
TEST(GtxGrid, TellsDoublesFromFloats) {
    const auto wide = [](int r, int c) { return 1.0 + 1e-12 * r + c; };
    EXPECT_EQ(Read(GtxFile<double>(50, 4, 1, 3, 4, wide)).values[6], 3.0f);
    EXPECT_EQ(Read(GtxFile<float>(50, 4, 1, 2, 5, Bumpy)).values[9], Bumpy(1, 4));
    // Nine floats make a file that is longer than nine doubles.
    EXPECT_NE(Read(GtxFile<float>(50, 4, 1, 3, 3, Bumpy)).values[0], Bumpy(0, 0));
}

TEST(GtxGrid, CutAndSpoiltFiles) {
    const std::string whole = GtxFile(50, 4, 0.25, 4, 5, Bumpy);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        GtxGrid grid;
        const int code = ReadGtx(View(whole.substr(0, length)), grid);
        EXPECT_EQ(code, length < 44 ? kGeoidNoData : kGeoidOk) << length;
        // The cell in the south-west needs seven nodes; nothing else may be made of a short file.
        EXPECT_EQ(At(grid, 50.125, 4.125) != untouched, length >= 40 + 7 * 4) << length;
        EXPECT_EQ(At(grid, 50.75, 5), length < 80 + 40 ? untouched : Bumpy(3, 4)) << length;
    }
    for (std::size_t bit = 0; bit < 40 * 8; ++bit) {
        std::string spoilt = whole;
        spoilt[bit / 8] = static_cast<char>(spoilt[bit / 8] ^ (1 << bit % 8));
        GtxGrid grid;
        ReadGtx(View(spoilt), grid);
        EXPECT_LE(grid.values.size(), 20u);
        double value;
        for (const double at : {50.0, 50.3, 50.75, -1e300, 0.0})
            for (const double longitude : {4.0, 4.7, 5.0, 1e300}) BilinearGtx(grid, at, longitude, value);
    }
}

}  // namespace
}  // namespace orv::test
