#include <algorithm>

#include "Commands.h"
#include "Document.h"
#include "FileTypeChoice.h"
#include "HouseReports.h"
#include "Installation.h"
#include "Suggest.h"
#include "TimeText.h"
#include "core/ConfigKeys.h"
#include "housekeeping/FileHistory.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct ListArguments {
    std::string type, title;
};

struct AtArguments {
    std::string time, type, title;
};

struct RoundArguments {};

struct RestoreArguments {
    std::string time, type, title;
    bool yes = false;
};

bool OpenHistory(Session& session, FileHistory& history) {
    if (!OpenInstallation(session) || !OpenProject(session)) return false;
    if (!history.LoadSettings(DataSearch::GetDataSearch())) {
        session.Problem({}, "The history folder isn't known", "Set FileHistory in [DataPath] of ORV.ini.");
        return false;
    }
    if (!history.IsEnabled()) session.Note("the file history of this project is off; applications make no copies");
    return true;
}

std::string SwitchOn() {
    const std::string file = PathToBytes(DataSearch::GetDataSearch().GetProjectDefinition().GetFileName());
    return "\"orvcfg config set --add '" + file + "' FileHistory Enabled 1\" switches it on; each file type has a key.";
}

/// The types under history that an argument means; empty after a problem has been told.
std::vector<const CFileType*> HistoryTypes(Session& session, const FileHistory& history, const std::string& which) {
    std::vector<const CFileType*> types = TypesOf(session, which);
    const bool known = !types.empty();
    std::erase_if(types, [&](const CFileType* type) { return !history.Types().contains(type->GetID()); });
    if (!known || !types.empty()) return types;
    if (which.empty()) {
        session.Problem({}, "No file type is under history in this project", SwitchOn());
        return types;
    }
    std::string remedy = "Under history are:";
    for (const auto& [id, extension] : history.Types()) remedy += " " + ToUtf8(fileTypeKeys[id]);
    session.Problem({}, "File type \"" + which + "\" isn't under history in this project",
                    history.Types().empty() ? SwitchOn() : remedy + ".");
    return types;
}

// ---- list and at

ExitCode List(Session& session, const ListArguments& arguments) {
    FileHistory history;
    if (!OpenHistory(session, history)) return kCannotRun;
    const std::vector<const CFileType*> types = HistoryTypes(session, history, arguments.type);
    if (types.empty()) return kSomeFailed;
    Table table(
        {{"Type", "type"}, {"Title", "title"}, {"State of", "modified"}, {"Size", "size", true}, {"Copy", "path"}});
    for (const CFileType* type : types) {
        for (const HistoryCopy& copy : history.ListCopies(type->GetID(), TextArgument(arguments.title))) {
            table.Add({Cell::Of(type->GetFileID()), Cell::Of(copy.title), TimeCell(copy.modified),
                       Cell::Count(static_cast<std::int64_t>(copy.size)), Cell::Path(copy.path)});
        }
    }
    if (table.Empty()) session.Note("no copies");
    Document::Print(session, table);
    return kAllGood;
}

struct Found {
    const CFileType* type = nullptr;
    std::wstring path;  ///< of the copy
    CTime time = 0;
};

/// The copy that was valid at a time; none after a problem has been told.
std::optional<Found> FindCopy(Session& session, const FileHistory& history, const AtArguments& arguments) {
    const std::optional<CTime> time = ReadTime(arguments.time);
    if (!time) {
        session.Problem({}, "\"" + arguments.time + "\" is no time", kTimeForms);
        return std::nullopt;
    }
    const std::vector<const CFileType*> types = HistoryTypes(session, history, arguments.type);
    if (types.empty()) return std::nullopt;
    const std::wstring title = TextArgument(arguments.title);
    std::vector<std::wstring> known;
    for (const CFileType* type : types) {
        std::wstring path = title;
        if (history.GetFullPath(type->GetID(), path, *time)) return Found{type, path, *time};
        for (const HistoryCopy& copy : history.ListCopies(type->GetID(), L"")) {
            if (known.empty() || known.back() != copy.title) known.push_back(copy.title);
        }
    }
    const std::string remedy = DidYouMean(title, known);
    session.Problem({}, "There is no copy of \"" + arguments.title + "\"",
                    remedy.empty() ? "\"orvcfg history list\" shows all copies." : remedy);
    return std::nullopt;
}

