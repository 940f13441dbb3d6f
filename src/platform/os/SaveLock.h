#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/os/FileSystem.h"

namespace orv {

/// The right to save a file that several hosts share. Held by the one whose lock file, NAME.lock beside the file, is in
/// place: it appears whole, in one step, names host and process, and its beat counts on while it is held. It works
/// where locks of the system don't reach from one computer to another: only making and renaming files must be seen by
/// all.
///
/// A lock whose beat stands still for ten seconds, or whose process is known to have ended, is taken over. A holder
/// that was stopped for so long and wakes up finds by `IsHeld` that the right is gone. One thread; waits in `Take`.
class ORV_EXPORT SaveLock {
public:
    static constexpr std::chrono::milliseconds kBeat{2'000}, kStale{10'000}, kPatience{30'000};

    explicit SaveLock(std::wstring_view file);
    ~SaveLock();
    SaveLock(const SaveLock&) = delete;
    SaveLock& operator=(const SaveLock&) = delete;

    /// Waits for others. InUse when they hold it longer than `patience`; other failures as the folder gives them.
    [[nodiscard]] FsResult Take(std::chrono::milliseconds patience = kPatience);
    bool IsHeld() const;  ///< looks at the lock file
    void Release();       ///< also by the destructor
    /// "host, process 123": who held it when `Take` gave up.
    const std::wstring& Holder() const { return holder; }

private:
    class Beat;
    struct Seen;
    FsResult Place();
    void Wait(Seen& seen);
    void TakeOver(const Seen& seen, int attempt) const;
    void RemoveOldTraces() const;

    std::wstring lockPath, token, holder;
    std::unique_ptr<Beat> beat;  // while held
    std::chrono::steady_clock::time_point taken;
};

}  // namespace orv
