#pragma once

#include <functional>
#include <thread>

#include "platform/Export.h"

namespace orv {

/// A thread at the system's lowest priority, for work that must never be in the way. Joined at the latest when it goes.
/// One thread starts and joins it.
class ORV_EXPORT WorkerThread {
public:
    WorkerThread() = default;
    ~WorkerThread() { Join(); }
    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;

    void Start(std::function<void()> work);  ///< only while none is there
    bool IsThere() const { return thread.joinable(); }
    void Join();  ///< waits without limit; nothing to do if none is there

private:
    std::thread thread;
};

}  // namespace orv
