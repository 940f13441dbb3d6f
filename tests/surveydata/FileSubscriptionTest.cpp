#include "platform/watch/FileSubscription.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "platform/os/FileTools.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

class Counter : public Subscriber {
public:
    void OnNotify() override {
        const std::lock_guard lock(mutex);
        ++calls;
        changed.notify_all();
    }
    bool Reaches(int wanted) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(20), [&] { return calls >= wanted; });
    }
    int Calls() {
        const std::lock_guard lock(mutex);
        return calls;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    int calls = 0;
};

TEST(FileSubscription, TellsOfOthersChangesOnly) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"gauge.tdg";
    Counter counter;
    FileSubscription subscription;
    subscription.SetSubscriber(&counter, false);
    subscription.Subscribe(path);
    ASSERT_EQ(SaveWholeFile(path, "made"), FsResult::Ok);
    EXPECT_TRUE(counter.Reaches(1));
    ASSERT_EQ(SaveWholeFile(path, "changed"), FsResult::Ok);
    EXPECT_TRUE(counter.Reaches(2));

    subscription.Unsubscribe();
    ASSERT_EQ(SaveWholeFile(path, "our own"), FsResult::Ok);
    subscription.Subscribe(path);
    test::WriteBytes(folder / L"neighbour", "x");
    subscription.Check();
    EXPECT_EQ(counter.Calls(), 2);

    subscription.SetNoContinuation(true);
    ASSERT_EQ(SaveWholeFile(path, "once more"), FsResult::Ok);
    EXPECT_TRUE(counter.Reaches(3));
    ASSERT_EQ(SaveWholeFile(path, "and again"), FsResult::Ok);
    subscription.Check();
    EXPECT_EQ(counter.Calls(), 3);
}

TEST(FileSubscription, LooksInTurnWhereThereIsNoFolder) {
    const test::TempFolder folder;
    Counter counter;
    FileSubscription subscription;
    subscription.SetSubscriber(&counter, false);
    subscription.Subscribe(folder / L"later/gauge.tdg");
    test::MakeFolders(folder / L"later");
    test::WriteBytes(folder / L"later/gauge.tdg", "x");
    EXPECT_TRUE(counter.Reaches(1));
}

}  // namespace
}  // namespace orv
