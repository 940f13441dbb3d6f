// Projects of an older form: what their conversion would do, and the conversion with copies of all it touches.

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "core/ConfigKeys.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

using Outcome = VesselUpgrade::Outcome;

struct UpgradeArguments {
    std::string name;
    bool plan = false;
};

std::string OutcomeText(const VesselUpgrade& vessel) {
    switch (vessel.outcome) {
        case Outcome::NotOpened:
            return "left out: can't be read";
        case Outcome::AlreadyConverted:
            return "refused: converted before";
        case Outcome::Converts:
            return "converts";
        case Outcome::Refused:
            break;
    }
    return "refused";
}

bool Stops(const VesselUpgrade& vessel) {
    return vessel.outcome == Outcome::AlreadyConverted || vessel.outcome == Outcome::Refused;
}

Table PlanTable(const std::vector<VesselUpgrade>& plan) {
    Table table({{"Id", "id", true},
                 {"Vessel", "vessel"},
                 {"Outcome", "outcome"},
                 {"Heights", "model"},
                 {"Separation", "manualSeparation", true},
                 {"X", "x", true},
                 {"Y", "y", true},
                 {"Z", "z", true}});
    for (const VesselUpgrade& vessel : plan) {
        const bool converts = vessel.outcome == Outcome::Converts;
        const auto number = [&](bool known, double value) {
            return known ? Cell::Number(value, 3) : Cell{"", nullptr, {}};
        };
        const bool manual = converts && vessel.model == GeoidmodelTypeKeys[1];
        table.Add({Cell::Count(vessel.id), Cell::Of(GetNameFromPath(vessel.path)), Cell::Of(OutcomeText(vessel)),
                   converts ? Cell::Of(vessel.reducesHeights ? vessel.model : std::wstring(L"not reduced"))
                            : Cell{"", nullptr, {}},
                   number(manual, vessel.manualSeparation), number(converts, vessel.postCorrection.X),
                   number(converts, vessel.postCorrection.Y), number(converts, vessel.postCorrection.Z)});
    }
    return table;
}

/// Tells each refusal. False if there is one: the conversion would stop there, with the vessels ahead of it changed.
bool TellRefusals(Session& session, const std::vector<VesselUpgrade>& plan) {
    bool good = true;
    for (const VesselUpgrade& vessel : plan) {
        if (!Stops(vessel)) continue;
        good = false;
        std::wstring why = vessel.outcome == Outcome::Refused
                               ? vessel.problem
                               : L"The project is marked for conversion, but this vessel is converted already";
        for (wchar_t& character : why) {
            if (character == L'\n') character = L' ';
        }
        session.Problem(PathToBytes(vessel.path), ToUtf8(why),
                        vessel.outcome == Outcome::Refused
                            ? "Make the settings of its devices agree in the version that wrote them."
                            : "Put back the copies from before the conversion that stopped, then try again.");
    }
    return good;
}

/// A new folder beside the project file, named by the time in UTC. Empty after a problem has been told.
std::wstring MakeCopyFolder(Session& session, const std::wstring& projectPath) {
    const CalendarTime now = UtcCalendar(TheClock().UtcMilliseconds() / 1000);
    const auto two = [](int number) { return (number < 10 ? L"0" : L"") + IntText(number); };
    const std::wstring stem = GetFolderFromPath(projectPath) + L"before-upgrade-" + IntText(now.year) + two(now.month) +
                              two(now.day) + L"T" + two(now.hour) + two(now.minute) + two(now.second) + L"Z";
    std::wstring folder = stem;
    for (int more = 2; FileExists(folder) || FolderExists(folder); ++more) folder = stem + L"-" + IntText(more);
    if (Files().MakeFolder(folder) == FsResult::Ok) return folder + L"/";
    session.Problem(PathToBytes(folder), "The folder for the copies can't be made, so nothing is converted",
                    "Check the rights to the project's folder.");
    return {};
}

bool KeepCopies(Session& session, const std::vector<std::wstring>& files, const std::wstring& folder, Table& copies) {
    for (const std::wstring& path : files) {
        if (!FileExists(path)) continue;
        const std::wstring copy = folder + GetNameFromPath(path);
        if (const FsResult result = CopyWholeFile(path, copy); result != FsResult::Ok) {
            session.Problem(PathToBytes(copy),
                            "No copy can be kept, so nothing is converted: " + ToUtf8(FsResultText(result)));
            return false;
        }
        copies.Add({Cell::Path(path), Cell::Path(copy)});
    }
    return true;
}

ExitCode Upgrade(Session& session, const UpgradeArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    const std::wstring name = ChosenProject(session, TextArgument(arguments.name));
    if (!HasProject(session, name)) return arguments.name.empty() ? kCannotRun : kSomeFailed;
    DataSearch& search = DataSearch::GetDataSearch();
    search.GetOrvIni().SetCurrentProjectName(name);  // for this run: the folders are those of the project
    const std::wstring path = ProjectFile(name);

    ProjectDefinition planned;
    bool marked = false;
    std::vector<VesselUpgrade> plan;
    if (!planned.PlanUpgrade(path, marked, plan)) {
        session.Problem(PathToBytes(path), ToUtf8(planned.LastProblem()));
        return kSomeFailed;
    }
    Document document;
    Facts& facts = document.AddFacts("Upgrade", "upgrade");
    facts.Add("Project", "project", Cell::Path(path));
    facts.Add("To be converted", "marked", Cell::Flag(marked));
    if (!plan.empty()) document.AddTable("Vessels", "vessels", {}) = PlanTable(plan);
    const bool agreed = TellRefusals(session, plan);
    if (!marked || !agreed || arguments.plan) {
        document.Print(session);
        return agreed ? kAllGood : kSomeFailed;
    }

    std::vector<std::wstring> touched = {path, SystemFolder(session) + L"CoordSystems.geo"};
    if (std::wstring units; search.GetFullPath(kFileTypeUnits, units)) touched.push_back(units);
    for (const VesselUpgrade& vessel : plan) {
        if (vessel.outcome == Outcome::Converts) touched.push_back(vessel.path);
    }
    const std::wstring folder = MakeCopyFolder(session, path);
    if (folder.empty()) return kSomeFailed;
    Table copies({{"File", "file"}, {"Copy", "copy"}});
    if (!KeepCopies(session, touched, folder, copies)) return kSomeFailed;
    facts.Add("Copies of before", "copies", Cell::Path(folder));
    document.AddTable("Copies", "copied", {}) = copies;
    bool good = OpenProject(session, name);
    if (good) {
        // The mark is gone in memory only: left on the disk, the project would not open again.
        ProjectDefinition& project = search.GetProjectDefinition();
        good = project._BackupCoordSysInfo() && project.FileSave(L"", 0, kSave);
        if (!good) {
            session.Problem(PathToBytes(path), "The converted project can't be saved",
                            "Put back the copies from " + PathToBytes(folder) + ".");
        }
    }
    document.Print(session);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddProjectUpgrade(CLI::App& project, Session& session) {
    auto arguments = std::make_shared<UpgradeArguments>();
    CLI::App* upgrade =
        AddCommand(project, "upgrade",
                   "Convert the geodesy of a project of an older form; copies of all it touches are kept first",
                   "  orvcfg project upgrade Harbour --plan\n  orvcfg project upgrade Harbour");
    upgrade->add_option("NAME", arguments->name, "Project. Default: the current one");
    upgrade->add_flag("--plan", arguments->plan, "Only show what would be done, or why it would be refused");
    OnRun(upgrade, session, arguments, Upgrade);
}

}  // namespace orv::cfg