ExitCode At(Session& session, const AtArguments& arguments) {
    FileHistory history;
    if (!OpenHistory(session, history)) return kCannotRun;
    const std::optional<Found> found = FindCopy(session, history, arguments);
    if (!found) return kSomeFailed;
    FileStatus status;
    if (Files().Status(found->path, status) != FsResult::Ok || !status.exists) {
        session.Problem(PathToBytes(found->path), "The copy has just gone", "A round may have removed it: ask again.");
        return kSomeFailed;
    }
    if (status.modified >= found->time) session.Note("no copy is that old; this is the oldest");
    if (session.options.json) {
        PrintJson(session, {{"path", Cell::Path(found->path).value}, {"modified", TimeCell(status.modified).value}});
    } else {
        session.out.Put(PathToBytes(found->path) + "\n");
    }
    return kAllGood;
}

// ---- rounds

std::string_view ReasonText(HistoryStep::Reason reason) {
    switch (reason) {
        case HistoryStep::Reason::First:
            return "it has no copy yet";
        case HistoryStep::Reason::Changed:
            return "changed since its newest copy";
        case HistoryStep::Reason::PutBack:
            return "an older file was put back";
        case HistoryStep::Reason::TooOld:
            break;
    }
    return "older than what was valid at the age limit";
}

ExitCode Plan(Session& session, const RoundArguments&) {
    FileHistory history;
    if (!OpenHistory(session, history)) return kCannotRun;
    Table table({{"Would", "action"}, {"File", "file"}, {"To", "target"}, {"Because", "why"}});
    for (const HistoryStep& step : history.Plan(CurrentTime())) {
        const bool copy = !step.target.empty();
        table.Add({Cell::Of(std::string(copy ? "copy" : "delete")), Cell::Path(step.path),
                   copy ? Cell::Of(GetNameFromPath(step.target)) : Cell::Of(std::string("-")),
                   Cell::Of(std::string(ReasonText(step.reason)))});
    }
    if (table.Empty()) session.Note("nothing to do");
    Document::Print(session, table);
    return kAllGood;
}

ExitCode RunRound(Session& session, const RoundArguments&) {
    FileHistory history;
    if (!OpenHistory(session, history)) return kCannotRun;
    if (!history.IsEnabled()) {
        session.Problem({}, "Nothing is copied while the file history is off", SwitchOn());
        return kCannotRun;
    }
    HouseReports reports(session);
    history.SetMessageLog(&reports.Log());
    history.MakeBackup(CurrentTime(), std::atomic<bool>(false));
    if (reports.Done().Empty()) session.Note("nothing was to do");
    Document::Print(session, reports.Done());
    return reports.AllGood() ? kAllGood : kSomeFailed;
}

// ---- restore

bool SameFile(const std::wstring& path, const FileStatus& status) {
    FileStatus other;
    return Files().Status(path, other) == FsResult::Ok && other.exists && other.device == status.device &&
           other.inode == status.inode;
}

/// Puts the present state of a file into the history, as a round does, unless it is there already. False after a
/// problem has been told. A whole round could remove the very copy that is asked for.
bool KeepPresent(Session& session, const FileHistory& history, const std::wstring& file, const Found& wanted,
                 std::wstring& kept) {
    FileStatus present;
    if (Files().Status(file, present) == FsResult::Ok && !present.exists) return true;
    const std::vector<HistoryStep> plan = history.Plan(CurrentTime());
    const auto step = std::find_if(
        plan.begin(), plan.end(), [&](const HistoryStep& s) { return !s.target.empty() && SameFile(s.path, present); });
    if (step == plan.end()) {
        const std::vector<HistoryCopy> copies = history.ListCopies(wanted.type->GetID(), GetTitleFromPath(file));
        if (!copies.empty() && copies.back().modified == present.modified && copies.back().size == present.size) {
            return true;
        }
        session.Problem(PathToBytes(file), "The history takes no copy of its present state",
                        "A link gets none, nor a file dated ahead of the clock; let it go with --yes.");
        return false;
    }
    if (step->target == wanted.path) {
        session.Problem(PathToBytes(file), "The present state would take the name of the copy itself",
                        "Both were changed in one minute. Copy it elsewhere by hand, or let it go with --yes.");
        return false;
    }
    const FsResult result = CopyWholeFile(file, step->target);
    if (result != FsResult::Ok) {
        session.Problem(PathToBytes(file), "The present state can't be kept: " + ToUtf8(FsResultText(result)),
                        "Close the programs that hold the file, or let it go with --yes.");
        return false;
    }
    kept = step->target;
    return true;
}

