#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>

#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "Installation.h"
#include "LineReader.h"
#include "PositionText.h"
#include "ProjectReport.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> positions;
    std::string model, file, chartDatum;
    int decimals = 4;
    bool lonLat = false;
};

/// What gives the separations: one model, in metres, or all that the open project's coordinate system applies, in its
/// unit.
class Source {
public:
    bool Open(Session& session, const Arguments& arguments) {
        return arguments.model.empty() ? OpenOfProject(session, arguments) : OpenModel(session, arguments);
    }

    /// False and a reason where there is none.
    bool At(double latitude, double longitude, double& value) {
        constexpr double noGrid = std::numeric_limits<double>::quiet_NaN();
        bool found = false;
        if (coordSys) {
            found = coordSys->HeightSeparation(latitude, longitude, value, words);
            if (!found) reason = ShortReason(geoid, latitude, longitude, words);
        } else {
            remark.clear();
            found = geoid.model->Calculate(latitude, longitude, noGrid, noGrid, value, remark);
            if (!found) reason = ToUtf8(GeoidReasonText(geoid.model->LastReason()));
        }
        if (!found || std::isfinite(value)) return found;
        reason = "the model's value is no number";
        return false;
    }

    const std::string& Reason() const { return reason; }
    const std::wstring& Remark() const { return remark; }  ///< what the model has to say beside its last value
    const std::wstring& Unit() const { return unit; }

private:
    bool OpenModel(Session& session, const Arguments& arguments) {
        const auto type = GeoidTypeArgument(session, arguments.model);
        if (!type) return false;
        return OpenChoice(session, {GeoidKey(*type), PathArgument(arguments.file), TextArgument(arguments.chartDatum)});
    }

    bool OpenOfProject(Session& session, const Arguments& arguments) {
        if (!arguments.file.empty() || !arguments.chartDatum.empty()) {
            session.Problem({}, "--file and --chart-datum go with --model",
                            "Without --model the project's own geoid is taken.");
            return false;
        }
        if (!OpenProject(session)) return false;
        ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
        const GeoidChoice own = GeoidInForce(project);
        if (own.key.empty()) {
            session.Problem(PathToBytes(project.GetFileName()), "The project has no geoid model",
                            "Name one with --model; \"orvcfg geoid list\" shows them.");
            return false;
        }
        coordSys = project.GetGeoCoordSys();
        double factor = 1.0;
        coordSys->Unit(factor, unit);
        return OpenChoice(session, own);
    }

    /// Opens the model once, so that a missing grid is told before the first position and not at each.
    bool OpenChoice(Session& session, const GeoidChoice& choice) {
        // Separations that a person or a receiver gives have no model.
        const bool given = choice.key == GeoidKey(0) || choice.key == GeoidKey(1);
        if (!given) geoid = OpenGeoid(choice);
        if (!geoid.problem.empty()) {
            session.Problem({}, "Geoid model " + ToUtf8(choice.key) + ": " + geoid.problem,
                            choice.file.empty() ? "Give --file; \"orvcfg geoid list\" shows the grids that are there."
                                                : "\"orvcfg geoid add\" puts a grid there.");
            return false;
        }
        session.Detail("geoid model " + ToUtf8(choice.key) +
                       (geoid.path.empty() ? "" : ", file " + PathToBytes(geoid.path)) + ", unit " + ToUtf8(unit));
        return true;
    }

    OpenedGeoid geoid;                       // without a model where a person or a receiver gives the separation
    OrvGeoCoordSysBase* coordSys = nullptr;  // null for a model alone
    std::wstring unit = L"m", words, remark;
    std::string reason;
};

class Evaluation {
public:
    Evaluation(Session& forSession, Source& from, const Arguments& with)
        : session(forSession), source(from), arguments(with) {}

    /// One line of input without its line feed.
    void Line(std::string_view line) {
        std::string_view rest = line;
        const std::string_view first = NextWord(rest);
        if (first.empty() || first.front() == '#') {
            if (!session.options.json) Put(line);
            return;
        }
        const std::string_view second = NextWord(rest);
        while (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);
        Position(first, second, rest);
    }

    void Position(std::string_view first, std::string_view second, std::string_view rest) {
        Answer answer;
        answer.wrong = ReadAngle(arguments.lonLat ? second : first, Angle::Latitude, answer.latitude);
        if (!answer.wrong) {
            answer.wrong = ReadAngle(arguments.lonLat ? first : second, Angle::Longitude, answer.longitude);
        }
        if (second.empty()) answer.wrong = "a position has a latitude and a longitude";
        answer.found = !answer.wrong && source.At(answer.latitude, answer.longitude, answer.value);
        ++positions;
        if (!answer.found) ++refused;
        if (session.options.json) {
            PutJson(answer, first, second, rest);
        } else {
            PutText(answer, first, second, rest);
        }
    }

    ExitCode Finish() {
        if (refused == 0) return kAllGood;
        session.Problem({},
                        std::to_string(refused) + " of " + std::to_string(positions) + " positions have no separation",
                        "Each line says why.");
        return kSomeFailed;
    }

