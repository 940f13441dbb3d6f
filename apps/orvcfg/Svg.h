#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cfg {

/// `text` as it stands between tags or in quotes; control characters, which can't, become blanks.
std::string XmlEscaped(std::string_view text);

/// A drawing in SVG, made to be looked at: pixels from the upper left corner, its own fonts and a white ground, nothing
/// from outside the file.
class Svg {
public:
    Svg(double drawingWidth, double drawingHeight, std::string_view title);

    struct Stroke {
        std::string_view colour = "#333333";
        double width = 1.0;
        std::string_view dashes = {};  ///< for instance "4 3"
    };
    enum class Anchor { Start, Middle, End };
    struct Font {
        double size = 13.0;
        Anchor anchor = Anchor::Start;
        bool bold = false;
        double turned = 0.0;  ///< degrees, clockwise about its place
        std::string_view colour = "#222222";
    };

    void Rectangle(double x, double y, double w, double h, std::string_view fill, std::string_view stroke = "none");
    void Line(double x1, double y1, double x2, double y2, const Stroke& stroke);
    struct Point {
        double x, y;
    };
    void Polyline(const std::vector<Point>& points, const Stroke& stroke);
    void Polygon(const std::vector<Point>& points, std::string_view fill, const Stroke& stroke);
    void Circle(double x, double y, double radius, std::string_view fill);
    void Text(double x, double y, std::string_view text, const Font& font);
    /// A fill of slanting lines, for areas that have no value: use the result as `fill`.
    std::string Hatch(std::string_view id, std::string_view colour, std::string_view ground);

    std::string Finish() const;

private:
    std::string head, definitions, body;
};

/// Round numbers from `low` to `high`, about `count` of them, and the decimals that tell them apart.
std::vector<double> Ticks(double low, double high, int count, int& decimals);

}  // namespace orv::cfg
