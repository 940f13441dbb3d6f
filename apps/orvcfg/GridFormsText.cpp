#include <array>
#include <limits>

#include "GridFormReaders.h"
#include "geoid/KilometreGrid.h"
#include "geoid/NodeTable.h"
#include "geoid/TextScan.h"

namespace orv::cfg {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t kMostNodes = 100'000'000;  // of a list with gaps, as its model has it

std::string_view TextOf(Content bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A look at the beginning keeps binary grids away from the readers of lines.
bool IsText(Content bytes) {
    const Content head = bytes.first(std::min<std::size_t>(bytes.size(), 4096));
    return !head.empty() && std::all_of(head.begin(), head.end(), [](std::byte b) {
        const auto c = static_cast<unsigned char>(b);
        return c >= ' ' || c == '\n' || c == '\r' || c == '\t';
    });
}

GridFacts OnePart(GridPart part, std::string nodeType) {
    GridFacts facts;
    facts.nodeType = std::move(nodeType);
    facts.parts.push_back(std::move(part));
    return facts;
}

std::string CountFault(std::int64_t wanted, std::int64_t found) {
    if (wanted == found) return {};
    return "it should have " + std::to_string(wanted) + " nodes and has " + std::to_string(found);
}

FormFacts ReadKilometres(Content bytes, int fields, std::vector<GridValues> values) {
    if (!IsText(bytes)) return std::nullopt;
    GridPart part;
    part.degrees = false;
    part.latitudeStep = part.longitudeStep = 1000.0;
    std::int64_t nodes = 0;
    std::string_view text = TextOf(bytes), line;
    while (NextLine(text, line)) {
        const KilometreLine node = ScanKilometreLine(line);
        if (node.fields != fields) continue;
        if (nodes == 0) {
            part.west = part.east = node.easting;
            part.south = part.north = node.northing;
        }
        ++nodes;
        if (node.northing == part.south) ++part.columns;
        if (node.easting == part.west) ++part.rows;
        part.east = std::max<double>(part.east, node.easting);
        part.north = std::max<double>(part.north, node.northing);
        for (std::size_t i = 0; i < values.size(); ++i) values[i].Take(node.reals[i]);
    }
    if (part.rows < 2 || part.columns < 2 || part.east <= part.west || part.north <= part.south) return std::nullopt;
    part.values = std::move(values);
    const std::int64_t wanted = part.Nodes();
    GridFacts facts = OnePart(std::move(part), "text, a line a node");
    facts.fault = CountFault(wanted, nodes);
    return facts;
}

/// A value at each of the given places of every line; the grid's size is known.
FormFacts ReadBelgian(Content bytes, GridPart part, std::initializer_list<std::size_t> places, std::size_t width) {
    if (!IsText(bytes)) return std::nullopt;
    std::int64_t lines = 0;
    std::string_view text = TextOf(bytes), line;
    while (NextLine(text, line)) {
        std::size_t n = 0;
        for (const std::size_t place : places) {
            float value = 0.0f;
            if (line.size() <= place || !TextScan(line.substr(place)).Float(value, width)) return std::nullopt;
            part.values[n++].Take(value);
        }
        ++lines;
    }
    // Nothing but the number of lines tells one such file from another.
    const std::int64_t wanted = part.Nodes();
    if (lines < wanted / 2 || lines > wanted + 1) return std::nullopt;
    GridFacts facts = OnePart(std::move(part), "text, a line a node");
    facts.fault = CountFault(wanted, lines);
    return facts;
}

FormFacts ReadTable(Content bytes, GridPart part, double (*height)(double)) {
    const std::vector<double> nodes =
        IsText(bytes) ? ReadNodeTable(TextOf(bytes), static_cast<int>(part.rows), static_cast<int>(part.columns))
                      : std::vector<double>();
    if (nodes.empty()) return std::nullopt;
    part.latitudeStep = 0.05;
    part.longitudeStep = 1.0 / 12.0;
    part.north = part.south + static_cast<double>(part.rows - 1) * part.latitudeStep;
    part.east = part.west + static_cast<double>(part.columns - 1) * part.longitudeStep;
    part.values.push_back({.what = "height", .unit = "m"});
    for (const double node : nodes) part.values.front().Take(height(node));
    return OnePart(std::move(part), "text, a line a row");
}

}  // namespace

FormFacts ReadGriFacts(Content bytes, std::string& why) {
    if (!IsText(bytes)) return std::nullopt;
    std::string_view text = TextOf(bytes), line;
    NextLine(text, line);
    TextScan header(line);
    GridPart part;
    if (!header.Real(part.south) || !header.Real(part.north) || !header.Real(part.west) || !header.Real(part.east) ||
        !header.Real(part.latitudeStep) || !header.Real(part.longitudeStep)) {
        return std::nullopt;
    }
    const double rows = std::round((part.north - part.south) / part.latitudeStep) + 1.0;
    const double columns = std::round((part.east - part.west) / part.longitudeStep) + 1.0;
    part.rows = rows >= 2.0 && rows < 1e6 ? static_cast<std::int64_t>(rows) : 0;
    part.columns = columns >= 2.0 && columns < 1e6 ? static_cast<std::int64_t>(columns) : 0;
    if (!OnEarth(part, why)) return std::nullopt;
    GridValues values = {.what = "height", .unit = "m"};
    std::int64_t nodes = 0;
    while (NextLine(text, line)) {
        TextScan in(line);
        float value = 0.0f;
        for (int n = 0; n < 8 && in.Float(value); ++n, ++nodes)
            values.Take(value == 9999.0f ? kNothing : double{value});
    }
    part.values.push_back(std::move(values));
    const std::int64_t wanted = part.Nodes();
    GridFacts facts = OnePart(std::move(part), "text, up to eight nodes a line");
    facts.fault = CountFault(wanted, nodes);
    RemarkLostNodes(facts.parts.front(), 1.0, "the model", facts);
    return facts;
}

FormFacts ReadKilometreShifts(Content bytes, std::string&) {
    return ReadKilometres(bytes, 7,
                          {{.what = "easting shift", .unit = "m"},
                           {.what = "northing shift", .unit = "m"},
                           {.what = "height", .unit = "m"}});
}

FormFacts ReadKilometreHeights(Content bytes, std::string&) {
    return ReadKilometres(bytes, 5, {{.what = "height", .unit = "m"}});
}

FormFacts ReadVorfFacts(Content bytes, std::string& why) {
    if (!IsText(bytes)) return std::nullopt;
    std::string_view text = TextOf(bytes);
    ListedHeight first, point;
    if (!NextListedHeight(text, first)) return std::nullopt;
    GridPart part;
    part.south = part.north = first.latitude;
    part.west = part.east = first.longitude;
    GridValues values = {.what = "height", .unit = "m"};
    values.Take(first.height);
    // The steps are those to the first point that lies aside and the first that lies up or down.
    while (NextListedHeight(text, point)) {
        part.south = std::min(part.south, point.latitude);
        part.north = std::max(part.north, point.latitude);
        part.west = std::min(part.west, point.longitude);
        part.east = std::max(part.east, point.longitude);
        if (part.longitudeStep == 0.0) part.longitudeStep = std::fabs(point.longitude - first.longitude);
        if (part.latitudeStep == 0.0) part.latitudeStep = std::fabs(first.latitude - point.latitude);
        values.Take(point.height);
    }
    const double rows = (part.north - part.south) / part.latitudeStep + 1.5;
    const double columns = (part.east - part.west) / part.longitudeStep + 1.5;
    if (values.held < 4 || !(rows * columns <= static_cast<double>(kMostNodes))) return std::nullopt;
    part.rows = static_cast<std::int64_t>(rows);
    part.columns = static_cast<std::int64_t>(columns);
    if (!OnEarth(part, why)) return std::nullopt;
    values.missing = part.Nodes() - values.held;
    if (values.missing < 0) {
        why = "it has more points than its grid has nodes";
        return std::nullopt;
    }
    part.values.push_back(std::move(values));
    return OnePart(std::move(part), "text, a line a node");
}

FormFacts ReadBelgianHeights(Content bytes, std::string&) {
    GridPart part{.south = 48.5, .north = 52.5, .west = 1.0, .east = 7.0};
    part.rows = 241;
    part.columns = 361;
    part.latitudeStep = part.longitudeStep = 1.0 / 60.0;
    part.values = {{.what = "height", .unit = "m"}};
    return ReadBelgian(bytes, std::move(part), {20}, 8);
}

FormFacts ReadBelgianShifts(Content bytes, std::string&) {
    GridPart part{.degrees = false, .south = 20000.0, .north = 250000.0, .west = 20000.0, .east = 300000.0};
    part.rows = 116;
    part.columns = 141;
    part.latitudeStep = part.longitudeStep = 2000.0;
    part.values = {{.what = "x correction", .unit = "m"}, {.what = "y correction", .unit = "m"}};
    return ReadBelgian(bytes, std::move(part), {25, 35}, 10);
}

FormFacts ReadDeMinFacts(Content bytes, std::string&) {
    GridPart part{.south = 50.525, .west = 3.208333333333333};
    part.rows = 64;
    part.columns = 52;
    return ReadTable(bytes, std::move(part), [](double node) { return node + 44.0; });
}

FormFacts ReadNz97Facts(Content bytes, std::string&) {
    GridPart part{.south = 51.025, .west = 2.5416666666666665};
    part.rows = 80;
    part.columns = 66;
    return ReadTable(bytes, std::move(part),
                     [](double node) { return node < -9998.0 ? kNothing : node / 1000.0 + 44.0; });
}

}  // namespace orv::cfg
