#include <functional>

#include "core/CFileTypeList.h"
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
        const std::pair<std::wstring, const wchar_t*> names[] = {{installation.ProjectFolder(), L"PROJECT/"},
                                                                 {installation.ProjectsRoot(), L"PROJECTS/"},
                                                                 {installation.ProgramFolder(), L"APP/"},
                                                                 {installation.SystemFolder(), L"SYSTEM/"},
                                                                 {installation.GeneralFolder(), L"GENERAL/"}};
        for (const auto& [folder, name] : names) {
            if (path.starts_with(folder)) return name + path.substr(folder.size());
        }
        return path;
    }
    void Set(std::wstring_view key, const std::wstring& value) {
        ASSERT_TRUE(search.GetOrvIni().SetItem(DATA_PATH_SECTION, key, value, true));
    }
    void Touch(const std::wstring& folder, std::initializer_list<const wchar_t*> names) {
        test::MakeFolders(folder);
        for (const wchar_t* name : names) test::WriteBytes(folder + name, "x");
    }
    std::wstring FullPath(unsigned id, std::wstring name) { return search.GetFullPath(id, name) ? name : L"-"; }
    test::TestInstallation installation;
    DataSearch& search = installation.Search();
};

TEST_F(DataSearchPaths, EveryLocationAbsentRelativeAndAbsolute) {
    // What the item holds doesn't matter where all three are the same.
    const struct {
        const wchar_t *absent, *relative, *absolute;
    } rows[kLocationCount] = {
        /*  0 */ {L"APP/", L"APP/", L"APP/"},
        /*  1 */ {L"-", L"APP/a/b/", L"/x/y/"},
        /*  2 */ {L"-", L"PROJECTS/a/b/", L"/x/y/"},
        /*  3 */ {L"-", L"PROJECT/a/b/", L"/x/y/"},
        /*  4 */ {L"-", L"", L"/x/y/"},
        /*  5 */ {L"-", L"", L"/x/y/"},
        /*  6 */ {L"-", L"PROJECT/a/b/", L"/x/y/"},
        /*  7 */ {L"-", L"APP/a/b/", L"/x/y/"},
        /*  8 */ {L"-", L"", L"/x/y/"},
        /*  9 */ {L"GENERAL/ApplicationDefinitions/", nullptr, nullptr},
        /* 10 */ {L"SYSTEM/", nullptr, nullptr},
        /* 11 */ {L"GENERAL/GeoidModels/", nullptr, nullptr},
        /* 12 */ {L"PROJECT/Reports/", L"PROJECT/a/b/", L"/x/y/"},
        /* 13 */ {L"-", L"", L"/x/y/"},
        /* 14 */ {L"PROJECT/Multimedia/", L"PROJECT/a/b/", L"/x/y/"},
        /* 15 */ {L"GENERAL/ReportTypes/", nullptr, nullptr},
        /* 16 */ {L"GENERAL/Symbols/", nullptr, nullptr},
        /* 17 */ {L"PROJECT/SonarTargets/", L"PROJECT/a/b/", L"/x/y/"},
        /* 18 */ {L"APP/Drivers/", nullptr, nullptr},
        /* 19 */ {L"APP/Help/", nullptr, nullptr},
        /* 20 */ {L"PROJECT/Camera Images/", L"PROJECT/a/b/", L"/x/y/"},
        /* 21 */ {L"GENERAL/Palettes/", nullptr, nullptr},
        /* 22 */ {L"APP/Resources/", nullptr, nullptr},
        /* 23 */ {L"PROJECT/", L"PROJECT/a/b/", L"/x/y/"},
        /* 24 */ {L"-", L"APP/a/b/", L"/x/y/"},
        /* 25 */ {L"PROJECTS/Projects Common Files/S57Charts/", nullptr, nullptr},
        /* 26 */ {L"-", L"", L"/x/y/"},
        /* 27 */ {L"GENERAL/SampleData/", nullptr, nullptr},
        /* 28 */ {L"GENERAL/Manuals/", nullptr, nullptr},
        /* 29 */ {L"APP/", nullptr, nullptr},
        /* 30 */ {L"APP/Resources/Icons/", nullptr, nullptr},
        /* 31 */ {L"GENERAL/Calibrations/", nullptr, nullptr},
        /* 32 */ {L"APP/Plugins/", nullptr, nullptr},
        /* 33 */ {L"-", L"", L"/x/y/"},
        /* 34 */ {L"PROJECTS/Projects Common Files/WebMaps/", nullptr, nullptr},
    };
    for (int location = 0; location < kLocationCount; ++location) {
        const auto& row = rows[location];
        search.GetOrvIni().SetUseDefaultCommonPath(location != kLocationCommon);
        const std::wstring_view key = pathKeys[static_cast<std::size_t>(location)];
        std::wstring before;
        const bool had = search.GetOrvIni().GetItem(DATA_PATH_SECTION, key, before);
        const auto set = [&](const wchar_t* value) {
            // Three locations belong to the project or stand under another key there.
            Set(key, value);
            const std::wstring_view projectKey = location == kLocationBackupLogData ? BACKUP_LOG_FOLDER : key;
            search.GetProjectDefinition().SetItem(DATA_PATH_SECTION, projectKey, value, true);
        };
        search.GetOrvIni().DeleteItem(DATA_PATH_SECTION, key, true);
        EXPECT_EQ(Folder(location), row.absent) << location;
        const bool fixed = row.relative == nullptr;
        set(L"a\\b");
        EXPECT_EQ(Folder(location), fixed ? row.absent : row.relative) << location;
        set(L"/x/y");
        EXPECT_EQ(Folder(location), fixed ? row.absent : row.absolute) << location;
        set(L"\\\\host\\y\\");
        EXPECT_EQ(Folder(location), fixed ? row.absent : L"//host/y/") << location;
        search.GetOrvIni().DeleteItem(DATA_PATH_SECTION, key, true);
        if (had) Set(key, before);
        search.GetOrvIni().SetUseDefaultCommonPath(true);
    }
    for (const int location : {-1, kLocationCount}) {
        EXPECT_EQ(Folder(location), L"-");
        EXPECT_EQ(search.GetErrorStatus(), kSearchLocationOutOfRange);
    }
}

