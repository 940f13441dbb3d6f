#include "project/ProjectDefinition.h"

#include <filesystem>

#include "ScriptedCoordSys.h"
#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr int kUntouched = -99;

class Project : public ::testing::Test {
protected:
    void SetUp() override {
        Register(COORDSYS_MODULE_KEY);
        ASSERT_TRUE(installation.Start());
        project = &installation.Search().GetProjectDefinition();
        test::MakeFolders(installation.ProjectFolder());
        path = installation.ProjectFolder() + L"Project.prj";
        ASSERT_TRUE(project->CreateDefaultFile(installation.ProjectFolder(), true));
        Edit([](ProtectedFileObject& file) {
            SetCoordSysData(&file, L"Mercator", L"WGS 84 - Mercator", L"ORVCoordSys", L"Meters", L"", L"", L"", L"",
                            L"");
            file.SetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, GEODESY_VERSION, true);
        });
    }
    void TearDown() override {
        OrvGeoCoordSysList::GetCoordSysList().Register(std::wstring(COORDSYS_MODULE_KEY), nullptr);
        OrvGeoCoordSysList::GetCoordSysList().Register(std::wstring(COORDSYS_SECOND_MODULE_KEY), nullptr);
    }
    void Register(std::wstring_view key) {
        OrvGeoCoordSysList::GetCoordSysList().Register(
            std::wstring(key), [this] { return std::make_unique<test::ScriptedCoordSys>(script); });
    }
    template <class Change>
    void Edit(Change change) {
        ProtectedFileObject file;
        ASSERT_TRUE(file.FileOpen(path, false, kOpenRead));
        change(file);
        ASSERT_TRUE(file.FileSave(L"", 0, kSave));
    }
    void Set(std::wstring_view section, std::wstring_view key, std::wstring value) {
        Edit([&](ProtectedFileObject& file) { file.SetItem(section, key, value, true); });
    }
    void Remove(std::wstring_view section, std::wstring_view key) {
        Edit([&](ProtectedFileObject& file) { file.DeleteItem(section, key, true); });
    }
    bool Opens() { return project->Init(path, false); }

    test::CoordSysScript script;
    test::TestInstallation installation;
    NoticeRecorder notices;
    ProjectDefinition* project = nullptr;
    std::wstring path;
};

TEST_F(Project, DefaultFileOpensAndSurvivesChangeAndReopen) {
    ASSERT_TRUE(Opens()) << test::ReadBytes(path);
    std::wstring text;
    EXPECT_TRUE(project->GetProjectTitle(text) && text == L"default");
    EXPECT_TRUE(project->GetLogDataPath(text) && text == L"LogData");
    EXPECT_TRUE(project->SetLogDataPath(L"Raw") && project->FileSave(L"", 0, kSave));
    ProjectDefinition again;
    ASSERT_TRUE(again.Init(path.c_str(), false));
    EXPECT_TRUE(again.GetLogDataPath(text) && text == L"Raw");
    EXPECT_EQ(again.Verify(), ProtectedFileObject::Verification::Valid);
    bool use = true;
    EXPECT_FALSE(again.GetUseLogDataBackup(use));
    EXPECT_FALSE(use) << "a missing key clears the output";

    ProjectDefinition memory;
    EXPECT_TRUE(memory.CreateDefaultFile(installation.ProjectsRoot() + L"None", false));
    EXPECT_TRUE(memory.HasKey(FORMATS_SECTION, formatParamKeys[11]));
    EXPECT_FALSE(test::Exists(installation.ProjectsRoot() + L"None"));
}

