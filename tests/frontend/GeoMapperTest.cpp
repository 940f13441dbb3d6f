#include "frontend/GeoMapper.h"

#include <limits>

#include "support/TestInstallation.h"

namespace orv {
namespace {

TEST(GeoMapper, WorldAndPixels) {
    test::TestInstallation installation;
    GeoMapper mapper;
    CPoint pixel{7, 7};
    double x = -1, y = -1;
    EXPECT_FALSE(mapper.WorldToPixel(0, 0, pixel) || mapper.PixelToWorld({0, 0}, x, y)) << "no windows yet";
    Page page;
    page.Extend({1000, 5000, 0});
    page.Extend({1400, 5200, 0});
    mapper.SetWorldWindow(page);
    mapper.SetPixelWindow({10, 20, 810, 420});
    EXPECT_EQ(mapper.ScaleX(), 2);
    EXPECT_EQ(mapper.ScaleY(), 2);
    const struct {
        double x, y;
        CPoint pixel;
    } rows[] = {{1000, 5200, {10, 20}}, {1400, 5000, {810, 420}}, {1100, 5100, {210, 220}}, {900, 5300, {-190, -180}}};
    for (const auto& row : rows) {
        EXPECT_TRUE(mapper.WorldToPixel(row.x, row.y, pixel) && pixel == row.pixel) << row.x;
        EXPECT_TRUE(mapper.PixelToWorld(row.pixel, x, y) && x == row.x && y == row.y) << row.x;
    }
    EXPECT_TRUE(mapper.WorldToPixel(1000.3, 5199.7, pixel) && pixel == (CPoint{11, 21})) << "the nearest";
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        EXPECT_FALSE(mapper.WorldToPixel(bad, 5000, pixel) || mapper.WorldToPixel(1000, bad, pixel));
    }
    EXPECT_FALSE(mapper.GeoToPixel(52, 4, pixel) || mapper.PixelToGeo({10, 20}, x, y)) << "no coordinate system";
    EXPECT_EQ(pixel, (CPoint{11, 21}));
    GeoMapper copy = mapper;
    copy.SetPixelWindow({0, 0, 0, 0});
    EXPECT_TRUE(mapper.ScaleX() == 2 && copy.ScaleX() == 0);
}

}  // namespace
}  // namespace orv
