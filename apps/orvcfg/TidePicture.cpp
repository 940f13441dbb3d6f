#include "TidePicture.h"

#include "Plot.h"
#include "TimeText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::size_t kColumns = 1800;  // twice the pixels of a picture: more can't be seen

/// A curve of so many values that most can't be told apart: of each column the lowest and the highest are kept, and the
/// ends of every gap.
class Curve {
public:
    explicit Curve(double columnWidth) : width(columnWidth) {}

    void Break() {
        Flush();
        points.push_back({NAN, NAN});
    }
    void Add(double time, double value) {
        const double column = width > 0 ? std::floor(time / width) : time;
        if (held == 0 || column != current) Flush();
        current = column;
        if (held++ == 0) first = low = high = {time, value};
        last = {time, value};
        if (value < low.y) low = last;
        if (value > high.y) high = last;
    }
    std::vector<Svg::Point> Points() {
        Flush();
        return std::move(points);
    }

private:
    void Flush() {
        if (held == 0) return;
        const Svg::Point middle[] = {low.x <= high.x ? low : high, low.x <= high.x ? high : low};
        for (const Svg::Point& point : {first, middle[0], middle[1], last}) {
            if (points.empty() || points.back().x != point.x) points.push_back(point);
        }
        held = 0;
    }
    double width, current = 0;
    std::size_t held = 0;
    Svg::Point first{}, low{}, high{}, last{};
    std::vector<Svg::Point> points;
};

}  // namespace

TidePicture DrawTide(TideStation& station, const TideRange& range, const std::string& title, double heightPixels) {
    TidePicture picture;
    PlotAxis time = PlotAxis::Empty("Time (UTC)", true), tide = PlotAxis::Empty("Tide (m)");
    ForEachValue(station, range, [&](double at, double value) {
        if (!IsCivilTime(at) || !std::isfinite(value)) return;
        time.Hold(at);
        tide.Hold(value);
        ++picture.values;
    });
    if (picture.values == 0) return picture;
    time.title += ", " + UtcText(time.low) + " to " + UtcText(time.high);  // within a day no tick tells the date
    // Fewer values are drawn as they are.
    Curve curve(picture.values > 2 * kColumns ? (time.high - time.low) / kColumns : 0);
    std::vector<Svg::Point> dots;
    Plot plot(title.empty() ? "Tide at " + ToUtf8(station.GetStationName()) : title, 1200, heightPixels);
    PlotPanel& panel = plot.AddPanel("", time, tide);
    double previous = NAN;
    ForEachValue(station, range, [&](double at, double value) {
        if (!IsCivilTime(at) || !std::isfinite(value)) return;
        if (!std::isnan(previous) && IsGap(station, previous, at)) {
            curve.Break();
            panel.Shade(previous, at, PlotColour::Amber, "gap that isn't bridged");
            ++picture.gaps;
        }
        curve.Add(at, value);
        if (picture.values <= 200) dots.push_back({at, value});
        previous = at;
    });
    panel.Line(curve.Points(), PlotColour::Blue, "tide");
    if (!dots.empty()) panel.Dots(std::move(dots), PlotColour::Blue, "measured value");
    picture.svg = plot.Text();
    return picture;
}

}  // namespace orv::cfg
