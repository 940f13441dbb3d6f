#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/Export.h"

namespace orv {

/// Tells whoever wants to know that something of the process has changed: a code for what, a text for which. Any
/// thread may call; callbacks run on the notifying thread, which may hold locks: they must not wait for others.
class ORV_EXPORT SubscriptionManager {
public:
    using Callback = std::function<void(int code, const std::wstring& which)>;

    static SubscriptionManager& Instance();
    int Subscribe(Callback callback);  ///< a number to unsubscribe by
    void Unsubscribe(int number);      ///< a call that is under way may still end after it
    void Notify(int code, const std::wstring& which);

private:
    SubscriptionManager() = default;
    std::mutex mutex;
    std::map<int, std::shared_ptr<const Callback>> callbacks;  // guarded by mutex
    int last = 0;
};

}  // namespace orv