    std::size_t Positions() const { return positions; }

private:
    struct Answer {
        double latitude = 0.0, longitude = 0.0, value = 0.0;
        const char* wrong = nullptr;  ///< with the text of the position
        bool found = false;
    };

    void Put(std::string_view line) {
        session.out.Put(line);
        session.out.Put("\n");
    }

    void PutText(const Answer& answer, std::string_view first, std::string_view second, std::string_view rest) {
        text.assign(first).append(1, ' ').append(second).append(second.empty() ? "" : " ");
        if (answer.found) {
            AppendFixed(text, answer.value, arguments.decimals);
            text.append(rest);
        } else {
            text.append("*").append(rest).append("  # ").append(ReasonText(answer));
        }
        Put(text);
    }

    /// One object a line: a stream of them can be read while it is written.
    void PutJson(const Answer& answer, std::string_view first, std::string_view second, std::string_view rest) {
        Json object = Json::object();
        if (answer.wrong) {
            object["position"] = std::string(first) + " " + std::string(second);
        } else {
            object["latitude"] = answer.latitude;
            object["longitude"] = answer.longitude;
        }
        object["separation"] = answer.found ? Json(answer.value) : Json(nullptr);
        if (answer.found) {
            object["unit"] = ToUtf8(source.Unit());
            if (!source.Remark().empty()) object["remark"] = ToUtf8(source.Remark());
        } else {
            object["reason"] = ReasonText(answer);
        }
        const std::size_t begin = rest.find_first_not_of(" \t");
        if (begin != std::string_view::npos) object["rest"] = rest.substr(begin);
        Put(object.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    std::string ReasonText(const Answer& answer) const { return answer.wrong ? answer.wrong : source.Reason(); }

    Session& session;
    Source& source;
    const Arguments& arguments;
    std::string text;
    std::size_t positions = 0, refused = 0;
};

ExitCode Filter(Session& session, Evaluation& evaluation) {
    LineReader reader(STDIN_FILENO, [&] { session.out.Flush(); });
    std::string_view line;
    while (session.out.Good() && reader.Next(line)) evaluation.Line(line);
    if (reader.Error() != 0) {
        session.Problem("standard input", std::string("Can't be read: ") + std::strerror(reader.Error()));
        return kCannotRun;
    }
    return evaluation.Finish();
}

ExitCode Eval(Session& session, const Arguments& arguments) {
    if (arguments.positions.size() % 2 != 0) {
        session.Problem({},
                        "A position has a latitude and a longitude, and here are " +
                            std::to_string(arguments.positions.size()) + " angles",
                        "Quote forms with signs, as in \"52d09'15.1\\\"N\".");
        return kCannotRun;
    }
    Source source;
    if (!OpenInstallation(session) || !source.Open(session, arguments)) return kCannotRun;
    Evaluation evaluation(session, source, arguments);
    const auto start = std::chrono::steady_clock::now();
    ExitCode code = kAllGood;
    if (arguments.positions.empty()) {
        code = Filter(session, evaluation);
    } else {
        for (std::size_t i = 0; i < arguments.positions.size(); i += 2) {
            evaluation.Position(arguments.positions[i], arguments.positions[i + 1], {});
        }
        code = evaluation.Finish();
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    session.Detail(std::to_string(evaluation.Positions()) + " positions in " + Fixed(took.count(), 3) + " s");
    return code;
}

}  // namespace

void AddGeoidEval(CLI::App& geoid, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        geoid, "eval", "Height separations at positions from the arguments or from standard input",
        "  printf '# harbour\\n52.10 4.27 quay\\n' | orvcfg geoid eval --model 28 --file nlgeo2018.gtx\n"
        "  # harbour\n"
        "  52.10 4.27 43.1234 quay\n\n"
        "A line holds latitude, longitude and whatever else, which is kept. Degrees are decimal or like\n"
        "52d09'15.1\"N. Lines that start with # and blank lines pass unchanged. A position without a separation\n"
        "gets a * and the reason behind a #, and the exit code is 1. --json gives one object a line\n"
        "for each position and leaves the other lines out.");
    command->add_option("POSITION", arguments->positions, "Positions. Default: lines of standard input")
        ->option_text("LAT LON ...");
    command->add_option("--model", arguments->model, "Geoid model, by key or type id. Default: the project's own")
        ->type_name("MODEL");
    command->add_option("--file", arguments->file, "Grid file of the model")->type_name("NAME");
    command->add_option("--chart-datum", arguments->chartDatum, "Chart datum of the model")->type_name("NAME");
    command->add_option("--decimals", arguments->decimals, "Decimals of a separation")
        ->check(CLI::Range(0, 12).description(""))
        ->type_name("N")
        ->capture_default_str();
    command->add_flag("--lonlat", arguments->lonLat, "Longitude comes first");
    OnRun(command, session, arguments, Eval);
}

}  // namespace orv::cfg
