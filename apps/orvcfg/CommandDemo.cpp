#include <cstdlib>
#include <filesystem>

#include "Commands.h"
#include "Document.h"
#include "GridForms.h"
#include "Installation.h"
#include "MakeInstallation.h"
#include "MakeProject.h"
#include "ProjectReport.h"
#include "SampleGrid.h"
#include "SampleSurvey.h"
#include "VesselFile.h"
#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridReader.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string grid, folder;
    bool keep = false;
};

constexpr unsigned short kNap2018 = 28;  ///< type id of the model of the Dutch quasi-geoid of 2018
constexpr std::wstring_view kSampleVessel = L"Sounder";
constexpr double kAntennaHeight = 50.0;  ///< metres above the ellipsoid, the sample value that is reduced

struct Place {
    std::string_view name;
    double latitude, longitude;
};
constexpr Place kPlaces[] = {
    {"Rotterdam, Maasvlakte", 51.9580, 4.0310},        {"Hoek van Holland, New Waterway", 51.9789, 4.1200},
    {"IJmuiden, outer harbour", 52.4622, 4.5480},      {"Den Helder, harbour", 52.9600, 4.7900},
    {"Eemshaven, Doekegat channel", 53.4600, 6.8200},  {"Vlissingen, outer harbour", 51.4490, 3.6060},
    {"Platform K13-A, Dutch sector", 53.2178, 3.2203}, {"Platform L9, Dutch sector", 53.6139, 4.9603},
    {"Platform F3, Dutch sector", 54.8539, 4.6961},    {"Aberdeen, harbour", 57.1430, -2.0710},
};

/// A folder of its own, gone with all in it unless it is kept, as one that the user names is.
class SampleFolder {
public:
    SampleFolder(const std::string& named, bool keepIt) : keep(keepIt || !named.empty()) {
        if (!named.empty()) {
            const std::wstring folder = WithSeparator(AbsolutePath(PathArgument(named)));
            std::vector<FolderEntry> entries;
            const FsResult listed = Files().List(folder, entries);
            const bool mayUse = listed == FsResult::NotFound || (listed == FsResult::Ok && entries.empty());
            if (mayUse && MakeFolders(folder) == FsResult::Ok) path = folder;
            return;
        }
        std::error_code failed;
        std::string pattern = (std::filesystem::temp_directory_path(failed) / "orvcfg-demo-XXXXXX").string();
        if (mkdtemp(pattern.data())) path = WithSeparator(PathFromBytes(pattern));
    }
    ~SampleFolder() {
        if (!keep && !path.empty()) RemoveTree(path);
    }
    SampleFolder(const SampleFolder&) = delete;
    SampleFolder& operator=(const SampleFolder&) = delete;
    const std::wstring& Path() const { return path; }
    bool IsKept() const { return keep; }

private:
    std::wstring path;
    bool keep;
};

// ---- making it

/// Puts the grid, real or made up, where the model looks; its name comes back, empty after a problem has been told.
std::wstring PutGrid(Session& session, const std::string& given) {
    std::string bytes = SyntheticGtx(), why;
    std::wstring name(kSyntheticGridName);
    if (!given.empty()) {
        const std::wstring path = PathArgument(given);
        name = GetNameFromPath(path);
        if (const FsResult result = ReadWholeFile(path, bytes); result != FsResult::Ok) {
            session.Problem(given, "Can't be read: " + ToUtf8(FsResultText(result)), "Check name and rights.");
            return {};
        }
        const auto grid = RecogniseGrid(AsBytes(bytes), why);
        if (grid && why.empty()) why = grid->facts.fault;
        if (!grid || !grid->facts.fault.empty() || !HomeOf(*grid->form, kNap2018)) {
            session.Problem(given, "No grid that the model can read" + (why.empty() ? "" : " (" + why + ")"),
                            "It must be the agency's file nlgeo2018.gtx or one of its form.");
            return {};
        }
    }
    const std::wstring folder = GeoidModelFolder(kNap2018);
    FsResult result = MakeFolders(folder);
    if (result == FsResult::Ok) result = SaveWholeFile(folder + name, bytes);
    if (result == FsResult::Ok) return name;
    session.Problem(PathToBytes(folder + name), "Can't be written: " + ToUtf8(FsResultText(result)));
    return {};
}

/// A file of the sample, into the place that its type has in the open project.
bool PutFile(Session& session, unsigned type, const std::wstring& sampleName, std::wstring name) {
    std::string bytes;
    const std::wstring from = DataRoot(session) + L"Sample/" + sampleName;
    FsResult result = ReadWholeFile(from, bytes);
    if (result == FsResult::Ok && !DataSearch::GetDataSearch().GetFullPath(type, name)) result = FsResult::NotFound;
    if (result == FsResult::Ok) result = SaveWholeFile(name, bytes);
    if (result == FsResult::Ok) return true;
    session.Problem(PathToBytes(result == FsResult::NotFound ? from : name),
                    "A file of the sample can't be put in place: " + ToUtf8(FsResultText(result)),
                    "It comes with the program: install it again.");
    return false;
}

