#include <algorithm>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "core/MergeSave.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "project/AppConfig.h"
#include "project/AppSelection.h"

namespace orv::cfg {

namespace {

struct ShowArguments {
    std::string name;
};

struct SelectArguments {
    std::string definition, configuration;
    bool create = false;
};

/// The chosen project's file as it stands; empty after a problem has been told.
std::wstring ReadProject(Session& session, ProjectDefinition& project) {
    const std::wstring name = ChosenProject(session);
    if (!HasProject(session, name)) return {};
    const std::wstring path = ProjectFile(name);
    if (ReadAsItIs(path, project)) return path;
    session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(project.LastResult())),
                    "Check the rights to the file.");
    return {};
}

std::wstring ConfigName(const std::wstring& configuration, const std::wstring& definition) {
    return configuration + L"[" + definition + L"]";
}

std::wstring ConfigPath(unsigned type, std::wstring name) {
    DataSearch::GetDataSearch().GetFullPath(type, name);
    return name;
}

// ---- show

/// A computer's row; what its section doesn't hold is missing.
void AddComputer(Table& table, const std::string& role, int no, std::wstring_view name, const Cell& port,
                 std::wstring_view layout, std::wstring_view profile, const Cell& enabled) {
    table.Add({Cell::Of(role), no > 0 ? Cell::Count(no) : Cell::Of(std::string()),
               Cell::OrMissing(name, "the configuration names none"), port, Cell::OrMissing(layout, "no layout is set"),
               Cell::Of(profile), enabled});
}

void ReportComputers(Document& document, const AppConfig& config) {
    Table& table = document.AddTable("Computers", "computers",
                                     {{"Role", "role"},
                                      {"No", "no", true},
                                      {"Name", "name"},
                                      {"Port", "port", true},
                                      {"Layout", "layout"},
                                      {"Profile", "profile"},
                                      {"Enabled", "enabled"}});
    const Cell none = Cell::Of(std::string());
    std::wstring name, layout, profile, user;
    unsigned port = 0;
    if (config.HasSection(L"Master")) {
        const bool whole = config.GetMaster(name, port, profile);
        AddComputer(table, "master", 0, name, whole ? Cell::Count(port) : Cell::Missing("no port"), L"-", profile,
                    none);
    }
    if (config.HasSection(L"ACServer")) {
        name.clear(), layout.clear(), profile.clear();
        const bool whole = config.GetACServer(name, port, layout, profile, user);
        AddComputer(table, "acquisition", 0, name, whole ? Cell::Count(port) : Cell::Missing("no port"), layout,
                    profile, none);
    }
    for (int no = 1; no <= config.GetNumEntries(L"Remote(%d)"); ++no) {
        name.clear();
        config.GetRemote(no, name, port);
        const bool whole = config.GetItem(L"Remote(" + IntText(no) + L")", L"Port", port);
        AddComputer(table, "remote", no, name, whole ? Cell::Count(port) : Cell::Missing("no port"), L"-", L"-", none);
    }
    for (int no = 1; no <= config.GetNumEntries(L"Presentation(%d)"); ++no) {
        bool enabled = false;
        name.clear(), layout.clear(), profile.clear();
        config.GetPresentation(no, name, layout, profile, user, enabled);
        AddComputer(table, "presentation", no, name, none, layout, profile, Cell::Flag(enabled));
    }
}

Cell RemoteCell(const AppConfig& config, unsigned id) {
    std::wstring host, name;
    unsigned port = 0, remoteId = 0;
    if (!config.GetRemoteVesselHost(id, host, port)) return Cell::Of(std::string("-"));
    std::string text = ToUtf8(host) + ":" + std::to_string(port);
    if (config.GetRemoteVesselId(id, remoteId)) text += ", vessel " + std::to_string(remoteId);
    if (config.GetRemoteConfig(id, name)) text += " of " + ToUtf8(name);
    bool limited = false;
    double rate = 0;
    if (config.GetRemoteUpdateRate(id, limited, rate) && limited) text += ", update rate " + ToUtf8(ShortestText(rate));
    return Cell::Of(text);
}

