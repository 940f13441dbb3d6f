#include "platform/os/TimedMutex.h"

namespace orv {

bool TimedMutex::Lock(std::chrono::milliseconds limit) {
    const std::thread::id self = std::this_thread::get_id();
    if (owner.load(std::memory_order_relaxed) == self) {
        ++depth;
        return true;
    }
    std::unique_lock lock(mutex);
    if (held && !freed.wait_for(lock, limit, [&] { return !held; })) return false;  // a free one asks no clock
    held = true;
    depth = 1;
    owner.store(self, std::memory_order_relaxed);
    return true;
}

void TimedMutex::Unlock() {
    if (--depth > 0) return;
    const std::lock_guard lock(mutex);
    owner.store({}, std::memory_order_relaxed);
    held = false;
    freed.notify_one();  // under the lock: whoever is woken may destroy this object
}

}  // namespace orv