/// The sample vessel with what it needs, the ports of its devices, and the configuration that uses it.
bool PutVessel(Session& session) {
    const std::wstring vessel(kSampleVessel), mark = L"[navigate]";
    ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    return PutFile(session, kFileTypeVesselConfig, vessel + L".vcf", vessel + mark) &&
           PutFile(session, kFileTypeVesselContour, vessel + L".vsl", vessel) &&
           PutFile(session, kFileTypeAlarmMap, vessel + L".alr", vessel) &&
           PutFile(session, kFileTypeVesselSetup, vessel + L".vsf", vessel) &&
           PutFile(session, kFileTypeAppConfig, L"Survey.acf", L"Survey" + mark) &&
           PutFile(session, kFileTypeSVProfile, L"Basin.svp", L"Basin") &&
           PutFile(session, kFileTypeSystem, std::wstring(INTERFACE_DEF_FILENAME), L"InterfaceDefinition") &&
           project.SetAppDefinition(L"navigate") && project.SetAppConfiguration(L"Survey") &&
           project.FileSave(L"", 0, kSave);
}

bool MakeSample(Session& session, const std::wstring& root, const std::string& grid) {
    InstallationPlan plan;
    plan.root = root;
    std::vector<MadeThing> things;
    if (!MakeInstallation(session, plan, things)) return false;
    NewProject project;
    project.name = L"Maasvlakte";
    project.title = L"Maasvlakte harbour basin, maintenance survey";
    project.number = L"2024-017";
    project.task = L"Sounding before and after dredging";
    project.client = L"Sample port authority";
    project.contractor = L"Sample survey company";
    project.group = L"Netherlands";
    project.system = L"RD New - NAP 2018";
    project.geoid.key = GeoidKey(kNap2018);
    project.geoid.file = PutGrid(session, grid);
    if (project.geoid.file.empty() || !MakeProject(session, project) || !PutVessel(session)) return false;
    if (!PutSampleSurvey(kSampleVessel, L"navigate")) {
        session.Problem(PathToBytes(root), "Tide and log of the sample can't be written");
        return false;
    }
    OrvIniFile_IO& settings = DataSearch::GetDataSearch().GetOrvIni();
    if (settings.SetCurrentProjectName(project.name) && settings.FileSave(L"", 0, kSave)) return true;
    session.Problem(PathToBytes(settings.GetFileName()), "Can't be written");
    return false;
}

// ---- what a host learns from it

void ReportFolders(Document& document) {
    constexpr std::pair<int, std::string_view> kRows[] = {
        {kLocationSystemData, "Settings"},     {kLocationGeneral, "General data"},
        {kLocationGeoidModels, "Geoid grids"}, {kLocationProjects, "Projects"},
        {kLocationProject, "This project"},    {kLocationLogData, "Log data"},
        {kLocationReports, "Reports"},         {kLocationCommon, "Common project files"},
    };
    Facts& facts = document.AddFacts("Folders", "folders");
    for (const auto& [location, label] : kRows) {
        std::wstring folder;
        const bool known = DataSearch::GetDataSearch().GetDataPathInfo(location, folder);
        facts.Add(std::string(label), ToUtf8(pathKeys[static_cast<std::size_t>(location)]),
                  known ? Cell::Path(folder) : Cell::Missing("the settings name none"));
    }
}

Cell MaximumCell(int maximum) {
    if (maximum != kNoLimit) return Cell::Count(maximum);
    return {"no limit", nullptr, {}};
}

/// Sums up a family of maxima: how many kinds there are, and which of them are narrowed down.
template <class Query>
std::string MaximaText(const std::vector<std::wstring>& kinds, Query query) {
    std::string narrowed;
    for (const std::wstring& kind : kinds) {
        int maximum = kNoLimit;
        if (!query(kind, maximum) || maximum == kNoLimit) continue;
        narrowed += (narrowed.empty() ? "" : ", ") + ToUtf8(kind) + " " + ToUtf8(IntText(maximum));
    }
    if (narrowed.empty()) return "no limit";
    return "no limit, but " + narrowed;
}

/// Type numbers that a definition has a row for.
std::vector<std::wstring> RowsOf(std::wstring_view section) {
    std::vector<std::wstring> keys;
    FobjSection cursor;
    std::wstring key, value;
    const ProgramDefFile_IO& definition = DataSearch::GetDataSearch().GetAppDef();
    for (bool more = definition.GetFirstMapEntry(cursor, section, key, value); more;
         more = definition.GetNextMapEntry(cursor, key, value)) {
        keys.push_back(key);
    }
    return keys;
}