void ReportVessels(Document& document, AppConfig& config) {
    Table& table = document.AddTable(
        "Vessels", "vessels",
        {{"Id", "id", true}, {"Enabled", "enabled"}, {"File", "file"}, {"There", "exists"}, {"Comes from", "remote"}});
    unsigned id = 0;
    for (bool more = config.GetFirstVesselId(id); more; more = config.GetNextVesselId(id)) {
        bool enabled = false;
        std::wstring name;
        const Cell state =
            config.GetVesselEnable(id, enabled) ? Cell::Flag(enabled) : Cell::Missing("it isn't told whether it is on");
        const Cell none = Cell::Missing("no vessel file is named");
        const bool named = config.GetVesselConfig(id, name);
        const std::wstring path = named ? ConfigPath(kFileTypeVesselConfig, name) : L"";
        table.Add({Cell::Count(id), state, named ? Cell::Path(path) : none, named ? Cell::Flag(FileExists(path)) : none,
                   RemoteCell(config, id)});
    }
}

ExitCode Show(Session& session, const ShowArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    ProjectDefinition project;
    if (ReadProject(session, project).empty()) return kCannotRun;
    std::wstring definition, configuration = TextArgument(arguments.name), description;
    project.GetAppDefinition(definition);
    project.GetAppDefDescription(description);
    if (configuration.empty()) project.GetAppConfiguration(configuration);

    Document document;
    Facts& facts = document.AddFacts("Application", "application");
    const std::vector<std::wstring> offered = ConfigsOfDefinition(kFileTypeAppConfig, definition);
    std::string others;
    for (const std::wstring& name : offered) others += (others.empty() ? "" : ", ") + ToUtf8(name);
    facts.Add("Definition", "definition", Cell::OrMissing(definition, "the project names none"));
    facts.Add("Description", "description", Cell::OrMissing(description, "the project has none"));
    facts.Add("Configuration", "configuration", Cell::OrMissing(configuration, "the project names none"));
    facts.Add("On offer", "offered", Cell::OrMissing(FromUtf8(others), "the definition has no configurations"));
    if (configuration.empty()) {
        document.Print(session);
        session.Note("\"orvcfg app select\" chooses a configuration");
        return kAllGood;
    }
    const std::wstring path = ConfigPath(kFileTypeAppConfig, ConfigName(configuration, definition));
    facts.Add("File", "file", Cell::Path(path));
    AppConfig config;
    const bool opened = config.FileOpen(path, kOpenRead);
    if (opened) {
        facts.Add("Colour tables of the project", "projectColorTables", Cell::Flag(config.GetUseProjectColorTables()));
        facts.Add("Colour table for depth", "depthColorTable", Cell::Of(config.GetColorTable(0)));
        ReportComputers(document, config);
        ReportVessels(document, config);
    } else {
        std::string remedy = DidYouMean(configuration, offered);
        if (remedy.empty()) remedy = "\"orvcfg app select\" chooses another, or makes it with --create.";
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(config.LastResult())), remedy);
    }
    document.Print(session);
    return opened ? kAllGood : kSomeFailed;
}

// ---- select

const AppDefChoice* Find(Session& session, const std::vector<AppDefChoice>& known, const std::wstring& title) {
    std::vector<std::wstring> titles;
    std::string all;
    for (const AppDefChoice& choice : known) {
        if (choice.title == title) return &choice;
        titles.push_back(choice.title);
        all += (all.empty() ? "" : ", ") + ToUtf8(choice.title);
    }
    std::string remedy = DidYouMean(title, titles);
    if (remedy.empty()) remedy = all.empty() ? "The installation has none." : "There are: " + all + ".";
    session.Problem({}, "There is no application definition \"" + ToUtf8(title) + "\"", remedy);
    return nullptr;
}

