#include "housekeeping/FileHistoryBackup.h"

#include <unistd.h>

#include "Fakes.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "project/ScriptedCoordSys.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr CTime kNow = 1614680100;  // 2021-03-02 10:15 UTC
constexpr CTime kDay = 86400;

class FileHistoryTest : public testing::Test {
protected:
    FileHistoryTest() {
        EXPECT_TRUE(installation.Start());
        EXPECT_TRUE(StoreFileHistorySetup(project, {true, 30, {kFileTypeAppConfig, kFileTypeProjectFile}}));
        EXPECT_TRUE(history.LoadSettings(installation.Search()));
        history.SetMessageLog(&log);
    }
    void Put(const std::wstring& path, std::size_t size, CTime modified) {
        test::WriteBytes(path, std::string(size, 'x'));
        ASSERT_EQ(RealFileSystem().SetModified(path, modified, 0), FsResult::Ok);
    }
    void Edit(const std::wstring& title, std::size_t size, CTime modified) {
        Put(installation.ProjectFolder() + title + L".acf", size, modified);
    }
    void Round(CTime now) { history.MakeBackup(now, stop); }
    std::wstring HistoryFolder() const { return installation.ProjectFolder() + L"History/"; }
    std::wstring Copies() const {
        std::wstring names;
        for (const FolderEntry& entry : FindFiles(HistoryFolder(), L"*")) names += entry.name + L"\n";
        return names;
    }

    test::ScopedZone zone{"UTC"};
    test::TestInstallation installation;
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    std::atomic<bool> stop = false;
    test::AwaitedLog log;
    FileHistoryBackup history;
};

TEST_F(FileHistoryTest, TellsWhatItDid) {
    for (const int days : {40, 35, 10}) {
        Edit(L"Job", static_cast<std::size_t>(days), kNow - days * kDay);
        Round(kNow - days * kDay);
    }
    log.Texts();
    Round(kNow);
    EXPECT_EQ(Copies(), L"Job_2021-01-26-1015.acf\nJob_2021-02-20-1015.acf\n");
    EXPECT_EQ(log.Texts(), L"[File History] Deleted backup file: " + HistoryFolder() + L"Job_2021-01-21-1015.acf\n");
    Edit(L"Job", 5, kNow);
    std::unique_ptr<File> writer;
    ASSERT_EQ(
        Files().Open(installation.ProjectFolder() + L"Job.acf", {.write = true, .share = Share::Exclusive}, writer),
        FsResult::Ok);
    Round(kNow);
    EXPECT_EQ(log.Texts(), L"[File History] Failed to backup file: " + installation.ProjectFolder() + L"Job.acf\n");
    writer.reset();
    stop = true;
    Round(kNow);
    EXPECT_EQ(log.Texts(), L"");
}

TEST_F(FileHistoryTest, AFileRenamedToAnotherCaseKeepsItsCopies) {
    const std::wstring folder = installation.ProjectFolder();
    Edit(L"job", 1, kNow - 40 * kDay);
    Round(kNow - 40 * kDay);
    ASSERT_EQ(RealFileSystem().RenameAsWritten(folder + L"job.acf", folder + L"Job.acf"), FsResult::Ok);
    Edit(L"Job", 2, kNow - 35 * kDay);
    Round(kNow - 35 * kDay);
    log.Texts();
    Round(kNow - 34 * kDay);
    EXPECT_EQ(log.Texts(), L"") << "not a copy each round";
    EXPECT_EQ(Copies(), L"Job_2021-01-26-1015.acf\njob_2021-01-21-1015.acf\n");
    std::wstring path = L"Job";
    EXPECT_TRUE(history.GetFullPath(kFileTypeAppConfig, path, kNow - 36 * kDay));
    EXPECT_EQ(path, HistoryFolder() + L"job_2021-01-21-1015.acf");

    test::WriteBytes(folder + L"JOB.acf", "another one, where case tells");
    ASSERT_EQ(RealFileSystem().SetModified(folder + L"JOB.acf", kNow + kDay, 0), FsResult::Ok);
    const std::vector<HistoryStep> steps = history.Plan(kNow);
    EXPECT_EQ(steps.size(), 1u);
    Round(kNow);
    EXPECT_EQ(log.Texts(), L"[File History] Deleted backup file: " + HistoryFolder() + L"job_2021-01-21-1015.acf\n");
}

TEST_F(FileHistoryTest, ACancelledCopyIsNoFailure) {
    struct Stopping : FailingFileSystem {
        explicit Stopping(std::atomic<bool>& flag) : FailingFileSystem(0), stop(flag) { SetFileSystem(this); }
        ~Stopping() override { SetFileSystem(nullptr); }
        FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override {
            stop = true;
            return FailingFileSystem::Open(path, mode, file);
        }
        std::atomic<bool>& stop;
    };
    Edit(L"Job", 5, kNow);
    {
        const Stopping files(stop);
        Round(kNow);
    }
    EXPECT_TRUE(stop);
    EXPECT_EQ(log.Texts() + Copies(), L"");
}

