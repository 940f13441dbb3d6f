#pragma once

#include <atomic>

#include "platform/Export.h"

namespace orv {

/// A lock that its holder may take again, for stretches of well under a microsecond: who has to wait looks again for a
/// while before going to sleep, so that threads that query all the time don't pay a system call a query. A Lockable of
/// the standard library. Not fair: under load a thread may get several turns in a row.
class ORV_EXPORT CriticalSection {
public:
    void lock();
    [[nodiscard]] bool try_lock();
    void unlock();

private:
    void Wait();
    enum : int { kFree, kHeld, kHeldAndAwaited };
    std::atomic<int> state = kFree;
    std::atomic<const void*> owner = nullptr;  // compared with the caller's own mark only
    int depth = 0;                             // the owner's alone
};

}  // namespace orv
