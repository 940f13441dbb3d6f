#include "surveydata/FileSet.h"

#include "core/FileObject.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

using Names = std::vector<std::wstring>;

class FileSetTest : public testing::Test {
protected:
    FileSetTest() {
        EXPECT_TRUE(installation.Start());
        EXPECT_TRUE(installation.Search().GetProjectDefinition().SetLogDataPath(L"Logs"));
        set.Init();
    }
    const Names& Short() {
        set.GetFileNamesShort(names);
        return names;
    }
    const test::ScopedZone zone{"UTC0"};
    const test::TestInstallation installation;
    const std::wstring project = installation.ProjectFolder(), logs = project + L"Logs/";
    FileSet set;
    Names names;
};

TEST_F(FileSetTest, FullPathsAndBack) {
    struct Row {
        const char* what;
        std::wstring path, stripped, full;
    };
    for (const Row& row : {
             Row{"a title", L"a", L"a", logs + L"a.orv"},
             {"below the project", project + L"day/a.ORV", L"day/a", project + L"day/a.orv"},
             {"the other separator", L"day\\a", L"day\\a", project + L"day/a.orv"},
             {"elsewhere", L"/other/a.orv", L"/other/a", L"/other/a.orv"},
             {"another extension", L"/other/a.raw", L"/other/a.raw", L"/other/a.raw.orv"},
             {"a drive", L"D:\\a.orv", L"D:\\a", L"D:/a.orv"},
         }) {
        EXPECT_EQ(set.StripPath(row.path), row.stripped) << row.what;
        EXPECT_EQ(set.MakeFullPath(row.stripped), row.full) << row.what;
    }
    EXPECT_FALSE(set.MakeFullPath(L"").empty());
}

TEST_F(FileSetTest, SavedInAnyOrderItReadsBackByTime) {
    set.AddFileNames({L"W[S]_L2-20210302-120000", L"W[S]_L1-20210302-110000", L"nothing known",
                      L"W[S]_L1-20210302-110000", L"W[S]_L1-20210302-110000"});
    const std::wstring path = project + L"day.sub";
    EXPECT_TRUE(set.FileSave(path));
    FileObject text;
    EXPECT_TRUE(text.FileOpen(path, kOpenRead));
    std::wstring value;
    EXPECT_TRUE(text.GetItem(L"Files", L"File(0)", value));
    EXPECT_TRUE(value.ends_with(L"W[S]_L2-20210302-120000")) << "as they came, and short";

    EXPECT_TRUE(set.FileOpen(path));
    EXPECT_EQ(set.GetFilesetName(), path);
    set.GetFileNameAt(0, value);
    EXPECT_EQ(value, logs + L"W[S]_L2-20210302-120000.orv") << "not sorted yet";
    EXPECT_EQ(Short(), (Names{L"nothing known", L"W[S]_L1-20210302-110000", L"W[S]_L1-20210302-110000",
                              L"W[S]_L1-20210302-110000", L"W[S]_L2-20210302-120000"}));
    set.GetFileNamesOfRunLine(L"L2", names);
    EXPECT_EQ(names, Names{set[4]});
    set.GetFileNamesOfRunLine(L"l2", names);
    EXPECT_TRUE(names.empty());

    EXPECT_TRUE(set.IsFileNamePresent(set[1]));
    set.DeleteFileNames({std::wstring(set[1]), L"nothing known"});
    EXPECT_EQ(set.NumFiles(), 3) << "one of three equal neighbours stays, and so does what isn't a full path";
    set.SetFileNameAt(0, L"/z/last.orv");
    set.SetFileNameAt(3, L"beyond");
    EXPECT_EQ(set[0] + set[3] + set[-1], L"/z/last.orv") << "keeps its time, and so its place";
    set.DeleteAll();
    EXPECT_TRUE(set.FileSave(path) && set.FileOpen(path));
    EXPECT_EQ(set.NumFiles(), 0);
    EXPECT_FALSE(set.FileOpen(project + L"missing.sub"));
}

TEST_F(FileSetTest, AnElementOfItsOwnCanBeDeletedByReference) {
    set.AddFileNames({L"/x/a.orv", L"/x/b.orv", L"/x/b.orv"});
    set.SetFileNameAt(2, L"alone");  // no folder
    EXPECT_EQ(Short(), (Names{L"a", L"b"})) << "what has no folder has no short name";
    set.SetFileNameAt(2, L"/x/b.orv");
    set.DeleteFileName(set[0]);
    EXPECT_EQ(Short(), (Names{L"b", L"b"}));
    set.AddFileNames({L"/x/c.orv", L"/x/b.orv"});
    set.DeleteFileName(set[3]);
    EXPECT_EQ(Short(), (Names{L"b", L"c"})) << "all but the second of two neighbours";
}

}  // namespace
}  // namespace orv
