#pragma once

#include <condition_variable>
#include <mutex>

#include "platform/Export.h"

namespace orv {

/// A signal that stays on until one waiter has taken it. Any thread may call.
class ORV_EXPORT AutoResetEvent {
public:
    void Set();
    void Reset();
    void Wait();  ///< without limit

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool on = false;
};

}  // namespace orv
