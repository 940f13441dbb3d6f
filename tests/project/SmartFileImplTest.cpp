#include "project/SmartFileImpl.h"

#include "core/ConfigKeys.h"
#include "project/ProjectDefinition.h"
#include "project/VesselEditors.h"
#include "support/CountingSubscriber.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

using test::CountingSubscriber;

TEST(SmartFileImpl, TellsOfOthersSavesAndNotOfItsOwn) {
    const test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    const std::wstring path = installation.ProjectFolder() + L"Job.acf";
    test::WriteBytes(path, "[A]\nB=1\n");
    CountingSubscriber counter;
    SmartFileImpl file(std::make_unique<FileObject>());
    EXPECT_FALSE(file.FileOpen(3, L"") || file.FileSave(3, L"") || file.FileOpen(3, L"none"));
    file.SetSubscriber(&counter, false);
    ASSERT_TRUE(file.FileOpen(3, L"Job"));
    file.GetFileObject().SetItem(L"A", L"B", 2, true);
    ASSERT_TRUE(file.FileSave(3, L"Job"));
    FileObject other;
    ASSERT_TRUE(other.FileOpen(path, kOpenRead));
    EXPECT_FALSE(counter.Within(std::chrono::milliseconds(50), 1)) << "its own save";
    ASSERT_TRUE(other.SetItem(L"A", L"B", 3, false) && other.FileSave(L"", kSave));
    EXPECT_TRUE(counter.Reaches(1)) << "another's, after a save of its own";
    file.SetMergeSave(true);
    int value = 0;
    ASSERT_TRUE(file.GetFileObject().SetItem(L"A", L"C", 1, true) && file.FileSave(3, L"Job"));
    EXPECT_TRUE(file.GetFileObject().GetItem(L"A", L"B", value) && value == 3) << "the other's change is kept";
    EXPECT_FALSE(counter.Within(std::chrono::milliseconds(50), 2));
    file.FileClose();
    EXPECT_FALSE(file.GetFileObject().FileInitialised());
    file.Unsubscribe();
    ASSERT_TRUE(other.SetItem(L"A", L"B", 4, false) && other.FileSave(L"", kSave));
    ASSERT_TRUE(file.FileOpen(3, L"Job"));
    EXPECT_FALSE(counter.Within(std::chrono::milliseconds(50), 2)) << "from before the subscription";
}

TEST(VesselEditors, OffsetKeepsItsNameButOnlyOkChangesIt) {
    const test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    ASSERT_TRUE(project.CreateDefaultFile(installation.ProjectFolder(), true));
    int result = kDialogCancel;
    unsigned flags = 99;
    VesselOffsetEditor editor([&](OffsetDialog& dialog) {
        flags = dialog.feetFlags;
        dialog.offset.name += L" 2";
        dialog.offset.z += 1;
        return result;
    });
    editor.SetData({L"Antenna", 1, 2, 3});
    EXPECT_EQ(editor.DoModal(), kDialogCancel);
    EXPECT_EQ(editor.GetOffsetName() + L"," + editor.GetData().name, L"Antenna 2,Antenna");
    EXPECT_EQ(flags, 0u) << "metres have no inches";
    result = kDialogOk;
    project.GetUnitCnv()->SetUnit(1, 0.3048, 0, L"ft", L"International Feet", L"");
    EXPECT_EQ(editor.DoModal(), kDialogOk);
    EXPECT_EQ(editor.GetData().z, 4);
    EXPECT_EQ(flags, 7u);

    CVesselPointDlg point;
    VesselPoint out;
    EXPECT_FALSE(point.GetData(out));
    point.name = L"Bow";
    point.penEntry = 2;
    EXPECT_TRUE(point.GetData(out) && out.pen == 257);
    point.SetData({L"Stern", 1, -2, 257}, 4);
    EXPECT_TRUE(point.penEntry == 2 && point.y == -2 && point.name == L"Stern" && point.GetLabels()[1] == L"Z");
    point.SetData({L"Stern", 1, -2, 2}, 1);
    EXPECT_FALSE(point.GetData(out)) << "no pen of the list";
    std::wstring labels;
    for (int side = 1; side <= 6; ++side) {
        point.SetViewSide(side);
        labels += point.GetLabels()[0] + point.GetLabels()[1] + L" ";
    }
    EXPECT_EQ(labels, L"XY YZ YZ XZ XZ XY ");
}

}  // namespace
}  // namespace orv
