#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <tuple>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_EGM2008.h"
#include "geoid/GeoidModel_TrimbleGridFile.h"
#include "geoid/TestGrid.h"
#include "platform/text/PathText.h"

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
        for (const int hit : hits) cache.Use(*cache.Find([hit](const Numbered& tile) { return tile.number == hit; }));
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

// Positions in a few cells of a minute each: whichever comes first, the same tile is made for a cell, so that no order
// of threads may change a bit.
template <class Model>
void ExpectTheBitsOfOneThread(Model& one, Model& shared, double south, double north, double west, double east) {
    std::mt19937 random(12);
    std::vector<std::pair<double, double>> cells(6), positions;
    for (auto& [latitude, longitude] : cells) {
        latitude = std::floor(Between(random, south, north) * 60) / 60;
        longitude = std::floor(Between(random, west, east) * 60) / 60;
    }
    std::vector<double> expected;
    for (std::size_t n = 0; n < 600; ++n) {
        const auto& [latitude, longitude] = cells[n % cells.size()];
        positions.emplace_back(latitude + Between(random, 0.001, 0.015), longitude + Between(random, 0.001, 0.015));
        expected.push_back(HeightAt(one, positions[n].first, positions[n].second));
    }
    std::atomic<int> wrong = 0;
    InEightThreads([&](unsigned t) {
        for (std::size_t n = 0; n < positions.size(); ++n) {
            const std::size_t which = (n * 7 + t * 71) % positions.size();
            if (HeightAt(shared, positions[which].first, positions[which].second) != expected[which]) ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), kUntouched), 0);
    EXPECT_LE(shared.Tiles().List().size(), 41u);
}

TEST_F(GlobalModel, EightThreads) {
    Write(Wavy);
    GeoidModel_EGM2008 one, shared;
    ExpectTheBitsOfOneThread(one, shared, 88.6, 89.1, 1, 359);
}

// The file as large as it really is, empty but for one row near each end.
TEST_F(GlobalModel, WholeWorldInLittleMemory) {
    const std::wstring path = folders.Common(kEgmName);
    GeoidFolders::Write(path, "");
    std::filesystem::resize_file(PathToBytes(path), 10801ull * 86408);
    std::fstream file(PathToBytes(path), std::ios::binary | std::ios::in | std::ios::out);
    for (const int row : {60, 10740}) {
        GridBytes nodes;
        for (int column = 0; column < 21600; ++column) nodes.F32(static_cast<float>(row + column * 0.25));
        file.seekp(row * 86408ll + 4);
        file.write(nodes.bytes.data(), static_cast<std::streamsize>(nodes.bytes.size()));
    }
    file.close();
    const auto pages = [] {
        long total = 0, resident = 0;
        std::ifstream("/proc/self/statm") >> total >> resident;
        return resident;
    };
    GeoidModel_EGM2008 model;
    std::mt19937 random(11);
    [[maybe_unused]] const long before = pages();  // sanitizers keep memory of their own
    for (int n = 0; n < 10000; ++n) {
        HeightAt(model, Between(random, -90, 90), Between(random, -180, 180));
    }
    EXPECT_EQ(model.Tiles().List().size(), 41u);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT((pages() - before) * sysconf(_SC_PAGESIZE), 10'000'000);
#endif
    EXPECT_NEAR(HeightAt(model, 89, 200), 60 + 12000 * 0.25, 1e-6);
    EXPECT_NEAR(HeightAt(model, -89, -0.75), 10740 + 21555 * 0.25, 1e-6);
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

TEST_F(GridFile, EightThreads) {
    TestGrid g;
    g.columns = 230;
    g.rows = 150;
    g.missingRow = -1;
    GeoidModel_TrimbleGridFile one = Load(Ggf{.grid = g}.Bytes());
    ExpectTheBitsOfOneThread(one, model, g.south + 1, g.North() - 1, g.west + 1, g.East() - 1);
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