void ReportPermissions(Document& document, const std::string& appDef) {
    const DataSearch& search = DataSearch::GetDataSearch();
    Facts& facts = document.AddFacts("What the application definition permits", "permissions");
    std::wstring description;
    search.GetAppDef().GetItem(APPLICATION_SECTION, appParamKeys[kAppDefinitionDescription], description);
    facts.Add("Definition", "definition", Cell::Of(appDef));
    facts.Add("Meant for", "description", Cell::OrMissing(description, "it doesn't say"));

    std::int64_t supported = 0, all = 0;
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    const CFileTypeList& types = GetFileTypeList();
    for (bool more = types.GetFirst(iterator, key, type); more; more = types.GetNext(iterator, key, type)) {
        ++all;
        if (type->IsSupported()) ++supported;
    }
    facts.Add("File types", "fileTypes", Cell::Of(std::to_string(supported) + " of " + std::to_string(all)));

    bool several = false, relative = false, dynamic = false, network = false;
    int vessels = 1, relatives = 0, remotes = 0, presentations = 0;
    search.GetVesselPermissions(several, vessels, relative, relatives, dynamic);
    facts.Add("Vessels", "vessels", several ? MaximumCell(vessels) : Cell::Count(1));
    facts.Add("Relative vessels", "relativeVessels", relative ? MaximumCell(relatives) : Cell::Count(0));
    facts.Add("Dynamic objects", "dynamicObjects", Cell::Flag(dynamic));
    const std::vector<std::wstring> views(viewTypeKeys.begin(), viewTypeKeys.end());
    facts.Add("Views", "views", Cell::Of(MaximaText(views, [&](const std::wstring& view, int& maximum) {
                  return search.GetViewMax(view, maximum);
              })));
    const auto byNumber = [&](bool (DataSearch::*query)(unsigned, int&) const) {
        return [&search, query](const std::wstring& number, int& maximum) {
            const std::optional<unsigned> id = ParseUnsigned(number);
            return id && (search.*query)(*id, maximum);
        };
    };
    facts.Add("Devices", "devices", Cell::Of(MaximaText(RowsOf(DEVICES_SECTION), byNumber(&DataSearch::GetDeviceMax))));
    facts.Add("Computations", "computations",
              Cell::Of(MaximaText(RowsOf(COMPUTATIONS_SECTION), byNumber(&DataSearch::GetComputationMax))));
    search.GetNetworkPermissions(network, remotes, presentations);
    facts.Add("Network", "network", Cell::Flag(network));
    facts.Add("Remote stations", "remotes", network ? MaximumCell(remotes) : Cell::Count(0));
    facts.Add("Presentations", "presentations", network ? MaximumCell(presentations) : Cell::Count(0));
}

/// The kinds that have decimals of their own: what a surveyor sees all day.
void ReportShownUnits(Document& document, const ProjectDefinition& project) {
    Table& table = document.AddTable(
        "Units and decimals", "units",
        {{"Quantity", "quantity"}, {"Unit", "unit"}, {"Symbol", "symbol"}, {"Decimals", "decimals", true}});
    for (int kind = 0; kind < kUnitKinds; ++kind) {
        int decimals = 0;
        if (!project.GetUnitDecimals(kind, decimals)) continue;
        const COrvUnitCnv& units = *project.GetUnitCnv();
        std::string quantity = ToUtf8(UnitKindNames()[static_cast<std::size_t>(kind)]);
        if (quantity.ends_with(" Units")) quantity.resize(quantity.size() - std::string_view(" Units").size());
        table.Add({Cell::Of(std::move(quantity)), Cell::Of(units.GetUnitName(kind)), Cell::Of(units.GetUnitMnem(kind)),
                   Cell::Count(decimals)});
    }
}

