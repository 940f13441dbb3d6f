#include "geoid/GtxGrid.h"

#include <tuple>

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
    const std::tuple<const char*, double, double, double> rows[] = {
        {"middle of a cell", 50.125, 4.125, (0.0 + Bumpy(0, 0) + Bumpy(0, 1) + Bumpy(1, 0) + Bumpy(1, 1)) / 4},
        {"between two nodes of the east edge", 50.375, 5, (0.0 + Bumpy(1, 4) + Bumpy(2, 4)) / 2},
        {"north edge", 50.75, 4.125, (0.0 + Bumpy(3, 0) + Bumpy(3, 1)) / 2},
        {"north-east corner", 50.75, 5, Bumpy(3, 4)},
        {"last strip below the north edge takes the row under it", 50.75 - 0.00005, 4.5, Bumpy(2, 2)},
        {"past the east edge", 50.25, 5.0000001, untouched},
        {"south of the grid", 49.9999999, 4.5, untouched},
        {"latitude NaN", NAN, 4.5, untouched},
        {"longitude infinite", 50.5, INFINITY, untouched},
    };
    for (const auto& [name, latitude, longitude, value] : rows)
        EXPECT_DOUBLE_EQ(At(grid, latitude, longitude), value) << name;
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
}

}  // namespace
}  // namespace orv::test
