#include "Svg.h"

#include <algorithm>
#include <cmath>

#include "Document.h"

namespace orv::cfg {

std::string XmlEscaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // Other control characters can't stand in XML at all.
                out += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return out;
}

namespace {

std::string Attribute(std::string_view name, std::string_view value) {
    return " " + std::string(name) + "=\"" + XmlEscaped(value) + "\"";
}

/// Hundredths of a pixel are finer than any screen.
std::string Attribute(std::string_view name, double value) {
    std::string text = Fixed(value, 2);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return Attribute(name, text);
}

std::string Attributes(const Svg::Stroke& stroke) {
    std::string text = Attribute("stroke", stroke.colour) + Attribute("stroke-width", stroke.width);
    if (!stroke.dashes.empty()) text += Attribute("stroke-dasharray", stroke.dashes);
    return text;
}

std::string Places(const std::vector<Svg::Point>& points) {
    std::string places;
    for (const Svg::Point& point : points) places += Fixed(point.x, 2) + "," + Fixed(point.y, 2) + " ";
    return places;
}

}  // namespace

Svg::Svg(double drawingWidth, double drawingHeight, std::string_view title) {
    head = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", drawingWidth) +
           Attribute("height", drawingHeight) + " viewBox=\"0 0 " + Fixed(drawingWidth, 0) + " " +
           Fixed(drawingHeight, 0) + "\" font-family=\"Helvetica, Arial, sans-serif\">\n<title>" + XmlEscaped(title) +
           "</title>\n";
    Rectangle(0, 0, drawingWidth, drawingHeight, "white");
}

void Svg::Rectangle(double x, double y, double w, double h, std::string_view fill, std::string_view stroke) {
    body += "<rect" + Attribute("x", x) + Attribute("y", y) + Attribute("width", w) + Attribute("height", h) +
            Attribute("fill", fill);
    if (stroke != "none") body += Attribute("stroke", stroke);
    body += "/>\n";
}

void Svg::Line(double x1, double y1, double x2, double y2, const Stroke& stroke) {
    body += "<line" + Attribute("x1", x1) + Attribute("y1", y1) + Attribute("x2", x2) + Attribute("y2", y2) +
            Attributes(stroke) + "/>\n";
}

void Svg::Polyline(const std::vector<Point>& points, const Stroke& stroke) {
    body += "<polyline" + Attribute("points", Places(points)) + Attribute("fill", "none") + Attributes(stroke) + "/>\n";
}

void Svg::Polygon(const std::vector<Point>& points, std::string_view fill, const Stroke& stroke) {
    body += "<polygon" + Attribute("points", Places(points)) + Attribute("fill", fill) + Attributes(stroke) + "/>\n";
}

void Svg::Circle(double x, double y, double radius, std::string_view fill) {
    body +=
        "<circle" + Attribute("cx", x) + Attribute("cy", y) + Attribute("r", radius) + Attribute("fill", fill) + "/>\n";
}

void Svg::Text(double x, double y, std::string_view text, const Font& font) {
    body += "<text" + Attribute("x", x) + Attribute("y", y) + Attribute("font-size", font.size) +
            Attribute("fill", font.colour);
    if (font.anchor != Anchor::Start) body += Attribute("text-anchor", font.anchor == Anchor::End ? "end" : "middle");
    if (font.bold) body += Attribute("font-weight", "bold");
    if (font.turned != 0.0) {
        body += Attribute("transform", "rotate(" + Fixed(font.turned, 0) + " " + Fixed(x, 2) + " " + Fixed(y, 2) + ")");
    }
    body += ">" + XmlEscaped(text) + "</text>\n";
}

std::string Svg::Hatch(std::string_view id, std::string_view colour, std::string_view ground) {
    definitions += "<pattern" + Attribute("id", id) +
                   " width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" patternTransform=\"rotate(45)\">"
                   "<rect width=\"6\" height=\"6\"" +
                   Attribute("fill", ground) + "/><line x1=\"0\" y1=\"0\" x2=\"0\" y2=\"6\"" +
                   Attribute("stroke", colour) + " stroke-width=\"2\"/></pattern>\n";
    return "url(#" + std::string(id) + ")";
}

std::string Svg::Finish() const {
    return head + (definitions.empty() ? "" : "<defs>\n" + definitions + "</defs>\n") + body + "</svg>\n";
}

std::vector<double> Ticks(double low, double high, int count, int& decimals) {
    decimals = 0;
    if (!(high > low) || count < 1 || !std::isfinite(high - low)) return {low};
    const double rough = (high - low) / count, power = std::pow(10.0, std::floor(std::log10(rough)));
    double step = 10.0 * power;
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power < rough) continue;
        step = factor * power;
        break;
    }
    decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    std::vector<double> ticks;
    for (double n = std::ceil(low / step - 1e-9); n * step <= high + step * 1e-9; ++n) ticks.push_back(n * step + 0.0);
    return ticks;
}

}  // namespace orv::cfg
