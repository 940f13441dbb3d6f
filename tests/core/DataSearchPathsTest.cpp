#include "core/CFileTypeList.h"

#include <tuple>
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "core/UserDBSectionRemover.h"
#include "platform/service/Translator.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

using Names = std::vector<std::wstring>;
using Ids = std::vector<unsigned>;

class DataSearchPaths : public testing::Test {
protected:
    DataSearchPaths() { EXPECT_TRUE(installation.Start()); }
    /// The folder of a location with the folders of the installation named; "-" if there is none.
    std::wstring Folder(int location) {
        std::wstring path = L"left alone";
        if (!search.GetDataPathInfo(location, path)) return L"-";
        const std::pair<std::wstring, const wchar_t*> folders[] = {
            {installation.ProjectFolder(), L"PROJECT/"}, {installation.CommonFolder(), L"COMMON/"},
            {installation.ProjectsRoot(), L"PROJECTS/"}, {installation.ProgramFolder(), L"APP/"},
            {installation.SystemFolder(), L"SYSTEM/"},   {installation.GeneralFolder(), L"GENERAL/"}};
        for (const auto& [folder, name] : folders) {
            if (path.starts_with(folder)) return name + path.substr(folder.size());
        }
        return path;
    }
    /// In ORV.ini and in the project, each of which holds some locations; a null pointer takes it out.
    void Set(int location, const wchar_t* value) {
        const std::wstring_view key = pathKeys[static_cast<std::size_t>(location)];
        const std::wstring_view inProject = location == kLocationBackupLogData ? BACKUP_LOG_FOLDER : key;
        search.GetOrvIni().DeleteItem(DATA_PATH_SECTION, key, true);
        search.GetProjectDefinition().DeleteItem(DATA_PATH_SECTION, inProject, true);
        if (!value) return;
        search.GetOrvIni().SetItem(DATA_PATH_SECTION, key, value, true);
        search.GetProjectDefinition().SetItem(DATA_PATH_SECTION, inProject, value, true);
    }
    std::wstring FullPath(unsigned id, std::wstring name) { return search.GetFullPath(id, name) ? name : L"-"; }
    test::TestInstallation installation;
    DataSearch& search = installation.Search();
    const std::wstring project = installation.ProjectFolder();
    ProjectDefinition& definition = search.GetProjectDefinition();
    std::wstring text;
    Names names;
};

TEST_F(DataSearchPaths, EveryLocationAbsentRelativeAndAbsolute) {
    // Five a line; the second table is what a\b comes to, null where no setting counts.
    const wchar_t *const app = L"APP/a/b/", *const job = L"PROJECT/a/b/", *const no = L"", *const fixed = nullptr;
    // clang-format off
    const wchar_t* const absent[kLocationCount] = {
        L"APP/", L"-", L"-", L"-", L"-",
        L"-", L"-", L"-", L"-", L"GENERAL/ApplicationDefinitions/",
        L"SYSTEM/", L"GENERAL/GeoidModels/", L"PROJECT/Reports/", L"-", L"PROJECT/Multimedia/",
        L"GENERAL/ReportTypes/", L"GENERAL/Symbols/", L"PROJECT/SonarTargets/", L"APP/Drivers/", L"APP/Help/",
        L"PROJECT/Camera Images/", L"GENERAL/Palettes/", L"APP/Resources/", L"PROJECT/", L"-",
        L"COMMON/S57Charts/", L"-", L"GENERAL/SampleData/", L"GENERAL/Manuals/", L"APP/",
        L"APP/Resources/Icons/", L"GENERAL/Calibrations/", L"APP/Plugins/", L"-", L"COMMON/WebMaps/"};
    const wchar_t* const relative[kLocationCount] = {
        fixed, app, L"PROJECTS/a/b/", job, no,    no, job, app, no, fixed,
        fixed, fixed, job, no, job,               fixed, fixed, job, fixed, fixed,
        job, fixed, fixed, job, app,              fixed, no, fixed, fixed, fixed,
        fixed, fixed, fixed, no, fixed};
    // clang-format on
    for (int location = 0; location < kLocationCount; ++location) {
        ASSERT_TRUE(installation.Start());
        if (location == kLocationCommon) search.GetOrvIni().SetUseDefaultCommonPath(false);
        const wchar_t* const expected[] = {absent[location], relative[location], L"/x/y/", L"//host/y/"};
        const wchar_t* const values[] = {nullptr, L"a\\b", L"/x/y", L"\\\\host\\y\\"};
        for (int i = 0; i < 4; ++i) {
            Set(location, values[i]);
            EXPECT_EQ(Folder(location), relative[location] ? expected[i] : absent[location]) << location << " " << i;
        }
    }
    for (const int location : {-1, kLocationCount}) {
        EXPECT_TRUE(Folder(location) == L"-" && search.GetErrorStatus() == kSearchLocationOutOfRange);
    }
}

