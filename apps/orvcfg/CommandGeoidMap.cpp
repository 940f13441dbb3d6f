#include <array>
#include <cmath>
#include <limits>

#include "Commands.h"
#include "Document.h"
#include "GeoidSource.h"
#include "GridForms.h"
#include "Installation.h"
#include "Svg.h"
#include "geoid/GeoidModelList.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    GeoidArguments geoid;
    std::string output;
    std::vector<double> bounds;
    int cells = 300;
};

// Dark violet over green to yellow: even steps in lightness, told apart in print and by eyes that don't tell red from
// green.
constexpr std::array<std::array<int, 3>, 9> kRamp = {{{68, 1, 84},
                                                      {71, 44, 122},
                                                      {59, 81, 139},
                                                      {44, 113, 142},
                                                      {33, 144, 141},
                                                      {39, 173, 129},
                                                      {92, 200, 99},
                                                      {170, 220, 50},
                                                      {253, 231, 37}}};
constexpr int kColours = 128;

std::string ColourOf(int step) {
    const double place = static_cast<double>(step) / (kColours - 1) * (kRamp.size() - 1);
    const std::size_t first = std::min(static_cast<std::size_t>(place), kRamp.size() - 2);
    std::string colour = "#";
    for (std::size_t n = 0; n < 3; ++n) {
        const double mixed = std::lerp(static_cast<double>(kRamp[first][n]), static_cast<double>(kRamp[first + 1][n]),
                                       place - static_cast<double>(first));
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<std::size_t>(std::lround(mixed));
        colour += digits[byte / 16];
        colour += digits[byte % 16];
    }
    return colour;
}

/// The area of a map, in degrees or in metres of a national grid.
struct Area {
    double south = 0.0, north = 0.0, west = 0.0, east = 0.0;
    bool degrees = true;
};

/// Separations at the middles of even cells, row by row from the north; NaN where the model refuses.
struct Samples {
    int rows = 0, columns = 0;
    std::vector<double> values = {};
    std::size_t Index(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
    }
    std::size_t refused = 0;
    double smallest = 0.0, largest = 0.0;
};

Samples Sample(GeoidSource& source, const Area& area, int rows, int columns, Progress& progress) {
    Samples samples{.rows = rows, .columns = columns};
    samples.values.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns),
                          std::numeric_limits<double>::quiet_NaN());
    progress.Expect("rows", static_cast<std::uint64_t>(rows));
    bool first = true;
    for (int r = 0; r < rows; ++r) {
        const Progress::Item counted(progress);
        const double y = area.north - (r + 0.5) * (area.north - area.south) / rows;
        for (int c = 0; c < columns; ++c) {
            const double x = area.west + (c + 0.5) * (area.east - area.west) / columns;
            double value = 0.0;
            if (!(area.degrees ? source.At(y, x, value) : source.AtGrid(x, y, value))) {
                ++samples.refused;
                continue;
            }
            samples.values[samples.Index(r, c)] = value;
            samples.smallest = first ? value : std::min(samples.smallest, value);
            samples.largest = first ? value : std::max(samples.largest, value);
            first = false;
        }
    }
    return samples;
}

/// The area that the model's file covers, or the one that its built-in table does.
std::optional<Area> AreaOf(const GeoidChoice& choice, const OpenedGeoid& opened) {
    const int type = GeoidTypeForKey(choice.key);
    if (type == 2) return Area{50.5, 53.7, 3.2, 7.5};
    if (type == 21) return Area{51.0, 55.0, 2.5, 8.0};
    MappedFile content;
    std::string why;
    if (opened.path.empty() || !content.Open(opened.path, why)) return std::nullopt;
    const std::optional<RecognisedGrid> grid = RecogniseGrid(content.Bytes(), why);
    if (!grid) return std::nullopt;
    const GridPart& part = grid->facts.parts.front();
    return Area{part.south, part.north, part.west, part.east, part.degrees};
}

class Map {
public:
    Map(const Area& of, const Samples& from, const std::wstring& heightUnit)
        : area(of), samples(from), unit(ToUtf8(heightUnit)) {
        const double middle = (area.south + area.north) / 2 * std::acos(-1.0) / 180.0;
        const double squeeze = area.degrees ? std::max(0.2, std::cos(middle)) : 1.0;
        const double ratio = (area.east - area.west) * squeeze / (area.north - area.south);
        width = std::round(std::max(kShortSide, kLongSide * std::min(1.0, ratio)));
        height = std::round(std::max(kShortSide, kLongSide * std::min(1.0, 1.0 / ratio)));
    }

