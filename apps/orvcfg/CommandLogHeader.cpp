#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "TimeText.h"
#include "platform/os/FileSystem.h"
#include "platform/os/FileTools.h"
#include "platform/text/Utf.h"
#include "surveydata/LogHeader.h"

namespace orv::cfg {

namespace {

struct HeaderArguments {
    std::vector<std::string> files;
};

struct RunlineArguments {
    std::string file, runline;
    bool cut = false;
};

constexpr std::size_t kLongestStart = 2 * (4 + 65535 + 1);  // two records of the greatest length

/// The first bytes of a log, as many as a header can reach into.
bool ReadStart(const std::wstring& path, std::string& bytes) {
    OpenMode mode;
    mode.share = Share::DenyNone;
    std::unique_ptr<File> file;
    if (Files().Open(path, mode, file) != FsResult::Ok) return false;
    bytes.resize(kLongestStart);
    std::size_t have = 0, got = 1;
    while (got > 0 && have < bytes.size()) {
        if (file->Read(bytes.data() + have, bytes.size() - have, got) != FsResult::Ok) return false;
        have += got;
    }
    bytes.resize(have);
    return true;
}

/// The text of a header and what it says; or why there is none.
struct OpenedHeader {
    std::string bytes, problem;
    std::span<const std::byte> text;
    LogHeader header;
};

OpenedHeader OpenHeader(const std::wstring& path) {
    OpenedHeader opened;
    if (!ReadStart(path, opened.bytes)) {
        opened.problem = FileExists(path) ? "The log can't be read" : "No such log";
        return opened;
    }
    const auto all = std::as_bytes(std::span(opened.bytes));
    const LogHeaderPlace place = FindLogHeader(all);
    if (place.search == LogHeaderPlace::NeedMore) {
        opened.problem = "The file ends before its header does";
    } else if (place.search == LogHeaderPlace::NoHeader) {
        opened.problem = "The second record is no header, so this is no log, or a damaged one";
    } else {
        opened.text = all.subspan(place.offset, place.length);
        if (!ParseLogHeader(opened.text, opened.header)) opened.problem = "A time in the header is none";
    }
    return opened;
}

ExitCode Header(Session& session, const HeaderArguments& arguments) {
    ExitCode code = kAllGood;
    Json all = Json::array();
    bool first = true;
    for (const std::string& name : arguments.files) {
        const OpenedHeader opened = OpenHeader(PathArgument(name));
        if (!opened.problem.empty()) {
            session.Problem(name, opened.problem);
            all.push_back({{"file", name}, {"reason", opened.problem}});
            code = kSomeFailed;
            continue;
        }
        const LogHeader& header = opened.header;
        const Json runline = ToUtf8(header.runline);
        if (session.options.json) {
            const auto time = [](std::int64_t at) { return at == 0 ? Json(nullptr) : TimeCell(at).value; };
            all.push_back({{"file", name},
                           {"orvVersion", ToUtf8(header.orvVersion)},
                           {"fileVersion", ToUtf8(header.fileVersion)},
                           {"vessel", ToUtf8(header.vessel)},
                           {"surveyType", ToUtf8(header.surveyType)},
                           {"runline", runline},
                           {"start", time(header.logTime)},
                           {"replay", time(header.replayTime)}});
            continue;
        }
        if (!first) session.out.Put("\n");
        first = false;
        const auto time = [](std::int64_t at) { return at == 0 ? Cell::Missing("not set") : TimeCell(at); };
        Document document;
        Facts& facts = document.AddFacts(name, "header");
        facts.Add("ORV version", "orvVersion", Cell::OrMissing(header.orvVersion, "not set"));
        facts.Add("File version", "fileVersion", Cell::OrMissing(header.fileVersion, "not set"));
        facts.Add("Vessel", "vessel", Cell::OrMissing(header.vessel, "not set"));
        facts.Add("Survey type", "surveyType", Cell::OrMissing(header.surveyType, "not set"));
        facts.Add("Run line", "runline", Cell::OrMissing(header.runline, "not set"));
        facts.Add("Log start time (local)", "start", time(header.logTime));
        facts.Add("Replay start time (local)", "replay", time(header.replayTime));
        document.Print(session);
    }
    if (session.options.json) PrintJson(session, all);
    return code;
}

/// The record keeps its length, so a longer run line pushes the end of the header out.
bool Fits(const OpenedHeader& opened, const std::wstring& runline) {
    const std::string changed = WithRunline(opened.text, runline);
    LogHeader after;
    if (changed.empty() || !ParseLogHeader(std::as_bytes(std::span(changed)), after)) return false;
    const LogHeader& before = opened.header;
    return after.runline == runline && after.vessel == before.vessel && after.surveyType == before.surveyType &&
           after.orvVersion == before.orvVersion && after.fileVersion == before.fileVersion &&
           after.logTime == before.logTime && after.replayTime == before.replayTime;
}

ExitCode SetRunline(Session& session, const RunlineArguments& arguments) {
    const std::wstring path = PathArgument(arguments.file), runline = TextArgument(arguments.runline);
    const OpenedHeader opened = OpenHeader(path);
    if (!opened.problem.empty()) {
        session.Problem(arguments.file, opened.problem);
        return kSomeFailed;
    }
    if (runline.find_first_of(L"\r\n") != runline.npos) {
        session.Problem({}, "A run line is one line");
        return kCannotRun;
    }
    if (!arguments.cut && !Fits(opened, runline)) {
        session.Problem(arguments.file,
                        "The header has no room for \"" + arguments.runline + "\" beside its other items",
                        "Take a name no longer than \"" + ToUtf8(opened.header.runline) +
                            "\", or have the end of the header cut with --cut.");
        return kSomeFailed;
    }
    if (!WriteLogRunline(path, runline)) {
        session.Problem(arguments.file, "The header can't be written",
                        "Check who may write it, and that no program is still logging to it.");
        return kSomeFailed;
    }
    if (session.options.json) {
        PrintJson(session,
                  {{"file", arguments.file}, {"was", ToUtf8(opened.header.runline)}, {"runline", arguments.runline}});
    } else {
        session.out.Put(arguments.file + ": run line \"" + ToUtf8(opened.header.runline) + "\" is now \"" +
                        arguments.runline + "\"\n");
    }
    return kAllGood;
}

}  // namespace

void AddLogHeader(CLI::App& log, Session& session) {
    auto header = std::make_shared<HeaderArguments>();
    CLI::App* command = AddCommand(log, "header", "What the header in a log says",
                                   "  orvcfg log header Logs/*.orv --json | jq -r '.[].runline'");
    command->add_option("FILE", header->files, "Logs")->required();
    OnRun(command, session, header, Header);

    auto runline = std::make_shared<RunlineArguments>();
    command =
        AddCommand(log, "set-runline", "Change the run line in the header of a log",
                   "  orvcfg log set-runline 'Logs/Waverly[Sweep]_L001-20210302-101530.orv' L002\n\n"
                   "The header is changed in place, so a longer run line needs room behind the header's text. The\n"
                   "name of the file stays.");
    command->add_option("FILE", runline->file, "Log")->required();
    command->add_option("RUNLINE", runline->runline, "New run line")->required();
    command->add_flag("--cut", runline->cut, "Write it even if the end of the header is lost");
    OnRun(command, session, runline, SetRunline);
}

}  // namespace orv::cfg
