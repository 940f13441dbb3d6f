#include "housekeeping/DiskSpaceManager.h"

#include <unistd.h>

#include <algorithm>
#include <random>

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
    bool inUse = false;
};

/// Names that stay, oldest first: files go while one of the rules asks for the oldest that is left.
std::vector<std::wstring> Survivors(std::vector<LoggedFile> files, const DiskSpaceSetup& rules, std::uint64_t free) {
    std::sort(files.begin(), files.end(),
              [](const auto& a, const auto& b) { return a.age != b.age ? a.age > b.age : a.name < b.name; });
    std::vector<std::wstring> stay;
    bool ended = false;
    for (const LoggedFile& file : files) {
        const bool old = rules.maxDaysEnabled && file.age > rules.maxDays * kDay;
        const bool needed = rules.minFreeEnabled && static_cast<double>(free) < rules.minFree;
        ended = ended || (!old && !needed);
        if (ended || file.inUse) stay.push_back(file.name);
        free += file.size;
    }
    std::sort(stay.begin(), stay.end());
    return stay;
}

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
        if (file.inUse) disk.inUse.insert(folder + file.name);
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

TEST_F(DiskSpaceManagerTest, AgreesWithItsModel) {
    std::mt19937 random(11);
    const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
    for (int round = 0; round < 300; ++round) {
        for (const std::wstring& name : Names()) ASSERT_EQ(RealFileSystem().Remove(folder + name), FsResult::Ok);
        disk.inUse.clear();
        std::vector<LoggedFile> files;
        for (int i = upTo(8); i > 0; --i) {
            // Whole days meet the age limit exactly; upper-case endings are of the same type.
            files.push_back({L"log" + std::to_wstring(i) + (upTo(4) ? L".raw" : L".RAW"),
                             static_cast<std::size_t>(upTo(50)), upTo(5) * 10 * kDay + upTo(1), upTo(5) == 0});
            Put(files.back());
        }
        const DiskSpaceSetup rules = {upTo(1) == 1, 30, upTo(2) > 0, static_cast<double>(upTo(200))};
        disk.free = static_cast<std::uint64_t>(upTo(1) * upTo(150));  // often not a byte
        ASSERT_TRUE(Rules(rules));
        manager.DeleteOldFiles(kNow);
        ASSERT_EQ(Names(), Survivors(files, rules, *disk.free)) << round;
    }
}

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
