#pragma once

#include <algorithm>
#include <limits>

namespace orv {

struct Point {
    double x = 0, y = 0, z = 0;
    bool operator==(const Point&) const = default;
};

/// A rectangle, or a box, around points. Invalid until the first point.
class Page {
public:
    void Invalidate() { *this = Page(); }
    bool IsValid() const { return low.x <= high.x && low.y <= high.y; }
    void Extend(const Point& point) {
        low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z)};
    }
    const Point& Low() const { return low; }
    const Point& High() const { return high; }
    Point Center() const {
        return {low.x + (high.x - low.x) / 2, low.y + (high.y - low.y) / 2, low.z + (high.z - low.z) / 2};
    }

private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();
    Point low{kFar, kFar, kFar}, high{-kFar, -kFar, -kFar};
};

}  // namespace orv
