#include <unistd.h>

#include <cmath>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "GeoidSource.h"
#include "Installation.h"
#include "PositionText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> positions;
    GeoidArguments geoid;
    int decimals = -1;
    bool inverse = false, apply = false, lonLat = false;
};

/// What a model shifts and how. The signs differ: some give what is to be added, others what is to be taken off.
struct Shifting {
    unsigned short typeId;
    bool projected;   ///< easting and northing in metres; else latitude and longitude in degrees
    bool inverts;     ///< it has a correction for shifted positions, too
    double addition;  ///< 1: shifted = given + shift, -1: given - shift; backwards the other way round
};
constexpr Shifting kShiftings[] = {
    {4, true, false, 1.0}, {13, true, false, 1.0},  {5, true, false, 1.0},
    {25, true, true, 1.0}, {29, false, true, -1.0}, {8, false, false, 1.0},
};

const Shifting* ShiftingOf(unsigned short typeId) {
    for (const Shifting& shifting : kShiftings) {
        if (shifting.typeId == typeId) return &shifting;
    }
    return nullptr;
}

class Shifter {
public:
    Shifter(Session& forSession, GeoidModel& with, const Shifting& how, const Arguments& by)
        : session(forSession), model(with), shifting(how), arguments(by) {
        order = shifting.projected ? PlaceOrder::Grid : arguments.lonLat ? PlaceOrder::LonLat : PlaceOrder::LatLon;
        decimals = arguments.decimals >= 0 ? arguments.decimals : shifting.projected ? 4 : 10;
    }

    void Line(std::string_view line) {
        std::string_view rest = line;
        const std::string_view first = NextWord(rest);
        if (first.empty() || first.front() == '#') {
            if (!session.options.json) Put(std::string(line));
            return;
        }
        const std::string_view second = NextWord(rest);
        while (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);
        Position(first, second, rest);
    }

    void Position(std::string_view first, std::string_view second, std::string_view rest) {
        double y = 0.0, x = 0.0, dy = 0.0, dx = 0.0;
        const char* wrong = ReadPlace(first, second, order, y, x);
        std::string reason = wrong ? wrong : "";
        ++positions;
        if (!wrong && !Shift(y, x, dy, dx)) reason = ToUtf8(GeoidReasonText(model.LastReason()));
        if (!reason.empty()) ++refused;
        if (arguments.apply) {
            const double sign = arguments.inverse ? -shifting.addition : shifting.addition;
            dy = y + sign * dy;
            dx = x + sign * dx;
        }
        if (session.options.json) return PutJson(first, second, !wrong, reason, y, x, dy, dx, rest);
        std::string text = std::string(first) + " " + std::string(second) + (second.empty() ? "" : " ");
        if (reason.empty()) {
            const bool latitudeFirst = order == PlaceOrder::LatLon;
            AppendFixed(text, latitudeFirst ? dy : dx, decimals);
            text += ' ';
            AppendFixed(text, latitudeFirst ? dx : dy, decimals);
            text.append(rest);
        } else {
            text.append("* *").append(rest).append("  # ").append(reason);
        }
        Put(text);
    }

    ExitCode Finish() {
        if (refused == 0) return kAllGood;
        session.Problem({}, std::to_string(refused) + " of " + std::to_string(positions) + " positions have no shift",
                        "Each line says why.");
        return kSomeFailed;
    }

private:
    bool Shift(double y, double x, double& dy, double& dx) {
        const bool found = shifting.projected ? model.Calculate(x, y, dx, dy, arguments.inverse)
                                              : model.CalculateLocalEllipsCorrection(y, x, dy, dx, !arguments.inverse);
        return found && std::isfinite(dy) && std::isfinite(dx);
    }

    void Put(const std::string& line) { session.out.Put(line + "\n"); }

