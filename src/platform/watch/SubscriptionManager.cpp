#include "platform/watch/SubscriptionManager.h"

#include <utility>
#include <vector>

namespace orv {

SubscriptionManager& SubscriptionManager::Instance() {
    static SubscriptionManager instance;
    return instance;
}

int SubscriptionManager::Subscribe(Callback callback) {
    const std::lock_guard lock(mutex);
    callbacks[++last] = std::make_shared<const Callback>(std::move(callback));
    return last;
}

void SubscriptionManager::Unsubscribe(int number) {
    const std::lock_guard lock(mutex);
    callbacks.erase(number);
}

void SubscriptionManager::Notify(int code, const std::wstring& which) {
    std::vector<std::shared_ptr<const Callback>> called;  // may subscribe and unsubscribe meanwhile
    {
        const std::lock_guard lock(mutex);
        for (const auto& [number, callback] : callbacks) called.push_back(callback);
    }
    for (const auto& callback : called) (*callback)(code, which);
}

}  // namespace orv
