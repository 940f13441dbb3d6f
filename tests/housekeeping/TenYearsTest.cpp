// Both housekeepers over years of a survey, beside models of them: days with edits and logs, rules that change, clocks
// that are set wrong, nights with summer time, files that can't be deleted. ORV_SIMULATED_DAYS sets the length.

#include <algorithm>
#include <ctime>
#include <map>
#include <random>
#include <set>

#include "Fakes.h"
#include "core/ConfigKeys.h"
#include "housekeeping/DiskSpaceManager.h"
#include "housekeeping/FileHistory.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr CTime kDay = 86400;
constexpr std::uint64_t kDisk = 1500;  // bytes

// ---- what must come out, in plain steps

struct Logged {
    std::size_t size = 0;
    CTime made = 0;
    bool inUse = false;
};
using Disk = std::map<std::string, Logged>;

std::uint64_t FreeOf(const Disk& disk) {
    std::uint64_t used = 0;
    for (const auto& [name, file] : disk) used += file.size;
    return used < kDisk ? kDisk - used : 0;
}

/// Oldest first while the oldest that is left is too old, or its space is needed.
void Clean(Disk& disk, const DiskSpaceSetup& rules, CTime now) {
    std::vector<std::pair<std::string, Logged>> files(disk.begin(), disk.end());
    std::stable_sort(files.begin(), files.end(), [](auto& a, auto& b) { return a.second.made < b.second.made; });
    double free = static_cast<double>(FreeOf(disk));
    for (const auto& [name, file] : files) {
        const bool old = rules.maxDaysEnabled && now - file.made > rules.maxDays * kDay;
        if (!old && !(rules.minFreeEnabled && free < rules.minFree)) return;
        if (!file.inUse) disk.erase(name);
        free += static_cast<double>(file.size);
    }
}

struct Copy {
    std::string name;
    std::size_t size;
    CTime modified;
    auto operator<=>(const Copy&) const = default;
};

std::string Name(const std::string& title, CTime time) {
    char text[40];
    std::strftime(text, sizeof text, "_%Y-%m-%d-%H%M", std::localtime(&time));
    return title + text;
}

/// One file's copies after a round.
void Keep(std::vector<Copy>& copies, const std::string& title, const Copy& file, CTime now, int days) {
    std::sort(copies.begin(), copies.end());
    const bool changed = copies.empty() || copies.back().size != file.size || copies.back().modified != file.modified;
    if (file.modified <= now && changed) {
        const bool older = !copies.empty() &&
                           (file.modified < copies.back().modified || Name(title, file.modified) < copies.back().name);
        const std::string name = Name(title, older ? now : file.modified);
        std::erase_if(copies, [&](const Copy& copy) { return copy.name == name; });
        copies.push_back({name, file.size, file.modified});
    }
    const std::string limit = Name(title, now - days * kDay);
    while (copies.size() > 1 && std::max(copies[0].name, copies[1].name) <= limit) copies.erase(copies.begin());
}

/// The name of the copy that was valid at a time, or of the oldest.
std::string Valid(std::vector<Copy> copies, const std::string& title, CTime time) {
    std::sort(copies.begin(), copies.end());
    std::string found = copies.empty() ? "" : copies.front().name;
    for (const Copy& copy : copies) {
        if (copy.name < Name(title, time)) found = copy.name;
    }
    return found;
}

// ---- the survey

class Manager : public DiskSpaceManager {
public:
    using DiskSpaceManager::DeleteOldFiles;
};

class TenYears : public testing::Test {
protected:
    TenYears() {
        EXPECT_TRUE(installation.Start());
        test::MakeFolders(logs);
        project.SetLogDataPath(logs);
        NewRules();
    }
    int UpTo(int most) { return std::uniform_int_distribution<int>(0, most)(random); }

