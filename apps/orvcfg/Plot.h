#pragma once

#include <deque>
#include <string>
#include <vector>

#include "Svg.h"

namespace orv::cfg {

/// One axis of a panel. Where the values are numbers its ends are moved out to round ones.
struct PlotAxis {
    std::string title;  ///< with the unit, for instance "Tide (m)"
    double low = 0, high = 1;
    bool utcTime = false;  ///< values are milliseconds since 1970 UTC, and shown as dates and times

    /// Widens the axis to `value`; what isn't finite doesn't count. Start from `PlotAxis::Empty`.
    void Hold(double value);
    static PlotAxis Empty(std::string title, bool utcTime = false);
};

enum class PlotColour { Blue, Orange, Grey, Amber };

/// A pair of axes with what is drawn between them, in the order in which it is added. x grows to the right, y upwards.
/// What is drawn lies between the ends of the axes. Things with the same label share an entry of the legend.
class PlotPanel {
public:
    PlotPanel(std::string panelTitle, PlotAxis horizontal, PlotAxis vertical);
    void Shade(double from, double to, PlotColour colour, std::string label);  ///< between two values of x
    /// Straight from point to point; a point that isn't finite breaks the line.
    void Line(std::vector<Svg::Point> points, PlotColour colour, std::string label, double width = 1.5);
    void Dots(std::vector<Svg::Point> points, PlotColour colour, std::string label, double radius = 2.5);

private:
    friend class Plot;
    enum class Kind { Shade, Line, Dots };
    struct Item {
        Kind kind;
        std::vector<Svg::Point> points;
        PlotColour colour;
        std::string label;
        double size;
    };
    std::string title;
    PlotAxis x, y;
    std::vector<Item> items;
};

/// Panels side by side under one title, with one legend below them.
class Plot {
public:
    explicit Plot(std::string plotTitle, double widthPixels = 1000, double heightPixels = 600);
    PlotPanel& AddPanel(std::string title, PlotAxis x, PlotAxis y);
    std::string Text() const;  ///< an SVG file

private:
    std::string title;
    double width, height;
    std::deque<PlotPanel> panels;  // references to panels stay good while others are added
};

}  // namespace orv::cfg
