#include "geoid/GeoidModelList.h"

#include <set>
#include <sstream>

#include "core/ConfigKeys.h"
#include "support/TestSupport.h"

namespace orv::test {
namespace {

std::wstring Dump(GeoidModel& model, const wchar_t* indent = L"") {
    std::wostringstream out;
    model.DumpGeoidXml(out, indent);
    return out.str();
}

const GeoidModelList& Registered() {
    RegisterGeoidModels();
    return GeoidModelList::GetGeoidModelList();
}

TEST(GeoidModelList, RegistersOnceWhateverTheCount) {
    const std::size_t count = Registered().Registrations().size();
    EXPECT_EQ(Registered().Registrations().size(), count);
    std::set<unsigned short> ids;
    for (const auto& known : Registered().Registrations()) {
        EXPECT_TRUE(ids.insert(known.typeId).second) << known.typeId;
        EXPECT_LT(known.typeId, GeoidmodelTypeKeys.size());
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
