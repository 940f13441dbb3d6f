#include "housekeeping/DiskSpaceManager.h"

#include <algorithm>
#include <limits>
#include <map>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/values/TruncToInt.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::wstring_view kDeleted = L"[Disk Space Manager] Deleted file: %s";

/// Oldest first. A file whose status can't be had is left alone. Empty once `stop` is set.
std::vector<DiskSpaceStep> ListFiles(const TypeFolder& type, const std::atomic<bool>& stop) {
    std::vector<DiskSpaceStep> files;
    for (const FolderEntry& entry : FindFiles(type.folder, L"*" + type.extension)) {
        if (stop) return {};
        if (entry.isFolder || entry.isLink) continue;
        const std::wstring path = type.folder + entry.name;
        FileStatus status;
        if (Files().Status(path, status) != FsResult::Ok || !status.exists) continue;
        files.push_back({path, status.size, status.created, false, false, status.readOnly});
    }
    std::stable_sort(files.begin(), files.end(),
                     [](const DiskSpaceStep& a, const DiskSpaceStep& b) { return a.created < b.created; });
    return files;
}

std::uint64_t AddClipped(std::uint64_t a, std::uint64_t b) {
    return b > std::numeric_limits<std::uint64_t>::max() - a ? std::numeric_limits<std::uint64_t>::max() : a + b;
}

}  // namespace

DiskSpaceSetup LoadDiskSpaceSetup(const FileObject& project) {
    DiskSpaceSetup setup;
    project.GetItem(DISK_SPACE_SECTION, MAX_DAYS_ENABLED, setup.maxDaysEnabled);
    project.GetItem(DISK_SPACE_SECTION, MAX_DAYS, setup.maxDays);
    project.GetItem(DISK_SPACE_SECTION, MIN_FREE_ENABLED, setup.minFreeEnabled);
    project.GetItem(DISK_SPACE_SECTION, MIN_FREE, setup.minFree);
    return setup;
}

bool StoreDiskSpaceSetup(FileObject& project, const DiskSpaceSetup& setup) {
    project.DeleteSection(DISK_SPACE_SECTION);
    return project.SetItem(DISK_SPACE_SECTION, MAX_DAYS_ENABLED, setup.maxDaysEnabled, true) &&
           project.SetItem(DISK_SPACE_SECTION, MAX_DAYS, setup.maxDays, true) &&
           project.SetItem(DISK_SPACE_SECTION, MIN_FREE_ENABLED, setup.minFreeEnabled, true) &&
           project.SetItem(DISK_SPACE_SECTION, MIN_FREE, setup.minFree, true);
}

DiskSpaceManager& DiskSpaceManager::Instance() {
    DataSearch::GetDataSearch();  // made first, so that it outlives the worker
    static DiskSpaceManager manager;
    return manager;
}

DiskSpaceManager::DiskSpaceManager() : worker([this](const std::atomic<bool>& stop) { Round(stop); }) {}

bool DiskSpaceManager::LoadSettings(DataSearch& search) {
    const DiskSpaceSetup setup = LoadDiskSpaceSetup(search.GetProjectDefinition());
    // A negative age would take files that aren't written yet for old: no such rule.
    maxDaysEnabled = setup.maxDaysEnabled && setup.maxDays >= 0;
    maxDays = setup.maxDays;
    minFreeEnabled = setup.minFreeEnabled;
    minFree = 0;
    return TruncToInt(setup.minFree, minFree) || setup.minFree <= 0;
}

DiskSpaceManager::TypeFolders DiskSpaceManager::FindTypeFolders() const {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::vector<unsigned> ids;
    int count = 0;
    search.GetFileIDs(kLocationLogData, ids, count, 0);
    TypeFolders types;
    for (const unsigned id : ids) {
        if (auto type = FindTypeFolder(search, id)) types.push_back(std::move(*type));
    }
    return types;
}

void DiskSpaceManager::Start(CTime now) {
    if ((!maxDaysEnabled && !minFreeEnabled) || now <= requestedTime) return;
    // The worker gets its folders here: settings and project belong to the main thread.
    TypeFolders types = FindTypeFolders();
    const CTime before = requestedTime;
    {
        const std::lock_guard lock(mutex);
        requestedTime = now;
        requestedTypes = std::move(types);
    }
    if (worker.Wake()) return;
    const std::lock_guard lock(mutex);
    requestedTime = before;  // so that the same request is heard when there is a thread again
}

void DiskSpaceManager::DeleteOldFiles(CTime time) {
    const std::atomic<bool> never{false};
    for (const TypeFolder& type : FindTypeFolders()) DeleteOldFilesIn(time, type, never);
}

void DiskSpaceManager::Round(const std::atomic<bool>& stop) {
    CTime time = 0;
    TypeFolders types;
    {
        const std::lock_guard lock(mutex);
        time = requestedTime;
        types = requestedTypes;
    }
    for (const TypeFolder& type : types) {
        if (stop) return;
        DeleteOldFilesIn(time, type, stop);
    }
}

/// `freed`: bytes that the plan has won on the type's disk before. Each type reads the free space at its own turn.
DiskSpacePlan DiskSpaceManager::PlanIn(CTime time, const TypeFolder& type, std::uint64_t freed,
                                       const std::atomic<bool>& stop) const {
    DiskSpacePlan plan;
    // A disk that is full to the last byte has a free space of 0, which is known, and the best reason to go on.
    const std::optional<std::uint64_t> known = Files().FreeSpace(type.folder);
    if (!known) return plan;
    std::uint64_t free = AddClipped(*known, freed);
    if (!maxDaysEnabled && free >= minFree) return plan;
    const CTime threshold = time - maxDays * kSecondsPerDay;
    std::vector<DiskSpaceStep> files = ListFiles(type, stop);
    plan.files = files.size();
    if (!files.empty()) plan.newest = files.back().created;
    for (DiskSpaceStep& file : files) {
        file.tooOld = maxDaysEnabled && file.created < threshold;
        file.spaceNeeded = minFreeEnabled && free < minFree;
        if (!file.tooOld && !file.spaceNeeded) break;
        // Also where it will fail: one file that stays must not cost all younger ones their place.
        free = AddClipped(free, file.length);
        plan.steps.push_back(std::move(file));
    }
    return plan;
}

DiskSpacePlan DiskSpaceManager::Plan(CTime time) const {
    const std::atomic<bool> never{false};
    DiskSpacePlan plan;
    std::map<std::uint64_t, std::uint64_t> freed;  // by disk
    for (const TypeFolder& type : FindTypeFolders()) {
        FileStatus folder;
        static_cast<void>(Files().Status(type.folder, folder));
        DiskSpacePlan part = PlanIn(time, type, freed[folder.device], never);
        for (DiskSpaceStep& step : part.steps) {
            if (!step.readOnly) freed[folder.device] = AddClipped(freed[folder.device], step.length);
            plan.steps.push_back(std::move(step));
        }
        plan.newest = plan.files == 0 ? part.newest : std::max(plan.newest, part.newest);
        plan.files += part.files;
    }
    return plan;
}

void DiskSpaceManager::DeleteOldFilesIn(CTime time, const TypeFolder& type, const std::atomic<bool>& stop) {
    for (const DiskSpaceStep& file : PlanIn(time, type, 0, stop).steps) {
        if (stop) return;
        if (Files().Remove(file.path) == FsResult::Ok) reports.Report(kLevelInformation, kDeleted, file.path);
    }
}

}  // namespace orv
