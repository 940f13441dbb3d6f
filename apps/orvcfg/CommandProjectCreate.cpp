#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "MakeProject.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct CreateArguments {
    std::string name, title, number, task, client, contractor, remarks;
    std::string group = ToUtf8(DEFAULT_COORDSYS_GROUP), system = ToUtf8(DEFAULT_COORDSYS_NAME);
    std::string geoid, geoidFile, chartDatum;
    bool select = false;
};

/// The settings remember the project that applications open when nobody names one.
bool Select(Session& session, const std::wstring& name) {
    OrvIniFile_IO& settings = DataSearch::GetDataSearch().GetOrvIni();
    if (settings.SetCurrentProjectName(name) && settings.FileSave(L"", 0, kSave)) return true;
    session.Problem(PathToBytes(settings.GetFileName()),
                    "The current project can't be set: " + ToUtf8(FsResultText(settings.LastResult())),
                    "Check the rights to the file.");
    return false;
}

ExitCode Create(Session& session, const CreateArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    NewProject wanted;
    wanted.name = TextArgument(arguments.name);
    wanted.title = TextArgument(arguments.title);
    wanted.number = TextArgument(arguments.number);
    wanted.task = TextArgument(arguments.task);
    wanted.client = TextArgument(arguments.client);
    wanted.contractor = TextArgument(arguments.contractor);
    wanted.remarks = TextArgument(arguments.remarks);
    wanted.group = TextArgument(arguments.group);
    wanted.system = TextArgument(arguments.system);
    if (!arguments.geoid.empty()) {
        const auto type = GeoidTypeArgument(session, arguments.geoid);
        if (!type) return kSomeFailed;
        wanted.geoid = {GeoidKey(*type), PathArgument(arguments.geoidFile), TextArgument(arguments.chartDatum)};
        const OpenedGeoid opened = OpenGeoid(wanted.geoid);
        // The grid may come later: without it the project opens, and heights stay out.
        if (!opened.problem.empty()) session.Note("no heights yet: " + opened.problem);
    }
    const std::wstring before = DataSearch::GetDataSearch().GetCurrentProjectName();
    if (!MakeProject(session, wanted)) return kSomeFailed;

    const bool first = before.empty() || !FileExists(ProjectFile(before));
    ProjectFile(before);
    if ((arguments.select || first) && !Select(session, wanted.name)) return kSomeFailed;
    const ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    Document document;
    Facts& facts = document.AddFacts("New project", "project");
    facts.Add("Name", "name", Cell::Of(wanted.name));
    facts.Add("File", "file", Cell::Path(project.GetFileName()));
    facts.Add("Coordinate system", "system", Cell::Of(wanted.group + L" / " + wanted.system));
    facts.Add("Current project", "current", Cell::Flag(arguments.select || first));
    document.Print(session);
    return kAllGood;
}

struct SystemsArguments {
    std::string group;
};

ExitCode Systems(Session& session, const SystemsArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    std::wstring key;
    if (!DataSearch::GetDataSearch().GetCoordSysKey(key)) key = COORDSYS_MODULE_KEY;
    OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
    const bool loaded = loader.LoadDLL(key, nullptr);
    const auto database = loaded ? OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(key) : nullptr;
    if (!database) {
        session.Problem({}, "The coordinate module " + ToUtf8(key) + " can't be loaded: " + ToUtf8(loader.LastError()),
                        "It comes with the program: install it again.");
        return kCannotRun;
    }
    const std::vector<std::wstring> groups = database->Groups();
    const std::wstring wanted = TextArgument(arguments.group);
    Table table({{"Group", "group"}, {"System", "system"}, {"Unit", "unit"}, {"Description", "description"}});
    for (const std::wstring& group : groups) {
        if (!wanted.empty() && group != wanted) continue;
        for (const std::wstring& system : database->Systems(group)) {
            table.Add({Cell::Of(group), Cell::Of(system), Cell::Of(database->UnitOfSystem(group, system)),
                       Cell::Of(database->ListEntry(group, system))});
        }
    }
    if (table.Empty()) {
        session.Problem({}, "There is no group of coordinate systems \"" + arguments.group + "\"",
                        DidYouMean(wanted, groups));
        return kSomeFailed;
    }
    Document::Print(session, table);
    return kAllGood;
}

}  // namespace

void AddProjectCreate(CLI::App& project, Session& session) {
    auto arguments = std::make_shared<CreateArguments>();
    CLI::App* command = AddCommand(project, "create", "Make a project and open it once as the applications do",
                                   "  orvcfg project create Harbour --group Netherlands --system \"RD New - NAP 2018\""
                                   " \\\n      --title \"Harbour maintenance\" --client \"Port authority\"");
    command->add_option("NAME", arguments->name, "Name of the project and of its folder")->required();
    const auto option = [&](const std::string& name, std::string& value, const std::string& what) {
        return command->add_option(name, value, what)->type_name("TEXT");
    };
    option("--group", arguments->group, "Group of coordinate systems")->capture_default_str();
    // The global option of the same name is meant in front of "project".
    option("--coord-system,--system", arguments->system, "Coordinate system of the group")->capture_default_str();
    option("--geoid", arguments->geoid, "Geoid model, by key or type id. Default: as the system has it");
    option("--geoid-file", arguments->geoidFile, "Grid file of the geoid model");
    option("--chart-datum", arguments->chartDatum, "Chart datum of the geoid model");
    option("--title", arguments->title, "Title. Default: the name");
    option("--number", arguments->number, "Project number");
    option("--task", arguments->task, "Task");
    option("--client", arguments->client, "Client");
    option("--contractor", arguments->contractor, "Contractor");
    option("--remarks", arguments->remarks, "Remarks");
    command->add_flag("--select", arguments->select, "Make it the current project; the first one is so anyway");
    OnRun(command, session, arguments, Create);
}

void AddProjectSystems(CLI::App& project, Session& session) {
    auto arguments = std::make_shared<SystemsArguments>();
    CLI::App* command = AddCommand(project, "systems", "List the coordinate systems that a project can have",
                                   "  orvcfg project systems Netherlands");
    command->add_option("GROUP", arguments->group, "Only those of this group");
    OnRun(command, session, arguments, Systems);
}

}  // namespace orv::cfg
