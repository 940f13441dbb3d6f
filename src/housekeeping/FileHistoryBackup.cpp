#include "housekeeping/FileHistoryBackup.h"

#include "core/DataSearch.h"

namespace orv {

FileHistoryBackup& FileHistoryBackup::Instance() {
    DataSearch::GetDataSearch();  // made first, so that it outlives the worker
    static FileHistoryBackup backup;
    return backup;
}

FileHistoryBackup::FileHistoryBackup() : worker([this](const std::atomic<bool>& stop) { Round(stop); }) {}

void FileHistoryBackup::Start(CTime now) {
    if (!IsEnabled() || now <= requestedTime) return;
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

void FileHistoryBackup::Round(const std::atomic<bool>& stop) {
    CTime time = 0;
    TypeFolders types;
    {
        const std::lock_guard lock(mutex);
        time = requestedTime;
        types = requestedTypes;
    }
    if (time > 0) MakeBackup(types, time, stop);
}

}  // namespace orv
