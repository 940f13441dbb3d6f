#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "housekeeping/RoundWorker.h"
#include "housekeeping/TypeFolder.h"
#include "platform/os/Clock.h"

namespace orv {

class FileObject;

/// The rules of a project for its logged data. A rule that is off asks for nothing.
struct DiskSpaceSetup {
    bool maxDaysEnabled = false;
    int maxDays = 0;
    bool minFreeEnabled = false;
    double minFree = 0.0;  ///< bytes
};
ORV_EXPORT DiskSpaceSetup LoadDiskSpaceSetup(const FileObject& project);
ORV_EXPORT bool StoreDiskSpaceSetup(FileObject& project, const DiskSpaceSetup& setup);  ///< the caller saves
/// The form shows gigabytes.
inline constexpr double kBytesPerGigabyte = 1073741824.0;
inline double ShownMinFree(double bytes) {
    return bytes * (1 / kBytesPerGigabyte);
}
inline double StoredMinFree(double gigabytes) {
    return gigabytes * kBytesPerGigabyte;
}

/// A file that a round would delete, and which rules ask for it.
struct DiskSpaceStep {
    std::wstring path;
    std::uint64_t length = 0;  ///< bytes
    CTime created = 0;
    bool tooOld = false, spaceNeeded = false;
    bool readOnly = false;  ///< it will stay
};
/// What a round would do, and what it would do that to.
struct DiskSpacePlan {
    std::vector<DiskSpaceStep> steps;  ///< in the order of the round
    std::size_t files = 0;             ///< all that were looked at
    CTime newest = 0;                  ///< when the newest of them was made; only with files
};

/// Keeps the data disks of a survey computer from filling up: deletes logged data files, oldest first, that are older
/// than an age limit or whose space is needed. Files in use stay. Links stay, and what they lead to.
///
/// All operations belong to the main thread; `LoadSettings` only with the worker stopped. A message log that is going
/// to end is taken away with `SetMessageLog(nullptr)` first.
class ORV_EXPORT DiskSpaceManager {
public:
    static DiskSpaceManager& Instance();
    DiskSpaceManager();
    DiskSpaceManager(const DiskSpaceManager&) = delete;
    DiskSpaceManager& operator=(const DiskSpaceManager&) = delete;

    bool LoadSettings(DataSearch& search);
    void SetMessageLog(BaseORVMessage* messageLog) { reports.Set(messageLog); }
    /// Asks for a round with files aged as of `now`, if a rule is on and `now` is later than at the last call.
    void Start(CTime now);
    void Stop() { worker.Stop(); }
    bool HasWorker() const { return worker.IsThere(); }
    /// What a round at `time` would find and delete. It deletes nothing; files that are in use it can't tell.
    DiskSpacePlan Plan(CTime time) const;

protected:
    void DeleteOldFiles(CTime time);  ///< a round in the caller's thread

private:
    using TypeFolders = std::vector<TypeFolder>;
    TypeFolders FindTypeFolders() const;
    void Round(const std::atomic<bool>& stop);
    DiskSpacePlan PlanIn(CTime time, const TypeFolder& type, std::uint64_t freed, const std::atomic<bool>& stop) const;
    void DeleteOldFilesIn(CTime time, const TypeFolder& type, const std::atomic<bool>& stop);

    ReportTarget reports;
    // Fixed while the worker is there.
    bool maxDaysEnabled = false;
    int maxDays = 0;
    bool minFreeEnabled = false;
    std::uint64_t minFree = 0;  ///< bytes

    std::mutex mutex;  // guards the request
    CTime requestedTime = 0;
    TypeFolders requestedTypes;
    RoundWorker worker;  // the last member: it ends before what it uses
};

}  // namespace orv
