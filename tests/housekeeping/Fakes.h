#pragma once

#include <atomic>
#include <future>

#include "housekeeping/BaseORVMessage.h"
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

/// The real files with a free space as a test says. In force while it lives.
class SimulatedDisk : public FailingFileSystem {
public:
    SimulatedDisk() : FailingFileSystem(0) { SetFileSystem(this); }
    ~SimulatedDisk() override { SetFileSystem(nullptr); }
    std::optional<std::uint64_t> FreeSpace(std::wstring_view) override { return free; }
    FsResult List(std::wstring_view folder, std::vector<FolderEntry>& entries) override {
        ++listings;
        return FailingFileSystem::List(folder, entries);
    }
    std::optional<std::uint64_t> free;
    std::atomic<int> listings = 0;
};

/// A message log that can be waited for.
class AwaitedLog : public BaseORVMessage {
public:
    AwaitedLog() {
        SetMessageDelivery([this](AbstractORVMessage&, bool) {
            if (!arrived.exchange(true)) first.set_value();
        });
    }
    ~AwaitedLog() override { SetMessageDelivery({}); }
    void WaitForFirst() { first.get_future().wait(); }
    /// All texts so far that weren't asked for before, without their times.
    std::wstring Texts() {
        std::wstring texts;
        for (Message<wchar_t> message; GetUnusedMessage(message);) texts += message.GetText().substr(22) + L"\n";
        return texts;
    }

private:
    std::promise<void> first;
    std::atomic<bool> arrived = false;
};

}  // namespace orv::test
