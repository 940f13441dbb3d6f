// Names of raw logs: composed and taken apart. What reads and writes their header is in CommandLogHeader.cpp.

#include <unistd.h>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "Installation.h"
#include "SurveyFiles.h"
#include "TimeText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "surveydata/LogNaming.h"

namespace orv::cfg {

namespace {

struct NameArguments {
    std::string vessel, surveyType, runline, time, replay;
    int count = 0;
    bool automatic = false;
};

struct ParseArguments {
    std::vector<std::string> names;
};

bool ReadTime(Session& session, const char* option, const std::string& text, std::int64_t& seconds) {
    TimeReader reader;
    reader.SetZone("local");
    double milliseconds = 0;
    if (const char* const wrong = reader.Read(text, milliseconds)) {
        session.Problem({}, std::string(option) + " \"" + text + "\": " + wrong, "Without Z or an offset it is local.");
        return false;
    }
    seconds = static_cast<std::int64_t>(std::floor(milliseconds / 1000));
    if (seconds != 0) return true;
    session.Problem({}, std::string(option) + ": the start of 1970 stands for a time that isn't set");
    return false;
}

ExitCode Name(Session& session, const NameArguments& arguments) {
    LogFields fields;
    fields.vessel = TextArgument(arguments.vessel);
    fields.surveyType = TextArgument(arguments.surveyType);
    fields.runline = TextArgument(arguments.runline);
    std::replace(fields.runline.begin(), fields.runline.end(), L'-', L'~');  // a hyphen would end it in a name
    fields.replayCount = arguments.count;
    if (!ReadTime(session, "--time", arguments.time, fields.logTime)) return kCannotRun;
    if (!arguments.replay.empty() && !ReadTime(session, "--replay", arguments.replay, fields.replayTime)) {
        return kCannotRun;
    }
    if (fields.replayCount > 0 && fields.replayTime == 0) {
        session.Problem({}, "--count numbers replays, and this is none", "Give the time of the replay with --replay.");
        return kCannotRun;
    }
    LogNaming naming;
    if (!arguments.automatic) {
        if (!OpenProjectFolder(session)) return kCannotRun;
        naming = LogNaming::Of(DataSearch::GetDataSearch().GetProjectDefinition());
    }
    std::wstring name = ComposeLogName(fields, naming);
    ApplyDotsRule(name, naming);
    if (name.empty()) {
        session.Problem({}, "The project's naming setup gives an empty name",
                        "Choose items for the name in the project, or give --automatic.");
        return kSomeFailed;
    }
    if (!IsAllowedName(name)) session.Note("the name holds one of < > : \" / \\ | ? *, which no file may have");
    const bool byItems = naming.choice == kLogNamingByItems;
    LogFields again;
    const bool readable = !byItems && ParseLogName(name, again) && again.vessel == fields.vessel &&
                          again.surveyType == fields.surveyType && again.runline == fields.runline;
    if (!byItems && !readable) session.Note("the name can't be taken apart to the same fields again");
    if (byItems && fields.replayTime != 0) session.Note("a name by items doesn't tell a replay from its source");
    if (session.options.json) {
        PrintJson(session, {{"name", ToUtf8(name)}, {"byItems", byItems}, {"readable", readable}});
    } else {
        session.out.Put(ToUtf8(name) + "\n");
    }
    return kAllGood;
}

// ---- parse

/// Why a title is no automatic name, in the order in which it is read.
std::string WhyNot(std::wstring_view title, const LogFields& found) {
    const std::size_t open = title.find(L'[');
    if (open == title.npos || title.find(L']', open) == title.npos) return "there is no survey type in brackets";
    if (open == 0) return "there is no vessel in front of the bracket";
    if (found.vessel.empty())
        return "behind the brackets there is no date and time, -YYYYMMDD-hhmmss or -YYYYMMDD-hhmm";
    if (found.logTime == 0) return "the date or time is none";
    if (found.replayTime == 0) return "behind the time stands something that is no replay, -RYYYYMMDD-hhmmss";
    return "the survey type or the run line is empty";
}

Json ToJson(const std::string& name, const LogFields& fields, bool good) {
    const auto time = [](std::int64_t seconds) { return seconds == 0 ? Json(nullptr) : TimeCell(seconds).value; };
    Json object = {{"name", name}};
    object["vessel"] = good ? Json(ToUtf8(fields.vessel)) : Json(nullptr);
    object["surveyType"] = good ? Json(ToUtf8(fields.surveyType)) : Json(nullptr);
    object["runline"] = good ? Json(ToUtf8(fields.runline)) : Json(nullptr);
    object["start"] = good ? time(fields.logTime) : Json(nullptr);
    object["replay"] = good ? time(fields.replayTime) : Json(nullptr);
    object["replayCount"] = good ? Json(fields.replayCount) : Json(nullptr);
    return object;
}

/// Takes names apart, a line each; columns are tab-separated, as run lines may hold blanks.
class Parser {
public:
    explicit Parser(Session& forSession) : session(forSession) {}