void ReportHeights(Document& document, ProjectDefinition& project, const GeoidChoice& geoid, bool synthetic) {
    OrvGeoCoordSysBase& system = *project.GetGeoCoordSys();
    double factor = 1.0;
    std::wstring unit;
    system.Unit(factor, unit);
    int gridDecimals = 2, heightDecimals = 2;
    project.GetGridDecimals(gridDecimals);
    project.GetDepthDecimals(heightDecimals);
    const std::string in = " (" + ToUtf8(unit) + ")";
    Table& table = document.AddTable("Heights of an antenna " + Fixed(kAntennaHeight / factor, heightDecimals) + " " +
                                         ToUtf8(unit) + " above the ellipsoid",
                                     "heights",
                                     {{"Position", "position"},
                                      {"Latitude", "latitude", true},
                                      {"Longitude", "longitude", true},
                                      {"X" + in, "x", true},
                                      {"Y" + in, "y", true},
                                      {"Separation" + in, "separation", true},
                                      {"Above NAP" + in, "height", true},
                                      {"", "model", false, true},
                                      {"", "file", false, true},
                                      {"", "synthetic", false, true}});
    const OpenedGeoid opened = OpenGeoid(geoid);
    for (const Place& place : kPlaces) {
        double x = 0.0, y = 0.0, separation = 0.0;
        std::wstring reason;
        const bool onGrid = system.GeoToGrid(place.latitude, place.longitude, 0.0, x, y);
        const bool found = system.HeightSeparation(place.latitude, place.longitude, separation, reason);
        Cell latitude = Cell::Number(place.latitude, 6), longitude = Cell::Number(place.longitude, 6);
        latitude.text = GeographicText(project, place.latitude, true);
        longitude.text = GeographicText(project, place.longitude, false);
        const Cell none = found ? Cell() : Cell::Missing(ShortReason(opened, place.latitude, place.longitude, reason));
        const Cell noGrid = Cell::Missing("the projection has no value there");
        table.Add({Cell::Of(std::string(place.name)), latitude, longitude,
                   onGrid ? Cell::Number(x, gridDecimals) : noGrid, onGrid ? Cell::Number(y, gridDecimals) : noGrid,
                   found ? Cell::Number(separation, heightDecimals) : none,
                   found ? Cell::Number(kAntennaHeight / factor - separation, heightDecimals) : none,
                   Cell::Of(geoid.key), Cell::Path(opened.path), Cell::Flag(synthetic)});
    }
    document.AddRemark("by " + ToUtf8(geoid.key) + " from " + PathToBytes(GetNameFromPath(opened.path)));
    if (synthetic) document.AddRemark("SYNTHETIC SAMPLE: a made-up grid, its heights are not for navigation");
}

ExitCode Demo(Session& session, const Arguments& arguments) {
    Options& options = session.options;
    if (!options.systemFolder.empty() || !options.project.empty() || !options.projectsRoot.empty() ||
        !options.common.empty()) {
        session.Problem({}, "The demonstration makes an installation and a project of its own",
                        "Leave --system, --project, --projects-root and --common out.");
        return kCannotRun;
    }
    const SampleFolder folder(arguments.folder, arguments.keep);
    if (folder.Path().empty()) {
        session.Problem(
            arguments.folder,
            arguments.folder.empty() ? "No temporary folder can be made" : "The folder isn't empty, or can't be made",
            "Check the rights to it and the space on its disk.");
        return kCannotRun;
    }
    if (!MakeSample(session, folder.Path(), arguments.grid)) return kCannotRun;

    // From here on as any application does that is started on this installation.
    if (!OpenInstallation(session) || !OpenProject(session)) return kCannotRun;
    ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    Document document;
    Facts& sample = document.AddFacts("Sample installation", "sample");
    sample.Add("Folder", "folder", Cell::Path(folder.Path()));
    sample.Add("At the end", "kept", {folder.IsKept() ? "kept" : "removed", folder.IsKept(), {}});
    sample.Add("Geoid grid", "grid",
               Cell::Of(arguments.grid.empty() ? "synthetic, not for navigation (--grid FILE takes a real one)"
                                               : arguments.grid));
    ReportFolders(document);
    ReportProject(document, project);
    ReportPermissions(document, options.appDef);
    ReportFormats(document, project);
    ReportShownUnits(document, project);
    const GeoidChoice geoid = ReportCoordinateSystem(document, project);
    ReportHeights(document, project, geoid, arguments.grid.empty());
    VesselConfig vessel;
    if (!OpenVessel(session, ToUtf8(kSampleVessel), vessel)) return kCannotRun;
    ReportVessel(session, document, vessel);
    document.Print(session);
    if (folder.IsKept()) {
        session.Note("kept; see for instance: orvcfg --system \"" + PathToBytes(SystemFolderOf(folder.Path())) +
                     "\" project show");
    }
    return kAllGood;
}

}  // namespace

void AddDemo(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "demo", "Make a sample installation and project, and show what an application learns",
                   "  orvcfg demo --grid nlgeo2018.gtx --keep");
    command->add_option("--grid", arguments->grid, "Grid of the Dutch quasi-geoid. Default: a made-up sample")
        ->type_name("FILE");
    command->add_flag("--keep", arguments->keep, "Leave the sample where it is");
    command->add_option("--folder", arguments->folder, "New or empty folder to make the sample in, and to leave it in")
        ->type_name("DIR");
    OnRun(command, session, arguments, Demo);
}

}  // namespace orv::cfg
