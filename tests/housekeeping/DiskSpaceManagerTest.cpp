#include "housekeeping/DiskSpaceManager.h"

#include <unistd.h>

#include "Fakes.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr CTime kNow = 1614680100;
constexpr CTime kDay = 86400;

struct LoggedFile {
    std::wstring name;
    std::size_t size;
    CTime age;  ///< seconds
};

class Manager : public DiskSpaceManager {
public:
    using DiskSpaceManager::DeleteOldFiles;
};

class DiskSpaceManagerTest : public testing::Test {
protected:
    DiskSpaceManagerTest() {
        EXPECT_TRUE(installation.Start());
        test::MakeFolders(folder);
        project.SetLogDataPath(folder);
        manager.SetMessageLog(&log);
    }
    bool Rules(const DiskSpaceSetup& rules) {
        return StoreDiskSpaceSetup(project, rules) && manager.LoadSettings(installation.Search());
    }
    void Put(const LoggedFile& file) {
        test::WriteBytes(folder + file.name, std::string(file.size, 'x'));
        ASSERT_EQ(RealFileSystem().SetModified(folder + file.name, kNow - file.age, 0), FsResult::Ok);
    }
    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (const FolderEntry& entry : FindFiles(folder, L"*")) names.push_back(entry.name);
        return names;
    }

    test::TestInstallation installation;
    const std::wstring folder = installation.ProjectFolder() + L"Logged/";
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    test::SimulatedDisk disk;
    test::AwaitedLog log;
    Manager manager;
};

TEST_F(DiskSpaceManagerTest, WhatItLeavesAlone) {
    Put({L"a.raw", 10, 99 * kDay});
    Put({L"a.txt", 10, 99 * kDay});
    test::MakeFolders(folder + L"folder.raw");
    ASSERT_EQ(symlink("a.txt", PathToBytes(folder + L"link.raw").c_str()), 0);
    const struct {
        const char* what;
        DiskSpaceSetup rules;
        std::optional<std::uint64_t> free;
    } rows[] = {{"no rule", {false, 1, false, 1e9}, 0},
                {"enough space", {false, 1, true, 1000}, 1000},
                {"space unknown", {true, 1, true, 1e9}, std::nullopt},
                {"a negative age", {true, -1, false, 0}, 0},
                {"a negative space", {false, 1, true, -1}, 0}};
    for (const auto& row : rows) {
        ASSERT_TRUE(Rules(row.rules)) << row.what;
        disk.free = row.free;
        disk.listings = 0;
        manager.DeleteOldFiles(kNow);
        EXPECT_EQ(Names().size(), 4u) << row.what;
        EXPECT_TRUE(disk.listings == 1 || row.rules.minFree < 0 || !row.rules.minFreeEnabled) << row.what;
    }
    disk.free = 0;
    ASSERT_TRUE(Rules({true, 1, true, 1e9}));
    manager.DeleteOldFiles(kNow);
    EXPECT_EQ(Names(), (std::vector<std::wstring>{L"a.txt", L"folder.raw", L"link.raw"}));
    EXPECT_EQ(log.Texts(), L"[Disk Space Manager] Deleted file: " + folder + L"a.raw\n");
    EXPECT_EQ(ShownMinFree(StoredMinFree(1.5)), 1.5);
}

TEST_F(DiskSpaceManagerTest, WorkerRunsOnLaterRequestsOnly) {
    Put({L"a.raw", 10, 99 * kDay});
    disk.free = 0;
    manager.Start(kNow);
    EXPECT_FALSE(manager.HasWorker()) << "no rule is on";
    ASSERT_TRUE(Rules({true, 1, false, 0}));
    manager.Start(kNow);
    log.WaitForFirst();
    manager.Stop();
    EXPECT_TRUE(Names().empty());
    manager.Start(kNow);
    EXPECT_FALSE(manager.HasWorker()) << "not later than before, also after a stop";
    manager.Start(kNow + 1);
    EXPECT_TRUE(manager.HasWorker());
    manager.SetMessageLog(nullptr);
}

}  // namespace
}  // namespace orv