    std::string Draw(const std::string& title, const std::string& file) const {
        const double legendX = kLeft + width + 28.0, total = legendX + 130.0;
        const double wide = std::max(total, 640.0);
        Svg svg(wide, kTop + height + 96.0, title);
        svg.Text(kLeft, 28, title, {.size = 18, .bold = true});
        svg.Text(kLeft, 48, file, {.size = 12, .colour = "#555555"});
        const std::string none = svg.Hatch("none", "#b0b0b0", "#eeeeee");
        svg.Rectangle(kLeft, kTop, width, height, none);
        DrawCells(svg);
        DrawAxes(svg);
        DrawLegend(svg, legendX, none);
        svg.Text(kLeft, kTop + height + 66, Words(), {.size = 12});
        const double share = 100.0 * static_cast<double>(samples.refused) / static_cast<double>(samples.values.size());
        svg.Text(kLeft, kTop + height + 84,
                 "Hatched: positions that the model refuses, " + Fixed(share, 1) + " % of the " +
                     std::to_string(samples.values.size()) + " asked for.",
                 {.size = 12});
        return svg.Finish();
    }

    /// The scale for those who hear the map or print it without colours.
    std::string Words() const {
        if (!Any()) return "No position has a value.";
        if (samples.smallest == samples.largest) return "Everywhere " + Fixed(samples.smallest, 3) + " " + unit + ".";
        return "Separation from " + Fixed(samples.smallest, 3) + " " + unit + " (dark violet) to " +
               Fixed(samples.largest, 3) + " " + unit + " (yellow); a colour spans " +
               Fixed((samples.largest - samples.smallest) / kColours, 4) + " " + unit + ".";
    }
    bool Any() const { return samples.refused < samples.values.size(); }

private:
    static constexpr double kLongSide = 720.0, kShortSide = 160.0, kLeft = 90.0, kTop = 66.0;

    int StepOf(double value) const {
        const double range = samples.largest - samples.smallest;
        if (!(range > 0.0)) return kColours / 2;
        return std::clamp(static_cast<int>((value - samples.smallest) / range * kColours), 0, kColours - 1);
    }

    /// Neighbours of one colour are one rectangle. All edges lie between pixels, so that no seam shows.
    void DrawCells(Svg& svg) const {
        const auto x = [&](int c) { return std::round(kLeft + width * c / samples.columns); };
        const auto y = [&](int r) { return std::round(kTop + height * r / samples.rows); };
        for (int r = 0; r < samples.rows; ++r) {
            const auto at = [&](int c) { return samples.values[samples.Index(r, c)]; };
            for (int c = 0, end = 0; c < samples.columns; c = end) {
                end = c + 1;
                if (std::isnan(at(c))) continue;
                const int step = StepOf(at(c));
                while (end < samples.columns && !std::isnan(at(end)) && StepOf(at(end)) == step) ++end;
                svg.Rectangle(x(c), y(r), x(end) - x(c), y(r + 1) - y(r), ColourOf(step));
            }
        }
    }

    void DrawAxes(Svg& svg) const {
        const auto x = [&](double east) { return kLeft + (east - area.west) / (area.east - area.west) * width; };
        const auto y = [&](double north) { return kTop + (area.north - north) / (area.north - area.south) * height; };
        int decimals = 0;
        for (const double east : Ticks(area.west, area.east, static_cast<int>(width / 90), decimals)) {
            svg.Line(x(east), kTop + height, x(east), kTop + height + 6, {});
            svg.Line(x(east), kTop, x(east), kTop + height, {.colour = "#ffffff55", .width = 0.6});
            svg.Text(x(east), kTop + height + 20, Label(east, decimals, "E", "W"), {.anchor = Svg::Anchor::Middle});
        }
        for (const double north : Ticks(area.south, area.north, static_cast<int>(height / 60), decimals)) {
            svg.Line(kLeft - 6, y(north), kLeft, y(north), {});
            svg.Line(kLeft, y(north), kLeft + width, y(north), {.colour = "#ffffff55", .width = 0.6});
            svg.Text(kLeft - 10, y(north) + 4, Label(north, decimals, "N", "S"), {.anchor = Svg::Anchor::End});
        }
        svg.Rectangle(kLeft, kTop, width, height, "none", "#333333");
        svg.Text(kLeft + width / 2, kTop + height + 42, area.degrees ? "Longitude (degrees)" : "Easting (km)",
                 {.anchor = Svg::Anchor::Middle});
        svg.Text(18, kTop + height / 2, area.degrees ? "Latitude (degrees)" : "Northing (km)",
                 {.anchor = Svg::Anchor::Middle, .turned = -90});
    }

    std::string Label(double value, int decimals, const char* positive, const char* negative) const {
        if (!area.degrees) return Fixed(value / 1000.0, 0);
        return Fixed(std::fabs(value), decimals) + "\xC2\xB0" + (value > 0 ? positive : value < 0 ? negative : "");
    }