ExitCode Restore(Session& session, const RestoreArguments& arguments) {
    FileHistory history;
    if (!OpenHistory(session, history)) return kCannotRun;
    const std::optional<Found> copy = FindCopy(session, history, {arguments.time, arguments.type, arguments.title});
    if (!copy) return kSomeFailed;
    std::wstring file = TextArgument(arguments.title), kept;
    if (!DataSearch::GetDataSearch().GetFullPathForWriting(copy->type->GetID(), file)) {
        session.Problem({}, "The folder of file type " + ToUtf8(copy->type->GetFileID()) + " isn't known",
                        "See \"orvcfg paths\".");
        return kSomeFailed;
    }
    if (!arguments.yes && !KeepPresent(session, history, file, *copy, kept)) return kSomeFailed;
    const FsResult result = CopyWholeFile(copy->path, file);
    if (result != FsResult::Ok) {
        session.Problem(PathToBytes(file), "Can't be restored: " + ToUtf8(FsResultText(result)),
                        "Check the rights to the folder and the space on its disk.");
        return kSomeFailed;
    }
    Document document;
    Facts& facts = document.AddFacts("Restored", "restored");
    facts.Add("File", "file", Cell::Path(file));
    facts.Add("From", "copy", Cell::Path(copy->path));
    facts.Add("Present state", "kept",
              kept.empty() ? Cell::Missing(arguments.yes ? "let go" : "nothing that lacked a copy") : Cell::Path(kept));
    document.Print(session);
    return kAllGood;
}

}  // namespace

void AddHistory(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "history", "Dated copies of configuration files: show, make, restore");
    auto listed = std::make_shared<ListArguments>();
    CLI::App* list =
        AddCommand(*group, "list", "List the copies", "  orvcfg --project Harbour history list AppConfig survey1");
    list->add_option("TYPE", listed->type, "File type, by key, id or extension. Default: all under history");
    list->add_option("TITLE", listed->title, "Name of the file without its extension. Default: all");
    OnRun(list, session, listed, List);

    auto asked = std::make_shared<AtArguments>();
    CLI::App* at = AddCommand(*group, "at", "Print the path of the copy that was valid at a time",
                              "  orvcfg history at \"2026-03-02 10:15\" AppConfig survey1");
    at->add_option("TIME", asked->time, "Local time; the copy before that minute is taken")->required();
    at->add_option("TYPE", asked->type, "File type, by key, id or extension")->required();
    at->add_option("TITLE", asked->title, "Name of the file without its extension")->required();
    OnRun(at, session, asked, At);

    const auto none = std::make_shared<RoundArguments>();
    OnRun(AddCommand(*group, "plan", "Tell what a round would copy and delete, and do nothing",
                     "  orvcfg --project Harbour history plan"),
          session, none, Plan);
    OnRun(AddCommand(*group, "run", "Make a round: copy what has changed, delete what is too old",
                     "  orvcfg --project Harbour history run"),
          session, none, RunRound);

    auto restored = std::make_shared<RestoreArguments>();
    CLI::App* restore = AddCommand(*group, "restore", "Put the copy that was valid at a time in the place of the file",
                                   "  orvcfg history restore \"2026-03-02 10:15\" AppConfig survey1\n\n"
                                   "The present state is copied into the history first.");
    restore->add_option("TIME", restored->time, "Local time; the copy before that minute is taken")->required();
    restore->add_option("TYPE", restored->type, "File type, by key, id or extension")->required();
    restore->add_option("TITLE", restored->title, "Name of the file without its extension")->required();
    restore->add_flag("--yes", restored->yes, "Let the present state go without a copy");
    OnRun(restore, session, restored, Restore);
}

}  // namespace orv::cfg