    void Line(std::string_view line) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.front() == '#') {
            if (!session.options.json) session.out.Put(std::string(line) + "\n");
            return;
        }
        Name(std::string(line));
    }

    void Name(const std::string& name) {
        // The title may hold dots; what is cut off is an extension only.
        std::wstring title = GetNameFromPath(PathArgument(name));
        const std::size_t dot = title.rfind(L'.'), close = title.rfind(L']');
        if (dot != title.npos && (close == title.npos || dot > close)) title.resize(dot);
        LogFields fields;
        const bool good = ParseLogName(title, fields);
        ++asked;
        if (!good) ++refused;
        const std::string reason = good ? "" : WhyNot(title, fields);
        if (session.options.json) {
            Json object = ToJson(name, fields, good);
            if (!good) object["reason"] = reason;
            session.out.Put(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
            return;
        }
        if (!good) return session.out.Put(name + "\t*  # " + reason + "\n");
        const auto time = [](std::int64_t at) { return at == 0 ? std::string("-") : ToUtf8(LogTimeText(at)); };
        session.out.Put(name + "\t" + ToUtf8(fields.vessel) + "\t" + ToUtf8(fields.surveyType) + "\t" +
                        ToUtf8(fields.runline) + "\t" + time(fields.logTime) + "\t" + time(fields.replayTime) + "\t" +
                        std::to_string(fields.replayCount) + "\n");
    }

    ExitCode Finish() {
        if (refused == 0) return kAllGood;
        session.Problem({}, std::to_string(refused) + " of " + std::to_string(asked) + " names can't be taken apart",
                        "Each line says why; \"orvcfg log header\" reads the log itself.");
        return kSomeFailed;
    }

private:
    Session& session;
    std::size_t asked = 0, refused = 0;
};

ExitCode Parse(Session& session, const ParseArguments& arguments) {
    Parser parser(session);
    for (const std::string& name : arguments.names) parser.Name(name);
    const auto each = [&](std::string_view line) { parser.Line(line); };
    if (arguments.names.empty() && !FilterInput(session, STDIN_FILENO, "standard input", each)) return kCannotRun;
    return parser.Finish();
}

}  // namespace

void AddLog(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "log", "Raw logs: name, parse, header, set-runline");

    auto name = std::make_shared<NameArguments>();
    CLI::App* command = AddCommand(
        *group, "name", "The name that a log gets by the project's naming setup",
        "  orvcfg log name --automatic --vessel Waverly --type Sweep --runline L001 --time '2021-03-02 10:15:30'\n"
        "  Waverly[Sweep]_L001-20210302-101530\n\n"
        "Times in names are local. Hyphens in a run line become tildes.");
    command->add_option("--vessel", name->vessel, "Vessel")->type_name("NAME")->required();
    command->add_option("--type", name->surveyType, "Survey type")->type_name("NAME")->required();
    command->add_option("--runline", name->runline, "Run line")->type_name("NAME")->required();
    command->add_option("--time", name->time, "Start of the log; local unless it says otherwise")
        ->type_name("TIME")
        ->required();
    command->add_option("--replay", name->replay, "Time of the replay, for a replayed log")->type_name("TIME");
    command->add_option("--count", name->count, "Number of the replay")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("N");
    command->add_flag("--automatic", name->automatic, "The automatic name, without a project");
    OnRun(command, session, name, Name);

    auto parse = std::make_shared<ParseArguments>();
    command =
        AddCommand(*group, "parse", "Take names of logs apart, from the arguments or from standard input",
                   "  ls Logs | orvcfg log parse\n\n"
                   "A line of the result holds, with tabs between: the name, vessel, survey type, run line, start,\n"
                   "replay (local times, - for none), number of the replay. A name that can't be taken apart gets a *\n"
                   "and the reason, and the exit code is 1. Lines that start with # pass unchanged. --json gives one\n"
                   "object a line, with times in UTC.");
    command->add_option("NAME", parse->names, "Names or paths. Default: lines of standard input")
        ->option_text("NAME ...");
    OnRun(command, session, parse, Parse);

    AddLogHeader(*group, session);
}

}  // namespace orv::cfg
