#include <unistd.h>

#include <chrono>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "GeoidSource.h"
#include "Installation.h"
#include "PositionText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> positions;
    GeoidArguments geoid;
    int decimals = 4;
    bool lonLat = false, grid = false;
};

class Evaluation {
public:
    Evaluation(Session& forSession, GeoidSource& from, const Arguments& with)
        : session(forSession), source(from), arguments(with) {}

    /// One line of input without its line feed.
    void Line(std::string_view line) {
        std::string_view rest = line;
        const std::string_view first = NextWord(rest);
        if (first.empty() || first.front() == '#') {
            if (!session.options.json) session.out.PutLine(line);
            return;
        }
        const std::string_view second = NextWord(rest);
        while (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);
        Position(first, second, rest);
    }

    void Position(std::string_view first, std::string_view second, std::string_view rest) {
        Answer answer;
        const PlaceOrder order = arguments.grid     ? PlaceOrder::Grid
                                 : arguments.lonLat ? PlaceOrder::LonLat
                                                    : PlaceOrder::LatLon;
        answer.wrong = ReadPlace(first, second, order, answer.y, answer.x);
        if (!answer.wrong) {
            answer.found = arguments.grid ? source.AtGrid(answer.x, answer.y, answer.value)
                                          : source.At(answer.y, answer.x, answer.value);
        }
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
        double y = 0.0, x = 0.0, value = 0.0;  // latitude and longitude, or northing and easting
        const char* wrong = nullptr;           ///< with the text of the position
        bool found = false;
    };

    void PutText(const Answer& answer, std::string_view first, std::string_view second, std::string_view rest) {
        text.assign(first).append(1, ' ').append(second).append(second.empty() ? "" : " ");
        if (answer.found) {
            AppendFixed(text, answer.value, arguments.decimals);
            text.append(rest);
        } else {
            text.append("*").append(rest).append("  # ").append(ReasonText(answer));
        }
        session.out.PutLine(text);
    }

    /// One object a line: a stream of them can be read while it is written.
    void PutJson(const Answer& answer, std::string_view first, std::string_view second, std::string_view rest) {
        Json object = Json::object();
        if (answer.wrong) {
            object["position"] = std::string(first) + " " + std::string(second);
        } else {
            object[arguments.grid ? "northing" : "latitude"] = answer.y;
            object[arguments.grid ? "easting" : "longitude"] = answer.x;
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
        session.out.PutLine(object.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    std::string ReasonText(const Answer& answer) const { return answer.wrong ? answer.wrong : source.Reason(); }

    Session& session;
    GeoidSource& source;
    const Arguments& arguments;
    std::string text;
    std::size_t positions = 0, refused = 0;
};

ExitCode Eval(Session& session, const Arguments& arguments) {
    if (arguments.positions.size() % 2 != 0) {
        session.Problem({},
                        "A position has a latitude and a longitude, and here are " +
                            std::to_string(arguments.positions.size()) + " angles",
                        "Quote forms with signs, as in \"52d09'15.1\\\"N\".");
        return kCannotRun;
    }
    if (arguments.grid && arguments.geoid.model.empty()) {
        session.Problem({}, "--grid goes with --model", "The project's own geoid is asked by latitude and longitude.");
        return kCannotRun;
    }
    GeoidSource source;
    if (!OpenInstallation(session) || !source.Open(session, arguments.geoid)) return kCannotRun;
    Evaluation evaluation(session, source, arguments);
    const auto start = std::chrono::steady_clock::now();
    if (arguments.positions.empty()) {
        const auto each = [&](std::string_view line) { evaluation.Line(line); };
        if (!FilterInput(session, STDIN_FILENO, "standard input", each)) return kCannotRun;
    } else {
        for (std::size_t i = 0; i < arguments.positions.size(); i += 2) {
            evaluation.Position(arguments.positions[i], arguments.positions[i + 1], {});
        }
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    session.Detail(std::to_string(evaluation.Positions()) + " positions in " + Fixed(took.count(), 3) + " s");
    return evaluation.Finish();
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
    AddGeoidOptions(*command, arguments->geoid);
    command->add_option("--decimals", arguments->decimals, "Decimals of a separation")
        ->check(CLI::Range(0, 12).description(""))
        ->type_name("N")
        ->capture_default_str();
    command->add_flag("--lonlat", arguments->lonLat, "Longitude comes first");
    command->add_flag("--grid", arguments->grid,
                      "Positions are easting and northing in metres, for models on such a grid");
    OnRun(command, session, arguments, Eval);
}

}  // namespace orv::cfg
