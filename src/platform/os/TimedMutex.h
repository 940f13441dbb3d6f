#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/Export.h"

namespace orv {

/// A mutex that its holder may take again and that others wait for with a limit, by a clock that nobody sets. A free
/// one costs two atomic steps; who has to wait looks again for a while before going to sleep.
class ORV_EXPORT TimedMutex {
public:
    TimedMutex() = default;
    ~TimedMutex();
    TimedMutex(const TimedMutex&) = delete;
    TimedMutex& operator=(const TimedMutex&) = delete;
    /// False if somebody else still holds it after `limit`.
    [[nodiscard]] bool Lock(std::chrono::milliseconds limit);
    void Unlock();

private:
    bool Take();
    bool Wait(std::chrono::milliseconds limit);
    enum : int { kFree, kHeld, kHeldAndAwaited };
    std::atomic<int> state = kFree;        // leaves kHeldAndAwaited under `mutex` only
    std::atomic<std::thread::id> owner{};  // compared with the caller's own id only, so an old value does no harm
    int depth = 0;                         // the owner's alone
    std::mutex mutex;                      // of those who wait
    std::condition_variable freed;
};

/// Holds a TimedMutex for a scope, if it was to be had.
class ORV_EXPORT TimedLock {
public:
    TimedLock(TimedMutex& toLock, std::chrono::milliseconds limit) : mutex(toLock), held(toLock.Lock(limit)) {}
    ~TimedLock() {
        if (held) mutex.Unlock();
    }
    TimedLock(const TimedLock&) = delete;
    TimedLock& operator=(const TimedLock&) = delete;
    explicit operator bool() const { return held; }

private:
    TimedMutex& mutex;
    const bool held;
};

}  // namespace orv
