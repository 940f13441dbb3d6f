#include "surveydata/SvpFile.h"

#include <rapidcheck.h>

#include <climits>
#include <cmath>
#include <random>

#include "platform/text/Utf.h"
#include "support/TestSupport.h"
#include "surveydata/MedianFit.h"

namespace orv {
namespace {

SvpFile Profile(std::initializer_list<SvpPoint> samples) {
    FileObject text;
    int number = 0;
    for (const SvpPoint& s : samples) {
        std::string value;
        for (const double v : {s.depth, s.soundVelocity, s.auxValue1, s.auxValue2}) value += "," + std::to_string(v);
        text.SetItem(L"POINTS", L"Point(" + std::to_wstring(++number) + L")", FromUtf8(value.substr(1)), true);
    }
    SvpFile file;
    file.FileOpen(text);
    return file;
}

std::vector<SvpPoint> Samples(const SvpFile& file) {
    std::vector<SvpPoint> all(static_cast<std::size_t>(file.GetNumPoints()));
    for (int i = 0; i < file.GetNumPoints(); ++i)
        EXPECT_TRUE(file.GetPoint(i, all[static_cast<std::size_t>(i)], false));
    return all;
}

std::string Shown(const SvpFile& file) {
    std::string shown;
    for (const SvpPoint& s : Samples(file)) {
        shown += std::to_string(std::lround(s.depth)) + ":" + std::to_string(std::lround(s.soundVelocity)) + " ";
    }
    return shown;
}

TEST(SvpFile, SavesWhatItReadAndNothingLonger) {
    const test::CommaLocale comma;
    FileObject text;
    text.SetItem(L"POINTS", L"Point(1)", L"-1.5,1480.25,3,4", true);
    text.SetItem(L"POINTS", L"Point(2)", L"-2, 1481", true);
    text.SetItem(L"POINTS", L"Point(3)", L"x,1482", true);
    text.SetItem(L"POINTS", L"Point(5)", L"-9,1", true);  // behind a gap
    text.SetItem(L"OFFSET", L"SVOffset", L"1.5", true);
    SvpFile file;
    EXPECT_TRUE(file.FileOpen(text));
    EXPECT_EQ(Samples(file), (std::vector<SvpPoint>{{-1.5, 1480.25, 3, 4}, {-2, 1481, 0, 0}, {0, 1482, 0, 0}}));
    EXPECT_FALSE(file.FileSave(text)) << "not modified";
    file.DeleteElement(2);
    EXPECT_TRUE(file.FileSave(text));
    EXPECT_FALSE(file.IsModified());
    std::wstring value;
    EXPECT_TRUE(text.GetItem(L"POINTS", L"Point(1)", value));
    EXPECT_EQ(value, L"-1.500000,1480.250000,3.000000,4.000000");
    for (const wchar_t* gone : {L"Point(3)", L"Point(5)"}) EXPECT_FALSE(text.HasKey(L"POINTS", gone));
    SvpFile again;
    again.FileOpen(text);
    EXPECT_EQ(Samples(again), Samples(file));
    EXPECT_EQ(again.GetSVOffset(), 1.5f);
}

TEST(SvpFile, OffsetShiftsViewsOnly) {
    SvpFile file = Profile({{-1, 1480, 5, 6}, {-3, 1490, 7, 8}});
    file.SetSVOffset(1.5f);
    Page page;
    Point center;
    SvpPoint sample(0, 0, 9, 9);
    EXPECT_TRUE(file.GetExtents(page) && file.GetCenterPoint(center) && file.GetCenterPoint(sample));
    EXPECT_EQ(page.Low(), (Point{1481.5, -3, 0}));
    EXPECT_EQ(center, (Point{1486.5, -2, 0}));
    EXPECT_EQ(sample, SvpPoint(-2, 1486.5, 9, 9));
    EXPECT_TRUE(file.GetPoint(1, sample, true));
    EXPECT_EQ(sample, SvpPoint(-3, 1491.5, 7, 8));
    EXPECT_EQ(file.GetPoint(1, false), (Point{1490, -3, 0}));
    file.DeleteElement(0);
    EXPECT_FALSE(file.GetExtents(page) || page.IsValid() || file.GetCenterPoint(center));
}

TEST(SvpFile, InsertsByDepthAndModifies) {
    struct Row {
        const char* what;
        int index;
        double depth;
        bool merge;
        const char* shown;
        int newIndex;
    };
    const Row rows[] = {
        {"in place", 1, -2, false, "-1:1 -2:99 -3:3 -4:4 ", 1},
        {"between its neighbours", 1, -2.5, false, "-1:1 -3:99 -3:3 -4:4 ", 1},  // -2.5 shows as -3
        {"down", 0, -3.4, false, "-2:2 -3:3 -3:99 -4:4 ", 2},
        {"to the end", 1, -9, false, "-1:1 -3:3 -4:4 -9:99 ", 3},
        {"up", 3, -1.4, false, "-1:1 -1:99 -2:2 -3:3 ", 1},
        {"to the front", 2, 0, false, "0:99 -1:1 -2:2 -4:4 ", 0},
        {"onto another", 0, -3, false, "-1:1 -2:2 -3:99 -4:4 ", 2},
        {"onto another, merged", 0, -4, true, "-2:2 -3:3 -4:99 ", 2},
        {"behind the end, deepest", 4, -9, false, "-1:1 -2:2 -3:3 -9:99 ", 3},
        {"behind the end, onto another", 4, -4, true, "-1:1 -2:2 -3:3 -4:99 ", 3},
        {"behind the end, between", 4, -1.4, true, "-1:1 -1:99 -2:2 -3:3 -4:4 ", 1},
        {"far behind, deepest", INT_MAX, -9, false, "-1:1 -2:2 -3:3 -4:4 -9:99 ", 4},
        {"far behind", INT_MAX, -3.4, false, "-1:1 -2:2 -3:3 -3:99 ", 3},
        {"negative", -1, -4, true, "-1:1 -2:2 -3:3 -4:4 ", -1},
    };
    for (const Row& row : rows) {
        SvpFile file;
        for (const double depth : {3, 1, 4, 2}) file.InsertElement(Point{depth, -depth, 0});
        ASSERT_EQ(Shown(file), "-1:1 -2:2 -3:3 -4:4 ");
        int index = row.index;
        EXPECT_EQ(file.ModifyPoint(index, Point{99, row.depth, 0}, row.merge), row.index >= 0);
        EXPECT_EQ(Shown(file), row.shown) << row.what;
        EXPECT_EQ(index, row.newIndex) << row.what;
    }
    SvpFile file = Profile({{-1, 1, 3, 4}, {-2, 2, 5, 6}});
    int index = 0;
    EXPECT_TRUE(file.ModifyPoint(index, SvpPoint(-2, 9, 7, 8), false));
    EXPECT_EQ(Samples(file)[1], SvpPoint(-2, 9, 5, 6)) << "of the edited sample only the velocity arrives";
    EXPECT_FALSE(SvpFile().ModifyPoint(index, Point{1, -1, 0}, false));
    file = Profile({{-1, 1, 0, 0}, {-2, 2, 0, 0}});
    EXPECT_EQ(file.InsertElement(SvpPoint(-2, 7, 0, 0)), 1) << "in front of its like";
    file.AddElement(Point{5, 0, 0});
    file.DeleteElement(9);
    EXPECT_EQ(Shown(file), "-1:1 -2:7 -2:2 0:5 ");
}

TEST(SvpFile, ReducesByBands) {
    SvpFile file;
    EXPECT_FALSE(file.ReduceProfile());
    struct Row {
        const char* what;
        std::vector<SvpPoint> before, after;
    };
    const Row rows[] = {
        {"one sample", {{-3.4, 1480, 1, 2}}, {{-3.4, 1480, 1, 2}}},
        {"a repeated depth is dropped, three are copied",
         {{-20.1, 1, 1, 2}, {-20.1, 2, 0, 0}, {-20.3, 3, 0, 0}, {-20.4, 4, 0, 0}},
         {{-20.1, 1, 1, 2}, {-20.3, 3, 0, 0}, {-20.4, 4, 0, 0}}},
        {"four on a line; evaluated at the last sample, called by the band",
         {{-20.1, 1, 0, 0},
          {-20.6, 6, 0, 0},
          {-20.8, 8, 0, 0},
          {-21.1, 11, 0, 0},
          {-24.5, 45, 0, 0},
          {-24.6, 46, 0, 0},
          {-24.7, 47, 0, 0},
          {-24.8, 48, 0, 0}},
         {{-20, 0, 0, 0}, {-25, 48, 0, 0}}},
        {"an end far away", {{1e14, 1, 0, 0}, {-1e14, 2, 0, 0}}, {{1e14, 1, 0, 0}, {-1e14, 2, 0, 0}}},
        {"a probe held still: too close together for a line",
         {{-1000, 1, 0, 0}, {-1000.000001, 2, 0, 0}, {-1000.000002, 3, 0, 0}, {-1000.000003, 4, 0, 0}},
         {{-1000, 1, 0, 0}, {-1000.000001, 2, 0, 0}, {-1000.000002, 3, 0, 0}, {-1000.000003, 4, 0, 0}}},
        {"no depth", {{NAN, 1, 0, 0}, {-3, 2, 0, 0}}, {{NAN, 1, 0, 0}, {-3, 2, 0, 0}}},
    };
    for (const Row& row : rows) {
        SvpFile profile;
        for (const SvpPoint& s : row.before) profile.AddElement(Point{s.soundVelocity, s.depth, 0});
        EXPECT_TRUE(profile.ReduceProfile());
        const std::vector<SvpPoint> got = Samples(profile);
        ASSERT_EQ(got.size(), row.after.size()) << row.what;
        for (std::size_t i = 0; i < got.size(); ++i) {
            EXPECT_TRUE(got[i].depth == row.after[i].depth || std::isnan(got[i].depth)) << row.what;
            EXPECT_NEAR(got[i].soundVelocity, row.after[i].soundVelocity, 1e-9) << row.what;
        }
    }
    SvpFile clean = Profile({{-0.2, 1, 3, 4}, {-1.2, 2, 5, 6}});
    EXPECT_TRUE(clean.ReduceProfile());
    EXPECT_FALSE(clean.IsModified());
    EXPECT_EQ(Samples(clean)[1], SvpPoint(-1.2, 2, 5, 6));
}

/// Least sum of absolute deviations, found the slow way: some best line goes through two of the samples.
double LeastDeviations(const std::vector<SvpPoint>& points) {
    double least = INFINITY;
    for (const SvpPoint& p : points) {
        for (const SvpPoint& q : points) {
            if (p.depth == q.depth) continue;
            const double slope = (q.soundVelocity - p.soundVelocity) / (q.depth - p.depth);
            double sum = 0;
            for (const SvpPoint& r : points) {
                sum += std::fabs(r.soundVelocity - p.soundVelocity - slope * (r.depth - p.depth));
            }
            least = std::min(least, sum);
        }
    }
    return least;
}

/// Samples of every band, a metre of nominal depth after the other and the whole profile for each.
std::vector<std::vector<SvpPoint>> SlowBands(const std::vector<SvpPoint>& points) {
    std::vector<std::vector<SvpPoint>> bands;
    double z = std::ceil(points.front().depth), upper = z + 0.5, step = 1;
    for (; z + step / 2 >= points.back().depth; z -= step) {
        step = z > -10 ? step : z > -100 ? 5 : z > -200 ? 10 : z > -500 ? 20 : 50;
        std::vector<SvpPoint> band{{z, step, 0, 0}};
        for (const SvpPoint& p : points) {
            const double above = band.size() > 1 ? band.back().depth : INFINITY;
            if (p.depth >= z - step / 2 && p.depth < upper && p.depth < above) band.push_back(p);
        }
        upper = z - step / 2;
        bands.push_back(band);
    }
    return bands;
}

// A thousand noisy profiles with outliers, beside the least deviations found by search. With an odd count the median
// sample lies on the line, counts as below it and pulls the slope off: only the lower bound holds then.
TEST(SvpFile, RandomProfilesKeepToTheLeastDeviations) {
    std::mt19937 random(20210302);
    const auto uniform = [&](double low, double high) { return std::uniform_real_distribution<>(low, high)(random); };
    int fits = 0;
    for (int profile = 0; profile < 1000; ++profile) {
        std::vector<SvpPoint> points;
        double depth = uniform(-300, 3);
        for (double count = uniform(1, 60); count > 0; --count, depth -= uniform(0, 1.5)) {
            const double noise = uniform(0, 1) < 0.1 ? uniform(-40, 40) : uniform(-0.3, 0.3);
            points.emplace_back(depth, 1480 + 0.02 * depth + noise, 1, 2);
        }
        SvpFile file;
        for (const SvpPoint& p : points) file.AddElement(Point{p.soundVelocity, p.depth, 0});
        file.SetSVOffset(25);  // plays no part
        ASSERT_TRUE(file.ReduceProfile());
        const std::vector<SvpPoint> reduced = Samples(file);
        std::size_t at = 0;
        for (std::vector<SvpPoint>& band : SlowBands(points)) {
            const double z = band[0].depth;
            band.erase(band.begin());
            if (band.size() < 4) {
                for (const SvpPoint& p : band) EXPECT_EQ(reduced.at(at++).soundVelocity, p.soundVelocity);
                continue;
            }
            double a = NAN, b = NAN, deviation = NAN;
            MedianFit(band, a, b, deviation);
            EXPECT_EQ(reduced.at(at++), SvpPoint(z, std::max(z, points.back().depth) * b + a, 0, 0));
            const double least = LeastDeviations(band), got = deviation * static_cast<double>(band.size() - 1);
            EXPECT_GE(got, least * (1 - 1e-9));
            if (band.size() % 2) continue;
            EXPECT_LE(got, least * 1.05) << band.size() << " samples at " << z;
            ++fits;
        }
        EXPECT_EQ(at, reduced.size());
    }
    EXPECT_GT(fits, 1000);
}

}  // namespace
}  // namespace orv