TEST_F(DataSearchPaths, HostMayNameProjectsAndCommonFolder) {
    ASSERT_TRUE(search.Initialise(installation.SystemFolder(), false, L"", false, L"/jobs", L"/shared"));
    EXPECT_EQ(Folder(kLocationProjects), L"/jobs/");
    EXPECT_EQ(Folder(kLocationProject), L"/jobs/Harbour/");
    EXPECT_EQ(Folder(25), L"/shared/S57Charts/");
}

TEST_F(DataSearchPaths, WhenBasesAreMissing) {
    Set(pathKeys[kLocationProjects], L"relative");
    Set(pathKeys[kLocationProject], L"");
    EXPECT_EQ(Folder(kLocationProject), L"/");
    EXPECT_EQ(Folder(kLocationSonarTargets), L"SYSTEM/");
    EXPECT_EQ(Folder(kLocationReports), L"/Reports/");
    EXPECT_EQ(Folder(25), L"") << "no common files folder, no sub-folder of it";
    ASSERT_TRUE(search.GetOrvIni().DeleteItem(DATA_PATH_SECTION, pathKeys[kLocationProjects], false));
    EXPECT_EQ(Folder(kLocationReports), L"-");
}

TEST_F(DataSearchPaths, FullPaths) {
    const std::wstring project = installation.ProjectFolder();
    const struct {
        unsigned id;
        const wchar_t* name;
        std::wstring path;
    } rows[] = {
        {13, L"", project + L"Project.prj"},
        {14, L"", project + L"Harbour.rte"},
        {14, L"a.rte", project + L"a.rte.rte"},
        {14, L"sub\\a", project + L"sub/a.rte"},
        {14, L"/d/a.vcf", L"/d/a.vcf"},
        {14, L"/d", project + L"/d.rte"},
        {14, L"\\\\h", L"\\\\h"},
        {14, L"\\\\", project + L"//.rte"},
        {14, L"C:\\a", L"C:\\a"},
        {14, L"C:/a", L"C:/a"},
        {14, L"C:\\", project + L"C:/.rte"},
        {14, L"ab:\\c", project + L"ab:/c.rte"},
        {21, L"", installation.CommonFolder() + L"surveyor.npg"},
        {80, L"", installation.CommonFolder() + L"<vesselname>.ddt"},
        {5, L"a", L"-"},
        {19, L"a", L"-"},
    };
    for (const auto& row : rows) EXPECT_EQ(FullPath(row.id, row.name), row.path) << row.id << " " << row.name;
    search.GetProjectDefinition().SetLogDataPath(L"LogData");
    EXPECT_EQ(FullPath(19, L""), project + L"LogData/.raw") << "a log has no name before it starts";
    EXPECT_EQ(FullPath(kFileTypeCount, L"a"), L"-");
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownFileType);
}

