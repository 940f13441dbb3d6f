#include "core/MergeSave.h"

#include <sys/wait.h>
#include <unistd.h>
#include <atomic>

#include "core/ProtectedFileObject.h"
#include "platform/notify/Notices.h"
#include "platform/os/SaveLock.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

TEST(MergeSave, LaysOnlyOwnChangesOnTop) {
    struct Row {
        const char *name, *theirs, *mine, *merged;
        int conflicts;
    };
    const char* const base = "[A]\nx=1\ny=2\n[B]\nz=3\n";
    const Row rows[] = {
        {"each an item", "; note\n[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\nx=1\ny=6\n[B]\nz=3\n",
         "; note\n[A]\nx=5\ny=6\n[B]\nz=3\n", 0},
        {"the same change", "[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\nx=5\ny=2\n[B]\nz=3\n", 0},
        {"two values", "[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\nx=6\ny=2\n[B]\nz=3\n", "[A]\nx=6\ny=2\n[B]\nz=3\n", 1},
        {"both add", "[A]\nx=1\ny=2\nv=a\n[B]\nz=3\n", "[A]\nx=1\ny=2\n[B]\nz=3\nw=b\n",
         "[A]\nx=1\ny=2\nv=a\n[B]\nz=3\nw=b\n", 0},
        {"deleted here, changed there", "[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\ny=2\n[B]\nz=3\n", "[A]\ny=2\n[B]\nz=3\n", 1},
        {"deleted there, changed here", "[A]\ny=2\n[B]\nz=3\n", "[A]\nx=5\ny=2\n[B]\nz=3\n",
         "[A]\ny=2\nx=5\n[B]\nz=3\n", 1},
        {"section deleted here", "[A]\nx=5\ny=2\n[B]\nz=3\n", "[A]\nx=1\ny=2\n", "[A]\nx=5\ny=2\n", 0},
        {"section deleted here, added to there", base, "[A]\nx=1\ny=2\n", "[A]\nx=1\ny=2\n", 0},
        {"section deleted here, filled there", "[A]\nx=1\ny=2\n[B]\nz=3\nw=4\n", "[A]\nx=1\ny=2\n", "[A]\nx=1\ny=2\n",
         1},
        {"section deleted there", "[B]\nz=3\n", base, "[B]\nz=3\n", 0},
        {"section deleted there, changed here", "[B]\nz=3\n", "[A]\nx=1\ny=7\n[B]\nz=3\n", "[B]\nz=3\n[A]\nx=1\ny=7\n",
         1},
    };
    for (const Row& row : rows) {
        const test::TempFolder folder;
        const std::wstring path = folder / L"Ship.vcf";
        test::WriteBytes(path, base);
        FileObject file;
        ASSERT_TRUE(file.FileOpen(path, kOpenRead));
        MergeSave merge(file);
        memfile wanted(row.mine, std::string_view(row.mine).size(), textencoding::utf8);
        archive in(wanted, true);
        ASSERT_TRUE(file.Read(in));
        test::WriteBytes(path, row.theirs);
        const NoticeRecorder notices;
        EXPECT_TRUE(merge.Save()) << row.name;
        std::string bytes = test::ReadBytes(path);
        std::erase(bytes, '\r');
        for (std::size_t at; (at = bytes.find("\n\n")) != bytes.npos;) bytes.erase(at, 1);
        EXPECT_EQ(bytes, row.merged) << row.name;
        const std::wstring told = notices.Text(Notice::Information);
        EXPECT_EQ(std::count(told.begin(), told.end(), L'\n'), row.conflicts) << row.name;
        if (row.conflicts && row.name == std::string_view("two values")) {
            EXPECT_NE(told.find(L"\"5\" by another, then \"6\" here"), told.npos);
        }
        EXPECT_FALSE(test::Exists(path + L".lock"));
        // What is saved is what is known: a second save has nothing of its own to lay on top.
        test::WriteBytes(path, "[A]\nx=9\n");
        EXPECT_TRUE(merge.Save());
        EXPECT_EQ(test::ReadBytes(path), "[A]\nx=9\n") << row.name;
    }
}

TEST(MergeSave, SignedFilesStaySignedAndOldPagesStayOldPages) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"Project.prj";
    ProtectedFileObject file, other;
    ASSERT_TRUE(file.FileOpen(path, false, kOpenCreateWrite) && file.SetItem(L"A", L"x", 1, true));
    ASSERT_TRUE(file.FileSave(path, 0, kSave) && other.FileOpen(path, true, kOpenRead));
    MergeSave merge(file);
    ASSERT_TRUE(other.SetItem(L"A", L"y", 2, true) && other.FileSave(path, 0, kSave));
    ASSERT_TRUE(file.SetItem(L"A", L"x", 3, true) && merge.Save());
    int x = 0, y = 0;
    ASSERT_TRUE(other.FileOpen(path, true, kOpenRead)) << "it must verify";
    EXPECT_TRUE(other.GetItem(L"A", L"x", x) && other.GetItem(L"A", L"y", y) && x == 3 && y == 2);

    const std::wstring old = folder / L"old.acf";
    test::WriteBytes(old, "[A]\nx=\xC4\n");
    FileObject plain;
    ASSERT_TRUE(plain.FileOpen(old, kOpenRead));
    MergeSave again(plain);
    EXPECT_TRUE(plain.SetItem(L"A", L"y", 1, true) && again.Save());
    EXPECT_EQ(test::ReadBytes(old), "[A]\nx=\xC4\ny=1\n");
}

TEST(SaveLock, OneHolderAtATimeAndTheDeadLetGo) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"Ship.vcf";
    std::atomic<int> inside = 0, saves = 0;
    test::InEightThreads([&](unsigned) {
        for (int i = 0; i < 20; ++i) {
            SaveLock lock(path);
            ASSERT_EQ(lock.Take(), FsResult::Ok);
            ASSERT_EQ(++inside, 1);
            ++saves;
            --inside;
        }
    });
    EXPECT_EQ(saves, 160);

    SaveLock first(path);
    ASSERT_EQ(first.Take(), FsResult::Ok);
    SaveLock second(path);
    EXPECT_EQ(second.Take(std::chrono::milliseconds(30)), FsResult::InUse);
    EXPECT_NE(second.Holder().find(L"process " + std::to_wstring(getpid())), std::wstring::npos);
    EXPECT_TRUE(first.IsHeld());
    first.Release();

    const pid_t child = fork();
    if (child == 0) {
        SaveLock lock(path);
        _exit(lock.Take() == FsResult::Ok ? 7 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(WEXITSTATUS(status), 7);
    ASSERT_TRUE(test::Exists(path + L".lock"));
    EXPECT_EQ(second.Take(std::chrono::milliseconds(500)), FsResult::Ok);

    // A holder that finds another's lock in place leaves it there.
    test::WriteBytes(path + L".lock", "token=other\n");
    EXPECT_FALSE(second.IsHeld());
    second.Release();
    EXPECT_EQ(test::ReadBytes(path + L".lock"), "token=other\n");
}

}  // namespace
}  // namespace orv