TEST_F(DataSearchPaths, WhenBasesAreMissingOrTheHosts) {
    Set(kLocationProjects, L"relative");
    Set(kLocationProject, L"");
    EXPECT_TRUE(Folder(kLocationProject) == L"/" && Folder(kLocationReports) == L"/Reports/");
    EXPECT_EQ(Folder(kLocationSonarTargets), L"SYSTEM/");
    EXPECT_EQ(Folder(25), L"") << "no common files folder, no sub-folder of it";
    Set(kLocationProjects, nullptr);
    EXPECT_EQ(Folder(kLocationReports), L"-");
    ASSERT_TRUE(search.Initialise(installation.SystemFolder(), false, L"", false, L"/jobs", L"/shared"));
    EXPECT_TRUE(Folder(kLocationProject) == L"/jobs/Harbour/" && Folder(25) == L"/shared/S57Charts/");
}

TEST_F(DataSearchPaths, FullPaths) {
    const std::tuple<unsigned, const wchar_t*, std::wstring> rows[] = {
        {13, L"", project + L"Project.prj"},
        {14, L"", project + L"Harbour.rte"},
        {14, L"a.rte", project + L"a.rte.rte"},
        {14, L"/d/a.vcf", L"/d/a.vcf"},
        {14, L"\\\\", project + L"//.rte"},
        {14, L"C:\\a", L"C:\\a"},
        {21, L"", installation.CommonFolder() + L"surveyor.npg"},
        {80, L"", installation.CommonFolder() + L"<vesselname>.ddt"},
        {19, L"a", L"-"}};
    for (const auto& [id, name, path] : rows) EXPECT_EQ(FullPath(id, name), path) << id << " " << name;
    definition.SetLogDataPath(L"LogData");
    EXPECT_EQ(FullPath(19, L""), project + L"LogData/.raw") << "a log has no name before it starts";
    EXPECT_TRUE(FullPath(147, L"a") == L"-" && search.GetErrorStatus() == kSearchUnknownFileType);

    text = L"/d/line";
    definition.SetItem(DATA_PATH_SECTION, BACKUP_LOG_FOLDER, L"/backup", true);
    EXPECT_FALSE(search.GetFullBackupLogPath(19, text)) << "not in use";
    definition.SetItem(DATA_PATH_SECTION, USE_BACKUP_LOG_FOLDER, true, true);
    EXPECT_TRUE(search.GetFullBackupLogPath(19, text));
    EXPECT_EQ(text, L"/backup//d/line.raw") << "a full path isn't recognised here";
}

TEST_F(DataSearchPaths, DefaultNamesAndTheirPlaceholders) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"x<project>y", L"Harbour"}, {L"<appname>", L"surveyor"},        {L"<date>", L""},
        {L"<Default>", L"<Default>"}, {L"<vesselname>", L"<vesselname>"}, {L"<project><default>", L"Default"}};
    for (const auto& [stored, name] : rows) {
        const CFileType type(L"Own", 14, L"own", 2, stored, L"");
        EXPECT_TRUE(search.GetDefaultFileName(&type, text)) << stored;
        EXPECT_EQ(text, name) << stored;
    }
    Set(kLocationProject, L"Job.1");
    EXPECT_TRUE(search.GetDefaultFileName(14, text) && text == L"Job.1");
}

TEST_F(DataSearchPaths, FileNames) {
    for (const wchar_t* name : {L"b[Dredge].rte", L"a[Survey].RTE", L"C[survey].rte", L"d.rte2", L"plain.rte"}) {
        test::WriteBytes(project + name, "x");
    }
    test::MakeFolders(project + L"folder.rte");
    EXPECT_TRUE(search.GetFileNames(14, names));
    EXPECT_EQ(names, (Names{L"C[survey]", L"a[Survey]", L"b[Dredge]", L"plain"}));
    EXPECT_TRUE(search.GetFileNames(14, COrvString(L"Dredge,Survey", L',', true), names));
    EXPECT_EQ(names, (Names{L"a[Survey]", L"b[Dredge]"}));
    EXPECT_TRUE(search.DoesFileExist(14, L"plain") && !search.DoesFileExist(14, L"folder"));

    struct FirstTwo : GetStringFunctionObject {
        bool operator()(const std::wstring& name) override {
            seen.push_back(name);
            return seen.size() < 2;
        }
        Names seen;
    } some;
    EXPECT_FALSE(search.GetFileNames(14, some, true));
    EXPECT_EQ(some.seen, (Names{project + L"C[survey].rte", project + L"a[Survey].rte"}));
}

TEST_F(DataSearchPaths, RemovesASectionFromManyFiles) {
    const std::wstring paths[] = {project + L"a.vcf", project + L"b.vcf"};
    for (const std::wstring& path : paths) test::WriteItems(path, {{L"Users", L"x", L"1"}, {L"Kept", L"y", L"2"}});
    UserDBSectionRemover remover(L"Users");
    EXPECT_TRUE(search.GetFileNames(kFileTypeVesselConfig, remover, true));
    for (const std::wstring& path : paths) {
        ProtectedFileObject file;
        EXPECT_TRUE(file.FileOpen(path, true, kOpenRead) && !file.HasSection(L"Users") && file.HasKey(L"Kept", L"y"));
    }
    EXPECT_FALSE(remover(project + L"missing.vcf"));
}

