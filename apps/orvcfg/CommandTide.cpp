// Tide stations: what is in them, their gaps, and a picture. Other subcommands have sources of their own.

#include <map>

#include "Commands.h"
#include "Document.h"
#include "SurveyFiles.h"
#include "TidePicture.h"
#include "TideStationAccess.h"
#include "TimeText.h"
#include "platform/os/Clock.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct InfoArguments {
    std::string station;
};

struct GapsArguments {
    std::string station, from, to;
    double seconds = 0;
};

struct PlotArguments {
    std::string station, from, to, output, title;
};

struct Month {
    std::int64_t values = 0;
    double first = 0, last = 0, lowest = 0, highest = 0;
};

/// Values by the month they were measured in; UTC.
std::map<std::string, Month> MonthsOf(TideStation& station) {
    std::map<std::string, Month> months;
    double start = 0, end = 0;
    Month* month = nullptr;
    ForEachValue(station, {}, [&](double time, double value) {
        if (!month || time < start || time >= end) {
            TideSpan span;
            const std::string name = UtcText(time).substr(0, 7);
            month = &months[name];
            if (!ParseTideFileTitle(TideFileTitle(L"", time), span)) span = {time, time};
            start = span.start;
            end = span.end;
            if (month->values == 0) *month = {0, time, time, value, value};
        }
        ++month->values;
        month->last = time;
        month->lowest = std::min(month->lowest, value);
        month->highest = std::max(month->highest, value);
    });
    return months;
}

ExitCode Info(Session& session, const InfoArguments& arguments) {
    TideStation station;
    if (!OpenStation(session, arguments.station, station)) return kCannotRun;
    bool limited = false, holds = false;
    double longest = 0, span = 0, first = 0, last = 0;
    station.GetInterpolAttribs(limited, longest);
    station.GetExtrapolationAttribs(holds, span);
    const std::map<std::string, Month> months = MonthsOf(station);
    const bool some = station.GetTimeSpan(first, last);
    const Cell none = Cell::Missing("there are no values");
    const Point position = station.GetStationPos();
    Document document;
    Facts& facts = document.AddFacts("Tide station", "station");
    facts.Add("Name", "name", Cell::Of(station.GetStationName()));
    facts.Add("Id", "id", Cell::Of(station.GetStationID()));
    facts.Add("File", "file", Cell::Path(station.GetFileName()));
    facts.Add("x", "x", Cell::Number(position.x, 3));
    facts.Add("y", "y", Cell::Number(position.y, 3));
    facts.Add("Offset (m)", "offset", Cell::Number(station.GetStationOffset(), 3));
    facts.Add("Bridges gaps up to", "maximumGap",
              limited ? Cell{DurationText(longest), longest, {}} : Cell{"any length", nullptr, {}});
    facts.Add("Holds end values for", "maximumSpan",
              holds ? Cell{DurationText(span), span, {}} : Cell{"no time", 0, {}});
    facts.Add("Values", "values", Cell::Count(station.GetNumValues()));
    facts.Add("First (UTC)", "first", some ? UtcCell(first) : none);
    facts.Add("Last (UTC)", "last", some ? UtcCell(last) : none);
    Table& table = document.AddTable("Months", "months",
                                     {{"Month", "month"},
                                      {"Values", "values", true},
                                      {"First (UTC)", "first"},
                                      {"Last (UTC)", "last"},
                                      {"Lowest (m)", "lowest", true},
                                      {"Highest (m)", "highest", true}});
    for (const auto& [name, month] : months) {
        table.Add({Cell::Of(name), Cell::Count(month.values), UtcCell(month.first), UtcCell(month.last),
                   Cell::Number(month.lowest, 3), Cell::Number(month.highest, 3)});
    }
    document.Print(session);
    return kAllGood;
}

