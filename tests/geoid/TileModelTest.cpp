#include <numeric>
#include <tuple>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_EGM2008.h"
#include "geoid/GeoidModel_TrimbleGridFile.h"
#include "geoid/TestGrid.h"

namespace orv::test {
namespace {

struct Numbered : TileUse {
    explicit Numbered(int n) : number(n) {}
    int number;
};

// Forty-one tiles, hit in the given order; the next one pushes out one of them.
TEST(TileCache, Eviction) {
    const auto all = [](int from, int to) {
        std::vector<int> numbers(static_cast<std::size_t>(to - from + 1));
        std::iota(numbers.begin(), numbers.end(), from);
        return numbers;
    };
    std::vector<int> again = all(0, 40), without5 = again;
    again.push_back(0);
    std::erase(without5, 5);
    const std::tuple<const char*, std::vector<int>, int> rows[] = {
        {"all hit once: the first", all(0, 40), 0},
        {"the first hit again: the second", again, 1},
        {"one not hit is passed over, and so are those before it", without5, 6},
        {"the newest not hit: itself", all(0, 39), 40},
    };
    for (const auto& [label, hits, evicted] : rows) {
        TestClock clock(1);
        TileCache<Numbered> cache;
        for (int n = 0; n <= 40; ++n) cache.Add([n] { return std::make_shared<Numbered>(n); });
        for (const int hit : hits) cache.Find([hit](const Numbered& tile) { return tile.number == hit; });
        const TileCache<Numbered> copy = cache;
        cache.Add([] { return std::make_shared<Numbered>(41); });
        std::vector<int> left;
        for (const auto& tile : cache.List()) left.push_back(tile->number);
        std::vector<int> expected = all(0, 41);
        std::erase(expected, evicted);
        EXPECT_EQ(left, expected) << label;
        EXPECT_EQ(copy.List().size(), 41u) << "a copy has a list of its own";
    }
}

// The northernmost rows of the global file, and no more.
constexpr int kRows = 140;
constexpr std::wstring_view kEgmName = L"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE";

template <class Node>
std::string EgmFile(Node node) {
    GridBytes out;
    out.bytes.reserve(kRows * 86408);
    for (int row = 0; row < kRows; ++row) {
        out.I32(86400);
        for (int column = 0; column < 21600; ++column) out.F32(static_cast<float>(node(row, column)));
        out.I32(86400);
    }
    return out.bytes;
}

double Wavy(int row, int column) {
    return 20 + 0.125 * ((row * 37 + column * 23 + row * column) % 41);
}

class GlobalModel : public testing::Test {
protected:
    GlobalModel() { GeoidModel_EGM2008::m_bNoFileReported = false; }
    template <class Node>
    void Write(Node node) {
        GeoidFolders::Write(folders.Common(kEgmName), EgmFile(node));
    }
    GeoidFolders folders;
};

// One tile of 100 x 100 nodes around the first position; its last row and column are as odd as ever.
TEST_F(GlobalModel, AgreesWithASlowCalculation) {
    Write(Wavy);
    std::mt19937 random(3);
    for (const auto& [latitude0, longitude0] : {std::pair{88.605, 4.303}, {89.9, 359.9}, {88.7, -0.501}, {88.9, 0.2}}) {
        const double turned = longitude0 < 0 ? longitude0 + 360 : longitude0;
        const int column0 = static_cast<int>(std::floor(turned * 60)) - 50;
        const int row0 = latitude0 > 89 ? 0 : 5400 - (static_cast<int>(std::floor(latitude0 * 60)) + 50);
        const auto node = [&](int r, int c) {  // what is right of the last column is the next row
            return Wavy(row0 + r + c / 100, (column0 + c % 100 + 21600) % 21600);
        };
        GeoidModel_EGM2008 model;
        SetUnit(model, kFoot);
        HeightAt(model, latitude0, longitude0);
        for (int n = 0; n < 1500; ++n) {
            const double x = Between(random, 0.0001, 99.9999), y = Between(random, 0.0001, 99.9999);
            const double longitude = (column0 + x) / 60, latitude = 90 - (row0 + y) / 60;
            if (longitude < 0 || longitude >= 360) continue;  // asked for there it would be another tile's
            const int i = static_cast<int>(x), j = static_cast<int>(y), k = j * 100 + i;
            double expected = kUntouched;
            if (k > 0 && k + 101 < 10000 && row0 + j + 1 < kRows - (i == 99 ? 1 : 0)) {
                expected = BetweenNodes(node, x, y) / kFoot;
            }
            ASSERT_NEAR(HeightAt(model, latitude, longitude), expected, 1e-7) << latitude << " " << longitude;
        }
        EXPECT_EQ(model.Tiles().List().size(), 1u);
    }
}

TEST_F(GlobalModel, EdgesOfTheWorldAndNoData) {
    Write([](int row, int column) { return row == 60 && column == 300 ? 9999.5 : Wavy(row, column); });
    GeoidModel_EGM2008 model;
    EXPECT_NEAR(HeightAt(model, 90, 77), Wavy(0, 77 * 60), 1e-9) << "the pole is row 0";
    for (const auto& [latitude, longitude] : {std::pair{90.0001, 77.0}, {std::nan(""), 77}, {88, HUGE_VAL}}) {
        EXPECT_EQ(HeightAt(model, latitude, longitude), kUntouched) << latitude;
    }
    EXPECT_NE(HeightAt(model, 89.01, 4.9), kUntouched);
    EXPECT_EQ(HeightAt(model, 89.005, 4.995), kUntouched);
    EXPECT_EQ(model.LastReason(), GeoidReason::NoData);
    EXPECT_EQ(HeightAt(model, 80, 5), kUntouched) << "past the end of a short file";
    for (int n = 0; n < 100; ++n) HeightAt(model, 89, n * 3.3);
    EXPECT_EQ(model.Tiles().List().size(), 41u);

    GeoidModel_EGM2008 bicubic;
    bicubic.interpolationMethod = 1;
    EXPECT_NEAR(HeightAt(bicubic, 89, 7), Wavy(59, 7 * 60), 1e-4) << "the stencil begins a row too far north";
}

TEST_F(GlobalModel, MissingFileIsToldOnce) {
    for (int n = 0; n < 2; ++n) {
        GeoidModel_EGM2008 model;
        EXPECT_EQ(HeightAt(model, 52, 4), kUntouched);
        EXPECT_EQ(model.LastReason(), GeoidReason::NoFile);
        EXPECT_EQ(model.Tiles().List()[0]->error, L"Failed to open file " + folders.Common(kEgmName));
    }
    const std::wstring told = folders.notices.Text(Notice::Message);
    EXPECT_EQ(told.find(L"Failed to find EGM2008"), told.rfind(L"Failed to find EGM2008"));
    EXPECT_NE(told.find(L"copy to folder:\n" + folders.Common()), told.npos) << "told once, with the folder to fill";
}

// Each sixth of the file has a height of its own, so a height of another tile would show.
TEST_F(GlobalModel, EightThreads) {
    Write([](int, int column) { return column / 3600 + 1.0; });
    GeoidModel_EGM2008 model;
    std::atomic<int> wrong = 0, right = 0;
    InEightThreads([&](unsigned t) {
        std::mt19937 random(t);
        for (int n = 0; n < 400; ++n) {
            const int sector = std::uniform_int_distribution(0, 5)(random);
            const double height = HeightAt(model, Between(random, 88.6, 89.9), sector * 60 + Between(random, 5, 55));
            if (height == kUntouched) continue;  // the southernmost step of some tile
            ++(height == sector + 1.0 ? right : wrong);
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(right, 3000);
    EXPECT_LE(model.Tiles().List().size(), 41u);
}

class GridFile : public testing::Test {
protected:
    GridFile() { GeoidModel_TrimbleGridFile::m_bNoFileReported = false; }
    GeoidModel_TrimbleGridFile& Load(const std::string& bytes) {
        GeoidFolders::Write(folders.Common(L"t.ggf"), bytes);
        EXPECT_TRUE(model.SetFileName(L"t.ggf"));
        return model;
    }
    GeoidFolders folders;
    GeoidModel_TrimbleGridFile model;
    std::mt19937 random{4};
};

TEST_F(GridFile, EveryOrderTypeAndUnit) {
    const struct {
        const char* label;
        Ggf file;
        double factor = 1;
        bool whole = false;
    } rows[] = {
        {"floats from the south-west", {}},
        {"from the north", {.rowOrder = 2}},
        {"from the east", {.columnOrder = 0}},
        {"column by column", {.flags = 0x44}},
        {"doubles", {.dataType = 16}},
        {"bytes", {.dataType = 1}, 1, true},
        {"16 bits, millimetres", {.unit = 1, .dataType = 2}, 0.001, true},
        {"32 bits, centimetres", {.unit = 2, .dataType = 4}, 0.01, true},
        {"the file's inch", {.unit = 8}, 0.024500050833},
        {"US foot, scaled", {.flags = 0x06, .unit = 16, .scale = -2}, -2 * 0.30480061},
        {"foot, scale not asked for", {.unit = 64, .scale = 5}, 0.3048},
        {"code that is no unit", {.unit = 3}},
        {"bicubic", {.interpolation = 4}},
        {"bicubic, from the north", {.interpolation = 16, .rowOrder = 2}},
        {"bilinear of code 32", {.interpolation = 32}},
    };
    for (const auto& row : rows) {
        Load(row.file.Bytes());
        const bool cubic = row.file.interpolation == 4 || row.file.interpolation == 16;
        const TestGrid g;
        for (int n = 0; n < 400; ++n) {
            const double latitude = Between(random, g.south - 0.1, g.North() + 0.1);
            const double longitude = Between(random, g.west - 0.1, g.East() + 0.1);
            const auto weights = [](double t) { return std::array{1 - t, t}; };
            const std::optional<double> expected =
                cubic ? SlowKernel(g, Edge::Inner2Open, latitude, longitude)
                      : Slow(g, Edge::InnerOpen, latitude, longitude, 2, 0, weights, row.whole);
            ASSERT_NEAR(HeightAt(model, latitude, longitude), expected ? *expected * row.factor : kUntouched, 1e-9)
                << row.label << " " << latitude << " " << longitude;
        }
    }
}

// One bit tells how rows lie in the file, another what the interpolation takes them for. If they don't agree the grid
// stands on its head.
TEST_F(GridFile, RowBitsThatDisagree) {
    const TestGrid g;
    for (const std::uint8_t order : {std::uint8_t{0}, std::uint8_t{3}}) {
        Load(Ggf{.rowOrder = order}.Bytes());
        EXPECT_EQ(HeightAt(model, g.south + 2 * g.dy, g.west + 3 * g.dx), g.Node(g.rows - 1 - 2, 3));
    }
}

TEST_F(GridFile, LargerThanATile) {
    TestGrid g;
    g.columns = 230;
    g.rows = 150;
    g.missingRow = -1;
    for (const std::uint8_t flags : {std::uint8_t{0}, std::uint8_t{0x40}}) {
        Load(Ggf{.grid = g, .flags = flags}.Bytes());
        for (int n = 0; n < 2000; ++n) {
            const double latitude = Between(random, g.south, g.North()), longitude = Between(random, g.west, g.East());
            ASSERT_NEAR(HeightAt(model, latitude, longitude - (n % 2) * 360),
                        SlowBilinear(g, Edge::InnerOpen, latitude, longitude).value_or(kUntouched), 1e-9);
        }
        EXPECT_GT(model.Tiles().List().size(), 4u);
        EXPECT_LE(model.Tiles().List().size(), 41u);
    }
}

// Around the globe: wraps whatever the flags say. Rows of a tile across the seam are put together from more than its
// own row; that is how such files have always been read.
TEST_F(GridFile, AcrossTheSeam) {
    TestGrid g;
    g.west = 0;
    g.dx = 10;
    g.columns = 37;
    g.missingRow = -1;
    Load(Ggf{.grid = g, .flags = 0, .rowOrder = 2}.Bytes());
    EXPECT_TRUE(model.FileHeader().Wraps());
    // A tile of 37 columns from column 10 - 18 = -8 on: 29 nodes from file column 29, then 8 from column 0.
    const auto node = [&](int row, int column) {
        const int flat = (g.rows - 1 - row) * 37 + (column < 29 ? 29 + column : column - 29);
        return g.Node(g.rows - 1 - flat / 37, flat % 37);
    };
    EXPECT_EQ(HeightAt(model, g.south + 4 * g.dy, 100), node(4, 18));
    EXPECT_EQ(HeightAt(model, g.south + 4 * g.dy, 270), node(4, 35)) << "the same tile";
    EXPECT_EQ(HeightAt(model, g.south + 4 * g.dy, -95), (node(4, 34) + node(4, 35)) / 2) << "found by adding 360";
    EXPECT_EQ(model.Tiles().List().size(), 1u);
}

TEST_F(GridFile, WhatGivesNoHeight) {
    const TestGrid g;
    Load(Ggf{.interpolation = 0}.Bytes());
    EXPECT_EQ(HeightAt(model, 50.3, 4.6), kUntouched);
    EXPECT_EQ(model.LastReason(), GeoidReason::NotSupported);
    Load(Ggf{.interpolation = 32}.Bytes());
    EXPECT_NE(HeightAt(model, 50.3, 4.6), kUntouched);
    EXPECT_EQ(HeightAt(model, 80, 4.6), kUntouched);
    EXPECT_EQ(model.Tiles().List().size(), 1u) << "no position is outside a tile of this code";

    const std::string whole = Ggf{.flags = 0}.Bytes();
    Load(whole.substr(0, 146 + 11 * 4 * 3));
    EXPECT_EQ(HeightAt(model, g.south + 5 * g.dy, g.west + 3 * g.dx), 0) << "a short file leaves zeros";
    Load(whole.substr(0, 90));
    EXPECT_EQ(HeightAt(model, 50.3, 4.6), kUntouched);
    EXPECT_EQ(model.LastReason(), GeoidReason::BadHeader);
}

TEST_F(GridFile, ProjectedGridTakesEastingAndNorthing) {
    TestGrid g;
    g.west = 500;
    g.dx = 12;
    Load(Ggf{.grid = g, .flags = 0x20}.Bytes());
    EXPECT_EQ(HeightAt(model, 0, 0, 596, 50.5), kUntouched) << "turned as if it were a longitude";
    EXPECT_EQ(HeightAt(model, 0, 0, 524, 50.5), g.Node(4, 2));
    EXPECT_EQ(HeightAt(model, 0, 0, 596, 50.5), g.Node(4, 8)) << "but a tile that is there answers";
}

}  // namespace
}  // namespace orv::test