    void PutJson(std::string_view first, std::string_view second, bool placed, const std::string& reason, double y,
                 double x, double dy, double dx, std::string_view rest) {
        const std::string yName = shifting.projected ? "northing" : "latitude";
        const std::string xName = shifting.projected ? "easting" : "longitude";
        const std::string what = arguments.apply ? "Shifted" : "Shift";
        Json object = Json::object();
        if (placed) {
            object[yName] = y;
            object[xName] = x;
        } else {
            object["position"] = std::string(first) + " " + std::string(second);
        }
        object[yName + what] = reason.empty() ? Json(dy) : Json(nullptr);
        object[xName + what] = reason.empty() ? Json(dx) : Json(nullptr);
        if (reason.empty()) {
            object["unit"] = shifting.projected ? "m" : "degrees";
        } else {
            object["reason"] = reason;
        }
        const std::size_t begin = rest.find_first_not_of(" \t");
        if (begin != std::string_view::npos) object["rest"] = rest.substr(begin);
        Put(object.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    Session& session;
    GeoidModel& model;
    const Shifting& shifting;
    const Arguments& arguments;
    PlaceOrder order;
    int decimals;
    std::size_t positions = 0, refused = 0;
};

ExitCode Shift(Session& session, const Arguments& arguments) {
    if (arguments.positions.size() % 2 != 0) {
        session.Problem({}, "A position has two figures, and here are " + std::to_string(arguments.positions.size()));
        return kCannotRun;
    }
    if (!OpenInstallation(session)) return kCannotRun;
    const auto type = GeoidTypeArgument(session, arguments.geoid.model);
    const std::optional<GeoidChoice> choice = type ? ChoiceOf(session, arguments.geoid) : std::nullopt;
    if (!choice) return kCannotRun;
    const std::string key = ToUtf8(choice->key);
    const Shifting* shifting = ShiftingOf(*type);
    if (!shifting) {
        session.Problem({}, "Geoid model " + key + " shifts no positions", "docs/geoid.md tells which do.");
        return kCannotRun;
    }
    if (arguments.inverse && !shifting->inverts) {
        session.Problem({}, "Geoid model " + key + " has no correction for shifted positions",
                        "It gives the same with and without --inverse.");
        return kCannotRun;
    }
    const OpenedGeoid opened = OpenGeoid(*choice);
    if (!opened.problem.empty()) {
        session.Problem({}, "Geoid model " + key + ": " + opened.problem, "\"orvcfg geoid add\" puts a grid there.");
        return kCannotRun;
    }
    Shifter shifter(session, *opened.model, *shifting, arguments);
    for (std::size_t i = 0; i < arguments.positions.size(); i += 2) {
        shifter.Position(arguments.positions[i], arguments.positions[i + 1], {});
    }
    const auto each = [&](std::string_view line) { shifter.Line(line); };
    if (arguments.positions.empty() && !FilterInput(session, STDIN_FILENO, "standard input", each)) return kCannotRun;
    return shifter.Finish();
}

}  // namespace

void AddGeoidShift(CLI::App& geoid, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        geoid, "shift", "Horizontal corrections at positions from the arguments or from standard input",
        "  printf '52.10 4.27 quay\\n' | orvcfg geoid shift --model 29 --file rdtrans2018.gsb\n"
        "  52.10 4.27 0.0009789558 0.0002715232 quay\n\n"
        "Models of geographic positions take and give degrees, latitude first; models of national grids take and\n"
        "give metres, easting first. The two figures are the model's own, whose signs differ (docs/geoid.md):\n"
        "--apply gives the shifted position in their place. Lines that start with # and blank lines pass\n"
        "unchanged; a position without a shift gets * * and the reason behind a #, and the exit code is 1.");
    command->add_option("POSITION", arguments->positions, "Positions. Default: lines of standard input")
        ->option_text("Y X ...");
    AddGeoidOptions(*command, arguments->geoid);
    command->get_option("--model")->required();
    command->add_flag("--inverse", arguments->inverse, "Positions are shifted ones; find the shift that leads there");
    command->add_flag("--apply", arguments->apply, "Give the position after the shift, not the shift");
    command->add_option("--decimals", arguments->decimals, "Decimals. Default: 4 of a metre, 10 of a degree")
        ->check(CLI::Range(0, 15).description(""))
        ->type_name("N");
    command->add_flag("--lonlat", arguments->lonLat, "Longitude comes first");
    OnRun(command, session, arguments, Shift);
}

}  // namespace orv::cfg
