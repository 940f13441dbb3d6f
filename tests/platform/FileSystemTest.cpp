#include "platform/os/FileSystem.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>
#include <tuple>

#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv::test {

class FileSystemTest : public testing::Test {
protected:
    FsResult Open(std::wstring_view name, const OpenMode& mode, std::unique_ptr<File>& file) {
        return files.Open(folder / name, mode, file);
    }
    FsResult Open(std::wstring_view name, const OpenMode& mode) {
        std::unique_ptr<File> file;
        return Open(name, mode, file);
    }
    static std::string Read(File& file) {
        char text[10];
        std::size_t got = sizeof text;
        EXPECT_EQ(file.Read(text, sizeof text, got), FsResult::Ok);
        return {text, got};
    }

    TempFolder folder;
    FileSystem& files = RealFileSystem();
};

TEST_F(FileSystemTest, OpenModes) {
    WriteBytes(folder / L"there", "abc");
    MakeFolders(folder / L"sub");
    ASSERT_EQ(symlink("/nowhere/at/all", PathToBytes(folder / L"dangling").c_str()), 0);
    const std::tuple<const wchar_t*, OpenMode, FsResult, const char*> rows[] = {
        {L"there", {}, FsResult::Ok, "abc"},
        {L"missing", {}, FsResult::NotFound, ""},
        {L"there", {.write = true, .create = true}, FsResult::Ok, "abc"},
        {L"there", {.write = true, .create = true, .truncate = true}, FsResult::Ok, ""},
        {L"made", {.write = true, .create = true}, FsResult::Ok, ""},
        {L"made", {.write = true, .createNew = true}, FsResult::Exists, ""},
        {L"dangling", {.write = true, .createNew = true}, FsResult::Exists, ""},
        {L"sub", {.write = true, .create = true}, FsResult::Denied, ""},
        {L"none/made", {.write = true, .create = true}, FsResult::NotFound, ""}};
    for (const auto& [name, mode, result, after] : rows) {
        EXPECT_EQ(Open(name, mode), result) << ToUtf8(name);
        EXPECT_EQ(ReadBytes(folder / name), after) << ToUtf8(name);
    }
    EXPECT_EQ(Open(std::wstring(L"there\0x", 7), {}), FsResult::NotFound);
    ASSERT_EQ(mkfifo(PathToBytes(folder / L"pipe").c_str(), 0600), 0);
    EXPECT_EQ(Open(L"pipe", {}), FsResult::Failed);
}

TEST_F(FileSystemTest, FileCallsDoWhatTheySay) {
    std::unique_ptr<File> file;
    ASSERT_EQ(Open(L"a", {.write = true, .create = true}, file), FsResult::Ok);
    EXPECT_EQ(file->Write("0123456789", 10), FsResult::Ok);
    EXPECT_EQ(file->Truncate(6), FsResult::Ok);
    EXPECT_EQ(file->Seek(4), FsResult::Ok);
    EXPECT_EQ(Read(*file), "45");
    EXPECT_EQ(file->Seek(~0ull), FsResult::Failed);
    ASSERT_EQ(files.Open(L"/dev/full", {.write = true, .share = Share::DenyNone}, file), FsResult::Ok);
    EXPECT_EQ(file->Write("x", 1), FsResult::NoSpace);
}

TEST_F(FileSystemTest, ShareModesExclude) {
    WriteBytes(folder / L"a", "abc");
    const std::tuple<Share, Share, bool> rows[] = {{Share::DenyWrite, Share::DenyWrite, true},
                                                   {Share::DenyNone, Share::Exclusive, true},
                                                   {Share::Exclusive, Share::DenyNone, true},
                                                   {Share::Exclusive, Share::DenyWrite, false},
                                                   {Share::DenyWrite, Share::Exclusive, false}};
    for (const auto& [first, second, together] : rows) {
        std::unique_ptr<File> file;
        ASSERT_EQ(Open(L"a", {.share = first}, file), FsResult::Ok);
        const OpenMode mode{.write = true, .truncate = !together, .share = second};
        EXPECT_EQ(Open(L"a", mode), together ? FsResult::Ok : FsResult::InUse);
        EXPECT_EQ(ReadBytes(folder / L"a"), "abc") << "emptied before it had the lock";
    }
}

TEST_F(FileSystemTest, WaitingEndsAtTheFileThatTookItsPlace) {
    WriteBytes(folder / L"a", "old");
    WriteBytes(folder / L"new", "new");
    std::unique_ptr<File> held, opened;
    ASSERT_EQ(Open(L"a", {.write = true, .share = Share::Exclusive}, held), FsResult::Ok);
    FsResult result = FsResult::Failed;
    std::thread waiter([&] { result = Open(L"a", {}, opened); });
    EXPECT_EQ(files.Replace(folder / L"new", folder / L"a"), FsResult::Ok);
    held.reset();
    waiter.join();
    ASSERT_EQ(result, FsResult::Ok);
    EXPECT_EQ(Read(*opened), "new");
}

TEST_F(FileSystemTest, ReadOnlyIsRefusedAlsoAsRoot) {
    WriteBytes(folder / L"a", "abc");
    WriteBytes(folder / L"b", "new");
    SetMode(folder / L"a", 0444);
    EXPECT_EQ(Open(L"a", {.write = true}), FsResult::ReadOnly);
    EXPECT_EQ(files.Remove(folder / L"a"), FsResult::ReadOnly);
    EXPECT_EQ(files.Replace(folder / L"b", folder / L"a"), FsResult::ReadOnly);
    EXPECT_EQ(ReadBytes(folder / L"a"), "abc");
}

