#pragma once

#include <memory>
#include <string>

#include "platform/Export.h"
#include "platform/watch/Subscriber.h"

namespace orv {

/// Watches one file and calls a subscriber when another has changed, made or deleted it. Whoever saves the file itself
/// unsubscribes before and subscribes again after, and isn't told.
///
/// The folder is watched through inotify, as a save puts a new file in the place of the old one, and that of the file
/// behind a link, too; where events don't come (network and user-space volumes, a folder that isn't there) the file is
/// looked at every two seconds, elsewhere every ten, for volumes that promise events and send none. The subscriber is
/// called on one background thread that serves all subscriptions. Any thread may call; the destructor and
/// `SetSubscriber` wait for a call that is under way, so they must run without a lock that the subscriber takes.
class ORV_EXPORT FileSubscription {
public:
    FileSubscription();
    ~FileSubscription();
    FileSubscription(const FileSubscription&) = delete;
    FileSubscription& operator=(const FileSubscription&) = delete;

    /// From what the file is now; replaces an earlier subscription.
    void Subscribe(const std::wstring& path);
    /// Doesn't wait: a call that is under way may still end after it.
    void Unsubscribe();
    /// May be called from within a call, too: the subscriber that is replaced lives until that call has ended. The same
    /// subscriber again changes only who owns it.
    void SetSubscriber(Subscriber* subscriber, bool owned);
    Subscriber* GetSubscriber() const;
    /// While it is set, a subscription ends with its first call.
    void SetNoContinuation(bool once);
    /// Looks at the file now and calls the subscriber, on this thread, if it has changed.
    void Check();

    struct State;

private:
    std::shared_ptr<State> state;  // shared with the background thread
};

}  // namespace orv
