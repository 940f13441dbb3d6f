#pragma once

#include <atomic>

#include "platform/os/Clock.h"
#include "platform/os/FileSystem.h"

namespace orv::test {

/// A clock that goes when it is told, and is the one in force while it lives.
class SetableClock : public Clock {
public:
    explicit SetableClock(std::int64_t utcSeconds) : seconds(utcSeconds) { SetClock(this); }
    ~SetableClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return seconds * 1000; }
    std::atomic<std::int64_t> seconds;
};

}  // namespace orv::test
