#include "housekeeping/FileLockManager.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(FileLockManager, FirstHolderStays) {
    FileLockManager locks = FileLockManager::GetInstance();
    EXPECT_EQ(locks.FindFirstLockernameInFileLockInfoContainer(L"a.txt"), L"");
    locks.AddToFileLockInfoContainer(L"a.txt", L"Editor");
    locks.AddToFileLockInfoContainer(L"A.TXT", L"Viewer");
    EXPECT_EQ(locks.GetLockInfoCount(), 1);
    locks.AddToFileLockInfoContainer(L"b.txt", L"");
    locks.AddToFileLockInfoContainer(L"b.txt", L"Editor");
    locks.AddToFileLockInfoContainer(L"B.txt", L"Viewer");
    EXPECT_EQ(locks.GetLockInfoCount(), 3) << "held, though the first entry has no locker";
    EXPECT_FALSE(locks.IsFilenameInFileLockInfoContainer(L"b.txt")) << "the entry without a locker comes first";
    EXPECT_EQ(locks.FindFilenameInFileLockInfoContainer(L"EDITOR"), L"a.txt");
    EXPECT_FALSE(locks.IsLockernameInFileLockInfoContainer(L"Viewer"));
    locks.RemoveFromFileLockInfoContainer(L"A.TXT", L"Editor");
    EXPECT_TRUE(locks.IsFilenameInFileLockInfoContainer(L"A.txt"));
    locks.RemoveFromFileLockInfoContainer(L"a.txt", L"Editor");
    EXPECT_EQ(locks.FindFirstLockernameInFileLockInfoContainer(L"a.txt"), L"");
    EXPECT_EQ(FileLockManager::GetInstance().GetLockInfoCount(), 0) << "a copy has a list of its own";
}

}  // namespace
}  // namespace orv
