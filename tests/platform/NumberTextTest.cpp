#include "platform/text/NumberText.h"

#include "platform/text/Format.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace orv {
namespace {

/// What each kind of number makes of a text; NaN and `none` where it refuses.
struct Row {
    std::string text;
    std::optional<int> asInt;
    std::optional<unsigned> asUnsigned;
    std::optional<double> asDouble;
    std::optional<bool> asBool;
};
constexpr auto none = std::nullopt;

const Row rows[] = {
    {"0", 0, 0u, 0.0, false},
    {" \t42\t ", 42, 42u, 42.0, true},
    {"+7", 7, 7u, 7.0, true},
    {"-7", -7, none, -7.0, true},
    {"007", 7, 7u, 7.0, true},
    {"2147483647", 2147483647, 2147483647u, 2147483647.0, true},
    {"2147483648", none, 2147483648u, 2147483648.0, true},
    {"-2147483648", std::numeric_limits<int>::min(), none, -2147483648.0, true},
    {"4294967296", none, none, 4294967296.0, true},
    {"99999999999999999999", none, none, 1e20, none},
    {"1.5", none, none, 1.5, none},
    {".5", none, none, 0.5, none},
    {"-1e-3", none, none, -0.001, none},
    {"1,5", none, none, none, none},
    {"1e999", none, none, none, none},
    {"nan", none, none, none, none},
    {"inf", none, none, none, none},
    {"0x10", none, none, none, none},
    {"12m", none, none, none, none},
    {"1 2", none, none, none, none},
    {"+-1", none, none, none, none},
    {"++1", none, none, none, none},
    {"- 1", none, none, none, none},
    {"", none, none, none, none},
    {"+", none, none, none, none},
    {" ", none, none, none, none},
    {"True", none, none, none, true},
    {" FALSE ", none, none, none, false},
    {"yes", none, none, none, none},
    {"1" + std::string(200, '0') + "e-200", none, none, 1.0, none},
};

void CheckRows() {
    for (const Row& row : rows) {
        const std::wstring wide = FromUtf8(row.text);
        EXPECT_EQ(ParseInt(row.text), row.asInt) << row.text;
        EXPECT_EQ(ParseInt(wide), row.asInt) << row.text;
        EXPECT_EQ(ParseUnsigned(row.text), row.asUnsigned) << row.text;
        EXPECT_EQ(ParseUnsigned(wide), row.asUnsigned) << row.text;
        EXPECT_EQ(ParseDouble(row.text), row.asDouble) << row.text;
        EXPECT_EQ(ParseDouble(wide), row.asDouble) << row.text;
        EXPECT_EQ(ParseBool(row.text), row.asBool) << row.text;
        EXPECT_EQ(ParseBool(wide), row.asBool) << row.text;
    }
    EXPECT_EQ(ParseInt(L"\u0661"), none) << "a digit, but not of ours";
    EXPECT_EQ(ParseInt64(L"-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ParseInt64("9223372036854775808"), none);
    EXPECT_EQ(ParseFloat("0.1"), 0.1f);
    EXPECT_EQ(ParseFloat(L"1e39"), none);
}

TEST(NumberText, ReadsWholeTextsOnly) {
    CheckRows();
}

TEST(NumberText, KnowsNoLocale) {
    const test::CommaLocale comma;
    CheckRows();
    EXPECT_EQ(ShortestText(1234567.25), L"1234567.25");
    EXPECT_EQ(FixedText(1234567.25, 1), L"1234567.2");
    EXPECT_EQ(IntText(-1234567), L"-1234567");
    EXPECT_EQ(FormatNumber(L"%.2f", 1234.5), L"1234.50");
}

TEST(NumberText, LeadingIntReadsAsFarAsItCan) {
    const struct {
        const wchar_t* text;
        int value;
    } leading[] = {{L"3x", 3},
                   {L" \n-12 4", -12},
                   {L"+5", 5},
                   {L"x3", 0},
                   {L"", 0},
                   {L"--1", 0},
                   {L"3.9", 3},
                   {L"99999999999", 2147483647},
                   {L"-99999999999999999999999", -2147483647 - 1},
                   {L"2147483648", 2147483647}};
    for (const auto& row : leading) EXPECT_EQ(ParseLeadingInt(row.text), row.value) << ToUtf8(row.text);
}

TEST(NumberText, ShortestTextReadsBack) {
    const struct {
        double value;
        const wchar_t* text;
    } shortest[] = {{0, L"0"},
                    {-0.0, L"-0"},
                    {0.1, L"0.1"},
                    {1e-5, L"0.00001"},
                    {9.9e-6, L"9.9e-06"},
                    {100, L"100"},
                    {1e16, L"10000000000000000"},
                    {1e17, L"1e+17"},
                    {-2.5, L"-2.5"},
                    {5e-324, L"5e-324"}};
    for (const auto& row : shortest) EXPECT_EQ(ShortestText(row.value), row.text) << row.value;
    std::mt19937_64 random(2);
    for (int i = 0; i < 20000; ++i) {
        // Every other one of everyday size: bit patterns alone are nearly all huge or tiny.
        const auto bits = random();
        const double value =
            i % 2 == 0 ? std::bit_cast<double>(bits) : static_cast<double>(static_cast<std::int64_t>(bits)) * 1e-12;
        if (!std::isfinite(value)) continue;
        const std::wstring text = ShortestText(value);
        ASSERT_EQ(ParseDouble(text), value) << ToUtf8(text);
        const double size = std::fabs(value);
        ASSERT_EQ(text.find(L'e') == std::wstring::npos, size == 0 || (size >= 1e-5 && size < 1e17)) << ToUtf8(text);
    }
}

TEST(NumberText, FixedTextRoundsAsC) {
    const struct {
        double value;
        int decimals;
        const wchar_t* text;
    } fixed[] = {{0.125, 2, L"0.12"},
                 {-0.001, 2, L"-0.00"},
                 {2.5, 0, L"2"},
                 {1, -3, L"1"},
                 {0.1, 20, L"0.10000000000000000555"},
                 {1e300 * 1e300, 2, L"inf"},
                 {-1e300 * 1e300, 2, L"-inf"},
                 {-std::nan(""), 2, L"nan"}};
    for (const auto& row : fixed) EXPECT_EQ(FixedText(row.value, row.decimals), row.text) << row.value;
    EXPECT_EQ(FixedText(-std::numeric_limits<double>::max(), 1000).size(), 1u + 309 + 1 + 40);
}

}  // namespace
}  // namespace orv
