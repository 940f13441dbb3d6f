#include "platform/os/FileTools.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/notify/Notices.h"
#include "platform/text/PathText.h"
#include "support/TestSupport.h"

namespace orv::test {

class FileToolsTest : public testing::Test {
protected:
    ~FileToolsTest() override { SetFileSystem(nullptr); }
    mode_t Mode(std::wstring_view name) const {
        struct stat status {};
        EXPECT_EQ(lstat(PathToBytes(folder / name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }
    std::size_t Leftovers() const { return FindFiles(folder.Path(), L"*.tmp").size(); }

    TempFolder folder;
    const std::wstring file = folder / L"a.ini";
    const std::string longText = std::string(3000000, 'n');  // longer than a block of a copy
};

TEST_F(FileToolsTest, SaveFailsWholeOrNotAtAll) {
    for (const bool isNew : {false, true}) {
        FailEachCall([&] { isNew ? void(RealFileSystem().Remove(file)) : WriteBytes(file, "old"); },
                     [&] { return SaveWholeFile(file, "new"); },
                     [&](FsResult result) {
                         const std::string now = Exists(file) ? ReadBytes(file) : "";
                         EXPECT_TRUE(now == "new" || (result != FsResult::Ok && now == (isNew ? "" : "old"))) << now;
                         EXPECT_EQ(Leftovers(), 0u);
                     });
    }
}

TEST_F(FileToolsTest, SaveThatIsKilledLeavesOldOrNew) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        WriteBytes(file, "old");
        const pid_t child = fork();
        if (child == 0) {
            FailingFileSystem killed(n, [] { _exit(77); });
            SetFileSystem(&killed);
            _exit(SaveWholeFile(file, longText) == FsResult::Ok ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        const std::string now = ReadBytes(file);
        const bool done = WEXITSTATUS(status) == 0;
        EXPECT_TRUE(now == longText || (now == "old" && !done)) << now.size();
        if (done) break;
        ASSERT_EQ(WEXITSTATUS(status), 77);
        EXPECT_EQ(SaveWholeFile(file, "after"), FsResult::Ok);
        EXPECT_EQ(ReadBytes(file), "after");
    }
}

TEST_F(FileToolsTest, SaveKeepsLinkModeAndName) {
    MakeFolders(folder / L"real");
    WriteBytes(folder / L"real/Target", "old");
    SetMode(folder / L"real/Target", 0640);
    ASSERT_EQ(symlink("real/Target", PathToBytes(folder / L"link").c_str()), 0);
    EXPECT_EQ(SaveWholeFile(folder / L"LINK", "new"), FsResult::Ok);
    EXPECT_EQ(SaveWholeFile(folder / L"REAL/target", "newer"), FsResult::Ok);
    EXPECT_EQ(ReadBytes(folder / L"link"), "newer");
    EXPECT_EQ(Mode(L"link"), 0777u) << "still a link";
    EXPECT_EQ(Mode(L"real/Target"), 0640u);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(PathToBytes(folder / L"link").c_str(), 4711, 4712), 0);
        EXPECT_EQ(SaveWholeFile(folder / L"link", "owned"), FsResult::Ok);
        struct stat status;
        ASSERT_EQ(stat(PathToBytes(folder / L"link").c_str(), &status), 0);
        EXPECT_TRUE(status.st_uid == 4711 && status.st_gid == 4712);
    }
}

TEST_F(FileToolsTest, SaveIsRefusedWhereItMust) {
    WriteBytes(file, "old");
    SetMode(file, 0444);
    EXPECT_EQ(SaveWholeFile(file, "new"), FsResult::ReadOnly);
    SetMode(file, 0644);
    std::unique_ptr<File> reader;
    ASSERT_EQ(Files().Open(file, {.share = Share::DenyWrite}, reader), FsResult::Ok);
    EXPECT_EQ(SaveWholeFile(file, "new"), FsResult::InUse);
    EXPECT_EQ(ReadBytes(file), "old");
    EXPECT_EQ(Leftovers(), 0u);
}

/// A folder that takes no new names, which root would otherwise never meet.
class ClosedFolder : public FailingFileSystem {
public:
    ClosedFolder() : FailingFileSystem(0) {}
    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& opened) override {
        return mode.createNew ? FsResult::Denied : FailingFileSystem::Open(path, mode, opened);
    }
};

TEST_F(FileToolsTest, SaveInPlaceWhereTheFolderIsClosed) {
    ClosedFolder closed;
    SetFileSystem(&closed);
    const NoticeRecorder notices;
    for (const char* const text : {"longer than before", "short", ""}) {
        WriteBytes(file, "old text");
        EXPECT_EQ(SaveWholeFile(file, text), FsResult::Ok);
        EXPECT_EQ(ReadBytes(file), text);
        EXPECT_NE(notices.Text(Notice::Information).find(file), std::wstring::npos);
    }
}

TEST_F(FileToolsTest, ReadTellsWhatItCannotTake) {
    WriteBytes(file, std::string("a\0b", 3));
    std::string bytes = "before";
    EXPECT_EQ(ReadWholeFile(file, bytes, Share::DenyWrite, 2), FsResult::TooLarge);
    EXPECT_EQ(bytes, "before");
    EXPECT_EQ(ReadWholeFile(file, bytes, Share::DenyWrite, 3), FsResult::Ok);
    EXPECT_EQ(bytes, std::string("a\0b", 3));
    EXPECT_EQ(ReadWholeFile(L"/dev/zero", bytes, Share::DenyNone, 100000), FsResult::TooLarge) << "has no length";
}

TEST_F(FileToolsTest, CopyKeepsTimeAndMode) {
    const std::wstring copy = folder / L"copy";
    WriteBytes(file, longText);
    SetMode(file, 0440);
    ASSERT_EQ(Files().SetModified(file, 1000000000, 987654321), FsResult::Ok);
    FailEachCall([&] { WriteBytes(copy, "old"); }, [&] { return CopyWholeFile(file, copy); },
                 [&](FsResult result) {
                     const std::string now = ReadBytes(copy);
                     EXPECT_TRUE(now == longText || (result != FsResult::Ok && now == "old"));
                     SetMode(copy, 0644);
                 });
    FileStatus status;
    ASSERT_EQ(Files().Status(copy, status), FsResult::Ok);
    EXPECT_EQ(status.modified * 1000000000 + status.modifiedNanoseconds, 1000000000987654321);
    EXPECT_EQ(CopyWholeFile(file, folder / L"A.INI"), FsResult::Failed) << "onto itself";
    const std::atomic<bool> cancel = true;
    EXPECT_EQ(CopyWholeFile(file, folder / L"other", &cancel), FsResult::Cancelled);
    EXPECT_EQ(FindFiles(folder.Path(), L"*").size(), 2u);
    EXPECT_EQ(CopyWholeFile(file, folder / L"other"), FsResult::Ok);
    EXPECT_EQ(Mode(L"other"), 0440u);
}

TEST_F(FileToolsTest, LiftPutsTheAttributeBack) {
    WriteBytes(file, "abc");
    SetMode(file, 0440);
    {
        const ReadOnlyLift lift(file);
        EXPECT_EQ(SaveWholeFile(file, "new"), FsResult::Ok);
    }
    EXPECT_EQ(Mode(L"a.ini"), 0440u);
}

}  // namespace orv::test
