#include "platform/os/CriticalSection.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace orv {

namespace {

thread_local const char threadMark = 0;  // its address tells the thread

void Pause(int times) {
    for (; times > 0; --times) {
#if defined(__x86_64__) || defined(__i386__)
        _mm_pause();
#endif
    }
}

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

// Longer and longer between the looks: each look takes the cache line from the holder. The last ones are some tens of
// microseconds apart from the first, about what going to sleep and waking would cost.
void CriticalSection::Wait() {
    for (int pause = 4; pause <= 1024; pause *= 2) {
        Pause(pause);
        int expected = kFree;
        if (state.load(std::memory_order_relaxed) == kFree &&
            state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire)) {
            return;
        }
    }
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
