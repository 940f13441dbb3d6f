#include "platform/text/NumberText.h"

#include "platform/text/Format.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace orv::test {

constexpr auto none = std::nullopt;

/// What int, unsigned, double and bool make of a text.
using Row =
    std::tuple<std::string, std::optional<int>, std::optional<unsigned>, std::optional<double>, std::optional<bool>>;
const Row rows[] = {
    {" \t+42\t ", 42, 42u, 42.0, true},
    {"-007", -7, none, -7.0, true},
    {"2147483648", none, 2147483648u, 2147483648.0, true},
    {"-2147483648", std::numeric_limits<int>::min(), none, -2147483648.0, true},

    {"99999999999999999999", none, none, 1e20, none},
    {".5", none, none, 0.5, none},
    {"-1.5e-3", none, none, -0.0015, none},
    {"1" + std::string(200, '0') + "e-200", none, none, 1.0, none},
    {" FALSE ", none, none, none, false},
};
const char* const noNumbers[] = {"",    " ",    "+-1",   "- 1", "1 2",  "12m",
                                 "1,5", "0x10", "1e999", "nan", "1.5.", "\xD9\xA1"};

template <class Text>
void CheckRow(const Text& text, const Row& row) {
    const auto& [name, asInt, asUnsigned, asDouble, asBool] = row;
    EXPECT_EQ(ParseInt(text), asInt) << name;
    EXPECT_EQ(ParseUnsigned(text), asUnsigned) << name;
    EXPECT_EQ(ParseDouble(text), asDouble) << name;
    EXPECT_EQ(ParseBool(text), asBool) << name;
}

void CheckRows() {
    std::vector<Row> all(std::begin(rows), std::end(rows));
    for (const char* const text : noNumbers) all.push_back({text, none, none, none, none});
    for (const Row& row : all) {
        CheckRow(std::get<0>(row), row);
        CheckRow(FromUtf8(std::get<0>(row)), row);
    }
    EXPECT_EQ(ParseInt64(L"-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ParseInt64("9223372036854775808"), none);
    EXPECT_EQ(ParseFloat("0.1"), 0.1f);
    EXPECT_EQ(ParseFloat(L"1e39"), none);
}

TEST(NumberText, ReadsWholeTextsOnly) {
    CheckRows();
}

TEST(NumberText, KnowsNoLocale) {
    const CommaLocale comma;
    CheckRows();
    EXPECT_EQ(ShortestText(1234567.25), L"1234567.25");
    EXPECT_EQ(FixedText(1234567.25, 1), L"1234567.2");
    EXPECT_EQ(FormatNumber(L"%.2f", 1234.5), L"1234.50");
}

TEST(NumberText, LeadingIntReadsAsFarAsItCan) {
    const std::pair<const wchar_t*, int> leading[] = {
        {L" \n-12 4", -12}, {L"+5", 5}, {L"x3", 0}, {L"--1", 0}, {L"2147483648", 2147483647}};
    for (const auto& [text, value] : leading) EXPECT_EQ(ParseLeadingInt(text), value) << ToUtf8(text);
}

TEST(NumberText, ShortestTextReadsBack) {
    const std::pair<double, const wchar_t*> shortest[] = {
        {-0.0, L"-0"}, {1e-5, L"0.00001"}, {9.9e-6, L"9.9e-06"}, {1e17, L"1e+17"}, {1e16, L"10000000000000000"}};
    for (const auto& [value, text] : shortest) EXPECT_EQ(ShortestText(value), text) << value;
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
    const std::tuple<double, int, const wchar_t*> fixed[] = {
        {0.125, 2, L"0.12"}, {-0.001, 2, L"-0.00"}, {1, -3, L"1"}, {-std::nan(""), 2, L"nan"}};
    for (const auto& [value, decimals, text] : fixed) EXPECT_EQ(FixedText(value, decimals), text) << value;
    EXPECT_EQ(FixedText(-std::numeric_limits<double>::max(), 1000).size(), 1u + 309 + 1 + 40);
    // Near halves, where a scaled product may round the other way than the figure itself.
    for (int n = 0; n < 20000; ++n) {
        const int decimals = n % 10;
        double value = std::ldexp((n * 7919) % 100003 - 50001, n % 40 - 30);
        if (n % 3 == 0) value = (std::round(value) + 0.5) / std::pow(10, decimals);
        if (n % 2 == 0) value = std::nextafter(value, n % 4 ? 1e300 : -1e300);
        std::array<char, 400> c{};
        std::snprintf(c.data(), c.size(), "%.*f", decimals, value);
        ASSERT_EQ(FixedText(value, decimals), FromUtf8(c.data())) << value;
    }
}

}  // namespace orv::test
