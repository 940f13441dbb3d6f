#include "platform/notify/Notices.h"

#include "platform/notify/Errors.h"
#include "support/TestSupport.h"

namespace orv::test {

TEST(Notices, RecordersNest) {
    const NoticeRecorder outer;
    {
        const NoticeRecorder inner;
        Notify(Notice::Alert, L"in");
        EXPECT_EQ(inner.Text(Notice::Alert), L"in\n");
    }
    Notify(Notice::Message, L"out");
    FileError(L"/a.prj", FileError::GENERAL).Report(L"bad digest");
    EXPECT_EQ(outer.Text(Notice::Message), L"out\n");
    EXPECT_EQ(outer.Text(Notice::ErrorReport), L"/a.prj: bad digest\n");
}

TEST(Notices, CallbackMayNotifyAndReplaceItself) {
    const NoticeRecorder recorder;
    SetNotice(Notice::Alert, [](std::wstring_view text) {
        SetNotice(Notice::Alert, {});
        Notify(Notice::Message, text);
    });
    Notify(Notice::Alert, L"once");
    EXPECT_EQ(recorder.Text(Notice::Message), L"once\n");
    testing::internal::CaptureStderr();
    Notify(Notice::Alert, L"by\ndefault ä");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orv alert: by default \u00E4\n");
}

}  // namespace orv::test
