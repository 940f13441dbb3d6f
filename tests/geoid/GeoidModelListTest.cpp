#include "geoid/GeoidModelList.h"

#include "core/ConfigKeys.h"
#include "geoid/GeoidFolders.h"

namespace orv::test {
namespace {

const GeoidModelList& Registered() {
    RegisterGeoidModels();
    return GeoidModelList::GetGeoidModelList();
}

// Name, type id, row of the key that the dump prints, and the files that it lists: below the common project files with
// a leading '8', below the geoid models with an 'M', as they are with an '='.
const struct {
    const wchar_t* name;
    unsigned short typeId;
    std::size_t key;
    std::vector<std::pair<std::wstring, std::wstring>> files;  // block or empty, file
} kRows[] = {
    {L"GeoidModelDeMin", 2, 2, {}},
    {L"GeoidModelDeMin", 21, 21, {}},
    {L"GeoidModelDeMin", 22, 22, {{L"", L"MNoordzee reductionmatrix/LAT2006.01"}}},
    {L"GeoidModelRDNAP",
     4,
     13,
     {{L"fileinfogrid", L"Mnetherlands/nlgeo04.grd"},
      {L"fileinfodx", L"Mnetherlands/x2c.grd"},
      {L"fileinfody", L"Mnetherlands/y2c.grd"}}},
    {L"GeoidModelhBG03", 5, 5, {{L"fileinfogrid", L"Mbelgium/hBG03.grd"}, {L"fileinfodx", L"Mbelgium/xyGridLb72.grd"}}},
    {L"GeoidModelSwen01", 6, 6, {{L"", L"MSweden/f.grd"}}},
    {L"GeoidModelNorway", 19, 19, {{L"", L"MNorway/f.bin"}}},
    {L"GeoidModelStatePlane", 7, 7, {{L"fileinfolist", L""}}},
    {L"GeoidModelHARN", 8, 8, {}},  // its dump is held where its grids are
    {L"GeoidModelOSTN", 25, 25, {{L"", L"=United Kingdom/f"}}},
    {L"GeoidModelOSGM", 24, 24, {{L"", L"=United Kingdom/f"}}},
    {L"GeoidModelRDNAP2008",
     13,
     13,
     {{L"fileinfogrid", L"Mnetherlands/nlgeo04.grd"},
      {L"fileinfodx", L"Mnetherlands/x2c.grd"},
      {L"fileinfody", L"Mnetherlands/y2c.grd"}}},
    {L"GeoidModelDVR90", 14, 14, {{L"", L"MDenmark/f"}}},
    {L"GeoidModel_QuasigeoidEGG97", 16, 16, {{L"", L"8f"}}},
    {L"GeoidModelNull", 17, 17, {}},
    {L"GeoidModel_EGM2008", 18, 18, {{L"", L"8Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE"}}},
    {L"GeoidModel_Quasigeoid_GCG", 20, 20, {{L"", L"8f"}}},
    {L"GeoidModel_byn_format", 23, 23, {{L"", L"8f"}}},
    {L"GeoidModel_TrimbleGridFile", 26, 26, {{L"", L"8f"}}},
    {L"GeoidModel_VORF", 27, 27, {{L"", L"=f"}}},
    {L"GeoidModelRDNAP2018", 28, 22, {{L"", L"MNetherlands/f"}}},
    {L"GeoidModelRDNAP2018Hor", 29, 29, {{L"", L"MNetherlands/f"}}},
};

TEST(GeoidModelList, AllModelsInTheirOrderOnce) {
    Registered();
    const auto& registrations = Registered().Registrations();
    ASSERT_EQ(registrations.size(), std::size(kRows));
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        EXPECT_EQ(registrations[i].name, kRows[i].name) << i;
        EXPECT_EQ(registrations[i].typeId, kRows[i].typeId) << i;
    }
    EXPECT_EQ(Registered().Create(1), nullptr);
}

TEST(GeoidModelList, WhatEveryModelDumps) {
    const GeoidFolders folders;
    for (const auto& row : kRows) {
        if (row.typeId == 8) continue;
        const auto model = MakeModel(row.typeId);
        model->SetFileName(L"f");
        std::wstring expected = L"<geoidmodel>\n  <name>" + std::wstring(GeoidmodelTypeKeys[row.key]) + L"</name>\n";
        for (const auto& [block, file] : row.files) {
            const std::wstring name = file.empty() ? file : file.substr(1);
            const std::wstring path = file[0] == L'8'   ? folders.Common(name)
                                      : file[0] == L'M' ? folders.Models(name)
                                                        : name;
            const std::wstring line = L"  <filename>" + path + L"</filename>\n";
            if (!block.empty()) expected += L"  <" + block + L">\n";
            if (!file.empty()) expected += block.empty() ? line : L"  " + line;
            if (!block.empty()) expected += L"  </" + block + L">\n";
        }
        EXPECT_EQ(Dump(*model), expected + L"</geoidmodel>\n") << row.typeId;
    }
}

TEST(GeoidModelList, LaterCreatorTakesThePlace) {
    GeoidModelList list;
    struct Plain : GeoidModel {};
    list.RegisterGeoidModel(L"first", 7, nullptr);
    list.RegisterGeoidModel(L"second", 8, nullptr);
    EXPECT_EQ(list.Create(7), nullptr);
    list.RegisterGeoidModel(L"first again", 7, new GeoidModelCreator<Plain>);
    ASSERT_EQ(list.Registrations().size(), 2u);
    EXPECT_EQ(list.Registrations()[0].name, L"first again");
    EXPECT_NE(list.Create(7), nullptr);
    EXPECT_EQ(list.Create(9), nullptr);
}

TEST(GeoidModelList, TypeByKey) {
    EXPECT_EQ(GeoidTypeForKey(L"GeoidModelNull"), 17);
    EXPECT_EQ(GeoidTypeForKey(L"GeoidModelRDNAP2018Hor"), 29);
    EXPECT_EQ(GeoidTypeForKey(L"geoidmodelnull"), -1);
    EXPECT_EQ(GeoidTypeForKey(L""), -1);
}

TEST(GeoidModel, BaseKeepsWhatItIsToldAndLeavesOutputsAlone) {
    struct Plain : GeoidModel {};
    Plain model;
    EXPECT_TRUE(model.Init(nullptr));
    EXPECT_EQ(model.UnitFactor(), 1.0);
    EXPECT_EQ(model.UnitLabel(), L"m");
    EXPECT_FALSE(model.SetFileName(L"a.grd"));
    model.SetGeoidChartDatum(L"MLLW");
    EXPECT_EQ(model.FileName(), L"a.grd");
    EXPECT_EQ(model.ChartDatum(), L"MLLW");
    double a = 1, b = 2;
    std::wstring text = L"kept";
    EXPECT_FALSE(model.Calculate(52, 4, 0, 0, a, text));
    EXPECT_FALSE(model.Calculate(52, 4, a, b, false));
    EXPECT_FALSE(model.CalculateLocalEllipsCorrection(52, 4, a, b, true));
    EXPECT_FALSE(model.CheckGeoidModelFiles(L"/", text, true));
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(text, L"kept");
    EXPECT_EQ(model.LastReason(), GeoidReason::NotSupported);
    EXPECT_EQ(Plain(model).LastReason(), GeoidReason::None) << "a copy has failed nothing yet";
}

TEST(GeoidModel_Null, GivesNothingEverywhere) {
    const auto model = Registered().Create(17);
    double value = 5;
    std::wstring text;
    EXPECT_TRUE(model->Calculate(1000, -7, 0, 0, value, text));
    EXPECT_EQ(value, 0);
    EXPECT_EQ(Dump(*model, L"\t"), L"\t<geoidmodel>\n\t  <name>GeoidModelNull</name>\n\t</geoidmodel>\n");
}

}  // namespace
}  // namespace orv::test
