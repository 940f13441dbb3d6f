#include <cmath>

#include "Commands.h"
#include "Document.h"
#include "FilterInput.h"
#include "GeoidSource.h"
#include "Installation.h"
#include "PositionText.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string stations;
    GeoidArguments geoid;
    double tolerance = std::nan("");
    bool lonLat = false, grid = false;
};

/// Benchmark stations: what the publisher of a grid says that there must come out of it.
class Verification {
public:
    Verification(Session& forSession, GeoidSource& from, const Arguments& with)
        : session(forSession), source(from), arguments(with), path(PathToBytes(PathArgument(with.stations))) {}

    void Line(std::string_view line) {
        ++number;
        std::string_view rest = line;
        const std::string_view first = NextWord(rest);
        if (first.empty() || first.front() == '#') {
            if (!session.options.json) session.out.Put(std::string(line) + "\n");
            return;
        }
        Station station;
        if (const char* wrong = Read(first, rest, station)) {
            session.Problem(path + ":" + std::to_string(number), wrong,
                            "A line holds latitude, longitude, expected separation, tolerance and a name.");
            ++unread;
            return;
        }
        double value = 0.0;
        const bool found =
            arguments.grid ? source.AtGrid(station.x, station.y, value) : source.At(station.y, station.x, value);
        const double difference = value - station.expected;
        const bool good = found && std::fabs(difference) <= station.tolerance;
        ++stations;
        if (!good) ++out;
        if (found) largest = std::max(largest, std::fabs(difference));
        session.options.json ? PutJson(station, found, value, difference, good)
                             : PutText(station, found, value, difference, good);
    }

    ExitCode Finish() {
        if (stations == 0 && unread == 0) {
            session.Problem(path, "It holds no station");
            return kSomeFailed;
        }
        session.Note(std::to_string(stations) + " stations, largest difference " + Fixed(largest, 4) + " " +
                     ToUtf8(source.Unit()));
        if (out > 0) {
            session.Problem(path, std::to_string(out) + " of " + std::to_string(stations) + " stations are out",
                            "Check that the grid is the one that the stations were published with.");
        }
        return out + unread > 0 ? kSomeFailed : kAllGood;
    }

private:
    struct Station {
        double y = 0.0, x = 0.0, expected = 0.0, tolerance = 0.0;
        std::string place, name;
    };

    /// Null, or what is wrong with the line.
    const char* Read(std::string_view first, std::string_view rest, Station& station) const {
        const std::string_view second = NextWord(rest);
        const PlaceOrder order = arguments.grid     ? PlaceOrder::Grid
                                 : arguments.lonLat ? PlaceOrder::LonLat
                                                    : PlaceOrder::LatLon;
        if (const char* wrong = ReadPlace(first, second, order, station.y, station.x)) return wrong;
        const std::optional<double> expected = ParseDouble(NextWord(rest));
        if (!expected || !std::isfinite(*expected)) return "no expected separation behind the position";
        station.expected = *expected;
        std::string_view behind = rest;
        const std::optional<double> tolerance = ParseDouble(NextWord(behind));
        if (tolerance) rest = behind;
        station.tolerance = tolerance ? *tolerance : arguments.tolerance;
        if (!(station.tolerance >= 0.0)) return "no tolerance, and no --tolerance for all";
        station.place = std::string(first) + " " + std::string(second);
        const std::size_t begin = rest.find_first_not_of(" \t"), end = rest.find_last_not_of(" \t\r");
        if (begin != rest.npos) station.name = rest.substr(begin, end - begin + 1);
        return nullptr;
    }

    void PutText(const Station& station, bool found, double value, double difference, bool good) {
        std::string text = station.place + " " + Fixed(station.expected, 4) + " " +
                           (found ? Fixed(value, 4) + " " + Fixed(difference, 4) : std::string("* *")) +
                           (good ? " ok" : " OUT");
        if (!station.name.empty()) text += " " + station.name;
        if (!found) text += "  # " + source.Reason();
        session.out.Put(text + "\n");
    }

    void PutJson(const Station& station, bool found, double value, double difference, bool good) {
        Json object = Json::object();
        object[arguments.grid ? "northing" : "latitude"] = station.y;
        object[arguments.grid ? "easting" : "longitude"] = station.x;
        object["expected"] = station.expected;
        object["tolerance"] = station.tolerance;
        object["separation"] = found ? Json(value) : Json(nullptr);
        object["difference"] = found ? Json(difference) : Json(nullptr);
        object["good"] = good;
        if (!found) object["reason"] = source.Reason();
        if (!station.name.empty()) object["name"] = station.name;
        session.out.Put(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
    }

    Session& session;
    GeoidSource& source;
    const Arguments& arguments;
    std::string path;
    std::size_t number = 0, stations = 0, out = 0, unread = 0;
    double largest = 0.0;
};

ExitCode Verify(Session& session, const Arguments& arguments) {
    GeoidSource source;
    if (arguments.grid && arguments.geoid.model.empty()) {
        session.Problem({}, "--grid goes with --model", "The project's own geoid is asked by latitude and longitude.");
        return kCannotRun;
    }
    if (!OpenInstallation(session) || !source.Open(session, arguments.geoid)) return kCannotRun;
    Verification verification(session, source, arguments);
    const auto each = [&](std::string_view line) { verification.Line(line); };
    if (!FilterFile(session, PathArgument(arguments.stations), each)) return kCannotRun;
    return verification.Finish();
}

}  // namespace

void AddGeoidVerify(CLI::App& geoid, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        geoid, "verify", "Compare separations with those that stations are known to have",
        "  cat stations.txt\n"
        "  # latitude longitude expected tolerance name\n"
        "  52.10 4.27 43.1230 0.001 quay\n"
        "  orvcfg geoid verify stations.txt --model 28 --file nlgeo2018.gtx\n"
        "  # latitude longitude expected tolerance name\n"
        "  52.10 4.27 43.1230 43.1234 0.0004 ok quay\n\n"
        "Shows for each station what was expected, what came out, and by how much it differs. Lines that start with #\n"
        "and blank lines pass unchanged. The exit code is 1 when a station is out of its tolerance.");
    command->add_option("FILE", arguments->stations, "Stations, a line each")->required();
    AddGeoidOptions(*command, arguments->geoid);
    command->add_option("--tolerance", arguments->tolerance, "Tolerance of stations that have none of their own")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("N");
    command->add_flag("--lonlat", arguments->lonLat, "Longitude comes first");
    command->add_flag("--grid", arguments->grid, "Positions are easting and northing in metres");
    OnRun(command, session, arguments, Verify);
}

}  // namespace orv::cfg
