#include <random>
#include <thread>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_EGM2008.h"
#include "geoid/GeoidModel_TrimbleGridFile.h"
#include "geoid/TestGrid.h"

namespace orv::test {
namespace {

/// A clock that moves on by a millisecond whenever it is looked at.
class StepClock : public Clock {
public:
    StepClock() { SetClock(this); }
    ~StepClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return ++now; }
    std::atomic<std::int64_t> now = 1'000'000;
};

struct Numbered : TileUse {
    explicit Numbered(int n) : number(n) {}
    int number;
};

// Forty-one tiles, hit in the given order; the next one pushes out one of them.
TEST(TileCache, Eviction) {
    const auto all = [](int from, int to) {
        std::vector<int> numbers;
        for (int n = from; n <= to; ++n) numbers.push_back(n);
        return numbers;
    };
    const auto without = [&](int number) {
        std::vector<int> numbers = all(0, 40);
        std::erase(numbers, number);
        return numbers;
    };
    std::vector<int> again = all(0, 40);
    again.push_back(0);
    const struct {
        const char* label;
        std::vector<int> hits;
        int evicted;
    } rows[] = {
        {"all hit once: the first", all(0, 40), 0},
        {"the first hit again: the second", again, 1},
        {"one not hit is passed over, and so are those before it", without(5), 6},
        {"the newest not hit: itself", without(40), 40},
        {"none hit", {}, 40},
    };
    for (const auto& row : rows) {
        StepClock clock;
        TileCache<Numbered> cache;
        for (int n = 0; n <= 40; ++n) cache.Add([n] { return std::make_shared<Numbered>(n); });
        for (const int hit : row.hits) cache.Find([hit](const Numbered& tile) { return tile.number == hit; });
        const TileCache<Numbered> copy = cache;
        cache.Add([] { return std::make_shared<Numbered>(41); });
        std::vector<int> left;
        for (const auto& tile : cache.List()) left.push_back(tile->number);
        std::vector<int> expected = all(0, 41);
        std::erase(expected, row.evicted);
        EXPECT_EQ(left, expected) << row.label;
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
        const auto node = [&](int k) { return Wavy(row0 + k / 100, (column0 + k % 100 + 21600) % 21600); };
        GeoidModel_EGM2008 model;
        UnitOnly feet(kFoot);
        model.Init(&feet);
        HeightAt(model, latitude0, longitude0);
        for (int n = 0; n < 1500; ++n) {
            const double x = std::uniform_real_distribution(0.0001, 99.9999)(random);
            const double y = std::uniform_real_distribution(0.0001, 99.9999)(random);
            const double longitude = (column0 + x) / 60, latitude = 90 - (row0 + y) / 60;
            if (longitude < 0 || longitude >= 360) continue;  // asked for there it would be another tile's
            const int i = static_cast<int>(x), j = static_cast<int>(y), k = j * 100 + i;
            double expected = kUntouched;
            if (k > 0 && k + 101 < 10000 && row0 + j + 1 < kRows - (i == 99 ? 1 : 0)) {
                const double u = x - i, v = y - j;
                const double north = node(k) + u * (node(k + 1) - node(k));
                const double south = node(k + 100) + u * (node(k + 101) - node(k + 100));
                expected = (north + v * (south - north)) / kFoot;
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
    EXPECT_EQ(HeightAt(model, 90.0001, 77), kUntouched);
    EXPECT_EQ(HeightAt(model, std::nan(""), 77), kUntouched);
    EXPECT_EQ(HeightAt(model, 88, HUGE_VAL), kUntouched);
    EXPECT_NE(HeightAt(model, 89.01, 4.9), kUntouched);
    EXPECT_EQ(HeightAt(model, 89.005, 4.995), kUntouched);
    EXPECT_EQ(model.LastReason(), GeoidReason::NoData);
    EXPECT_EQ(HeightAt(model, 80, 5), kUntouched) << "past the end of a short file";
    const std::size_t tiles = model.Tiles().List().size();
    EXPECT_EQ(HeightAt(model, 80, 5), kUntouched);
    EXPECT_EQ(model.Tiles().List().size(), tiles) << "an empty tile isn't read again";
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
    EXPECT_EQ(folders.notices.Text(Notice::Message),
              L"Failed to find EGM2008 geoid model data file:\n\"" + std::wstring(kEgmName) + L"\"\nin folder:\n" +
                  folders.Common() +
                  L"\n\nDownload the file from:\n\"the publisher's site\"\nand select\n"
                  L"\"1 x 1-Minute Geoid Undulation Grid in WGS 84 - SMALL ENDIAN \"\n\n"
                  L"Unzip the file and copy to folder:\n" +
                  folders.Common() + L"\n");
}

// Each sixth of the file has a height of its own, so a height of another tile would show.
TEST_F(GlobalModel, EightThreads) {
    Write([](int, int column) { return column / 3600 + 1.0; });
    GeoidModel_EGM2008 model;
    std::atomic<int> wrong = 0, right = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 8; ++t) {
        threads.emplace_back([&, t] {
            std::mt19937 random(t);
            for (int n = 0; n < 400; ++n) {
                const int sector = std::uniform_int_distribution(0, 5)(random);
                const double longitude = sector * 60 + std::uniform_real_distribution(5.0, 55.0)(random);
                const double height = HeightAt(model, std::uniform_real_distribution(88.6, 89.9)(random), longitude);
                if (height == kUntouched) continue;  // the southernmost step of some tile
                ++(height == sector + 1.0 ? right : wrong);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(right, 3000);
    EXPECT_LE(model.Tiles().List().size(), 41u);
}

// The self-describing grid file.
struct Ggf {
    TestGrid grid = {};
    std::uint8_t flags = 0x04, unit = 0, interpolation = 1, dataType = 8, rowOrder = 1, columnOrder = 1;
    double scale = 1;

    std::string Bytes() const {
        const TestGrid& g = grid;
        GridBytes out;
        out.Blank(48);
        for (const double f : {g.south, g.North(), g.west, g.East(), g.dy, g.dx}) out.F64(f);
        out.I32(g.rows).I32(g.columns).Blank(16).F64(99).F64(scale).Blank(2);
        for (const std::uint8_t code : {flags, unit, interpolation, dataType, rowOrder, columnOrder}) out.Add(code);
        out.Blank(2);
        const auto put = [&](int n, int m) {
            const int row = rowOrder & 1 ? n : g.rows - 1 - n, column = columnOrder & 1 ? m : g.columns - 1 - m;
            const double node = g.Missing(row, column) ? 99 : g.Node(row, column);
            switch (dataType) {
                case 1:
                    out.Add(static_cast<std::int8_t>(node));
                    break;
                case 2:
                    out.Add(static_cast<std::int16_t>(node));
                    break;
                case 4:
                    out.I32(static_cast<int>(node));
                    break;
                case 8:
                    out.F32(static_cast<float>(node));
                    break;
                default:
                    out.F64(node);
            }
        };
        const bool byColumns = flags & 0x40;
        for (int a = 0; a < (byColumns ? g.columns : g.rows); ++a)
            for (int b = 0; b < (byColumns ? g.rows : g.columns); ++b) byColumns ? put(b, a) : put(a, b);
        return out.bytes;
    }
};

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
        {"from the north-east", {.rowOrder = 2, .columnOrder = 0}},
        {"column by column", {.flags = 0x44}},
        {"column by column from the east", {.flags = 0x44, .columnOrder = 0}},
        {"doubles", {.dataType = 16}},
        {"doubles of the other code", {.dataType = 32}},
        {"bytes", {.dataType = 1}, 1, true},
        {"16 bits, millimetres", {.unit = 1, .dataType = 2}, 0.001, true},
        {"32 bits, centimetres", {.unit = 2, .dataType = 4}, 0.01, true},
        {"the file's inch", {.unit = 8}, 0.024500050833},
        {"US foot, scaled", {.flags = 0x06, .unit = 16, .scale = -2}, -2 * 0.30480061},
        {"inch", {.unit = 32}, 0.0254},
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
            const double latitude = std::uniform_real_distribution(g.south - 0.1, g.North() + 0.1)(random);
            const double longitude = std::uniform_real_distribution(g.west - 0.1, g.East() + 0.1)(random);
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
            const double latitude = std::uniform_real_distribution(g.south, g.North())(random);
            const double longitude = std::uniform_real_distribution(g.west, g.East())(random);
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
    EXPECT_EQ(model.Tiles().List().size(), 1u) << "a tile is made all the same";

    Load(Ggf{.dataType = 3}.Bytes());
    EXPECT_EQ(HeightAt(model, 50.3, 4.6), kUntouched);
    EXPECT_EQ(model.Tiles().List()[0]->error, L"Invalid data type " + folders.Common(L"t.ggf"));

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

TEST_F(GridFile, MissingFileIsToldOnce) {
    for (int n = 0; n < 2; ++n) EXPECT_FALSE(model.SetFileName(L"gone.ggf"));
    EXPECT_EQ(model.ErrorText(), L"Failed to open file " + folders.Common(L"gone.ggf"));
    EXPECT_EQ(HeightAt(model, 50.3, 4.6), kUntouched);
    EXPECT_EQ(model.LastReason(), GeoidReason::NoFile);
    EXPECT_EQ(folders.notices.Text(Notice::Message),
              L"Failed to find selected Trimble Geoid Grid File:\ngone.ggf\n"
              L"Download the file from the publisher's site\nand copy to folder:\n" +
                  folders.Common() + L"\n");
}

TEST_F(GridFile, SpoiltHeaders) {
    for (const std::uint8_t flags : {std::uint8_t{0x05}, std::uint8_t{0x44}}) {
        const std::string whole = Ggf{.flags = flags, .interpolation = 4}.Bytes();
        for (std::size_t bit = 48 * 8; bit < 146 * 8; ++bit) {
            std::string spoilt = whole;
            spoilt[bit / 8] = static_cast<char>(spoilt[bit / 8] ^ (1 << bit % 8));
            Load(spoilt);
            for (const double longitude : {4.6, 6.4, 0.0, -170.0}) HeightAt(model, 50.5, longitude, longitude, 50.5);
        }
    }
    EXPECT_LE(model.Tiles().List().size(), 4u);
}

TEST_F(GridFile, EightThreads) {
    TestGrid g;
    g.columns = 900;
    g.rows = 400;
    g.missingRow = -1;
    g.dx = g.dy = 0.03125;
    Load(Ggf{.grid = g}.Bytes());
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 8; ++t) {
        threads.emplace_back([&, t] {
            std::mt19937 own(t);
            for (int n = 0; n < 500; ++n) {
                const double latitude = std::uniform_real_distribution(g.south + 0.04, g.North() - 0.04)(own);
                const double longitude = std::uniform_real_distribution(g.west + 0.04, g.East() - 0.04)(own);
                const double expected = SlowBilinear(g, Edge::InnerOpen, latitude, longitude).value();
                if (std::fabs(HeightAt(model, latitude, longitude) - expected) > 1e-9) ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace orv::test
