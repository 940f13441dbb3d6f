#include <map>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "ProjectReport.h"
#include "TimeText.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct NoArguments {};

struct NameArguments {
    std::string name;
};

// ---- list

ExitCode List(Session& session, const NoArguments&) {
    if (!OpenInstallation(session)) return kCannotRun;
    const DataSearch& search = DataSearch::GetDataSearch();
    std::vector<std::wstring> names;
    search.GetProjects(names);
    const std::wstring current = ChosenProject(session);
    Table table({{"", "current"},
                 {"Project", "name"},
                 {"Title", "title"},
                 {"Group", "group"},
                 {"Coordinate system", "system"},
                 {"Signature", "signature"},
                 {"Last change", "modified"}});
    std::wstring root;
    search.GetDataPathInfo(kLocationProjects, root);
    for (const std::wstring& name : names) {
        const std::wstring path = root + name + L"/" + std::wstring(PROJECT_FILENAME);
        FileStatus status;
        if (Files().Status(path, status) != FsResult::Ok || !status.exists) {
            session.Detail(PathToBytes(root + name) + ": holds no project file");
            continue;
        }
        ProtectedFileObject file;
        if (!ReadAsItIs(path, file)) {
            session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(file.LastResult())),
                            "Check the rights to the file.");
            continue;
        }
        std::wstring title, group, system;
        file.GetItem(HEADER_SECTION, PROJECT_NAME, title);
        file.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGroupName], group);
        file.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysSystemName], system);
        Cell mark = Cell::Flag(name == current);
        mark.text = name == current ? ">" : "";
        table.Add({mark, Cell::Of(name), Cell::OrMissing(title, "no title"), Cell::OrMissing(group, "no group"),
                   Cell::OrMissing(system, "no coordinate system"), Cell::Of(std::string(FileStateText(StateOf(file)))),
                   TimeCell(status.modified)});
    }
    Document::Print(session, table);
    if (table.Empty()) {
        session.Note("no projects in " + PathToBytes(root) + "; \"orvcfg project create\" makes one");
    }
    return kAllGood;
}

// ---- show

ExitCode Show(Session& session, const NameArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    if (!OpenProject(session, TextArgument(arguments.name))) return arguments.name.empty() ? kCannotRun : kSomeFailed;
    ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    Document document;
    ReportProject(document, project);
    ReportCoordinateSystem(document, project);
    ReportFormats(document, project);
    ReportDecimals(document, project);
    ReportUnits(document, project);
    document.Print(session);
    return kAllGood;
}

// ---- repair

using Items = std::map<std::pair<std::wstring, std::wstring>, std::wstring>;

Items ItemsOf(const FileObject& file) {
    Items items;
    FobjSection sections;
    std::wstring section, key, value;
    for (bool more = file.GetFirstSectionEntry(sections, section); more;
         more = file.GetNextSectionEntry(sections, section)) {
        if (section == FileObject::CHECKSUM_SECTION) continue;
        FobjSection entries;
        for (bool next = file.GetFirstMapEntry(entries, section, key, value); next;
             next = file.GetNextMapEntry(entries, key, value)) {
            items[{section, key}] = value;
        }
    }
    return items;
}

/// A name beside the project file that nothing has yet: an older copy may be the only good one.
std::wstring FreeCopyName(const std::wstring& path) {
    std::wstring name = path + L".before-repair";
    for (int number = 2; FileExists(name); ++number) name = path + L".before-repair-" + IntText(number);
    return name;
}

ExitCode Repair(Session& session, const NameArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    const std::wstring name = ChosenProject(session, TextArgument(arguments.name));
    if (!HasProject(session, name)) return arguments.name.empty() ? kCannotRun : kSomeFailed;
    const std::wstring path = ProjectFile(name);
    ProtectedFileObject before;
    if (!ReadAsItIs(path, before)) {
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(before.LastResult())),
                        "Check the rights to the file, or put a backup back.");
        return kSomeFailed;
    }
    const FileState state = StateOf(before);
    const std::wstring copy = FreeCopyName(path);
    if (const FsResult result = CopyWholeFile(path, copy); result != FsResult::Ok) {
        session.Problem(PathToBytes(copy),
                        "No copy can be kept, so nothing is repaired: " + ToUtf8(FsResultText(result)));
        return kSomeFailed;
    }
    const Items old = ItemsOf(before);
    DataSearch::GetDataSearch().GetProjectDefinition().RepairFile(path);

    ProtectedFileObject after;
    Table changes({{"Change", "change"}, {"Section", "section"}, {"Key", "key"}, {"Value", "value"}, {"Was", "was"}});
    const bool read = ReadAsItIs(path, after);
    for (const auto& [place, value] : ItemsOf(after)) {
        const auto earlier = old.find(place);
        if (earlier != old.end() && earlier->second == value) continue;
        const bool added = earlier == old.end();
        changes.Add({Cell::Of(std::string(added ? "added" : "changed")), Cell::Of(place.first), Cell::Of(place.second),
                     Cell::Of(value), added ? Cell{"", nullptr, {}} : Cell::Of(earlier->second)});
    }
    Document document;
    Facts& facts = document.AddFacts("Repair", "repair");
    facts.Add("File", "file", Cell::Path(path));
    facts.Add("Copy of before", "copy", Cell::Path(copy));
    facts.Add("Signature before", "signatureBefore", Cell::Of(std::string(FileStateText(state))));
    facts.Add("Signature now", "signatureNow",
              read ? Cell::Of(std::string(FileStateText(StateOf(after)))) : Cell::Missing("the file can't be read"));
    if (changes.Empty()) {
        facts.Add("Changes", "changes", Cell::Of(std::string("none: nothing was missing")));
    } else {
        document.AddTable("Changes", "changes", {}) = changes;
    }
    document.Print(session);
    return OpenProject(session, name) ? kAllGood : kSomeFailed;
}

}  // namespace

void AddProject(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "project", "Make, list, show, repair and upgrade projects");
    AddProjectCreate(*group, session);
    CLI::App* list = AddCommand(*group, "list", "List the projects with title, coordinate system and signature",
                                "  orvcfg --system /srv/survey/system project list");
    OnRun(list, session, std::make_shared<NoArguments>(), List);

    auto shown = std::make_shared<NameArguments>();
    CLI::App* show = AddCommand(*group, "show", "Show all that a project tells an application",
                                "  orvcfg project show Harbour --json | jq .coordinateSystem");
    show->add_option("NAME", shown->name, "Project. Default: the current one");
    OnRun(show, session, shown, Show);

    auto repaired = std::make_shared<NameArguments>();
    CLI::App* repair =
        AddCommand(*group, "repair", "Add what a project file lacks; a copy of it is kept first",
                   "  orvcfg project repair Harbour\n\n"
                   "The choice of application definition and configuration is emptied: select them again.");
    repair->add_option("NAME", repaired->name, "Project. Default: the current one");
    OnRun(repair, session, repaired, Repair);
    AddProjectUpgrade(*group, session);
    AddProjectSystems(*group, session);
}

}  // namespace orv::cfg