TEST_F(FileSystemTest, NamesAreFoundIgnoringCase) {
    MakeFolders(folder / L"Netherlands/Grid");
    WriteBytes(folder / L"Netherlands/Grid/Nö.GGF", "1");
    EXPECT_EQ(Open(L"netherlands\\GRID\\nÖ.ggf", {}), FsResult::Ok);
    EXPECT_EQ(files.RealPath(folder / L"NETHERLANDS/grid/NÖ.ggf"), files.RealPath(folder / L"Netherlands/Grid/Nö.GGF"));
    // What is made takes the name that is there, and the folders that are there.
    EXPECT_EQ(Open(L"NETHERLANDS/grid/nö.ggf", {.write = true, .create = true}), FsResult::Ok);
    EXPECT_EQ(Open(L"NETHERLANDS/grid/New.ggf", {.write = true, .create = true}), FsResult::Ok);
    EXPECT_TRUE(Exists(folder / L"Netherlands/Grid/New.ggf") && !Exists(folder / L"NETHERLANDS"));
    // The exact name wins, then the first in ordinal order.
    for (const wchar_t* const name : {L"same", L"SAME", L"Same"}) WriteBytes(folder / name, ToUtf8(name));
    EXPECT_EQ(GetNameFromPath(files.RealPath(folder / L"same")), L"same");
    EXPECT_EQ(GetNameFromPath(files.RealPath(folder / L"sAME")), L"SAME");
}

TEST_F(FileSystemTest, ListsInOrdinalOrder) {
    MakeFolders(folder / L"b");
    ASSERT_EQ(symlink("b", PathToBytes(folder / L"link").c_str()), 0);
    for (const wchar_t* const name : {L"c", L"B", L"ä", L".x", L"\xDCE9"}) WriteBytes(folder / name, "");
    std::vector<FolderEntry> entries;
    ASSERT_EQ(files.List(folder.Path(), entries), FsResult::Ok);
    std::wstring all;
    for (const FolderEntry& entry : entries) all += entry.name + (entry.isFolder ? L"/ " : L" ");
    EXPECT_EQ(all, L".x B b/ c link/ ä \xDCE9 ");
}

TEST_F(FileSystemTest, RenameNeverReplaces) {
    WriteBytes(folder / L"a", "a");
    WriteBytes(folder / L"Taken", "taken");
    EXPECT_EQ(files.Rename(folder / L"a", folder / L"Taken"), FsResult::Exists);
    EXPECT_EQ(files.Rename(folder / L"a", folder / L"taken"), FsResult::Exists);
    EXPECT_EQ(ReadBytes(folder / L"Taken"), "taken");
    EXPECT_EQ(files.Rename(folder / L"a", folder / L"A"), FsResult::Ok) << "only its case changes";
    EXPECT_EQ(ReadBytes(folder / L"A"), "a");
}

TEST_F(FileSystemTest, RenameCrossesVolumes) {
    const std::wstring other = L"/dev/shm/orv-test-" + std::to_wstring(getpid());
    struct stat here, there;
    if (stat("/dev/shm", &there) != 0 || stat(PathToBytes(folder.Path()).c_str(), &here) != 0 ||
        here.st_dev == there.st_dev || access("/dev/shm", W_OK) != 0) {
        GTEST_SKIP() << "no second volume here";
    }
    WriteBytes(folder / L"a", "abc");
    WriteBytes(other, "taken");
    EXPECT_EQ(files.Rename(folder / L"a", other), FsResult::Exists);
    ASSERT_EQ(files.Remove(other), FsResult::Ok);
    EXPECT_EQ(files.Rename(folder / L"a", other), FsResult::Ok);
    EXPECT_EQ(ReadBytes(other), "abc");
    EXPECT_FALSE(Exists(folder / L"a"));
    EXPECT_EQ(files.Remove(other), FsResult::Ok);
}

TEST_F(FileSystemTest, RemoveRefusesWhatIsOpen) {
    WriteBytes(folder / L"a", "abc");
    for (const Share share : {Share::Exclusive, Share::DenyWrite}) {
        std::unique_ptr<File> file;
        ASSERT_EQ(Open(L"a", {.share = share}, file), FsResult::Ok);
        EXPECT_EQ(files.Remove(folder / L"a"), FsResult::InUse);
    }
    FILE* const other = std::fopen(PathToBytes(folder / L"a").c_str(), "r");  // some other program
    const FsResult result = files.Remove(folder / L"a");
    std::fclose(other);
    if (result == FsResult::Ok) GTEST_SKIP() << "no leases on this volume";
    EXPECT_EQ(result, FsResult::InUse);
    EXPECT_EQ(files.Remove(folder / L"A"), FsResult::Ok);
}

TEST_F(FileSystemTest, StatusAgesByTheEarlierTime) {
    WriteBytes(folder / L"a", "abc");
    ASSERT_EQ(files.SetModified(folder / L"a", 1000000000, 5), FsResult::Ok);
    FileStatus status;
    ASSERT_EQ(files.Status(folder / L"A", status), FsResult::Ok);
    EXPECT_EQ(status.created, 1000000000);
    ASSERT_EQ(files.SetModified(folder / L"a", 9000000000, 0), FsResult::Ok);
    ASSERT_EQ(files.Status(folder / L"a", status), FsResult::Ok);
    EXPECT_LT(status.created, 9000000000);
}

}  // namespace orv::test
