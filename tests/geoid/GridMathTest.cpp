#include "geoid/GridMath.h"

#include "geoid/TextScan.h"
#include "support/TestSupport.h"

namespace orv::test {
namespace {

TEST(GridMath, SplineIsNaturalAndSmooth) {
    const double y[] = {1, 4, 2, 2, 5, 3};
    for (const int n : {4, 6}) {
        const auto at = [&](double x) { return SplineInterpolate(x, y, n); };
        const auto bend = [&](double x, double h) { return (at(x + h) - 2 * at(x) + at(x - h)) / (h * h); };
        for (int k = 1; k < n; ++k) EXPECT_NEAR(at(k), y[k - 1], 1e-12) << "goes through value " << k;
        for (int k = 2; k < n; ++k) {
            const double left = (at(k) - at(k - 1e-5)) / 1e-5, right = (at(k + 1e-5) - at(k)) / 1e-5;
            EXPECT_NEAR(left, right, 1e-3) << "one slope at " << k;
            EXPECT_NEAR(bend(k - 1e-3, 5e-4), bend(k + 1e-3, 5e-4), 0.05) << "one bend at " << k;
        }
        EXPECT_NEAR(bend(1.001, 5e-4), 0, 0.02) << "straight at its ends";
        EXPECT_NEAR(at(-3) - at(-2), at(-2) - at(-1), 1e-12) << "and beyond";
    }
}

TEST(GridMath, SinglePrecisionIsKept) {
    // 0.1f and 16777216 are as unlike in single and double precision as can be.
    const std::array<float, 4> q = {16777216.0f, 0.1f, 16777216.0f, 0.1f};
    EXPECT_EQ(BilinearSingleDifferences(q, 1, 0), 0.0) << "the difference rounds";
    EXPECT_EQ(Bilinear(q, 1, 0), static_cast<double>(0.1f));
    EXPECT_EQ(BilinearSingle({1.0f, 1.0f, 1.0f, 1.00000012f}, 0.5f, 0.5f), 1.0f) << "every step rounds";
    EXPECT_FLOAT_EQ(InterpolateCubic(0.1f, 0.2f, 0.4f, 0.7f, 0.5f), 0.275f);
}

TEST(GridMath, TakeNodesInOrder) {
    const std::vector<float> nodes = {1, 9999, std::nanf(""), 4};
    std::array<float, 2> out{};
    const auto code = [&](std::int64_t a, std::int64_t b, std::int64_t lowest) {
        return TakeNodes(nodes, lowest, std::array{a, b}, Is9999, out);
    };
    EXPECT_EQ(code(0, 3, 0), kGeoidOk);
    EXPECT_EQ(code(0, 3, 1), kGeoidOutside);
    EXPECT_EQ(code(1, 4, 0), kGeoidNoData) << "the first that fails tells";
    EXPECT_EQ(code(3, 2, 0), kGeoidNoData) << "what is no number is no data";
    EXPECT_EQ(code(-1, 3, -5), kGeoidOutside);

    std::array<float, 4> block{};
    const auto blockCode = [&](std::int64_t first, std::int64_t stride, std::int64_t lowest) {
        return TakeNodes(std::vector<float>{1, 2, 9999, 4, 5, 6}, lowest, NodeBlock<2>{first, stride}, Is9999, block);
    };
    EXPECT_EQ(blockCode(3, -3, 0), kGeoidOk);
    EXPECT_EQ(block, (std::array<float, 4>{4, 5, 1, 2}));
    EXPECT_EQ(blockCode(0, 3, 1), kGeoidOutside);
    EXPECT_EQ(blockCode(1, 4, 0), kGeoidNoData) << "the first that fails tells";
    EXPECT_EQ(blockCode(4, 1, 0), kGeoidOutside) << "one node is missing";
}

TEST(GridMath, FiguresBeyondTheRangeOfANumber) {
    for (const auto& [text, read, value] :
         {std::tuple{" 1e-400", true, 0.0}, {"-0.5", true, -0.5}, {"1e400", false, 7.0}, {"x", false, 7.0}}) {
        double figure = 7.0;
        EXPECT_EQ(TextScan(text).Real(figure), read) << text;
        EXPECT_EQ(figure, value) << text;
    }
    double figure = 7.0;
    EXPECT_TRUE(TextScan("0." + std::string(400, '0') + "1").Real(figure));
    EXPECT_FALSE(TextScan(std::string(400, '9')).Real(figure));
}

}  // namespace
}  // namespace orv::test