    void DrawLegend(Svg& svg, double x, const std::string& none) const {
        const double tall = std::min(height - 50.0, 420.0), bottom = kTop + 20 + tall;
        svg.Text(x, kTop + 8, "Separation (" + unit + ")", {.bold = true});
        if (Any()) {
            const double h = tall / kColours;
            for (int step = 0; step < kColours; ++step) {
                svg.Rectangle(x, bottom - (step + 1) * h, 22, h + (step == 0 ? 0.0 : 0.4), ColourOf(step));
            }
            svg.Rectangle(x, kTop + 20, 22, tall, "none", "#333333");
            int decimals = 0;
            for (const double tick : Ticks(samples.smallest, samples.largest, 6, decimals)) {
                const double range = samples.largest - samples.smallest;
                const double y = range > 0.0 ? bottom - (tick - samples.smallest) / range * tall : bottom - tall / 2;
                svg.Line(x + 22, y, x + 27, y, {});
                svg.Text(x + 32, y + 4, Fixed(tick, range > 0.0 ? decimals : 3), {});
            }
        }
        svg.Rectangle(x, bottom + 12, 22, 14, none, "#333333");
        svg.Text(x + 30, bottom + 23, "no value", {});
    }

    const Area& area;
    const Samples& samples;
    std::string unit;
    double width, height;
};

ExitCode DrawMap(Session& session, const Arguments& arguments) {
    GeoidSource source;
    if (!OpenInstallation(session)) return kCannotRun;
    const std::optional<GeoidChoice> choice = ChoiceOf(session, arguments.geoid);
    if (!choice || !source.Open(session, arguments.geoid)) return kCannotRun;
    const OpenedGeoid opened = OpenGeoid(*choice);
    std::optional<Area> area = AreaOf(*choice, opened);
    if (!arguments.bounds.empty()) {
        const std::vector<double>& b = arguments.bounds;
        area = Area{b[0], b[2], b[1], b[3], !area || area->degrees};
    }
    if (!area || !(area->north > area->south) || !(area->east > area->west)) {
        session.Problem({}, area ? "The area has no extent" : "The model doesn't tell which area it covers",
                        "Give --bounds SOUTH WEST NORTH EAST.");
        return kCannotRun;
    }
    const double ratio = (area->east - area->west) / (area->north - area->south);
    const auto side = [&](double share) {
        return std::clamp(static_cast<int>(std::lround(arguments.cells * share)), 2, arguments.cells);
    };
    const Samples samples =
        Sample(source, *area, side(std::min(1.0, 1.0 / ratio)), side(std::min(1.0, ratio)), session.progress);
    const Map map(*area, samples, source.Unit());
    const std::string file = opened.path.empty() ? "built-in table" : PathToBytes(GetNameFromPath(opened.path));
    const std::string picture = map.Draw("Height separation by " + ToUtf8(choice->key), file);
    if (arguments.output == "-") {
        session.out.Put(picture);
    } else {
        const std::wstring path = PathArgument(arguments.output);
        if (const FsResult result = SaveWholeFile(path, picture); result != FsResult::Ok) {
            session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(result)));
            return kCannotRun;
        }
        session.Note(map.Words());
    }
    if (map.Any()) return kAllGood;
    session.Problem({}, "No position of the map has a value", "Compare --bounds with \"orvcfg geoid info FILE\".");
    return kSomeFailed;
}

}  // namespace

void AddGeoidMap(CLI::App& geoid, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(geoid, "map", "Draw the separations of a model as a map in SVG",
                                   "  orvcfg geoid map 28 --file nlgeo2018.gtx -o map.svg\n"
                                   "  orvcfg geoid map 2 --bounds 51.8 3.8 52.2 4.6 -o rotterdam.svg");
    command->add_option("MODEL", arguments->geoid.model, "Geoid model, by key or type id")->required();
    command->add_option("--file", arguments->geoid.file, "Grid file of the model")->type_name("NAME");
    command->add_option("--chart-datum", arguments->geoid.chartDatum, "Chart datum of the model")->type_name("NAME");
    command->add_option("-o,--output", arguments->output, "File to write; - for the standard output")
        ->required()
        ->type_name("FILE");
    command->add_option("--bounds", arguments->bounds, "South, west, north, east. Default: those of the grid")
        ->expected(4)
        ->type_name("S W N E");
    command->add_option("--cells", arguments->cells, "Cells along the longer side")
        ->check(CLI::Range(2, 2000).description(""))
        ->type_name("N")
        ->capture_default_str();
    OnRun(command, session, arguments, DrawMap);
}

}  // namespace orv::cfg