TEST_F(DataSearchPaths, FoldersOfProjectsAndLogs) {
    for (const wchar_t* name : {L"reports", L"LogData", L"Archive"}) test::MakeFolders(project + name);
    test::WriteBytes(installation.ProjectsRoot() + L"a file", "x");
    EXPECT_TRUE(search.GetProjects(names) && names == (Names{L"Harbour", L"Projects Common Files"}));
    EXPECT_TRUE(search.GetLogDataPaths(names) && names == (Names{L"Archive", L"LogData"}));
}

TEST_F(DataSearchPaths, TypesByExtensionLocationAndFilter) {
    // The registry takes the first in key order (95, 104, 115), this one the lowest id.
    const std::pair<const wchar_t*, unsigned> rows[] = {{L".ini", 23}, {L".DXF", 24}, {L".jpg", 49}, {L".txt", 91}};
    unsigned id = 0;
    for (const auto& [extension, expected] : rows) {
        EXPECT_TRUE(search.GetTypeForExtension(extension, id) && id == expected) << extension;
    }

    Translator::Lookups lookups;  // descriptions that sort against the order of keys and ids
    lookups.fileTypeList = [](unsigned type) { return std::to_wstring(1000 - type); };
    Translator::Instance().Activate(lookups);
    Ids ids;
    int count = 0;
    EXPECT_TRUE(search.GetFileIDs(kLocationBackgroundCharts, ids, count, 2) && count == 5);
    EXPECT_EQ(ids, (Ids{113, 74, 71, 24, 11}));
    EXPECT_TRUE(search.GetFileIDs(kLocationBackgroundCharts, ids, count, 0) && count == 6 && ids[1] == 96);
    EXPECT_TRUE(search.GetSupportedFileIDs(ids, count, 3) && ids == Ids{131});
    EXPECT_TRUE(search.GetExtFileIDs(L"bmp", ids, count, 0) && ids == (Ids{84, 105, 92}));
    GetFileTypeList().SetFileClientPermissions(L"PDFFiles", true, true, false);
    EXPECT_TRUE(search.GetFileDesc(kLocationReports, names, true) && names == (Names{L"885", L"957"}));
    Translator::Instance().Deactivate();
}

TEST_F(DataSearchPaths, SubTypesAndDescriptions) {
    constexpr unsigned shape = 109;
    EXPECT_TRUE(search.GetFileSubTypes(shape, names) && names == (Names{L"Grab", L"Vessel", L"Homemade"}));
    const std::tuple<const wchar_t*, int, const wchar_t*, const wchar_t*> rows[] = {
        {L"Grab", 13, L"7,Clamshell grab", L"Clamshell grab"},
        {L"big [Grab] [Vessel]", 13, L"7,Clamshell grab", L"Clamshell grab"},
        {L"Vessel", 0, L"1", L"StandardShape"},
        {L"Homemade", -1, L"3,Not in the table", L"Not in the table"},
        {L"]Grab[", -1, L"-", L"-"}};
    for (const auto& [name, wanted, theAttributes, theDescription] : rows) {
        int id = -1;
        std::wstring attributes = L"-", description = L"-";
        EXPECT_EQ(search.GetFileSubID(shape, name, id), wanted >= 0) << name;
        search.GetFileSubTypeAttribs(shape, name, attributes);
        search.GetFileDescription(shape, name, description);
        EXPECT_TRUE(id == wanted && attributes == theAttributes && description == theDescription) << name;
    }
    EXPECT_TRUE(search.GetFileDescription(14, text) && text == L"A file of Route");
    EXPECT_FALSE(search.GetFileDescription(GetFileTypeList().GetFileType(L"Unknown"), text));
    EXPECT_EQ(search.GetErrorStatus(), kSearchNoDescription);
}

TEST(DataSearchSplit, CutsAtAnySeparator) {
    const std::tuple<const wchar_t*, Names, bool, Names> rows[] = {
        {L"a;b=c", {}, true, {L"a;b=c"}},
        {L"a;b=c", {L";", L"="}, true, {L"a", L"b", L"c"}},
        {L";a;;b;", {L";"}, true, {L"", L"a", L"", L"b", L""}},
        {L";a;;b;", {L";"}, false, {L"a", L"b"}},
        {L"a==b", {L"==", L"="}, true, {L"a", L"b"}},
        {L"", {L";"}, true, {L""}}};
    for (const auto& [text, separators, keepEmpty, parts] : rows) {
        EXPECT_EQ(DataSearch::Split(text, separators, keepEmpty), parts) << text;
    }
}

}  // namespace
}  // namespace orv
