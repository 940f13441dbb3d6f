#include "platform/text/PathText.h"

#include <tuple>

#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv::test {

TEST(PathText, CutsPaths) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*>
        rows[] = {
            {L"/a/b/log.db", L"/a/b/", L"log", L"db", L"log", L"log.db"},
            {L"a\\b\\log.db", L"a\\b\\", L"log", L"db", L"log", L"log.db"},
            {L"C:\\jobs\\Job.1\\", L"C:\\jobs\\Job.1\\", L"", L"", L"Job.1", L"Job.1"},
            {L"/a.b/log", L"/a.b/", L"log", L"", L"log", L"log"},
            {L"/a/.hidden", L"/a/", L".hidden", L"", L".hidden", L".hidden"},
            {L"/", L"/", L"", L"", L"", L""},
        };
    for (const auto& [path, theFolder, given, theExtension, title, last] : rows) {
        std::wstring folder = path, name, extension;
        SplitPath(folder, folder, name, extension);  // a result that is the argument too
        EXPECT_EQ(folder, theFolder) << ToUtf8(path);
        EXPECT_EQ(name, given) << ToUtf8(path);
        EXPECT_EQ(extension, theExtension) << ToUtf8(path);
        EXPECT_EQ(GetTitleFromPath(path), title) << ToUtf8(path);
        EXPECT_EQ(GetNameFromPath(path), last) << ToUtf8(path);
    }
}

TEST(PathText, KnowsSeparatorsAndRoots) {
    for (const wchar_t* path : {L"/a", L"C:\\a", L"a:", L"\\\\server\\share", L"a\\\\b"}) {
        EXPECT_TRUE(IsAbsolutePath(path)) << ToUtf8(path);
    }
    for (const wchar_t* path : {L"", L"a/b", L"\\a", L"a//b", L"./a"}) {
        EXPECT_FALSE(IsAbsolutePath(path)) << ToUtf8(path);
    }
    EXPECT_EQ(ToNativePath(L"a\\b/c\\"), L"a/b/c/");
    EXPECT_EQ(WithSeparator(L"a") + WithSeparator(L""), L"a/");
    EXPECT_EQ(WithoutSeparator(L"a//"), L"a/");
    EXPECT_EQ(WithoutSeparator(L"/"), L"/");
    for (const wchar_t c : std::wstring(L"<>:\"/\\|?*")) EXPECT_FALSE(IsAllowedName(std::wstring(L"a") + c));
}

TEST(PathText, MatchesPatternsIgnoringCase) {
    const std::tuple<const wchar_t*, std::vector<const wchar_t*>, std::vector<const wchar_t*>> rows[] = {
        {L"*.*", {L"README", L".x"}, {}},
        {L"*.db", {L"Log.DB", L".db"}, {L"Log.db2", L"db"}},
        {L"är*", {L"ÄRGER.txt", L"är"}, {L"ä"}},
        {L"*ab*abd", {L"abcabd", L"ABABD"}, {L"abd", L""}},
        {L"", {L""}, {L"a"}}};
    for (const auto& [pattern, matching, others] : rows) {
        for (const auto* const name : matching) EXPECT_TRUE(MatchesPattern(name, pattern)) << ToUtf8(name);
        for (const auto* const name : others) EXPECT_FALSE(MatchesPattern(name, pattern)) << ToUtf8(name);
    }
    // Stars that multiply must not multiply the time.
    EXPECT_FALSE(MatchesPattern(std::wstring(5000, L'a'), L"*a*a*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(PathText, NamesThatAreNoUtf8ComeBackAsTheyWere) {
    for (const char* const bytes : {"plain", "caf\xE9.ini", "\xEF\xBF\xBD\xFF\xEF\xBF", "\u00E9\xC3\U0001F600\x80"}) {
        EXPECT_EQ(PathToBytes(PathFromBytes(bytes)), bytes);
    }
    EXPECT_EQ(PathFromBytes("caf\xE9"), L"caf\xDCE9");
}

}  // namespace orv::test
