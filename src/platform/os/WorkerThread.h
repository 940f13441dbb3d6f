#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <string_view>
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

    /// Only while none is there. False, and that was told, if the system has no thread to give.
    [[nodiscard]] bool Start(std::function<void()> work);
    bool IsThere() const { return thread.joinable() && !ended; }  ///< and its work hasn't ended by itself
    void Join();  ///< waits without limit; nothing to do if none is there
    /// Says what failed in the background, as nobody waits there for a result.
    static void Tell(std::wstring_view what, const std::exception& failure) noexcept;

private:
    std::atomic<bool> ended{false};
    std::thread thread;
};

}  // namespace orv
