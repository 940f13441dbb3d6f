#include "Plot.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "Document.h"
#include "TimeText.h"
#include "platform/os/Clock.h"

namespace orv::cfg {

namespace {

constexpr double kTitleHeight = 44, kPanelTitleHeight = 24, kAxisHeight = 52, kLegendHeight = 34, kMargin = 20;
constexpr double kTickSize = 11, kCharWidth = 6.6;  // of a digit at that size
constexpr std::string_view kInk = "#1b2733", kGrid = "#dde3e8";
constexpr double kHour = 3600, kDay = 24 * kHour, kMonth = 28 * kDay, kYear = 365 * kDay;
constexpr double kFirstTime = -62135596800e3, kLastTime = 253402300799e3;  // of the years 1 to 9999, in milliseconds

std::string_view Hex(PlotColour colour) {
    constexpr std::string_view colours[] = {"#1f5fa8", "#d9600a", "#9aa4ae", "#fbe3b5"};
    return colours[static_cast<std::size_t>(colour)];
}

// ---- ticks

struct Tick {
    double value;
    std::string label;
};

struct Scale {
    double low, high;
    std::vector<Tick> ticks;
    double Widest() const {
        std::size_t widest = 0;
        for (const Tick& tick : ticks) widest = std::max(widest, tick.label.size());
        return static_cast<double>(widest) * kCharWidth;
    }
};

Scale NumberScale(double low, double high, int wanted) {
    // A step below the resolution of the numbers would never get on.
    const double least = std::max(std::fabs(low), std::fabs(high)) * 1e-9;
    if (!(high - low > least)) {
        low -= std::max(least, 0.5);
        high += std::max(least, 0.5);
    }
    int decimals = 0;
    const std::vector<double> inner = Ticks(low, high, wanted, decimals);
    const double step = inner.size() > 1 ? inner[1] - inner[0] : high - low;
    const double first = std::floor(low / step + 1e-9), last = std::ceil(high / step - 1e-9);
    Scale scale{first * step, last * step, {}};
    const int steps = static_cast<int>(last - first);
    for (int i = 0; i <= steps; ++i) {
        const double value = (first + i) * step;
        scale.ticks.push_back({value, Fixed(value + 0.0, std::min(decimals, 12))});
    }
    return scale;
}

/// A tick says as much as its step asks for: year, month, day, or the time of day, with the date at midnight.
std::string TimeLabel(double seconds, double step) {
    const auto whole = static_cast<std::int64_t>(seconds);
    const std::string text = UtcText(static_cast<double>(whole) * 1000);  // YYYY-MM-DDThh:mm:ssZ
    if (step >= kYear) return text.substr(0, 4);
    if (step >= kMonth) return text.substr(0, 7);
    if (step >= kDay || whole % static_cast<std::int64_t>(kDay) == 0) return text.substr(0, 10);
    return text.substr(11, step < 60 ? 8 : 5);
}

/// Starts of every so many months between two times in seconds.
std::vector<Tick> MonthTicks(double from, double to, int months) {
    std::vector<Tick> ticks;
    CalendarTime time;
    time.year = UtcCalendar(static_cast<std::int64_t>(from)).year;
    if (months > 12) time.year -= time.year % (months / 12);
    for (time.month = 1;; time.month += months) {
        const auto start = static_cast<double>(CalendarToUtc(time));
        if (start > to) return ticks;
        if (start >= from) ticks.push_back({start * 1000, TimeLabel(start, months < 12 ? kMonth : kYear)});
    }
}

Scale TimeScale(double low, double high, int wanted) {
    constexpr double steps[] = {1,         2,         5,          10,   15,       30,       60,
                                120,       300,       600,        900,  1800,     kHour,    2 * kHour,
                                3 * kHour, 6 * kHour, 12 * kHour, kDay, 2 * kDay, 7 * kDay, 14 * kDay};
    constexpr int months[] = {1, 2, 3, 6, 12, 24, 60, 120, 600};
    if (!(high - low >= 1000)) {
        low -= 500;
        high += 500;
    }
    Scale scale{low, high, {}};
    const double from = low / 1000, to = high / 1000, least = (to - from) / wanted;
    const auto step = std::lower_bound(std::begin(steps), std::end(steps), least);
    if (step == std::end(steps)) {
        const auto count = std::find_if(std::begin(months), std::end(months) - 1,
                                        [&](int number) { return number * 30.5 * kDay >= least; });
        scale.ticks = MonthTicks(from, to, *count);
        return scale;
    }
    const double first = std::ceil(from / *step);
    const int more = static_cast<int>(std::floor(to / *step) - first);
    for (int i = 0; i <= more; ++i) {
        const double at = (first + i) * *step;
        scale.ticks.push_back({at * 1000, TimeLabel(at, *step)});
    }
    return scale;
}

Scale ScaleOf(const PlotAxis& axis, double pixels, double labelPixels) {
    const int wanted = std::max(2, static_cast<int>(pixels / labelPixels));
    // Times that no calendar has, of a damaged file, are numbers like others.
    const bool calendar = axis.utcTime && axis.low >= kFirstTime && axis.high <= kLastTime;
    if (axis.low > axis.high || !std::isfinite(axis.high - axis.low))
        return axis.utcTime ? TimeScale(0, 1000, wanted) : NumberScale(0, 1, wanted);
    return calendar ? TimeScale(axis.low, axis.high, wanted) : NumberScale(axis.low, axis.high, wanted);
}

// ---- drawing

/// The rectangle between the axes, in pixels, and the values at its edges.
struct Frame {
    double left, top, right, bottom;
    Scale x, y;
    double X(double value) const { return left + (value - x.low) / (x.high - x.low) * (right - left); }
    double Y(double value) const { return bottom - (value - y.low) / (y.high - y.low) * (bottom - top); }
};

void DrawAxes(Svg& svg, const Frame& frame, std::string_view title, const PlotAxis& x, const PlotAxis& y) {
    const double middleX = (frame.left + frame.right) / 2, middleY = (frame.top + frame.bottom) / 2;
    const Svg::Font tickFont{kTickSize, Svg::Anchor::Middle}, nameFont{13, Svg::Anchor::Middle};
    for (const Tick& tick : frame.x.ticks) {
        const double at = frame.X(tick.value);
        svg.Line(at, frame.top, at, frame.bottom, {kGrid});
        svg.Line(at, frame.bottom, at, frame.bottom + 5, {kInk});
        svg.Text(at, frame.bottom + 18, tick.label, tickFont);
    }
    for (const Tick& tick : frame.y.ticks) {
        const double at = frame.Y(tick.value);
        svg.Line(frame.left, at, frame.right, at, {kGrid});
        svg.Line(frame.left - 5, at, frame.left, at, {kInk});
        svg.Text(frame.left - 8, at + 4, tick.label, {kTickSize, Svg::Anchor::End});
    }
    svg.Text(middleX, frame.top - 8, title, {14, Svg::Anchor::Middle, true});
    svg.Text(middleX, frame.bottom + 40, x.title, nameFont);
    svg.Text(frame.left - 18 - frame.y.Widest(), middleY, y.title, {13, Svg::Anchor::Middle, false, -90});
}

void DrawLine(Svg& svg, const Frame& frame, const std::vector<Svg::Point>& points, const Svg::Stroke& stroke) {
    std::vector<Svg::Point> run;
    for (const Svg::Point& point : points) {
        if (std::isfinite(point.x) && std::isfinite(point.y)) {
            run.push_back({frame.X(point.x), frame.Y(point.y)});
            continue;
        }
        if (!run.empty()) svg.Polyline(run, stroke);
        run.clear();
    }
    if (!run.empty()) svg.Polyline(run, stroke);
}

}  // namespace

void PlotAxis::Hold(double value) {
    if (!std::isfinite(value)) return;
    low = std::min(low, value);
    high = std::max(high, value);
}

PlotAxis PlotAxis::Empty(std::string title, bool utcTime) {
    constexpr double far = std::numeric_limits<double>::max();
    return {std::move(title), far, -far, utcTime};
}

PlotPanel::PlotPanel(std::string panelTitle, PlotAxis horizontal, PlotAxis vertical)
    : title(std::move(panelTitle)), x(std::move(horizontal)), y(std::move(vertical)) {}

void PlotPanel::Shade(double from, double to, PlotColour colour, std::string label) {
    items.push_back({Kind::Shade, {{from, 0}, {to, 0}}, colour, std::move(label), 0});
}

void PlotPanel::Line(std::vector<Svg::Point> points, PlotColour colour, std::string label, double width) {
    items.push_back({Kind::Line, std::move(points), colour, std::move(label), width});
}

void PlotPanel::Dots(std::vector<Svg::Point> points, PlotColour colour, std::string label, double radius) {
    items.push_back({Kind::Dots, std::move(points), colour, std::move(label), radius});
}

Plot::Plot(std::string plotTitle, double widthPixels, double heightPixels)
    : title(std::move(plotTitle)), width(widthPixels), height(heightPixels) {}

PlotPanel& Plot::AddPanel(std::string panelTitle, PlotAxis x, PlotAxis y) {
    return panels.emplace_back(std::move(panelTitle), std::move(x), std::move(y));
}

std::string Plot::Text() const {
    Svg svg(width, height, title);
    svg.Text(width / 2, 28, title, {18, Svg::Anchor::Middle, true});
    const auto draw = [&](const PlotPanel::Item& item, const Frame& frame) {
        switch (item.kind) {
            case PlotPanel::Kind::Shade: {
                const double left = frame.X(item.points[0].x), right = frame.X(item.points[1].x);
                // A gap narrower than a pixel is there all the same.
                svg.Rectangle(left, frame.top, std::max(right - left, 1.0), frame.bottom - frame.top, Hex(item.colour));
                break;
            }
            case PlotPanel::Kind::Line:
                DrawLine(svg, frame, item.points, {Hex(item.colour), item.size});
                break;
            case PlotPanel::Kind::Dots:
                for (const Svg::Point& point : item.points) {
                    if (!std::isfinite(point.x) || !std::isfinite(point.y)) continue;
                    svg.Circle(frame.X(point.x), frame.Y(point.y), item.size, Hex(item.colour));
                }
        }
    };
    std::vector<PlotPanel::Item> legend;
    const double panelWidth = (width - kMargin) / static_cast<double>(std::max<std::size_t>(panels.size(), 1));
    double left = 0;
    for (const PlotPanel& panel : panels) {
        Frame frame{};
        frame.top = kTitleHeight + (panel.title.empty() ? 0 : kPanelTitleHeight);
        frame.bottom = height - kAxisHeight - kLegendHeight;
        frame.y = ScaleOf(panel.y, frame.bottom - frame.top, 45);
        frame.left = left + 2 * kMargin + frame.y.Widest();
        frame.right = left + panelWidth - kMargin;
        frame.x = ScaleOf(panel.x, frame.right - frame.left, 95);
        const auto isShade = [](const PlotPanel::Item& item) { return item.kind == PlotPanel::Kind::Shade; };
        for (const PlotPanel::Item& item : panel.items) {
            if (isShade(item)) draw(item, frame);
        }
        DrawAxes(svg, frame, panel.title, panel.x, panel.y);
        for (const PlotPanel::Item& item : panel.items) {
            if (!isShade(item)) draw(item, frame);
            const auto known = [&](const PlotPanel::Item& entry) { return entry.label == item.label; };
            if (std::none_of(legend.begin(), legend.end(), known)) legend.push_back(item);
        }
        svg.Rectangle(frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, "none", kInk);
        left += panelWidth;
    }
    double legendWidth = 0;
    for (const PlotPanel::Item& item : legend) legendWidth += 62 + static_cast<double>(item.label.size()) * kCharWidth;
    double x = std::max((width - legendWidth) / 2, kMargin);
    for (PlotPanel::Item& item : legend) {
        Frame sample{x, height - 26, x + 24, height - 14, {0, 2, {}}, {0, 2, {}}};
        item.points = {{0, 1}, {2, 1}};
        if (item.kind == PlotPanel::Kind::Dots) item.points = {{1, 1}};
        draw(item, sample);
        svg.Text(x + 32, height - 16, item.label, {12});
        x += 62 + static_cast<double>(item.label.size()) * kCharWidth;
    }
    return svg.Finish();
}

}  // namespace orv::cfg
