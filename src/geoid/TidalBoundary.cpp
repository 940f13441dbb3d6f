#include "geoid/TidalBoundary.h"

#include "geoid/TextScan.h"

namespace orv {

bool TidalBoundary::Holds(double x, double y) const {
    for (const Polygon& polygon : polygons) {
        bool inside = false;
        for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
            const Point &a = polygon[i], &b = polygon[j];
            const bool crosses = (a.latitude < y && b.latitude >= y) || (b.latitude < y && a.latitude >= y);
            if (!crosses) continue;
            const double edge =
                a.longitude + (y - a.latitude) / (b.latitude - a.latitude) * (b.longitude - a.longitude);
            if (x > edge) inside = !inside;
        }
        if (inside) return true;
    }
    return false;
}

std::vector<TidalBoundary::Polygon> ReadBoundary(std::string_view text) {
    std::vector<TidalBoundary::Polygon> polygons;
    std::int32_t ring = 0;
    std::string_view line;
    while (NextLine(text, line)) {
        TidalBoundary::Point point{};
        std::int32_t unused = 0, lineRing = 0;
        TextScan in(line);
        if (!in.Real(point.longitude) || !in.Real(point.latitude) || !in.Int(unused) || !in.Int(lineRing)) break;
        if (polygons.empty() || lineRing != ring) polygons.emplace_back();
        ring = lineRing;
        polygons.back().push_back(point);
    }
    return polygons;
}

}  // namespace orv
