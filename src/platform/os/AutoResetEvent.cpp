#include "platform/os/AutoResetEvent.h"

namespace orv {

void AutoResetEvent::Set() {
    const std::lock_guard lock(mutex);
    on = true;
    changed.notify_one();
}

void AutoResetEvent::Reset() {
    const std::lock_guard lock(mutex);
    on = false;
}

void AutoResetEvent::Wait() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return on; });
    on = false;
}

}  // namespace orv