TEST_F(Project, FormatsAndDecimals) {
    struct Row {
        std::size_t key;
        const wchar_t* value;  // null takes the item away
        bool opens;
        int coordinateFormat;
        unsigned geogsFlags, feetFlags;
        int density;
    };
    for (const Row& row :
         {Row{7, nullptr, true, 1, 7, 1, 3}, Row{7, L"5", true, 1, 7, 1, 5}, Row{2, nullptr, false, 0, 0, 0, 0},
          Row{0, nullptr, false, 0, 0, 0, 0}, Row{0, L"Minutes", true, 1, 2, 1, 3},
          Row{11, L"Inch Fractions", true, 1, 7, 6, 3}, Row{11, L"x", true, 1, 7, 1, 3},
          Row{6, L"geogs", true, 1, 7, 1, 3}, Row{6, L"Geogs", true, 2, 7, 1, 3}, Row{6, nullptr, true, 1, 7, 1, 3}}) {
        const std::string before = test::ReadBytes(path);
        if (row.value) {
            Set(FORMATS_SECTION, formatParamKeys[row.key], row.value);
        } else {
            Remove(FORMATS_SECTION, formatParamKeys[row.key]);
        }
        ProjectDefinition at;
        EXPECT_EQ(at.Init(path, false), row.opens) << row.key;
        if (row.opens) {
            coord_format format;
            unsigned geogs = 0, feet = 0;
            int density = 0;
            EXPECT_TRUE(at.GetCoordinateFormat(format) && at.GetGeogsFlags(geogs) && at.GetFeetsFlags(feet) &&
                        at.GetUnitDecimals(6, density));
            EXPECT_EQ(format, row.coordinateFormat) << row.key;
            EXPECT_EQ(geogs, row.geogsFlags) << row.key;
            EXPECT_EQ(feet, row.feetFlags) << row.key;
            EXPECT_EQ(density, row.density) << row.key;
        }
        test::WriteBytes(path, before);
    }
    int decimals = kUntouched;
    EXPECT_FALSE(project->GetUnitDecimals(5, decimals));
    EXPECT_EQ(decimals, kUntouched);
    EXPECT_TRUE(project->GetUnitDecimals(9, decimals) && decimals == 2);
}

TEST_F(Project, UnitsComeFromTheUnitsFile) {
    Set(UNITS_SECTION, L"Depth Units", L"Leagues");
    const std::string before = test::ReadBytes(path);
    ASSERT_TRUE(Opens());
    EXPECT_EQ(project->GetUnitCnv()->GetUnitName(4), L"Meters") << "an unknown unit gives the default";
    EXPECT_EQ(test::ReadBytes(path), before);

    // A system unit that only the coordinate database knows is learned, also by a read-only units file.
    const std::wstring units = installation.GeneralFolder() + L"Units.uni";
    ASSERT_EQ(Files().SetReadOnly(units, true), FsResult::Ok);
    script.unitName = L"Fathoms";
    Set(COORDSYSTEM_SECTION, coordsystemKeys[10], L"Fathoms");
    ASSERT_TRUE(Opens()) << project->LastProblem().size();
    EXPECT_NE(test::ReadBytes(units).find("Fathoms=1.828800,fth"), std::string::npos);
    FileStatus status;
    ASSERT_EQ(Files().Status(units, status), FsResult::Ok);
    EXPECT_TRUE(status.readOnly);
    Set(COORDSYSTEM_SECTION, coordsystemKeys[10], L"fATHOMS");
    script.unitName.clear();
    EXPECT_TRUE(Opens()) << "known now, in any case";
    Set(COORDSYSTEM_SECTION, coordsystemKeys[10], L"Cubits");
    EXPECT_FALSE(Opens());
}

TEST_F(Project, ChoosesTheCoordinateModule) {
    struct Row {
        const wchar_t *program, *project;  // null: no such item
        bool opens;
        const wchar_t* key;
    };
    Register(COORDSYS_SECOND_MODULE_KEY);
    for (const Row& row :
         {Row{nullptr, nullptr, true, L"ORVCoordSys"}, Row{nullptr, L"orvcoordsys", true, L"ORVCoordSys"},
          Row{L"BMCoordSys", nullptr, true, L"BMCoordSys"}, Row{L"BMCoordSys", L"ORVCoordSys", true, L"ORVCoordSys"},
          Row{L"ORVCoordSys", L"BMCoordSys", false, L""}, Row{L"BMCoordSys", L"Other", false, L""}}) {
        ProtectedFileObject definition;
        ASSERT_TRUE(definition.FileOpen(installation.AppDefPath(), false, kOpenRead));
        definition.DeleteSection(COORDSYSTEM_SECTION);
        ASSERT_TRUE(definition.FileSave(L"", 0, kSave));
        if (row.program) installation.AppDef({{COORDSYSTEM_SECTION, coordsystemKeys[12], row.program}});
        ASSERT_TRUE(installation.Start());
        Remove(COORDSYSTEM_SECTION, coordsystemKeys[12]);
        if (row.project) Set(COORDSYSTEM_SECTION, coordsystemKeys[12], row.project);
        ProjectDefinition at;
        EXPECT_EQ(at.Init(path, false), row.opens);
        if (row.opens) {
            EXPECT_EQ(at.GetGeoCoordSysKey(), row.key);
        }
    }
}

