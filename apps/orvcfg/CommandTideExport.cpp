#include "Commands.h"
#include "Document.h"
#include "TideStationAccess.h"
#include "TimeText.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string station, from, to;
    bool withOffset = false;
};

ExitCode Export(Session& session, const Arguments& arguments) {
    TideStation station;
    TideRange range;
    if (!ReadRange(session, arguments.from, arguments.to, range) || !OpenStation(session, arguments.station, station)) {
        return kCannotRun;
    }
    const double offset = station.GetStationOffset();
    // Taking the offset off again would cost the last bits of a value. The station isn't saved.
    if (!arguments.withOffset) station.SetStationOffset(0);
    if (!session.options.json) {
        const std::string name = ToUtf8(station.GetStationName()), number = ToUtf8(ShortestText(offset));
        if (!session.options.quiet) {
            session.out.Put("# Tide at " + name + ", UTC, m, " + (arguments.withOffset ? "with" : "without") +
                            " the station's offset of " + number + "\n");
        }
        session.out.Put("time,value\n");
    }
    std::size_t values = 0;
    ForEachValue(station, range, [&](double time, double value) {
        if (!session.out.Good()) return;
        ++values;
        if (session.options.json) {
            const Json object = {{"time", UtcText(time)},
                                 {"value", std::isfinite(value) ? Json(value) : Json(nullptr)}};
            session.out.Put(object.dump() + "\n");
        } else {
            session.out.Put(UtcText(time) + "," + (std::isfinite(value) ? ToUtf8(ShortestText(value)) : "*") + "\n");
        }
    });
    session.Detail(std::to_string(values) + " values");
    if (values > 0) return kAllGood;
    session.Problem(arguments.station, "There are no values to export", "See \"orvcfg tide info\".");
    return kSomeFailed;
}

}  // namespace

void AddTideExport(CLI::App& tide, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(tide, "export", "The values of a station as CSV, times in UTC",
                   "  orvcfg --project Harbour tide export Pier > pier.csv\n"
                   "  # Tide at Pier, UTC, m, without the station's offset of 0.35\n"
                   "  time,value\n"
                   "  2021-03-02T10:15:00Z,1.2375\n\n"
                   "Values are those that the gauge measured: \"orvcfg tide import\" takes them back as they are.");
    command->add_option("STATION", arguments->station, "Name of the station in the project, or its path")->required();
    command
        ->add_option("--from", arguments->from, "Earliest time; UTC unless it says otherwise. Default: the first value")
        ->type_name("TIME");
    command->add_option("--to", arguments->to, "Latest time, in the same way. Default: the last value")
        ->type_name("TIME");
    command->add_flag("--with-offset", arguments->withOffset, "Values with the station's offset added");
    OnRun(command, session, arguments, Export);
}

}  // namespace orv::cfg