/// Makes a configuration that isn't there. False after a problem has been told.
bool MakeConfig(Session& session, const std::wstring& configuration, const std::wstring& path) {
    AppConfig config;
    if (!IsAllowedName(configuration) || configuration.find_first_of(L"[]") != configuration.npos) {
        session.Problem({}, "\"" + ToUtf8(configuration) + "\" can't be the name of a configuration",
                        "It becomes part of a file name: none of [ ] < > : \" / \\ | ? *.");
        return false;
    }
    if (config.FileOpen(path, kOpenCreateWrite)) return true;
    session.Problem(PathToBytes(path), "Can't be made: " + ToUtf8(FsResultText(config.LastResult())),
                    "Check the rights to the folder and the space on its disk.");
    return false;
}

bool MayChange(Session& session, const ProjectDefinition& project, const std::wstring& path) {
    const FileState state = StateOf(project);
    if (state == FileState::Valid || state == FileState::Unsigned) return true;
    session.Problem(PathToBytes(path),
                    "The project doesn't verify (" + std::string(FileStateText(state)) + "), so it isn't changed",
                    "Look through it; \"orvcfg config sign\" signs it as it stands.");
    return false;
}

ExitCode Select(Session& session, const SelectArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    ProjectDefinition project;
    const std::wstring path = ReadProject(session, project);
    if (path.empty()) return kCannotRun;
    if (!MayChange(session, project, path)) return kSomeFailed;
    MergeSave merge(project);
    CAppDefDlg dialog(project);
    const AppDefChoice* definition = Find(session, dialog.GetDefinitions(), TextArgument(arguments.definition));
    if (!definition) return kSomeFailed;

    std::wstring configuration;
    const std::vector<std::wstring> offered = dialog.GetConfigurations(definition->title, configuration);
    if (!arguments.configuration.empty()) configuration = TextArgument(arguments.configuration);
    const std::wstring file = ConfigPath(kFileTypeAppConfig, ConfigName(configuration, definition->title));
    const bool there = std::find(offered.begin(), offered.end(), configuration) != offered.end();
    if (!there && arguments.create && !configuration.empty()) {
        if (!MakeConfig(session, configuration, file)) return kSomeFailed;
    } else if (!there) {
        std::string remedy = DidYouMean(configuration, offered);
        if (remedy.empty()) remedy = "Name it and add --create to make it.";
        session.Problem({},
                        configuration.empty() ? "The definition has no configuration to choose"
                                              : "\"" + ToUtf8(definition->title) + "\" has no configuration \"" +
                                                    ToUtf8(configuration) + "\"",
                        remedy);
        return kSomeFailed;
    }
    if (!dialog.OnOK(definition->description, configuration) || !merge.Save(path)) {
        session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(merge.LastResult())),
                        "Check the rights to the file and the space on its disk.");
        return kSomeFailed;
    }
    std::wstring written;
    project.GetAppDefinition(written);
    // The form knows definitions by what they say of themselves; of two that say the same it takes the first.
    if (written != definition->title) {
        session.Note("\"" + ToUtf8(written) + "\" has the same description and comes first, so it was taken");
    }
    Document document;
    Facts& facts = document.AddFacts("The project runs", "application");
    facts.Add("Definition", "definition", Cell::Of(written));
    facts.Add("Description", "description", Cell::Of(definition->description));
    facts.Add("Configuration", "configuration", Cell::Of(configuration));
    facts.Add("File", "file", Cell::Path(file));
    document.Print(session);
    return kAllGood;
}

}  // namespace

void AddApp(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "app", "Show and choose what a project runs");
    auto shown = std::make_shared<ShowArguments>();
    CLI::App* show = AddCommand(*group, "show", "Show computers, vessels and colours of an application configuration",
                                "  orvcfg --project Harbour app show");
    show->add_option("NAME", shown->name, "Configuration of the project's definition. Default: the project's");
    OnRun(show, session, shown, Show);

    auto selected = std::make_shared<SelectArguments>();
    CLI::App* select = AddCommand(*group, "select", "Choose application definition and configuration of a project",
                                  "  orvcfg --project Harbour app select navigate Survey --create");
    select->add_option("DEFINITION", selected->definition, "Application definition")->required();
    select->add_option("CONFIGURATION", selected->configuration, "Default: the present one, or the first on offer");
    select->add_flag("--create", selected->create, "Make a configuration that isn't there");
    OnRun(select, session, selected, Select);
}

}  // namespace orv::cfg
