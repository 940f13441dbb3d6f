#include "VesselPlan.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "../Document.h"
#include "../Svg.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "surveydata/ShapeSelection.h"

namespace orv::cfg {

namespace {

constexpr double kWidth = 1060, kTitle = 52, kFoot = 74, kRow = 33;
constexpr double kMostTall = 640, kMostWide = 430;  // of the vessel itself
constexpr double kFar = 1e5;                        // metres: what lies further out is no place on a vessel
constexpr std::string_view kInk = "#1b2733", kGrid = "#dde3e8", kHull = "#e4edf5", kMark = "#1f5fa8";
constexpr std::size_t kNameLength = 34;

struct Mark {
    std::string name, place;
    double x, y;     // metres, X to starboard, Y to the bow
    double row = 0;  // pixels: the middle of its label
};

std::string Shortened(const std::wstring& name) {
    return ToUtf8(name.size() <= kNameLength ? name : name.substr(0, kNameLength - 1) + L"…");
}

std::vector<Mark> MarksOf(const VesselConfig& vessel) {
    std::vector<Mark> marks;
    for (unsigned no = 1, count = vessel.GetNumOffsets(); no <= count; ++no) {
        std::wstring name;
        double x = 0, y = 0, z = 0;
        if (!vessel.GetOffset(no, name, x, y, z)) continue;
        if (!(std::fabs(x) < kFar) || !(std::fabs(y) < kFar) || !(std::fabs(z) < kFar)) continue;
        marks.push_back({std::to_string(no) + "  " + Shortened(name),
                         "X " + Fixed(x, 3) + "   Y " + Fixed(y, 3) + "   Z " + Fixed(z, 3), x, y});
    }
    return marks;
}

/// Flat ends for what carries cargo or stands on spuds, a bow for everything else.
bool HasBow(const VesselConfig& vessel) {
    constexpr int kBarge = 1, kPontoon = 18, kPlatform = 30;
    ShapeSelection shape;
    if (!vessel.GetVesselShape(shape)) return true;
    const int group = shape.GetStandardShapeGroup();
    return group != kBarge && group != kPontoon && group != kPlatform;
}

/// Metres about the reference, from the starboard quarter round by the bow.
std::vector<Svg::Point> HullOf(double length, double width, bool bow) {
    const double half = width / 2, shoulder = bow ? length * 0.14 : length / 2;
    std::vector<Svg::Point> hull = {{half, -length / 2}, {half, shoulder}};
    constexpr int kSteps = 16;
    for (int i = 1; bow && i < kSteps; ++i) {
        const double t = static_cast<double>(i) / kSteps;
        hull.push_back({half * (1 - t * t), shoulder + (length / 2 - shoulder) * t});
    }
    if (bow) hull.push_back({0, length / 2});
    for (std::size_t i = hull.size(); i-- > 0;) {
        if (hull[i].x > 0) hull.push_back({-hull[i].x, hull[i].y});
    }
    return hull;
}

/// Extent in metres; never empty.
struct Extent {
    double west = 0, east = 0, south = 0, north = 0;
    void Hold(double x, double y) {
        west = std::min(west, x);
        east = std::max(east, x);
        south = std::min(south, y);
        north = std::max(north, y);
    }
};

/// Labels of one side from top to bottom, each as near its point as those above leave room.
void Spread(std::vector<Mark*>& side, double top, double bottom, const auto& yOf) {
    std::stable_sort(side.begin(), side.end(), [](const Mark* a, const Mark* b) { return a->y > b->y; });
    double next = top + kRow / 2;
    for (Mark* mark : side) {
        mark->row = std::max(yOf(mark->y), next);
        next = mark->row + kRow;
    }
    double last = bottom - kRow / 2;
    for (std::size_t i = side.size(); i-- > 0;) {
        side[i]->row = std::min(side[i]->row, last);
        last = side[i]->row - kRow;
    }
}

/// Points on the middle line go to the side that has room.
void Split(std::vector<Mark>& marks, std::vector<Mark*>& port, std::vector<Mark*>& starboard) {
    for (Mark& mark : marks) {
        if (mark.x != 0) (mark.x < 0 ? port : starboard).push_back(&mark);
    }
    for (Mark& mark : marks) {
        if (mark.x == 0) (port.size() <= starboard.size() ? port : starboard).push_back(&mark);
    }
}

double RoundLength(double most) {
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= most) return factor * power;
    }
    return power;
}