TEST_F(Project, LoadsAndConvertsItsCoordinateSystem) {
    script.calls.clear();
    Set(OPTIONS_SECTION, LATLONG_ON_SAT, L"0");
    ASSERT_TRUE(project->Init(path, true));
    EXPECT_EQ(script.calls, (std::vector<std::wstring>{L"sat 0", L"load Mercator/WGS 84 - Mercator none save"}));
    std::wstring group, name;
    EXPECT_TRUE(project->GetEllipsoidName(group, name) && group == L"Mercator" && name == L"ellipsoid");

    // A copy makes a system of its own from its own content.
    ProjectDefinition copy(*project);
    EXPECT_NE(copy.GetGeoCoordSys(), project->GetGeoCoordSys());
    EXPECT_NE(copy.GetGeoCoordSys(), nullptr);
    copy.Finalize();
    EXPECT_EQ(copy.GetGeoCoordSys(), nullptr);
    EXPECT_FALSE(copy._BackupCoordSysInfo());

    // A load that fails leaves the object, which still saves what it knows.
    script.loads = false;
    EXPECT_FALSE(Opens());
    EXPECT_NE(project->GetGeoCoordSys(), nullptr);
    script.calls.clear();
    EXPECT_TRUE(project->UpdateGeoCoordSys());
    EXPECT_EQ(script.calls.back(), L"save");
    EXPECT_EQ(project->CreateNewCoordSys(L"a", L"b", L"", L"", L"", L"", L""), nullptr);

    // An old layout is converted.
    script.loads = true;
    script.converts = true;
    script.calls.clear();
    Remove(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY);
    EXPECT_TRUE(Opens());
    EXPECT_EQ(script.calls, (std::vector<std::wstring>{L"sat 0", L"convert", L"load Renamed/WGS 84 - Mercator none",
                                                       L"convert project"}));
}

TEST_F(Project, MissingModuleIsSaid) {
    OrvGeoCoordSysList::GetCoordSysList().Register(std::wstring(COORDSYS_MODULE_KEY), nullptr);
    OrvGeoCoordSysLoader::Instance().SetSearchFolder(installation.SystemFolder());
    EXPECT_FALSE(Opens());
    EXPECT_EQ(notices.Text(Notice::Message), L"Load coordinate system dll failed\n");
    OrvGeoCoordSysLoader::Instance().SetSearchFolder(L"");
}

TEST_F(Project, SmallFormSucceedsWithoutItsCoordinateSystem) {
    script.loads = false;
    ASSERT_TRUE(installation.Search().InitProjectSUI());
    EXPECT_EQ(project->GetGeoCoordSys(), nullptr);
    EXPECT_TRUE(test::Exists(installation.SystemFolder() + L"ProjectSUI.prj"));
    std::wstring version;
    EXPECT_TRUE(project->GetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, version) && version == L"1.0.1");
    OrvGeoCoordSysList::GetCoordSysList().Register(std::wstring(COORDSYS_MODULE_KEY), [] { return nullptr; });
    ASSERT_TRUE(installation.Search().InitProjectSUI());
    EXPECT_EQ(project->GetGeoCoordSys(), nullptr);
}

TEST_F(Project, RepairAddsWhatIsMissingAndResetsTheApplication) {
    Edit([](ProtectedFileObject& file) {
        file.DeleteSection(FORMATS_SECTION);
        file.DeleteItem(UNITS_SECTION, L"Depth Units", true);
        file.SetItem(HEADER_SECTION, PROJECT_NAME, L"Deurganckdok", true);
        file.SetItem(APPLICATION_SECTION, APP_DEFINITION, L"navigate", true);
    });
    EXPECT_FALSE(Opens());
    const std::string damaged = test::ReadBytes(path);
    std::wstring text;
    test::FailEachCall([&] { test::WriteBytes(path, damaged); }, [&] { return ProjectDefinition().RepairFile(path); },
                       [&](bool) {
                           ProjectDefinition now;  // defaults whose file can't be read are missing, and no more
                           EXPECT_TRUE(now.FileOpen(path, true, kOpenRead));
                           EXPECT_EQ(now.Verify(), ProtectedFileObject::Verification::Valid);
                           EXPECT_TRUE(now.GetProjectTitle(text) && text == L"Deurganckdok");
                       });
    ASSERT_TRUE(Opens());
    EXPECT_TRUE(project->GetProjectTitle(text) && text == L"Deurganckdok");
    EXPECT_TRUE(project->GetAppDefinition(text) && text.empty()) << "to be selected again";
    EXPECT_TRUE(project->GetItem(UNITS_SECTION, L"Depth Units", text) && text == L"Meters");
    EXPECT_TRUE(ProjectDefinition().RepairFile(installation.ProjectFolder() + L"none.prj"));
}

