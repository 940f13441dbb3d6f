#include "project/FileDependencies.h"

#include <stdexcept>

#include "project/ProjectModel.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

class DependenciesTest : public testing::Test {
protected:
    DependenciesTest() { EXPECT_TRUE(installation.Start()); }
    void Write(std::wstring_view name, std::string_view text) {
        test::WriteBytes(installation.ProjectFolder() + std::wstring(name), text);
    }
    /// Names of all files, each behind as many dots as it lies deep.
    static std::wstring Listing(const FileDependencies& files) {
        std::wstring text;
        for (int i = 0; i < files.GetSize(); ++i) {
            const std::wstring path = files[i];
            text += std::wstring(static_cast<std::size_t>(files.GetLevel(i)), L'.') +
                    path.substr(path.rfind(L'/') + 1) + L" ";
        }
        return text;
    }
    test::TestInstallation installation;
};

TEST_F(DependenciesTest, AConfigurationLeadsToItsVesselsOnceForEachUse) {
    Write(L"Job[navigate].acf",
          "[Vessel(2)]\nVesselConfig=Tug[navigate]\n[Vessel(1)]\nVesselConfig=Ship[navigate]\n[Vessel(0)]"
          "\nVesselConfig=No\n"
          "[Vessel(3)]\nVesselConfig=Tug[navigate]\n[Vessel(4)]\nVesselConfig=\n[Vessel(5)]\nEnable=1\n");
    FileDependencies files;
    files.Add(L"");
    EXPECT_TRUE(files.Add(3, L"Job[navigate]"));
    EXPECT_EQ(
        Listing(files),
        L"Job[navigate].acf .Ship[navigate].vcf .Ship.vsf .Tug[navigate].vcf .Tug.vsf .Tug[navigate].vcf .Tug.vsf ");
    EXPECT_FALSE(files.Add(3, L"") || files.Add(9999, L"x"));
    ASSERT_EQ(files.GetUnresolved().size(), 1u);
    EXPECT_EQ(files.GetUnresolved()[0].name, L"x");
    files.Add(L"readme.unknown");
    EXPECT_EQ(files[files.GetSize() - 1], L"readme.unknown");
    EXPECT_THROW(files[files.GetSize()], std::invalid_argument);
    EXPECT_THROW(files[-1], std::invalid_argument);
}

TEST_F(DependenciesTest, FilesThatListEachOtherEnd) {
    Write(L"a.pmf", "[ProjectFile]\nFile(0)=a\nFile(1)=b\n");
    Write(L"b.pmf", "[ProjectFile]\nFile(0)=a\n");
    FileDependencies files;
    files.Add(121, L"a");
    EXPECT_EQ(Listing(files), L"a.pmf .a.pmf .b.pmf ..a.pmf ");
    EXPECT_TRUE(files.IsComplete());

    // Each of twelve lists the eleven others: more roads than anybody can walk.
    const std::string names = "abcdefghijkl";
    for (const char name : names) {
        std::string text = "[ProjectFile]\n";
        for (const char other : names) {
            if (other != name) text += std::string("File(") + other + ")=" + other + "\n";
        }
        Write(std::wstring(1, static_cast<wchar_t>(name)) + L".pmf", text);
    }
    FileDependencies many;
    many.Add(121, L"a");
    EXPECT_FALSE(many.IsComplete());
}

TEST_F(DependenciesTest, ModelIsSortedOnReadingAndNumberedOnSaving) {
    ProjectModel& model = ProjectModel::Instance();
    Write(L"#PMF@.pmf", "[DxfDrawing]\nFile(7)=quay\nFile(1)=berth\n[TideStation]\nx=Hoek\n");
    ASSERT_TRUE(model.Open());
    EXPECT_EQ(model.GetColorTableName(), L"default");
    ProjectModel::FileNames names;
    EXPECT_TRUE(model.GetCheckedFiles(24, names));
    EXPECT_EQ(names, (ProjectModel::FileNames{L"berth", L"quay"}));
    EXPECT_TRUE(model.Save() && !model.SetCheckedFile(24, L"quay") && model.SetCheckedFile(24, L"Quay"));
    EXPECT_TRUE(model.RemoveCheckedFile(24, L"berth") && !model.RemoveCheckedFile(24, L"berth"));
    EXPECT_TRUE(model.IsModified());
    EXPECT_TRUE(!model.SetCheckedFile(147, L"x") && !model.SetCheckedFiles(147, {}) && model.GetSize(147) == 0);
    EXPECT_FALSE(model.GetCheckedFiles(147, names) || !names.empty());
    model.SetColorTableName(L"Sand");
    EXPECT_TRUE(model.Save());
    EXPECT_EQ(test::ReadBytes(installation.ProjectFolder() + L"#PMF@.pmf"),
              "[ColorTableName]\nColorTableName=Sand\n\n[DxfDrawing]\nFile(0)=quay\nFile(1)=Quay\n\n"
              "[TideStation]\nFile(0)=Hoek\n");

    // Another project's model is made; what it doesn't mention stays on display.
    test::MakeFolders(installation.ProjectsRoot() + L"Other");
    ASSERT_TRUE(model.Open(L"Other"));
    EXPECT_TRUE(model.IsChecked(35, L"Hoek") && model.GetColorTableName() == L"default");
    EXPECT_TRUE(model.SetCheckedFiles(24, {}) && model.SetCheckedFiles(35, {}) && model.Save());
    EXPECT_TRUE(test::Exists(installation.ProjectsRoot() + L"Other/#PMF@.pmf"));

    ASSERT_TRUE(model.SetCheckedFile(24, L"pier"));
    EXPECT_FALSE(model.Open(L"NoSuchProject") || model.IsOpen());
    EXPECT_TRUE(model.Save()) << "into the current project";
    EXPECT_NE(test::ReadBytes(installation.ProjectFolder() + L"#PMF@.pmf").find("pier"), std::string::npos);
    test::MakeFolders(installation.ProjectsRoot() + L"Away");
    ASSERT_TRUE(model.Open(L"Away") && model.SetCheckedFile(24, L"lock"));
    ASSERT_EQ(Files().Rename(installation.ProjectsRoot() + L"Away", installation.ProjectsRoot() + L"Gone"),
              FsResult::Ok);
    EXPECT_FALSE(model.Save());
    EXPECT_TRUE(model.Save()) << "one try a change";
    EXPECT_TRUE(model.SetCheckedFiles(24, {}) && model.Open());
}

}  // namespace
}  // namespace orv