void DrawScaleBar(Svg& svg, double pixelsPerMetre, double y) {
    const double metres = RoundLength(260 / pixelsPerMetre), pixels = metres * pixelsPerMetre;
    const double left = (kWidth - pixels) / 2;
    for (int part = 0; part < 4; ++part) {
        svg.Rectangle(left + pixels * part / 4, y, pixels / 4, 7, part % 2 == 0 ? kInk : "white", kInk);
    }
    for (int end = 0; end <= 2; ++end) {
        svg.Text(left + pixels * end / 2, y + 21, ToUtf8(ShortestText(metres * end / 2)) + (end == 2 ? " m" : ""),
                 {11, Svg::Anchor::Middle});
    }
}

}  // namespace

std::string DrawVesselPlan(const VesselConfig& vessel) {
    std::vector<Mark> marks = MarksOf(vessel);
    double length = 0, width = 0;
    const bool sized = vessel.GetVesselLength(length) && vessel.GetVesselWidth(width) && length > 0 && width > 0 &&
                       length < kFar && width < kFar;
    if (marks.empty() && !sized) return {};
    const std::vector<Svg::Point> hull = sized ? HullOf(length, width, HasBow(vessel)) : std::vector<Svg::Point>();
    Extent extent;
    for (const Svg::Point& point : hull) extent.Hold(point.x, point.y);
    for (const Mark& mark : marks) extent.Hold(mark.x, mark.y);
    const double tall = std::max(extent.north - extent.south, 0.1), wide = std::max(extent.east - extent.west, 0.1);
    const double scale = std::min(kMostTall / tall, kMostWide / wide);

    std::vector<Mark*> port, starboard;
    Split(marks, port, starboard);
    const auto rows = static_cast<double>(std::max(port.size(), starboard.size()));
    const double drawn = std::max(tall * scale + 40, rows * kRow + 10), height = kTitle + drawn + kFoot;
    const double middleX = kWidth / 2, middleY = kTitle + drawn / 2;
    const double centreX = (extent.west + extent.east) / 2, centreY = (extent.south + extent.north) / 2;
    const auto xOf = [&](double x) { return middleX + (x - centreX) * scale; };
    const auto yOf = [&](double y) { return middleY - (y - centreY) * scale; };

    const std::string title = ToUtf8(vessel.GetVesselName()) + " from above, bow up";
    Svg svg(kWidth, height, title);
    svg.Text(middleX, 26, title, {17, Svg::Anchor::Middle, true});
    if (sized) {
        std::vector<Svg::Point> outline;
        outline.reserve(hull.size());
        for (const Svg::Point& point : hull) outline.push_back({xOf(point.x), yOf(point.y)});
        svg.Polygon(outline, kHull, {kInk, 1.4});
    }
    const double edge = 18;
    svg.Line(xOf(0), yOf(extent.south) + edge, xOf(0), yOf(extent.north) - edge, {kGrid, 1, "6 4"});
    svg.Line(xOf(extent.west) - edge, yOf(0), xOf(extent.east) + edge, yOf(0), {kGrid, 1, "6 4"});

    Spread(port, kTitle, kTitle + drawn, yOf);
    Spread(starboard, kTitle, kTitle + drawn, yOf);
    const double gap = 46, left = xOf(extent.west) - gap, right = xOf(extent.east) + gap;
    for (const auto* const side : {&port, &starboard}) {
        const bool isPort = side == &port;
        const double at = isPort ? left : right, away = isPort ? -6 : 6;
        const Svg::Anchor anchor = isPort ? Svg::Anchor::End : Svg::Anchor::Start;
        for (const Mark* mark : *side) {
            svg.Polyline({{xOf(mark->x), yOf(mark->y)}, {at - away * 3, mark->row}, {at, mark->row}}, {"#9aa4ae", 0.9});
            svg.Text(at + away, mark->row - 2, mark->name, {12.5, anchor, true});
            svg.Text(at + away, mark->row + 12, mark->place, {11, anchor});
        }
    }
    for (const Mark& mark : marks) {
        svg.Circle(xOf(mark.x), yOf(mark.y), 5, "white");
        svg.Circle(xOf(mark.x), yOf(mark.y), 3.6, kMark);
    }
    DrawScaleBar(svg, scale, height - 54);
    std::string caption = "Metres; X to starboard, Y to the bow, Z up. ";
    caption += sized ? "The hull stands for a length of " + Fixed(length, 2) + " m and a width of " + Fixed(width, 2) +
                           " m about the reference; its outline isn't surveyed."
                     : "Length and width aren't known.";
    if (const std::size_t lost = vessel.GetNumOffsets() - marks.size(); lost > 0) {
        caption += " " + std::to_string(lost) + " offsets aren't drawn: no place on a vessel.";
    }
    svg.Text(middleX, height - 8, caption, {11.5, Svg::Anchor::Middle});
    return svg.Finish();
}

}  // namespace orv::cfg
