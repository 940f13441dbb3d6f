// Watching a file that another program changes; here this program plays the other's part.
#include <core/FileObject.h>
#include <platform/watch/FileSubscription.h>

#include <future>

#include "Start.h"

// quote: watch
/// Called on a background thread: it only passes the news on.
class Reload : public orv::Subscriber {
public:
    void OnNotify() override {
        if (!told.exchange(true)) changed.set_value();
    }
    std::promise<void> changed;

private:
    std::atomic<bool> told = false;
};
// quote end

int main(int argc, char** argv) {
    if (!Start(argc, argv)) return 1;
    std::wstring path = L"Sounder[navigate]";
    orv::DataSearch::GetDataSearch().GetFullPath(orv::kFileTypeVesselConfig, path);

    Reload reload;
    orv::FileSubscription subscription;
    subscription.SetSubscriber(&reload, false);  // goes first: it waits for a call that is under way
    subscription.Subscribe(path);

    orv::FileObject other;
    if (!other.FileOpen(path, orv::kOpenRead)) return 1;
    other.SetItem(L"GEOMETRY", L"Draft", 1.45, true);
    if (!other.FileSave(L"", orv::kSave)) return 1;

    const auto waited = reload.changed.get_future().wait_for(std::chrono::seconds(10));
    std::puts(waited == std::future_status::ready ? "the vessel has changed: read it again" : "no news");
    return waited == std::future_status::ready ? 0 : 1;
}
