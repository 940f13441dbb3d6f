#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "platform/watch/Subscriber.h"

namespace orv::test {

/// Counts its calls, which come on another thread.
class CountingSubscriber : public Subscriber {
public:
    void OnNotify() override {
        const std::lock_guard lock(mutex);
        ++calls;
        changed.notify_all();
    }
    bool Within(std::chrono::milliseconds time, int wanted) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, time, [&] { return calls >= wanted; });
    }
    bool Reaches(int wanted) { return Within(std::chrono::seconds(20), wanted); }
    int Calls() {
        const std::lock_guard lock(mutex);
        return calls;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    int calls = 0;
};

}  // namespace orv::test
