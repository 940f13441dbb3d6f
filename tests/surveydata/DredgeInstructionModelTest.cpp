#include "surveydata/DredgeInstructionModel.h"

#include "core/FileObject.h"
#include "platform/text/PathText.h"
#include "project/FileDependencies.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

std::string Saved(const DredgeInstructionModel& model) {
    FileObject file;
    file.SetItem(L"Old", L"Key", L"gone", true);
    EXPECT_TRUE(model.FileSave(file));
    memfile bytes;
    file.FileSave(bytes);
    return *bytes.SharedBytes();
}

FileObject FromText(const std::string& text) {
    FileObject file;
    EXPECT_TRUE(file.FileOpen(memfile(text.data(), text.size(), textencoding::utf8), L""));
    return file;
}

constexpr char kFile[] =
    "[Dredge Instruction]\r\nOrderNummer=A-7\r\nGridModel=Survey\r\nDesignModelType=DigitalTerrainModel\r\n"
    "DesignModelName=Design\r\nDepthOffset=-0.25\r\nDredgePolygon=Box\r\nUseUpdateGridModel=0\r\n"
    "UpdateGridModel=Up\r\nDesignUpdateGridModel=UpDesign\r\nDescription=one\\ntwo\r\nClass=B\r\n"
    "DisposalPolygon=Dump\r\nUseHistoricalTracks=1\r\nHTStartDateTimeStamp=1600000000000\r\n"
    "HTEndDateTimeStamp=1.5\r\nHTFileName=Tracks\r\n\r\n[Historical Tracks]\r\nVessel(0)=Z\r\nVessel(1)=A\r\n";

TEST(DredgeInstructionModel, SavesWhatItRead) {
    DredgeInstructionModel model;
    EXPECT_FALSE(model.IsInit());
    EXPECT_TRUE(model.FileOpen(FromText(kFile)) && model.IsInit());
    EXPECT_EQ(model.GetDescriptionName(), L"one\r\ntwo");
    EXPECT_EQ(model.GetDesignModelType(), 26u);
    EXPECT_EQ(model.GetHistoricalTrackNames(), (std::vector<std::wstring>{L"Z", L"A"}));
    EXPECT_EQ(model.GetInstructionDateTime(), 0);
    EXPECT_EQ(Saved(model), kFile);
    EXPECT_TRUE(model.FileOpen(FromText("[Historical Tracks]\n9=N\n[Dredge Instruction]\nClass=C\n")));
    EXPECT_EQ(model.GetHistoricalTrackNames().size(), 3u);  // added
    EXPECT_EQ(model.GetOrderNummer() + model.GetClassName(), L"A-7C");
}

TEST(DredgeInstructionModel, DesignModels) {
    const struct {
        const char* items;
        unsigned type;
        const wchar_t* name;
        const char* saved;
    } rows[] = {{"3DDesignModel=D\nDesignModelType=PolyClip\nDesignModelName=P", 52, L"D", "3DDesignModel=D\r\nDepth"},
                {"3DDesignModel=", 52, L"", "3DDesignModel=\r\nDepth"},
                {"DesignModelName=P", 52, L"P", "3DDesignModel=P\r\nDepth"},
                {"Class=C", 52, L"", "3DDesignModel=\r\nDepth"},
                {"DesignModelType=PolyClip", 31, L"", "DesignModelType=PolyClip\r\nDesignModelName=\r\nDepth"},
                {"DesignModelType=Newer\nDesignModelName=P", 0xFFFFFFFF, L"P",
                 "DesignModelType=Newer\r\nDesignModelName=P\r\nDepth"}};
    for (const auto& row : rows) {
        DredgeInstructionModel model;
        model.FileOpen(FromText("[Dredge Instruction]\n" + std::string(row.items) + "\n"));
        EXPECT_EQ(model.GetDesignModelType(), row.type) << row.items;
        EXPECT_EQ(model.GetDesignModelName(), row.name) << row.items;
        const std::string saved = Saved(model);
        EXPECT_NE(saved.find("GridModel=\r\n" + std::string(row.saved)), std::string::npos) << saved;
        EXPECT_EQ(saved.find("Historical Tracks"), std::string::npos);
        model.SetDesignModelType(9999);
        EXPECT_NE(Saved(model).find("DesignModelType=\r\n"), std::string::npos) << "the type read is replaced";
    }
}

TEST(DredgeInstructionModel, WhatItNeeds) {
    const test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    const std::wstring path = installation.ProjectFolder() + L"Order.dri";
    const struct {
        const char* items;  // they come last, so they hold
        const wchar_t* needed;
    } rows[] = {{"", L"Design Survey Box Dump Tracks "},
                {"UseUpdateGridModel=1\n", L"UpDesign Up Box Dump Tracks "},
                {"UseUpdateGridModel=1\nDesignModelType=DesignModel3D\n", L"Design Up Box Dump Tracks "},
                {"UseHistoricalTracks=0\nDredgePolygon=\n", L"Design Survey Dump "}};
    for (const auto& row : rows) {
        test::WriteBytes(path, std::string(kFile) + "[Dredge Instruction]\n" + row.items);
        FileDependencies needs;
        needs.Add(path);
        std::wstring names;
        for (int at = 1; at < needs.GetSize(); ++at) names += GetTitleFromPath(needs[at]) + L" ";
        // No project is open that would tell where its logs lie.
        for (const FileDependencies::Unresolved& lost : needs.GetUnresolved()) names += lost.name + L" ";
        EXPECT_EQ(names, row.needed);
    }
    FileObject file;
    DredgeInstructionModel model;
    EXPECT_TRUE(file.FileOpen(path, kOpenRead) && model.FileOpen(file));
    EXPECT_GT(model.GetInstructionDateTime(), 1.6e12);
}

}  // namespace
}  // namespace orv