    void NewRules() {
        rules = {UpTo(2) > 0, 1 + UpTo(50), UpTo(2) > 0, static_cast<double>(UpTo(1000))};
        historyDays = UpTo(60);
        ASSERT_TRUE(StoreDiskSpaceSetup(project, rules) && manager.LoadSettings(installation.Search()));
        ASSERT_TRUE(StoreFileHistorySetup(project, {true, historyDays, {kFileTypeAppConfig}}) &&
                    history.LoadSettings(installation.Search()));
    }
    void Write(const std::wstring& path, std::size_t size, CTime modified) {
        test::WriteBytes(path, std::string(size, 'x'));
        ASSERT_EQ(RealFileSystem().SetModified(path, modified, 0), FsResult::Ok);
    }
    /// A new log takes over from the one being written. Now and then a program forgets to close one.
    void StartLog(CTime now) {
        const std::string name = "log" + std::to_string(++logCount) + ".raw";
        if (!writing.empty() && UpTo(30) > 0) Release(writing);
        disk[writing = name] = {static_cast<std::size_t>(UpTo(120)), now, true};
        Write(logs + PathFromBytes(name), disk[name].size, now);
        ASSERT_EQ(RealFileSystem().Open(logs + PathFromBytes(name), {.write = true}, held[name]), FsResult::Ok);
        if (UpTo(200) == 0) {
            for (auto& [other, file] : disk) {
                if (other != writing) Release(other);
            }
        }
    }
    void Release(const std::string& name) {
        held.erase(name);
        if (disk.contains(name)) disk[name].inUse = false;
    }
    void CleanBoth(CTime now) {
        const Disk before = disk;
        files.free = FreeOf(disk);
        ASSERT_EQ(manager.Plan(now).steps.size(), PlannedBy(before, now));
        manager.DeleteOldFiles(now);
        Clean(disk, rules, now);
        Disk left;
        for (const FolderEntry& entry : FindFiles(logs, L"*")) left[PathToBytes(entry.name)] = {};
        ASSERT_TRUE(std::equal(left.begin(), left.end(), disk.begin(), disk.end(),
                               [](const auto& a, const auto& b) { return a.first == b.first; }));
        ASSERT_TRUE(disk.contains(writing));
        const bool stuck =
            std::any_of(before.begin(), before.end(), [](const auto& file) { return file.second.inUse; });
        for (const auto& [name, file] : before) {
            const bool young = !rules.maxDaysEnabled || now - file.made <= rules.maxDays * kDay;
            ASSERT_TRUE(!young || rules.minFreeEnabled || disk.contains(name));
        }
        const bool full = rules.minFreeEnabled && static_cast<double>(FreeOf(disk)) < rules.minFree;
        ASSERT_TRUE(!full || stuck || disk.empty());
    }
    std::size_t PlannedBy(Disk all, CTime now) const {
        const std::size_t count = all.size();
        for (auto& [name, file] : all) file.inUse = false;
        Clean(all, rules, now);
        return count - all.size();
    }
    void KeepBoth(CTime now) {
        history.MakeBackup(now, stop);
        std::set<std::string> expected, found;
        for (auto& [title, file] : edited) {
            Keep(copies[title], title, file, now, historyDays);
            for (const Copy& copy : copies[title]) expected.insert(copy.name + ".acf");
        }
        for (const FolderEntry& entry : FindFiles(historyFolder, L"*")) found.insert(PathToBytes(entry.name));
        ASSERT_EQ(found, expected);
    }
    void Ask(const std::string& title, CTime time) {
        std::wstring path = PathFromBytes(title);
        const std::string valid = Valid(copies[title], title, time);
        ASSERT_EQ(history.GetFullPath(kFileTypeAppConfig, path, time), !valid.empty());
        ASSERT_TRUE(valid.empty() || path == historyFolder + PathFromBytes(valid) + L".acf");
    }
    void Step(CTime now) {
        if (UpTo(60) == 0) NewRules();
        if (UpTo(1) == 0) {
            const std::string title = std::array<const char*, 3>{"survey", "survey1", "Night shift"}[UpTo(2)];
            // Now and then an older file is put back, or one comes from a computer that is ahead.
            const CTime modified = now - (UpTo(4) == 0 ? UpTo(40) * kDay : -UpTo(1));
            edited[title] = {"", static_cast<std::size_t>(UpTo(3)), modified};
            Write(installation.ProjectFolder() + PathFromBytes(title) + L".acf", edited[title].size, modified);
        }
        if (UpTo(1) == 0 || writing.empty()) StartLog(now);
        const CTime shown = UpTo(40) > 0 ? now : now + (UpTo(800) - 400) * kDay;  // somebody sets the clock
        CleanBoth(shown);
        KeepBoth(shown);
        Ask("survey", shown - UpTo(50) * kDay);
    }

    test::ScopedZone zone{"Europe/Amsterdam"};
    test::TestInstallation installation;
    const std::wstring logs = installation.ProjectFolder() + L"Logged/";
    const std::wstring historyFolder = installation.ProjectFolder() + L"History/";
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    test::SimulatedDisk files;
    std::mt19937 random{11};
    const std::atomic<bool> stop = false;
    Manager manager;
    FileHistory history;
    DiskSpaceSetup rules;
    int historyDays = 0, logCount = 0;
    Disk disk;
    std::string writing;
    std::map<std::string, std::unique_ptr<File>> held;
    std::map<std::string, Copy> edited;
    std::map<std::string, std::vector<Copy>> copies;
};

TEST_F(TenYears, HousekeepersAgreeWithTheirModels) {
    const char* const length = std::getenv("ORV_SIMULATED_DAYS");
    constexpr CTime start = 1412114400;  // in the autumn, with the end of summer time ahead
    // Half of the days start on the same second, so that files meet the age limit exactly.
    for (int day = 0; day < (length ? std::atoi(length) : 60); ++day) {
        const CTime midnight = start + day * kDay;
        const bool changeover = LocalCalendar(midnight).hour != LocalCalendar(midnight + kDay).hour;
        for (CTime time = UpTo(1) * UpTo(7200); time < kDay; time += changeover ? 1200 : 40000) {
            ASSERT_NO_FATAL_FAILURE(Step(midnight + time)) << "day " << day;
        }
    }
}

}  // namespace
}  // namespace orv