TEST_F(DataSearchPaths, BackupLogPath) {
    std::wstring name = L"/d/line";
    EXPECT_FALSE(search.GetFullBackupLogPath(19, name));
    ProjectDefinition& project = search.GetProjectDefinition();
    project.SetItem(DATA_PATH_SECTION, USE_BACKUP_LOG_FOLDER, true, true);
    EXPECT_FALSE(search.GetFullBackupLogPath(19, name)) << "no folder";
    project.SetItem(DATA_PATH_SECTION, BACKUP_LOG_FOLDER, L"/backup", true);
    EXPECT_TRUE(search.GetFullBackupLogPath(19, name));
    EXPECT_EQ(name, L"/backup//d/line.raw") << "a full path isn't recognised here";
}

TEST_F(DataSearchPaths, DefaultNamesAndTheirPlaceholders) {
    const struct {
        const wchar_t *stored, *name;
    } rows[] = {{L"Chart", L"Chart"},
                {L"x<project>y", L"Harbour"},
                {L"<appname>", L"surveyor"},
                {L"<date>", L""},
                {L"<default>", L"Default"},
                {L"<Default>", L"<Default>"},
                {L"<vesselname>", L"<vesselname>"},
                {L"<project><default>", L"Default"}};
    for (const auto& row : rows) {
        const CFileType type(L"Own", 14, L"own", 2, row.stored, L"");
        std::wstring name = L"x";
        EXPECT_TRUE(search.GetDefaultFileName(&type, name)) << row.stored;
        EXPECT_EQ(name, row.name) << row.stored;
    }
    Set(pathKeys[kLocationProject], L"Job.1");
    std::wstring name;
    EXPECT_TRUE(search.GetDefaultFileName(14, name) && name == L"Job.1");
    ASSERT_TRUE(search.GetOrvIni().DeleteItem(DATA_PATH_SECTION, pathKeys[kLocationProject], false));
    EXPECT_TRUE(search.GetDefaultFileName(14, name) && name.empty());
    EXPECT_FALSE(search.GetDefaultFileName(GetFileTypeList().GetFileType(L"Unknown"), name));
    EXPECT_EQ(search.GetErrorStatus(), kSearchNoDescription);
}

TEST_F(DataSearchPaths, FileNames) {
    Touch(installation.ProjectFolder(),
          {L"b[Dredge].rte", L"a[Survey].RTE", L"C[survey].rte", L"d.rte2", L"plain.rte"});
    test::MakeFolders(installation.ProjectFolder() + L"folder.rte");
    Names names;
    EXPECT_TRUE(search.GetFileNames(14, names));
    EXPECT_EQ(names, (Names{L"C[survey]", L"a[Survey]", L"b[Dredge]", L"plain"}));
    EXPECT_TRUE(search.GetFileNames(14, COrvString(L"Dredge,Survey", L',', true), names));
    EXPECT_EQ(names, (Names{L"a[Survey]", L"b[Dredge]"}));
    EXPECT_TRUE(search.GetFileNames(14, names, installation.SystemFolder()) && names.empty());
    EXPECT_TRUE(search.DoesFileExist(14, L"plain") && !search.DoesFileExist(14, L"folder"));
    EXPECT_FALSE(search.GetFileNames(122, names));
    EXPECT_EQ(search.GetErrorStatus(), kSearchUnknownFileType);

    struct Collect : GetStringFunctionObject {
        bool operator()(const std::wstring& text) override {
            seen.push_back(text);
            return seen.size() < 2;
        }
        Names seen;
    } collect;
    EXPECT_FALSE(search.GetFileNames(14, collect, true));
    EXPECT_EQ(collect.seen[1], installation.ProjectFolder() + L"a[Survey].rte");
    EXPECT_EQ(collect.seen.size(), 2u);
    Collect some;
    EXPECT_TRUE(search.GetFileNames(14, COrvString(L"Dredge", L',', true), some, false));
    EXPECT_EQ(some.seen, Names{L"b[Dredge]"});
}

