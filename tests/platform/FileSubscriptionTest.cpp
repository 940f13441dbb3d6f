#include "platform/watch/FileSubscription.h"

#include <chrono>
#include <filesystem>

#include "platform/os/FileSystem.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "support/CountingSubscriber.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

using test::CountingSubscriber;

TEST(FileSubscription, TellsOfOthersChangesOnly) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"gauge.tdg";
    CountingSubscriber counter;
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
    CountingSubscriber counter;
    FileSubscription subscription;
    subscription.SetSubscriber(&counter, false);
    subscription.Subscribe(folder / L"later/gauge.tdg");
    test::MakeFolders(folder / L"later");
    test::WriteBytes(folder / L"later/gauge.tdg", "x");
    EXPECT_TRUE(counter.Reaches(1));
}

TEST(FileSubscription, LooksInTurnBesideAFolderThatIsNeverQuiet) {
    const test::TempFolder folder;
    test::MakeFolders(folder / L"busy");
    CountingSubscriber busy, polled;
    FileSubscription ofBusy, ofPolled;
    ofBusy.SetSubscriber(&busy, false);
    ofPolled.SetSubscriber(&polled, false);
    ofBusy.Subscribe(folder / L"busy/other");
    ofPolled.Subscribe(folder / L"later/gauge.tdg");
    test::MakeFolders(folder / L"later");
    ASSERT_EQ(SaveWholeFile(folder / L"later/gauge.tdg", "x"), FsResult::Ok);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (polled.Calls() == 0 && std::chrono::steady_clock::now() < end) test::WriteBytes(folder / L"busy/log", "x");
    EXPECT_EQ(polled.Calls(), 1);
}

TEST(FileSubscription, FollowsFoldersAndLinks) {
    const test::TempFolder folder;
    test::MakeFolders(folder / L"used");
    test::MakeFolders(folder / L"kept");
    test::WriteBytes(folder / L"kept/gauge.tdg", "1");
    std::filesystem::create_symlink("kept/gauge.tdg", PathToBytes(folder / L"link.tdg"));
    CountingSubscriber ofFile, ofLink;
    FileSubscription used, linked;
    used.SetSubscriber(&ofFile, false);
    linked.SetSubscriber(&ofLink, false);
    used.Subscribe(folder / L"used/gauge.tdg");
    linked.Subscribe(folder / L"link.tdg");
    ASSERT_EQ(SaveWholeFile(folder / L"kept/gauge.tdg", "2"), FsResult::Ok);
    EXPECT_TRUE(ofLink.Reaches(1));

    ASSERT_EQ(Files().Rename(folder / L"used", folder / L"aside"), FsResult::Ok);
    test::MakeFolders(folder / L"used");
    ASSERT_EQ(SaveWholeFile(folder / L"used/gauge.tdg", "x"), FsResult::Ok);
    EXPECT_TRUE(ofFile.Reaches(1));
    ASSERT_EQ(Files().Rename(folder / L"aside", folder / L"used/aside"), FsResult::Ok);  // touches a watched folder
    test::WriteBytes(folder / L"used/aside/gauge.tdg", "of nobody");
    used.Check();
    EXPECT_EQ(ofFile.Calls(), 1);
}

TEST(FileSubscription, SubscriberMayReplaceItself) {
    struct Once : Subscriber {
        Once(FileSubscription& on, int& counter, int& seen) : subscription(on), gone(counter), within(seen) {}
        ~Once() override { ++gone; }
        void OnNotify() override {
            subscription.SetSubscriber(nullptr, false);
            within = gone;
        }
        FileSubscription& subscription;
        int &gone, &within;
    };
    const test::TempFolder folder;
    FileSubscription subscription;
    int gone = 0, within = -1;
    auto* once = new Once(subscription, gone, within);
    subscription.SetSubscriber(once, true);
    subscription.SetSubscriber(once, true);
    EXPECT_EQ(gone, 0);
    subscription.Subscribe(folder / L"gauge.tdg");
    ASSERT_EQ(SaveWholeFile(folder / L"gauge.tdg", "x"), FsResult::Ok);
    subscription.Check();
    subscription.SetSubscriber(nullptr, false);  // waits, if the other thread was first
    EXPECT_EQ(within, 0);
    EXPECT_EQ(gone, 1);
}

}  // namespace
}  // namespace orv
