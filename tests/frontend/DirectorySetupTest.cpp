#include "frontend/DirectorySetup.h"

#include "core/ConfigKeys.h"
#include "core/ProtectedFileObject.h"
#include "frontend/LogFileInfoDialog.h"
#include "platform/os/Clock.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

struct FixedClock : Clock {
    FixedClock() { SetClock(this); }
    ~FixedClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return 1614679530000; }  // 2021-03-02 10:05:30 UTC
};

class DirectorySetupTest : public testing::Test {
protected:
    DirectorySetupTest() {
        EXPECT_TRUE(project.FileOpen(path, false, kOpenCreateRead));
        EXPECT_TRUE(project.FileSave(L"", 0, kSave));
    }
    void Set(std::wstring_view key, const wchar_t* value) { project.SetItem(DATA_PATH_SECTION, key, value, true); }
    std::wstring OnDisk(std::wstring_view key) {
        FileObject file;
        std::wstring value = L"-";
        EXPECT_TRUE(file.FileOpen(path, kOpenRead));
        file.GetItem(DATA_PATH_SECTION, key, value);
        return value;
    }
    test::TempFolder folder;
    const std::wstring path = folder / L"Project.prj";
    ProtectedFileObject project;
    const test::ScopedZone zone{"UTC-1"};  // an hour ahead
    FixedClock clock;
};

TEST_F(DirectorySetupTest, OpensChangesAndSaves) {
    DirectorySetup form(project);
    EXPECT_TRUE(form.Open());
    EXPECT_EQ(FilenameItemsText(form.naming.items),
              L"Vessel name,1,Survey type,1,Run line name,1,Start date,1,Start time,1,User text,0");
    EXPECT_EQ(form.ExampleName(), L"Vessel[Survey]_L001-20210302-110530.orv");
    form.naming.choice = kLogNamingByItems;
    std::swap(form.naming.items[0], form.naming.items[5]);
    form.naming.items[0].second = true;
    form.naming.userText = L"a.b";
    form.naming.replaceDots = form.useBackup = true;
    const auto answer = [](bool confirm, const wchar_t* choice) {
        return [=](const std::wstring& title, std::wstring& chosen) {
            chosen = choice;
            return confirm && title == L"Search Backup Log folder";
        };
    };
    EXPECT_TRUE(form.BrowseBackupFolder(answer(true, L"/backup/")));
    EXPECT_FALSE(form.BrowseBackupFolder(answer(false, L"/other/")));
    EXPECT_EQ(form.ExampleName(), L"a_b-Survey-L001-20210302-110530-Vessel.orv");
    EXPECT_TRUE(form.Save());
    EXPECT_EQ(OnDisk(USE_BACKUP_LOG_FOLDER) + OnDisk(LOG_FILE_NAMING) + OnDisk(REPLACE_DOTS_IN_LOGFILENAME), L"111");
    DirectorySetup again(project);
    EXPECT_TRUE(again.Open());
    EXPECT_EQ(again.ExampleName(), form.ExampleName());
    EXPECT_EQ(again.backupFolder, L"/backup/");
    Set(FILENAME_ITEMS, L"Vessel name");
    EXPECT_TRUE(again.Open());
    EXPECT_TRUE(again.naming.items.empty()) << "an item without its flag is none";
}

TEST_F(DirectorySetupTest, ChoicesOfOldProjects) {
    struct Row {
        const wchar_t *boraciet, *stored;
        bool open, items;
        const wchar_t* onDisk;
    };
    for (const Row& row : {Row{L"1", L"1", false, false, L"0"},
                           {L"0", L"1", true, true, L"1"},
                           {L"0", L"2", true, false, L"2"},
                           {L"1", L"2", false, false, L"0"}}) {
        Set(BORACIET_VOLUME_CSV, row.boraciet);
        Set(LOG_FILE_NAMING, row.stored);
        EXPECT_TRUE(project.FileSave(L"", 0, kSave));
        DirectorySetup form(project);
        EXPECT_TRUE(form.Open());
        EXPECT_EQ(form.IsChoiceOpen(), row.open);
        EXPECT_EQ(form.AreItemsActive(), row.items);
        EXPECT_EQ(OnDisk(LOG_FILE_NAMING), row.onDisk);
    }
}

TEST(DirectorySetup, FiltersUserText) {
    struct Row {
        const wchar_t *typed, *kept;
        std::size_t caret, newCaret;
    };
    for (const Row& row :
         {Row{L"a/b.c", L"abc", 2, 1}, {L"a.b", L"a.b", 2, 2}, {L"<>:\"/\\|?*.", L"", 10, 0}, {L"x?.y", L"xy", 1, 1}}) {
        std::size_t caret = row.caret;
        EXPECT_EQ(DirectorySetup::FilterUserText(row.typed, caret), row.kept);
        EXPECT_EQ(caret, row.newCaret) << row.caret;
    }
}

TEST(LogFileInfoDialog, ShowsTheEditedRunLine) {
    LogFileInfoDialog dialog;
    dialog.vessel = L"Waverly";
    dialog.Apply(L"L-2");
    EXPECT_TRUE(dialog.IsChanged());
    EXPECT_EQ(dialog.Text(),
              L" ORV version: \r\n File version: \r\n Vessel: Waverly\r\n Survey type: \r\n Run line: "
              L"L-2\r\n Log start time: \r\n Replay start time: ");
}

}  // namespace
}  // namespace orv
