#include <cmath>
#include <limits>
#include <set>
#include <tuple>

#include "platform/text/Utf.h"
#include "platform/values/Angles.h"
#include "platform/values/COrvUnitCnv.h"
#include "platform/values/Guid.h"
#include "platform/values/TruncToInt.h"
#include "support/TestSupport.h"

namespace orv::test {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Angles, StayInTheirRange) {
    const std::tuple<double, double, double> rows[] = {{359.5, 359.5, -0.5}, {-1e-300, 0, -1e-300}, {180, 180, 180},
                                                       {-540, 180, -180},    {725, 5, 5},           {-1e17, 80, 80}};
    for (const auto& [degrees, trimmed, geographic] : rows) {
        EXPECT_EQ(TrimAngle(degrees), trimmed) << degrees;
        EXPECT_EQ(modgeo(degrees), geographic) << degrees;
    }
    EXPECT_FALSE(std::signbit(TrimAngle(-360)));
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
    for (int i = 0; i < 300; ++i) {
        std::wstring guid;
        ASSERT_EQ(CreateGuid(guid), guid);
        all.insert(guid);
        EXPECT_TRUE(guid.size() == 36 && guid[8] == L'-' && guid[14] == L'4') << ToUtf8(guid);
    }
    EXPECT_EQ(all.size(), 300u);
}

}  // namespace orv::test
