#include "frontend/OrvFormatter.h"

#include <limits>

#include "platform/values/Formatting.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

TEST(Formatting, FeetAndGeographicTexts) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<std::wstring, std::wstring> rows[] = {
        {FormatDouble(12.5, 2, 0), L"12.50"},
        {FormatDouble(12.5, 2, 1), L"12.50"},
        {FormatDouble(12.5, 2, 3), L"12'6.00\""},
        {FormatDouble(-12.9999, 2, 3), L"-13'0.00\""},
        {FormatDouble(12.5, 1, 2), L"150.0\""},
        {FormatDouble(1.0 / 24, 1, 7), L"0'1/2\""},
        {FormatDouble(12.5, 1, 7), L"12'6\""},
        {FormatDouble(150.125 / 12, 1, 6), L"150 1/8\""},
        {FormatDouble(12.5, 1, 5), L"12 1/2'"},
        {FormatDouble(-0.001, 1, 3), L"0'0.0\""},
        {FormatDouble(nan, 1, 7), L"nan"},
        {FormatDouble(1e300, 99, 3).substr(0, 4), L"1000"},
        {FormatDouble(0.5, -3, 0), L"0"},
        {FormatDouble(0.5, 99, 0), L"0.500000000000000"},
        {FormatGeogs(52.375, kLatitude, 7, 2), L"52\u00B022'30.00\"N"},
        {FormatGeogs(-4.9999999, kLongitude, 7, 1), L"5\u00B000'00.0\"W"},
        {FormatGeogs(-52.375, kLatitude, 3, 1), L"52\u00B022.5'S"},
        {FormatGeogs(4.05, kLongitude, 2, 0), L"4\u00B003'E"},
        {FormatGeogs(4.05, kLongitude, 1, 3), L"4.050\u00B0E"},
        {FormatGeogs(-1e-9, kLatitude, 0, 2), L"0.00\u00B0N"},
        {FormatGeogs(180, kLongitude, 4, 99), L"180\u00B000'00.000000000\"E"},
        {FormatGeogs(nan, kLatitude, 7, 2), L"nan"},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(text, expected);
    const std::pair<double, int> precisions[] = {{12, 0},  {-0.25, 2}, {1e20, 0},  {1.5e-7, 8},
                                                 {0.1, 1}, {nan, 0},   {1e-30, 15}};
    for (const auto& [value, decimals] : precisions) EXPECT_EQ(GetDoublePrecision(value), decimals) << value;
}

class OrvFormatterTest : public testing::Test {
protected:
    void Unit(int kind, double factor, const wchar_t* mnemonic, const wchar_t* key) {
        units.SetUnit(kind, factor, 0, mnemonic, key, key);
    }
    test::TestInstallation installation;
    COrvUnitCnv& units = *installation.Search().GetProjectDefinition().GetUnitCnv();
    const OrvFormatter formatter;
};

TEST_F(OrvFormatterTest, FollowsProjectDecimalsAndUnits) {
    Unit(2, 0.5, L"kn", L"Knots");
    Unit(3, 1, L"m", L"Meters");
    Unit(4, 0.3048, L"ft", L"International Feet");
    Unit(5, 2, L"m3", L"Cubic");
    const std::pair<std::wstring, std::wstring> rows[] = {
        {formatter.FormatXCoordinate(123456.789), L"123456.79"},
        {formatter.FormatYCoordinate(-0.5), L"-0.50"},
        {formatter.FormatLatitude(-52.5), L"52\u00B030'00.00\"S"},
        {formatter.FormatLongitude(4.25), L"4\u00B015'00.00\"E"},
        {formatter.FormatBearing(12.3456), L"12.35\u00B0"},
        {formatter.FormatSpeed(2.5, true, true), L"5.00 kn"},
        {formatter.FormatDistance(2.5, true, false), L"2.50m"},
        {formatter.FormatDistance(2.5, false, true), L"2.50"},
        {formatter.FormatDepth(0.3048 * 12.5, true, true), L"12'6\""},
        {formatter.FormatValue(5, 0.5, true, true, -1), L"0.25 m3"},
        {formatter.FormatValue(3, 2.5, false, false, 0), L"2"},
        {formatter.FormatValue(99, 2.5, true, false, -1), L"2.5"},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(text, expected);
}

TEST_F(OrvFormatterTest, KilometrePoints) {
    Unit(24, 1000, L"km", L"Kilometers");
    EXPECT_EQ(formatter.FormatKP(12345.6, 2, false, false), L"12.35");
    EXPECT_EQ(formatter.FormatKP(12345.6, false, false), L"12.34560");
    Unit(24, 1000, L"km", L"Station");
    const struct {
        const wchar_t* system;
        double value;
        int decimals;
        const wchar_t* text;
    } rows[] = {
        {L"Meters", 12.3456, 1, L"12+345.6"}, {L"Meters", -0.5, 1, L"0-500.0"}, {L"Meters", 3.007, 0, L"3+007"},
        {L"Meters", 3.00725, 2, L"3+007.25"}, {L"Meters", 0, 0, L"0+000"},      {L"Feet", 12.345, 1, L"123+45.0"},
        {L"Feet", -0.305, 0, L"3-05"},        {L"Meters", 1e300, 0, nullptr},
    };
    for (const auto& row : rows) {
        Unit(1, 1, L"u", row.system);
        const std::wstring text = formatter.FormatKP(row.value, row.decimals, false, true);
        EXPECT_EQ(text, row.text ? row.text : FormatDouble(row.value, 0, 0)) << row.value;
        EXPECT_EQ(formatter.FormatKP(row.value, row.decimals, true, true), L"u");
    }
}

}  // namespace
}  // namespace orv