TEST_F(FileHistoryTest, LinksAreNotFollowed) {
    const std::wstring outside = installation.GeneralFolder() + L"outside";
    Put(outside, 3, kNow - 60);
    ASSERT_EQ(symlink(PathToBytes(outside).c_str(), PathToBytes(installation.ProjectFolder() + L"Link.acf").c_str()),
              0);
    Round(kNow);
    EXPECT_EQ(Copies(), L"");
    test::MakeFolders(HistoryFolder());
    const std::wstring planted = HistoryFolder() + L"Job_2021-03-02-1015.acf";
    ASSERT_EQ(symlink(PathToBytes(outside).c_str(), PathToBytes(planted).c_str()), 0);
    Edit(L"Job", 9, kNow);
    Round(kNow);
    EXPECT_EQ(test::ReadBytes(outside), "xxx");
    std::wstring path = L"Job";
    EXPECT_FALSE(history.GetFullPath(kFileTypeAppConfig, path, kNow));
}

TEST_F(FileHistoryTest, PathsOfAPastMoment) {
    DataSearch& search = installation.Search();
    Edit(L"Job", 1, kNow - 5 * kDay);
    Round(kNow);
    const std::wstring present = installation.ProjectFolder() + L"Job.acf";
    const std::wstring copy = HistoryFolder() + L"Job_2021-02-25-1015.acf";
    test::MakeFolders(installation.ProjectFolder());
    ASSERT_TRUE(project.CreateDefaultFile(installation.ProjectFolder(), true));
    test::CoordSysScript script;
    OrvGeoCoordSysList& systems = OrvGeoCoordSysList::GetCoordSysList();
    systems.Register(std::wstring(COORDSYS_MODULE_KEY),
                     [&] { return std::make_unique<test::ScriptedCoordSys>(script); });
    test::WriteItems(installation.ProjectFolder() + L"Project.prj",
                     {{COORDSYSTEM_SECTION, coordsystemKeys[7], std::wstring(DEFAULT_COORDSYS_GROUP)},
                      {COORDSYSTEM_SECTION, coordsystemKeys[8], std::wstring(DEFAULT_COORDSYS_NAME)},
                      {COORDSYSTEM_SECTION, coordsystemKeys[10], L"Meters"},
                      {COORDSYSTEM_SECTION, coordsystemKeys[12], std::wstring(COORDSYS_MODULE_KEY)},
                      {COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, std::wstring(GEODESY_VERSION)},
                      {FILE_HISTORY_SECTION, FILE_HISTORY_ENABLED, L"1"},
                      {FILE_HISTORY_SECTION, fileTypeKeys[kFileTypeAppConfig], L"1"}});
    ASSERT_TRUE(search.InitProject(L"Harbour", false)) << PathToBytes(project.LastProblem());
    const struct {
        CTime time;
        std::wstring given, path;
    } rows[] = {{0, L"Job", present}, {kNow, L"Job", copy}, {kNow, L"/x/Job.acf", L"/x/Job.acf"}, {kNow, L"New", L""}};
    for (const auto& row : rows) {
        search.SetFileHistoryTime(row.time);
        std::wstring name = row.given;
        EXPECT_TRUE(search.GetFullPath(kFileTypeAppConfig, name));
        EXPECT_EQ(name, row.path.empty() ? installation.ProjectFolder() + L"New.acf" : row.path);
        std::wstring written = row.given;
        EXPECT_TRUE(search.GetFullPathForWriting(kFileTypeAppConfig, written));
        EXPECT_NE(written, copy);
    }
    project.Finalize();
    systems.Register(std::wstring(COORDSYS_MODULE_KEY), nullptr);
}

TEST_F(FileHistoryTest, WorkerRunsOnLaterRequestsOnly) {
    Edit(L"Job", 1, kNow - 60);
    history.Start(0);
    history.Start(kNow);
    log.WaitForFirst();
    history.Stop();
    EXPECT_EQ(Copies(), L"Job_2021-03-02-1014.acf\n");
    Edit(L"Job", 2, kNow - 10 * kDay);
    history.Start(kNow);
    history.Stop();
    EXPECT_EQ(Copies(), L"Job_2021-03-02-1014.acf\n") << "not later than before, also after a stop";
    ASSERT_TRUE(StoreFileHistorySetup(project, {false, 30, {kFileTypeAppConfig}}));
    ASSERT_TRUE(history.LoadSettings(installation.Search()));
    history.Start(kNow + 60);
    history.Stop();
    EXPECT_EQ(Copies(), L"Job_2021-03-02-1014.acf\n") << "not enabled";
    const std::vector<unsigned> types = ListHistoryTypes(installation.Search());
    for (const unsigned absent : {unsigned{kFileTypeVesselConfig}, unsigned{kFileTypeEventLogData}}) {
        EXPECT_EQ(std::count(types.begin(), types.end(), absent), 0);
    }
    EXPECT_EQ(std::count(types.begin(), types.end(), unsigned{kFileTypeAppConfig}), 1);
    ASSERT_TRUE(StoreFileHistorySetup(project, {true, 30, {kFileTypeAppConfig}}));
    ASSERT_TRUE(history.LoadSettings(installation.Search()));
    installation.Restart();  // whose folders aren't known
    EXPECT_FALSE(history.LoadSettings(installation.Search()));
    EXPECT_TRUE(history.IsEnabled() && history.Types().size() == 1);
}

}  // namespace
}  // namespace orv
