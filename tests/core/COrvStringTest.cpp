#include "core/COrvString.h"

#include <climits>
#include <tuple>

#include "core/FileObject.h"
#include "core/FileSection.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

TEST(COrvString, SplitsAndJoins) {
    const std::tuple<const wchar_t*, wchar_t, bool, const wchar_t*, const wchar_t*> rows[] = {
        {L"", L',', true, L"", L""},
        {L"a,", L',', true, L"<a><>", L"a,"},
        {L" a ,\tb c ", L',', true, L"<a><b c>", L"a,b c"},
        {L" a ,b", L',', false, L"< a ><b>", L" a ,b"},
        {L"   ", L',', true, L"<>", L""}};
    for (const auto& [given, separator, strip, theItems, joined] : rows) {
        const COrvString text(given, separator, strip);
        std::wstring items;
        for (int i = 0; i < text.Size(); ++i) items += L"<" + text[i] + L">";
        EXPECT_EQ(items, theItems) << given;
        EXPECT_EQ(text.GetString(), joined) << given;
    }
}

TEST(COrvString, ConvertsOrLeavesTheDefault) {
    const COrvString row(L"12,-3,2.5,TRUE,x,,4294967295", L',', true);
    int i = 77;
    unsigned u = 77;
    double d = 77;
    float f = 77;
    bool b = false;
    std::wstring s = L"kept";
    EXPECT_TRUE(row.GetItem(6, u) && u == UINT_MAX && row.GetItem(1, i) && i == -3 && row.GetItem(3, b) && b);
    EXPECT_TRUE(row.GetItem(2, d) && d == 2.5 && row.GetItem(2, f) && f == 2.5f && row.GetItem(5, s) && s.empty());
    for (const int bad : {2, 4, 5, 6, 7, -1}) EXPECT_FALSE(row.GetItem(bad, i)) << bad;
    EXPECT_FALSE(row.GetItem(1, u) || row.GetItem(4, d) || row.GetItem(4, f) || row.GetItem(4, b) || row.GetItem(7, s));
}

TEST(COrvString, ChangesItems) {
    const test::CommaLocale locale;
    COrvString list(L',');
    list.AddItem(L"one");
    list += 0.1;
    list += -1200;
    EXPECT_EQ(list.String(), L"one,0.1,-1200");
    EXPECT_TRUE(list.SetItem(1, L"two") && !list.SetItem(3, L"x"));
    list[7] = L"nobody keeps this";
    EXPECT_EQ(list[7], L"");
    EXPECT_TRUE(list.Left(2) == L"one,two" && list.Left(9) == list.GetString());
    list.Erase(1, INT_MAX);
    list.Erase(-1, 1);
    EXPECT_EQ(list.GetString(), L"one");
}

TEST(FileSection, HoldsWhatAFileWould) {
    FileObject file, other;
    file.SetItem(L"From", L"Count", 3, true);
    FileSection section;
    ASSERT_TRUE(section.GetFromFileObject(L"From", file));
    EXPECT_TRUE(section.SetItem(L"Depth", 0.5) && section.SetItem(L"Text", L"a\nb") && !section.SetItem(L"a=b", 1));
    int count = 0;
    ASSERT_TRUE(section.SetToFileObject(L"To", other));
    std::wstring text;
    EXPECT_TRUE(other.GetItem(L"To", L"Text", text) && text == L"a b");
    EXPECT_TRUE(other.GetItem(L"To", L"Count", count) && count == 3);
}

}  // namespace
}  // namespace orv
