#include <cmath>
#include <limits>
#include <set>

#include "platform/service/BrandingConfig.h"
#include "platform/service/CToolList.h"
#include "platform/service/Translator.h"
#include "platform/text/Utf.h"
#include "platform/values/Angles.h"
#include "platform/values/COrvUnitCnv.h"
#include "platform/values/Guid.h"
#include "platform/values/TruncToInt.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Angles, StayInTheirRange) {
    const struct {
        double degrees, trimmed, geographic;
    } rows[] = {{0, 0, 0},
                {360, 0, 0},
                {-360, 0, 0},
                {359.5, 359.5, -0.5},
                {-1e-300, 0, -1e-300},
                {-90, 270, -90},
                {180, 180, 180},
                {-180, 180, -180},
                {540, 180, 180},
                {-540, 180, -180},
                {180.5, 180.5, -179.5},
                {725, 5, 5},
                {-1e17, 80, 80}};
    for (const auto& row : rows) {
        EXPECT_EQ(TrimAngle(row.degrees), row.trimmed) << row.degrees;
        EXPECT_FALSE(std::signbit(TrimAngle(row.degrees))) << row.degrees;
        EXPECT_EQ(modgeo(row.degrees), row.geographic) << row.degrees;
    }
    EXPECT_EQ(TrimAngle(kInfinity), kInfinity);
    EXPECT_TRUE(std::isnan(modgeo(std::nan(""))));
}

TEST(TruncToInt, RefusesWhatDoesNotFit) {
    int out = 7;
    EXPECT_TRUE(TruncToInt(-2147483648.9, out));
    EXPECT_EQ(out, std::numeric_limits<int>::min());
    EXPECT_TRUE(TruncToInt(2147483647.9, out));
    for (const double bad : {2147483648.0, -2147483649.0, kInfinity, -kInfinity, std::nan("")}) {
        EXPECT_FALSE(TruncToInt(bad, out)) << bad;
        EXPECT_EQ(out, 2147483647) << bad;
    }
    std::int64_t wide = 7;
    std::uint8_t byte = 7;
    EXPECT_FALSE(TruncToInt(9223372036854775808.0, wide));
    EXPECT_TRUE(TruncToInt(-9223372036854775808.0, wide));
    EXPECT_TRUE(TruncToInt(-0.9, byte));
    EXPECT_FALSE(TruncToInt(-1.0, byte));
    EXPECT_FALSE(TruncToInt(256.0, byte));
}

TEST(COrvUnitCnv, ConvertsTheKindsThatAreSet) {
    COrvUnitCnv units;
    units.SetUnit(3, 0.3048, 0, L"ft", L"Foot", L"FOOT");
    units.SetUnit(27, 5.0 / 9, 273.15 - 32 * 5.0 / 9, L"F", L"Fahrenheit", L"F");
    units.SetUnit(3, 0, 0, L"bad", L"bad", L"bad");
    units.SetUnit(28, 2, 0, L"bad", L"bad", L"bad");
    EXPECT_DOUBLE_EQ(units.ConvertUnit(3, 3.048), 10);
    EXPECT_DOUBLE_EQ(units.ConvertFromUnit(3, 10), 3.048);
    EXPECT_NEAR(units.ConvertUnit(27, 373.15), 212, 1e-9);
    EXPECT_EQ(units.GetUnitMnem(3) + units.GetUnitName(3) + units.GetUnitKey(3), L"ftFootFOOT");
    for (const int kind : {0, 28, -1, 1 << 30}) {
        EXPECT_EQ(units.ConvertUnit(kind, 1.5), 1.5) << kind;
        EXPECT_EQ(units.ConvertFromUnit(kind, 1.5), 1.5) << kind;
        EXPECT_EQ(units.GetUnitMnem(kind), L"") << kind;
    }
}

TEST(Guid, IsRandomAndOfVersion4) {
    std::set<std::wstring> all;
    for (int i = 0; i < 1000; ++i) {
        std::wstring guid;
        ASSERT_EQ(CreateGuid(guid), guid);
        ASSERT_EQ(guid.size(), 36u);
        for (std::size_t at = 0; at < guid.size(); ++at) {
            const bool dash = at == 8 || at == 13 || at == 18 || at == 23;
            ASSERT_NE((dash ? std::wstring(L"-") : std::wstring(L"0123456789abcdef")).find(guid[at]),
                      std::wstring::npos);
        }
        ASSERT_EQ(guid[14], L'4');
        ASSERT_NE(std::wstring(L"89ab").find(guid[19]), std::wstring::npos);
        all.insert(guid);
    }
    EXPECT_EQ(all.size(), 1000u);
}

TEST(Service, TranslatorAnswersWhileActive) {
    Translator& translator = Translator::Instance();
    EXPECT_EQ(translator.GetResourceString(L"Yes"), L"");
    Translator::Lookups lookups;
    lookups.resource = [](std::wstring_view id) { return std::wstring(id) + L"!"; };
    translator.Activate(lookups);
    EXPECT_TRUE(translator.IsActive());
    EXPECT_EQ(translator.GetResourceString(L"Yes"), L"Yes!");
    EXPECT_EQ(translator.GetFileTypesString(1, L"x"), L"") << "a lookup that isn't given";
    translator.Deactivate();
    EXPECT_EQ(translator.GetResourceString(L"Yes"), L"");
}

TEST(Service, BrandingAndTools) {
    BrandingConfig branding;
    std::wstring root = L"before";
    branding.SetRootProgramDataFolder(L"C:\\Data\\");
    branding.SetProgramDataFolder(L"Orv");
    EXPECT_TRUE(branding.GetRootProgramDataFolder(root));
    EXPECT_EQ(root, L"C:/Data");
    EXPECT_EQ(branding.GetProgramDataFolder(), L"Orv/");
    branding.SetRootProgramDataFolder(L"");
    EXPECT_FALSE(branding.GetRootProgramDataFolder(root));
    CToolList tools;
    for (const wchar_t* const name : {L"b", L"a", L"b"}) tools.RegisterTool(name);
    EXPECT_EQ(tools.GetToolNames(), (std::vector<std::wstring>{L"b", L"a"}));
}

}  // namespace
}  // namespace orv
