#include "platform/os/TimedMutex.h"

#include "platform/os/Spin.h"

namespace orv {

TimedMutex::~TimedMutex() {
    const std::lock_guard lock(mutex);  // whoever gave it free may still be on the way out of Unlock
}

bool TimedMutex::Take() {
    int expected = kFree;
    return state.load(std::memory_order_relaxed) == kFree &&
           state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire);
}

bool TimedMutex::Lock(std::chrono::milliseconds limit) {
    const std::thread::id self = std::this_thread::get_id();
    if (owner.load(std::memory_order_relaxed) == self) {
        ++depth;
        return true;
    }
    if (!Take() && !SpinFor([&] { return Take(); }) && !Wait(limit)) return false;
    depth = 1;
    owner.store(self, std::memory_order_relaxed);
    return true;
}

bool TimedMutex::Wait(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(mutex);
    bool late = false;
    while (state.exchange(kHeldAndAwaited, std::memory_order_acquire) != kFree) {
        if (late) return false;
        late = freed.wait_until(lock, deadline) == std::cv_status::timeout;
    }
    return true;
}

void TimedMutex::Unlock() {
    if (--depth > 0) return;
    owner.store({}, std::memory_order_relaxed);
    int expected = kHeld;
    if (state.compare_exchange_strong(expected, kFree, std::memory_order_release)) return;
    // Under the lock: whoever is woken may destroy this object.
    const std::lock_guard lock(mutex);
    state.store(kFree, std::memory_order_release);
    freed.notify_one();
}

}  // namespace orv
