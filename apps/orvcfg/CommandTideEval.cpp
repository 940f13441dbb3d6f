#include <unistd.h>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "TideStationAccess.h"
#include "TimeText.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string station, zone;
    std::vector<std::string> times;
    int decimals = 4;
};

class Evaluation {
public:
    Evaluation(Session& forSession, TideStation& from, TimeReader& timeReader, int places)
        : session(forSession), station(from), reader(timeReader), decimals(places) {}

    void Line(std::string_view line) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t begin = line.find_first_not_of(" \t");
        if (begin == line.npos || line[begin] == '#') {
            if (!session.options.json) session.out.PutLine(line);
            return;
        }
        Time(line);
    }

    void Time(std::string_view text) {
        double time = 0;
        TideAnswer answer;
        const char* const wrong = reader.Read(text, time);
        if (wrong) {
            answer.detail = wrong;
        } else {
            answer = AnswerOf(station, time);
        }
        // A value in the file that is no number is none.
        if (answer.rule != TideAnswer::Refused && !std::isfinite(answer.value)) {
            answer.rule = TideAnswer::Refused;
            answer.detail = "the value there is no finite number";
        }
        ++asked;
        if (answer.rule == TideAnswer::Refused) ++refused;
        if (session.options.json) return PutJson(text, wrong == nullptr, time, answer);
        const bool has = answer.rule != TideAnswer::Refused;
        std::string out =
            std::string(text) + "  " + (has ? Fixed(answer.value, decimals) : "*") + "  # " + TideRuleName(answer.rule);
        if (!answer.detail.empty()) out += ": " + answer.detail;
        session.out.PutLine(out);
    }

    ExitCode Finish() {
        if (refused == 0) return kAllGood;
        session.Problem({}, std::to_string(refused) + " of " + std::to_string(asked) + " times have no tide",
                        "Each line says why.");
        return kSomeFailed;
    }

private:
    void PutJson(std::string_view text, bool read, double time, const TideAnswer& answer) {
        Json object = {{"time", read ? UtcText(time) : std::string(text)}, {"tide", nullptr}};
        if (answer.rule != TideAnswer::Refused) object["tide"] = answer.value;
        object["rule"] = TideRuleName(answer.rule);
        if (!answer.detail.empty()) object["detail"] = answer.detail;
        session.out.PutLine(object.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    Session& session;
    TideStation& station;
    TimeReader& reader;
    int decimals;
    std::size_t asked = 0, refused = 0;
};

ExitCode Eval(Session& session, const Arguments& arguments) {
    TimeReader reader;
    if (!arguments.zone.empty()) {
        if (const char* const wrong = reader.SetZone(arguments.zone)) {
            session.Problem({}, "--zone \"" + arguments.zone + "\": " + wrong, "For instance --zone UTC+1.");
            return kCannotRun;
        }
    }
    TideStation station;
    if (!OpenStation(session, arguments.station, station)) return kCannotRun;
    Evaluation evaluation(session, station, reader, arguments.decimals);
    for (const std::string& time : arguments.times) evaluation.Time(time);
    const auto each = [&](std::string_view line) { evaluation.Line(line); };
    if (arguments.times.empty() && !FilterInput(session, STDIN_FILENO, "standard input", each)) return kCannotRun;
    return evaluation.Finish();
}

}  // namespace

void AddTideEval(CLI::App& tide, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        tide, "eval", "The tide at times from the arguments or from standard input, and by which rule",
        "  echo 2021-03-02T10:15:30Z | orvcfg --project Harbour tide eval Pier\n"
        "  2021-03-02T10:15:30Z  1.2375  # interpolated: between 2021-03-02T10:15:00Z and 2021-03-02T10:16:00Z\n\n"
        "The rule is exact, interpolated, held (an end value) or refused, with the reason. A refused time gets a *\n"
        "in place of a value, and the exit code is 1. Times without Z or an offset need --zone. Lines that start\n"
        "with # and blank lines pass unchanged. --json gives one object a line.");
    command->add_option("STATION", arguments->station, "Name of the station in the project, or its path")->required();
    command->add_option("TIME", arguments->times, "Times. Default: lines of standard input")->option_text("TIME ...");
    command->add_option("--zone", arguments->zone, "Where the clock of the times stood: UTC, UTC+1, local, or a place")
        ->type_name("ZONE");
    command->add_option("--decimals", arguments->decimals, "Decimals of a tide")
        ->check(CLI::Range(0, 12).description(""))
        ->type_name("N")
        ->capture_default_str();
    OnRun(command, session, arguments, Eval);
}

}  // namespace orv::cfg
