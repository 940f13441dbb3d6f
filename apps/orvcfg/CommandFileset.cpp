#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "SurveyFiles.h"
#include "TimeText.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/FileSet.h"
#include "surveydata/LogFileName.h"

namespace orv::cfg {

namespace {

struct ListArguments {
    std::string set, runline;
    bool names = false;
};

struct ChangeArguments {
    std::string set;
    std::vector<std::string> logs;
    bool create = false, missing = false;
};

/// Opens a file set of the chosen project. False after a problem has been told.
bool OpenSet(Session& session, const std::string& name, bool create, FileSet& set, std::wstring& path) {
    if (!OpenProjectFolder(session)) return false;
    path = SurveyFilePath(kFileTypeFileSet, name);
    set.Init();
    if (set.FileOpen(path)) {
        session.Detail("file set " + PathToBytes(path));
        return true;
    }
    if (FileExists(path)) {
        session.Problem(PathToBytes(path), "The file set can't be read", "See \"orvcfg config check\" of that file.");
        return false;
    }
    if (create) return true;
    session.Problem(PathToBytes(path), "No such file set",
                    "\"orvcfg files FileSet\" lists those of the project; \"fileset add --create\" makes one.");
    return false;
}

ExitCode List(Session& session, const ListArguments& arguments) {
    FileSet set;
    std::wstring path;
    if (!OpenSet(session, arguments.set, false, set, path)) return kCannotRun;
    std::vector<std::wstring> logs;
    if (arguments.runline.empty()) {
        set.GetFileNames(logs);
    } else {
        set.GetFileNamesOfRunLine(TextArgument(arguments.runline), logs);
    }
    if (arguments.names) {
        for (const std::wstring& log : logs) session.out.Put(PathToBytes(log) + "\n");
        return kAllGood;
    }
    Table table({{"Start (local)", "start"},
                 {"Run line", "runline"},
                 {"Vessel", "vessel"},
                 {"There", "exists"},
                 {"Log", "log"}});
    for (const std::wstring& log : logs) {
        const LogFileName name(log);
        constexpr std::string_view unknown = "neither its name nor its header tells";
        table.Add({name.LogTime() == 0 ? Cell::Missing(unknown) : TimeCell(name.LogTime()),
                   Cell::OrMissing(name.RunlineName(), unknown), Cell::OrMissing(name.VesselName(), unknown),
                   Cell::Flag(FileExists(log)), Cell::Path(log)});
    }
    Document::Print(session, table);
    session.Detail(std::to_string(logs.size()) + " logs");
    return kAllGood;
}

bool Save(Session& session, const FileSet& set, const std::wstring& path) {
    if (set.FileSave(path)) return true;
    session.Problem(PathToBytes(path), "The file set can't be written",
                    "Check that its folder is there and may be written to.");
    return false;
}

/// The full path under which a set keeps a log.
std::wstring LogPath(const FileSet& set, const std::string& log) {
    const std::wstring path = PathArgument(log);
    // One that is named from the working folder is meant as it is seen from there.
    return set.MakeFullPath(set.StripPath(FileExists(path) ? AbsolutePath(path) : path));
}

ExitCode Add(Session& session, const ChangeArguments& arguments) {
    FileSet set;
    std::wstring path;
    if (!OpenSet(session, arguments.set, arguments.create, set, path)) return kCannotRun;
    ExitCode code = kAllGood;
    std::size_t added = 0;
    for (const std::string& log : arguments.logs) {
        const std::wstring full = LogPath(set, log);
        if (set.IsFileNamePresent(full)) {
            session.Note(PathToBytes(full) + " is in the set already");
        } else if (!arguments.missing && !FileExists(full)) {
            session.Problem(PathToBytes(full), "No such log", "--missing adds it all the same.");
            code = kSomeFailed;
        } else {
            set.AddFileName(full);
            ++added;
        }
    }
    if (added > 0 && !Save(session, set, path)) return kSomeFailed;
    session.Note(std::to_string(added) + " added, " + std::to_string(set.NumFiles()) + " in the set");
    return code;
}

ExitCode Remove(Session& session, const ChangeArguments& arguments) {
    FileSet set;
    std::wstring path;
    if (!OpenSet(session, arguments.set, false, set, path)) return kCannotRun;
    ExitCode code = kAllGood;
    const int before = set.NumFiles();
    for (const std::string& log : arguments.logs) {
        const std::wstring full = LogPath(set, log);
        if (!set.IsFileNamePresent(full)) {
            std::vector<std::wstring> known;
            set.GetFileNamesShort(known);
            session.Problem(PathToBytes(full), "It isn't in the set", DidYouMean(GetTitleFromPath(full), known));
            code = kSomeFailed;
        }
        // Of two equal neighbours one deletion leaves the second.
        while (set.IsFileNamePresent(full)) set.DeleteFileName(full);
    }
    if (set.NumFiles() < before && !Save(session, set, path)) return kSomeFailed;
    session.Note(std::to_string(before - set.NumFiles()) + " removed, " + std::to_string(set.NumFiles()) +
                 " in the set; the logs themselves stay");
    return code;
}

}  // namespace

void AddFileset(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "fileset", "Sets of logs that belong together: list, add, remove");

    auto list = std::make_shared<ListArguments>();
    CLI::App* command =
        AddCommand(*group, "list", "The logs of a set by time",
                   "  orvcfg --project Harbour fileset list Tuesday\n"
                   "  orvcfg fileset list Tuesday --runline L001 --paths | xargs -d '\\n' cp -t /mnt/stick");
    command->add_option("SET", list->set, "Name of the file set in the project, or its path")->required();
    command->add_option("--runline", list->runline, "Only logs of this run line; case counts")->type_name("NAME");
    command->add_flag("--paths", list->names, "Paths alone, one a line");
    OnRun(command, session, list, List);

    const auto addLogs = [](CLI::App* change, const std::shared_ptr<ChangeArguments>& arguments) {
        change->add_option("SET", arguments->set, "Name of the file set in the project, or its path")->required();
        change->add_option("LOG", arguments->logs, "Names of logs in their folder, or paths")->required();
    };
    auto add = std::make_shared<ChangeArguments>();
    command = AddCommand(*group, "add", "Put logs into a set",
                         "  orvcfg --project Harbour fileset add Tuesday --create Logs/*20210302*.orv");
    addLogs(command, add);
    command->add_flag("--create", add->create, "Make the set if it isn't there");
    command->add_flag("--missing", add->missing, "Add logs that aren't there, too");
    OnRun(command, session, add, Add);

    auto remove = std::make_shared<ChangeArguments>();
    command = AddCommand(*group, "remove", "Take logs out of a set; they themselves stay",
                         "  orvcfg --project Harbour fileset remove Tuesday 'Waverly[Sweep]_L001-20210302-101530'");
    addLogs(command, remove);
    OnRun(command, session, remove, Remove);
}

}  // namespace orv::cfg
