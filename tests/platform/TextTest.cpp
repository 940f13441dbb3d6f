#include "platform/text/CaseFold.h"
#include "platform/text/Format.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

#include <cstdio>
#include <random>
#include <tuple>

namespace orv::test {

/// A text of up to 60 characters of every UTF-8 length, with long ASCII runs between, so that all block sizes and
/// their edges come by.
std::wstring RandomText(std::mt19937& random) {
    static constexpr wchar_t edges[] = {0,      0x7F,   0x80,   0x7FF,  0x800,   0xD7FF,
                                        0xE000, 0xFFFD, 0xFFFE, 0xFFFF, 0x10000, 0x10FFFF};
    std::wstring text;
    for (auto i = random() % 60; i > 0; --i) {
        if (random() % 4 == 0) {
            text += edges[random() % std::size(edges)];
        } else {
            text.append(random() % 40, static_cast<wchar_t>(L'a' + random() % 26));
        }
    }
    return text;
}

TEST(Utf, TextComesBackThroughEachForm) {
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const std::wstring text = RandomText(random);
        const std::string utf8 = ToUtf8(text);
        ASSERT_TRUE(IsUtf8(utf8)) << i;
        ASSERT_EQ(FromUtf8(utf8), text) << i;
        const std::string utf16 = Utf8ToUtf16Le(utf8);
        ASSERT_EQ(utf16.size(), 2 * Utf16Length(text)) << i;
        ASSERT_EQ(Utf16LeToUtf8(utf16), utf8) << i;
    }
    for (const std::size_t size : {4095, 4096, 4097, 9000}) {
        EXPECT_EQ(ToUtf8(std::wstring(size, L'a') + L"\u00e9b"), std::string(size, 'a') + "\xC3\xA9" + 'b') << size;
    }
}

TEST(Utf, BadBytesBecomeOneReplacementEach) {
    const std::tuple<const char*, std::string, std::wstring> rows[] = {
        {"cut short at the end", "a\xF0\x9F\x98", L"a\xFFFD\xFFFD\xFFFD"},
        {"overlong", "\xE0\x80\xAF", L"\xFFFD\xFFFD\xFFFD"},
        {"surrogate", "\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},
        {"above the last character", "\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"},
        {"good behind bad", "\xC3\xC3\xA9", L"\xFFFD\x00E9"}};
    const std::string ascii(67, 'x');  // is read by blocks
    for (const auto& [name, bytes, text] : rows) {
        EXPECT_FALSE(IsUtf8(ascii + bytes + ascii)) << name;
        EXPECT_EQ(FromUtf8(bytes), text) << name;
        EXPECT_EQ(FromUtf8(ascii + bytes).substr(67), text) << name;
    }
    EXPECT_EQ(ToUtf8(std::wstring{L'a', wchar_t(0xD800), wchar_t(0x110000), wchar_t(-1)}),
              "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Utf, Windows1252KeepsEveryByte) {
    std::string all;
    for (int i = 0; i < 256; ++i) all.push_back(static_cast<char>(i));
    EXPECT_EQ(Utf8ToWindows1252(Windows1252ToUtf8(all)), all);
    EXPECT_EQ(Windows1252ToUtf8("\x80 \x9F \xB0"), "\u20AC \u0178 \u00B0");
    EXPECT_EQ(Utf8ToWindows1252("\u0141"), std::nullopt);
    EXPECT_EQ(Utf8ToWindows1252("\xC3"), std::nullopt);
}

TEST(Utf, Utf16TellsBadUnits) {
    EXPECT_EQ(Utf16LeToUtf8("a"), std::nullopt);
    using namespace std::string_literals;
    EXPECT_EQ(Utf16LeToUtf8("\x3D\xD8\x00\xDE"s), "\U0001F600");
    EXPECT_EQ(Utf16LeToUtf8("\x3D\xD8z\0"s), "\uFFFDz");
}

TEST(CaseFold, LowersWithoutLocaleAndKeepsLengths) {
    EXPECT_EQ(ToLower(L"ÄÉÑŁΣЖ İ ẞ az[@"), L"äéñłσж i ß az[@");
    EXPECT_TRUE(EqualNoCase(L"Vermessung Ä", L"vERMESSUNG ä"));
    EXPECT_FALSE(EqualNoCase(L"[", L"{"));
    EXPECT_TRUE(EndsWithNoCase(L"Grid.GGF", L".ggf"));
    EXPECT_FALSE(EndsWithNoCase(L"f", L".ggf"));
    EXPECT_EQ(TrimBlanks(L" \t a b\t "), L"a b");
}

TEST(Format, TextsFillTheirPlaces) {
    EXPECT_EQ(FormatTexts(L"%s of %s%s|", {L"a", L"b"}), L"a of b|");
    EXPECT_EQ(FormatTexts(L"%d %n %5s 100%% %%s %", {L"a"}), L"%d %n %5s 100% %s %");
}

TEST(Format, NumbersComeOutAsPrintfGivesThem) {
    const char* const patterns[] = {"%f",     "%-9.1f|", "%+.3e", "%#g", "%-09.2f|", "%+ f", "%#.0f",
                                    "%5.40f", "%0+8.1f", "%lE",   "%#G", "%12.3lG",  "%le",  "%lF"};
    for (const double value : {0.0, -0.0, 1.5, -2.25, 123456.789, 1e-7, -9.99e22, 1e300, 0.1}) {
        for (const char* const pattern : patterns) {
            char expected[500];
            std::snprintf(expected, sizeof expected, pattern, value);
            EXPECT_EQ(ToUtf8(FormatNumber(FromUtf8(pattern), value)), expected) << pattern << ' ' << value;
        }
    }
}

TEST(Format, NumberPatternsOfAFileAreHarmless) {
    for (const wchar_t* const pattern : {L"%s %n %d %*f", L"%", L"%12", L"%lld", L"%Lf", L"{} {:f}", L""}) {
        EXPECT_EQ(FormatNumber(pattern, 2.5), pattern);
    }
    EXPECT_EQ(FormatNumber(L"%.1f and %.1f", 2.5), L"2.5 and %.1f");
    EXPECT_EQ(FormatNumber(L"%99999999999.0f", 1).size(), 40u);
    EXPECT_EQ(FormatNumber(L"%.99999999999f", 1).size(), 42u);
}

}  // namespace orv::test
