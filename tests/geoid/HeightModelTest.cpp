#include <random>
#include <tuple>

#include "geoid/GeoidFolders.h"
#include "geoid/GeoidModel_OSGM.h"
#include "geoid/GeoidModel_Quasigeoid.h"
#include "geoid/GeoidModel_RDNAP.h"
#include "geoid/GeoidModel_Sweden.h"
#include "geoid/GeoidModel_byn_format.h"
#include "geoid/TestGrid.h"

namespace orv::test {
namespace {

using SlowFunction = std::optional<double> (*)(const TestGrid&, Edge, double, double);

// Models that read one grid of heights in degrees whole. The models whose files have fixed names take no name.
struct Model {
    const char* label;
    unsigned short typeId;
    std::wstring name, file;  // as given to the model, and below the folder
    bool inCommon;
    std::string bytes;
    Edge edge;
    SlowFunction slow;
    bool inMetres = false;
};

std::vector<Model> Models() {
    const TestGrid g;
    return {
        {"EGG97", 16, L"q.bin", L"q.bin", true, Quasigeoid(g), Edge::InnerClosed, SlowBilinear},
        {"GCG", 20, L"q.bin", L"q.bin", true, Quasigeoid(g), Edge::InnerClosed, SlowBilinear},
        {"RDNAP", 4, L"", L"netherlands/nlgeo04.grd", false, Dsbb(g), Edge::InnerOpen, SlowKernel},
        {"byn narrow", 23, L"c.byn", L"c.byn", true, Byn(g, 2), Edge::LastOut, SlowBilinear},
        {"byn wide", 23, L"c.byn", L"c.byn", true, Byn(g, 4), Edge::LastOut, SlowBilinear},
        {"Sweden", 6, L"", L"Sweden/Swen01l.grd", false, Gravsoft(g, 5, true), Edge::InnerOpen, SlowBilinear},
        {"Norway", 19, L"n", L"Norway/n.bin", false, Gravsoft(g, 777, true), Edge::InnerOpen, SlowBilinear},
        {"DVR90", 14, L"", L"Denmark/Dvr90g2002.01", false, Gravsoft(g, 777, true), Edge::InnerOpen, SlowBilinear},
        {"OSGM grid", 24, L"o.GRI", L"United Kingdom/o.GRI", false, Gri(g), Edge::InnerOpen, SlowBilinear},
        {"VORF", 27, L"v.txt", L"v.txt", true, Vorf(g), Edge::LastOut, SlowBilinear, true},
    };
}

class HeightModel : public testing::Test {
protected:
    std::unique_ptr<GeoidModel> Load(const Model& row, const std::string& bytes, double unit = 1.0) {
        GeoidFolders::Write(row.inCommon ? folders.Common(row.file) : folders.Models(row.file), bytes);
        std::unique_ptr<GeoidModel> model = MakeModel(row.typeId, unit);
        loaded = model->SetFileName(row.name);
        return model;
    }
    GeoidFolders folders;
    bool loaded = false;
};

TEST_F(HeightModel, AgreesWithASlowCalculation) {
    const TestGrid g;
    std::mt19937 random(2);
    // Nodes, edges, middles and odd places, up to a cell beyond the grid.
    const auto place = [&](double from, double step, int count) {
        const int k = std::uniform_int_distribution(-1, count)(random);
        const double fraction = Between(random, 0, 1);
        const double fractions[] = {0.0, 0.5, fraction, fraction};
        return from + (k + fractions[std::uniform_int_distribution(0, 3)(random)]) * step;
    };
    for (const Model& row : Models()) {
        const auto model = Load(row, row.bytes, kFoot);
        EXPECT_EQ(loaded, row.typeId != 4) << row.label;
        int found = 0;
        for (int n = 0; n < 2000; ++n) {
            const double latitude = place(g.south, g.dy, g.rows), longitude = place(g.west, g.dx, g.columns);
            const std::optional<double> metres = row.slow(g, row.edge, latitude, longitude);
            const double expected = metres ? *metres / (row.inMetres ? 1.0 : kFoot) : kUntouched;
            if (metres) ++found;
            EXPECT_NEAR(HeightAt(*model, latitude, longitude), expected, 1e-9)
                << row.label << " " << latitude << " " << longitude;
        }
        EXPECT_GT(found, 300) << row.label;
        for (const double wrong : {std::nan(""), HUGE_VAL, -1e300, 1e300}) {
            EXPECT_EQ(HeightAt(*model, wrong, 5), kUntouched) << row.label;
            EXPECT_EQ(HeightAt(*model, 50.5, wrong), kUntouched) << row.label;
        }
        EXPECT_EQ(model->LastReason(), GeoidReason::Outside) << row.label;
    }
}

TEST_F(HeightModel, MissingFile) {
    for (const Model& row : Models()) {
        const auto model = MakeModel(row.typeId);
        EXPECT_FALSE(model->SetFileName(row.name)) << row.label;
        EXPECT_EQ(HeightAt(*model, 50.5, 5), kUntouched) << row.label;
        EXPECT_EQ(model->LastReason(), GeoidReason::NoFile) << row.label;
        EXPECT_EQ(model->DataFile(), row.inCommon ? folders.Common(row.file) : folders.Models(row.file));
    }
    EXPECT_EQ(folders.notices.Text(Notice::Message), L"") << "these models stay silent";
}

// A reload puts the new file in the place of the old one, whatever came of it.
TEST_F(HeightModel, Reload) {
    for (const Model& row : Models()) {
        if (row.typeId == 4) continue;
        const auto model = Load(row, row.bytes);
        const double before = HeightAt(*model, 50.3, 4.6);
        EXPECT_TRUE(model->SetFileName(row.name)) << row.label;
        EXPECT_EQ(HeightAt(*model, 50.3, 4.6), before) << row.label << ": the second read mustn't append to the first";
        EXPECT_FALSE(model->SetFileName(L"gone")) << row.label;
        EXPECT_EQ(HeightAt(*model, 50.3, 4.6), kUntouched) << row.label;
    }
}

TEST_F(HeightModel, StatusOfBadHeaders) {
    const TestGrid g;
    const auto zeroed = [](std::string bytes, std::size_t at, std::size_t count) {
        return bytes.replace(at, count, count, '\0');
    };
    const std::wstring models = folders.Models(), common = folders.Common();
    const std::tuple<const char*, std::size_t, std::string, GeoidReason> rows[] = {
        {"no node", 0, Quasigeoid(g).substr(0, 72), GeoidReason::NoData},
        {"byn of type 0", 3, zeroed(Byn(g, 2), 22, 2), GeoidReason::BadHeader},
        {"any marker will do for Sweden, a step of 0 won't", 5, zeroed(Gravsoft(g, 1, true), 36, 8),
         GeoidReason::BadHeader},
        {"DVR90 without its marker", 7, Gravsoft(g, 776, true), GeoidReason::NoData},
        {"gri with a value too few", 8, Gri(g).substr(0, Gri(g).size() - 12), GeoidReason::NoData},
        {"VORF of a billion nodes", 9, "50 4 45 0\n50 4.000001 45 0\n80 60 45 0\n49.999999 4 45 0\n",
         GeoidReason::BadHeader},
    };
    for (const auto& [label, which, content, reason] : rows) {
        const auto model = Load(Models()[which], content);
        EXPECT_FALSE(loaded) << label;
        EXPECT_EQ(model->LastReason(), reason) << label;
        EXPECT_EQ(HeightAt(*model, 50.3, 4.6), kUntouched) << label;
    }
}

TEST_F(HeightModel, ErrorTexts) {
    const std::wstring path = folders.Common(L"q.bin");
    GeoidModel_QuasigeoidEGG97 model;
    model.SetFileName(L"q.bin");
    EXPECT_EQ(model.Info().error, L"Failed to open file " + path);
    GeoidFolders::Write(path, Quasigeoid(TestGrid()).substr(0, 72));
    model.SetFileName(L"q.bin");
    EXPECT_EQ(model.Info().error, L"No data in file " + path);
    GeoidModel_OSGM relative;
    relative.SetFileName(L"gone.gri");
    EXPECT_EQ(relative.Info().error, L"Failed to open file United Kingdom/gone.gri");

    const std::wstring grd = folders.Models(L"netherlands/nlgeo04.grd");
    GeoidFolders::Write(grd, "DSBA" + Dsbb(TestGrid()).substr(4));
    EXPECT_EQ(GeoidModel_RDNAP().GeoidGrid().error, grd + L" is not a valid grd file");
    EXPECT_EQ(GeoidModel_RDNAP().GeoidGrid().values.size(), 111u)
        << "the body is read all the same, the last node twice";
}

TEST_F(HeightModel, BicubicWhenACallerSetsTheMethod) {
    const TestGrid g;
    GeoidFolders::Write(folders.Common(L"q.bin"), Quasigeoid(g));
    GeoidModel_QuasigeoidEGG97 model;
    model.interpolationMethod = 1;
    ASSERT_TRUE(model.SetFileName(L"q.bin"));
    // On a node it gives the node of the next row north: the stencil sits a row too high.
    EXPECT_EQ(HeightAt(model, g.south + 3 * g.dy, g.west + 4 * g.dx), g.Node(4, 4));
    EXPECT_EQ(HeightAt(model, g.south + 4 * g.dy, g.west + 2 * g.dx), kUntouched) << "exactly two steps in";
    EXPECT_EQ(HeightAt(model, g.south + 4 * g.dy, g.west + 6 * g.dx), kUntouched) << "no-data node";
}

TEST_F(HeightModel, DutchHeightsOf2008) {
    GeoidFolders::Write(folders.Models(L"netherlands/nlgeo04.grd"), Dsbb(TestGrid()));
    const double metres = HeightAt(*MakeModel(4), 50.3, 4.6);
    EXPECT_EQ(HeightAt(*MakeModel(13), 50.3, 4.6), metres - 0.0088);
    // In feet the height is divided twice and the constant once.
    EXPECT_NEAR(HeightAt(*MakeModel(13, kFoot), 50.3, 4.6), (metres / kFoot - 0.0088) / kFoot, 1e-9);
}

// 0.3 / 0.1 is a hair below 3: with 1.0 added the Nordic grids lose a column, with 1.1 the Danish one doesn't.
TEST_F(HeightModel, NodesLostToRounding) {
    GeoFrame frame{.west = 0, .east = 0.3, .south = 0, .north = 1, .longitudeStep = 0.1, .latitudeStep = 1};
    ASSERT_TRUE(frame.CountNodes(1.0));
    EXPECT_EQ(frame.columns, 3);
    ASSERT_TRUE(frame.CountNodes(1.1));
    EXPECT_EQ(frame.columns, 4);
    frame.longitudeStep = 1e-9;
    EXPECT_FALSE(frame.CountNodes(1.0)) << "more columns than a grid can have";
}

TEST_F(HeightModel, NorthSeaReduction) {
    TestGrid g;
    g.west = 3;
    g.south = 52.5;
    const std::wstring path = folders.Models(L"Noordzee reductionmatrix/LAT2006.01");
    const double sea = HeightAt(*MakeModel(21), 53.1, 4.3);
    ASSERT_NE(sea, kUntouched);
    double value = kUntouched;
    std::wstring text;
    EXPECT_FALSE(MakeModel(22)->Calculate(53.1, 4.3, 0, 0, value, text)) << "without the grid";
    EXPECT_EQ(value, sea) << "the geoid's part is there all the same";

    for (const float missing : {9999.0f, 0.0f}) {
        GeoidFolders::Write(path, Gravsoft(g, 777, false, missing));
        const auto model = MakeModel(22, kFoot);
        const double reduction = SlowBilinear(g, Edge::InnerOpen, 53.1, 4.3).value();
        std::wstring said = L"before";
        EXPECT_NEAR(HeightAt(*model, 53.1, 4.3, 0, 0, &said), sea + reduction / kFoot, 1e-9)
            << "only the grid's part is scaled";
        wchar_t figure[40];
        std::swprintf(figure, 40, L"before MSL:%.4fft", reduction / kFoot);
        EXPECT_EQ(said, figure);
        EXPECT_EQ(HeightAt(*model, g.south + 5.5 * g.dy, g.west + 6.5 * g.dx), kUntouched) << "no data";
        EXPECT_EQ(HeightAt(*model, g.south + g.dy, 4.3), kUntouched) << "exactly one cell in";
    }
    GeoidFolders::Write(path, Gravsoft(g, 777, false, std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(MakeModel(22)->Calculate(g.south + 5.5 * g.dy, g.west + 6.5 * g.dx, 0, 0, value, text));
}

}  // namespace
}  // namespace orv::test
