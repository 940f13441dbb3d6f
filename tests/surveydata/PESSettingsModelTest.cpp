#include "surveydata/PESSettingsModel.h"

#include "core/FileObject.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

TEST(PESSettingsModel, SavesAndLoads) {
    const test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    PESSettingsModel& model = PESSettingsModel::Instance();
    EXPECT_FALSE(model.FileOpen(L"") || model.FileSave(L"") || model.FileOpen(L"missing"));
    PESSettings settings;
    settings.vesselName = L"Waverly";
    settings.vesselLength = 73.25;
    settings.vesselTurnPoint = 40;
    settings.widthMarginMode = 2;
    settings.lengthTotal = L"78.25 m";
    settings.bacRadius = 12;
    settings.tide = -0.5;
    model.SetPESSettings(settings);
    model.SetRouteName(L"North");
    model.SetAVIFileName(L"north.avi");
    EXPECT_TRUE(model.FileSave(L"Entrance"));

    model.SetPESSettings({});
    model.SetRouteName(L"");
    model.SetPESRouteValid(true);
    EXPECT_TRUE(model.FileOpen(L"Entrance"));
    EXPECT_TRUE(model.IsInit() && !model.PESRouteValid());
    settings.designModel3DName = PESSettingsModel::GetPESName();
    settings.workingRadius = 12;
    EXPECT_EQ(model.GetPESSettings(), settings);
    EXPECT_EQ(model.GetRouteName() + model.GetAVIFileName(), L"Northnorth.avi");

    const std::wstring folder = installation.ProjectFolder();
    test::WriteBytes(folder + L"part.pes", "[PESSettings]\nTide=2\nVesselWidth=wide\n");
    EXPECT_TRUE(model.FileOpen(L"part"));
    settings.vesselLength = 0;  // reset; the rest stays
    settings.vesselTurnPoint = 50;
    settings.tide = 2;
    EXPECT_EQ(model.GetPESSettings(), settings);
    test::WriteBytes(folder + L"other.pes", "[Settings]\nTide=2\n");
    PESSettings large = settings;
    large.vesselLength = large.vesselWidth = large.vesselHeight = large.vesselTurnPoint = 9;
    model.SetPESSettings(large);
    EXPECT_FALSE(model.FileOpen(L"other") || model.IsInit());
    EXPECT_EQ(model.GetPESSettings(), settings) << "the vessel is reset before the file is looked for";
}

}  // namespace
}  // namespace orv
