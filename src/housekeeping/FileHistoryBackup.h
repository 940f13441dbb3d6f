#pragma once

#include <mutex>

#include "housekeeping/FileHistory.h"
#include "housekeeping/RoundWorker.h"

namespace orv {

/// Runs the file history in the background. All operations belong to the main thread; `LoadSettings` only with the
/// worker stopped. A message log that is going to end is taken away with `SetMessageLog(nullptr)` first.
class ORV_EXPORT FileHistoryBackup : public FileHistory {
public:
    static FileHistoryBackup& Instance();
    FileHistoryBackup();

    /// Asks for a round with the state of `now`, if the history is on and `now` is later than at the last call.
    void Start(CTime now);
    void Stop() { worker.Stop(); }

private:
    void Round(const std::atomic<bool>& stop);

    std::mutex mutex;  // guards the request
    CTime requestedTime = 0;
    TypeFolders requestedTypes;
    RoundWorker worker;  // the last member: it ends before what it uses
};

}  // namespace orv