ExitCode Gaps(Session& session, const GapsArguments& arguments) {
    TideStation station;
    TideRange range;
    if (!ReadRange(session, arguments.from, arguments.to, range) || !OpenStation(session, arguments.station, station)) {
        return kCannotRun;
    }
    Table table({{"From (UTC)", "from"}, {"To (UTC)", "to"}, {"Length", "length", true}});
    double previous = NAN;
    std::size_t gaps = 0, values = 0;
    bool limited = false;
    double longest = 0;
    station.GetInterpolAttribs(limited, longest);
    if (arguments.seconds > 0) longest = arguments.seconds * 1000;
    ForEachValue(station, range, [&](double time, double) {
        ++values;
        if (time - previous > longest) {  // false for the first value
            table.Add({UtcCell(previous), UtcCell(time), {DurationText(time - previous), time - previous, {}}});
            ++gaps;
        }
        previous = time;
    });
    if (values == 0) {
        session.Problem(arguments.station, "There are no values here", "See \"orvcfg tide info\".");
        return kSomeFailed;
    }
    Document::Print(session, table);
    if (!limited && arguments.seconds <= 0) session.Note("the station bridges gaps of any length");
    session.Note(std::to_string(gaps) + " gaps longer than " + DurationText(longest) + " between " +
                 std::to_string(values) + " values");
    return kAllGood;
}

// ---- plot

ExitCode PlotTide(Session& session, const PlotArguments& arguments) {
    TideStation station;
    TideRange range;
    if (!ReadRange(session, arguments.from, arguments.to, range) || !OpenStation(session, arguments.station, station)) {
        return kCannotRun;
    }
    const TidePicture picture = DrawTide(station, range, arguments.title);
    if (picture.values == 0) {
        session.Problem(arguments.station, "There are no values to draw", "See \"orvcfg tide info\".");
        return kSomeFailed;
    }
    if (!WriteResult(session, arguments.output, picture.svg)) return kSomeFailed;
    session.Note(std::to_string(picture.values) + " values, " + std::to_string(picture.gaps) + " gaps");
    return kAllGood;
}

void AddRange(CLI::App* command, std::string& from, std::string& to) {
    command->add_option("--from", from, "Earliest time; UTC unless it says otherwise. Default: the first value")
        ->type_name("TIME");
    command->add_option("--to", to, "Latest time, in the same way. Default: the last value")->type_name("TIME");
}

}  // namespace

void AddTide(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "tide", "Tide stations: info, eval, gaps, import, export, plot");

    auto info = std::make_shared<InfoArguments>();
    CLI::App* command = AddCommand(*group, "info", "A station, its limits and its months",
                                   "  orvcfg --project Harbour tide info Pier\n"
                                   "  orvcfg tide info Pier --json | jq '.months[].values'");
    command->add_option("STATION", info->station, "Name of the station in the project, or its path")->required();
    OnRun(command, session, info, Info);

    AddTideEval(*group, session);

    auto gaps = std::make_shared<GapsArguments>();
    command = AddCommand(*group, "gaps", "Where values lie further apart than the station bridges",
                         "  orvcfg --project Harbour tide gaps Pier --longer 900");
    command->add_option("STATION", gaps->station, "Name of the station in the project, or its path")->required();
    command->add_option("--longer", gaps->seconds, "Count what is longer than this. Default: the station's limit")
        ->check(CLI::PositiveNumber.description(""))
        ->type_name("SECONDS");
    AddRange(command, gaps->from, gaps->to);
    OnRun(command, session, gaps, Gaps);

    AddTideImport(*group, session);
    AddTideExport(*group, session);

    auto plot = std::make_shared<PlotArguments>();
    command =
        AddCommand(*group, "plot", "Draw the tide, with what isn't bridged shaded, as SVG",
                   "  orvcfg --project Harbour tide plot Pier --from 2021-03-02T00:00Z --to 2021-03-04T00:00Z \\\n"
                   "      --output pier.svg");
    command->add_option("STATION", plot->station, "Name of the station in the project, or its path")->required();
    AddRange(command, plot->from, plot->to);
    command->add_option("-o,--output", plot->output, "File to write. Default: standard output")->type_name("FILE");
    command->add_option("--title", plot->title, "Title of the picture")->type_name("TEXT");
    OnRun(command, session, plot, PlotTide);
}

}  // namespace orv::cfg
