#pragma once

#include <atomic>
#include <functional>

#include "platform/Export.h"
#include "platform/os/AutoResetEvent.h"
#include "platform/os/WorkerThread.h"

namespace orv {

/// A background worker that makes a round each time it is woken; woken during a round, it makes one more behind it. A
/// round that fails by an exception is told of, and the worker waits for the next request.
/// `Wake` and `Stop` belong to one thread.
class ORV_EXPORT RoundWorker {
public:
    /// `round` runs on the worker's thread and asks `stop` between its steps.
    using Round = std::function<void(const std::atomic<bool>& stop)>;
    explicit RoundWorker(Round whatToDo) : round(std::move(whatToDo)) {}
    ~RoundWorker() { Stop(); }
    RoundWorker(const RoundWorker&) = delete;
    RoundWorker& operator=(const RoundWorker&) = delete;

    bool Wake();  ///< starts the thread if there is none; false, and that was told, if the system has none to give
    void Stop();  ///< waits until the step under way is over
    bool IsThere() const { return thread.IsThere(); }

private:
    void Run();
    const Round round;
    std::atomic<bool> stop{false};
    AutoResetEvent wake;
    WorkerThread thread;
};

}  // namespace orv
