#pragma once

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace orv {

/// Asks `take` until it says true, longer and longer between the looks: each look takes the cache line from the holder
/// of a lock. The last ones are some tens of microseconds apart from the first, about what going to sleep and waking
/// would cost; false then.
template <class Take>
bool SpinFor(Take take) {
    for (int pause = 4; pause <= 1024; pause *= 2) {
        for (int i = 0; i < pause; ++i) {
#if defined(__x86_64__) || defined(__i386__)
            _mm_pause();
#endif
        }
        if (take()) return true;
    }
    return false;
}

}  // namespace orv
