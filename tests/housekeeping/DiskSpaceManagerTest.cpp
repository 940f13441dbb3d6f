#include "housekeeping/DiskSpaceManager.h"

#include <pthread.h>
#include <unistd.h>

#include "Fakes.h"
#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
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
    {
        const NoticeRecorder notices;
        pthread_attr_t attributes;
        std::size_t size = 0;
        ASSERT_EQ(pthread_getattr_default_np(&attributes), 0);
        ASSERT_EQ(pthread_attr_getstacksize(&attributes, &size), 0);
        ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{1} << 50), 0);
        ASSERT_EQ(pthread_setattr_default_np(&attributes), 0);
        manager.Start(kNow);
        ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
        ASSERT_EQ(pthread_setattr_default_np(&attributes), 0);
        EXPECT_FALSE(manager.HasWorker() || notices.Text(Notice::Information).empty()) << "the system had no thread";
    }
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

TEST(RoundWorker, LivesOnAfterARoundThatFailed) {
    const NoticeRecorder notices;
    std::promise<void> rounds[2];
    int count = 0;
    RoundWorker worker([&](const std::atomic<bool>&) {
        rounds[count].set_value();
        if (++count == 1) throw std::bad_alloc();
    });
    for (std::promise<void>& round : rounds) {
        EXPECT_TRUE(worker.Wake());
        round.get_future().wait();
    }
    worker.Stop();
    EXPECT_NE(notices.Text(Notice::Information), L"");
}

TEST_F(DiskSpaceManagerTest, UnknownTypesAreTold) {
    DataSearch& search = installation.Search();
    EXPECT_FALSE(FindTypeFolder(search, 999));
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownFileType);
    EXPECT_TRUE(FindTypeFolder(search, kFileTypeORV2000Raw));
    EXPECT_EQ(search.GetErrorStatus(), kSearchOk);
}

}  // namespace
}  // namespace orv
