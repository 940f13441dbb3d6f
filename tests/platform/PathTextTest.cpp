#include "platform/text/PathText.h"

#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv::test {

TEST(PathText, CutsPaths) {
    const struct {
        const wchar_t *path, *folder, *name, *extension, *title, *last;
    } rows[] = {
        {L"/a/b/log.db", L"/a/b/", L"log", L"db", L"log", L"log.db"},
        {L"a\\b\\log.db", L"a\\b\\", L"log", L"db", L"log", L"log.db"},
        {L"/jobs/Job.1/", L"/jobs/Job.1/", L"", L"", L"Job.1", L"Job.1"},
        {L"C:\\jobs\\Job.1\\", L"C:\\jobs\\Job.1\\", L"", L"", L"Job.1", L"Job.1"},
        {L"/a.b/log", L"/a.b/", L"log", L"", L"log", L"log"},
        {L"a.tar.gz", L"", L"a.tar", L"gz", L"a.tar", L"a.tar.gz"},
        {L"/a/.hidden", L"/a/", L".hidden", L"", L".hidden", L".hidden"},
        {L"/a/..", L"/a/", L"..", L"", L"..", L".."},
        {L"/", L"/", L"", L"", L"", L""},
        {L"", L"", L"", L"", L"", L""},
    };
    for (const auto& row : rows) {
        std::wstring folder = row.path, name, extension;
        SplitPath(folder, folder, name, extension);  // a result that is the argument too
        EXPECT_EQ(folder, row.folder) << ToUtf8(row.path);
        EXPECT_EQ(name, row.name) << ToUtf8(row.path);
        EXPECT_EQ(extension, row.extension) << ToUtf8(row.path);
        EXPECT_EQ(GetTitleFromPath(row.path), row.title) << ToUtf8(row.path);
        EXPECT_EQ(GetNameFromPath(row.path), row.last) << ToUtf8(row.path);
        EXPECT_EQ(GetFolderFromPath(row.path), row.folder) << ToUtf8(row.path);
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
    EXPECT_EQ(WithSeparator(L"a\\"), L"a\\");
    EXPECT_EQ(WithSeparator(L"a") + WithSeparator(L""), L"a/");
    EXPECT_EQ(WithoutSeparator(L"a//"), L"a/");
    EXPECT_EQ(WithoutSeparator(L"/"), L"/");
    EXPECT_TRUE(IsAllowedName(L"Noordzee 2.1 [a]"));
    for (const wchar_t c : std::wstring(L"<>:\"/\\|?*")) EXPECT_FALSE(IsAllowedName(std::wstring(L"a") + c));
}

TEST(PathText, MatchesPatternsIgnoringCase) {
    const struct {
        const wchar_t* pattern;
        std::vector<const wchar_t*> matching, others;
    } rows[] = {{L"*.*", {L"README", L".x"}, {}},
                {L"*.db", {L"Log.DB", L".db"}, {L"Log.db2", L"db"}},
                {L"är*", {L"ÄRGER.txt", L"är"}, {L"ä"}},
                {L"*ab*abd", {L"abcabd", L"ABABD"}, {L"abd", L""}},
                {L"log.db", {L"log.db"}, {L"log.dbx", L"log"}},
                {L"", {L""}, {L"a"}},
                {L"?", {L"?"}, {L"a"}}};
    for (const auto& row : rows) {
        for (const auto* const name : row.matching) EXPECT_TRUE(MatchesPattern(name, row.pattern)) << ToUtf8(name);
        for (const auto* const name : row.others) EXPECT_FALSE(MatchesPattern(name, row.pattern)) << ToUtf8(name);
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
