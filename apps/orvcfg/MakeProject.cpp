#include "MakeProject.h"

#include "Installation.h"
#include "Session.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

bool IsGoodName(Session& session, const std::wstring& name) {
    const bool good = !TrimBlanks(name).empty() && TrimBlanks(name).size() == name.size() && IsAllowedName(name) &&
                      name != L"." && name != L".." && !EqualNoCase(name, PROJECTS_COMMON_FILES);
    if (good) return true;
    session.Problem({}, "\"" + ToUtf8(name) + "\" can't be the name of a project",
                    "It becomes a folder: no blanks at its ends and none of < > : \" / \\ | ? *.");
    return false;
}

/// Module key and unit that go with the wanted system. Empty unit after a problem has been told.
struct ModuleAnswer {
    std::wstring key, unit;
};

ModuleAnswer AskModule(Session& session, const NewProject& wanted) {
    ModuleAnswer answer;
    if (!DataSearch::GetDataSearch().GetCoordSysKey(answer.key)) answer.key = COORDSYS_MODULE_KEY;
    OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
    if (!loader.LoadDLL(answer.key, nullptr)) {
        session.Problem(
            {}, "The coordinate module " + ToUtf8(answer.key) + " can't be loaded: " + ToUtf8(loader.LastError()),
            "It comes with the program: install it again.");
        return answer;
    }
    const auto database = OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(answer.key);
    if (!database) {
        session.Problem({}, "The coordinate module " + ToUtf8(answer.key) + " has no database of systems");
        return answer;
    }
    answer.unit = database->UnitOfSystem(wanted.group, wanted.system);
    if (!answer.unit.empty()) return answer;

    std::vector<std::wstring> groups = database->Groups();
    const std::vector<std::wstring> systems = database->Systems(wanted.group);
    if (systems.empty()) {
        std::string remedy = DidYouMean(wanted.group, groups);
        if (remedy.empty()) remedy = "\"orvcfg project systems\" shows the groups.";
        session.Problem({}, "There is no group of coordinate systems \"" + ToUtf8(wanted.group) + "\"", remedy);
        return answer;
    }
    std::string remedy = DidYouMean(wanted.system, systems);
    if (FileExists(WithSeparator(AbsolutePath(wanted.system)) + std::wstring(ORV_DEF_FILENAME))) {
        remedy = "To name the system folder, put --system in front of \"project\".";
    } else if (remedy.empty()) {
        remedy = "\"orvcfg project systems\" shows those of each group.";
    }
    session.Problem({},
                    "Group \"" + ToUtf8(wanted.group) + "\" has no coordinate system \"" + ToUtf8(wanted.system) + "\"",
                    remedy);
    return answer;
}

std::wstring Today() {
    const CalendarTime now = LocalCalendar(TheClock().UtcMilliseconds() / 1000);
    const auto two = [](int number) { return (number < 10 ? L"0" : L"") + IntText(number); };
    return IntText(now.year) + L"-" + two(now.month) + L"-" + two(now.day);
}

bool Fill(ProjectDefinition& project, const NewProject& wanted, const ModuleAnswer& module,
          const std::wstring& appDef) {
    bool good = true;
    const auto describe = [&](std::size_t row, const std::wstring& text) {
        if (!text.empty()) good = project.SetItem(HEADER_SECTION, projDescKeys[row], text, true) && good;
    };
    describe(0, wanted.title.empty() ? wanted.name : wanted.title);
    describe(1, wanted.number);
    describe(2, wanted.task);
    describe(3, wanted.client);
    describe(4, wanted.contractor);
    describe(5, wanted.remarks);
    describe(6, Today());
    SetCoordSysData(&project, wanted.group, wanted.system, module.key, module.unit, wanted.geoid.key, wanted.geoid.file,
                    wanted.geoid.chartDatum, L"", L"");
    // The section is of the present layout: without this item it would be taken for one to convert.
    good = project.SetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, GEODESY_VERSION, true) && good;
    return project.SetAppDefinition(appDef) && good;
}

}  // namespace

bool MakeProject(Session& session, const NewProject& wanted) {
    DataSearch& search = DataSearch::GetDataSearch();
    std::wstring root;
    if (!IsGoodName(session, wanted.name)) return false;
    if (!search.GetDataPathInfo(kLocationProjects, root) || root.empty()) {
        session.Problem({}, "The settings name no projects folder",
                        "Set Projects in [DataPath] of ORV.ini, or use --projects-root.");
        return false;
    }
    const std::wstring folder = root + wanted.name + L"/";
    if (FileExists(folder + std::wstring(PROJECT_FILENAME))) {
        session.Problem(PathToBytes(folder), "The project is there already", "Choose another name.");
        return false;
    }
    const ModuleAnswer module = AskModule(session, wanted);
    if (module.unit.empty()) return false;

    const bool newFolder = !FolderExists(folder);
    const FsResult made = MakeFolders(folder);
    const std::wstring path = folder + std::wstring(PROJECT_FILENAME);
    ProjectDefinition project;
    const bool written =
        made == FsResult::Ok && project.CreateDefaultFile(folder, true) && project.FileOpen(path, false, kOpenRead) &&
        Fill(project, wanted, module, TextArgument(session.options.appDef)) && project.FileSave(path, 0, kSave);
    if (!written) {
        const FsResult why = made == FsResult::Ok ? project.LastResult() : made;
        session.Problem(PathToBytes(path), "The project can't be written: " + ToUtf8(FsResultText(why)),
                        "Check the rights to the projects folder and the space on its disk.");
    }
    if (written && OpenProject(session, wanted.name)) return true;
    if (newFolder) RemoveTree(folder);
    return false;
}

}  // namespace orv::cfg