TEST_F(Project, MovesOldPicturesAndReportsButNeverOverOthers) {
    const std::wstring folder = installation.ProjectFolder();
    const auto put = [&] {
        for (const wchar_t* made : {L"Multimedia", L"Reports", L"map.tif"}) {
            std::filesystem::remove_all(PathToBytes(folder + made));
        }
        test::MakeFolders(folder + L"Multimedia");
        test::WriteBytes(folder + L"Multimedia/a.jpg", "there before");
        test::WriteBytes(folder + L"a.jpg", "newcomer");
        test::WriteBytes(folder + L"B.PNG", "picture");
        test::WriteBytes(folder + L"r.pdf", "report");
        test::WriteBytes(folder + L"Multimedia/map.tif", "map");
    };
    const auto text = [&](const wchar_t* name) {
        return test::Exists(folder + name) ? test::ReadBytes(folder + name) : "";
    };
    const std::string saved = test::ReadBytes(path);
    test::FailEachCall(
        put, [&] { return Opens(); },
        [&](bool) {
            EXPECT_EQ(text(L"B.PNG") + text(L"Multimedia/B.PNG"), "picture") << "here or there";
            EXPECT_EQ(text(L"r.pdf") + text(L"Reports/r.pdf"), "report");
            EXPECT_EQ(text(L"Multimedia/map.tif"), "map");
            EXPECT_TRUE(text(L"map.tif").empty() || text(L"map.tif") == "map");
            EXPECT_EQ(test::ReadBytes(path), saved);
        });
    EXPECT_TRUE(project->HasMultimediaReportFileMoved());
    EXPECT_EQ(test::ReadBytes(folder + L"Multimedia/a.jpg"), "there before");
    EXPECT_EQ(test::ReadBytes(folder + L"a.jpg"), "newcomer");
    EXPECT_EQ(test::ReadBytes(folder + L"Multimedia/B.PNG"), "picture");
    EXPECT_EQ(test::ReadBytes(folder + L"Reports/r.pdf"), "report");
    EXPECT_EQ(test::ReadBytes(folder + L"map.tif"), "map");
    EXPECT_TRUE(test::Exists(folder + L"Multimedia/map.tif"));
}

TEST_F(Project, CoordSysDataHasOneWayInAndOut) {
    struct Read {
        std::wstring group, system, key, unit, geoid, file, datum, post, postFile;
    };
    const auto read = [](const ProtectedFileObject& file) {
        Read r;
        GetCoordSysData(&file, r.group, r.system, r.key, r.unit, r.geoid, r.file, r.datum, r.post, r.postFile);
        return r;
    };
    ProjectDefinition file;
    for (int round = 0; round < 2; ++round) {
        SetCoordSysData(&file, L"[North]", L"Zone 31", L"bmcoordsys", L" International Feet ", L"g", L"f", L"d", L"p",
                        L"q");
    }
    std::wstring raw;
    EXPECT_TRUE(file.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[7], raw) && raw == L"[North]");
    EXPECT_TRUE(file.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[8], raw) && raw == L"[Zone 31]");
    EXPECT_TRUE(file.GetItem(UNITS_SECTION, L"Height Units", raw) && raw == L" International Feet ");
    EXPECT_TRUE(file.GetItem(UNITS_SECTION, L"Volume Units", raw) && raw == L"Cubic int. Yards");
    EXPECT_EQ(read(file).group + read(file).system + read(file).postFile, L"NorthZone 31q");
    file.SetItem(UNITS_SECTION, L"Volume Units", L"Barrels", true);
    SetCoordSysData(&file, L"[North]", L"x", L"ORVCoordSys", L" International Feet ", L"", L"", L"", L"", L"");
    EXPECT_TRUE(file.GetItem(UNITS_SECTION, L"Volume Units", raw) && raw == L"Barrels") << "the same unit again";
    EXPECT_EQ(read(file).group, L"[North]") << "brackets belong to the other module";
    file.DeleteItem(COORDSYSTEM_SECTION, coordsystemKeys[12], true);
    EXPECT_EQ(read(file).key, L"ORVCoordSys") << "from the application definition";
    SetCoordSysData(nullptr, L"", L"", L"", L"", L"", L"", L"", L"", L"");
}

}  // namespace
}  // namespace orv