TEST_F(DataSearchPaths, RemovesASectionFromManyFiles) {
    for (const wchar_t* name : {L"a", L"b"}) {
        test::WriteItems(installation.ProjectFolder() + name + L".vcf",
                         {{L"Users", L"x", L"1"}, {L"Kept", L"y", L"2"}});
    }
    UserDBSectionRemover remover(L"Users");
    EXPECT_TRUE(search.GetFileNames(kFileTypeVesselConfig, remover, true));
    for (const wchar_t* name : {L"a", L"b"}) {
        ProtectedFileObject file;
        EXPECT_TRUE(file.FileOpen(installation.ProjectFolder() + name + L".vcf", true, kOpenRead));
        EXPECT_TRUE(!file.HasSection(L"Users") && file.HasKey(L"Kept", L"y"));
    }
    EXPECT_FALSE(remover(installation.ProjectFolder() + L"missing.vcf"));
}

TEST_F(DataSearchPaths, FoldersOfProjectsAndLogs) {
    for (const wchar_t* name : {L"reports", L"LogData", L"Archive"}) {
        test::MakeFolders(installation.ProjectFolder() + name);
    }
    Touch(installation.ProjectsRoot(), {L"a file"});
    Names names;
    EXPECT_TRUE(search.GetProjects(names));
    EXPECT_EQ(names, (Names{L"Harbour", L"Projects Common Files"}));
    EXPECT_TRUE(search.GetLogDataPaths(names));
    EXPECT_EQ(names, (Names{L"Archive", L"LogData"}));
}

TEST_F(DataSearchPaths, TypesByExtension) {
    // The registry takes the first in key order, the search the lowest id.
    const std::pair<const wchar_t*, unsigned> rows[] = {{L".ini", 23}, {L".DXF", 24}, {L".csv", 43},
                                                        {L".jpg", 49}, {L".txt", 91}, {L".p190", 110}};
    for (const auto& [extension, expected] : rows) {
        unsigned id = 0;
        EXPECT_TRUE(search.GetTypeForExtension(extension, id)) << extension;
        EXPECT_EQ(id, expected) << extension;
    }
    unsigned id = 7;
    EXPECT_FALSE(search.GetTypeForExtension(L"ini", id) || search.GetTypeForExtension(L".", id));
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(GetFileTypeList().GetFileTypeExt(L"ini")->GetID(), 95u);
}

TEST_F(DataSearchPaths, TypesByLocationAndFilter) {
    // Descriptions sort against the order of keys and ids.
    Translator::Instance().Activate({.fileTypes = {},
                                     .fileTypeList = [](unsigned id) { return std::to_wstring(1000 - id); },
                                     .dataDef = {},
                                     .resource = {}});
    Ids ids;
    int count = 0;
    EXPECT_TRUE(search.GetFileIDs(kLocationBackgroundCharts, ids, count, 2));
    EXPECT_EQ(ids, (Ids{113, 74, 71, 24, 11}));
    EXPECT_EQ(count, 5);
    EXPECT_TRUE(search.GetFileIDs(kLocationBackgroundCharts, ids, count, 0) && count == 6 && ids[1] == 96);
    EXPECT_TRUE(search.GetSupportedFileIDs(ids, count, 3) && ids == Ids{131});
    EXPECT_TRUE(search.GetExtFileIDs(L"bmp", ids, count, 0));
    EXPECT_EQ(ids, (Ids{84, 105, 92}));
    EXPECT_TRUE(search.GetExtFileIDs(L"BMP", ids, count, 0) && count == 0);
    Names names;
    GetFileTypeList().SetFileClientPermissions(L"PDFFiles", true, true, false);
    EXPECT_TRUE(search.GetFileDesc(kLocationReports, names, true));
    EXPECT_EQ(names, (Names{L"885", L"957"}));
    GetFileTypeList().SetFileClientPermissions(L"PDFFiles", false, true, true);
    EXPECT_TRUE(search.GetFileIDs(kLocationReports, ids, count, 5) && ids == (Ids{115, 43}));
    Translator::Instance().Deactivate();
}

