#include "platform/os/CriticalSection.h"

#include "platform/os/Spin.h"

namespace orv {

namespace {

thread_local const char threadMark = 0;  // its address tells the thread

}  // namespace

bool CriticalSection::try_lock() {
    if (owner.load(std::memory_order_relaxed) != &threadMark) {
        int expected = kFree;
        if (!state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire)) return false;
        owner.store(&threadMark, std::memory_order_relaxed);
    }
    ++depth;
    return true;
}

void CriticalSection::lock() {
    if (try_lock()) return;
    Wait();
    owner.store(&threadMark, std::memory_order_relaxed);
    depth = 1;
}

void CriticalSection::Wait() {
    const auto take = [&] {
        int expected = kFree;
        return state.load(std::memory_order_relaxed) == kFree &&
               state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire);
    };
    if (SpinFor(take)) return;
    while (state.exchange(kHeldAndAwaited, std::memory_order_acquire) != kFree) {
        state.wait(kHeldAndAwaited, std::memory_order_relaxed);
    }
}

void CriticalSection::unlock() {
    if (--depth > 0) return;
    owner.store(nullptr, std::memory_order_relaxed);
    if (state.exchange(kFree, std::memory_order_release) == kHeldAndAwaited) state.notify_one();
}

}  // namespace orv