TEST_F(DataSearchPaths, SubTypesAndDescriptions) {
    constexpr unsigned shape = 109;
    Names names;
    EXPECT_TRUE(search.GetFileSubTypes(shape, names));
    EXPECT_EQ(names, (Names{L"Grab", L"Vessel", L"Homemade"}));
    EXPECT_TRUE(search.GetFileSubTypes(14, names) && names.empty());
    const struct {
        const wchar_t* name;
        int id;
        const wchar_t *attributes, *description;
    } rows[] = {{L"Grab", 13, L"7,Clamshell grab", L"Clamshell grab"},
                {L"big [Grab] [Vessel]", 13, L"7,Clamshell grab", L"Clamshell grab"},
                {L"Vessel", 0, L"1", L"StandardShape"},
                {L"Homemade", -1, L"3,Not in the table", L"Not in the table"},
                {L"]Grab[", -1, L"-", L"-"},
                {L"Barge", -1, L"-", L"-"}};
    for (const auto& row : rows) {
        int id = -1;
        std::wstring attributes = L"-", description = L"-";
        EXPECT_EQ(search.GetFileSubID(shape, row.name, id), row.id >= 0) << row.name;
        search.GetFileSubTypeAttribs(shape, row.name, attributes);
        search.GetFileDescription(shape, row.name, description);
        EXPECT_EQ(id, row.id) << row.name;
        EXPECT_EQ(attributes, row.attributes) << row.name;
        EXPECT_EQ(description, row.description) << row.name;
    }
    std::wstring text;
    EXPECT_TRUE(search.GetFileDescription(14, text) && text == L"A file of Route");
    const CFileType bare(L"Own", 14, L"own", 2, L"x", L"");
    const struct {
        const char* what;
        int status;
        std::function<bool()> query;
    } failures[] = {
        {"no description", kSearchNoDescription, [&] { return search.GetFileDescription(&bare, text); }},
        {"no type", kSearchUnknownFileType, [&] { return search.GetFileDescription(122, text); }},
        {"sub types", kSearchUnknownFileType, [&] { return search.GetFileSubTypes(147, names); }},
        {"sub type text", kSearchUnknownFileType, [&] { return search.GetFileDescription(147, L"Grab", text); }},
    };
    for (const auto& row : failures) {
        EXPECT_FALSE(row.query()) << row.what;
        EXPECT_EQ(search.GetErrorStatus(), row.status) << row.what;
    }
}

TEST(DataSearchSplit, CutsAtAnySeparator) {
    const struct {
        const wchar_t* text;
        Names separators;
        bool keepEmpty;
        Names parts;
    } rows[] = {{L"a;b=c", {}, true, {L"a;b=c"}},
                {L"a;b=c", {L";", L"="}, true, {L"a", L"b", L"c"}},
                {L";a;;b;", {L";"}, true, {L"", L"a", L"", L"b", L""}},
                {L";a;;b;", {L";"}, false, {L"a", L"b"}},
                {L"a==b", {L"==", L"="}, true, {L"a", L"b"}},
                {L"a==b", {L"=", L"=="}, true, {L"a", L"", L"b"}},
                {L"ab", {L"", L"x"}, true, {L"ab"}},
                {L"", {L";"}, true, {L""}},
                {L"", {L";"}, false, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(DataSearch::Split(row.text, row.separators, row.keepEmpty), row.parts) << row.text;
}

}  // namespace
}  // namespace orv
